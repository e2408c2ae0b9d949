#pragma once

#include "command.h"

#include <QProcess>

/** The code editor hosted in a panel. */
class Edit : public QProcess, public Command
{
    Q_OBJECT
public:
    Edit(int id, QObject *parent);
    void execute() override;

Q_SIGNALS:
    void hide();
    void startConversion();
};
