// Win32 suspend, resume and termination of the engine and its descendants.
// Built into enginesuspender.cpp on Windows; checked alone elsewhere with MinGW.
#include "enginesuspender.h"

#include <windows.h>
#include <tlhelp32.h>

#include <cstdio>
#include <vector>

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

// The engine first, then every process whose parent is already in the list.
std::vector<DWORD> processTree(DWORD root)
{
    std::vector<DWORD> tree{root};
    HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    if (snapshot == INVALID_HANDLE_VALUE) {
        reportError("CreateToolhelp32Snapshot (of processes)");
        return tree;
    }
    std::vector<PROCESSENTRY32> entries;
    PROCESSENTRY32 entry;
    entry.dwSize = sizeof(entry);
    if (!Process32First(snapshot, &entry)) {
        reportError("Process32First");
        CloseHandle(snapshot);
        return tree;
    }
    do {
        entries.push_back(entry);
    } while (Process32Next(snapshot, &entry));
    CloseHandle(snapshot);
    for (size_t i = 0; i < tree.size(); ++i) {
        for (const PROCESSENTRY32 &each : entries) {
            if (each.th32ParentProcessID == tree[i] && each.th32ProcessID != root)
                tree.push_back(each.th32ProcessID);
        }
    }
    return tree;
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

bool suspendTree(long long processId, bool suspend)
{
    if (processId <= 0)
        return false;
    for (DWORD each : processTree(static_cast<DWORD>(processId)))
        suspendOrResume(each, suspend);
    return true;
}

bool terminateTree(long long processId)
{
    if (processId <= 0)
        return false;
    bool ended = false;
    for (DWORD each : processTree(static_cast<DWORD>(processId))) {
        HANDLE process = OpenProcess(PROCESS_TERMINATE, FALSE, each);
        if (process == nullptr)
            continue;
        if (TerminateProcess(process, 1) && each == static_cast<DWORD>(processId))
            ended = true;
        CloseHandle(process);
    }
    return ended;
}

void prepareChild()
{
}

void adoptGroup(long long)
{
}

} // namespace EngineSuspender
