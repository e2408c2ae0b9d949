#include "conversion.h"
#include "databaseapilistreader.h"
#include "databaselistreader.h"
#include "testsupport.h"

class TestDirectionTables : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { useTestSettings(); }

    void resourceBytes_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("rows");
        QTest::addColumn<QByteArray>("mustContain");
        QTest::newRow("databases") << ":/directions/DBDirections.csv" << 37
                                   << QByteArray("Adaptive Server Anywhere ,Sybase");
        QTest::newRow("applications") << ":/directions/AppDirections.csv" << 36
                                      << QByteArray("COBOL,COBOL,cob,pco,ecb,sql,txt,*\r\n");
        QTest::newRow("interfaces") << ":/directions/DatabaseAPI.csv" << 13
                                    << QByteArray("\r\n\"SYBASE CTLIB\",Sybase CTLIB");
    }
    void resourceBytes()
    {
        QFETCH(QString, path);
        QFETCH(int, rows);
        QFETCH(QByteArray, mustContain);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        QCOMPARE(bytes.count("\r\n"), rows - 1);
        QCOMPARE(bytes.count('\n'), rows - 1); // no bare line feeds
        QVERIFY(!bytes.endsWith('\n'));
        QVERIFY(bytes.contains(mustContain));
    }

    void oddDatabaseRows()
    {
        QFile file(QStringLiteral(":/directions/DBDirections.csv"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        QVERIFY(bytes.contains("\r\nVerticaAnalyti\xf1" "Database,Vertica Analytic Database,sql\r\n"));
        QVERIFY(bytes.contains("\r\nPervasive,Pervasive, sql\r\n"));
        QVERIFY(bytes.contains("Standart Server"));
        QVERIFY(bytes.startsWith("Access,Access,sql\r\n"));
        QVERIFY(bytes.endsWith("\r\nvPostgres,vPostgres,sql"));
    }

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

    void readerKeepsLinesWithoutComma()
    {
        TestDir dir;
        const QString path = dir.createFile("t.csv", "a,Alpha,sql\r\n\r\nplain\r\nb,Beta");
        Reader reader;
        reader.read(path);
        QStringList lines;
        reader.list(lines);
        QCOMPARE(lines, QStringList({"Alpha", "plain", "Beta"}));
    }

    void missingFileLeavesListAlone()
    {
        Reader reader;
        QTest::ignoreMessage(QtCriticalMsg, "\"Can't open file /nonexistent/x.csv\"");
        reader.read(QStringLiteral("/nonexistent/x.csv"));
        QStringList lines{"kept"};
        reader.list(lines);
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
