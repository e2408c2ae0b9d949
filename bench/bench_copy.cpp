// Copying a generated folder tree (F6) against `cp -r` on the same tree in the
// same run, and the GUI thread's longest stall while the copy runs.
//
// bench_copy [files] [kilobytes per file on average]   (defaults: 20000 files, 4 KB)

#include "copyobjects.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>

#include <sys/resource.h>

namespace {

struct Timing
{
    double wall = 1e9;
    double cpu = 1e9;   // user and system time: what load on a shared machine does not stretch
};

double cpuSeconds(int who)
{
    rusage usage;
    getrusage(who, &usage);
    return usage.ru_utime.tv_sec + usage.ru_stime.tv_sec
        + (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

void generate(const QString &root, int files, int averageKb)
{
    QRandomGenerator random(7);
    QByteArray block(averageKb * 2048 + 1, 'x');
    for (int f = 0; f < files; ++f) {
        const QString dir = QStringLiteral("%1/d%2/e%3").arg(root).arg(f % 40).arg(f % 200);
        if (f < 200)
            QDir().mkpath(dir);
        QFile file(QStringLiteral("%1/f%2.sql").arg(dir).arg(f));
        file.open(QIODevice::WriteOnly);
        file.write(block.constData(), random.bounded(averageKb * 2048 + 1));
        if (f % 500 == 0)
            QFile::link(QStringLiteral("f%1.sql").arg(f), QStringLiteral("%1/link%2").arg(dir).arg(f));
    }
}

Timing runCp(const QString &source, const QString &target)
{
    const double cpu = cpuSeconds(RUSAGE_CHILDREN);
    QElapsedTimer timer;
    timer.start();
    QProcess::execute(QStringLiteral("cp"), {QStringLiteral("-r"), source, target});
    return {timer.nsecsElapsed() / 1e9, cpuSeconds(RUSAGE_CHILDREN) - cpu};
}

Timing runCopy(const QString &source, const QString &targetFolder, qint64 *longestStall,
               QString *outcome)
{
    CopyObjects copy({source}, targetFolder);
    copy.setPrompt([](QString &) { return true; });
    copy.setNotify([outcome](const QString &message) { *outcome = message.section('\n', 0, 0); });

    // The longest gap between ticks of a 1 ms timer on the GUI thread.
    QTimer ticker;
    ticker.setInterval(1);
    QElapsedTimer sinceTick;
    *longestStall = 0;
    QObject::connect(&ticker, &QTimer::timeout, [&] {
        *longestStall = qMax(*longestStall, sinceTick.restart());
    });
    QEventLoop loop;
    QObject::connect(&copy, &CopyObjects::finished, &loop, &QEventLoop::quit);
    // The whole process: the copying thread and the GUI thread's share.
    const double cpu = cpuSeconds(RUSAGE_SELF);
    QElapsedTimer timer;
    timer.start();
    sinceTick.start();
    ticker.start();
    copy.execute();
    loop.exec();
    return {timer.nsecsElapsed() / 1e9, cpuSeconds(RUSAGE_SELF) - cpu};
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "*.debug=false");
    QApplication app(argc, argv);
    const int files = argc > 1 ? std::atoi(argv[1]) : 20000;
    const int averageKb = argc > 2 ? std::atoi(argv[2]) : 4;

    QTemporaryDir dir;
    const QString source = dir.filePath(QStringLiteral("tree"));
    QElapsedTimer timer;
    timer.start();
    generate(source, files, averageKb);
    std::printf("generated %d files, about %d KB each, in %.1f s\n", files, averageKb,
                timer.elapsed() / 1000.0);

    // Alternated, each side first in turn, best of four each, so that neither
    // profits from a warmer cache or from going first. The copies are removed
    // only at the end: some file systems (ext4 without a journal) pass over
    // recently freed inodes when making new ones, which would charge each side
    // for the tree the other has just removed.
    Timing cp, copy;
    qint64 worstStall = 0;
    QString outcome;
    for (int run = 0; run < 8; ++run) {
        const int round = run / 2;
        if ((run + round) % 2 == 0) {
            const Timing t = runCp(source, dir.filePath(QStringLiteral("cp%1").arg(round)));
            cp = {qMin(cp.wall, t.wall), qMin(cp.cpu, t.cpu)};
            continue;
        }
        const QString copyTarget = dir.filePath(QStringLiteral("copy%1").arg(round));
        QDir().mkpath(copyTarget);
        qint64 stall = 0;
        const Timing t = runCopy(source, copyTarget, &stall, &outcome);
        copy = {qMin(copy.wall, t.wall), qMin(copy.cpu, t.cpu)};
        worstStall = qMax(worstStall, stall);
    }
    std::printf("copy %7.3f s   cp -r %7.3f s   ratio %.2f (goal <= 1.5)\n", copy.wall, cp.wall,
                copy.wall / cp.wall);
    std::printf("cpu  %7.3f s   cp -r %7.3f s   ratio %.2f\n", copy.cpu, cp.cpu,
                copy.cpu / cp.cpu);
    std::printf("GUI: longest stall %lld ms while copying (goal < 50 ms); %s\n", worstStall,
                qPrintable(outcome));
    return 0;
}
