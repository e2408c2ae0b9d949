#pragma once

#include "command.h"
#include "conversionoutput.h"

#include <QMap>
#include <QProcess>
#include <QStringList>

class StopConversion;

/** Runs the conversion engine on a set of scripts and gathers what it prints. */
class Conversion : public QProcess, public Command
{
    Q_OBJECT
public:
    explicit Conversion(QObject *parent);
    ~Conversion() override;

    void execute() override;
    /**
     * Builds the engine's command line and starts it. Returns false when the
     * engine was not started; the log then says why.
     */
    bool start();

    /** Adds one direction table's rows to the name map and the direction list. */
    void parseDirectionInfo(QByteArray &path);

    const QMap<QString, QString> &nameMap() const { return m_nameMap; }
    const QStringList &directionList() const { return m_directionList; }
    const QMap<QString, QString> &parameters() const { return m_parameters; }
    QString program() const { return m_program; }

    /**
     * The engine to run: a path, or a bare name that is looked for beside the
     * application and then on PATH. "morvane" by default.
     */
    void setEngineProgram(const QString &program) { m_program = program; }
    /** The engine as it will be started, or empty with @p reason when none is found. */
    QString resolvedProgram(QString *reason = nullptr) const;

    /** Further engine switches as one text ("/PRJF=", "/INI=", "/SRCENC=", ...). */
    void setExtraOptions(const QString &options) { m_extraOptions = options; }
    QString extraOptions() const { return m_extraOptions; }
    /** Where a default "tables_ddl.sql" is looked for. */
    void setDdlFolder(const QString &folder) { m_ddlFolder = folder; }
    /** Where a re-encoded copy of the tables DDL file is written. */
    void setCopyFolder(const QString &folder) { m_copyFolder = folder; }
    /** The password inside the extra options, shown as "****" in the log. */
    void setPassword(const QString &password) { m_password = password; }

    /** The engine program of the last start, as found. */
    QString startedProgram() const { return m_startedProgram; }
    /** The arguments of the last start, as handed to the process. */
    QStringList lastArguments() const { return m_lastArguments; }
    /** The program and arguments as the log shows them. */
    QString displayLine() const { return m_displayLine; }

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

Q_SIGNALS:
    void showTerminateDialog();
    void standardOutputChanged();
    void errorsChanged();

public Q_SLOTS:
    /** Ends the engine by force. */
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
    QString engineKey(const QString &value) const;
    QString takeTablesDdl(QString &extraOptions, QStringList &notes) const;
    QString maskedDisplayLine(const QString &program, const QStringList &arguments) const;
    void reportProcessError(QProcess::ProcessError error);

    QMap<QString, QString> m_nameMap;
    QMap<QString, QString> m_parameters;
    QStringList m_directionList;
    QString m_ddlFolder;
    QString m_fileList;
    QString m_outputDir;
    QString m_program;
    ConversionOutput m_output;
    QString m_copyFolder;
    QString m_extraOptions;
    StopConversion *m_stopper = nullptr;
    QString m_password;
    QString m_startedProgram;
    QStringList m_lastArguments;
    QString m_displayLine;
};
