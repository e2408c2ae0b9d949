#include "conversion.h"
#include "eventsender.h"
#include "testsupport.h"

#include <csignal>
#include <fcntl.h>
#include <semaphore.h>
#include <unistd.h>

#include <QProcessEnvironment>
#include <QSignalSpy>
#include <QtTest>

// Runs the conversion command against the test engine and looks at the exact
// arguments and input it received, what the log says and how failures, stop
// events and termination are handled.
class TestConversion : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase()
    {
        useTestSettings();
    }

    void init()
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
        m_inputFile = m_dir->filePath(QStringLiteral("input.txt"));
    }

    void engineReceivesItsCommand()
    {
        const QString first = m_dir->createFile(QStringLiteral("in/a b.sql"), "select 1;");
        const QString second = m_dir->createFile(QStringLiteral("in/it's \"q\" \xc3\xa9t\xc3\xa9.sql"), "x");
        m_conversion->setFile({first, second});
        m_conversion->setSourceConversion(QStringLiteral("NonStop SQL/MX"));
        m_conversion->setSourceConversionOption(QStringLiteral("DB2"), QStringLiteral("Odbc"));
        m_conversion->setEngineOptions({{"/U", "user"}, {"/P", "s3cr3t"}, {"/PRJF=", "/p/x.prj"}});
        m_conversion->setEncodings(QStringLiteral("System"), QStringLiteral("UTF-8"));

        const QStringList expected = engineCommand(m_conversion->request()).arguments;
        const QStringList arguments = runEngine(QStringLiteral("out done\\n"));
        QCOMPARE(arguments, expected);
        // The password travels on standard input only; the log masks it.
        for (const QString &argument : arguments)
            QVERIFY2(!argument.contains(QStringLiteral("s3cr3t")), qPrintable(argument));
        QVERIFY(arguments.last().startsWith(QStringLiteral("/P- ")));
        QCOMPARE(fileBytes(m_inputFile), QByteArray("s3cr3t\n"));
        QVERIFY(!log().contains(QStringLiteral("s3cr3t")));
        QVERIFY2(log().startsWith(QStringLiteral(TEST_ENGINE_PATH " /F=")), qPrintable(log()));
        QVERIFY(log().contains(QStringLiteral("/P**** /PRJF=")));
        QVERIFY(log().contains(QStringLiteral("done")));
    }

    void unreadableTablesDdl()
    {
        // A folder in place of the file: it cannot be read, whoever runs the test.
        const QString ddl = m_dir->createDir(QStringLiteral("ddl/tables_ddl.sql"));
        const QStringList arguments = runEngine(QString());
        QVERIFY(arguments.contains(QStringLiteral("/TBLDDL=\"%1\"").arg(ddl)));
        QVERIFY(log().contains(QStringLiteral("cannot be read")));
    }

    void stopEvent_data()
    {
        QTest::addColumn<bool>("blocked");
        QTest::newRow("made for the run, handed over, removed after it") << false;
        QTest::newRow("cannot be made: said in the log, the run goes on") << true;
    }

    void stopEvent()
    {
        QFETCH(bool, blocked);
        // Another user's event under the old fixed name, with a request pending,
        // is none of this run's business.
        sem_t *old = sem_open("/MorvaneStopEvent", O_CREAT, 0600, 0);
        if (old != SEM_FAILED) {
            sem_post(old);
            sem_close(old);
        }
        const QByteArray next = EventSender::nameForRun(Conversion::runCount() + 1);
        QVERIFY(next.contains("." + QByteArray::number(qulonglong(getuid())) + "."
                              + QByteArray::number(QCoreApplication::applicationPid()) + "."));
        QVERIFY(EventSender::nameForRun(1) != EventSender::nameForRun(2)); // one a run
        // A folder where the semaphore would go makes it impossible to create.
        const QString shm = QStringLiteral("/dev/shm/sem.") + QString::fromLatin1(next.mid(1));
        if (blocked)
            QVERIFY(QDir().mkpath(shm));
        const QStringList arguments = runEngine(QStringLiteral("ticks 3 10 tick"));
        if (blocked)
            QDir().rmdir(shm);
        sem_unlink("/MorvaneStopEvent");
        QVERIFY2(log().contains(QStringLiteral("tick 2")), qPrintable(log()));
        QCOMPARE(m_conversion->stopEventName(), blocked ? QByteArray() : next);
        QCOMPARE(log().contains(QStringLiteral("could not be made")), blocked);
        // Gone with the run: nothing piles up in /dev/shm.
        QVERIFY(!QFileInfo::exists(shm));
    }

    void flood()
    {
        QSignalSpy errors(m_conversion.get(), &Conversion::errorsChanged);
        // About 100 MB of engine-like output.
        const QStringList arguments = runEngine(QStringLiteral("lines 2200000"), 180000);
        QVERIFY(!arguments.isEmpty() && arguments.first() != QLatin1String("<timeout>"));
        QCOMPARE(process()->exitCode(), 0);
        QVERIFY(m_conversion->output().size() >= 100000000);
        QVERIFY(!errors.isEmpty());
        // Every error but those of the last script, which no later script follows.
        QVERIFY(m_conversion->errors().size() > m_conversion->outputParser().allErrors().size() - 2);
    }

    // The default engine converts exactly the selection, samples and odd names alike,
    // reports the samples' one deliberate error, refuses an unknown encoding and
    // never writes over a script through a linked output folder.
    void defaultEngine()
    {
        if (!useDefaultEngine())
            QSKIP("the default engine is not built");
        const QDir samples(QStringLiteral(TEST_SOURCE_DIR "/samples/sql"));
        QStringList expected = samples.entryList({QStringLiteral("*.sql")}, QDir::Files);
        QVERIFY(expected.size() >= 4);
        QStringList files;
        for (const QString &name : qAsConst(expected))
            files << m_dir->createFile(QStringLiteral("in/") + name, fileBytes(samples.filePath(name)));
        // Names that a bar-joined, blank-stripped, wildcard-expanded list would read
        // as other files, next to the files they would be read as.
        for (const char *name : {"b| c.sql", "star*.sql", " blank .sql", "two\nlines.sql"}) {
            files << m_dir->createFile(QStringLiteral("in/") + name, "SELECT TOP 1 a FROM t;\n");
            expected << QString::fromLatin1(name);
        }
        for (const char *decoy : {"b", "c.sql", "starlet.sql", "blank .sql", "two", "lines.sql"})
            m_dir->createFile(QStringLiteral("in/") + decoy, "SELECT TOP 2 b FROM u;\n");
        m_conversion->setFile(files);
        runEngine(QString(), 60000);
        QCOMPARE(process()->exitCode(), 0);
        QStringList written = QDir(m_dir->filePath(QStringLiteral("out"))).entryList(QDir::Files | QDir::Hidden);
        written.sort();
        expected.sort();
        QVERIFY2(written == expected, qPrintable(log()));
        QCOMPARE(m_conversion->errors().size(), 1);
        QCOMPARE(m_conversion->errors().at(0).file, m_dir->filePath(QStringLiteral("in/monthly_report.sql")));
        QCOMPARE(m_conversion->errors().at(0).line, 8);

        m_conversion->setEncodings(QStringLiteral("TSCII"), QStringLiteral("System"));
        runEngine(QString(), 60000);
        QCOMPARE(process()->exitCode(), 2);
        QVERIFY2(log().contains(QStringLiteral("The encoding 'TSCII'")), qPrintable(log()));

        const QByteArray text("SELECT TOP 1 a FROM t;\n");
        const QString source = m_dir->createFile(QStringLiteral("own/s.sql"), text);
        QVERIFY(QFile::link(m_dir->filePath(QStringLiteral("own")), m_dir->filePath(QStringLiteral("same"))));
        m_conversion->setFile({source});
        m_conversion->setOutputDir(m_dir->filePath(QStringLiteral("same")));
        m_conversion->setEncodings(QStringLiteral("IBM 850"), QStringLiteral("System"));
        runEngine(QString(), 60000);
        QVERIFY2(log().contains(QStringLiteral("Skipped")), qPrintable(log()));
        QCOMPARE(fileBytes(source), text);
    }

private:
    // Points the run at the default engine; false when it is not built.
    bool useDefaultEngine()
    {
        const QString engine = QFileInfo(QStringLiteral(TEST_ENGINE_PATH)).absolutePath()
                               + QStringLiteral("/morvane");
        m_conversion->setEngineProgram(engine);
        m_conversion->setEncodings(QStringLiteral("System"), QStringLiteral("System"));
        return QFileInfo(engine).isExecutable();
    }

    // The test engine's script for the next run; it writes what it receives to files.
    void setScript(const QString &script)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("TESTENGINE_SCRIPT"), QStringLiteral("inline:") + script);
        environment.insert(QStringLiteral("TESTENGINE_ARGS"), m_argsFile);
        environment.insert(QStringLiteral("TESTENGINE_STDIN"), m_inputFile);
        process()->setProcessEnvironment(environment);
    }

    QStringList runEngine(const QString &script, int timeout = 20000)
    {
        setScript(script);
        QFile::remove(m_argsFile);
        if (!m_conversion->start())
            return {};
        if (!process()->waitForFinished(timeout))
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

    QString log() const { return QString::fromUtf8(m_conversion->output()); }
    QProcess *process() const { return m_conversion->process(); }

    std::unique_ptr<TestDir> m_dir;
    std::unique_ptr<Conversion> m_conversion;
    QString m_argsFile;
    QString m_inputFile;
};

QTEST_GUILESS_MAIN(TestConversion)
#include "tst_conversion.moc"
