#include "fullfileview.h"

#include "backgroundrelease.h"
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
    QVector<FileRow> old = std::move(m_listed);
    m_listed = FileListing::listFolder(path, m_mask, withParent, m_hidden, &m_totals);
    releaseInBackground(std::move(old));
    model->appendRows(m_listed);
}
