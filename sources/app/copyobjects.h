#pragma once

#include "filecopier.h"

#include <QObject>
#include <QPointer>
#include <QStringList>

#include <functional>

/**
 * Copies the selection of the active panel into the folder of the other one,
 * after the "Copy" dialog has confirmed (or changed) the target. Long copies
 * show their progress and can be cancelled.
 */
class CopyObjects : public QObject
{
    Q_OBJECT
public:
    /** Shows the copy dialog with @p target; false on Cancel, else the edited text in it. */
    using Prompt = std::function<bool(QString &target)>;
    /** Reports one message to the user. */
    using Notify = std::function<void(const QString &message)>;

    CopyObjects(const QStringList &sources, const QString &targetFolder,
                QObject *parent = nullptr);
    ~CopyObjects() override;

    /**
     * Runs the copy. One source: true once the dialog was accepted. Several
     * sources: false when the last copy succeeded, true when it failed.
     * Cancel in the dialog gives false.
     */
    bool execute();
    /** Cancels a running copy; a partly written file is removed. */
    void cancel();
    bool isRunning() const { return m_copier != nullptr; }

    void setPrompt(Prompt prompt) { m_prompt = std::move(prompt); }
    void setNotify(Notify notify) { m_notify = std::move(notify); }
    /** Whether a progress window appears for long copies (on by default). */
    void setShowProgress(bool show) { m_showProgress = show; }

    static QString existsMessage(const QString &target);

Q_SIGNALS:
    void turnWaitingMode(Qt::CursorShape cursor);
    void progress(qint64 done, qint64 total);

private:
    QVector<FileCopier::Result> run(const QVector<FileCopier::Job> &jobs);

    QStringList m_sources;
    QString m_targetFolder;
    Prompt m_prompt;
    Notify m_notify;
    bool m_showProgress = true;
    FileCopier *m_copier = nullptr;
    bool m_cancelled = false;
};
