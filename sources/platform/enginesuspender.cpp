#include "enginesuspender.h"

#include <QtGlobal>

#ifdef Q_OS_WIN
#include "enginesuspender_win.cpp"
#else
#include <QDebug>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <cstring>
#include <unistd.h>

namespace EngineSuspender {

namespace {

bool signalGroup(long long processId, int signal, const char *name)
{
    if (processId <= 0)
        return false;
    const auto pid = static_cast<pid_t>(processId);
    if (::kill(-pid, signal) == 0)
        return true;
    // The group is gone (or was never made): the engine alone, if it is there.
    const int groupError = errno;
    if (::kill(pid, signal) == 0)
        return true;
    if (groupError != ESRCH || errno != ESRCH)
        qWarning().noquote() << QStringLiteral("kill(-%1, %2) failed: %3")
                                    .arg(processId)
                                    .arg(QLatin1String(name),
                                         QString::fromLocal8Bit(std::strerror(groupError)));
    return false;
}

} // namespace

void suspendOrResume(unsigned long processId, bool suspend)
{
    signalGroup(static_cast<long long>(processId), suspend ? SIGSTOP : SIGCONT,
                suspend ? "SIGSTOP" : "SIGCONT");
}

bool suspendTree(long long processId, bool suspend)
{
    return signalGroup(processId, suspend ? SIGSTOP : SIGCONT, suspend ? "SIGSTOP" : "SIGCONT");
}

bool terminateTree(long long processId)
{
    return signalGroup(processId, SIGKILL, "SIGKILL");
}

void prepareChild()
{
    ::setpgid(0, 0);
#ifdef F_SETPIPE_SZ
    // A failure leaves the system's size: nothing to report from here.
    ::fcntl(STDOUT_FILENO, F_SETPIPE_SZ, 1 << 20);
#endif
}

void adoptGroup(long long processId)
{
    // Fails harmlessly once the child has called exec.
    ::setpgid(static_cast<pid_t>(processId), static_cast<pid_t>(processId));
}

} // namespace EngineSuspender
#endif
