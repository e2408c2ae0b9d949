#pragma once

#include <QMap>
#include <QPoint>
#include <QSettings>
#include <QSize>
#include <QStringList>

/**
 * The application's one settings store, and the only place that knows its
 * keys, their groups and their defaults: the rest of the code reads and writes
 * through the typed accessors below. Construct it where it is needed and let it
 * go: nothing keeps a store open.
 *
 * The accessors name whole keys, so call them on a store with no group open.
 */
class Settings : public QSettings
{
public:
    Settings();

    /** The organisation name; its backslashes become nested folders off Windows. */
    static QString organisation();
    static QString application();

    /** A side of the conversion: the left panel is the source, the right one the target. */
    enum Side { Source, Target };

    // The main window.
    /** QSize(-1, -1) when no size was ever saved: the window then opens maximised. */
    QSize windowSize() const;
    QPoint windowPosition() const;
    void setWindowPlacement(const QSize &size, const QPoint &position);
    QByteArray windowGeometry() const;
    void setWindowGeometry(const QByteArray &geometry);
    /** Splitters are kept under their object names. */
    QByteArray splitterState(const QString &splitterName) const;
    void setSplitterState(const QString &splitterName, const QByteArray &state);
    /** The command history, in stored order. */
    QStringList commands() const;
    void setCommands(const QStringList &commands);

    /**
     * The engine option map of the connection and migration options, holding
     * only the switches that are stored. The password ("/P") is never written:
     * it lives in memory for the session only, and writing the map removes a
     * password that an older store still holds. Empty values are removed too.
     */
    QMap<QString, QString> engineOptions() const;
    void setEngineOptions(const QMap<QString, QString> &options);

    /** The encoding of @p side's files, passed to the engine; "System" by default. */
    QString encodingOption(Side side) const;
    void setEncodingOption(Side side, const QString &encoding);

    /** The editor's point size. */
    int fontSize() const;
    void setFontSize(int size);

    /** The recent folders, in list order. */
    QStringList recentFolders() const;
    void setRecentFolders(const QStringList &folders);

    // The panels and the controls above them.
    /** The platform (database or language) chosen for @p side. */
    QString platform(Side side) const;
    void setPlatform(Side side, const QString &name);
    /** The drive shown above the panel of @p side; the root folder by default. */
    QString disk(Side side) const;
    void setDisk(Side side, const QString &disk);

    struct PanelState
    {
        QString path;
        QString mask = QStringLiteral("*.*");
        bool showHidden = false;
    };
    PanelState panel(Side side) const;
    void setPanel(Side side, const PanelState &state);

    // The dialogs. Histories are ";"-separated lists that the dialogs write.
    QString filters() const;
    void setFilters(const QString &history);
    /** The file masks with which the folders of a conversion are expanded. */
    QString masks() const;
    void setMasks(const QString &history);

    /** The database and database interface chosen for a side, as display names. */
    struct DatabaseChoice
    {
        QString database;
        QString api;
    };
    DatabaseChoice databaseChoice(Side side) const;
    void setDatabaseChoice(Side side, const DatabaseChoice &choice);

    struct FindOptions
    {
        QString files;
        QString folder;
        QString text;
        bool matchCase = false;
        bool wholeWords = false;
        int patternSyntax = 0;
    };
    /** @p folder is the folder searched when none was saved. */
    FindOptions findOptions(const QString &folder) const;
    void setFindOptions(const FindOptions &options);

    /** The line comparison's options. */
    bool diffIgnoresWhitespace() const;
    void setDiffIgnoresWhitespace(bool ignore);
    bool diffIgnoresCase() const;
    void setDiffIgnoresCase(bool ignore);
};
