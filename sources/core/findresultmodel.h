#pragma once

#include "findhit.h"

#include <QAbstractTableModel>
#include <QSet>
#include <QStringList>
#include <QVector>

/**
 * The results of find in files as plain rows: one row per hit (file name,
 * line, text), then summary rows (the totals) that name no file. Hits are
 * added in batches, each batch one insertion, so tens of thousands of rows
 * cost the view little.
 */
class FindResultModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    /** Data role of column 0: the hit's path as the file system knows it; empty for a summary row. */
    static constexpr int PathRole = Qt::UserRole + 2;

    using QAbstractTableModel::QAbstractTableModel;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    /** Appends @p hits as one insertion. */
    void appendHits(const QVector<FindHit> &hits);
    /** Appends rows of text that name no file (totals, notes). */
    void appendSummary(const QStringList &lines);
    void clear();

    bool isHit(int row) const { return !m_rows.at(row).summary; }
    const FindHit &hit(int row) const { return m_rows.at(row).hit; }
    /** Distinct paths among the hit rows. */
    int fileCount() const { return m_paths.size(); }

private:
    struct Row
    {
        FindHit hit; // a summary row keeps its text in hit.text
        bool summary = false;
    };
    QVector<Row> m_rows;
    QSet<QString> m_paths;
};
