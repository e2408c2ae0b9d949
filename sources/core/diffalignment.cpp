#include "diffalignment.h"

#include <algorithm>

namespace {

// Longer lines are not split into tokens: the table would grow with their square.
constexpr int MaxTokens = 1000;

enum class TokenKind { Word, Blank, Other };

struct Token
{
    int start;
    int length;
    TokenKind kind;
};

TokenKind kindOf(QChar c)
{
    if (c.isLetterOrNumber() || c.isMark() || c == QLatin1Char('_'))
        return TokenKind::Word;
    return c.isSpace() ? TokenKind::Blank : TokenKind::Other;
}

// Words and runs of blanks as one token each, any other character alone.
QVector<Token> tokens(const QString &text)
{
    QVector<Token> out;
    const int n = text.size();
    for (int start = 0; start < n && out.size() <= MaxTokens;) {
        const TokenKind kind = kindOf(text.at(start));
        int end = start + 1;
        if (kind != TokenKind::Other) {
            while (end < n && kindOf(text.at(end)) == kind)
                ++end;
        } else if (text.at(start).isHighSurrogate() && end < n) {
            ++end;
        }
        out.append({start, end - start, kind});
        start = end;
    }
    return out;
}

bool sameToken(const QString &a, const Token &ta, const QString &b, const Token &tb,
               FileComparator::Options options)
{
    if (ta.kind != tb.kind)
        return false;
    if (ta.kind == TokenKind::Blank && (options & FileComparator::IgnoreWhitespace))
        return true;
    const Qt::CaseSensitivity cs =
        options & FileComparator::IgnoreCase ? Qt::CaseInsensitive : Qt::CaseSensitive;
    return a.midRef(ta.start, ta.length).compare(b.midRef(tb.start, tb.length), cs) == 0;
}

// Adds a token's characters to a side's ranges, joining it to the last one when adjacent.
void addRange(QVector<DiffRange> &ranges, int start, int length)
{
    if (!ranges.isEmpty() && ranges.last().start + ranges.last().length == start)
        ranges.last().length += length;
    else
        ranges.append({start, length});
}

} // namespace

QVector<DiffHunk> DiffAlignment::hunks(const std::vector<int> &leftCommon,
                                       const std::vector<int> &rightCommon, int leftLines,
                                       int rightLines)
{
    QVector<DiffHunk> out;
    int left = 0;
    int right = 0;
    // A pair with a line past either end (the empty line fed after the last one)
    // has nothing to show; it can only be the last pair.
    size_t pairs = std::min(leftCommon.size(), rightCommon.size());
    while (pairs > 0 && (leftCommon[pairs - 1] >= leftLines || rightCommon[pairs - 1] >= rightLines))
        --pairs;
    for (size_t k = 0; k <= pairs; ++k) {
        const int nextLeft = k < pairs ? leftCommon[k] : leftLines;
        const int nextRight = k < pairs ? rightCommon[k] : rightLines;
        if (nextLeft > left || nextRight > right)
            out.append({left, nextLeft - left, right, nextRight - right});
        left = nextLeft + 1;
        right = nextRight + 1;
    }
    return out;
}

QVector<DiffRow> DiffAlignment::rows(const QVector<DiffHunk> &hunks, int leftLines,
                                     int rightLines, bool hunksOnly)
{
    QVector<DiffRow> out;
    int left = 0;
    int right = 0;
    const auto commonUpTo = [&](int leftEnd, int rightEnd) {
        for (; left < leftEnd && right < rightEnd; ++left, ++right) {
            if (!hunksOnly || left == 0 || right == 0)
                out.append({left, right, false});
        }
    };
    for (const DiffHunk &hunk : hunks) {
        commonUpTo(hunk.leftStart, hunk.rightStart);
        for (int k = 0; k < qMax(hunk.leftCount, hunk.rightCount); ++k) {
            out.append({k < hunk.leftCount ? hunk.leftStart + k : -1,
                        k < hunk.rightCount ? hunk.rightStart + k : -1, true});
        }
        left = hunk.leftStart + hunk.leftCount;
        right = hunk.rightStart + hunk.rightCount;
    }
    commonUpTo(leftLines, rightLines);
    return out;
}

QVector<DiffFiller> DiffAlignment::fillers(const QVector<DiffRow> &rows, Part part)
{
    QVector<DiffFiller> out;
    int above = -1;
    bool open = false; // the last filler still grows
    for (const DiffRow &row : rows) {
        const int line = row.line(part);
        if (line >= 0) {
            above = line;
            open = false;
        } else if (open) {
            ++out.last().count;
        } else {
            out.append({above, 1});
            open = true;
        }
    }
    return out;
}

void DiffAlignment::changedRanges(const QString &left, const QString &right,
                                  FileComparator::Options options,
                                  QVector<DiffRange> &leftRanges, QVector<DiffRange> &rightRanges)
{
    leftRanges.clear();
    rightRanges.clear();
    const QVector<Token> a = tokens(left);
    const QVector<Token> b = tokens(right);
    if (a.size() > MaxTokens || b.size() > MaxTokens) {
        if (!left.isEmpty())
            leftRanges.append({0, left.size()});
        if (!right.isEmpty())
            rightRanges.append({0, right.size()});
        return;
    }
    // Longest common subsequence of the tokens, from the ends.
    const int n = a.size();
    const int m = b.size();
    std::vector<int> table(size_t(n + 1) * size_t(m + 1), 0);
    const auto at = [m](int i, int j) { return size_t(i) * size_t(m + 1) + size_t(j); };
    for (int i = n - 1; i >= 0; --i) {
        for (int j = m - 1; j >= 0; --j) {
            table[at(i, j)] = sameToken(left, a[i], right, b[j], options)
                                  ? table[at(i + 1, j + 1)] + 1
                                  : std::max(table[at(i + 1, j)], table[at(i, j + 1)]);
        }
    }
    int i = 0;
    int j = 0;
    while (i < n || j < m) {
        if (i < n && j < m && sameToken(left, a[i], right, b[j], options)) {
            ++i;
            ++j;
        } else if (j >= m || (i < n && table[at(i + 1, j)] >= table[at(i, j + 1)])) {
            // Blanks that only the option ignores stay unmarked.
            if (!(a[i].kind == TokenKind::Blank && (options & FileComparator::IgnoreWhitespace)))
                addRange(leftRanges, a[i].start, a[i].length);
            ++i;
        } else {
            if (!(b[j].kind == TokenKind::Blank && (options & FileComparator::IgnoreWhitespace)))
                addRange(rightRanges, b[j].start, b[j].length);
            ++j;
        }
    }
}
