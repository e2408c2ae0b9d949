#include "testsupport.h"

#include "copyobjects.h"
#include "filelistmodel.h"
#include "filesystemview.h"
#include "mainwindow.h"
#include "panel.h"
#include "panelmanager.h"
#include "treewidget.h"

#include <QCheckBox>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>

#include <csignal>
#include <dirent.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

Q_DECLARE_METATYPE(FileCopier::Choice)

namespace {

QByteArray native(const QString &path)
{
    return QFile::encodeName(path);
}

/** Every entry under @p folder by its raw relative name: "dir", "link:<text>", "fifo" or the bytes. */
QMap<QByteArray, QByteArray> snapshot(const QByteArray &folder, const QByteArray &prefix = {})
{
    QMap<QByteArray, QByteArray> found;
    DIR *dir = ::opendir(folder.constData());
    if (!dir)
        return found;
    while (const dirent *entry = ::readdir(dir)) {
        const QByteArray name(entry->d_name);
        if (name == "." || name == "..")
            continue;
        const QByteArray path = folder + '/' + name;
        const QByteArray key = prefix + name;
        struct stat status;
        ::lstat(path.constData(), &status);
        if (S_ISLNK(status.st_mode)) {
            QByteArray text(4096, 0);
            text.truncate(int(::readlink(path.constData(), text.data(), size_t(text.size()))));
            found.insert(key, "link:" + text);
        } else if (S_ISDIR(status.st_mode)) {
            found.insert(key, "dir");
            const QMap<QByteArray, QByteArray> inside = snapshot(path, key + '/');
            for (auto it = inside.cbegin(); it != inside.cend(); ++it)
                found.insert(it.key(), it.value());
        } else if (S_ISFIFO(status.st_mode)) {
            found.insert(key, "fifo");
        } else {
            QFile file(QFile::decodeName(path));
            file.open(QIODevice::ReadOnly);
            found.insert(key, file.readAll());
        }
    }
    ::closedir(dir);
    return found;
}

void writeRaw(const QByteArray &path, const QByteArray &bytes)
{
    const int fd = ::open(path.constData(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    QVERIFY(fd >= 0);
    QCOMPARE(::write(fd, bytes.constData(), size_t(bytes.size())), ssize_t(bytes.size()));
    ::close(fd);
}

/** Runs @p action once a message box whose text starts with @p text is the modal widget. */
void onBox(const QString &text, std::function<void(QMessageBox *)> action)
{
    auto *timer = new QTimer;
    timer->setInterval(10);
    QObject::connect(timer, &QTimer::timeout, [timer, text, action] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (box && box->text().startsWith(text)) {
            timer->stop();
            timer->deleteLater();
            action(box);
        }
    });
    timer->start();
}

/** Runs @p copy to its end with every dialog answered by the test. */
FileCopier::Summary runCopy(CopyObjects &copy, bool *started = nullptr)
{
    FileCopier::Summary summary;
    QObject::connect(&copy, &CopyObjects::finished, &copy,
                     [&summary](const FileCopier::Summary &result) { summary = result; });
    QSignalSpy finished(&copy, &CopyObjects::finished);
    const bool ok = copy.execute();
    if (started)
        *started = ok;
    if (ok && !finished.wait(20000))
        qWarning("the copy did not finish");
    return summary;
}

QStringList failedPaths(const FileCopier::Summary &summary)
{
    QStringList paths;
    for (const FileCopier::Failure &failure : summary.errors)
        paths << QFileInfo(failure.path).fileName() + QStringLiteral(": ") + failure.reason;
    return paths;
}

} // namespace

class TestFileOperations : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { useTestSettings(); }

    void copyTree()
    {
        TestDir dir;
        dir.createFile("src/tree/a.sql", "select 1;\n");
        dir.createFile("src/tree/.hidden", "h");
        dir.createFile("src/tree/deep/er/b.sql", QByteArray(3 << 20, 'b'));
        dir.createDir("src/tree/empty");
        const QByteArray tree = native(dir.filePath("src/tree"));
        QCOMPARE(::symlink("a.sql", tree + "/relative link"), 0);
        QCOMPARE(::symlink((tree + "/deep").constData(), tree + "/folder link"), 0);
        QCOMPARE(::symlink("nowhere", tree + "/dangling"), 0);
        QCOMPARE(::symlink("../..", tree + "/deep/er/loop"), 0);
        QCOMPARE(::mkfifo(tree + "/deep/pipe", 0600), 0);
        // Permissions as they are, whether the umask would keep them or not.
        QCOMPARE(::chmod(tree + "/a.sql", 0666), 0);
        QCOMPARE(::chmod(tree + "/deep/er/b.sql", 0750), 0);
        QCOMPARE(::symlink("pipe", tree + "/deep/pipe link"), 0);
        const QString dst = dir.createDir("dst");

        CopyObjects copy({dir.filePath("src/tree")}, dst);
        copy.setPrompt([](QString &) { return true; });
        QStringList shown;
        copy.setNotify([&shown](const QString &message) { shown << message; });
        const FileCopier::Summary summary = runCopy(copy);

        // Everything but the FIFO arrives as it was; links stay links with their own text.
        QMap<QByteArray, QByteArray> expected = snapshot(tree);
        QCOMPARE(expected.take("deep/pipe"), QByteArray("fifo"));
        QCOMPARE(snapshot(native(dst + "/tree")), expected);
        for (const char *name : {"/a.sql", "/deep/er/b.sql"}) {
            struct stat from, to;
            QCOMPARE(::stat(tree + name, &from), 0);
            QCOMPARE(::stat(native(dst + "/tree") + name, &to), 0);
            QCOMPARE(to.st_mode, from.st_mode);
        }
        QCOMPARE(failedPaths(summary),
                 QStringList{"pipe: not a regular file, folder or link (a FIFO, socket or device); "
                             "not copied"});
        QCOMPARE(summary.copied, expected.size() + 1);  // the folder itself as well
        QCOMPARE(shown.size(), 1);
        QVERIFY(shown.first().startsWith("Copy finished: 12 copied, 0 skipped, 1 failed.\n"));
        QVERIFY(shown.first().contains(QDir::toNativeSeparators(dir.filePath("src/tree/deep/pipe"))));
    }

    void oddNames_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("243 bytes") << QByteArray(243, 'n');
        QTest::newRow("255 bytes") << QByteArray(251, 'n') + ".sql";
        QTest::newRow("trailing blank") << QByteArray("trailing ");
        QTest::newRow("leading dash and quotes") << QByteArray("-it's \"quoted\".sql");
        QTest::newRow("non-ASCII") << QByteArray("caf\xc3\xa9 \xe6\x97\xa5\xe6\x9c\xac.sql");
        QTest::newRow("byte invalid in UTF-8") << QByteArray("bad\xff.sql");
    }

    void oddNames()
    {
        QFETCH(QByteArray, name);
        TestDir dir;
        const QByteArray src = native(dir.createDir("src/folder"));
        writeRaw(src + '/' + name, "the real one");
        // The file that a lossy decoding of the name would reach instead.
        const QByteArray lookAlike = QString::fromUtf8(name).toUtf8();
        if (lookAlike != name)
            writeRaw(src + '/' + lookAlike, "look-alike");

        // In each way of writing files; each alone, as the panel hands it over, and
        // inside a folder, as the walk finds it.
        for (const FileCopier::Writing way :
             {FileCopier::UnnamedFiles, FileCopier::UnnamedThroughProc, FileCopier::HiddenNames}) {
            FileCopier::setWriting(way);
            const QString dst = dir.createDir(QString::number(way));
            for (const QString &source : {QFile::decodeName(src + '/' + name), QFile::decodeName(src)}) {
                CopyObjects copy({source}, dst);
                copy.setPrompt([](QString &) { return true; });
                copy.setNotify([](const QString &) {});
                const FileCopier::Summary summary = runCopy(copy);
                QCOMPARE(failedPaths(summary), QStringList());
            }
            FileCopier::setWriting(FileCopier::UnnamedFiles);
            const QMap<QByteArray, QByteArray> copied = snapshot(native(dst));
            QCOMPARE(copied.value(name), QByteArray("the real one"));
            QCOMPARE(copied.value("folder/" + name), QByteArray("the real one"));
            // Nothing else: no temporary file left, the look-alike only inside the folder.
            QCOMPARE(copied.size(), lookAlike != name ? 4 : 3);
        }
    }

    void typedTarget_data()
    {
        QTest::addColumn<QStringList>("sources");
        QTest::addColumn<QString>("typed");  // empty: keep the proposal
        QTest::addColumn<QString>("proposal");
        QTest::addColumn<QStringList>("arrived");
        QTest::newRow("one file") << QStringList{"a.sql"} << "" << "dst/a.sql"
                                  << QStringList{"dst/a.sql"};
        QTest::newRow("one file renamed") << QStringList{"a.sql"} << "dst/b c.sql" << "dst/a.sql"
                                          << QStringList{"dst/b c.sql"};
        QTest::newRow("one file, name with a blank at the end")
            << QStringList{"a.sql"} << "dst/name " << "dst/a.sql" << QStringList{"dst/name "};
        QTest::newRow("one file into a folder typed instead")
            << QStringList{"a.sql"} << "other" << "dst/a.sql" << QStringList{"other/a.sql"};
        QTest::newRow("several into another folder")
            << QStringList{"a.sql", "sub"} << "other" << "dst" << QStringList{"other/a.sql", "other/sub/s.sql"};
    }

    void typedTarget()
    {
        QFETCH(QStringList, sources);
        QFETCH(QString, typed);
        QFETCH(QStringList, arrived);
        TestDir dir;
        dir.createFile("src/a.sql", "a");
        dir.createFile("src/sub/s.sql", "s");
        dir.createDir("dst");
        dir.createDir("other");
        QStringList paths;
        for (const QString &source : qAsConst(sources))
            paths << dir.filePath("src/" + source);
        CopyObjects copy(paths, dir.filePath("dst"));
        QString proposal;
        copy.setPrompt([&](QString &text) {
            proposal = text;
            if (!typed.isEmpty())
                text = QDir::toNativeSeparators(dir.filePath(typed));
            return true;
        });
        copy.setNotify([](const QString &) {});
        QCOMPARE(failedPaths(runCopy(copy)), QStringList());
        QTEST(QDir(dir.path()).relativeFilePath(QDir::fromNativeSeparators(proposal)), "proposal");
        for (const QString &path : qAsConst(arrived))
            QVERIFY2(QFileInfo(dir.filePath(path)).isFile(), qPrintable(path));

        // Cancel in the dialog copies nothing.
        CopyObjects cancelled(paths, dir.filePath("dst"));
        cancelled.setPrompt([](QString &) { return false; });
        bool started = true;
        runCopy(cancelled, &started);
        QVERIFY(!started);
    }

    void conflicts_data()
    {
        QTest::addColumn<FileCopier::Choice>("choice");
        QTest::addColumn<bool>("forAll");
        QTest::addColumn<int>("asked");
        QTest::addColumn<QStringList>("target");  // name=content, sorted
        QTest::addColumn<QString>("summary");
        const QString fresh = "tree/fresh.sql=fresh";
        QTest::newRow("overwrite each")
            << FileCopier::Overwrite << false << 2
            << QStringList{fresh, "tree/one.sql=new 1", "tree/two.sql=new 2"}
            << "Copy finished: 3 copied, 0 skipped, 0 failed.";
        QTest::newRow("skip all")
            << FileCopier::Skip << true << 1
            << QStringList{fresh, "tree/one.sql=old 1", "tree/two.sql=old 2"}
            << "Copy finished: 1 copied, 2 skipped, 0 failed.";
        QTest::newRow("rename all")
            << FileCopier::Rename << true << 1
            << QStringList{fresh, "tree/one (1).sql=new 1", "tree/one.sql=old 1",
                           "tree/two (1).sql=new 2", "tree/two.sql=old 2"}
            << "Copy finished: 3 copied, 0 skipped, 0 failed.";
        QTest::newRow("cancel")
            << FileCopier::Cancel << false << 1
            << QStringList{"tree/one.sql=old 1", "tree/two.sql=old 2"}
            << "Copy cancelled: 0 copied, 0 skipped, 0 failed.";
    }

    void conflicts()
    {
        QFETCH(FileCopier::Choice, choice);
        QFETCH(bool, forAll);
        TestDir dir;
        dir.createFile("src/tree/one.sql", "new 1");
        dir.createFile("src/tree/two.sql", "new 2");
        dir.createFile("src/tree/zz fresh.sql", "fresh");
        QFile::rename(dir.filePath("src/tree/zz fresh.sql"), dir.filePath("src/tree/fresh.sql"));
        dir.createFile("dst/tree/one.sql", "old 1");
        dir.createFile("dst/tree/two.sql", "old 2");

        CopyObjects copy({dir.filePath("src/tree")}, dir.filePath("dst"));
        copy.setPrompt([](QString &) { return true; });
        QStringList shown;
        copy.setNotify([&shown](const QString &message) { shown << message; });
        int asked = 0;
        copy.setConflictPrompt([&](const QString &source, const QString &target) {
            ++asked;
            QCOMPARE(QFileInfo(source).fileName(), QFileInfo(target).fileName());
            copy.answerConflict(choice, forAll);
        });
        runCopy(copy);
        QTEST(asked, "asked");
        QStringList target;
        const QMap<QByteArray, QByteArray> found = snapshot(native(dir.filePath("dst")));
        for (auto it = found.cbegin(); it != found.cend(); ++it) {
            if (it.value() != "dir")
                target << QString::fromUtf8(it.key() + '=' + it.value());
        }
        // The fresh file is copied before or after the others depending on the listing order.
        if (choice == FileCopier::Cancel)
            target.removeAll("tree/fresh.sql=fresh");
        QTEST(target, "target");
        QCOMPARE(shown.size(), 1);
        if (choice == FileCopier::Cancel)
            QVERIFY(shown.first().startsWith("Copy cancelled: "));
        else
            QTEST(shown.first(), "summary");
    }

    void conflictQuestionInFront()
    {
        TestDir dir;
        dir.createFile("src/one.sql", "new");
        dir.createFile("dst/one.sql", "old");
        QWidget window;
        window.show();
        CopyObjects copy({dir.filePath("src/one.sql")}, dir.filePath("dst"), &window);
        copy.setPrompt([](QString &) { return true; });
        copy.setNotify([](const QString &) {});
        QSignalSpy finished(&copy, &CopyObjects::finished);
        QVERIFY(copy.execute());
        QPointer<QMessageBox> box;
        QTRY_VERIFY((box = window.findChild<QMessageBox *>()) && box->isVisible());
        // Well past the delay after which the progress window would come up over it.
        QVERIFY(!QTest::qWaitFor(
            [&window] { return window.findChild<QProgressDialog *>()->isVisible(); }, 1000));
        for (QAbstractButton *button : box->buttons()) {
            if (button->text() == "&Overwrite")
                QTest::mouseClick(button, Qt::LeftButton);
        }
        QVERIFY(finished.wait());
        QCOMPARE(snapshot(native(dir.filePath("dst"))).value("one.sql"), QByteArray("new"));
    }

    void failures_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("typed");  // the folder typed in the dialog, empty: the other panel
        QTest::addColumn<QString>("failure");
        QTest::newRow("target folder missing") << "big.bin" << "missing/deeper"
                                               << "deeper: the target folder does not exist";
        QTest::newRow("write fails (file size limit)") << "big.bin" << "" << "big.bin: File too large";
        QTest::newRow("write fails (file size limit), named temporary")
            << "big.bin" << "" << "big.bin: File too large";
        QTest::newRow("target folder not writable") << "big.bin" << "locked"
                                                    << "big.bin: Permission denied";
        QTest::newRow("FIFO") << "pipe" << ""
                              << "pipe: not a regular file, folder or link (a FIFO, socket or "
                                 "device); not copied";
        QTest::newRow("folder into itself") << "tree" << "tree/inner"
                                            << "tree: a folder cannot be copied into itself";
    }

    void failures()
    {
        QFETCH(QString, source);
        QFETCH(QString, typed);
        const bool limited = QByteArray(QTest::currentDataTag()).contains("limit");
        const bool named = QByteArray(QTest::currentDataTag()).contains("named");
        if (typed == "locked" && ::geteuid() == 0)
            QSKIP("permissions do not bind the super-user");
        TestDir dir;
        dir.createFile("src/big.bin", QByteArray(2 << 20, 'x'));
        dir.createFile("src/tree/inner/file.sql", "f");
        QCOMPARE(::mkfifo(native(dir.filePath("src/pipe")), 0600), 0);
        const QString locked = dir.createDir("src/locked");
        QFile::setPermissions(locked, QFile::ReadOwner | QFile::ExeOwner);
        const QString dst = dir.createDir("dst");
        const QMap<QByteArray, QByteArray> before = snapshot(native(dir.path()));

        CopyObjects copy({dir.filePath("src/" + source)}, dst);
        copy.setPrompt([&](QString &text) {
            if (!typed.isEmpty())
                text = dir.filePath("src/" + typed) + "/";
            return true;
        });
        copy.setNotify([](const QString &) {});
        rlimit saved;
        if (limited) {
            // A real write failure: the kernel refuses to let the file grow past 64 KiB.
            std::signal(SIGXFSZ, SIG_IGN);
            ::getrlimit(RLIMIT_FSIZE, &saved);
            rlimit small = saved;
            small.rlim_cur = 64 * 1024;
            ::setrlimit(RLIMIT_FSIZE, &small);
        }
        FileCopier::setWriting(named ? FileCopier::HiddenNames : FileCopier::UnnamedFiles);
        const FileCopier::Summary summary = runCopy(copy);
        FileCopier::setWriting(FileCopier::UnnamedFiles);
        if (limited)
            ::setrlimit(RLIMIT_FSIZE, &saved);
        QFile::setPermissions(locked, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);

        QTEST(failedPaths(summary).join('|'), "failure");
        // Nothing half-written anywhere.
        QCOMPARE(snapshot(native(dir.path())), before);
    }

    void cancelDuringCopy()
    {
        TestDir dir;
        QStringList sources;
        for (int i = 0; i < 40; ++i)
            sources << dir.createFile(QStringLiteral("src/f%1.bin").arg(i), QByteArray(4 << 20, 'x'));
        const QString dst = dir.createDir("dst");
        QWidget window;
        window.show();
        CopyObjects copy(sources, dst, &window);
        copy.setPrompt([](QString &) { return true; });
        QStringList shown;
        copy.setNotify([&shown](const QString &message) { shown << message; });
        // Ctrl+K in the progress window, which has the focus while it is up, as soon as
        // the first progress report arrives.
        connect(&copy, &CopyObjects::progress, &copy, [&window] {
            auto *progress = window.findChild<QProgressDialog *>();
            if (!progress || progress->isVisible())
                return;
            progress->show();
            QApplication::setActiveWindow(progress);
            QTest::keyClick(progress, Qt::Key_K, Qt::ControlModifier);
        });
        const FileCopier::Summary summary = runCopy(copy);
        QVERIFY(summary.cancelled);
        QCOMPARE(shown.size(), 1);
        QVERIFY(shown.first().startsWith("Copy cancelled: "));
        // What was copied is whole; the file in progress left nothing behind.
        const QStringList left = QDir(dst).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        QCOMPARE(left.size(), summary.copied);
        QVERIFY(left.size() < sources.size());
        for (const QString &name : left)
            QCOMPARE(QFileInfo(dst + QLatin1Char('/') + name).size(), qint64(4 << 20));
    }

    void dialogsInTheWindow()
    {
        TestDir dir;
        dir.createFile("left/a.sql", "new");
        dir.createFile("right/a.sql", "old");
        {
            Settings settings;
            settings.setValue("Main Window/leftPanel/Path", dir.filePath("left"));
            settings.setValue("Main Window/rightPanel/Path", dir.filePath("right"));
        }
        MainWindow window(nullptr, qApp, QString());
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        PanelManager *manager = window.panelManager();
        TreeWidget *tree = manager->leftPanel()->fileSystemView()->treeWidget();
        tree->setFocus();
        int row = 0;
        while (row < tree->fileModel()->count() && tree->fileModel()->rowAt(row).name != "a")
            ++row;
        QVERIFY(row < tree->fileModel()->count());
        tree->setCurrentRow(row);

        // F6, Enter in the target dialog; the name is taken: Rename, for all.
        QSignalSpy copied(manager, &PanelManager::copyFinished);
        QString defaultChoice, summary;
        onBox("\"a.sql\" already exists", [&](QMessageBox *box) {
            defaultChoice = box->defaultButton()->text();
            box->checkBox()->setChecked(true);
            const auto buttons = box->buttons();
            for (QAbstractButton *button : buttons) {
                if (button->text() == QStringLiteral("&Rename"))
                    QTest::mouseClick(button, Qt::LeftButton);
            }
            onBox("Copy finished", [&](QMessageBox *end) {
                summary = end->text();
                QTest::keyClick(end, Qt::Key_Enter);
            });
        });
        onModal([](QWidget *dialog) { QTest::keyClick(dialog, Qt::Key_Enter); });
        QTest::keyClick(tree, Qt::Key_F6);
        QVERIFY(copied.wait());
        QTRY_VERIFY(!summary.isEmpty());
        QCOMPARE(defaultChoice, QStringLiteral("&Skip"));
        QCOMPARE(summary, QStringLiteral("Copy finished: 1 copied, 0 skipped, 0 failed."));
        QCOMPARE(snapshot(native(dir.filePath("right"))),
                 (QMap<QByteArray, QByteArray>{{"a.sql", "old"}, {"a (1).sql", "new"}}));

        // F8 asks with No as the default: Enter keeps the file.
        bool defaultNo = false;
        onModal([&defaultNo](QWidget *modal) {
            auto *box = qobject_cast<QMessageBox *>(modal);
            defaultNo = box && box->defaultButton() == box->button(QMessageBox::No);
            QTest::keyClick(modal, Qt::Key_Enter);
        });
        QTest::keyClick(tree, Qt::Key_F8);
        QVERIFY(defaultNo);
        QVERIFY(QFile::exists(dir.filePath("left/a.sql")));
    }
};

QTEST_MAIN(TestFileOperations)
#include "tst_fileoperations.moc"
