#pragma once

#include <QElapsedTimer>
#include <QMap>
#include <QObject>
#include <QProcess>
#include <QStringList>

#include <functional>

class Conversion;
class QWidget;

/**
 * Owns one engine run: starts it, pauses and resumes it on the same action,
 * stops it, and reports how it ended.
 */
class ConversionController : public QObject
{
    Q_OBJECT
public:
    explicit ConversionController(QWidget *window);

    /** The conversion command of this window, owned here. */
    Conversion *conversion() const { return m_conversion; }
    bool isRunning() const;

    /**
     * Run pressed: starts a run with this engine option map, encodings, files
     * and output folder when none is in progress, else pauses or resumes it.
     */
    void runOrPause(const QMap<QString, QString> &options, const QString &sourceEncoding,
                    const QString &targetEncoding, const QStringList &files,
                    const QString &outputFolder);
    /** Ends a run by force at once, and waits a little for the engine to go. */
    void terminateNow();


    /** Asks whether to end an engine that ignored the stop request (default: a message box). */
    void setTerminateQuestion(std::function<bool()> question) { m_terminateQuestion = question; }
    /**
     * Asks which files of the selected folders to convert (default: the
     * file-mask dialog); returns false when the user cancels.
     */
    void setMaskQuestion(std::function<bool(QString *)> question) { m_maskQuestion = question; }

    /** Folders among @p paths become "folder/<mask>" entries, one per ";"-separated mask. */
    static QStringList applyMask(const QStringList &paths, const QString &mask);
    /** How many scripts @p selection names: a folder mask counts the files it matches now. */
    static int scriptCount(const QStringList &selection);
    /** "1.5 s", "2 min 03 s". */
    static QString formatDuration(qint64 milliseconds);

Q_SIGNALS:
    void pauseMode(bool isRunning);
    void conversionMode();
    void changeConversionIndexes(int sourceIndex, int targetIndex);
    /** The run has ended and its summary is in the log; @p complete unless it was
        stopped, terminated or crashed, which leaves its last script unfinished. */
    void runFinished(bool complete);
    /** Something the user must read is in the log: a run that could not start. */
    void logRequested();
    /** The engine was started on about @p scripts scripts (folder masks counted as they stand now). */
    void runStarted(int scripts);

public Q_SLOTS:
    void StopConversion();

private:
    void pause();
    void resume();
    void askTerminate();
    void finished(int exitCode, QProcess::ExitStatus exitStatus);
    void startFailed();

    QWidget *m_window;
    Conversion *m_conversion;
    bool m_paused = false;
    bool m_stopRequested = false;
    bool m_terminated = false;
    QElapsedTimer m_clock;
    std::function<bool()> m_terminateQuestion;
    std::function<bool(QString *)> m_maskQuestion;
};
