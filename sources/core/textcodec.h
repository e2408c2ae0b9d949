#pragma once

#include <QByteArray>
#include <QString>

class QTextCodec;

/**
 * How file bytes become text and back: byte-order marks, codec lookup by name,
 * line ends and binary content. Shared by the editor, the encoding functions
 * and the engine's tables DDL copy, so that all of them read a file alike.
 */
class TextCodec
{
public:
    struct ByteOrderMark
    {
        QByteArray bytes; // empty when the data starts with no mark
        QByteArray codec;
    };

    /** Result of decode(). */
    struct Decoded
    {
        QString text;
        ByteOrderMark mark;
        QByteArray codec;          // the mark's codec, else the one asked for
        bool binary = false;       // NUL bytes outside a UTF-16/32 text
        int invalidCharacters = 0; // bytes the codec could not read
    };

    enum class LineEnd { Lf, CrLf, Cr };

    /**
     * The mark @p data starts with. The longest mark wins, so FF FE 00 00 is
     * UTF-32LE and FF FE alone UTF-16LE.
     */
    static ByteOrderMark byteOrderMark(const QByteArray &data);

    /** The codec called @p name; the machine's own for "System", an empty or an unknown name. */
    static QTextCodec *codecForName(const QByteArray &name);

    /** Whether @p codec writes UTF-16 or UTF-32, where zero bytes belong to the text. */
    static bool isWide(const QTextCodec *codec);

    /** Decodes file content: a byte-order mark decides over @p codecName and is left out. */
    static Decoded decode(const QByteArray &data, const QByteArray &codecName);

    /** The line end used most in @p text: CR LF wins ties, bare CR must outnumber LF. */
    static LineEnd dominantLineEnd(const QString &text);

    /**
     * Whether @p size bytes read as UTF-8 that holds at least one multi-byte
     * sequence; pure ASCII does not pass, empty data does. A sequence cut off
     * by the end of the data is tolerated.
     */
    static bool looksLikeUtf8(const char *data, qint64 size);
};
