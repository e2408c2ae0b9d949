#include "fullfileview.h"

#include "fileinfomap.h"
#include "treewidget.h"

#include <QDir>
#include <QHeaderView>

void FullFileView::setColumns(TreeWidget *tree) const
{
    tree->setColumnCount(4);
    tree->setHeaderLabels({QStringLiteral("Name"), QStringLiteral("Ext"), QStringLiteral("Size"),
                           QStringLiteral("Date")});
    QHeaderView *header = tree->header();
    header->setStretchLastSection(false);
    header->setSectionResizeMode(0, QHeaderView::Stretch);
    for (int column = 1; column < 4; ++column)
        header->setSectionResizeMode(column, QHeaderView::ResizeToContents);
    tree->setColumnRoles(nameColumn(), sizeColumn(), dateColumn());
}

QVector<FileRow> FullFileView::listRows(const QString &path, bool withParent) const
{
    // Folders are never filtered by the mask: QDir::AllDirs ignores name filters.
    const QFileInfoList entries = QDir(path).entryInfoList(
        nameFilters(), QDir::Files | QDir::AllDirs, QDir::Name | QDir::IgnoreCase);
    QVector<FileRow> rows;
    rows.reserve(entries.size());
    QFileInfoList folders;
    QFileInfoList files;
    bool hasParent = false;
    QFileInfo parent;
    for (const QFileInfo &info : entries) {
        const QString name = info.fileName();
        if (name == QLatin1String("."))
            continue;
        if (name == parentName()) {
            hasParent = true;
            parent = info;
        } else if (info.isDir()) {
            folders << info;
        } else {
            files << info;
        }
    }
    if (hasParent && withParent)
        rows << makeRow(parent);
    for (const QFileInfo &info : qAsConst(folders))
        rows << makeRow(info);
    for (const QFileInfo &info : qAsConst(files))
        rows << makeRow(info);
    return rows;
}

void FullFileView::showObjects(TreeWidget *tree, const QString &path, FileInfoMap &map,
                               bool withParent)
{
    const QVector<FileRow> rows = listRows(path, withParent);
    map.reserve(rows.size());
    addRows(tree, map, rows);
}

void FullFileView::countRow(const QTreeWidgetItem *item, const FileInfoMap &map, int *count,
                            qint64 *size) const
{
    if (item->text(sizeColumn()) == folderSizeText())
        return;
    bool found = false;
    const QFileInfo info = map.value(item, &found);
    if (found)
        *size += rowBytes(item, info);
    ++*count;
}

void FullFileView::setItemFlags(QTreeWidgetItem *item) const
{
    item->setFlags(item->flags() | Qt::ItemIsEditable);
}

void FullFileView::names(const QFileInfo &info, QString *name, QString *directory) const
{
    directory->clear();
    *name = info.isDir() ? info.fileName() : info.completeBaseName();
}
