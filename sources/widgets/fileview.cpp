#include "fileview.h"

#include "filelisting.h"
#include "filelistmodel.h"
#include "treewidget.h"

#include <QHeaderView>

FileView::FileView()
    : m_mask(QStringLiteral("*.*"))
{
}

FileView::~FileView() = default;

void FileView::setMask(const QString &mask)
{
    const QString trimmed = mask.trimmed();
    m_mask = trimmed.isEmpty() ? QStringLiteral("*.*") : trimmed;
}

bool FileView::isFiltered() const
{
    return m_mask != QLatin1String("*.*");
}

void FileView::countRows(const FileListModel &model, int *count, qint64 *size)
{
    *count = 0;
    *size = 0;
    for (int row = 0, n = model.count(); row < n; ++row) {
        const FileRow &file = model.rowAt(row);
        if (file.kind != FileRow::File)
            continue;
        ++*count;
        *size += file.bytes;
    }
}

void FileView::setHeaderSizing(TreeWidget *tree) const
{
    QHeaderView *header = tree->header();
    header->setStretchLastSection(false);
    header->setSectionResizeMode(0, QHeaderView::Stretch);
    for (int column = 1; column < columnCount(); ++column)
        header->setSectionResizeMode(column, QHeaderView::ResizeToContents);
}
