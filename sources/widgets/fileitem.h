#pragma once

#include <QTreeWidgetItem>

/**
 * One row of a file list. Besides its texts it keeps what sorting needs, so
 * that a click on a header sorts sizes and dates by value and keeps "..",
 * then the folders, on top in either direction.
 */
class FileItem : public QTreeWidgetItem
{
public:
    enum Group { ParentGroup = 0, FolderGroup = 1, FileGroup = 2 };

    explicit FileItem(const QStringList &texts);

    void setSortData(Group group, qint64 size, qint64 modified);
    Group group() const { return m_group; }
    qint64 size() const { return m_size; }

    bool operator<(const QTreeWidgetItem &other) const override;

private:
    Group m_group = FileGroup;
    qint64 m_size = 0;
    qint64 m_modified = 0;
};
