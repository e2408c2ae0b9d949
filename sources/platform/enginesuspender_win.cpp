// Win32 suspend and resume of the engine's threads. Built into
// enginesuspender.cpp on Windows; checked alone elsewhere with MinGW.
#include "enginesuspender.h"

#include <windows.h>
#include <tlhelp32.h>

#include <cstdio>
#include <cstring>

namespace {

void reportError(const char *call)
{
    const DWORD code = GetLastError();
    char text[512] = {0};
    FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0,
                   text, sizeof(text) - 1, nullptr);
    std::fprintf(stderr, "%s failed with error %lu: %s\n", call, static_cast<unsigned long>(code),
                 text);
}

} // namespace

namespace EngineSuspender {

void suspendOrResume(unsigned long processId, bool suspend)
{
    HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    if (snapshot == INVALID_HANDLE_VALUE) {
        reportError("CreateToolhelp32Snapshot (of threads)");
        return;
    }
    THREADENTRY32 entry;
    entry.dwSize = sizeof(entry);
    if (Thread32First(snapshot, &entry)) {
        do {
            if (entry.th32OwnerProcessID != processId)
                continue;
            HANDLE thread = OpenThread(THREAD_SUSPEND_RESUME, FALSE, entry.th32ThreadID);
            if (thread == nullptr)
                continue;
            if (suspend)
                SuspendThread(thread);
            else
                ResumeThread(thread);
            CloseHandle(thread);
        } while (Thread32Next(snapshot, &entry));
    }
    CloseHandle(snapshot);
}

int forEachEngineProcess(const char *executableName, bool suspend)
{
    HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    if (snapshot == INVALID_HANDLE_VALUE) {
        reportError("CreateToolhelp32Snapshot (of processes)");
        return 0;
    }
    PROCESSENTRY32 entry;
    entry.dwSize = sizeof(entry);
    if (!Process32First(snapshot, &entry)) {
        reportError("Process32First");
        CloseHandle(snapshot);
        return 0;
    }
    int count = 0;
    do {
        if (std::strcmp(entry.szExeFile, executableName) == 0) {
            suspendOrResume(entry.th32ProcessID, suspend);
            ++count;
        }
    } while (Process32Next(snapshot, &entry));
    CloseHandle(snapshot);
    return count;
}

} // namespace EngineSuspender
