#pragma once

#include "foldercomparison.h"

#include <QList>
#include <QObject>
#include <QPair>
#include <QString>

#include <atomic>
#include <memory>

class QThread;

/**
 * Runs a folder comparison on a thread of its own and hands the outcome to the
 * GUI thread through finished(). One run at a time: starting again cancels the
 * run in progress, whose outcome is dropped. A cancelled run reports cancelled()
 * instead. The thread is stopped through a flag and waited for, never killed.
 */
class FolderComparisonWorker : public QObject
{
    Q_OBJECT
public:
    explicit FolderComparisonWorker(QObject *parent = nullptr);
    ~FolderComparisonWorker() override;

    void start(const QString &first, const QString &second, int criteria);
    bool isRunning() const { return m_current != nullptr; }

public Q_SLOTS:
    /** Cancels the run in progress; true when one was running. */
    bool stop();

Q_SIGNALS:
    void finished(const FolderDifferences &differences);
    void cancelled();

private:
    struct Run
    {
        std::atomic<bool> stop{false};
        FolderDifferences result;
    };

    void runEnded(QThread *thread, const std::shared_ptr<Run> &run);

    // Runs not yet reaped: the current one and any that were replaced.
    QList<QPair<QThread *, std::shared_ptr<Run>>> m_runs;
    QThread *m_current = nullptr;
};
