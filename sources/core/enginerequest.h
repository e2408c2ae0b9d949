#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

/**
 * Everything one engine run is asked to do, as a plain value: the scripts,
 * the output folder, the direction, the option map of the dialogs and the
 * encodings. engineCommand() turns it into the engine's command line.
 */
struct EngineRequest
{
    /** The engine as the log names it. */
    QString program = QStringLiteral("morvane");
    /** Absolute paths of scripts, or "folder/<mask>" entries for selected folders. */
    QStringList files;
    QString outputFolder;
    /** Direction display names, and the map from display name to engine key. */
    QString source;
    QString target;
    QMap<QString, QString> nameMap;
    /** "/Source_DB=", "/Source_API=", "/Target_DB=", "/Target_API=" when set. */
    QMap<QString, QString> sideOptions;
    /**
     * The engine option map of the option dialogs: "/D", "/U", "/P", "SD",
     * "FD", "SDC", "/PRJF=", "/INI=", "/TBLDDL=" and the free text under " ".
     */
    QMap<QString, QString> options;
    /** Encoding names; an empty one gives no switch. */
    QString sourceEncoding;
    QString targetEncoding;
    /** The INI passed when the options name none; empty for none. */
    QString defaultIni;
    /** Where a default "tables_ddl.sql" is looked for, and where its re-encoded copy goes. */
    QString ddlFolder;
    QString copyFolder;
    /** The file that carries a long file list ("ffile.txt"). */
    QString listFile;
    /**
     * The password goes to the engine's standard input ("/P-" in the
     * arguments), out of sight of other users' process lists.
     */
#ifdef Q_OS_WIN
    bool passwordOnStdin = false;
#else
    bool passwordOnStdin = true;
#endif
    /**
     * The list file holds one absolute path per line (each ended by a NUL
     * byte instead when a name holds a line break), and "/F" is kept for
     * names the engine cannot misread; otherwise the list is joined by "| "
     * in both forms, for engines that expect it.
     */
#ifdef Q_OS_WIN
    bool pathPerLine = false;
#else
    bool pathPerLine = true;
#endif
};

/** The command line of one run, or why there is none. */
struct EngineCommand
{
    QStringList arguments;
    /** The program and arguments as the log shows them, the password masked. */
    QString displayLine;
    /** What the engine reads on its standard input right after it starts. */
    QByteArray input;
    /** Things worth telling in the log (a list file that could not be written, ...). */
    QStringList notes;
    /** Set when the request cannot be run; nothing else is then filled. */
    QString error;
};

/**
 * Builds the engine's arguments from @p request. Writes the list file of a
 * long file list and the re-encoded copy of a tables DDL file as it goes.
 */
EngineCommand engineCommand(const EngineRequest &request);
