#include "reader.h"

#include <QDebug>
#include <QFile>

QStringList readTableLines(const QString &path, bool *ok)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qCritical() << QStringLiteral("Can't open file %1").arg(file.fileName());
        *ok = false;
        return {};
    }
    *ok = true;
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

void Reader::read(const QString &path)
{
    bool ok = false;
    QStringList lines = readTableLines(path, &ok);
    if (!ok)
        return;
    for (QString &line : lines) {
        const QStringList fields = line.split(QLatin1Char(','));
        if (fields.size() >= 2)
            line = fields.at(1);
    }
    m_lines = lines;
}

void Reader::list(QStringList &out) const
{
    if (!out.isSharedWith(m_lines))
        out = m_lines;
}
