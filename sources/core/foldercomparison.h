#pragma once

#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>

/** What a file is compared by. */
enum COMPARE_CRITERIA {
    COMPARE_BY_SIZE = 0,   // the size in bytes
    COMPARE_BY_CONTENT = 1 // the content signature
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
 * their values, and matching two lists by exact (case-sensitive) name.
 */
class FolderComparison
{
public:
    /** The files (not folders) of @p folder in its default listing order, valued by @p criteria. */
    static FileList listFiles(const QString &folder, int criteria);

    /** Both folders' lists; by content the two are read at the same time. */
    static QPair<FileList, FileList> listFolders(const QString &first, const QString &second,
                                                 int criteria);

    /**
     * The 16-bit sum of the CRC-16 checksums of the file's 2000-byte blocks.
     * An empty file, and a file that cannot be read, have the signature 0.
     */
    static quint16 contentSignature(const QString &path);

    /** Matches the two lists by name; same results as comparing every pair. */
    static FolderDifferences compare(const FileList &first, const FileList &second);
};
