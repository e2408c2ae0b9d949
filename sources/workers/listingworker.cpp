#include "listingworker.h"

#include <QThread>

ListingWorker::ListingWorker(Request request, QObject *parent)
    : QObject(parent)
    , m_request(std::move(request))
    , m_stop(std::make_shared<std::atomic<bool>>(false))
{
    static const bool registered = [] {
        qRegisterMetaType<QVector<FileRow>>();
        qRegisterMetaType<FileListing::Changes>();
        qRegisterMetaType<FileListing::FolderTotals>();
        return true;
    }();
    Q_UNUSED(registered)
}

ListingWorker::~ListingWorker() = default;

ListingWorker::Control ListingWorker::start(QThread::Priority priority)
{
    auto *thread = new QThread;
    moveToThread(thread);
    connect(thread, &QThread::started, this, &ListingWorker::run);
    // Direct: the thread ends as soon as the walk does, also while its owner waits for it.
    connect(this, &ListingWorker::done, thread, &QThread::quit, Qt::DirectConnection);
    connect(thread, &QThread::finished, this, &QObject::deleteLater);
    connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    Control control;
    control.m_worker = this;
    control.m_stop = m_stop;
    control.m_thread = thread;
    thread->start(priority);
    return control;
}

void ListingWorker::Control::requestStop() const
{
    if (m_stop)
        m_stop->store(true);
}

bool ListingWorker::Control::wait(int milliseconds) const
{
    if (!m_thread || m_thread == QThread::currentThread())
        return true;
    return m_thread->wait(static_cast<unsigned long>(milliseconds));
}

void ListingWorker::run()
{
    const std::atomic<bool> &stop = *m_stop;
    QVector<FileRow> listing;
    FileListing::FolderTotals totals;
    bool complete = true;
    if (m_request.tree) {
        complete = FileListing::walkTree(
            m_request.folder, m_request.withParent, m_request.hidden, stop,
            [this, &listing](QVector<FileRow> &rows) {
                if (m_request.compare)
                    listing += rows;
                else
                    Q_EMIT rowsFound(rows);
            });
    } else {
        listing = FileListing::listFolder(m_request.folder, m_request.mask, m_request.withParent,
                                          m_request.hidden, &totals);
        complete = !stop.load();
    }
    if (complete && m_request.compare) {
        const FileListing::Changes changes = FileListing::compare(m_request.before, listing);
        // Letting go of a big listing takes a while. Done here, it keeps the
        // thread's end short: a QThread deleted while ending makes the GUI
        // thread wait for it.
        m_request.before = QVector<FileRow>();
        Q_EMIT changesFound(changes, listing, totals);
    }
    Q_EMIT done(complete);
}
