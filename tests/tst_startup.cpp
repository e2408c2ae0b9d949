#include "enginelocator.h"
#include "filenamecodec.h"
#include "startupoptions.h"
#include "testsupport.h"

#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

using Action = StartupOptions::Action;
Q_DECLARE_METATYPE(Action)

class TestStartup : public QObject
{
    Q_OBJECT
    TestDir m_dir;

private Q_SLOTS:
    void initTestCase()
    {
        m_dir.createFile("src/orders.sql", "SELECT 1;\n");
        m_dir.createDir("out put/ünï");
        m_dir.createDir("-dash folder");
        m_dir.createDir(QFile::decodeName("caf\xE9"));
        QVERIFY(QFile::link(m_dir.filePath("src/orders.sql"), m_dir.filePath("link.sql")));
        QCOMPARE(mkfifo(QFile::encodeName(m_dir.filePath("pipe")).constData(), 0600), 0);
        QVERIFY(QFile::setPermissions(m_dir.createDir("locked"), QFileDevice::WriteOwner));
    }

    void paths_data()
    {
        // Arguments are relative to the test folder; "@" stands for it in the
        // expected values, and a warning is matched by the text it must contain.
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QStringList>("expected"); // left folder, left file, right folder, right file
        QTest::addColumn<QStringList>("warnings");
        const QStringList none{"", "", "", ""};

        QTest::newRow("nothing keeps the stored folders") << QStringList() << none << QStringList();
        QTest::newRow("both folders, odd names")
            << QStringList{"--", "-dash folder", "out put/ünï"}
            << QStringList{"@/-dash folder", "", "@/out put/ünï", ""} << QStringList();
        QTest::newRow("absolute and dotted paths")
            << QStringList{"@/src/../out put/", "./src"} << QStringList{"@/out put", "", "@/src", ""}
            << QStringList();
        QTest::newRow("a file opens in the editor of its side")
            << QStringList{"src", "src/orders.sql"}
            << QStringList{"@/src", "", "@/src", "@/src/orders.sql"} << QStringList();
        QTest::newRow("a file through a link")
            << QStringList{"link.sql"} << QStringList{"@", "@/link.sql", "", ""} << QStringList();
        QTest::newRow("missing folder keeps that side's stored folder")
            << QStringList{"gone", "src"} << QStringList{"", "", "@/src", ""}
            << QStringList{"\"gone\" does not exist: the left panel opens on its last folder."};
        QTest::newRow("missing file on the right")
            << QStringList{"src", "src/gone.sql"} << QStringList{"@/src", "", "", ""}
            << QStringList{"\"src/gone.sql\" does not exist: the right panel"};
        QTest::newRow("an empty argument is not the working folder")
            << QStringList{""} << none << QStringList{"\"\" does not exist"};
        QTest::newRow("a pipe is not opened")
            << QStringList{"pipe"} << none
            << QStringList{"\"pipe\" is neither a folder nor a regular file"};
        QTest::newRow("a third path is left out")
            << QStringList{"src", "src", "out put"} << QStringList{"@/src", "", "@/src", ""}
            << QStringList{"Only two paths can be opened, one for each panel: \"out put\" was "
                           "left out."};
        // A name that is not UTF-8 opens as it is and is shown with U+FFFD for the odd byte.
        const QString latin1 = QFile::decodeName("caf\xE9");
        QTest::newRow("folder named in another encoding")
            << QStringList{latin1} << QStringList{"@/" + latin1, "", "", ""} << QStringList();
        if (FileNameCodec::hasRawBytes(latin1)) {
            QTest::newRow("missing name in another encoding")
                << QStringList{"gone " + latin1} << none
                << QStringList{QString::fromUtf8("\"gone caf\xEF\xBF\xBD\" does not exist")};
        }
        QTest::newRow("unreadable folder")
            << QStringList{"locked"} << none << QStringList{"\"locked\" cannot be read"};
    }

    void paths()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QStringList, expected);
        QFETCH(QStringList, warnings);
        if (QTest::currentDataTag() == QLatin1String("unreadable folder") && geteuid() == 0)
            QSKIP("root reads every folder");

        const QString base = m_dir.path();
        const StartupOptions options = StartupOptions::parse(
            QStringList{"morvane-navarch"} + arguments.replaceInStrings("@", base), base);
        QCOMPARE(options.action(), Action::Start);
        expected.replaceInStrings("@", base);
        QCOMPARE((QStringList{options.folder(true), options.file(true), options.folder(false),
                              options.file(false)}),
                 expected);
        QCOMPARE(options.warnings().size(), warnings.size());
        for (int i = 0; i < warnings.size(); ++i)
            QVERIFY2(options.warnings().at(i).contains(warnings.at(i)),
                     qPrintable(options.warnings().at(i)));
    }

    void options_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<Action>("action");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("withoutWindow");

        QTest::newRow("short help beside folders") << QStringList{"/tmp", "-h"} << Action::ShowHelp
                                                   << "--engine-path" << true;
        QTest::newRow("help wins over an unknown option")
            << QStringList{"--bogus", "--help"} << Action::ShowHelp << "[options] [LEFT [RIGHT]]" << true;
        QTest::newRow("version") << QStringList{"-v"} << Action::ShowVersion
                                 << "Morvane Navarch " NAVARCH_VERSION "\n" << true;
        QTest::newRow("engine path") << QStringList{"--engine-path"} << Action::ShowEngine << ""
                                     << true;
        QTest::newRow("unknown option") << QStringList{"--bogus"} << Action::Fail
                                        << "Unknown option 'bogus'" << false;
        // Qt's own one-dash options are whole words, not runs of -v, -h, ...
        QTest::newRow("Qt's -reverse is not -v") << QStringList{"-reverse"} << Action::Fail
                                                 << "reverse" << false;
        QTest::newRow("Qt's -stylesheet is not -h") << QStringList{"-stylesheet", "x.qss"}
                                                    << Action::Fail << "stylesheet" << false;
        QTest::newRow("a dashed name after --") << QStringList{"--", "--help"} << Action::Start << ""
                                                << false;
    }

    void options()
    {
        QFETCH(QStringList, arguments);
        QFETCH(Action, action);
        QFETCH(QString, text);
        QFETCH(bool, withoutWindow);
        arguments.prepend(QStringLiteral("morvane-navarch"));
        const StartupOptions options = StartupOptions::parse(arguments, m_dir.path());
        QCOMPARE(options.action(), action);
        QVERIFY2(options.text().contains(text), qPrintable(options.text()));
        QCOMPARE(StartupOptions::answersWithoutWindow(arguments), withoutWindow);
    }

    void engineLookup_data()
    {
        QTest::addColumn<QStringList>("engines"); // relative to the installed tree
        QTest::addColumn<QString>("expected");

        QTest::newRow("beside the application")
            << QStringList{"bin/morvane", "lib/morvane-navarch/morvane"} << "bin/morvane";
        QTest::newRow("in the private folder") << QStringList{"lib/morvane-navarch/morvane"}
                                               << "lib/morvane-navarch/morvane";
        QTest::newRow("a file that cannot run is passed over")
            << QStringList{"bin/morvane!", "lib/morvane-navarch/morvane"}
            << "lib/morvane-navarch/morvane";
        QTest::newRow("then PATH") << QStringList{"path/morvane"} << "path/morvane";
        QTest::newRow("nowhere") << QStringList() << "";
    }

    void engineLookup()
    {
        QFETCH(QStringList, engines);
        QFETCH(QString, expected);
        TestDir tree;
        const QString bin = tree.createDir(QStringLiteral("bin"));
        for (QString engine : engines) {
            const bool runs = !engine.endsWith(QLatin1Char('!'));
            engine.remove(QLatin1Char('!'));
            const QString path = tree.createFile(engine, "#!/bin/sh\n");
            if (runs)
                QVERIFY(QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::ExeOwner));
        }
        const QByteArray oldPath = qgetenv("PATH");
        qputenv("PATH", QFile::encodeName(tree.filePath(QStringLiteral("path"))));
        const QString found = EngineLocator::find(QStringLiteral("morvane"), bin);
        qputenv("PATH", oldPath);
        QCOMPARE(found, expected.isEmpty() ? QString() : tree.filePath(expected));
    }
};

QTEST_GUILESS_MAIN(TestStartup)
#include "tst_startup.moc"
