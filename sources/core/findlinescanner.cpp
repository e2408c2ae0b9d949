#include "findlinescanner.h"

#include <QFile>

#include <algorithm>
#include <cstring>

namespace {

constexpr size_t InitialBufferBytes = 1024 * 1024;
// A buffer grown for a long line is given back after the file when larger than this.
constexpr size_t KeptBufferBytes = 4 * 1024 * 1024;

bool isLiteral(const QString &pattern, QRegExp::PatternSyntax syntax)
{
    const char *special = nullptr;
    switch (syntax) {
    case QRegExp::FixedString:
        return true;
    case QRegExp::Wildcard:
    case QRegExp::WildcardUnix:
        special = "*?[]\\";
        break;
    case QRegExp::RegExp:
    case QRegExp::RegExp2:
        special = "\\^$.|?*+()[]{}";
        break;
    default:
        return false;
    }
    for (const QChar c : pattern) {
        if (c.unicode() < 128 && std::strchr(special, c.toLatin1()))
            return false;
    }
    return true;
}

bool isAsciiText(const char *begin, const char *end)
{
    unsigned char any = 0;
    for (const char *p = begin; p < end; ++p)
        any |= static_cast<unsigned char>(*p);
    return any < 0x80;
}

int countNewlines(const char *begin, const char *end)
{
    int count = 0;
    while (begin < end) {
        const void *nl = std::memchr(begin, '\n', static_cast<size_t>(end - begin));
        if (!nl)
            break;
        ++count;
        begin = static_cast<const char *>(nl) + 1;
    }
    return count;
}

const char *lastNewline(const char *begin, const char *end)
{
    for (const char *p = end; p > begin;) {
        --p;
        if (*p == '\n')
            return p;
    }
    return nullptr;
}

} // namespace

FindLineScanner::FindLineScanner(const QString &pattern, QRegExp::PatternSyntax syntax,
                                 Qt::CaseSensitivity caseSensitivity)
    : m_regExp(pattern, caseSensitivity, syntax)
{
    for (int i = 0; i < 256; ++i)
        m_fold[i] = static_cast<unsigned char>(i);

    // The raw bytes of a decoded line hold the pattern's UTF-8 bytes exactly when
    // the decoded line holds the pattern, as long as the pattern has no character
    // that decoding can produce from other bytes (the replacement character).
    const QByteArray utf8 = pattern.toUtf8();
    const bool usable = m_regExp.isValid() && !pattern.isEmpty()
        && isLiteral(pattern, syntax) && !pattern.contains(QLatin1Char('\n'))
        && !pattern.contains(QChar(0)) && !pattern.contains(QChar::ReplacementCharacter)
        && QString::fromUtf8(utf8) == pattern;
    if (!usable)
        return;
    if (caseSensitivity == Qt::CaseSensitive) {
        m_needle = utf8;
    } else if (isAsciiText(utf8.constBegin(), utf8.constEnd())) {
        // Ignoring ASCII case is exact only on ASCII text; other blocks are decoded.
        m_foldAscii = true;
        for (int c = 'A'; c <= 'Z'; ++c)
            m_fold[c] = static_cast<unsigned char>(c - 'A' + 'a');
        m_needle = utf8.toLower();
    } else {
        return;
    }
    const size_t n = static_cast<size_t>(m_needle.size());
    std::fill(std::begin(m_skip), std::end(m_skip), n);
    for (size_t i = 0; i + 1 < n; ++i)
        m_skip[static_cast<unsigned char>(m_needle.at(static_cast<int>(i)))] = n - 1 - i;
}

bool FindLineScanner::matches(const QString &line) const
{
    return m_regExp.indexIn(line) >= 0;
}

const char *FindLineScanner::findNeedle(const char *begin, const char *end) const
{
    const size_t n = static_cast<size_t>(m_needle.size());
    if (static_cast<size_t>(end - begin) < n)
        return nullptr;
    const auto *needle = reinterpret_cast<const unsigned char *>(m_needle.constData());
#if defined(__GLIBC__)
    // glibc's memmem is quickest for short needles; longer ones skip further below.
    if (!m_foldAscii && n < 8)
        return static_cast<const char *>(memmem(begin, static_cast<size_t>(end - begin),
                                                needle, n));
#endif
    // Boyer-Moore-Horspool over folded bytes.
    const auto *s = reinterpret_cast<const unsigned char *>(begin);
    const auto *last = reinterpret_cast<const unsigned char *>(end) - n;
    const unsigned char lastNeedle = needle[n - 1];
    while (s <= last) {
        const unsigned char c = m_fold[s[n - 1]];
        if (c == lastNeedle) {
            size_t i = 0;
            while (i + 1 < n && m_fold[s[i]] == needle[i])
                ++i;
            if (i + 1 >= n)
                return reinterpret_cast<const char *>(s);
        }
        s += m_skip[c];
    }
    return nullptr;
}

bool FindLineScanner::scanFile(const QString &path, const std::atomic<bool> &stop,
                               const HitFunction &onHit)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return false;
    if (m_buffer.size() < InitialBufferBytes)
        m_buffer.resize(InitialBufferBytes);
    m_onHit = &onHit;
    m_stop = &stop;
    m_lineNumber = 1;
    m_lineDone = false;
    m_inLongLine = false;

    size_t pos = 0;
    size_t len = 0;
    while (!stop.load(std::memory_order_relaxed)) {
        char *data = m_buffer.data();
        if (pos > 0) {
            std::memmove(data, data + pos, len - pos);
            len -= pos;
            pos = 0;
        }
        if (len == m_buffer.size()) {
            // The buffer holds one unfinished line.
            if (m_lineDone || std::memchr(data, 0, len)) {
                // Its text ends at a NUL (or it matched): keep none of the rest.
                if (!m_lineDone)
                    checkPiece(data, data + len);
                m_inLongLine = true;
                len = 0;
            } else if (m_buffer.size() < static_cast<size_t>(MaxLineBytes)) {
                m_buffer.resize(std::min(m_buffer.size() * 2, static_cast<size_t>(MaxLineBytes)));
                data = m_buffer.data();
            } else {
                checkPiece(data, data + len);
                m_inLongLine = true;
                len = 0;
            }
        }
        const qint64 n = file.read(data + len, static_cast<qint64>(m_buffer.size() - len));
        if (n <= 0) {
            // End of file, or a read error: what was read is still searched.
            if (len > pos)
                processRegion(data + pos, data + len);
            break;
        }
        const char *fresh = data + len;
        len += static_cast<size_t>(n);
        if (const char *nl = lastNewline(fresh, data + len)) {
            processRegion(data + pos, nl + 1);
            pos = static_cast<size_t>(nl + 1 - data);
        }
    }

    if (m_buffer.size() > KeptBufferBytes) {
        m_buffer.resize(InitialBufferBytes);
        m_buffer.shrink_to_fit();
    }
    m_onHit = nullptr;
    m_stop = nullptr;
    return true;
}

void FindLineScanner::processRegion(const char *begin, const char *end)
{
    const char *p = begin;
    if (m_inLongLine && p < end) {
        const void *nl = std::memchr(p, '\n', static_cast<size_t>(end - p));
        const char *lineEnd = nl ? static_cast<const char *>(nl) + 1 : end;
        processLine(p, lineEnd);
        p = lineEnd;
    }
    const bool literal = !m_needle.isEmpty() && (!m_foldAscii || isAsciiText(p, end));
    if (!literal) {
        while (p < end && !m_stop->load(std::memory_order_relaxed)) {
            const void *nl = std::memchr(p, '\n', static_cast<size_t>(end - p));
            const char *lineEnd = nl ? static_cast<const char *>(nl) + 1 : end;
            processLine(p, lineEnd);
            p = lineEnd;
        }
        return;
    }
    // Only the lines that hold the pattern's bytes are decoded and matched.
    while (p < end && !m_stop->load(std::memory_order_relaxed)) {
        const char *match = findNeedle(p, end);
        if (!match) {
            m_lineNumber += countNewlines(p, end);
            return;
        }
        const char *lineStart = match;
        while (lineStart > p && lineStart[-1] != '\n')
            --lineStart;
        m_lineNumber += countNewlines(p, lineStart);
        const void *nl = std::memchr(match, '\n', static_cast<size_t>(end - match));
        const char *lineEnd = nl ? static_cast<const char *>(nl) + 1 : end;
        processLine(lineStart, lineEnd);
        p = lineEnd;
    }
}

void FindLineScanner::processLine(const char *begin, const char *end)
{
    if (!m_lineDone)
        checkPiece(begin, end);
    ++m_lineNumber;
    m_lineDone = false;
    m_inLongLine = false;
}

void FindLineScanner::checkPiece(const char *begin, const char *end)
{
    const void *nul = std::memchr(begin, 0, static_cast<size_t>(end - begin));
    const char *textEnd = nul ? static_cast<const char *>(nul) : end;
    const QString line = QString::fromUtf8(begin, static_cast<int>(textEnd - begin));
    if (m_regExp.indexIn(line) >= 0) {
        (*m_onHit)(m_lineNumber, line);
        m_lineDone = true;
    }
    if (nul)
        m_lineDone = true;
}
