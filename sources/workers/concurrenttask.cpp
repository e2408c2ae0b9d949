#include "concurrenttask.h"

std::mutex &ConcurrentTask::handOver()
{
    static std::mutex mutex;
    return mutex;
}
