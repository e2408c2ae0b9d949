#include "testsupport.h"

#include "filesystemview.h"
#include "fileview.h"
#include "treewidget.h"

#include <QLineEdit>
#include <QSignalSpy>
#include <QStatusBar>
#include <QVBoxLayout>
#include <QWidget>

#include <unistd.h>

class TestFileSystemView : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { useTestSettings(); }
    void init();
    void cleanup();

    void entersAndLeavesFolders();
    void keypadEnterNeedsOneSelectedRow();
    void statusLine_data();
    void statusLine();
    void selectedPaths();
    void removal_data();
    void removal();
    void removalDeclinedChangesNothing();
    void removalOfVanishedFile();
    void rename_data();
    void rename();
    void renameOpensNoEditorOnParent();
    void badFolders_data();
    void badFolders();
    void unreadableFolder();
    void folderDeletedWhileShown();
    void driveMemory();
    void markAndHide();

private:
    QTreeWidgetItem *row(const QString &fileName) const;
    void selectOnly(const QStringList &fileNames);

    TestDir *m_dir = nullptr;
    QWidget *m_window = nullptr;
    QStatusBar *m_status = nullptr;
    FileSystemView *m_view = nullptr;
};

void TestFileSystemView::init()
{
    m_dir = new TestDir;
    m_dir->createFile(QStringLiteral("a.sql"), QByteArray(1000, 'a'));
    m_dir->createFile(QStringLiteral("b.txt"), QByteArray(24, 'b'));
    m_dir->createFile(QStringLiteral("sub/inner.sql"), "x");
    m_window = new QWidget;
    auto *layout = new QVBoxLayout(m_window);
    m_status = new QStatusBar(m_window);
    m_view = new FileSystemView(m_window);
    m_view->init(layout, m_window, m_status);
    layout->addWidget(m_status);
    m_view->setRemoveConfirmation([](const QString &, const QString &) { return true; });
    QVERIFY(m_view->changePath(m_dir->path()));
    m_window->show();
}

void TestFileSystemView::cleanup()
{
    delete m_window;
    delete m_dir;
}

QTreeWidgetItem *TestFileSystemView::row(const QString &fileName) const
{
    return m_view->itemForKey(QFileInfo(m_dir->filePath(fileName)).absoluteFilePath());
}

void TestFileSystemView::selectOnly(const QStringList &fileNames)
{
    m_view->treeWidget()->clearSelection();
    for (const QString &name : fileNames) {
        QTreeWidgetItem *item = row(name);
        QVERIFY2(item, qPrintable(name));
        item->setSelected(true);
    }
}

void TestFileSystemView::entersAndLeavesFolders()
{
    TreeWidget *tree = m_view->treeWidget();
    QCOMPARE(tree->currentItem()->text(0), QStringLiteral(".."));
    QSignalSpy folders(m_view, &FileSystemView::changeFolder);
    QSignalSpy paths(m_view, &FileSystemView::changeCurrentPath);
    QSignalSpy edits(m_view, &FileSystemView::editFile);

    tree->setFocus();
    tree->setCurrentItem(row(QStringLiteral("sub")));
    QTest::keyClick(tree, Qt::Key_Return);
    QCOMPARE(m_view->currentPath(), m_dir->filePath(QStringLiteral("sub")));
    QCOMPARE(folders.last().first().toString(), m_dir->filePath(QStringLiteral("sub")));
    QCOMPARE(tree->currentItem()->text(0), QStringLiteral(".."));

    QTest::keyClick(tree, Qt::Key_Return);  // on ".."
    QCOMPARE(m_view->currentPath(), m_dir->path());
    QCOMPARE(folders.last().first().toString(), m_dir->path() + QStringLiteral("/.."));
    QCOMPARE(paths.last().first().toString(), m_dir->path());

    QTreeWidgetItem *file = row(QStringLiteral("a.sql"));
    const QRect rect = tree->visualItemRect(file);
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, rect.center());
    QTest::mouseDClick(tree->viewport(), Qt::LeftButton, {}, rect.center());
    QCOMPARE(edits.count(), 1);
    QCOMPARE(m_view->currentPath(), m_dir->path());
}

void TestFileSystemView::keypadEnterNeedsOneSelectedRow()
{
    TreeWidget *tree = m_view->treeWidget();
    tree->setFocus();
    selectOnly({QStringLiteral("sub"), QStringLiteral("a.sql")});
    QTest::keyClick(tree, Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(m_view->currentPath(), m_dir->path());
    selectOnly({QStringLiteral("sub")});
    QTest::keyClick(tree, Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(m_view->currentPath(), m_dir->filePath(QStringLiteral("sub")));
}

void TestFileSystemView::statusLine_data()
{
    QTest::addColumn<QString>("mask");
    QTest::addColumn<QStringList>("selected");
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing selected") << "*.*" << QStringList()
                                      << " 2 files (1,024) 0 selected files (0)";
    QTest::newRow("one file selected") << "*.*" << QStringList({"a.sql"})
                                       << " 2 files (1,024) 1 selected files (1,000)";
    QTest::newRow("folder counts, adds no size") << "*.*" << QStringList({"sub", "b.txt"})
                                                 << " 2 files (1,024) 2 selected files (24)";
    QTest::newRow("filtered") << "*.sql" << QStringList()
                              << " 2  files (1024)  1 files in filtered view (1,000) 0 selected "
                                 "files (0)";
}

void TestFileSystemView::statusLine()
{
    QFETCH(QString, mask);
    QFETCH(QStringList, selected);
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
    m_view->setMask(mask);
    selectOnly(selected);
    m_view->updateStatusInfo();
    QTEST(m_view->statusText(), "text");
    QCOMPARE(m_status->currentMessage(), m_view->statusText());
    QLocale::setDefault(QLocale::system());
}

void TestFileSystemView::selectedPaths()
{
    selectOnly({QStringLiteral(".."), QStringLiteral("sub"), QStringLiteral("b.txt")});
    const QString sub = m_dir->filePath(QStringLiteral("sub"));
    const QString b = m_dir->filePath(QStringLiteral("b.txt"));
    QCOMPARE(m_view->selectedPaths(), QStringList({sub, b}));
    QCOMPARE(m_view->selectedPaths(true), QStringList({sub + QStringLiteral("/*.*"), b}));
    QCOMPARE(m_view->selectedFiles(), QStringList({b}));
}

void TestFileSystemView::removal_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<bool>("gone");
    QTest::newRow("file") << "b.txt" << true;
    QTest::newRow("folder with files") << "sub" << true;
    QTest::newRow("folder with a hidden file stays") << "hidden" << false;
    QTest::newRow("link to a folder") << "link" << true;
}

void TestFileSystemView::removal()
{
    QFETCH(QString, target);
    m_dir->createFile(QStringLiteral("hidden/.secret"), "s");
    m_dir->createFile(QStringLiteral("kept/precious.sql"), "p");
    QVERIFY(QFile::link(m_dir->filePath(QStringLiteral("kept")), m_dir->filePath(QStringLiteral("link"))));
    m_view->updateFileView();
    QString question;
    m_view->setRemoveConfirmation([&question](const QString &title, const QString &text) {
        question = title + QLatin1Char('|') + text;
        return true;
    });
    selectOnly({target});
    m_view->removeSelection();
    QCOMPARE(question, QStringLiteral("Removing object(s)|Would you like to remove next 1 object(s):\n")
                           + QDir::toNativeSeparators(m_dir->filePath(target)));
    QTEST(!QFileInfo(m_dir->filePath(target)).exists() && !QFileInfo(m_dir->filePath(target)).isSymLink(), "gone");
    // Nothing but the chosen object changes; a link never takes its target along.
    QVERIFY(QFile::exists(m_dir->filePath(QStringLiteral("kept/precious.sql"))));
    QVERIFY(QFile::exists(m_dir->filePath(QStringLiteral("a.sql"))));
    QVERIFY(QFile::exists(m_dir->filePath(QStringLiteral("hidden/.secret"))));
    QCOMPARE(bool(row(target)), QFileInfo::exists(m_dir->filePath(target)));
}

void TestFileSystemView::removalDeclinedChangesNothing()
{
    m_view->setRemoveConfirmation([](const QString &, const QString &) { return false; });
    selectOnly({QStringLiteral("a.sql"), QStringLiteral("sub")});
    m_view->removeSelection();
    QVERIFY(QFile::exists(m_dir->filePath(QStringLiteral("a.sql"))));
    QVERIFY(QFile::exists(m_dir->filePath(QStringLiteral("sub/inner.sql"))));
}

void TestFileSystemView::removalOfVanishedFile()
{
    m_view->changePath(m_dir->filePath(QStringLiteral("sub")));
    selectOnly({QStringLiteral("sub/inner.sql")});
    // The folder goes away under the view; the removal fails quietly.
    QVERIFY(QDir(m_dir->filePath(QStringLiteral("sub"))).removeRecursively());
    m_view->removeSelection();
    QVERIFY(QFile::exists(m_dir->filePath(QStringLiteral("a.sql"))));
    QCOMPARE(m_view->currentPath(), m_dir->path());
}

void TestFileSystemView::rename_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("onDisk");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("ext");
    QTest::newRow("new name and extension") << "a.sql" << "b.sql" << "b.sql" << "b" << "sql";
    QTest::newRow("odd characters") << "a.sql" << "-x 'q' \"Ä\".txt" << "-x 'q' \"Ä\".txt"
                                    << "-x 'q' \"Ä\"" << "txt";
    QTest::newRow("folder") << "sub" << "new.dir" << "new.dir" << "new.dir" << "";
    QTest::newRow("onto an existing file") << "a.sql" << "b.txt" << "a.sql" << "a" << "sql";
    QTest::newRow("onto an existing folder") << "a.sql" << "sub" << "a.sql" << "a" << "sql";
    QTest::newRow("with a slash") << "a.sql" << "sub/a.sql" << "a.sql" << "a" << "sql";
}

void TestFileSystemView::rename()
{
    QFETCH(QString, from);
    QFETCH(QString, typed);
    QFETCH(QString, onDisk);
    TreeWidget *tree = m_view->treeWidget();
    const QByteArray before = QFileInfo(m_dir->filePath(QStringLiteral("b.txt"))).size() == 24
        ? QByteArray("ok") : QByteArray();
    QSignalSpy refreshes(m_view, &FileSystemView::changeIcon);
    QTreeWidgetItem *item = row(from);
    tree->setFocus();
    tree->setCurrentItem(item, 0);
    QTest::keyClick(tree, Qt::Key_F2);
    auto *editor = tree->findChild<QLineEdit *>();
    QVERIFY(editor);
    QCOMPARE(editor->text(), from);
    editor->setText(typed);
    QTest::keyClick(editor, Qt::Key_Return);
    // The delegate commits from the event loop.
    QTRY_VERIFY(!tree->findChild<QLineEdit *>());
    QVERIFY(QFileInfo::exists(m_dir->filePath(onDisk)));
    QTEST(item->text(0), "name");
    QTEST(item->text(1), "ext");
    // The existing file was not overwritten.
    QCOMPARE(QFileInfo(m_dir->filePath(QStringLiteral("b.txt"))).size(), 24);
    QCOMPARE(before, QByteArray("ok"));
    QCOMPARE(m_view->fileInfoMap().value(item).fileName(), onDisk);
    // No reload of the list for the rename itself.
    QTest::qWait(300);
    QCOMPARE(refreshes.count(), 0);
}

void TestFileSystemView::renameOpensNoEditorOnParent()
{
    TreeWidget *tree = m_view->treeWidget();
    tree->setFocus();
    tree->setCurrentItem(tree->topLevelItem(0), 0);
    QCOMPARE(tree->currentItem()->text(0), QStringLiteral(".."));
    QTest::keyClick(tree, Qt::Key_F2);
    QVERIFY(!tree->findChild<QLineEdit *>());

    // A file that vanished cannot be renamed; the row stays as it was.
    QTreeWidgetItem *item = row(QStringLiteral("b.txt"));
    QVERIFY(QFile::remove(m_dir->filePath(QStringLiteral("b.txt"))));
    QVERIFY(!m_view->renameItem(item, QStringLiteral("c.txt")));
    QCOMPARE(item->text(0), QStringLiteral("b"));
    QVERIFY(!QFile::exists(m_dir->filePath(QStringLiteral("c.txt"))));
}

void TestFileSystemView::badFolders_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("missing") << "missing";
    QTest::newRow("a file") << "a.sql";
    QTest::newRow("a link loop") << "loop";
}

void TestFileSystemView::badFolders()
{
    QFETCH(QString, path);
    QFile::link(m_dir->filePath(QStringLiteral("loop")), m_dir->filePath(QStringLiteral("loop")));
    QVERIFY(!m_view->changePath(m_dir->filePath(path)));
    QCOMPARE(m_view->currentPath(), m_dir->path());
    QVERIFY(!m_status->currentMessage().isEmpty());
    QVERIFY(row(QStringLiteral("a.sql")));
}

void TestFileSystemView::unreadableFolder()
{
    if (geteuid() == 0)
        QSKIP("permissions do not bind the superuser");
    const QString locked = m_dir->createDir(QStringLiteral("locked"));
    QFile::setPermissions(locked, QFileDevice::Permissions());
    QVERIFY(!m_view->changePath(locked));
    QVERIFY(m_status->currentMessage().contains(QStringLiteral("permission denied")));
    QFile::setPermissions(locked, QFileDevice::ReadOwner | QFileDevice::WriteOwner
                                      | QFileDevice::ExeOwner);
}

void TestFileSystemView::folderDeletedWhileShown()
{
    const QString deep = m_dir->createDir(QStringLiteral("one/two"));
    QVERIFY(m_view->changePath(deep));
    QSignalSpy paths(m_view, &FileSystemView::changeCurrentPath);
    QVERIFY(QDir(m_dir->filePath(QStringLiteral("one"))).removeRecursively());
    // The watcher notices; the view falls back to the nearest folder left.
    QTRY_COMPARE(m_view->currentPath(), m_dir->path());
    QVERIFY(!paths.isEmpty());
    QVERIFY(m_status->currentMessage().contains(QStringLiteral("does not exist")));
    QVERIFY(row(QStringLiteral("a.sql")));
}

void TestFileSystemView::driveMemory()
{
    TestDir drive;
    drive.createDir(QStringLiteral("deep/er"));
    m_view->drivePath().setDrives({QStringLiteral("/"), drive.path()});
    QVERIFY(m_view->changePath(drive.filePath(QStringLiteral("deep/er"))));
    QVERIFY(m_view->changePath(m_dir->path()));
    // Choosing the bare drive brings back the folder last shown on it.
    QVERIFY(m_view->changePath(drive.path()));
    QCOMPARE(m_view->currentPath(), drive.filePath(QStringLiteral("deep/er")));
    QCOMPARE(m_view->drivePath().driveOf(drive.filePath(QStringLiteral("deep"))), drive.path());
    QCOMPARE(m_view->drivePath().driveOf(m_dir->path()), QStringLiteral("/"));
    // A remembered folder that has gone falls back to the drive's root.
    QVERIFY(m_view->changePath(m_dir->path()));
    QVERIFY(QDir(drive.filePath(QStringLiteral("deep"))).removeRecursively());
    QVERIFY(m_view->changePath(drive.path()));
    QCOMPARE(m_view->currentPath(), drive.path());
    QCOMPARE(m_view->watchedFolders(), QStringList({drive.path()}));
}

void TestFileSystemView::markAndHide()
{
    m_dir->createFile(QStringLiteral("c.sql"));
    m_view->updateFileView();
    m_view->markFiles({QStringLiteral("a.sql")}, FileSystemView::DifferentMark);
    m_view->markFiles({QStringLiteral("b.txt")}, FileSystemView::AbsentMark);
    QCOMPARE(row(QStringLiteral("a.sql"))->foreground(0).color(), QColor(0, 100, 0));
    QCOMPARE(row(QStringLiteral("b.txt"))->foreground(0).color(), QColor(255, 0, 0));
    QCOMPARE(row(QStringLiteral("a.sql"))->font(0).weight(), 75);
    row(QStringLiteral("c.sql"))->setForeground(0, QColor(0, 0, 255));
    m_view->hideUnmarkedFiles();
    QVERIFY(row(QStringLiteral("c.sql"))->isHidden());
    QVERIFY(!row(QStringLiteral("a.sql"))->isHidden());
    QVERIFY(!row(QStringLiteral("b.txt"))->isHidden());
    QVERIFY(!row(QStringLiteral("sub"))->isHidden());
}

QTEST_MAIN(TestFileSystemView)
#include "tst_filesystemview.moc"
