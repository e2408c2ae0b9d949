#pragma once

#include "fileview.h"

/** Lists one folder: "..", then its folders, then its files, each by name. */
class FullFileView : public FileView
{
public:
    void setColumns(TreeWidget *tree) const override;
    void showObjects(TreeWidget *tree, const QString &path, FileInfoMap &map,
                     bool withParent = true) override;
    void countRow(const QTreeWidgetItem *item, const FileInfoMap &map, int *count,
                  qint64 *size) const override;
    void setItemFlags(QTreeWidgetItem *item) const override;
    int nameColumn() const override { return 0; }
    int extColumn() const override { return 1; }
    int sizeColumn() const override { return 2; }
    int dateColumn() const override { return 3; }
    int columnCount() const override { return 4; }
    void names(const QFileInfo &info, QString *name, QString *directory) const override;

    /** The rows of @p path in display order; touches no widget. */
    QVector<FileRow> listRows(const QString &path, bool withParent = true) const;
};
