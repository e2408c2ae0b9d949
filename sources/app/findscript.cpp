#include "findscript.h"

#include "filenamecodec.h"
#include "finddialog.h"
#include "logging.h"
#include "recentfolderstorage.h"

#include <QDebug>
#include <QHeaderView>
#include <QSet>
#include <QTimer>
#include <QTreeWidget>

namespace {

// Marks the totals rows, which name no file.
constexpr int TotalRole = Qt::UserRole + 1;
// The file's path as the file system knows it; the first column shows it readably.
constexpr int PathRole = Qt::UserRole + 2;

QTreeWidgetItem *hitItem(const QString &path, const QString &line, const QString &text)
{
    auto *item = new QTreeWidgetItem(QStringList{FileNameCodec::displayName(path), line, text});
    item->setData(0, PathRole, path);
    return item;
}

} // namespace

FindScript::FindScript(QTreeWidget *resultsTree, QObject *parent)
    : QObject(parent)
    , m_find(new Find(this))
    , m_tree(resultsTree)
    , m_rowTimer(new QTimer(this))
{
    m_tree->setColumnCount(3);
    m_tree->setHeaderLabels({QStringLiteral("File name"), QStringLiteral("Line"),
                             QStringLiteral("Text ")});
    m_tree->setFocusPolicy(Qt::NoFocus);
    m_tree->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_tree->setRootIsDecorated(false);
    m_tree->setUniformRowHeights(true);
    m_tree->setColumnWidth(0, 500);

    m_rowTimer->setSingleShot(true);
    m_rowTimer->setInterval(0);
    connect(m_rowTimer, &QTimer::timeout, this, &FindScript::addPendingRows);
    connect(m_tree, &QTreeWidget::itemDoubleClicked, this,
            [this](QTreeWidgetItem *item, int) { openItem(item); });
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
    m_pendingStart = 0;
    m_finishPending = false;

    // Rows of an earlier search that were not cleared count in the file total too.
    m_paths.clear();
    for (int i = 0; i < m_tree->topLevelItemCount(); ++i) {
        const QTreeWidgetItem *item = m_tree->topLevelItem(i);
        if (!item->data(0, TotalRole).toBool())
            m_paths.insert(item->data(0, PathRole).toString());
    }

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
    m_paths.insert(path);
    m_tree->addTopLevelItem(hitItem(path, line, text.trimmed()));
}

void FindScript::addHits(const QVector<FindHit> &hits)
{
    m_pending += hits;
    if (!m_rowTimer->isActive())
        m_rowTimer->start();
}

void FindScript::addPendingRows()
{
    const int end = qMin(m_pending.size(), m_pendingStart + RowsPerTurn);
    QList<QTreeWidgetItem *> items;
    items.reserve(end - m_pendingStart);
    for (int i = m_pendingStart; i < end; ++i) {
        const FindHit &hit = m_pending.at(i);
        if (i == m_pendingStart || hit.path != m_pending.at(i - 1).path)
            m_paths.insert(hit.path);
        items << hitItem(hit.path, hit.line, hit.text);
    }
    m_tree->addTopLevelItems(items);
    m_pendingStart = end;
    if (m_pendingStart < m_pending.size()) {
        m_rowTimer->start();
        return;
    }
    m_pending.clear();
    m_pendingStart = 0;
    if (m_finishPending)
        addTotals();
}

void FindScript::findFinishedSlot()
{
    m_finishPending = true;
    if (!m_rowTimer->isActive())
        addTotals();
}

void FindScript::addTotals()
{
    m_finishPending = false;
    QStringList rows;
    if (m_find->wasStopped())
        rows << QStringLiteral("Search cancelled: the rows above are what was found until then");
    const int binary = m_find->binaryFiles();
    const int unreadable = m_find->unreadableFiles();
    if (binary > 0 || unreadable > 0)
        rows << QStringLiteral("Files skipped: %1 binary, %2 unreadable").arg(binary).arg(unreadable);
    rows << QStringLiteral("Total number of lines: %1").arg(m_find->reportedLines())
         << QStringLiteral("Total number of files: %1").arg(m_paths.size());
    for (const QString &row : qAsConst(rows)) {
        auto *item = new QTreeWidgetItem(QStringList{row});
        item->setData(0, TotalRole, true);
        m_tree->addTopLevelItem(item);
    }
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
    m_tree->clear();
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

void FindScript::openItem(QTreeWidgetItem *item)
{
    if (!item || item->data(0, TotalRole).toBool())
        return;
    Q_EMIT openFileAtLine(item->data(0, PathRole).toString(), item->text(1).toInt());
}
