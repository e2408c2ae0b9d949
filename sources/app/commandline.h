#pragma once

#include <QProcess>

/** Starts an external command processor. The main window owns one; nothing runs it yet. */
class CommandLine : public QProcess
{
    Q_OBJECT
public:
    explicit CommandLine(QObject *parent);
    void execute();
};
