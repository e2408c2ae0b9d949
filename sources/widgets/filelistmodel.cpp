#include "filelistmodel.h"

#include "backgroundrelease.h"
#include "filenamecodec.h"

#include <QFileIconProvider>
#include <QFileInfo>
#include <QFont>
#include <QColor>
#include <QIcon>

#include <algorithm>

namespace {

// Above this many separate places, new rows are appended and the list sorted again.
constexpr int MaxInsertRuns = 256;

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
QIcon iconFor(const FileRow &row)
{
    const QString suffix = row.kind == FileRow::File ? row.ext.toLower() : QString();
    if (suffix == QLatin1String("exe") || suffix == QLatin1String("lnk")
        || suffix == QLatin1String("ico"))
        return iconProvider().icon(QFileInfo(row.path));
    static QHash<QString, QIcon> cache;
    const QString key = QString::number(int(row.kind)) + suffix;
    auto it = cache.find(key);
    if (it == cache.end()) {
        const QIcon icon = row.kind == FileRow::File
            ? iconProvider().icon(QFileInfo(QStringLiteral("x.") + suffix))
            : iconProvider().icon(QFileIconProvider::Folder);
        it = cache.insert(key, icon);
    }
    return it.value();
}

} // namespace

FileListModel::FileListModel(QObject *parent)
    : QAbstractItemModel(parent)
    , m_usTime(FileListing::usesUsTime())
{
}

QString FileListModel::displayName(const QString &name)
{
    return FileNameCodec::displayName(name);
}

void FileListModel::setFlat(bool flat)
{
    beginResetModel();
    m_flat = flat;
    m_slots.clear();
    m_freeSlots.clear();
    m_order.clear();
    m_rowOfSlot.clear();
    m_slotOfPath.clear();
    m_sortColumn = -1;
    m_sortOrder = Qt::AscendingOrder;
    m_ordered = !flat;
    endResetModel();
}

QModelIndex FileListModel::index(int row, int column, const QModelIndex &parent) const
{
    if (parent.isValid() || row < 0 || row >= m_order.size() || column < 0
        || column >= columnCount())
        return {};
    return createIndex(row, column);
}

QModelIndex FileListModel::parent(const QModelIndex &) const
{
    return {};
}

int FileListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_order.size();
}

int FileListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : (m_flat ? 5 : 4);
}

bool FileListModel::hasChildren(const QModelIndex &parent) const
{
    return !parent.isValid();
}

QVariant FileListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_order.size())
        return {};
    const FileRow &row = rowAt(index.row());
    const int column = index.column();
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        if (column == nameColumn())
            return displayName(row.name);
        if (column == extColumn())
            return displayName(row.ext);
        if (column == sizeColumn()) {
            if (row.kind == FileRow::File)
                return FileListing::sizeText(row.bytes);
            return m_flat ? QString() : QStringLiteral("<Dir>");
        }
        if (column == dateColumn()) {
            // ".." carries no date.
            if (row.kind == FileRow::Parent)
                return QString();
            return FileListing::dateText(QDateTime::fromMSecsSinceEpoch(row.modified, Qt::UTC),
                                         m_usTime);
        }
        return displayName(row.directory);
    case Qt::ToolTipRole:
        // The flat list's Directory column is often cut; the tip shows it whole.
        if (m_flat && column == 0)
            return displayName(row.directory);
        return {};
    case Qt::DecorationRole:
        if (column == nameColumn())
            return iconFor(row);
        return {};
    case Qt::ForegroundRole:
        if (column == nameColumn() && row.mark != FileRow::NoMark)
            return QColor((row.mark & FileRow::AbsentMark) ? 255 : 0,
                          (row.mark & FileRow::DifferentMark) ? 100 : 0, 0);
        return {};
    case Qt::FontRole:
        if (column == nameColumn() && row.mark != FileRow::NoMark) {
            QFont font;
            font.setWeight(75);
            return font;
        }
        return {};
    case KeyRole:
        return row.path;
    default:
        return {};
    }
}

QVariant FileListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    static const char *const full[] = {"Name", "Ext", "Size", "Date"};
    static const char *const flat[] = {"Directory", "Name", "Ext", "Size", "Date"};
    if (section < 0 || section >= columnCount())
        return {};
    return QString::fromLatin1(m_flat ? flat[section] : full[section]);
}

Qt::ItemFlags FileListModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
    // Only the full list renames in place, and never "..".
    if (!m_flat && rowAt(index.row()).kind != FileRow::Parent)
        flags |= Qt::ItemIsEditable;
    return flags;
}

int FileListModel::rowOf(const QString &path) const
{
    const auto it = m_slotOfPath.constFind(path);
    return it == m_slotOfPath.cend() ? -1 : m_rowOfSlot.at(it.value());
}

bool FileListModel::less(const FileRow &a, const FileRow &b) const
{
    // ".." and the folders stay on top in either direction.
    if (a.kind != b.kind)
        return a.kind < b.kind;
    int byColumn = 0;
    const int column = m_sortColumn < 0 ? nameColumn() : m_sortColumn;
    if (column == sizeColumn())
        byColumn = a.bytes < b.bytes ? -1 : (a.bytes > b.bytes ? 1 : 0);
    else if (column == dateColumn())
        byColumn = a.modified < b.modified ? -1 : (a.modified > b.modified ? 1 : 0);
    else if (column == extColumn())
        byColumn = a.ext.compare(b.ext, Qt::CaseInsensitive);
    else if (column != nameColumn())
        byColumn = a.directory.compare(b.directory, Qt::CaseInsensitive);
    if (byColumn == 0)
        byColumn = a.sortName < b.sortName ? -1 : (b.sortName < a.sortName ? 1 : 0);
    if (byColumn == 0)
        byColumn = a.path < b.path ? -1 : (b.path < a.path ? 1 : 0);
    return m_sortOrder == Qt::AscendingOrder ? byColumn < 0 : byColumn > 0;
}

void FileListModel::sort(int column, Qt::SortOrder order)
{
    if (column < 0 || column >= columnCount())
        return;
    m_sortColumn = column;
    m_sortOrder = order;
    reorder();
}

void FileListModel::reorder()
{
    Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    QVector<int> slotsBefore;
    slotsBefore.reserve(before.size());
    for (const QModelIndex &index : before)
        slotsBefore << m_order.at(index.row());
    m_ordered = true;
    std::stable_sort(m_order.begin(), m_order.end(),
                     [this](int a, int b) { return less(m_slots.at(a), m_slots.at(b)); });
    renumberFrom(0);
    QModelIndexList after;
    after.reserve(before.size());
    for (int i = 0; i < before.size(); ++i)
        after << index(m_rowOfSlot.at(slotsBefore.at(i)), before.at(i).column());
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

void FileListModel::resetSort()
{
    m_sortColumn = -1;
    m_sortOrder = Qt::AscendingOrder;
    m_ordered = !m_flat;
}

void FileListModel::clear()
{
    // A flat listing comes in walk order; it is sorted once it is complete.
    m_ordered = !m_flat;
    if (m_order.isEmpty() && m_slots.isEmpty())
        return;
    beginResetModel();
    releaseInBackground(std::move(m_slots));
    releaseInBackground(std::move(m_slotOfPath));
    m_slots.clear();
    m_freeSlots.clear();
    m_order.clear();
    m_rowOfSlot.clear();
    m_slotOfPath.clear();
    endResetModel();
}

int FileListModel::takeSlot(const FileRow &row)
{
    int slot;
    if (!m_freeSlots.isEmpty()) {
        slot = m_freeSlots.takeLast();
        m_slots[slot] = row;
    } else {
        slot = m_slots.size();
        m_slots.append(row);
        m_rowOfSlot.append(-1);
    }
    FileRow &stored = m_slots[slot];
    if (!m_marks.isEmpty() && stored.kind == FileRow::File)
        stored.mark = m_marks.value(stored.relativePath(), FileRow::NoMark);
    m_slotOfPath.insert(stored.path, slot);
    return slot;
}

void FileListModel::releaseSlot(int slot)
{
    m_slotOfPath.remove(m_slots.at(slot).path);
    m_slots[slot] = FileRow();
    m_rowOfSlot[slot] = -1;
    m_freeSlots.append(slot);
}

void FileListModel::renumberFrom(int row)
{
    for (int i = qMax(0, row), n = m_order.size(); i < n; ++i)
        m_rowOfSlot[m_order.at(i)] = i;
}

int FileListModel::insertionPoint(const FileRow &row) const
{
    const auto at = std::lower_bound(m_order.cbegin(), m_order.cend(), row,
                                     [this](int slot, const FileRow &value) {
                                         return less(m_slots.at(slot), value);
                                     });
    return int(at - m_order.cbegin());
}

void FileListModel::appendRows(const QVector<FileRow> &rows)
{
    QVector<FileRow> fresh;
    fresh.reserve(rows.size());
    for (const FileRow &row : rows) {
        if (!m_slotOfPath.contains(row.path))
            fresh << row;
    }
    if (fresh.isEmpty())
        return;
    if (m_slots.isEmpty()) {
        // A new listing: room for all of it at once, rather than growing each container many times.
        m_slots.reserve(fresh.size());
        m_rowOfSlot.reserve(fresh.size());
        m_slotOfPath.reserve(fresh.size());
    }
    // Listings come in listing order; only the user's own sort needs sorting.
    if (m_ordered && m_sortColumn >= 0)
        std::stable_sort(fresh.begin(), fresh.end(),
                         [this](const FileRow &a, const FileRow &b) { return less(a, b); });
    if (!m_ordered || m_order.isEmpty()) {
        const int first = m_order.size();
        beginInsertRows({}, first, first + fresh.size() - 1);
        m_order.reserve(first + fresh.size());
        for (const FileRow &row : qAsConst(fresh))
            m_order.append(takeSlot(row));
        renumberFrom(first);
        endInsertRows();
        return;
    }
    // Places are found before anything moves, then filled from the back so
    // that the places still to fill stay where they were found.
    QVector<int> points;
    points.reserve(fresh.size());
    int runs = 0;
    for (const FileRow &row : qAsConst(fresh)) {
        points << insertionPoint(row);
        if (points.size() == 1 || points.last() != points.at(points.size() - 2))
            ++runs;
    }
    if (runs > MaxInsertRuns) {
        // Many scattered places: one insertion at the end and one re-sort
        // cost less than moving the rows for each place.
        const int first = m_order.size();
        beginInsertRows({}, first, first + fresh.size() - 1);
        for (const FileRow &row : qAsConst(fresh))
            m_order.append(takeSlot(row));
        renumberFrom(first);
        endInsertRows();
        reorder();
        return;
    }
    int end = fresh.size();
    while (end > 0) {
        int begin = end - 1;
        while (begin > 0 && points.at(begin - 1) == points.at(end - 1))
            --begin;
        const int at = points.at(end - 1);
        beginInsertRows({}, at, at + end - begin - 1);
        m_order.insert(at, end - begin, 0);
        for (int i = begin; i < end; ++i)
            m_order[at + i - begin] = takeSlot(fresh.at(i));
        endInsertRows();
        end = begin;
    }
    renumberFrom(points.first());
}

void FileListModel::emitRowChanged(int row)
{
    Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1));
}

void FileListModel::applyChanges(const FileListing::Changes &changes)
{
    QVector<FileRow> added;
    for (const FileRow &row : changes.added) {
        // A row that is there already (renamed in place) is only brought up to date.
        const int at = rowOf(row.path);
        if (at < 0) {
            added << row;
            continue;
        }
        FileRow &stored = m_slots[m_order.at(at)];
        if (!stored.sameState(row)) {
            const quint8 mark = stored.mark;
            stored = row;
            stored.mark = mark;
            emitRowChanged(at);
        }
    }
    for (const FileRow &row : changes.changed) {
        const int at = rowOf(row.path);
        if (at < 0) {
            added << row;
            continue;
        }
        FileRow &stored = m_slots[m_order.at(at)];
        const quint8 mark = stored.mark;
        stored = row;
        stored.mark = mark;
        emitRowChanged(at);
    }
    QVector<int> gone;
    for (const QString &path : changes.removed) {
        const int at = rowOf(path);
        if (at >= 0)
            gone << at;
    }
    removeRowNumbers(gone);
    appendRows(added);
}

void FileListModel::removeRowNumbers(QVector<int> rows)
{
    if (rows.isEmpty())
        return;
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    // From the back, one contiguous run at a time.
    int end = rows.size();
    while (end > 0) {
        int begin = end - 1;
        while (begin > 0 && rows.at(begin - 1) == rows.at(begin) - 1)
            --begin;
        const int first = rows.at(begin);
        const int last = rows.at(end - 1);
        beginRemoveRows({}, first, last);
        for (int row = first; row <= last; ++row)
            releaseSlot(m_order.at(row));
        m_order.remove(first, last - first + 1);
        endRemoveRows();
        end = begin;
    }
    renumberFrom(rows.first());
}

bool FileListModel::replaceRow(int row, const FileRow &replacement)
{
    if (row < 0 || row >= m_order.size())
        return false;
    const int slot = m_order.at(row);
    FileRow &stored = m_slots[slot];
    if (replacement.path != stored.path) {
        if (m_slotOfPath.contains(replacement.path))
            return false;
        m_slotOfPath.remove(stored.path);
        m_slotOfPath.insert(replacement.path, slot);
    }
    const quint8 mark = stored.mark;
    stored = replacement;
    stored.mark = mark;
    emitRowChanged(row);
    return true;
}

void FileListModel::addMarks(const QStringList &relativePaths, FileRow::Mark mark)
{
    for (const QString &path : relativePaths)
        m_marks[path] |= mark;
    for (int row = 0, n = m_order.size(); row < n; ++row) {
        FileRow &stored = m_slots[m_order.at(row)];
        if (stored.kind != FileRow::File)
            continue;
        const quint8 wanted = m_marks.value(stored.relativePath(), FileRow::NoMark);
        if (wanted != stored.mark) {
            stored.mark = wanted;
            emitRowChanged(row);
        }
    }
}

void FileListModel::clearMarks()
{
    m_marks.clear();
    for (int row = 0, n = m_order.size(); row < n; ++row) {
        FileRow &stored = m_slots[m_order.at(row)];
        if (stored.mark != FileRow::NoMark) {
            stored.mark = FileRow::NoMark;
            emitRowChanged(row);
        }
    }
}
