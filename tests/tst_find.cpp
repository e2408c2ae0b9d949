#include "filenamecodec.h"
#include "find.h"
#include "findlinescanner.h"
#include "findresultmodel.h"
#include "findscript.h"
#include "settings.h"
#include "testsupport.h"

#include <QComboBox>
#include <QDialog>
#include <QProcess>
#include <QRandomGenerator>
#include <QTextCodec>
#include <QTreeView>

#include <sys/stat.h>
#include <unistd.h>

namespace {

using Row = QStringList;

QString cell(const QAbstractItemModel &model, int row, int column)
{
    return model.index(row, column).data().toString();
}

bool hasTotals(const QAbstractItemModel &model)
{
    const int n = model.rowCount();
    return n >= 2 && cell(model, n - 1, 0).startsWith(QLatin1String("Total number of files"));
}

// The hit rows (path, line, text), without the summary rows at the end.
QList<Row> hitRows(const QAbstractItemModel &model)
{
    QList<Row> rows;
    for (int i = 0; i < model.rowCount(); ++i) {
        if (!cell(model, i, 0).startsWith(QLatin1Char('/')))
            break;
        rows << Row{cell(model, i, 0), cell(model, i, 1), cell(model, i, 2)};
    }
    return rows;
}

// The summary rows after the hits.
QStringList summary(const QAbstractItemModel &model)
{
    QStringList rows;
    for (int i = hitRows(model).size(); i < model.rowCount(); ++i)
        rows << cell(model, i, 0);
    return rows;
}

QByteArray encoded(const QString &text, const QByteArray &codec, const QByteArray &mark)
{
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    return mark + QTextCodec::codecForName(codec)->fromUnicode(text.constData(), text.size(), &state);
}

} // namespace

class TestFind : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestDir> m_dir;
    std::unique_ptr<QTreeView> m_view;
    std::unique_ptr<FindScript> m_script;

    // Runs a search to its end and returns the hit rows.
    QList<Row> search(const QString &folder, const QString &masks, const QString &text,
                      QRegExp::PatternSyntax syntax = QRegExp::FixedString,
                      bool caseSensitive = true, bool wholeWords = false)
    {
        m_script->results()->clear();
        if (!m_script->findCommandEvent(folder, masks, text, syntax, caseSensitive, wholeWords))
            return {};
        [&] { QTRY_VERIFY_WITH_TIMEOUT(hasTotals(*m_script->results()), 60000); }();
        return hitRows(*m_script->results());
    }

    // Blocks the worker at each file until @p done says so (at most 5 s).
    void holdEachFile(std::function<bool()> done)
    {
        connect(m_script->finder(), &Find::FindFile, m_script->finder(), [done] {
            for (int i = 0; i < 5000 && !done(); ++i)
                QThread::msleep(1);
        }, Qt::DirectConnection);
    }

    // A real double click on @p row of the results list.
    void doubleClick(int row)
    {
        m_view->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
        const QRect rect = m_view->visualRect(m_script->results()->index(row, 0));
        QTest::mouseClick(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, rect.center());
        QTest::mouseDClick(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, rect.center());
    }

    // The texts of the two totals rows.
    QStringList totals() const
    {
        const QStringList rows = summary(*m_script->results());
        return rows.mid(rows.size() - 2);
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
        m_view = std::make_unique<QTreeView>();
        m_script = std::make_unique<FindScript>(m_view.get());
    }

    void cleanup() { m_script.reset(); m_view.reset(); m_dir.reset(); }

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
    // "*.*" takes every file, also those without a dot.
    void masksSelectFiles_data()
    {
        QTest::addColumn<QString>("masks");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("two masks") << "*.sql,,*.txt"
                                   << QStringList{"a.sql", "b.txt", "sub/D.SQL", "sub/deeper/e.txt"};
        QTest::newRow("all files") << "*.*"
                                   << QStringList{"Makefile", "a.sql", "b.txt", "c.doc", "sub/D.SQL",
                                                  "sub/deeper/e.txt", "sub/deeper/noext"};
    }

    void masksSelectFiles()
    {
        QFETCH(QString, masks);
        QFETCH(QStringList, expected);
        for (const char *name : {"a.sql", "b.txt", "c.doc", "sub/D.SQL", "Makefile",
                                 "sub/deeper/noext"})
            m_dir->createFile(name, "x\n");
        m_dir->createFile("sub/deeper/e.txt", "");
        QStringList files;
        for (const Row &row : search(m_dir->path(), masks, QString())) {
            QVERIFY(row.at(1).isEmpty() && row.at(2).isEmpty());
            files << QDir(m_dir->path()).relativeFilePath(row.at(0));
        }
        files.sort();
        QCOMPARE(files, expected);
        const QString count = QString::number(expected.size());
        QCOMPARE(totals(), (QStringList{"Total number of lines: " + count,
                                        "Total number of files: " + count}));
    }

    void matching_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("syntax");
        QTest::addColumn<bool>("caseSensitive");
        QTest::addColumn<bool>("wholeWords");
        QTest::addColumn<bool>("found");
        const int fixed = QRegExp::FixedString, wild = QRegExp::Wildcard, rx = QRegExp::RegExp;
        QTest::newRow("whole word between spaces") << QByteArray("x abc y\n") << "abc" << fixed << true << true << true;
        QTest::newRow("whole word at line start") << QByteArray("abc y\n") << "abc" << fixed << true << true << false;
        QTest::newRow("whole word in parentheses") << QByteArray("(abc)\n") << "abc" << fixed << true << true << false;
        QTest::newRow("whole word, wildcard") << QByteArray("x abc y\n") << "a*" << wild << true << true << true;
        QTest::newRow("part of word without whole words") << QByteArray("xabcx\n") << "abc" << fixed << true << false << true;
        QTest::newRow("fixed dot is literal") << QByteArray("abc\n") << "a.c" << fixed << true << false << false;
        QTest::newRow("wildcard star") << QByteArray("xxabbbcxx\n") << "a*c" << wild << true << false << true;
        QTest::newRow("wildcard set") << QByteArray("abc\n") << "a[xy]c" << wild << true << false << false;
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

    // Totals count lines and files; a double click or Return opens the hit's line, not a
    // totals row.
    void totalsAndDoubleClick()
    {
        m_dir->createFile("a.sql", "select 1\nnothing\nselect 2\n");
        m_dir->createFile("b.sql", "x select\n");
        m_dir->createFile("c.sql", "none\n");
        QCOMPARE(search(m_dir->path(), "*.sql", "select").size(), 3);
        QCOMPARE(totals(), (QStringList{"Total number of lines: 3", "Total number of files: 2"}));
        QSignalSpy open(m_script.get(), &FindScript::openFileAtLine);
        doubleClick(0);
        doubleClick(3); // a totals row
        m_view->setCurrentIndex(m_script->results()->index(2, 0));
        QTest::keyClick(m_view.get(), Qt::Key_Return);
        const QList<Row> rows = hitRows(*m_script->results());
        QCOMPARE(open.count(), 2);
        QCOMPARE(open.at(0), (QVariantList{rows.at(0).at(0), rows.at(0).at(1).toInt()}));
        QCOMPARE(open.at(1), (QVariantList{rows.at(2).at(0), rows.at(2).at(1).toInt()}));
    }

    // Where a hit's match lies in its line, so that opening the hit can show it.
    void locateMatch_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("syntax");
        QTest::addColumn<bool>("wholeWords");
        const int fixed = QRegExp::FixedString, wild = QRegExp::Wildcard, rx = QRegExp::RegExp;
        QTest::newRow("fixed") << "NEEDLE" << fixed << false;
        QTest::newRow("whole word") << "needle" << fixed << true;
        QTest::newRow("regular expression") << "ne+dle" << rx << false;
        QTest::newRow("exact engine") << "ne\\x0065dle" << rx << false;
        QTest::newRow("wildcard") << "n*le" << wild << false;
    }

    void locateMatch()
    {
        QFETCH(QString, text);
        QFETCH(int, syntax);
        QFETCH(bool, wholeWords);
        const QString line = QString(300, QLatin1Char('x')) + " needle tail";
        m_dir->createFile("w.sql", line.toUtf8() + '\n');
        QCOMPARE(search(m_dir->path(), "*.sql", text, static_cast<QRegExp::PatternSyntax>(syntax),
                        false, wholeWords).size(), 1);
        int start = -1;
        int length = -1;
        QVERIFY(m_script->locateMatch(line, &start, &length));
        QCOMPARE(line.mid(start, length), QStringLiteral("needle"));
    }

    void invalidPatternRunsNothing()
    {
        m_dir->createFile("a.sql", "a(b\n");
        QSignalSpy busy(m_script.get(), &FindScript::turnWaitingMode);
        QVERIFY(!m_script->findCommandEvent(m_dir->path(), "*.sql", "a(b", QRegExp::RegExp, true,
                                            false));
        QVERIFY(!m_script->isSearching());
        QCOMPARE(m_script->results()->rowCount(), 0);
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
        QTest::newRow("anchors") << "^order|by $|^$" << int(QRegExp::RegExp) << true << QStringList{"-rnE"};
        QTest::newRow("blanks, ignoring case") << "ORDER\\s+BY" << int(QRegExp::RegExp) << false << QStringList{"-rniE"};
        QTest::newRow("negated set, no literal") << "[^a-z ]x[^a-z]" << int(QRegExp::RegExp) << true << QStringList{"-rnE"};
        QTest::newRow("one line only") << "by.*\\bjoin" << int(QRegExp::RegExp2) << true << QStringList{"-rnE"};
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
                                "user_id", "  ", "\t", "x", "join", "Order", "\xc3\xa9t\xc3\xa9",
                                "\xff\xfe", "*x*"};
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

    // Long lines are cut for the results; a line longer than the largest piece
    // read at once still finds a match across the pieces' boundary, and a ^ only
    // where the line starts.
    void longLines_data()
    {
        QTest::addColumn<int>("syntax");
        QTest::addColumn<QString>("text");
        QTest::newRow("fixed") << int(QRegExp::FixedString) << "needle";
        QTest::newRow("regular expression") << int(QRegExp::RegExp) << "ne+dle";
        QTest::newRow("exact engine") << int(QRegExp::RegExp) << "ne\\x0065dle";
    }

    void longLines()
    {
        QFETCH(int, syntax);
        QFETCH(QString, text);
        const int piece = FindLineScanner::MaxLineBytes;
        QByteArray across(piece + 1024 * 1024, 'x');
        across.replace(piece - 3, 6, "needle");
        QByteArray later(piece + 1024 * 1024, 'x');
        later.replace(piece + 100, 6, "needle");
        m_dir->createFile("long.txt", across + "\nneedle 2\n" + later + "\nx\n");
        const auto patternSyntax = static_cast<QRegExp::PatternSyntax>(syntax);
        QList<Row> rows = search(m_dir->path(), "*.txt", text, patternSyntax);
        QCOMPARE(rows.size(), 3);
        QCOMPARE(rows.at(0).at(2).size(), Find::MaxHitTextLength + 3);
        QCOMPARE(rows.at(1).mid(1), (QStringList{"2", "needle 2"}));
        QCOMPARE(rows.at(2).at(1), QStringLiteral("3"));
        if (patternSyntax == QRegExp::RegExp) {
            rows = search(m_dir->path(), "*.txt", "^" + text, patternSyntax);
            QCOMPARE(rows.size(), 1);
            QCOMPARE(rows.first().at(1), QStringLiteral("2"));
        }
    }

    // A NUL makes a file binary: it is not searched, and the summary counts it (a
    // 1 GB sparse file costs one block). UTF-16 and UTF-32 files with a byte-order
    // mark are searched in their encoding, and their NULs do not count.
    void encodings_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("expected"); // line number, text; empty for none
        const QString script = QString::fromUtf8("-- \xd0\x9a\xd0\xbb\xd0\xb8\xd0\xb5\xd0\xbd\xd1\x82\xd1\x8b\r\nSELECT name FROM t;\r\n");
        const QStringList hit{"2", "SELECT name FROM t;"};
        QTest::newRow("UTF-16LE") << encoded(script, "UTF-16LE", "\xff\xfe") << "name" << hit;
        QTest::newRow("UTF-16BE") << encoded(script, "UTF-16BE", "\xfe\xff") << "name" << hit;
        QTest::newRow("UTF-32LE") << encoded(script, "UTF-32LE", QByteArray("\xff\xfe\0\0", 4)) << "name" << hit;
        QTest::newRow("UTF-16, non-ASCII") << encoded(script, "UTF-16LE", "\xff\xfe")
                                           << QString::fromUtf8("\xd0\x9a\xd0\xbb\xd0\xb8") << QStringList{"1", script.section('\r', 0, 0)};
        QTest::newRow("UTF-8 mark, anchored") << encoded(script, "UTF-8", "\xef\xbb\xbf") << "^-- " << QStringList{"1", script.section('\r', 0, 0)};
        QTest::newRow("NUL late") << QByteArray("needle\n") + QByteArray(3 * 1024 * 1024, 'y') + QByteArray("\0needle\n", 8)
                                  << "needle" << QStringList{"1", "needle"};
        QTest::newRow("NUL early") << QByteArray("needle\0needle\n", 14) << "needle" << QStringList();
    }

    void encodings()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, text);
        QFETCH(QStringList, expected);
        m_dir->createFile("script.sql", content);
        QFile huge(m_dir->filePath("huge.sql"));
        QVERIFY(huge.open(QIODevice::WriteOnly) && huge.resize(qint64(1) << 30));
        huge.close();
        const QList<Row> rows = search(m_dir->path(), "*.sql", text, QRegExp::RegExp);
        QCOMPARE(rows.size(), expected.isEmpty() ? 0 : 1);
        if (!expected.isEmpty())
            QCOMPARE(rows.first().mid(1), expected);
        const bool binary = content.contains('\0') && !content.startsWith('\xff') && !content.startsWith('\xfe');
        QCOMPARE(summary(*m_script->results()).first(),
                 QStringLiteral("Files skipped: %1 binary, 0 unreadable").arg(binary ? 2 : 1));
    }

    // Names that are not valid UTF-8 are searched and shown readably; opening a
    // row opens the real file.
    void rawByteNames()
    {
        if (!FileNameCodec::hasRawBytes(QFile::decodeName("\xff")))
            QSKIP("file names are not read as UTF-8 here");
        for (const QByteArray &name : {QByteArray("caf\xe9.sql"), QByteArray("bad\xffname.sql")}) {
            QFile file(QFile::decodeName(QFile::encodeName(m_dir->path()) + '/' + name));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write("select needle\n");
        }
        QCOMPARE(search(m_dir->path(), "*.sql", "needle").size(), 2);
        QSignalSpy open(m_script.get(), &FindScript::openFileAtLine);
        for (int row = 0; row < 2; ++row) {
            QVERIFY(cell(*m_script->results(), row, 0).contains(QChar::ReplacementCharacter));
            doubleClick(row);
            QCOMPARE(open.size(), 1);
            QVERIFY(QFileInfo::exists(open.takeFirst().first().toString()));
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
        QVERIFY(QFile::link(m_dir->filePath("pipe.sql"), m_dir->filePath("pipelink.sql")));
        QVERIFY(QFile::link("/dev/zero", m_dir->filePath("zero.sql")));
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
        QTRY_VERIFY(hasTotals(*m_script->results()));
        const QList<Row> rows = hitRows(*m_script->results());
        QCOMPARE(rows.size(), 5);
        for (const Row &row : rows)
            QVERIFY(row.at(0).contains("/first/"));
    }

    // /proc holds files that block, never end or fail to read, and links to the
    // root: the search ends, and finds what is there.
    void procFolder()
    {
        const QString before = QDir::currentPath();
        QDir::setCurrent(m_dir->path()); // /proc/self/cwd leads here
        const QList<Row> rows = search("/proc/self", "*", "^Name:\\s", QRegExp::RegExp);
        QDir::setCurrent(before);
        QVERIFY(std::any_of(rows.cbegin(), rows.cend(),
                            [](const Row &row) { return row.at(0) == "/proc/self/status"; }));
    }

    // Stopping mid-way ends the worker at once, keeps every row found until then
    // and says that the search was cancelled.
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
        QTRY_VERIFY(hasTotals(*m_script->results()));
        const int found = find->reportedLines();
        const QList<Row> rows = hitRows(*m_script->results());
        QSet<QString> files;
        for (const Row &row : rows)
            files.insert(row.at(0));
        QCOMPARE(rows.size(), found);
        QCOMPARE(summary(*m_script->results()),
                 (QStringList{"Search cancelled: the rows above are what was found until then",
                              QStringLiteral("Total number of lines: %1").arg(found),
                              QStringLiteral("Total number of files: %1").arg(files.size())}));
        QCOMPARE(cursor.first().first().value<Qt::CursorShape>(), Qt::BusyCursor);
        QCOMPARE(cursor.last().first().value<Qt::CursorShape>(), Qt::ArrowCursor);
        QVERIFY(!m_script->stopFind());
    }
};

QTEST_MAIN(TestFind)
#include "tst_find.moc"
