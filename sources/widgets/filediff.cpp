#include "filediff.h"

#include "logging.h"
#include "panel.h"
#include "settings.h"

#include <Qsci/qsciscintilla.h>
#include <Qsci/qscistyle.h>

#include <QAction>
#include <QDebug>
#include <QMainWindow>
#include <QMessageBox>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QToolBar>

#include <algorithm>

namespace {

// Rows shown above a hunk when stepping to it.
constexpr int ContextRows = 2;

const QsciStyle &fillerStyle()
{
    static const QsciStyle style(-1, QStringLiteral("Diff filler"), QColor(160, 160, 160),
                                 QColor(238, 238, 238), QFont());
    return style;
}

int bytePosition(QsciScintilla *editor, int line, const QString &text, int index)
{
    return int(editor->SendScintilla(QsciScintillaBase::SCI_POSITIONFROMLINE, line))
           + text.leftRef(index).toUtf8().size();
}

} // namespace

FileDiff::FileDiff(QAction *compareAction, QMainWindow *mainWindow, Panel *leftPanel,
                   Panel *rightPanel)
    : QObject(mainWindow)
    , m_mainWindow(mainWindow)
    , m_compareAction(compareAction)
    , m_leftPanel(leftPanel)
    , m_rightPanel(rightPanel)
{
    m_closeAction = new QAction(tr("Close"), this);
    if (compareAction)
        connect(compareAction, &QAction::triggered, this, &FileDiff::showDiffFiles);
    m_nextAction = new QAction(QIcon(QStringLiteral(":/images/arrow_down.png")), tr("Next diff"),
                               this);
    connect(m_nextAction, &QAction::triggered, this, &FileDiff::showNextDiff);
    m_prevAction = new QAction(QIcon(QStringLiteral(":/images/arrow_up.png")), tr("Prev diff"),
                               this);
    connect(m_prevAction, &QAction::triggered, this, &FileDiff::showPrevDiff);
    m_diffOnlyAction = new QAction(tr("Show diff only"), this);
    m_diffOnlyAction->setCheckable(true);
    connect(m_diffOnlyAction, &QAction::triggered, this, &FileDiff::showDiffOnly);
    // Options of the line comparison, remembered between sessions: they decide
    // which lines are equal, so a change compares the two texts again.
    m_ignoreWhitespaceAction = new QAction(tr("Ignore whitespace"), this);
    m_ignoreCaseAction = new QAction(tr("Ignore case"), this);
    m_ignoreWhitespaceAction->setCheckable(true);
    m_ignoreCaseAction->setCheckable(true);
    const Settings settings;
    m_ignoreWhitespaceAction->setChecked(settings.diffIgnoresWhitespace());
    m_ignoreCaseAction->setChecked(settings.diffIgnoresCase());
    connect(m_ignoreWhitespaceAction, &QAction::triggered, this, [this](bool ignore) {
        Settings().setDiffIgnoresWhitespace(ignore);
        compareAgain();
    });
    connect(m_ignoreCaseAction, &QAction::triggered, this, [this](bool ignore) {
        Settings().setDiffIgnoresCase(ignore);
        compareAgain();
    });

    m_toolBar = new QToolBar(mainWindow);
    m_toolBar->setObjectName(QStringLiteral("diffToolBar"));
    m_toolBar->addAction(m_nextAction);
    m_toolBar->addAction(m_prevAction);
    m_toolBar->addAction(m_diffOnlyAction);
    m_toolBar->addAction(m_closeAction);
    m_toolBar->addSeparator();
    m_toolBar->addAction(m_ignoreWhitespaceAction);
    m_toolBar->addAction(m_ignoreCaseAction);
    if (mainWindow)
        mainWindow->addToolBar(m_toolBar);
    m_toolBar->hide();
}

FileDiff::~FileDiff()
{
    for (const QMetaObject::Connection &c : qAsConst(m_closeConnections))
        disconnect(c);
    unlinkScrolling();
    if (m_leftPanel && m_rightPanel && m_leftPanel->closeEdit() && m_rightPanel->closeEdit()) {
        m_toolBar->hide();
        if (m_compareAction)
            m_compareAction->setEnabled(true);
    }
}

Edit *FileDiff::editor(Part part) const
{
    const Panel *panel = part == LeftPart ? m_leftPanel.data() : m_rightPanel.data();
    return panel ? panel->editor() : nullptr;
}

FileComparator::Options FileDiff::options() const
{
    FileComparator::Options result = FileComparator::NoOption;
    if (m_ignoreWhitespaceAction->isChecked())
        result |= FileComparator::IgnoreWhitespace;
    if (m_ignoreCaseAction->isChecked())
        result |= FileComparator::IgnoreCase;
    return result;
}

void FileDiff::showDiffFiles()
{
    if (!m_leftPanel || !m_rightPanel)
        return;
    const QStringList left = m_leftPanel->selectedFiles();
    const QStringList right = m_rightPanel->selectedFiles();
    if (left.isEmpty() || right.isEmpty())
        return;
    startComparison(left.first(), right.first());
}

void FileDiff::compareFiles(const QString &leftFile, const QString &rightFile)
{
    if (m_leftPanel && m_rightPanel && !leftFile.isEmpty() && !rightFile.isEmpty())
        startComparison(leftFile, rightFile);
}

void FileDiff::compareAgain()
{
    // The texts in the editors, as they are now; with no editor, the selections.
    const Edit *left = editor(LeftPart);
    const Edit *right = editor(RightPart);
    if (left && right && m_comparator)
        startComparison(left->filePath(), right->filePath());
    else
        showDiffFiles();
}

void FileDiff::startComparison(const QString &leftFile, const QString &rightFile)
{
    for (const QMetaObject::Connection &c : qAsConst(m_closeConnections))
        disconnect(c);
    m_closeConnections.clear();
    m_closeConnections << connect(m_closeAction, &QAction::triggered, this, &FileDiff::close)
                       << connect(m_leftPanel.data(), &Panel::closeEditSignal, this,
                                  &FileDiff::close)
                       << connect(m_rightPanel.data(), &Panel::closeEditSignal, this,
                                  &FileDiff::close);

    if (m_compareAction)
        m_compareAction->setEnabled(false);
    m_toolBar->show();
    clearDecorations();

    // A file already open in its panel is compared as the editor holds it, edits
    // and all: opening it again would ask to save them, or lose them. A side whose
    // file did not open (unreadable, or the user kept another document open before
    // it) would be compared as empty: the comparison is not made.
    const auto opened = [](Panel *panel, const QString &file) {
        if (!panel->editor() || panel->editor()->filePath() != file)
            panel->openEditFile(file, false);
        return panel->editor() && panel->editor()->filePath() == file;
    };
    auto comparator = std::make_unique<FileComparator>();
    comparator->setOptions(options());
    const bool leftOpened = opened(m_leftPanel, leftFile);
    if (leftOpened)
        m_leftPanel->addLinesTo(*comparator, true);
    if (!leftOpened || !opened(m_rightPanel, rightFile)) {
        m_toolBar->hide();
        if (m_compareAction)
            m_compareAction->setEnabled(true);
        return;
    }
    m_rightPanel->addLinesTo(*comparator, false);
    // A file in the large-file view has no lines to give: compared as empty, two
    // different files would show no difference at all.
    QString tooLarge;
    for (const Edit *edit : {editor(LeftPart), editor(RightPart)}) {
        if (!edit->editorWidget())
            tooLarge = edit->name();
    }
    if (!tooLarge.isEmpty() || !comparator->compare()) {
        QMessageBox::warning(m_mainWindow, QStringLiteral("Morvane Navarch"),
                             tooLarge.isEmpty()
                                 ? comparator->errorString()
                                 : tr("The file %1 is too large for the editor; the files are "
                                      "not compared line by line.")
                                       .arg(tooLarge));
        m_nextAction->setEnabled(false);
        m_prevAction->setEnabled(false);
        m_comparator.reset();
        m_hunks.clear();
        m_rows.clear();
        return;
    }
    m_comparator = std::move(comparator);

    std::vector<int> leftCommon;
    std::vector<int> rightCommon;
    m_comparator->getCommonLines(leftCommon, LeftPart);
    m_comparator->getCommonLines(rightCommon, RightPart);
    m_hunks = DiffAlignment::hunks(leftCommon, rightCommon, editor(LeftPart)->lineCount(),
                                   editor(RightPart)->lineCount());
    // A new comparison keeps the place the last stepping left, within the new hunks.
    m_rightPosition = qMin(m_rightPosition, m_hunks.size() - 1);
    m_nextAction->setEnabled(!m_hunks.isEmpty());
    m_prevAction->setEnabled(!m_hunks.isEmpty());
    // Editors kept open from an earlier comparison still carry its marks.
    editor(LeftPart)->clearMarkedLines();
    editor(RightPart)->clearMarkedLines();
    if (m_comparator->getDiffCount(LeftPart) != 0 || m_comparator->getDiffCount(RightPart) != 0) {
        markDifferences(m_leftPanel, LeftPart);
        markDifferences(m_rightPanel, RightPart);
    }
    layOut();
    linkScrolling();
}

void FileDiff::markDifferences(Panel *panel, int part)
{
    Edit *edit = panel->editor();
    if (!edit)
        return;
    const Part side = static_cast<Part>(part);
    const int count = m_comparator->getDiffCount(side);
    for (int index = 0; index < count; ++index) {
        const int line = m_comparator->getDiff(side, index);
        if (line >= 0) {
            qCDebug(lcDiff) << "Diff" << line;
            edit->markLine(line);
        }
    }
}

void FileDiff::layOut()
{
    Edit *left = editor(LeftPart);
    Edit *right = editor(RightPart);
    if (!left || !right)
        return;
    m_rows = DiffAlignment::rows(m_hunks, left->lineCount(), right->lineCount(),
                                 m_diffOnlyAction->isChecked());
    m_changed[LeftPart].clear();
    m_changed[RightPart].clear();
    const FileComparator::Options opts = options();
    for (const DiffRow &row : qAsConst(m_rows)) {
        if (!row.changed || row.left < 0 || row.right < 0)
            continue;
        QVector<DiffRange> leftRanges;
        QVector<DiffRange> rightRanges;
        DiffAlignment::changedRanges(left->lineText(row.left), right->lineText(row.right), opts,
                                     leftRanges, rightRanges);
        m_changed[LeftPart].insert(row.left, leftRanges);
        m_changed[RightPart].insert(row.right, rightRanges);
    }
    decorate(LeftPart);
    decorate(RightPart);
    if (QScrollBar *bar = left->verticalScrollBar())
        scrolled(LeftPart, bar->value());
}

void FileDiff::decorate(Part part)
{
    Edit *edit = editor(part);
    QsciScintilla *sci = edit ? edit->editorWidget() : nullptr;
    if (!sci)
        return;
    clearDecorations(edit);
    m_decorated[part] = edit;

    // Only the rows' lines stay visible ("show diff only" leaves out the common ones).
    const int lines = sci->lines();
    std::vector<bool> shown(size_t(lines), false);
    for (const DiffRow &row : qAsConst(m_rows)) {
        const int line = row.line(part);
        if (line >= 0 && line < lines)
            shown[size_t(line)] = true;
    }
    for (int line = 1; line < lines;) { // the editor cannot hide its first line
        if (shown[size_t(line)]) {
            ++line;
            continue;
        }
        int end = line;
        while (end + 1 < lines && !shown[size_t(end + 1)])
            ++end;
        sci->SendScintilla(QsciScintillaBase::SCI_HIDELINES, line, end);
        line = end + 1;
    }

    m_top[part] = 0;
    sci->setAnnotationDisplay(QsciScintilla::AnnotationStandard);
    for (const DiffFiller &filler : DiffAlignment::fillers(m_rows, part)) {
        if (filler.line < 0) {
            // Nothing can be drawn above the first line: this side scrolls that
            // many rows behind the other instead.
            m_top[part] = filler.count;
            continue;
        }
        QStringList blanks;
        for (int k = 0; k < filler.count; ++k)
            blanks << QStringLiteral(" ");
        sci->annotate(filler.line, blanks.join(QLatin1Char('\n')), fillerStyle());
    }

    sci->indicatorDefine(QsciScintilla::StraightBoxIndicator, ChangeIndicator);
    sci->setIndicatorForegroundColor(QColor(200, 40, 40, 90), ChangeIndicator);
    sci->setIndicatorDrawUnder(true, ChangeIndicator);
    sci->SendScintilla(QsciScintillaBase::SCI_SETINDICATORCURRENT, ChangeIndicator);
    for (auto it = m_changed[part].cbegin(); it != m_changed[part].cend(); ++it) {
        const QString text = edit->lineText(it.key());
        for (const DiffRange &range : it.value()) {
            const int from = bytePosition(sci, it.key(), text, range.start);
            const int to = bytePosition(sci, it.key(), text, range.start + range.length);
            sci->SendScintilla(QsciScintillaBase::SCI_INDICATORFILLRANGE, from, to - from);
        }
    }
}

void FileDiff::clearDecorations(Edit *edit)
{
    QsciScintilla *sci = edit ? edit->editorWidget() : nullptr;
    if (!sci)
        return;
    sci->clearAnnotations();
    sci->SendScintilla(QsciScintillaBase::SCI_SHOWLINES, 0, qMax(0, sci->lines() - 1));
    sci->SendScintilla(QsciScintillaBase::SCI_SETINDICATORCURRENT, ChangeIndicator);
    sci->SendScintilla(QsciScintillaBase::SCI_INDICATORCLEARRANGE, 0, sci->length());
}

void FileDiff::clearDecorations()
{
    unlinkScrolling();
    for (QPointer<Edit> &edit : m_decorated) {
        clearDecorations(edit);
        edit = nullptr;
    }
    m_top[LeftPart] = m_top[RightPart] = 0;
}

QVector<DiffRange> FileDiff::changedRanges(Part part, int line) const
{
    return part == LeftPart || part == RightPart ? m_changed[part].value(line)
                                                 : QVector<DiffRange>();
}

void FileDiff::linkScrolling()
{
    unlinkScrolling();
    // The sides scroll by rows here; a plain value-to-value link between the two
    // bars (the synchronous view's) would fight this one where the rows above a
    // side's first line make the values differ.
    QScrollBar *leftBar = editor(LeftPart) ? editor(LeftPart)->verticalScrollBar() : nullptr;
    QScrollBar *rightBar = editor(RightPart) ? editor(RightPart)->verticalScrollBar() : nullptr;
    if (leftBar && rightBar) {
        disconnect(leftBar, &QScrollBar::valueChanged, rightBar, &QScrollBar::setValue);
        disconnect(rightBar, &QScrollBar::valueChanged, leftBar, &QScrollBar::setValue);
    }
    for (Part part : {LeftPart, RightPart}) {
        Edit *edit = editor(part);
        QScrollBar *bar = edit ? edit->verticalScrollBar() : nullptr;
        if (!bar)
            return;
        m_scrollLinks << connect(bar, &QScrollBar::valueChanged, this,
                                 [this, part](int value) { scrolled(part, value); });
    }
}

void FileDiff::unlinkScrolling()
{
    for (const QMetaObject::Connection &c : qAsConst(m_scrollLinks))
        disconnect(c);
    m_scrollLinks.clear();
}

void FileDiff::scrolled(Part from, int value)
{
    if (m_scrolling)
        return;
    const Part to = from == LeftPart ? RightPart : LeftPart;
    Edit *other = editor(to);
    QScrollBar *bar = other ? other->verticalScrollBar() : nullptr;
    if (!bar)
        return;
    // Both sides show the same rows; a side with rows above its first line that it
    // cannot draw stays at its top until the other has scrolled past them.
    const QScopedValueRollback<bool> guard(m_scrolling, true);
    bar->setValue(qMax(0, value + m_top[from] - m_top[to]));
}

void FileDiff::stepTo(int hunk)
{
    m_nextAction->setEnabled(hunk + 1 < m_hunks.size());
    m_prevAction->setEnabled(hunk - 1 >= 0);
    if (hunk < 0 || hunk >= m_hunks.size())
        return;
    const DiffHunk &h = m_hunks.at(hunk);
    qCDebug(lcDiff) << "Diff" << h.leftStart << h.rightStart << "Index" << hunk << "Count diff"
             << m_hunks.size();
    // The row where the hunk begins, shown a little below the top of both sides.
    int row = 0;
    while (row < m_rows.size()
           && !(m_rows.at(row).changed
                && (m_rows.at(row).left == (h.leftCount ? h.leftStart : -1))
                && (m_rows.at(row).right == (h.rightCount ? h.rightStart : -1))))
        ++row;
    for (Part part : {LeftPart, RightPart}) {
        Edit *edit = editor(part);
        if (!edit)
            continue;
        edit->goToLine(qMin(h.start(part), edit->lineCount() - 1));
    }
    if (Edit *left = editor(LeftPart)) {
        if (QsciScintilla *sci = left->editorWidget()) {
            const int first = qMax(0, row - ContextRows - m_top[LeftPart]);
            sci->SendScintilla(QsciScintillaBase::SCI_SETFIRSTVISIBLELINE, first);
            scrolled(LeftPart, sci->verticalScrollBar()->value());
        }
    }
}

void FileDiff::showNextDiff()
{
    ++m_rightPosition;
    stepTo(m_rightPosition);
}

void FileDiff::showPrevDiff()
{
    --m_rightPosition;
    stepTo(m_rightPosition);
}

void FileDiff::showDiffOnly()
{
    if (!m_comparator)
        return;
    if (m_diffOnlyAction->isChecked()) {
        layOut();
        return;
    }
    // Back to the full texts, compared again as they stand in the editors.
    compareAgain();
}

bool FileDiff::close()
{
    if (!m_leftPanel || !m_rightPanel)
        return true;
    if (!m_leftPanel->closeEdit())
        return false;
    if (!m_rightPanel->closeEdit())
        return false;
    clearDecorations();
    m_toolBar->hide();
    m_diffOnlyAction->setChecked(false);
    if (m_compareAction)
        m_compareAction->setEnabled(true);
    return true;
}
