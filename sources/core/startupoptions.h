#pragma once

#include <QString>
#include <QStringList>

/**
 * What the command line `morvane-navarch [options] [LEFT [RIGHT]]` asks for.
 *
 * Each path opens the panel of its side: a folder shows that folder, a file
 * shows its folder and opens the file in that panel's editor. A path that
 * cannot be opened leaves its panel on the folder stored from the last session
 * and adds a warning; the application still starts.
 */
class StartupOptions
{
public:
    enum class Action {
        Start,       ///< open the window
        ShowHelp,    ///< print text() and exit
        ShowVersion, ///< print text() and exit
        ShowEngine,  ///< print where the conversion engine is found and exit
        Fail         ///< a usage error: print text() and exit with an error
    };

    /**
     * Reads @p arguments (the program name first, as QCoreApplication gives
     * them); relative paths are taken from @p workingFolder.
     */
    static StartupOptions parse(const QStringList &arguments, const QString &workingFolder);
    static StartupOptions parse(const QStringList &arguments);

    /**
     * True when @p arguments only ask for an answer on the terminal (help,
     * version, engine path), so that no window and no display is needed.
     */
    static bool answersWithoutWindow(const QStringList &arguments);

    Action action() const { return m_action; }
    /** The help, version or error text. */
    QString text() const { return m_text; }

    /** The folder to show in the left or right panel; empty to keep the stored one. */
    QString folder(bool left) const { return left ? m_leftFolder : m_rightFolder; }
    /** The file to open in that panel's editor, if any. */
    QString file(bool left) const { return left ? m_leftFile : m_rightFile; }
    /** Why paths were not opened, one sentence each. */
    QStringList warnings() const { return m_warnings; }

private:
    void addPath(const QString &argument, const QString &workingFolder);

    Action m_action = Action::Start;
    QString m_text;
    QString m_leftFolder;
    QString m_leftFile;
    QString m_rightFolder;
    QString m_rightFile;
    QStringList m_warnings;
    int m_paths = 0;
};
