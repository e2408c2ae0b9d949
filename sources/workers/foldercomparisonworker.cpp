#include "foldercomparisonworker.h"

#include <QThread>

FolderComparisonWorker::FolderComparisonWorker(QObject *parent)
    : QObject(parent)
{
}

FolderComparisonWorker::~FolderComparisonWorker()
{
    for (const auto &run : qAsConst(m_runs))
        run.second->stop = true;
    // The reading loop checks the flag between blocks, so these waits are short.
    for (const auto &run : qAsConst(m_runs)) {
        run.first->wait();
        delete run.first;
    }
}

void FolderComparisonWorker::start(const QString &first, const QString &second, int criteria)
{
    for (const auto &run : qAsConst(m_runs))
        run.second->stop = true;
    auto run = std::make_shared<Run>();
    QThread *thread = QThread::create([run, first, second, criteria] {
        run->result = FolderComparison::compareFolders(first, second, criteria, &run->stop);
    });
    // finished() comes from the worker thread; the handler runs on this object's thread.
    connect(thread, &QThread::finished, this, [this, thread, run] { runEnded(thread, run); });
    m_runs.append(qMakePair(thread, run));
    m_current = thread;
    thread->start();
}

bool FolderComparisonWorker::stop()
{
    if (!m_current)
        return false;
    m_runs.last().second->stop = true;
    return true;
}

void FolderComparisonWorker::runEnded(QThread *thread, const std::shared_ptr<Run> &run)
{
    thread->wait();
    thread->deleteLater();
    m_runs.removeAll(qMakePair(thread, run));
    if (thread != m_current)
        return; // replaced by a later run
    m_current = nullptr;
    if (run->stop)
        Q_EMIT cancelled();
    else
        Q_EMIT finished(run->result);
}
