#include "filerow.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#include <time.h>
#endif

namespace {

// The size and the last-modified time (local wall-clock time, marked as UTC
// so that nothing converts it again) of @p info, from one stat call.
// QFileInfo's own time runs through the time-zone code several times per
// call, each time checking the zone file again, which costs more than the
// rest of a row.
void readEntry(const QFileInfo &info, qint64 *size, qint64 *modified)
{
#if defined(Q_OS_LINUX)
    struct stat st;
    struct tm local;
    if (::stat(QFile::encodeName(info.filePath()).constData(), &st) == 0
        && localtime_r(&st.st_mtime, &local)) {
        *size = st.st_size;
        const QDateTime shown(QDate(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday),
                              QTime(local.tm_hour, local.tm_min, local.tm_sec,
                                    int(st.st_mtim.tv_nsec / 1000000)),
                              Qt::UTC);
        *modified = shown.toMSecsSinceEpoch();
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

FileRow FileRow::fromInfo(const QFileInfo &info, const QString &rootPrefix)
{
    FileRow row;
    const QString fileName = info.fileName();
    row.path = info.absoluteFilePath();
    row.sortName = fileName.toCaseFolded();
    if (fileName == QLatin1String("..")) {
        row.kind = Parent;
        row.name = fileName;
        // The parent row carries no size and no date.
        return row;
    }
    row.kind = info.isDir() ? Folder : File;
    if (row.kind == Folder) {
        row.name = fileName;
    } else {
        row.name = info.completeBaseName();
        row.ext = info.suffix();
    }
    const QString folder = info.path();
    if (folder.size() > rootPrefix.size() && folder.startsWith(rootPrefix))
        row.directory = folder.mid(rootPrefix.size());
    readEntry(info, &row.bytes, &row.modified);
    if (row.kind == Folder)
        row.bytes = 0;
    return row;
}
