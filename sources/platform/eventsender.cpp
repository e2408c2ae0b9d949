#include "eventsender.h"

#include <QByteArray>
#include <QtGlobal>

#ifdef Q_OS_WIN
#include "eventsender_win.cpp"
#else
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <semaphore.h>

namespace StopEventApi {

void *create(const char *name, unsigned long *error)
{
    sem_t *semaphore = sem_open(name, O_CREAT, 0600, 0);
    if (semaphore == SEM_FAILED) {
        *error = static_cast<unsigned long>(errno);
        return nullptr;
    }
    return semaphore;
}

bool set(void *event, unsigned long *error)
{
    auto *semaphore = static_cast<sem_t *>(event);
    // An event is either set or not: a second request while one is pending
    // must not leave a stale one behind for the next run.
    int value = 0;
    if (sem_getvalue(semaphore, &value) == 0 && value > 0)
        return true;
    if (sem_post(semaphore) == 0)
        return true;
    *error = static_cast<unsigned long>(errno);
    return false;
}

void reset(void *event)
{
    auto *semaphore = static_cast<sem_t *>(event);
    while (sem_trywait(semaphore) == 0) {
    }
}

bool isSet(void *event)
{
    int value = 0;
    return sem_getvalue(static_cast<sem_t *>(event), &value) == 0 && value > 0;
}

void close(void *event)
{
    sem_close(static_cast<sem_t *>(event));
}

} // namespace StopEventApi
#endif

EventSender::EventSender()
{
    unsigned long error = 0;
    m_Event = StopEventApi::create(name(), &error);
    if (m_Event == nullptr)
        qFatal("EventSender m_Event == 0%lu", error);
}

EventSender::~EventSender()
{
    if (m_Event)
        StopEventApi::close(m_Event);
}

void EventSender::Send()
{
    unsigned long error = 0;
    if (!StopEventApi::set(m_Event, &error))
        qFatal("EventSender::Send%lu", error);
}

void EventSender::reset()
{
    StopEventApi::reset(m_Event);
}

bool EventSender::isSet() const
{
    return StopEventApi::isSet(m_Event);
}

const char *EventSender::name()
{
    static const QByteArray configured = qgetenv("MORVANE_STOP_EVENT");
#ifdef Q_OS_WIN
    static const char *const fallback = "MorvaneStopEvent";
#else
    static const char *const fallback = "/MorvaneStopEvent";
#endif
    return configured.isEmpty() ? fallback : configured.constData();
}
