#pragma once

#include <QTextCodec>

/**
 * The locale codec on UTF-8 systems, extended so that every byte string
 * survives a trip through QString.
 *
 * Linux file names are bytes, not text: a name written under another locale
 * ("caf\xE9.sql") is not valid UTF-8. Qt's own codec turns such bytes into
 * U+FFFD, so QDir lists a name that QFile then cannot find, or worse, finds a
 * different file whose name really holds U+FFFD. This codec decodes each byte
 * that is not part of a valid UTF-8 sequence to the lone surrogate
 * U+DC00 + byte (which no valid UTF-8 text decodes to) and encodes those
 * surrogates back to the byte, so QDir, QFile, QFileInfo and QProcess act on
 * the real file. Valid UTF-8 decodes exactly as before.
 *
 * It is installed as the locale codec when the application object starts and
 * the locale is UTF-8. Text shown to the user goes through displayName().
 */
class FileNameCodec : public QTextCodec
{
public:
    /** Makes this codec the locale codec when the locale codec is UTF-8. */
    static void install();

    /** @p name with each undecodable byte shown as U+FFFD. */
    static QString displayName(const QString &name);

    /** Whether @p name holds bytes that are not valid UTF-8. */
    static bool hasRawBytes(const QString &name);

    /**
     * The codec for file contents in the machine's encoding ("System"): the locale codec as
     * it was before install(), so undecodable bytes in a text still count as invalid.
     */
    static QTextCodec *textCodec();

    /** The name under which QTextCodec lists this codec; not one to offer users. */
    static QByteArray codecName();

    QByteArray name() const override;
    int mibEnum() const override;

protected:
    QString convertToUnicode(const char *in, int length, ConverterState *state) const override;
    QByteArray convertFromUnicode(const QChar *in, int length,
                                  ConverterState *state) const override;
};
