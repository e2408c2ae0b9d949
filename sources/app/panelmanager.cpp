#include "panelmanager.h"

#include "conversion.h"
#include "conversionoptionsdialog.h"
#include "copyobjects.h"
#include "drivepath.h"
#include "filesystemview.h"
#include "makedirdialog.h"
#include "panel.h"
#include "recentfolderstorage.h"
#include "settings.h"
#include "ui_mainwindow.h"

#include <QDebug>
#include <QDir>
#include <QFileDialog>
#include <QMainWindow>
#include <QMessageBox>
#include <QScrollBar>

PanelManager::PanelManager(Ui::MainWindow *ui, QMainWindow *window, Conversion *conversion)
    : QObject(window)
    , m_conversion(conversion)
    , m_ui(ui)
    , m_window(window)
{
    m_left = new Panel(ui->leftPanelLayout, ui->leftSideWidget, ui->statusBar, ui->leftPathLabel,
                       true, this);
    m_right = new Panel(ui->rightPanelLayout, ui->rightSideWidget, ui->statusBar,
                        ui->rightPathLabel, false, this);
    m_current = m_left;
    m_right->fileSystemView()->setStatusActive(false);

    m_notify = [](const QString &message) {
        QMessageBox::information(nullptr, QStringLiteral("Morvane Navarch"), message);
    };
    m_namePrompt = [](QString &name) {
        MakeDirDialog dialog;
        if (dialog.exec() != QDialog::Accepted)
            return false;
        name = dialog.name();
        return true;
    };

    const QStringList drives = m_left->fileSystemView()->drivePath().drives();
    for (QComboBox *combo : {ui->leftDriveCombo, ui->rightDriveCombo}) {
        combo->clear();
        // Long mount points must not squeeze the path beside the combo box.
        combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        combo->setMinimumContentsLength(8);
        for (const QString &drive : drives)
            combo->addItem(QDir::toNativeSeparators(drive));
    }
    wirePanel(m_left, ui->leftDriveCombo);
    wirePanel(m_right, ui->rightDriveCombo);
    connect(ui->leftDriveCombo, &QComboBox::currentTextChanged, this,
            &PanelManager::changeLeftDrive);
    connect(ui->rightDriveCombo, &QComboBox::currentTextChanged, this,
            &PanelManager::changeRightDrive);
    connect(m_left, &Panel::showOppositePanel, this, &PanelManager::showRightPanel);
    connect(m_right, &Panel::showOppositePanel, this, &PanelManager::showLeftPanel);

    connect(ui->LeftRootPushButton, &QPushButton::clicked, m_left, &Panel::showRootDir);
    connect(ui->RightRootPushButton, &QPushButton::clicked, m_right, &Panel::showRootDir);
    connect(ui->prevFolderLeftPushButton, &QPushButton::clicked, m_left, &Panel::showPrevDir);
    connect(ui->prevFolderRightPushButton, &QPushButton::clicked, m_right, &Panel::showPrevDir);
    connect(ui->leftBrowseButton, &QPushButton::clicked, this,
            &PanelManager::showBrowseFolderDialogLeft);
    connect(ui->rightBrowseButton, &QPushButton::clicked, this,
            &PanelManager::showBrowseFolderDialogRight);
    connect(ui->openOppositeLeftButton, &QPushButton::clicked, this,
            [this] { m_right->changePath(m_left->currentPath()); });
    connect(ui->openOppositeRightButton, &QPushButton::clicked, this,
            [this] { m_left->changePath(m_right->currentPath()); });
    connect(ui->toolButtonOptionLeft, &QToolButton::clicked, this,
            &PanelManager::showLeftDialogOption);
    connect(ui->toolButtonOptionRight, &QToolButton::clicked, this,
            &PanelManager::showRightDialogOption);
    connect(ui->actionFlat_List_View, &QAction::triggered, this, &PanelManager::showFlatListView);
    connect(ui->syncBrowserAction, &QAction::triggered, this,
            &PanelManager::triggeredSyncBrowserMode);
    connect(ui->syncViewAction, &QAction::triggered, this, &PanelManager::triggeredSyncViewMode);

    if (Conversion *engine = m_conversion)
        m_directionList = engine->directionList();
    for (QComboBox *combo : {ui->sourceCombo, ui->targetCombo}) {
        combo->clear();
        combo->addItems(m_directionList);
        combo->setCurrentIndex(-1);
    }
    connect(ui->sourceCombo, &QComboBox::currentTextChanged, this,
            &PanelManager::setSourceConversion);
    connect(ui->targetCombo, &QComboBox::currentTextChanged, this,
            &PanelManager::setTargetConversion);
}

PanelManager::~PanelManager()
{
    cancelCopy();
}

void PanelManager::wirePanel(Panel *panel, QComboBox *driveCombo)
{
    connect(panel, &Panel::changeCursorBusy, this, &PanelManager::changeCursorBusy);
    connect(panel, &Panel::changeCursorArray, this, &PanelManager::changeCursorArray);
    connect(panel, &Panel::closeEditSignal, this, &PanelManager::closeEditProc);
    connect(panel, &Panel::changeCurrentPath, this,
            [this, panel, driveCombo] { syncDriveCombo(panel, driveCombo); });
    connect(panel, &Panel::changeCurrentPath, this,
            panel == m_left ? &PanelManager::changeLeftPath : &PanelManager::changeRightPath);
}

Panel *PanelManager::currentPanel() const { return m_current; }
Panel *PanelManager::oppositePanel() const { return m_current == m_left ? m_right : m_left; }

void PanelManager::setCurrentPanel(Panel *panel)
{
    if (!panel || panel == m_current)
        return;
    m_current = panel;
    activePanelChanged();
}

void PanelManager::focusChanged(QWidget *, QWidget *now)
{
    if (!now)
        return;
    if (m_left->owns(now))
        setCurrentPanel(m_left);
    else if (m_right->owns(now))
        setCurrentPanel(m_right);
}

void PanelManager::activePanelChanged()
{
    triggeredSyncBrowserMode();
    updateViewButton();
    m_ui->actionFlat_List_View->setChecked(m_current->fileSystemView()->isFlatList());
    // The status line belongs to the active panel alone.
    oppositePanel()->fileSystemView()->setStatusActive(false);
    m_current->fileSystemView()->setStatusActive(true);
    m_current->fileSystemView()->updateStatusInfo();
}

void PanelManager::updateViewButton()
{
    const bool bothEditing = m_left->isEditing() && m_right->isEditing();
    m_ui->pushButtonView->setText(bothEditing ? QStringLiteral("F3 - Find")
                                              : QStringLiteral("F3 - View"));
}

void PanelManager::readSettings(const Settings &settings)
{
    // A stored name missing from the list leaves the combo box without a
    // current entry, on purpose.
    m_ui->sourceCombo->setCurrentIndex(
        m_directionList.indexOf(settings.platform(Settings::Source)));
    m_ui->targetCombo->setCurrentIndex(
        m_directionList.indexOf(settings.platform(Settings::Target)));

    const struct {
        QComboBox *combo;
        Settings::Side side;
    } disks[] = {{m_ui->leftDriveCombo, Settings::Source},
                 {m_ui->rightDriveCombo, Settings::Target}};
    for (const auto &disk : disks) {
        const int index = disk.combo->findText(settings.disk(disk.side));
        if (index >= 0) {
            // The panel's own folder follows; the drive alone must not move it.
            const QSignalBlocker blocker(disk.combo);
            disk.combo->setCurrentIndex(index);
        }
    }
    m_left->readSettings(settings);
    m_right->readSettings(settings);
}

void PanelManager::writeSettings(Settings &settings) const
{
    settings.setPlatform(Settings::Source, m_ui->sourceCombo->currentText());
    settings.setPlatform(Settings::Target, m_ui->targetCombo->currentText());
    settings.setDisk(Settings::Source, m_ui->leftDriveCombo->currentText());
    settings.setDisk(Settings::Target, m_ui->rightDriveCombo->currentText());
    m_left->writeSettings(settings);
    m_right->writeSettings(settings);
}

void PanelManager::setEditActionsEnabled(bool enabled)
{
    for (Panel *panel : {m_left, m_right}) {
        if (Edit *edit = panel->editor())
            edit->setSearchMode(enabled);
    }
}

void PanelManager::copySelection()
{
    if (m_copy) {
        m_notify(tr("A copy is already running; wait for it to finish or cancel it."));
        return;
    }
    const QStringList sources = m_current->selectedPaths();
    if (sources.isEmpty())
        return;
    m_copy = new CopyObjects(sources, oppositePanel()->currentPath(), m_window, this);
    if (m_copyPrompt)
        m_copy->setPrompt(m_copyPrompt);
    if (m_copyNotify)
        m_copy->setNotify(m_copyNotify);
    connect(m_copy, &CopyObjects::turnWaitingMode, this, &PanelManager::turnWaitingMode);
    connect(m_copy, &CopyObjects::finished, this, [this] {
        m_copy->deleteLater();
        m_copy = nullptr;
        // The watcher refreshes a shown target folder too, but not at once.
        for (Panel *panel : {m_left, m_right})
            panel->fileSystemView()->updateFileView();
        Q_EMIT copyFinished();
    });
    if (!m_copy->execute()) {
        delete m_copy;
        m_copy = nullptr;
    }
}

void PanelManager::copyCurrentFile()
{
    copySelection();
}

bool PanelManager::cancelCopy()
{
    if (!m_copy)
        return false;
    m_copy->cancel();
    return true;
}

void PanelManager::makeDir()
{
    QString name;
    if (!m_namePrompt || !m_namePrompt(name))
        return;
    const QString folder = m_current->currentPath();
    const QString clean = QDir::cleanPath(QDir::fromNativeSeparators(name));
    // The new folder goes into the shown one, nowhere else.
    const bool inside = !name.isEmpty() && QDir::isRelativePath(clean)
        && clean != QLatin1String("..") && !clean.startsWith(QLatin1String("../"));
    if (!inside || folder.isEmpty() || !QDir(folder).mkdir(name)) {
        m_notify(QStringLiteral("Error creation dir"));
        return;
    }
    FileSystemView *view = m_current->fileSystemView();
    view->updateFileView();
    // The cursor goes to the new folder (the first part of a nested one).
    view->setCurrentFilePath(QDir(folder).filePath(clean.section(QLatin1Char('/'), 0, 0)));
}

void PanelManager::removeSelection()
{
    m_current->fileSystemView()->removeSelection();
}

void PanelManager::startViewCommand()
{
    m_current->editSelectedFile(false);
    updateViewButton();
}

void PanelManager::startEditCommand()
{
    m_current->editSelectedFile(true);
}

void PanelManager::closeEditProc()
{
    updateViewButton();
}

void PanelManager::showLeftPanel(bool show)
{
    m_ui->leftSideWidget->setVisible(show);
}

void PanelManager::showRightPanel(bool show)
{
    m_ui->rightSideWidget->setVisible(show);
}

void PanelManager::showLeftDialogOption()
{
    ConversionOptionsDialog dialog(QStringLiteral("Source details"), m_conversion->nameMap(),
                                   Settings::Source, m_window);
    connect(&dialog, &ConversionOptionsDialog::ChangeOption, this,
            &PanelManager::SetSourceConversionOption);
    dialog.exec();
}

void PanelManager::showRightDialogOption()
{
    ConversionOptionsDialog dialog(QStringLiteral("Target details"), m_conversion->nameMap(),
                                   Settings::Target, m_window);
    connect(&dialog, &ConversionOptionsDialog::ChangeOption, this,
            &PanelManager::SetTargetConversionOption);
    dialog.exec();
}

void PanelManager::browseFolder(Panel *panel)
{
    const QString folder = QFileDialog::getExistingDirectory(
        m_window, QStringLiteral("Open Directory"), panel->currentPath(),
        QFileDialog::ShowDirsOnly | QFileDialog::DontResolveSymlinks);
    if (!folder.isEmpty())
        panel->changePath(folder);
}

void PanelManager::showBrowseFolderDialogLeft()
{
    browseFolder(m_left);
}

void PanelManager::showBrowseFolderDialogRight()
{
    browseFolder(m_right);
}

void PanelManager::showFlatListView()
{
    FileSystemView *view = m_current->fileSystemView();
    view->setFlatList(!view->isFlatList());
    m_ui->actionFlat_List_View->setChecked(view->isFlatList());
}

void PanelManager::changeCursorBusy()
{
    Q_EMIT listingBusy(true);
}

void PanelManager::changeCursorArray()
{
    Q_EMIT listingBusy(false);
}

void PanelManager::changeLeftPath(const QString &)
{
}

void PanelManager::changeRightPath(const QString &path)
{
    // The right panel is where converted scripts go.
    if (Conversion *engine = conversion())
        engine->setOutputDir(path);
}

void PanelManager::changeDrive(Panel *panel, const QString &drive)
{
    if (drive.isEmpty())
        return;
    panel->changePath(drive);
}

void PanelManager::changeLeftDrive(const QString &drive)
{
    changeDrive(m_left, drive);
}

void PanelManager::changeRightDrive(const QString &drive)
{
    changeDrive(m_right, drive);
}

void PanelManager::syncDriveCombo(Panel *panel, QComboBox *combo)
{
    const QString drive = panel->fileSystemView()->drivePath().driveOf(panel->currentPath());
    const int index = combo->findText(QDir::toNativeSeparators(drive));
    if (index >= 0 && index != combo->currentIndex()) {
        const QSignalBlocker blocker(combo);
        combo->setCurrentIndex(index);
    }
}

void PanelManager::connectLeftRightEditScrollbar()
{
    disconnectLeftRightEditScrollbar();
    QScrollBar *left = m_left->editorScrollBar();
    QScrollBar *right = m_right->editorScrollBar();
    if (!left || !right)
        return;
    m_scrollLinks << connect(left, &QScrollBar::valueChanged, right, &QScrollBar::setValue);
    m_scrollLinks << connect(right, &QScrollBar::valueChanged, left, &QScrollBar::setValue);
}

void PanelManager::disconnectLeftRightEditScrollbar()
{
    for (const QMetaObject::Connection &link : qAsConst(m_scrollLinks))
        disconnect(link);
    m_scrollLinks.clear();
}

void PanelManager::showFontPanel(const QString &)
{
}

void PanelManager::triggeredSyncViewMode()
{
    for (const QMetaObject::Connection &link : qAsConst(m_syncView))
        disconnect(link);
    m_syncView.clear();
    if (!m_ui->syncViewAction->isChecked())
        return;
    for (Panel *panel : {m_left, m_right}) {
        Panel *other = panel == m_left ? m_right : m_left;
        // The other side opens the file of the same name in its own folder,
        // so that a script and its conversion are viewed together.
        m_syncView << connect(panel, &Panel::startEdit, this, [this, other](const QString &file) {
            if (m_syncing)
                return;
            const QString counterpart
                = QDir(other->currentPath()).filePath(QFileInfo(file).fileName());
            // A side that already shows that file keeps it (and its unsaved changes).
            const bool shown = other->editor() && other->editor()->filePath() == counterpart;
            if (!shown && QFileInfo(counterpart).isFile()) {
                m_syncing = true;
                other->openEditFile(counterpart);
                m_syncing = false;
            }
            // A file already open on the other side scrolls with the new one too.
            connectLeftRightEditScrollbar();
        });
        m_syncView << connect(panel, &Panel::closeEditSignal, this, [this, other] {
            if (m_syncing)
                return;
            m_syncing = true;
            other->closeEdit();
            m_syncing = false;
            disconnectLeftRightEditScrollbar();
        });
    }
}

void PanelManager::triggeredSyncBrowserMode()
{
    if (m_syncBrowse)
        disconnect(m_syncBrowse);
    m_syncBrowse = {};
    if (m_ui->syncBrowserAction->isChecked())
        m_syncBrowse = connect(m_current, &Panel::changeFolder, oppositePanel(), &Panel::showFolder);
}

void PanelManager::changeOppositePanel()
{
    oppositePanel()->changePath(m_current->currentPath());
}

void PanelManager::setSourceConversion(const QString &name)
{
    if (Conversion *engine = conversion())
        engine->setSourceConversion(name);
    m_left->changeConversion(name);
}

void PanelManager::setTargetConversion(const QString &name)
{
    if (Conversion *engine = conversion())
        engine->setTargetConversion(name);
    m_right->changeConversion(name);
}

void PanelManager::ChangeConversion(const QString &name)
{
    m_current->changeConversion(name);
}

void PanelManager::SetSourceConversionOption(const QString &database, const QString &api)
{
    if (Conversion *engine = conversion())
        engine->setSourceConversionOption(database, api);
}

void PanelManager::SetTargetConversionOption(const QString &database, const QString &api)
{
    if (Conversion *engine = conversion())
        engine->setTargetConversionOption(database, api);
}
