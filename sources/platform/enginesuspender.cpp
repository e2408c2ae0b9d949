#include "enginesuspender.h"

#include <QtGlobal>

#ifdef Q_OS_WIN
#include "enginesuspender_win.cpp"
#else
#include <QByteArray>
#include <QDebug>
#include <QDir>
#include <QFile>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace EngineSuspender {

void suspendOrResume(unsigned long processId, bool suspend)
{
    if (::kill(static_cast<pid_t>(processId), suspend ? SIGSTOP : SIGCONT) != 0)
        qWarning().noquote() << QStringLiteral("kill(%1, %2) failed: %3")
                                    .arg(processId)
                                    .arg(suspend ? "SIGSTOP" : "SIGCONT")
                                    .arg(QString::fromLocal8Bit(std::strerror(errno)));
}

int forEachEngineProcess(const char *executableName, bool suspend)
{
    // The kernel keeps at most 15 bytes of a process name.
    const QByteArray wanted = QByteArray(executableName).left(15);
    QDir proc(QStringLiteral("/proc"));
    if (!proc.exists()) {
        qWarning() << "Listing processes through /proc failed: /proc is not available";
        return 0;
    }
    const uid_t me = ::getuid();
    int count = 0;
    const QStringList entries = proc.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &entry : entries) {
        bool isPid = false;
        const unsigned long pid = entry.toULong(&isPid);
        if (!isPid || pid == static_cast<unsigned long>(::getpid()))
            continue;
        const QByteArray dir = "/proc/" + entry.toLatin1();
        struct stat info;
        if (::stat(dir.constData(), &info) != 0 || info.st_uid != me)
            continue;
        QFile comm(QString::fromLatin1(dir + "/comm"));
        if (!comm.open(QIODevice::ReadOnly))
            continue;
        if (comm.readAll().trimmed() != wanted)
            continue;
        suspendOrResume(pid, suspend);
        ++count;
    }
    return count;
}

} // namespace EngineSuspender
#endif
