#include "filenamecodec.h"

#include <QCoreApplication>

namespace {

constexpr ushort EscapeBase = 0xDC00;

bool isEscape(ushort unit)
{
    return unit >= EscapeBase + 0x80 && unit <= EscapeBase + 0xFF;
}

/**
 * Length of the valid UTF-8 sequence that starts @p bytes (at most @p available
 * bytes), 0 when the first byte starts no valid sequence, or -1 when the bytes
 * so far are a valid but incomplete start.
 */
int sequenceLength(const uchar *bytes, int available, uint *codePoint)
{
    const uchar lead = bytes[0];
    int length;
    uint value;
    uint minimum;
    if (lead < 0x80) {
        *codePoint = lead;
        return 1;
    } else if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2, value = lead & 0x1F, minimum = 0x80;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3, value = lead & 0x0F, minimum = 0x800;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4, value = lead & 0x07, minimum = 0x10000;
    } else {
        return 0;
    }
    for (int i = 1; i < length; ++i) {
        if (i >= available)
            return -1;
        if ((bytes[i] & 0xC0) != 0x80)
            return 0;
        value = (value << 6) | (bytes[i] & 0x3F);
        // Reject overlong forms, UTF-8 encoded surrogates and values past U+10FFFF as soon
        // as the second byte tells, so an incomplete start is never one that cannot finish.
        if (i == 1) {
            const uint partial = value << (6 * (length - 2));
            const uint span = (1u << (6 * (length - 2))) - 1;
            if (partial + span < minimum || (partial >= 0xD800 && partial + span <= 0xDFFF)
                || partial > 0x10FFFF)
                return 0;
        }
    }
    *codePoint = value;
    return length;
}

void appendCodePoint(QString &out, uint codePoint)
{
    if (QChar::requiresSurrogates(codePoint)) {
        out += QChar(QChar::highSurrogate(codePoint));
        out += QChar(QChar::lowSurrogate(codePoint));
    } else {
        out += QChar(ushort(codePoint));
    }
}

QTextCodec *previousLocaleCodec = nullptr;

void installAtStartup()
{
    FileNameCodec::install();
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(installAtStartup)

void FileNameCodec::install()
{
#ifndef Q_OS_WIN
    QTextCodec *current = QTextCodec::codecForLocale();
    if (!current || dynamic_cast<FileNameCodec *>(current) || current->mibEnum() != 106)
        return;
    // Codecs are owned by Qt once constructed; one instance serves the process.
    static FileNameCodec *codec = new FileNameCodec;
    previousLocaleCodec = current;
    QTextCodec::setCodecForLocale(codec);
#endif
}

// An escaped byte is a low surrogate with no high surrogate before it; the same unit after
// a high surrogate is half of a real character.
static bool isEscapeAt(const QString &text, int i)
{
    return isEscape(text.at(i).unicode()) && (i == 0 || !text.at(i - 1).isHighSurrogate());
}

QString FileNameCodec::displayName(const QString &name)
{
    if (!hasRawBytes(name))
        return name;
    QString shown = name;
    for (int i = 0; i < shown.size(); ++i) {
        if (isEscapeAt(name, i))
            shown[i] = QChar::ReplacementCharacter;
    }
    return shown;
}

bool FileNameCodec::hasRawBytes(const QString &name)
{
    for (int i = 0; i < name.size(); ++i) {
        if (isEscapeAt(name, i))
            return true;
    }
    return false;
}

QTextCodec *FileNameCodec::textCodec()
{
    return previousLocaleCodec ? previousLocaleCodec : QTextCodec::codecForLocale();
}

QByteArray FileNameCodec::codecName()
{
    return QByteArrayLiteral("UTF-8 with raw bytes");
}

QByteArray FileNameCodec::name() const
{
    return codecName();
}

int FileNameCodec::mibEnum() const
{
    // Not an IANA number on purpose: lookups of "UTF-8" keep finding Qt's own codec.
    return -106;
}

QString FileNameCodec::convertToUnicode(const char *in, int length, ConverterState *state) const
{
    // A sequence cut at the end of the previous chunk waits in the state: its bytes packed in
    // state_data[0], their count in state_data[1]. remainingChars stays 0, because Qt's
    // directory listing takes remaining characters for an undecodable name.
    QByteArray joined;
    const uchar *bytes = reinterpret_cast<const uchar *>(in);
    if (state && state->state_data[1] > 0) {
        for (uint i = 0; i < state->state_data[1]; ++i)
            joined += char((state->state_data[0] >> (8 * i)) & 0xFF);
        joined.append(in, length);
        state->state_data[0] = state->state_data[1] = 0;
        bytes = reinterpret_cast<const uchar *>(joined.constData());
        length = joined.size();
    }

    QString out;
    out.reserve(length);
    int i = 0;
    if (state && !(state->flags & IgnoreHeader)) {
        if (length >= 3 && bytes[0] == 0xEF && bytes[1] == 0xBB && bytes[2] == 0xBF)
            i = 3;
        state->flags |= IgnoreHeader;
    }
    while (i < length) {
        uint codePoint = 0;
        const int n = sequenceLength(bytes + i, length - i, &codePoint);
        if (n > 0) {
            appendCodePoint(out, codePoint);
            i += n;
        } else if (n < 0 && state) {
            state->state_data[1] = uint(length - i);
            for (int k = 0; k < length - i; ++k)
                state->state_data[0] |= uint(bytes[i + k]) << (8 * k);
            break;
        } else {
            // Not counted as invalid: Qt's directory listing skips names whose decoding
            // reports invalid characters, and these decode losslessly.
            out += QChar(ushort(EscapeBase + bytes[i]));
            ++i;
        }
    }
    return out;
}

QByteArray FileNameCodec::convertFromUnicode(const QChar *in, int length,
                                             ConverterState *state) const
{
    QByteArray out;
    out.reserve(length * 3);
    int i = 0;
    ushort pendingHigh = 0;
    if (state && state->remainingChars > 0) {
        pendingHigh = ushort(state->state_data[0]);
        state->remainingChars = 0;
    }
    const auto append = [&out](uint codePoint) {
        if (codePoint < 0x80) {
            out += char(codePoint);
        } else if (codePoint < 0x800) {
            out += char(0xC0 | (codePoint >> 6));
            out += char(0x80 | (codePoint & 0x3F));
        } else if (codePoint < 0x10000) {
            out += char(0xE0 | (codePoint >> 12));
            out += char(0x80 | ((codePoint >> 6) & 0x3F));
            out += char(0x80 | (codePoint & 0x3F));
        } else {
            out += char(0xF0 | (codePoint >> 18));
            out += char(0x80 | ((codePoint >> 12) & 0x3F));
            out += char(0x80 | ((codePoint >> 6) & 0x3F));
            out += char(0x80 | (codePoint & 0x3F));
        }
    };
    const char replacement = state && (state->flags & ConvertInvalidToNull) ? '\0' : '?';
    const auto invalid = [&] {
        out += replacement;
        if (state)
            ++state->invalidChars;
    };
    for (; i < length; ++i) {
        const ushort unit = in[i].unicode();
        if (pendingHigh) {
            if (QChar::isLowSurrogate(unit)) {
                append(QChar::surrogateToUcs4(pendingHigh, unit));
                pendingHigh = 0;
                continue;
            }
            invalid();
            pendingHigh = 0;
        }
        if (QChar::isHighSurrogate(unit))
            pendingHigh = unit;
        else if (isEscape(unit))
            out += char(unit - EscapeBase);
        else if (QChar::isLowSurrogate(unit))
            invalid();
        else
            append(unit);
    }
    if (pendingHigh) {
        if (state) {
            state->remainingChars = 1;
            state->state_data[0] = pendingHigh;
        } else {
            invalid();
        }
    }
    return out;
}
