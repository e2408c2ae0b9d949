#pragma once

#include <QProcess>

/**
 * The engine's child process. Off Windows it starts as the leader of a
 * process group of its own, so that pausing and ending it reach what it
 * started and nothing else.
 */
class EngineProcess : public QProcess
{
    Q_OBJECT
public:
    explicit EngineProcess(QObject *parent = nullptr);

protected:
    void setupChildProcess() override;
};
