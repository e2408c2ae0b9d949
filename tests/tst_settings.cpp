#include "folder.h"
#include "historylist.h"
#include "recentfolderstorage.h"
#include "settings.h"
#include "testsupport.h"
#include "workingfolder.h"

#include <QAction>
#include <QComboBox>
#include <QMenu>
#include <QSysInfo>

#include <functional>

// One typed accessor: writes the test's value and reads what the store gives back.
struct Accessor
{
    std::function<void(Settings &)> write;
    std::function<QVariant(const Settings &)> read;
};
Q_DECLARE_METATYPE(Accessor)

class TestSettings : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { useTestSettings(); }
    void init()
    {
        Settings().clear();
        RecentFolderStorage::instance().clear();
    }

    void storeLocation()
    {
        // The accessors' table below reads the file back from this place.
        const QString path = Settings().fileName();
        QVERIFY(path.endsWith("/Quillon Systems Ltd./Morvane 6.0/Qt Tools/Morvane Navarch.conf"));
        QVERIFY(!path.startsWith(QDir::homePath() + QStringLiteral("/.config/")));
    }

    // The file on disk is what users keep between versions: every accessor
    // writes exactly these bytes and reads a file holding them back.
    void typedAccessorsOnDisk_data()
    {
        QTest::addColumn<Accessor>("accessor");
        QTest::addColumn<QVariant>("fallback");
        QTest::addColumn<QString>("file");
        QTest::addColumn<QVariant>("value");
        using L = QVariantList;
        using S = QStringList;
        const auto sides = [](auto get) { return L{get(Settings::Source), get(Settings::Target)}; };
        QTest::newRow("window")
            << Accessor{[](Settings &s) {
                            s.setWindowPlacement({700, 500}, {10, 20});
                            s.setWindowGeometry("\\1g");
                            s.setSplitterState("panelSplitter", "p");
                        },
                        [](const Settings &s) {
                            return L{s.windowSize(), s.windowPosition(), s.windowGeometry(),
                                     s.splitterState("panelSplitter")};
                        }}
            << QVariant(L{QSize(-1, -1), QPoint(200, 200), QByteArray(), QByteArray()})
            << "[Main%20Window]\ngeometry=@ByteArray(\\\\1g)\npanelSplitter=@ByteArray(p)\n"
               "pos=@Point(10 20)\nsize=@Size(700 500)\n"
            << QVariant(L{QSize(700, 500), QPoint(10, 20), QByteArray("\\1g"), QByteArray("p")});
        QTest::newRow("commands")
            << Accessor{[](Settings &s) { s.setCommands({"a", "b c", ""}); },
                        [](const Settings &s) { return QVariant(s.commands()); }}
            << QVariant(S{}) << "[Main%20Window]\nCommands=\";a;b c;\"\n"
            << QVariant(S{"a", "b c"});
        QTest::newRow("engine options")
            << Accessor{[](Settings &s) {
                            s.setEngineOptions({{"/D", "db"}, {"/PRJF=", "/p/x.prj"},
                                                {" ", "/X=1"}, {"/TBLDDL=", ""}, {"/P", "pw"}});
                        },
                        [](const Settings &s) {
                            return QVariant(s.engineOptions().keys() + s.engineOptions().values());
                        }}
            << QVariant(S{}) << "[Main%20Window]\n%20=\"/X=1\"\nD=db\nPRJF%3D=/p/x.prj\n"
            << QVariant(S{" ", "/D", "/PRJF=", "/X=1", "db", "/p/x.prj"});
        QTest::newRow("encodings")
            << Accessor{[](Settings &s) {
                            s.setEncodingOption(Settings::Source, "UTF-8");
                            s.setEncodingOption(Settings::Target, "Shift_JIS");
                        },
                        [sides](const Settings &s) {
                            return sides([&s](Settings::Side side) {
                                return s.encodingOption(side);
                            });
                        }}
            << QVariant(L{"System", "System"})
            << "[General]\nSRCENC%3D=UTF-8\nTRGENC%3D=Shift_JIS\n"
            << QVariant(L{"UTF-8", "Shift_JIS"});
        QTest::newRow("font size")
            << Accessor{[](Settings &s) { s.setFontSize(14); },
                        [](const Settings &s) { return QVariant(s.fontSize()); }}
            << QVariant(12) << "[Main%20Window]\nFontSize=14\n" << QVariant(14);
        QTest::newRow("panels")
            << Accessor{[](Settings &s) {
                            s.setPlatform(Settings::Source, "Teradata");
                            s.setPlatform(Settings::Target, "PostgreSQL");
                            s.setDisk(Settings::Source, "/mnt/a");
                            s.setDisk(Settings::Target, "/mnt/b");
                            s.setPanel(Settings::Source, {"/src", "*.sql", true});
                            s.setPanel(Settings::Target, {"/out", "*.*", false});
                        },
                        [sides](const Settings &s) {
                            return sides([&s](Settings::Side side) {
                                const Settings::PanelState panel = s.panel(side);
                                return L{s.platform(side), s.disk(side), panel.path, panel.mask,
                                         panel.showHidden};
                            });
                        }}
            << QVariant(L{L{"Microsoft SQL Server", "/", "", "*.*", false},
                          L{"Oracle", "/", "", "*.*", false}})
            << "[Main%20Window]\nleftDisk=/mnt/a\nleftPanel\\Mask=*.sql\nleftPanel\\Path=/src\n"
               "leftPanel\\ShowHidden=true\nrightDisk=/mnt/b\nrightPanel\\Mask=*.*\n"
               "rightPanel\\Path=/out\nrightPanel\\ShowHidden=false\nsource=Teradata\n"
               "target=PostgreSQL\n"
            << QVariant(L{L{"Teradata", "/mnt/a", "/src", "*.sql", true},
                          L{"PostgreSQL", "/mnt/b", "/out", "*.*", false}});
        QTest::newRow("filters and masks")
            << Accessor{[](Settings &s) {
                            s.setFilters(";*.sql;*.txt");
                            s.setMasks(";*.prc");
                        },
                        [](const Settings &s) { return S{s.filters(), s.masks()}; }}
            << QVariant(S{"*.*", "*.*"})
            << "[Main%20Window]\nConversion\\Masks=\";*.prc\"\nFilters=\";*.sql;*.txt\"\n"
            << QVariant(S{";*.sql;*.txt", ";*.prc"});
        QTest::newRow("database choices")
            << Accessor{[](Settings &s) {
                            s.setDatabaseChoice(Settings::Source, {"Oracle 12c", "OCI"});
                            s.setDatabaseChoice(Settings::Target, {"", "ODBC"});
                        },
                        [sides](const Settings &s) {
                            return sides([&s](Settings::Side side) {
                                const Settings::DatabaseChoice choice = s.databaseChoice(side);
                                return S{choice.database, choice.api};
                            });
                        }}
            << QVariant(L{S{"", ""}, S{"", ""}})
            << "[ConversionOptionsDialog]\nSourceDatabase=Oracle 12c\nSourceDatabaseAPI=OCI\n"
               "TargetDatabase=\nTargetDatabaseAPI=ODBC\n"
            << QVariant(L{S{"Oracle 12c", "OCI"}, S{"", "ODBC"}});
        QTest::newRow("find options")
            << Accessor{[](Settings &s) {
                            s.setFindOptions({";*.sql", "/src", "select\nfrom", true, true, 2});
                        },
                        [](const Settings &s) {
                            const Settings::FindOptions o = s.findOptions("/given");
                            return L{o.files, o.folder, o.text, o.matchCase, o.wholeWords,
                                     o.patternSyntax};
                        }}
            << QVariant(L{"*.*;PowerBuilder Source Files (*.srd, *.srw, *.sru, *.srf, *.srs, "
                          "*.srq, *.sra, *.srm)",
                          "/given", "", false, false, 0})
            << "[Main%20Window]\nFindDialog\\FindFiles=\";*.sql\"\n"
               "FindDialog\\FindText=select\\nfrom\nFindDialog\\IsCaseValuse=true\n"
               "FindDialog\\IsWholeWords=true\nFindDialog\\PatternSynx=2\n"
               "FindDialog\\SearchIn=/src\n"
            << QVariant(L{";*.sql", "/src", "select\nfrom", true, true, 2});
        QTest::newRow("diff options")
            << Accessor{[](Settings &s) {
                            s.setDiffIgnoresWhitespace(false);
                            s.setDiffIgnoresCase(true);
                        },
                        [](const Settings &s) {
                            return L{s.diffIgnoresWhitespace(), s.diffIgnoresCase()};
                        }}
            << QVariant(L{true, false}) << "[Diff]\nIgnoreCase=true\nIgnoreWhitespace=false\n"
            << QVariant(L{false, true});
    }
    void typedAccessorsOnDisk()
    {
        QFETCH(Accessor, accessor);
        QFETCH(QVariant, fallback);
        QFETCH(QString, file);
        QFETCH(QVariant, value);
        QCOMPARE(accessor.read(Settings()), fallback);
        QString path;
        {
            Settings settings;
            accessor.write(settings);
            path = settings.fileName();
        }
        QFile stored(path);
        QVERIFY(stored.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(stored.readAll()), file);
        stored.close();
        QCOMPARE(accessor.read(Settings()), value);

        // The same file written by another program (an older version) reads the same.
        Settings().clear();
        QVERIFY(stored.open(QIODevice::WriteOnly | QIODevice::Truncate));
        stored.write(file.toUtf8());
        stored.close();
        QCOMPARE(accessor.read(Settings()), value);
    }

    // An older version kept the password in the store: it is read, and the
    // next write drops it (the engine options row shows a new one is not written).
    void oldPasswordDropped()
    {
        Settings().setValue("Main Window/P", "old secret");
        Settings settings;
        QMap<QString, QString> options = settings.engineOptions();
        QCOMPARE(options.value("/P"), QStringLiteral("old secret"));
        options.insert("/U", "ann");
        settings.setEngineOptions(options);
        settings.sync();
        QVERIFY(!fileBytes(settings.fileName()).contains("secret"));
        QCOMPARE(Settings().engineOptions(), (QMap<QString, QString>{{"/U", "ann"}}));
    }

    void windowsWorkingFolder_data()
    {
        QTest::addColumn<int>("version");
        QTest::addColumn<QString>("documents");
        QTest::newRow("Windows 7") << 0x0090 << "My Documents";
        QTest::newRow("Windows 8") << WorkingFolder::Windows8 << "Documents";
        QTest::newRow("Windows 8.1") << 0x00b0 << "My Documents";
    }
    void windowsWorkingFolder()
    {
        QFETCH(int, version);
        QFETCH(QString, documents);
        const QString expected = QDir::toNativeSeparators(
            QStringLiteral("C:/Users/ann/%1/Quillon/Morvane 6.0/").arg(documents));
        QCOMPARE(WorkingFolder::forWindows(QStringLiteral("C:/Users/ann"), version), expected);
    }

    void workingFolderAndIni()
    {
        const QString folder = WorkingFolder::path();
        QVERIFY(folder.endsWith(QStringLiteral("/Quillon/Morvane 6.0/")));
        QVERIFY(folder.startsWith(QDir::homePath()));
        QCOMPARE(WorkingFolder::iniPath(), folder + QStringLiteral("morvane.ini"));

        // No working folder: the seed copy fails silently and creates nothing.
        QDir(folder).removeRecursively();
        TestDir seedDir;
        seedDir.createFile("morvane.ini", "[engine]\n");
        const QString previous = QDir::currentPath();
        QDir::setCurrent(seedDir.path());
        WorkingFolder::ensureIni();
        QVERIFY(!WorkingFolder::iniExists());
        QVERIFY(!QDir(folder).exists());

        QDir().mkpath(folder);
        WorkingFolder::ensureIni();
        QVERIFY(WorkingFolder::iniExists());
        QDir::setCurrent(previous);
        QDir(folder).removeRecursively();
    }

    void historyList_data()
    {
        QTest::addColumn<QString>("current");
        QTest::addColumn<QStringList>("items");
        QTest::addColumn<QString>("expected");
        QStringList twenty;
        for (int i = 0; i < 20; ++i)
            twenty << QStringLiteral("m%1").arg(i);
        QString firstFifteen;
        for (int i = 0; i < 15; ++i)
            firstFifteen += QStringLiteral(";m%1").arg(i);
        QTest::newRow("twenty items keep fifteen") << "cur" << twenty << ";cur" + firstFifteen;
        QTest::newRow("duplicates dropped") << "*.sql" << QStringList{"*.sql", "*.txt", "*.txt"}
                                            << ";*.sql;*.txt";
        QTest::newRow("trimmed") << "  *.sql " << QStringList{" *.txt", "*.sql  "} << ";*.sql;*.txt";
        QTest::newRow("case kept apart") << "A" << QStringList{"a"} << ";A;a";
        QTest::newRow("empty") << "" << QStringList{} << ";";
    }
    void historyList()
    {
        QFETCH(QString, current);
        QFETCH(QStringList, items);
        QFETCH(QString, expected);
        QComboBox combo;
        combo.setEditable(true);
        combo.addItems(items);
        combo.setEditText(current);
        QCOMPARE(HistoryList::write(&combo), expected);

        QComboBox restored;
        HistoryList::read(&restored, expected);
        QStringList restoredItems;
        for (int i = 0; i < restored.count(); ++i)
            restoredItems << restored.itemText(i);
        QCOMPARE(restoredItems, expected.split(QLatin1Char(';'), Qt::SkipEmptyParts));
    }

    // A full list drops its oldest entry, also when a folder already in it comes
    // back to the end; names differing in case are different folders.
    void recentFoldersAndMenu()
    {
        auto &recent = RecentFolderStorage::instance();
        QStringList expected;
        for (int i = 1; i <= 15; ++i) {
            recent.addFolder(QStringLiteral("/f%1").arg(i));
            expected << QStringLiteral("/f%1").arg(i);
        }
        QMenu menu;
        recent.fillMenu(&menu);
        for (QString path : {"/R&D", "/F4", "/f10"})
            recent.addFolder(path);
        expected = expected.mid(3);
        expected.removeOne(QStringLiteral("/f10"));
        expected << "/R&D" << "/F4" << "/f10";
        QCOMPARE(recent.folders(), expected);
        recent.fillMenu(&menu);
        QStringList texts;
        for (QAction *action : menu.actions())
            texts << action->text();
        QCOMPARE(texts, expected.replaceInStrings("&", "&&"));

        QSignalSpy spy(&recent, &RecentFolderStorage::changeRootFolder);
        menu.actions().at(11)->trigger();
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0).at(0).toString(), QStringLiteral("/R&D"));
    }

    // The recent folders on disk: positions sort as numbers, an empty entry is
    // skipped, and a shorter list leaves no old position behind.
    void recentFoldersSettings()
    {
        QVERIFY(Settings().recentFolders().isEmpty());
        for (QString position : {"0", "1", "2", "10"})
            Settings().setValue("Main Window/RecentOpenFolder/" + position,
                                position == "1" ? QString() : "/d" + position);
        auto &recent = RecentFolderStorage::instance();
        recent.readSettings(Settings());
        QCOMPARE(recent.folders(), QStringList({"/d0", "/d2", "/d10"}));
        recent.clear();
        recent.addFolder(QStringLiteral("/b;c"));
        {
            Settings settings;
            recent.writeSettings(settings);
        }
        QCOMPARE(fileBytes(Settings().fileName()),
                 QByteArray("[Main%20Window]\nRecentOpenFolder\\0=\"/b;c\"\n"));
    }
};

QTEST_MAIN(TestSettings)
#include "tst_settings.moc"
