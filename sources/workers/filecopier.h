#pragma once

#include <QString>
#include <QThread>
#include <QVector>

#include <atomic>
#include <functional>

/**
 * Copies files (and creates folders) on a worker thread. Each file is
 * written under a hidden temporary name in the target folder and renamed
 * only when complete, never over an existing file, so that a cancelled or
 * failed copy leaves nothing behind.
 */
class FileCopier : public QThread
{
    Q_OBJECT
public:
    enum Result { Copied, Exists, Failed, Cancelled, NotRun };

    struct Job
    {
        QString source;
        QString target;
    };

    explicit FileCopier(QObject *parent = nullptr);
    ~FileCopier() override;

    void setJobs(const QVector<Job> &jobs);
    /** One result per job, valid once the thread has finished. */
    QVector<Result> results() const { return m_results; }
    qint64 totalBytes() const { return m_totalBytes; }

    /** Asks the copy to end; the file being copied is dropped. Any thread. */
    void cancel() { m_cancel.store(true); }
    bool isCancelled() const { return m_cancel.load(); }

    /** A folder source creates the target folder only (not its contents). */
    static Result copyOne(const QString &source, const QString &target,
                          const std::atomic<bool> &cancel,
                          const std::function<void(qint64)> &progress = {});

Q_SIGNALS:
    /** Bytes copied so far of all jobs; throttled. */
    void progress(qint64 done, qint64 total);

protected:
    void run() override;

private:
    QVector<Job> m_jobs;
    QVector<Result> m_results;
    qint64 m_totalBytes = 0;
    std::atomic<bool> m_cancel{false};
};
