#include "conversion.h"

#include "encodings.h"
#include "enginelocator.h"
#include "engineprocess.h"
#include "enginesuspender.h"
#include "logging.h"
#include "reader.h"
#include "stopconversion.h"
#include "workingfolder.h"

#include <QAtomicInt>
#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QProcessEnvironment>
#include <QThread>

namespace {

const QString StopEventVariable = QStringLiteral("MORVANE_STOP_EVENT");

QAtomicInt &runCounter()
{
    static QAtomicInt counter;
    return counter;
}

} // namespace

Conversion::Conversion(QObject *parent)
    : QObject(parent)
    , m_process(new EngineProcess(this))
{
    m_stopper = new StopConversion(this);
    for (const char *table : {":/directions/DBDirections.csv", ":/directions/AppDirections.csv",
                              ":/directions/DatabaseAPI.csv"}) {
        QByteArray path(table);
        parseDirectionInfo(path);
    }
    m_directionList.sort(Qt::CaseSensitive);
    m_request.program = QStringLiteral("morvane");
    m_parameters.insert(QStringLiteral("/D="), QStringLiteral("FIXED"));
    m_request.outputFolder = QStringLiteral("c:/");
    m_request.ddlFolder = WorkingFolder::path();
    m_request.copyFolder = WorkingFolder::path() + QStringLiteral("Encoded");
    m_request.listFile = WorkingFolder::path() + QStringLiteral("ffile.txt");
    qCDebug(lcConversion) << "Conversion::Conversion" << QThread::currentThread();

    // Error messages of the engine belong in the log as much as its output.
    m_process->setProcessChannelMode(QProcess::MergedChannels);
    connect(m_process, &QProcess::readyReadStandardOutput, this, &Conversion::readStandardOutput);
    connect(m_stopper, &StopConversion::showTerminateDialog, this,
            &Conversion::showTerminateDialog);
    connect(m_process, &QProcess::errorOccurred, this, &Conversion::reportProcessError);
    connect(m_process, &QProcess::started, this, [this] {
        // Handed over at once and the pipe closed: the engine reads to its end.
        if (!m_input.isEmpty())
            m_process->write(m_input);
        m_input.fill('\0');
        m_input.clear();
        m_process->closeWriteChannel();
    });
    connect(m_process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            &Conversion::runEnded);
}

Conversion::~Conversion()
{
    if (isRunning()) {
        m_process->disconnect(this);
        EngineSuspender::terminateTree(m_process->processId());
        m_process->kill();
        m_process->waitForFinished(3000);
    }
}

QProcess *Conversion::process() const
{
    return m_process;
}

QProcess::ProcessState Conversion::state() const
{
    return m_process->state();
}

int Conversion::runCount()
{
    return runCounter().loadAcquire();
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
    if (m_request.program.contains(QLatin1Char('/')) || m_request.program.contains(QLatin1Char('\\'))) {
        const QFileInfo info(m_request.program);
        if (!info.exists())
            why = QStringLiteral("does not exist");
        else if (!info.isFile() || !info.isExecutable())
            why = QStringLiteral("is not an executable file");
        else
            found = info.absoluteFilePath();
    } else {
        found = EngineLocator::find(m_request.program);
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

void Conversion::setEncodings(const QString &source, const QString &target)
{
    m_request.sourceEncoding = source;
    m_request.targetEncoding = target;
}

EngineRequest Conversion::request() const
{
    EngineRequest request = m_request;
    request.source = m_parameters.value(QStringLiteral("/SOURCE="));
    request.target = m_parameters.value(QStringLiteral("/TARGET="));
    request.nameMap = m_nameMap;
    for (const char *key : {"/Source_API=", "/Source_DB=", "/Target_API=", "/Target_DB="}) {
        const QString name = QString::fromLatin1(key);
        if (m_parameters.contains(name))
            request.sideOptions.insert(name, m_parameters.value(name));
    }
    return request;
}

void Conversion::prepareStopEvent()
{
    const QByteArray name = EventSender::nameForRun(runCounter().fetchAndAddOrdered(1) + 1);
    QProcessEnvironment environment = m_process->processEnvironment();
    if (environment.isEmpty())
        environment = QProcessEnvironment::systemEnvironment();
    // Named even when it cannot be made: an engine left to its default name
    // could take a request meant for somebody else.
    environment.insert(StopEventVariable, QString::fromLatin1(name));
    QString error;
    if (m_stopper->openEvent(name, &error)) {
        m_stopEventName = name;
    } else {
        m_stopEventName.clear();
        appendLog(QStringLiteral("The stop event '%1' could not be made (%2); Stop will offer to "
                                 "end the engine by force.")
                      .arg(QString::fromLatin1(name), error));
    }
    m_process->setProcessEnvironment(environment);
}

bool Conversion::start()
{
    m_output.clear();
    m_lastArguments.clear();
    m_displayLine.clear();

    const EngineCommand command = engineCommand(request());
    if (!command.error.isEmpty()) {
        appendLog(command.error);
        return false;
    }
    QString reason;
    const QString program = resolvedProgram(&reason);
    m_lastArguments = command.arguments;
    m_displayLine = command.displayLine;
    qCDebug(lcConversion) << "Command line:" << m_displayLine;
    m_output.appendText(logBytes(m_displayLine) + '\n');
    Q_EMIT standardOutputChanged();
    for (const QString &note : command.notes)
        appendLog(note);

    const QString outputDir = QDir::toNativeSeparators(m_request.outputFolder);
    if (!QFileInfo(outputDir).isDir()) {
        appendLog(QStringLiteral("The output folder '%1' does not exist; nothing was converted.")
                      .arg(outputDir));
        return false;
    }
    if (program.isEmpty()) {
        appendLog(QStringLiteral("The conversion engine '%1' %2; nothing was converted.")
                      .arg(m_request.program, reason));
        return false;
    }
    prepareStopEvent();
    m_startedProgram = program;
    m_input = command.input;
    m_process->start(program, command.arguments, QIODevice::ReadWrite);
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

void Conversion::runEnded()
{
    m_stopper->releaseEvent();
    m_input.clear();
}

void Conversion::reportProcessError(QProcess::ProcessError error)
{
    switch (error) {
    case QProcess::FailedToStart:
        runEnded();
        appendLog(QStringLiteral("The conversion engine '%1' could not be started: %2")
                      .arg(m_startedProgram, m_process->errorString()));
        break;
    case QProcess::ReadError:
        appendLog(QStringLiteral("Communication with the conversion engine failed: %1")
                      .arg(m_process->errorString()));
        break;
    default:
        // Crashes and timeouts are told by the end-of-run summary; an engine
        // that does not read its input is none of our business.
        break;
    }
}

void Conversion::stop()
{
    QString error;
    if (!m_stopper->stop(m_process, &error))
        appendLog(QStringLiteral("The stop request could not be sent (%1).").arg(error));
}

void Conversion::suspend(bool suspend)
{
    if (isRunning())
        EngineSuspender::suspendTree(m_process->processId(), suspend);
}

void Conversion::terminate()
{
    m_stopper->kill(m_process);
    qCDebug(lcConversion) << "Terminated";
}

void Conversion::readStandardOutput()
{
    const QByteArray chunk = m_process->readAllStandardOutput();
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
    m_request.files = absolutePathFile;
}

void Conversion::setOutputDir(QString outputDir)
{
    m_request.outputFolder = outputDir;
}
