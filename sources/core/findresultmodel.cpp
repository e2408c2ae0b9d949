#include "findresultmodel.h"

#include "filenamecodec.h"

int FindResultModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows.size();
}

int FindResultModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : 3;
}

QVariant FindResultModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_rows.size())
        return QVariant();
    const Row &row = m_rows.at(index.row());
    if (role == PathRole)
        return index.column() == 0 && !row.summary ? row.hit.path : QVariant();
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
        return QVariant();
    if (row.summary)
        return index.column() == 0 ? row.hit.text : QVariant();
    switch (index.column()) {
    case 0:
        return FileNameCodec::displayName(row.hit.path);
    case 1:
        return row.hit.line;
    default:
        return row.hit.text;
    }
}

QVariant FindResultModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section > 2)
        return QVariant();
    static const char *const labels[] = {"File name", "Line", "Text "};
    return QString::fromLatin1(labels[section]);
}

Qt::ItemFlags FindResultModel::flags(const QModelIndex &index) const
{
    // Saying that no row has children spares the view a look-up per row when it lays them out.
    return QAbstractTableModel::flags(index) | Qt::ItemNeverHasChildren;
}

void FindResultModel::appendHits(const QVector<FindHit> &hits)
{
    if (hits.isEmpty())
        return;
    const int first = m_rows.size();
    beginInsertRows(QModelIndex(), first, first + hits.size() - 1);
    m_rows.reserve(first + hits.size());
    for (int i = 0; i < hits.size(); ++i) {
        const FindHit &hit = hits.at(i);
        // Hits come file by file: one look-up per file, not per line.
        if (i == 0 || hit.path != hits.at(i - 1).path)
            m_paths.insert(hit.path);
        m_rows.append(Row{hit, false});
    }
    endInsertRows();
}

void FindResultModel::appendSummary(const QStringList &lines)
{
    if (lines.isEmpty())
        return;
    const int first = m_rows.size();
    beginInsertRows(QModelIndex(), first, first + lines.size() - 1);
    for (const QString &line : lines)
        m_rows.append(Row{FindHit{QString(), QString(), line}, true});
    endInsertRows();
}

void FindResultModel::clear()
{
    beginResetModel();
    m_rows.clear();
    m_paths.clear();
    endResetModel();
}
