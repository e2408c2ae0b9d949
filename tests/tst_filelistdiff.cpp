#include "filelistdiff.h"
#include "filesystemview.h"
#include "fileview.h"
#include "foldercomparison.h"
#include "panel.h"
#include "testsupport.h"
#include "treewidget.h"

#include <QAction>
#include <QHBoxLayout>
#include <QLabel>
#include <QRandomGenerator>
#include <QStatusBar>
#include <QTreeWidget>

namespace {

enum Mark { None, Different, Absent, Hidden };

FileList fileList(const QStringList &entries)
{
    FileList list;
    for (const QString &entry : entries) {
        const QStringList parts = entry.split('=');
        list.append(qMakePair(parts.at(0), parts.value(1).toLongLong()));
    }
    return list;
}

// The comparison as every pair of names, the reference the hashed one must equal.
FolderDifferences allPairs(const FileList &first, const FileList &second)
{
    FolderDifferences d;
    for (const auto &a : first) {
        bool found = false;
        for (const auto &b : second) {
            if (a.first == b.first) {
                found = true;
                if (a.second != b.second)
                    d.different << a.first;
            }
        }
        if (!found)
            d.onlyInFirst << a.first;
    }
    for (const auto &b : second) {
        if (std::none_of(first.begin(), first.end(), [&b](const auto &a) { return a.first == b.first; }))
            d.onlyInSecond << b.first;
    }
    return d;
}

} // namespace

class TestFileListDiff : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestDir> m_dir;
    std::unique_ptr<QWidget> m_window;
    Panel *m_left = nullptr;
    Panel *m_right = nullptr;
    QAction *m_bySize = nullptr;
    QAction *m_byContent = nullptr;
    QAction *m_markedOnly = nullptr;
    FileListDiff *m_diff = nullptr;

    // The mark of each file row of a panel, by file name.
    QMap<QString, Mark> marks(Panel *panel) const
    {
        QMap<QString, Mark> result;
        FileSystemView *view = panel->fileSystemView();
        QTreeWidget *tree = view->treeWidget();
        const int column = view->fileView()->nameColumn();
        for (int i = 0; i < tree->topLevelItemCount(); ++i) {
            QTreeWidgetItem *item = tree->topLevelItem(i);
            bool found = false;
            const QFileInfo info = view->fileInfoMap().value(item, &found);
            if (!found || info.fileName() == QLatin1String(".."))
                continue;
            const QColor color = item->foreground(column).color();
            Mark mark = None;
            if (item->isHidden())
                mark = Hidden;
            else if (color.green() == 100)
                mark = Different;
            else if (color.red() == 255)
                mark = Absent;
            if (mark != None && mark != Hidden && item->font(column).weight() != 75)
                mark = None; // a mark is colour and bold together
            result.insert(info.fileName(), mark);
        }
        return result;
    }

    void showFolders(const QString &left, const QString &right)
    {
        m_left->changePath(m_dir->filePath(left));
        m_right->changePath(m_dir->filePath(right));
    }

private Q_SLOTS:
    void initTestCase() { useTestSettings(); }

    void init()
    {
        m_dir = std::make_unique<TestDir>();
        m_window = std::make_unique<QWidget>();
        auto *layout = new QHBoxLayout(m_window.get());
        auto *status = new QStatusBar(m_window.get());
        m_left = new Panel(layout, m_window.get(), status, new QLabel(m_window.get()), true,
                           m_window.get());
        m_right = new Panel(layout, m_window.get(), status, new QLabel(m_window.get()), false,
                            m_window.get());
        m_bySize = new QAction("Select Different by Size", m_window.get());
        m_byContent = new QAction("Select Different by Content", m_window.get());
        m_markedOnly = new QAction("Show Selected", m_window.get());
        m_diff = new FileListDiff(m_window.get());
        m_diff->setup(m_bySize, m_byContent, m_markedOnly, m_left, m_right);

        m_dir->createFile("L/same.sql", "abc");
        m_dir->createFile("L/sizeonly.sql", "abc");  // same size, other content
        m_dir->createFile("L/longer.sql", "abcd");
        m_dir->createFile("L/left.sql", "x");
        m_dir->createFile("L/A.SQL", "x");
        m_dir->createFile("L/sub/inner.sql", "1");
        m_dir->createFile("L/empty.txt", "");
        m_dir->createFile("R/same.sql", "abc");
        m_dir->createFile("R/sizeonly.sql", "abd");
        m_dir->createFile("R/longer.sql", "ab");
        m_dir->createFile("R/right.sql", "y");
        m_dir->createFile("R/a.sql", "x");
        m_dir->createFile("R/sub/other.sql", "2");
        m_dir->createFile("R/empty.txt", "");
        showFolders("L", "R");
    }

    void cleanup()
    {
        m_window.reset();
        m_dir.reset();
    }

    void compare_data()
    {
        QTest::addColumn<QStringList>("first");
        QTest::addColumn<QStringList>("second");
        QTest::addColumn<QStringList>("different");
        QTest::addColumn<QStringList>("onlyInFirst");
        QTest::addColumn<QStringList>("onlyInSecond");
        QTest::newRow("equal") << QStringList{"a=1", "b=2"} << QStringList{"b=2", "a=1"}
            << QStringList() << QStringList() << QStringList();
        QTest::newRow("different values, first list's order") << QStringList{"b=1", "a=1", "c=1"}
            << QStringList{"a=2", "c=1", "b=3"} << QStringList{"b", "a"} << QStringList() << QStringList();
        QTest::newRow("absent on each side") << QStringList{"a=1", "x=1"} << QStringList{"a=1", "y=1"}
            << QStringList() << QStringList{"x"} << QStringList{"y"};
        QTest::newRow("names differing in case") << QStringList{"A.SQL=1"} << QStringList{"a.sql=1"}
            << QStringList() << QStringList{"A.SQL"} << QStringList{"a.sql"};
        QTest::newRow("name given twice") << QStringList{"a=1"} << QStringList{"a=2", "a=3"}
            << QStringList{"a", "a"} << QStringList() << QStringList();
        QTest::newRow("empty side") << QStringList{"a=1"} << QStringList()
            << QStringList() << QStringList{"a"} << QStringList();
    }

    void compare()
    {
        QFETCH(QStringList, first);
        QFETCH(QStringList, second);
        QFETCH(QStringList, different);
        QFETCH(QStringList, onlyInFirst);
        QFETCH(QStringList, onlyInSecond);
        const FolderDifferences d = FolderComparison::compare(fileList(first), fileList(second));
        QCOMPARE(d.different, different);
        QCOMPARE(d.onlyInFirst, onlyInFirst);
        QCOMPARE(d.onlyInSecond, onlyInSecond);
    }

    void compareEqualsAllPairs()
    {
        QRandomGenerator random(3);
        for (int round = 0; round < 50; ++round) {
            FileList first, second;
            for (int i = random.bounded(40); i > 0; --i)
                first.append(qMakePair(QString::number(random.bounded(50)), qint64(random.bounded(3))));
            for (int i = random.bounded(40); i > 0; --i)
                second.append(qMakePair(QString::number(random.bounded(50)), qint64(random.bounded(3))));
            const FolderDifferences hashed = FolderComparison::compare(first, second);
            const FolderDifferences reference = allPairs(first, second);
            QCOMPARE(hashed.different, reference.different);
            QCOMPARE(hashed.onlyInFirst, reference.onlyInFirst);
            QCOMPARE(hashed.onlyInSecond, reference.onlyInSecond);
        }
    }

    void contentSignature_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty file") << QByteArray();
        QTest::newRow("one partial block") << QByteArray("select 1 from dual;\n");
        QTest::newRow("exact blocks") << QByteArray(4000, 'q');
        QTest::newRow("blocks and a tail") << QByteArray(64000 * 2 + 2017, 'z');
        QByteArray noise(70001, Qt::Uninitialized);
        QRandomGenerator random(11);
        for (char &c : noise)
            c = char(random.bounded(256));
        QTest::newRow("random bytes") << noise;
    }

    void contentSignature()
    {
        QFETCH(QByteArray, content);
        quint16 expected = 0;
        for (int offset = 0; offset < content.size(); offset += 2000) {
            const QByteArray block = content.mid(offset, 2000);
            expected = quint16(expected + qChecksum(block.constData(), uint(block.size())));
        }
        const QString path = m_dir->createFile("sig.bin", content);
        QCOMPARE(FolderComparison::contentSignature(path), expected);
        if (content.isEmpty())
            QCOMPARE(expected, quint16(0));
    }

    void unreadableFileHasSignatureZero()
    {
        QCOMPARE(FolderComparison::contentSignature(m_dir->filePath("missing.bin")), quint16(0));
        QVERIFY(QFile::link(m_dir->filePath("missing.bin"), m_dir->filePath("dangling.bin")));
        QCOMPARE(FolderComparison::contentSignature(m_dir->filePath("dangling.bin")), quint16(0));
    }

    void listFilesSkipsFolders()
    {
        m_dir->createFile("L/.hidden", "h");
        const FileList files = FolderComparison::listFiles(m_dir->filePath("L"), COMPARE_BY_SIZE);
        QStringList names;
        for (const auto &entry : files)
            names << entry.first;
        QCOMPARE(names, (QStringList{"A.SQL", "empty.txt", "left.sql", "longer.sql", "same.sql",
                                     "sizeonly.sql"}));
        QCOMPARE(files.at(3).second, qint64(4));
    }

    void marks_data()
    {
        QTest::addColumn<bool>("byContent");
        QTest::addColumn<QStringList>("different");
        QTest::newRow("by size") << false << QStringList{"longer.sql"};
        QTest::newRow("by content") << true << QStringList{"longer.sql", "sizeonly.sql"};
    }

    void marks()
    {
        QFETCH(bool, byContent);
        QFETCH(QStringList, different);
        (byContent ? m_byContent : m_bySize)->trigger();
        QMap<QString, Mark> left = marks(m_left);
        QMap<QString, Mark> right = marks(m_right);
        QMap<QString, Mark> expectedLeft{{"same.sql", None}, {"sizeonly.sql", None},
                                         {"longer.sql", None}, {"left.sql", Absent},
                                         {"A.SQL", Absent}, {"sub", None}, {"empty.txt", None}};
        QMap<QString, Mark> expectedRight{{"same.sql", None}, {"sizeonly.sql", None},
                                          {"longer.sql", None}, {"right.sql", Absent},
                                          {"a.sql", Absent}, {"sub", None}, {"empty.txt", None}};
        for (const QString &name : different)
            expectedLeft[name] = expectedRight[name] = Different;
        QCOMPARE(left, expectedLeft);
        QCOMPARE(right, expectedRight);
    }

    // While a mode is on, a folder change re-runs it; turning it off clears the marks.
    void followsFolderChanges()
    {
        m_dir->createFile("L2/same.sql", "abcdef");
        m_bySize->trigger();
        QCOMPARE(marks(m_left).value("left.sql"), Absent);
        m_left->changePath(m_dir->filePath("L2"));
        QCOMPARE(marks(m_left), (QMap<QString, Mark>{{"same.sql", Different}}));
        QCOMPARE(marks(m_right).value("right.sql"), Absent);

        m_bySize->trigger(); // off
        QCOMPARE(marks(m_left), (QMap<QString, Mark>{{"same.sql", None}}));
        QCOMPARE(marks(m_right).value("right.sql"), None);
        m_left->changePath(m_dir->filePath("L"));
        QCOMPARE(marks(m_left).value("left.sql"), None);
    }

    void showMarkedOnly()
    {
        m_byContent->trigger();
        m_markedOnly->trigger();
        const QMap<QString, Mark> left = marks(m_left);
        QCOMPARE(left.value("same.sql"), Hidden);
        QCOMPARE(left.value("empty.txt"), Hidden);
        QCOMPARE(left.value("sizeonly.sql"), Different);
        QCOMPARE(left.value("left.sql"), Absent);
        QCOMPARE(left.value("sub"), None); // folders stay
        QCOMPARE(marks(m_right).value("same.sql"), Hidden);

        // Unchecking re-runs the active mode, size first when both are on.
        m_bySize->trigger();
        QCOMPARE(marks(m_left).value("sizeonly.sql"), Hidden);
        m_markedOnly->trigger();
        QCOMPARE(marks(m_left).value("sizeonly.sql"), None);
        QCOMPARE(marks(m_left).value("longer.sql"), Different);
        QCOMPARE(m_diff->lastDifferences().different, QStringList{"longer.sql"});

        m_bySize->trigger();
        m_markedOnly->trigger();
        m_markedOnly->trigger();
        QCOMPARE(m_diff->lastDifferences().different, (QStringList{"longer.sql", "sizeonly.sql"}));
    }

    void largeFolders()
    {
        for (int i = 0; i < 20000; ++i) {
            const QString name = QStringLiteral("f%1.sql").arg(i);
            m_dir->createFile("BIG1/" + name, QByteArray::number(i));
            if (i % 1000 != 0)
                m_dir->createFile("BIG2/" + name, QByteArray::number(i % 1000 == 1 ? -i : i));
        }
        const FileList first = FolderComparison::listFiles(m_dir->filePath("BIG1"), COMPARE_BY_CONTENT);
        const FileList second = FolderComparison::listFiles(m_dir->filePath("BIG2"), COMPARE_BY_CONTENT);
        QCOMPARE(first.size(), 20000);
        const FolderDifferences d = FolderComparison::compare(first, second);
        QCOMPARE(d.onlyInFirst.size(), 20);
        QCOMPARE(d.different.size(), 20);
        QVERIFY(d.onlyInSecond.isEmpty());
    }
};

QTEST_MAIN(TestFileListDiff)
#include "tst_filelistdiff.moc"
