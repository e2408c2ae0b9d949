// Reads engine output the way the log does: 64 KB chunks appended and scanned
// for errors. Compares with `cat` of the same bytes and with the plain
// approach of rescanning the whole buffer after every chunk.
//
// Usage: bench_conversionoutput [megabytes=100]
#include "conversionoutput.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryFile>

#include <cstdio>

namespace {

const int ChunkSize = 64 * 1024;

QByteArray engineOutput(qint64 bytes)
{
    QByteArray out;
    out.reserve(int(bytes) + 256);
    for (qint64 line = 1; out.size() < bytes; ++line) {
        if (line % 20 == 1)
            out += "Converting script (\"/data/in/script" + QByteArray::number(line / 20)
                   + ".sql\") to PostgreSQL\n";
        else if (line % 50 == 0)
            out += "line " + QByteArray::number(line % 1000) + " - unexpected token 'GO'\n";
        else
            out += "  statement " + QByteArray::number(line) + " converted without remarks\n";
    }
    out.truncate(int(bytes));
    return out;
}

struct Result
{
    double seconds;
    int errors;
};

Result incremental(const QByteArray &data)
{
    QElapsedTimer clock;
    clock.start();
    ConversionOutput output;
    int changes = 0;
    for (int at = 0; at < data.size(); at += ChunkSize) {
        output.appendOutput(data.mid(at, ChunkSize));
        if (output.scan())
            ++changes;
    }
    Q_UNUSED(changes)
    return {clock.nsecsElapsed() / 1e9, output.errors().size()};
}

Result rescanEveryChunk(const QByteArray &data)
{
    QElapsedTimer clock;
    clock.start();
    QByteArray buffer;
    QVector<ConversionError> stored;
    for (int at = 0; at < data.size(); at += ChunkSize) {
        buffer += data.mid(at, ChunkSize);
        const auto result = ConversionOutput::referenceScan(QString::fromUtf8(buffer), stored.size());
        if (result.updated)
            stored = result.errors;
    }
    return {clock.nsecsElapsed() / 1e9, stored.size()};
}

double catSeconds(const QByteArray &data)
{
    QTemporaryFile file;
    if (!file.open())
        return -1;
    file.write(data);
    file.flush();
    QElapsedTimer clock;
    clock.start();
    QProcess cat;
    cat.setStandardOutputFile(QProcess::nullDevice());
    cat.start(QStringLiteral("cat"), {file.fileName()});
    cat.waitForFinished(-1);
    return clock.nsecsElapsed() / 1e9;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const int megabytes = argc > 1 ? QByteArray(argv[1]).toInt() : 100;
    const qint64 big = qint64(megabytes) * 1000 * 1000;
    const qint64 small = big / 10;

    const QByteArray bigData = engineOutput(big);
    const QByteArray smallData = bigData.left(int(small));

    const Result smallRun = incremental(smallData);
    const Result bigRun = incremental(bigData);
    const double cat = catSeconds(bigData);
    std::printf("incremental scan %4d MB: %7.3f s  %8.1f MB/s  (%d errors reported)\n",
                megabytes / 10, smallRun.seconds, small / 1e6 / smallRun.seconds, smallRun.errors);
    std::printf("incremental scan %4d MB: %7.3f s  %8.1f MB/s  (%d errors reported)\n", megabytes,
                bigRun.seconds, big / 1e6 / bigRun.seconds, bigRun.errors);
    std::printf("linearity: %d MB time / %d MB time = %.2f (goal <= 12)\n", megabytes,
                megabytes / 10, bigRun.seconds / smallRun.seconds);
    std::printf("cat %d MB > /dev/null: %7.3f s  %8.1f MB/s; scan/cat time ratio %.1f\n",
                megabytes, cat, big / 1e6 / cat, bigRun.seconds / cat);

    // The plain rescan grows with the square of the size: measured on small
    // sizes and projected.
    const int rescanSizes[] = {1, 2, 4};
    double lastSeconds = 0;
    qint64 lastBytes = 0;
    for (int mb : rescanSizes) {
        const QByteArray part = bigData.left(mb * 1000 * 1000);
        const Result plain = rescanEveryChunk(part);
        const Result fast = incremental(part);
        if (plain.errors != fast.errors)
            std::printf("MISMATCH at %d MB: %d vs %d errors\n", mb, plain.errors, fast.errors);
        std::printf("whole-buffer rescan %d MB: %7.3f s (incremental %.4f s, %.0fx faster)\n", mb,
                    plain.seconds, fast.seconds, plain.seconds / fast.seconds);
        lastSeconds = plain.seconds;
        lastBytes = part.size();
    }
    // A candidate line that does not end: a script name or an error token of
    // 32 MB arriving in chunks must be read once, not once per chunk.
    for (const QByteArray &head : {QByteArray("Converting script (\"/data/"),
                                   QByteArray("line 12 - unexpected token 'x")}) {
        QByteArray open = head;
        open += QByteArray(32 * 1000 * 1000, 'a');
        const Result scan = incremental(open);
        const double catOpen = catSeconds(open);
        std::printf("open line \"%s...\" 32 MB: %7.3f s; cat %.3f s; ratio %.1f\n",
                    head.left(12).constData(), scan.seconds, catOpen, scan.seconds / catOpen);
    }

    const double projected = lastSeconds * double(big) * double(big) / (double(lastBytes) * lastBytes);
    std::printf("whole-buffer rescan projected for %d MB: about %.0f s (%.0fx the incremental scan)\n",
                megabytes, projected, projected / bigRun.seconds);
    return 0;
}
