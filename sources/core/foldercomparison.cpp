#include "foldercomparison.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QSet>

#include <array>
#include <cstring>
#include <thread>

namespace {

constexpr int SignatureBlock = 2000;
// Blocks are read several at a time; each still gets its own checksum.
constexpr int BlocksPerRead = 32;

// qChecksum's CRC-16 (ISO 3309: reflected polynomial 0x8408, initial and final
// value 0xffff) computed eight bytes at a time; qChecksum itself goes by nibbles.
using CrcTables = std::array<std::array<quint16, 256>, 8>;

CrcTables makeCrcTables()
{
    CrcTables tables{};
    for (int i = 0; i < 256; ++i) {
        quint16 crc = quint16(i);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1) ? quint16((crc >> 1) ^ 0x8408) : quint16(crc >> 1);
        tables[0][i] = crc;
    }
    for (int k = 1; k < 8; ++k) {
        for (int i = 0; i < 256; ++i) {
            const quint16 previous = tables[k - 1][i];
            tables[k][i] = quint16((previous >> 8) ^ tables[0][previous & 0xff]);
        }
    }
    return tables;
}

quint16 crc16(const char *data, size_t length)
{
    static const CrcTables t = makeCrcTables();
    const auto *p = reinterpret_cast<const unsigned char *>(data);
    quint32 crc = 0xffff;
#if Q_BYTE_ORDER == Q_LITTLE_ENDIAN
    while (length >= 8) {
        quint64 word;
        std::memcpy(&word, p, 8);
        word ^= crc;
        crc = t[7][word & 0xff] ^ t[6][(word >> 8) & 0xff] ^ t[5][(word >> 16) & 0xff]
            ^ t[4][(word >> 24) & 0xff] ^ t[3][(word >> 32) & 0xff] ^ t[2][(word >> 40) & 0xff]
            ^ t[1][(word >> 48) & 0xff] ^ t[0][word >> 56];
        p += 8;
        length -= 8;
    }
#endif
    while (length--)
        crc = (crc >> 8) ^ t[0][(crc ^ *p++) & 0xff];
    return quint16(~crc & 0xffff);
}

QStringList namesMissingFrom(const FileList &list, const QSet<QString> &other)
{
    QStringList missing;
    for (const auto &entry : list) {
        if (!other.contains(entry.first))
            missing << entry.first;
    }
    return missing;
}

} // namespace

FileList FolderComparison::listFiles(const QString &folder, int criteria)
{
    FileList files;
    // The default listing: no hidden entries, sorted by name ignoring case.
    const QFileInfoList entries = QDir(folder).entryInfoList();
    files.reserve(entries.size());
    for (const QFileInfo &entry : entries) {
        if (entry.isDir())
            continue;
        qint64 value = 0;
        if (criteria == COMPARE_BY_SIZE)
            value = entry.size();
        else if (criteria == COMPARE_BY_CONTENT)
            value = contentSignature(entry.absolutePath() + QLatin1Char('/') + entry.fileName());
        files.append(qMakePair(entry.fileName(), value));
    }
    return files;
}

QPair<FileList, FileList> FolderComparison::listFolders(const QString &first,
                                                        const QString &second, int criteria)
{
    QPair<FileList, FileList> lists;
    if (criteria != COMPARE_BY_CONTENT) {
        lists.first = listFiles(first, criteria);
        lists.second = listFiles(second, criteria);
        return lists;
    }
    // Reading every file is the slow part: the two sides are read side by side.
    std::thread other([&lists, &second, criteria] { lists.second = listFiles(second, criteria); });
    lists.first = listFiles(first, criteria);
    other.join();
    return lists;
}

quint16 FolderComparison::contentSignature(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return 0;
    QByteArray buffer(SignatureBlock * BlocksPerRead, Qt::Uninitialized);
    quint16 sum = 0;
    qint64 pending = 0; // bytes of a block cut short by a read
    for (;;) {
        const qint64 read = file.read(buffer.data() + pending, buffer.size() - pending);
        if (read <= 0) {
            if (pending > 0)
                sum = quint16(sum + crc16(buffer.constData(), size_t(pending)));
            break;
        }
        const qint64 available = pending + read;
        qint64 offset = 0;
        for (; offset + SignatureBlock <= available; offset += SignatureBlock)
            sum = quint16(sum + crc16(buffer.constData() + offset, SignatureBlock));
        pending = available - offset;
        if (pending > 0 && offset > 0)
            std::memmove(buffer.data(), buffer.constData() + offset, size_t(pending));
    }
    return sum;
}

FolderDifferences FolderComparison::compare(const FileList &first, const FileList &second)
{
    // Every value of each name of the second list, in its order, so that a name
    // given twice yields what the all-pairs comparison yields.
    QHash<QString, QVector<qint64>> secondValues;
    secondValues.reserve(second.size());
    QSet<QString> secondNames;
    secondNames.reserve(second.size());
    for (const auto &entry : second) {
        secondValues[entry.first].append(entry.second);
        secondNames.insert(entry.first);
    }
    QSet<QString> firstNames;
    firstNames.reserve(first.size());

    FolderDifferences result;
    for (const auto &entry : first) {
        firstNames.insert(entry.first);
        const auto it = secondValues.constFind(entry.first);
        if (it == secondValues.constEnd())
            continue;
        for (qint64 value : it.value()) {
            if (value != entry.second)
                result.different << entry.first;
        }
    }
    result.onlyInFirst = namesMissingFrom(first, secondNames);
    result.onlyInSecond = namesMissingFrom(second, firstNames);
    return result;
}
