// Win32 stop event. Built into eventsender.cpp on Windows; checked alone
// elsewhere with the MinGW cross compiler.
#include "eventsender.h"

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

} // namespace StopEventApi
