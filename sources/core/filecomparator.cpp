#include "filecomparator.h"

#include <QDebug>
#include <QFile>
#include <QLoggingCategory>

#include <QHash>

#include <atomic>
#include <limits>
#include <memory>
#include <new>

Q_LOGGING_CATEGORY(lcComparator, "navarch.comparator")

namespace {

std::atomic<quint64> g_memoryLimit{0};

// Characters that make up words for the word-boundary split: letters, digits,
// marks and the underscore, as the regular expression "\b" sees them.
inline bool isWordChar(QChar c)
{
    return c.isLetterOrNumber() || c.isMark() || c == QLatin1Char('_');
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

/**
 * Rows of the table as bits. Row i holds T[i][j] - T[i][j+1] (0 or 1) for every
 * column j, stored from the last column upwards so that computing a row is the
 * bit-parallel update of a prefix table of the reversed texts; T[i][j] is the
 * number of set bits of row i from column j to the end.
 */
class BitTable
{
public:
    BitTable(int rows, int columns)
        : m_rows(rows)
        , m_columns(columns)
        , m_words((columns + 63) / 64)
        , m_bits(static_cast<size_t>(rows) * static_cast<size_t>(m_words))
    {
    }

    int words() const { return m_words; }
    quint64 *row(int i) { return m_bits.data() + static_cast<size_t>(i) * m_words; }
    const quint64 *row(int i) const
    {
        return m_bits.data() + static_cast<size_t>(i) * m_words;
    }

    // Column j is bit k = columns - 1 - j.
    int bit(int i, int j) const
    {
        if (i >= m_rows || j >= m_columns)
            return 0;
        const int k = m_columns - 1 - j;
        return static_cast<int>((row(i)[k / 64] >> (k % 64)) & 1U);
    }

    // T[i][j]: set bits at k = 0 .. columns - 1 - j.
    int value(int i, int j) const
    {
        if (i >= m_rows || j >= m_columns)
            return 0;
        const int count = m_columns - j; // bits 0 .. count - 1
        const quint64 *r = row(i);
        int sum = 0;
        const int full = count / 64;
        for (int w = 0; w < full; ++w)
            sum += __builtin_popcountll(r[w]);
        if (count % 64)
            sum += __builtin_popcountll(r[full] & ((quint64(1) << (count % 64)) - 1));
        return sum;
    }

private:
    int m_rows;
    int m_columns;
    int m_words;
    std::vector<quint64> m_bits;
};

} // namespace

quint16 FileComparator::signature(const QString &text)
{
    // Equivalent to splitting at "\b" and summing the pieces: the pieces are the
    // maximal runs of word and of other characters.
    quint16 sum = 0;
    const int n = text.size();
    int start = 0;
    while (start < n) {
        const bool word = isWordChar(text.at(start));
        int end = start + 1;
        while (end < n && isWordChar(text.at(end)) == word)
            ++end;
        const QStringRef piece = text.midRef(start, end - start);
        if (!piece.trimmed().isEmpty()) {
            const QByteArray bytes = piece.toLatin1();
            sum = static_cast<quint16>(
                sum + qChecksum(bytes.constData(), static_cast<uint>(piece.size())));
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
        line.checksum = signature(text);
        m_leftLines.append(line);
        break;
    case RightPart:
        line.checksum = signature(text);
        m_rightLines.append(line);
        break;
    default:
        qDebug() << "AddLine error part";
        break;
    }
}

quint64 FileComparator::tableBytes(qint64 leftCount, qint64 rightCount)
{
    return quint64(leftCount) * quint64((rightCount + 63) / 64) * 8;
}

void FileComparator::setMemoryLimit(quint64 bytes)
{
    g_memoryLimit.store(bytes);
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

    const quint64 needed = tableBytes(rows, columns);
    if (needed > availableMemory()) {
        m_error = QStringLiteral("The files are too large to compare: the comparison needs "
                                 "%1 MB of memory and only %2 MB are free.")
                      .arg(needed >> 20)
                      .arg(availableMemory() >> 20);
        return false;
    }
    std::unique_ptr<BitTable> table;
    try {
        table = std::make_unique<BitTable>(rows, columns);
    } catch (const std::bad_alloc &) {
        m_error = QStringLiteral("The files are too large to compare: the comparison needs "
                                 "%1 MB of memory.")
                      .arg(needed >> 20);
        return false;
    }

    // Entries are marked by line index from the start of each list, as a first
    // comparison needs; a repeated compare() keeps its earlier results in front.
    QVector<int> &leftDiff = m_leftDiff;
    QVector<int> &rightDiff = m_rightDiff;
    for (const ComparedLine &line : qAsConst(m_leftLines))
        leftDiff.append(line.number);
    for (const ComparedLine &line : qAsConst(m_rightLines))
        rightDiff.append(line.number);

    if (rows > 0 && columns > 0) {
        // Columns of each signature, as bit positions (k = columns - 1 - j).
        QHash<quint16, std::vector<int>> positions;
        for (int j = 0; j < columns; ++j)
            positions[m_rightLines.at(prefix + j).checksum].push_back(columns - 1 - j);

        const int words = table->words();
        std::vector<quint64> match(words, 0);
        std::vector<quint64> v(words, ~quint64(0)); // complement of the row below
        const quint64 lastMask =
            columns % 64 ? (quint64(1) << (columns % 64)) - 1 : ~quint64(0);
        for (int i = rows - 1; i >= 0; --i) {
            const auto it = positions.constFind(m_leftLines.at(prefix + i).checksum);
            if (it != positions.constEnd()) {
                for (int k : *it)
                    match[k / 64] |= quint64(1) << (k % 64);
                // V = (V + U) | (V - U) with U = V & M, carried across the words.
                quint64 carry = 0;
                quint64 borrow = 0;
                for (int w = 0; w < words; ++w) {
                    const quint64 vw = v[w];
                    const quint64 u = vw & match[w];
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
                    v[w] = sum | diff;
                }
                for (int k : *it)
                    match[k / 64] = 0;
            }
            quint64 *out = table->row(i);
            for (int w = 0; w < words; ++w)
                out[w] = ~v[w];
            out[words - 1] &= lastMask;
        }
    }

    QVector<ComparedLine> common;
    for (int p = 0; p < prefix; ++p) {
        common.append(m_leftLines.at(p));
        leftDiff[p] = -1;
        rightDiff[p] = -1;
    }
    // The walk over the rest, with T read from the bit rows: cur is T[i][j] and
    // down is T[i+1][j], both in table coordinates.
    int i = 0;
    int j = 0;
    int cur = table->value(0, 0);
    int down = table->value(1, 0);
    while (cur != 0 && i < rows && j < columns) {
        if (m_leftLines.at(prefix + i).checksum == m_rightLines.at(prefix + j).checksum) {
            common.append(m_leftLines.at(prefix + i));
            leftDiff[prefix + i] = -1;
            rightDiff[prefix + j] = -1;
            cur = down - table->bit(i + 1, j);
            ++i;
            ++j;
            down = table->value(i + 1, j);
        } else if (cur == down) {
            ++i;
            cur = down;
            down = table->value(i + 1, j);
        } else {
            cur -= table->bit(i, j);
            down -= table->bit(i + 1, j);
            ++j;
        }
    }

    m_commonLines += common;
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
        qDebug() << "GetDiff error part";
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
        qDebug() << "GetDiff error part";
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
