#include "itemeditdelegate.h"

#include "filesystemview.h"
#include "fileview.h"
#include "treewidget.h"

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
    if (index.sibling(index.row(), m_view->fileView()->nameColumn()).data().toString()
        == FileView::parentName())
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
    const FileView *view = m_view->fileView();
    const QString name = index.sibling(index.row(), view->nameColumn()).data().toString();
    const QString ext = index.sibling(index.row(), view->extColumn()).data().toString();
    lineEdit->setText(ext.isEmpty() ? name : name + QLatin1Char('.') + ext);
    // Select the name without its extension, the part usually renamed.
    lineEdit->setSelection(0, name.size());
}

void ItemEditDelegate::setModelData(QWidget *editor, QAbstractItemModel *,
                                    const QModelIndex &index) const
{
    auto *lineEdit = qobject_cast<QLineEdit *>(editor);
    TreeWidget *tree = m_view->treeWidget();
    if (!lineEdit || !tree)
        return;
    QTreeWidgetItem *item = tree->itemFromIndex(index);
    if (!item)
        return;
    const QFileInfo info = m_view->fileInfoMap().value(item);
    qDebug() << "Previous fileName " << info.fileName();
    qDebug() << "New fileName " << lineEdit->text();
    // A refused rename leaves the row as it was; the user sees the old name.
    m_view->renameItem(item, lineEdit->text());
}
