#include "fileview.h"

#include "fileinfomap.h"
#include "fileitem.h"
#include "treewidget.h"

#include <QFileIconProvider>
#include <QLocale>

namespace {

QFileIconProvider &iconProvider()
{
    static QFileIconProvider provider;
    return provider;
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
    if (!row.isFolder) {
        row.bytes = info.size();
        row.size = sizeText(row.bytes);
    } else if (showFoldersAsRows()) {
        row.size = folderSizeText();
    }
    // ".." carries no date.
    if (!row.isParent) {
        const QDateTime modified = info.lastModified();
        row.modified = modified.toMSecsSinceEpoch();
        row.date = dateText(modified, m_usTime);
    }
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
        item->setIcon(nameColumn(), iconProvider().icon(row.info));
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
