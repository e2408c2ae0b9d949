#include "flatfileview.h"

#include "filelistmodel.h"
#include "listingworker.h"
#include "treewidget.h"

#include <QDir>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QTimer>

namespace {

// How often rows are put into the list while a walk runs, and how long one
// slice may keep the GUI thread busy.
constexpr int SliceIntervalMs = 50;
constexpr int SliceBudgetMs = 12;
constexpr int SliceChunk = 1024;

} // namespace

FlatFileView::FlatFileView(QObject *parent)
    : QObject(parent)
    , m_sliceTimer(new QTimer(this))
{
    m_sliceTimer->setInterval(SliceIntervalMs);
    connect(m_sliceTimer, &QTimer::timeout, this, &FlatFileView::insertSlice);
}

FlatFileView::~FlatFileView()
{
    if (m_walk.isActive()) {
        m_walk.requestStop();
        // The worker sees the request at its next entry; a walk stuck in the
        // file system is left to end on its own and clean up after itself.
        m_walk.wait(m_stopTimeout);
    }
}

void FlatFileView::setColumns(TreeWidget *tree) const
{
    tree->fileModel()->setFlat(true);
    setHeaderSizing(tree);
    // Deep paths share their start; cut in the middle so the folder that tells rows apart shows.
    tree->setTextElideMode(Qt::ElideMiddle);
}

void FlatFileView::showObjects(FileListModel *model, const QString &path, bool withParent)
{
    stop();
    m_model = model;
    m_tree = qobject_cast<TreeWidget *>(model->QObject::parent());
    m_listed.clear();
    // Sizing columns to their contents after every slice would measure
    // thousands of rows each time; they are sized once the list is complete.
    if (m_tree) {
        for (int column = 1; column < columnCount(); ++column)
            m_tree->header()->setSectionResizeMode(column, QHeaderView::Interactive);
    }
    ListingWorker::Request request;
    request.folder = QDir::cleanPath(path);
    request.tree = true;
    request.withParent = withParent;
    request.hidden = m_hidden;
    auto *worker = new ListingWorker(request);
    m_walking = true;
    connect(worker, &ListingWorker::rowsFound, this, [this, worker](const QVector<FileRow> &rows) {
        if (!m_walk.controls(worker))
            return;
        m_pending += rows;
        if (!m_sliceTimer->isActive()) {
            // The first rows go in at once; later ones on the timer.
            m_sliceTimer->start();
            insertSlice();
        }
    });
    connect(worker, &ListingWorker::done, this, [this, worker](bool) {
        if (!m_walk.controls(worker))
            return;
        m_walking = false;
        m_walk = {};
        insertSlice();
    });
    m_walk = worker->start(QThread::LowestPriority);
}

void FlatFileView::stop()
{
    m_walk.requestStop();
    m_walk = {};
    m_walking = false;
    m_sliceTimer->stop();
    m_pending.clear();
    m_pendingIndex = 0;
    restoreColumnSizing();
}

bool FlatFileView::isBusy() const
{
    return m_walking || m_pendingIndex < m_pending.size();
}

void FlatFileView::restoreColumnSizing()
{
    // The list may show the full view's columns by now.
    if (!m_tree || !m_model || m_model->columnCount() != columnCount())
        return;
    for (int column = 1; column < columnCount(); ++column)
        m_tree->header()->setSectionResizeMode(column, QHeaderView::ResizeToContents);
}

void FlatFileView::insertSlice()
{
    if (!m_model) {
        stop();
        return;
    }
    QElapsedTimer budget;
    budget.start();
    while (m_pendingIndex < m_pending.size() && !budget.hasExpired(SliceBudgetMs)) {
        const int count = qMin(SliceChunk, m_pending.size() - m_pendingIndex);
        const QVector<FileRow> slice = m_pending.mid(m_pendingIndex, count);
        m_model->appendRows(slice);
        m_listed += slice;
        m_pendingIndex += count;
    }
    if (m_pendingIndex >= m_pending.size()) {
        m_pending.clear();
        m_pendingIndex = 0;
    }
    if (m_batch)
        m_batch();
    if (isBusy())
        return;
    m_sliceTimer->stop();
    restoreColumnSizing();
    if (m_done)
        m_done();
}
