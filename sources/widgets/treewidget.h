#pragma once

#include <QTreeWidget>

/**
 * The list of one panel. Rows are kept in listing order until the user
 * clicks a header; from then on every new listing is sorted the same way.
 */
class TreeWidget : public QTreeWidget
{
    Q_OBJECT
public:
    explicit TreeWidget(QWidget *parent = nullptr);

    using QTreeWidget::indexFromItem;
    using QTreeWidget::itemFromIndex;

    /** Which columns hold the name, the size and the date in the current view. */
    void setColumnRoles(int nameColumn, int sizeColumn, int dateColumn);
    int nameColumn() const { return m_nameColumn; }
    int sizeColumn() const { return m_sizeColumn; }
    int dateColumn() const { return m_dateColumn; }

    /** The column the user sorted by, or -1 while rows keep listing order. */
    int userSortColumn() const { return m_sortColumn; }
    /** Sorts the rows the way the user last asked for, if ever. */
    void applyUserSort();
    /** Forgets the user's sort (the columns changed). */
    void resetUserSort();

private:
    void sortByColumn(int column);

    int m_nameColumn = 0;
    int m_sizeColumn = 2;
    int m_dateColumn = 3;
    int m_sortColumn = -1;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
};
