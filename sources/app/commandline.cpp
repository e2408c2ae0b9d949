#include "commandline.h"

#include <QDebug>

CommandLine::CommandLine(QObject *parent)
    : QProcess(parent)
{
}

void CommandLine::execute()
{
    const QString program = tr("Process.exe");
    const QStringList arguments{QStringLiteral("cmd")};
    qDebug() << program;
    start(program, arguments, QIODevice::ReadWrite);
}
