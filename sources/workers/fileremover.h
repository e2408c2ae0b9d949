#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QStringList>

#include <atomic>

/**
 * Removes files, links and folders with their contents; meant to be moved to
 * a worker thread and started through run(), so that removing a folder of tens
 * of thousands of files never holds up the window. A link is removed itself,
 * never what it points to. A folder is emptied of what its listing shows
 * (hidden entries are not listed, so a folder that holds some stays), then
 * removed. What cannot be removed stays where it is, without a message.
 */
class FileRemover : public QObject
{
    Q_OBJECT
public:
    explicit FileRemover(const QStringList &paths, QObject *parent = nullptr);

    /** Ends the removal before its next entry. Any thread. */
    void stop() { m_stop = true; }
    /**
     * Called once the thread that ran run() has been waited for: QThread's join
     * is out of the thread sanitizer's sight, and this acquire of the flag run()
     * sets last orders the remover's deletion after everything run() did.
     */
    void joined() const { m_ran.load(std::memory_order_acquire); }

public Q_SLOTS:
    void run();

Q_SIGNALS:
    /** At most a few times a second; @p current is the entry being removed. */
    void progress(int removed, const QString &current);
    void finished(int removed, bool cancelled);

private:
    bool remove(const QString &path);

    QStringList m_paths;
    std::atomic_bool m_stop{false};
    std::atomic_bool m_ran{false}; // the last thing run() does
    int m_removed = 0;
    QElapsedTimer m_sinceProgress;
};
