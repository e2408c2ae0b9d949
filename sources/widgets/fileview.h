#pragma once

#include <QDateTime>
#include <QFileInfo>
#include <QString>
#include <QStringList>
#include <QVector>

class FileInfoMap;
class QThread;
class QTreeWidgetItem;
class TreeWidget;

/** The texts and data of one row, built without touching any widget. */
struct FileRow
{
    QFileInfo info;
    QString key;
    QString directory;
    QString name;
    QString ext;
    QString size;
    QString date;
    qint64 bytes = 0;
    qint64 modified = 0;
    bool isFolder = false;
    bool isParent = false;
};

/**
 * Fills a TreeWidget with the rows of a folder. The full view lists one
 * folder; the flat view a folder and all its sub-folders. Rows are built as
 * plain FileRow values (safe on any thread) and turned into items on the
 * GUI thread.
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
    /** The mask as name filters: one per ";"-separated part, "*.*" meaning every name. */
    QStringList nameFilters() const;
    static QStringList nameFiltersOf(const QString &mask);

    virtual void setColumns(TreeWidget *tree) const = 0;
    /** Lists @p path into @p tree and @p map; @p withParent keeps the ".." row. */
    virtual void showObjects(TreeWidget *tree, const QString &path, FileInfoMap &map,
                             bool withParent = true) = 0;

    /** " N selected files (size)" for the selected rows. */
    QString selectionStatus(const TreeWidget *tree, const FileInfoMap &map) const;
    /** Counts the rows that stand for files and adds up their sizes. */
    void countRows(const TreeWidget *tree, const FileInfoMap &map, int *count,
                   qint64 *size) const;
    /** Adds one row to a running count and size total when it stands for a file. */
    virtual void countRow(const QTreeWidgetItem *item, const FileInfoMap &map, int *count,
                          qint64 *size) const = 0;

    virtual void setItemFlags(QTreeWidgetItem *item) const;
    /**
     * The first row whose name starts with @p name and whose extension is
     * exactly @p ext, or null.
     */
    QTreeWidgetItem *findRow(const TreeWidget *tree, const QString &name, const QString &ext) const;

    virtual int nameColumn() const = 0;
    virtual int extColumn() const = 0;
    virtual int sizeColumn() const = 0;
    virtual int dateColumn() const = 0;
    virtual int columnCount() const = 0;

    /** The worker thread of a listing, if the view has one. */
    virtual QThread *worker() { return nullptr; }
    /** Ends a running listing. */
    virtual void stop() {}
    /** Whether rows are still being produced or inserted. */
    virtual bool isBusy() const { return false; }

    /** The Name and the Directory texts of an entry. */
    virtual void names(const QFileInfo &info, QString *name, QString *directory) const = 0;
    virtual bool showFoldersAsRows() const { return true; }

    /** Builds one row's texts; touches no widget. */
    FileRow makeRow(const QFileInfo &info) const;
    /** Creates the items of @p rows and appends them to @p tree and @p map. */
    void addRows(TreeWidget *tree, FileInfoMap &map, const QVector<FileRow> &rows) const;

    /** "%L1" of the size: locale digit grouping. */
    static QString sizeText(qint64 size);
    /** "dd.MM.yyyy hh:mm", the time as "hh:mm ap" when @p usTime. */
    static QString dateText(const QDateTime &modified, bool usTime);
    /** Whether the system locale is the United States one (12-hour times). */
    static bool usesUsTime();

    static QString folderSizeText() { return QStringLiteral("<Dir>"); }
    static QString parentName() { return QStringLiteral(".."); }

protected:
    /** The size of a file row, as read when it was listed. */
    static qint64 rowBytes(const QTreeWidgetItem *item, const QFileInfo &info);

    QString m_mask;
    bool m_usTime;
};
