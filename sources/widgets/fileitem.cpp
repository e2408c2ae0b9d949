#include "fileitem.h"

#include "treewidget.h"

#include <QHeaderView>

FileItem::FileItem(const QStringList &texts)
    : QTreeWidgetItem(texts, QTreeWidgetItem::UserType)
{
    // Rows never nest; saying so spares the view a look for children of
    // every row each time it lays out the list.
    setFlags(flags() | Qt::ItemNeverHasChildren);
}

void FileItem::setSortData(Group group, qint64 size, qint64 modified)
{
    m_group = group;
    m_size = size;
    m_modified = modified;
}

bool FileItem::operator<(const QTreeWidgetItem &other) const
{
    auto *tree = qobject_cast<TreeWidget *>(treeWidget());
    if (!tree || other.type() != QTreeWidgetItem::UserType)
        return QTreeWidgetItem::operator<(other);
    const auto &that = static_cast<const FileItem &>(other);
    const bool ascending = tree->header()->sortIndicatorOrder() == Qt::AscendingOrder;
    if (m_group != that.m_group) {
        // Qt reverses the comparison for a descending sort; undo that for
        // the groups so ".." and folders stay first.
        return ascending ? m_group < that.m_group : m_group > that.m_group;
    }
    const int column = tree->sortColumn();
    if (column == tree->sizeColumn() && m_size != that.m_size)
        return m_size < that.m_size;
    if (column == tree->dateColumn() && m_modified != that.m_modified)
        return m_modified < that.m_modified;
    const int byColumn = text(column).compare(that.text(column), Qt::CaseInsensitive);
    if (byColumn != 0)
        return byColumn < 0;
    const int name = tree->nameColumn();
    return text(name).compare(that.text(name), Qt::CaseInsensitive) < 0;
}
