// Line comparison speed and memory against GNU diff --minimal, measured in the
// same run: each side runs in a child process so that its peak memory is its own.
#include "filecomparator.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QHash>
#include <QLoggingCategory>
#include <QSet>
#include <QRandomGenerator>
#include <QStringList>
#include <QTemporaryDir>

#include <cstdio>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

struct Measure
{
    double seconds = 0;
    long peakKb = 0;
    long common = -1;
};

// Up to a few ten thousand lines, every line gets a signature of its own, so that
// signature equality and line equality agree and the common lines can be held to
// diff's; beyond that 16 bits cannot keep lines apart.
QStringList makeLines(int count, quint32 seed, QSet<quint16> &used)
{
    QRandomGenerator rng(seed);
    const bool unique = count <= 40000;
    QStringList lines;
    lines.reserve(count);
    for (int i = 0; lines.size() < count; ++i) {
        const QString line = QStringLiteral("insert into orders_%1 values (%2, 'k%3');")
                                 .arg(i % 97)
                                 .arg(i)
                                 .arg(rng.generate() % 1000000);
        const quint16 sig = FileComparator::signature(line);
        if (unique && used.contains(sig))
            continue;
        used.insert(sig);
        lines << line;
    }
    return lines;
}

// About 5 % of the lines changed, removed or added, spread over the file.
QStringList variant(const QStringList &lines, quint32 seed, QSet<quint16> &used)
{
    QRandomGenerator rng(seed);
    const bool unique = lines.size() <= 40000;
    const auto fresh = [&](const QString &prefix) {
        for (;;) {
            const QString line = QStringLiteral("%1 %2;").arg(prefix).arg(rng.generate());
            const quint16 sig = FileComparator::signature(line);
            if (!unique || !used.contains(sig)) {
                used.insert(sig);
                return line;
            }
        }
    };
    QStringList out;
    out.reserve(lines.size());
    for (int i = 0; i < lines.size(); ++i) {
        const int r = rng.bounded(100);
        if (r < 2)
            out << fresh(QStringLiteral("update changed set x ="));
        else if (r < 3)
            continue;
        else if (r < 5)
            out << lines.at(i) << fresh(QStringLiteral("-- added"));
        else
            out << lines.at(i);
    }
    return out;
}

void write(const QString &path, const QStringList &lines)
{
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write(lines.join(QLatin1Char('\n')).toUtf8() + '\n');
}

// interval 1 keeps every row of the table, as the comparison did before it kept
// only every k-th one: the reference for time and memory.
Measure ourComparison(const QStringList &left, const QStringList &right, int interval = 0)
{
    int pipeFd[2];
    if (pipe(pipeFd) != 0)
        return {};
    QElapsedTimer timer;
    timer.start();
    const pid_t pid = fork();
    if (pid == 0) {
        close(pipeFd[0]);
        FileComparator::setCheckpointInterval(interval);
        FileComparator comparator;
        for (int i = 0; i < left.size(); ++i)
            comparator.addLine(left.at(i), i, LeftPart);
        for (int j = 0; j < right.size(); ++j)
            comparator.addLine(right.at(j), j, RightPart);
        long common = -1;
        if (comparator.compare())
            common = left.size() - comparator.getDiffCount(LeftPart);
        else
            fprintf(stderr, "%s\n", qPrintable(comparator.errorString()));
        const ssize_t written = ::write(pipeFd[1], &common, sizeof common);
        _exit(written == sizeof common ? 0 : 1);
    }
    close(pipeFd[1]);
    Measure m;
    if (read(pipeFd[0], &m.common, sizeof m.common) != sizeof m.common)
        m.common = -1;
    close(pipeFd[0]);
    int status = 0;
    rusage usage{};
    wait4(pid, &status, 0, &usage);
    m.seconds = timer.nsecsElapsed() / 1e9;
    m.peakKb = usage.ru_maxrss;
    return m;
}

Measure gnuDiff(const QString &a, const QString &b, int leftCount)
{
    QElapsedTimer timer;
    timer.start();
    const QString out = a + QStringLiteral(".diff");
    const pid_t pid = fork();
    if (pid == 0) {
        FILE *f = freopen(qPrintable(out), "w", stdout);
        (void)f;
        execlp("diff", "diff", "--minimal", qPrintable(a), qPrintable(b), nullptr);
        _exit(127);
    }
    int status = 0;
    rusage usage{};
    wait4(pid, &status, 0, &usage);
    Measure m;
    m.seconds = timer.nsecsElapsed() / 1e9;
    m.peakKb = usage.ru_maxrss;
    QFile result(out);
    if (result.open(QIODevice::ReadOnly)) {
        long removed = 0;
        for (const QByteArray &line : result.readAll().split('\n'))
            removed += line.startsWith("< ");
        m.common = leftCount - removed;
    }
    return m;
}

bool signaturesAgreeWithLines(const QStringList &a, const QStringList &b)
{
    QHash<quint16, QString> seen;
    for (const QStringList *list : {&a, &b}) {
        for (const QString &line : *list) {
            const quint16 sig = FileComparator::signature(line);
            const auto it = seen.constFind(sig);
            if (it == seen.constEnd())
                seen.insert(sig, line);
            else if (*it != line)
                return false;
        }
    }
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("navarch.comparator.debug=false"));
    QTemporaryDir dir;
    QList<int> sizes{20000, 100000};
    if (argc > 1) {
        sizes.clear();
        for (int i = 1; i < argc; ++i)
            sizes << QByteArray(argv[i]).toInt();
    }
    printf("%-8s %-10s %10s %12s %10s\n", "lines", "who", "seconds", "peak MB", "common");
    fflush(stdout); // the children must not inherit unwritten output
    for (int n : sizes) {
        QSet<quint16> used;
        const QStringList left = makeLines(n, 7u + n, used);
        const QStringList right = variant(left, 11u + n, used);
        const QString a = dir.filePath(QStringLiteral("left%1.sql").arg(n));
        const QString b = dir.filePath(QStringLiteral("right%1.sql").arg(n));
        write(a, left);
        write(b, right);
        const Measure ours = ourComparison(left, right);
        const Measure gnu = gnuDiff(a, b, left.size());
        // Every row kept needs nL * nR / 8 bytes: measured only where that fits.
        FileComparator::setCheckpointInterval(1);
        const quint64 fullTable = FileComparator::tableBytes(left.size(), right.size());
        FileComparator::setCheckpointInterval(0);
        const bool fullFits = fullTable < (quint64(4) << 30);
        const Measure full = fullFits ? ourComparison(left, right, 1) : Measure();
        printf("%-8d %-10s %10.3f %12.1f %10ld\n", n, "navarch", ours.seconds,
               ours.peakKb / 1024.0, ours.common);
        if (fullFits)
            printf("%-8d %-10s %10.3f %12.1f %10ld\n", n, "all rows", full.seconds,
                   full.peakKb / 1024.0, full.common);
        printf("%-8d %-10s %10.3f %12.1f %10ld\n", n, "diff", gnu.seconds, gnu.peakKb / 1024.0,
               gnu.common);
        printf("%-8d ratio      time x%.2f, memory x%.2f of diff; table %.1f MB "
               "(all rows %.1f MB)\n",
               n, ours.seconds / qMax(gnu.seconds, 1e-6),
               double(ours.peakKb) / qMax(gnu.peakKb, 1L),
               FileComparator::tableBytes(left.size(), right.size()) / 1048576.0,
               fullTable / 1048576.0);
        if (fullFits)
            printf("%-8d against all rows kept: time x%.2f (goal < 3), memory x%.2f, "
                   "same common lines: %s\n",
                   n, ours.seconds / qMax(full.seconds, 1e-6),
                   double(ours.peakKb) / qMax(full.peakKb, 1L),
                   ours.common == full.common ? "yes" : "NO");
        printf("%-8d peak memory %.1f MB (goal < 100 MB at 100 000 lines)\n", n,
               ours.peakKb / 1024.0);
        if (signaturesAgreeWithLines(left, right))
            printf("%-8d common lines %s diff --minimal\n", n,
                   ours.common == gnu.common ? "equal to" : "DIFFER from");
        else
            printf("%-8d signatures collide on these files: common lines not checked\n", n);
        fflush(stdout);
    }
    return 0;
}
