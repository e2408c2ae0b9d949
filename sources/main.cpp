#include "enginelocator.h"
#include "mainwindow.h"
#include "startupoptions.h"
#include "terminationsignal.h"

#include <QApplication>
#include <QFontDatabase>

#include <cstdio>

namespace {

QStringList rawArguments(int argc, char *argv[])
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    return arguments;
}

// Answers on the terminal what needs no window; returns the exit code.
int answer(const StartupOptions &options)
{
    if (options.action() == StartupOptions::Action::ShowEngine) {
        const QString program = EngineLocator::defaultProgram();
        const QString found = EngineLocator::find(program);
        if (found.isEmpty()) {
            std::fprintf(stderr, "%s was not found in %s or on PATH\n", qPrintable(program),
                         qPrintable(EngineLocator::folders().join(QStringLiteral(", "))));
            return 1;
        }
        std::printf("%s\n", qPrintable(found));
        return 0;
    }
    const bool failed = options.action() == StartupOptions::Action::Fail;
    std::fputs(qPrintable(options.text()), failed ? stderr : stdout);
    return failed ? 1 : 0;
}

} // namespace

int main(int argc, char *argv[])
{
    // Scales the whole interface on high-density screens; the icons are drawn
    // as SVG and rendered large enough for twice the normal size.
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QCoreApplication::setApplicationVersion(QStringLiteral(NAVARCH_VERSION));

    // Help, version and the engine path work without a display.
    if (StartupOptions::answersWithoutWindow(rawArguments(argc, argv))) {
        QCoreApplication app(argc, argv);
        return answer(StartupOptions::parse(app.arguments()));
    }

    QApplication app(argc, argv);
    // A logout or kill ends the event loop like a normal exit, so the window
    // writes its settings.
    QObject::connect(TerminationSignal::install(), &TerminationSignal::received, &app,
                     &QCoreApplication::quit);
    QGuiApplication::setDesktopFileName(QStringLiteral("com.quillonsystems.MorvaneNavarch"));
    const StartupOptions options = StartupOptions::parse(app.arguments());
    if (options.action() != StartupOptions::Action::Start)
        return answer(options);
    for (const QString &warning : options.warnings())
        std::fprintf(stderr, "%s\n", qPrintable(warning));

    QFontDatabase::addApplicationFont(QStringLiteral(":/fonts/MyriadProLight.otf"));
    QFontDatabase::addApplicationFont(QStringLiteral(":/fonts/MyriadProRegular.otf"));
    QFontDatabase::addApplicationFont(QStringLiteral(":/fonts/MyriadProSemibold.otf"));
    MainWindow window(nullptr, &app, QString());
    window.show();
    window.openStartupPaths(options);
    return app.exec();
}
