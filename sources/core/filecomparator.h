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
 * 16-bit signature that ignores white space between words and the order of the
 * words; the longest common subsequence of the signatures decides which lines pair.
 *
 * The table of the comparison is held as one bit per cell, so it needs about
 * nL * nR / 8 bytes; compare() refuses, with errorString(), a pair whose table the
 * machine cannot hold.
 */
class FileComparator
{
public:
    FileComparator() = default;

    void addLine(const QString &text, int number, Part part);
    /** Runs the comparison; false (and nothing changed) when the table does not fit. */
    bool compare();

    int getDiffCount(Part part) const;
    int getDiff(Part part, const int &index) const;
    void getCommonLines(std::vector<int> &lines) const;

    /** Why compare() refused, empty when it did not. */
    QString errorString() const { return m_error; }

    /** The signature of one line of text. */
    static quint16 signature(const QString &text);
    /** Bytes the table of an nL by nR comparison needs (after the common prefix). */
    static quint64 tableBytes(qint64 leftCount, qint64 rightCount);
    /** Upper bound for the table; defaults to what the machine has free. */
    static void setMemoryLimit(quint64 bytes);

private:
    QVector<ComparedLine> m_leftLines;
    QVector<ComparedLine> m_rightLines;
    QVector<ComparedLine> m_commonLines;
    QVector<int> m_leftDiff;
    QVector<int> m_rightDiff;
    QString m_error;
};
