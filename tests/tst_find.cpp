#include "find.h"
#include "findscript.h"
#include "settings.h"
#include "testsupport.h"

#include <QComboBox>
#include <QDialog>
#include <QProcess>
#include <QRandomGenerator>
#include <QTreeWidget>

#include <sys/stat.h>
#include <unistd.h>

namespace {

using Row = QStringList;

bool hasTotals(const QTreeWidget &tree)
{
    const int n = tree.topLevelItemCount();
    return n >= 2 && tree.topLevelItem(n - 1)->text(0).startsWith(QLatin1String("Total number of files"));
}

// The hit rows (path, line, text), without the two totals rows at the end.
QList<Row> hitRows(const QTreeWidget &tree)
{
    QList<Row> rows;
    for (int i = 0; i + 2 < tree.topLevelItemCount(); ++i) {
        const QTreeWidgetItem *item = tree.topLevelItem(i);
        rows << Row{item->text(0), item->text(1), item->text(2)};
    }
    return rows;
}

} // namespace

class TestFind : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestDir> m_dir;
    std::unique_ptr<QTreeWidget> m_tree;
    std::unique_ptr<FindScript> m_script;

    // Runs a search to its end and returns the hit rows.
    QList<Row> search(const QString &folder, const QString &masks, const QString &text,
                      QRegExp::PatternSyntax syntax = QRegExp::FixedString,
                      bool caseSensitive = true, bool wholeWords = false)
    {
        m_tree->clear();
        if (!m_script->findCommandEvent(folder, masks, text, syntax, caseSensitive, wholeWords))
            return {};
        [&] { QTRY_VERIFY_WITH_TIMEOUT(hasTotals(*m_tree), 60000); }();
        return hitRows(*m_tree);
    }

    // Blocks the worker at each file until @p done says so (at most 5 s).
    void holdEachFile(std::function<bool()> done)
    {
        connect(m_script->finder(), &Find::FindFile, m_script->finder(), [done] {
            for (int i = 0; i < 5000 && !done(); ++i)
                QThread::msleep(1);
        }, Qt::DirectConnection);
    }

    // The texts of the two totals rows.
    QStringList totals() const
    {
        const int n = m_tree->topLevelItemCount();
        return {m_tree->topLevelItem(n - 2)->text(0), m_tree->topLevelItem(n - 1)->text(0)};
    }

private Q_SLOTS:
    void initTestCase()
    {
        useTestSettings();
        qRegisterMetaType<Qt::CursorShape>();
        Settings().remove(QStringLiteral("Main Window/FindDialog"));
    }

    void init()
    {
        m_dir = std::make_unique<TestDir>();
        m_tree = std::make_unique<QTreeWidget>();
        m_script = std::make_unique<FindScript>(m_tree.get());
    }

    void cleanup() { m_script.reset(); m_tree.reset(); m_dir.reset(); }

    // A mask entry, described or plain, down to the masks the walk uses.
    void masks_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QStringList>("expected");
        const QStringList two{QStringLiteral("*.sql"), QStringLiteral("*.txt")};
        QTest::newRow("semicolon") << "*.sql;*.txt" << two;
        QTest::newRow("double comma") << "*.sql,,*.txt" << two;
        QTest::newRow("blanks and trailing separators") << "; *.sql , *.txt;" << two;
        QTest::newRow("described") << "Scripts (*.sql, *.txt) (*.doc)" << two;
        QTest::newRow("unclosed description") << "Scripts (*.sql" << QStringList{"*.sql"};
        QTest::newRow("empty") << "" << QStringList();
    }

    void masks()
    {
        QFETCH(QString, entry);
        QFETCH(QStringList, expected);
        QCOMPARE(Find::splitMasks(FindScript::masksOfEntry(entry)), expected);
    }

    // Without a text every matching file is listed once; the line total is the file count.
    void masksSelectFiles()
    {
        m_dir->createFile("a.sql", "x\n");
        m_dir->createFile("b.txt", "y\n");
        m_dir->createFile("c.doc", "z\n");
        m_dir->createFile("sub/D.SQL", "w\n");
        m_dir->createFile("sub/deeper/e.txt", "");
        QStringList files;
        for (const Row &row : search(m_dir->path(), "*.sql,,*.txt", QString())) {
            QVERIFY(row.at(1).isEmpty() && row.at(2).isEmpty());
            files << QDir(m_dir->path()).relativeFilePath(row.at(0));
        }
        files.sort();
        QCOMPARE(files, (QStringList{"a.sql", "b.txt", "sub/D.SQL", "sub/deeper/e.txt"}));
        QCOMPARE(totals(), (QStringList{"Total number of lines: 4", "Total number of files: 4"}));
    }

    void matching_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("syntax");
        QTest::addColumn<bool>("caseSensitive");
        QTest::addColumn<bool>("wholeWords");
        QTest::addColumn<bool>("found");
        const int fixed = QRegExp::FixedString, wild = QRegExp::Wildcard, rx = QRegExp::RegExp,
                  rx2 = QRegExp::RegExp2;
        QTest::newRow("whole word between spaces") << QByteArray("x abc y\n") << "abc" << fixed << true << true << true;
        QTest::newRow("whole word at line start") << QByteArray("abc y\n") << "abc" << fixed << true << true << false;
        QTest::newRow("whole word in parentheses") << QByteArray("(abc)\n") << "abc" << fixed << true << true << false;
        QTest::newRow("whole word, wildcard") << QByteArray("x abc y\n") << "a*" << wild << true << true << true;
        QTest::newRow("part of word without whole words") << QByteArray("xabcx\n") << "abc" << fixed << true << false << true;
        QTest::newRow("fixed dot is literal") << QByteArray("abc\n") << "a.c" << fixed << true << false << false;
        QTest::newRow("wildcard star") << QByteArray("xxabbbcxx\n") << "a*c" << wild << true << false << true;
        QTest::newRow("wildcard set") << QByteArray("abc\n") << "a[xy]c" << wild << true << false << false;
        QTest::newRow("regexp") << QByteArray("abbbc\n") << "ab+c" << rx << true << false << true;
        QTest::newRow("regexp2") << QByteArray("a123b\n") << "a\\d+b" << rx2 << true << false << true;
        QTest::newRow("regexp anchored start") << QByteArray("xabc\n") << "^abc" << rx << true << false << false;
        QTest::newRow("case differs, sensitive") << QByteArray("SELECT\n") << "select" << fixed << true << false << false;
        QTest::newRow("case differs, insensitive") << QByteArray("SELECT\n") << "select" << fixed << false << false << true;
        QTest::newRow("case insensitive non-ASCII") << QByteArray("\xc3\x84" "BC\n") << QString::fromUtf8("\xc3\xa4" "bc") << fixed << false << false << true;
        QTest::newRow("kelvin sign folds to k") << QByteArray("\xe2\x84\xaa" "ey\n") << "key" << rx << false << false << true;
        QTest::newRow("invalid UTF-8 around") << QByteArray("\xff\xfe abc \xc3\n") << "abc" << fixed << true << false << true;
    }

    void matching()
    {
        QFETCH(QByteArray, line);
        QFETCH(QString, text);
        QFETCH(int, syntax);
        QFETCH(bool, caseSensitive);
        QFETCH(bool, wholeWords);
        QFETCH(bool, found);
        // Lines around it make the literal prefilter count lines too.
        m_dir->createFile("t.sql", "first\n" + line + "last\n");
        const QList<Row> rows = search(m_dir->path(), "*.sql", text,
                                       static_cast<QRegExp::PatternSyntax>(syntax), caseSensitive,
                                       wholeWords);
        QCOMPARE(rows.size(), found ? 1 : 0);
        if (found)
            QCOMPARE(rows.first().at(1), QStringLiteral("2"));
    }

    // Totals count lines and files; a double click opens the hit's line, not a totals row.
    void totalsAndDoubleClick()
    {
        m_dir->createFile("a.sql", "select 1\nnothing\nselect 2\n");
        m_dir->createFile("b.sql", "x select\n");
        m_dir->createFile("c.sql", "none\n");
        QCOMPARE(search(m_dir->path(), "*.sql", "select").size(), 3);
        QCOMPARE(totals(), (QStringList{"Total number of lines: 3", "Total number of files: 2"}));
        QSignalSpy open(m_script.get(), &FindScript::openFileAtLine);
        emit m_tree->itemDoubleClicked(m_tree->topLevelItem(0), 0);
        emit m_tree->itemDoubleClicked(m_tree->topLevelItem(3), 0); // a totals row
        const Row first = hitRows(*m_tree).first();
        QCOMPARE(open.count(), 1);
        QCOMPARE(open.first(), (QVariantList{first.at(0), first.at(1).toInt()}));
    }

    void invalidPatternRunsNothing()
    {
        m_dir->createFile("a.sql", "a(b\n");
        QSignalSpy busy(m_script.get(), &FindScript::turnWaitingMode);
        QVERIFY(!m_script->findCommandEvent(m_dir->path(), "*.sql", "a(b", QRegExp::RegExp, true,
                                            false));
        QVERIFY(!m_script->isSearching());
        QCOMPARE(m_tree->topLevelItemCount(), 0);
        QCOMPARE(busy.count(), 0);
    }

    // The worker's results equal grep's on a generated tree.
    void equalsGrep_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("syntax");
        QTest::addColumn<bool>("caseSensitive");
        QTest::addColumn<QStringList>("grepOptions");
        QTest::newRow("fixed string") << "order by" << int(QRegExp::FixedString) << true << QStringList{"-rnF"};
        QTest::newRow("fixed string, ignoring case") << "ORDER BY" << int(QRegExp::FixedString) << false << QStringList{"-rniF"};
        QTest::newRow("regular expression") << "whe+re [a-z]+_id" << int(QRegExp::RegExp) << true << QStringList{"-rnE"};
    }

    void equalsGrep()
    {
        QFETCH(QString, text);
        QFETCH(int, syntax);
        QFETCH(bool, caseSensitive);
        QFETCH(QStringList, grepOptions);
        if (QStandardPaths::findExecutable("grep").isEmpty())
            QSKIP("grep is not installed");
        const QStringList words{"select", "from", "where", "order", "by", "ORDER", "BY", "wheere",
                                "user_id", "  ", "\t", "x", "join", "Order", "\xc3\xa9t\xc3\xa9"};
        QRandomGenerator random(42);
        for (int f = 0; f < 60; ++f) {
            QByteArray content;
            const int lines = random.bounded(1, 300);
            for (int l = 0; l < lines; ++l) {
                const int count = random.bounded(0, 12);
                for (int w = 0; w < count; ++w)
                    content += words.at(random.bounded(words.size())).toUtf8() + ' ';
                content += random.bounded(10) == 0 ? "\r\n" : "\n";
            }
            if (f % 7 == 0)
                content += "order by last line without end";
            m_dir->createFile(QStringLiteral("d%1/f%2.sql").arg(f % 5).arg(f), content);
        }
        QList<Row> mine = search(m_dir->path(), "*.sql", text,
                                 static_cast<QRegExp::PatternSyntax>(syntax), caseSensitive);

        QProcess grep;
        grep.start("grep", grepOptions << "--" << text << m_dir->path());
        QVERIFY(grep.waitForFinished(60000));
        QList<Row> theirs;
        for (const QByteArray &raw : grep.readAllStandardOutput().split('\n')) {
            if (raw.isEmpty())
                continue;
            const QString out = QString::fromUtf8(raw);
            theirs << Row{out.section(':', 0, 0), out.section(':', 1, 1), out.section(':', 2).trimmed()};
        }
        auto order = [](const Row &a, const Row &b) {
            return a.at(0) != b.at(0) ? a.at(0) < b.at(0) : a.at(1).toInt() < b.at(1).toInt();
        };
        std::sort(mine.begin(), mine.end(), order);
        std::sort(theirs.begin(), theirs.end(), order);
        QVERIFY(theirs.size() > 50);
        QCOMPARE(mine, theirs);
    }

    void longLines()
    {
        QByteArray big(10 * 1024 * 1024, 'x');
        big.replace(big.size() - 20, 6, "needle");
        m_dir->createFile("long.txt", big + "\nneedle 2\n" + big);
        for (auto syntax : {QRegExp::FixedString, QRegExp::RegExp}) {
            const QList<Row> rows = search(m_dir->path(), "*.txt", "needle", syntax);
            QCOMPARE(rows.size(), 3);
            QCOMPARE(rows.at(0).at(2).size(), Find::MaxHitTextLength + 3);
            QCOMPARE(rows.at(1).mid(1), (QStringList{"2", "needle 2"}));
            QCOMPARE(rows.at(2).at(1), QStringLiteral("3"));
        }
    }

    // Binary content is searched up to its NULs; a 1 GB sparse file costs one pass over it.
    void binaryFiles()
    {
        QFile huge(m_dir->filePath("huge.bin"));
        QVERIFY(huge.open(QIODevice::WriteOnly) && huge.resize(qint64(1) << 30));
        huge.close();
        QByteArray bytes;
        QRandomGenerator random(7);
        for (int i = 0; i < 200000; ++i)
            bytes += char(random.bounded(256));
        bytes += "\nneedle before\0needle after\n";
        bytes += QByteArray("\0needle hidden\n", 15);
        m_dir->createFile("data.bin", bytes);
        for (auto syntax : {QRegExp::FixedString, QRegExp::RegExp}) {
            const QList<Row> rows = search(m_dir->path(), "*.bin", "needle", syntax);
            QCOMPARE(rows.size(), 1);
            QCOMPARE(rows.first().at(2), QStringLiteral("needle before"));
        }
    }

    // Entries that cannot be read give no rows and stop nothing; a folder reached again
    // through a link is searched once, and link loops end.
    void unreadableEntriesAndLinks()
    {
        m_dir->createFile("ok.sql", "needle\n");
        m_dir->createFile("top/sub/b.sql", "needle\n");
        QVERIFY(QFile::link(m_dir->filePath("top"), m_dir->filePath("top/sub/up")));
        QVERIFY(QFile::link(m_dir->filePath("top/sub"), m_dir->filePath("top/alias")));
        QVERIFY(QFile::link(m_dir->filePath("missing.sql"), m_dir->filePath("dangling.sql")));
        QVERIFY(::mkfifo(QFile::encodeName(m_dir->filePath("pipe.sql")).constData(), 0600) == 0);
        if (::geteuid() != 0) {
            m_dir->createFile("locked.sql", "needle\n");
            QFile::setPermissions(m_dir->filePath("locked.sql"), QFileDevice::Permissions());
            m_dir->createFile("closed/inner.sql", "needle\n");
            QFile::setPermissions(m_dir->filePath("closed"), QFileDevice::Permissions());
        }
        const QList<Row> rows = search(m_dir->path(), "*.sql", "needle");
        QFile::setPermissions(m_dir->filePath("closed"), QFileDevice::ReadOwner
                              | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
        QCOMPARE(rows.size(), 2);
        QVERIFY(rows.at(0).at(0).endsWith("ok.sql") != rows.at(1).at(0).endsWith("ok.sql"));
    }

    // A request accepted while a search runs is ignored; the running one goes on.
    void requestIgnoredWhileRunning()
    {
        for (int i = 0; i < 5; ++i)
            m_dir->createFile(QStringLiteral("first/f%1.sql").arg(i), "needle\n");
        const QString second = m_dir->createDir("second");
        m_dir->createFile("second/s.sql", "needle\n");

        std::atomic<bool> release{false};
        holdEachFile([&release] { return release.load(); });
        QVERIFY(m_script->findCommandEvent(m_dir->filePath("first"), "*.sql", "needle",
                                           QRegExp::FixedString, true, false));
        QVERIFY(m_script->isSearching());

        m_script->setFolderProvider([second] { return second; });
        bool dialogShown = false;
        onModal([&dialogShown, second](QWidget *dialog) {
            dialogShown = true;
            dialog->findChild<QComboBox *>("comboBoxFindFiles")->setEditText("*.sql");
            dialog->findChild<QComboBox *>("comboBoxSearchIn")->setEditText(second);
            static_cast<QDialog *>(dialog)->accept();
        });
        m_script->showFindDialog();
        QVERIFY(dialogShown);
        QVERIFY(m_script->isSearching());
        release = true;
        QTRY_VERIFY(hasTotals(*m_tree));
        const QList<Row> rows = hitRows(*m_tree);
        QCOMPARE(rows.size(), 5);
        for (const Row &row : rows)
            QVERIFY(row.at(0).contains("/first/"));
    }

    // Stopping mid-way ends the worker at once, keeps what was found and adds totals.
    void stopMidway()
    {
        for (int i = 0; i < 20; ++i)
            m_dir->createFile(QStringLiteral("f%1.sql").arg(i), QByteArray("needle\n").repeated(100));
        Find *find = m_script->finder();
        holdEachFile([find] { return find->isStopRequested(); });
        QSignalSpy cursor(m_script.get(), &FindScript::turnWaitingMode);
        QVERIFY(m_script->findCommandEvent(m_dir->path(), "*.sql", "needle", QRegExp::FixedString,
                                           true, false));
        QTRY_VERIFY(find->reportedLines() >= 1);
        QVERIFY(m_script->stopFind());
        QVERIFY(!find->isRunning());
        QCOMPARE(find->reportedLines(), 1);
        QTRY_VERIFY(hasTotals(*m_tree));
        QCOMPARE(totals().first(), QStringLiteral("Total number of lines: 1"));
        QCOMPARE(cursor.first().first().value<Qt::CursorShape>(), Qt::BusyCursor);
        QCOMPARE(cursor.last().first().value<Qt::CursorShape>(), Qt::ArrowCursor);
        QVERIFY(!m_script->stopFind());
    }
};

QTEST_MAIN(TestFind)
#include "tst_find.moc"
