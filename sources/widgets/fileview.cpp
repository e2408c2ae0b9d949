#include "fileview.h"

#include "fileinfomap.h"
#include "fileitem.h"
#include "treewidget.h"

#include <QFile>
#include <QFileIconProvider>
#include <QHash>
#include <QIcon>
#include <QLocale>

#ifdef Q_OS_LINUX
#include <sys/stat.h>
#include <time.h>
#endif

namespace {

// The size and the last-modified time (local wall-clock time, marked as
// UTC so that nothing converts it again) of @p info, from one stat call.
// QFileInfo's own time runs through the time-zone code several times per
// call, each time checking the zone file again, which cost more than the
// whole rest of a row.
void readEntry(const QFileInfo &info, qint64 *size, QDateTime *modified)
{
#ifdef Q_OS_LINUX
    struct stat st;
    struct tm local;
    if (::stat(QFile::encodeName(info.filePath()).constData(), &st) == 0
        && localtime_r(&st.st_mtime, &local)) {
        *size = st.st_size;
        *modified = QDateTime(QDate(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday),
                              QTime(local.tm_hour, local.tm_min, local.tm_sec,
                                    int(st.st_mtim.tv_nsec / 1000000)),
                              Qt::UTC);
        return;
    }
#endif
    *size = info.size();
    const QDateTime shown = info.lastModified();
    *modified = QDateTime(shown.date(), shown.time(), Qt::UTC);
}

QFileIconProvider &iconProvider()
{
    static QFileIconProvider provider;
    return provider;
}

// Asking the provider builds a new icon each time (the style loads its
// pixmaps again), which costs more than the rest of a row. Icons depend on
// the kind of entry and its suffix, as the platforms' own icon caches assume;
// programs, shortcuts and icon files carry icons of their own and are asked
// for one by one. GUI thread only.
QIcon iconFor(const QFileInfo &info)
{
    const QString suffix = info.isDir() ? QString() : info.suffix().toLower();
    if (suffix == QLatin1String("exe") || suffix == QLatin1String("lnk")
        || suffix == QLatin1String("ico"))
        return iconProvider().icon(info);
    const QChar kind = info.isSymLink() ? (info.isDir() ? QLatin1Char('L') : QLatin1Char('l'))
                                        : (info.isDir() ? QLatin1Char('D') : QLatin1Char('f'));
    static QHash<QString, QIcon> cache;
    const QString key = kind + suffix;
    auto it = cache.find(key);
    if (it == cache.end())
        it = cache.insert(key, iconProvider().icon(info));
    return it.value();
}

} // namespace

FileView::FileView()
    : m_mask(QStringLiteral("*.*"))
    , m_usTime(usesUsTime())
{
}

FileView::~FileView() = default;

void FileView::setMask(const QString &mask)
{
    const QString trimmed = mask.trimmed();
    m_mask = trimmed.isEmpty() ? QStringLiteral("*.*") : trimmed;
}

bool FileView::isFiltered() const
{
    return m_mask != QLatin1String("*.*");
}

QStringList FileView::nameFilters() const
{
    return nameFiltersOf(m_mask);
}

QStringList FileView::nameFiltersOf(const QString &mask)
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

bool FileView::usesUsTime()
{
    return QLocale::system().country() == QLocale::UnitedStates;
}

QString FileView::sizeText(qint64 size)
{
    return QStringLiteral("%L1").arg(size);
}

QString FileView::dateText(const QDateTime &modified, bool usTime)
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

FileRow FileView::makeRow(const QFileInfo &info) const
{
    FileRow row;
    row.info = info;
    row.key = FileInfoMap::keyOf(info);
    row.isParent = info.fileName() == parentName();
    row.isFolder = info.isDir();
    names(info, &row.name, &row.directory);
    if (!row.isFolder)
        row.ext = info.suffix();
    // ".." carries no date.
    if (row.isParent) {
        if (showFoldersAsRows())
            row.size = folderSizeText();
        return row;
    }
    qint64 bytes = 0;
    QDateTime modified;
    readEntry(info, &bytes, &modified);
    if (!row.isFolder) {
        row.bytes = bytes;
        row.size = sizeText(row.bytes);
    } else if (showFoldersAsRows()) {
        row.size = folderSizeText();
    }
    // Sorting follows the shown wall-clock time.
    row.modified = modified.toMSecsSinceEpoch();
    row.date = dateText(modified, m_usTime);
    return row;
}

void FileView::addRows(TreeWidget *tree, FileInfoMap &map, const QVector<FileRow> &rows) const
{
    QList<QTreeWidgetItem *> items;
    items.reserve(rows.size());
    const int columns = columnCount();
    for (const FileRow &row : rows) {
        QStringList texts;
        texts.reserve(columns);
        if (nameColumn() == 1)
            texts << row.directory;
        texts << row.name << row.ext << row.size << row.date;
        auto *item = new FileItem(texts);
        setItemFlags(item);
        item->setIcon(nameColumn(), iconFor(row.info));
        item->setData(0, FileInfoMap::KeyRole, row.key);
        const FileItem::Group group = row.isParent ? FileItem::ParentGroup
            : row.isFolder                         ? FileItem::FolderGroup
                                                   : FileItem::FileGroup;
        item->setSortData(group, row.bytes, row.modified);
        map.insert(row.key, row.info);
        items << item;
    }
    tree->addTopLevelItems(items);
}

qint64 FileView::rowBytes(const QTreeWidgetItem *item, const QFileInfo &info)
{
    // A row keeps the size read when it was listed; asking the QFileInfo
    // would read the metadata of every file from disk again.
    if (item->type() == QTreeWidgetItem::UserType)
        return static_cast<const FileItem *>(item)->size();
    return info.size();
}

void FileView::setItemFlags(QTreeWidgetItem *) const
{
}

QString FileView::selectionStatus(const TreeWidget *tree, const FileInfoMap &map) const
{
    int count = 0;
    qint64 size = 0;
    for (const QTreeWidgetItem *item : tree->selectedItems()) {
        bool found = false;
        const QFileInfo info = map.value(item, &found);
        if (found && info.isFile())
            size += info.size();
        ++count;
    }
    return QStringLiteral(" %1").arg(count) + QStringLiteral(" selected files ")
        + QStringLiteral("(") + sizeText(size) + QStringLiteral(")");
}

void FileView::countRows(const TreeWidget *tree, const FileInfoMap &map, int *count,
                         qint64 *size) const
{
    *count = 0;
    *size = 0;
    for (int i = 0, n = tree->topLevelItemCount(); i < n; ++i)
        countRow(tree->topLevelItem(i), map, count, size);
}

QTreeWidgetItem *FileView::findRow(const TreeWidget *tree, const QString &name,
                                   const QString &ext) const
{
    const QList<QTreeWidgetItem *> found
        = tree->findItems(name, Qt::MatchStartsWith, nameColumn());
    for (QTreeWidgetItem *item : found) {
        if (item->text(extColumn()) == ext)
            return item;
    }
    return nullptr;
}
