#include "testsupport.h"

#include "filesystemview.h"
#include "mainwindow.h"
#include "panel.h"
#include "panelmanager.h"
#include "settings.h"
#include "treewidget.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QTimer>
#include <QToolButton>

template<typename T>
T *child(QObject *window, const char *name)
{
    T *found = window->findChild<T *>(QLatin1String(name));
    if (!found)
        qFatal("no %s", name);
    return found;
}

class TestPanel : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { useTestSettings(); }
    void init();
    void cleanup();
    void settingsRoundTrip();
    void synchronousBrowsing();
    void panelKeys();
    void makeDirectory_data();
    void makeDirectory();
    void copyWithF6();
    void filterDialog();
    void maximize();

private:
    MainWindow *createWindow();
    QTreeWidgetItem *row(Panel *panel, const QString &name) const;

    TestDir *m_dir = nullptr;
    MainWindow *m_window = nullptr;
};

void TestPanel::init()
{
    Settings().clear();
    m_dir = new TestDir;
    m_dir->createFile(QStringLiteral("left/a.sql"), "a");
    m_dir->createFile(QStringLiteral("left/b.sql"), "b");
    m_dir->createFile(QStringLiteral("left/sub/s.sql"), "s");
    m_dir->createFile(QStringLiteral("right/sub/t.sql"), "t");
    Settings settings;
    settings.setValue(QStringLiteral("Main Window/leftPanel/Path"), m_dir->filePath("left"));
    settings.setValue(QStringLiteral("Main Window/rightPanel/Path"), m_dir->filePath("right"));
}

void TestPanel::cleanup()
{
    delete m_window;
    m_window = nullptr;
    delete m_dir;
}

MainWindow *TestPanel::createWindow()
{
    delete m_window;
    m_window = new MainWindow(nullptr, qApp, QString());
    m_window->show();
    return m_window;
}

QTreeWidgetItem *TestPanel::row(Panel *panel, const QString &name) const
{
    return panel->fileSystemView()->itemForKey(panel->currentPath() + QLatin1Char('/') + name);
}

void TestPanel::settingsRoundTrip()
{
    MainWindow *window = createWindow();
    PanelManager *manager = window->panelManager();
    QCOMPARE(manager->leftPanel()->currentPath(), m_dir->filePath("left"));
    QCOMPARE(manager->rightPanel()->currentPath(), m_dir->filePath("right"));
    QCOMPARE(child<QLabel>(window, "leftPathLabel")->text(),
             QDir::toNativeSeparators(m_dir->filePath("left")));
    QCOMPARE(child<QComboBox>(window, "sourceCombo")->currentText(), QStringLiteral("Microsoft SQL Server"));
    QCOMPARE(child<QComboBox>(window, "targetCombo")->currentText(), QStringLiteral("Oracle"));
    QCOMPARE(child<QComboBox>(window, "sourceCombo")->count(), 73);

    manager->leftPanel()->changePath(m_dir->filePath("left/sub"));
    manager->rightPanel()->fileSystemView()->setMask(QStringLiteral("*.sql"));
    child<QComboBox>(window, "targetCombo")->setCurrentIndex(0);
    const QString target = child<QComboBox>(window, "targetCombo")->currentText();
    delete m_window;
    m_window = nullptr;

    Settings settings;
    QCOMPARE(settings.value(QStringLiteral("Main Window/leftPanel/Path")).toString(),
             m_dir->filePath("left/sub"));
    QCOMPARE(settings.value(QStringLiteral("Main Window/rightPanel/Mask")).toString(),
             QStringLiteral("*.sql"));
    QCOMPARE(settings.value(QStringLiteral("Main Window/leftDisk")).toString(),
             QDir::toNativeSeparators(QStringLiteral("/")));

    window = createWindow();
    manager = window->panelManager();
    QCOMPARE(manager->leftPanel()->currentPath(), m_dir->filePath("left/sub"));
    QCOMPARE(manager->rightPanel()->fileSystemView()->mask(), QStringLiteral("*.sql"));
    QCOMPARE(manager->leftPanel()->fileSystemView()->mask(), QStringLiteral("*.*"));
    QCOMPARE(child<QComboBox>(window, "targetCombo")->currentText(), target);

    // A stored name that is not in the list leaves no current entry.
    delete m_window;
    m_window = nullptr;
    Settings().setValue(QStringLiteral("Main Window/source"), QStringLiteral("No Such Database"));
    window = createWindow();
    QCOMPARE(child<QComboBox>(window, "sourceCombo")->currentIndex(), -1);
}

void TestPanel::synchronousBrowsing()
{
    MainWindow *window = createWindow();
    PanelManager *manager = window->panelManager();
    Panel *left = manager->leftPanel();
    Panel *right = manager->rightPanel();
    manager->setCurrentPanel(left);
    child<QAction>(window, "syncBrowserAction")->setChecked(true);
    manager->triggeredSyncBrowserMode();

    left->fileSystemView()->showFolderEx(QStringLiteral("sub"));
    QCOMPARE(right->currentPath(), m_dir->filePath("right/sub"));
    left->showPrevDir();
    QCOMPARE(right->currentPath(), m_dir->filePath("right"));

    // The link follows the active panel.
    manager->setCurrentPanel(right);
    right->fileSystemView()->showFolderEx(QStringLiteral("sub"));
    QCOMPARE(left->currentPath(), m_dir->filePath("left/sub"));

    child<QAction>(window, "syncBrowserAction")->setChecked(false);
    manager->triggeredSyncBrowserMode();
    right->showPrevDir();
    QCOMPARE(left->currentPath(), m_dir->filePath("left/sub"));
}

void TestPanel::panelKeys()
{
    MainWindow *window = createWindow();
    PanelManager *manager = window->panelManager();
    Panel *left = manager->leftPanel();
    TreeWidget *tree = left->fileSystemView()->treeWidget();
    QApplication::setActiveWindow(window);
    tree->setFocus();
    manager->setCurrentPanel(left);

    // Insert selects the current row and moves down.
    tree->clearSelection();
    tree->setCurrentItem(row(left, QStringLiteral("a.sql")), 0, QItemSelectionModel::NoUpdate);
    QTest::keyClick(tree, Qt::Key_Insert);
    QTest::keyClick(tree, Qt::Key_Insert);
    QCOMPARE(left->selectedPaths(), QStringList({m_dir->filePath("left/a.sql"),
                                                 m_dir->filePath("left/b.sql")}));

    // F8 asks, then removes only the chosen ones.
    QString asked;
    left->fileSystemView()->setRemoveConfirmation([&asked](const QString &, const QString &text) {
        asked = text;
        return true;
    });
    QTest::keyClick(tree, Qt::Key_F8);
    QVERIFY(asked.startsWith(QStringLiteral("Would you like to remove next 2 object(s):")));
    QVERIFY(!QFile::exists(m_dir->filePath("left/a.sql")));
    QVERIFY(!QFile::exists(m_dir->filePath("left/b.sql")));
    QVERIFY(QFile::exists(m_dir->filePath("left/sub/s.sql")));
    QVERIFY(QFile::exists(m_dir->filePath("right/sub/t.sql")));

    // Delete in the list goes the same way; nothing selected, nothing asked.
    asked.clear();
    tree->clearSelection();
    QTest::keyClick(tree, Qt::Key_Delete);
    QVERIFY(asked.isEmpty());
}

void TestPanel::makeDirectory_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("created");
    QTest::newRow("new") << "new folder" << true;
    QTest::newRow("odd name") << "-ä 'q'" << true;
    QTest::newRow("existing") << "sub" << false;
    QTest::newRow("outside") << "../escape" << false;
    QTest::newRow("empty") << "" << false;
}

void TestPanel::makeDirectory()
{
    QFETCH(QString, name);
    QFETCH(bool, created);
    MainWindow *window = createWindow();
    PanelManager *manager = window->panelManager();
    Panel *left = manager->leftPanel();
    QStringList messages;
    manager->setNamePrompt([name](QString &typed) {
        typed = name;
        return true;
    });
    manager->setNotify([&messages](const QString &message) { messages << message; });
    left->fileSystemView()->treeWidget()->setFocus();
    manager->setCurrentPanel(left);
    QTest::keyClick(left->fileSystemView()->treeWidget(), Qt::Key_F7);
    QCOMPARE(messages.isEmpty(), created);
    if (created) {
        QVERIFY(QFileInfo(m_dir->filePath("left/" + name)).isDir());
        QVERIFY(row(left, name));
    } else {
        QCOMPARE(messages, QStringList({QStringLiteral("Error creation dir")}));
        QVERIFY(!QFileInfo::exists(m_dir->filePath("escape")));
    }
}

void TestPanel::copyWithF6()
{
    MainWindow *window = createWindow();
    PanelManager *manager = window->panelManager();
    Panel *left = manager->leftPanel();
    TreeWidget *tree = left->fileSystemView()->treeWidget();
    manager->setCurrentPanel(left);
    manager->setCopyPrompt([](QString &) { return true; });
    tree->clearSelection();
    row(left, QStringLiteral("a.sql"))->setSelected(true);
    QTest::keyClick(tree, Qt::Key_F6);
    QVERIFY(QFile::exists(m_dir->filePath("right/a.sql")));
    QVERIFY(row(manager->rightPanel(), QStringLiteral("a.sql")));
    QVERIFY(!manager->cancelCopy());
}

void TestPanel::filterDialog()
{
    MainWindow *window = createWindow();
    PanelManager *manager = window->panelManager();
    manager->setCurrentPanel(manager->leftPanel());
    for (const bool accept : {false, true}) {
        QTimer::singleShot(0, this, [accept] {
            auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            QVERIFY(dialog);
            QCOMPARE(dialog->objectName(), QStringLiteral("SetFilterDialog"));
            QCOMPARE(dialog->windowTitle(), QStringLiteral("Filter"));
            auto *combo = dialog->findChild<QComboBox *>();
            QCOMPARE(combo->currentText(), QStringLiteral("*.*"));
            combo->setEditText(QStringLiteral("*.txt;a*"));
            if (accept)
                dialog->accept();
            else
                dialog->reject();
        });
        window->ShowFilterDialog();
        FileSystemView *view = manager->leftPanel()->fileSystemView();
        QCOMPARE(view->mask(), accept ? QStringLiteral("*.txt;a*") : QStringLiteral("*.*"));
    }
    FileSystemView *view = manager->leftPanel()->fileSystemView();
    QVERIFY(row(manager->leftPanel(), QStringLiteral("a.sql")));
    QVERIFY(!row(manager->leftPanel(), QStringLiteral("b.sql")));
    QVERIFY(row(manager->leftPanel(), QStringLiteral("sub")));
    QVERIFY(view->statusText().contains(QStringLiteral("files in filtered view")));
    QVERIFY(Settings().value(QStringLiteral("Main Window/Filters")).toString().startsWith(
        QStringLiteral(";*.txt")));
}

void TestPanel::maximize()
{
    MainWindow *window = createWindow();
    Panel *left = window->panelManager()->leftPanel();
    QToolButton *button = left->maximizeButton();
    QCOMPARE(button->toolTip(), QStringLiteral("Maximize Panel"));
    button->click();
    QCOMPARE(button->toolTip(), QStringLiteral("Minimize Panel"));
    QVERIFY(child<QWidget>(window, "rightSideWidget")->isHidden());
    button->click();
    QVERIFY(!child<QWidget>(window, "rightSideWidget")->isHidden());
    QCOMPARE(left->closeButton()->toolTip(), QStringLiteral("Close Panel"));
}

QTEST_MAIN(TestPanel)
#include "tst_panel.moc"
