#include "findlinescanner.h"

#include "textcodec.h"

#include <QFile>
#include <QTextCodec>
#include <QTextDecoder>

#include <algorithm>
#include <cstring>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif
#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace {

constexpr size_t BlockBytes = 1024 * 1024;
// A buffer grown for a long line is given back after the file when larger than this.
constexpr size_t KeptBufferBytes = 4 * 1024 * 1024;
// Pieces of a long line overlap by this much, so that matches up to this long
// across a piece boundary are found (literal needles always are).
constexpr size_t PieceOverlapBytes = 64 * 1024;
// Raw bytes of a UTF-16 or UTF-32 file read at a time (at most 1.5 times as
// many bytes once written as UTF-8).
constexpr qint64 EncodedChunkBytes = 256 * 1024;

int countNewlines(const char *begin, const char *end)
{
    int count = 0;
#ifdef __SSE2__
    // Byte counters per lane, summed before they can overflow.
    const __m128i newline = _mm_set1_epi8('\n');
    const __m128i zero = _mm_setzero_si128();
    while (end - begin >= 16) {
        const ptrdiff_t blocks = std::min<ptrdiff_t>(255, (end - begin) / 16);
        __m128i counts = zero;
        for (ptrdiff_t i = 0; i < blocks; ++i, begin += 16) {
            const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i *>(begin));
            counts = _mm_sub_epi8(counts, _mm_cmpeq_epi8(bytes, newline));
        }
        const __m128i sums = _mm_sad_epu8(counts, zero);
        count += _mm_cvtsi128_si32(sums) + _mm_extract_epi16(sums, 4);
    }
#endif
    return count + static_cast<int>(std::count(begin, end, '\n'));
}

int countNewlines(const QChar *begin, const QChar *end)
{
    int count = 0;
    for (; begin < end; ++begin)
        count += begin->unicode() == '\n';
    return count;
}

const char *findByte(const char *begin, const char *end, char byte)
{
    return static_cast<const char *>(std::memchr(begin, byte, static_cast<size_t>(end - begin)));
}

const char *lastNewline(const char *begin, const char *end)
{
#if defined(__GLIBC__)
    return static_cast<const char *>(memrchr(begin, '\n', static_cast<size_t>(end - begin)));
#else
    for (const char *p = end; p > begin;) {
        if (*--p == '\n')
            return p;
    }
    return nullptr;
#endif
}

bool isAsciiText(const char *begin, const char *end)
{
    unsigned char any = 0;
    for (const char *p = begin; p < end; ++p)
        any |= static_cast<unsigned char>(*p);
    return any < 0x80;
}

} // namespace

/** The bytes of one file as UTF-8: read as they are, or decoded from the marked encoding. */
struct FindLineScanner::Source
{
    explicit Source(const QString &path)
    {
#ifdef Q_OS_UNIX
        // Non-blocking, so that opening a FIFO (or a link to one) returns at once;
        // its type is then checked on the handle, which no rename can change.
        fd = ::open(QFile::encodeName(path).constData(),
                    O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
        if (fd < 0) {
            outcome = Outcome::Unreadable;
            return;
        }
        struct stat info;
        if (::fstat(fd, &info) != 0)
            outcome = Outcome::Unreadable;
        else if (!S_ISREG(info.st_mode))
            outcome = Outcome::NotRegular;
#else
        file.setFileName(path);
        if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
            outcome = Outcome::Unreadable;
#endif
    }

    ~Source()
    {
#ifdef Q_OS_UNIX
        if (fd >= 0)
            ::close(fd);
#endif
    }

    qint64 readRaw(char *data, qint64 room)
    {
#ifdef Q_OS_UNIX
        for (;;) {
            const ssize_t n = ::read(fd, data, static_cast<size_t>(room));
            if (n >= 0 || errno != EINTR)
                return n;
        }
#else
        return file.read(data, room);
#endif
    }

    // Fills up to @p room bytes of UTF-8; 0 at the end, -1 on a read error.
    qint64 read(char *data, qint64 room)
    {
        if (first) {
            first = false;
            const qint64 n = readRaw(data, room);
            if (n <= 0)
                return n;
            const TextCodec::ByteOrderMark bom =
                TextCodec::byteOrderMark(QByteArray::fromRawData(data, static_cast<int>(n)));
            const int mark = bom.bytes.size();
            if (mark > 0 && bom.codec != "UTF-8") {
                decoder.reset(TextCodec::codecForName(bom.codec)
                                  ->makeDecoder(QTextCodec::IgnoreHeader));
                pending = decoder->toUnicode(data + mark, static_cast<int>(n - mark)).toUtf8();
            } else {
                std::memmove(data, data + mark, static_cast<size_t>(n - mark));
                return n - mark;
            }
        }
        if (!decoder)
            return readRaw(data, room);
        while (pending.isEmpty()) {
            QByteArray raw(EncodedChunkBytes, Qt::Uninitialized);
            const qint64 n = readRaw(raw.data(), raw.size());
            if (n <= 0)
                return n;
            pending = decoder->toUnicode(raw.constData(), static_cast<int>(n)).toUtf8();
        }
        const qint64 n = std::min<qint64>(room, pending.size());
        std::memcpy(data, pending.constData(), static_cast<size_t>(n));
        pending.remove(0, static_cast<int>(n));
        return n;
    }

    Outcome outcome = Outcome::Searched;
#ifdef Q_OS_UNIX
    int fd = -1;
#else
    QFile file;
#endif
    bool first = true;
    std::unique_ptr<QTextDecoder> decoder;
    QByteArray pending;
};

FindLineScanner::FindLineScanner(const FindPattern &pattern)
    : m_pattern(pattern)
{
    if (pattern.engine() == FindPattern::Engine::Regular) {
        m_regular = QRegularExpression(pattern.regularPattern(), pattern.regularOptions());
        m_regular.optimize();
    } else {
        m_exact = QRegExp(pattern.pattern(), pattern.caseSensitivity(), pattern.syntax());
    }

    m_needle = pattern.needle();
    for (int i = 0; i < 256; ++i)
        m_fold[i] = static_cast<unsigned char>(i);
    if (pattern.needleFoldsCase()) {
        for (int c = 'A'; c <= 'Z'; ++c)
            m_fold[c] = static_cast<unsigned char>(c - 'A' + 'a');
    }
    const size_t n = static_cast<size_t>(m_needle.size());
    std::fill(std::begin(m_skip), std::end(m_skip), n);
    for (size_t i = 0; i + 1 < n; ++i) {
        const auto c = static_cast<unsigned char>(m_needle.at(static_cast<int>(i)));
        m_skip[c] = n - 1 - i;
        if (pattern.needleFoldsCase() && c >= 'a' && c <= 'z')
            m_skip[c - 'a' + 'A'] = n - 1 - i;
    }
}

FindLineScanner::~FindLineScanner() = default;

QString FindLineScanner::hitText(const QString &line)
{
    QString text = line.trimmed();
    if (text.size() > MaxHitTextLength) {
        text.truncate(MaxHitTextLength);
        text += QStringLiteral("...");
    }
    return text;
}

FindLineScanner::Outcome FindLineScanner::scanFile(const QString &path,
                                                   const std::atomic<bool> &stop,
                                                   const HitFunction &onHit)
{
    Source source(path);
    if (source.outcome != Outcome::Searched)
        return source.outcome;
    m_onHit = &onHit;
    m_stop = &stop;
    m_lineNumber = 1;
    m_lineDone = false;
    m_inLongLine = false;
    m_longLineText.clear();
    scan(source);
    if (m_buffer.size() > KeptBufferBytes) {
        m_buffer.resize(BlockBytes);
        m_buffer.shrink_to_fit();
    }
    m_onHit = nullptr;
    m_stop = nullptr;
    return source.outcome;
}

void FindLineScanner::scan(Source &source)
{
    if (m_buffer.size() < BlockBytes)
        m_buffer.resize(BlockBytes);
    const size_t overlap = std::max(PieceOverlapBytes, static_cast<size_t>(m_needle.size()));
    size_t pos = 0; // start of the line not yet searched
    size_t len = 0;
    while (!m_stop->load(std::memory_order_relaxed)) {
        char *data = m_buffer.data();
        if (pos > 0) {
            std::memmove(data, data + pos, len - pos);
            len -= pos;
            pos = 0;
        }
        if (len == m_buffer.size()) {
            // The buffer holds one unfinished line.
            if (m_buffer.size() < static_cast<size_t>(MaxLineBytes)) {
                m_buffer.resize(std::min(m_buffer.size() * 2, static_cast<size_t>(MaxLineBytes)));
                data = m_buffer.data();
            } else {
                processPiece(data, data + len, m_inLongLine, false);
                // Keep the piece's tail, cut where a character starts.
                size_t tail = len - overlap;
                while (tail > 0 && (static_cast<unsigned char>(data[tail]) & 0xc0) == 0x80)
                    --tail;
                std::memmove(data, data + tail, len - tail);
                len -= tail;
                m_inLongLine = true;
            }
        }
        const qint64 n = source.read(data + len, static_cast<qint64>(m_buffer.size() - len));
        if (n < 0)
            source.outcome = Outcome::Unreadable;
        if (n <= 0) {
            // End of file, or a read error: what was read is still searched.
            if (len > pos)
                processRegion(data + pos, data + len);
            return;
        }
        const char *fresh = data + len;
        if (findByte(fresh, fresh + n, '\0')) {
            source.outcome = Outcome::Binary;
            return;
        }
        len += static_cast<size_t>(n);
        if (const char *nl = lastNewline(fresh, data + len)) {
            processRegion(data + pos, nl + 1);
            pos = static_cast<size_t>(nl + 1 - data);
        }
    }
}

// Searches whole lines: each ends with '\n', but the last one at the end of the file.
void FindLineScanner::processRegion(const char *begin, const char *end)
{
    if (m_inLongLine) {
        const char *nl = findByte(begin, end, '\n');
        const char *lineEnd = nl ? nl : end;
        processPiece(begin, lineEnd, true, true);
        begin = nl ? nl + 1 : end;
    }
    if (begin >= end)
        return;
    if (needleUsable(begin, end))
        regionByNeedle(begin, end);
    else if (m_pattern.spansLinesSafely())
        regionAtOnce(begin, end);
    else
        regionLineByLine(begin, end);
}

// One piece of a line too long for the buffer. A continuation starts with the
// tail of the piece before it (already searched, but a match may begin there);
// only a final piece ends where the line does.
void FindLineScanner::processPiece(const char *begin, const char *end, bool continuation,
                                   bool final)
{
    if (!continuation)
        m_longLineText = hitText(textStart(begin, end));
    if (!m_lineDone && pieceMatches(begin, end, continuation, final)) {
        report(m_longLineText);
        m_lineDone = true;
    }
    if (final) {
        ++m_lineNumber;
        m_lineDone = false;
        m_inLongLine = false;
        m_longLineText.clear();
    }
}

bool FindLineScanner::pieceMatches(const char *begin, const char *end, bool continuation,
                                   bool final) const
{
    if (needleUsable(begin, end)) {
        if (!findNeedle(begin, end))
            return false;
        if (m_pattern.needleIsPattern())
            return true;
    }
    const QString piece = QString::fromUtf8(begin, static_cast<int>(end - begin));
    // One character of context keeps ^ from matching inside the line.
    const int offset = !continuation ? 0 : (piece.at(0).isHighSurrogate() ? 2 : 1);
    if (m_pattern.engine() == FindPattern::Engine::Exact)
        return lineMatches(piece, offset);
    const QRegularExpressionMatch match = m_regular.match(piece, offset);
    // A match that needs the piece's end may be a false $; the overlap searches
    // that text again together with what follows it.
    return match.hasMatch() && (final || match.capturedEnd() < piece.size());
}

bool FindLineScanner::needleUsable(const char *begin, const char *end) const
{
    return !m_needle.isEmpty() && (!m_pattern.needleNeedsAsciiText() || isAsciiText(begin, end));
}

const char *FindLineScanner::findNeedle(const char *begin, const char *end) const
{
    const size_t n = static_cast<size_t>(m_needle.size());
    if (static_cast<size_t>(end - begin) < n)
        return nullptr;
    const auto *needle = reinterpret_cast<const unsigned char *>(m_needle.constData());
#if defined(__GLIBC__)
    if (!m_pattern.needleFoldsCase())
        return static_cast<const char *>(memmem(begin, static_cast<size_t>(end - begin), needle, n));
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
        s += m_skip[s[n - 1]];
    }
    return nullptr;
}

// Only the lines that hold the needle are decoded (and matched, unless the
// needle is the whole pattern).
void FindLineScanner::regionByNeedle(const char *begin, const char *end)
{
    const char *p = begin;
    while (p < end && !m_stop->load(std::memory_order_relaxed)) {
        const char *hit = findNeedle(p, end);
        if (!hit) {
            m_lineNumber += countNewlines(p, end);
            return;
        }
        const char *nlBefore = lastNewline(p, hit);
        const char *lineStart = nlBefore ? nlBefore + 1 : p;
        m_lineNumber += countNewlines(p, lineStart);
        const char *nl = findByte(hit, end, '\n');
        const char *lineEnd = nl ? nl : end;
        if (m_pattern.needleIsPattern()
            || lineMatches(QString::fromUtf8(lineStart, static_cast<int>(lineEnd - lineStart))))
            report(lineStart, lineEnd);
        ++m_lineNumber;
        p = nl ? nl + 1 : end;
    }
}

// The expression runs over the whole region; ^ and $ match at line ends.
void FindLineScanner::regionAtOnce(const char *begin, const char *end)
{
    const QString text = QString::fromUtf8(begin, static_cast<int>(end - begin));
    const QChar *data = text.constData();
    int offset = 0;
    while (offset < text.size() && !m_stop->load(std::memory_order_relaxed)) {
        const QRegularExpressionMatch match = m_regular.match(text, offset);
        if (!match.hasMatch() || match.capturedStart() >= text.size())
            break;
        const int start = match.capturedStart();
        const int lineStart = start == 0 ? 0 : text.lastIndexOf(QLatin1Char('\n'), start - 1) + 1;
        m_lineNumber += countNewlines(data + offset, data + lineStart);
        int lineEnd = text.indexOf(QLatin1Char('\n'), start);
        if (lineEnd < 0)
            lineEnd = text.size();
        report(text.mid(lineStart, lineEnd - lineStart));
        ++m_lineNumber;
        offset = lineEnd + 1;
    }
    if (offset < text.size())
        m_lineNumber += countNewlines(data + offset, data + text.size());
}

void FindLineScanner::regionLineByLine(const char *begin, const char *end)
{
    const QString text = QString::fromUtf8(begin, static_cast<int>(end - begin));
    int start = 0;
    while (start < text.size() && !m_stop->load(std::memory_order_relaxed)) {
        int lineEnd = text.indexOf(QLatin1Char('\n'), start);
        if (lineEnd < 0)
            lineEnd = text.size();
        const QStringRef line(&text, start, lineEnd - start);
        if (lineMatches(line))
            report(line.toString());
        ++m_lineNumber;
        start = lineEnd + 1;
    }
}

bool FindLineScanner::lineMatches(const QString &line, int offset) const
{
    if (m_pattern.engine() == FindPattern::Engine::Regular)
        return m_regular.match(line, offset).hasMatch();
    return m_exact.indexIn(line, offset) >= 0;
}

bool FindLineScanner::lineMatches(const QStringRef &line) const
{
    if (m_pattern.engine() == FindPattern::Engine::Regular)
        return m_regular.match(line).hasMatch();
    return m_exact.indexIn(line.toString()) >= 0;
}

// Only the start of a very long line is decoded for its text.
QString FindLineScanner::textStart(const char *begin, const char *end)
{
    while (begin < end && (*begin == ' ' || *begin == '\t' || *begin == '\r'))
        ++begin;
    const auto length = std::min<ptrdiff_t>(end - begin, 4 * MaxHitTextLength + 64);
    return QString::fromUtf8(begin, static_cast<int>(length));
}

void FindLineScanner::report(const char *begin, const char *end)
{
    report(textStart(begin, end));
}

void FindLineScanner::report(const QString &text)
{
    (*m_onHit)(m_lineNumber, hitText(text));
}
