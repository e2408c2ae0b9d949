#include "filediff.h"
#include "filecomparator.h"
#include "panel.h"

#include <QAction>
#include <QDebug>
#include <QMainWindow>
#include <QMessageBox>
#include <QToolBar>

#include <algorithm>

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

    m_toolBar = new QToolBar(mainWindow);
    m_toolBar->setObjectName(QStringLiteral("diffToolBar"));
    m_toolBar->addAction(m_nextAction);
    m_toolBar->addAction(m_prevAction);
    m_toolBar->addAction(m_diffOnlyAction);
    m_toolBar->addAction(m_closeAction);
    if (mainWindow)
        mainWindow->addToolBar(m_toolBar);
    m_toolBar->hide();
}

FileDiff::~FileDiff()
{
    for (const QMetaObject::Connection &c : qAsConst(m_closeConnections))
        disconnect(c);
    if (m_leftPanel && m_rightPanel && m_leftPanel->closeEdit() && m_rightPanel->closeEdit()) {
        m_toolBar->hide();
        if (m_compareAction)
            m_compareAction->setEnabled(true);
    }
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

    // A side whose file did not open (unreadable, or the user kept the document open
    // before it) would be compared as empty: the comparison is not made.
    const auto opened = [](Panel *panel, const QString &file) {
        panel->openEditFile(file, false);
        return panel->editor() && panel->editor()->filePath() == file;
    };
    auto comparator = std::make_unique<FileComparator>();
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
    if (!comparator->compare()) {
        QMessageBox::warning(m_mainWindow, QStringLiteral("Morvane Navarch"),
                             comparator->errorString());
        m_nextAction->setEnabled(false);
        m_prevAction->setEnabled(false);
        m_comparator.reset();
        return;
    }
    m_comparator = std::move(comparator);

    if (m_comparator->getDiffCount(LeftPart) == 0 && m_comparator->getDiffCount(RightPart) == 0) {
        m_nextAction->setEnabled(false);
        m_prevAction->setEnabled(false);
    } else {
        m_nextAction->setEnabled(true);
        m_prevAction->setEnabled(true);
        markDifferences(m_leftPanel, LeftPart);
        markDifferences(m_rightPanel, RightPart);
    }
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
            qDebug() << "Diff" << line;
            edit->markLine(line);
        }
    }
}

void FileDiff::stepSide(Panel *panel, int part, int position)
{
    if (!m_comparator)
        return;
    const Part side = static_cast<Part>(part);
    const int count = m_comparator->getDiffCount(side);
    m_nextAction->setEnabled(position + 1 < count);
    m_prevAction->setEnabled(position - 1 >= 0);
    const int line = m_comparator->getDiff(side, position);
    if (line >= 0) {
        qDebug() << "Diff" << line << "Index" << position << "Count diff" << count;
        if (Edit *edit = panel ? panel->editor() : nullptr)
            edit->goToLine(line);
    }
}

void FileDiff::showNextDiff()
{
    ++m_leftPosition;
    stepSide(m_leftPanel, LeftPart, m_leftPosition);
    ++m_rightPosition;
    stepSide(m_rightPanel, RightPart, m_rightPosition);
}

void FileDiff::showPrevDiff()
{
    --m_leftPosition;
    stepSide(m_leftPanel, LeftPart, m_leftPosition);
    --m_rightPosition;
    stepSide(m_rightPanel, RightPart, m_rightPosition);
}

void FileDiff::reduceToDifferences(Panel *panel, QString &savedText)
{
    Edit *edit = panel ? panel->editor() : nullptr;
    if (!edit)
        return;
    savedText = edit->text();
    // The left side's common-line numbers serve both sides.
    std::vector<int> common;
    m_comparator->getCommonLines(common);
    std::sort(common.begin(), common.end());
    QString reduced;
    const int count = edit->lineCount();
    for (int line = 0; line < count; ++line) {
        if (!std::binary_search(common.begin(), common.end(), line))
            reduced += edit->lineText(line) + QLatin1Char('\n');
    }
    edit->setText(reduced);
}

void FileDiff::showDiffOnly()
{
    if (!m_comparator)
        return;
    if (m_diffOnlyAction->isChecked()) {
        reduceToDifferences(m_leftPanel, m_leftSavedText);
        reduceToDifferences(m_rightPanel, m_rightSavedText);
        return;
    }
    if (m_leftPanel && m_leftPanel->editor())
        m_leftPanel->editor()->setText(m_leftSavedText);
    if (m_rightPanel && m_rightPanel->editor())
        m_rightPanel->editor()->setText(m_rightSavedText);
    const QString left = m_leftPanel && m_leftPanel->editor()
                             ? m_leftPanel->editor()->filePath() : QString();
    const QString right = m_rightPanel && m_rightPanel->editor()
                              ? m_rightPanel->editor()->filePath() : QString();
    // The files in the editors are compared again; with no editor, the selections are.
    if (!left.isEmpty() && !right.isEmpty())
        startComparison(left, right);
    else
        showDiffFiles();
}

bool FileDiff::close()
{
    if (!m_leftPanel || !m_rightPanel)
        return true;
    if (!m_leftPanel->closeEdit())
        return false;
    if (!m_rightPanel->closeEdit())
        return false;
    m_toolBar->hide();
    m_diffOnlyAction->setChecked(false);
    if (m_compareAction)
        m_compareAction->setEnabled(true);
    return true;
}
