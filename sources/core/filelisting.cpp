#include "filelisting.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QHash>
#include <QLocale>
#include <QSet>
#include <QStack>

#include <algorithm>

namespace {

constexpr int DeliverRows = 2048;

QString prefixOf(const QString &root)
{
    return root.endsWith(QLatin1Char('/')) ? root : root + QLatin1Char('/');
}

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
                                         bool withParent, bool hidden)
{
    QDir::Filters filters = QDir::Files | QDir::AllDirs | QDir::NoDot;
    if (hidden)
        filters |= QDir::Hidden | QDir::System;
    if (!withParent)
        filters |= QDir::NoDotDot;
    // Folders are never filtered by the mask: QDir::AllDirs ignores name filters.
    const QFileInfoList entries
        = QDir(folder).entryInfoList(nameFiltersOf(mask), filters, QDir::NoSort);
    const QString prefix = prefixOf(QDir::cleanPath(folder));
    QVector<FileRow> rows;
    rows.reserve(entries.size());
    for (const QFileInfo &info : entries)
        rows << FileRow::fromInfo(info, prefix);
    std::sort(rows.begin(), rows.end(), listingLess);
    return rows;
}

bool FileListing::walkTree(const QString &root, bool withParent, bool hidden,
                           const std::atomic<bool> &stop, const Delivery &deliver, int deliverMs)
{
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
