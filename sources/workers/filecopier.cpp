#include "filecopier.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

namespace {
constexpr qint64 ChunkSize = 1024 * 1024;
constexpr int ProgressMs = 100;
}

FileCopier::FileCopier(QObject *parent)
    : QThread(parent)
{
}

FileCopier::~FileCopier()
{
    cancel();
    wait();
}

void FileCopier::setJobs(const QVector<Job> &jobs)
{
    m_jobs = jobs;
    m_results = QVector<Result>(jobs.size(), NotRun);
    m_totalBytes = 0;
    for (const Job &job : jobs) {
        const QFileInfo info(job.source);
        if (!info.isDir())
            m_totalBytes += info.size();
    }
}

FileCopier::Result FileCopier::copyOne(const QString &source, const QString &target,
                                       const std::atomic<bool> &cancel,
                                       const std::function<void(qint64)> &progress)
{
    const QFileInfo sourceInfo(source);
    if (sourceInfo.isDir())
        return QDir().mkpath(target) ? Copied : Failed;

    const QFileInfo targetInfo(target);
    if (targetInfo.exists() || targetInfo.isSymLink())
        return Exists;
    QFile in(source);
    if (!in.open(QIODevice::ReadOnly))
        return Failed;

    QTemporaryFile out(targetInfo.absolutePath() + QStringLiteral("/.") + targetInfo.fileName()
                       + QStringLiteral(".part-XXXXXX"));
    // Removed by hand on failure: after a rename the object names the target.
    out.setAutoRemove(false);
    if (!out.open())
        return Failed;
    const QString partName = out.fileName();
    auto dropPart = [&out, &partName] {
        out.close();
        QFile::remove(partName);
    };

    QByteArray buffer;
    buffer.resize(int(ChunkSize));
    qint64 done = 0;
    for (;;) {
        if (cancel.load()) {
            dropPart();
            return Cancelled;
        }
        const qint64 read = in.read(buffer.data(), ChunkSize);
        if (read < 0) {
            dropPart();
            return Failed;
        }
        if (read == 0)
            break;
        if (out.write(buffer.constData(), read) != read) {
            dropPart();
            return Failed;
        }
        done += read;
        if (progress)
            progress(done);
    }
    if (!out.flush()) {
        dropPart();
        return Failed;
    }
    out.setPermissions(sourceInfo.permissions());
    out.close();
    // The rename refuses to replace a file that appeared in the meantime.
    if (!QDir().rename(partName, target)) {
        QFile::remove(partName);
        return QFileInfo(target).exists() ? Exists : Failed;
    }
    return Copied;
}

void FileCopier::run()
{
    qint64 finished = 0;
    QElapsedTimer sinceProgress;
    sinceProgress.start();
    for (int i = 0; i < m_jobs.size(); ++i) {
        if (m_cancel.load()) {
            m_results[i] = Cancelled;
            continue;
        }
        const Job &job = m_jobs.at(i);
        m_results[i] = copyOne(job.source, job.target, m_cancel, [&](qint64 done) {
            if (sinceProgress.hasExpired(ProgressMs)) {
                sinceProgress.restart();
                Q_EMIT progress(finished + done, m_totalBytes);
            }
        });
        const QFileInfo info(job.source);
        if (!info.isDir())
            finished += info.size();
        Q_EMIT progress(finished, m_totalBytes);
    }
}
