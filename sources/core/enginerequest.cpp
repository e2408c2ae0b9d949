#include "enginerequest.h"

#include "encodings.h"
#include "filenamecodec.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>

namespace {

const QString TablesDdlSwitch = QStringLiteral("/TBLDDL=");
const QString TablesDdlName = QStringLiteral("tables_ddl.sql");
const QString PasswordKey = QStringLiteral("/P");

bool isPathSwitch(const QString &key)
{
    return key == QLatin1String("/PRJF=") || key == QLatin1String("/INI=") || key == TablesDdlSwitch;
}

QString engineKey(const EngineRequest &request, const QString &value)
{
    // Only names the engine cannot take as they are get their key.
    if (value.contains(QLatin1Char('/')) || value.contains(QLatin1String("WSM")))
        return request.nameMap.value(value);
    return value;
}

// The option map as one text of blank-led switches, in the map's order.
QString optionText(const EngineRequest &request, const QString &password)
{
    QString text;
    for (auto it = request.options.cbegin(); it != request.options.cend(); ++it) {
        const QString &key = it.key();
        if (key == QLatin1String(" ")) {
            if (!it.value().isEmpty())
                text += QLatin1Char(' ') + it.value();
        } else if (isPathSwitch(key)) {
            if (!it.value().isEmpty())
                text += QStringLiteral(" %1\"%2\"").arg(key, it.value());
        } else if (key == PasswordKey) {
            if (!password.isEmpty())
                text += QLatin1Char(' ') + key + password;
        } else {
            text += QLatin1Char(' ') + key + it.value();
        }
    }
    if (request.options.value(QStringLiteral("/INI=")).isEmpty() && !request.defaultIni.isEmpty())
        text += QStringLiteral(" /INI=\"%1\"").arg(request.defaultIni);
    // Some codec names hold a blank ("IBM 850"): quoted, they stay one switch.
    const auto encoding = [&text](const char *name, const QString &value) {
        if (value.isEmpty())
            return;
        text += QStringLiteral(" %1%2").arg(QLatin1String(name),
                                            value.contains(QLatin1Char(' '))
                                                ? QLatin1Char('"') + value + QLatin1Char('"')
                                                : value);
    };
    encoding("/SRCENC=", request.sourceEncoding);
    encoding("/TRGENC=", request.targetEncoding);
    return text;
}

// Cuts a "/TBLDDL=" item out of @p text and returns its path.
QString takeTablesDdlSwitch(QString &text)
{
    const int at = text.indexOf(TablesDdlSwitch);
    if (at < 0)
        return QString();
    const int from = at > 0 ? at - 1 : at;
    const int open = text.indexOf(QLatin1Char('"'), at);
    const int close = open >= 0 ? text.indexOf(QLatin1Char('"'), open + 1) : -1;
    if (open >= 0 && close > open) {
        const QString path = text.mid(open + 1, close - open - 1);
        text.remove(from, close - from + 1);
        return path;
    }
    // Unquoted: the value runs to the next blank.
    const int valueStart = at + TablesDdlSwitch.size();
    int end = text.indexOf(QLatin1Char(' '), valueStart);
    if (end < 0)
        end = text.size();
    const QString path = text.mid(valueStart, end - valueStart);
    text.remove(from, end - from);
    return path;
}

// The engine reads the DDL file in the system encoding: others get a copy.
QString tablesDdlArgument(const EngineRequest &request, QString path, QStringList &notes)
{
    if (path.isEmpty()) {
        const QString candidate = QDir(request.ddlFolder).filePath(TablesDdlName);
        if (request.ddlFolder.isEmpty() || !QFile::exists(candidate))
            return QString();
        path = candidate;
    }
    const QString encoding = identifyEncoding(path);
    if (encoding.isEmpty()) {
        notes << QStringLiteral("The tables DDL file '%1' cannot be read; it is passed on as it is.")
                     .arg(QDir::toNativeSeparators(path));
    } else if (encoding != QLatin1String("System")) {
        QDir().mkpath(request.copyFolder);
        const QString copy = request.copyFolder + QDir::separator() + TablesDdlName;
        QFile::remove(copy);
        createEncodedCopyFile(path, copy, encoding, QStringLiteral("System"));
        if (QFile::exists(copy))
            path = copy;
    }
    return QStringLiteral("%1\"%2\"").arg(TablesDdlSwitch, QDir::toNativeSeparators(path));
}

// A name the inline list cannot carry as it is: the engine splits it at
// bars, strips blanks and expands wildcards.
bool isAmbiguousInline(const QString &path)
{
    static const QString special = QStringLiteral("|*?\n\r");
    const QString name = QFileInfo(path).fileName();
    return std::any_of(path.cbegin(), path.cend(), [](QChar c) { return special.contains(c); })
        || path != path.trimmed() || name != name.trimmed();
}

// The argument naming the scripts; @p error is set when they cannot be named.
QString filesArgument(const EngineRequest &request, const QStringList &files, QStringList &notes,
                      QString *error)
{
    const QString joined = QDir::toNativeSeparators(files.join(QStringLiteral("| ")));
    const QString inline_ = QStringLiteral("/F=\"%1\"").arg(joined);
    // Long lists go through a file: the command line has a length limit.
    bool throughFile = files.size() > 10;
    if (request.pathPerLine)
        throughFile = throughFile || std::any_of(files.cbegin(), files.cend(), isAmbiguousInline);
    if (!throughFile)
        return inline_;
    QByteArray text;
    if (request.pathPerLine) {
        // One path per line; a name holding a line break needs the form in
        // which each path ends with a NUL byte instead, taken byte for byte.
        const bool breaks = std::any_of(files.cbegin(), files.cend(), [](const QString &path) {
            return path.contains(QLatin1Char('\n')) || path.contains(QLatin1Char('\r'));
        });
        for (const QString &path : files)
            text += QFile::encodeName(path) + (breaks ? '\0' : '\n');
    } else {
        text = joined.toUtf8();
    }
    const auto failed = [&](const QString &reason) {
        if (!request.pathPerLine) {
            notes << QStringLiteral("Cannot write the file list '%1': %2; the files are passed "
                                    "inline.")
                         .arg(request.listFile, reason);
            return inline_;
        }
        // Inline, these names would be read as others: nothing runs.
        *error = QStringLiteral("Cannot write the file list '%1': %2; nothing was converted.")
                     .arg(request.listFile, reason);
        return QString();
    };
    if (request.listFile.isEmpty())
        return failed(QStringLiteral("no working folder"));
    QDir().mkpath(QFileInfo(request.listFile).absolutePath());
    QSaveFile list(request.listFile);
    if (!list.open(QIODevice::WriteOnly) || list.write(text) != text.size() || !list.commit())
        return failed(list.errorString());
    return QStringLiteral("/FF=\"%1\"").arg(request.listFile);
}

// "/P<password>" as a whole word shows as "/P****".
QString masked(QString text, const QString &password)
{
    if (password.isEmpty())
        return text;
    const QString secret = PasswordKey + password;
    for (int at = text.indexOf(secret); at >= 0; at = text.indexOf(secret, at + 1)) {
        const int end = at + secret.size();
        const bool startsWord = at == 0 || text.at(at - 1).isSpace();
        const bool endsWord = end == text.size() || text.at(end).isSpace();
        if (startsWord && endsWord)
            text.replace(at + PasswordKey.size(), password.size(), QStringLiteral("****"));
    }
    return text;
}

} // namespace

EngineCommand engineCommand(const EngineRequest &request)
{
    EngineCommand command;
    const QString outputFolder = QDir::toNativeSeparators(request.outputFolder);
    QStringList files = request.files;
    files.removeAll(QString());
    if (outputFolder.isEmpty() || files.isEmpty()) {
        command.error = QStringLiteral("Incorrect source file or destination path '%1' '%2'")
                            .arg(outputFolder,
                                 QDir::toNativeSeparators(files.join(QStringLiteral("| "))));
        return command;
    }
    // The engine reads a relative name against its own folder, not ours.
    for (QString &path : files)
        path = QFileInfo(path).absoluteFilePath();

    QStringList &arguments = command.arguments;
    arguments << filesArgument(request, files, command.notes, &command.error);
    if (!command.error.isEmpty()) {
        arguments.clear();
        return command;
    }
    arguments << QStringLiteral("/DIR=\"") + outputFolder + QLatin1Char('"');
    arguments << QStringLiteral("/SOURCE=") + engineKey(request, request.source);
    arguments << QStringLiteral("/TARGET=") + engineKey(request, request.target);
    for (const char *key : {"/Source_API=", "/Source_DB=", "/Target_API=", "/Target_DB="}) {
        const QString name = QString::fromLatin1(key);
        if (request.sideOptions.contains(name))
            arguments << name + request.sideOptions.value(name);
    }

    const QString password = request.options.value(PasswordKey);
    const bool viaInput = request.passwordOnStdin && !password.isEmpty();
    QString extra = optionText(request, viaInput ? QStringLiteral("-") : password);
    const QString ddl = tablesDdlArgument(request, takeTablesDdlSwitch(extra), command.notes);
    if (!ddl.isEmpty())
        arguments << ddl;
    extra = extra.trimmed();
    if (!extra.isEmpty())
        arguments << extra;
    if (viaInput)
        command.input = password.toUtf8() + '\n';

    QString display = request.program;
    for (const QString &argument : qAsConst(arguments))
        display += QLatin1Char(' ') + argument;
    // Names that are not valid UTF-8 show their odd bytes as replacement characters.
    command.displayLine = FileNameCodec::displayName(
        viaInput ? masked(display, QStringLiteral("-")) : masked(display, password));
    return command;
}
