#pragma once

#include <QThreadPool>

#include <utility>

/**
 * Lets go of @p value on a pool thread. Freeing a container of hundreds of
 * thousands of rows takes tens of milliseconds, which the GUI thread should
 * not spend; @p value must be the last holder of its data.
 */
template <typename T>
void releaseInBackground(T &&value)
{
    QThreadPool::globalInstance()->start([held = std::move(value)]() mutable { held = T(); });
}
