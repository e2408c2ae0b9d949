#include "conversionoutput.h"

#include <QRandomGenerator>
#include <QtTest>

namespace QTest {
template<>
char *toString(const ConversionError &error)
{
    return qstrdup(qPrintable(QStringLiteral("%1:%2 %3").arg(error.file).arg(error.line).arg(error.message)));
}
} // namespace QTest

class TestConversionOutput : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void progressRewrite_data()
    {
        QTest::addColumn<QList<QByteArray>>("chunks");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("progress replaces progress")
            << QList<QByteArray>{"Converting a\n", "\n\rCompleted 1", "\n\rCompleted 2"}
            << QByteArray("Converting a\n\rCompleted 2");
        QTest::newRow("line after progress stays")
            << QList<QByteArray>{"x\n", "\n\rCompleted 1", "\nline 2\n", "\n\rCompleted 2"}
            << QByteArray("x\n\rCompleted 1\nline 2\n\rCompleted 2");
        QTest::newRow("carriage return without C is kept")
            << QList<QByteArray>{"a\n", "b\rx\n"} << QByteArray("a\nb\rx\n");
        QTest::newRow("no line feed yet: whole buffer is the last line")
            << QList<QByteArray>{"abc", "\rCompleted"} << QByteArray("\rCompleted");
    }

    void progressRewrite()
    {
        QFETCH(QList<QByteArray>, chunks);
        ConversionOutput output;
        for (const QByteArray &chunk : chunks) {
            output.appendOutput(chunk);
            output.scan();
        }
        QTEST(output.buffer(), "expected");
    }

    void errorsAndTiming_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("file");
        QTest::addColumn<int>("line");
        QTest::addColumn<QString>("message");
        QTest::newRow("quoted script, quoted token")
            << QByteArray("Converting script (\"/a b/c.sql\") to X\nline 12 - unexpected token 'FROM'\n")
            << "/a b/c.sql" << 12 << "Unexpected token 'FROM'";
        QTest::newRow("unquoted script, token ended by line feed")
            << QByteArray("Converting script (/d/e.sql) to X\nline 3 - unexpected token SELECT\n")
            << "/d/e.sql" << 3 << "Unexpected token 'SELECT'";
        QTest::newRow("token ended by Failed")
            << QByteArray("Converting script (\"f.sql\") to X\nline 4 - unexpected token 'abcFailed\n")
            << "f.sql" << 4 << "Unexpected token 'abc'";
        QTest::newRow("non-ASCII script name")
            << QByteArray("Converting script (\"/tmp/\xc3\xa9t\xc3\xa9.sql\") to X\nline 1 - unexpected token 'x'\n")
            << QString::fromUtf8("/tmp/\xc3\xa9t\xc3\xa9.sql") << 1 << "Unexpected token 'x'";
        // Names a Windows engine never prints, but files here may have.
        QTest::newRow("quote in a quoted script name")
            << QByteArray("Converting script (\"/src/quote\"d 37.sql\") to X\nline 2 - unexpected token 'S'\n")
            << "/src/quote\"d 37.sql" << 2 << "Unexpected token 'S'";
        QTest::newRow(") to in a quoted script name")
            << QByteArray("Converting script (\"/src/Export (v2) to archive.sql\") to X\n"
                          "line 5 - unexpected token 'GO'\n")
            << "/src/Export (v2) to archive.sql" << 5 << "Unexpected token 'GO'";
    }

    void errorsAndTiming()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, file);
        QFETCH(int, line);
        QFETCH(QString, message);
        ConversionOutput output;
        output.appendOutput(text);
        // Reported only once the next script starts, as more may follow; the
        // summary counts it already.
        QVERIFY(!output.scan());
        QVERIFY(output.errors().isEmpty());
        QCOMPARE(output.scriptsWithErrors(), 1);
        output.appendOutput("plain output\nConverting script (\"next.sql\") to X\n");
        QVERIFY(output.scan());
        QCOMPARE(output.errors().size(), 1);
        QCOMPARE(output.errors().at(0), (ConversionError{file, line, message}));
    }

    void sameAsWholeBufferScan_data()
    {
        QTest::addColumn<quint32>("seed");
        for (quint32 seed = 1; seed <= 40; ++seed)
            QTest::newRow(qPrintable(QStringLiteral("random run %1").arg(seed))) << seed;
    }

    // Engine-like output cut at random places, with progress rewrites, odd quotes
    // and partial lines: the incremental scan must report what a full rescan of
    // the buffer after every chunk reports, at the same chunks.
    void sameAsWholeBufferScan()
    {
        QFETCH(quint32, seed);
        QRandomGenerator random(seed);
        const QList<QByteArray> pieces{
            "Converting script (\"/src/a.sql\") to PostgreSQL\n",
            "Converting script (/src/b c.sql) to Oracle\n",
            "Converting script (\"/src/open\n",
            "name\") to X\n",
            "Converting script (\"/src/quote\"d (v2) to x.sql\") to X\n",
            "line 5 - unexpected token 'GO'\n",
            "line 77 - unexpected token FROM\n",
            "line 9 - unexpected token 'xFailed",
            "line - unexpected token 'bad'\n",
            "line 3 - unexpected",
            " token 'q'\n",
            "\n\rCompleted 10%",
            "\n\rCompleted 20%",
            "plain output\n",
            "\xff\xfe broken utf-8 \r\n",
            "\"",
            ") to ",
        };
        QByteArray stream;
        for (int i = 0; i < 120; ++i)
            stream += pieces.at(random.bounded(pieces.size()));

        ConversionOutput output;
        QVector<ConversionError> stored;
        int at = 0;
        while (at < stream.size()) {
            const int size = 1 + random.bounded(40);
            output.appendOutput(stream.mid(at, size));
            at += size;
            const bool changed = output.scan();
            const auto reference = ConversionOutput::referenceScan(QString::fromUtf8(output.buffer()),
                                                                   stored.size());
            QCOMPARE(changed, reference.updated);
            if (reference.updated)
                stored = reference.errors;
            QCOMPARE(output.errors(), stored);
        }
    }
};

QTEST_GUILESS_MAIN(TestConversionOutput)
#include "tst_conversionoutput.moc"
