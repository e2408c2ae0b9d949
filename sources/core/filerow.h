#pragma once

#include <QString>

class QFileInfo;
struct stat;

/**
 * One row of a file list as plain data: built on any thread, copied cheaply,
 * never tied to a widget. The absolute path is the row's key.
 */
struct FileRow
{
    /** Rows sort by kind first, so ".." and the folders stay on top. */
    enum Kind : quint8 { Parent = 0, Folder = 1, File = 2 };

    QString path;      // absolute path, as the file system gave it
    QString name;      // Name cell: a folder's whole name, a file's name without its last suffix
    QString ext;       // last suffix of a file
    QString directory; // folder relative to the listed root (flat list), "/"-separated
    QString sortName;  // the file name folded for case-blind ordering
    qint64 bytes = 0;
    qint64 modified = 0; // local wall-clock time as milliseconds, UTC-marked
    Kind kind = File;
    quint8 mark = 0;     // folder-comparison marks (FileRow::Mark bits)

    enum Mark : quint8 { NoMark = 0, DifferentMark = 1, AbsentMark = 2 };

    /** The entry's own name, taken from its path ("foo." stays "foo."). */
    QString fileName() const;
    /** The path below the listed root: directory + "/" + file name. */
    QString relativePath() const;
    /** Whether size, time and kind are the same (the listing shows the same cells). */
    bool sameState(const FileRow &other) const
    {
        return bytes == other.bytes && modified == other.modified && kind == other.kind;
    }

    /**
     * Builds the row of @p info; @p rootPrefix (ending in "/") is the listed
     * root, from which the Directory text is taken. Reads the entry's metadata
     * with one stat call.
     */
    static FileRow fromInfo(const QFileInfo &info, const QString &rootPrefix);
    /**
     * Builds the row of the entry @p fileName at @p path from its stat data
     * @p st (of the entry a link leads to); the Directory text stays empty.
     */
    static FileRow fromStat(const QString &path, const QString &fileName, const struct stat &st);
    /** The ".." row of the folder whose path ends in @p folderPrefix ("/" included). */
    static FileRow parentRow(const QString &folderPrefix);

private:
    /** Path, kind and the name cells, without size and date. */
    static FileRow named(const QString &path, const QString &fileName, Kind kind);
};
// Strings and numbers only: vectors of rows move them as plain memory.
Q_DECLARE_TYPEINFO(FileRow, Q_MOVABLE_TYPE);
