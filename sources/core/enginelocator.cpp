#include "enginelocator.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>

QString EngineLocator::defaultProgram()
{
    return QStringLiteral("morvane");
}

QStringList EngineLocator::folders(const QString &applicationDir)
{
    // The install rules put the engine and the private library in this folder.
    const QString privateFolder = QStringLiteral("../lib/morvane-navarch");
    return {applicationDir, QDir::cleanPath(QDir(applicationDir).filePath(privateFolder))};
}

QStringList EngineLocator::folders()
{
    return folders(QCoreApplication::applicationDirPath());
}

QString EngineLocator::find(const QString &program, const QString &applicationDir)
{
    const QString found = QStandardPaths::findExecutable(program, folders(applicationDir));
    return found.isEmpty() ? QStandardPaths::findExecutable(program) : found;
}

QString EngineLocator::find(const QString &program)
{
    return find(program, QCoreApplication::applicationDirPath());
}
