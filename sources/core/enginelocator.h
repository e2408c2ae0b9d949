#pragma once

#include <QString>
#include <QStringList>

/**
 * Finds the conversion engine the way an installed application expects it:
 * beside the application's executable (the build folder), then in the
 * application's private folder (`../lib/morvane-navarch` from the executable,
 * where the package puts it), then on PATH.
 */
class EngineLocator
{
public:
    /** The program name of the default engine. */
    static QString defaultProgram();

    /** The folders searched before PATH, for an executable in @p applicationDir. */
    static QStringList folders(const QString &applicationDir);
    /** folders() of the running application. */
    static QStringList folders();

    /** The absolute path of @p program, or an empty string when none is found. */
    static QString find(const QString &program, const QString &applicationDir);
    static QString find(const QString &program);
};
