#include "treewidget.h"

#include <QHeaderView>

TreeWidget::TreeWidget(QWidget *parent)
    : QTreeWidget(parent)
{
    setObjectName(QStringLiteral("FileSystemViewTreeWidget"));
    setEditTriggers(QAbstractItemView::EditKeyPressed);
    setItemsExpandable(false);
    setRootIsDecorated(false);
    setAllColumnsShowFocus(true);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    // All rows have one height; this keeps layout linear for huge folders.
    setUniformRowHeights(true);
    // Columns sized to their contents measure the shown rows and this many
    // more; a thousand (the default) makes every change of a huge list slow.
    header()->setResizeContentsPrecision(250);
    header()->setSectionsClickable(true);
    connect(header(), &QHeaderView::sectionClicked, this, &TreeWidget::sortByColumn);
}

void TreeWidget::setColumnRoles(int nameColumn, int sizeColumn, int dateColumn)
{
    m_nameColumn = nameColumn;
    m_sizeColumn = sizeColumn;
    m_dateColumn = dateColumn;
}

void TreeWidget::sortByColumn(int column)
{
    if (column == m_sortColumn)
        m_sortOrder = m_sortOrder == Qt::AscendingOrder ? Qt::DescendingOrder : Qt::AscendingOrder;
    else
        m_sortOrder = Qt::AscendingOrder;
    m_sortColumn = column;
    header()->setSortIndicatorShown(true);
    applyUserSort();
}

void TreeWidget::applyUserSort()
{
    if (m_sortColumn < 0)
        return;
    QTreeWidgetItem *current = currentItem();
    sortItems(m_sortColumn, m_sortOrder);
    if (current)
        scrollToItem(current);
}

void TreeWidget::resetUserSort()
{
    m_sortColumn = -1;
    m_sortOrder = Qt::AscendingOrder;
    header()->setSortIndicatorShown(false);
}
