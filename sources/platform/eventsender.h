#pragma once

#include "stopeventapi.h"

#include <QByteArray>
#include <QString>

/**
 * The named stop event shared with the engine. Sending it asks the engine to
 * end after the statement it is working on; the engine watches it on its own.
 *
 * On Windows it is an automatic-reset event; elsewhere a named semaphore that
 * holds at most one pending request. Off Windows every run has an event of its
 * own, named after the user, the process and the run, and the engine learns
 * the name from MORVANE_STOP_EVENT; the event is removed when the run ends, so
 * runs of other windows and other users never see each other's requests.
 */
class EventSender
{
public:
    EventSender() = default;
    ~EventSender();
    EventSender(const EventSender &) = delete;
    EventSender &operator=(const EventSender &) = delete;

    /**
     * Creates (or opens) the event called @p name. Returns false, with the
     * reason in @p error, when it cannot; the caller goes on without it.
     */
    bool open(const QByteArray &name, QString *error);
    /** Closes the event and, off Windows, removes its name. */
    void remove();
    bool isOpen() const { return m_Event != nullptr; }
    const QByteArray &name() const { return m_name; }

    /** Sets the event; false, with the reason in @p error, when that fails. */
    bool Send(QString *error = nullptr);
    /** Clears a request the engine has not taken, so the next run starts clean. */
    void reset();
    /** Whether a request is waiting (for tests and diagnostics). */
    bool isSet() const;

    /** The event name of run number @p run of this process. */
    static QByteArray nameForRun(int run);

private:
    void *m_Event = nullptr;
    QByteArray m_name;
};
