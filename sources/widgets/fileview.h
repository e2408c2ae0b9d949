#pragma once

#include "filelisting.h"

#include <QString>
#include <QStringList>
#include <QVector>

class FileListModel;
class TreeWidget;

/**
 * Fills a FileListModel with the rows of a folder. The full view lists one
 * folder; the flat view a folder and all its sub-folders. Both share the file
 * mask, the choice to show hidden entries, and the counting of rows.
 */
class FileView
{
public:
    FileView();
    virtual ~FileView();
    FileView(const FileView &) = delete;
    FileView &operator=(const FileView &) = delete;

    QString mask() const { return m_mask; }
    void setMask(const QString &mask);
    /** Whether the mask narrows the listing (anything but "*.*"). */
    bool isFiltered() const;
    bool showsHidden() const { return m_hidden; }
    void setShowHidden(bool hidden) { m_hidden = hidden; }

    /** Sets the list's columns and their sizing for this view. */
    virtual void setColumns(TreeWidget *tree) const = 0;
    /** Lists @p path into the (empty) @p model; @p withParent keeps the ".." row. */
    virtual void showObjects(FileListModel *model, const QString &path,
                             bool withParent = true) = 0;

    /** Every row of the last complete listing, against which a refresh compares. */
    const QVector<FileRow> &listed() const { return m_listed; }
    /** The files of the listed folder, the mask aside, as of the last complete listing. */
    const FileListing::FolderTotals &folderTotals() const { return m_totals; }
    void setListed(const QVector<FileRow> &rows, const FileListing::FolderTotals &totals)
    {
        m_listed = rows;
        m_totals = totals;
    }

    /** Counts the rows that stand for files and adds up their sizes. */
    static void countRows(const FileListModel &model, int *count, qint64 *size);

    virtual int nameColumn() const = 0;
    int extColumn() const { return nameColumn() + 1; }
    int sizeColumn() const { return nameColumn() + 2; }
    int dateColumn() const { return nameColumn() + 3; }
    int columnCount() const { return nameColumn() + 4; }

    /** Ends a running listing. */
    virtual void stop() {}
    /** Whether rows are still being produced or inserted. */
    virtual bool isBusy() const { return false; }

    static QString parentName() { return QStringLiteral(".."); }

protected:
    /** Column headers and sizing shared by both views. */
    void setHeaderSizing(TreeWidget *tree) const;

    QString m_mask;
    bool m_hidden = false;
    QVector<FileRow> m_listed;
    FileListing::FolderTotals m_totals;
};
