#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVector>

#include <atomic>
#include <condition_variable>
#include <mutex>

/**
 * Copies files, links and whole folders; meant to be moved to a worker thread
 * and started through run(). Folders are copied with their contents, links
 * are copied as links and never followed, and anything else (FIFOs, sockets,
 * devices) is refused without being opened. A file gets its name only when
 * complete: it is written as an unnamed file and linked in at the end, or,
 * where the file system cannot do that and when it replaces another file,
 * written under a short hidden name and renamed. So a failed, cancelled or
 * killed copy never leaves a partial file under the real name.
 *
 * When a target name is taken the copier emits conflict() and waits until
 * answer() or stop() is called from another thread.
 */
class FileCopier : public QObject
{
    Q_OBJECT
public:
    enum Choice { Overwrite, Skip, Rename, Cancel };

    struct Job
    {
        QString source;
        QString target;
    };

    struct Failure
    {
        QString path;
        QString reason;
    };

    struct Summary
    {
        int copied = 0;    // files, links and folders made
        int skipped = 0;   // names the user chose to leave alone
        QVector<Failure> errors;
        bool cancelled = false;
    };

    explicit FileCopier(const QVector<Job> &jobs, QObject *parent = nullptr);
    ~FileCopier() override;

    /** Ends the copy at the next chunk or conflict; the file in progress is dropped. Any thread. */
    void stop();
    /**
     * Called once the thread that ran run() has been waited for. QThread's own
     * join is out of the thread sanitizer's sight; this acquire of the flag run()
     * sets last orders the copier's deletion after everything run() did.
     */
    void joined() const { m_ran.load(std::memory_order_acquire); }
    /** Answers the pending conflict(); with @p forAll it also answers the later ones. Any thread. */
    void answer(Choice choice, bool forAll);

    /** The name a Rename choice gives: "name (1).ext", "name (2).ext", ... the first free one. */
    static QString freeName(const QString &target, bool folder);

    /**
     * How files are written until they are complete: unnamed and linked in by
     * their descriptor, or, on older kernels, through /proc; under a hidden
     * name where the file system has no unnamed files. The system decides;
     * setting a later way makes copies started afterwards use it.
     */
    enum Writing { UnnamedFiles, UnnamedThroughProc, HiddenNames };
    static void setWriting(Writing way);

public Q_SLOTS:
    void run();

Q_SIGNALS:
    /** Throttled; @p current is the path being copied. */
    void progress(int filesDone, int filesTotal, qint64 bytesDone, qint64 bytesTotal,
                  const QString &current);
    void conflict(const QString &source, const QString &target);
    void finished(const FileCopier::Summary &summary);

private:
    enum Kind { Folder, File, Link, Other, Unreadable };
    struct Entry
    {
        QByteArray source; // the whole path, in the file system's encoding
        QByteArray name;   // the target's name under the parent's target; a job's top: its path
        int parent;        // index of the folder entry, -1 for a job's top
        Kind kind;
        qint64 size;
    };

    void scanTop(const QString &source, const QString &target);
    void scanFolder(int folder);
    bool openFolders(const Entry &entry, const QByteArray &target);
    void closeFolders();
    bool copyEntry(const Entry &entry, QByteArray &target, bool inNewFolder);
    Choice resolve(const QString &source, const QString &target);
    bool copyFile(const Entry &entry, const QByteArray &target, bool replace);
    bool copyData(int in, int out, const Entry &entry, const QByteArray &target, qint64 size);
    bool copyLink(const Entry &entry, const QByteArray &target, bool replace);
    bool finishTemporary(const QByteArray &temporary, const QByteArray &target, bool replace);
    QByteArray temporaryName();
    void fail(const QString &path, const QString &reason);
    void fail(const QByteArray &path, const QString &reason);
    void reportProgress(const QByteArray &current, bool force);

    QVector<Job> m_jobs;
    QVector<Entry> m_entries;
    QVector<QByteArray> m_targets;   // resolved target per entry; empty when not made
    QVector<bool> m_made;            // folders made by this copy, so empty before it
    int m_current = 0;
    QByteArray m_buffer;
    Summary m_summary;
    int m_filesTotal = 0;
    int m_filesDone = 0;
    qint64 m_bytesTotal = 0;
    qint64 m_bytesDone = 0;
    QElapsedTimer m_clock;
    qint64 m_lastProgress = 0;
    int m_temporaryCounter = 0;
    qint64 m_pid = 0;

    // The source and target folders of the entries being copied, open so that
    // each file is reached by its name alone.
    int m_sourceFolder = -1;
    int m_targetFolder = -1;
    QByteArray m_openSource;
    QByteArray m_openTarget;
    bool m_unnamedPossible = false;   // unnamed files can be given a name on this system
    bool m_unnamedFiles = false;      // ... and made in the open target folder
    bool m_linkThroughProc = false;
    unsigned m_umask = 0777;          // permission bits a new file loses

    std::atomic<bool> m_stop{false};
    std::atomic<bool> m_ran{false}; // the last thing run() does
    std::mutex m_mutex;
    std::condition_variable m_answered;
    bool m_hasAnswer = false;
    Choice m_answer = Skip;
    bool m_answerForAll = false;
    bool m_hasStanding = false;   // worker thread only
    Choice m_standing = Skip;
};

Q_DECLARE_METATYPE(FileCopier::Summary)
