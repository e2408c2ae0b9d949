#include "conversion.h"
#include "testsupport.h"
#include "workingfolder.h"

#include <QProcessEnvironment>
#include <QSignalSpy>
#include <QtTest>

// Runs the conversion command against the test engine and looks at the exact
// arguments it received, what the log says and how failures are reported.
class TestConversion : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void commandLine();
    void fileCount_data();
    void fileCount();
    void emptyApiRemovesSwitch();
    void passwordNeverShown();
    void failures_data();
    void failures();
    void unreadableTablesDdl();
    void engineOutputIsKept_data();
    void engineOutputIsKept();
    void flood();
    void defaultEngineConvertsSamples();

private:
    QStringList runEngine(const QString &script, int timeout = 20000);
    QString log() const { return QString::fromUtf8(m_conversion->output()); }

    std::unique_ptr<TestDir> m_dir;
    std::unique_ptr<Conversion> m_conversion;
    QString m_argsFile;
};

void TestConversion::initTestCase()
{
    useTestSettings();
    qputenv("MORVANE_STOP_EVENT", QByteArray("/MorvaneStopEvent-tst-conversion-")
                                      + QByteArray::number(QCoreApplication::applicationPid()));
}

void TestConversion::init()
{
    m_dir = std::make_unique<TestDir>();
    m_conversion = std::make_unique<Conversion>(nullptr);
    m_conversion->setEngineProgram(QStringLiteral(TEST_ENGINE_PATH));
    m_conversion->setDdlFolder(m_dir->createDir(QStringLiteral("ddl")));
    m_conversion->setCopyFolder(m_dir->filePath(QStringLiteral("copy")));
    m_conversion->setOutputDir(m_dir->createDir(QStringLiteral("out")));
    m_conversion->setSourceConversion(QStringLiteral("Microsoft SQL Server"));
    m_conversion->setTargetConversion(QStringLiteral("PostgreSQL"));
    m_argsFile = m_dir->filePath(QStringLiteral("args.txt"));
}

void TestConversion::cleanup()
{
    m_conversion.reset();
    m_dir.reset();
}

QStringList TestConversion::runEngine(const QString &script, int timeout)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TESTENGINE_SCRIPT"), QStringLiteral("inline:") + script);
    environment.insert(QStringLiteral("TESTENGINE_ARGS"), m_argsFile);
    m_conversion->setProcessEnvironment(environment);
    QFile::remove(m_argsFile);
    if (!m_conversion->start())
        return {};
    if (!m_conversion->waitForFinished(timeout))
        return {QStringLiteral("<timeout>")};
    // The last bytes may still sit in the pipe.
    m_conversion->readStandardOutput();
    QFile file(m_argsFile);
    if (!file.open(QIODevice::ReadOnly))
        return {QStringLiteral("<no arguments recorded>")};
    QStringList arguments = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    arguments.removeLast();
    return arguments;
}

void TestConversion::commandLine()
{
    const QString first = m_dir->createFile(QStringLiteral("in/a b.sql"), "select 1;");
    const QString second = m_dir->createFile(QStringLiteral("in/it's \"q\" \xc3\xa9t\xc3\xa9.sql"), "x");
    const QString ddl = m_dir->createFile(QStringLiteral("my ddl.sql"), "create table t(a int);");
    m_conversion->setFile({first, second});
    m_conversion->setSourceConversion(QStringLiteral("NonStop SQL/MX"));
    m_conversion->setTargetConversion(QStringLiteral("Progress WSM"));
    m_conversion->setSourceConversionOption(QStringLiteral("DB2"), QStringLiteral("Odbc"));
    m_conversion->setTargetConversionOption(QStringLiteral("Oracle"), QString());
    m_conversion->setExtraOptions(QStringLiteral(" /PRJF=\"/p/x.prj\" /TBLDDL=\"%1\" /SRCENC=System "
                                                 "/TRGENC=UTF-8")
                                      .arg(ddl));

    const QStringList arguments = runEngine(QStringLiteral("out done\\n"));
    const QStringList expected{
        QStringLiteral("/F=\"%1| %2\"").arg(first, second),
        QStringLiteral("/DIR=\"%1\"").arg(m_dir->filePath(QStringLiteral("out"))),
        QStringLiteral("/SOURCE=NonStopSQLMX"),
        QStringLiteral("/TARGET=ProgressWSM"),
        QStringLiteral("/Source_API=Odbc"),
        QStringLiteral("/Source_DB=DB2"),
        QStringLiteral("/Target_DB=Oracle"),
        QStringLiteral("/TBLDDL=\"%1\"").arg(ddl),
        QStringLiteral("/PRJF=\"/p/x.prj\" /SRCENC=System /TRGENC=UTF-8"),
    };
    QCOMPARE(arguments, expected);
    QVERIFY(!log().contains(QStringLiteral("/D=")));
    QVERIFY(log().startsWith(QStringLiteral(TEST_ENGINE_PATH " ") + expected.join(QLatin1Char(' '))));
    QVERIFY(log().contains(QStringLiteral("done")));
}

void TestConversion::fileCount_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("throughFile");
    QTest::newRow("ten files go inline") << 10 << false;
    QTest::newRow("eleven files go through ffile.txt") << 11 << true;
    QTest::newRow("5000 files") << 5000 << true;
}

void TestConversion::fileCount()
{
    QFETCH(int, count);
    QFETCH(bool, throughFile);
    QStringList files;
    for (int i = 0; i < count; ++i)
        files << QStringLiteral("/data/scripts/script %1.sql").arg(i);
    m_conversion->setFile(files);
    const QStringList arguments = runEngine(QString());
    QVERIFY(!arguments.isEmpty());
    const QString listFile = WorkingFolder::path() + QStringLiteral("ffile.txt");
    if (throughFile) {
        QCOMPARE(arguments.first(), QStringLiteral("/FF=\"%1\"").arg(listFile));
        QFile list(listFile);
        QVERIFY(list.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(list.readAll()), files.join(QStringLiteral("| ")));
    } else {
        QCOMPARE(arguments.first(), QStringLiteral("/F=\"%1\"").arg(files.join(QStringLiteral("| "))));
    }
}

void TestConversion::emptyApiRemovesSwitch()
{
    m_conversion->setFile({QStringLiteral("/x.sql")});
    m_conversion->setSourceConversionOption(QStringLiteral("DB2"), QStringLiteral("Odbc"));
    QVERIFY(runEngine(QString()).contains(QStringLiteral("/Source_API=Odbc")));
    m_conversion->setSourceConversionOption(QStringLiteral("DB2"), QString());
    const QStringList arguments = runEngine(QString());
    QVERIFY(arguments.contains(QStringLiteral("/Source_DB=DB2")));
    for (const QString &argument : arguments)
        QVERIFY2(!argument.startsWith(QLatin1String("/Source_API=")), qPrintable(argument));
}

void TestConversion::passwordNeverShown()
{
    m_conversion->setFile({QStringLiteral("/x.sql")});
    m_conversion->setPassword(QStringLiteral("s3cr3t"));
    m_conversion->setExtraOptions(QStringLiteral(" /Dsource /Uuser /Ps3cr3t /SRCENC=System"));
    const QStringList arguments = runEngine(QString());
    QCOMPARE(arguments.last(), QStringLiteral("/Dsource /Uuser /Ps3cr3t /SRCENC=System"));
    QVERIFY(!log().contains(QStringLiteral("s3cr3t")));
    QVERIFY(log().contains(QStringLiteral("/Dsource /Uuser /P**** /SRCENC=System")));
}

void TestConversion::failures_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<bool>("removeOutput");
    QTest::addColumn<bool>("noFiles");
    QTest::addColumn<QString>("message");
    QTest::newRow("engine path missing") << "/nonexistent/morvane" << false << false
                                         << "The conversion engine '/nonexistent/morvane' does not exist";
    QTest::newRow("engine not on PATH") << "morvane-engine-that-is-nowhere" << false << false
                                        << "was not found beside the application";
    QTest::newRow("output folder removed") << TEST_ENGINE_PATH << true << false
                                           << "does not exist; nothing was converted";
    QTest::newRow("no files") << TEST_ENGINE_PATH << false << true
                              << "Incorrect source file or destination path '";
}

void TestConversion::failures()
{
    QFETCH(QString, program);
    QFETCH(bool, removeOutput);
    QFETCH(bool, noFiles);
    QFETCH(QString, message);
    m_conversion->setEngineProgram(program);
    m_conversion->setFile(noFiles ? QStringList() : QStringList{QStringLiteral("/x.sql")});
    if (removeOutput)
        QVERIFY(QDir(m_dir->filePath(QStringLiteral("out"))).removeRecursively());
    QSignalSpy changed(m_conversion.get(), &Conversion::standardOutputChanged);
    QVERIFY(!m_conversion->start());
    QCOMPARE(m_conversion->state(), QProcess::NotRunning);
    QVERIFY(!changed.isEmpty());
    QVERIFY2(log().contains(message), qPrintable(log()));
}

void TestConversion::unreadableTablesDdl()
{
    // A folder in place of the file: it cannot be read, whoever runs the test.
    const QString ddl = m_dir->createDir(QStringLiteral("ddl/tables_ddl.sql"));
    m_conversion->setFile({QStringLiteral("/x.sql")});
    const QStringList arguments = runEngine(QString());
    QVERIFY(arguments.contains(QStringLiteral("/TBLDDL=\"%1\"").arg(ddl)));
    QVERIFY(log().contains(QStringLiteral("cannot be read")));
}

void TestConversion::engineOutputIsKept_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<bool>("crashed");
    QTest::newRow("non-zero exit mid-run")
        << "out Converting script (\"/a.sql\") to X\\n\nexit 3" << "Converting script" << 3 << false;
    QTest::newRow("crash mid-run") << "out before the crash\\n\ncrash" << "before the crash" << 0
                                   << true;
    QTest::newRow("invalid UTF-8 and bare carriage returns")
        << "out Converting script (\"/\\xff.sql\") to X\\nline 2 - unexpected token 'a\\rb'\\n\\rxy\\r\\n"
           "\nout Converting script (\"/n.sql\") to X\\n"
        << "Converting script (\"/\xef\xbf\xbd.sql\")" << 0 << false;
}

void TestConversion::engineOutputIsKept()
{
    QFETCH(QString, script);
    QFETCH(QString, expected);
    QFETCH(int, exitCode);
    QFETCH(bool, crashed);
    m_conversion->setFile({QStringLiteral("/x.sql")});
    runEngine(script);
    QCOMPARE(m_conversion->exitStatus(), crashed ? QProcess::CrashExit : QProcess::NormalExit);
    if (!crashed)
        QCOMPARE(m_conversion->exitCode(), exitCode);
    QVERIFY2(log().contains(expected), qPrintable(log()));
}

void TestConversion::flood()
{
    m_conversion->setFile({QStringLiteral("/x.sql")});
    QSignalSpy errors(m_conversion.get(), &Conversion::errorsChanged);
    const QStringList arguments = runEngine(QStringLiteral("flood 100000000"), 180000);
    QVERIFY(!arguments.isEmpty() && arguments.first() != QLatin1String("<timeout>"));
    QCOMPARE(m_conversion->exitCode(), 0);
    QVERIFY(m_conversion->output().size() >= 100000000);
    QVERIFY(!errors.isEmpty());
    // Every error but those of the last script, which no later script follows.
    QVERIFY(m_conversion->errors().size() > m_conversion->outputParser().allErrors().size() - 2);
}

void TestConversion::defaultEngineConvertsSamples()
{
    const QString engine = QFileInfo(QStringLiteral(TEST_ENGINE_PATH)).absolutePath()
                           + QStringLiteral("/morvane");
    if (!QFileInfo(engine).isExecutable())
        QSKIP("the default engine is not built");
    const QDir samples(QStringLiteral(TEST_SOURCE_DIR "/samples/sql"));
    QStringList files;
    for (const QString &name : samples.entryList({QStringLiteral("*.sql")}, QDir::Files, QDir::Name))
        files << samples.filePath(name);
    QVERIFY(files.size() >= 4);
    m_conversion->setEngineProgram(engine);
    m_conversion->setFile(files);
    m_conversion->setExtraOptions(QStringLiteral(" /SRCENC=System /TRGENC=System"));
    runEngine(QString(), 60000);
    QCOMPARE(m_conversion->exitCode(), 0);
    const QDir out(m_dir->filePath(QStringLiteral("out")));
    for (const QString &file : files)
        QVERIFY2(out.exists(QFileInfo(file).fileName()), qPrintable(log()));
    // The deliberate error in monthly_report.sql, reported once the next script started.
    QCOMPARE(m_conversion->errors().size(), 1);
    QCOMPARE(m_conversion->errors().at(0).file, samples.filePath(QStringLiteral("monthly_report.sql")));
    QCOMPARE(m_conversion->errors().at(0).line, 8);
    // Sources are never touched.
    QVERIFY(QFileInfo(samples.filePath(QStringLiteral("monthly_report.sql"))).lastModified()
            < QFileInfo(out.filePath(QStringLiteral("monthly_report.sql"))).lastModified());
}

QTEST_GUILESS_MAIN(TestConversion)
#include "tst_conversion.moc"
