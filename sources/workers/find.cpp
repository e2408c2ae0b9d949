#include "find.h"

#include "concurrenttask.h"
#include "filenamecodec.h"
#include "logging.h"

#include <QDebug>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>
#include <QThread>
#include <QThreadPool>

#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>

namespace {

// A batch goes to the GUI thread when it holds this many hits or is this old.
constexpr int BatchHits = 500;
constexpr qint64 BatchMilliseconds = 100;

// Masks are matched here rather than by QDir, against the name as shown: a
// name with bytes that are not UTF-8 holds lone surrogates, which no
// expression matches.
bool matchesMasks(const QVector<QRegularExpression> &masks, const QString &name)
{
    if (masks.isEmpty())
        return true;
    const QString shown = FileNameCodec::displayName(name);
    return std::any_of(masks.cbegin(), masks.cend(), [&shown](const QRegularExpression &mask) {
        return mask.match(shown).hasMatch();
    });
}

} // namespace

/** The state of one run, shared by the threads that carry it out. */
struct Find::Run
{
    QString folder;
    QVector<QRegularExpression> masks; // none: every file
    std::unique_ptr<FindPattern> pattern; // none when files are only listed
    int number = 0;

    std::atomic<bool> stop{false};
    std::atomic<int> reportedLines{0};
    std::atomic<int> scannedFiles{0};
    std::atomic<int> binaryFiles{0};
    std::atomic<int> unreadableFiles{0};

    // The walk hands files to the scanners in order; each file's hits are kept
    // until those of every file before it have gone out.
    std::mutex mutex;
    std::condition_variable wake;
    std::deque<std::pair<int, QString>> queue;
    int walked = 0;
    bool walkDone = false;
    std::map<int, QVector<FindHit>> completed;
    int nextToReport = 0;
    bool reporting = false; // a thread is handing hits out

    // Touched by the reporting thread only.
    QVector<FindHit> batch;
    QElapsedTimer sinceFlush;

    QSet<QString> visitedFolders; // walk thread only
};

Find::Find(QObject *parent)
    : QObject(parent)
    , m_pool(new QThreadPool(this))
{
    qRegisterMetaType<FindHit>();
    qRegisterMetaType<QVector<FindHit>>();
    // One thread walks; the others read files.
    m_pool->setMaxThreadCount(std::max(1, QThread::idealThreadCount()) + 1);
}

Find::~Find()
{
    stopFindThread();
}

int Find::reportedLines() const
{
    return m_run ? m_run->reportedLines.load() : -1;
}

int Find::scannedFiles() const
{
    return m_run ? m_run->scannedFiles.load() : -1;
}

int Find::binaryFiles() const
{
    return m_run ? m_run->binaryFiles.load() : 0;
}

int Find::unreadableFiles() const
{
    return m_run ? m_run->unreadableFiles.load() : 0;
}

bool Find::isStopRequested() const
{
    return m_run && m_run->stop.load();
}

bool Find::wasStopped() const
{
    return isStopRequested();
}

bool Find::isRunning() const
{
    return m_future.isRunning();
}

void Find::wait()
{
    m_future.waitForFinished();
}

QStringList Find::splitMasks(const QString &masks)
{
    QStringList result;
    const QStringList parts = masks.split(QRegularExpression(QStringLiteral("(,|;)")),
                                          Qt::SkipEmptyParts);
    for (const QString &part : parts) {
        const QString mask = part.trimmed();
        // "*.*" means every file, as in the panels, also those without a dot.
        if (mask == QLatin1String("*.*"))
            result << QStringLiteral("*");
        else if (!mask.isEmpty())
            result << mask;
    }
    return result;
}

QString Find::searchPattern(const QString &text, bool wholeWords)
{
    return wholeWords ? QLatin1Char(' ') + text + QLatin1Char(' ') : text;
}

QString Find::phrasesPattern(const QStringList &phrases, QRegExp::PatternSyntax &syntax)
{
    QStringList kept;
    for (const QString &phrase : phrases) {
        const QString trimmed = phrase.trimmed();
        if (!trimmed.isEmpty())
            kept << trimmed;
    }
    if (kept.size() <= 1)
        return kept.value(0);

    QStringList alternatives;
    for (const QString &phrase : qAsConst(kept)) {
        switch (syntax) {
        case QRegExp::FixedString:
            alternatives << QRegExp::escape(phrase);
            break;
        case QRegExp::Wildcard:
        case QRegExp::WildcardUnix:
            alternatives << FindPattern::wildcardToRegExp(phrase);
            break;
        default:
            alternatives << phrase;
        }
    }
    if (syntax != QRegExp::RegExp2)
        syntax = QRegExp::RegExp;
    // The alternation is grouped as a whole, so that the spaces of whole words
    // surround every phrase rather than the first and the last one only.
    return QStringLiteral("(?:(?:") + alternatives.join(QStringLiteral(")|(?:"))
        + QStringLiteral("))");
}

void Find::stopFindThread()
{
    if (!isRunning())
        return;
    qCDebug(lcFind) << "Find::StopFindThread()";
    {
        std::lock_guard<std::mutex> lock(m_run->mutex);
        m_run->stop = true;
    }
    m_run->wake.notify_all();
    // Every thread of the run looks at the flag at least once per block it
    // reads and never waits on anything but the run itself.
    m_future.waitForFinished();
}

void Find::start()
{
    stopFindThread();
    auto run = std::make_shared<Run>();
    run->folder = m_folder;
    for (const QString &mask : splitMasks(m_masks)) {
        if (mask == QLatin1String("*")) {
            run->masks.clear();
            break;
        }
        run->masks << QRegularExpression(QRegularExpression::wildcardToRegularExpression(mask),
                                         QRegularExpression::CaseInsensitiveOption);
    }
    run->number = ++m_runNumber;
    if (!m_findText.isEmpty()) {
        run->pattern = std::make_unique<FindPattern>(searchPattern(m_findText, m_wholeWords),
                                                     m_patternSyntax,
                                                     m_caseSensitive ? Qt::CaseSensitive
                                                                     : Qt::CaseInsensitive);
        if (!run->pattern->isValid())
            qCDebug(lcFind) << "Find: invalid pattern" << m_findText;
    }
    run->sinceFlush.start();
    m_run = run;
    m_future = ConcurrentTask::run(m_pool, [this, run] { execute(run); });
}

void Find::execute(const std::shared_ptr<Run> &run)
{
    QVector<QFuture<void>> scanners;
    if (run->pattern && run->pattern->isValid()) {
        for (int i = 1; i < m_pool->maxThreadCount(); ++i)
            scanners << ConcurrentTask::run(m_pool, [this, run] { scanFiles(*run); });
    }
    if (!run->pattern || run->pattern->isValid())
        walk(*run, run->folder, QString());
    {
        std::lock_guard<std::mutex> lock(run->mutex);
        run->walkDone = true;
    }
    run->wake.notify_all();
    for (QFuture<void> &scanner : scanners)
        scanner.waitForFinished();
    {
        // The batch is taken over from the last thread that reported, which let
        // go of it under the mutex.
        std::lock_guard<std::mutex> lock(run->mutex);
    }
    flush(*run);
    const int number = run->number;
    QMetaObject::invokeMethod(this, [this, number] {
        if (number == m_runNumber)
            Q_EMIT finished();
    }, Qt::QueuedConnection);
}

void Find::walk(Run &run, const QString &folder, const QString &parentCanonical)
{
    // A folder reached again through a symbolic link is searched once; a link
    // to a folder above it (as /proc/<pid>/root is) would take in everything.
    const QString canonical = QFileInfo(folder).canonicalFilePath();
    if (canonical.isEmpty() || run.visitedFolders.contains(canonical))
        return;
    if (!parentCanonical.isEmpty()
        && (parentCanonical == canonical
            || parentCanonical.startsWith(canonical.endsWith(QLatin1Char('/'))
                                              ? canonical : canonical + QLatin1Char('/'))))
        return;
    run.visitedFolders.insert(canonical);

    const QFileInfoList entries = QDir(folder).entryInfoList(
        QDir::Dirs | QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot, QDir::NoSort);
    for (const QFileInfo &entry : entries) {
        if (run.stop.load(std::memory_order_relaxed))
            return;
        if (entry.isDir()) {
            walk(run, entry.absoluteFilePath(), canonical);
        } else if (!matchesMasks(run.masks, entry.fileName())) {
            continue;
        } else if (!run.pattern) {
            ++run.scannedFiles;
            complete(run, run.walked++, {FindHit{entry.absoluteFilePath(), QString(), QString()}});
        } else {
            {
                std::lock_guard<std::mutex> lock(run.mutex);
                run.queue.emplace_back(run.walked++, entry.absoluteFilePath());
            }
            run.wake.notify_one();
        }
    }
}

void Find::scanFiles(Run &run)
{
    FindLineScanner scanner(*run.pattern);
    for (;;) {
        std::pair<int, QString> file;
        {
            std::unique_lock<std::mutex> lock(run.mutex);
            run.wake.wait(lock, [&run] { return run.stop || run.walkDone || !run.queue.empty(); });
            if (run.stop || run.queue.empty())
                return;
            file = std::move(run.queue.front());
            run.queue.pop_front();
        }
        ++run.scannedFiles;
        const QString &path = file.second;
        QVector<FindHit> hits;
        const auto outcome = scanner.scanFile(path, run.stop,
                                              [&hits, &path](int lineNumber, const QString &text) {
            hits.append(FindHit{path, QString::number(lineNumber), text});
        });
        if (outcome == FindLineScanner::Outcome::Binary)
            ++run.binaryFiles;
        else if (outcome == FindLineScanner::Outcome::Unreadable)
            ++run.unreadableFiles;
        complete(run, file.first, std::move(hits));
    }
}

void Find::complete(Run &run, int sequence, QVector<FindHit> hits)
{
    std::unique_lock<std::mutex> lock(run.mutex);
    run.completed.emplace(sequence, std::move(hits));
    // One thread at a time hands hits out, in order, without holding the mutex
    // (receivers of FindFile may take their time); the others leave theirs to it.
    if (run.reporting)
        return;
    run.reporting = true;
    for (;;) {
        QVector<FindHit> ready;
        for (auto next = run.completed.find(run.nextToReport); next != run.completed.end();
             next = run.completed.find(++run.nextToReport)) {
            if (ready.isEmpty())
                ready = std::move(next->second);
            else
                ready += next->second;
            run.completed.erase(next);
        }
        if (ready.isEmpty()) {
            run.reporting = false;
            return;
        }
        lock.unlock();
        for (const FindHit &hit : qAsConst(ready)) {
            ++run.reportedLines;
            Q_EMIT FindFile(hit.path, hit.line, hit.text);
        }
        if (run.batch.isEmpty())
            run.batch = std::move(ready);
        else
            run.batch += ready;
        if (run.batch.size() >= BatchHits || run.sinceFlush.hasExpired(BatchMilliseconds))
            flush(run);
        lock.lock();
    }
}

// Called by the reporting thread, or once every other thread of the run is done.
void Find::flush(Run &run)
{
    run.sinceFlush.restart();
    if (run.batch.isEmpty())
        return;
    Q_EMIT foundHits(run.batch);
    run.batch.clear();
}
