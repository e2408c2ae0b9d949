#pragma once

#include "drivepath.h"
#include "filelisting.h"
#include "listingworker.h"

#include <QModelIndex>
#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>

class FileListModel;
class FileRemover;
class FileView;
class FlatFileView;
class FullFileView;
class QBoxLayout;
class QFileSystemWatcher;
class QProgressDialog;
class QStatusBar;
class QThread;
class QTimer;
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
    enum class FileMark { Different, Absent };

    /** Asks whether to go ahead; gets the title and the text of the question. */
    using Confirmation = std::function<bool(const QString &title, const QString &text)>;
    /** Asks for a file pattern (keypad +, -); gets the title, fills in the pattern. */
    using PatternPrompt = std::function<bool(const QString &title, QString &pattern)>;

    explicit FileSystemView(QObject *parent = nullptr);
    ~FileSystemView() override;

    /** Creates the list in @p parent, adds it to @p layout and reports into @p statusBar. */
    void init(QBoxLayout *layout, QWidget *parent, QStatusBar *statusBar);

    QString currentPath() const { return m_path.path(); }
    TreeWidget *treeWidget() const { return m_tree; }
    FileListModel *model() const;
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
    /** The path of the row under the cursor ("" for none and for ".."). */
    QString currentFilePath() const;
    /** Puts the cursor on the row of @p path, when it is listed. */
    bool setCurrentFilePath(const QString &path);

    void setMask(const QString &mask);
    QString mask() const;
    /** Lists hidden entries too (Ctrl+H switches). */
    void setShowHidden(bool show);
    bool showsHidden() const;

    void setFlatList(bool on);
    bool isFlatList() const { return m_flat; }
    /** Whether a flat listing is still being filled. */
    bool isListing() const;

    /**
     * Marks the rows of @p fileNames (paths below the shown folder; a plain
     * file name in the full list): bold green for different, bold red for
     * absent. Rows of a flat list that are still to come get their marks when
     * they arrive. The marks last until another folder is shown.
     */
    void markFiles(const QStringList &fileNames, FileMark mark);
    /** Hides the file rows without a mark until the next refresh. */
    void hideUnmarkedFiles();

    /**
     * Asks before removing and removes the selected objects on a worker
     * thread, with a progress window that can cancel; removeFinished() follows.
     */
    void removeSelection();
    bool isRemoving() const { return m_removeThread != nullptr; }
    /** Replaces the removal question (tests answer it themselves). */
    void setRemoveConfirmation(Confirmation confirmation);
    void setPatternPrompt(PatternPrompt prompt) { m_patternPrompt = std::move(prompt); }

    /** The status line as it stands. */
    QString statusText() const;
    /** Only the active panel writes into the status bar. */
    void setStatusActive(bool active);

    /** The row of @p key (a path), or -1. */
    int rowOfKey(const QString &key) const;
    /**
     * Renames the object of @p row to @p newName in its folder; never
     * overwrites, and does nothing when the name is the one shown.
     */
    bool renameRow(int row, const QString &newName);

    /** The folders the watcher follows (the shown one). */
    QStringList watchedFolders() const;

    /** Selects (or unselects) the files that match @p pattern (";"-separated masks). */
    void selectByPattern(const QString &pattern, bool select);
    /** Turns the selection of every file row around. */
    void invertSelection();

Q_SIGNALS:
    void changeAbsolutePath(const QString &path);
    void changeCurrentPath(const QString &path);
    void changeFolder(const QString &folderName);
    void changeIcon(bool ready);
    void editFile();
    void removeFinished();

public Q_SLOTS:
    void updateStatusInfo();
    /**
     * Brings the list up to date with the folder, keeping the current and
     * selected rows; marks and hidden rows are dropped.
     */
    void updateFileView();
    void proceedDoubleClick(const QModelIndex &index);
    void showFolderEx(const QString &rootFolder, const QString &path = QString());
    void stopFlatListView();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    enum class Focus { Parent, Keep };
    /** Lists the shown folder anew; the cursor goes to @p cursorPath if given. */
    void showFolder(Focus focus, const QString &cursorPath = QString());
    void placeCursor(const QString &path);
    void selectParentRow();
    void watch(const QString &folder);
    void invalidateTotals() { m_totalsValid = false; }
    void flatListingDone();
    bool canOpen(const QString &folder, QString *reason) const;
    void showMessage(const QString &text);
    void folderChanged();
    void refreshInBackground();
    void applyRefresh(const FileListing::Changes &changes, const QVector<FileRow> &listing,
                      const FileListing::FolderTotals &totals);
    void showHiddenRows();
    QVector<int> selectedFileRows() const;
    bool promptPattern(bool select);
    void finishRemoval(const QString &neighbour);

    DrivePath m_path;
    std::unique_ptr<FullFileView> m_fullView;
    FlatFileView *m_flatView = nullptr;
    bool m_flat = false;
    FileView *m_view = nullptr;
    QFileSystemWatcher *m_watcher = nullptr;
    TreeWidget *m_tree = nullptr;
    QStatusBar *m_statusBar = nullptr;
    bool m_statusActive = true;
    QTimer *m_refreshTimer = nullptr;
    QTimer *m_pollTimer = nullptr;
    ListingWorker::Control m_refresh;
    bool m_refreshAgain = false;
    bool m_rowsHidden = false;
    QString m_cursorAfterListing;
    Confirmation m_confirm;
    QThread *m_removeThread = nullptr;
    FileRemover *m_remover = nullptr;
    QPointer<QProgressDialog> m_removeProgress;
    PatternPrompt m_patternPrompt;

    mutable bool m_totalsValid = false;
    mutable int m_rowCount = 0;
    mutable qint64 m_rowSize = 0;
    mutable FileListing::FolderTotals m_folderTotals;
    QString m_statusText;
};
