#include "treewidget.h"

#include "filelistmodel.h"

#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>

#include <algorithm>

TreeWidget::TreeWidget(QWidget *parent)
    : QTreeView(parent)
    , m_model(new FileListModel(this))
{
    setObjectName(QStringLiteral("FileSystemViewTreeWidget"));
    setModel(m_model);
    setEditTriggers(QAbstractItemView::EditKeyPressed);
    setItemsExpandable(false);
    setRootIsDecorated(false);
    setAllColumnsShowFocus(true);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    // All rows have one height; this keeps layout linear for huge folders.
    setUniformRowHeights(true);
    // Columns sized to their contents measure the shown rows and this many
    // more; a thousand (the default) makes every change of a huge list slow.
    header()->setResizeContentsPrecision(250);
    header()->setSectionsClickable(true);
    connect(header(), &QHeaderView::sectionClicked, this, &TreeWidget::sortByColumn);
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        if (!selectionModel()->hasSelection())
            m_marking = false;
    });
}

int TreeWidget::nameColumn() const { return m_model->nameColumn(); }
int TreeWidget::sizeColumn() const { return m_model->sizeColumn(); }
int TreeWidget::dateColumn() const { return m_model->dateColumn(); }

void TreeWidget::sortByColumn(int column)
{
    Qt::SortOrder order = Qt::AscendingOrder;
    if (column == m_model->sortColumn() && m_model->sortOrder() == Qt::AscendingOrder)
        order = Qt::DescendingOrder;
    header()->setSortIndicatorShown(true);
    header()->setSortIndicator(column, order);
    m_model->sort(column, order);
    if (currentIndex().isValid())
        scrollTo(currentIndex());
}

void TreeWidget::applyUserSort()
{
    if (m_model->sortColumn() < 0)
        return;
    m_model->sort(m_model->sortColumn(), m_model->sortOrder());
    if (currentIndex().isValid())
        scrollTo(currentIndex());
}

void TreeWidget::resetUserSort()
{
    m_model->resetSort();
    header()->setSortIndicatorShown(false);
}

int TreeWidget::currentRow() const
{
    const QModelIndex current = currentIndex();
    return current.isValid() ? current.row() : -1;
}

void TreeWidget::setCurrentRow(int row, QItemSelectionModel::SelectionFlags command)
{
    const QModelIndex index = m_model->index(row, 0);
    if (!index.isValid())
        return;
    if (command & QItemSelectionModel::Clear)
        m_marking = false;
    selectionModel()->setCurrentIndex(index, command | QItemSelectionModel::Rows);
    scrollTo(index);
}

QVector<int> TreeWidget::selectedRowNumbers() const
{
    QVector<int> rows;
    for (const QItemSelectionRange &range : selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows << row;
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

void TreeWidget::selectRowNumbers(QVector<int> rows)
{
    std::sort(rows.begin(), rows.end());
    QItemSelection selection;
    const int lastColumn = m_model->columnCount() - 1;
    for (int i = 0; i < rows.size();) {
        int j = i;
        while (j + 1 < rows.size() && rows.at(j + 1) <= rows.at(j) + 1)
            ++j;
        selection.append(QItemSelectionRange(m_model->index(rows.at(i), 0),
                                             m_model->index(rows.at(j), lastColumn)));
        i = j + 1;
    }
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

bool TreeWidget::isRowSelected(int row) const
{
    return selectionModel()->isRowSelected(row, {});
}

void TreeWidget::markRows(const QVector<int> &rows, bool select)
{
    if (!m_marking && select) {
        // The row under the cursor was selected only by being current.
        clearSelection();
    }
    QItemSelection selection;
    const int lastColumn = m_model->columnCount() - 1;
    for (int row : rows)
        selection.append(QItemSelectionRange(m_model->index(row, 0),
                                             m_model->index(row, lastColumn)));
    selectionModel()->select(selection, select ? QItemSelectionModel::Select
                                               : QItemSelectionModel::Deselect);
    m_marking = selectionModel()->hasSelection();
}

void TreeWidget::toggleMarkAndAdvance()
{
    const int row = currentRow();
    if (row < 0)
        return;
    markRows({row}, !(m_marking && isRowSelected(row)));
    if (row + 1 < m_model->count())
        moveCursorTo(row + 1);
}

void TreeWidget::moveCursorTo(int row)
{
    const QModelIndex index = m_model->index(row, currentIndex().isValid()
                                                      ? currentIndex().column() : 0);
    selectionModel()->setCurrentIndex(index, m_marking ? QItemSelectionModel::NoUpdate
                                                       : QItemSelectionModel::ClearAndSelect
                                                             | QItemSelectionModel::Rows);
    scrollTo(index);
}

QItemSelectionModel::SelectionFlags TreeWidget::selectionCommand(const QModelIndex &index,
                                                                 const QEvent *event) const
{
    const QItemSelectionModel::SelectionFlags normal = QTreeView::selectionCommand(index, event);
    if (!event)
        return m_marking ? QItemSelectionModel::NoUpdate : normal;
    switch (event->type()) {
    case QEvent::KeyPress: {
        const auto *key = static_cast<const QKeyEvent *>(event);
        if (key->modifiers() & Qt::ShiftModifier) {
            m_marking = true;
            return normal;
        }
        if (key->modifiers() & Qt::ControlModifier)
            return normal;
        return m_marking ? QItemSelectionModel::NoUpdate : normal;
    }
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove: {
        const auto *mouse = static_cast<const QMouseEvent *>(event);
        if (mouse->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier)) {
            m_marking = true;
            return normal;
        }
        if (event->type() == QEvent::MouseButtonPress)
            m_marking = false;
        return normal;
    }
    default:
        return normal;
    }
}

void TreeWidget::keyboardSearch(const QString &search)
{
    if (search.isEmpty() || m_model->count() == 0)
        return;
    if (!m_sinceSearchKey.isValid()
        || m_sinceSearchKey.elapsed() > QApplication::keyboardInputInterval())
        m_search.clear();
    m_sinceSearchKey.start();
    m_search += search;
    // A new search starts below the cursor; typing on refines from the cursor.
    const int count = m_model->count();
    const int current = qMax(0, currentRow());
    const int start = m_search.size() == search.size() ? current + 1 : current;
    for (int i = 0; i < count; ++i) {
        const int row = (start + i) % count;
        const QString name = FileListModel::displayName(m_model->rowAt(row).fileName());
        if (name.startsWith(m_search, Qt::CaseInsensitive)) {
            moveCursorTo(row);
            return;
        }
    }
}
