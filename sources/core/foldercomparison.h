#pragma once

#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>

#include <atomic>

/** What a file is compared by. */
enum COMPARE_CRITERIA {
    COMPARE_BY_SIZE = 0,   // the size in bytes
    COMPARE_BY_CONTENT = 1 // the bytes themselves
};

/** The files of one folder, in listing order: name and compared value. */
using FileList = QVector<QPair<QString, qint64>>;

/** The outcome of comparing two file lists. */
struct FolderDifferences
{
    QStringList different;    // on both sides with different values, in the first list's order
    QStringList onlyInFirst;  // names of the first list missing from the second
    QStringList onlyInSecond; // names of the second list missing from the first
};

/**
 * The widget-free part of folder comparison: listing a folder's files with
 * their sizes, reading the files that may be equal, and matching two lists by
 * exact (case-sensitive) name.
 */
class FolderComparison
{
public:
    /**
     * Compares the files of two folders. By content, only files of equal size are
     * read, each once, both of a pair at the same time, and only as far as the
     * first differing byte; pairs are spread over the cores. A file that is not a
     * regular file, or that cannot be read, differs from every file. Setting
     * @p stop ends the reading early; the result is then incomplete.
     */
    static FolderDifferences compareFolders(const QString &first, const QString &second,
                                            int criteria,
                                            const std::atomic<bool> *stop = nullptr);

    /** Whether two regular files hold the same bytes; false when either cannot be read. */
    static bool sameContent(const QString &first, const QString &second,
                            const std::atomic<bool> *stop = nullptr);

    /** Matches the two lists by name; same results as comparing every pair. */
    static FolderDifferences compare(const FileList &first, const FileList &second);
};
