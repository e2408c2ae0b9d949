#include "conversion.h"
#include "databaseapilistreader.h"
#include "databaselistreader.h"
#include "testsupport.h"

class TestDirectionTables : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { useTestSettings(); }

    // The lists the option dialogs offer, in the tables' order.
    void readers()
    {
        QStringList databases;
        DatabaseListReader().list(databases);
        QCOMPARE(databases.size(), 37);
        QCOMPARE(databases.first(), QStringLiteral("Access"));
        QCOMPARE(databases.at(1), QStringLiteral("ANSI SQL"));
        QCOMPARE(databases.last(), QStringLiteral("vPostgres"));

        QStringList interfaces;
        DatabaseAPIListReader().list(interfaces);
        QCOMPARE(interfaces.size(), 13);
        QCOMPARE(interfaces.last(), QStringLiteral("Sybase CTLIB"));
    }

    // CR LF, blank lines and lines without a comma; a missing file leaves the list empty.
    void readerOfAFile()
    {
        TestDir dir;
        Reader reader;
        reader.read(dir.createFile("t.csv", "a,Alpha,sql\r\n\r\nplain\r\nb,Beta"));
        QStringList lines{"kept"};
        reader.list(lines);
        QCOMPARE(lines, QStringList({"Alpha", "plain", "Beta"}));
        Reader missing;
        QTest::ignoreMessage(QtCriticalMsg, "\"Can't open file /nonexistent/x.csv\"");
        missing.read(QStringLiteral("/nonexistent/x.csv"));
        missing.list(lines);
        QVERIFY(lines.isEmpty());
    }

    void nameMapAndDirections()
    {
        Conversion conversion(nullptr);
        const QStringList &directions = conversion.directionList();
        QCOMPARE(directions.size(), 73);
        QStringList sorted = directions;
        sorted.sort(Qt::CaseSensitive);
        QCOMPARE(directions, sorted);
        QCOMPARE(directions.last(), QStringLiteral("vPostgres"));
        QVERIFY(!directions.contains(QStringLiteral("Oracle Pro*C")));
        QCOMPARE(directions.count(QStringLiteral("PostgreSQL")), 1);

        const auto &names = conversion.nameMap();
        QCOMPARE(names.value("Sybase CTLIB"), QStringLiteral("\"SYBASE CTLIB\""));
        QCOMPARE(names.value("Sybase Adaptive Server Anywhere"),
                 QStringLiteral("Adaptive Server Anywhere "));
        QCOMPARE(names.value("NonStop SQL/MX"), QStringLiteral("NonStopSQLMX"));
        QCOMPARE(names.value("Progress WSM"), QStringLiteral("ProgressWSM"));
        QCOMPARE(names.value("Vertica Analytic Database"),
                 QStringLiteral("VerticaAnalyti") + QChar(0xFFFD) + QStringLiteral("Database"));
        QCOMPARE(conversion.parameters().value("/D="), QStringLiteral("FIXED"));
    }

    void malformedRowIsLoggedAndSkipped()
    {
        TestDir dir;
        const QString path = dir.createFile("bad.csv", "k1,One,sql\r\nbroken\r\nk2,Two");
        Conversion conversion(nullptr);
        QByteArray pathBytes = path.toUtf8();
        QTest::ignoreMessage(QtCriticalMsg, qPrintable(QStringLiteral("\"Error parsing line broken in file %1\"").arg(path)));
        conversion.parseDirectionInfo(pathBytes);
        QCOMPARE(conversion.nameMap().value("One"), QStringLiteral("k1"));
        QCOMPARE(conversion.nameMap().value("Two"), QStringLiteral("k2"));
        QVERIFY(conversion.directionList().contains(QStringLiteral("One")));
        QVERIFY(!conversion.nameMap().contains(QStringLiteral("broken")));
    }
};

QTEST_GUILESS_MAIN(TestDirectionTables)
#include "tst_directiontables.moc"
