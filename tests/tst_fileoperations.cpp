#include "testsupport.h"

#include "copyobjects.h"
#include "copytobuffer.h"
#include "filecopier.h"
#include "filesystemview.h"
#include "treewidget.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QVBoxLayout>
#include <QWidget>

class TestFileOperations : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { useTestSettings(); }
    void copyOne_data();
    void copyOne();
    void copySeveral();
    void copyCancelledInDialog();
    void cancelLeavesNoPartialFile();
    void cancelDuringCopy();
    void clipboardText();
};

void TestFileOperations::copyOne_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("edited");  // empty: keep the proposal
    QTest::addColumn<QString>("expectTarget");
    QTest::addColumn<QStringList>("messages");
    QTest::newRow("file") << "src/a.sql" << "" << "dst/a.sql" << QStringList();
    QTest::newRow("onto an existing file") << "src/same.sql" << "" << "dst/same.sql"
                                           << QStringList({"File exist '%1'"});
    QTest::newRow("renamed in the dialog") << "src/a.sql" << "dst/other name.sql"
                                           << "dst/other name.sql" << QStringList();
    QTest::newRow("folder creates an empty folder") << "src/folder" << "" << "dst/folder"
                                                    << QStringList();
    QTest::newRow("no suffix") << "src/-dash" << "" << "dst/-dash" << QStringList();
}

void TestFileOperations::copyOne()
{
    QFETCH(QString, source);
    QFETCH(QString, edited);
    QFETCH(QString, expectTarget);
    QFETCH(QStringList, messages);
    TestDir dir;
    dir.createFile(QStringLiteral("src/a.sql"), "alpha");
    dir.createFile(QStringLiteral("src/-dash"), "dash");
    dir.createFile(QStringLiteral("src/same.sql"), "new");
    dir.createFile(QStringLiteral("dst/same.sql"), "old");
    dir.createFile(QStringLiteral("src/folder/inside.sql"), "in");
    dir.createDir(QStringLiteral("dst"));

    CopyObjects copy({dir.filePath(source)}, dir.filePath(QStringLiteral("dst")));
    QString proposed;
    copy.setPrompt([&](QString &target) {
        proposed = target;
        if (!edited.isEmpty())
            target = dir.filePath(edited);
        return true;
    });
    QStringList shown;
    copy.setNotify([&shown](const QString &message) { shown << message; });
    QVERIFY(copy.execute());
    QCOMPARE(proposed, QDir::toNativeSeparators(
                           dir.filePath(QStringLiteral("dst/") + QFileInfo(source).fileName())));
    const QString target = dir.filePath(expectTarget);
    for (QString &message : messages)
        message = message.arg(QDir::toNativeSeparators(target));
    QCOMPARE(shown, messages);
    QVERIFY(QFileInfo::exists(target));
    if (QFileInfo(source).fileName() == QLatin1String("same.sql")) {
        QFile old(target);
        QVERIFY(old.open(QIODevice::ReadOnly));
        QCOMPARE(old.readAll(), QByteArray("old"));
    } else if (QFileInfo(target).isDir()) {
        QVERIFY(QDir(target).isEmpty());
    } else {
        QCOMPARE(QFileInfo(target).size(), QFileInfo(dir.filePath(source)).size());
    }
    // Nothing else appeared in the target folder (no temporary files).
    QCOMPARE(QDir(dir.filePath(QStringLiteral("dst")))
                 .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)
                 .size(),
             QFileInfo(source).fileName() == QLatin1String("same.sql") ? 1 : 2);
}

void TestFileOperations::copySeveral()
{
    TestDir dir;
    const QString a = dir.createFile(QStringLiteral("src/a.sql"), "a");
    const QString b = dir.createFile(QStringLiteral("src/b.sql"), "b");
    const QString folder = dir.createDir(QStringLiteral("src/f"));
    dir.createFile(QStringLiteral("dst/b.sql"), "old");
    const QString dst = dir.filePath(QStringLiteral("dst"));
    QStringList shown;
    QString proposed;

    CopyObjects copy({a, b, folder}, dst);
    copy.setPrompt([&proposed](QString &target) {
        proposed = target;
        return true;
    });
    copy.setNotify([&shown](const QString &message) { shown << message; });
    // The last copy (the folder) worked, which gives false.
    QVERIFY(!copy.execute());
    QCOMPARE(proposed, QDir::toNativeSeparators(dst));
    QCOMPARE(shown, QStringList({CopyObjects::existsMessage(dst + QStringLiteral("/a.sql")),
                                 CopyObjects::existsMessage(dst + QStringLiteral("/f"))}));
    QVERIFY(QFileInfo(dst + QStringLiteral("/f")).isDir());

    // The last one fails: true; nothing is overwritten.
    shown.clear();
    CopyObjects again({a, b}, dst);
    again.setPrompt([](QString &) { return true; });
    again.setNotify([&shown](const QString &message) { shown << message; });
    QVERIFY(again.execute());
    QVERIFY(shown.isEmpty());
    QFile old(dst + QStringLiteral("/b.sql"));
    QVERIFY(old.open(QIODevice::ReadOnly));
    QCOMPARE(old.readAll(), QByteArray("old"));
}

void TestFileOperations::copyCancelledInDialog()
{
    TestDir dir;
    const QString a = dir.createFile(QStringLiteral("a.sql"), "a");
    const QString dst = dir.createDir(QStringLiteral("dst"));
    for (const QStringList &sources : {QStringList{a}, QStringList{a, a}}) {
        CopyObjects copy(sources, dst);
        copy.setPrompt([](QString &) { return false; });
        QVERIFY(!copy.execute());
    }
    QVERIFY(QDir(dst).isEmpty());
}

void TestFileOperations::cancelLeavesNoPartialFile()
{
    TestDir dir;
    const QString big = dir.createFile(QStringLiteral("big.bin"), QByteArray(5 * 1024 * 1024, 'b'));
    const QString target = dir.filePath(QStringLiteral("dst/big.bin"));
    dir.createDir(QStringLiteral("dst"));
    std::atomic<bool> cancel{false};
    int chunks = 0;
    const FileCopier::Result result = FileCopier::copyOne(big, target, cancel, [&](qint64) {
        if (++chunks == 2)
            cancel.store(true);
    });
    QCOMPARE(result, FileCopier::Cancelled);
    QVERIFY(QDir(dir.filePath(QStringLiteral("dst")))
                .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)
                .isEmpty());
}

void TestFileOperations::cancelDuringCopy()
{
    TestDir dir;
    QStringList sources;
    for (int i = 0; i < 40; ++i)
        sources << dir.createFile(QStringLiteral("src/f%1.bin").arg(i), QByteArray(4 << 20, 'x'));
    const QString dst = dir.createDir(QStringLiteral("dst"));
    CopyObjects copy(sources, dst);
    copy.setShowProgress(false);
    copy.setPrompt([](QString &) { return true; });
    QStringList shown;
    copy.setNotify([&shown](const QString &message) { shown << message; });
    QList<Qt::CursorShape> cursors;
    connect(&copy, &CopyObjects::turnWaitingMode, this,
            [&cursors](Qt::CursorShape shape) { cursors << shape; });
    // Cancel as soon as the first progress report arrives (as Ctrl+K would).
    connect(&copy, &CopyObjects::progress, &copy, &CopyObjects::cancel);
    QVERIFY(!copy.execute());
    QVERIFY(shown.isEmpty());
    QCOMPARE(cursors, QList<Qt::CursorShape>({Qt::BusyCursor, Qt::ArrowCursor}));
    const QStringList left = QDir(dst).entryList(QDir::AllEntries | QDir::Hidden
                                                 | QDir::NoDotAndDotDot);
    QVERIFY(left.size() < sources.size());
    for (const QString &name : left) {
        QVERIFY2(!name.startsWith(QLatin1Char('.')), qPrintable(name));
        QCOMPARE(QFileInfo(dst + QLatin1Char('/') + name).size(), qint64(4 << 20));
    }
}

void TestFileOperations::clipboardText()
{
    TestDir dir;
    dir.createFile(QStringLiteral("a b.sql"), QByteArray(1500, 'x'));
    dir.createFile(QStringLiteral("c"), "");
    QWidget window;
    auto *layout = new QVBoxLayout(&window);
    FileSystemView view;
    view.init(layout, &window, nullptr);
    QVERIFY(view.changePath(dir.path()));
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    TreeWidget *tree = view.treeWidget();
    tree->clearSelection();
    tree->topLevelItem(1)->setSelected(true);
    tree->topLevelItem(2)->setSelected(true);
    tree->setFocus();
    QApplication::clipboard()->clear();
    QTest::keyClick(tree, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(),
             QStringLiteral("a b sql %1\nc  0\n").arg(QStringLiteral("%L1").arg(1500)));
    QCOMPARE(tree->actions().first()->text(), QStringLiteral("&Copy"));
}

QTEST_MAIN(TestFileOperations)
#include "tst_fileoperations.moc"
