// Folder comparison by size and by content against diff -rq, and the window's
// longest stall while the two panels are compared by content.
//
// bench_filelistdiff [files]   (default: 20000 files on each side)

#include "filelistdiff.h"
#include "foldercomparison.h"
#include "panel.h"

#include <QAction>
#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QStandardPaths>
#include <QStatusBar>
#include <QTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdio>

namespace {

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write(content);
}

double compareFolders(const QString &a, const QString &b, int criteria, FolderDifferences *out)
{
    QElapsedTimer timer;
    timer.start();
    *out = FolderComparison::compareFolders(a, b, criteria);
    return timer.nsecsElapsed() / 1e9;
}

double diffRq(const QString &a, const QString &b, int *lines)
{
    QProcess diff;
    QElapsedTimer timer;
    timer.start();
    diff.start(QStringLiteral("diff"), {QStringLiteral("-rq"), a, b});
    diff.waitForFinished(-1);
    const double seconds = timer.nsecsElapsed() / 1e9;
    *lines = diff.readAllStandardOutput().count('\n');
    return seconds;
}

// Compares the two folders through the panels, as the menu does, and measures the
// longest time the event loop went without turning (a 5 ms timer's largest gap).
void windowStall(const QString &a, const QString &b, double *seconds, double *stallMs)
{
    QWidget window;
    auto *layout = new QHBoxLayout(&window);
    auto *status = new QStatusBar(&window);
    auto *left = new Panel(layout, &window, status, new QLabel(&window), true, &window);
    auto *right = new Panel(layout, &window, status, new QLabel(&window), false, &window);
    auto *bySize = new QAction(&window);
    auto *byContent = new QAction(&window);
    auto *markedOnly = new QAction(&window);
    FileListDiff diff;
    diff.setup(bySize, byContent, markedOnly, left, right);
    left->changePath(a);
    right->changePath(b);
    window.show();
    QCoreApplication::processEvents();

    QElapsedTimer sinceTick;
    qint64 longest = 0;
    QTimer ticker;
    QObject::connect(&ticker, &QTimer::timeout, [&] {
        longest = qMax(longest, sinceTick.nsecsElapsed());
        sinceTick.restart();
    });
    QObject::connect(&diff, &FileListDiff::comparisonDone, &QCoreApplication::quit);
    QElapsedTimer timer;
    timer.start();
    QTimer::singleShot(0, [&] {
        sinceTick.start();
        ticker.start(5);
        byContent->trigger();
    });
    QCoreApplication::exec();
    *seconds = timer.nsecsElapsed() / 1e9;
    *stallMs = longest / 1e6;
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "*.debug=false");
    QApplication app(argc, argv);
    QStandardPaths::setTestModeEnabled(true); // the panels' settings stay out of the user's
    const int files = argc > 1 ? std::atoi(argv[1]) : 20000;

    QTemporaryDir dir;
    const QString a = dir.filePath(QStringLiteral("a"));
    const QString b = dir.filePath(QStringLiteral("b"));
    QDir().mkpath(a);
    QDir().mkpath(b);
    for (int i = 0; i < files; ++i) {
        QByteArray content = "-- script " + QByteArray::number(i) + "\n";
        content += QByteArray("select * from t where id = 1;\n").repeated(40 + i % 60);
        const QString name = QStringLiteral("/f%1.sql").arg(i);
        write(a + name, content);
        if (i % 100 == 0)
            continue; // absent on the right
        if (i % 100 == 1)
            content[content.size() - 3] = 'X'; // same size, other content
        if (i % 100 == 2)
            content += "extra\n";
        write(b + name, content);
    }
    std::printf("generated %d files on each side\n", files);

    int diffLines = 0;
    diffRq(a, b, &diffLines); // warm the cache
    const double diffSeconds = diffRq(a, b, &diffLines);

    FolderDifferences bySize;
    FolderDifferences byContent;
    compareFolders(a, b, COMPARE_BY_SIZE, &bySize);
    const double sizeSeconds = compareFolders(a, b, COMPARE_BY_SIZE, &bySize);
    const double contentSeconds = compareFolders(a, b, COMPARE_BY_CONTENT, &byContent);

    std::printf("diff -rq            %7.3f s (%d lines)\n", diffSeconds, diffLines);
    std::printf("by size             %7.3f s (%lld different, %lld absent)  goal < 0.5 s  "
                "ratio to diff -rq %.2f\n",
                sizeSeconds, qint64(bySize.different.size()),
                qint64(bySize.onlyInFirst.size() + bySize.onlyInSecond.size()),
                sizeSeconds / diffSeconds);
    std::printf("by content          %7.3f s (%lld different, %lld absent)  goal within 2x  "
                "ratio to diff -rq %.2f\n",
                contentSeconds, qint64(byContent.different.size()),
                qint64(byContent.onlyInFirst.size() + byContent.onlyInSecond.size()),
                contentSeconds / diffSeconds);
    double windowSeconds = 0;
    double stallMs = 0;
    windowStall(a, b, &windowSeconds, &stallMs);
    std::printf("through the panels  %7.3f s by content, window's longest stall %.0f ms  "
                "goal < 200 ms\n",
                windowSeconds, stallMs);
    return 0;
}
