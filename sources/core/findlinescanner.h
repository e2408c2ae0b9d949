#pragma once

#include "findpattern.h"

#include <QByteArray>
#include <QRegExp>
#include <QRegularExpression>
#include <QString>

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

/**
 * Finds the lines of a file that match one pattern, as grep -n numbers them.
 *
 * Only regular files are read (the file is opened without blocking and its
 * type checked on the open handle, so FIFOs and devices, also behind links, are
 * never waited on). A file is read in large blocks; a pattern's needle is looked
 * for in the raw bytes, and lines are counted and decoded only where it is. A
 * file whose bytes hold a NUL is binary and is left there. A UTF-16 or UTF-32
 * file with a byte-order mark is read in its encoding; any other as UTF-8.
 *
 * A line longer than MaxLineBytes is searched in pieces of that size which
 * overlap, so that a match across a piece boundary is found.
 *
 * One scanner serves one thread; each thread of a search builds its own.
 */
class FindLineScanner
{
public:
    enum class Outcome { Searched, Binary, Unreadable, NotRegular };

    /** Called with the 1-based line number and the line's text for the results. */
    using HitFunction = std::function<void(int lineNumber, const QString &text)>;

    static constexpr int MaxLineBytes = 32 * 1024 * 1024;
    /** Longest line text given to a hit, in characters; longer lines end in "...". */
    static constexpr int MaxHitTextLength = 4096;

    explicit FindLineScanner(const FindPattern &pattern);
    ~FindLineScanner();

    bool isValid() const { return m_pattern.isValid(); }

    /**
     * Reports every matching line of @p path through @p onHit, in order, and
     * stops early when @p stop becomes true.
     */
    Outcome scanFile(const QString &path, const std::atomic<bool> &stop, const HitFunction &onHit);

    /** The text a hit shows for a line: trimmed, and cut after MaxHitTextLength. */
    static QString hitText(const QString &line);

private:
    struct Source;
    void scan(Source &source);
    void processRegion(const char *begin, const char *end);
    void processPiece(const char *begin, const char *end, bool continuation, bool final);
    void regionByNeedle(const char *begin, const char *end);
    void regionAtOnce(const char *begin, const char *end);
    void regionLineByLine(const char *begin, const char *end);
    bool pieceMatches(const char *begin, const char *end, bool continuation, bool final) const;
    bool needleUsable(const char *begin, const char *end) const;
    const char *findNeedle(const char *begin, const char *end) const;
    bool lineMatches(const QString &line, int offset = 0) const;
    bool lineMatches(const QStringRef &line) const;
    static QString textStart(const char *begin, const char *end);
    void report(const char *begin, const char *end);
    void report(const QString &text);

    FindPattern m_pattern;
    QRegularExpression m_regular;
    mutable QRegExp m_exact;
    QByteArray m_needle;
    unsigned char m_fold[256];
    size_t m_skip[256];
    std::vector<char> m_buffer;

    // State of the file being scanned.
    const HitFunction *m_onHit = nullptr;
    const std::atomic<bool> *m_stop = nullptr;
    int m_lineNumber = 1;
    bool m_lineDone = false;      // the current long line was reported already
    bool m_inLongLine = false;    // pieces of the current line were searched already
    QString m_longLineText;       // what a hit in the current long line shows
};
