#include "stopconversion.h"

#include "enginesuspender.h"

#include <QProcess>

namespace {

bool isActive(const QProcess *process)
{
    return process && process->state() != QProcess::NotRunning;
}

} // namespace

StopConversion::StopConversion(QObject *parent)
    : QObject(parent)
{
    // One connection for the object's life: however often Stop is pressed,
    // each timeout asks at most one question.
    connect(&m_timer, &QTimer::timeout, this, &StopConversion::timeOut);
}

bool StopConversion::openEvent(const QByteArray &name, QString *error)
{
    return m_eventSender.open(name, error);
}

void StopConversion::releaseEvent()
{
    m_eventSender.remove();
}

bool StopConversion::stop(QProcess *process, QString *error)
{
    m_process = process;
    if (!isActive(process))
        return true;
    const bool sent = m_eventSender.Send(error);
    // Unsent, the engine cannot know: the question comes at once.
    if (isActive(process))
        m_timer.start(sent ? m_stopTimeout : 0);
    return sent;
}

void StopConversion::timeOut()
{
    if (!m_process)
        return;
    // Stopped before asking: the question runs its own event loop, in which
    // a running timer would ask again.
    m_timer.stop();
    if (isActive(m_process))
        Q_EMIT showTerminateDialog();
}

void StopConversion::kill(QProcess *process)
{
    if (process)
        m_process = process;
    if (isActive(m_process)) {
        EngineSuspender::terminateTree(m_process->processId());
        m_process->kill();
    }
    m_eventSender.reset();
    m_timer.stop();
}
