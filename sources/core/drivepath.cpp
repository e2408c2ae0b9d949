#include "drivepath.h"

#include <QDir>
#include <QFileInfo>
#include <QStorageInfo>

#include <algorithm>

DrivePath::DrivePath()
    : m_drives(systemDrives())
{
}

QStringList DrivePath::systemDrives()
{
    QStringList drives;
#ifdef Q_OS_WIN
    for (const QFileInfo &drive : QDir::drives())
        drives << normalize(drive.absoluteFilePath());
#else
    drives << QStringLiteral("/");
    for (const QStorageInfo &volume : QStorageInfo::mountedVolumes()) {
        if (!volume.isValid() || !volume.isReady())
            continue;
        const QString root = normalize(volume.rootPath());
        // Bind-mounted single files (a container's /etc/hosts) are not drives.
        if (!drives.contains(root) && QFileInfo(root).isDir())
            drives << root;
    }
#endif
    return drives;
}

void DrivePath::setDrives(const QStringList &drives)
{
    m_drives.clear();
    for (const QString &drive : drives)
        m_drives << normalize(drive);
}

QString DrivePath::normalize(const QString &path)
{
    if (path.isEmpty())
        return path;
    return QDir::cleanPath(QDir::fromNativeSeparators(path));
}

static bool isUnder(const QString &path, const QString &root)
{
    if (!path.startsWith(root, Qt::CaseSensitive))
        return false;
    return path.size() == root.size() || root.endsWith(QLatin1Char('/'))
        || path.at(root.size()) == QLatin1Char('/');
}

QString DrivePath::driveOf(const QString &path) const
{
    const QString clean = normalize(path);
    QString best;
    for (const QString &drive : m_drives) {
        if (drive.size() > best.size() && isUnder(clean, drive))
            best = drive;
    }
#ifdef Q_OS_WIN
    if (best.isEmpty()) {
        const int slash = clean.indexOf(QLatin1Char('/'));
        best = slash < 0 ? clean : clean.left(slash + 1);
    }
#endif
    return best;
}

bool DrivePath::isDrive(const QString &path) const
{
    const QString clean = normalize(path);
    return !clean.isEmpty() && driveOf(clean) == clean;
}

QString DrivePath::lastFolderOf(const QString &drive) const
{
    const QString clean = normalize(drive);
    const QString folder = m_lastFolder.value(clean);
    // A remembered folder that has gone since falls back to the drive's root.
    if (folder.isEmpty() || !QFileInfo(folder).isDir())
        return clean;
    return folder;
}

QString DrivePath::resolve(const QString &path) const
{
    const QString clean = normalize(path);
    if (isDrive(clean))
        return lastFolderOf(clean);
    return clean;
}

void DrivePath::setPath(const QString &path)
{
    m_path = normalize(path);
    const QString drive = driveOf(m_path);
    if (!drive.isEmpty())
        m_lastFolder.insert(drive, m_path);
}

QString DrivePath::parentPath() const
{
    QDir dir(m_path);
    if (!dir.cdUp())
        return m_path;
    return normalize(dir.absolutePath());
}
