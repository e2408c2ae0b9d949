// Speed of the file lists: the full view of one big folder against `ls -l`,
// and the flat view of a big tree against `find -printf`, with the longest
// stall of the GUI thread while the flat list fills.
#include "fileinfomap.h"
#include "flatfileview.h"
#include "fullfileview.h"
#include "treewidget.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>

namespace {

double runPeer(const QString &program, const QStringList &arguments)
{
    QElapsedTimer timer;
    timer.start();
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(program, arguments);
    process.waitForFinished(-1);
    return timer.nsecsElapsed() / 1e6;
}

void createFiles(const QString &folder, int count)
{
    QDir().mkpath(folder);
    for (int i = 0; i < count; ++i) {
        QFile file(folder + QStringLiteral("/file%1.sql").arg(i));
        file.open(QIODevice::WriteOnly);
        file.write("select 1;\n");
    }
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_LOGGING_RULES", "*.debug=false");
    QApplication app(argc, argv);
    const int fullCount = argc > 1 ? atoi(argv[1]) : 100000;
    const int flatCount = argc > 2 ? atoi(argv[2]) : 200000;
    QTemporaryDir root;

    // Full view of one folder.
    const QString flatFolder = root.filePath(QStringLiteral("flat"));
    const QString bigFolder = root.filePath(QStringLiteral("big"));
    createFiles(bigFolder, fullCount);
    runPeer(QStringLiteral("ls"), {QStringLiteral("-l"), bigFolder});  // warm the cache
    const double ls = runPeer(QStringLiteral("ls"), {QStringLiteral("-l"), bigFolder});
    TreeWidget tree;
    tree.resize(800, 600);
    if (qEnvironmentVariableIsEmpty("HIDE")) tree.show();
    FullFileView full;
    FileInfoMap map;
    full.setColumns(&tree);
    QElapsedTimer timer;
    timer.start();
    full.showObjects(&tree, bigFolder, map);
    QCoreApplication::processEvents();
    const double fullMs = timer.nsecsElapsed() / 1e6;
    std::printf("full view: %d files in %.1f ms; ls -l %.1f ms; ratio %.2f (goal < 3)\n",
                tree.topLevelItemCount() - 1, fullMs, ls, fullMs / ls);
    tree.clear();
    map.clear();

    // Flat view of a tree: 100 folders of files.
    const int folders = 100;
    for (int f = 0; f < folders; ++f)
        createFiles(flatFolder + QStringLiteral("/dir%1/sub").arg(f), flatCount / folders);
    const QStringList findArgs{flatFolder, QStringLiteral("-printf"),
                               QStringLiteral("%P %s %TY-%Tm-%Td %TH:%TM\\n")};
    runPeer(QStringLiteral("find"), findArgs);
    const double find = runPeer(QStringLiteral("find"), findArgs);

    FlatFileView flat;
    flat.setColumns(&tree);
    bool done = false;
    flat.setDoneCallback([&done] { done = true; });
    QElapsedTimer sinceTick;
    qint64 longestGap = 0;
    int rowsAtLongestGap = 0;
    QTimer ticker;
    ticker.setInterval(1);
    QObject::connect(&ticker, &QTimer::timeout, [&] {
        const qint64 gap = sinceTick.restart();
        if (gap > longestGap) {
            longestGap = gap;
            rowsAtLongestGap = tree.topLevelItemCount();
        }
    });
    timer.restart();
    sinceTick.start();
    ticker.start();
    flat.showObjects(&tree, flatFolder, map);
    while (!done)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    ticker.stop();
    const double flatMs = timer.nsecsElapsed() / 1e6;
    std::printf("flat view: %d files in %.1f ms; find -printf %.1f ms; ratio %.2f\n",
                tree.topLevelItemCount() - 1, flatMs, find, flatMs / find);
    std::printf("flat view: longest GUI-thread gap %lld ms (goal < 50), with %d rows in\n",
                static_cast<long long>(longestGap), rowsAtLongestGap);
    return 0;
}
