#pragma once

#include <QElapsedTimer>
#include <QItemSelectionModel>
#include <QTreeView>

class FileListModel;

/**
 * The list of one panel: a view of a FileListModel. Rows keep listing order
 * until the user clicks a header; from then on every listing is sorted that
 * way.
 *
 * Marks work as in two-panel file managers: Insert, Shift with the arrows,
 * and Ctrl or Shift with a click mark rows, and marked rows stay marked while
 * the cursor moves; a plain click selects the one row clicked. Typing a name
 * moves the cursor to the first row whose name starts with it.
 */
class TreeWidget : public QTreeView
{
    Q_OBJECT
public:
    explicit TreeWidget(QWidget *parent = nullptr);

    FileListModel *fileModel() const { return m_model; }

    int nameColumn() const;
    int sizeColumn() const;
    int dateColumn() const;

    /** Sorts the rows the way the user last asked for, if ever. */
    void applyUserSort();
    /** Forgets the user's sort (the columns changed). */
    void resetUserSort();

    /** The current row, or -1. */
    int currentRow() const;
    /** Makes @p row current; by default it also becomes the one selected row. */
    void setCurrentRow(int row, QItemSelectionModel::SelectionFlags command
                                = QItemSelectionModel::ClearAndSelect);
    /** The selected rows, ascending. */
    QVector<int> selectedRowNumbers() const;
    /** Selects exactly @p rows, in as few ranges as they allow. */
    void selectRowNumbers(QVector<int> rows);
    bool isRowSelected(int row) const;

    /** Whether the selection is a set of marks that the cursor does not disturb. */
    bool isMarking() const { return m_marking; }
    /** Takes the selection as marks (true) or as the cursor's own row (false). */
    void setMarking(bool marking) { m_marking = marking && selectionModel()->hasSelection(); }
    /** Insert: marks or unmarks the current row and moves the cursor down. */
    void toggleMarkAndAdvance();
    /** Selects (or, with @p select false, unselects) @p rows as marks. */
    void markRows(const QVector<int> &rows, bool select);

    void keyboardSearch(const QString &search) override;

protected:
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex &index,
                                                         const QEvent *event) const override;

private:
    void sortByColumn(int column);
    void moveCursorTo(int row);

    FileListModel *m_model;
    mutable bool m_marking = false;
    QString m_search;
    QElapsedTimer m_sinceSearchKey;
};
