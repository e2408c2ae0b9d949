#include "stopconversion.h"

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

void StopConversion::stop(QProcess *process)
{
    m_process = process;
    if (!isActive(process))
        return;
    m_eventSender.Send();
    if (isActive(process))
        m_timer.start(StopTimeout);
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

void StopConversion::kill()
{
    if (m_process)
        m_process->kill();
    m_eventSender.reset();
    m_timer.stop();
}

void StopConversion::resetEvent()
{
    m_eventSender.reset();
}
