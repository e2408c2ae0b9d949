#pragma once

#include <QFuture>
#include <QThreadPool>
#include <QtConcurrent>

#include <mutex>
#include <utility>

/**
 * QtConcurrent::run with a hand-over that the thread sanitizer can follow. A
 * pool hands its tasks over under a QMutex of Qt's, which the sanitizer cannot
 * see (Qt is not built for it): a pool thread that takes up a task would seem to
 * read the task's captures unordered. Here the task is queued under handOver()
 * and takes it once before it runs, so the captures are read after that.
 */
class ConcurrentTask
{
public:
    template <typename Function>
    static QFuture<void> run(QThreadPool *pool, Function function)
    {
        std::lock_guard<std::mutex> queued(handOver());
        return QtConcurrent::run(pool, [function = std::move(function)]() mutable {
            {
                std::lock_guard<std::mutex> taken(handOver());
            }
            function();
        });
    }

private:
    static std::mutex &handOver();
};
