#pragma once

#include "eventsender.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

class QProcess;

/**
 * Stops the engine: first politely through the run's stop event, and when the
 * engine is still running three seconds later, asks (through
 * showTerminateDialog) whether to end it by force. A run without a stop event
 * is asked about at once.
 */
class StopConversion : public QObject
{
    Q_OBJECT
public:
    explicit StopConversion(QObject *parent = nullptr);

    /**
     * Creates the stop event of a new run; false, with the reason in @p error,
     * when it cannot be made (the run then goes on without one).
     */
    bool openEvent(const QByteArray &name, QString *error);
    /** The run has ended: its event goes. */
    void releaseEvent();

    /**
     * Sends the stop event and starts the wait, when the process runs. Returns
     * false, with the reason in @p error, when the event could not be sent.
     */
    bool stop(QProcess *process, QString *error = nullptr);
    /**
     * Ends the process (the one last asked to stop, when @p process is null) and
     * everything it started by force, and clears the stop event.
     */
    void kill(QProcess *process = nullptr);

    static constexpr int StopTimeout = 3000;
    /** How long the engine gets to stop before the question; tests shorten it. */
    void setStopTimeout(int msecs) { m_stopTimeout = msecs; }

Q_SIGNALS:
    void showTerminateDialog();

public Q_SLOTS:
    void timeOut();

private:
    EventSender m_eventSender;
    QTimer m_timer;
    QPointer<QProcess> m_process;
    int m_stopTimeout = StopTimeout;
};
