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
 * devices) is refused without being opened. Each file is written under a
 * short hidden name in the target folder and renamed only when complete, so
 * a failed or cancelled copy never leaves a partial file under the real name.
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
    /** Answers the pending conflict(); with @p forAll it also answers the later ones. Any thread. */
    void answer(Choice choice, bool forAll);

    /** The name a Rename choice gives: "name (1).ext", "name (2).ext", ... the first free one. */
    static QString freeName(const QString &target, bool folder);

public Q_SLOTS:
    void run();

Q_SIGNALS:
    /** Throttled; @p current is the path being copied. */
    void progress(int filesDone, int filesTotal, qint64 bytesDone, qint64 bytesTotal,
                  const QString &current);
    void conflict(const QString &source, const QString &target);
    void finished(const FileCopier::Summary &summary);

private:
    enum Kind { Folder, File, Link, Other };
    struct Entry
    {
        QString source;
        QString name;      // the target's name, under the parent's target
        int parent;        // index of the folder entry, -1 for a job's top
        Kind kind;
        qint64 size;
    };

    void scan(const QString &source, const QString &name, int parent);
    bool copyEntry(const Entry &entry, QString &target, bool inNewFolder);
    Choice resolve(const QString &source, const QString &target);
    bool copyFile(const Entry &entry, const QString &target, bool replace);
    bool copyLink(const Entry &entry, const QString &target, bool replace);
    bool finishTemporary(const QString &temporary, const QString &target, bool replace);
    QString temporaryName(const QString &folder);
    void fail(const QString &path, const QString &reason);
    void reportProgress(const QString &current, bool force);

    QVector<Job> m_jobs;
    QVector<Entry> m_entries;
    QVector<QString> m_targets;   // resolved target per entry; empty when not made
    QVector<bool> m_made;         // folders made by this copy, so empty before it
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

    std::atomic<bool> m_stop{false};
    std::mutex m_mutex;
    std::condition_variable m_answered;
    bool m_hasAnswer = false;
    Choice m_answer = Skip;
    bool m_answerForAll = false;
    bool m_hasStanding = false;   // worker thread only
    Choice m_standing = Skip;
};

Q_DECLARE_METATYPE(FileCopier::Summary)
