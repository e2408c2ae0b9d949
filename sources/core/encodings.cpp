#include "encodings.h"

#include "logging.h"
#include "textcodec.h"

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

// The counting test reads the file in pieces so that huge files do not have to fit in memory.
struct ContentScan
{
    qint64 even = 0;
    qint64 odd = 0;
};

} // namespace

QString identifyEncoding(const QString path)
{
    if (path.isEmpty())
        return QString();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        qCDebug(lcEncodings) << Q_FUNC_INFO << __FILE__ << __LINE__ << file.errorString();
        return QLatin1String("");
    }
    // A file that starts with the mark FF FE alone is left to the content test below.
    const TextCodec::ByteOrderMark mark = TextCodec::byteOrderMark(file.read(4));
    if (!mark.bytes.isEmpty() && mark.codec != "UTF-16LE")
        return QString::fromLatin1(mark.codec);

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
        result = TextCodec::looksLikeUtf8(data, length) ? QStringLiteral("UTF-8") : QStringLiteral("System");
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
        qCDebug(lcEncodings) << Q_FUNC_INFO << __FILE__ << __LINE__ << in.errorString();
        return;
    }
    QTextStream reader(&in);
    reader.setCodec(TextCodec::codecForName(sourceEncoding.toLatin1()));
    const QByteArray text = reader.readAll().toUtf8();
    in.close();

    // Written aside and renamed over the target, so a failed write never leaves
    // a truncated target behind (the source and the target may be one file).
    QSaveFile out(target);
    if (!out.open(QIODevice::WriteOnly | QIODevice::Text))
        return;
    QTextStream writer(&out);
    writer.setCodec(TextCodec::codecForName(targetEncoding.toLatin1()));
    writer << QString::fromUtf8(text);
    writer.flush();
    if (writer.status() != QTextStream::Ok) {
        out.cancelWriting();
        return;
    }
    out.commit();
}
