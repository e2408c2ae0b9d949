#include "foldercomparison.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QSet>

#include <cstring>

namespace {

constexpr int SignatureBlock = 2000;
// Blocks are read several at a time; each still gets its own checksum.
constexpr int BlocksPerRead = 32;

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
                sum = quint16(sum + qChecksum(buffer.constData(), uint(pending)));
            break;
        }
        const qint64 available = pending + read;
        qint64 offset = 0;
        for (; offset + SignatureBlock <= available; offset += SignatureBlock)
            sum = quint16(sum + qChecksum(buffer.constData() + offset, SignatureBlock));
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
