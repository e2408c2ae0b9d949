#include "encodings.h"

#include <QDebug>
#include <QFile>
#include <QSaveFile>
#include <QTextCodec>
#include <QTextStream>

#ifdef Q_OS_WIN
int windowsAnsiCodePage(); // encodings_win.cpp
#else
#include <langinfo.h>
#endif

namespace {

bool isContinuation(uchar byte)
{
    return (byte & 0xC0) == 0x80;
}

// The counting test reads the file in pieces so that huge files do not have to fit in memory.
struct ContentScan
{
    qint64 even = 0;
    qint64 odd = 0;
};

} // namespace

bool looksLikeUtf8(const char *data, qint64 size)
{
    const auto *b = reinterpret_cast<const uchar *>(data);
    const qint64 n = size;
    if (n == 0)
        return true;
    if (isContinuation(b[0]) || n < 2)
        return false;
    bool sawRun = false;
    qint64 i = 1;
    while (i < n) {
        if (isContinuation(b[i])) {
            sawRun = true;
            const uchar lead = b[i - 1];
            qint64 run = 0;
            while (i < n && isContinuation(b[i])) {
                ++run;
                ++i;
            }
            if (run >= 4)
                return false;
            bool leadOk = false;
            if (run == 1)
                leadOk = (lead & 0xE0) == 0xC0;
            else if (run == 2)
                leadOk = (lead & 0xF0) == 0xE0;
            else
                leadOk = (lead & 0xF8) == 0xF0;
            // A sequence cut off by the end of the file is tolerated.
            if (!leadOk && i < n)
                return false;
        }
        ++i;
    }
    return sawRun;
}

QString identifyEncoding(const QString path)
{
    if (path.isEmpty())
        return QString();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        qDebug() << Q_FUNC_INFO << __FILE__ << __LINE__ << file.errorString();
        return QLatin1String("");
    }
    const QString head = QString::fromLatin1(file.read(4).toHex());
    struct Prefix
    {
        const char *hex;
        const char *name;
    };
    // FF FE 00 00 is listed twice: a file that starts with FF FE alone is left to
    // the content test below.
    static const Prefix prefixes[] = {{"efbbbf", "UTF-8"},
                                      {"0000feff", "UTF-32BE"},
                                      {"fffe0000", "UTF-32LE"},
                                      {"feff", "UTF-16BE"},
                                      {"fffe0000", "UTF-16LE"}};
    for (const Prefix &prefix : prefixes) {
        if (head.startsWith(QLatin1String(prefix.hex), Qt::CaseInsensitive))
            return QLatin1String(prefix.name);
    }

    file.seek(0);
    const qint64 size = file.size();
    QByteArray copy;
    const char *data = nullptr;
    if (size > 0) {
        // Mapping keeps a large file out of the heap; a pipe or special file is read.
        if (uchar *mapped = file.map(0, size))
            data = reinterpret_cast<const char *>(mapped);
    }
    qint64 length = size;
    if (!data) {
        copy = file.readAll();
        data = copy.constData();
        length = copy.size();
    }
    ContentScan scan;
    const auto *bytes = reinterpret_cast<const uchar *>(data);
    for (qint64 i = 0; i < length; ++i) {
        if (bytes[i] < 9) {
            if (i % 2 == 0)
                ++scan.even;
            else
                ++scan.odd;
        }
    }
    QString result;
    if (scan.even > scan.odd)
        result = QStringLiteral("UTF-16BE");
    else if (scan.even < scan.odd)
        result = QStringLiteral("UTF-32LE");
    else
        result = looksLikeUtf8(data, length) ? QStringLiteral("UTF-8") : QStringLiteral("System");
    file.close();
    return result;
}

int codePageForCodeset(const QByteArray &codeset)
{
    QByteArray name = codeset.toUpper();
    name.replace('-', "").replace('_', "");
    if (name == "UTF8")
        return 65001;
    if (name == "SHIFTJIS" || name == "SJIS" || name == "CP932" || name == "WINDOWS31J"
        || name == "MSKANJI")
        return 932;
    if (name == "CP1251" || name == "WINDOWS1251")
        return 1251;
    return 0;
}

int ansiCodePage()
{
#ifdef Q_OS_WIN
    return windowsAnsiCodePage();
#else
    const char *codeset = nl_langinfo(CODESET);
    if (codeset && *codeset)
        return codePageForCodeset(QByteArray(codeset));
    return codePageForCodeset(QTextCodec::codecForLocale()->name());
#endif
}

bool isEncodingConversionNeeded(const QString &path, const QString &sourceEncoding,
                                const QString &targetEncoding, int ansiCodePage)
{
    const auto resolve = [ansiCodePage](const QString &name) {
        if (name != QLatin1String("System"))
            return name;
        if (ansiCodePage == 932)
            return QStringLiteral("Shift_JIS");
        if (ansiCodePage == 1251)
            return QStringLiteral("windows-1251");
        return name;
    };
    return !path.isEmpty() && resolve(sourceEncoding) != resolve(targetEncoding);
}

bool isEncodingConversionNeeded(const QString &path, const QString &sourceEncoding,
                                const QString &targetEncoding)
{
    return isEncodingConversionNeeded(path, sourceEncoding, targetEncoding, ansiCodePage());
}

void createEncodedCopyFile(QString source, QString target, QString sourceEncoding,
                           QString targetEncoding)
{
    QFile in(source);
    if (!in.open(QIODevice::ReadOnly)) {
        qDebug() << Q_FUNC_INFO << __FILE__ << __LINE__ << in.errorString();
        return;
    }
    QTextStream reader(&in);
    reader.setCodec(sourceEncoding.toLatin1().constData());
    const QByteArray text = reader.readAll().toUtf8();
    in.close();

    // Written aside and renamed over the target, so a failed write never leaves
    // a truncated target behind (the source and the target may be one file).
    QSaveFile out(target);
    if (!out.open(QIODevice::WriteOnly | QIODevice::Text))
        return;
    QTextStream writer(&out);
    writer.setCodec(targetEncoding.toLatin1().constData());
    writer << QString::fromUtf8(text);
    writer.flush();
    if (writer.status() != QTextStream::Ok) {
        out.cancelWriting();
        return;
    }
    out.commit();
}
