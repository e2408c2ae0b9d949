#include "itemeditdelegate.h"

#include "filelistmodel.h"
#include "filesystemview.h"
#include "logging.h"

#include <QDebug>
#include <QLineEdit>

ItemEditDelegate::ItemEditDelegate(FileSystemView *view, QObject *parent)
    : QItemDelegate(parent)
    , m_view(view)
{
}

QWidget *ItemEditDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &,
                                        const QModelIndex &index) const
{
    const FileListModel *model = m_view->model();
    if (!model || model->rowAt(index.row()).kind == FileRow::Parent)
        return nullptr;
    auto *editor = new QLineEdit(parent);
    editor->setFrame(false);
    return editor;
}

void ItemEditDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    auto *lineEdit = qobject_cast<QLineEdit *>(editor);
    if (!lineEdit)
        return;
    // The whole name as it is on disk ("foo." keeps its dot), shown as text.
    const FileRow &row = m_view->model()->rowAt(index.row());
    lineEdit->setText(FileListModel::displayName(row.fileName()));
    // Select the name without its extension, the part usually renamed.
    lineEdit->setSelection(0, row.name.size());
}

void ItemEditDelegate::setModelData(QWidget *editor, QAbstractItemModel *,
                                    const QModelIndex &index) const
{
    auto *lineEdit = qobject_cast<QLineEdit *>(editor);
    if (!lineEdit || !index.isValid())
        return;
    qCDebug(lcFiles) << "Previous fileName " << m_view->model()->rowAt(index.row()).fileName();
    qCDebug(lcFiles) << "New fileName " << lineEdit->text();
    // A refused rename leaves the row as it was; the user sees the old name.
    m_view->renameRow(index.row(), lineEdit->text());
}
