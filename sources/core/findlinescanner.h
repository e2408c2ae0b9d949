#pragma once

#include <QByteArray>
#include <QRegExp>
#include <QString>

#include <atomic>
#include <functional>
#include <vector>

/**
 * Finds the lines of a file that match one pattern. Each line (with its line
 * end) is decoded as UTF-8 up to its first NUL byte and matched with QRegExp
 * anywhere in the line.
 *
 * A file is read in blocks, never whole: a line longer than MaxLineBytes is
 * searched in pieces of that size, and the rest of a line after a NUL byte is
 * skipped without being kept, so binary and sparse files cost little memory.
 * A pattern that is a plain literal is first looked for in the raw bytes, and
 * only the lines that hold it are decoded.
 */
class FindLineScanner
{
public:
    /** Called with the 1-based line number and the decoded line. */
    using HitFunction = std::function<void(int lineNumber, const QString &line)>;

    static constexpr int MaxLineBytes = 32 * 1024 * 1024;

    FindLineScanner(const QString &pattern, QRegExp::PatternSyntax syntax,
                    Qt::CaseSensitivity caseSensitivity);

    bool isValid() const { return m_regExp.isValid(); }
    /** Whether the raw-byte prefilter is used for this pattern. */
    bool isLiteralSearch() const { return !m_needle.isEmpty(); }

    /**
     * Reports every matching line of @p path through @p onHit, in order.
     * Stops early when @p stop becomes true. False when the file cannot be read.
     */
    bool scanFile(const QString &path, const std::atomic<bool> &stop, const HitFunction &onHit);

    /** Whether one decoded line matches. */
    bool matches(const QString &line) const;

private:
    void processRegion(const char *begin, const char *end);
    void processLine(const char *begin, const char *end);
    void checkPiece(const char *begin, const char *end);
    const char *findNeedle(const char *begin, const char *end) const;

    QRegExp m_regExp;
    QByteArray m_needle;          // the pattern's bytes (folded) when it is a literal
    bool m_foldAscii = false;     // literal search ignores ASCII case
    unsigned char m_fold[256];
    size_t m_skip[256];
    std::vector<char> m_buffer;

    // State of the file being scanned.
    const HitFunction *m_onHit = nullptr;
    const std::atomic<bool> *m_stop = nullptr;
    int m_lineNumber = 1;
    bool m_lineDone = false;      // the current line matched, or its text ended at a NUL
    bool m_inLongLine = false;    // pieces of the current line were already searched
};
