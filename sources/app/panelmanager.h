#pragma once

#include <QMetaObject>
#include <QObject>
#include <QPointer>
#include <QStringList>

#include <functional>

class CopyObjects;
class Conversion;
class Panel;
class QComboBox;
class QMainWindow;
class QWidget;
class Settings;
namespace Ui {
class MainWindow;
}

/**
 * Owns the left (source) and right (target) panels and the controls above
 * them; tracks which panel is active and links the two when asked to.
 */
class PanelManager : public QObject
{
    Q_OBJECT
public:
    /** @p conversion receives the direction, its options and the output folder. */
    PanelManager(Ui::MainWindow *ui, QMainWindow *window, Conversion *conversion);
    ~PanelManager() override;

    Panel *leftPanel() const { return m_left; }
    Panel *rightPanel() const { return m_right; }
    /** The active panel (the left one until a panel has had the focus). */
    Panel *currentPanel() const;
    Panel *oppositePanel() const;
    /** Makes @p panel the active one (as a focus change would). */
    void setCurrentPanel(Panel *panel);

    /** The platforms, the drives and the panels' own state. */
    void readSettings(const Settings &settings);
    void writeSettings(Settings &settings) const;

    /** File operations on the current panel's selection. */
    void copySelection();      // to the opposite panel's folder
    void copyCurrentFile();
    void makeDir();
    void removeSelection();
    /** Cancels a running copy; true when one was running. */
    bool cancelCopy();
    /** The copy in progress, or null. */
    CopyObjects *runningCopy() const { return m_copy; }

    /** Answers the dialogs of copy and make-directory (tests give their own). */
    using CopyPrompt = std::function<bool(QString &target)>;
    using NamePrompt = std::function<bool(QString &name)>;
    using Notify = std::function<void(const QString &message)>;
    void setCopyPrompt(CopyPrompt prompt) { m_copyPrompt = std::move(prompt); }
    void setNamePrompt(NamePrompt prompt) { m_namePrompt = std::move(prompt); }
    void setNotify(Notify notify) { m_notify = m_copyNotify = std::move(notify); }

    /** Turns the editors' own search (find, find next) on or off in both panels. */
    void setEditActionsEnabled(bool enabled);

Q_SIGNALS:
    void turnWaitingMode(Qt::CursorShape cursor);
    /** A copy started by copySelection() has ended and the lists are refreshed. */
    void copyFinished();
    /** A panel's flat listing started (true) or ended; it has no Cancel of its own. */
    void listingBusy(bool busy);

public Q_SLOTS:
    void focusChanged(QWidget *old, QWidget *now);
    void startViewCommand();
    void startEditCommand();
    void closeEditProc();

    void showLeftPanel(bool show);
    void showRightPanel(bool show);
    void showLeftDialogOption();
    void showRightDialogOption();
    void showBrowseFolderDialogLeft();
    void showBrowseFolderDialogRight();
    void showFlatListView();
    void changeCursorBusy();
    void changeCursorArray();
    void changeLeftPath(const QString &path);
    void changeRightPath(const QString &path);
    void changeLeftDrive(const QString &drive);
    void changeRightDrive(const QString &drive);
    void connectLeftRightEditScrollbar();
    void disconnectLeftRightEditScrollbar();
    void showFontPanel(const QString &fileName);
    void triggeredSyncViewMode();
    void triggeredSyncBrowserMode();
    void changeOppositePanel();
    void setSourceConversion(const QString &name);
    void setTargetConversion(const QString &name);
    void ChangeConversion(const QString &name);
    void SetSourceConversionOption(const QString &database, const QString &api);
    void SetTargetConversionOption(const QString &database, const QString &api);

private:
    void wirePanel(Panel *panel, QComboBox *driveCombo);
    void browseFolder(Panel *panel);
    void changeDrive(Panel *panel, const QString &drive);
    void syncDriveCombo(Panel *panel, QComboBox *combo);
    void activePanelChanged();
    void updateViewButton();
    Conversion *conversion() const { return m_conversion; }

    Conversion *m_conversion;
    Ui::MainWindow *m_ui;
    QMainWindow *m_window;
    Panel *m_left = nullptr;
    Panel *m_right = nullptr;
    Panel *m_current = nullptr;
    QStringList m_directionList;
    QMetaObject::Connection m_syncBrowse;
    QList<QMetaObject::Connection> m_syncView;
    QList<QMetaObject::Connection> m_scrollLinks;
    bool m_syncing = false;
    CopyObjects *m_copy = nullptr;
    CopyPrompt m_copyPrompt;
    NamePrompt m_namePrompt;
    Notify m_notify;
    Notify m_copyNotify;   // empty: the copy reports in a box of its own
};
