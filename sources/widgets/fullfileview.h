#pragma once

#include "fileview.h"

/** Lists one folder: "..", then its folders, then its files, each by name. */
class FullFileView : public FileView
{
public:
    void setColumns(TreeWidget *tree) const override;
    void showObjects(FileListModel *model, const QString &path, bool withParent = true) override;
    int nameColumn() const override { return 0; }
};
