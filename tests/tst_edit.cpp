#include "edit.h"
#include "largefileview.h"
#include "testsupport.h"

#include <Qsci/qsciscintilla.h>

#include <QAction>
#include <QApplication>
#include <QBoxLayout>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTextCodec>
#include <QWidget>

namespace {

// The debug traces are part of the contract, and CTest switches debug output off:
// turn it back on before the application reads its logging rules.
const bool debugOutputOn = qputenv("QT_LOGGING_RULES", "*.debug=true;qt.*.debug=false");

QByteArray encoded(QTextCodec *codec, const QString &text)
{
    QTextCodec::ConverterState noHeader(QTextCodec::IgnoreHeader);
    return codec->fromUnicode(text.constData(), text.size(), &noHeader);
}


} // namespace

class TestEdit : public QObject
{
    Q_OBJECT
private:
    TestDir *m_dir = nullptr;
    QWidget *m_host = nullptr;
    QVBoxLayout *m_layout = nullptr;
    Edit *m_edit = nullptr;

    Edit *open(const QString &path, const QByteArray &codec = "UTF-8")
    {
        delete m_edit;
        m_edit = new Edit;
        m_edit->setHostLayout(m_layout);
        m_edit->setCodec(codec);
        m_edit->setFile(path);
        m_edit->execute();
        return m_edit;
    }

    // Opens a new file holding "a\n" and types @p typed at its start.
    Edit *openChanged(const QString &name, const QString &typed = QStringLiteral("x"))
    {
        Edit *edit = open(m_dir->createFile(name, "a\n"));
        edit->editorWidget()->insertAt(typed, 0, 0);
        return edit;
    }

private Q_SLOTS:
    void initTestCase() { useTestSettings(); }

    void init()
    {
        m_dir = new TestDir;
        m_host = new QWidget;
        m_layout = new QVBoxLayout(m_host);
        m_host->resize(600, 400);
        m_host->show();
    }

    void cleanup()
    {
        delete m_edit;
        m_edit = nullptr;
        delete m_host;
        delete m_dir;
    }

    void languageChoice_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("conversion");
        QTest::addColumn<QString>("language");
        QTest::newRow("upper-case extension") << "A.SQL" << "Java" << "SQL";
        QTest::newRow("Pro*C") << "x.pc" << "" << "C++";
        QTest::newRow("aspx") << "x.aspx" << "" << "HTML";
        QTest::newRow("txt by app direction") << "x.txt" << "Java" << "Java";
        QTest::newRow("txt by database direction") << "x.txt" << "Oracle" << "SQL";
        QTest::newRow("no extension, no direction") << "README" << "" << "";
    }

    void languageChoice()
    {
        QFETCH(QString, file);
        QFETCH(QString, conversion);
        QTEST(Edit::languageName(file, conversion), "language");
    }

    void savePreservesEncodingAndLineEnds_data()
    {
        QTest::addColumn<QByteArray>("codec");
        QTest::addColumn<QByteArray>("bom");
        QTest::addColumn<QString>("text");
        const QString text = QString::fromUtf8("select 'café';\r\nfrom dual\n-- Привет\rend");
        QTest::newRow("UTF-8 with BOM, mixed line ends")
            << QByteArray("UTF-8") << QByteArray("\xEF\xBB\xBF") << text;
        QTest::newRow("UTF-8 without BOM") << QByteArray("UTF-8") << QByteArray() << text;
        QTest::newRow("UTF-16LE BOM") << QByteArray("UTF-16LE") << QByteArray("\xFF\xFE") << text;
        QTest::newRow("windows-1251, CRLF")
            << QByteArray("windows-1251") << QByteArray()
            << QString::fromUtf8("select 'Привет'\r\nfrom t\r\n");
    }

    void savePreservesEncodingAndLineEnds()
    {
        QFETCH(QByteArray, codec);
        QFETCH(QByteArray, bom);
        QFETCH(QString, text);
        QTextCodec *c = QTextCodec::codecForName(codec);
        const QString path =
            m_dir->createFile(QStringLiteral("my file -x.sql"), bom + encoded(c, text));
        // With a BOM the file's own mark wins over the chosen codec.
        Edit *edit = open(path, bom.isEmpty() ? codec : QByteArray("windows-1251"));
        QVERIFY(!edit->hasDecodingErrors());
        QCOMPARE(edit->text(), text);
        QCOMPARE(edit->codecName(), codec);

        edit->editorWidget()->insertAt(QStringLiteral("X"), 1, 0);
        QVERIFY(edit->save());
        QVERIFY(!edit->isModified());
        QString expected = text;
        expected.insert(text.indexOf(QLatin1Char('\n')) + 1, QLatin1Char('X'));
        QCOMPARE(fileBytes(path), bom + encoded(c, expected));
    }

    void operationsWithoutEditor()
    {
        // Before a file is opened every operation is harmless.
        Edit edit;
        edit.setText(QStringLiteral("x"));
        edit.markLine(0);
        edit.goToLine(0);
        edit.revert();
        QVERIFY(edit.lineCount() == 0 && edit.text().isEmpty() && !edit.isModified());
        QVERIFY(edit.savePrompt(QStringLiteral("?")) && edit.closeEditor() && !edit.save());
    }

    void lineOperationsAndFont()
    {
        Edit *edit = open(m_dir->createFile(QStringLiteral("a.sql"), "one\r\ntwo\nthree"));
        QCOMPARE(edit->lineCount(), 3);
        QStringList lines;
        for (int line = 0; line <= 3; ++line)
            lines << edit->lineText(line);
        QCOMPARE(lines, QStringList({"one", "two", "three", ""}));
        QCOMPARE(m_host->focusWidget(), edit->editorWidget());

        edit->markLine(1);
        edit->markLine(-1);
        edit->markLine(3);
        QVERIFY(edit->isLineMarked(1));
        QVERIFY(!edit->isLineMarked(0));
        edit->goToLine(2);
        edit->goToLine(3); // past the end: ignored
        QCOMPARE(edit->currentLine(), 2);

        edit->setReadOnly(true);
        edit->setText(QStringLiteral("a\nb\n"));
        QCOMPARE(edit->lineCount(), 3);
        QVERIFY(!edit->isModified());

        edit->setFontSize(1); // too small to read
        QVERIFY(edit->fontSize() >= 4);
    }

    void badInputOpensReadOnly_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("binary");
        QTest::newRow("NUL bytes") << QByteArray("abc\0\x01\x02" "def\n", 10) << true;
        QTest::newRow("invalid UTF-8") << QByteArray("caf\xE9 \xFF\xFE ok\x80\n") << false;
    }

    void badInputOpensReadOnly()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, binary);
        const QString path = m_dir->createFile(QStringLiteral("odd.sql"), bytes);
        Edit *edit = open(path);
        QVERIFY(edit->hasDecodingErrors());
        QCOMPARE(edit->isBinary(), binary);
        QVERIFY(edit->isReadOnly());
        if (binary)
            QVERIFY(edit->text().contains(QChar(0x2400)));
        // Saving is refused so that the undecodable bytes survive.
        BoxAnswer ok(QMessageBox::Ok);
        QVERIFY(!edit->save());
        QCOMPARE(ok.count, 1);
        QCOMPARE(fileBytes(path), bytes);
    }

    // Files too large for the editor, or with too long a line, open read-only in
    // the large-file view, which reads only what it shows; the editor's own
    // limits still leave large files without highlighting.
    void largeFiles_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("largeView");
        QTest::addColumn<QString>("firstRow");
        QTest::addColumn<QString>("lastRowEnd");
        QTest::addColumn<QString>("notice");
        const QByteArray line("insert into t values (1, 'abcdefghijklmnopqrstuvwxyz0123456789');\n");
        const QByteArray script = line.repeated(int((50 << 20) / line.size())) + "-- the end\n";
        QTest::newRow("50 MB script") << script << true << QString::fromLatin1(line.trimmed())
                                      << "-- the end" << "The file big.sql (50.0 MB) is larger";
        QTest::newRow("10 MB single line") << "select '" + QByteArray(10 << 20, 'x') + "' tail"
                                           << true << "select 'xxx" << "xx' tail"
                                           << "The file big.sql (10.0 MB) is larger";
        QTest::newRow("200 KB line") << "values ('" + QByteArray(200 << 10, 'x') + "') tail"
                                     << true << "values ('xxx" << "xx') tail"
                                     << "The file big.sql (0.2 MB) has a line longer";
        const QByteArray plain = line.repeated(int(Edit::maximumFileSize() / line.size()) - 1);
        QTest::newRow("largest plain file") << plain << false << QString() << QString() << QString();
    }

    void largeFiles()
    {
        QFETCH(QByteArray, content);
        QFETCH(bool, largeView);
        QFETCH(QString, firstRow);
        QFETCH(QString, lastRowEnd);
        Edit *edit = open(m_dir->createFile(QStringLiteral("big.sql"), content));
        QVERIFY(edit->errorString().isEmpty());
        LargeFileView *view = edit->largeFileView();
        QCOMPARE(view != nullptr, largeView);
        QCOMPARE(edit->editorWidget() == nullptr, largeView);
        if (!largeView) {
            QCOMPARE(edit->lineCount(), content.count('\n') + 1);
            QVERIFY(edit->language().isEmpty()); // no highlighting for files this size
            return;
        }
        QFETCH(QString, notice);
        QVERIFY2(edit->notice().startsWith(notice), qPrintable(edit->notice()));
        QVERIFY(edit->notice().contains(QLatin1String("read-only")));
        QVERIFY(view->isVisible());
        QCOMPARE(m_host->focusWidget(), view);
        // Rows are as wide as the view: a line may take two.
        const QStringList rows = view->visibleRows();
        QVERIFY((rows.at(0) + rows.at(1)).startsWith(firstRow));
        QTest::keyClick(view, Qt::Key_End);
        QVERIFY(view->visibleRows().last().endsWith(lastRowEnd));
        QTest::keyClick(view, Qt::Key_Home);
        QCOMPARE(view->topOffset(), 0);
        QTest::keyClick(view, Qt::Key_PageDown);
        const qint64 pageTop = view->topOffset();
        QTest::keyClick(view, Qt::Key_Down);
        QTest::keyClick(view, Qt::Key_Up);
        QCOMPARE(view->topOffset(), pageTop);
        // Going to a line (a find hit, a log link) shows it at the top.
        const int lastLine = qMax(0, content.count('\n') - 1);
        edit->goToLine(lastLine);
        QCOMPARE(view->topOffset(), content.lastIndexOf('\n', content.size() - 2) + 1);
    }

    void missingFileNamed()
    {
        Edit *missing = open(m_dir->filePath(QStringLiteral("missing.sql")));
        QVERIFY(missing->errorString().contains(QLatin1String("missing.sql")));
    }

    // Ctrl+S saves, F3 opens the search bar, F5 converts; Escape closes the bar, then
    // the editor, with no question once nothing is unsaved.
    void keys()
    {
        Edit *edit = openChanged(QStringLiteral("k.sql"), QStringLiteral("typed "));
        QApplication::setActiveWindow(m_host);
        QVERIFY(QTest::qWaitForWindowActive(m_host));
        QTest::keyClick(edit->editorWidget(), Qt::Key_S, Qt::ControlModifier);
        QCOMPARE(fileBytes(m_dir->filePath(QStringLiteral("k.sql"))), QByteArray("typed a\n"));
        QVERIFY(edit->savePrompt(QStringLiteral("unchanged: no question")));
        auto *findEdit = edit->widget()->findChild<QLineEdit *>();
        QVERIFY(!findEdit->isVisible());
        QTest::keyClick(edit->editorWidget(), Qt::Key_F3);
        QVERIFY(findEdit->isVisible() && findEdit->hasFocus());
        QSignalSpy conversion(edit, &Edit::startConversion);
        QTest::keyClick(edit->editorWidget(), Qt::Key_F5);
        QCOMPARE(conversion.count(), 1);
        QSignalSpy hide(edit, &Edit::hide);
        QTest::keyClick(edit->editorWidget(), Qt::Key_Escape);
        QVERIFY(!findEdit->isVisible());
        QTest::keyClick(edit->editorWidget(), Qt::Key_Escape);
        QVERIFY(hide.wait());
        QCOMPARE(hide.count(), 1);
    }

    // A match far to the right of its line is scrolled into view and selected.
    void showMatch_data()
    {
        QTest::addColumn<QString>("before");
        QTest::newRow("ASCII") << QString(400, QLatin1Char('x'));
        QTest::newRow("two-byte characters") << QString(400, QChar(0xe9));
    }

    void showMatch()
    {
        QFETCH(QString, before);
        Edit *edit = open(m_dir->createFile(QStringLiteral("wide.sql"),
                                            "first\n" + (before + "needle tail\n").toUtf8()));
        QsciScintilla *editor = edit->editorWidget();
        QCOMPARE(editor->SendScintilla(QsciScintillaBase::SCI_GETXOFFSET), 0);
        edit->showMatch(1, before.size(), 6);
        QCOMPARE(editor->selectedText(), QStringLiteral("needle"));
        QVERIFY(editor->SendScintilla(QsciScintillaBase::SCI_GETXOFFSET) > 0);
    }

    // The file changed on disk: an unmodified document is reloaded at once; a
    // modified one offers to reload or keep, and saving over it asks first.
    void diskChanges_data()
    {
        QTest::addColumn<bool>("typed");
        QTest::addColumn<QString>("choice"); // the button pressed, or empty
        QTest::addColumn<int>("saveAnswer");  // the answer when saving; 0: no save
        QTest::newRow("unmodified: reloaded") << false << "" << 0;
        QTest::newRow("modified: reload") << true << "reloadButton" << 0;
        QTest::newRow("modified: keep, saving cancelled") << true << "keepButton" << int(QMessageBox::Cancel);
        QTest::newRow("modified: keep, saving overwrites") << true << "keepButton" << int(QMessageBox::Save);
    }

    void diskChanges()
    {
        QFETCH(bool, typed);
        QFETCH(QString, choice);
        QFETCH(int, saveAnswer);
        const QString path = m_dir->createFile(QStringLiteral("w.sql"), "a\n");
        Edit *edit = typed ? openChanged(QStringLiteral("w.sql")) : open(path);
        {
            QFile other(path); // another program appends
            QVERIFY(other.open(QIODevice::Append));
            other.write("appended\n");
        }
        if (!typed) {
            QTRY_COMPARE(edit->text(), QStringLiteral("a\nappended\n"));
            QVERIFY(!edit->isModified());
            QVERIFY(edit->notice().contains(QLatin1String("reloaded")));
        } else {
            auto *button = edit->widget()->findChild<QPushButton *>(choice);
            QTRY_VERIFY(button->isVisible());
            QCOMPARE(edit->text(), QStringLiteral("xa\n"));
            QTest::mouseClick(button, Qt::LeftButton);
            QVERIFY(!button->isVisible());
            QCOMPARE(edit->text(), QString::fromLatin1(choice == "reloadButton" ? "a\nappended\n" : "xa\n"));
        }
        if (saveAnswer) {
            BoxAnswer box(static_cast<QMessageBox::StandardButton>(saveAnswer));
            QCOMPARE(edit->save(), saveAnswer == QMessageBox::Save);
            QVERIFY(box.text.contains(QLatin1String("changed by another program")));
            // A save of ours is no change by another program.
            QTest::qWait(100);
            QVERIFY(!edit->notice().contains(QLatin1String("reloaded")));
        }
        QCOMPARE(fileBytes(path), QByteArray(saveAnswer == QMessageBox::Save ? "xa\n" : "a\nappended\n"));
    }

    // A file whose mode forbids writing opens read-only, and says so.
    void readOnlyFile()
    {
        const QString path = m_dir->createFile(QStringLiteral("ro.sql"), "select 1\n");
        QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));
        Edit *edit = open(path);
        QVERIFY(edit->isFileReadOnly() && edit->isReadOnly());
        QVERIFY(edit->notice().startsWith(QLatin1String("Read-only")));
        edit->setReadOnly(false);
        QTest::keyClicks(edit->editorWidget(), "zz");
        QCOMPARE(edit->text(), QStringLiteral("select 1\n"));
        QVERIFY(!edit->isModified());
    }

    void failedSaveKeepsOriginalAndEdit_data()
    {
        QTest::addColumn<bool>("readOnlyFile"); // else the folder is replaced by a file
        QTest::newRow("file made read-only") << true;
        QTest::newRow("folder replaced by a file") << false;
    }

    void failedSaveKeepsOriginalAndEdit()
    {
        QFETCH(bool, readOnlyFile);
        const QString folder = m_dir->createDir(QStringLiteral("sub dir"));
        const QString path = m_dir->createFile(QStringLiteral("sub dir/-a.sql"), "original\n");
        Edit *edit = open(path);
        edit->editorWidget()->insertAt(QStringLiteral("changed "), 0, 0);
        if (readOnlyFile) {
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
        QCOMPARE(fileBytes(readOnlyFile ? path : folder),
                 QByteArray(readOnlyFile ? "original\n" : "I am a file now"));
    }

    void removedFileAsksBeforeRecreating()
    {
        Edit *edit = openChanged(QStringLiteral("gone.sql"), QStringLiteral("b"));
        const QString path = m_dir->filePath(QStringLiteral("gone.sql"));
        QVERIFY(QFile::remove(path));
        {
            BoxAnswer no(QMessageBox::No);
            QVERIFY(!edit->save());
            QVERIFY(no.text.contains(QLatin1String("removed")));
            QVERIFY(!QFile::exists(path));
        }
        BoxAnswer yes(QMessageBox::Yes);
        QVERIFY(edit->save());
        QCOMPARE(fileBytes(path), QByteArray("ba\n"));
    }

    // Save saves, Discard goes back to the file, Cancel keeps the edits and says no.
    void prompts_data()
    {
        QTest::addColumn<QString>("prompt");
        QTest::addColumn<int>("answer");
        const int save = QMessageBox::Save;
        const int discard = QMessageBox::Discard;
        const int cancel = QMessageBox::Cancel;
        QTest::newRow("save prompt: Save") << "save" << save;
        QTest::newRow("save prompt: Discard") << "save" << discard;
        QTest::newRow("save prompt: Cancel") << "save" << cancel;
        QTest::newRow("discard prompt: Discard") << "discard" << discard;
        QTest::newRow("discard prompt: Cancel") << "discard" << cancel;
        QTest::newRow("closing: Save") << "close" << save;
        QTest::newRow("closing: Cancel keeps the editor") << "close" << cancel;
        QTest::newRow("replacing the text: Save") << "replace" << save;
        QTest::newRow("replacing the text: Discard") << "replace" << discard;
        QTest::newRow("replacing the text: Cancel keeps it") << "replace" << cancel;
    }

    void prompts()
    {
        QFETCH(QString, prompt);
        QFETCH(int, answer);
        const bool result = answer != QMessageBox::Cancel;
        const bool saved = answer == QMessageBox::Save;
        const bool reverted = result && !saved;
        Edit *edit = openChanged(QStringLiteral("p.sql"));
        edit->editorWidget()->insertAt(QStringLiteral("y"), 1, 0); // discarding undoes every edit
        BoxAnswer box(static_cast<QMessageBox::StandardButton>(answer));
        const QString question = QStringLiteral("Keep the changes?");
        const bool closing = prompt == QLatin1String("close");
        if (prompt == QLatin1String("save"))
            QCOMPARE(edit->savePrompt(question), result);
        else if (prompt == QLatin1String("discard"))
            QCOMPARE(edit->discardPrompt(question), result);
        else if (prompt == QLatin1String("replace"))
            QCOMPARE(edit->setText(QStringLiteral("new\n")), result);
        else
            QCOMPARE(edit->closeEditor(), result);
        const bool replaced = prompt == QLatin1String("replace") && result;

        QCOMPARE(box.count, 1);
        QCOMPARE(box.buttons.testFlag(QMessageBox::Save), prompt != QLatin1String("discard"));
        if (prompt != QLatin1String("replace"))
            QCOMPARE(box.text, closing ? QStringLiteral("The document p.sql has been modified.<br/>"
                                                        "Save changes to the file before closing?")
                                       : question);
        QCOMPARE(edit->widget()->isVisible(), !closing || !result);
        QCOMPARE(fileBytes(m_dir->filePath(QStringLiteral("p.sql"))),
                 QByteArray(saved ? "xa\ny" : "a\n"));
        QCOMPARE(edit->text(),
                 QString::fromLatin1(replaced ? "new\n" : reverted ? "a\n" : "xa\ny"));
        QCOMPARE(edit->isModified(), !saved && !reverted && !replaced);
    }

    void searchLinksAndMode()
    {
        Edit *edit = open(
            m_dir->createFile(QStringLiteral("s.sql"), "select a\nfrom t\nSELECT <b> select\n"));
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
};

QTEST_MAIN(TestEdit)
#include "tst_edit.moc"
