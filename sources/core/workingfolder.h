#pragma once

#include <QString>

/**
 * The user's working folder (where the engine's INI file and the file list of
 * a large run live) and the engine INI helpers.
 */
namespace WorkingFolder {

/** Windows version codes as QSysInfo::WinVersion numbered them (Windows 7 is 0x0090). */
constexpr int Windows8 = 0x00a0;

/** The Windows rule: only the exact Windows 8 value gives "/Documents". */
QString forWindows(const QString &homePath, int windowsVersion);
/** The rule elsewhere: the documents folder plus the product's sub-folder. */
QString forDocuments(const QString &documentsPath);

/** The working folder of this machine; it ends with a separator. */
QString path();
QString iniPath();
bool iniExists();
/** The copy of the INI that lies beside the application. */
QString seedIniPath();
/** Copies the seed INI into the working folder when none is there yet. */
void ensureIni();

} // namespace WorkingFolder
