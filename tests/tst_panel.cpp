#include "testsupport.h"

#include "filesystemview.h"
#include "findscript.h"
#include "mainwindow.h"
#include "panel.h"
#include "panelmanager.h"
#include "settings.h"
#include "treewidget.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QScrollBar>
#include <QStatusBar>
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

    void init()
    {
        Settings().clear();
        m_dir = new TestDir;
        for (const char *file : {"left/a.sql", "left/b.sql", "left/sub/s.sql", "right/sub/t.sql"})
            m_dir->createFile(QLatin1String(file), "x");
        Settings settings;
        settings.setValue("Main Window/leftPanel/Path", path("left"));
        settings.setValue("Main Window/rightPanel/Path", path("right"));
        createWindow();
    }

    void cleanup()
    {
        delete m_window;
        m_window = nullptr;
        delete m_dir;
    }

    void settingsRoundTrip()
    {
        QCOMPARE(m_left->currentPath(), path("left"));
        QCOMPARE(m_right->currentPath(), path("right"));
        QCOMPARE(child<QComboBox>(m_window, "sourceCombo")->currentText(),
                 QStringLiteral("Microsoft SQL Server"));
        QCOMPARE(child<QComboBox>(m_window, "targetCombo")->currentText(), QStringLiteral("Oracle"));

        m_left->changePath(path("left/sub"));
        m_right->fileSystemView()->setMask("*.sql");
        child<QComboBox>(m_window, "targetCombo")->setCurrentIndex(0);
        const QString target = child<QComboBox>(m_window, "targetCombo")->currentText();
        createWindow();
        QCOMPARE(m_left->currentPath(), path("left/sub"));
        QCOMPARE(m_right->fileSystemView()->mask(), QStringLiteral("*.sql"));
        QCOMPARE(m_left->fileSystemView()->mask(), QStringLiteral("*.*"));
        QCOMPARE(child<QComboBox>(m_window, "targetCombo")->currentText(), target);

        // A stored name that is not in the list leaves no current entry.
        delete m_window;
        m_window = nullptr;
        Settings().setValue("Main Window/source", "No Such Database");
        createWindow();
        QCOMPARE(child<QComboBox>(m_window, "sourceCombo")->currentIndex(), -1);
    }

    void synchronousBrowsing()
    {
        child<QAction>(m_window, "syncBrowserAction")->setChecked(true);
        m_manager->triggeredSyncBrowserMode();
        m_left->fileSystemView()->showFolderEx("sub");
        QCOMPARE(m_right->currentPath(), path("right/sub"));
        m_left->showPrevDir();
        QCOMPARE(m_right->currentPath(), path("right"));

        // The link follows the active panel.
        m_manager->setCurrentPanel(m_right);
        m_right->fileSystemView()->showFolderEx("sub");
        QCOMPARE(m_left->currentPath(), path("left/sub"));

        child<QAction>(m_window, "syncBrowserAction")->setChecked(false);
        m_manager->triggeredSyncBrowserMode();
        m_right->showPrevDir();
        QCOMPARE(m_left->currentPath(), path("left/sub"));
    }

    void synchronousViewing()
    {
        QByteArray text;
        for (int i = 0; i < 400; ++i)
            text += "select " + QByteArray::number(i) + " from dual;\n";
        m_dir->createFile(QStringLiteral("left/long.sql"), text);
        m_dir->createFile(QStringLiteral("right/long.sql"), text);
        child<QAction>(m_window, "syncViewAction")->setChecked(true);
        m_manager->triggeredSyncViewMode();
        // Opened while the other side is hidden by a maximized panel.
        QWidget *rightSide = child<QWidget>(m_window, "rightSideWidget");
        m_left->maximizeButton()->click();
        QVERIFY(rightSide->isHidden());
        m_left->openEditFile(path("left/long.sql"));
        QVERIFY(m_right->isEditing());
        m_left->maximizeButton()->click();
        QVERIFY(!rightSide->isHidden());
        // Opening it again leaves the other side's editor as it is, and links the new one.
        Edit *rightEditor = m_right->editor();
        m_left->openEditFile(path("left/long.sql"));
        QCOMPARE(m_right->editor(), rightEditor);

        QScrollBar *left = m_left->editor()->verticalScrollBar();
        QScrollBar *right = m_right->editor()->verticalScrollBar();
        QTRY_VERIFY(left->maximum() > 100 && right->maximum() > 100);
        left->setValue(100);
        QCOMPARE(right->value(), 100);
        m_right->editor()->goToLine(10);
        QTRY_COMPARE(left->value(), right->value());
        QVERIFY(left->value() < 100);

        QVERIFY(m_left->closeEdit());
        QVERIFY(!m_right->isEditing());
    }

    void panelKeys()
    {
        QApplication::setActiveWindow(m_window);
        TreeWidget *tree = leftTree();
        // Insert selects the current row and moves down.
        tree->setCurrentRow(row(m_left, "a.sql"));
        QTest::keyClick(tree, Qt::Key_Insert);
        QTest::keyClick(tree, Qt::Key_Insert);
        QCOMPARE(m_left->selectedPaths(), QStringList({path("left/a.sql"), path("left/b.sql")}));

        // F8 asks, then removes only the chosen ones.
        QString asked;
        m_left->fileSystemView()->setRemoveConfirmation([&asked](const QString &, const QString &text) {
            asked = text;
            return true;
        });
        QSignalSpy removed(m_left->fileSystemView(), &FileSystemView::removeFinished);
        QTest::keyClick(tree, Qt::Key_F8);
        QVERIFY(removed.wait());
        QVERIFY(asked.startsWith("Would you like to remove these 2 objects?\n"));
        QVERIFY(!QFile::exists(path("left/a.sql")) && !QFile::exists(path("left/b.sql")));
        QVERIFY(QFile::exists(path("left/sub/s.sql")));

        // F3 opens the row under the cursor, not the first marked one.
        m_dir->createFile("left/c.sql", "c");
        m_dir->createFile("left/d.sql", "d");
        m_left->fileSystemView()->updateFileView();
        tree->setCurrentRow(row(m_left, "c.sql"));
        QTest::keyClick(tree, Qt::Key_Insert);
        QCOMPARE(m_left->selectedFiles(), QStringList({path("left/c.sql")}));
        QTest::keyClick(tree, Qt::Key_F3);
        QVERIFY(m_left->isEditing());
        QCOMPARE(m_left->editor()->filePath(), path("left/d.sql"));
        QVERIFY(m_left->closeEdit());
    }

    void keyboardFocus()
    {
        // A window as the user gets it, with nothing focused by hand.
        delete m_window;
        m_window = new MainWindow(nullptr, qApp, QString());
        m_window->show();
        QVERIFY(QTest::qWaitForWindowActive(m_window));
        m_left = m_window->panelManager()->leftPanel();
        QCOMPARE(QApplication::focusWidget(), leftTree());

        // Escape in the editor goes back to the list, where the keys work again.
        leftTree()->setCurrentRow(row(m_left, "a.sql"));
        QTest::keyClick(leftTree(), Qt::Key_F4);
        QVERIFY(m_left->isEditing());
        QTRY_VERIFY(QApplication::focusWidget() != leftTree());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        QTRY_VERIFY(!m_left->isEditing());
        QCOMPARE(QApplication::focusWidget(), leftTree());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Insert);
        QCOMPARE(m_left->selectedPaths(), QStringList{path("left/a.sql")});
    }

    void statusAndPathLines()
    {
        auto *status = child<QStatusBar>(m_window, "statusBar");
        // At start the left panel is active and its list is the one counted.
        QVERIFY(status->currentMessage().startsWith(" 2 files"));
        m_right->fileSystemView()->updateFileView();
        m_right->fileSystemView()->updateStatusInfo();
        QVERIFY(status->currentMessage().startsWith(" 2 files"));
        m_manager->setCurrentPanel(m_right);
        QVERIFY(status->currentMessage().startsWith(" 0 files"));

        // A long path is shortened in the middle and leaves the window's width alone.
        QVERIFY(QTest::qWaitForWindowExposed(m_window));
        QCoreApplication::processEvents();
        const int width = m_window->width();
        QString longPath = path("left");
        for (int i = 0; i < 12; ++i)
            longPath += QStringLiteral("/a folder with a long name %1").arg(i);
        QDir().mkpath(longPath);
        m_left->changePath(longPath);
        QCoreApplication::processEvents();
        auto *label = child<QLabel>(m_window, "leftPathLabel");
        QCOMPARE(label->toolTip(), longPath);
        QVERIFY2(label->text().size() < longPath.size(), qPrintable(label->text()));
        QCOMPARE(m_window->width(), width);

        // Browsing while a search runs leaves its busy state alone.
        Q_EMIT m_window->findScript()->turnWaitingMode(Qt::BusyCursor);
        QVERIFY(m_window->cancelAction()->isVisible());
        QCOMPARE(m_window->cursor().shape(), Qt::BusyCursor);
        m_left->changePath(path("left/sub"));
        m_left->fileSystemView()->setFlatList(true);
        QTRY_VERIFY(!m_left->fileSystemView()->isListing());
        QVERIFY(m_window->cancelAction()->isVisible());
        Q_EMIT m_window->findScript()->turnWaitingMode(Qt::ArrowCursor);
        QVERIFY(!m_window->cancelAction()->isVisible());
    }

    void makeDirectory_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("created");
        QTest::newRow("new") << "new folder" << true;
        QTest::newRow("odd name") << "-ä 'q'" << true;
        QTest::newRow("existing") << "sub" << false;
        QTest::newRow("outside") << "../escape" << false;
        QTest::newRow("empty") << "" << false;
    }

    void makeDirectory()
    {
        QFETCH(QString, name);
        QFETCH(bool, created);
        QStringList messages;
        m_manager->setNamePrompt([name](QString &typed) {
            typed = name;
            return true;
        });
        m_manager->setNotify([&messages](const QString &message) { messages << message; });
        QTest::keyClick(leftTree(), Qt::Key_F7);
        QCOMPARE(messages, created ? QStringList() : QStringList{"Error creation dir"});
        if (created)
            QVERIFY(QFileInfo(path("left/") + name).isDir() && row(m_left, name) >= 0);
        QVERIFY(!QFileInfo::exists(path("escape")));
    }

    void filterDialog()
    {
        for (const bool accept : {false, true}) {
            QTimer::singleShot(0, this, [accept] {
                auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
                QVERIFY(dialog);
                dialog->findChild<QComboBox *>()->setEditText(QStringLiteral("*.txt;a*"));
                accept ? dialog->accept() : dialog->reject();
            });
            m_window->ShowFilterDialog();
            QCOMPARE(m_left->fileSystemView()->mask(), QLatin1String(accept ? "*.txt;a*" : "*.*"));
        }
        // Each part of the mask counts; folders always show.
        QVERIFY(row(m_left, "a.sql") >= 0);
        QVERIFY(row(m_left, "b.sql") < 0);
        QVERIFY(row(m_left, "sub") >= 0);
        // The history keeps the mask whole: OK on the reopened dialog keeps it.
        QTimer::singleShot(0, this, [] {
            auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            QVERIFY(dialog);
            QCOMPARE(dialog->findChild<QComboBox *>()->currentText(), QStringLiteral("*.txt;a*"));
            dialog->accept();
        });
        m_window->ShowFilterDialog();
        QCOMPARE(m_left->fileSystemView()->mask(), QStringLiteral("*.txt;a*"));
    }

private:
    void createWindow()
    {
        delete m_window;
        m_window = new MainWindow(nullptr, qApp, QString());
        m_window->show();
        m_manager = m_window->panelManager();
        m_left = m_manager->leftPanel();
        m_right = m_manager->rightPanel();
        m_manager->setCurrentPanel(m_left);
        leftTree()->setFocus();
    }

    /** The row of @p name in @p panel's list, or -1. */

    int row(Panel *panel, const QString &name)
    {
        return panel->fileSystemView()->rowOfKey(panel->currentPath() + QLatin1Char('/') + name);
    }

    QString path(const char *relative) const { return m_dir->filePath(QLatin1String(relative)); }
    TreeWidget *leftTree() const { return m_left->fileSystemView()->treeWidget(); }

    TestDir *m_dir = nullptr;
    MainWindow *m_window = nullptr;
    PanelManager *m_manager = nullptr;
    Panel *m_left = nullptr;
    Panel *m_right = nullptr;
};

QTEST_MAIN(TestPanel)
#include "tst_panel.moc"
