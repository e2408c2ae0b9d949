#include "fullfileview.h"

#include "filelisting.h"
#include "filelistmodel.h"
#include "treewidget.h"

void FullFileView::setColumns(TreeWidget *tree) const
{
    tree->fileModel()->setFlat(false);
    setHeaderSizing(tree);
    tree->setTextElideMode(Qt::ElideRight);
}

void FullFileView::showObjects(FileListModel *model, const QString &path, bool withParent)
{
    m_listed = FileListing::listFolder(path, m_mask, withParent, m_hidden, &m_totals);
    model->appendRows(m_listed);
}
