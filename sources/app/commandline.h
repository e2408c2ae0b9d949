#pragma once

#include <QObject>
#include <QProcess>

#include <memory>

class QTextDecoder;

/**
 * Runs what the user typed on the "Commands:" line through the system shell
 * (/bin/sh -c, cmd /c on Windows) in a given folder, one command at a time,
 * and hands its output (standard output and errors, merged) over as text.
 */
class CommandLine : public QObject
{
    Q_OBJECT
public:
    explicit CommandLine(QObject *parent = nullptr);
    /** Ends a command that is still running. */
    ~CommandLine() override;

    /** Starts @p command in @p folder; false when one is still running or the text is blank. */
    bool run(const QString &command, const QString &folder);
    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }
    /** Asks a running command to end, and ends it by force if it does not. */
    void stop();

Q_SIGNALS:
    void output(const QString &text);
    /** @p status is what the log shows: the exit code, or how it failed. */
    void finished(const QString &status);

private:
    void readOutput();

    QProcess m_process;
    std::unique_ptr<QTextDecoder> m_decoder;
};
