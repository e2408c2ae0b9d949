#pragma once

#include "fileview.h"

#include <QMutex>
#include <QPointer>
#include <QThread>

#include <atomic>
#include <functional>

/**
 * Lists a folder and all its sub-folders as one flat list of files. A worker
 * thread at lowest priority walks the tree depth-first and builds rows; the
 * GUI thread inserts them in bounded batches so that it never stalls. A
 * folder reached twice (through symbolic links) is walked once.
 */
class FlatFileView : public FileView, public QThread
{
public:
    FlatFileView();
    ~FlatFileView() override;

    void setColumns(TreeWidget *tree) const override;
    /** Stops a running listing and starts a new one; returns at once. */
    void showObjects(TreeWidget *tree, const QString &path, FileInfoMap &map,
                     bool withParent = true) override;
    void countRow(const QTreeWidgetItem *item, const FileInfoMap &map, int *count,
                  qint64 *size) const override;
    int nameColumn() const override { return 1; }
    int extColumn() const override { return 2; }
    int sizeColumn() const override { return 3; }
    int dateColumn() const override { return 4; }
    int columnCount() const override { return 5; }
    QThread *worker() override { return this; }
    /**
     * Sets the stop flag, waits up to the stop timeout for the worker and
     * terminates it if it is still running; rows not yet inserted are dropped.
     */
    void stop() override;
    bool isBusy() const override;
    void names(const QFileInfo &info, QString *name, QString *directory) const override;
    bool showFoldersAsRows() const override { return false; }

    /** Called on the GUI thread once the walk has ended and every row is in. */
    void setDoneCallback(std::function<void()> done) { m_done = std::move(done); }
    /** Called on the GUI thread after each inserted batch. */
    void setBatchCallback(std::function<void()> batch) { m_batch = std::move(batch); }

    /** How long stop() waits for the worker before terminating it. */
    void setStopTimeout(int milliseconds) { m_stopTimeout = milliseconds; }

protected:
    void run() override;

    /** Whether the walk should end; the walk checks it before every entry. */
    bool isStopRequested() const { return m_stop.load(std::memory_order_relaxed); }
    /** Hands built rows to the GUI thread. */
    void deliver(QVector<FileRow> &rows);

private:
    void insertPending(quint64 generation);
    void finishIfDone();
    void restoreColumnSizing();

    std::atomic<bool> m_stop{false};
    QString m_root;
    QString m_rootPrefix;
    bool m_withParent = true;
    QPointer<TreeWidget> m_tree;
    FileInfoMap *m_map = nullptr;

    mutable QMutex m_mutex;
    QVector<FileRow> m_pending;  // guarded by m_mutex
    bool m_wakeQueued = false;   // guarded by m_mutex
    QVector<FileRow> m_ready;    // GUI thread only
    int m_readyIndex = 0;        // GUI thread only
    bool m_insertScheduled = false;
    bool m_doneReported = true;
    // Counts listings, so that a wake-up queued by a stopped one is ignored.
    std::atomic<quint64> m_generation{0};
    int m_stopTimeout = 10000;
    std::function<void()> m_done;
    std::function<void()> m_batch;
};
