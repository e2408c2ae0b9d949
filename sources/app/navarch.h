#pragma once

#include "command.h"

#include <QMap>
#include <QObject>

/**
 * The process-wide registry of commands: one instance of each, owned here and
 * handed out by type for the whole run.
 */
class Navarch : public QObject
{
    Q_OBJECT
public:
    Navarch();
    ~Navarch() override;

    /** The single registry, created on first use. */
    static Navarch &instance();

    Command *getCommand(const CommandType &type);

private:
    QMap<CommandType, Command *> m_commands;
};

/** Whether the engine process of the conversion command is starting or running. */
bool isConversionRunning();
