#include "testsupport.h"

#include "copyobjects.h"

namespace {
/** What a copy left behind: a file's bytes, or "<empty dir>". */
QByteArray contents(const QString &path)
{
    if (QFileInfo(path).isDir())
        return QDir(path).isEmpty() ? QByteArray("<empty dir>") : QByteArray("<dir>");
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

QStringList entries(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}
}  // namespace

class TestFileOperations : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { useTestSettings(); }
    void copyOne_data();
    void copyOne();
    void copySeveral();
    void cancelDuringCopy();
};

void TestFileOperations::copyOne_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("edited");  // empty: keep the proposal
    QTest::addColumn<QString>("target");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("file") << "a.sql" << "" << "a.sql" << QByteArray("alpha");
    QTest::newRow("onto an existing file") << "same.sql" << "" << "same.sql" << QByteArray("old");
    QTest::newRow("renamed in the dialog") << "a.sql" << "other name.sql" << "other name.sql"
                                           << QByteArray("alpha");
    QTest::newRow("folder creates an empty folder") << "folder" << "" << "folder"
                                                    << QByteArray("<empty dir>");
    QTest::newRow("no suffix, leading dash") << "-dash" << "" << "-dash" << QByteArray("dash");
}

void TestFileOperations::copyOne()
{
    QFETCH(QString, source);
    QFETCH(QString, edited);
    QFETCH(QString, target);
    TestDir dir;
    dir.createFile("src/a.sql", "alpha");
    dir.createFile("src/-dash", "dash");
    dir.createFile("src/same.sql", "new");
    dir.createFile("dst/same.sql", "old");
    dir.createFile("src/folder/inside.sql", "in");
    const QString dst = dir.filePath("dst");

    CopyObjects copy({dir.filePath("src/" + source)}, dst);
    QString proposed;
    copy.setPrompt([&](QString &typed) {
        proposed = typed;
        if (!edited.isEmpty())
            typed = dst + QLatin1Char('/') + edited;
        return true;
    });
    QStringList shown;
    copy.setNotify([&shown](const QString &message) { shown << message; });
    QVERIFY(copy.execute());
    QCOMPARE(proposed, QDir::toNativeSeparators(dst + QLatin1Char('/') + source));
    const QString path = dst + QLatin1Char('/') + target;
    const QString exists = QStringLiteral("File exist '%1'").arg(QDir::toNativeSeparators(path));
    QCOMPARE(shown, target == "same.sql" ? QStringList{exists} : QStringList());
    QTEST(contents(path), "content");
    // Nothing else appeared in the target folder (no temporary files).
    QCOMPARE(entries(dst).size(), target == "same.sql" ? 1 : 2);
}

void TestFileOperations::copySeveral()
{
    TestDir dir;
    const QString a = dir.createFile("src/a.sql", "a");
    const QString b = dir.createFile("src/b.sql", "b");
    dir.createFile("dst/b.sql", "old");
    const QString dst = dir.filePath("dst");
    QStringList shown;
    QString proposed;
    CopyObjects copy({a, b, dir.createDir("src/f")}, dst);
    copy.setPrompt([&proposed](QString &target) {
        proposed = target;
        return true;
    });
    copy.setNotify([&shown](const QString &message) { shown << message; });
    // The message follows every copy that worked; the result is true when the last one failed.
    QVERIFY(!copy.execute());
    QCOMPARE(proposed, QDir::toNativeSeparators(dst));
    QCOMPARE(shown, QStringList({CopyObjects::existsMessage(dst + "/a.sql"),
                                 CopyObjects::existsMessage(dst + "/f")}));
    QCOMPARE(contents(dst + "/f"), QByteArray("<empty dir>"));
    QCOMPARE(contents(dst + "/b.sql"), QByteArray("old"));
    CopyObjects again({a, b}, dst);
    again.setPrompt([](QString &) { return true; });
    QVERIFY(again.execute());

    // Cancelled in the dialog, nothing happens.
    const QString other = dir.createDir("other");
    for (const QStringList &sources : {QStringList{a}, QStringList{a, b}}) {
        CopyObjects cancelled(sources, other);
        cancelled.setPrompt([](QString &) { return false; });
        QVERIFY(!cancelled.execute());
    }
    QVERIFY(QDir(other).isEmpty());
}

void TestFileOperations::cancelDuringCopy()
{
    TestDir dir;
    QStringList sources;
    for (int i = 0; i < 40; ++i)
        sources << dir.createFile(QStringLiteral("src/f%1.bin").arg(i), QByteArray(4 << 20, 'x'));
    const QString dst = dir.createDir("dst");
    CopyObjects copy(sources, dst);
    copy.setShowProgress(false);
    copy.setPrompt([](QString &) { return true; });
    QStringList shown;
    copy.setNotify([&shown](const QString &message) { shown << message; });
    // Cancel as soon as the first progress report arrives (as Ctrl+K would).
    connect(&copy, &CopyObjects::progress, &copy, &CopyObjects::cancel);
    QVERIFY(!copy.execute());
    QVERIFY(shown.isEmpty());
    // What was copied is whole; the file in progress left nothing behind.
    const QStringList left = entries(dst);
    QVERIFY(left.size() < sources.size());
    for (const QString &name : left) {
        QVERIFY2(!name.startsWith(QLatin1Char('.')), qPrintable(name));
        QCOMPARE(QFileInfo(dst + QLatin1Char('/') + name).size(), qint64(4 << 20));
    }
}

QTEST_MAIN(TestFileOperations)
#include "tst_fileoperations.moc"
