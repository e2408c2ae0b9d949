#include "filecomparator.h"
#include "filediff.h"
#include "fontactions.h"
#include "panel.h"
#include "testsupport.h"

#include <QAction>
#include <QApplication>
#include <QBoxLayout>
#include <QLabel>
#include <QMainWindow>
#include <QMessageBox>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>

class TestFileDiff : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { useTestSettings(); }
    void init();
    void cleanup();

    void toolBarStates_data();
    void toolBarStates();
    void steppingFollowsRightList();
    void showDiffOnlyTwice();
    void closeEndsDiffMode();
    void unopenedFileMakesNoComparison();
    void fontActionsReachBothEditors();

private:
    void compare(const QByteArray &left, const QByteArray &right);

    TestDir *m_dir = nullptr;
    QMainWindow *m_window = nullptr;
    QAction *m_compare = nullptr;
    Panel *m_left = nullptr;
    Panel *m_right = nullptr;
    FileDiff *m_diff = nullptr;
};

void TestFileDiff::init()
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

void TestFileDiff::cleanup()
{
    delete m_window;
    delete m_dir;
}

void TestFileDiff::compare(const QByteArray &left, const QByteArray &right)
{
    m_diff->compareFiles(m_dir->createFile(QStringLiteral("left/a b.sql"), left),
                         m_dir->createFile(QStringLiteral("right/a b.sql"), right));
}

void TestFileDiff::toolBarStates_data()
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

void TestFileDiff::toolBarStates()
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

void TestFileDiff::steppingFollowsRightList()
{
    // Right list: lines 1, 2, 3 (plus nothing past the end: both end with a newline).
    compare("a\nL\nz\n", "a\nR1\nR2\nR3\nz\n");
    QCOMPARE(m_diff->comparator()->getDiffCount(LeftPart), 1);
    QCOMPARE(m_diff->comparator()->getDiffCount(RightPart), 3);
    const auto expect = [this](int right, int left, bool next, bool prev) {
        QCOMPARE(m_right->editor()->currentLine(), right);
        QCOMPARE(m_left->editor()->currentLine(), left);
        QCOMPARE(m_diff->nextAction()->isEnabled(), next);
        QCOMPARE(m_diff->prevAction()->isEnabled(), prev);
    };
    m_diff->nextAction()->trigger();
    expect(1, 1, true, false);
    m_diff->nextAction()->trigger();
    m_diff->nextAction()->trigger();
    expect(3, 1, false, true); // the left side stays on its only difference
    m_diff->prevAction()->trigger();
    expect(2, 1, true, true);

    // Comparing again keeps the positions.
    compare("a\nL\nz\n", "a\nR1\nR2\nR3\nz\n");
    QCOMPARE(m_diff->rightPosition(), 1);
    m_diff->prevAction()->trigger();
    QCOMPARE(m_diff->rightPosition(), 0);
    expect(1, 1, true, false);
}

void TestFileDiff::showDiffOnlyTwice()
{
    const QByteArray left("a\nb\nc\nd\n");
    const QByteArray right("a\nB\nc\nd\ne\n");
    compare(left, right);
    m_diff->diffOnlyAction()->trigger();
    QVERIFY(m_diff->diffOnlyAction()->isChecked());
    // Common lines are left lines 0, 2, 3 and 4 (the empty line past the end); the same
    // numbers are taken out of the right side.
    QCOMPARE(m_left->editor()->text(), QStringLiteral("b\n"));
    QCOMPARE(m_right->editor()->text(), QStringLiteral("B\n"));
    QVERIFY(!m_left->editor()->isModified());
    m_diff->diffOnlyAction()->trigger();
    QVERIFY(!m_diff->diffOnlyAction()->isChecked());
    QCOMPARE(m_left->editor()->text(), QString::fromLatin1(left));
    QCOMPARE(m_right->editor()->text(), QString::fromLatin1(right));
    QVERIFY(m_right->editor()->isLineMarked(1));
    QVERIFY(m_right->editor()->isLineMarked(4));
    QVERIFY(!m_diff->toolBar()->isHidden());
}

void TestFileDiff::closeEndsDiffMode()
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

    // Closing one panel's editor ends the mode for both.
    compare("a\n", "b\n");
    QVERIFY(m_right->closeEdit());
    QVERIFY(ended());
}

void TestFileDiff::unopenedFileMakesNoComparison()
{
    QTimer::singleShot(0, [] {
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget()))
            box->accept();
    });
    m_diff->compareFiles(m_dir->filePath(QStringLiteral("left/gone.sql")),
                         m_dir->createFile(QStringLiteral("right/b.sql"), "b\n"));
    QVERIFY(m_diff->toolBar()->isHidden());
    QVERIFY(m_compare->isEnabled());
    QVERIFY(!m_right->isEditing());
    QVERIFY(!m_diff->comparator());
}

void TestFileDiff::fontActionsReachBothEditors()
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

QTEST_MAIN(TestFileDiff)
#include "tst_filediff.moc"
