#include "startupoptions.h"

#include "filenamecodec.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>

namespace {

const QCommandLineOption &engineOption()
{
    static const QCommandLineOption option(
        QStringLiteral("engine-path"),
        QStringLiteral("Displays where the conversion engine is found."));
    return option;
}

// Parses without judging: unknown options are left for the caller to report.
void readArguments(QCommandLineParser &parser, const QStringList &arguments)
{
    // Qt's own one-dash options ("-reverse", "-stylesheet") are not runs of
    // one-letter options.
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.setApplicationDescription(
        QStringLiteral("Two-panel file manager for converting SQL scripts between database "
                       "platforms."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOption(engineOption());
    parser.addPositionalArgument(
        QStringLiteral("LEFT"),
        QStringLiteral("Folder for the left panel, or a file to open in its editor."),
        QStringLiteral("[LEFT"));
    parser.addPositionalArgument(
        QStringLiteral("RIGHT"),
        QStringLiteral("Folder for the right panel, or a file to open in its editor."),
        QStringLiteral("[RIGHT]]"));
    parser.parse(arguments);
}

bool wantsHelp(const QCommandLineParser &parser)
{
    return parser.isSet(QStringLiteral("help")) || parser.isSet(QStringLiteral("help-all"));
}

QString shown(const QString &path)
{
    return FileNameCodec::displayName(QDir::toNativeSeparators(path));
}

} // namespace

StartupOptions StartupOptions::parse(const QStringList &arguments)
{
    return parse(arguments, QDir::currentPath());
}

StartupOptions StartupOptions::parse(const QStringList &arguments, const QString &workingFolder)
{
    StartupOptions options;
    QCommandLineParser parser;
    readArguments(parser, arguments);
    // Help and version answer even beside options that are not understood.
    if (wantsHelp(parser)) {
        options.m_action = Action::ShowHelp;
        options.m_text = parser.helpText();
    } else if (parser.isSet(QStringLiteral("version"))) {
        options.m_action = Action::ShowVersion;
        options.m_text = QStringLiteral("Morvane Navarch %1\n").arg(QStringLiteral(NAVARCH_VERSION));
    } else if (!parser.unknownOptionNames().isEmpty()) {
        options.m_action = Action::Fail;
        options.m_text = QStringLiteral("%1\nTry --help for the options.\n").arg(parser.errorText());
    } else if (parser.isSet(engineOption())) {
        options.m_action = Action::ShowEngine;
    } else {
        for (const QString &argument : parser.positionalArguments())
            options.addPath(argument, workingFolder);
    }
    return options;
}

bool StartupOptions::answersWithoutWindow(const QStringList &arguments)
{
    QCommandLineParser parser;
    readArguments(parser, arguments);
    return wantsHelp(parser) || parser.isSet(QStringLiteral("version")) || parser.isSet(engineOption());
}

void StartupOptions::addPath(const QString &argument, const QString &workingFolder)
{
    const int index = m_paths++;
    if (index > 1) {
        m_warnings << QStringLiteral("Only two paths can be opened, one for each panel: "
                                     "\"%1\" was left out.")
                          .arg(shown(argument));
        return;
    }
    const bool left = index == 0;
    const QString side = left ? QStringLiteral("left") : QStringLiteral("right");
    const QString path = argument.isEmpty()
        ? QString()
        : QDir::cleanPath(QDir(workingFolder).absoluteFilePath(argument));
    const QFileInfo info(path);
    QString problem;
    if (path.isEmpty() || !info.exists())
        problem = QStringLiteral("does not exist");
    else if (!info.isDir() && !info.isFile())
        problem = QStringLiteral("is neither a folder nor a regular file");
    else if (!info.isReadable() || (info.isDir() && !info.isExecutable()))
        problem = QStringLiteral("cannot be read");
    if (!problem.isEmpty()) {
        m_warnings << QStringLiteral("\"%1\" %2: the %3 panel opens on its last folder.")
                          .arg(shown(argument), problem, side);
        return;
    }
    QString &folder = left ? m_leftFolder : m_rightFolder;
    if (info.isDir()) {
        folder = path;
    } else {
        folder = info.absolutePath();
        (left ? m_leftFile : m_rightFile) = path;
    }
}
