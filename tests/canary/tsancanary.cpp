// A deliberate data race between two threads started through QThread. The
// ThreadSanitizer stage runs it to show that the suppressions in tsan.supp still
// let a race in our own code through: the test passes only when the race is
// reported. It is built only for that stage.
#include <QCoreApplication>
#include <QThread>

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
    std::unique_ptr<QThread> first(QThread::create(bump));
    std::unique_ptr<QThread> second(QThread::create(bump));
    first->start();
    second->start();
    first->wait();
    second->wait();
    return g_counter > 0 ? 0 : 1;
}
