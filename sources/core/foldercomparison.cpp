#include "foldercomparison.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QThread>
#include <QThreadPool>

#include <algorithm>
#include <cstring>
#include <mutex>
#include <vector>

namespace {

constexpr qint64 ReadBlock = 256 * 1024;
// A value no size takes: the second file of a pair whose bytes differ gets it.
constexpr qint64 DifferentContent = -1;

QStringList namesMissingFrom(const FileList &list, const QSet<QString> &other)
{
    QStringList missing;
    for (const auto &entry : list) {
        if (!other.contains(entry.first))
            missing << entry.first;
    }
    return missing;
}

bool stopped(const std::atomic<bool> *stop)
{
    return stop && stop->load(std::memory_order_relaxed);
}

// A folder's files, and the names of those that are not regular files (FIFOs,
// devices, dangling links): those are never opened.
struct Listing
{
    FileList files;
    QSet<QString> special;
};

Listing listFolder(const QString &folder)
{
    Listing listing;
    // The default listing: no hidden entries, sorted by name ignoring case.
    const QFileInfoList entries = QDir(folder).entryInfoList();
    listing.files.reserve(entries.size());
    for (const QFileInfo &entry : entries) {
        if (entry.isDir())
            continue;
        listing.files.append(qMakePair(entry.fileName(), entry.size()));
        if (!entry.isFile())
            listing.special.insert(entry.fileName());
    }
    return listing;
}

// The reading buffers of one thread, allocated once for all its pairs.
struct Buffers
{
    QByteArray first{int(ReadBlock), Qt::Uninitialized};
    QByteArray second{int(ReadBlock), Qt::Uninitialized};
};

// Reads two opened files side by side up to the first difference.
bool sameBytes(QFile &a, QFile &b, Buffers &buffers, const std::atomic<bool> *stop)
{
    char *bufferA = buffers.first.data();
    char *bufferB = buffers.second.data();
    for (;;) {
        if (stopped(stop))
            return false;
        const qint64 readA = a.read(bufferA, ReadBlock);
        if (readA < 0)
            return false;
        // Fill the same length from the other file, however its reads come.
        qint64 readB = 0;
        while (readB < readA) {
            const qint64 got = b.read(bufferB + readB, readA - readB);
            if (got <= 0)
                return false;
            readB += got;
        }
        if (readA == 0) {
            char extra;
            return b.read(&extra, 1) == 0;
        }
        if (std::memcmp(bufferA, bufferB, size_t(readA)) != 0)
            return false;
    }
}

bool sameRegularFiles(const QString &first, const QString &second, Buffers &buffers,
                      const std::atomic<bool> *stop)
{
    QFile a(first);
    QFile b(second);
    return a.open(QIODevice::ReadOnly | QIODevice::Unbuffered)
           && b.open(QIODevice::ReadOnly | QIODevice::Unbuffered)
           && sameBytes(a, b, buffers, stop);
}

} // namespace

bool FolderComparison::sameContent(const QString &first, const QString &second,
                                   const std::atomic<bool> *stop)
{
    // Only regular files are opened: a FIFO or a device would block or never end.
    if (!QFileInfo(first).isFile() || !QFileInfo(second).isFile())
        return false;
    Buffers buffers;
    return sameRegularFiles(first, second, buffers, stop);
}

FolderDifferences FolderComparison::compareFolders(const QString &first, const QString &second,
                                                   int criteria, const std::atomic<bool> *stop)
{
    // What the pool's threads share with this one. What is written once they have
    // started is written and read under the mutex, which also keeps the hand-over
    // in view of the thread sanitizer (the pool's own lock is not).
    struct Shared
    {
        QString firstPrefix;
        QString secondPrefix;
        const std::atomic<bool> *stop = nullptr;
        std::mutex mutex;
        Listing secondListing;
        std::vector<int> candidates; // indexes into the second list
        size_t next = 0;             // the next candidate to read
    } shared;
    shared.firstPrefix = first + QLatin1Char('/');
    shared.secondPrefix = second + QLatin1Char('/');
    shared.stop = stop;
    QThreadPool pool;
    pool.setMaxThreadCount(qBound(1, QThread::idealThreadCount(), 8));

    // The two folders are listed at the same time.
    pool.start([&shared, &second] {
        Listing listing = listFolder(second);
        std::lock_guard<std::mutex> lock(shared.mutex);
        shared.secondListing = std::move(listing);
    });
    const Listing firstListing = listFolder(first);
    pool.waitForDone();

    std::unique_lock<std::mutex> lock(shared.mutex);
    const FileList &firstList = firstListing.files;
    FileList &secondList = shared.secondListing.files;
    if (criteria == COMPARE_BY_CONTENT && !stopped(stop)) {
        // Files of different sizes differ without a read; those of equal size are read.
        QHash<QString, qint64> firstSizes;
        firstSizes.reserve(firstList.size());
        for (const auto &entry : firstList)
            firstSizes.insert(entry.first, entry.second);
        for (int k = 0; k < secondList.size(); ++k) {
            const QString &name = secondList.at(k).first;
            const auto it = firstSizes.constFind(name);
            if (it == firstSizes.constEnd() || *it != secondList.at(k).second)
                continue;
            if (firstListing.special.contains(name)
                || shared.secondListing.special.contains(name))
                secondList[k].second = DifferentContent;
            else
                shared.candidates.push_back(k);
        }
        // Every thread takes pairs one at a time and marks the second file of a
        // pair that differs; the reading itself is done without the lock.
        const auto work = [&shared] {
            Buffers buffers;
            std::unique_lock<std::mutex> lock(shared.mutex);
            FileList &list = shared.secondListing.files;
            while (shared.next < shared.candidates.size() && !stopped(shared.stop)) {
                const int k = shared.candidates[shared.next++];
                const QString name = list.at(k).first;
                lock.unlock();
                const bool same = sameRegularFiles(shared.firstPrefix + name,
                                                   shared.secondPrefix + name, buffers,
                                                   shared.stop);
                lock.lock();
                if (!same)
                    list[k].second = DifferentContent;
            }
        };
        const int helpers = qMin(pool.maxThreadCount(), int(shared.candidates.size())) - 1;
        for (int t = 0; t < helpers; ++t)
            pool.start(work);
        lock.unlock();
        work();
        pool.waitForDone();
        lock.lock();
    }
    return compare(firstList, secondList);
}

FolderDifferences FolderComparison::compare(const FileList &first, const FileList &second)
{
    // Every value of each name of the second list, in its order, so that a name
    // given twice yields what the all-pairs comparison yields.
    QHash<QString, QVector<qint64>> secondValues;
    secondValues.reserve(second.size());
    QSet<QString> secondNames;
    secondNames.reserve(second.size());
    for (const auto &entry : second) {
        secondValues[entry.first].append(entry.second);
        secondNames.insert(entry.first);
    }
    QSet<QString> firstNames;
    firstNames.reserve(first.size());

    FolderDifferences result;
    for (const auto &entry : first) {
        firstNames.insert(entry.first);
        const auto it = secondValues.constFind(entry.first);
        if (it == secondValues.constEnd())
            continue;
        for (qint64 value : it.value()) {
            if (value != entry.second)
                result.different << entry.first;
        }
    }
    result.onlyInFirst = namesMissingFrom(first, secondNames);
    result.onlyInSecond = namesMissingFrom(second, firstNames);
    return result;
}
