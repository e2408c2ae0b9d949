#include "fileinfomap.h"

#include <QTreeWidgetItem>

QString FileInfoMap::keyOf(const QFileInfo &info)
{
    return info.absoluteFilePath();
}

QString FileInfoMap::keyOf(const QTreeWidgetItem *item)
{
    return item ? item->data(0, KeyRole).toString() : QString();
}

QFileInfo FileInfoMap::value(const QString &key, bool *found) const
{
    const auto it = m_map.constFind(key);
    if (found)
        *found = it != m_map.cend();
    return it != m_map.cend() ? it.value() : QFileInfo();
}

QFileInfo FileInfoMap::value(const QTreeWidgetItem *item, bool *found) const
{
    return value(keyOf(item), found);
}
