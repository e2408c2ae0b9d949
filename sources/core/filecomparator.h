#pragma once

#include <QString>
#include <QVector>
#include <QtGlobal>

#include <vector>

/** The side of a comparison. */
enum Part : qint32 {
    LeftPart = 0,
    RightPart = 1
};

/** One line as the comparator keeps it: its number and its signature. */
struct ComparedLine
{
    qint32 number = 0;
    quint16 checksum = 0;
};

/**
 * Finds the lines that two texts do not have in common. Lines are compared by a
 * 16-bit signature over the UTF-8 bytes of their words that ignores the order of
 * the words (and, by default, white space between them); the longest common
 * subsequence of the signatures decides which lines pair.
 *
 * The table of the comparison is held as one bit per cell, and only every k-th
 * row of it is kept (k about the square root of the line count): the walk
 * recomputes one block of rows at a time from the row kept below it. Memory is
 * about 2 * sqrt(nL) * nR / 8 bytes; compare() refuses, with errorString(), a
 * pair whose rows the machine cannot hold.
 */
class FileComparator
{
public:
    /** What a line signature leaves out; set before the first addLine(). */
    enum Option {
        NoOption = 0,
        IgnoreWhitespace = 1, // runs of blanks between words do not count
        IgnoreCase = 2        // letters are compared case-folded
    };
    Q_DECLARE_FLAGS(Options, Option)

    FileComparator() = default;

    void setOptions(Options options) { m_options = options; }
    Options options() const { return m_options; }

    void addLine(const QString &text, int number, Part part);
    /** Runs the comparison; false (and nothing changed) when the table does not fit. */
    bool compare();

    int getDiffCount(Part part) const;
    int getDiff(Part part, const int &index) const;
    /** The left line numbers of the common lines, in order. */
    void getCommonLines(std::vector<int> &lines) const;
    /** The common lines' numbers on @p part's side, in order (pairs by index). */
    void getCommonLines(std::vector<int> &lines, Part part) const;

    /** Why compare() refused, empty when it did not. */
    QString errorString() const { return m_error; }

    /** The signature of one line of text. */
    static quint16 signature(const QString &text, Options options = IgnoreWhitespace);
    /** Bytes the table of an nL by nR comparison needs (after the common prefix). */
    static quint64 tableBytes(qint64 leftCount, qint64 rightCount);
    /** Upper bound for the table; defaults to what the machine has free. */
    static void setMemoryLimit(quint64 bytes);
    /** Keeps every @p rows-th row of the table; 0 chooses by size. */
    static void setCheckpointInterval(int rows);

private:
    QVector<ComparedLine> m_leftLines;
    QVector<ComparedLine> m_rightLines;
    QVector<ComparedLine> m_commonLines;
    QVector<int> m_commonRight;
    QVector<int> m_leftDiff;
    QVector<int> m_rightDiff;
    QString m_error;
    Options m_options = IgnoreWhitespace;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(FileComparator::Options)
