#include "filenamecodec.h"
#include "testsupport.h"

#include <QDirIterator>
#include <QTextDecoder>

#include <unistd.h>

class TestFileNameCodec : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase()
    {
        useTestSettings();
        if (!dynamic_cast<FileNameCodec *>(QTextCodec::codecForLocale()))
            QSKIP("the locale is not UTF-8");
    }

    void roundTrip_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("shown");
        const QString bad(QChar::ReplacementCharacter);
        QTest::newRow("plain") << QByteArray("orders.sql") << "orders.sql";
        QTest::newRow("Cyrillic") << QByteArray("Клиенты.sql") << QString::fromUtf8("Клиенты.sql");
        QTest::newRow("four-byte character")
                << QByteArray("\xF0\x9F\x93\x84.sql") << QString::fromUtf8("\xF0\x9F\x93\x84.sql");
        QTest::newRow("Latin-1 byte") << QByteArray("caf\xE9.sql") << "caf" + bad + ".sql";
        QTest::newRow("byte FF") << QByteArray("bad\xFFname.sql") << "bad" + bad + "name.sql";
        QTest::newRow("overlong slash") << QByteArray("a\xC0\xAF") << "a" + bad + bad;
        QTest::newRow("encoded surrogate")
                << QByteArray("x\xED\xA0\x80y") << "x" + bad + bad + bad + "y";
        QTest::newRow("past U+10FFFF") << QByteArray("\xF4\x90\x80\x80") << bad + bad + bad + bad;
        QTest::newRow("cut at the end") << QByteArray("tail\xE2\x82") << "tail" + bad + bad;
        QTest::newRow("byte-order mark kept")
                << QByteArray("\xEF\xBB\xBF" "bom.sql") << QChar(0xFEFF) + QStringLiteral("bom.sql");
    }

    void roundTrip()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, shown);

        const QString name = QFile::decodeName(bytes);
        QCOMPARE(QFile::encodeName(name), bytes);
        QCOMPARE(FileNameCodec::displayName(name), shown);
        QCOMPARE(FileNameCodec::hasRawBytes(name), shown.contains(QChar::ReplacementCharacter));
        // File contents in the machine's encoding still report such bytes as invalid.
        QTextCodec::ConverterState state;
        FileNameCodec::textCodec()->toUnicode(bytes.constData(), bytes.size(), &state);
        QCOMPARE(state.invalidChars + state.remainingChars > 0, FileNameCodec::hasRawBytes(name));

        // Fed a byte at a time, a decoder gives the same text as the whole string; the final
        // dot ends a sequence left open at the end.
        QTextDecoder decoder(QTextCodec::codecForLocale(), QTextCodec::IgnoreHeader);
        QString pieces;
        for (char byte : bytes + '.')
            pieces += decoder.toUnicode(&byte, 1);
        QCOMPARE(pieces, name + '.');
    }

    void realFiles_data() { roundTrip_data(); }

    void realFiles()
    {
        QFETCH(QByteArray, bytes);
        TestDir dir;
        dir.createRawFile(bytes, "go");
        // A decoy whose name really holds U+FFFD must never be the file acted on.
        dir.createFile(FileNameCodec::displayName(QFile::decodeName(bytes)) + ".decoy", "decoy");

        // Listed under a mask, and the listed name opens, renames and leaves the decoy alone.
        const QStringList listed = QDir(dir.path()).entryList({"*"}, QDir::Files, QDir::Name);
        QCOMPARE(listed.size(), 2);
        QCOMPARE(QFile::encodeName(listed.first()), bytes);
        QFile file(dir.filePath(listed.first()));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("go"));
        file.close();
        QVERIFY(QFile::rename(file.fileName(), dir.filePath("renamed")));
        QVERIFY(::access((QFile::encodeName(dir.path()) + '/' + bytes).constData(), F_OK) != 0);
    }
};

QTEST_GUILESS_MAIN(TestFileNameCodec)
#include "tst_filenamecodec.moc"
