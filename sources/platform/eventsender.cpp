#include "eventsender.h"

#include <QtGlobal>

#ifdef Q_OS_WIN
#include "eventsender_win.cpp"
#else
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <semaphore.h>
#include <unistd.h>

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
    // must not leave a stale one behind.
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

void unlink(const char *name)
{
    sem_unlink(name);
}

void describe(unsigned long error, char *text, unsigned long size)
{
    std::strncpy(text, std::strerror(static_cast<int>(error)), size - 1);
    text[size - 1] = '\0';
}

} // namespace StopEventApi
#endif

namespace {

QString errorText(const char *call, unsigned long code)
{
    char text[256] = {0};
    StopEventApi::describe(code, text, sizeof(text));
    return QStringLiteral("%1 failed: %2 (%3)")
        .arg(QLatin1String(call), QString::fromLocal8Bit(text).trimmed())
        .arg(code);
}

} // namespace

EventSender::~EventSender()
{
    remove();
}

bool EventSender::open(const QByteArray &name, QString *error)
{
    remove();
    unsigned long code = 0;
    m_Event = StopEventApi::create(name.constData(), &code);
    if (!m_Event) {
        if (error)
            *error = errorText("creating the stop event", code);
        return false;
    }
    m_name = name;
    return true;
}

void EventSender::remove()
{
    if (!m_Event)
        return;
    StopEventApi::close(m_Event);
    StopEventApi::unlink(m_name.constData());
    m_Event = nullptr;
    m_name.clear();
}

bool EventSender::Send(QString *error)
{
    unsigned long code = 0;
    if (m_Event && StopEventApi::set(m_Event, &code))
        return true;
    if (error)
        *error = m_Event ? errorText("EventSender::Send", code)
                         : QStringLiteral("there is no stop event for this run");
    return false;
}

void EventSender::reset()
{
    if (m_Event)
        StopEventApi::reset(m_Event);
}

bool EventSender::isSet() const
{
    return m_Event && StopEventApi::isSet(m_Event);
}

QByteArray EventSender::nameForRun(int run)
{
#ifdef Q_OS_WIN
    // The engine on Windows watches the one event name it knows.
    Q_UNUSED(run)
    return QByteArrayLiteral("MorvaneStopEvent");
#else
    return "/MorvaneStopEvent." + QByteArray::number(qulonglong(::getuid())) + '.'
        + QByteArray::number(qlonglong(::getpid())) + '.' + QByteArray::number(run);
#endif
}
