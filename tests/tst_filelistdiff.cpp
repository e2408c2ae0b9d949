#include "filelistdiff.h"
#include "filelistmodel.h"
#include "filenamecodec.h"
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

#include <sys/stat.h>

namespace {

enum Mark { None, Different, Absent, Hidden };

// The three name lists, to compare outcomes in one go.
QList<QStringList> parts(const FolderDifferences &d)
{
    return {d.different, d.onlyInFirst, d.onlyInSecond};
}

// The comparison as every pair of names, the reference the hashed one must equal.
FolderDifferences allPairs(const FileList &first, const FileList &second)
{
    auto has = [](const FileList &list, const QString &name) {
        return std::any_of(list.begin(), list.end(), [&name](const auto &e) { return e.first == name; });
    };
    FolderDifferences d;
    for (const auto &a : first) {
        for (const auto &b : second) {
            if (a.first == b.first && a.second != b.second)
                d.different << a.first;
        }
        if (!has(second, a.first))
            d.onlyInFirst << a.first;
    }
    for (const auto &b : second) {
        if (!has(first, b.first))
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

    // Triggers @p action and waits for the comparison it starts on the worker.
    void run(QAction *action)
    {
        QSignalSpy done(m_diff, &FileListDiff::comparisonDone);
        action->trigger();
        if (m_diff->isComparing())
            QVERIFY(done.wait(20000));
    }

    void changePath(Panel *panel, const QString &path)
    {
        QSignalSpy done(m_diff, &FileListDiff::comparisonDone);
        panel->changePath(path);
        if (m_diff->isComparing())
            QVERIFY(done.wait(20000));
    }

    // The mark of each file row of a panel, by file name.
    QMap<QString, Mark> marks(Panel *panel) const
    {
        QMap<QString, Mark> result;
        FileSystemView *view = panel->fileSystemView();
        const TreeWidget *tree = view->treeWidget();
        const FileListModel *model = view->model();
        const int column = model->nameColumn();
        for (int row = 0; row < model->count(); ++row) {
            const FileRow &file = model->rowAt(row);
            if (file.kind == FileRow::Parent)
                continue;
            const QModelIndex index = model->index(row, column);
            const QColor color = index.data(Qt::ForegroundRole).value<QColor>();
            const bool hidden = tree->isRowHidden(row, {});
            Mark mark = hidden ? Hidden : None;
            // A mark is colour and bold.
            if (!hidden && index.data(Qt::FontRole).value<QFont>().weight() == 75)
                mark = color.green() == 100 ? Different : color.red() == 255 ? Absent : None;
            result.insert(file.fileName(), mark);
        }
        return result;
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

        // Left and right content of each name; a null side has no such file.
        const char *const files[][3] = {
            {"same.sql", "abc", "abc"}, {"sizeonly.sql", "abc", "abd"}, {"longer.sql", "abcd", "ab"},
            {"left.sql", "x", nullptr}, {"right.sql", nullptr, "y"}, {"A.SQL", "x", nullptr},
            {"a.sql", nullptr, "x"}, {"sub/inner.sql", "1", nullptr}, {"sub/other.sql", nullptr, "2"},
            {"empty.txt", "", ""}, {".hidden", "h", nullptr}}; // hidden: not listed, never compared
        for (const auto &file : files) {
            for (int side : {1, 2}) {
                if (file[side])
                    m_dir->createFile(QString(side == 1 ? "L/" : "R/") + file[0], file[side]);
            }
        }
        m_left->changePath(m_dir->filePath("L"));
        m_right->changePath(m_dir->filePath("R"));
    }

    void cleanup() { m_window.reset(); m_dir.reset(); }

    // The hashed comparison equals the plain one over every pair of names, in the
    // first list's order, with duplicates and empty lists; names differing in case
    // are different names.
    void compareEqualsAllPairs()
    {
        const FileList upper{{"A.SQL", 1}, {"b", 1}}, lower{{"a.sql", 1}, {"b", 2}};
        QCOMPARE(parts(FolderComparison::compare(upper, lower)),
                 (QList<QStringList>{{"b"}, {"A.SQL"}, {"a.sql"}}));
        QRandomGenerator random(3);
        for (int round = 0; round < 50; ++round) {
            FileList first, second;
            for (int i = random.bounded(40); i > 0; --i)
                first.append(qMakePair(QString::number(random.bounded(50)), qint64(random.bounded(3))));
            for (int i = random.bounded(40); i > 0; --i)
                second.append(qMakePair(QString::number(random.bounded(50)), qint64(random.bounded(3))));
            QCOMPARE(parts(FolderComparison::compare(first, second)), parts(allPairs(first, second)));
        }
    }

    void sameContent_data()
    {
        QTest::addColumn<QByteArray>("first");
        QTest::addColumn<QByteArray>("second");
        QTest::addColumn<bool>("same");
        QByteArray noise(600 * 1024 + 17, Qt::Uninitialized); // more than two read blocks
        QRandomGenerator random(11);
        for (char &c : noise)
            c = char(random.bounded(256));
        const int half = noise.size() / 2;
        QByteArray swapped = noise.mid(half) + noise.left(half);
        QByteArray lastByte = noise;
        lastByte[lastByte.size() - 1] = char(lastByte.at(lastByte.size() - 1) ^ 1);
        // Two 2000-byte blocks in either order: equal under a sum of block checksums.
        const QByteArray a(2000, 'a'), b = QByteArray("select 1;\n").repeated(200);
        QTest::newRow("same bytes") << noise << noise << true;
        QTest::newRow("halves swapped") << noise << swapped << false;
        QTest::newRow("blocks swapped") << a + b << b + a << false;
        QTest::newRow("last byte") << noise << lastByte << false;
        QTest::newRow("both empty") << QByteArray() << QByteArray() << true;
        QTest::newRow("prefix") << noise.left(100) << noise.left(101) << false;
    }

    void sameContent()
    {
        QFETCH(QByteArray, first);
        QFETCH(QByteArray, second);
        QTEST(FolderComparison::sameContent(m_dir->createFile("1.bin", first),
                                               m_dir->createFile("2.bin", second)), "same");
    }

    // Names that are not valid UTF-8 are listed, read and marked by their own bytes.
    void namesNotValidUtf8()
    {
        if (!dynamic_cast<FileNameCodec *>(QTextCodec::codecForLocale()))
            QSKIP("the locale is not UTF-8");
        m_dir->createRawFile("L/caf\xe9.sql", "select 1;\n");
        m_dir->createRawFile("R/caf\xe9.sql", "select 1;\n");
        m_dir->createRawFile("L/bad\xffname.sql", "select 1;\n");
        m_dir->createRawFile("R/bad\xffname.sql", "select 2;\n");
        m_dir->createRawFile("L/caf\xe8.sql", "x"); // one byte away from a name on both sides
        m_left->changePath(m_dir->filePath("L"));
        m_right->changePath(m_dir->filePath("R"));
        run(m_byContent);
        const auto decoded = [](const char *bytes) { return QFile::decodeName(bytes); };
        const FolderDifferences &d = m_diff->lastDifferences();
        QVERIFY(d.different.contains(decoded("bad\xffname.sql")));
        QVERIFY(!d.different.contains(decoded("caf\xe9.sql")));
        QVERIFY((d.onlyInFirst + d.onlyInSecond).contains(decoded("caf\xe8.sql")));
        QCOMPARE(marks(m_left).value(decoded("bad\xffname.sql")), Different);
        QCOMPARE(marks(m_right).value(decoded("bad\xffname.sql")), Different);
        QCOMPARE(marks(m_left).value(decoded("caf\xe9.sql")), None);
        QCOMPARE(marks(m_left).value(decoded("caf\xe8.sql")), Absent);
    }

    // What cannot be read as a regular file differs from everything, without blocking.
    void unreadableDiffers()
    {
        const QString file = m_dir->createFile("a.sql", "x");
        const QString fifo = m_dir->filePath("fifo.sql");
        QCOMPARE(mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
        QVERIFY(QFile::link(fifo, m_dir->filePath("fifolink.sql")));
        QVERIFY(QFile::link(m_dir->filePath("missing"), m_dir->filePath("dangling.sql")));
        const QString unreadable = m_dir->createFile("unreadable.sql", "x");
        QFile::setPermissions(unreadable, QFileDevice::WriteOwner);
        for (const char *name : {"fifo.sql", "fifolink.sql", "dangling.sql", "missing"})
            QVERIFY2(!FolderComparison::sameContent(file, m_dir->filePath(name)), name);
        if (!QFileInfo(unreadable).isReadable()) // root reads anything
            QVERIFY(!FolderComparison::sameContent(file, unreadable));
    }

    // While a mode is on, a folder change re-runs it; turning it off clears the marks.
    void followsFolderChanges()
    {
        m_dir->createFile("L2/same.sql", "abcdef");
        run(m_bySize);
        QCOMPARE(marks(m_left).value("left.sql"), Absent);
        changePath(m_left, m_dir->filePath("L2"));
        QCOMPARE(marks(m_left), (QMap<QString, Mark>{{"same.sql", Different}}));
        QCOMPARE(marks(m_right).value("right.sql"), Absent);

        run(m_bySize); // off
        QCOMPARE(marks(m_left), (QMap<QString, Mark>{{"same.sql", None}}));
        QCOMPARE(marks(m_right).value("right.sql"), None);
        m_left->changePath(m_dir->filePath("L"));
        QCOMPARE(marks(m_left).value("left.sql"), None);
    }

    // By content, then by size; showing the marked files only keeps the folders shown.
    void marks()
    {
        run(m_byContent);
        QStringList absent = m_diff->lastDifferences().onlyInFirst + m_diff->lastDifferences().onlyInSecond;
        absent.sort();
        QCOMPARE(absent, (QStringList{"A.SQL", "a.sql", "left.sql", "right.sql"})); // no ".hidden"
        run(m_markedOnly);
        QMap<QString, Mark> left{{"same.sql", Hidden}, {"empty.txt", Hidden}, {"sub", None},
                                 {"sizeonly.sql", Different}, {"longer.sql", Different}};
        QMap<QString, Mark> right = left;
        left.insert({{"left.sql", Absent}, {"A.SQL", Absent}});
        right.insert({{"right.sql", Absent}, {"a.sql", Absent}});
        QCOMPARE(marks(m_left), left);
        QCOMPARE(marks(m_right), right);

        // Unchecking re-runs the active mode, size first when both are on.
        run(m_bySize);
        QCOMPARE(marks(m_left).value("sizeonly.sql"), Hidden);
        run(m_markedOnly);
        QCOMPARE(marks(m_left).value("sizeonly.sql"), None);
        QCOMPARE(marks(m_left).value("longer.sql"), Different);
        QCOMPARE(m_diff->lastDifferences().different, QStringList{"longer.sql"});

        run(m_bySize);
        run(m_markedOnly);
        run(m_markedOnly);
        QCOMPARE(m_diff->lastDifferences().different, (QStringList{"longer.sql", "sizeonly.sql"}));
    }

    // Thousands of files a side, by content on the worker; Cancel stops a run and
    // turns its mode off.
    void largeFoldersAndCancel()
    {
        for (int i = 0; i < 4000; ++i) {
            const QString name = QStringLiteral("f%1.sql").arg(i);
            m_dir->createFile("BIG1/" + name, QByteArray::number(i));
            if (i % 1000 != 0)
                m_dir->createFile("BIG2/" + name, QByteArray::number(i % 1000 == 1 ? -i : i));
        }
        m_left->changePath(m_dir->filePath("BIG1"));
        m_right->changePath(m_dir->filePath("BIG2"));
        qRegisterMetaType<Qt::CursorShape>();
        QSignalSpy waiting(m_diff, &FileListDiff::turnWaitingMode);
        run(m_byContent);
        QCOMPARE(waiting.count(), 2);
        QCOMPARE(waiting.at(0).at(0).value<Qt::CursorShape>(), Qt::BusyCursor);
        QCOMPARE(waiting.at(1).at(0).value<Qt::CursorShape>(), Qt::ArrowCursor);
        const FolderDifferences d = m_diff->lastDifferences();
        // No panel has the focus: the right one comes first.
        QCOMPARE(d.onlyInSecond.size(), 4);
        QCOMPARE(d.different.size(), 4);
        QVERIFY(d.onlyInFirst.isEmpty());
        QCOMPARE(marks(m_left).value("f1.sql"), Different);
        QCOMPARE(marks(m_left).value("f1000.sql"), Absent);

        run(m_byContent); // off
        QSignalSpy done(m_diff, &FileListDiff::comparisonDone);
        m_bySize->trigger();
        QVERIFY(m_diff->stop());
        QVERIFY(done.wait(20000));
        QVERIFY(!m_bySize->isChecked());
        QCOMPARE(marks(m_left).value("f1000.sql"), None);
        changePath(m_left, m_dir->filePath("L")); // the mode no longer follows
        QVERIFY(!m_diff->isComparing());
    }
};

QTEST_MAIN(TestFileListDiff)
#include "tst_filelistdiff.moc"
