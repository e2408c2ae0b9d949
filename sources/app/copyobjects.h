#pragma once

#include "filecopier.h"

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QThread>

#include <functional>
#include <memory>

class QMessageBox;
class QProgressDialog;
class QWidget;

/**
 * Copies the selection of the active panel into the folder of the other one,
 * after the "Copy" dialog has confirmed (or changed) the target. The copy runs
 * on a worker thread; a progress window shows files and bytes and can cancel
 * it, a taken name is asked about (Overwrite, Skip, Rename, for one or for
 * all), and the outcome is reported once at the end.
 */
class CopyObjects : public QObject
{
    Q_OBJECT
public:
    /** Shows the copy dialog with @p target; false on Cancel, else the edited text in it. */
    using Prompt = std::function<bool(QString &target)>;
    /** Reports one message to the user. */
    using Notify = std::function<void(const QString &message)>;
    /** Asks about a taken name; the answer comes back through answerConflict(). */
    using ConflictPrompt = std::function<void(const QString &source, const QString &target)>;

    CopyObjects(const QStringList &sources, const QString &targetFolder,
                QWidget *dialogParent = nullptr, QObject *parent = nullptr);
    /** Stops a running copy and waits for its thread. */
    ~CopyObjects() override;

    /**
     * Asks for the target and starts the copy; finished() follows. False when
     * the dialog was cancelled or there is nothing to copy (no finished() then).
     */
    bool execute();
    /** Cancels a running copy; the file in progress is dropped. */
    void cancel();
    void answerConflict(FileCopier::Choice choice, bool forAll);
    bool isRunning() const { return m_thread.isRunning(); }

    void setPrompt(Prompt prompt) { m_prompt = std::move(prompt); }
    void setNotify(Notify notify) { m_notify = std::move(notify); }
    void setConflictPrompt(ConflictPrompt prompt) { m_conflictPrompt = std::move(prompt); }
    /** Whether a progress window appears for long copies (on by default). */
    void setShowProgress(bool show) { m_showProgress = show; }

    /** What the user reads at the end: counts, then each failure with its file's name. */
    static QString summaryText(const FileCopier::Summary &summary);

Q_SIGNALS:
    void turnWaitingMode(Qt::CursorShape cursor);
    void progress(int filesDone, int filesTotal, qint64 bytesDone, qint64 bytesTotal);
    void finished(const FileCopier::Summary &summary);

private:
    void start(const QVector<FileCopier::Job> &jobs);
    void showProgress(int filesDone, int filesTotal, qint64 bytesDone, qint64 bytesTotal,
                      const QString &current);
    /** Shows the progress window after a short delay if the copy still runs and asks nothing. */
    void scheduleProgress();
    void askConflict(const QString &source, const QString &target);
    void copyFinished(const FileCopier::Summary &summary);

    QStringList m_sources;
    QString m_targetFolder;
    QPointer<QWidget> m_dialogParent;
    Prompt m_prompt;
    Notify m_notify;
    ConflictPrompt m_conflictPrompt;
    bool m_showProgress = true;
    QThread m_thread;
    std::unique_ptr<FileCopier> m_copier;
    QPointer<QProgressDialog> m_progress;
    QPointer<QMessageBox> m_conflictBox;
};
