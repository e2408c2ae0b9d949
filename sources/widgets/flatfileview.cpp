#include "flatfileview.h"

#include "fileinfomap.h"
#include "treewidget.h"

#include <QDir>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QMutexLocker>
#include <QSet>
#include <QStack>
#include <QTimer>

namespace {

// Rows a worker collects before it hands them over, and how long it may
// hold them at most.
constexpr int DeliverRows = 512;
constexpr int DeliverMs = 40;
// How long one insertion pass may keep the GUI thread busy.
constexpr int InsertBudgetMs = 10;
constexpr int InsertChunk = 128;

} // namespace

FlatFileView::FlatFileView()
{
    // Emitted on the worker; the lambda runs on the GUI thread, which owns
    // this object, and inserts what the walk left behind.
    connect(this, &QThread::finished, this, [this] { insertPending(m_generation.load()); });
}

FlatFileView::~FlatFileView()
{
    stop();
}

void FlatFileView::setColumns(TreeWidget *tree) const
{
    tree->setColumnCount(5);
    tree->setHeaderLabels({QStringLiteral("Directory"), QStringLiteral("Name"),
                           QStringLiteral("Ext"), QStringLiteral("Size"), QStringLiteral("Date")});
    QHeaderView *header = tree->header();
    header->setStretchLastSection(false);
    header->setSectionResizeMode(0, QHeaderView::Stretch);
    for (int column = 1; column < 5; ++column)
        header->setSectionResizeMode(column, QHeaderView::ResizeToContents);
    tree->setColumnRoles(nameColumn(), sizeColumn(), dateColumn());
}

void FlatFileView::showObjects(TreeWidget *tree, const QString &path, FileInfoMap &map,
                               bool withParent)
{
    stop();
    ++m_generation;
    m_doneReported = false;
    m_stop.store(false);
    m_root = QDir::cleanPath(path);
    m_rootPrefix = m_root.endsWith(QLatin1Char('/')) ? m_root : m_root + QLatin1Char('/');
    m_withParent = withParent;
    m_tree = tree;
    m_map = &map;
    // Sizing columns to their contents after every batch would measure
    // thousands of rows each time; they are sized once the list is complete.
    for (int column = 1; column < columnCount(); ++column)
        tree->header()->setSectionResizeMode(column, QHeaderView::Interactive);
    start(QThread::LowestPriority);
}

void FlatFileView::stop()
{
    if (isRunning()) {
        m_stop.store(true);
        if (!wait(m_stopTimeout)) {
            terminate();
            wait();
        }
    }
    ++m_generation;
    QMutexLocker locker(&m_mutex);
    m_pending.clear();
    m_ready.clear();
    m_readyIndex = 0;
    m_wakeQueued = false;
    m_insertScheduled = false;
    m_doneReported = true;
    restoreColumnSizing();
}

void FlatFileView::restoreColumnSizing()
{
    // The list may show the full view's columns by now.
    if (!m_tree || m_tree->columnCount() != columnCount())
        return;
    for (int column = 1; column < columnCount(); ++column)
        m_tree->header()->setSectionResizeMode(column, QHeaderView::ResizeToContents);
}

bool FlatFileView::isBusy() const
{
    if (isRunning())
        return true;
    QMutexLocker locker(&m_mutex);
    return !m_pending.isEmpty() || m_readyIndex < m_ready.size();
}

void FlatFileView::names(const QFileInfo &info, QString *name, QString *directory) const
{
    *name = info.isDir() ? info.fileName() : info.completeBaseName();
    const QString folder = info.path();
    if (folder.size() > m_rootPrefix.size() && folder.startsWith(m_rootPrefix))
        *directory = folder.mid(m_rootPrefix.size());
    else
        directory->clear();
}

void FlatFileView::countRow(const QTreeWidgetItem *item, const FileInfoMap &map, int *count,
                            qint64 *size) const
{
    if (item->text(nameColumn()) == parentName())
        return;
    bool found = false;
    const QFileInfo info = map.value(item, &found);
    if (found)
        *size += rowBytes(item, info);
    ++*count;
}

void FlatFileView::run()
{
    if (isStopRequested())
        return;
    QDir::Filters rootFilters = QDir::Dirs | QDir::Files | QDir::NoDot;
    if (!m_withParent)
        rootFilters |= QDir::NoDotDot;
    QStack<QFileInfo> stack;
    for (const QFileInfo &info : QDir(m_root).entryInfoList(rootFilters, QDir::NoSort))
        stack.push(info);

    // Folders met so far, by their real path, so that a link back up the
    // tree (or two links to one folder) cannot make the walk list it again.
    QSet<QString> visited;
    visited.insert(QFileInfo(m_root).canonicalFilePath());

    QVector<FileRow> rows;
    QElapsedTimer sinceDelivery;
    sinceDelivery.start();
    while (!stack.isEmpty()) {
        if (isStopRequested())
            return;
        const QFileInfo info = stack.pop();
        if (info.isDir() && info.fileName() != parentName()) {
            const QString real = info.canonicalFilePath();
            if (real.isEmpty() || visited.contains(real))
                continue;
            visited.insert(real);
            const QFileInfoList entries = QDir(info.filePath())
                                              .entryInfoList(QDir::Dirs | QDir::Files
                                                                 | QDir::NoDotAndDotDot,
                                                             QDir::NoSort);
            for (const QFileInfo &entry : entries)
                stack.push(entry);
            continue;
        }
        rows << makeRow(info);
        if (rows.size() >= DeliverRows || sinceDelivery.hasExpired(DeliverMs)) {
            deliver(rows);
            sinceDelivery.restart();
        }
    }
    deliver(rows);
}

void FlatFileView::deliver(QVector<FileRow> &rows)
{
    bool wake = false;
    {
        QMutexLocker locker(&m_mutex);
        if (!rows.isEmpty()) {
            m_pending += rows;
            rows.clear();
        }
        if (!m_wakeQueued) {
            m_wakeQueued = true;
            wake = true;
        }
    }
    // The QThread object lives on the GUI thread, so this runs there.
    if (wake) {
        const quint64 generation = m_generation.load();
        QMetaObject::invokeMethod(
            this, [this, generation] { insertPending(generation); }, Qt::QueuedConnection);
    }
}

void FlatFileView::insertPending(quint64 generation)
{
    if (generation != m_generation.load())
        return;
    m_insertScheduled = false;
    {
        QMutexLocker locker(&m_mutex);
        m_wakeQueued = false;
        if (!m_pending.isEmpty()) {
            if (m_readyIndex >= m_ready.size()) {
                m_ready.swap(m_pending);
                m_readyIndex = 0;
            } else {
                m_ready += m_pending;
            }
            m_pending.clear();
        }
    }
    if (!m_tree || !m_map) {
        m_ready.clear();
        m_readyIndex = 0;
        return;
    }
    QElapsedTimer budget;
    budget.start();
    while (m_readyIndex < m_ready.size() && !budget.hasExpired(InsertBudgetMs)) {
        const int count = qMin(InsertChunk, m_ready.size() - m_readyIndex);
        addRows(m_tree, *m_map, m_ready.mid(m_readyIndex, count));
        m_readyIndex += count;
    }
    if (m_readyIndex >= m_ready.size()) {
        m_ready.clear();
        m_readyIndex = 0;
    }
    if (m_batch)
        m_batch();
    if (m_readyIndex < m_ready.size()) {
        // Let the event loop breathe before the next slice.
        if (!m_insertScheduled) {
            m_insertScheduled = true;
            QTimer::singleShot(0, this, [this, generation] { insertPending(generation); });
        }
        return;
    }
    finishIfDone();
}

void FlatFileView::finishIfDone()
{
    if (m_doneReported || isBusy())
        return;
    m_doneReported = true;
    restoreColumnSizing();
    if (m_done)
        m_done();
}
