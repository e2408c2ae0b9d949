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
        Settings settings;
        settings.setValue(QStringLiteral("probe"), 1);
        settings.sync();
        QVERIFY(settings.fileName().endsWith(
            QStringLiteral("/Quillon Systems Ltd./Morvane 6.0/Qt Tools/Morvane Navarch.conf")));
        QVERIFY(!settings.fileName().startsWith(QDir::homePath() + QStringLiteral("/.config/")));
        QVERIFY(QFile::exists(settings.fileName()));
    }

    void windowsWorkingFolder_data()
    {
        QTest::addColumn<int>("version");
        QTest::addColumn<QString>("documents");
        QTest::newRow("Windows 7") << 0x0090 << "My Documents";
        QTest::newRow("Windows 8") << WorkingFolder::Windows8 << "Documents";
        QTest::newRow("Windows 8.1") << 0x00b0 << "My Documents";
        QTest::newRow("Windows 10") << 0x00c0 << "My Documents";
        QTest::newRow("not Windows") << 0 << "My Documents";
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

    void recentFoldersLimit()
    {
        auto &recent = RecentFolderStorage::instance();
        for (int i = 1; i <= 16; ++i)
            recent.addFolder(QStringLiteral("/f%1").arg(i));
        QCOMPARE(recent.folders().size(), 15);
        QCOMPARE(recent.folders().first(), QStringLiteral("/f2"));
        QCOMPARE(recent.folders().last(), QStringLiteral("/f16"));

        // Re-adding in a full list drops the oldest entry as well as the duplicate.
        recent.addFolder(QStringLiteral("/f10"));
        QCOMPARE(recent.folders().size(), 14);
        QCOMPARE(recent.folders().first(), QStringLiteral("/f3"));
        QCOMPARE(recent.folders().last(), QStringLiteral("/f10"));
        QCOMPARE(recent.folders().count(QStringLiteral("/f10")), 1);
    }

    void recentFoldersMoveAndMenu()
    {
        auto &recent = RecentFolderStorage::instance();
        recent.addFolder(QStringLiteral("/a"));
        recent.addFolder(QStringLiteral("/b"));
        recent.addFolder(QStringLiteral("/A"));
        recent.addFolder(QStringLiteral("/R&D"));
        QMenu menu;
        recent.fillMenu(&menu);
        recent.addFolder(QStringLiteral("/a"));
        recent.fillMenu(&menu);
        QStringList texts;
        for (QAction *action : menu.actions())
            texts << action->text();
        QCOMPARE(texts, QStringList({"/b", "/A", "/R&&D", "/a"}));

        QSignalSpy spy(&recent, &RecentFolderStorage::changeRootFolder);
        menu.actions().at(2)->trigger();
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0).at(0).toString(), QStringLiteral("/R&D"));
    }

    void recentFoldersSettings()
    {
        {
            Settings settings;
            settings.beginGroup(QStringLiteral("Main Window/RecentOpenFolder"));
            for (int i = 0; i < 12; ++i)
                settings.setValue(QString::number(i), i == 5 ? QString() : QStringLiteral("/d%1").arg(i));
        }
        auto &recent = RecentFolderStorage::instance();
        {
            Settings settings;
            settings.beginGroup(QStringLiteral("Main Window"));
            recent.readSettings(settings);
        }
        // Keys come back in list order and the empty value is skipped.
        QCOMPARE(recent.folders(), QStringList({"/d0", "/d1", "/d2", "/d3", "/d4", "/d6", "/d7",
                                                "/d8", "/d9", "/d10", "/d11"}));
        recent.clear();
        recent.addFolder(QStringLiteral("/only"));
        {
            Settings settings;
            settings.beginGroup(QStringLiteral("Main Window"));
            recent.writeSettings(settings);
        }
        Settings settings;
        settings.beginGroup(QStringLiteral("Main Window/RecentOpenFolder"));
        QCOMPARE(settings.childKeys(), QStringList{"0"});
        QCOMPARE(settings.value("0").toString(), QStringLiteral("/only"));
    }
};

QTEST_MAIN(TestSettings)
#include "tst_settings.moc"
