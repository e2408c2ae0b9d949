#pragma once

#include "filerow.h"
#include "fileview.h"
#include "listingworker.h"

#include <QObject>
#include <QPointer>
#include <QVector>

#include <functional>

class QTimer;

/**
 * Lists a folder and all its sub-folders as one flat list of files. A worker
 * at lowest priority walks the tree and sends rows in batches; the GUI thread
 * inserts them a slice at a time on a timer, so that it never stalls and the
 * list grows visibly while the walk goes on.
 */
class FlatFileView : public QObject, public FileView
{
    Q_OBJECT
public:
    explicit FlatFileView(QObject *parent = nullptr);
    ~FlatFileView() override;

    void setColumns(TreeWidget *tree) const override;
    /** Stops a running listing and starts a new one; returns at once. */
    void showObjects(FileListModel *model, const QString &path, bool withParent = true) override;
    int nameColumn() const override { return 1; }
    /** Asks the walk to stop and drops the rows not yet inserted; never blocks. */
    void stop() override;
    bool isBusy() const override;

    /** Called on the GUI thread once the walk has ended and every row is in. */
    void setDoneCallback(std::function<void()> done) { m_done = std::move(done); }
    /** Called on the GUI thread after each inserted slice. */
    void setBatchCallback(std::function<void()> batch) { m_batch = std::move(batch); }

    /** How long the destructor waits for a walk that does not see its stop request. */
    void setStopTimeout(int milliseconds) { m_stopTimeout = milliseconds; }

private:
    void insertSlice();
    void restoreColumnSizing();

    ListingWorker::Control m_walk;
    QPointer<FileListModel> m_model;
    TreeWidget *m_tree = nullptr;
    QTimer *m_sliceTimer;
    QVector<FileRow> m_pending;
    int m_pendingIndex = 0;
    bool m_walking = false;
    int m_stopTimeout = 10000;
    std::function<void()> m_done;
    std::function<void()> m_batch;
};
