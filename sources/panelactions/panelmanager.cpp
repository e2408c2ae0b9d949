#include "panelmanager.h"

#include "panel.h"
#include "ui_mainwindow.h"

#include <QMainWindow>

PanelManager::PanelManager(Ui::MainWindow *ui, QMainWindow *window)
    : QObject(window)
    , m_ui(ui)
    , m_window(window)
{
    m_left = new Panel(ui->leftPanelLayout, ui->leftSideWidget, ui->statusBar, ui->leftPathLabel,
                       true, this);
    m_right = new Panel(ui->rightPanelLayout, ui->rightSideWidget, ui->statusBar,
                        ui->rightPathLabel, false, this);
    m_current = m_left;
}

PanelManager::~PanelManager() = default;

Panel *PanelManager::currentPanel() const { return m_current; }
Panel *PanelManager::oppositePanel() const { return m_current == m_left ? m_right : m_left; }
void PanelManager::readSettings(QSettings &) {}
void PanelManager::writeSettings(QSettings &) const {}
void PanelManager::setEditActionsEnabled(bool) {}
void PanelManager::copySelection() {}
void PanelManager::copyCurrentFile() {}
void PanelManager::makeDir() {}
void PanelManager::removeSelection() {}
bool PanelManager::cancelCopy() { return false; }
Panel *PanelManager::panelWithModifiedDocument() const { return nullptr; }

void PanelManager::focusChanged(QWidget *, QWidget *now)
{
    if (!now)
        return;
    if (m_left->widget()->isAncestorOf(now) || m_left->widget() == now)
        m_current = m_left;
    else if (m_right->widget()->isAncestorOf(now) || m_right->widget() == now)
        m_current = m_right;
}

void PanelManager::startViewCommand() {}
void PanelManager::startEditCommand() {}
void PanelManager::closeEditProc() {}
