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
    void commandLine_data();
    void commandLine();
    void fileCount_data();
    void fileCount();
    void failures_data();
    void failures();
    void unreadableTablesDdl();
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
    m_conversion->setFile({QStringLiteral("/x.sql")});
    m_argsFile = m_dir->filePath(QStringLiteral("args.txt"));
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
        return {};
    QStringList arguments = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    arguments.removeLast();
    return arguments;
}

void TestConversion::commandLine_data()
{
    QTest::addColumn<QString>("api");
    QTest::newRow("every switch") << "Odbc";
    QTest::newRow("empty API drops its switch") << "";
}

void TestConversion::commandLine()
{
    QFETCH(QString, api);
    const QString first = m_dir->createFile(QStringLiteral("in/a b.sql"), "select 1;");
    const QString second = m_dir->createFile(QStringLiteral("in/it's \"q\" \xc3\xa9t\xc3\xa9.sql"), "x");
    const QString ddl = m_dir->createFile(QStringLiteral("my ddl.sql"), "create table t(a int);");
    m_conversion->setFile({first, second});
    m_conversion->setSourceConversion(QStringLiteral("NonStop SQL/MX"));
    m_conversion->setTargetConversion(QStringLiteral("Progress WSM"));
    // Set, then changed: an empty API must take back the switch set before.
    m_conversion->setSourceConversionOption(QStringLiteral("DB2"), QStringLiteral("Odbc"));
    m_conversion->setSourceConversionOption(QStringLiteral("DB2"), api);
    m_conversion->setTargetConversionOption(QStringLiteral("Oracle"), QString());
    m_conversion->setPassword(QStringLiteral("s3cr3t"));
    m_conversion->setExtraOptions(QStringLiteral(" /PRJF=\"/p/x.prj\" /TBLDDL=\"%1\" /Uuser /Ps3cr3t "
                                                 "/SRCENC=System /TRGENC=UTF-8")
                                      .arg(ddl));

    const QStringList arguments = runEngine(QStringLiteral("out done\\n"));
    QStringList expected{
        QStringLiteral("/F=\"%1| %2\"").arg(first, second),
        QStringLiteral("/DIR=\"%1\"").arg(m_dir->filePath(QStringLiteral("out"))),
        QStringLiteral("/SOURCE=NonStopSQLMX"),
        QStringLiteral("/TARGET=ProgressWSM"),
        QStringLiteral("/Source_DB=DB2"),
        QStringLiteral("/Target_DB=Oracle"),
        QStringLiteral("/TBLDDL=\"%1\"").arg(ddl),
        QStringLiteral("/PRJF=\"/p/x.prj\" /Uuser /Ps3cr3t /SRCENC=System /TRGENC=UTF-8"),
    };
    if (!api.isEmpty())
        expected.insert(4, QStringLiteral("/Source_API=") + api);
    QCOMPARE(arguments, expected);
    QVERIFY(!log().contains(QStringLiteral("/D=")));
    // The password is masked in the log, nowhere else.
    QVERIFY(!log().contains(QStringLiteral("s3cr3t")));
    const QString shown = expected.join(QLatin1Char(' ')).replace(QStringLiteral("/Ps3cr3t"),
                                                                  QStringLiteral("/P****"));
    QVERIFY2(log().startsWith(QStringLiteral(TEST_ENGINE_PATH " ") + shown), qPrintable(log()));
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
    const QString listFile = WorkingFolder::path() + QStringLiteral("ffile.txt");
    const QString joined = files.join(QStringLiteral("| "));
    QCOMPARE(arguments.value(0), QStringLiteral("/%1=\"%2\"").arg(throughFile ? "FF" : "F",
                                                                    throughFile ? listFile : joined));
    if (throughFile) {
        QFile list(listFile);
        QVERIFY(list.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(list.readAll()), joined);
    }
}

void TestConversion::failures_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("message");
    QTest::newRow("engine not on PATH") << "morvane-engine-that-is-nowhere"
                                        << "was not found beside the application";
    QTest::newRow("output folder removed") << TEST_ENGINE_PATH << "does not exist; nothing was converted";
    QTest::newRow("no files") << TEST_ENGINE_PATH << "Incorrect source file or destination path '";
}

void TestConversion::failures()
{
    QFETCH(QString, program);
    QFETCH(QString, message);
    m_conversion->setEngineProgram(program);
    if (QTest::currentDataTag() == QLatin1String("no files"))
        m_conversion->setFile({});
    if (QTest::currentDataTag() == QLatin1String("output folder removed"))
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
    const QStringList arguments = runEngine(QString());
    QVERIFY(arguments.contains(QStringLiteral("/TBLDDL=\"%1\"").arg(ddl)));
    QVERIFY(log().contains(QStringLiteral("cannot be read")));
}

void TestConversion::flood()
{
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

    // An encoding the engine cannot use: one clear message, non-zero exit.
    m_conversion->setExtraOptions(QStringLiteral(" /SRCENC=TSCII /TRGENC=System"));
    runEngine(QString(), 60000);
    QCOMPARE(m_conversion->exitCode(), 2);
    QVERIFY2(log().contains(QStringLiteral("The encoding 'TSCII'")), qPrintable(log()));

    // The output folder is the script's own through a link: the source stays as it is.
    const QByteArray text("SELECT TOP 1 a FROM t;\n");
    const QString source = m_dir->createFile(QStringLiteral("own/s.sql"), text);
    QVERIFY(QFile::link(m_dir->filePath(QStringLiteral("own")), m_dir->filePath(QStringLiteral("same"))));
    m_conversion->setFile({source});
    m_conversion->setOutputDir(m_dir->filePath(QStringLiteral("same")));
    m_conversion->setExtraOptions(QStringLiteral(" /SRCENC=\"IBM 850\" /TRGENC=System"));
    runEngine(QString(), 60000);
    QVERIFY2(log().contains(QStringLiteral("Skipped")), qPrintable(log()));
    QFile written(source);
    QVERIFY(written.open(QIODevice::ReadOnly));
    QCOMPARE(written.readAll(), text);
}

QTEST_GUILESS_MAIN(TestConversion)
#include "tst_conversion.moc"
