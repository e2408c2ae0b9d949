#include "filelisting.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QLocale>
#include <QRegExp>
#include <QSet>
#include <QStack>

#include <algorithm>

#ifdef Q_OS_UNIX
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <time.h>
#endif

namespace {

constexpr int DeliverRows = 2048;

// Rows take their dates from localtime_r, which reads the time zone only
// once; each listing picks up a change of it.
void followTimeZone()
{
#ifdef Q_OS_UNIX
    ::tzset();
#endif
}

QString prefixOf(const QString &root)
{
    return root.endsWith(QLatin1Char('/')) ? root : root + QLatin1Char('/');
}

#ifdef Q_OS_UNIX
// Reads @p folder with one fstatat per entry, relative to the open folder:
// QDir builds a QFileInfo per entry and looks every whole path up again,
// which costs several times as much in a big folder. Lists what QDir lists
// with Files | AllDirs | NoDot (and Hidden | System when @p hidden is set):
// a dangling link, a FIFO, a socket or a device is a system entry. False when
// the folder cannot be read.
bool readFolder(const QString &folder, const QStringList &filters, bool withParent, bool hidden,
                QVector<FileRow> *rows, FileListing::FolderTotals *totals)
{
    DIR *dir = ::opendir(QFile::encodeName(folder).constData());
    if (!dir)
        return false;
    const int fd = ::dirfd(dir);
    const QString prefix = prefixOf(folder);
    // Name filters match as QDir matches them: wildcards, ignoring case.
    QVector<QRegExp> patterns;
    if (filters != QStringList(QStringLiteral("*"))) {
        for (const QString &filter : filters)
            patterns << QRegExp(filter, Qt::CaseInsensitive, QRegExp::Wildcard);
    }
    while (const dirent *entry = ::readdir(dir)) {
        const char *raw = entry->d_name;
        if (raw[0] == '.' && raw[1] == '\0')
            continue;
        const bool parent = raw[0] == '.' && raw[1] == '.' && raw[2] == '\0';
        if (parent ? !withParent : raw[0] == '.' && !hidden)
            continue;
        struct stat st;
        bool system = false;
        if (::fstatat(fd, raw, &st, 0) != 0) {
            // A dangling link, or an entry gone since the folder was read.
            if (::fstatat(fd, raw, &st, AT_SYMLINK_NOFOLLOW) != 0)
                continue;
            system = true;
            st.st_size = 0;
        } else {
            system = !S_ISDIR(st.st_mode) && !S_ISREG(st.st_mode);
        }
        if (system && !hidden)
            continue;
        if (parent) {
            rows->append(FileRow::parentRow(prefix));
            continue;
        }
        const QString name = QFile::decodeName(raw);
        if (system || !S_ISDIR(st.st_mode)) {
            if (totals) {
                ++totals->files;
                totals->bytes += st.st_size;
            }
            if (!patterns.isEmpty()
                && std::none_of(patterns.begin(), patterns.end(),
                                [&name](QRegExp &pattern) { return pattern.exactMatch(name); }))
                continue;
        }
        rows->append(FileRow::fromStat(prefix + name, name, st));
    }
    ::closedir(dir);
    return true;
}
#endif

} // namespace

QStringList FileListing::nameFiltersOf(const QString &mask)
{
    QStringList filters;
    for (const QString &part : mask.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const QString filter = part.trimmed();
        if (filter.isEmpty())
            continue;
        // "*.*" means every file, as users of the mask expect, not only
        // names that contain a dot.
        filters << (filter == QLatin1String("*.*") ? QStringLiteral("*") : filter);
    }
    if (filters.isEmpty())
        filters << QStringLiteral("*");
    return filters;
}

bool FileListing::isFilteredMask(const QString &mask)
{
    return nameFiltersOf(mask) != QStringList(QStringLiteral("*"));
}

bool FileListing::listingLess(const FileRow &a, const FileRow &b)
{
    if (a.kind != b.kind)
        return a.kind < b.kind;
    if (a.sortName != b.sortName)
        return a.sortName < b.sortName;
    return a.path < b.path;
}

QVector<FileRow> FileListing::listFolder(const QString &folder, const QString &mask,
                                         bool withParent, bool hidden, FolderTotals *totals)
{
    if (totals)
        *totals = FolderTotals();
    followTimeZone();
    QVector<FileRow> rows;
#ifdef Q_OS_UNIX
    if (readFolder(QDir::cleanPath(QFileInfo(folder).absoluteFilePath()), nameFiltersOf(mask),
                   withParent, hidden, &rows, totals)) {
        std::sort(rows.begin(), rows.end(), listingLess);
        return rows;
    }
#endif
    QDir::Filters filters = QDir::Files | QDir::AllDirs | QDir::NoDot;
    if (hidden)
        filters |= QDir::Hidden | QDir::System;
    if (!withParent)
        filters |= QDir::NoDotDot;
    // Folders are never filtered by the mask: QDir::AllDirs ignores name filters.
    const QFileInfoList entries
        = QDir(folder).entryInfoList(nameFiltersOf(mask), filters, QDir::NoSort);
    const QString prefix = prefixOf(QDir::cleanPath(folder));
    rows.reserve(entries.size());
    for (const QFileInfo &info : entries) {
        rows << FileRow::fromInfo(info, prefix);
        if (totals && rows.last().kind == FileRow::File) {
            ++totals->files;
            totals->bytes += rows.last().bytes;
        }
    }
    if (totals && isFilteredMask(mask)) {
        QDir::Filters files = QDir::Files;
        if (hidden)
            files |= QDir::Hidden | QDir::System;
        *totals = FolderTotals();
        for (const QFileInfo &info : QDir(folder).entryInfoList(files)) {
            ++totals->files;
            totals->bytes += info.size();
        }
    }
    std::sort(rows.begin(), rows.end(), listingLess);
    return rows;
}

bool FileListing::walkTree(const QString &root, bool withParent, bool hidden,
                           const std::atomic<bool> &stop, const Delivery &deliver, int deliverMs)
{
    followTimeZone();
    const QString cleanRoot = QDir::cleanPath(root);
    const QString prefix = prefixOf(cleanRoot);
    QDir::Filters filters = QDir::Dirs | QDir::Files | QDir::NoDot;
    if (hidden)
        filters |= QDir::Hidden | QDir::System;
    QDir::Filters rootFilters = filters;
    if (!withParent)
        rootFilters |= QDir::NoDotDot;
    QStack<QFileInfo> stack;
    for (const QFileInfo &info : QDir(cleanRoot).entryInfoList(rootFilters, QDir::NoSort))
        stack.push(info);

    // Folders met so far, by their real path, so that a link back up the
    // tree (or two links to one folder) cannot make the walk list it again.
    QSet<QString> visited;
    visited.insert(QFileInfo(cleanRoot).canonicalFilePath());

    QVector<FileRow> rows;
    QElapsedTimer sinceDelivery;
    sinceDelivery.start();
    while (!stack.isEmpty()) {
        if (stop.load(std::memory_order_relaxed))
            return false;
        const QFileInfo info = stack.pop();
        if (info.isDir() && info.fileName() != QLatin1String("..")) {
            const QString real = info.canonicalFilePath();
            if (real.isEmpty() || visited.contains(real))
                continue;
            visited.insert(real);
            const QFileInfoList entries = QDir(info.filePath())
                                              .entryInfoList(filters | QDir::NoDotDot,
                                                             QDir::NoSort);
            for (const QFileInfo &entry : entries)
                stack.push(entry);
            continue;
        }
        rows << FileRow::fromInfo(info, prefix);
        if (rows.size() >= DeliverRows || sinceDelivery.hasExpired(deliverMs)) {
            deliver(rows);
            rows.clear();
            sinceDelivery.restart();
        }
    }
    if (stop.load(std::memory_order_relaxed))
        return false;
    if (!rows.isEmpty())
        deliver(rows);
    return true;
}

FileListing::Changes FileListing::compare(const QVector<FileRow> &before,
                                          const QVector<FileRow> &after)
{
    QHash<QString, int> old;
    old.reserve(before.size());
    for (int i = 0; i < before.size(); ++i)
        old.insert(before.at(i).path, i);
    Changes changes;
    QVector<bool> kept(before.size(), false);
    for (const FileRow &row : after) {
        const auto it = old.constFind(row.path);
        if (it == old.cend()) {
            changes.added << row;
            continue;
        }
        kept[it.value()] = true;
        if (!row.sameState(before.at(it.value())))
            changes.changed << row;
    }
    for (int i = 0; i < before.size(); ++i) {
        if (!kept.at(i))
            changes.removed << before.at(i).path;
    }
    return changes;
}

bool FileListing::usesUsTime()
{
    return QLocale::system().country() == QLocale::UnitedStates;
}

QString FileListing::sizeText(qint64 size)
{
    return QStringLiteral("%L1").arg(size);
}

QString FileListing::dateText(const QDateTime &modified, bool usTime)
{
    const QDate date = modified.date();
    const QString time = modified.time().toString(usTime ? QStringLiteral("hh:mm ap")
                                                         : QStringLiteral("hh:mm"));
    return QStringLiteral("%1.%2.%3 %4")
        .arg(date.day(), 2, 10, QLatin1Char('0'))
        .arg(date.month(), 2, 10, QLatin1Char('0'))
        .arg(date.year(), 4, 10, QLatin1Char(' '))
        .arg(time);
}
