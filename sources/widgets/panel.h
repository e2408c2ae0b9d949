#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

#include "edit.h"

class FileComparator;
class FileSystemView;
class QBoxLayout;
class QKeyEvent;
class QLabel;
class QScrollBar;
class QStatusBar;
class QToolButton;
class QVBoxLayout;
class QWidget;
class Settings;

/**
 * One side of the main window: the folder browser, or the code editor while a
 * file is open in it, under a small title bar with maximize and close buttons.
 */
class Panel : public QObject
{
    Q_OBJECT
public:
    /** The panel puts its widgets into @p layout; @p pathLabel shows its folder. */
    Panel(QBoxLayout *layout, QWidget *parentWidget, QStatusBar *statusBar, QLabel *pathLabel,
          bool isLeft, QObject *parent = nullptr);
    ~Panel() override;

    FileSystemView *fileSystemView() const { return m_view; }
    /** The open editor, or null when the panel shows its browser. */
    Edit *editor() const { return m_edit; }
    bool isEditing() const { return m_edit != nullptr; }
    bool isLeft() const { return m_isLeft; }
    /** Whether the panel holds the keyboard focus (its browser or its editor). */
    bool isActive() const;
    QWidget *widget() const { return m_container; }

    QString currentPath() const;
    QStringList selectedPaths(bool withMask = false) const;
    /** The selected files (no folders, no ".."), absolute paths. */
    QStringList selectedFiles() const;

    /**
     * The panel's own keys: Escape, F3 view, F4 edit, F7 make folder, F8 or
     * Delete remove. Returns true when the key was consumed.
     */
    bool handleKey(QKeyEvent *event);

    /** Installs @p filter on the panel's key-receiving widgets (browser and editor). */
    void setKeyFilter(QObject *filter);
    /** Whether @p widget is this panel's own widget or one inside it. */
    bool owns(const QObject *object) const;

    /** Feeds the editor's lines 0..lineCount (one past the end) to @p comparator. */
    void addLinesTo(FileComparator &comparator, bool isLeft) const;

    /** The folder, mask and hidden-files choice kept for the panel's side. */
    void readSettings(const Settings &settings);
    void writeSettings(Settings &settings) const;

    QToolButton *maximizeButton() const { return m_maximizeButton; }
    /** The vertical scroll bar of the open editor, or null. */
    QScrollBar *editorScrollBar() const;

Q_SIGNALS:
    void changeAbsolutePath(const QString &path);
    void changeCurrentPath(const QString &path);
    void changeFolder(const QString &folderName);
    void changeOppositePanel(const QString &fullPath);
    void changeCursorBusy();
    void changeCursorArray();
    void showOppositePanel(bool isShow);
    void closeEditSignal();
    void startConversionSignal();
    void startEdit(const QString &fileName);
    /** F7 pressed in the panel: the main window shows the make-directory dialog. */
    void makeDirRequested();
    /** F8 or Delete pressed in the panel. */
    void removeRequested();

public Q_SLOTS:
    /** Closes the editor, asking about unsaved changes; false when the user refuses. */
    bool closeEdit();
    void hideUnselectedFiles();
    void showPath(const QString &folder);
    void showFolder(const QString &folder);
    void changePath(const QString &rootPath);
    void changeOutputDirEx(const QString &outputDir);
    void changeFolderEx(const QString &folderName);
    void editSelectedFile(bool isEdit = true);
    void openEditFile(const QString &absoluteFilePath, bool isEdit = true);
    void changeConversion(const QString &conversion);
    void showRootDir();
    void showPrevDir();
    void startConversionSlot();
    void increaseFont();
    void decreaseFont();
    bool isThreadStopped();
    void stopFlatViewThread();
    void maximizeSubPanel();
    void setOppositePanelVisible(bool isHide);
    void changeWaitIcon(bool ready);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void createTitleBar();
    void elidePath();

    /** Shows what the editor covered and reports the editor closed. */
    void showBrowserAgain();
    void storeFontSize() const;

    bool m_isLeft;
    QWidget *m_container = nullptr;
    QVBoxLayout *m_contentLayout = nullptr;
    QLabel *m_fileNameLabel = nullptr;
    QToolButton *m_maximizeButton = nullptr;
    QToolButton *m_closeButton = nullptr;
    FileSystemView *m_view = nullptr;
    QPointer<Edit> m_edit;
    QList<QPointer<QWidget>> m_hiddenForEdit; // shown again when the editor closes
    QLabel *m_pathLabel = nullptr;
    QString m_shownPath;
    QString m_conversion;
};
