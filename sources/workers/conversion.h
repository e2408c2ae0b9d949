#pragma once

#include "conversionoutput.h"
#include "enginerequest.h"

#include <QMap>
#include <QObject>
#include <QProcess>
#include <QStringList>

class EngineProcess;
class StopConversion;

/**
 * Runs the conversion engine on a set of scripts and gathers what it prints.
 * The engine is a child process that this object owns; every run has a stop
 * event of its own, removed when the run ends.
 */
class Conversion : public QObject
{
    Q_OBJECT
public:
    explicit Conversion(QObject *parent = nullptr);
    ~Conversion() override;

    /**
     * Builds the engine's command line and starts it. Returns false when the
     * engine was not started; the log then says why.
     */
    bool start();
    /** The engine's process, for its state, its signals and its environment. */
    QProcess *process() const;
    QProcess::ProcessState state() const;
    bool isRunning() const { return state() != QProcess::NotRunning; }

    /** Adds one direction table's rows to the name map and the direction list. */
    void parseDirectionInfo(QByteArray &path);

    const QMap<QString, QString> &nameMap() const { return m_nameMap; }
    const QStringList &directionList() const { return m_directionList; }
    const QMap<QString, QString> &parameters() const { return m_parameters; }
    QString program() const { return m_request.program; }

    /**
     * The engine to run: a path, or a bare name that is looked for beside the
     * application and then on PATH. "morvane" by default.
     */
    void setEngineProgram(const QString &program) { m_request.program = program; }
    /** The engine as it will be started, or empty with @p reason when none is found. */
    QString resolvedProgram(QString *reason = nullptr) const;

    /** The option map of the option dialogs ("/U", "/P", "/PRJF=", " ", ...). */
    void setEngineOptions(const QMap<QString, QString> &options) { m_request.options = options; }
    /** The encodings of the sources and of the converted files; empty for no switch. */
    void setEncodings(const QString &source, const QString &target);
    /** The INI passed when the options name none; empty for none. */
    void setDefaultIni(const QString &path) { m_request.defaultIni = path; }
    /** Where a default "tables_ddl.sql" is looked for. */
    void setDdlFolder(const QString &folder) { m_request.ddlFolder = folder; }
    /** Where a re-encoded copy of the tables DDL file is written. */
    void setCopyFolder(const QString &folder) { m_request.copyFolder = folder; }
    /** What the next start() hands to engineCommand(). */
    EngineRequest request() const;

    /** The engine program of the last start, as found. */
    QString startedProgram() const { return m_startedProgram; }
    /** The arguments of the last start, as handed to the process. */
    QStringList lastArguments() const { return m_lastArguments; }
    /** The program and arguments as the log shows them. */
    QString displayLine() const { return m_displayLine; }
    /** The name of the current (or last) run's stop event; empty when it could not be made. */
    QByteArray stopEventName() const { return m_stopEventName; }
    /** How many runs this process has started so far. */
    static int runCount();

    /** Everything the log shows for the current run. */
    const QByteArray &output() const { return m_output.buffer(); }
    const ConversionOutput &outputParser() const { return m_output; }
    ConversionOutput &outputParser() { return m_output; }
    const QVector<ConversionError> &errors() const { return m_output.errors(); }
    /** Appends one line of our own to the log. */
    void appendLog(const QString &line);

    StopConversion *stopper() const { return m_stopper; }
    /** Asks the engine to stop, politely first. */
    void stop();
    /** Suspends or resumes the engine and whatever it started. */
    void suspend(bool suspend);

Q_SIGNALS:
    void showTerminateDialog();
    void standardOutputChanged();
    void errorsChanged();

public Q_SLOTS:
    /** Ends the engine and whatever it started by force. */
    void terminate();
    void readStandardOutput();
    void setSourceConversion(QString sourceConversion);
    void setTargetConversion(QString targetConversion);
    void setSourceConversionOption(QString database, QString api);
    void setTargetConversionOption(QString database, QString api);
    void setFile(QStringList absolutePathFile);
    void setOutputDir(QString outputDir);

private:
    static QByteArray logBytes(const QString &text);
    void prepareStopEvent();
    void runEnded();
    void reportProcessError(QProcess::ProcessError error);

    EngineProcess *m_process;
    QMap<QString, QString> m_nameMap;
    QMap<QString, QString> m_parameters;
    QStringList m_directionList;
    // What the dialogs and the window set; the direction and side options
    // come from the parameter map at each start.
    EngineRequest m_request;
    ConversionOutput m_output;
    StopConversion *m_stopper = nullptr;
    QByteArray m_input;
    QString m_startedProgram;
    QStringList m_lastArguments;
    QString m_displayLine;
    QByteArray m_stopEventName;
};
