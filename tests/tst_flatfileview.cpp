#include "testsupport.h"

#include "filelistmodel.h"
#include "flatfileview.h"
#include "treewidget.h"

#include <QElapsedTimer>

namespace {

// Each row as "directory|name|extension", sorted; a row its own key does not find is flagged.
QStringList rows(const FileListModel &model)
{
    QStringList rows;
    for (int i = 0; i < model.count(); ++i) {
        rows << QStringList{model.index(i, 0).data().toString(), model.index(i, 1).data().toString(),
                            model.index(i, 2).data().toString()}.join(QLatin1Char('|'));
        if (model.rowOf(model.index(i, 0).data(FileListModel::KeyRole).toString()) != i)
            rows << QStringLiteral("row not found by its key");
    }
    rows.sort();
    return rows;
}

void fill(const TestDir &dir, int files)
{
    for (int i = 0; i < files; ++i)
        dir.createFile(QStringLiteral("d%1/f%2.sql").arg(i % 50).arg(i));
}

// Lists each of @p roots in turn in one view, each replacing the one before, and returns the
// rows once the walk ends (and a moment after, for rows that would come late).
QStringList listing(const QStringList &roots, bool withParent = true, TreeWidget *treeOut = nullptr)
{
    TreeWidget localTree;
    TreeWidget *tree = treeOut ? treeOut : &localTree;
    FlatFileView view;
    bool done = false;
    view.setDoneCallback([&done] { done = true; });
    view.setColumns(tree);
    for (const QString &root : roots) {
        tree->fileModel()->clear();
        view.showObjects(tree->fileModel(), root, withParent);
    }
    if (!QTest::qWaitFor([&done] { return done; }, 10000))
        return {QStringLiteral("timeout")};
    QTest::qWait(100);
    return rows(*tree->fileModel());
}

} // namespace

class TestFlatFileView : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { useTestSettings(); }

    void listsFilesOfAllFolders()
    {
        TestDir dir;
        dir.createFile("top.sql", "1");
        dir.createFile("a/one.txt");
        dir.createFile("a/b/two.tar.gz");
        dir.createDir("empty");
        dir.createFile("a/.hidden");
        TreeWidget tree;
        QCOMPARE(listing({dir.path()}, true, &tree),
                 QStringList({"a/b|two.tar|gz", "a|one|txt", "|..|", "|top|sql"}));
        // A cut Directory shows whole as a tip.
        const QModelIndexList deep = tree.model()->match(tree.model()->index(0, 1), Qt::DisplayRole,
                                                         QStringLiteral("two.tar"));
        QCOMPARE(deep.size(), 1);
        QCOMPARE(deep.first().siblingAtColumn(0).data(Qt::ToolTipRole).toString(),
                 QStringLiteral("a/b"));
        // Flat rows are not renamed in place.
        QVERIFY(!(tree.model()->index(0, 1).flags() & Qt::ItemIsEditable));
        QCOMPARE(listing({dir.path()}, false),
                 QStringList({"a/b|two.tar|gz", "a|one|txt", "|top|sql"}));
    }

    void symlinkLoopListedOnce()
    {
        TestDir dir;
        dir.createFile("a/file.sql");
        // A loop back to the root, a second way into "a" and a dangling link.
        QVERIFY(QFile::link(dir.path(), dir.filePath("a/loop")));
        QVERIFY(QFile::link(dir.filePath("a"), dir.filePath("twin")));
        QVERIFY(QFile::link(dir.filePath("nowhere"), dir.filePath("dangling")));
        const QStringList rows = listing({dir.path()}, false);
        QCOMPARE(rows.filter("file|sql").size(), 1);
        QVERIFY2(rows.size() <= 2, qPrintable(rows.join(QLatin1Char(','))));
    }

    // A new listing replaces the old one, whatever the old one had sent.
    void restartDropsOldRows()
    {
        TestDir first;
        TestDir second;
        fill(first, 2000);
        second.createFile("only.txt");
        QCOMPARE(listing({first.path(), second.path()}, false), QStringList({"|only|txt"}));
    }

    void stop_data()
    {
        QTest::addColumn<bool>("destroy");
        QTest::newRow("stopped") << false;
        QTest::newRow("destroyed while walking") << true;
    }

    void stop()
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
};

QTEST_MAIN(TestFlatFileView)
#include "tst_flatfileview.moc"
