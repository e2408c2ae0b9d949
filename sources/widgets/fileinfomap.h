#pragma once

#include <QFileInfo>
#include <QHash>
#include <QString>

class QTreeWidgetItem;

/**
 * From a row key to the row's QFileInfo. Every file list fills it; copy,
 * removal, the status line and row look-up read it. The key is the entry's
 * absolute path and is also kept in the row itself (column 0, role KeyRole).
 */
class FileInfoMap
{
public:
    static constexpr int KeyRole = 55;

    static QString keyOf(const QFileInfo &info);
    static QString keyOf(const QTreeWidgetItem *item);

    void insert(const QString &key, const QFileInfo &info) { m_map.insert(key, info); }
    void remove(const QString &key) { m_map.remove(key); }
    bool contains(const QString &key) const { return m_map.contains(key); }
    /** The info stored under @p key; @p found tells whether there was one. */
    QFileInfo value(const QString &key, bool *found = nullptr) const;
    /** The info of @p item's row; @p found tells whether the row is known. */
    QFileInfo value(const QTreeWidgetItem *item, bool *found = nullptr) const;
    int size() const { return m_map.size(); }
    void clear() { m_map.clear(); }
    void reserve(int size) { m_map.reserve(size); }

private:
    QHash<QString, QFileInfo> m_map;
};
