#pragma once

#include "filelisting.h"
#include "filerow.h"

#include <QAbstractItemModel>
#include <QHash>
#include <QVector>

/**
 * The rows of one file list as plain records, shown by a TreeWidget. Rows are
 * found by their path through a hash; they are added in batches and, for a
 * refresh, only the changed ones are added, updated or removed, so the view
 * keeps its current row, its selection and its scroll position.
 *
 * The full list has the columns Name, Ext, Size, Date; the flat list puts
 * Directory in front of them.
 */
class FileListModel : public QAbstractItemModel
{
    Q_OBJECT
public:
    /** Data role of column 0 that holds a row's path (its key). */
    static constexpr int KeyRole = 55;

    explicit FileListModel(QObject *parent = nullptr);

    /** Switches between the full (false) and the flat (true) columns; empties the list. */
    void setFlat(bool flat);
    int nameColumn() const { return m_flat ? 1 : 0; }
    int extColumn() const { return nameColumn() + 1; }
    int sizeColumn() const { return nameColumn() + 2; }
    int dateColumn() const { return nameColumn() + 3; }

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool hasChildren(const QModelIndex &parent = {}) const override;
    /** Sorts by a column; ".." and then the folders stay on top either way. */
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

    int count() const { return m_order.size(); }
    const FileRow &rowAt(int row) const { return m_slots.at(m_order.at(row)); }
    /** The row of @p path, or -1. */
    int rowOf(const QString &path) const;

    /** Empties the list; the user's sort stays for the next listing. */
    void clear();
    /**
     * Appends @p rows, which come in listing order, as one insertion. Rows
     * whose path is already listed are skipped. While the list is ordered
     * (isOrdered()) they go to their sorted places.
     */
    void appendRows(const QVector<FileRow> &rows);
    /** Brings the list up to date: adds, updates and removes only what changed. */
    void applyChanges(const FileListing::Changes &changes);
    /** Removes the rows of @p rows (row numbers, any order). */
    void removeRowNumbers(QVector<int> rows);
    /** Replaces row @p row (a rename); false when the new path is listed already. */
    bool replaceRow(int row, const FileRow &replacement);

    /** Whether rows follow the order of sortColumn() (always, in the full list). */
    bool isOrdered() const { return m_ordered; }
    /** The column the user sorted by, or -1 while rows keep listing order. */
    int sortColumn() const { return m_sortColumn; }
    Qt::SortOrder sortOrder() const { return m_sortOrder; }
    /** Back to listing order (the flat list: walk order, from the next listing on). */
    void resetSort();

    /**
     * Marks the rows whose path below the listed folder is one of
     * @p relativePaths, now and when such rows arrive later.
     */
    void addMarks(const QStringList &relativePaths, FileRow::Mark mark);
    void clearMarks();

    /** How a file name is shown (names that are not valid text included). */
    static QString displayName(const QString &name);

private:
    /** Sorts the rows again by sortColumn() and sortOrder(), keeping persistent indexes. */
    void reorder();
    bool less(const FileRow &a, const FileRow &b) const;
    int insertionPoint(const FileRow &row) const;
    int takeSlot(const FileRow &row);
    void releaseSlot(int slot);
    void renumberFrom(int row);
    void emitRowChanged(int row);

    bool m_flat = false;
    bool m_usTime = false;
    QVector<FileRow> m_slots;          // rows by slot; a slot never moves
    QVector<int> m_freeSlots;
    QVector<int> m_order;              // slots in display order
    QVector<int> m_rowOfSlot;          // display row of each slot
    QHash<QString, int> m_slotOfPath;
    QHash<QString, quint8> m_marks;    // by path below the listed folder
    bool m_ordered = true;
    int m_sortColumn = -1;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
};
