#pragma once

#include "foldercomparison.h"

#include <QPointer>

#include <QHash>
#include <QMetaObject>
#include <QObject>

class FileSystemView;
class FolderComparisonWorker;
class Panel;
class QAction;

/**
 * Marks, in both panels, the files that differ between the two panels'
 * folders (by size or by content) and the files present on one side only;
 * follows folder changes while a comparison mode is on, and can hide every
 * unmarked file. The folders are listed and read on a worker thread; the
 * marks go into both panels at once when it is done.
 */
class FileListDiff : public QObject
{
    Q_OBJECT
public:
    explicit FileListDiff(QObject *parent = nullptr);

    /** Binds the three checkable actions and the two panels. */
    void setup(QAction *compareBySizeAction, QAction *compareByContentAction,
               QAction *showMarkedOnlyAction, Panel *firstPanel, Panel *secondPanel);

    /** The outcome of the last comparison. */
    const FolderDifferences &lastDifferences() const { return m_last; }
    /** Whether a comparison is being made on the worker. */
    bool isComparing() const;

Q_SIGNALS:
    void turnWaitingMode(Qt::CursorShape cursor);
    /** A comparison ended and its marks are shown (or it was cancelled). */
    void comparisonDone();

public Q_SLOTS:
    void compareFilesBySize();
    void compareFilesByContent();
    void compareBySize(const QString &path);
    void compareByContent(const QString &path);
    void toggleUnselected();
    void compareBy(COMPARE_CRITERIA criteria);
    /** Cancels a comparison in progress (its mode is turned off); true when one ran. */
    bool stop();

private:
    void showDifferences(const FolderDifferences &differences);
    void comparisonCancelled();
    void follow(QMetaObject::Connection (&connections)[2], void (FileListDiff::*slot)(const QString &));
    void unfollow(QMetaObject::Connection (&connections)[2]);
    void refreshPanels();
    void setMarked(FileSystemView *view);
    void clearMarks(FileSystemView *view);
    void hideUnmarked();

    QAction *m_compareBySize = nullptr;
    QAction *m_compareByContent = nullptr;
    QAction *m_showMarkedOnly = nullptr;
    Panel *m_firstPanel = nullptr;
    Panel *m_secondPanel = nullptr;
    QMetaObject::Connection m_sizeConnections[2];
    QMetaObject::Connection m_contentConnections[2];
    FolderDifferences m_last;
    FolderComparisonWorker *m_worker = nullptr;
    // What the run in progress compares.
    QPointer<FileSystemView> m_firstView;
    QPointer<FileSystemView> m_secondView;
    COMPARE_CRITERIA m_criteria = COMPARE_BY_SIZE;
    // The lists that show marks (or hide rows) of a comparison, with the folder shown.
    QHash<const FileSystemView *, QString> m_marked;
};
