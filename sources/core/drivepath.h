#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

/**
 * The folder a panel shows, with a memory of the folder last shown on each
 * drive: asking for a bare drive brings back where the user was on it.
 *
 * On Windows the drives are the drive letters; elsewhere "/" and the root of
 * every mounted file system. The drive of a path is the longest drive root
 * that is a prefix of it.
 */
class DrivePath
{
public:
    DrivePath();

    /** The drive roots of this machine, "/"-separated, "/" first on POSIX. */
    static QStringList systemDrives();

    QStringList drives() const { return m_drives; }
    /** Replaces the known drives (tests use folders of their own). */
    void setDrives(const QStringList &drives);

    /** The drive root that holds @p path ("/" style), or an empty string. */
    QString driveOf(const QString &path) const;
    /** Whether @p path names a drive root itself. */
    bool isDrive(const QString &path) const;

    QString path() const { return m_path; }

    /**
     * The folder to show for @p path: a bare drive maps to the folder last
     * shown on that drive (its root when none was), any other path to itself.
     */
    QString resolve(const QString &path) const;
    /** Makes @p path the current folder and remembers it for its drive. */
    void setPath(const QString &path);
    /** The folder last shown on @p drive, or the drive itself. */
    QString lastFolderOf(const QString &drive) const;
    /** The parent of the current folder (the folder itself at a root). */
    QString parentPath() const;

    /** Cleans @p path and turns its separators into "/". */
    static QString normalize(const QString &path);

private:
    QStringList m_drives;
    QHash<QString, QString> m_lastFolder;
    QString m_path;
};
