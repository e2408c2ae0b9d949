#include "commandline.h"
#include "conversion.h"
#include "edit.h"
#include "navarch.h"
#include "testsupport.h"

class TestNavarch : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { useTestSettings(); }

    void registeredCommands_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("className");
        QTest::newRow("conversion") << 0 << "Conversion";
        QTest::newRow("edit") << 3 << "Edit";
        QTest::newRow("command line") << 4 << "CommandLine";
    }
    void registeredCommands()
    {
        QFETCH(int, type);
        QFETCH(QString, className);
        Command *first = Navarch::instance().getCommand(static_cast<CommandType>(type));
        QVERIFY(first);
        auto *object = dynamic_cast<QObject *>(first);
        QVERIFY(object);
        QCOMPARE(QString::fromLatin1(object->metaObject()->className()), className);
        QCOMPARE(Navarch::instance().getCommand(static_cast<CommandType>(type)), first);
    }

    void unknownCommands_data()
    {
        QTest::addColumn<int>("type");
        QTest::newRow("one") << 1;
        QTest::newRow("two") << 2;
        QTest::newRow("past the end") << 5;
    }
    void unknownCommands()
    {
        QFETCH(int, type);
        QTest::ignoreMessage(QtDebugMsg, qPrintable(QStringLiteral("Unknown command %1").arg(type)));
        QVERIFY(!Navarch::instance().getCommand(static_cast<CommandType>(type)));
    }

    void conversionNotRunningAtStart()
    {
        QVERIFY(!isConversionRunning());
    }
};

QTEST_MAIN(TestNavarch)
#include "tst_navarch.moc"
