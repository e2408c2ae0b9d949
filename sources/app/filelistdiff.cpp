#include "filelistdiff.h"

#include "filesystemview.h"
#include "panel.h"

#include <QAction>
#include <QApplication>
#include <QDebug>

FileListDiff::FileListDiff(QObject *parent)
    : QObject(parent)
{
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
    m_firstPanel->fileSystemView()->updateFileView();
    m_secondPanel->fileSystemView()->updateFileView();
}

void FileListDiff::hideUnmarked()
{
    m_firstPanel->fileSystemView()->hideUnmarkedFiles();
    m_secondPanel->fileSystemView()->hideUnmarkedFiles();
}

void FileListDiff::compareFilesBySize()
{
    if (m_compareBySize->isChecked()) {
        compareBy(COMPARE_BY_SIZE);
        follow(m_sizeConnections, &FileListDiff::compareBySize);
        return;
    }
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
    qDebug() << "**************** MainWindow::CompareBy ************************";
    const bool firstIsActive = m_firstPanel->isActive();
    Panel *first = firstIsActive ? m_firstPanel : m_secondPanel;
    Panel *second = firstIsActive ? m_secondPanel : m_firstPanel;
    FileSystemView *firstView = first->fileSystemView();
    FileSystemView *secondView = second->fileSystemView();
    firstView->updateFileView();
    secondView->updateFileView();

    // Reading every file by content can take a while on the GUI thread.
    const bool slow = criteria == COMPARE_BY_CONTENT;
    if (slow)
        QApplication::setOverrideCursor(Qt::BusyCursor);
    const auto lists = FolderComparison::listFolders(firstView->currentPath(),
                                                     secondView->currentPath(), criteria);
    m_last = FolderComparison::compare(lists.first, lists.second);
    if (slow)
        QApplication::restoreOverrideCursor();

    qDebug() << "Different files: " << m_last.different.size();
    firstView->markFiles(m_last.different, FileSystemView::DifferentMark);
    secondView->markFiles(m_last.different, FileSystemView::DifferentMark);
    qDebug() << "Absent files: " << m_last.onlyInFirst;
    firstView->markFiles(m_last.onlyInFirst, FileSystemView::AbsentMark);
    qDebug() << "Absent files: " << m_last.onlyInSecond;
    secondView->markFiles(m_last.onlyInSecond, FileSystemView::AbsentMark);

    if (m_showMarkedOnly->isChecked())
        hideUnmarked();
}
