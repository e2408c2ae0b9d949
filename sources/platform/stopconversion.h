#pragma once

#include "eventsender.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

class QProcess;

/**
 * Stops the engine: first politely through the stop event, and when the
 * engine is still running three seconds later, asks (through
 * showTerminateDialog) whether to end it by force.
 */
class StopConversion : public QObject
{
    Q_OBJECT
public:
    explicit StopConversion(QObject *parent = nullptr);

    /** Sends the stop event and starts the wait, when the process runs. */
    void stop(QProcess *process);
    /** Ends the process by force and clears the stop event. */
    void kill();
    /** Clears a stop request the engine never took (before a new run). */
    void resetEvent();

    EventSender &eventSender() { return m_eventSender; }
    bool isWaiting() const { return m_timer.isActive(); }
    static constexpr int StopTimeout = 3000;

Q_SIGNALS:
    void showTerminateDialog();

public Q_SLOTS:
    void timeOut();

private:
    EventSender m_eventSender;
    QTimer m_timer;
    QPointer<QProcess> m_process;
};
