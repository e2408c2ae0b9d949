#include "testsupport.h"

#include "filelisting.h"
#include "filelistmodel.h"
#include "fullfileview.h"
#include "treewidget.h"

#include <QApplication>
#include <QHeaderView>

#include <sys/stat.h>

namespace {
/** One folder shown in the full view. */
struct Listing
{
    TreeWidget tree;
    FullFileView view;

    explicit Listing(const QString &path, const QString &mask = QString(), bool hidden = false)
    {
        if (!mask.isNull())
            view.setMask(mask);
        view.setShowHidden(hidden);
        view.setColumns(&tree);
        view.showObjects(tree.fileModel(), path);
    }
    const FileListModel &model() const { return *tree.fileModel(); }
    QStringList column(int column) const
    {
        QStringList texts;
        for (int i = 0; i < model().count(); ++i)
            texts << model().index(i, column).data().toString();
        return texts;
    }
    QStringList row(int row) const
    {
        QStringList texts;
        for (int c = 0; c < model().columnCount(); ++c)
            texts << model().index(row, c).data().toString();
        return texts;
    }
};
}  // namespace

class TestFileView : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase()
    {
        useTestSettings();
        // Dates are shown in local time: test them away from UTC.
        qputenv("TZ", "XYZ-5:30");
    }

    void cellTexts_data()
    {
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<int>("size");
        QTest::addColumn<QStringList>("cells");  // name, extension, size
        QTest::newRow("no suffix") << "Makefile" << 0 << QStringList{"Makefile", "", "0"};
        QTest::newRow("two suffixes") << "archive.tar.gz" << 3 << QStringList{"archive.tar", "gz", "3"};
        QTest::newRow("grouped size") << "big.bin" << 1234567
                                      << QStringList{"big", "bin", QStringLiteral("%L1").arg(1234567)};
        QTest::newRow("quotes") << "quote's \"x\".txt" << 0 << QStringList{"quote's \"x\"", "txt", "0"};
        QTest::newRow("non-ASCII") << "Ärger.sql" << 0 << QStringList{"Ärger", "sql", "0"};
        QTest::newRow("leading dash") << "-dash.sql" << 0 << QStringList{"-dash", "sql", "0"};
        QTest::newRow("newline") << "new\nline.sql" << 0 << QStringList{"new\nline", "sql", "0"};
    }

    void cellTexts()
    {
        QFETCH(QString, fileName);
        QFETCH(int, size);
        TestDir dir;
        dir.createFile(fileName, QByteArray(size, 'x'));
        Listing list(dir.path());
        QCOMPARE(list.model().count(), 2);
        const QStringList texts = list.row(1);
        QTEST(QStringList(texts.mid(0, 3)), "cells");
        QCOMPARE(texts.at(3), FileListing::dateText(QFileInfo(dir.filePath(fileName)).lastModified(),
                                                    FileListing::usesUsTime()));
        // The row leads back to its file through its key.
        const QString key = list.model().index(1, 0).data(FileListModel::KeyRole).toString();
        QCOMPARE(QFileInfo(key).fileName(), fileName);
        QCOMPARE(list.model().rowOf(key), 1);
        QVERIFY(list.model().index(1, 0).flags() & Qt::ItemIsEditable);
        QVERIFY(!(list.model().index(0, 0).flags() & Qt::ItemIsEditable));
    }

    void dateText_data()
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

    void dateText()
    {
        QFETCH(QDateTime, time);
        QFETCH(bool, usTime);
        QTEST(FileListing::dateText(time, usTime).toLower(), "text");
    }

    void listingOrderAndParentRow()
    {
        TestDir dir;
        {
            // An empty folder still shows "..", which counts as nothing.
            Listing empty(dir.path());
            QCOMPARE(empty.model().count(), 1);
            QCOMPARE(empty.row(0), QStringList({"..", "", "<Dir>", ""}));
            int count = -1;
            qint64 size = -1;
            FileView::countRows(empty.model(), &count, &size);
            QCOMPARE(count, 0);
            QCOMPARE(size, 0);
        }
        dir.createFile("b.txt");
        dir.createFile("A.txt");
        dir.createDir("zeta");
        dir.createDir("Alpha");
        dir.createFile(".hidden");
        Listing list(dir.path());
        QCOMPARE(list.column(0), QStringList({"..", "Alpha", "zeta", "A", "b"}));
        QCOMPARE(list.row(1).at(2), QStringLiteral("<Dir>"));

        // A click on "Size" sorts by value and keeps ".." and folders on top.
        dir.createFile("c.txt", QByteArray(100, 'x'));
        Listing sorted(dir.path());
        Q_EMIT sorted.tree.header()->sectionClicked(2);
        Q_EMIT sorted.tree.header()->sectionClicked(2);
        QCOMPARE(sorted.column(0), QStringList({"..", "zeta", "Alpha", "c", "b", "A"}));
    }

    // Links count as what they lead to; dangling links and FIFOs are system
    // entries, listed with the hidden ones. The folder's file total ignores the mask.
    void mask_data()
    {
        QTest::addColumn<QString>("mask");
        QTest::addColumn<bool>("hidden");
        QTest::addColumn<QStringList>("rows");
        QTest::addColumn<bool>("filtered");
        QTest::addColumn<int>("folderFiles");
        const QStringList all{"..", "ldir", "sub.sql", "a", "b", "c", "l", "Makefile"};
        QTest::newRow("everything") << "*.*" << false << all << false << 5;
        QTest::newRow("one mask keeps folders")
            << "*.sql" << false << QStringList({"..", "ldir", "sub.sql", "a", "c", "l"}) << true << 5;
        QTest::newRow("several masks") << "*.sql; *.txt" << false
                                       << QStringList({"..", "ldir", "sub.sql", "a", "b", "c", "l"})
                                       << true << 5;
        QTest::newRow("question mark") << "?.txt" << false
                                       << QStringList({"..", "ldir", "sub.sql", "b"}) << true << 5;
        QTest::newRow("blank means everything") << "  " << false << all << false << 5;
        QTest::newRow("hidden and system entries")
            << "*.sql" << true
            << QStringList({"..", "ldir", "sub.sql", ".h", "a", "c", "dead", "l", "p"}) << true << 8;
    }

    void mask()
    {
        QFETCH(QString, mask);
        QFETCH(bool, hidden);
        TestDir dir;
        dir.createDir("sub.sql");
        for (const char *name : {"a.sql", "b.txt", "c.SQL", "Makefile", ".h.sql"})
            dir.createFile(QLatin1String(name), "12");
        QVERIFY(QFile::link(dir.filePath("a.sql"), dir.filePath("l.sql")));
        QVERIFY(QFile::link(dir.filePath("sub.sql"), dir.filePath("ldir")));
        QVERIFY(QFile::link(dir.filePath("missing"), dir.filePath("dead.sql")));
        QVERIFY(::mkfifo(QFile::encodeName(dir.filePath("p.sql")).constData(), 0600) == 0);
        Listing list(dir.path(), mask, hidden);
        QTEST(list.column(0), "rows");
        QTEST(list.view.isFiltered(), "filtered");
        QTEST(list.view.folderTotals().files, "folderFiles");
        const int link = list.model().rowOf(dir.filePath("l.sql"));
        if (link >= 0)
            QCOMPARE(list.row(link).at(2), QStringLiteral("2"));

        // The same entries as QDir lists.
        QDir::Filters filters = QDir::Files | QDir::AllDirs | QDir::NoDot;
        if (hidden)
            filters |= QDir::Hidden | QDir::System;
        QStringList theirs;
        for (const QFileInfo &info : QDir(dir.path()).entryInfoList(
                 FileListing::nameFiltersOf(list.view.mask()), filters, QDir::NoSort))
            theirs << info.fileName();
        QStringList mine;
        for (int row = 0; row < list.model().count(); ++row)
            mine << list.model().rowAt(row).fileName();
        mine[0] = QStringLiteral(".."); // the path of ".." is the folder above
        theirs.sort();
        mine.sort();
        QCOMPARE(mine, theirs);
    }

    void hundredThousandFiles()
    {
        TestDir dir;
        const int files = 100000;
        for (int i = 0; i < files; ++i) {
            QFile file(dir.filePath(QStringLiteral("f%1.txt").arg(i)));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        Listing list(dir.path());
        QCOMPARE(list.model().count(), files + 1);
        QCOMPARE(list.model().rowOf(dir.filePath(QStringLiteral("f%1.txt").arg(files - 1))), files);
    }
};

QTEST_MAIN(TestFileView)
#include "tst_fileview.moc"
