#include "testsupport.h"

#include "fileinfomap.h"
#include "fullfileview.h"
#include "treewidget.h"

#include <QApplication>
#include <QHeaderView>

class TestFileView : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { useTestSettings(); }
    void cellTexts_data();
    void cellTexts();
    void dateText_data();
    void dateText();
    void listingOrderAndParentRow();
    void emptyFolderShowsOnlyParent();
    void mask_data();
    void mask();
    void oddNames();
    void findRowMatchesPrefixAndExactExt();
    void hundredThousandFiles();

private:
    static QStringList rowTexts(const TreeWidget &tree, int row);
};

QStringList TestFileView::rowTexts(const TreeWidget &tree, int row)
{
    QStringList texts;
    for (int c = 0; c < tree.columnCount(); ++c)
        texts << tree.topLevelItem(row)->text(c);
    return texts;
}

void TestFileView::cellTexts_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("ext");
    QTest::addColumn<QString>("size");
    QTest::newRow("plain") << "a.sql" << QByteArray(12, 'x') << "a" << "sql" << "12";
    QTest::newRow("no suffix") << "Makefile" << QByteArray() << "Makefile" << "" << "0";
    QTest::newRow("two suffixes") << "archive.tar.gz" << QByteArray(3, 'x') << "archive.tar"
                                  << "gz" << "3";
    QTest::newRow("grouped size") << "big.bin" << QByteArray(1234567, 'x') << "big" << "bin"
                                  << QStringLiteral("%L1").arg(1234567);
}

void TestFileView::cellTexts()
{
    QFETCH(QString, fileName);
    QFETCH(QByteArray, bytes);
    TestDir dir;
    dir.createFile(fileName, bytes);
    TreeWidget tree;
    FullFileView view;
    FileInfoMap map;
    view.setColumns(&tree);
    view.showObjects(&tree, dir.path(), map);
    QCOMPARE(tree.topLevelItemCount(), 2);
    const QStringList texts = rowTexts(tree, 1);
    QTEST(texts.at(0), "name");
    QTEST(texts.at(1), "ext");
    QTEST(texts.at(2), "size");
    QCOMPARE(texts.at(3), FileView::dateText(QFileInfo(dir.filePath(fileName)).lastModified(),
                                             FileView::usesUsTime()));
    // The row leads back to its file through the map.
    bool found = false;
    QCOMPARE(map.value(tree.topLevelItem(1), &found).fileName(), fileName);
    QVERIFY(found);
    QVERIFY(tree.topLevelItem(1)->flags() & Qt::ItemIsEditable);
}

void TestFileView::dateText_data()
{
    QTest::addColumn<QDateTime>("time");
    QTest::addColumn<bool>("usTime");
    QTest::addColumn<QString>("text");
    QTest::newRow("24 hours") << QDateTime(QDate(2023, 3, 7), QTime(14, 5)) << false
                              << "07.03.2023 14:05";
    QTest::newRow("united states afternoon") << QDateTime(QDate(2023, 3, 7), QTime(14, 5))
                                             << true << "07.03.2023 02:05 pm";
    QTest::newRow("united states morning") << QDateTime(QDate(2023, 12, 31), QTime(9, 30))
                                           << true << "31.12.2023 09:30 am";
    QTest::newRow("short year padded with blanks") << QDateTime(QDate(999, 1, 2), QTime(0, 0))
                                                   << false << "02.01. 999 00:00";
}

void TestFileView::dateText()
{
    QFETCH(QDateTime, time);
    QFETCH(bool, usTime);
    QTEST(FileView::dateText(time, usTime).toLower(), "text");
}

void TestFileView::listingOrderAndParentRow()
{
    TestDir dir;
    dir.createFile(QStringLiteral("b.txt"));
    dir.createFile(QStringLiteral("A.txt"));
    dir.createDir(QStringLiteral("zeta"));
    dir.createDir(QStringLiteral("Alpha"));
    dir.createFile(QStringLiteral(".hidden"));
    TreeWidget tree;
    FullFileView view;
    FileInfoMap map;
    view.setColumns(&tree);
    view.showObjects(&tree, dir.path(), map);
    QStringList names;
    for (int i = 0; i < tree.topLevelItemCount(); ++i)
        names << tree.topLevelItem(i)->text(0);
    QCOMPARE(names, QStringList({"..", "Alpha", "zeta", "A", "b"}));
    QCOMPARE(rowTexts(tree, 0), QStringList({"..", "", "<Dir>", ""}));
    QCOMPARE(tree.topLevelItem(1)->text(2), QStringLiteral("<Dir>"));
    QCOMPARE(tree.headerItem()->text(0), QStringLiteral("Name"));
    QCOMPARE(tree.headerItem()->text(3), QStringLiteral("Date"));

    // A click on "Size" sorts by value and keeps ".." and folders on top.
    dir.createFile(QStringLiteral("c.txt"), QByteArray(100, 'x'));
    tree.clear();
    map.clear();
    view.showObjects(&tree, dir.path(), map);
    Q_EMIT tree.header()->sectionClicked(2);
    Q_EMIT tree.header()->sectionClicked(2);
    names.clear();
    for (int i = 0; i < tree.topLevelItemCount(); ++i)
        names << tree.topLevelItem(i)->text(0);
    QCOMPARE(names.mid(0, 3), QStringList({"..", "zeta", "Alpha"}));
    QCOMPARE(names.mid(3), QStringList({"c", "b", "A"}));
}

void TestFileView::emptyFolderShowsOnlyParent()
{
    TestDir dir;
    TreeWidget tree;
    FullFileView view;
    FileInfoMap map;
    view.setColumns(&tree);
    view.showObjects(&tree, dir.path(), map);
    QCOMPARE(tree.topLevelItemCount(), 1);
    QCOMPARE(rowTexts(tree, 0), QStringList({"..", "", "<Dir>", ""}));
    int count = -1;
    qint64 size = -1;
    view.countRows(&tree, map, &count, &size);
    QCOMPARE(count, 0);
    QCOMPARE(size, 0);
}

void TestFileView::mask_data()
{
    QTest::addColumn<QString>("mask");
    QTest::addColumn<QStringList>("rows");
    QTest::addColumn<bool>("filtered");
    const QStringList all{"..", "sub.sql", "a", "b", "c", "Makefile"};
    QTest::newRow("everything") << "*.*" << all << false;
    QTest::newRow("one mask keeps folders") << "*.sql" << QStringList({"..", "sub.sql", "a", "c"})
                                            << true;
    QTest::newRow("several masks") << "*.sql; *.txt" << QStringList({"..", "sub.sql", "a", "b", "c"})
                                   << true;
    QTest::newRow("question mark") << "?.txt" << QStringList({"..", "sub.sql", "b"}) << true;
    QTest::newRow("blank means everything") << "  " << all << false;
}

void TestFileView::mask()
{
    QFETCH(QString, mask);
    TestDir dir;
    dir.createDir(QStringLiteral("sub.sql"));
    dir.createFile(QStringLiteral("a.sql"));
    dir.createFile(QStringLiteral("b.txt"));
    dir.createFile(QStringLiteral("c.SQL"));
    dir.createFile(QStringLiteral("Makefile"));
    TreeWidget tree;
    FullFileView view;
    FileInfoMap map;
    view.setMask(mask);
    view.setColumns(&tree);
    view.showObjects(&tree, dir.path(), map);
    QStringList rows;
    for (int i = 0; i < tree.topLevelItemCount(); ++i)
        rows << tree.topLevelItem(i)->text(0);
    QTEST(rows, "rows");
    QTEST(view.isFiltered(), "filtered");
}

void TestFileView::oddNames()
{
    TestDir dir;
    const QStringList names{"with space.sql", "quote's \"x\".txt", "Ärger.sql", "-dash.sql",
                            "new\nline.sql"};
    for (const QString &name : names)
        dir.createFile(name, "x");
    TreeWidget tree;
    FullFileView view;
    FileInfoMap map;
    view.setColumns(&tree);
    view.showObjects(&tree, dir.path(), map);
    QCOMPARE(tree.topLevelItemCount(), names.size() + 1);
    for (int i = 1; i < tree.topLevelItemCount(); ++i) {
        const QFileInfo info = map.value(tree.topLevelItem(i));
        QVERIFY2(names.contains(info.fileName()), qPrintable(info.fileName()));
        QVERIFY(info.exists());
    }
}

void TestFileView::findRowMatchesPrefixAndExactExt()
{
    TestDir dir;
    dir.createFile(QStringLiteral("abcd.sql"));
    dir.createFile(QStringLiteral("abc.txt"));
    TreeWidget tree;
    FullFileView view;
    FileInfoMap map;
    view.setColumns(&tree);
    view.showObjects(&tree, dir.path(), map);
    QTreeWidgetItem *row = view.findRow(&tree, QStringLiteral("abc"), QStringLiteral("sql"));
    QVERIFY(row);
    QCOMPARE(row->text(0), QStringLiteral("abcd"));
    QCOMPARE(view.findRow(&tree, QStringLiteral("abc"), QStringLiteral("txt"))->text(0),
             QStringLiteral("abc"));
    QVERIFY(!view.findRow(&tree, QStringLiteral("abc"), QStringLiteral("sq")));
}

void TestFileView::hundredThousandFiles()
{
    TestDir dir;
    const int files = 100000;
    for (int i = 0; i < files; ++i) {
        QFile file(dir.filePath(QStringLiteral("f%1.txt").arg(i)));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    TreeWidget tree;
    FullFileView view;
    FileInfoMap map;
    view.setColumns(&tree);
    view.showObjects(&tree, dir.path(), map);
    QCOMPARE(tree.topLevelItemCount(), files + 1);
    QCOMPARE(map.size(), files + 1);
}

QTEST_MAIN(TestFileView)
#include "tst_fileview.moc"
