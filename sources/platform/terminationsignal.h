#pragma once

#include <QObject>

class QSocketNotifier;

/**
 * Turns the requests to end the process that arrive as POSIX signals (SIGTERM
 * at logout or shutdown, SIGHUP when the terminal goes, SIGINT) into a Qt
 * signal on the GUI thread, so that the application can quit through its
 * event loop and keep what it would keep on a normal exit. Elsewhere it does
 * nothing.
 */
class TerminationSignal : public QObject
{
    Q_OBJECT
public:
    /** Installs the handlers once per process; the object lives with the application. */
    static TerminationSignal *install();

Q_SIGNALS:
    void received(int signalNumber);

private:
    explicit TerminationSignal(QObject *parent);
    void readPipe();

    QSocketNotifier *m_notifier = nullptr;
};
