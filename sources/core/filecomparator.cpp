#include "filecomparator.h"

#include "logging.h"

#include <QDebug>
#include <QFile>
#include <QVarLengthArray>

#include <array>
#include <atomic>
#include <climits>
#include <cmath>
#include <limits>
#include <memory>
#include <new>

namespace {

std::atomic<quint64> g_memoryLimit{0};
std::atomic<int> g_checkpointInterval{0};

// Characters that make up words for the word-boundary split: letters, digits,
// marks and the underscore, as the regular expression "\b" sees them.
inline bool isWordChar(QChar c)
{
    return c.isLetterOrNumber() || c.isMark() || c == QLatin1Char('_');
}

// Qt's CRC-16 (qChecksum: ISO 3309, reflected polynomial 0x8408, initial and
// final value 0xffff) by table, a byte at a time; qChecksum itself goes by nibbles.
quint16 crc16(const char *data, int length)
{
    static const std::array<quint16, 256> table = [] {
        std::array<quint16, 256> t{};
        for (int i = 0; i < 256; ++i) {
            quint16 crc = quint16(i);
            for (int bit = 0; bit < 8; ++bit)
                crc = (crc & 1) ? quint16((crc >> 1) ^ 0x8408) : quint16(crc >> 1);
            t[size_t(i)] = crc;
        }
        return t;
    }();
    quint32 crc = 0xffff;
    const auto *p = reinterpret_cast<const unsigned char *>(data);
    for (int k = 0; k < length; ++k)
        crc = (crc >> 8) ^ table[(crc ^ p[k]) & 0xff];
    return quint16(~crc & 0xffff);
}

// The UTF-8 bytes of text[from, to); a lone surrogate becomes U+FFFD.
void appendUtf8(QVarLengthArray<char, 256> &out, const QChar *text, int from, int to)
{
    for (int k = from; k < to; ++k) {
        uint u = text[k].unicode();
        if (QChar::isHighSurrogate(u) && k + 1 < to && text[k + 1].isLowSurrogate()) {
            u = QChar::surrogateToUcs4(ushort(u), text[k + 1].unicode());
            ++k;
        } else if (QChar::isSurrogate(u)) {
            u = 0xfffd;
        }
        if (u < 0x80) {
            out.append(char(u));
        } else if (u < 0x800) {
            out.append(char(0xc0 | (u >> 6)));
            out.append(char(0x80 | (u & 0x3f)));
        } else if (u < 0x10000) {
            out.append(char(0xe0 | (u >> 12)));
            out.append(char(0x80 | ((u >> 6) & 0x3f)));
            out.append(char(0x80 | (u & 0x3f)));
        } else {
            out.append(char(0xf0 | (u >> 18)));
            out.append(char(0x80 | ((u >> 12) & 0x3f)));
            out.append(char(0x80 | ((u >> 6) & 0x3f)));
            out.append(char(0x80 | (u & 0x3f)));
        }
    }
}

quint64 availableMemory()
{
    const quint64 limit = g_memoryLimit.load();
    if (limit)
        return limit;
#ifdef Q_OS_LINUX
    QFile meminfo(QStringLiteral("/proc/meminfo"));
    if (meminfo.open(QIODevice::ReadOnly)) {
        const QList<QByteArray> lines = meminfo.readAll().split('\n');
        for (const QByteArray &line : lines) {
            if (line.startsWith("MemAvailable:")) {
                const QList<QByteArray> fields = line.simplified().split(' ');
                if (fields.size() >= 2)
                    return fields.at(1).toULongLong() * 1024;
            }
        }
    }
#endif
    // Without a figure, trust the allocator (which throws when it cannot give).
    return std::numeric_limits<quint64>::max();
}

int checkpointInterval(int rows)
{
    const int chosen = g_checkpointInterval.load();
    if (chosen > 0)
        return chosen;
    return qMax(1, int(std::ceil(std::sqrt(double(rows)))));
}

/**
 * The table's rows as bits. Row i holds T[i][j] - T[i][j+1] (0 or 1) for every
 * column j, stored from the last column upwards (column j is bit k = columns - 1 - j)
 * so that computing a row from the one below is the bit-parallel update of a prefix
 * table of the reversed texts; T[i][j] is the number of set bits of row i from
 * bit 0 to bit columns - 1 - j.
 *
 * Rows i with i % interval == 0 are kept; the others are computed again, a block
 * (the rows between two kept ones) at a time, when the walk asks for them. The
 * walk only moves down, so each block is computed at most once more.
 */
class BitTable
{
public:
    BitTable(const ComparedLine *left, const ComparedLine *right, int rows, int columns)
        : m_left(left)
        , m_rows(rows)
        , m_columns(columns)
        , m_words(qMax(1, (columns + 63) / 64))
        , m_interval(checkpointInterval(rows))
        , m_kept(size_t((rows + m_interval - 1) / m_interval) * size_t(m_words))
        , m_block(size_t(m_interval - 1) * size_t(m_words))
        , m_zero(size_t(m_words), 0)
        , m_v(size_t(m_words))
        , m_match(size_t(m_words), 0)
        , m_head(65536, -1)
        , m_next(size_t(columns), -1)
    {
        // Columns of each signature, as a chain of bit positions.
        for (int j = 0; j < columns; ++j) {
            const int k = columns - 1 - j;
            m_next[size_t(k)] = m_head[right[j].checksum];
            m_head[right[j].checksum] = k;
        }
        m_lastMask = columns % 64 ? (quint64(1) << (columns % 64)) - 1 : ~quint64(0);
    }

    static quint64 bytes(qint64 rows, qint64 columns)
    {
        const qint64 interval = checkpointInterval(int(qMin<qint64>(rows, INT_MAX)));
        const qint64 words = (columns + 63) / 64;
        const qint64 kept = (rows + interval - 1) / interval;
        return quint64(kept + interval - 1) * quint64(words) * 8;
    }

    // First pass: every row from the bottom up, keeping the checkpoints.
    void build()
    {
        std::fill(m_v.begin(), m_v.end(), ~quint64(0));
        for (int i = m_rows - 1; i >= 0; --i) {
            advance(i);
            if (i % m_interval == 0)
                store(keptRow(i));
        }
        m_blockIndex = -1;
    }

    const quint64 *row(int i)
    {
        if (i >= m_rows)
            return m_zero.data();
        if (i % m_interval == 0)
            return keptRow(i);
        const int block = i / m_interval;
        if (block != m_blockIndex)
            computeBlock(block);
        return m_block.data() + size_t(i % m_interval - 1) * size_t(m_words);
    }

    // T[i][j] for a row of bits.
    int value(const quint64 *r, int j) const
    {
        if (j >= m_columns)
            return 0;
        const int count = m_columns - j; // bits 0 .. count - 1
        int sum = 0;
        const int full = count / 64;
        for (int w = 0; w < full; ++w)
            sum += __builtin_popcountll(r[w]);
        if (count % 64)
            sum += __builtin_popcountll(r[full] & ((quint64(1) << (count % 64)) - 1));
        return sum;
    }

    int bit(const quint64 *r, int j) const
    {
        if (j >= m_columns)
            return 0;
        const int k = m_columns - 1 - j;
        return int((r[k / 64] >> (k % 64)) & 1U);
    }

private:
    quint64 *keptRow(int i) { return m_kept.data() + size_t(i / m_interval) * size_t(m_words); }

    void store(quint64 *out) const
    {
        for (int w = 0; w < m_words; ++w)
            out[w] = ~m_v[size_t(w)];
        out[m_words - 1] &= m_lastMask;
    }

    // The rows of a block, from the kept row below it upwards. The bits past the
    // last column never reach the others (carries and borrows only move up), so
    // the complement of a kept row restarts the update exactly.
    void computeBlock(int block)
    {
        const int first = block * m_interval;
        const int below = qMin(first + m_interval, m_rows);
        if (below >= m_rows) {
            std::fill(m_v.begin(), m_v.end(), ~quint64(0));
        } else {
            const quint64 *kept = keptRow(below);
            for (int w = 0; w < m_words; ++w)
                m_v[size_t(w)] = ~kept[w];
        }
        for (int i = below - 1; i > first; --i) {
            advance(i);
            store(m_block.data() + size_t(i - first - 1) * size_t(m_words));
        }
        m_blockIndex = block;
    }

    // Updates v (the complement of the row below) to row i's complement:
    // V = (V + U) | (V - U) with U = V & M, carried across the words.
    void advance(int i)
    {
        const int first = m_head[m_left[i].checksum];
        if (first < 0)
            return;
        for (int k = first; k >= 0; k = m_next[size_t(k)])
            m_match[size_t(k / 64)] |= quint64(1) << (k % 64);
        quint64 carry = 0;
        quint64 borrow = 0;
        for (size_t w = 0; w < size_t(m_words); ++w) {
            const quint64 vw = m_v[w];
            const quint64 u = vw & m_match[w];
            const quint64 sum1 = vw + u;
            const quint64 c1 = sum1 < vw;
            const quint64 sum = sum1 + carry;
            const quint64 c2 = sum < sum1;
            carry = c1 | c2;
            const quint64 diff1 = vw - u;
            const quint64 b1 = vw < u;
            const quint64 diff = diff1 - borrow;
            const quint64 b2 = diff1 < borrow;
            borrow = b1 | b2;
            m_v[w] = sum | diff;
        }
        for (int k = first; k >= 0; k = m_next[size_t(k)])
            m_match[size_t(k / 64)] = 0;
    }

    const ComparedLine *m_left;
    int m_rows;
    int m_columns;
    int m_words;
    int m_interval;
    quint64 m_lastMask = 0;
    int m_blockIndex = -1;
    std::vector<quint64> m_kept;
    std::vector<quint64> m_block;
    std::vector<quint64> m_zero;
    std::vector<quint64> m_v;
    std::vector<quint64> m_match;
    std::vector<int> m_head;
    std::vector<int> m_next;
};

} // namespace

quint16 FileComparator::signature(const QString &text, Options options)
{
    // Equivalent to splitting at "\b" and summing the pieces: the pieces are the
    // maximal runs of word and of other characters. Each counts by the CRC of its
    // UTF-8 bytes, so that no two characters sign alike.
    const QString folded = options & IgnoreCase ? text.toCaseFolded() : text;
    const QChar *chars = folded.constData();
    const int n = folded.size();
    quint16 sum = 0;
    QVarLengthArray<char, 256> bytes;
    int start = 0;
    while (start < n) {
        const bool word = isWordChar(chars[start]);
        int end = start + 1;
        while (end < n && isWordChar(chars[end]) == word)
            ++end;
        bool blank = !word;
        for (int k = start; blank && k < end; ++k)
            blank = chars[k].isSpace();
        if (!blank || !(options & IgnoreWhitespace)) {
            bytes.clear();
            appendUtf8(bytes, chars, start, end);
            sum = quint16(sum + crc16(bytes.constData(), bytes.size()));
        }
        start = end;
    }
    return sum;
}

void FileComparator::addLine(const QString &text, int number, Part part)
{
    ComparedLine line;
    line.number = number;
    switch (part) {
    case LeftPart:
        line.checksum = signature(text, m_options);
        m_leftLines.append(line);
        break;
    case RightPart:
        line.checksum = signature(text, m_options);
        m_rightLines.append(line);
        break;
    default:
        qCDebug(lcComparator) << "AddLine error part";
        break;
    }
}

quint64 FileComparator::tableBytes(qint64 leftCount, qint64 rightCount)
{
    return BitTable::bytes(leftCount, rightCount);
}

void FileComparator::setMemoryLimit(quint64 bytes)
{
    g_memoryLimit.store(bytes);
}

void FileComparator::setCheckpointInterval(int rows)
{
    g_checkpointInterval.store(qMax(0, rows));
}

bool FileComparator::compare()
{
    m_error.clear();
    const int nL = m_leftLines.size();
    const int nR = m_rightLines.size();

    // The walk pairs equal lines at once, so the common prefix pairs the same way
    // without a table.
    int prefix = 0;
    while (prefix < nL && prefix < nR
           && m_leftLines.at(prefix).checksum == m_rightLines.at(prefix).checksum)
        ++prefix;
    const int rows = nL - prefix;
    const int columns = nR - prefix;
    const bool walk = rows > 0 && columns > 0;

    const quint64 needed = walk ? tableBytes(rows, columns) : 0;
    if (needed > availableMemory()) {
        m_error = QStringLiteral("The files are too large to compare: the comparison needs "
                                 "%1 MB of memory and only %2 MB are free.")
                      .arg(needed >> 20)
                      .arg(availableMemory() >> 20);
        return false;
    }
    std::unique_ptr<BitTable> table;
    if (walk) {
        try {
            table = std::make_unique<BitTable>(m_leftLines.constData() + prefix,
                                               m_rightLines.constData() + prefix, rows, columns);
        } catch (const std::bad_alloc &) {
            m_error = QStringLiteral("The files are too large to compare: the comparison "
                                     "needs %1 MB of memory.")
                          .arg(needed >> 20);
            return false;
        }
        table->build();
    }

    // Entries are marked by line index from the start of each list, as a first
    // comparison needs; a repeated compare() keeps its earlier results in front.
    QVector<int> &leftDiff = m_leftDiff;
    QVector<int> &rightDiff = m_rightDiff;
    for (const ComparedLine &line : qAsConst(m_leftLines))
        leftDiff.append(line.number);
    for (const ComparedLine &line : qAsConst(m_rightLines))
        rightDiff.append(line.number);

    const auto pair = [&](int i, int j) {
        m_commonLines.append(m_leftLines.at(i));
        m_commonRight.append(m_rightLines.at(j).number);
        leftDiff[i] = -1;
        rightDiff[j] = -1;
    };
    for (int p = 0; p < prefix; ++p)
        pair(p, p);
    if (walk) {
        // The walk over the rest, with T read from the bit rows: cur is T[i][j] and
        // down is T[i+1][j], both in table coordinates.
        const ComparedLine *left = m_leftLines.constData() + prefix;
        const ComparedLine *right = m_rightLines.constData() + prefix;
        int i = 0;
        int j = 0;
        int cur = table->value(table->row(0), 0);
        int down = table->value(table->row(1), 0);
        while (cur != 0 && i < rows && j < columns) {
            if (left[i].checksum == right[j].checksum) {
                pair(prefix + i, prefix + j);
                cur = down - table->bit(table->row(i + 1), j);
                ++i;
                ++j;
                down = table->value(table->row(i + 1), j);
            } else if (cur == down) {
                ++i;
                cur = down;
                down = table->value(table->row(i + 1), j);
            } else {
                cur -= table->bit(table->row(i), j);
                down -= table->bit(table->row(i + 1), j);
                ++j;
            }
        }
    }

    leftDiff.removeAll(-1);
    qCDebug(lcComparator) << "Compare count right" << rightDiff;
    rightDiff.removeAll(-1);
    return true;
}

int FileComparator::getDiffCount(Part part) const
{
    switch (part) {
    case LeftPart:
        return m_leftDiff.size();
    case RightPart:
        return m_rightDiff.size();
    default:
        qCDebug(lcComparator) << "GetDiff error part";
        return -1;
    }
}

int FileComparator::getDiff(Part part, const int &index) const
{
    const QVector<int> *list = nullptr;
    switch (part) {
    case LeftPart:
        list = &m_leftDiff;
        break;
    case RightPart:
        list = &m_rightDiff;
        break;
    default:
        qCDebug(lcComparator) << "GetDiff error part";
        return -1;
    }
    if (index < 0 || index >= list->size())
        return -1;
    return list->at(index);
}

void FileComparator::getCommonLines(std::vector<int> &lines) const
{
    for (const ComparedLine &line : m_commonLines)
        lines.push_back(line.number);
}

void FileComparator::getCommonLines(std::vector<int> &lines, Part part) const
{
    if (part == RightPart)
        lines.insert(lines.end(), m_commonRight.cbegin(), m_commonRight.cend());
    else
        getCommonLines(lines);
}
