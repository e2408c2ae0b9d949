#include "conversion.h"
#include "conversioncontroller.h"
#include "conversionoptionsdialog.h"
#include "edit.h"
#include "filelistmodel.h"
#include "filesystemview.h"
#include "mainwindow.h"
#include "panel.h"
#include "panelmanager.h"
#include "settings.h"
#include "startupoptions.h"
#include "treewidget.h"
#include "testsupport.h"
#include "ui_mainwindow.h"
#include "workingfolder.h"

#include <QAction>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProcess>
#include <QScreen>
#include <QSplitter>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QToolBar>
#include <Qsci/qsciscintilla.h>

#include <csignal>

namespace {

// Makes @p name the only selected row of @p panel's list and gives it the focus.
TreeWidget *selectRow(Panel *panel, const QString &name)
{
    TreeWidget *tree = panel->fileSystemView()->treeWidget();
    const FileListModel *model = tree->fileModel();
    for (int row = 0; row < model->count(); ++row) {
        if (model->rowAt(row).name == name) {
            tree->setFocus();
            tree->setCurrentRow(row);
            return tree;
        }
    }
    return nullptr;
}

// Accepts the next modal dialog as soon as it shows.
void acceptNextDialog()
{
    QTimer::singleShot(0, [] {
        if (auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget()))
            dialog->accept();
    });
}

} // namespace

class TestMainWindow : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { useTestSettings(); }
    void init() { Settings().clear(); }

    void firstStart()
    {
        MainWindow window(nullptr, qApp, QString());
        QVERIFY(window.windowState() & Qt::WindowMaximized);
        QCOMPARE(window.windowTitle(), QStringLiteral("Morvane Navarch"));
        QCOMPARE(window.form()->comboBoxEditCommand->count(), 1);
        QCOMPARE(window.form()->comboBoxEditCommand->itemText(0), QString());
        QCOMPARE(window.sourceEncoding(), QStringLiteral("System"));

        const QList<QAction *> tools = window.form()->toolBar->actions();
        QVERIFY(tools.size() >= 4); // the font actions follow
        QVERIFY(tools.at(0)->isSeparator());
        QCOMPARE(tools.at(1), window.runAction());
        QCOMPARE(tools.at(2), window.stopAction());
        QVERIFY(tools.at(3)->isSeparator());
    }

    void settingsRoundTrip()
    {
        {
            MainWindow window(nullptr, qApp, QString());
            window.setWindowState(Qt::WindowNoState);
            window.resize(700, 500);
            QComboBox *commands = window.form()->comboBoxEditCommand;
            commands->clear();
            commands->addItems({"a", "b"});
            window.engineOptions().insert(QStringLiteral("/PRJF="), QStringLiteral("/p/project.prj"));
            window.engineOptions().insert(QStringLiteral("/TBLDDL="), QString());
            window.engineOptions().insert(QStringLiteral("/P"), QStringLiteral("secret"));
            window.engineOptions().insert(QStringLiteral(" "), QStringLiteral("/X=1"));
        }
        {
            Settings settings;
            settings.beginGroup(QStringLiteral("Main Window"));
            QCOMPARE(settings.value("Commands").toString(), QStringLiteral(";b;a"));
            QVERIFY(!settings.contains("/TBLDDL="));
            QVERIFY(!settings.contains("/P"));
            QCOMPARE(settings.value("/PRJF=").toString(), QStringLiteral("/p/project.prj"));
            QCOMPARE(settings.value(" ").toString(), QStringLiteral("/X=1"));
            QCOMPARE(settings.value("size").toSize(), QSize(700, 500));
            settings.endGroup();
            QCOMPARE(settings.value("/SRCENC=").toString(), QStringLiteral("System"));
        }
        MainWindow again(nullptr, qApp, QString());
        QVERIFY(!(again.windowState() & Qt::WindowMaximized));
        QCOMPARE(again.size(), QSize(700, 500));
        QComboBox *commands = again.form()->comboBoxEditCommand;
        QStringList items;
        for (int i = 0; i < commands->count(); ++i)
            items << commands->itemText(i);
        QCOMPARE(items, QStringList({"", "b", "a"}));
        QCOMPARE(commands->currentIndex(), 0);
        QCOMPARE(again.engineOptions().value("/PRJF="), QStringLiteral("/p/project.prj"));
        QVERIFY(!again.engineOptions().contains("/P"));
    }

    void restoredPlacement_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QPoint>("pos");
        QTest::newRow("huge") << QSize(100000, 100000) << QPoint(200, 200);
        QTest::newRow("far off the screen") << QSize(500, 400) << QPoint(50000, -50000);
        QTest::newRow("no size at all") << QSize(0, -7) << QPoint(10, 10);
    }

    void restoredPlacement()
    {
        QFETCH(QSize, size);
        QFETCH(QPoint, pos);
        {
            Settings settings;
            settings.setValue("Main Window/size", size);
            settings.setValue("Main Window/pos", pos);
        }
        MainWindow window(nullptr, qApp, QString());
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        // On the screen, and no larger than it unless the form itself needs more.
        const QRect screen = window.screen()->availableGeometry();
        const QSize largest = screen.size().expandedTo(window.minimumSizeHint());
        const QString placed = QStringLiteral("%1,%2 %3x%4").arg(window.x()).arg(window.y())
                                   .arg(window.width()).arg(window.height());
        QVERIFY2(screen.contains(window.pos()), qPrintable(placed));
        QVERIFY2(window.width() <= largest.width() && window.height() <= largest.height(),
                 qPrintable(placed));
        QVERIFY(window.width() >= 480 && window.height() >= 320);
    }

    void maximisedAndSplittersComeBack()
    {
        QList<int> panels;
        {
            MainWindow window(nullptr, qApp, QString());
            window.showMaximized();
            QVERIFY(QTest::qWaitForWindowExposed(&window));
            QSplitter *splitter = window.form()->panelSplitter;
            const int total = splitter->sizes().value(0) + splitter->sizes().value(1);
            splitter->setSizes({total / 4, total - total / 4});
            panels = splitter->sizes();
        }
        MainWindow again(nullptr, qApp, QString());
        again.show();
        QVERIFY(QTest::qWaitForWindowExposed(&again));
        QVERIFY(again.isMaximized());
        QCOMPARE(again.form()->panelSplitter->sizes(), panels);
    }

    void settingsKeptOnTermination()
    {
        // The real application, ended as a logout ends it.
        TestDir home;
        QProcess app;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("HOME", home.path());
        environment.insert("XDG_CONFIG_HOME", home.filePath("config"));
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        app.setProcessEnvironment(environment);
        // Blocked until the application handles it, so it cannot come too early.
        sigset_t term, previous;
        sigemptyset(&term);
        sigaddset(&term, SIGTERM);
        pthread_sigmask(SIG_BLOCK, &term, &previous);
        app.start(QFileInfo(TEST_ENGINE_PATH).path() + "/morvane-navarch", QStringList());
        const bool started = app.waitForStarted();
        pthread_sigmask(SIG_SETMASK, &previous, nullptr);
        QVERIFY(started);
        ::kill(pid_t(app.processId()), SIGTERM);
        QVERIFY(app.waitForFinished(20000));
        QCOMPARE(app.exitStatus(), QProcess::NormalExit);
        QSettings written(home.filePath("config/Quillon Systems Ltd./Morvane 6.0/Qt Tools/"
                                         "Morvane Navarch.conf"),
                          QSettings::IniFormat);
        QVERIFY(written.contains("Main Window/geometry"));
    }

    void menuItems_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QString>("outcome");
        QTest::newRow("Command > View") << "actionOpen" << "editor";
        QTest::newRow("Command > Edit") << "actionEdit" << "editor";
        QTest::newRow("Command > Conversion") << "actionConversion" << "log";
        QTest::newRow("Conversion > Source") << "actionSource" << "Source details";
        QTest::newRow("Conversion > Target") << "actionTarget" << "Target details";
    }

    void menuItems()
    {
        QFETCH(QString, action);
        TestDir dir;
        dir.createFile("left/a.sql", "select 1;\n");
        Settings().setValue("Main Window/leftPanel/Path", dir.filePath("left"));
        MainWindow window(nullptr, qApp, QString());
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        Panel *left = window.panelManager()->leftPanel();
        QVERIFY(selectRow(left, "a"));
        QFETCH(QString, outcome);
        const bool dialogExpected = outcome != "editor" && outcome != "log";
        QString dialogTitle;
        if (dialogExpected) {
            onModal([&dialogTitle](QWidget *dialog) {
                dialogTitle = dialog->windowTitle();
                QTest::keyClick(dialog, Qt::Key_Escape);
            });
        }
        window.findChild<QAction *>(action)->trigger();
        if (outcome == "editor")
            QVERIFY(left->isEditing());
        else if (outcome == "log")
            QTRY_VERIFY(!window.form()->textEditLogView->toPlainText().isEmpty());
        else
            QCOMPARE(dialogTitle, outcome);
        QTRY_COMPARE(window.form()->labelProcessState->text(), QStringLiteral("Not Running"));
        left->closeEdit();

        // Every menu of the bar has a letter of its own; Ctrl+Q leaves.
        QSet<QChar> letters;
        for (QAction *menu : window.menuBar()->actions()) {
            const int amp = menu->text().indexOf('&');
            QVERIFY2(amp >= 0, qPrintable(menu->text()));
            letters.insert(menu->text().at(amp + 1).toLower());
        }
        QCOMPARE(letters.size(), window.menuBar()->actions().size());
        window.activateWindow();
        QTRY_VERIFY(window.isActiveWindow());
        QTest::keyClick(&window, Qt::Key_Q, Qt::ControlModifier);
        QVERIFY(!window.isVisible());
    }

    void commandLine_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("output");
        QTest::newRow("output and status") << "printf 'a\\nb\\n'" << "a\nb\n[exit code 0]\n";
        QTest::newRow("in the active panel's folder") << "pwd" << "<folder>\n[exit code 0]\n";
        QTest::newRow("errors too, and the exit code") << "echo oops >&2; exit 3"
                                                       << "oops\n[exit code 3]\n";
        QTest::newRow("input is closed") << "read x || echo no input" << "no input\n[exit code 0]\n";
    }

    void commandLine()
    {
        QFETCH(QString, command);
        QFETCH(QString, output);
        TestDir dir;
        const QString folder = dir.createDir("it's a \"folder\"");
        Settings().setValue("Main Window/leftPanel/Path", folder);
        MainWindow window(nullptr, qApp, QString());
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QComboBox *commands = window.form()->comboBoxEditCommand;
        QTest::keyClicks(commands->lineEdit(), command);
        QTest::keyClick(commands->lineEdit(), Qt::Key_Return);
        const QString expected = QDir::toNativeSeparators(folder) + "> " + command + "\n"
            + QString(output).replace("<folder>", folder);
        QTRY_COMPARE(window.commandOutput()->toPlainText(), expected);
        QVERIFY(window.form()->tabWidget->isVisible());
        // Kept in the history, listed once, and the line is ready for the next one.
        QTest::keyClicks(commands->lineEdit(), command);
        QTest::keyClick(commands->lineEdit(), Qt::Key_Return);
        QTRY_VERIFY(window.commandOutput()->toPlainText().count("[exit code") == 2);
        QCOMPARE(commands->count(), 2);
        QCOMPARE(commands->itemText(1), command);
        QCOMPARE(commands->currentText(), QString());
    }

    void clearedOptionsStayCleared()
    {
        const QMap<QString, QString> all{{"/D", "dsn"}, {"/U", "scott"}, {"/PRJF=", "/p/x.prj"},
                                         {"/INI=", "/p/m.ini"}, {" ", "/X=1"}, {"/P", "pw"}};
        {
            MainWindow window(nullptr, qApp, QString());
            window.engineOptions() = all;
        }
        {
            MainWindow window(nullptr, qApp, QString());
            QMap<QString, QString> expected = all;
            expected.remove(QStringLiteral("/P"));
            QCOMPARE(window.engineOptions(), expected);
            // The dialogs drop an emptied option from the map.
            for (const char *key : {"/D", "/U", "/PRJF=", "/INI=", " "})
                window.engineOptions().remove(QString::fromLatin1(key));
        }
        MainWindow again(nullptr, qApp, QString());
        QVERIFY2(again.engineOptions().isEmpty(), qPrintable(again.engineOptions().keys().join(',')));
    }

    void sideOptionsSurviveRestart()
    {
        const auto choose = [](const QString &database, const QString &api) {
            onModal([database, api](QWidget *widget) {
                auto *dialog = qobject_cast<ConversionOptionsDialog *>(widget);
                dialog->databaseCombo()->setCurrentText(database);
                dialog->apiCombo()->setCurrentText(api);
                dialog->accept();
            });
        };
        {
            MainWindow window(nullptr, qApp, QString());
            choose(QStringLiteral("Oracle"), QStringLiteral("Sybase CTLIB"));
            window.panelManager()->showLeftDialogOption();
            choose(QStringLiteral("PostgreSQL"), QString());
            window.panelManager()->showRightDialogOption();
            QCOMPARE(window.conversionController()->conversion()->parameters().value("/Source_API="),
                     QStringLiteral("\"SYBASE CTLIB\""));
        }
        MainWindow window(nullptr, qApp, QString());
        const QMap<QString, QString> &parameters = window.conversionController()->conversion()->parameters();
        QCOMPARE(parameters.value("/Source_DB="), QStringLiteral("Oracle"));
        QCOMPARE(parameters.value("/Source_API="), QStringLiteral("\"SYBASE CTLIB\""));
        QCOMPARE(parameters.value("/Target_DB="), QStringLiteral("PostgreSQL"));
        QVERIFY(!parameters.contains("/Target_API="));
        // Each side's dialog opens on its own choice.
        QString shown;
        onModal([&shown](QWidget *widget) {
            auto *dialog = qobject_cast<ConversionOptionsDialog *>(widget);
            shown = dialog->databaseCombo()->currentText() + '|' + dialog->apiCombo()->currentText();
            dialog->reject();
        });
        window.panelManager()->showRightDialogOption();
        QCOMPARE(shown, QStringLiteral("PostgreSQL|"));
    }

    void processState_data()
    {
        QTest::addColumn<int>("state");
        QTest::addColumn<QString>("label");
        QTest::addColumn<bool>("logShown");
        QTest::newRow("not running") << int(QProcess::NotRunning) << "Not Running" << false;
        QTest::newRow("starting") << int(QProcess::Starting) << "Starting" << false;
        QTest::newRow("running") << int(QProcess::Running) << "Running" << true;
    }
    void processState()
    {
        QFETCH(int, state);
        QFETCH(QString, label);
        QFETCH(bool, logShown);
        MainWindow window(nullptr, qApp, QString());
        window.show();
        window.form()->tabWidget->setCurrentIndex(0);
        window.conversionMode(); // paused look first, so the reset shows
        window.changeProcessState(static_cast<QProcess::ProcessState>(state));
        QCOMPARE(window.form()->labelProcessState->text(), label);
        QCOMPARE(window.form()->tabWidget->isVisible(), logShown);
        if (logShown)
            QCOMPARE(window.form()->tabWidget->currentIndex(), 1);
        if (state == QProcess::NotRunning)
            QCOMPARE(window.runAction()->toolTip(), QStringLiteral("F5 - Run (only for left panel)"));
    }

    void pauseAndResumeLook()
    {
        MainWindow window(nullptr, qApp, QString());
        window.changeProcessState(QProcess::Starting);
        window.pauseMode(false);
        QCOMPARE(window.form()->labelProcessState->text(), QStringLiteral("Starting"));
        window.conversionMode();
        QCOMPARE(window.form()->labelProcessState->text(), QStringLiteral("Pause"));
        QCOMPARE(window.runAction()->toolTip(), QStringLiteral("Resume"));
        window.pauseMode(true);
        QCOMPARE(window.form()->labelProcessState->text(), QStringLiteral("Running"));
        QCOMPARE(window.runAction()->toolTip(), QStringLiteral("F5 - Run (only for left panel)"));
    }

    void functionKeys()
    {
        TestDir dir;
        const QString left = dir.createDir("left");
        const QString right = dir.createDir("right");
        dir.createFile("left/a.sql", "select 1;\n");
        dir.createFile("right/b.sql", "select 2;\n");
        {
            Settings settings;
            settings.setValue("Main Window/leftPanel/Path", left);
            settings.setValue("Main Window/rightPanel/Path", right);
        }
        MainWindow window(nullptr, qApp, QString());
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        Panel *leftPanel = window.panelManager()->leftPanel();
        Panel *rightPanel = window.panelManager()->rightPanel();
        QPlainTextEdit *log = window.form()->textEditLogView;

        // F6 copies from either side to the other.
        QStringList messages;
        window.panelManager()->setNotify([&messages](const QString &text) { messages << text; });
        QSignalSpy copied(window.panelManager(), &PanelManager::copyFinished);
        TreeWidget *tree = selectRow(leftPanel, "a");
        QVERIFY(tree);
        acceptNextDialog();
        QTest::keyClick(tree, Qt::Key_F6);
        QVERIFY(copied.wait());
        QVERIFY(QFile::exists(right + "/a.sql"));
        tree = selectRow(rightPanel, "b");
        QVERIFY(tree);
        acceptNextDialog();
        QTest::keyClick(tree, Qt::Key_F6);
        QVERIFY(copied.wait());
        QVERIFY(QFile::exists(left + "/b.sql"));
        QCOMPARE(messages.size(), 2);

        // F5 converts from the left panel only.
        QTest::keyClick(selectRow(rightPanel, "b"), Qt::Key_F5);
        QVERIFY(log->toPlainText().isEmpty());
        QTest::keyClick(selectRow(leftPanel, "a"), Qt::Key_F5);
        QTRY_VERIFY(!log->toPlainText().isEmpty());
        QTRY_COMPARE(window.form()->labelProcessState->text(), QStringLiteral("Not Running"));

        // F3 in an editor turns the view button into Find until the editor closes.
        tree = selectRow(leftPanel, "a");
        QTest::keyClick(tree, Qt::Key_F3);
        QVERIFY(leftPanel->isEditing());
        QTest::keyClick(leftPanel->editor()->editorWidget(), Qt::Key_F3);
        QVERIFY(!window.findAction()->isEnabled());
        // F5 in the left editor runs the conversion as well.
        QSignalSpy logged(log, &QPlainTextEdit::textChanged);
        QTest::keyClick(leftPanel->editor()->editorWidget(), Qt::Key_F5);
        QTRY_VERIFY(!logged.isEmpty());
        QTRY_COMPARE(window.form()->labelProcessState->text(), QStringLiteral("Not Running"));
        QVERIFY(leftPanel->closeEdit());
        QVERIFY(window.findAction()->isEnabled());
    }

    void waitingModeAndTabs()
    {
        MainWindow window(nullptr, qApp, QString());
        window.show();
        window.turnWaitingMode(Qt::BusyCursor);
        QVERIFY(window.cancelAction()->isVisible());
        QCOMPARE(window.cursor().shape(), Qt::BusyCursor);
        QCOMPARE(window.cancelAction()->shortcut(), QKeySequence(QStringLiteral("Ctrl+K")));
        window.turnWaitingMode(Qt::ArrowCursor);
        QVERIFY(!window.cancelAction()->isVisible());

        QTabWidget *tabs = window.form()->tabWidget;
        QVERIFY(!tabs->isVisible());
        QTest::mouseClick(window.form()->logViewButton, Qt::LeftButton);
        QVERIFY(tabs->isVisible());
        QTest::mouseClick(window.form()->logViewButton, Qt::LeftButton);
        QVERIFY(!tabs->isVisible());
        Q_EMIT window.showFindLogRequested();
        QVERIFY(tabs->isVisible());
        QCOMPARE(tabs->currentIndex(), 0);
        window.ShowConversionLog();
        QCOMPARE(tabs->currentIndex(), 1);
        QCOMPARE(tabs->tabText(0), QStringLiteral("Search Results"));
        QCOMPARE(tabs->tabText(1), QStringLiteral("Log View"));
    }

    void startupPaths_data()
    {
        QTest::addColumn<QStringList>("arguments"); // in the test folder
        QTest::addColumn<QStringList>("folders");   // left, right; "" for the stored one
        QTest::addColumn<QString>("editedFile");    // in the right panel
        QTest::addColumn<QString>("warning");

        QTest::newRow("two folders") << QStringList{"src", "out"} << QStringList{"src", "out"}
                                     << QString() << QString();
        QTest::newRow("missing folder, then a file")
            << QStringList{"gone", "src/orders.sql"} << QStringList{"", "src"}
            << "src/orders.sql" << "gone\" does not exist: the left panel opens on its last folder.";
    }

    void startupPaths()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QStringList, folders);
        QFETCH(QString, editedFile);
        QFETCH(QString, warning);
        TestDir dir;
        dir.createFile(QStringLiteral("src/orders.sql"), "SELECT 1;\n");
        dir.createDir(QStringLiteral("out"));
        const QStringList stored{dir.createDir(QStringLiteral("stored left")),
                                 dir.createDir(QStringLiteral("stored right"))};
        {
            Settings settings;
            settings.setValue(QStringLiteral("Main Window/leftPanel/Path"), stored.at(0));
            settings.setValue(QStringLiteral("Main Window/rightPanel/Path"), stored.at(1));
        }

        MainWindow window(nullptr, qApp, QString());
        window.show();
        window.openStartupPaths(StartupOptions::parse(
            QStringList{QStringLiteral("morvane-navarch")} + arguments, dir.path()));
        Panel *panels[] = {window.panelManager()->leftPanel(), window.panelManager()->rightPanel()};
        for (int side = 0; side < 2; ++side) {
            const QString folder = folders.at(side);
            QCOMPARE(QDir(panels[side]->currentPath()).absolutePath(),
                     folder.isEmpty() ? stored.at(side) : dir.filePath(folder));
        }
        QCOMPARE(panels[1]->isEditing(), !editedFile.isEmpty());
        if (!editedFile.isEmpty())
            QCOMPARE(panels[1]->editor()->filePath(), dir.filePath(editedFile));
        // The warning was shown without blocking: the panels opened after it.
        auto *box = window.findChild<QMessageBox *>();
        QCOMPARE(box != nullptr, !warning.isEmpty());
        if (box) {
            QVERIFY(box->isVisible());
            QVERIFY2(box->text().contains(warning), qPrintable(box->text()));
            box->close();
        }
    }
};

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
