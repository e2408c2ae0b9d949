#include "commandline.h"

#include <QDir>
#include <QTextCodec>
#include <QTextDecoder>
#include <QTimer>

namespace {
constexpr int KillAfterMs = 2000;
}

CommandLine::CommandLine(QObject *parent)
    : QObject(parent)
{
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    connect(&m_process, &QProcess::readyRead, this, &CommandLine::readOutput);
    connect(&m_process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
            [this](int code, QProcess::ExitStatus status) {
                readOutput();
                Q_EMIT finished(status == QProcess::CrashExit ? tr("ended by a signal")
                                                              : tr("exit code %1").arg(code));
            });
    connect(&m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            Q_EMIT finished(tr("could not start: %1").arg(m_process.errorString()));
    });
}

CommandLine::~CommandLine()
{
    m_process.disconnect(this);
    if (isRunning()) {
        m_process.kill();
        m_process.waitForFinished(KillAfterMs);
    }
}

bool CommandLine::run(const QString &command, const QString &folder)
{
    if (isRunning() || command.trimmed().isEmpty())
        return false;
    // Output is read in the locale's encoding; a character split between two
    // reads is completed by the next one.
    m_decoder.reset(QTextCodec::codecForLocale()->makeDecoder());
    m_process.setWorkingDirectory(folder.isEmpty() ? QDir::homePath() : folder);
#ifdef Q_OS_WIN
    m_process.setProgram(QStringLiteral("cmd.exe"));
    m_process.setNativeArguments(QStringLiteral("/c ") + command);
#else
    m_process.setProgram(QStringLiteral("/bin/sh"));
    m_process.setArguments({QStringLiteral("-c"), command});
#endif
    m_process.start(QIODevice::ReadWrite);
    // Nothing is typed into the command: a command that reads its input ends
    // instead of waiting for ever.
    m_process.closeWriteChannel();
    return true;
}

void CommandLine::stop()
{
    if (!isRunning())
        return;
    m_process.terminate();
    QTimer::singleShot(KillAfterMs, &m_process, [this] {
        if (isRunning())
            m_process.kill();
    });
}

void CommandLine::readOutput()
{
    const QByteArray bytes = m_process.readAll();
    if (!bytes.isEmpty() && m_decoder)
        Q_EMIT output(m_decoder->toUnicode(bytes));
}
