#include "testsupport.h"

#include "filelistmodel.h"
#include "flatfileview.h"
#include "treewidget.h"

#include <QElapsedTimer>

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
    static QStringList rows(const FileListModel &model);
    static void fill(const TestDir &dir, int files);
};

QStringList TestFlatFileView::rows(const FileListModel &model)
{
    QStringList rows;
    for (int i = 0; i < model.count(); ++i) {
        rows << model.index(i, 0).data().toString() + QLatin1Char('|')
                + model.index(i, 1).data().toString() + QLatin1Char('|')
                + model.index(i, 2).data().toString();
        const QString key = model.index(i, 0).data(FileListModel::KeyRole).toString();
        if (model.rowOf(key) != i)
            rows << QStringLiteral("row not found by its key");
    }
    rows.sort();
    return rows;
}

void TestFlatFileView::fill(const TestDir &dir, int files)
{
    for (int i = 0; i < files; ++i)
        dir.createFile(QStringLiteral("d%1/f%2.sql").arg(i % 50).arg(i));
}

QStringList TestFlatFileView::listing(const QString &root, bool withParent, TreeWidget *treeOut)
{
    TreeWidget localTree;
    TreeWidget *tree = treeOut ? treeOut : &localTree;
    FlatFileView view;
    bool done = false;
    view.setDoneCallback([&done] { done = true; });
    view.setColumns(tree);
    view.showObjects(tree->fileModel(), root, withParent);
    if (!QTest::qWaitFor([&done] { return done; }, 10000))
        return {QStringLiteral("timeout")};
    return rows(*tree->fileModel());
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
    QCOMPARE(tree.model()->headerData(0, Qt::Horizontal).toString(), QStringLiteral("Directory"));
    // A cut Directory keeps its distinctive end in view and shows whole as a tip.
    QCOMPARE(tree.textElideMode(), Qt::ElideMiddle);
    const QModelIndexList deep = tree.model()->match(tree.model()->index(0, 1), Qt::DisplayRole,
                                                     QStringLiteral("two.tar"));
    QCOMPARE(deep.size(), 1);
    QCOMPARE(deep.first().siblingAtColumn(0).data(Qt::ToolTipRole).toString(),
             QStringLiteral("a/b"));
    // Flat rows are not renamed in place.
    QVERIFY(!(tree.model()->index(0, 1).flags() & Qt::ItemIsEditable));
    QCOMPARE(listing(dir.path(), false), QStringList({"a/b|two.tar|gz", "a|one|txt", "|top|sql"}));
}

void TestFlatFileView::symlinkLoopListedOnce()
{
    TestDir dir;
    dir.createFile("a/file.sql");
    // A loop back to the root, a second way into "a" and a dangling link.
    QVERIFY(QFile::link(dir.path(), dir.filePath("a/loop")));
    QVERIFY(QFile::link(dir.filePath("a"), dir.filePath("twin")));
    QVERIFY(QFile::link(dir.filePath("nowhere"), dir.filePath("dangling")));
    const QStringList rows = listing(dir.path(), false);
    QCOMPARE(rows.filter("file|sql").size(), 1);
    QVERIFY2(rows.size() <= 2, qPrintable(rows.join(QLatin1Char(','))));
}

void TestFlatFileView::stop_data()
{
    QTest::addColumn<bool>("destroy");
    QTest::newRow("stopped") << false;
    QTest::newRow("destroyed while walking") << true;
}

void TestFlatFileView::stop()
{
    QFETCH(bool, destroy);
    TestDir dir;
    fill(dir, 3000);
    TreeWidget tree;
    auto view = std::make_unique<FlatFileView>();
    view->setColumns(&tree);
    view->showObjects(tree.fileModel(), dir.path());
    QVERIFY(view->isBusy());
    // Stopping never waits for the walk, and nothing arrives after it.
    QElapsedTimer timer;
    timer.start();
    if (destroy)
        view.reset();
    else
        view->stop();
    QVERIFY(timer.elapsed() < 1000);
    QVERIFY(!view || !view->isBusy());
    const int rowsAtStop = tree.fileModel()->count();
    QTest::qWait(300);
    QCOMPARE(tree.fileModel()->count(), rowsAtStop);
}

void TestFlatFileView::restartDropsOldRows()
{
    TestDir first;
    TestDir second;
    fill(first, 2000);
    second.createFile("only.txt");
    TreeWidget tree;
    FlatFileView view;
    bool done = false;
    view.setDoneCallback([&done] { done = true; });
    view.setColumns(&tree);
    view.showObjects(tree.fileModel(), first.path(), false);
    // A new listing replaces the old one, whatever the old one had sent.
    tree.fileModel()->clear();
    view.showObjects(tree.fileModel(), second.path(), false);
    QTRY_VERIFY(done);
    QTest::qWait(100);
    QCOMPARE(rows(*tree.fileModel()), QStringList({"|only|txt"}));
}

QTEST_MAIN(TestFlatFileView)
#include "tst_flatfileview.moc"
