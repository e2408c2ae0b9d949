#include "filelistdiff.h"

#include "filesystemview.h"
#include "foldercomparisonworker.h"
#include "logging.h"
#include "panel.h"

#include <QAction>
#include <QDebug>

FileListDiff::FileListDiff(QObject *parent)
    : QObject(parent)
    , m_worker(new FolderComparisonWorker(this))
{
    connect(m_worker, &FolderComparisonWorker::finished, this, &FileListDiff::showDifferences);
    connect(m_worker, &FolderComparisonWorker::cancelled, this,
            &FileListDiff::comparisonCancelled);
}

bool FileListDiff::isComparing() const
{
    return m_worker->isRunning();
}

void FileListDiff::setup(QAction *compareBySizeAction, QAction *compareByContentAction,
                         QAction *showMarkedOnlyAction, Panel *firstPanel, Panel *secondPanel)
{
    m_compareBySize = compareBySizeAction;
    m_compareByContent = compareByContentAction;
    m_showMarkedOnly = showMarkedOnlyAction;
    m_firstPanel = firstPanel;
    m_secondPanel = secondPanel;
    for (QAction *action : {m_compareBySize, m_compareByContent, m_showMarkedOnly})
        action->setCheckable(true);
    connect(m_compareBySize, &QAction::triggered, this, &FileListDiff::compareFilesBySize);
    connect(m_compareByContent, &QAction::triggered, this, &FileListDiff::compareFilesByContent);
    connect(m_showMarkedOnly, &QAction::triggered, this, &FileListDiff::toggleUnselected);
}

void FileListDiff::follow(QMetaObject::Connection (&connections)[2],
                          void (FileListDiff::*slot)(const QString &))
{
    unfollow(connections);
    connections[0] = connect(m_firstPanel, &Panel::changeCurrentPath, this, slot);
    connections[1] = connect(m_secondPanel, &Panel::changeCurrentPath, this, slot);
}

void FileListDiff::unfollow(QMetaObject::Connection (&connections)[2])
{
    for (QMetaObject::Connection &connection : connections) {
        disconnect(connection);
        connection = QMetaObject::Connection();
    }
}

void FileListDiff::refreshPanels()
{
    clearMarks(m_firstPanel->fileSystemView());
    clearMarks(m_secondPanel->fileSystemView());
}

void FileListDiff::setMarked(FileSystemView *view)
{
    m_marked.insert(view, view->currentPath());
}

void FileListDiff::clearMarks(FileSystemView *view)
{
    // Rebuilding a list of many thousand rows stalls the window: only a list that
    // still shows this object's marks (or hides rows for it) is rebuilt.
    const auto it = m_marked.find(view);
    if (it == m_marked.end())
        return;
    if (*it == view->currentPath())
        view->updateFileView();
    m_marked.erase(it);
}

void FileListDiff::hideUnmarked()
{
    for (Panel *panel : {m_firstPanel, m_secondPanel}) {
        panel->fileSystemView()->hideUnmarkedFiles();
        setMarked(panel->fileSystemView());
    }
}

void FileListDiff::compareFilesBySize()
{
    if (m_compareBySize->isChecked()) {
        compareBy(COMPARE_BY_SIZE);
        follow(m_sizeConnections, &FileListDiff::compareBySize);
        return;
    }
    if (m_criteria == COMPARE_BY_SIZE)
        m_worker->stop();
    unfollow(m_sizeConnections);
    refreshPanels();
    if (m_showMarkedOnly->isChecked())
        hideUnmarked();
}

void FileListDiff::compareFilesByContent()
{
    if (m_compareByContent->isChecked()) {
        compareBy(COMPARE_BY_CONTENT);
        follow(m_contentConnections, &FileListDiff::compareByContent);
        return;
    }
    if (m_criteria == COMPARE_BY_CONTENT)
        m_worker->stop();
    unfollow(m_contentConnections);
    refreshPanels();
    if (m_showMarkedOnly->isChecked())
        hideUnmarked();
}

void FileListDiff::compareBySize(const QString &)
{
    compareBy(COMPARE_BY_SIZE);
}

void FileListDiff::compareByContent(const QString &)
{
    compareBy(COMPARE_BY_CONTENT);
}

void FileListDiff::toggleUnselected()
{
    if (m_showMarkedOnly->isChecked()) {
        hideUnmarked();
        return;
    }
    // Size first: with both modes on, showing everything again re-runs the size comparison.
    if (m_compareBySize->isChecked())
        compareBy(COMPARE_BY_SIZE);
    else if (m_compareByContent->isChecked())
        compareBy(COMPARE_BY_CONTENT);
    else
        refreshPanels();
}

void FileListDiff::compareBy(COMPARE_CRITERIA criteria)
{
    qCDebug(lcDiff) << "**************** MainWindow::CompareBy ************************";
    const bool firstIsActive = m_firstPanel->isActive();
    Panel *first = firstIsActive ? m_firstPanel : m_secondPanel;
    Panel *second = firstIsActive ? m_secondPanel : m_firstPanel;
    m_firstView = first->fileSystemView();
    m_secondView = second->fileSystemView();
    clearMarks(m_firstView);
    clearMarks(m_secondView);
    m_criteria = criteria;
    const bool wasRunning = m_worker->isRunning();
    m_worker->start(m_firstView->currentPath(), m_secondView->currentPath(), criteria);
    if (!wasRunning)
        Q_EMIT turnWaitingMode(Qt::BusyCursor);
}

bool FileListDiff::stop()
{
    return m_worker->stop();
}

void FileListDiff::showDifferences(const FolderDifferences &differences)
{
    Q_EMIT turnWaitingMode(Qt::ArrowCursor);
    m_last = differences;
    if (m_firstView && m_secondView) {
        qCDebug(lcDiff) << "Different files: " << m_last.different.size();
        m_firstView->markFiles(m_last.different, FileSystemView::FileMark::Different);
        m_secondView->markFiles(m_last.different, FileSystemView::FileMark::Different);
        qCDebug(lcDiff) << "Absent files: " << m_last.onlyInFirst;
        m_firstView->markFiles(m_last.onlyInFirst, FileSystemView::FileMark::Absent);
        qCDebug(lcDiff) << "Absent files: " << m_last.onlyInSecond;
        m_secondView->markFiles(m_last.onlyInSecond, FileSystemView::FileMark::Absent);
        setMarked(m_firstView);
        setMarked(m_secondView);
        if (m_showMarkedOnly->isChecked())
            hideUnmarked();
    }
    Q_EMIT comparisonDone();
}

void FileListDiff::comparisonCancelled()
{
    Q_EMIT turnWaitingMode(Qt::ArrowCursor);
    // A mode whose comparison was cancelled is off: it would run again on the next
    // folder change otherwise.
    QAction *action = m_criteria == COMPARE_BY_SIZE ? m_compareBySize : m_compareByContent;
    action->setChecked(false);
    unfollow(m_criteria == COMPARE_BY_SIZE ? m_sizeConnections : m_contentConnections);
    Q_EMIT comparisonDone();
}
