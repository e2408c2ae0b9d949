#include "filecopier.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>

#ifdef Q_OS_UNIX
#include <dirent.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>
#endif

namespace {

constexpr int ChunkSize = 1024 * 1024;
constexpr qint64 ProgressMs = 100;

std::atomic<FileCopier::Writing> writing{FileCopier::UnnamedFiles};

QString notCopiedReason()
{
    return QCoreApplication::translate(
        "FileCopier", "not a regular file, folder or link (a FIFO, socket or device); not copied");
}

QString vanishedReason()
{
    return QCoreApplication::translate("FileCopier", "it no longer exists");
}

QString systemReason()
{
    return qt_error_string(errno);
}

bool existsOrDangles(const QFileInfo &info)
{
    return info.exists() || info.isSymLink();
}

// The last part of a path and the folder before it.
QByteArray nameOf(const QByteArray &path)
{
    return path.mid(path.lastIndexOf('/') + 1);
}

QByteArray folderOf(const QByteArray &path)
{
    const int slash = path.lastIndexOf('/');
    return slash < 0 ? QByteArray(".") : slash == 0 ? QByteArray("/") : path.left(slash);
}

#ifdef Q_OS_UNIX
/** Closes a descriptor when it goes out of scope. */
class Descriptor
{
public:
    explicit Descriptor(int fd = -1) : m_fd(fd) {}
    ~Descriptor() { reset(); }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    int get() const { return m_fd; }
    void reset(int fd = -1)
    {
        if (m_fd >= 0)
            ::close(m_fd);
        m_fd = fd;
    }
    int release()
    {
        const int fd = m_fd;
        m_fd = -1;
        return fd;
    }

private:
    int m_fd;
};

#ifdef O_TMPFILE
// Gives an unnamed file its name. Linking the descriptor itself needs a recent
// kernel (or privilege); otherwise its entry under /proc is linked, and that
// is remembered in @p throughProc.
bool linkUnnamed(int fd, int folder, const QByteArray &name, bool &throughProc)
{
    if (!throughProc) {
        if (::linkat(fd, "", folder, name.constData(), AT_EMPTY_PATH) == 0)
            return true;
        if (errno != ENOENT)
            return false;
    }
    char self[40];
    std::snprintf(self, sizeof self, "/proc/self/fd/%d", fd);
    if (::linkat(AT_FDCWD, self, folder, name.constData(), AT_SYMLINK_FOLLOW) != 0)
        return false;
    throughProc = true;
    return true;
}
#endif

// The process's umask, read without changing it; all bits when unknown.
mode_t currentUmask()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (status.open(QIODevice::ReadOnly)) {
        const QList<QByteArray> lines = status.readAll().split('\n');
        for (const QByteArray &line : lines) {
            bool ok = false;
            const uint mask = line.startsWith("Umask:") ? line.mid(6).trimmed().toUInt(&ok, 8) : 0;
            if (ok)
                return mode_t(mask);
        }
    }
    return 0777;
}

// Moves a finished temporary file or link to its name in the same folder.
// Without @p replace an existing name, even a dangling link, is never replaced.
bool moveIntoPlace(int folder, const QByteArray &from, const QByteArray &to, bool replace)
{
    if (replace)
        return ::renameat(folder, from.constData(), folder, to.constData()) == 0;
#ifdef Q_OS_LINUX
    if (::renameat2(folder, from.constData(), folder, to.constData(), RENAME_NOREPLACE) == 0)
        return true;
    if (errno != EINVAL && errno != ENOSYS)
        return false;
#endif
    // File systems without an exclusive rename: a hard link fails on any
    // existing name too.
    if (::linkat(folder, from.constData(), folder, to.constData(), 0) != 0)
        return false;
    ::unlinkat(folder, from.constData(), 0);
    return true;
}
#endif

} // namespace

FileCopier::FileCopier(const QVector<Job> &jobs, QObject *parent)
    : QObject(parent)
    , m_jobs(jobs)
{
    qRegisterMetaType<FileCopier::Summary>();
}

FileCopier::~FileCopier()
{
    closeFolders();
}

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

void FileCopier::setWriting(Writing way)
{
    writing.store(way);
}

void FileCopier::fail(const QString &path, const QString &reason)
{
    m_summary.errors.append({path, reason});
}

void FileCopier::fail(const QByteArray &path, const QString &reason)
{
    fail(QFile::decodeName(path), reason);
}

void FileCopier::reportProgress(const QByteArray &current, bool force)
{
    const qint64 now = m_clock.elapsed();
    if (!force && now - m_lastProgress < ProgressMs)
        return;
    m_lastProgress = now;
    Q_EMIT progress(m_filesDone, m_filesTotal, m_bytesDone, m_bytesTotal,
                    QFile::decodeName(current));
}

void FileCopier::scanTop(const QString &source, const QString &target)
{
    const QByteArray path = QFile::encodeName(source);
    Kind kind = Other;
    qint64 size = 0;
#ifdef Q_OS_UNIX
    struct stat status;
    if (::lstat(path.constData(), &status) != 0) {
        fail(source, errno == ENOENT ? vanishedReason() : systemReason());
        return;
    }
    if (S_ISLNK(status.st_mode))
        kind = Link;
    else if (S_ISDIR(status.st_mode))
        kind = Folder;
    else if (S_ISREG(status.st_mode))
        kind = File;
    size = status.st_size;
#else
    const QFileInfo info(source);
    if (info.isSymLink())
        kind = Link;
    else if (info.isDir())
        kind = Folder;
    else if (info.isFile())
        kind = File;
    else if (!info.exists()) {
        fail(source, vanishedReason());
        return;
    }
    size = info.size();
#endif
    m_entries.append({path, QFile::encodeName(target), -1, kind, kind == File ? size : 0});
    if (kind == Folder)
        scanFolder(m_entries.size() - 1);
    else {
        ++m_filesTotal;
        m_bytesTotal += m_entries.last().size;
    }
}

// Lists a folder's entries after it, then looks into its subfolders, so that
// what a folder holds directly is copied in one run.
void FileCopier::scanFolder(int folder)
{
    const QByteArray path = m_entries.at(folder).source;
    const int first = m_entries.size();
    auto add = [&](const QByteArray &name, Kind kind, qint64 size) {
        m_entries.append({path + '/' + name, name, folder, kind, size});
        if (kind != Folder) {
            ++m_filesTotal;
            m_bytesTotal += size;
        }
    };
#ifdef Q_OS_UNIX
    const int fd = ::access(path.constData(), R_OK | X_OK) == 0
        ? ::open(path.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)
        : -1;
    DIR *dir = fd >= 0 ? ::fdopendir(fd) : nullptr;
    if (!dir) {
        if (fd >= 0)
            ::close(fd);
        fail(path, QCoreApplication::translate("FileCopier", "the folder cannot be read"));
        m_entries[folder].kind = Unreadable;
        return;
    }
    while (const dirent *child = ::readdir(dir)) {
        const char *name = child->d_name;
        if (name[0] == '.' && (name[1] == 0 || (name[1] == '.' && name[2] == 0)))
            continue;
        // The listing tells the kind on most file systems; only files need more.
        Kind kind = child->d_type == DT_DIR ? Folder : child->d_type == DT_LNK ? Link : Other;
        qint64 size = 0;
        if (child->d_type == DT_REG || child->d_type == DT_UNKNOWN) {
            struct stat status;
            if (::fstatat(::dirfd(dir), name, &status, AT_SYMLINK_NOFOLLOW) != 0) {
                fail(path + '/' + name, errno == ENOENT ? vanishedReason() : systemReason());
                continue;
            }
            kind = S_ISREG(status.st_mode) ? File
                : S_ISDIR(status.st_mode)  ? Folder
                : S_ISLNK(status.st_mode)  ? Link
                                           : Other;
            size = kind == File ? status.st_size : 0;
        }
        add(QByteArray(name), kind, size);
    }
    ::closedir(dir);
#else
    const QFileInfo info(QFile::decodeName(path));
    if (!info.isReadable() || !info.isExecutable()) {
        fail(path, QCoreApplication::translate("FileCopier", "the folder cannot be read"));
        m_entries[folder].kind = Unreadable;
        return;
    }
    const QFileInfoList children = QDir(info.filePath()).entryInfoList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::NoSort);
    for (const QFileInfo &child : children) {
        const Kind kind = child.isSymLink() ? Link
            : child.isDir()                 ? Folder
            : child.isFile()                ? File
                                            : Other;
        add(QFile::encodeName(child.fileName()), kind, kind == File ? child.size() : 0);
    }
#endif
    const int end = m_entries.size();
    for (int i = first; i < end && !m_stop.load(); ++i) {
        if (m_entries.at(i).kind == Folder)
            scanFolder(i);
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

QByteArray FileCopier::temporaryName()
{
    // Short and fixed in length, so that a name of up to 255 bytes can be copied.
    return ".navarch-" + QByteArray::number(m_pid) + '-'
        + QByteArray::number(++m_temporaryCounter) + ".part";
}

bool FileCopier::openFolders(const Entry &entry, const QByteArray &target)
{
    const QByteArray source =
        entry.parent >= 0 ? m_entries.at(entry.parent).source : folderOf(entry.source);
    const QByteArray targetFolder =
        entry.parent >= 0 ? m_targets.at(entry.parent) : folderOf(target);
    if (source == m_openSource && targetFolder == m_openTarget)
        return true;
    closeFolders();
#ifdef Q_OS_UNIX
    // Only to reach entries by name: a folder that may be passed through but
    // not listed is enough where the system allows.
#ifdef O_PATH
    const int flags = O_PATH | O_DIRECTORY | O_CLOEXEC;
#else
    const int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
#endif
    m_sourceFolder = ::open(source.constData(), flags);
    if (m_sourceFolder < 0) {
        fail(source, systemReason());
        return false;
    }
    m_targetFolder = ::open(targetFolder.constData(), flags);
    if (m_targetFolder < 0) {
        fail(targetFolder, systemReason());
        closeFolders();
        return false;
    }
#endif
    m_openSource = source;
    m_openTarget = targetFolder;
    m_unnamedFiles = m_unnamedPossible;
    return true;
}

void FileCopier::closeFolders()
{
#ifdef Q_OS_UNIX
    if (m_sourceFolder >= 0)
        ::close(m_sourceFolder);
    if (m_targetFolder >= 0)
        ::close(m_targetFolder);
#endif
    m_sourceFolder = -1;
    m_targetFolder = -1;
    m_openSource.clear();
    m_openTarget.clear();
}

bool FileCopier::copyEntry(const Entry &entry, QByteArray &target, bool inNewFolder)
{
    if (entry.kind == Other) {
        fail(entry.source, notCopiedReason());
        return false;
    }
    if (!openFolders(entry, target))
        return false;
    bool replace = false;
    // A folder this copy made holds no other names; should one appear all the
    // same, the file is still never put in its place.
#ifdef Q_OS_UNIX
    struct stat status;
    const bool taken = !inNewFolder
        && ::fstatat(m_targetFolder, nameOf(target).constData(), &status,
                     AT_SYMLINK_NOFOLLOW) == 0;
#else
    const bool taken = !inNewFolder && existsOrDangles(QFileInfo(QFile::decodeName(target)));
#endif
    if (taken) {
        const QString targetPath = QFile::decodeName(target);
        const QString sourcePath = QFile::decodeName(entry.source);
        const QFileInfo existing(targetPath);
        const bool existingFolder = existing.isDir() && !existing.isSymLink();
        const bool itself = !existing.isSymLink()
            && existing.canonicalFilePath() == QFileInfo(sourcePath).canonicalFilePath();
        // Folders merge: what they hold is asked about name by name.
        if (entry.kind == Folder && existingFolder && !itself)
            return true;
        switch (resolve(sourcePath, targetPath)) {
        case Cancel:
            m_stop.store(true);
            return false;
        case Skip:
            ++m_summary.skipped;
            return false;
        case Rename:
            target = QFile::encodeName(freeName(targetPath, entry.kind == Folder));
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
#ifdef Q_OS_UNIX
        if (::mkdirat(m_targetFolder, nameOf(target).constData(), 0777) != 0) {
            fail(target, systemReason());
            return false;
        }
#else
        if (!QDir().mkdir(QFile::decodeName(target))) {
            fail(target, systemReason());
            return false;
        }
#endif
        ++m_summary.copied;
        m_made[m_current] = true;
        return true;
    case File:
        return copyFile(entry, target, replace);
    case Link:
        return copyLink(entry, target, replace);
    case Other:
    case Unreadable:
        break;
    }
    return false;
}

#ifdef Q_OS_UNIX
bool FileCopier::copyFile(const Entry &entry, const QByteArray &target, bool replace)
{
    // Opened without blocking and without following a link, then checked, so
    // that a FIFO put in the file's place since the scan cannot hang the copy.
    const Descriptor in(::openat(m_sourceFolder, nameOf(entry.source).constData(),
                                 O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (in.get() < 0) {
        fail(entry.source, systemReason());
        return false;
    }
    struct stat status;
    if (::fstat(in.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        fail(entry.source, notCopiedReason());
        return false;
    }

    // An unnamed file needs no clean-up: it vanishes with its descriptor,
    // whatever ends the copy.
    Descriptor out;
    QByteArray temporary;
#ifdef O_TMPFILE
    if (!replace && m_unnamedFiles) {
        // Made with its final permissions where the umask leaves them whole.
        out.reset(::openat(m_targetFolder, ".", O_TMPFILE | O_WRONLY | O_CLOEXEC,
                           status.st_mode & 0777));
        if (out.get() < 0 && errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL) {
            fail(target, systemReason());
            return false;
        }
        m_unnamedFiles = out.get() >= 0;
    }
#endif
    while (out.get() < 0) {
        temporary = temporaryName();
        out.reset(::openat(m_targetFolder, temporary.constData(),
                           O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
        if (out.get() < 0 && errno != EEXIST) {
            fail(target, systemReason());
            return false;
        }
    }
    auto drop = [&] {
        out.reset();
        if (!temporary.isEmpty())
            ::unlinkat(m_targetFolder, temporary.constData(), 0);
    };

    if (!copyData(in.get(), out.get(), entry, target, status.st_size)) {
        drop();
        return false;
    }
    if (!temporary.isEmpty() || (status.st_mode & (07000 | m_umask)) != 0)
        ::fchmod(out.get(), status.st_mode & 07777);
    const struct timespec times[2] = {status.st_atim, status.st_mtim};
    ::futimens(out.get(), times);

#ifdef O_TMPFILE
    if (temporary.isEmpty()) {
        const QByteArray name = nameOf(target);
        if (!linkUnnamed(out.get(), m_targetFolder, name, m_linkThroughProc)) {
            fail(target, systemReason());
            return false;
        }
        if (::close(out.release()) != 0) {
            fail(target, systemReason());
            ::unlinkat(m_targetFolder, name.constData(), 0);
            return false;
        }
        ++m_summary.copied;
        return true;
    }
#endif
    if (::close(out.release()) != 0) {
        fail(target, systemReason());
        drop();
        return false;
    }
    return finishTemporary(temporary, target, replace);
}

bool FileCopier::copyData(int in, int out, const Entry &entry, const QByteArray &target,
                          qint64 size)
{
    qint64 copied = 0;
    // The kernel copies without a trip through this process where it can; on
    // any failure the plain copy takes over and names the side that fails.
    bool plain = false;
    for (;;) {
        if (m_stop.load())
            return false;
        ssize_t read = -1;
#ifdef Q_OS_LINUX
        if (!plain) {
            read = ::copy_file_range(in, nullptr, out, nullptr, ChunkSize, 0);
            plain = read < 0;
        } else
#endif
        {
            plain = true;
            read = ::read(in, m_buffer.data(), size_t(m_buffer.size()));
            if (read < 0) {
                if (errno == EINTR)
                    continue;
                fail(entry.source, systemReason());
                return false;
            }
            for (ssize_t written = 0; written < read;) {
                const ssize_t wrote = ::write(out, m_buffer.constData() + written,
                                              size_t(read - written));
                if (wrote < 0 && errno == EINTR)
                    continue;
                // A short write is retried once more so that the system names the reason.
                if (wrote <= 0) {
                    fail(target, wrote < 0 ? systemReason() : qt_error_string(ENOSPC));
                    return false;
                }
                written += wrote;
            }
        }
        if (read < 0)
            continue;
        if (read == 0)
            return true;
        copied += read;
        m_bytesDone += read;
        // The size when opened is what is copied: no call just to meet the end.
        if (size > 0 && copied >= size)
            return true;
        reportProgress(entry.source, false);
    }
}

bool FileCopier::copyLink(const Entry &entry, const QByteArray &target, bool replace)
{
    // The link's own text, relative or not, byte for byte.
    QByteArray text(4096, Qt::Uninitialized);
    const ssize_t length = ::readlinkat(m_sourceFolder, nameOf(entry.source).constData(),
                                        text.data(), size_t(text.size()));
    if (length < 0) {
        fail(entry.source, systemReason());
        return false;
    }
    text.truncate(int(length));
    // A new link is made whole in one step and never replaces an existing name.
    if (!replace) {
        if (::symlinkat(text.constData(), m_targetFolder, nameOf(target).constData()) != 0) {
            fail(target, systemReason());
            return false;
        }
        ++m_summary.copied;
        return true;
    }
    QByteArray temporary;
    do {
        temporary = temporaryName();
        if (::symlinkat(text.constData(), m_targetFolder, temporary.constData()) == 0)
            return finishTemporary(temporary, target, replace);
    } while (errno == EEXIST);
    fail(target, systemReason());
    return false;
}

bool FileCopier::finishTemporary(const QByteArray &temporary, const QByteArray &target,
                                 bool replace)
{
    if (!moveIntoPlace(m_targetFolder, temporary, nameOf(target), replace)) {
        fail(target, systemReason());
        ::unlinkat(m_targetFolder, temporary.constData(), 0);
        return false;
    }
    ++m_summary.copied;
    return true;
}
#else
bool FileCopier::copyFile(const Entry &entry, const QByteArray &target, bool replace)
{
    QFile in(QFile::decodeName(entry.source));
    if (!in.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        fail(entry.source, in.errorString());
        return false;
    }
    const QString folder = QFile::decodeName(m_openTarget) + QLatin1Char('/');
    QFile out;
    for (;;) {
        out.setFileName(folder + QFile::decodeName(temporaryName()));
        if (out.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered))
            break;
        if (!existsOrDangles(QFileInfo(out.fileName()))) {
            fail(target, out.errorString());
            return false;
        }
    }
    for (;;) {
        const qint64 read = m_stop.load() ? -1 : in.read(m_buffer.data(), m_buffer.size());
        if (read == 0)
            break;
        if (read < 0 || out.write(m_buffer.constData(), read) != read) {
            if (read < 0 && !m_stop.load())
                fail(entry.source, in.errorString());
            else if (read >= 0)
                fail(target, out.errorString());
            out.close();
            out.remove();
            return false;
        }
        m_bytesDone += read;
        reportProgress(entry.source, false);
    }
    out.setPermissions(in.permissions());
    out.close();
    if (out.error() != QFileDevice::NoError) {
        fail(target, out.errorString());
        out.remove();
        return false;
    }
    return finishTemporary(QFile::encodeName(out.fileName()), target, replace);
}

bool FileCopier::copyLink(const Entry &entry, const QByteArray &target, bool replace)
{
    const QString temporary = QFile::decodeName(m_openTarget + '/' + temporaryName());
    if (!QFile::link(QFileInfo(QFile::decodeName(entry.source)).symLinkTarget(), temporary)) {
        fail(target, QCoreApplication::translate("FileCopier", "the link cannot be made"));
        return false;
    }
    return finishTemporary(QFile::encodeName(temporary), target, replace);
}

bool FileCopier::finishTemporary(const QByteArray &temporary, const QByteArray &target,
                                 bool replace)
{
    const QString to = QFile::decodeName(target);
    if ((replace || !existsOrDangles(QFileInfo(to)))
        && std::rename(temporary.constData(), target.constData()) == 0) {
        ++m_summary.copied;
        return true;
    }
    fail(target, replace ? systemReason()
                         : QCoreApplication::translate("FileCopier", "the name exists"));
    QFile::remove(QFile::decodeName(temporary));
    return false;
}
#endif

void FileCopier::run()
{
#ifdef Q_OS_LINUX
    // A thread's priority under the usual scheduler is its own nice value:
    // raised, the GUI thread comes first whenever it wakes.
    const pid_t thread = pid_t(::syscall(SYS_gettid));
    ::setpriority(PRIO_PROCESS, id_t(thread), ::getpriority(PRIO_PROCESS, id_t(thread)) + 5);
#endif
    m_buffer.resize(ChunkSize);
    m_pid = QCoreApplication::applicationPid();
#ifdef Q_OS_UNIX
    // Unnamed files are used only where /proc can name them should the kernel
    // refuse to link their descriptor.
    const Writing way = writing.load();
    m_unnamedPossible = way != HiddenNames && ::access("/proc/self/fd", X_OK) == 0;
    m_linkThroughProc = way == UnnamedThroughProc;
    m_umask = currentUmask();
#endif
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
        scanTop(job.source, job.target);
    }
    reportProgress(QByteArray(), true);

    m_targets.resize(m_entries.size());
    m_made.fill(false, m_entries.size());
    for (int i = 0; i < m_entries.size() && !m_stop.load(); ++i) {
        m_current = i;
        const Entry &entry = m_entries.at(i);
        if (entry.kind == Unreadable)
            continue;
        QByteArray target = entry.name;
        if (entry.parent >= 0) {
            const QByteArray &folder = m_targets.at(entry.parent);
            // Inside a folder that was skipped or could not be made.
            if (folder.isEmpty())
                continue;
            target = folder + '/' + entry.name;
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
    closeFolders();
    m_summary.cancelled = m_stop.load();
    reportProgress(QByteArray(), true);
    Q_EMIT finished(m_summary);
    m_ran.store(true, std::memory_order_release);
}
