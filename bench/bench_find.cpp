// Find in files against grep on a generated tree, and the GUI thread's longest
// stall while 100 000 hits are shown.
//
// bench_find [files] [megabytes]   (defaults: 20000 files, 200 MB)

#include "find.h"
#include "findresultmodel.h"
#include "findscript.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeView>

#include <atomic>
#include <cstdio>

namespace {

const char *const Words[] = {"select", "from", "where", "order", "by", "group", "insert", "into",
                             "values", "update", "set", "delete", "join", "on", "and", "or",
                             "customer_id", "order_id", "amount", "t1", "t2", "count(*)", "=",
                             "1", "'abc'", "null", "not", "exists", "case", "when", "then"};

void generate(const QString &root, int files, qint64 bytes, int markersPerFile)
{
    QRandomGenerator random(1);
    const qint64 perFile = bytes / files;
    for (int f = 0; f < files; ++f) {
        const QString dir = QStringLiteral("%1/d%2").arg(root).arg(f % 100);
        if (f < 100)
            QDir().mkpath(dir);
        QByteArray content;
        content.reserve(int(perFile) + 200);
        int markers = 0;
        while (content.size() < perFile) {
            const int words = random.bounded(4, 14);
            for (int w = 0; w < words; ++w) {
                content += Words[random.bounded(int(sizeof Words / sizeof *Words))];
                content += ' ';
            }
            if (markers < markersPerFile && random.bounded(8) == 0) {
                content += "hit_marker";
                ++markers;
            }
            content += '\n';
        }
        while (markers++ < markersPerFile)
            content += "tail hit_marker\n";
        if (f % 97 == 0)
            content += "a rare_fixed_needle here\n";
        QFile file(QStringLiteral("%1/f%2.sql").arg(dir).arg(f));
        file.open(QIODevice::WriteOnly);
        file.write(content);
    }
}

double runGrep(const QStringList &args, int *lines)
{
    QProcess grep;
    QElapsedTimer timer;
    timer.start();
    grep.start(QStringLiteral("grep"), args);
    grep.waitForFinished(-1);
    const double seconds = timer.nsecsElapsed() / 1e9;
    *lines = grep.readAllStandardOutput().count('\n');
    return seconds;
}

double runFind(const QString &root, const QString &text, QRegExp::PatternSyntax syntax, int *lines)
{
    Find find;
    std::atomic<int> hits{0};
    QObject::connect(&find, &Find::foundHits, &find,
                     [&hits](const QVector<FindHit> &batch) { hits += batch.size(); },
                     Qt::DirectConnection);
    find.setFolder(root);
    find.setMasks(QStringLiteral("*.sql"));
    find.setFindText(text);
    find.setPatternSyntax(syntax);
    find.setCaseSensitive(true);
    QElapsedTimer timer;
    timer.start();
    find.start();
    find.wait();
    const double seconds = timer.nsecsElapsed() / 1e9;
    *lines = hits;
    return seconds;
}

void compare(const char *what, const QString &root, const QString &text,
             QRegExp::PatternSyntax syntax, const QString &grepMode)
{
    int grepLines = 0;
    int findLines = 0;
    runGrep({grepMode, text, root}, &grepLines); // warm the cache
    const double grepSeconds = runGrep({grepMode, text, root}, &grepLines);
    runFind(root, text, syntax, &findLines);
    const double findSeconds = runFind(root, text, syntax, &findLines);
    std::printf("%-28s find %7.3f s (%d lines)  grep %s %7.3f s (%d lines)  ratio %.2f\n", what,
                findSeconds, findLines, qPrintable(grepMode), grepSeconds, grepLines,
                findSeconds / grepSeconds);
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "*.debug=false");
    QApplication app(argc, argv);
    const int files = argc > 1 ? std::atoi(argv[1]) : 20000;
    const qint64 megabytes = argc > 2 ? std::atoll(argv[2]) : 200;
    const int markersPerFile = qMax(1, 100000 / files);

    QTemporaryDir dir;
    const QString root = dir.path();
    QElapsedTimer timer;
    timer.start();
    generate(root, files, megabytes * 1024 * 1024, markersPerFile);
    std::printf("generated %d files, %lld MB in %.1f s\n", files, megabytes,
                timer.elapsed() / 1000.0);

    compare("fixed string", root, QStringLiteral("rare_fixed_needle"), QRegExp::FixedString,
            QStringLiteral("-rnF"));
    compare("regular expression", root, QStringLiteral("sel[a-z]+t cust[a-z_]+"),
            QRegExp::RegExp, QStringLiteral("-rnE"));
    compare("fixed string, many hits", root, QStringLiteral("hit_marker"), QRegExp::FixedString,
            QStringLiteral("-rnF"));

    // The GUI thread while the hits are shown: the longest gap between ticks of a 1 ms timer.
    QTreeView view;
    view.resize(1000, 600);
    view.show();
    FindScript script(&view);
    QTimer ticker;
    ticker.setInterval(1);
    QElapsedTimer sinceTick;
    qint64 longestGap = 0;
    QObject::connect(&ticker, &QTimer::timeout, [&] {
        longestGap = qMax(longestGap, sinceTick.restart());
    });
    QEventLoop loop;
    QObject::connect(&script, &FindScript::turnWaitingMode, &loop, [&loop](Qt::CursorShape shape) {
        if (shape == Qt::ArrowCursor)
            loop.quit();
    });
    timer.restart();
    sinceTick.start();
    ticker.start();
    script.findCommandEvent(root, QStringLiteral("*.sql"), QStringLiteral("hit_marker"),
                            QRegExp::FixedString, true, false);
    loop.exec();
    ticker.stop();
    std::printf("GUI: %d rows shown in %.3f s, longest GUI stall %lld ms (goal < 50 ms)\n",
                script.results()->rowCount(), timer.elapsed() / 1000.0, longestGap);
    return 0;
}
