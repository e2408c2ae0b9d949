#pragma once

#include <QObject>
#include <QStringList>

class Panel;
class QMainWindow;
class QSettings;
class QWidget;
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
    PanelManager(Ui::MainWindow *ui, QMainWindow *window);
    ~PanelManager() override;

    Panel *leftPanel() const { return m_left; }
    Panel *rightPanel() const { return m_right; }
    /** The active panel (the left one until a panel has had the focus). */
    Panel *currentPanel() const;
    Panel *oppositePanel() const;

    /** Reads and writes the keys of the "Main Window" group the store is positioned in. */
    void readSettings(QSettings &settings);
    void writeSettings(QSettings &settings) const;

    /** File operations on the current panel's selection. */
    void copySelection();      // to the opposite panel's folder
    void copyCurrentFile();
    void makeDir();
    void removeSelection();
    /** Cancels a running copy; true when one was running. */
    bool cancelCopy();

    /** Whether the open editor of either panel holds unsaved changes it may not lose. */
    Panel *panelWithModifiedDocument() const;

    /** Enables the actions that act on an open editor (both panels editing). */
    void setEditActionsEnabled(bool enabled);

Q_SIGNALS:
    void turnWaitingMode(Qt::CursorShape cursor);

public Q_SLOTS:
    void focusChanged(QWidget *old, QWidget *now);
    void startViewCommand();
    void startEditCommand();
    void closeEditProc();

private:
    Ui::MainWindow *m_ui;
    QMainWindow *m_window;
    Panel *m_left = nullptr;
    Panel *m_right = nullptr;
    Panel *m_current = nullptr;
};
