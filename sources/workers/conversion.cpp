#include "conversion.h"

#include "encodings.h"
#include "enginelocator.h"
#include "reader.h"
#include "stopconversion.h"
#include "workingfolder.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTextCodec>
#include <QTextStream>
#include <QThread>

namespace {

const QString TablesDdlSwitch = QStringLiteral("/TBLDDL=");
const QString TablesDdlName = QStringLiteral("tables_ddl.sql");

} // namespace

Conversion::Conversion(QObject *parent)
    : QProcess(parent)
{
    m_stopper = new StopConversion(this);
    for (const char *table : {":/directions/DBDirections.csv", ":/directions/AppDirections.csv",
                              ":/directions/DatabaseAPI.csv"}) {
        QByteArray path(table);
        parseDirectionInfo(path);
    }
    m_directionList.sort(Qt::CaseSensitive);
    m_program = QStringLiteral("morvane");
    m_parameters.insert(QStringLiteral("/D="), QStringLiteral("FIXED"));
    m_outputDir = QStringLiteral("c:/");
    m_ddlFolder = WorkingFolder::path();
    m_copyFolder = WorkingFolder::path() + QStringLiteral("Encoded");
    qDebug() << "Conversion::Conversion" << QThread::currentThread();

    // Error messages of the engine belong in the log as much as its output.
    setProcessChannelMode(QProcess::MergedChannels);
    connect(this, &QProcess::readyReadStandardOutput, this, &Conversion::readStandardOutput);
    connect(m_stopper, &StopConversion::showTerminateDialog, this,
            &Conversion::showTerminateDialog);
    connect(this, &QProcess::errorOccurred, this, &Conversion::reportProcessError);
}

Conversion::~Conversion()
{
    if (state() != QProcess::NotRunning) {
        disconnect(this, nullptr, nullptr, nullptr);
        QProcess::kill();
        waitForFinished(3000);
    }
}

void Conversion::execute()
{
    start();
}

void Conversion::parseDirectionInfo(QByteArray &path)
{
    const QString fileName = QString::fromUtf8(path);
    bool ok = false;
    const QStringList lines = readTableLines(fileName, &ok);
    if (!ok)
        return;
    for (const QString &line : lines) {
        const QStringList fields = line.split(QLatin1Char(','));
        if (fields.size() < 2) {
            qCritical() << QStringLiteral("Error parsing line %1 in file %2").arg(line, fileName);
            continue;
        }
        m_nameMap.insert(fields.at(1), fields.at(0));
        if (fields.size() >= 3)
            m_directionList << fields.at(1);
    }
}

QString Conversion::resolvedProgram(QString *reason) const
{
    QString why;
    QString found;
    if (m_program.contains(QLatin1Char('/')) || m_program.contains(QLatin1Char('\\'))) {
        const QFileInfo info(m_program);
        if (!info.exists())
            why = QStringLiteral("does not exist");
        else if (!info.isFile() || !info.isExecutable())
            why = QStringLiteral("is not an executable file");
        else
            found = info.absoluteFilePath();
    } else {
        found = EngineLocator::find(m_program);
        if (found.isEmpty()) {
            const QStringList folders = EngineLocator::folders();
            why = QStringLiteral("was not found beside the application (%1), in %2 or on PATH")
                      .arg(QDir::toNativeSeparators(folders.at(0)),
                           QDir::toNativeSeparators(folders.at(1)));
        }
    }
    if (reason)
        *reason = why;
    return found;
}

QString Conversion::engineKey(const QString &value) const
{
    // Only names the engine cannot take as they are get their key.
    if (value.contains(QLatin1Char('/')) || value.contains(QLatin1String("WSM")))
        return m_nameMap.value(value);
    return value;
}

QString Conversion::takeTablesDdl(QString &extraOptions, QStringList &notes) const
{
    QString path;
    const int at = extraOptions.indexOf(TablesDdlSwitch);
    if (at >= 0) {
        const int from = at > 0 ? at - 1 : at;
        const int open = extraOptions.indexOf(QLatin1Char('"'), at);
        const int close = open >= 0 ? extraOptions.indexOf(QLatin1Char('"'), open + 1) : -1;
        if (open >= 0 && close > open) {
            path = extraOptions.mid(open + 1, close - open - 1);
            extraOptions.remove(from, close - from + 1);
        } else {
            // Unquoted: the value runs to the next blank.
            const int valueStart = at + TablesDdlSwitch.size();
            int end = extraOptions.indexOf(QLatin1Char(' '), valueStart);
            if (end < 0)
                end = extraOptions.size();
            path = extraOptions.mid(valueStart, end - valueStart);
            extraOptions.remove(from, end - from);
        }
    } else {
        const QString candidate = QDir(m_ddlFolder).filePath(TablesDdlName);
        if (QFile::exists(candidate))
            path = candidate;
    }
    if (path.isEmpty())
        return path;

    const QString encoding = identifyEncoding(path);
    if (encoding.isEmpty()) {
        notes << QStringLiteral("The tables DDL file '%1' cannot be read; it is passed on as it is.")
                     .arg(QDir::toNativeSeparators(path));
    } else if (encoding != QLatin1String("System")) {
        QDir().mkpath(m_copyFolder);
        const QString copy = m_copyFolder + QDir::separator() + TablesDdlName;
        QFile::remove(copy);
        createEncodedCopyFile(path, copy, encoding, QStringLiteral("System"));
        if (QFile::exists(copy))
            path = copy;
    }
    return QDir::toNativeSeparators(path);
}

QString Conversion::maskedDisplayLine(const QString &program,
                                      const QStringList &arguments) const
{
    QString line = program;
    for (QString argument : arguments) {
        if (!m_password.isEmpty()) {
            const QString secret = QStringLiteral("/P") + m_password;
            for (int at = argument.indexOf(secret); at >= 0; at = argument.indexOf(secret, at + 1)) {
                const int end = at + secret.size();
                const bool startsWord = at == 0 || argument.at(at - 1).isSpace();
                const bool endsWord = end == argument.size() || argument.at(end).isSpace();
                if (startsWord && endsWord)
                    argument.replace(at + 2, m_password.size(), QStringLiteral("****"));
            }
        }
        line += QLatin1Char(' ') + argument;
    }
    return line;
}

bool Conversion::start()
{
    m_output.clear();
    m_lastArguments.clear();
    m_displayLine.clear();
    m_stopper->resetEvent();

    const QString outputDir = QDir::toNativeSeparators(m_outputDir);
    const QString files = QDir::toNativeSeparators(m_fileList);
    if (outputDir.isEmpty() || files.isEmpty()) {
        appendLog(QStringLiteral("Incorrect source file or destination path '%1' '%2'")
                      .arg(outputDir, files));
        return false;
    }

    QStringList notes;
    QStringList arguments;
    QString filesArgument = QStringLiteral("%1=\"%2\"").arg(QStringLiteral("/F"), files);
    // Long lists go through a file: the command line has a length limit.
    if (files.count(QLatin1Char('|')) > 9) {
        QDir().mkpath(WorkingFolder::path());
        const QString listPath = WorkingFolder::path() + QStringLiteral("ffile.txt");
        QFile list(listPath);
        if (list.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
            list.write(files.toUtf8());
            list.close();
            filesArgument = QStringLiteral("%1=\"%2\"").arg(QStringLiteral("/FF"), listPath);
        } else {
            notes << QStringLiteral("Cannot write the file list '%1': %2; the files are passed inline.")
                         .arg(listPath, list.errorString());
        }
    }
    arguments << filesArgument;
    arguments << QStringLiteral("/DIR=\"") + outputDir + QLatin1Char('"');
    arguments << QStringLiteral("/SOURCE=") + engineKey(m_parameters.value(QStringLiteral("/SOURCE=")));
    arguments << QStringLiteral("/TARGET=") + engineKey(m_parameters.value(QStringLiteral("/TARGET=")));
    for (const char *key : {"/Source_API=", "/Source_DB=", "/Target_API=", "/Target_DB="}) {
        const QString name = QString::fromLatin1(key);
        if (m_parameters.contains(name))
            arguments << name + m_parameters.value(name);
    }
    QString extra = m_extraOptions;
    const QString ddl = takeTablesDdl(extra, notes);
    if (!ddl.isEmpty())
        arguments << QStringLiteral("%1\"%2\"").arg(TablesDdlSwitch, ddl);
    extra = extra.trimmed();
    if (!extra.isEmpty())
        arguments << extra;

    QString reason;
    const QString program = resolvedProgram(&reason);
    m_lastArguments = arguments;
    m_displayLine = maskedDisplayLine(m_program, arguments);
    qDebug() << "Command line:" << m_displayLine;
    m_output.appendText(logBytes(m_displayLine) + '\n');
    Q_EMIT standardOutputChanged();
    for (const QString &note : qAsConst(notes))
        appendLog(note);

    if (!QFileInfo(outputDir).isDir()) {
        appendLog(QStringLiteral("The output folder '%1' does not exist; nothing was converted.")
                      .arg(outputDir));
        return false;
    }
    if (program.isEmpty()) {
        appendLog(QStringLiteral("The conversion engine '%1' %2; nothing was converted.")
                      .arg(m_program, reason));
        return false;
    }
    m_startedProgram = program;
    QProcess::start(program, arguments, QIODevice::ReadWrite);
    return true;
}

QByteArray Conversion::logBytes(const QString &text)
{
    // The log reads the buffer as the engine writes it: local 8-bit on a
    // Japanese system, UTF-8 elsewhere.
    return ansiCodePage() == 932 ? text.toLocal8Bit() : text.toUtf8();
}

void Conversion::appendLog(const QString &line)
{
    const QByteArray &buffer = m_output.buffer();
    QByteArray text;
    if (!buffer.isEmpty() && !buffer.endsWith('\n'))
        text += '\n';
    text += logBytes(line) + '\n';
    m_output.appendText(text);
    Q_EMIT standardOutputChanged();
}

void Conversion::reportProcessError(QProcess::ProcessError error)
{
    switch (error) {
    case QProcess::FailedToStart:
        appendLog(QStringLiteral("The conversion engine '%1' could not be started: %2")
                      .arg(m_startedProgram, errorString()));
        break;
    case QProcess::ReadError:
    case QProcess::WriteError:
        appendLog(QStringLiteral("Communication with the conversion engine failed: %1")
                      .arg(errorString()));
        break;
    default:
        // Crashes and timeouts are told by the end-of-run summary.
        break;
    }
}

void Conversion::stop()
{
    m_stopper->stop(this);
}

void Conversion::terminate()
{
    m_stopper->kill();
    qDebug() << "Terminated";
}

void Conversion::readStandardOutput()
{
    const QByteArray chunk = readAllStandardOutput();
    if (chunk.isEmpty())
        return;
    m_output.appendOutput(chunk);
    Q_EMIT standardOutputChanged();
    if (m_output.scan())
        Q_EMIT errorsChanged();
}

void Conversion::setSourceConversion(QString sourceConversion)
{
    m_parameters.insert(QStringLiteral("/SOURCE="), sourceConversion);
}

void Conversion::setTargetConversion(QString targetConversion)
{
    m_parameters.insert(QStringLiteral("/TARGET="), targetConversion);
}

static void setOrRemove(QMap<QString, QString> &map, const QString &key, const QString &value)
{
    if (value.isEmpty())
        map.remove(key);
    else
        map.insert(key, value);
}

void Conversion::setSourceConversionOption(QString database, QString api)
{
    setOrRemove(m_parameters, QStringLiteral("/Source_DB="), database);
    setOrRemove(m_parameters, QStringLiteral("/Source_API="), api);
}

void Conversion::setTargetConversionOption(QString database, QString api)
{
    setOrRemove(m_parameters, QStringLiteral("/Target_DB="), database);
    setOrRemove(m_parameters, QStringLiteral("/Target_API="), api);
}

void Conversion::setFile(QStringList absolutePathFile)
{
    m_fileList = absolutePathFile.join(QStringLiteral("| "));
}

void Conversion::setOutputDir(QString outputDir)
{
    m_outputDir = outputDir;
}
