#include "testsupport.h"

#include "fileinfomap.h"
#include "flatfileview.h"
#include "treewidget.h"

#include <QElapsedTimer>

/** A walk that lingers on every entry, so that stopping it can be watched. */
class SlowFlatFileView : public FlatFileView
{
public:
    std::atomic<bool> ignoreStop{false};
    std::atomic<bool> started{false};

protected:
    void run() override
    {
        started.store(true);
        if (ignoreStop.load()) {
            // A walk stuck in a system call that never sees the flag.
            for (;;)
                QThread::msleep(5);
        }
        while (!isStopRequested())
            QThread::msleep(1);
    }
};

class TestFlatFileView : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { useTestSettings(); }
    void listsFilesOfAllFolders();
    void symlinkLoopListedOnce();
    void stop_data();
    void stop();
    void restartDropsOldRows();

private:
    static QStringList listing(const QString &root, bool withParent = true,
                               TreeWidget *treeOut = nullptr);
};

QStringList TestFlatFileView::listing(const QString &root, bool withParent, TreeWidget *treeOut)
{
    TreeWidget localTree;
    TreeWidget *tree = treeOut ? treeOut : &localTree;
    FlatFileView view;
    FileInfoMap map;
    bool done = false;
    view.setDoneCallback([&done] { done = true; });
    view.setColumns(tree);
    view.showObjects(tree, root, map, withParent);
    if (!QTest::qWaitFor([&done] { return done; }, 10000))
        return {QStringLiteral("timeout")};
    QStringList rows;
    for (int i = 0; i < tree->topLevelItemCount(); ++i) {
        const QTreeWidgetItem *item = tree->topLevelItem(i);
        rows << item->text(0) + QLatin1Char('|') + item->text(1) + QLatin1Char('|')
                + item->text(2);
        if (!map.contains(FileInfoMap::keyOf(item)))
            rows << QStringLiteral("row without map entry");
    }
    rows.sort();
    return rows;
}

void TestFlatFileView::listsFilesOfAllFolders()
{
    TestDir dir;
    dir.createFile("top.sql", "1");
    dir.createFile("a/one.txt");
    dir.createFile("a/b/two.tar.gz");
    dir.createDir("empty");
    dir.createFile("a/.hidden");
    TreeWidget tree;
    QCOMPARE(listing(dir.path(), true, &tree),
             QStringList({"a/b|two.tar|gz", "a|one|txt", "|..|", "|top|sql"}));
    QCOMPARE(tree.headerItem()->text(0), QStringLiteral("Directory"));
    // Flat rows are not renamed in place.
    QVERIFY(!(tree.topLevelItem(0)->flags() & Qt::ItemIsEditable));
    QCOMPARE(listing(dir.path(), false), QStringList({"a/b|two.tar|gz", "a|one|txt", "|top|sql"}));
}

void TestFlatFileView::symlinkLoopListedOnce()
{
    TestDir dir;
    dir.createFile("a/file.sql");
    // A loop back to the root, a second way into "a" and a dangling link.
    QVERIFY(QFile::link(dir.path(), dir.filePath("a/loop")));
    QVERIFY(QFile::link(dir.filePath("a"), dir.filePath("twin")));
    QVERIFY(QFile::link(dir.filePath("nowhere"),
                        dir.filePath("dangling")));
    const QStringList rows = listing(dir.path(), false);
    QCOMPARE(rows.filter("file|sql").size(), 1);
    QVERIFY2(rows.size() <= 2, qPrintable(rows.join(QLatin1Char(','))));
}

void TestFlatFileView::stop_data()
{
    QTest::addColumn<bool>("stuck");
    QTest::newRow("walk sees the request") << false;
    QTest::newRow("stuck walk is terminated") << true;
}

void TestFlatFileView::stop()
{
    QFETCH(bool, stuck);
    TreeWidget tree;
    SlowFlatFileView view;
    FileInfoMap map;
    view.ignoreStop.store(stuck);
    view.setStopTimeout(200);
    view.setColumns(&tree);
    view.showObjects(&tree, QDir::tempPath(), map);
    QTRY_VERIFY(view.started.load());
    QElapsedTimer timer;
    timer.start();
    view.stop();
    QVERIFY(!view.isRunning());
    QVERIFY(!view.isBusy());
    QCOMPARE(timer.elapsed() >= 200, stuck);
}

void TestFlatFileView::restartDropsOldRows()
{
    TestDir first;
    TestDir second;
    for (int i = 0; i < 2000; ++i)
        first.createFile(QStringLiteral("d%1/f.sql").arg(i % 50) + QString::number(i));
    second.createFile("only.txt");
    TreeWidget tree;
    FlatFileView view;
    FileInfoMap map;
    bool done = false;
    view.setDoneCallback([&done] { done = true; });
    view.setColumns(&tree);
    view.showObjects(&tree, first.path(), map, false);
    // A new listing replaces the old one, whatever the old one had sent.
    view.stop();
    tree.clear();
    map.clear();
    view.showObjects(&tree, second.path(), map, false);
    QTRY_VERIFY(done);
    QCoreApplication::processEvents();
    QCOMPARE(tree.topLevelItemCount(), 1);
    QCOMPARE(tree.topLevelItem(0)->text(1), QStringLiteral("only"));
}

QTEST_MAIN(TestFlatFileView)
#include "tst_flatfileview.moc"
