#include "historylist.h"

#include <QComboBox>
#include <QLineEdit>
#include <QStringList>

namespace HistoryList {

QString write(const QComboBox *combo)
{
    QStringList entries;
    entries << (combo->lineEdit() ? combo->lineEdit()->text() : combo->currentText()).trimmed();
    const int limit = qMin(combo->count(), 15);
    for (int i = 0; i < limit; ++i) {
        const QString item = combo->itemText(i).trimmed();
        if (!entries.contains(item))
            entries << item;
    }
    QString out;
    for (const QString &entry : qAsConst(entries))
        out += QLatin1Char(';') + entry;
    return out;
}

void read(QComboBox *combo, const QString &stored)
{
    combo->clear();
    combo->addItems(stored.split(QLatin1Char(';'), Qt::SkipEmptyParts));
}

} // namespace HistoryList
