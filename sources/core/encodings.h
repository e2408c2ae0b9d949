#pragma once

#include <QByteArray>
#include <QString>

/**
 * Text encodings are named as QTextCodec knows them ("UTF-8", "UTF-16BE",
 * "Shift_JIS", ...), or "System" for the machine's ANSI code page.
 */

/** Guesses the encoding of the file at @p path from its byte-order mark or its bytes. */
QString identifyEncoding(const QString path);

/** Whether converting the file from @p sourceEncoding to @p targetEncoding changes it. */
bool isEncodingConversionNeeded(const QString &path, const QString &sourceEncoding,
                                const QString &targetEncoding);
/** The same with the ANSI code page given, so the rule can be checked on any machine. */
bool isEncodingConversionNeeded(const QString &path, const QString &sourceEncoding,
                                const QString &targetEncoding, int ansiCodePage);

/** Copies @p source to @p target, re-encoding its text. */
void createEncodedCopyFile(QString source, QString target, QString sourceEncoding,
                           QString targetEncoding);

/** The ANSI code page of the machine: 65001, 932, 1251, or 0 for any other. */
int ansiCodePage();
/** The code page that stands for a locale codeset such as "UTF-8" or "SJIS"; 0 when none. */
int codePageForCodeset(const QByteArray &codeset);
