#include "engineprocess.h"

#include "enginesuspender.h"

EngineProcess::EngineProcess(QObject *parent)
    : QProcess(parent)
{
    connect(this, &QProcess::started, this, [this] { EngineSuspender::adoptGroup(processId()); });
}

void EngineProcess::setupChildProcess()
{
    EngineSuspender::prepareChild();
}
