// A deliberate data race between a thread started through QThread and a task run
// on QtConcurrent's pool, the two ways our workers start. The ThreadSanitizer stage
// runs it to show that the suppressions in tsan.supp still let a race in our own
// code through: the test passes only when the race in bump() is reported. It is
// built only for that stage.
#include <QCoreApplication>
#include <QFuture>
#include <QThread>
#include <QtConcurrent>

#include <memory>

namespace {

int g_counter = 0; // written by both threads without a lock, on purpose

void bump()
{
    for (int i = 0; i < 100000; ++i)
        ++g_counter;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    std::unique_ptr<QThread> thread(QThread::create(bump));
    thread->start();
    QFuture<void> task = QtConcurrent::run(bump);
    thread->wait();
    task.waitForFinished();
    return g_counter > 0 ? 0 : 1;
}
