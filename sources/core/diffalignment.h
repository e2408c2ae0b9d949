#pragma once

#include "filecomparator.h"

#include <QString>
#include <QVector>

#include <vector>

/** A run of lines that differ: [start, start + count) on each side. */
struct DiffHunk
{
    int leftStart = 0;
    int leftCount = 0;
    int rightStart = 0;
    int rightCount = 0;

    int start(Part part) const { return part == LeftPart ? leftStart : rightStart; }
    int count(Part part) const { return part == LeftPart ? leftCount : rightCount; }
    bool operator==(const DiffHunk &o) const
    {
        return leftStart == o.leftStart && leftCount == o.leftCount
               && rightStart == o.rightStart && rightCount == o.rightCount;
    }
};

/** One row of the side-by-side view: a line of each side, or -1 where a side has none. */
struct DiffRow
{
    int left = -1;
    int right = -1;
    bool changed = false; // the row belongs to a hunk

    int line(Part part) const { return part == LeftPart ? left : right; }
    bool operator==(const DiffRow &o) const
    {
        return left == o.left && right == o.right && changed == o.changed;
    }
};

/** Blank rows shown under a line (under no line, before the first, when line is -1). */
struct DiffFiller
{
    int line = -1;
    int count = 0;
    bool operator==(const DiffFiller &o) const { return line == o.line && count == o.count; }
};

/** Characters [start, start + length) of a line. */
struct DiffRange
{
    int start = 0;
    int length = 0;
    bool operator==(const DiffRange &o) const { return start == o.start && length == o.length; }
};

/**
 * How two compared texts line up side by side: the hunks between the common lines,
 * the blank rows each side needs so that paired lines sit beside each other, and,
 * inside a changed line paired with one on the other side, what changed.
 */
class DiffAlignment
{
public:
    /**
     * The hunks between the common lines (given as equal-length lists of paired
     * line numbers, ascending) of texts of @p leftLines and @p rightLines lines;
     * pairs past those counts are left out.
     */
    static QVector<DiffHunk> hunks(const std::vector<int> &leftCommon,
                                   const std::vector<int> &rightCommon, int leftLines,
                                   int rightLines);

    /**
     * The rows of the side-by-side view: every common pair, and each hunk as its
     * i-th left line beside its i-th right line, the longer side's rest beside
     * nothing. With @p hunksOnly ("show diff only") only the hunks' rows, and the
     * row of each side's first line, which the editor cannot hide.
     */
    static QVector<DiffRow> rows(const QVector<DiffHunk> &hunks, int leftLines, int rightLines,
                                 bool hunksOnly);

    /**
     * The blank rows of @p part: each run of rows without a line on this side goes
     * under the last line above it shown on this side (line -1: above the first).
     */
    static QVector<DiffFiller> fillers(const QVector<DiffRow> &rows, Part part);

    /**
     * The characters that differ between two paired lines, by words, runs of
     * blanks and single other characters, on each side. Case and blanks are
     * compared as @p options say. Very long lines count as changed as a whole.
     */
    static void changedRanges(const QString &left, const QString &right,
                              FileComparator::Options options, QVector<DiffRange> &leftRanges,
                              QVector<DiffRange> &rightRanges);
};
