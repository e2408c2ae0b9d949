#pragma once

#include "command.h"

#include <QProcess>

/** Starts an external command processor. Registered, but nothing runs it yet. */
class CommandLine : public QProcess, public Command
{
    Q_OBJECT
public:
    explicit CommandLine(QObject *parent);
    void execute() override;
};
