#include "testsupport.h"

#include "filelistmodel.h"
#include "filesystemview.h"
#include "fileview.h"
#include "treewidget.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QSignalSpy>
#include <QStatusBar>
#include <QVBoxLayout>
#include <QWidget>

#include <unistd.h>

class TestFileSystemView : public QObject
{
    Q_OBJECT
private:
    int row(const QString &fileName) const
    {
        return fileName == ".." ? 0 : m_view->rowOfKey(QFileInfo(path(fileName)).absoluteFilePath());
    }
    QString text(int row, int column) const
    {
        return m_view->model()->index(row, column).data().toString();
    }
    QString currentName() const
    {
        TreeWidget *tree = m_view->treeWidget();
        return text(tree->currentRow(), tree->nameColumn());
    }
    void setCurrent(const QString &fileName) { m_view->treeWidget()->setCurrentRow(row(fileName)); }
    QString path(const QString &name) const { return m_dir->filePath(name); }
    /** Removes the selection and waits for the removal's end, if one started. */
    void removeSelection()
    {
        QSignalSpy done(m_view, &FileSystemView::removeFinished);
        m_view->removeSelection();
        if (m_view->isRemoving())
            QVERIFY(done.wait());
    }

    TestDir *m_dir = nullptr;
    QWidget *m_window = nullptr;
    QStatusBar *m_status = nullptr;
    FileSystemView *m_view = nullptr;

    void selectOnly(const QStringList &fileNames)
    {
        QVector<int> rows;
        for (const QString &name : fileNames) {
            rows << row(name);
            QVERIFY2(rows.last() >= 0, qPrintable(name));
        }
        m_view->treeWidget()->selectRowNumbers(rows);
    }

private Q_SLOTS:
    void initTestCase() { useTestSettings(); }

    void init()
    {
        m_dir = new TestDir;
        m_dir->createFile("a.sql", QByteArray(1000, 'a'));
        m_dir->createFile("b.txt", QByteArray(24, 'b'));
        m_dir->createFile("sub/inner.sql", "x");
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

    void cleanup()
    {
        delete m_window;
        delete m_dir;
    }

    void entersAndLeavesFolders()
    {
        TreeWidget *tree = m_view->treeWidget();
        QCOMPARE(currentName(), QStringLiteral(".."));
        QSignalSpy folders(m_view, &FileSystemView::changeFolder);
        QSignalSpy edits(m_view, &FileSystemView::editFile);

        tree->setFocus();
        setCurrent("sub");
        QTest::keyClick(tree, Qt::Key_Return);
        QCOMPARE(m_view->currentPath(), path("sub"));
        QCOMPARE(folders.last().first().toString(), path("sub"));
        QCOMPARE(currentName(), QStringLiteral(".."));

        QTest::keyClick(tree, Qt::Key_Return);  // on ".."
        QCOMPARE(m_view->currentPath(), m_dir->path());
        QCOMPARE(folders.last().first().toString(), m_dir->path() + QStringLiteral("/.."));
        // Going up puts the cursor on the folder just left.
        QCOMPARE(currentName(), QStringLiteral("sub"));

        const QRect rect = tree->visualRect(m_view->model()->index(row("a.sql"), 0));
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, rect.center());
        QTest::mouseDClick(tree->viewport(), Qt::LeftButton, {}, rect.center());
        QCOMPARE(edits.count(), 1);
        QCOMPARE(m_view->currentPath(), m_dir->path());

        // Keypad Enter opens a folder only when it is the one selected row.
        selectOnly({"sub", "a.sql"});
        QTest::keyClick(tree, Qt::Key_Enter, Qt::KeypadModifier);
        QCOMPARE(m_view->currentPath(), m_dir->path());
        selectOnly({"sub"});
        QTest::keyClick(tree, Qt::Key_Enter, Qt::KeypadModifier);
        QCOMPARE(m_view->currentPath(), path("sub"));
    }

    void statusLine_data()
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

    void statusLine()
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

    void selectedPaths()
    {
        selectOnly({"..", "sub", "b.txt"});
        const QString sub = path("sub");
        const QString b = path("b.txt");
        QCOMPARE(m_view->selectedPaths(), QStringList({sub, b}));
        QCOMPARE(m_view->selectedPaths(true), QStringList({sub + "/*.*", b}));
        QCOMPARE(m_view->selectedFiles(), QStringList({b}));
    }

    void removal_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<bool>("confirm");
        QTest::addColumn<bool>("gone");
        QTest::newRow("file") << "b.txt" << true << true;
        QTest::newRow("folder with files") << "sub" << true << true;
        QTest::newRow("folder with a hidden file stays") << "hidden" << true << false;
        QTest::newRow("link to a folder") << "link" << true << true;
        QTest::newRow("declined") << "sub" << false << false;
    }

    void removal()
    {
        QFETCH(QString, target);
        QFETCH(bool, confirm);
        m_dir->createFile("hidden/.secret", "s");
        m_dir->createFile("kept/precious.sql", "p");
        QVERIFY(QFile::link(path("kept"), path("link")));
        m_view->updateFileView();
        QString question;
        m_view->setRemoveConfirmation([&](const QString &title, const QString &text) {
            question = title + QLatin1Char('|') + text;
            return confirm;
        });
        selectOnly({target});
        removeSelection();
        QCOMPARE(question, "Removing object(s)|Would you like to remove this object?\n"
                               + QDir::toNativeSeparators(path(target)));
        QTEST(!QFileInfo(path(target)).exists() && !QFileInfo(path(target)).isSymLink(), "gone");
        // Nothing but the chosen object changes; a link never takes its target along.
        QVERIFY(QFile::exists(path("kept/precious.sql")));
        QVERIFY(QFile::exists(path("hidden/.secret")));
        QCOMPARE(QFile::exists(path("sub/inner.sql")), target != "sub" || !confirm);
        QCOMPARE(row(target) >= 0, QFileInfo::exists(path(target)));
    }

    void removalRunsInBackground()
    {
        for (int i = 0; i < 2000; ++i)
            m_dir->createFile(QStringLiteral("big/%1.sql").arg(i), "x");
        m_view->updateFileView();
        selectOnly({"big"});
        QSignalSpy done(m_view, &FileSystemView::removeFinished);
        m_view->removeSelection();
        // The call returns at once: the window goes on while the files go.
        QVERIFY(m_view->isRemoving());
        QCOMPARE(done.count(), 0);
        auto *progress = m_window->findChild<QProgressDialog *>();
        QVERIFY(progress);
        progress->findChild<QPushButton *>()->click();
        QVERIFY(done.wait());
        QVERIFY(!m_view->isRemoving());
        // Cancelled: what was not reached yet stays, listed.
        QVERIFY(QFileInfo::exists(path("big")));
        QVERIFY(row("big") >= 0);
    }

    void rename_data()
    {
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("onDisk");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("ext");
        QTest::newRow("new name and extension") << "b.txt" << "c.sql" << "c.sql" << "c" << "sql";
        QTest::newRow("odd characters") << "a.sql" << "-x 'q' \"Ä\".txt" << "-x 'q' \"Ä\".txt"
                                        << "-x 'q' \"Ä\"" << "txt";
        QTest::newRow("folder") << "sub" << "new.dir" << "new.dir" << "new.dir" << "";
        QTest::newRow("onto an existing file") << "a.sql" << "b.txt" << "a.sql" << "a" << "sql";
        QTest::newRow("onto an existing folder") << "a.sql" << "sub" << "a.sql" << "a" << "sql";
        QTest::newRow("with a slash") << "a.sql" << "sub/a.sql" << "a.sql" << "a" << "sql";
        QTest::newRow("parent row opens no editor") << ".." << "" << "" << ".." << "";
        QTest::newRow("trailing dot, nothing typed") << "foo." << "foo." << "foo." << "foo" << "";
    }

    void rename()
    {
        QFETCH(QString, from);
        QFETCH(QString, typed);
        QFETCH(QString, onDisk);
        TreeWidget *tree = m_view->treeWidget();
        if (from == "foo.") {
            m_dir->createFile(from);
            m_view->updateFileView();
        }
        const qint64 size = QFileInfo(path(from)).size();
        QSignalSpy refreshes(m_view, &FileSystemView::changeIcon);
        const int item = row(from);
        tree->setFocus();
        tree->setCurrentRow(item);
        QTest::keyClick(tree, Qt::Key_F2);
        auto *editor = tree->findChild<QLineEdit *>();
        QCOMPARE(bool(editor), from != "..");
        if (!editor)
            return;
        QCOMPARE(editor->text(), from);
        editor->setText(typed);
        QTest::keyClick(editor, Qt::Key_Return);
        // The delegate commits from the event loop.
        QTRY_VERIFY(!tree->findChild<QLineEdit *>());
        QTEST(text(item, 0), "name");
        QTEST(text(item, 1), "ext");
        QCOMPARE(m_view->model()->rowAt(item).fileName(), onDisk);
        // Whatever happened, no file was overwritten and the row was renamed in place.
        QCOMPARE(QFileInfo(path(onDisk)).size(), size);
        QCOMPARE(QFileInfo(path("b.txt")).size(), from == "b.txt" ? 0 : 24);
        QCOMPARE(refreshes.count(), 0);
    }

    // The watcher's refreshes add, update and remove rows in place: the
    // cursor and the marks stay, a burst is shown while it lasts, and files
    // rewritten in place (no folder event) get their new size.
    void liveRefresh()
    {
        TreeWidget *tree = m_view->treeWidget();
        setCurrent("b.txt");
        tree->selectRowNumbers({row("a.sql"), row("b.txt")});
        tree->setMarking(true);
        int created = 0;
        QTimer burst;
        burst.setInterval(50);
        connect(&burst, &QTimer::timeout, [&] { m_dir->createFile(QStringLiteral("n%1.sql").arg(created++)); });
        burst.start();
        // Rows arrive while the burst goes on, not only after it.
        QTRY_VERIFY(row("n0.sql") >= 0);
        QVERIFY(burst.isActive());
        QTRY_VERIFY(created >= 20);
        burst.stop();
        QTRY_VERIFY(row(QStringLiteral("n%1.sql").arg(created - 1)) >= 0);
        QCOMPARE(currentName(), QStringLiteral("b"));
        QCOMPARE(m_view->selectedPaths(), QStringList({path("a.sql"), path("b.txt")}));

        QVERIFY(QFile::remove(path("n0.sql")));
        QTRY_VERIFY(row("n0.sql") < 0);
        {
            QFile rewritten(path("b.txt"));
            QVERIFY(rewritten.open(QIODevice::WriteOnly | QIODevice::Append));
            rewritten.write(QByteArray(5000, 'x'));
        }
        QTRY_COMPARE_WITH_TIMEOUT(m_view->model()->rowAt(row("b.txt")).bytes, qint64(5024), 6000);
        QCOMPARE(currentName(), QStringLiteral("b"));
    }

    // A removal leaves the cursor on the next row that stays.
    void cursorAfterRemoval()
    {
        setCurrent("a.sql");
        removeSelection();
        QCOMPARE(currentName(), QStringLiteral("b"));
        setCurrent("b.txt");
        removeSelection();
        QCOMPARE(currentName(), QStringLiteral("sub"));
    }

    // Insert, Shift+arrows and Ctrl+click mark rows that stay marked while the
    // cursor moves; a plain click selects the one row clicked.
    void marks()
    {
        m_dir->createFile("c.sql");
        m_dir->createFile("d.txt");
        m_view->updateFileView();
        TreeWidget *tree = m_view->treeWidget();
        tree->setFocus();
        setCurrent("a.sql");
        QTest::keyClick(tree, Qt::Key_Insert);
        QTest::keyClick(tree, Qt::Key_Insert);   // b.txt
        QTest::keyClick(tree, Qt::Key_Down);     // d.txt... past c.sql
        QTest::keyClick(tree, Qt::Key_Up);
        QTest::keyClick(tree, Qt::Key_Home);
        QCOMPARE(m_view->selectedPaths(), QStringList({path("a.sql"), path("b.txt")}));
        QCOMPARE(currentName(), QStringLiteral(".."));
        setCurrent("c.sql");
        QTest::keyClick(tree, Qt::Key_Down, Qt::ShiftModifier);
        QTest::keyClick(tree, Qt::Key_Down);
        QCOMPARE(m_view->selectedFiles(),
                 QStringList({path("a.sql"), path("b.txt"), path("c.sql"), path("d.txt")}));
        // The keypad: - unselects by pattern, * turns the selection around.
        m_view->setPatternPrompt([](const QString &title, QString &pattern) {
            pattern = title == "Unselect" ? "*.txt" : "a*";
            return true;
        });
        QTest::keyClick(tree, Qt::Key_Minus, Qt::KeypadModifier);
        QCOMPARE(m_view->selectedFiles(), QStringList({path("a.sql"), path("c.sql")}));
        QTest::keyClick(tree, Qt::Key_Asterisk, Qt::KeypadModifier);
        QCOMPARE(m_view->selectedFiles(), QStringList({path("b.txt"), path("d.txt")}));
        QTest::keyClick(tree, Qt::Key_Plus, Qt::KeypadModifier);
        QCOMPARE(m_view->selectedFiles().size(), 3);
        // A plain click selects the row clicked, and only it.
        const QRect rect = tree->visualRect(m_view->model()->index(row("c.sql"), 0));
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, rect.center());
        QCOMPARE(m_view->selectedPaths(), QStringList({path("c.sql")}));
        QTest::keyClick(tree, Qt::Key_Down);
        QCOMPARE(m_view->selectedPaths(), QStringList({path("d.txt")}));
    }

    void quickSearchAndHiddenFiles()
    {
        m_dir->createFile(".hidden.sql");
        m_dir->createFile("bravo.sql");
        m_view->updateFileView();
        TreeWidget *tree = m_view->treeWidget();
        tree->setFocus();
        QTest::keyClicks(tree, "br");
        QCOMPARE(currentName(), QStringLiteral("bravo"));
        QTest::qWait(QApplication::keyboardInputInterval() + 50);
        QTest::keyClicks(tree, "S");
        QCOMPARE(currentName(), QStringLiteral("sub"));
        QVERIFY(row(".hidden.sql") < 0);
        QTest::keyClick(tree, Qt::Key_H, Qt::ControlModifier);
        QVERIFY(row(".hidden.sql") >= 0);
        QCOMPARE(currentName(), QStringLiteral("sub"));
        QTest::keyClick(tree, Qt::Key_H, Qt::ControlModifier);
        QVERIFY(row(".hidden.sql") < 0);
    }

    // Names that are not valid UTF-8 are listed, shown with replacement
    // characters, and every operation acts on the real file.
    void namesNotValidUtf8()
    {
        const QString raw = QFile::decodeName(QByteArray("caf\xe9.sql"));
        const QString lookalike = QStringLiteral("caf\uFFFD.sql");
        m_dir->createFile(raw, "raw");
        m_dir->createFile(lookalike, "look-alike");
        m_view->updateFileView();
        QVERIFY(row(raw) >= 0);
        QVERIFY(row(lookalike) >= 0);
        QCOMPARE(text(row(raw), 0), QStringLiteral("caf\uFFFD"));
        selectOnly({raw});
        removeSelection();
        QVERIFY(!QFileInfo::exists(path(raw)));
        QVERIFY(QFileInfo::exists(path(lookalike)));
    }

    void badFolders_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("message");
        QTest::newRow("missing") << "missing" << "does not exist";
        QTest::newRow("a file") << "a.sql" << "is not a folder";
        QTest::newRow("a link loop") << "loop" << "does not exist";
        QTest::newRow("unreadable") << "locked" << "permission denied";
    }

    void badFolders()
    {
        QFETCH(QString, folder);
        if (folder == "locked" && geteuid() == 0)
            QSKIP("permissions do not bind the superuser");
        QFile::link(path("loop"), path("loop"));
        QFile::setPermissions(m_dir->createDir("locked"), QFileDevice::Permissions());
        QVERIFY(!m_view->changePath(path(folder)));
        QCOMPARE(m_view->currentPath(), m_dir->path());
        QFETCH(QString, message);
        QVERIFY2(m_status->currentMessage().contains(message), qPrintable(m_status->currentMessage()));
        QVERIFY(row("a.sql") >= 0);
        QFile::setPermissions(path("locked"), QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    }

    void folderDeletedWhileShown()
    {
        const QString deep = m_dir->createDir("one/two");
        m_dir->createFile("one/two/x.sql");
        QVERIFY(m_view->changePath(deep));
        selectOnly({"one/two/x.sql"});
        QSignalSpy paths(m_view, &FileSystemView::changeCurrentPath);
        QVERIFY(QDir(path("one")).removeRecursively());
        // Removing what has already gone fails quietly.
        removeSelection();
        // The watcher notices; the view falls back to the nearest folder left.
        QTRY_COMPARE(m_view->currentPath(), m_dir->path());
        QVERIFY(!paths.isEmpty());
        QVERIFY(m_status->currentMessage().contains("does not exist"));
        QVERIFY(row("a.sql") >= 0);
    }

    // The flat list shows ".." in its name column and keeps it current. Marks given while
    // it is still being filled reach the rows that arrive later; a new listing keeps the
    // selection by path.
    void flatList()
    {
        for (int i = 0; i < 300; ++i)
            m_dir->createFile(QStringLiteral("deep/d%1/f.sql").arg(i));
        m_view->updateFileView();
        m_view->treeWidget()->setFocus();
        QSignalSpy icons(m_view, &FileSystemView::changeIcon);
        QSignalSpy paths(m_view, &FileSystemView::changeCurrentPath);
        m_view->setFlatList(true);
        m_view->markFiles({"a.sql", "sub/inner.sql", "deep/d299/f.sql"}, FileSystemView::FileMark::Different);
        QTRY_VERIFY(!m_view->isListing());
        QCOMPARE(icons.first().first().toBool(), false);
        QCOMPARE(icons.last().first().toBool(), true);
        const FileListModel *model = m_view->model();
        QCOMPARE(model->count(), 304);  // "..", a.sql, b.txt, sub/inner.sql, deep/...
        for (const char *name : {"a.sql", "sub/inner.sql", "deep/d299/f.sql"})
            QCOMPARE(int(model->rowAt(row(QLatin1String(name))).mark), int(FileRow::DifferentMark));
        QCOMPARE(int(model->rowAt(row("b.txt")).mark), int(FileRow::NoMark));
        QCOMPARE(currentName(), QStringLiteral(".."));
        m_view->setFlatList(false);
        QCOMPARE(currentName(), QStringLiteral(".."));
        QCOMPARE(paths.count(), 1);
        selectOnly({"a.sql", "b.txt"});
        m_view->setMask("*.*");
        QCOMPARE(m_view->selectedPaths(), QStringList({path("a.sql"), path("b.txt")}));
    }

    void driveMemory()
    {
        TestDir drive;
        drive.createDir("deep/er");
        m_view->drivePath().setDrives({QStringLiteral("/"), drive.path()});
        QVERIFY(m_view->changePath(drive.filePath("deep/er")));
        QVERIFY(m_view->changePath(m_dir->path()));
        // Choosing the bare drive brings back the folder last shown on it.
        QVERIFY(m_view->changePath(drive.path()));
        QCOMPARE(m_view->currentPath(), drive.filePath("deep/er"));
        // A remembered folder that has gone falls back to the drive's root.
        QVERIFY(m_view->changePath(m_dir->path()));
        QVERIFY(QDir(drive.filePath("deep")).removeRecursively());
        QVERIFY(m_view->changePath(drive.path()));
        QCOMPARE(m_view->currentPath(), drive.path());
        QCOMPARE(m_view->watchedFolders(), QStringList({drive.path()}));
    }

    void clipboardText()
    {
        m_dir->createFile("a b.sql", QByteArray(1500, 'x'));
        m_dir->createFile("c");
        m_view->updateFileView();
        selectOnly({"a b.sql", "c"});
        QVERIFY(QTest::qWaitForWindowExposed(m_window));
        m_view->treeWidget()->setFocus();
        QApplication::clipboard()->clear();
        QTest::keyClick(m_view->treeWidget(), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(),
                 QStringLiteral("a b sql %1\nc  0\n").arg(QStringLiteral("%L1").arg(1500)));
    }
};

QTEST_MAIN(TestFileSystemView)
#include "tst_filesystemview.moc"
