#pragma once

#include "filerow.h"

#include <QDateTime>
#include <QStringList>
#include <QVector>

#include <atomic>
#include <functional>

/**
 * Lists folders into FileRow values, away from any widget: one folder in
 * listing order (".." first, then folders, then files, each by name without
 * regard to case), or a whole tree as one flat list. Also tells two listings
 * of one folder apart, so that a list can be brought up to date by adding and
 * removing only what changed.
 */
class FileListing
{
public:
    /** What changed between two listings of one folder. */
    struct Changes
    {
        QVector<FileRow> added;   // in listing order
        QVector<FileRow> changed; // same path, other size, time or kind
        QStringList removed;      // paths
        bool isEmpty() const { return added.isEmpty() && changed.isEmpty() && removed.isEmpty(); }
    };

    /** The files of a folder whatever the mask: how many, and their sizes added up. */
    struct FolderTotals
    {
        int files = 0;
        qint64 bytes = 0;
    };

    /** The mask as name filters: one per ";"-separated part, "*.*" meaning every name. */
    static QStringList nameFiltersOf(const QString &mask);
    /** Whether @p mask narrows a listing (anything but "*.*"). */
    static bool isFilteredMask(const QString &mask);

    /**
     * The rows of @p folder in listing order. The mask never hides folders;
     * @p withParent keeps the ".." row; @p hidden lists hidden entries too.
     * @p totals, when given, receives the totals of the files the mask left out too.
     */
    static QVector<FileRow> listFolder(const QString &folder, const QString &mask,
                                       bool withParent = true, bool hidden = false,
                                       FolderTotals *totals = nullptr);

    /** Receives rows found by walkTree; it may take them (leave the vector empty). */
    using Delivery = std::function<void(QVector<FileRow> &rows)>;
    /**
     * Walks @p root depth-first and hands over the files of every folder in
     * batches (a batch at most @p deliverMs old). Folders give no rows of
     * their own; the root's ".." is kept when @p withParent is set. A folder
     * reached twice (through links) is walked once. Ends early, delivering
     * nothing more, as soon as @p stop is set. False when it was stopped.
     */
    static bool walkTree(const QString &root, bool withParent, bool hidden,
                         const std::atomic<bool> &stop, const Delivery &deliver,
                         int deliverMs = 40);

    /** The order of a folder listing: kind, then name without regard to case. */
    static bool listingLess(const FileRow &a, const FileRow &b);

    /** Tells @p before and @p after (two listings of one folder) apart. */
    static Changes compare(const QVector<FileRow> &before, const QVector<FileRow> &after);

    /** "%L1" of the size: locale digit grouping. */
    static QString sizeText(qint64 size);
    /** "dd.MM.yyyy hh:mm", the time as "hh:mm ap" when @p usTime. */
    static QString dateText(const QDateTime &modified, bool usTime);
    /** Whether the system locale is the United States one (12-hour times). */
    static bool usesUsTime();
};
