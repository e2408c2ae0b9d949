#pragma once

/**
 * The named stop event shared with the engine. Sending it asks the engine to
 * end after the statement it is working on; the engine watches it on its own.
 *
 * On Windows it is an automatic-reset event; elsewhere a named semaphore that
 * holds at most one pending request. The name can be replaced through the
 * environment variable MORVANE_STOP_EVENT (both sides read it), so that runs
 * which must not see each other's requests, such as parallel tests, stay apart.
 */
class EventSender
{
public:
    EventSender();
    ~EventSender();
    EventSender(const EventSender &) = delete;
    EventSender &operator=(const EventSender &) = delete;

    void Send();
    /** Clears a request the engine has not taken, so the next run starts clean. */
    void reset();
    /** Whether a request is waiting (for tests and diagnostics). */
    bool isSet() const;

    /** The event's name as both sides open it. */
    static const char *name();

private:
    void *m_Event = nullptr;
};

namespace StopEventApi {
// The Win32 side, kept free of Qt so that it can be checked without it.
// Results follow the Win32 calls: null or false on failure, with the code in
// *error.
void *create(const char *name, unsigned long *error);
bool set(void *event, unsigned long *error);
void reset(void *event);
bool isSet(void *event);
void close(void *event);
} // namespace StopEventApi
