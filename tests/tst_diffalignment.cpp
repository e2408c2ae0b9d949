#include "diffalignment.h"
#include "filecomparator.h"

#include <QtTest>

namespace {

// The rows of a comparison, or none when the comparator refuses the files.
QVector<DiffRow> alignedRows(const QStringList &left, const QStringList &right, bool hunksOnly)
{
    FileComparator c;
    for (int i = 0; i < left.size(); ++i)
        c.addLine(left.at(i), i, LeftPart);
    for (int j = 0; j < right.size(); ++j)
        c.addLine(right.at(j), j, RightPart);
    std::vector<int> l, r;
    c.compare();
    c.getCommonLines(l, LeftPart);
    c.getCommonLines(r, RightPart);
    return DiffAlignment::rows(DiffAlignment::hunks(l, r, left.size(), right.size()), left.size(),
                               right.size(), hunksOnly);
}

// Rows as text: "l:r" for a common pair, "l|r" for a hunk row, "-" where a side has no line.
QString rowsText(const QVector<DiffRow> &rows)
{
    QStringList out;
    const auto side = [](int line) { return line < 0 ? QStringLiteral("-") : QString::number(line); };
    for (const DiffRow &row : rows)
        out << side(row.left) + (row.changed ? "|" : ":") + side(row.right);
    return out.join(' ');
}

QString fillersText(const QVector<DiffFiller> &fillers)
{
    QStringList out;
    for (const DiffFiller &f : fillers)
        out << QStringLiteral("%1+%2").arg(f.line).arg(f.count);
    return out.join(' ');
}

QString rangesText(const QString &text, const QVector<DiffRange> &ranges)
{
    QStringList out;
    for (const DiffRange &r : ranges)
        out << text.mid(r.start, r.length);
    return out.join('|');
}

} // namespace

class TestDiffAlignment : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void rows_data()
    {
        QTest::addColumn<QStringList>("left");
        QTest::addColumn<QStringList>("right");
        QTest::addColumn<QString>("rows");
        QTest::addColumn<QString>("hunksOnly");
        QTest::addColumn<QString>("leftFillers");
        QTest::addColumn<QString>("rightFillers");
        using L = QStringList;
        QTest::newRow("identical") << L{"a", "b"} << L{"a", "b"} << "0:0 1:1" << "0:0" << "" << "";
        QTest::newRow("insertion at the start")
            << L{"a", "b"} << L{"x", "y", "a", "b"} << "-|0 -|1 0:2 1:3" << "-|0 -|1 0:2"
            << "-1+2" << "";
        QTest::newRow("insertion in the middle")
            << L{"a", "b", "c", "d"} << L{"a", "b", "X", "c", "d"} << "0:0 1:1 -|2 2:3 3:4"
            << "0:0 -|2" << "1+1" << "";
        QTest::newRow("deletion at the end")
            << L{"a", "b", "c"} << L{"a"} << "0:0 1|- 2|-" << "0:0 1|- 2|-" << "" << "0+2";
        QTest::newRow("change at the start, longer on the left")
            << L{"x1", "x2", "x3", "b"} << L{"y1", "b"} << "0|0 1|- 2|- 3:1" << "0|0 1|- 2|-"
            << "" << "0+2";
        QTest::newRow("change in the middle, longer on the right")
            << L{"a", "x", "c"} << L{"a", "y1", "y2", "c"} << "0:0 1|1 -|2 2:3" << "0:0 1|1 -|2"
            << "1+1" << "";
        QTest::newRow("left empty") << L{} << L{"a", "b"} << "-|0 -|1" << "-|0 -|1" << "-1+2" << "";
        QTest::newRow("two hunks") << L{"a", "x", "b", "c", "y"} << L{"a", "b", "c", "z1", "z2"}
                                   << "0:0 1|- 2:1 3:2 4|3 -|4" << "0:0 1|- 4|3 -|4" << "4+1"
                                   << "0+1";
    }

    void rows()
    {
        QFETCH(QStringList, left);
        QFETCH(QStringList, right);
        const QVector<DiffRow> rows = alignedRows(left, right, false);
        QTEST(rowsText(rows), "rows");
        QTEST(rowsText(alignedRows(left, right, true)), "hunksOnly");
        QTEST(fillersText(DiffAlignment::fillers(rows, LeftPart)), "leftFillers");
        QTEST(fillersText(DiffAlignment::fillers(rows, RightPart)), "rightFillers");
    }

    void changedRanges_data()
    {
        QTest::addColumn<QString>("left");
        QTest::addColumn<QString>("right");
        QTest::addColumn<int>("options");
        QTest::addColumn<QString>("leftChanged");
        QTest::addColumn<QString>("rightChanged");
        const int W = FileComparator::IgnoreWhitespace;
        const int I = FileComparator::IgnoreCase;
        QTest::newRow("function renamed")
            << "SELECT NVL(a, 0) FROM t;" << "SELECT COALESCE(a, 0) FROM t;" << W << "NVL"
            << "COALESCE";
        QTest::newRow("keyword added")
            << "select top 10 * from t" << "select * from t limit 10" << W << "top|10"
            << "limit|10";
        QTest::newRow("type and its length")
            << "id NUMBER(10)," << "id INTEGER," << W << "NUMBER(10)" << "INTEGER";
        QTest::newRow("Cyrillic word") << "-- Клиенты и заказы" << "-- Продажа и заказы" << W
                                       << "Клиенты" << "Продажа";
        QTest::newRow("blanks ignored") << "a  =  1" << "a = 1" << W << "" << "";
        QTest::newRow("blanks counted") << "a  = 1" << "a = 1" << 0 << "  " << " ";
        QTest::newRow("case ignored") << "Select X" << "select x" << (W | I) << "" << "";
        QTest::newRow("case counted") << "Select X" << "select x" << W << "Select|X"
                                      << "select|x";
        QTest::newRow("empty side") << "" << "go" << W << "" << "go";
        QTest::newRow("very long line") << QString("a ").repeated(1200) << QString("a ").repeated(3)
                                        << W << QString("a ").repeated(1200) << "a a a ";
    }

    void changedRanges()
    {
        QFETCH(QString, left);
        QFETCH(QString, right);
        QFETCH(int, options);
        QVector<DiffRange> l, r;
        DiffAlignment::changedRanges(left, right, FileComparator::Options(options), l, r);
        QTEST(rangesText(left, l), "leftChanged");
        QTEST(rangesText(right, r), "rightChanged");
    }
};

QTEST_GUILESS_MAIN(TestDiffAlignment)
#include "tst_diffalignment.moc"
