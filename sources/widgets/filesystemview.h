#pragma once

#include "drivepath.h"
#include "fileinfomap.h"

#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>

class CopyToBuffer;
class FileView;
class FlatFileView;
class FullFileView;
class QBoxLayout;
class QFileSystemWatcher;
class QStatusBar;
class QTimer;
class QTreeWidgetItem;
class QWidget;
class TreeWidget;

/**
 * The folder browser of one panel: the list, the shown folder with its
 * per-drive memory, the file mask, the watcher that keeps the list current,
 * the status line, and the removal of the selection.
 */
class FileSystemView : public QObject
{
    Q_OBJECT
public:
    enum FileMark { DifferentMark, AbsentMark };

    /** Asks whether to go ahead; gets the title and the text of the question. */
    using Confirmation = std::function<bool(const QString &title, const QString &text)>;

    explicit FileSystemView(QObject *parent = nullptr);
    ~FileSystemView() override;

    /** Creates the list in @p parent, adds it to @p layout and reports into @p statusBar. */
    void init(QBoxLayout *layout, QWidget *parent, QStatusBar *statusBar);

    QString currentPath() const { return m_path.path(); }
    TreeWidget *treeWidget() const { return m_tree; }
    FileView *fileView() const { return m_view; }
    const FileInfoMap &fileInfoMap() const { return m_map; }
    DrivePath &drivePath() { return m_path; }

    /**
     * Goes to @p path; a bare drive goes to the folder last shown on it. A
     * folder that cannot be opened leaves the view where it is, says why in
     * the status line, and gives false.
     */
    bool changePath(const QString &path);
    /** Goes to the root of the current drive. */
    void showRoot();

    // The selected rows as paths (no ".."); with withMask a folder ends in "/*.*".
    QStringList selectedPaths(bool withMask = false) const;
    /** The selected files only, absolute paths. */
    QStringList selectedFiles() const;

    void setMask(const QString &mask);
    QString mask() const;

    void setFlatList(bool on);
    bool isFlatList() const { return m_flat; }
    /** Whether a flat listing is still being filled. */
    bool isListing() const;

    /** Colours the rows named in @p fileNames: green for different, red for absent. */
    void markFiles(const QStringList &fileNames, FileMark mark);
    void hideUnmarkedFiles();

    /** Asks before removing and removes the selected objects. */
    void removeSelection();
    /** Replaces the removal question (tests answer it themselves). */
    void setRemoveConfirmation(Confirmation confirmation);
    /** Removes a file, a link or a folder with its contents; false if anything stayed. */
    static bool removePath(const QString &path);

    /** The status line as it stands. */
    QString statusText() const;

    /** The row of @p key, or null. */
    QTreeWidgetItem *itemForKey(const QString &key) const;
    /** Renames the object of @p item to @p newName in the current folder; never overwrites. */
    bool renameItem(QTreeWidgetItem *item, const QString &newName);

    /** The folders the watcher follows (the shown one). */
    QStringList watchedFolders() const;

Q_SIGNALS:
    void changeAbsolutePath(const QString &path);
    void changeCurrentPath(const QString &path);
    void changeFolder(const QString &folderName);
    void changeIcon(bool ready);
    void editFile();

public Q_SLOTS:
    void updateStatusInfo();
    /** Lists the current folder again, keeping the current and selected rows. */
    void updateFileView();
    void proceedDoubleClick(QTreeWidgetItem *item, int column);
    void showFolderEx(const QString &rootFolder, const QString &path = QString());
    void stopFlatListView();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /** The selected rows' entries, in list order, without "..". */
    QList<QFileInfo> selectedInfos() const;
    enum class Focus { Parent, Keep };
    void showFolder(Focus focus);
    void selectParentRow();
    void watch(const QString &folder);
    void invalidateTotals() { m_totalsValid = false; }
    void flatListingDone();
    bool canOpen(const QString &folder, QString *reason) const;
    void showMessage(const QString &text);

    DrivePath m_path;
    FileInfoMap m_map;
    std::unique_ptr<FullFileView> m_fullView;
    std::unique_ptr<FlatFileView> m_flatView;
    bool m_flat = false;
    FileView *m_view = nullptr;
    QFileSystemWatcher *m_watcher = nullptr;
    TreeWidget *m_tree = nullptr;
    QStatusBar *m_statusBar = nullptr;
    CopyToBuffer *m_copyToBuffer = nullptr;
    QTimer *m_refreshTimer = nullptr;
    Confirmation m_confirm;

    mutable bool m_totalsValid = false;
    mutable int m_rowCount = 0;
    mutable qint64 m_rowSize = 0;
    mutable int m_folderFiles = 0;
    mutable qint64 m_folderSize = 0;
    QString m_statusText;
};
