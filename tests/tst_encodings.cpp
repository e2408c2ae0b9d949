#include "encodings.h"
#include "textcodec.h"
#include "testsupport.h"

#include <QTextCodec>

class TestEncodings : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { useTestSettings(); }

    void identify_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("expected");
        QTest::newRow("UTF-8 BOM") << QByteArray("\xEF\xBB\xBFselect 1;") << "UTF-8";
        QTest::newRow("UTF-32BE BOM") << QByteArray::fromHex("0000feff00000041") << "UTF-32BE";
        QTest::newRow("UTF-32LE BOM") << QByteArray::fromHex("fffe000041000000") << "UTF-32LE";
        QTest::newRow("UTF-16BE BOM") << QByteArray::fromHex("feff0041") << "UTF-16BE";
        QTest::newRow("FF FE 41 00 counts") << QByteArray::fromHex("fffe4100") << "UTF-32LE";
        QTest::newRow("UTF-16BE without BOM") << QByteArray("\0s\0e\0l", 6) << "UTF-16BE";
        QTest::newRow("ASCII") << QByteArray("select * from t;\n") << "System";
        QTest::newRow("one e-acute") << QByteArray("caf\xC3\xA9 ok\n") << "UTF-8";
        QTest::newRow("Latin-1 e-acute") << QByteArray("caf\xE9 ok\n") << "System";
        QTest::newRow("one-byte file") << QByteArray("a") << "System";
        QTest::newRow("leading continuation") << QByteArray("\x80" "abc") << "System";
        QTest::newRow("four-byte sequence") << QByteArray("a\xF0\x9F\x98\x80!") << "UTF-8";
        QTest::newRow("run of four") << QByteArray("a\xF0\x9F\x98\x80\x80!") << "System";
        QTest::newRow("wrong lead") << QByteArray("a\xE2\x82!") << "System";
        QTest::newRow("wrong lead at end tolerated") << QByteArray("a\xE2\x82") << "UTF-8";
        QTest::newRow("ASCII lead at end tolerated") << QByteArray("ab\x80") << "UTF-8";
        QTest::newRow("empty file") << QByteArray() << "UTF-8";
        QTest::newRow("binary with NULs balanced") << QByteArray::fromHex("00000102") << "System";
    }

    void identify()
    {
        QFETCH(QByteArray, bytes);
        TestDir dir;
        QTEST(identifyEncoding(dir.createFile(QStringLiteral("f ü -x.sql"), bytes)), "expected");
    }

    void identifyMissingAndEmptyPath()
    {
        QVERIFY(identifyEncoding(QString()).isNull());
        TestDir dir;
        const QString missing = identifyEncoding(dir.filePath(QStringLiteral("missing.sql")));
        QVERIFY(missing.isEmpty() && !missing.isNull());
        QVERIFY(identifyEncoding(dir.path()).isEmpty()); // a folder: nothing to read
    }

    void conversionNeeded_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("target");
        QTest::addColumn<int>("codePage");
        QTest::addColumn<bool>("needed");
        const QString f = QStringLiteral("/a/b.sql");
        QTest::newRow("System against System") << f << "System" << "System" << 0 << false;
        QTest::newRow("System against Shift_JIS on 932") << f << "System" << "Shift_JIS" << 932
                                                         << false;
        QTest::newRow("System against Shift_JIS elsewhere") << f << "System" << "Shift_JIS" << 65001
                                                            << true;
        QTest::newRow("windows-1251 against System on 1251") << f << "windows-1251" << "System" << 1251
                                                             << false;
        QTest::newRow("same names") << f << "UTF-8" << "UTF-8" << 0 << false;
        QTest::newRow("names compared case-sensitively") << f << "utf-8" << "UTF-8" << 0 << true;
        QTest::newRow("empty path") << QString() << "UTF-8" << "UTF-16LE" << 0 << false;
    }

    void conversionNeeded()
    {
        QFETCH(QString, path);
        QFETCH(QString, source);
        QFETCH(QString, target);
        QFETCH(int, codePage);
        QTEST(isEncodingConversionNeeded(path, source, target, codePage), "needed");
    }

    void codePageOfCodeset()
    {
        QCOMPARE(codePageForCodeset("utf-8"), 65001); // lower case, dash
        QCOMPARE(codePageForCodeset("Shift_JIS"), 932);
        QCOMPARE(codePageForCodeset("ISO-8859-1"), 0);
    }

    void encodedCopyRoundTrip_data()
    {
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("second");
        QTest::addColumn<QString>("text");
        const QString latin = QString::fromUtf8("select 'café' from dual;\r\n-- ünïcode\n");
        const QString cyrillic = QString::fromUtf8("select 'Привет' from t;\n");
        const QString japanese = QString::fromUtf8("select '日本語' from t;\n");
        QTest::newRow("UTF-8 via UTF-16LE") << "UTF-8" << "UTF-16LE" << latin;
        QTest::newRow("UTF-8 via UTF-32BE") << "UTF-8" << "UTF-32BE" << cyrillic;
        QTest::newRow("UTF-8 via windows-1251") << "UTF-8" << "windows-1251" << cyrillic;
        QTest::newRow("UTF-8 via Shift_JIS") << "UTF-8" << "Shift_JIS" << japanese;
        QTest::newRow("UTF-16LE via UTF-8") << "UTF-16LE" << "UTF-8" << japanese;
    }

    void encodedCopyRoundTrip()
    {
        QFETCH(QString, first);
        QFETCH(QString, second);
        QFETCH(QString, text);
        TestDir dir;
        QTextCodec::ConverterState noBom(QTextCodec::IgnoreHeader);
        const QByteArray original = QTextCodec::codecForName(first.toLatin1())
                                        ->fromUnicode(text.constData(), text.size(), &noBom);
        const QString source = dir.createFile(QStringLiteral("source file.sql"), original);
        const QString middle = dir.filePath(QStringLiteral("middle.sql"));
        const QString back = dir.filePath(QStringLiteral("back.sql"));
        QTextCodec *secondCodec = QTextCodec::codecForName(second.toLatin1());
        createEncodedCopyFile(source, middle, first, second);
        QCOMPARE(secondCodec->toUnicode(fileBytes(middle)), text);
        createEncodedCopyFile(middle, back, second, first);
        QCOMPARE(fileBytes(back), original);
        // Copying a file onto itself re-encodes it in place.
        createEncodedCopyFile(back, back, first, second);
        QCOMPARE(secondCodec->toUnicode(fileBytes(back)), text);
    }

    void encodedCopyFailures()
    {
        TestDir dir;
        const QString target = dir.createFile(QStringLiteral("target.sql"), "keep me");
        // An unreadable source leaves the target untouched.
        createEncodedCopyFile(dir.filePath(QStringLiteral("missing.sql")), target,
                              QStringLiteral("UTF-8"), QStringLiteral("UTF-16LE"));
        QCOMPARE(fileBytes(target), QByteArray("keep me"));
        // A target whose folder vanished is simply not written.
        const QString nowhere = dir.filePath(QStringLiteral("gone/t.sql"));
        createEncodedCopyFile(target, nowhere, QStringLiteral("UTF-8"), QStringLiteral("UTF-8"));
        QVERIFY(!QFile::exists(nowhere));
    }

    void decode_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QByteArray>("chosen");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("codec");
        QTest::addColumn<int>("markSize");
        QTest::addColumn<bool>("binary");
        QTest::addColumn<bool>("invalid");
        const QString sql = QStringLiteral("select 1;");
        QTest::newRow("UTF-8 mark beats the chosen codec")
            << QByteArray("\xEF\xBB\xBFselect 1;") << QByteArray("windows-1251") << sql
            << QByteArray("UTF-8") << 3 << false << false;
        // Unlike identifyEncoding, reading a file takes FF FE alone for the UTF-16LE mark.
        QTest::newRow("FF FE alone is UTF-16LE")
            << QByteArray::fromHex("fffe41000d000a00") << QByteArray("System")
            << QStringLiteral("A\r\n") << QByteArray("UTF-16LE") << 2 << false << false;
        QTest::newRow("FF FE 00 00 is UTF-32LE")
            << QByteArray::fromHex("fffe000041000000") << QByteArray("System") << QStringLiteral("A")
            << QByteArray("UTF-32LE") << 4 << false << false;
        QTest::newRow("zero bytes of UTF-16 text are not binary")
            << QByteArray("\0s\0q\0l", 6) << QByteArray("UTF-16BE") << QStringLiteral("sql")
            << QByteArray("UTF-16BE") << 0 << false << false;
        QTest::newRow("NUL in UTF-8 is binary")
            << QByteArray("ab\0c", 4) << QByteArray("UTF-8") << QString::fromLatin1("ab\0c", 4)
            << QByteArray("UTF-8") << 0 << true << false;
        QTest::newRow("Latin-1 byte in UTF-8")
            << QByteArray("caf\xE9 ok") << QByteArray("UTF-8") << QString::fromUtf8("caf\uFFFD ok")
            << QByteArray("UTF-8") << 0 << false << true;
        QTest::newRow("sequence cut off at the end") << QByteArray("caf\xC3") << QByteArray("UTF-8")
                                                     << QString::fromUtf8("caf\uFFFD")
                                                     << QByteArray("UTF-8") << 0 << false << true;
        QTest::newRow("odd byte after UTF-16 text")
            << QByteArray("\0a\0", 3) << QByteArray("UTF-16BE") << QString::fromUtf8("a\uFFFD")
            << QByteArray("UTF-16BE") << 0 << false << true;
        QTest::newRow("unknown name reads as the machine's codec")
            << QByteArray("select 1;") << QByteArray("no-such-codec") << sql
            << QByteArray("no-such-codec") << 0 << false << false;
    }

    void decode()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QByteArray, chosen);
        QFETCH(QString, text);
        QFETCH(QByteArray, codec);
        QFETCH(int, markSize);
        QFETCH(bool, binary);
        const TextCodec::Decoded decoded = TextCodec::decode(bytes, chosen);
        QCOMPARE(decoded.text, text);
        QCOMPARE(decoded.codec, codec);
        QCOMPARE(decoded.mark.bytes, bytes.left(markSize));
        QCOMPARE(decoded.binary, binary);
        QTEST(decoded.invalidCharacters > 0, "invalid");
    }

    void dominantLineEnd_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("lineEnd");
        const auto row = [](const char *name, const char *text, TextCodec::LineEnd end) {
            QTest::newRow(name) << QString::fromLatin1(text) << int(end);
        };
        row("no line end", "select 1;", TextCodec::LineEnd::Lf);
        row("CR LF only", "a\r\nb\r\n", TextCodec::LineEnd::CrLf);
        row("CR LF wins a tie", "a\r\nb\nc", TextCodec::LineEnd::CrLf);
        row("LF majority", "a\nb\nc\r\nd", TextCodec::LineEnd::Lf);
        row("bare CR majority", "a\rb\rc\n", TextCodec::LineEnd::Cr);
        row("bare CR ties LF", "a\rb\n", TextCodec::LineEnd::Lf);
    }

    void dominantLineEnd()
    {
        QFETCH(QString, text);
        QTEST(int(TextCodec::dominantLineEnd(text)), "lineEnd");
    }
};

QTEST_GUILESS_MAIN(TestEncodings)
#include "tst_encodings.moc"
