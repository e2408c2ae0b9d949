#include "filecomparator.h"
#include "filediff.h"
#include "fontactions.h"
#include "panel.h"
#include "testsupport.h"

#include <Qsci/qsciscintilla.h>

#include <QAction>
#include <QApplication>
#include <QBoxLayout>
#include <QLabel>
#include <QMainWindow>
#include <QMessageBox>
#include <QScrollBar>
#include <QStatusBar>
#include <QToolBar>

class TestFileDiff : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { useTestSettings(); }

    void init()
    {
        m_dir = new TestDir;
        m_window = new QMainWindow;
        auto *central = new QWidget(m_window);
        auto *row = new QHBoxLayout(central);
        m_window->setCentralWidget(central);
        auto *leftLabel = new QLabel(central);
        auto *rightLabel = new QLabel(central);
        m_left = new Panel(row, central, m_window->statusBar(), leftLabel, true, m_window);
        m_right = new Panel(row, central, m_window->statusBar(), rightLabel, false, m_window);
        m_compare = new QAction(QStringLiteral("Compare by Content"), m_window);
        m_diff = new FileDiff(m_compare, m_window, m_left, m_right);
        m_window->resize(800, 600);
        m_window->show();
    }

    void cleanup()
    {
        delete m_window;
        delete m_dir;
    }

    void toolBarStates_data()
    {
        QTest::addColumn<QByteArray>("left");
        QTest::addColumn<QByteArray>("right");
        QTest::addColumn<bool>("stepping");
        QTest::addColumn<QList<int>>("leftMarked");
        QTest::addColumn<QList<int>>("rightMarked");
        using B = QByteArray;
        using L = QList<int>;
        QTest::newRow("identical files") << B("a\nb\n") << B("a\nb\n") << false << L() << L();
        QTest::newRow("spacing only") << B("a  b\n") << B("a b\n") << false << L() << L();
        QTest::newRow("one changed line") << B("a\nb\nc\n") << B("a\nX\nc\n") << true << L{1} << L{1};
        // The empty left file is one empty line; the empty line the panel feeds past the
        // right end pairs with the second of the left side's two.
        QTest::newRow("left empty") << B() << B("a\nb") << true << L{0} << L{0, 1};
    }

    void toolBarStates()
    {
        QFETCH(QByteArray, left);
        QFETCH(QByteArray, right);
        QFETCH(bool, stepping);
        QFETCH(QList<int>, leftMarked);
        QFETCH(QList<int>, rightMarked);
        QVERIFY(m_diff->toolBar()->isHidden());
        compare(left, right);
        QVERIFY(!m_diff->toolBar()->isHidden());
        QVERIFY(!m_compare->isEnabled());
        QCOMPARE(m_diff->nextAction()->isEnabled(), stepping);
        QCOMPARE(m_diff->prevAction()->isEnabled(), stepping);
        QVERIFY(m_left->isEditing() && m_right->isEditing());
        QVERIFY(m_left->editor()->isReadOnly());
        for (auto [panel, marked] : {std::make_pair(m_left, leftMarked),
                                     std::make_pair(m_right, rightMarked)}) {
            for (int line = 0; line < panel->editor()->lineCount(); ++line)
                QCOMPARE(panel->editor()->isLineMarked(line), marked.contains(line));
        }
    }

    void steppingByHunk()
    {
        // Hunks: L against R1..R3, then n added before the end.
        compare("a\nL\nz\nq\n", "a\nR1\nR2\nR3\nz\nq\nn\n");
        QCOMPARE(m_diff->hunks().size(), 2);
        const auto expect = [this](int left, int right, bool next, bool prev) {
            QCOMPARE(m_left->editor()->currentLine(), left);
            QCOMPARE(m_right->editor()->currentLine(), right);
            QCOMPARE(m_diff->nextAction()->isEnabled(), next);
            QCOMPARE(m_diff->prevAction()->isEnabled(), prev);
        };
        QVERIFY(m_diff->nextAction()->isEnabled());
        m_diff->nextAction()->trigger();
        expect(1, 1, true, false);
        m_diff->nextAction()->trigger();
        expect(4, 6, false, true);
        m_diff->prevAction()->trigger();
        expect(1, 1, true, false);

        // Comparing again keeps the place.
        compare("a\nL\nz\nq\n", "a\nR1\nR2\nR3\nz\nq\nn\n");
        QCOMPARE(m_diff->rightPosition(), 0);
        m_diff->nextAction()->trigger();
        expect(4, 6, false, true);
    }

    void alignedRows_data()
    {
        QTest::addColumn<QByteArray>("left");
        QTest::addColumn<QByteArray>("right");
        QByteArray body;
        for (int i = 0; i < 80; ++i)
            body += "insert into t values (" + QByteArray::number(i) + ");\n";
        QTest::newRow("insertion at the start") << body << "-- header\n-- Клиенты\n" + body;
        QTest::newRow("deletion in the middle") << body << body.left(300) + body.mid(900);
        QTest::newRow("change at the end") << body + "go\n" << body + "GO\nexit\n";
        QTest::newRow("changes throughout")
            << body << "create table t (id int);\n" + body.left(500) + "-- x\n" + body.mid(520, 900) + "end\n";
        QTest::newRow("one side empty") << QByteArray() << body.left(200);
    }

    void alignedRows()
    {
        QFETCH(QByteArray, left);
        QFETCH(QByteArray, right);
        compare(left, right);
        verifyAligned();
        // A value-to-value link, as the synchronous view makes, must not fight the rows.
        m_left->editor()->linkScrollBar(m_right->editor());
        m_diff->diffOnlyAction()->trigger();
        verifyAligned();
        m_diff->diffOnlyAction()->trigger();
        verifyAligned();
        // Scrolling either side moves the other to the same row.
        QScrollBar *leftBar = m_left->editor()->verticalScrollBar();
        QScrollBar *rightBar = m_right->editor()->verticalScrollBar();
        for (QScrollBar *bar : {leftBar, rightBar}) {
            QScrollBar *other = bar == leftBar ? rightBar : leftBar;
            const int before = other->value();
            const int target = bar == leftBar ? bar->maximum() / 2 : bar->maximum() / 4;
            bar->setValue(target);
            QCOMPARE(bar->value(), target); // not pushed on by the other side
            QVERIFY(bar->maximum() < 10 || other->value() != before);
            QVERIFY(qAbs(leftBar->value() - rightBar->value()) <= 2); // the rows above the first line
        }
    }

    // Showing differences only hides the common lines and shows them again; the
    // comparison is of the open texts, and an unsaved edit survives both switches.
    void showDiffOnlyTwice()
    {
        const QString leftFile = m_dir->createFile("left/p.sql", "A\nB\nC\nD\n");
        m_left->openEditFile(leftFile, true);
        QsciScintilla *editor = m_left->editor()->editorWidget();
        editor->setCursorPosition(1, 1);
        QTest::keyClicks(editor, "2");
        // A prompt would be answered Cancel, which is what lost the edit before.
        BoxAnswer prompts(QMessageBox::Cancel);
        m_diff->compareFiles(leftFile, m_dir->createFile("right/p.sql", "A\nB\nX\nC\nD\n"));
        m_diff->diffOnlyAction()->trigger();
        QVERIFY(m_diff->diffOnlyAction()->isChecked());
        const auto visible = [this](Panel *panel) {
            QList<int> lines;
            for (int line = 0; line < panel->editor()->lineCount(); ++line) {
                if (send(panel, QsciScintillaBase::SCI_GETLINEVISIBLE, line))
                    lines << line;
            }
            return lines;
        };
        // B2 against B and X, and the first line, which the editor cannot hide.
        QCOMPARE(visible(m_left), (QList<int>{0, 1}));
        QCOMPARE(visible(m_right), (QList<int>{0, 1, 2}));
        QCOMPARE(m_left->editor()->text(), QStringLiteral("A\nB2\nC\nD\n"));
        QCOMPARE(m_right->editor()->text(), QStringLiteral("A\nB\nX\nC\nD\n"));
        m_diff->diffOnlyAction()->trigger();
        QVERIFY(!m_diff->diffOnlyAction()->isChecked());
        QCOMPARE(visible(m_right), (QList<int>{0, 1, 2, 3, 4, 5}));
        QVERIFY(m_right->editor()->isLineMarked(2));
        QVERIFY(!m_diff->toolBar()->isHidden());
        QCOMPARE(prompts.count, 0);
        QVERIFY(m_left->editor()->isModified() && editor->isUndoAvailable());
    }

    void changedCharacters()
    {
        compare("SELECT NVL(a, 0) FROM t;\n-- Клиенты и заказы\n",
                "SELECT COALESCE(a, 0) FROM t;\n-- Продажа и заказы\n");
        // Byte positions: the editor holds UTF-8.
        const auto highlighted = [this](Panel *panel, int line, const QString &part) {
            const QString text = panel->editor()->lineText(line);
            const int at = text.indexOf(part);
            const long start = send(panel, QsciScintillaBase::SCI_POSITIONFROMLINE, line)
                               + text.left(at).toUtf8().size();
            return send(panel, QsciScintillaBase::SCI_INDICATORVALUEAT, FileDiff::ChangeIndicator,
                        start) != 0;
        };
        QVERIFY(highlighted(m_left, 0, "NVL"));
        QVERIFY(highlighted(m_right, 0, "COALESCE"));
        QVERIFY(!highlighted(m_left, 0, "SELECT"));
        QVERIFY(!highlighted(m_right, 0, "FROM"));
        QVERIFY(highlighted(m_left, 1, "Клиенты"));
        QVERIFY(highlighted(m_right, 1, "Продажа"));
        QVERIFY(!highlighted(m_right, 1, "заказы"));
        QCOMPARE(m_diff->changedRanges(RightPart, 1), (QVector<DiffRange>{{3, 7}}));
    }

    void options_data()
    {
        QTest::addColumn<QByteArray>("left");
        QTest::addColumn<QByteArray>("right");
        QTest::addColumn<bool>("ignoreWhitespace");
        QTest::addColumn<bool>("ignoreCase");
        QTest::addColumn<int>("differences");
        // Each option turned away from its default compares again; which lines
        // count as equal is the comparator's test.
        QTest::newRow("indentation counted") << QByteArray("  select 1;\n") << QByteArray("select 1;\n")
                                             << false << false << 1;
        QTest::newRow("case ignored") << QByteArray("SELECT Id;\n") << QByteArray("select id;\n") << true
                                      << true << 0;
    }

    void options()
    {
        QFETCH(QByteArray, left);
        QFETCH(QByteArray, right);
        QFETCH(bool, ignoreWhitespace);
        QFETCH(bool, ignoreCase);
        QFETCH(int, differences);
        compare(left, right);
        // The options compare the open texts again.
        if (m_diff->ignoreWhitespaceAction()->isChecked() != ignoreWhitespace)
            m_diff->ignoreWhitespaceAction()->trigger();
        if (m_diff->ignoreCaseAction()->isChecked() != ignoreCase)
            m_diff->ignoreCaseAction()->trigger();
        QCOMPARE(m_diff->comparator()->getDiffCount(LeftPart), differences);
        QCOMPARE(m_left->editor()->isLineMarked(0), differences > 0);
        // The next session starts with the same options.
        FileDiff next(nullptr, m_window, nullptr, nullptr);
        QCOMPARE(next.ignoreWhitespaceAction()->isChecked(), ignoreWhitespace);
        QCOMPARE(next.ignoreCaseAction()->isChecked(), ignoreCase);
        Settings().remove(QStringLiteral("Diff"));
    }

    // Close, closing either editor, or a file that cannot be opened end the mode for both.
    void closeEndsDiffMode()
    {
        const auto ended = [this] {
            return !m_left->isEditing() && !m_right->isEditing() && m_diff->toolBar()->isHidden()
                   && m_compare->isEnabled();
        };
        compare("a\n", "b\n");
        QSignalSpy closed(m_left, &Panel::closeEditSignal);
        m_diff->closeAction()->trigger();
        QCOMPARE(closed.count(), 1);
        QVERIFY(ended());
        compare("a\n", "b\n");
        QVERIFY(m_right->closeEdit());
        QVERIFY(ended());

        BoxAnswer ok(QMessageBox::Ok);
        m_diff->compareFiles(m_dir->filePath(QStringLiteral("left/gone.sql")),
                             m_dir->createFile(QStringLiteral("right/b.sql"), "b\n"));
        QCOMPARE(ok.count, 1);
        QVERIFY(ended());

        // A file in the large-file view has no lines: it is said not to be compared,
        // rather than compared as empty and shown without differences.
        m_diff->compareFiles(
            m_dir->createFile(QStringLiteral("left/long.sql"),
                              "values (" + QByteArray(Edit::maximumLineLength(), '1') + ");\n"),
            m_dir->filePath(QStringLiteral("right/b.sql")));
        QCOMPARE(ok.count, 2);
        QVERIFY2(ok.text.contains(QLatin1String("long.sql")), qPrintable(ok.text));
        QVERIFY(!m_diff->comparator());
        QVERIFY(!m_diff->nextAction()->isEnabled());
    }

    void fontActionsReachBothEditors()
    {
        FontActions fonts(m_window);
        auto *bar = new QToolBar(m_window);
        fonts.connectActions(m_left, m_right, bar);
        QCOMPARE(bar->actions().size(), 2);
        compare("a\n", "b\n");
        const int before = m_left->editor()->fontSize();
        fonts.increaseAction()->trigger();
        QCOMPARE(m_left->editor()->fontSize(), before + 1);
        QCOMPARE(m_right->editor()->fontSize(), before + 1);
        fonts.decreaseAction()->trigger();
        fonts.decreaseAction()->trigger();
        QCOMPARE(m_right->editor()->fontSize(), before - 1);
        // The size is kept for the next editor.
        QVERIFY(m_diff->close());
        compare("a\n", "b\n");
        QCOMPARE(m_left->editor()->fontSize(), before - 1);
    }

private:
    void compare(const QByteArray &left, const QByteArray &right)
    {
        m_diff->compareFiles(m_dir->createFile(QStringLiteral("left/a b.sql"), left),
                             m_dir->createFile(QStringLiteral("right/a b.sql"), right));
    }

    long send(Panel *panel, unsigned message, unsigned long wParam = 0, long lParam = 0) const
    {
        return panel->editor()->editorWidget()->SendScintilla(message, wParam, lParam);
    }

    // Each row's lines sit on the same screen row on both sides: the rows above a
    // side's first line that the editor cannot draw count as scrolled past.
    void verifyAligned()
    {
        const QVector<DiffRow> rows = m_diff->rows();
        for (Part part : {LeftPart, RightPart}) {
            Panel *panel = part == LeftPart ? m_left : m_right;
            int above = 0;
            while (above < rows.size() && rows.at(above).line(part) < 0)
                ++above;
            for (int r = 0; r < rows.size(); ++r) {
                const int line = rows.at(r).line(part);
                if (line < 0)
                    continue;
                QVERIFY(send(panel, QsciScintillaBase::SCI_GETLINEVISIBLE, line));
                QCOMPARE(int(send(panel, QsciScintillaBase::SCI_VISIBLEFROMDOCLINE, line)) + above, r);
            }
            // Lines in no row are hidden, but the first, which the editor always shows.
            for (int line = 1; line < panel->editor()->lineCount(); ++line) {
                const bool inRow = std::any_of(rows.begin(), rows.end(),
                                               [&](const DiffRow &row) { return row.line(part) == line; });
                QCOMPARE(bool(send(panel, QsciScintillaBase::SCI_GETLINEVISIBLE, line)), inRow);
            }
        }
    }

    TestDir *m_dir = nullptr;
    QMainWindow *m_window = nullptr;
    QAction *m_compare = nullptr;
    Panel *m_left = nullptr;
    Panel *m_right = nullptr;
    FileDiff *m_diff = nullptr;
};

QTEST_MAIN(TestFileDiff)
#include "tst_filediff.moc"
