#pragma once

#include "filelisting.h"

#include <QMetaType>
#include <QObject>
#include <QPointer>
#include <QThread>
#include <QVector>

#include <atomic>
#include <memory>

Q_DECLARE_METATYPE(QVector<FileRow>)
Q_DECLARE_METATYPE(FileListing::Changes)
Q_DECLARE_METATYPE(FileListing::FolderTotals)

/**
 * Lists a folder on a thread of its own: either walks a whole tree and hands
 * its rows over in batches (the flat list), or lists one folder or tree again
 * and reports what changed against an earlier listing (a refresh). Results
 * arrive through queued signals; a stop request ends the walk at the next
 * entry. The worker and its thread delete themselves when the walk is over.
 */
class ListingWorker : public QObject
{
    Q_OBJECT
public:
    struct Request
    {
        QString folder;
        QString mask = QStringLiteral("*.*"); // the one-folder listing only
        bool tree = false;                    // walk the whole tree (flat list)
        bool withParent = true;
        bool hidden = false;
        /** With compare set, the whole listing is compared with this one. */
        bool compare = false;
        QVector<FileRow> before;
    };

    /**
     * What the starting thread keeps of a walk. It never touches the worker,
     * which deletes itself on its own thread when the walk is over, so it stays
     * valid after that.
     */
    class Control
    {
    public:
        bool isActive() const { return m_worker != nullptr; }
        /** Whether this controls the walk of @p worker (compared, never used). */
        bool controls(const ListingWorker *worker) const { return worker == m_worker; }
        /** Asks the walk to end; nothing more is reported after it. */
        void requestStop() const;
        /** Waits for the walk's thread to end; true when it did within @p milliseconds. */
        bool wait(int milliseconds) const;

    private:
        friend class ListingWorker;
        const ListingWorker *m_worker = nullptr;
        std::shared_ptr<std::atomic<bool>> m_stop;
        QPointer<QThread> m_thread; // deleted on the starting thread
    };

    explicit ListingWorker(Request request, QObject *parent = nullptr);
    ~ListingWorker() override;

    /** Starts the walk on a new thread at the given priority; connect to the signals first. */
    Control start(QThread::Priority priority = QThread::LowestPriority);

Q_SIGNALS:
    /** A batch of rows of a tree walk (not sent when comparing). */
    void rowsFound(const QVector<FileRow> &rows);
    /**
     * The result of a comparing listing, with the listing itself and, for one
     * folder, the totals of its files (of a tree: none).
     */
    void changesFound(const FileListing::Changes &changes, const QVector<FileRow> &listing,
                      const FileListing::FolderTotals &totals);
    /** The walk is over; @p complete is false when it was stopped. */
    void done(bool complete);

private:
    void run();

    Request m_request;
    std::shared_ptr<std::atomic<bool>> m_stop;
};
