#include "findscript.h"

#include "finddialog.h"
#include "findresultmodel.h"
#include "logging.h"
#include "recentfolderstorage.h"

#include <QDebug>
#include <QTimer>
#include <QTreeView>

FindScript::FindScript(QTreeView *resultsView, QObject *parent)
    : QObject(parent)
    , m_find(new Find(this))
    , m_view(resultsView)
    , m_results(new FindResultModel(this))
    , m_rowTimer(new QTimer(this))
{
    m_view->setModel(m_results);
    m_view->setFocusPolicy(Qt::NoFocus);
    m_view->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->setRootIsDecorated(false);
    m_view->setItemsExpandable(false);
    // One height for every row keeps the layout of a huge list linear.
    m_view->setUniformRowHeights(true);
    m_view->setColumnWidth(0, 500);

    m_rowTimer->setSingleShot(true);
    m_rowTimer->setInterval(FlushIntervalMs);
    connect(m_rowTimer, &QTimer::timeout, this, &FindScript::addPendingRows);
    // A double click (or Return) activates a row; listening to both would open it twice.
    connect(m_view, &QAbstractItemView::activated, this, &FindScript::openRow);
}

FindScript::~FindScript()
{
    disconnect(m_find, nullptr, this, nullptr);
    m_find->stopFindThread();
}

bool FindScript::isSearching() const
{
    return m_find->isRunning();
}

QString FindScript::masksOfEntry(const QString &maskText)
{
    const int open = maskText.indexOf(QLatin1Char('('));
    if (open < 0)
        return maskText;
    const int close = maskText.indexOf(QLatin1Char(')'), open + 1);
    return close < 0 ? maskText.mid(open + 1) : maskText.mid(open + 1, close - open - 1);
}

bool FindScript::findCommandEvent(const QString &folderText, const QString &maskText,
                                  const QString &findText, QRegExp::PatternSyntax syntax,
                                  bool caseSensitive, bool wholeWords)
{
    const QString masks = masksOfEntry(maskText);
    qCDebug(lcFind) << "******     Command find ****** ";
    qCDebug(lcFind) << folderText << masks << findText << syntax << caseSensitive << wholeWords;
    qCDebug(lcFind) << "****************************** ";

    if (!findText.isEmpty()) {
        const QRegExp check(Find::searchPattern(findText, wholeWords),
                            caseSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive, syntax);
        if (!check.isValid()) {
            qCDebug(lcFind) << "FindScript: invalid pattern" << check.errorString();
            return false;
        }
    }

    // The previous run is stopped before its settings change under it; rows it
    // already sent are dropped through the generation number.
    disconnect(m_find, nullptr, this, nullptr);
    m_find->stopFindThread();
    m_rowTimer->stop();
    m_pending.clear();

    m_findText = findText;
    m_syntax = syntax;
    m_caseSensitive = caseSensitive;
    m_wholeWords = wholeWords;
    m_find->setPatternSyntax(syntax);
    m_find->setCaseSensitive(caseSensitive);
    m_find->setWholeWords(wholeWords);
    m_find->setFolder(folderText);
    m_find->setMasks(masks);
    m_find->setFindText(findText);

    const int generation = ++m_generation;
    connect(m_find, &Find::foundHits, this, [this, generation](const QVector<FindHit> &hits) {
        if (generation == m_generation)
            addHits(hits);
    });
    connect(m_find, &Find::finished, this, [this, generation] {
        if (generation == m_generation)
            findFinishedSlot();
    });
    m_find->start();
    Q_EMIT turnWaitingMode(Qt::BusyCursor);
    Q_EMIT searchStarted();
    return true;
}

void FindScript::addFileItem(const QString &path, const QString &line, const QString &text)
{
    m_results->appendHits({FindHit{path, line, text.trimmed()}});
}

void FindScript::addHits(const QVector<FindHit> &hits)
{
    m_pending += hits;
    if (!m_rowTimer->isActive())
        m_rowTimer->start();
}

void FindScript::addPendingRows()
{
    m_results->appendHits(m_pending);
    m_pending.clear();
}

void FindScript::findFinishedSlot()
{
    m_rowTimer->stop();
    addPendingRows();
    QStringList rows;
    if (m_find->wasStopped())
        rows << QStringLiteral("Search cancelled: the rows above are what was found until then");
    const int binary = m_find->binaryFiles();
    const int unreadable = m_find->unreadableFiles();
    if (binary > 0 || unreadable > 0)
        rows << QStringLiteral("Files skipped: %1 binary, %2 unreadable").arg(binary).arg(unreadable);
    // Rows of an earlier search that were not cleared count in the file total too.
    rows << QStringLiteral("Total number of lines: %1").arg(m_find->reportedLines())
         << QStringLiteral("Total number of files: %1").arg(m_results->fileCount());
    m_results->appendSummary(rows);
    Q_EMIT turnWaitingMode(Qt::ArrowCursor);
}

void FindScript::showFindDialog()
{
    FindDialog dialog(m_folderProvider ? m_folderProvider() : QString(), m_dialogParent);
    if (!dialog.execute())
        return;
    if (isSearching()) {
        // One search at a time: the running one goes on.
        qCDebug(lcFind) << "FindScript: a search is running; request ignored";
        return;
    }
    m_results->clear();
    if (findCommandEvent(dialog.folder(), dialog.maskText(), dialog.pattern(),
                         dialog.patternSyntax(), dialog.isCaseSensitive(),
                         dialog.isWholeWords()))
        RecentFolderStorage::instance().addFolder(dialog.folder());
}

bool FindScript::stopFind()
{
    const bool running = m_find->isRunning();
    m_find->stopFindThread();
    return running;
}

bool FindScript::locateMatch(const QString &lineText, int *start, int *length) const
{
    if (m_findText.isEmpty())
        return false;
    const FindPattern pattern(Find::searchPattern(m_findText, m_wholeWords), m_syntax,
                              m_caseSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive);
    if (!pattern.locate(lineText, start, length))
        return false;
    if (m_wholeWords && *length >= 2) {
        // The blanks round a whole word are not part of what was looked for.
        ++*start;
        *length -= 2;
    }
    return true;
}

void FindScript::openRow(const QModelIndex &index)
{
    if (!index.isValid() || !m_results->isHit(index.row()))
        return;
    const FindHit &hit = m_results->hit(index.row());
    Q_EMIT openFileAtLine(hit.path, hit.line.toInt());
}
