#pragma once

#include <QSettings>

/**
 * The application's one settings store. Construct it where it is needed and
 * let it go: nothing keeps a store open.
 */
class Settings : public QSettings
{
public:
    Settings();

    /** The organisation name; its backslashes become nested folders off Windows. */
    static QString organisation();
    static QString application();

    /** Reads or writes one key of the "Main Window" group of a store the caller holds. */
    static QVariant readMainWindowValue(QSettings &settings, const QString &key,
                                        const QVariant &defaultValue);
    static void writeMainWindowValue(QSettings &settings, const QString &key,
                                     const QVariant &value);
};
