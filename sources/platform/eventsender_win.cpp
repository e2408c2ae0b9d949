// Win32 stop event. Built into eventsender.cpp on Windows; checked alone
// elsewhere with the MinGW cross compiler.
#include "stopeventapi.h"

#include <windows.h>

namespace StopEventApi {

void *create(const char *name, unsigned long *error)
{
    HANDLE event = CreateEventA(nullptr, FALSE, FALSE, name);
    if (event == nullptr)
        *error = GetLastError();
    return event;
}

bool set(void *event, unsigned long *error)
{
    if (SetEvent(static_cast<HANDLE>(event)))
        return true;
    *error = GetLastError();
    return false;
}

void reset(void *event)
{
    ResetEvent(static_cast<HANDLE>(event));
}

bool isSet(void *event)
{
    // Waiting takes the signal of an automatic-reset event: put it back.
    if (WaitForSingleObject(static_cast<HANDLE>(event), 0) != WAIT_OBJECT_0)
        return false;
    SetEvent(static_cast<HANDLE>(event));
    return true;
}

void close(void *event)
{
    CloseHandle(static_cast<HANDLE>(event));
}

void unlink(const char *)
{
    // A Windows event goes away with its last handle.
}

void describe(unsigned long error, char *text, unsigned long size)
{
    text[0] = '\0';
    FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0,
                   text, size - 1, nullptr);
}

} // namespace StopEventApi
