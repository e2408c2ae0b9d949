#pragma once

#include <QItemDelegate>

class FileSystemView;

/**
 * In-place rename: F2 opens a line editor over the name of a row; accepting
 * it renames the object on disk (never over an existing one) and updates
 * the row without reloading the folder.
 */
class ItemEditDelegate : public QItemDelegate
{
    Q_OBJECT
public:
    ItemEditDelegate(FileSystemView *view, QObject *parent = nullptr);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model,
                      const QModelIndex &index) const override;

private:
    FileSystemView *m_view;
};
