#include "filecomparator.h"
#include "testsupport.h"

#include <QLoggingCategory>
#include <QRandomGenerator>
#include <QRegExp>
#include <QScopeGuard>

namespace {

// The comparison as a plain int table, to hold the bit rows to.
struct Reference
{
    QVector<int> left;
    QVector<int> right;
    std::vector<int> common;
    std::vector<int> commonRight;
};

Reference referenceCompare(const QVector<quint16> &l, const QVector<quint16> &r)
{
    const int nL = l.size();
    const int nR = r.size();
    std::vector<std::vector<int>> t(nL + 1, std::vector<int>(nR + 1, 0));
    for (int i = nL - 1; i >= 0; --i)
        for (int j = nR - 1; j >= 0; --j)
            t[i][j] = l[i] == r[j] ? t[i + 1][j + 1] + 1 : std::max(t[i + 1][j], t[i][j + 1]);
    std::vector<bool> pairedLeft(nL), pairedRight(nR);
    Reference ref;
    for (int i = 0, j = 0; i < nL && j < nR && t[i][j] != 0;) {
        if (l[i] == r[j]) {
            ref.common.push_back(i);
            ref.commonRight.push_back(j);
            pairedLeft[i++] = pairedRight[j++] = true;
        } else if (t[i][j] == t[i + 1][j]) {
            ++i;
        } else {
            ++j;
        }
    }
    for (int i = 0; i < nL; ++i)
        if (!pairedLeft[i])
            ref.left.append(i);
    for (int j = 0; j < nR; ++j)
        if (!pairedRight[j])
            ref.right.append(j);
    return ref;
}

quint16 regExpSignature(const QString &text)
{
    quint16 sum = 0;
    const QStringList pieces = text.split(QRegExp(QStringLiteral("\\b")), Qt::KeepEmptyParts);
    for (const QString &piece : pieces) {
        if (piece.trimmed().isEmpty())
            continue;
        const QByteArray bytes = piece.toUtf8();
        sum = static_cast<quint16>(sum + qChecksum(bytes.constData(), uint(bytes.size())));
    }
    return sum;
}

void fill(FileComparator &c, const QStringList &left, const QStringList &right,
          FileComparator::Options options = FileComparator::IgnoreWhitespace)
{
    c.setOptions(options);
    for (int i = 0; i < left.size(); ++i)
        c.addLine(left.at(i), i, LeftPart);
    for (int j = 0; j < right.size(); ++j)
        c.addLine(right.at(j), j, RightPart);
}

QVector<int> diffs(const FileComparator &c, Part part)
{
    QVector<int> out;
    for (int k = 0; k < c.getDiffCount(part); ++k)
        out.append(c.getDiff(part, k));
    return out;
}

} // namespace

class TestFileComparator : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    // What counts as the same line; the pairing itself is held to a plain table below.
    void lines_data()
    {
        QTest::addColumn<QStringList>("left");
        QTest::addColumn<QStringList>("right");
        QTest::addColumn<QVector<int>>("differing"); // on both sides
        QTest::addColumn<int>("options");
        using L = QStringList;
        using V = QVector<int>;
        const int W = FileComparator::IgnoreWhitespace;
        const int I = FileComparator::IgnoreCase;
        QTest::newRow("spacing between words") << L{"a  b"} << L{"a b"} << V() << W;
        QTest::newRow("indentation") << L{"  a"} << L{"a"} << V() << W;
        QTest::newRow("space after comma counts") << L{"a,b"} << L{"a, b"} << V{0} << W;
        QTest::newRow("case counts") << L{"Abc"} << L{"abc"} << V{0} << W;
        QTest::newRow("reordered words are equal") << L{"a b"} << L{"b a"} << V() << W;
        QTest::newRow("blank equals empty") << L{"   \t"} << L{""} << V() << W;
        // Lines that Latin-1 would turn into question marks alike.
        QTest::newRow("Cyrillic comments differ")
            << L{"-- Клиенты", "select 1;"} << L{"-- Продажа", "select 1;"} << V{0} << W;
        QTest::newRow("CJK identifiers differ")
            << L{"select 顧客 from t;"} << L{"select 販売 from t;"} << V{0} << W;
        QTest::newRow("indentation counts without ignoring white space")
            << L{"  a", "b c"} << L{"a", "b  c"} << V{0, 1} << 0;
        QTest::newRow("ignore case")
            << L{"SELECT Id FROM T;"} << L{"select id from t;"} << V() << (W | I);
        QTest::newRow("ignore case, non-ASCII")
            << L{"-- ÉTAT Клиенты"} << L{"-- état клиенты"} << V() << I;
    }

    void lines()
    {
        QFETCH(QStringList, left);
        QFETCH(QStringList, right);
        QFETCH(QVector<int>, differing);
        QFETCH(int, options);
        FileComparator c;
        fill(c, left, right, FileComparator::Options(options));
        QVERIFY(c.compare());
        QCOMPARE(diffs(c, LeftPart), differing);
        QCOMPARE(diffs(c, RightPart), differing);
    }

    void signatureMatchesWordBoundarySplit_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("sql") << QStringLiteral("SELECT a, b FROM t WHERE x = 'y';");
        QTest::newRow("punctuation only") << QStringLiteral(" ;; -- ");
        QTest::newRow("underscores and digits") << QStringLiteral("my_col1 +2.5e3");
        QTest::newRow("non-Latin-1") << QString::fromUtf8("select 'Привет' — 日本 ok");
        QTest::newRow("combining mark") << QString::fromUtf8("cafe\u0301 x");
        QTest::newRow("surrogate pair") << QString::fromUtf8("a\U0001F600b c");
    }

    void signatureMatchesWordBoundarySplit()
    {
        QFETCH(QString, text);
        QCOMPARE(FileComparator::signature(text), regExpSignature(text));
    }

    // Indexes and parts out of range answer -1; a line given a bad part is dropped.
    void outOfRange()
    {
        FileComparator c;
        QCOMPARE(c.getDiff(LeftPart, 0), -1); // empty list
        // The debug traces are part of the contract; their category is off by default.
        QLoggingCategory::setFilterRules(QStringLiteral("navarch.comparator.debug=true"));
        QTest::ignoreMessage(QtDebugMsg, "AddLine error part");
        c.addLine(QStringLiteral("x"), 0, static_cast<Part>(2));
        QTest::ignoreMessage(QtDebugMsg, "GetDiff error part");
        QCOMPARE(c.getDiffCount(static_cast<Part>(2)), -1);
        QTest::ignoreMessage(QtDebugMsg, "GetDiff error part");
        QCOMPARE(c.getDiff(static_cast<Part>(-1), 0), -1);
        QLoggingCategory::setFilterRules(QString());
        c.addLine(QStringLiteral("a"), 5, LeftPart);
        c.addLine(QStringLiteral("b"), 7, LeftPart);
        QVERIFY(c.compare());
        QCOMPARE(diffs(c, LeftPart), QVector<int>({5, 7}));
        QCOMPARE(c.getDiff(LeftPart, -1), -1);
        QCOMPARE(c.getDiff(LeftPart, 2), -1);
        QCOMPARE(c.getDiff(RightPart, 0), -1);
    }

    void bitRowsMatchPlainTable_data()
    {
        QTest::addColumn<int>("maxLines");
        QTest::addColumn<int>("alphabet");
        QTest::addColumn<int>("rounds");
        QTest::addColumn<int>("interval"); // rows between kept rows; 0 chooses by size
        QTest::newRow("short, few symbols") << 12 << 3 << 400 << 0;
        QTest::newRow("word-sized, few symbols") << 70 << 4 << 200 << 0;
        QTest::newRow("several words, many symbols") << 200 << 30 << 60 << 0;
        QTest::newRow("several words, two symbols") << 150 << 2 << 60 << 0;
        QTest::newRow("every row kept") << 40 << 3 << 150 << 1;
        QTest::newRow("blocks of two") << 40 << 3 << 150 << 2;
        QTest::newRow("blocks of seven") << 130 << 5 << 80 << 7;
        QTest::newRow("one block") << 30 << 3 << 150 << 1000;
    }

    void bitRowsMatchPlainTable()
    {
        QFETCH(int, maxLines);
        QFETCH(int, alphabet);
        QFETCH(int, rounds);
        QFETCH(int, interval);
        FileComparator::setCheckpointInterval(interval);
        const auto restore = qScopeGuard([] { FileComparator::setCheckpointInterval(0); });
        QRandomGenerator rng(20240501u + static_cast<quint32>(maxLines * 31 + alphabet));
        const auto word = [&] { return QStringLiteral("w%1").arg(rng.bounded(alphabet)); };
        const auto signatures = [](const QStringList &lines) {
            QVector<quint16> out;
            for (const QString &line : lines)
                out << FileComparator::signature(line);
            return out;
        };
        for (int round = 0; round < rounds; ++round) {
            QStringList left;
            for (int i = rng.bounded(maxLines + 1); i > 0; --i)
                left << word();
            // Often a variant of the left side, so prefixes and long pairings occur.
            QStringList right;
            if (rng.bounded(2) == 0) {
                right = left;
                for (int edits = rng.bounded(5); edits > 0; --edits) {
                    const int at = right.isEmpty() ? 0 : rng.bounded(right.size());
                    if (rng.bounded(2) && !right.isEmpty())
                        right.removeAt(at);
                    else
                        right.insert(at, word());
                }
            } else {
                for (int j = rng.bounded(maxLines + 1); j > 0; --j)
                    right << word();
            }
            FileComparator c;
            fill(c, left, right);
            QVERIFY(c.compare());
            const Reference ref = referenceCompare(signatures(left), signatures(right));
            std::vector<int> common;
            c.getCommonLines(common);
            std::vector<int> commonRight;
            c.getCommonLines(commonRight, RightPart);
            const QByteArray what =
                left.join(QLatin1Char(' ')).toUtf8() + " | " + right.join(QLatin1Char(' ')).toUtf8();
            QVERIFY2(diffs(c, LeftPart) == ref.left, what.constData());
            QVERIFY2(diffs(c, RightPart) == ref.right, what.constData());
            QVERIFY2(common == ref.common, what.constData());
            QVERIFY2(commonRight == ref.commonRight, what.constData());
        }
    }

    void tooLargeIsRefused()
    {
        FileComparator::setMemoryLimit(256);
        FileComparator c;
        for (int i = 0; i < 200; ++i) {
            c.addLine(QStringLiteral("l%1").arg(i), i, LeftPart);
            c.addLine(QStringLiteral("r%1").arg(i), i, RightPart);
        }
        QVERIFY(!c.compare());
        QVERIFY(c.errorString().contains(QLatin1String("too large")));
        QCOMPARE(c.getDiffCount(LeftPart), 0);
        FileComparator::setMemoryLimit(0);
        QVERIFY(c.compare());
        QCOMPARE(c.getDiffCount(LeftPart), 200);
    }
};

QTEST_GUILESS_MAIN(TestFileComparator)
#include "tst_filecomparator.moc"
