#pragma once

#include <QThreadPool>

#include <mutex>
#include <utility>

/**
 * The lock under which releaseInBackground() queues a task and which the task
 * takes before it touches what it holds. The pool hands tasks over under a
 * QMutex of Qt's, out of the thread sanitizer's sight; this one is in sight.
 */
inline std::mutex &backgroundReleaseHandOver()
{
    static std::mutex mutex;
    return mutex;
}

/**
 * Lets go of @p value on a pool thread. Freeing a container of hundreds of
 * thousands of rows takes tens of milliseconds, which the GUI thread should
 * not spend; @p value must be the last holder of its data.
 */
template <typename T>
void releaseInBackground(T &&value)
{
    std::lock_guard<std::mutex> queued(backgroundReleaseHandOver());
    QThreadPool::globalInstance()->start([held = std::move(value)]() mutable {
        {
            std::lock_guard<std::mutex> taken(backgroundReleaseHandOver());
        }
        held = T();
    });
}
