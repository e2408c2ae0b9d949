#include "filecopier.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {

constexpr int ChunkSize = 1024 * 1024;
constexpr qint64 ProgressMs = 100;

QString notCopiedReason()
{
    return QCoreApplication::translate(
        "FileCopier", "not a regular file, folder or link (a FIFO, socket or device); not copied");
}

bool existsOrDangles(const QFileInfo &info)
{
    return info.exists() || info.isSymLink();
}

// Moves a finished temporary file or link to its name. Without @p replace an
// existing name, even a dangling link, is never replaced.
bool moveIntoPlace(const QString &from, const QString &to, bool replace, QString &reason)
{
    const QByteArray source = QFile::encodeName(from);
    const QByteArray target = QFile::encodeName(to);
    if (replace) {
        if (std::rename(source.constData(), target.constData()) == 0)
            return true;
        reason = qt_error_string(errno);
        return false;
    }
#ifdef Q_OS_LINUX
    if (::renameat2(AT_FDCWD, source.constData(), AT_FDCWD, target.constData(),
                    RENAME_NOREPLACE) == 0)
        return true;
    if (errno != EINVAL && errno != ENOSYS) {
        reason = qt_error_string(errno);
        return false;
    }
#endif
#ifdef Q_OS_UNIX
    // File systems without an exclusive rename: a hard link fails on any
    // existing name too.
    if (::link(source.constData(), target.constData()) == 0) {
        ::unlink(source.constData());
        return true;
    }
    reason = qt_error_string(errno);
    return false;
#else
    if (QFileInfo::exists(to)) {
        reason = QCoreApplication::translate("FileCopier", "the name exists");
        return false;
    }
    if (std::rename(source.constData(), target.constData()) == 0)
        return true;
    reason = qt_error_string(errno);
    return false;
#endif
}

} // namespace

FileCopier::FileCopier(const QVector<Job> &jobs, QObject *parent)
    : QObject(parent)
    , m_jobs(jobs)
{
    qRegisterMetaType<FileCopier::Summary>();
}

FileCopier::~FileCopier() = default;

void FileCopier::stop()
{
    m_stop.store(true);
    {
        // Taken so that a copier about to wait cannot miss the wake-up.
        std::lock_guard<std::mutex> lock(m_mutex);
    }
    m_answered.notify_all();
}

void FileCopier::answer(Choice choice, bool forAll)
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_answer = choice;
        m_answerForAll = forAll;
        m_hasAnswer = true;
    }
    m_answered.notify_all();
}

QString FileCopier::freeName(const QString &target, bool folder)
{
    const QFileInfo info(target);
    const QString name = info.fileName();
    // "report.final.sql" becomes "report (1).final.sql"; a leading dot is part of the stem.
    const int dot = folder ? -1 : name.indexOf(QLatin1Char('.'), 1);
    const QString stem = dot < 0 ? name : name.left(dot);
    const QString suffix = dot < 0 ? QString() : name.mid(dot);
    const QString folderPath = target.left(target.size() - name.size());
    for (int n = 1;; ++n) {
        const QString candidate = folderPath + stem + QStringLiteral(" (%1)").arg(n) + suffix;
        if (!existsOrDangles(QFileInfo(candidate)))
            return candidate;
    }
}

void FileCopier::fail(const QString &path, const QString &reason)
{
    m_summary.errors.append({path, reason});
}

void FileCopier::reportProgress(const QString &current, bool force)
{
    const qint64 now = m_clock.elapsed();
    if (!force && now - m_lastProgress < ProgressMs)
        return;
    m_lastProgress = now;
    Q_EMIT progress(m_filesDone, m_filesTotal, m_bytesDone, m_bytesTotal, current);
}

void FileCopier::scan(const QString &source, const QString &name, int parent)
{
    const QFileInfo info(source);
    Kind kind = Other;
    if (info.isSymLink())
        kind = Link;
    else if (info.isDir())
        kind = Folder;
    else if (info.isFile())
        kind = File;
    else if (!info.exists()) {
        fail(source, QCoreApplication::translate("FileCopier", "it no longer exists"));
        return;
    }
    const qint64 size = kind == File ? info.size() : 0;
    m_entries.append({source, name, parent, kind, size});
    if (kind != Folder) {
        ++m_filesTotal;
        m_bytesTotal += size;
        return;
    }
    if (!info.isReadable() || !info.isExecutable()) {
        fail(source, QCoreApplication::translate("FileCopier", "the folder cannot be read"));
        m_entries.removeLast();
        return;
    }
    const int self = m_entries.size() - 1;
    const QStringList names = QDir(source).entryList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::NoSort);
    for (const QString &child : names) {
        if (m_stop.load())
            return;
        scan(source + QLatin1Char('/') + child, child, self);
    }
}

FileCopier::Choice FileCopier::resolve(const QString &source, const QString &target)
{
    if (m_hasStanding)
        return m_standing;
    Q_EMIT conflict(source, target);
    std::unique_lock<std::mutex> lock(m_mutex);
    m_answered.wait(lock, [this] { return m_hasAnswer || m_stop.load(); });
    if (!m_hasAnswer)
        return Cancel;
    m_hasAnswer = false;
    if (m_answerForAll && m_answer != Cancel) {
        m_hasStanding = true;
        m_standing = m_answer;
    }
    return m_answer;
}

QString FileCopier::temporaryName(const QString &folder)
{
    // Short and fixed in length, so that a name of up to 255 bytes can be copied.
    return folder + QStringLiteral("/.navarch-%1-%2.part")
                        .arg(QCoreApplication::applicationPid())
                        .arg(++m_temporaryCounter);
}

bool FileCopier::copyEntry(const Entry &entry, QString &target, bool inNewFolder)
{
    if (entry.kind == Other) {
        fail(entry.source, notCopiedReason());
        return false;
    }
    bool replace = false;
    // A folder this copy made holds no other names; should one appear all the
    // same, the final rename still refuses to replace it.
    const QFileInfo existing = inNewFolder ? QFileInfo() : QFileInfo(target);
    if (!inNewFolder && existsOrDangles(existing)) {
        const bool existingFolder = existing.isDir() && !existing.isSymLink();
        const bool itself = !existing.isSymLink()
            && existing.canonicalFilePath() == QFileInfo(entry.source).canonicalFilePath();
        // Folders merge: what they hold is asked about name by name.
        if (entry.kind == Folder && existingFolder && !itself)
            return true;
        switch (resolve(entry.source, target)) {
        case Cancel:
            m_stop.store(true);
            return false;
        case Skip:
            ++m_summary.skipped;
            return false;
        case Rename:
            target = freeName(target, entry.kind == Folder);
            break;
        case Overwrite:
            if (itself) {
                fail(entry.source, QCoreApplication::translate("FileCopier",
                                                               "it cannot replace itself"));
                return false;
            }
            if (existingFolder || entry.kind == Folder) {
                fail(target, QCoreApplication::translate(
                                 "FileCopier", "a file cannot replace a folder, nor a folder a "
                                               "file; choose Rename or Skip"));
                return false;
            }
            replace = true;
            break;
        }
    }

    switch (entry.kind) {
    case Folder:
        if (!QDir().mkdir(target)) {
            fail(target, qt_error_string(errno));
            return false;
        }
        ++m_summary.copied;
        m_made[m_current] = true;
        return true;
    case File:
        return copyFile(entry, target, replace);
    case Link:
        return copyLink(entry, target, replace);
    case Other:
        break;
    }
    return false;
}

bool FileCopier::copyFile(const Entry &entry, const QString &target, bool replace)
{
    QFile in;
#ifdef Q_OS_UNIX
    // Opened without blocking and without following a link, then checked, so
    // that a FIFO put in the file's place since the scan cannot hang the copy.
    const int fd = ::open(QFile::encodeName(entry.source).constData(),
                          O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (fd < 0) {
        fail(entry.source, qt_error_string(errno));
        return false;
    }
    struct stat status;
    if (::fstat(fd, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(fd);
        fail(entry.source, notCopiedReason());
        return false;
    }
    in.open(fd, QIODevice::ReadOnly | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle);
#else
    in.setFileName(entry.source);
    if (!in.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        fail(entry.source, in.errorString());
        return false;
    }
#endif

    const QString folder = target.left(target.lastIndexOf(QLatin1Char('/')));
    QFile out;
    for (;;) {
        out.setFileName(temporaryName(folder));
        if (out.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered))
            break;
        if (!existsOrDangles(QFileInfo(out.fileName()))) {
            fail(target, out.errorString());
            return false;
        }
    }
    auto drop = [&out] {
        out.close();
        out.remove();
    };

    for (;;) {
        if (m_stop.load()) {
            drop();
            return false;
        }
        const qint64 read = in.read(m_buffer.data(), m_buffer.size());
        if (read < 0) {
            fail(entry.source, in.errorString());
            drop();
            return false;
        }
        if (read == 0)
            break;
        // A short write is retried once more so that the system names the reason.
        for (qint64 written = 0; written < read;) {
            const qint64 wrote = out.write(m_buffer.constData() + written, read - written);
            if (wrote <= 0) {
                fail(target, out.errorString());
                drop();
                return false;
            }
            written += wrote;
        }
        m_bytesDone += read;
        reportProgress(entry.source, false);
    }

#ifdef Q_OS_UNIX
    ::fchmod(out.handle(), status.st_mode & 07777);
    const struct timespec times[2] = {status.st_atim, status.st_mtim};
    ::futimens(out.handle(), times);
#else
    out.setPermissions(QFileInfo(entry.source).permissions());
#endif
    out.close();
    if (out.error() != QFileDevice::NoError) {
        fail(target, out.errorString());
        out.remove();
        return false;
    }
    return finishTemporary(out.fileName(), target, replace);
}

bool FileCopier::copyLink(const Entry &entry, const QString &target, bool replace)
{
    const QString temporary = temporaryName(target.left(target.lastIndexOf(QLatin1Char('/'))));
#ifdef Q_OS_UNIX
    // The link's own text, relative or not, byte for byte.
    QByteArray text(4096, Qt::Uninitialized);
    const ssize_t length = ::readlink(QFile::encodeName(entry.source).constData(), text.data(),
                                      size_t(text.size()));
    if (length < 0) {
        fail(entry.source, qt_error_string(errno));
        return false;
    }
    text.truncate(int(length));
    if (::symlink(text.constData(), QFile::encodeName(temporary).constData()) != 0) {
        fail(target, qt_error_string(errno));
        return false;
    }
#else
    if (!QFile::link(QFileInfo(entry.source).symLinkTarget(), temporary)) {
        fail(target, QCoreApplication::translate("FileCopier", "the link cannot be made"));
        return false;
    }
#endif
    return finishTemporary(temporary, target, replace);
}

bool FileCopier::finishTemporary(const QString &temporary, const QString &target, bool replace)
{
    QString reason;
    if (!moveIntoPlace(temporary, target, replace, reason)) {
        QFile::remove(temporary);
        fail(target, reason);
        return false;
    }
    ++m_summary.copied;
    return true;
}

void FileCopier::run()
{
    m_buffer.resize(ChunkSize);
    m_clock.start();
    for (const Job &job : qAsConst(m_jobs)) {
        if (m_stop.load())
            break;
        const QFileInfo source(job.source);
        const QString folder = job.target.left(job.target.lastIndexOf(QLatin1Char('/')));
        const QFileInfo folderInfo(folder.isEmpty() ? QStringLiteral("/") : folder);
        if (!folderInfo.isDir()) {
            fail(folder, QCoreApplication::translate("FileCopier",
                                                     "the target folder does not exist"));
            continue;
        }
        if (source.isDir() && !source.isSymLink()) {
            const QString inside = folderInfo.canonicalFilePath() + QLatin1Char('/');
            const QString self = source.canonicalFilePath() + QLatin1Char('/');
            if (inside.startsWith(self)) {
                fail(job.source, QCoreApplication::translate(
                                     "FileCopier", "a folder cannot be copied into itself"));
                continue;
            }
        }
        scan(job.source, job.target, -1);
    }
    reportProgress(QString(), true);

    m_targets.resize(m_entries.size());
    m_made.fill(false, m_entries.size());
    for (int i = 0; i < m_entries.size() && !m_stop.load(); ++i) {
        m_current = i;
        const Entry &entry = m_entries.at(i);
        QString target = entry.name;
        if (entry.parent >= 0) {
            const QString &folder = m_targets.at(entry.parent);
            // Inside a folder that was skipped or could not be made.
            if (folder.isEmpty())
                continue;
            target = folder + QLatin1Char('/') + entry.name;
        }
        const qint64 bytesBefore = m_bytesDone;
        if (copyEntry(entry, target, entry.parent >= 0 && m_made.at(entry.parent)))
            m_targets[i] = target;
        if (entry.kind != Folder) {
            ++m_filesDone;
            m_bytesDone = bytesBefore + entry.size;
        }
        reportProgress(entry.source, false);
    }
    m_summary.cancelled = m_stop.load();
    reportProgress(QString(), true);
    Q_EMIT finished(m_summary);
}
