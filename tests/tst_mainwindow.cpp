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

// A shown window whose panels open on @p left and @p right (the stored ones when empty).
std::unique_ptr<MainWindow> openWindow(const QString &left = {}, const QString &right = {})
{
    Settings settings;
    if (!left.isEmpty())
        settings.setValue(QStringLiteral("Main Window/leftPanel/Path"), left);
    if (!right.isEmpty())
        settings.setValue(QStringLiteral("Main Window/rightPanel/Path"), right);
    auto window = std::make_unique<MainWindow>(nullptr, qApp, QString());
    window->show();
    if (!QTest::qWaitForWindowExposed(window.get()))
        qWarning("the window was not exposed");
    return window;
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

    // The first start is maximised; what the window keeps comes back, but the password.
    void settingsRoundTrip()
    {
        {
            MainWindow window(nullptr, qApp, QString());
            QVERIFY(window.windowState() & Qt::WindowMaximized);
            QCOMPARE(window.sourceEncoding(), QStringLiteral("System"));
            window.setWindowState(Qt::WindowNoState);
            window.resize(700, 500);
            QComboBox *commands = window.form()->comboBoxEditCommand;
            QCOMPARE(commands->count(), 1);
            commands->clear();
            commands->addItems({"a", "b"});
            // Which keys are kept is the settings test's; the window keeps the map.
            window.engineOptions() = {{"/PRJF=", "/p/x.prj"}, {"/TBLDDL=", ""}, {"/P", "secret"}};
        }
        {
            MainWindow again(nullptr, qApp, QString());
            QVERIFY(!(again.windowState() & Qt::WindowMaximized));
            QCOMPARE(again.size(), QSize(700, 500));
            QComboBox *commands = again.form()->comboBoxEditCommand;
            QStringList items;
            for (int i = 0; i < commands->count(); ++i)
                items << commands->itemText(i);
            QCOMPARE(items, QStringList({"", "b", "a"}));
            QCOMPARE(commands->currentIndex(), 0);
            QCOMPARE(again.engineOptions(), (QMap<QString, QString>{{"/PRJF=", "/p/x.prj"}}));
            // The dialogs drop an emptied option from the map: it stays cleared.
            again.engineOptions().clear();
        }
        MainWindow last(nullptr, qApp, QString());
        QVERIFY2(last.engineOptions().isEmpty(), qPrintable(last.engineOptions().keys().join(',')));
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
        const auto window = openWindow(dir.filePath("left"));
        Panel *left = window->panelManager()->leftPanel();
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
        window->findChild<QAction *>(action)->trigger();
        if (outcome == "editor")
            QVERIFY(left->isEditing());
        else if (outcome == "log")
            QTRY_VERIFY(!window->form()->textEditLogView->toPlainText().isEmpty());
        else
            QCOMPARE(dialogTitle, outcome);
        QTRY_COMPARE(window->form()->labelProcessState->text(), QStringLiteral("Not Running"));
        left->closeEdit();

        // Every menu of the bar has a letter of its own; Ctrl+Q leaves.
        QSet<QChar> letters;
        for (QAction *menu : window->menuBar()->actions()) {
            const int amp = menu->text().indexOf('&');
            QVERIFY2(amp >= 0, qPrintable(menu->text()));
            letters.insert(menu->text().at(amp + 1).toLower());
        }
        QCOMPARE(letters.size(), window->menuBar()->actions().size());
        window->activateWindow();
        QTRY_VERIFY(window->isActiveWindow());
        QTest::keyClick(window.get(), Qt::Key_Q, Qt::ControlModifier);
        QVERIFY(!window->isVisible());
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
        const auto window = openWindow(folder);
        QComboBox *commands = window->form()->comboBoxEditCommand;
        QTest::keyClicks(commands->lineEdit(), command);
        QTest::keyClick(commands->lineEdit(), Qt::Key_Return);
        const QString expected = QDir::toNativeSeparators(folder) + "> " + command + "\n"
            + QString(output).replace("<folder>", folder);
        QTRY_COMPARE(window->commandOutput()->toPlainText(), expected);
        QVERIFY(window->form()->tabWidget->isVisible());
        // Kept in the history, listed once, and the line is ready for the next one.
        QTest::keyClicks(commands->lineEdit(), command);
        QTest::keyClick(commands->lineEdit(), Qt::Key_Return);
        QTRY_VERIFY(window->commandOutput()->toPlainText().count("[exit code") == 2);
        QCOMPARE(commands->count(), 2);
        QCOMPARE(commands->itemText(1), command);
        QCOMPARE(commands->currentText(), QString());
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

    void functionKeys()
    {
        TestDir dir;
        const QString left = dir.createDir("left");
        const QString right = dir.createDir("right");
        dir.createFile("left/a.sql", "select 1;\n");
        dir.createFile("right/b.sql", "select 2;\n");
        const auto window = openWindow(left, right);
        Panel *leftPanel = window->panelManager()->leftPanel();
        Panel *rightPanel = window->panelManager()->rightPanel();
        QPlainTextEdit *log = window->form()->textEditLogView;

        // F6 copies from the right side to the left as well.
        window->panelManager()->setNotify([](const QString &) {});
        QSignalSpy copied(window->panelManager(), &PanelManager::copyFinished);
        acceptNextDialog();
        QTest::keyClick(selectRow(rightPanel, "b"), Qt::Key_F6);
        QVERIFY(copied.wait());
        QVERIFY(QFile::exists(left + "/b.sql"));

        // F5 converts from the left panel only.
        QTest::keyClick(selectRow(rightPanel, "b"), Qt::Key_F5);
        QVERIFY(log->toPlainText().isEmpty());
        QTest::keyClick(selectRow(leftPanel, "a"), Qt::Key_F5);
        QTRY_VERIFY(!log->toPlainText().isEmpty());
        QTRY_COMPARE(window->form()->labelProcessState->text(), QStringLiteral("Not Running"));

        // F3 in an editor turns the view button into Find until the editor closes.
        QTest::keyClick(selectRow(leftPanel, "a"), Qt::Key_F3);
        QVERIFY(leftPanel->isEditing());
        QTest::keyClick(leftPanel->editor()->editorWidget(), Qt::Key_F3);
        QVERIFY(!window->findAction()->isEnabled());
        // F5 in the left editor runs the conversion as well.
        QSignalSpy logged(log, &QPlainTextEdit::textChanged);
        QTest::keyClick(leftPanel->editor()->editorWidget(), Qt::Key_F5);
        QTRY_VERIFY(!logged.isEmpty());
        QTRY_COMPARE(window->form()->labelProcessState->text(), QStringLiteral("Not Running"));
        QVERIFY(leftPanel->closeEdit());
        QVERIFY(window->findAction()->isEnabled());
    }

    // The log button shows and hides the tabs; a search, a run and a running engine bring
    // their tab; the end of a run undoes the paused look.
    void logTabs()
    {
        MainWindow window(nullptr, qApp, QString());
        window.show();
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

        tabs->setCurrentIndex(0);
        QTest::mouseClick(window.form()->logViewButton, Qt::LeftButton);
        window.changeProcessState(QProcess::Starting);
        QVERIFY(!tabs->isVisible());
        window.changeProcessState(QProcess::Running);
        QVERIFY(tabs->isVisible());
        QCOMPARE(tabs->currentIndex(), 1);
        window.conversionMode();
        window.changeProcessState(QProcess::NotRunning);
        QCOMPARE(window.form()->labelProcessState->text(), QStringLiteral("Not Running"));
        QCOMPARE(window.runAction()->toolTip(), QStringLiteral("F5 - Run (only for left panel)"));
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
        const auto window = openWindow(stored.at(0), stored.at(1));
        window->openStartupPaths(StartupOptions::parse(
            QStringList{QStringLiteral("morvane-navarch")} + arguments, dir.path()));
        Panel *panels[] = {window->panelManager()->leftPanel(), window->panelManager()->rightPanel()};
        for (int side = 0; side < 2; ++side) {
            const QString folder = folders.at(side);
            QCOMPARE(QDir(panels[side]->currentPath()).absolutePath(),
                     folder.isEmpty() ? stored.at(side) : dir.filePath(folder));
        }
        QCOMPARE(panels[1]->isEditing(), !editedFile.isEmpty());
        if (!editedFile.isEmpty())
            QCOMPARE(panels[1]->editor()->filePath(), dir.filePath(editedFile));
        // The warning was shown without blocking: the panels opened after it.
        auto *box = window->findChild<QMessageBox *>();
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
