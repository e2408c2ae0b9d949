#pragma once

#include "diffalignment.h"
#include "filecomparator.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QString>

#include <memory>

class Edit;
class Panel;
class QAction;
class QMainWindow;
class QToolBar;

/**
 * Side-by-side comparison of the files selected in the two panels: opens both in
 * their editors, marks the differing lines, lines the two sides up with blank rows
 * where one has no counterpart, highlights what changed inside paired lines, scrolls
 * both together and steps through the hunks from a tool bar. "Show diff only" hides
 * the common lines; the editors' texts are never replaced.
 */
class FileDiff : public QObject
{
    Q_OBJECT
public:
    FileDiff(QAction *compareAction, QMainWindow *mainWindow, Panel *leftPanel,
             Panel *rightPanel);
    ~FileDiff() override;

    /** Compares two given files, as showDiffFiles() does with the selections. */
    void compareFiles(const QString &leftFile, const QString &rightFile);

    QToolBar *toolBar() const { return m_toolBar; }
    QAction *nextAction() const { return m_nextAction; }
    QAction *prevAction() const { return m_prevAction; }
    QAction *closeAction() const { return m_closeAction; }
    QAction *diffOnlyAction() const { return m_diffOnlyAction; }
    QAction *ignoreWhitespaceAction() const { return m_ignoreWhitespaceAction; }
    QAction *ignoreCaseAction() const { return m_ignoreCaseAction; }
    const FileComparator *comparator() const { return m_comparator.get(); }
    const QVector<DiffHunk> &hunks() const { return m_hunks; }
    /** The rows shown side by side. */
    const QVector<DiffRow> &rows() const { return m_rows; }
    /** The current hunk's index, -1 before the first step. */
    int rightPosition() const { return m_rightPosition; }
    /** The characters highlighted as changed in @p line of @p part's editor. */
    QVector<DiffRange> changedRanges(Part part, int line) const;

    /** Indicator that highlights the changed characters of paired lines. */
    static constexpr int ChangeIndicator = 9;

public Q_SLOTS:
    void showDiffFiles();
    bool close();
    void showNextDiff();
    void showPrevDiff();
    void showDiffOnly();

private:
    void startComparison(const QString &leftFile, const QString &rightFile);
    void compareAgain();
    void markDifferences(Panel *panel, int part);
    void stepTo(int hunk);
    void layOut();
    void decorate(Part part);
    void clearDecorations();
    void clearDecorations(Edit *edit);
    void linkScrolling();
    void unlinkScrolling();
    void scrolled(Part from, int value);
    Edit *editor(Part part) const;
    FileComparator::Options options() const;

    QMainWindow *m_mainWindow;
    QToolBar *m_toolBar = nullptr;
    QPointer<QAction> m_compareAction;
    QAction *m_nextAction = nullptr;
    QAction *m_prevAction = nullptr;
    QAction *m_closeAction = nullptr;
    QAction *m_diffOnlyAction = nullptr;
    QAction *m_ignoreWhitespaceAction = nullptr;
    QAction *m_ignoreCaseAction = nullptr;
    QPointer<Panel> m_leftPanel;
    QPointer<Panel> m_rightPanel;
    std::unique_ptr<FileComparator> m_comparator;
    QVector<DiffHunk> m_hunks;
    QVector<DiffRow> m_rows;
    int m_rightPosition = -1;
    int m_top[2] = {0, 0};      // blank rows above each side's first line
    bool m_scrolling = false;   // one side follows the other
    QList<QMetaObject::Connection> m_closeConnections;
    QList<QMetaObject::Connection> m_scrollLinks;
    QPointer<Edit> m_decorated[2];
    QHash<int, QVector<DiffRange>> m_changed[2]; // by line, for each side
};
