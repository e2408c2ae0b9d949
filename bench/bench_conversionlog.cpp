// Runs the test engine printing script and error lines through the real window
// (offscreen): the engine's output is read, scanned and shown in the log as in
// a user's run. Compares the window's run time with the same engine writing to
// /dev/null, and prints the peak memory and the longest stall of the GUI thread.
//
// Usage: bench_conversionlog [lines=300000]
#include "conversion.h"
#include "conversioncontroller.h"
#include "conversionlogview.h"
#include "mainwindow.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPlainTextEdit>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <sys/resource.h>

namespace {

long peakKilobytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

QProcessEnvironment engineEnvironment(long lines, int pause)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TESTENGINE_SCRIPT"),
                       QStringLiteral("inline:lines %1 %2").arg(lines).arg(pause));
    return environment;
}

double engineAlone(const QProcessEnvironment &environment)
{
    QProcess engine;
    engine.setProcessEnvironment(environment);
    engine.setStandardOutputFile(QProcess::nullDevice());
    QElapsedTimer clock;
    clock.start();
    engine.start(QStringLiteral(TEST_ENGINE_PATH), QStringList());
    engine.waitForFinished(-1);
    return clock.nsecsElapsed() / 1e9;
}

struct WindowRun
{
    double engineSeconds;
    double seconds;
    qint64 longestStall;
    int shown;
    int errors;
    double megabytes;
};

// One run through the window, timed from Run until the log shows everything.
WindowRun throughWindow(MainWindow &window, const QProcessEnvironment &environment,
                        const QTemporaryDir &home)
{
    ConversionController *controller = window.conversionController();
    Conversion *conversion = controller->conversion();
    ConversionLogView *log = window.conversionLogView();
    conversion->process()->setProcessEnvironment(environment);

    // The longest gap between two ticks of a 5 ms timer is the longest time
    // the GUI thread did not get to its events.
    QElapsedTimer sinceTick;
    qint64 longestStall = 0;
    QTimer ticker;
    ticker.setInterval(5);
    QObject::connect(&ticker, &QTimer::timeout, [&] {
        longestStall = std::max(longestStall, sinceTick.restart() - 5);
    });
    bool finished = false;
    double engineSeconds = 0;
    QElapsedTimer clock;
    const auto connection = QObject::connect(controller, &ConversionController::runFinished,
                                             [&finished, &engineSeconds, &clock] {
                                                 finished = true;
                                                 engineSeconds = clock.nsecsElapsed() / 1e9;
                                             });
    sinceTick.start();
    ticker.start();
    clock.start();
    controller->runOrPause({{QStringLiteral("/INI="), home.filePath(QStringLiteral("morvane.ini"))}},
                           QStringLiteral("System"), QStringLiteral("System"),
                           {home.filePath(QStringLiteral("in/a.sql"))},
                           home.filePath(QStringLiteral("out")));
    while (!finished || !log->isCaughtUp())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    const double seconds = clock.nsecsElapsed() / 1e9;
    ticker.stop();
    QObject::disconnect(connection);
    return {engineSeconds, seconds, longestStall, log->view()->document()->blockCount(),
            conversion->outputParser().errorCount(), conversion->output().size() / 1e6};
}

} // namespace

int main(int argc, char **argv)
{
    QTemporaryDir home;
    // Nothing of the user's: settings and documents go to a scratch folder.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("HOME", home.path().toLocal8Bit());
    qputenv("XDG_CONFIG_HOME", home.filePath(QStringLiteral("config")).toLocal8Bit());
    QApplication app(argc, argv);
    QStandardPaths::setTestModeEnabled(true);
    const long lines = argc > 1 ? std::atol(argv[1]) : 300000;

    QDir().mkpath(home.filePath(QStringLiteral("in")));
    QDir().mkpath(home.filePath(QStringLiteral("out")));
    for (const char *name : {"in/a.sql", "morvane.ini"}) {
        QFile file(home.filePath(QString::fromLatin1(name)));
        file.open(QIODevice::WriteOnly);
        file.write("select 1;\n");
    }
    MainWindow window(nullptr, &app, QString());
    window.show();
    window.ShowConversionLog();
    window.conversionController()->conversion()->setEngineProgram(QStringLiteral(TEST_ENGINE_PATH));
    const long memoryBefore = peakKilobytes();

    // As fast as the engine can print, and paced like an engine that works
    // on its statements (a pause after every thousand lines).
    for (int pause : {0, 10}) {
        const QProcessEnvironment environment = engineEnvironment(lines, pause);
        const double alone = engineAlone(environment);
        const WindowRun run = throughWindow(window, environment, home);
        std::printf("%ld lines, %s: engine to /dev/null %.3f s; in the window: engine done after "
                    "%.3f s (ratio %.2f), log shown after %.3f s (ratio %.2f, goal <= 1.2)\n",
                    lines, pause ? "paced" : "unpaced", alone, run.engineSeconds,
                    run.engineSeconds / alone, run.seconds, run.seconds / alone);
        std::printf("  output %.1f MB, %d errors found, %d lines in the log; longest GUI stall "
                    "%lld ms (goal <= 50)\n",
                    run.megabytes, run.errors, run.shown, run.longestStall);
    }
    std::printf("peak memory %.1f MB (%.1f MB before the runs)\n", peakKilobytes() / 1024.0,
                memoryBefore / 1024.0);
    return 0;
}
