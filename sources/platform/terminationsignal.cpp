#include "terminationsignal.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

int g_pipe[2] = {-1, -1};
const int Signals[] = {SIGTERM, SIGHUP, SIGINT};

// Only async-signal-safe calls here: the number goes down the pipe and the
// event loop takes it from there.
void onSignal(int number)
{
    const int saved = errno;
    const unsigned char byte = static_cast<unsigned char>(number);
    ssize_t ignored = ::write(g_pipe[1], &byte, 1);
    (void)ignored;
    errno = saved;
}

} // namespace
#endif

TerminationSignal::TerminationSignal(QObject *parent)
    : QObject(parent)
{
#ifdef Q_OS_UNIX
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, g_pipe) != 0)
        return;
    m_notifier = new QSocketNotifier(g_pipe[0], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &TerminationSignal::readPipe);
    struct sigaction action = {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigset_t mask;
    sigemptyset(&mask);
    for (const int number : Signals) {
        ::sigaction(number, &action, nullptr);
        sigaddset(&mask, number);
    }
    // A parent may have started us with these blocked; they are handled now.
    ::pthread_sigmask(SIG_UNBLOCK, &mask, nullptr);
#endif
}

TerminationSignal *TerminationSignal::install()
{
    static TerminationSignal *installed = nullptr;
    if (!installed)
        installed = new TerminationSignal(QCoreApplication::instance());
    return installed;
}

void TerminationSignal::readPipe()
{
#ifdef Q_OS_UNIX
    unsigned char byte = 0;
    while (::read(g_pipe[0], &byte, 1) == 1)
        Q_EMIT received(byte);
#endif
}
