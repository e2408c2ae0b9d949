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
