#include "workingfolder.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QOperatingSystemVersion>

namespace WorkingFolder {

QString forWindows(const QString &homePath, int windowsVersion)
{
    QString folder = homePath;
    folder += windowsVersion == Windows8 ? QStringLiteral("/Documents")
                                         : QStringLiteral("/My Documents");
    folder += QStringLiteral("/Quillon/Morvane 6.0/");
    return QDir::toNativeSeparators(folder);
}

QString forDocuments(const QString &documentsPath)
{
    return QDir::toNativeSeparators(documentsPath + QStringLiteral("/Quillon/Morvane 6.0/"));
}

QString path()
{
#ifdef Q_OS_WIN
    const QOperatingSystemVersion os = QOperatingSystemVersion::current();
    const bool eight = os.majorVersion() == 6 && os.minorVersion() == 2;
    return forWindows(QDir::homePath(), eight ? Windows8 : 0);
#else
    return forDocuments(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
#endif
}

QString iniPath()
{
    return path() + QStringLiteral("morvane.ini");
}

bool iniExists()
{
    return QFile::exists(iniPath());
}

QString seedIniPath()
{
    return QDir::currentPath() + QStringLiteral("/morvane.ini");
}

void ensureIni()
{
    if (!QFile::exists(iniPath()))
        QFile::copy(seedIniPath(), iniPath());
}

} // namespace WorkingFolder
