#pragma once

#include "find.h"

#include <QObject>
#include <QRegExp>
#include <QVector>

#include <functional>

class FindResultModel;
class QModelIndex;
class QTimer;
class QTreeView;
class QWidget;

/**
 * Runs find in files from the find dialog and shows the hits in the results
 * list: one row per hit, then the line and file totals when the search ends.
 */
class FindScript : public QObject
{
    Q_OBJECT
public:
    /** How often hits that arrived meanwhile are put into the list, as one insertion. */
    static constexpr int FlushIntervalMs = 50;

    explicit FindScript(QTreeView *resultsView, QObject *parent = nullptr);
    ~FindScript() override;

    Find *finder() const { return m_find; }
    QTreeView *resultsView() const { return m_view; }
    FindResultModel *results() const { return m_results; }
    bool isSearching() const;

    /** Gives the folder the find dialog opens with (the current panel's folder). */
    void setFolderProvider(std::function<QString()> provider) { m_folderProvider = std::move(provider); }
    /** Parent of the find dialog. */
    void setDialogParent(QWidget *parent) { m_dialogParent = parent; }

    /**
     * Starts a search; the two flags are case sensitive and whole words. The
     * masks are taken from between the parentheses of @p maskText when it has
     * them. False when the pattern is not valid in @p syntax (nothing runs).
     */
    bool findCommandEvent(const QString &folderText, const QString &maskText,
                          const QString &findText, QRegExp::PatternSyntax syntax,
                          bool caseSensitive, bool wholeWords);

    /**
     * Where the last search's text matches in @p lineText (for showing a hit):
     * false when it does not, or when files were only listed.
     */
    bool locateMatch(const QString &lineText, int *start, int *length) const;

    /** The masks of a mask entry: the text between its first "(" and the next ")". */
    static QString masksOfEntry(const QString &maskText);

Q_SIGNALS:
    void turnWaitingMode(Qt::CursorShape cursor);
    /** A search has started; its rows go to the results list. */
    void searchStarted();
    /** A result row was opened: show @p path at @p line (0 when the row has no line). */
    void openFileAtLine(const QString &path, int line);

public Q_SLOTS:
    void addFileItem(const QString &path, const QString &line, const QString &text);
    void findFinishedSlot();
    void showFindDialog();
    /** Stops a running search; true when one was running. */
    bool stopFind();

private:
    void addHits(const QVector<FindHit> &hits);
    void addPendingRows();
    void openRow(const QModelIndex &index);

    Find *m_find = nullptr;
    QTreeView *m_view = nullptr;
    FindResultModel *m_results = nullptr;
    QTimer *m_rowTimer = nullptr;
    QVector<FindHit> m_pending;
    int m_generation = 0;
    // The last search's pattern, for locateMatch().
    QString m_findText;
    QRegExp::PatternSyntax m_syntax = QRegExp::RegExp;
    bool m_caseSensitive = false;
    bool m_wholeWords = false;
    std::function<QString()> m_folderProvider;
    QWidget *m_dialogParent = nullptr;
};
