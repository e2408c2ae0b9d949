#include "textcodec.h"
#include "filenamecodec.h"

#include <QTextCodec>

namespace {

bool isContinuation(uchar byte)
{
    return (byte & 0xC0) == 0x80;
}

} // namespace

TextCodec::ByteOrderMark TextCodec::byteOrderMark(const QByteArray &data)
{
    // Longest marks first, so that FF FE 00 00 is not taken for FF FE.
    static const ByteOrderMark marks[] = {{QByteArray("\x00\x00\xFE\xFF", 4), "UTF-32BE"},
                                          {QByteArray("\xFF\xFE\x00\x00", 4), "UTF-32LE"},
                                          {QByteArray("\xEF\xBB\xBF"), "UTF-8"},
                                          {QByteArray("\xFE\xFF"), "UTF-16BE"},
                                          {QByteArray("\xFF\xFE"), "UTF-16LE"}};
    for (const ByteOrderMark &mark : marks) {
        if (data.startsWith(mark.bytes))
            return mark;
    }
    return {};
}

QTextCodec *TextCodec::codecForName(const QByteArray &name)
{
    if (name.isEmpty() || name == "System")
        return FileNameCodec::textCodec();
    QTextCodec *found = QTextCodec::codecForName(name);
    return found ? found : FileNameCodec::textCodec();
}

bool TextCodec::isWide(const QTextCodec *codec)
{
    // The MIB numbers 1013 to 1019 are UTF-16BE/LE, UTF-16, UTF-32, UTF-32BE/LE.
    return codec->mibEnum() >= 1013 && codec->mibEnum() <= 1019;
}

TextCodec::Decoded TextCodec::decode(const QByteArray &data, const QByteArray &codecName)
{
    Decoded result;
    result.mark = byteOrderMark(data);
    result.codec = result.mark.bytes.isEmpty() ? codecName : result.mark.codec;
    QTextCodec *codec = codecForName(result.codec);
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    const QByteArray body = data.mid(result.mark.bytes.size());
    result.text = codec->toUnicode(body.constData(), body.size(), &state);
    result.binary = (!isWide(codec) && body.contains('\0')) || result.text.contains(QChar(0));
    result.invalidCharacters = state.invalidChars;
    // A sequence cut off by the end of the data stays in the state instead of the text;
    // it counts as unreadable, so that saving cannot silently drop it.
    if (state.remainingChars > 0) {
        result.text += QChar(QChar::ReplacementCharacter);
        result.invalidCharacters += state.remainingChars;
    }
    return result;
}

TextCodec::LineEnd TextCodec::dominantLineEnd(const QString &text)
{
    const int crlf = text.count(QLatin1String("\r\n"));
    const int cr = text.count(QLatin1Char('\r')) - crlf;
    const int lf = text.count(QLatin1Char('\n')) - crlf;
    if (crlf >= lf && crlf >= cr && crlf > 0)
        return LineEnd::CrLf;
    if (cr > lf)
        return LineEnd::Cr;
    return LineEnd::Lf;
}

bool TextCodec::looksLikeUtf8(const char *data, qint64 size)
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
            if (!leadOk && i < n)
                return false;
        }
        ++i;
    }
    return sawRun;
}
