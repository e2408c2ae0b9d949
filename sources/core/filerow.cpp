#include "filerow.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>
#include <time.h>

namespace {

#if defined(Q_OS_LINUX)
// The last-modified time of @p st as local wall-clock time in milliseconds,
// marked as UTC (what QDateTime(local date, local time, Qt::UTC) counts).
qint64 wallClockMsecs(const struct stat &st)
{
    struct tm local;
    if (!localtime_r(&st.st_mtime, &local))
        return 0;
    return (qint64(st.st_mtime) + local.tm_gmtoff) * 1000 + st.st_mtim.tv_nsec / 1000000;
}
#endif

// The size and the last-modified time (local wall-clock time, marked as UTC
// so that nothing converts it again) of @p info, from one stat call.
// QFileInfo's own time runs through the time-zone code several times per
// call, each time checking the zone file again, which costs more than the
// rest of a row.
void readEntry(const QFileInfo &info, qint64 *size, qint64 *modified)
{
#if defined(Q_OS_LINUX)
    struct stat st;
    if (::stat(QFile::encodeName(info.filePath()).constData(), &st) == 0) {
        *size = st.st_size;
        *modified = wallClockMsecs(st);
        return;
    }
#endif
    *size = info.size();
    const QDateTime shown = info.lastModified();
    *modified = QDateTime(shown.date(), shown.time(), Qt::UTC).toMSecsSinceEpoch();
}

} // namespace

QString FileRow::fileName() const
{
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

QString FileRow::relativePath() const
{
    return directory.isEmpty() ? fileName() : directory + QLatin1Char('/') + fileName();
}

FileRow FileRow::named(const QString &path, const QString &fileName, Kind kind)
{
    FileRow row;
    row.path = path;
    row.kind = kind;
    row.sortName = fileName.toCaseFolded();
    if (kind != File) {
        row.name = fileName;
        return row;
    }
    // As QFileInfo splits it: the suffix follows the last dot (".profile" is all suffix).
    const int dot = fileName.lastIndexOf(QLatin1Char('.'));
    row.name = dot < 0 ? fileName : fileName.left(dot);
    row.ext = dot < 0 ? QString() : fileName.mid(dot + 1);
    return row;
}

FileRow FileRow::parentRow(const QString &folderPrefix)
{
    // The path of ".." is the folder above, as QFileInfo gives it.
    return named(QDir::cleanPath(folderPrefix + QLatin1String("..")), QStringLiteral(".."),
                 Parent);
}

FileRow FileRow::fromInfo(const QFileInfo &info, const QString &rootPrefix)
{
    const QString fileName = info.fileName();
    if (fileName == QLatin1String(".."))
        return named(info.absoluteFilePath(), fileName, Parent);
    FileRow row = named(info.absoluteFilePath(), fileName, info.isDir() ? Folder : File);
    const QString folder = info.path();
    if (folder.size() > rootPrefix.size() && folder.startsWith(rootPrefix))
        row.directory = folder.mid(rootPrefix.size());
    readEntry(info, &row.bytes, &row.modified);
    if (row.kind == Folder)
        row.bytes = 0;
    return row;
}

FileRow FileRow::fromStat(const QString &path, const QString &fileName, const struct stat &st)
{
    FileRow row = named(path, fileName, S_ISDIR(st.st_mode) ? Folder : File);
    if (row.kind == File)
        row.bytes = st.st_size;
#if defined(Q_OS_LINUX)
    row.modified = wallClockMsecs(st);
#else
    const QDateTime shown = QDateTime::fromSecsSinceEpoch(st.st_mtime);
    row.modified = QDateTime(shown.date(), shown.time(), Qt::UTC).toMSecsSinceEpoch();
#endif
    return row;
}
