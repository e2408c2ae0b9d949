#include "edit.h"
#include "testsupport.h"

#include <Qsci/qsciscintilla.h>

#include <QAction>
#include <QApplication>
#include <QBoxLayout>
#include <QMessageBox>
#include <QPushButton>
#include <QTextCodec>
#include <QTimer>
#include <QWidget>

namespace {

// The debug traces are part of the contract, and CTest switches debug output off:
// turn it back on before the application reads its logging rules.
const bool debugOutputOn = qputenv("QT_LOGGING_RULES", "*.debug=true;qt.*.debug=false");

/**
 * Answers every message box while it lives: with @p button when the box has it,
 * else with the box's default button. Records the first box's text and buttons.
 */
class BoxAnswer : public QObject
{
public:
    explicit BoxAnswer(QMessageBox::StandardButton button)
        : m_button(button)
    {
        auto *timer = new QTimer(this);
        connect(timer, &QTimer::timeout, this, [this] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (!box || box == m_last)
                return;
            m_last = box;
            if (count++ == 0) {
                text = box->text();
                buttons = box->standardButtons();
            }
            QAbstractButton *button = box->button(m_button);
            if (!button)
                button = box->defaultButton();
            if (!button)
                button = box->buttons().value(0);
            button->click();
        });
        timer->start(10);
    }
    QString text;
    QMessageBox::StandardButtons buttons;
    int count = 0;

private:
    QMessageBox::StandardButton m_button;
    QPointer<QMessageBox> m_last;
};

QByteArray readAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable>");
}

} // namespace

class TestEdit : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void languageChoice_data();
    void languageChoice();
    void savePreservesEncodingAndLineEnds_data();
    void savePreservesEncodingAndLineEnds();
    void operationsWithoutEditor();
    void lineOperations();
    void badInputOpensReadOnly_data();
    void badInputOpensReadOnly();
    void hugeFileOpensPlain();
    void failedSaveKeepsOriginalAndEdit_data();
    void failedSaveKeepsOriginalAndEdit();
    void removedFileAsksBeforeRecreating();
    void savePrompt_data();
    void savePrompt();
    void discardPrompt();
    void closeRefusedKeepsEditor();
    void searchLinksAndMode();
    void escapeAsksToClose();
    void fontSize();

private:
    Edit *open(const QString &path, const QByteArray &codec = "UTF-8", bool readOnly = false);

    TestDir *m_dir = nullptr;
    QWidget *m_host = nullptr;
    QVBoxLayout *m_layout = nullptr;
    Edit *m_edit = nullptr;
};

void TestEdit::initTestCase()
{
    useTestSettings();
}

void TestEdit::init()
{
    m_dir = new TestDir;
    m_host = new QWidget;
    m_layout = new QVBoxLayout(m_host);
    m_host->resize(600, 400);
    m_host->show();
}

void TestEdit::cleanup()
{
    delete m_edit;
    m_edit = nullptr;
    delete m_host;
    delete m_dir;
}

Edit *TestEdit::open(const QString &path, const QByteArray &codec, bool readOnly)
{
    delete m_edit;
    m_edit = new Edit(1, nullptr);
    m_edit->setHostLayout(m_layout);
    m_edit->setCodec(codec);
    m_edit->setReadOnly(readOnly);
    m_edit->setFile(path);
    m_edit->execute();
    return m_edit;
}

void TestEdit::languageChoice_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("conversion");
    QTest::addColumn<QString>("language");
    QTest::newRow("sql file") << "a.sql" << "" << "SQL";
    QTest::newRow("upper-case extension") << "A.SQL" << "Java" << "SQL";
    QTest::newRow("C header") << "x.h" << "" << "C++";
    QTest::newRow("Pro*C") << "x.pc" << "" << "C++";
    QTest::newRow("java") << "X.java" << "" << "Java";
    QTest::newRow("C#") << "x.cs" << "" << "C#";
    QTest::newRow("Delphi form") << "x.dfm" << "" << "Pascal";
    QTest::newRow("python") << "x.py" << "" << "Python";
    QTest::newRow("perl") << "x.pl" << "" << "Perl";
    QTest::newRow("aspx") << "x.aspx" << "" << "HTML";
    QTest::newRow("wsdl") << "x.wsdl" << "" << "XML";
    QTest::newRow("ksh") << "x.ksh" << "" << "Bash";
    QTest::newRow("txt by app direction") << "x.txt" << "Java" << "Java";
    QTest::newRow("txt by database direction") << "x.txt" << "Oracle" << "SQL";
    QTest::newRow("no extension, no direction") << "README" << "" << "";
}

void TestEdit::languageChoice()
{
    QFETCH(QString, file);
    QFETCH(QString, conversion);
    QFETCH(QString, language);
    QCOMPARE(Edit::languageName(file, conversion), language);
}

void TestEdit::savePreservesEncodingAndLineEnds_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<QByteArray>("bom");
    QTest::addColumn<QString>("text");
    const QString text = QString::fromUtf8("select 'café';\r\nfrom dual\n-- Привет\rend");
    QTest::newRow("UTF-8 with BOM, mixed line ends")
        << QByteArray("UTF-8") << QByteArray("\xEF\xBB\xBF") << text;
    QTest::newRow("UTF-8 without BOM") << QByteArray("UTF-8") << QByteArray() << text;
    QTest::newRow("UTF-16LE BOM") << QByteArray("UTF-16LE") << QByteArray("\xFF\xFE") << text;
    QTest::newRow("UTF-16BE BOM") << QByteArray("UTF-16BE") << QByteArray("\xFE\xFF") << text;
    QTest::newRow("UTF-32LE BOM") << QByteArray("UTF-32LE")
                                  << QByteArray("\xFF\xFE\x00\x00", 4) << text;
    QTest::newRow("windows-1251, CRLF")
        << QByteArray("windows-1251") << QByteArray()
        << QString::fromUtf8("select 'Привет'\r\nfrom t\r\n");
    QTest::newRow("Shift_JIS") << QByteArray("Shift_JIS") << QByteArray()
                               << QString::fromUtf8("select '日本語'\nfrom t\n");
}

void TestEdit::savePreservesEncodingAndLineEnds()
{
    QFETCH(QByteArray, codec);
    QFETCH(QByteArray, bom);
    QFETCH(QString, text);
    QTextCodec *c = QTextCodec::codecForName(codec);
    QTextCodec::ConverterState noHeader(QTextCodec::IgnoreHeader);
    const QByteArray body = c->fromUnicode(text.constData(), text.size(), &noHeader);
    const QString path = m_dir->createFile(QStringLiteral("my file -x.sql"), bom + body);
    // With a BOM the file's own mark wins over the chosen codec.
    Edit *edit = open(path, bom.isEmpty() ? codec : QByteArray("windows-1251"));
    QVERIFY(edit->errorString().isEmpty());
    QVERIFY(!edit->hasDecodingErrors());
    QCOMPARE(edit->text(), text);
    QCOMPARE(edit->codecName(), codec);

    edit->editorWidget()->insertAt(QStringLiteral("X"), 1, 0);
    QVERIFY(edit->isModified());
    QVERIFY(edit->save());
    QVERIFY(!edit->isModified());
    QString expected = text;
    expected.insert(text.indexOf(QLatin1Char('\n')) + 1, QLatin1Char('X'));
    QTextCodec::ConverterState again(QTextCodec::IgnoreHeader);
    QCOMPARE(readAll(path), bom + c->fromUnicode(expected.constData(), expected.size(), &again));
}

void TestEdit::operationsWithoutEditor()
{
    Edit edit(1, nullptr);
    QCOMPARE(edit.lineCount(), 0);
    QVERIFY(edit.lineText(0).isEmpty());
    QVERIFY(edit.text().isEmpty());
    edit.setText(QStringLiteral("x"));
    edit.markLine(0);
    edit.goToLine(0);
    edit.revert();
    QVERIFY(!edit.isModified());
    QVERIFY(edit.name().isEmpty());
    QVERIFY(!edit.verticalScrollBar());
    QVERIFY(!edit.hasFocus());
    QVERIFY(edit.savePrompt(QStringLiteral("?")));
    QVERIFY(edit.closeEditor());
    QVERIFY(!edit.save());
}

void TestEdit::lineOperations()
{
    const QString path = m_dir->createFile(QStringLiteral("a.sql"), "one\r\ntwo\nthree");
    Edit *edit = open(path);
    QCOMPARE(edit->lineCount(), 3);
    QCOMPARE(edit->lineText(0), QStringLiteral("one"));
    QCOMPARE(edit->lineText(1), QStringLiteral("two"));
    QCOMPARE(edit->lineText(2), QStringLiteral("three"));
    QCOMPARE(edit->lineText(3), QString());
    QCOMPARE(edit->name(), QStringLiteral("a.sql"));
    QCOMPARE(edit->language(), QStringLiteral("SQL"));
    QCOMPARE(m_host->focusWidget(), edit->editorWidget());

    edit->markLine(1);
    edit->markLine(-1);
    edit->markLine(3);
    QVERIFY(edit->isLineMarked(1));
    QVERIFY(!edit->isLineMarked(0));
    edit->goToLine(2);
    QCOMPARE(edit->currentLine(), 2);
    edit->goToLine(3); // past the end: ignored
    QCOMPARE(edit->currentLine(), 2);

    edit->setReadOnly(true);
    edit->setText(QStringLiteral("a\nb\n"));
    QCOMPARE(edit->lineCount(), 3);
    QVERIFY(!edit->isModified());
    QVERIFY(edit->isReadOnly());
}

void TestEdit::badInputOpensReadOnly_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<bool>("binary");
    QTest::newRow("NUL bytes") << QByteArray("abc\0\x01\x02" "def\n", 10) << QByteArray("UTF-8")
                               << true;
    QTest::newRow("invalid UTF-8") << QByteArray("caf\xE9 \xFF\xFE ok\n") << QByteArray("UTF-8")
                                   << false;
    QTest::newRow("lone continuation byte") << QByteArray("a\x80" "b\n") << QByteArray("UTF-8")
                                            << false;
}

void TestEdit::badInputOpensReadOnly()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, codec);
    QFETCH(bool, binary);
    const QString path = m_dir->createFile(QStringLiteral("odd.sql"), bytes);
    Edit *edit = open(path, codec);
    QVERIFY(edit->hasDecodingErrors());
    QCOMPARE(edit->isBinary(), binary);
    QVERIFY(edit->isReadOnly());
    QVERIFY(edit->lineCount() >= 1);
    if (binary)
        QVERIFY(edit->text().contains(QChar(0x2400)));
    // Saving is refused so that the undecodable bytes survive.
    BoxAnswer ok(QMessageBox::Ok);
    QVERIFY(!edit->save());
    QCOMPARE(ok.count, 1);
    QCOMPARE(readAll(path), bytes);
}

void TestEdit::hugeFileOpensPlain()
{
    QByteArray line("insert into t values (1, 'abcdefghijklmnopqrstuvwxyz0123456789');\n");
    const int lines = (50 << 20) / line.size();
    QByteArray data;
    data.reserve(lines * line.size());
    for (int i = 0; i < lines; ++i)
        data += line;
    const QString path = m_dir->createFile(QStringLiteral("big.sql"), data);
    data.clear();
    Edit *edit = open(path);
    QVERIFY(edit->errorString().isEmpty());
    QCOMPARE(edit->lineCount(), lines + 1);
    QVERIFY(edit->language().isEmpty()); // no highlighting for files this size
    QCOMPARE(edit->lineText(lines - 1), QString::fromLatin1(line.trimmed()));

    // Past the editor's limit: a clear message and no editor text.
    QVERIFY(Edit::maximumFileSize() < (qint64(1) << 40));
    const QString missing = m_dir->filePath(QStringLiteral("missing.sql"));
    Edit *other = open(missing);
    QVERIFY(other->errorString().contains(QLatin1String("missing.sql")));
}

void TestEdit::failedSaveKeepsOriginalAndEdit_data()
{
    QTest::addColumn<QString>("damage");
    QTest::newRow("file made read-only") << "chmod";
    QTest::newRow("folder replaced by a file") << "folder";
}

void TestEdit::failedSaveKeepsOriginalAndEdit()
{
    QFETCH(QString, damage);
    const QString folder = m_dir->createDir(QStringLiteral("sub dir"));
    const QString path = m_dir->createFile(QStringLiteral("sub dir/-a.sql"), "original\n");
    Edit *edit = open(path);
    edit->editorWidget()->insertAt(QStringLiteral("changed "), 0, 0);
    if (damage == QLatin1String("chmod")) {
        QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::ReadGroup));
    } else {
        QVERIFY(QDir(folder).removeRecursively());
        m_dir->createFile(QStringLiteral("sub dir"), "I am a file now");
    }
    BoxAnswer ok(QMessageBox::Yes); // save again where the file was, then fail
    QVERIFY(!edit->save());
    QVERIFY(ok.count >= 1);
    QVERIFY(!edit->errorString().isEmpty());
    QVERIFY(edit->isModified());
    QCOMPARE(edit->lineText(0), QStringLiteral("changed original"));
    if (damage == QLatin1String("chmod"))
        QCOMPARE(readAll(path), QByteArray("original\n"));
    else
        QCOMPARE(readAll(m_dir->filePath(QStringLiteral("sub dir"))), QByteArray("I am a file now"));
}

void TestEdit::removedFileAsksBeforeRecreating()
{
    const QString path = m_dir->createFile(QStringLiteral("gone.sql"), "a\n");
    Edit *edit = open(path);
    edit->editorWidget()->insertAt(QStringLiteral("b"), 0, 0);
    QVERIFY(QFile::remove(path));
    {
        BoxAnswer no(QMessageBox::No);
        QVERIFY(!edit->save());
        QVERIFY(no.text.contains(QLatin1String("removed")));
        QVERIFY(!QFile::exists(path));
        QVERIFY(edit->isModified());
    }
    BoxAnswer yes(QMessageBox::Yes);
    QVERIFY(edit->save());
    QCOMPARE(readAll(path), QByteArray("ba\n"));
}

void TestEdit::savePrompt_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<bool>("result");
    QTest::addColumn<QByteArray>("fileAfter");
    QTest::addColumn<QString>("textAfter");
    QTest::newRow("Save") << int(QMessageBox::Save) << true << QByteArray("xa\n") << "xa\n";
    QTest::newRow("Discard") << int(QMessageBox::Discard) << true << QByteArray("a\n") << "a\n";
    QTest::newRow("Cancel") << int(QMessageBox::Cancel) << false << QByteArray("a\n") << "xa\n";
}

void TestEdit::savePrompt()
{
    QFETCH(int, answer);
    QFETCH(bool, result);
    QFETCH(QByteArray, fileAfter);
    QFETCH(QString, textAfter);
    const QString path = m_dir->createFile(QStringLiteral("p.sql"), "a\n");
    Edit *edit = open(path);
    QVERIFY(edit->savePrompt(QStringLiteral("unchanged: no question"))); // not modified
    edit->editorWidget()->insertAt(QStringLiteral("x"), 0, 0);
    BoxAnswer box(static_cast<QMessageBox::StandardButton>(answer));
    QCOMPARE(edit->savePrompt(QStringLiteral("The document p.sql has been modified.")), result);
    QCOMPARE(box.buttons, QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    QCOMPARE(readAll(path), fileAfter);
    QCOMPARE(edit->text(), textAfter);
}

void TestEdit::discardPrompt()
{
    const QString path = m_dir->createFile(QStringLiteral("d.sql"), "a\n");
    Edit *edit = open(path);
    edit->editorWidget()->insertAt(QStringLiteral("x"), 0, 0);
    edit->editorWidget()->insertAt(QStringLiteral("y"), 1, 0);
    {
        BoxAnswer cancel(QMessageBox::Cancel);
        QVERIFY(!edit->discardPrompt(QStringLiteral("Discard?")));
        QCOMPARE(cancel.buttons, QMessageBox::Discard | QMessageBox::Cancel);
        QVERIFY(edit->isModified());
    }
    BoxAnswer discard(QMessageBox::Discard);
    QVERIFY(edit->discardPrompt(QStringLiteral("Discard?")));
    QCOMPARE(edit->text(), QStringLiteral("a\n"));
    QVERIFY(!edit->isModified());
}

void TestEdit::closeRefusedKeepsEditor()
{
    const QString path = m_dir->createFile(QStringLiteral("c.sql"), "a\n");
    Edit *edit = open(path);
    edit->editorWidget()->insertAt(QStringLiteral("x"), 0, 0);
    {
        BoxAnswer cancel(QMessageBox::Cancel);
        QVERIFY(!edit->closeEditor());
        QCOMPARE(cancel.text, QStringLiteral("The document c.sql has been modified.<br/>Save "
                                             "changes to the file before closing?"));
        QVERIFY(edit->widget()->isVisible());
    }
    BoxAnswer save(QMessageBox::Save);
    QVERIFY(edit->closeEditor());
    QVERIFY(!edit->widget()->isVisible());
    QCOMPARE(readAll(path), QByteArray("xa\n"));
}

void TestEdit::searchLinksAndMode()
{
    const QString path =
        m_dir->createFile(QStringLiteral("s.sql"), "select a\nfrom t\nSELECT <b> select\n");
    Edit *edit = open(path);
    QSignalSpy spy(edit, &Edit::searchResults);
    edit->findAction()->trigger();
    edit->setSearchText(QStringLiteral("select"));
    edit->search();
    QCOMPARE(spy.count(), 1);
    QCOMPARE(edit->searchLinks(),
             QStringList({QStringLiteral("<a href=#1>1 : select a</a>"),
                          QStringLiteral("<a href=#3>3 : SELECT &lt;b&gt; select</a>"),
                          QStringLiteral("<a href=#3>3 : SELECT &lt;b&gt; select</a>")}));
    QVERIFY(edit->findNext());

    QTest::ignoreMessage(QtDebugMsg, "SetSearchMode false");
    edit->setSearchMode(false);
    QVERIFY(!edit->findAction()->isEnabled());
    QVERIFY(!edit->findNextAction()->isEnabled());
    QTest::ignoreMessage(QtDebugMsg, "SetSearchMode true");
    edit->setSearchMode(true);
    QVERIFY(edit->findAction()->isEnabled());
}

void TestEdit::escapeAsksToClose()
{
    const QString path = m_dir->createFile(QStringLiteral("e.sql"), "a\n");
    Edit *edit = open(path);
    QSignalSpy hide(edit, &Edit::hide);
    QSignalSpy conversion(edit, &Edit::startConversion);
    QTest::keyClick(edit->editorWidget(), Qt::Key_F5);
    QCOMPARE(conversion.count(), 1);
    edit->findAction()->trigger();
    QTest::keyClick(edit->editorWidget(), Qt::Key_Escape); // closes the search bar only
    QTest::keyClick(edit->editorWidget(), Qt::Key_Escape);
    QVERIFY(hide.wait());
    QCOMPARE(hide.count(), 1);
}

void TestEdit::fontSize()
{
    const QString path = m_dir->createFile(QStringLiteral("f.sql"), "a\n");
    Edit *edit = open(path);
    edit->setFontSize(14);
    QCOMPARE(edit->fontSize(), 14);
    edit->zoomIn();
    QCOMPARE(edit->fontSize(), 15);
    edit->zoomOut();
    edit->zoomOut();
    QCOMPARE(edit->fontSize(), 13);
    edit->setFontSize(1);
    QVERIFY(edit->fontSize() >= 4);
}

QTEST_MAIN(TestEdit)
#include "tst_edit.moc"
