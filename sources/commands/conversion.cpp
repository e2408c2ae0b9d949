#include "conversion.h"

#include "reader.h"

#include <QDebug>
#include <QThread>

Conversion::Conversion(QObject *parent)
    : QProcess(parent)
{
    for (const char *table : {":/directions/DBDirections.csv", ":/directions/AppDirections.csv",
                              ":/directions/DatabaseAPI.csv"}) {
        QByteArray path(table);
        parseDirectionInfo(path);
    }
    m_directionList.sort(Qt::CaseSensitive);
    m_program = QStringLiteral("morvane");
    m_parameters.insert(QStringLiteral("/D="), QStringLiteral("FIXED"));
    m_outputDir = QStringLiteral("c:/");
    qDebug() << "Conversion::Conversion" << QThread::currentThread();
}

void Conversion::execute()
{
}

void Conversion::parseDirectionInfo(QByteArray &path)
{
    const QString fileName = QString::fromUtf8(path);
    bool ok = false;
    const QStringList lines = readTableLines(fileName, &ok);
    if (!ok)
        return;
    for (const QString &line : lines) {
        const QStringList fields = line.split(QLatin1Char(','));
        if (fields.size() < 2) {
            qCritical() << QStringLiteral("Error parsing line %1 in file %2").arg(line, fileName);
            continue;
        }
        m_nameMap.insert(fields.at(1), fields.at(0));
        if (fields.size() >= 3)
            m_directionList << fields.at(1);
    }
}

void Conversion::setSourceConversion(QString sourceConversion)
{
    m_parameters.insert(QStringLiteral("/SOURCE="), sourceConversion);
}

void Conversion::setTargetConversion(QString targetConversion)
{
    m_parameters.insert(QStringLiteral("/TARGET="), targetConversion);
}

static void setOrRemove(QMap<QString, QString> &map, const QString &key, const QString &value)
{
    if (value.isEmpty())
        map.remove(key);
    else
        map.insert(key, value);
}

void Conversion::setSourceConversionOption(QString database, QString api)
{
    setOrRemove(m_parameters, QStringLiteral("/Source_DB="), database);
    setOrRemove(m_parameters, QStringLiteral("/Source_API="), api);
}

void Conversion::setTargetConversionOption(QString database, QString api)
{
    setOrRemove(m_parameters, QStringLiteral("/Target_DB="), database);
    setOrRemove(m_parameters, QStringLiteral("/Target_API="), api);
}

void Conversion::setFile(QStringList absolutePathFile)
{
    m_fileList = absolutePathFile.join(QStringLiteral("| "));
}

void Conversion::setOutputDir(QString outputDir)
{
    m_outputDir = outputDir;
}
