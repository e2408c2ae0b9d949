#include "enginerequest.h"
#include "testsupport.h"

// The engine's command line as a function of the request, without a process.
class TestEngineRequest : public QObject
{
    Q_OBJECT
private:
    std::unique_ptr<TestDir> m_dir;

    EngineRequest baseRequest() const
    {
        EngineRequest request;
        request.files = QStringList{QStringLiteral("/in/a b.sql")};
        request.outputFolder = QStringLiteral("/out");
        request.source = QStringLiteral("Microsoft SQL Server");
        request.target = QStringLiteral("PostgreSQL");
        request.nameMap = {{QStringLiteral("NonStop SQL/MX"), QStringLiteral("NonStopSQLMX")},
                           {QStringLiteral("Progress WSM"), QStringLiteral("ProgressWSM")}};
        request.ddlFolder = m_dir->createDir(QStringLiteral("ddl"));
        request.copyFolder = m_dir->filePath(QStringLiteral("copy"));
        request.listFile = m_dir->filePath(QStringLiteral("work/ffile.txt"));
        request.passwordOnStdin = true;
        return request;
    }

private Q_SLOTS:
    void initTestCase() { useTestSettings(); }
    void init() { m_dir = std::make_unique<TestDir>(); }

    void arguments_data()
    {
        QTest::addColumn<QString>("change");
        QTest::addColumn<QStringList>("expected");
        const QString files = QStringLiteral("/F=\"/in/a b.sql\"");
        const QString dir = QStringLiteral("/DIR=\"/out\"");
        const QString plain = QStringLiteral("/SOURCE=Microsoft SQL Server");
        const QString target = QStringLiteral("/TARGET=PostgreSQL");
        QTest::newRow("bare request") << "" << QStringList{files, dir, plain, target};
        QTest::newRow("relative name made absolute")
            << "relative" << QStringList{"/F=\"" + QDir::current().absoluteFilePath("rel/a.sql") + '"',
                                         dir, plain, target};
        QTest::newRow("names with a slash or WSM take their key")
            << "keys" << QStringList{files, dir, "/SOURCE=NonStopSQLMX", "/TARGET=ProgressWSM"};
        QTest::newRow("side options in their order")
            << "sides"
            << QStringList{files, dir, plain, target, "/Source_API=Odbc", "/Source_DB=DB2",
                           "/Target_DB=Oracle"};
        QTest::newRow("option map, encodings and the default INI")
            << "options"
            << QStringList{files, dir, plain, target,
                           "/Q /P- /PRJF=\"/my dir/p.prj\" /Uscott /INI=\"/w/morvane.ini\" "
                           "/SRCENC=\"IBM 850\" /TRGENC=UTF-8"};
        QTest::newRow("a user INI replaces the default")
            << "user ini" << QStringList{files, dir, plain, target, "/INI=\"/u/my.ini\""};
        QTest::newRow("password in the arguments where stdin is not used")
            << "inline password" << QStringList{files, dir, plain, target, "/Ps3cr3t /Uscott"};
    }
    void arguments()
    {
        QFETCH(QString, change);
        QFETCH(QStringList, expected);
        EngineRequest request = baseRequest();
        if (change == QLatin1String("relative")) {
            request.files = QStringList{QStringLiteral("rel/a.sql")};
        } else if (change == QLatin1String("keys")) {
            request.source = QStringLiteral("NonStop SQL/MX");
            request.target = QStringLiteral("Progress WSM");
        } else if (change == QLatin1String("sides")) {
            request.sideOptions = {{"/Target_DB=", "Oracle"}, {"/Source_DB=", "DB2"},
                                   {"/Source_API=", "Odbc"}};
        } else if (change == QLatin1String("options")) {
            request.options = {{"/PRJF=", "/my dir/p.prj"}, {"/U", "scott"}, {" ", "/Q"},
                               {"/P", "s3cr3t"}};
            request.defaultIni = QStringLiteral("/w/morvane.ini");
            request.sourceEncoding = QStringLiteral("IBM 850");
            request.targetEncoding = QStringLiteral("UTF-8");
        } else if (change == QLatin1String("user ini")) {
            request.options = {{"/INI=", "/u/my.ini"}};
            request.defaultIni = QStringLiteral("/w/morvane.ini");
        } else if (change == QLatin1String("inline password")) {
            request.options = {{"/U", "scott"}, {"/P", "s3cr3t"}};
            request.passwordOnStdin = false;
        }
        const EngineCommand command = engineCommand(request);
        QCOMPARE(command.arguments, expected);
        QVERIFY(command.error.isEmpty());
        // Whatever the route, the log never shows the password or "/D=".
        QVERIFY(!command.displayLine.contains(QStringLiteral("s3cr3t")));
        QVERIFY(!command.displayLine.contains(QStringLiteral("/D=")));
        const bool hasPassword = request.options.contains(QStringLiteral("/P"));
        QCOMPARE(command.displayLine.contains(QStringLiteral("/P****")), hasPassword);
        QCOMPARE(command.input, hasPassword && request.passwordOnStdin ? QByteArray("s3cr3t\n")
                                                                       : QByteArray());
    }

    void fileList_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<bool>("pathPerLine");
        QTest::addColumn<bool>("throughFile");
        QStringList ten;
        for (int i = 0; i < 10; ++i)
            ten << QStringLiteral("script %1.sql").arg(i);
        QTest::newRow("ten plain files go inline") << ten << true << false;
        QTest::newRow("eleven go through the list file") << (ten + QStringList{"x.sql"}) << true << true;
        QTest::newRow("eleven, bar-joined list for other engines")
            << (ten + QStringList{"x.sql"}) << false << true;
        QTest::newRow("a bar in a name") << QStringList{"b| c.sql"} << true << true;
        QTest::newRow("a wildcard in a name") << QStringList{"star*.sql"} << true << true;
        QTest::newRow("a question mark in a name") << QStringList{"why?.sql"} << true << true;
        QTest::newRow("a blank at the start of a name") << QStringList{" blank .sql"} << true << true;
        QTest::newRow("a blank at the end of a name") << QStringList{"blank.sql "} << true << true;
        QTest::newRow("a line break in a name") << QStringList{"two\nlines.sql"} << true << true;
        QTest::newRow("the same, inline for other engines") << QStringList{"b| c.sql"} << false << false;
    }
    void fileList()
    {
        QFETCH(QStringList, names);
        QFETCH(bool, pathPerLine);
        QFETCH(bool, throughFile);
        EngineRequest request = baseRequest();
        request.pathPerLine = pathPerLine;
        request.files.clear();
        for (const QString &name : names)
            request.files << QStringLiteral("/data/scripts/") + name;
        const QString joined = request.files.join(QStringLiteral("| "));
        const EngineCommand command = engineCommand(request);
        QCOMPARE(command.arguments.value(0),
                 throughFile ? QStringLiteral("/FF=\"%1\"").arg(request.listFile)
                             : QStringLiteral("/F=\"%1\"").arg(joined));
        QCOMPARE(QFile::exists(request.listFile), throughFile);
        if (throughFile) {
            // A name with a line break needs the NUL-ended form.
            const char end = names.first().contains(QLatin1Char('\n')) ? '\0' : '\n';
            QByteArray perLine;
            for (const QString &path : qAsConst(request.files))
                perLine += path.toUtf8() + end;
            QCOMPARE(fileBytes(request.listFile), pathPerLine ? perLine : joined.toUtf8());
        }
    }

    void tablesDdl_data()
    {
        QTest::addColumn<QString>("where");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("copied");
        QTest::newRow("typed in the extra options, moved before them")
            << "extra" << QByteArray("create table t(a int);\n") << false;
        QTest::newRow("from the option map") << "map" << QByteArray("create table t(a int);\n") << false;
        QTest::newRow("default file in the DDL folder") << "folder" << QByteArray("select 1;\n") << false;
        QTest::newRow("UTF-16 file goes through a system-encoded copy")
            << "map" << QByteArray("\xff\xfe" "c\0r\0e\0a\0t\0e\0", 12) << true;
    }
    void tablesDdl()
    {
        QFETCH(QString, where);
        QFETCH(QByteArray, bytes);
        QFETCH(bool, copied);
        EngineRequest request = baseRequest();
        const QString ddl = where == QLatin1String("folder")
            ? m_dir->createFile(QStringLiteral("ddl/tables_ddl.sql"), bytes)
            : m_dir->createFile(QStringLiteral("my ddl.sql"), bytes);
        if (where == QLatin1String("extra"))
            request.options = {{" ", QStringLiteral("/A /TBLDDL=\"%1\" /B").arg(ddl)}};
        else if (where == QLatin1String("map"))
            request.options = {{"/TBLDDL=", ddl}, {" ", "/A /B"}};
        const EngineCommand command = engineCommand(request);
        const QString expectedPath = copied ? request.copyFolder + QStringLiteral("/tables_ddl.sql") : ddl;
        QCOMPARE(command.arguments.filter(QStringLiteral("/TBLDDL=")),
                 QStringList{QStringLiteral("/TBLDDL=\"%1\"").arg(expectedPath)});
        QCOMPARE(command.arguments.indexOf(QStringLiteral("/TBLDDL=\"%1\"").arg(expectedPath)), 4);
        if (where != QLatin1String("folder"))
            QCOMPARE(command.arguments.last(), QStringLiteral("/A /B"));
        QCOMPARE(QFile::exists(expectedPath), true);
    }

    void nothingToRun()
    {
        EngineRequest noFiles = baseRequest();
        noFiles.files = QStringList{QString()};
        EngineRequest noOutput = baseRequest();
        noOutput.outputFolder.clear();
        for (const EngineRequest &request : {noFiles, noOutput}) {
            const EngineCommand command = engineCommand(request);
            QVERIFY(command.arguments.isEmpty());
            QVERIFY2(command.error.startsWith("Incorrect source file or destination path '"),
                     qPrintable(command.error));
        }
    }
};

QTEST_GUILESS_MAIN(TestEngineRequest)
#include "tst_enginerequest.moc"
