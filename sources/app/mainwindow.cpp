#include "mainwindow.h"

#include "commandline.h"
#include "connectionoptionsdialog.h"
#include "conversion.h"
#include "conversioncontroller.h"
#include "conversionlogview.h"
#include "conversionoptionsdialog.h"
#include "edit.h"
#include "encodingoptionsdialog.h"
#include "filediff.h"
#include "filelistdiff.h"
#include "filesystemview.h"
#include "filterdialog.h"
#include "findscript.h"
#include "fontactions.h"
#include "migrationoptionsdialog.h"
#include "panel.h"
#include "panelmanager.h"
#include "recentfolderstorage.h"
#include "settings.h"
#include "startupoptions.h"
#include "treewidget.h"
#include "ui_mainwindow.h"
#include "workingfolder.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QTextCursor>

namespace {

const char *const RunToolTip = "F5 - Run (only for left panel)";

// The smallest window that still shows both panels and the command bar.
constexpr QSize SmallestWindow(480, 320);

// A stored size or position from another screen layout, or edited by hand,
// must neither put the window out of sight nor ask for a window buffer larger
// than any screen.
QRect onScreens(const QSize &size, const QPoint &pos)
{
    const QScreen *screen = QGuiApplication::screenAt(pos);
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    const QRect area = screen ? screen->availableGeometry() : QRect(0, 0, 1024, 768);
    const QSize fitted = size.expandedTo(SmallestWindow).boundedTo(area.size());
    const QPoint placed(qBound(area.left(), pos.x(), area.right() + 1 - fitted.width()),
                        qBound(area.top(), pos.y(), area.bottom() + 1 - fitted.height()));
    return QRect(placed, fitted);
}

} // namespace

MainWindow::MainWindow(QWidget *parent, QApplication *application, const QString &)
    : QMainWindow(parent)
    , m_ui(std::make_unique<Ui::MainWindow>())
{
    m_ui->setupUi(this);
    setWindowTitle(QStringLiteral("Morvane Navarch"));
    setWindowIcon(QIcon(QStringLiteral(":/images/Morvane.png")));
    m_ui->labelProcessState->setText(QStringLiteral("Not Running"));
    m_ui->tabWidget->setVisible(false);

    m_controller = new ConversionController(this);
    m_commandLine = new CommandLine(this);
    m_panelManager = new PanelManager(m_ui.get(), this, m_controller->conversion());
    createActions();

    connect(this, &MainWindow::showFindLogRequested, this, &MainWindow::showFindLog);
    connect(m_panelManager, &PanelManager::turnWaitingMode, this,
            [this](Qt::CursorShape cursor) { setWorkBusy(Work::Copy, cursor != Qt::ArrowCursor); });
    connect(m_panelManager, &PanelManager::listingBusy, this,
            [this](bool busy) { setWorkBusy(Work::Listing, busy); });
    if (application)
        connect(application, &QApplication::focusChanged, this, &MainWindow::focusChanged);
    connect(m_ui->setFilterAction, &QAction::triggered, this, &MainWindow::ShowFilterDialog);
    connect(m_ui->aboutAction, &QAction::triggered, this, &MainWindow::showAbout);
    connect(m_ui->connectionOptionsAction, &QAction::triggered, this,
            &MainWindow::showConnectionOptions);

    connect(m_ui->logViewButton, &QPushButton::clicked, this, &MainWindow::viewLog);
    connect(m_ui->makeDirButton, &QPushButton::clicked, this, &MainWindow::makeDir);
    connect(m_ui->removeButton, &QPushButton::clicked, this, &MainWindow::deleteObject);
    connect(m_ui->copyFilesButton, &QPushButton::clicked, this, &MainWindow::copyFiles);
    connect(m_ui->conversionButton, &QPushButton::clicked, this, &MainWindow::startConversionEx);
    connect(m_ui->pushButtonView, &QPushButton::clicked, m_panelManager,
            &PanelManager::startViewCommand);
    connect(m_ui->pushButtonEdit, &QPushButton::clicked, m_panelManager,
            &PanelManager::startEditCommand);

    auto &recent = RecentFolderStorage::instance();
    connect(&recent, &RecentFolderStorage::changeRootFolder, this, &MainWindow::changeRoot);
    connect(m_ui->menuNew, &QMenu::hovered, this, &MainWindow::initSubMenu);

    for (Panel *panel : {m_panelManager->leftPanel(), m_panelManager->rightPanel()}) {
        panel->setKeyFilter(this);
        connect(panel, &Panel::makeDirRequested, this, &MainWindow::makeDir);
        connect(panel, &Panel::removeRequested, this, &MainWindow::deleteObject);
        // F3 in an editor turned Find off; it comes back once no file is open.
        connect(panel, &Panel::closeEditSignal, this, [this] {
            if (!m_panelManager->leftPanel()->isEditing()
                && !m_panelManager->rightPanel()->isEditing())
                m_findAction->setEnabled(true);
        });
    }

    setupConversion();
    setupEditorAndComparison();
    setupSearch();
    setupCommandLine();
    readSettings();
    // Keys go to the active panel's list from the start, not to the first
    // field of the window (typing there would change the conversion direction).
    m_panelManager->currentPanel()->fileSystemView()->treeWidget()->setFocus();

    // Written before the window is gone too: at the end of the event loop and
    // when the session ends, since a logout may not wait for the destructor.
    connect(qApp, &QCoreApplication::aboutToQuit, this, &MainWindow::writeSettings);
    if (qobject_cast<QGuiApplication *>(QCoreApplication::instance())) {
        connect(qApp, &QGuiApplication::commitDataRequest, this, &MainWindow::writeSettings);
        connect(qApp, &QGuiApplication::saveStateRequest, this, &MainWindow::writeSettings);
    }
}

MainWindow::~MainWindow()
{
    // Hiding the window in QWidget's destructor moves the focus, and the
    // application would report that to a window that is no longer whole.
    disconnect(qApp, &QApplication::focusChanged, this, nullptr);
    writeSettings();
}

void MainWindow::createActions()
{
    m_runAction = new QAction(QIcon(QStringLiteral(":/images/start.png")),
                              QString::fromLatin1(RunToolTip), this);
    m_stopAction = new QAction(QIcon(QStringLiteral(":/images/stop.png")),
                               QStringLiteral("Stop"), this);
    m_migrationAction = new QAction(QStringLiteral("&Migration..."), this);
    m_encodingAction = new QAction(QIcon(QStringLiteral(":/images/translate.png")),
                                   QStringLiteral("&Encoding..."), this);
    m_findAction = new QAction(QIcon(QStringLiteral(":/images/find.png")),
                               QStringLiteral("&Find"), this);
    m_findAction->setShortcut(QKeySequence(QStringLiteral("Ctrl+F")));
    m_copyFileAction = new QAction(QIcon(QStringLiteral(":/images/copy.png")),
                                   QStringLiteral("C&opy file"), this);
    m_cancelAction = new QAction(QStringLiteral("&Cancel"), this);
    m_cancelAction->setShortcut(QKeySequence(QStringLiteral("Ctrl+K")));
    m_cancelAction->setVisible(false);
    m_exitAction = new QAction(QStringLiteral("E&xit"), this);
    m_exitAction->setShortcut(QKeySequence(QStringLiteral("Ctrl+Q")));
    m_exitAction->setMenuRole(QAction::QuitRole);

    m_ui->toolBar->addSeparator();
    m_ui->toolBar->addAction(m_runAction);
    m_ui->toolBar->addAction(m_stopAction);
    m_ui->toolBar->addSeparator();

    m_ui->menuConversion->insertAction(m_ui->menuConversion->actions().value(0), m_runAction);
    m_ui->menuConversion->insertAction(m_ui->actionSource, m_stopAction);
    m_ui->menuConversion->insertSeparator(m_ui->actionSource);
    m_ui->menuOptions->addAction(m_migrationAction);
    m_ui->menuOptions->addAction(m_encodingAction);
    m_ui->menuNew->addAction(m_findAction);
    m_ui->menuNew->addAction(m_copyFileAction);
    m_ui->menuNew->addAction(m_cancelAction);
    m_ui->menuNew->addSeparator();
    m_recentMenu = m_ui->menuNew->addMenu(QStringLiteral("&Recent Folders"));
    RecentFolderStorage::instance().fillMenu(m_recentMenu);
    m_ui->menuNew->addSeparator();
    m_ui->menuNew->addAction(m_exitAction);
    // Their shortcuts work anywhere in the window, not only while the menu is open.
    addAction(m_findAction);
    addAction(m_cancelAction);
    addAction(m_exitAction);

    connect(m_runAction, &QAction::triggered, this, &MainWindow::startConversionEx);
    connect(m_migrationAction, &QAction::triggered, this, &MainWindow::migrationOptions);
    connect(m_encodingAction, &QAction::triggered, this, &MainWindow::showEncodingOptions);
    connect(m_copyFileAction, &QAction::triggered, this, &MainWindow::copyFile);
    connect(m_cancelAction, &QAction::triggered, this, &MainWindow::stopThread);
    connect(m_exitAction, &QAction::triggered, this, &QWidget::close);

    // The form's own items: the commands of the function keys, and the
    // option dialogs of each side of the direction.
    connect(m_ui->actionOpen, &QAction::triggered, m_panelManager,
            &PanelManager::startViewCommand);
    connect(m_ui->actionEdit, &QAction::triggered, m_panelManager,
            &PanelManager::startEditCommand);
    connect(m_ui->actionConversion, &QAction::triggered, this, &MainWindow::startConversionEx);
    connect(m_ui->actionSource, &QAction::triggered, m_panelManager,
            &PanelManager::showLeftDialogOption);
    connect(m_ui->actionTarget, &QAction::triggered, m_panelManager,
            &PanelManager::showRightDialogOption);
}

void MainWindow::setupCommandLine()
{
    m_commandOutput = new QPlainTextEdit;
    m_commandOutput->setObjectName(QStringLiteral("commandOutput"));
    m_commandOutput->setReadOnly(true);
    m_commandOutput->setMaximumBlockCount(20000);
    m_commandOutput->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_ui->tabWidget->addTab(m_commandOutput, QStringLiteral("Commands"));

    QComboBox *combo = m_ui->comboBoxEditCommand;
    // The history is kept here, not by the combo's own insertion.
    combo->setInsertPolicy(QComboBox::NoInsert);
    connect(combo->lineEdit(), &QLineEdit::returnPressed, this, &MainWindow::runCommandLine);
    auto append = [this](const QString &text) {
        QTextCursor cursor(m_commandOutput->document());
        cursor.movePosition(QTextCursor::End);
        cursor.insertText(text);
        m_commandOutput->moveCursor(QTextCursor::End);
    };
    connect(m_commandLine, &CommandLine::output, this, append);
    connect(m_commandLine, &CommandLine::finished, this, [this, append](const QString &status) {
        append(QStringLiteral("[%1]\n").arg(status));
        turnWaitingMode(Qt::ArrowCursor);
    });
}

void MainWindow::runCommandLine()
{
    QComboBox *combo = m_ui->comboBoxEditCommand;
    const QString command = combo->currentText();
    if (command.trimmed().isEmpty())
        return;
    m_ui->tabWidget->setVisible(true);
    m_ui->tabWidget->setCurrentWidget(m_commandOutput);
    const QString folder = m_panelManager->currentPanel()->currentPath();
    QTextCursor cursor(m_commandOutput->document());
    cursor.movePosition(QTextCursor::End);
    if (!m_commandLine->run(command, folder)) {
        cursor.insertText(tr("A command is still running; Ctrl+K stops it.\n"));
        return;
    }
    cursor.insertText(QStringLiteral("%1> %2\n").arg(QDir::toNativeSeparators(folder), command));
    turnWaitingMode(Qt::BusyCursor);
    // The newest command comes first after the empty line, listed once.
    const int listed = combo->findText(command, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (listed > 0)
        combo->removeItem(listed);
    combo->insertItem(1, command);
    combo->setCurrentIndex(0);
}

void MainWindow::setupConversion()
{
    connect(m_stopAction, &QAction::triggered, m_controller, &ConversionController::StopConversion);
    connect(m_controller, &ConversionController::pauseMode, this, &MainWindow::pauseMode);
    connect(m_controller, &ConversionController::conversionMode, this, &MainWindow::conversionMode);
    connect(m_controller, &ConversionController::changeConversionIndexes, this,
            &MainWindow::changeConversionIndexes);
    Conversion *conversion = m_controller->conversion();
    connect(conversion, &Conversion::standardOutputChanged, this,
            &MainWindow::printStandartOutput);
    connect(conversion->process(), &QProcess::stateChanged, this, &MainWindow::changeProcessState);
    connect(m_controller, &ConversionController::logRequested, this, &MainWindow::ShowConversionLog);
    // The engine gets the database options the dialogs show.
    const auto source =
        ConversionOptionsDialog::storedKeys(conversion->nameMap(), Settings::Source);
    conversion->setSourceConversionOption(source.first, source.second);
    const auto target =
        ConversionOptionsDialog::storedKeys(conversion->nameMap(), Settings::Target);
    conversion->setTargetConversionOption(target.first, target.second);
    m_logView = new ConversionLogView(m_ui->textEditLogView, conversion);
    connect(m_logView, &ConversionLogView::openFileAtLine, this, &MainWindow::openLogLink);
    connect(m_controller, &ConversionController::runStarted, m_logView,
            [this](int scripts) { m_logView->setRunning(true, scripts); });
    connect(m_controller, &ConversionController::runFinished, m_logView, [this](bool complete) {
        m_logView->setRunning(false, 0, complete);
        m_logView->outputChanged();
    });
    // The error keys work wherever the focus is, and bring the log up.
    for (QAction *action : {m_logView->nextErrorAction(), m_logView->previousErrorAction()}) {
        addAction(action);
        connect(action, &QAction::triggered, this, &MainWindow::ShowConversionLog);
    }
}

void MainWindow::openLogLink(const QString &path, int line)
{
    Panel *left = m_panelManager->leftPanel();
    left->openEditFile(path);
    // The engine counts lines from 1, the editor from 0.
    if (Edit *editor = left->editor())
        editor->goToLine(line - 1);
}

void MainWindow::openStartupPaths(const StartupOptions &options)
{
    for (Panel *panel : {m_panelManager->leftPanel(), m_panelManager->rightPanel()}) {
        const QString folder = options.folder(panel->isLeft());
        if (!folder.isEmpty())
            panel->changePath(folder);
        const QString file = options.file(panel->isLeft());
        if (!file.isEmpty())
            panel->openEditFile(file);
    }
    if (options.warnings().isEmpty())
        return;
    auto *box = new QMessageBox(QMessageBox::Warning, QStringLiteral("Morvane Navarch"),
                                options.warnings().join(QLatin1Char('\n')), QMessageBox::Ok, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

void MainWindow::setupEditorAndComparison()
{
    Panel *left = m_panelManager->leftPanel();
    Panel *right = m_panelManager->rightPanel();
    m_fileDiff = new FileDiff(m_ui->actionShow_Dif_Files, this, left, right);
    m_fontActions = new FontActions(this);
    m_fontActions->connectActions(left, right, m_ui->toolBar);
    // F5 in the left editor runs the conversion, as it does in the left browser.
    connect(left, &Panel::startConversionSignal, this, &MainWindow::startConversionEx);
}

bool MainWindow::confirmDocumentsSaved()
{
    for (Panel *panel : {m_panelManager->leftPanel(), m_panelManager->rightPanel()}) {
        Edit *edit = panel ? panel->editor() : nullptr;
        if (edit && !edit->savePrompt(tr("The document %1 has been modified.<br/>Save changes "
                                         "to the file before conversion?")
                                          .arg(QDir::toNativeSeparators(edit->filePath()))))
            return false;
    }
    return true;
}

void MainWindow::setupSearch()
{
    m_findScript = new FindScript(m_ui->treeWidgetSearchResults, this);
    m_findScript->setDialogParent(this);
    m_findScript->setFolderProvider([this] {
        Panel *panel = m_panelManager->currentPanel();
        return panel ? panel->currentPath() : QString();
    });
    connect(m_findAction, &QAction::triggered, m_findScript, &FindScript::showFindDialog);
    connect(m_findScript, &FindScript::turnWaitingMode, this,
            [this](Qt::CursorShape cursor) { setWorkBusy(Work::Find, cursor != Qt::ArrowCursor); });
    connect(m_findScript, &FindScript::searchStarted, this, &MainWindow::showFindLogRequested);
    connect(m_findScript, &FindScript::openFileAtLine, this,
            [this](const QString &path, int line) {
                Panel *panel = m_panelManager->currentPanel();
                if (!panel)
                    return;
                panel->openEditFile(path);
                Edit *edit = panel->editor();
                if (line <= 0 || !edit)
                    return;
                int start = 0;
                int length = 0;
                if (m_findScript->locateMatch(edit->lineText(line - 1), &start, &length))
                    edit->showMatch(line - 1, start, length);
                else
                    edit->goToLine(line - 1);
            });

    m_fileListDiff = new FileListDiff(this);
    connect(m_fileListDiff, &FileListDiff::turnWaitingMode, this, [this](Qt::CursorShape cursor) {
        setWorkBusy(Work::Compare, cursor != Qt::ArrowCursor);
    });
    m_fileListDiff->setup(m_ui->actionSelect_Different_by_Size,
                          m_ui->actionSelect_Different_by_Content, m_ui->actionShow_Selected,
                          m_panelManager->leftPanel(), m_panelManager->rightPanel());
}

void MainWindow::readSettings()
{
    const Settings settings;
    // The saved geometry also knows a maximised window and its screen; the
    // size and position are the fallback, kept for the stores that have only them.
    const QSize size = settings.windowSize();
    const QByteArray geometry = settings.windowGeometry();
    if (geometry.isEmpty() || !restoreGeometry(geometry)) {
        if (size.width() == -1 && size.height() == -1) {
            setWindowState(windowState() | Qt::WindowMaximized);
        } else {
            const QRect placed = onScreens(size, settings.windowPosition());
            resize(placed.size());
            move(placed.topLeft());
        }
    } else if (!(windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen))) {
        const QRect placed = onScreens(this->size(), pos());
        resize(placed.size());
        move(placed.topLeft());
    }
    for (QSplitter *splitter : {m_ui->mainSplitter, m_ui->panelSplitter})
        splitter->restoreState(settings.splitterState(splitter->objectName()));

    m_panelManager->readSettings(settings);
    RecentFolderStorage::instance().readSettings(settings);

    m_ui->comboBoxEditCommand->insertItems(0, settings.commands());
    m_ui->comboBoxEditCommand->insertItem(0, QString());
    m_ui->comboBoxEditCommand->setCurrentIndex(0);

    m_engineOptions = settings.engineOptions();
    m_sourceEncoding = settings.encodingOption(Settings::Source);
    m_targetEncoding = settings.encodingOption(Settings::Target);
}

void MainWindow::writeSettings()
{
    Settings settings;
    settings.setWindowPlacement(size(), pos());
    settings.setWindowGeometry(saveGeometry());
    for (const QSplitter *splitter : {m_ui->mainSplitter, m_ui->panelSplitter})
        settings.setSplitterState(splitter->objectName(), splitter->saveState());
    settings.setEngineOptions(m_engineOptions);

    m_panelManager->writeSettings(settings);
    RecentFolderStorage::instance().writeSettings(settings);

    // Walking the items from the last one down means the list comes back
    // reversed after every restart; users know it this way.
    QStringList commands;
    for (int i = m_ui->comboBoxEditCommand->count() - 1; i >= 0; --i)
        commands << m_ui->comboBoxEditCommand->itemText(i);
    settings.setCommands(commands);

    settings.setEncodingOption(Settings::Source, m_sourceEncoding);
    settings.setEncodingOption(Settings::Target, m_targetEncoding);
}

void MainWindow::turnWaitingMode(Qt::CursorShape cursor)
{
    setWorkBusy(Work::Other, cursor != Qt::ArrowCursor);
}

void MainWindow::setWorkBusy(Work work, bool busy)
{
    // Each work clears only its own busy state: a folder listed, or another
    // work ending, leaves Cancel to a search or copy still running.
    if (work == Work::Listing)
        m_listing = busy;
    else if (busy)
        m_busyWorks.insert(int(work));
    else
        m_busyWorks.remove(int(work));
    const bool cancellable = !m_busyWorks.isEmpty();
    setCursor(cancellable ? Qt::BusyCursor : (m_listing ? Qt::WaitCursor : Qt::ArrowCursor));
    if (cancellable)
        m_cancelAction->setShortcut(QKeySequence(QStringLiteral("Ctrl+K")));
    m_cancelAction->setVisible(cancellable);
}

void MainWindow::stopThread()
{
    if (m_findScript)
        m_findScript->stopFind();
    if (m_fileListDiff)
        m_fileListDiff->stop();
    m_panelManager->cancelCopy();
    m_commandLine->stop();
}

void MainWindow::pauseMode(bool isRunnig)
{
    if (isRunnig) {
        m_ui->labelProcessState->setText(QStringLiteral("Running"));
        m_runAction->setToolTip(QString::fromLatin1(RunToolTip));
    }
    m_runAction->setIcon(QIcon(QStringLiteral(":/images/pause.png")));
}

void MainWindow::conversionMode()
{
    m_ui->labelProcessState->setText(QStringLiteral("Pause"));
    m_runAction->setIcon(QIcon(QStringLiteral(":/images/start.png")));
    m_runAction->setToolTip(QStringLiteral("Resume"));
}

void MainWindow::changeProcessState(QProcess::ProcessState processState)
{
    switch (processState) {
    case QProcess::NotRunning:
        m_ui->labelProcessState->setText(QStringLiteral("Not Running"));
        m_runAction->setIcon(QIcon(QStringLiteral(":/images/start.png")));
        m_runAction->setToolTip(QString::fromLatin1(RunToolTip));
        break;
    case QProcess::Starting:
        m_ui->labelProcessState->setText(QStringLiteral("Starting"));
        break;
    case QProcess::Running:
        m_ui->labelProcessState->setText(QStringLiteral("Running"));
        m_ui->tabWidget->setVisible(true);
        m_ui->tabWidget->setCurrentIndex(1);
        break;
    }
}

void MainWindow::startConversionEx()
{
    // Run during a run pauses or resumes it: nothing is saved for that.
    if (!m_controller->isRunning() && !confirmDocumentsSaved())
        return;
    Panel *left = m_panelManager->leftPanel();
    Conversion *conversion = m_controller->conversion();
    if (!m_ui->sourceCombo->currentText().isEmpty())
        conversion->setSourceConversion(m_ui->sourceCombo->currentText());
    if (!m_ui->targetCombo->currentText().isEmpty())
        conversion->setTargetConversion(m_ui->targetCombo->currentText());
    m_controller->runOrPause(m_engineOptions, m_sourceEncoding, m_targetEncoding,
                             left->selectedPaths(), m_panelManager->rightPanel()->currentPath());
}

void MainWindow::changeConversionIndexes(int sourceIndex, int targetIndex)
{
    if (sourceIndex >= 0)
        m_ui->sourceCombo->setCurrentIndex(sourceIndex);
    if (targetIndex >= 0)
        m_ui->targetCombo->setCurrentIndex(targetIndex);
}

void MainWindow::ShowFilterDialog()
{
    FileSystemView *view = m_panelManager->currentPanel()->fileSystemView();
    FilterDialog dialog(this);
    if (dialog.exec() == QDialog::Accepted)
        view->setMask(dialog.mask());
}

void MainWindow::showFindLog()
{
    m_ui->tabWidget->setVisible(true);
    m_ui->tabWidget->setCurrentIndex(0);
}

void MainWindow::ShowConversionLog()
{
    m_ui->tabWidget->setVisible(true);
    m_ui->tabWidget->setCurrentIndex(1);
}

void MainWindow::showConnectionOptions()
{
    ConnectionOptionsDialog dialog(this);
    dialog.setOptions(m_engineOptions);
    if (dialog.exec() == QDialog::Accepted)
        dialog.applyTo(m_engineOptions);
}

void MainWindow::migrationOptions()
{
    MigrationOptionsDialog dialog(this);
    dialog.setOptions(m_engineOptions);
    if (dialog.exec() == QDialog::Accepted)
        dialog.applyTo(m_engineOptions);
}

void MainWindow::showEncodingOptions()
{
    EncodingOptionsDialog dialog(this);
    dialog.setSourceEncoding(m_sourceEncoding);
    dialog.setTargetEncoding(m_targetEncoding);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QString source = dialog.sourceEncoding();
    const QString target = dialog.targetEncoding();
    if (source.isEmpty() || target.isEmpty()
        || (source == m_sourceEncoding && target == m_targetEncoding))
        return;
    // An open document is read in the encoding being replaced: its unsaved
    // changes would be lost, so ask first.
    for (Panel *panel : {m_panelManager->leftPanel(), m_panelManager->rightPanel()}) {
        Edit *edit = panel->editor();
        if (edit && !edit->discardPrompt(tr("The document %1 has been modified.<br/>Discard changes "
                                            "to the file before changing encoding?")
                                             .arg(edit->name())))
            return;
    }
    m_sourceEncoding = source;
    m_targetEncoding = target;
    Settings settings;
    settings.setEncodingOption(Settings::Source, m_sourceEncoding);
    settings.setEncodingOption(Settings::Target, m_targetEncoding);
}

void MainWindow::showAbout()
{
    QFile changes(QStringLiteral(":/about/changelog.txt"));
    changes.open(QIODevice::ReadOnly | QIODevice::Text);
    const QString text = QStringLiteral("<h3>Morvane Navarch %1</h3><p>Built %2 %3</p><pre>%4</pre>")
                             .arg(QStringLiteral(NAVARCH_VERSION), QStringLiteral(__DATE__),
                                  QStringLiteral(__TIME__),
                                  QString::fromUtf8(changes.readAll()).toHtmlEscaped());
    QMessageBox::about(this, QStringLiteral("About Morvane Navarch"), text);
}

void MainWindow::printStandartOutput()
{
    m_logView->outputChanged();
}

void MainWindow::viewLog()
{
    m_ui->tabWidget->setVisible(!m_ui->tabWidget->isVisible());
}

void MainWindow::makeDir()
{
    m_panelManager->makeDir();
}

void MainWindow::deleteObject()
{
    m_panelManager->removeSelection();
}

void MainWindow::copyFiles()
{
    m_panelManager->copySelection();
}

void MainWindow::copyFile()
{
    m_panelManager->copyCurrentFile();
}

void MainWindow::changeRoot(const QString &folder)
{
    m_panelManager->currentPanel()->changePath(folder);
}

void MainWindow::initSubMenu(QAction *action)
{
    if (action && action == m_recentMenu->menuAction())
        RecentFolderStorage::instance().fillMenu(m_recentMenu);
}

void MainWindow::focusChanged(QWidget *old, QWidget *now)
{
    m_panelManager->focusChanged(old, now);
}

bool MainWindow::eventFilter(QObject *watched, QEvent *event)
{
    Panel *left = m_panelManager ? m_panelManager->leftPanel() : nullptr;
    Panel *right = m_panelManager ? m_panelManager->rightPanel() : nullptr;
    if (!left || !right || event->type() != QEvent::KeyPress)
        return QMainWindow::eventFilter(watched, event);

    Panel *panel = left->owns(watched) ? left : (right->owns(watched) ? right : nullptr);
    if (!panel)
        return QMainWindow::eventFilter(watched, event);

    // The panel that receives the keys is the one the user works in, even when
    // the focus change has not been reported yet.
    m_panelManager->focusChanged(nullptr, qobject_cast<QWidget *>(watched));
    auto *keyEvent = static_cast<QKeyEvent *>(event);
    const bool handled = panel->handleKey(keyEvent);
    switch (keyEvent->key()) {
    case Qt::Key_F3:
        if (panel->isEditing()) {
            m_ui->pushButtonView->setText(QStringLiteral("F3 - Find"));
            m_findAction->setEnabled(false);
            m_panelManager->setEditActionsEnabled(true);
        }
        return true;
    case Qt::Key_F6:
        copyFiles();
        return true;
    case Qt::Key_F5:
        if (panel == left) {
            startConversionEx();
            return true;
        }
        break;
    default:
        break;
    }
    return handled || QMainWindow::eventFilter(watched, event);
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (!confirmCloseWhileBusy()) {
        event->ignore();
        return;
    }
    Panel *left = m_panelManager->leftPanel();
    Panel *right = m_panelManager->rightPanel();
    if (left && right && (!left->closeEdit() || !right->closeEdit())) {
        event->ignore();
        return;
    }
    // Nothing of this window may outlive it.
    m_controller->terminateNow();
    stopThread();
    event->accept();
}

bool MainWindow::confirmCloseWhileBusy()
{
    QStringList busy;
    if (m_controller->isRunning())
        busy << tr("the conversion");
    if (m_findScript && m_findScript->isSearching())
        busy << tr("the search");
    if (m_panelManager->runningCopy())
        busy << tr("the copy");
    if (busy.isEmpty())
        return true;
    QMessageBox box(QMessageBox::Question, QStringLiteral("Morvane Navarch"),
                    tr("Still running: %1. Stop and close the window?").arg(busy.join(tr(" and "))),
                    QMessageBox::NoButton, this);
    QPushButton *stop = box.addButton(tr("Stop and Close"), QMessageBox::AcceptRole);
    box.addButton(tr("Keep the Window"), QMessageBox::RejectRole);
    box.setDefaultButton(stop);
    box.exec();
    return box.clickedButton() == stop;
}
