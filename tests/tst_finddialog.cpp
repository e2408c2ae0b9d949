#include "find.h"
#include "finddialog.h"
#include "settings.h"
#include "testsupport.h"
#include "ui_finddialog.h"

#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

class TestFindDialog : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestDir> m_dir;

private Q_SLOTS:
    void initTestCase() { useTestSettings(); }

    void init()
    {
        Settings().remove("Main Window/FindDialog");
        m_dir = std::make_unique<TestDir>();
    }

    // The given folder and the single/multiple switch.
    void controls()
    {
        FindDialog dialog(m_dir->path());
        dialog.show();
        Ui::FindDialog *ui = dialog.form();
        QCOMPARE(dialog.folder(), m_dir->path());
        QVERIFY(ui->comboBoxFindText->isEnabled() && !ui->textEditPhrases->isEnabled());
        QTest::mouseClick(ui->radioButtonMultiple, Qt::LeftButton, {}, QPoint(8, 8));
        QVERIFY(!ui->comboBoxFindText->isEnabled() && ui->textEditPhrases->isEnabled());
        QTest::mouseClick(ui->radioButtonSingle, Qt::LeftButton, {}, QPoint(8, 8));
        QVERIFY(ui->comboBoxFindText->isEnabled() && !ui->textEditPhrases->isEnabled());
    }

    // Typed text is taken as typed, never completed from the history.
    void typedTextStays_data()
    {
        QTest::addColumn<QString>("comboName");
        QTest::addColumn<QString>("history");
        QTest::addColumn<QString>("typed");
        QTest::newRow("mask") << "comboBoxFindFiles" << "*.*" << "*";
        QTest::newRow("folder") << "comboBoxSearchIn" << "/usr/include" << "/usr";
        QTest::newRow("text") << "comboBoxFindText" << "select *" << "sel";
    }

    void typedTextStays()
    {
        QFETCH(QString, comboName);
        QFETCH(QString, history);
        QFETCH(QString, typed);
        FindDialog dialog(m_dir->path());
        dialog.show();
        QApplication::setActiveWindow(&dialog);
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        auto *combo = dialog.findChild<QComboBox *>(comboName);
        combo->insertItem(0, history);
        combo->setCurrentIndex(-1);
        combo->lineEdit()->clear();
        combo->setFocus();
        QTest::keyClicks(combo->lineEdit(), typed);
        QCOMPARE(combo->currentText(), typed);
    }

    // Accepted values are saved and come back the next time.
    void settingsRoundTrip()
    {
        const QString other = m_dir->createDir("other");
        {
            FindDialog dialog(m_dir->path());
            onModal([other](QWidget *w) {
                Ui::FindDialog *ui = static_cast<FindDialog *>(w)->form();
                ui->comboBoxFindFiles->setEditText("Scripts (*.sql)");
                ui->comboBoxSearchIn->setEditText(other);
                ui->comboBoxFindText->setEditText("select");
                ui->checkBoxMatchCase->setChecked(true);
                ui->checkBoxWholeWords->setChecked(true);
                ui->comboBoxSyntax->setCurrentIndex(3);
                ui->buttonBox->button(QDialogButtonBox::Ok)->click();
            });
            QVERIFY(dialog.execute());
        }
        FindDialog again(m_dir->path());
        QCOMPARE(again.folder(), other);
        QVERIFY(again.form()->comboBoxSearchIn->findText(m_dir->path()) >= 0);
        QCOMPARE(again.findText(), QStringLiteral("select"));
        QCOMPARE(again.maskText(), QStringLiteral("Scripts (*.sql)"));
        QVERIFY(again.isCaseSensitive() && again.isWholeWords());
        QCOMPARE(again.patternSyntax(), QRegExp::FixedString);
    }

    void badInput_data()
    {
        QTest::addColumn<QString>("folder"); // inside the test folder; empty: no folder at all
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("syntaxIndex");
        QTest::addColumn<QString>("messagePart");
        QTest::addColumn<bool>("staysOpen");
        QTest::newRow("invalid regular expression") << "." << "a(b" << 1 << "not a valid RegExp" << true;
        QTest::newRow("invalid wildcard") << "." << "a[b" << 0 << "not a valid Wildcard" << true;
        QTest::newRow("missing folder") << "gone" << "x" << 0 << "does not exist" << true;
        QTest::newRow("empty folder") << "" << "x" << 0 << "Empty folder to search" << false;
    }

    // A bad entry is reported; a fixable one keeps the dialog open, and no search is started.
    void badInput()
    {
        QFETCH(QString, folder);
        QFETCH(QString, text);
        QFETCH(int, syntaxIndex);
        QFETCH(QString, messagePart);
        QFETCH(bool, staysOpen);
        FindDialog dialog(m_dir->path());
        QString message;
        bool stillOpen = false;
        onModal([&](QWidget *w) {
            auto *d = static_cast<FindDialog *>(w);
            d->form()->comboBoxSearchIn->setEditText(folder.isEmpty() ? folder : m_dir->filePath(folder));
            d->form()->comboBoxFindText->setEditText(text);
            d->form()->comboBoxSyntax->setCurrentIndex(syntaxIndex);
            onModal([&, d](QWidget *box) {
                message = static_cast<QMessageBox *>(box)->text();
                stillOpen = d->isVisible();
                static_cast<QMessageBox *>(box)->accept();
                if (stillOpen)
                    QTimer::singleShot(0, d, &QDialog::reject);
            }, d);
            d->form()->buttonBox->button(QDialogButtonBox::Ok)->click();
        });
        QVERIFY(!dialog.execute());
        QVERIFY2(message.contains(messagePart), qPrintable(message));
        QCOMPARE(stillOpen, staysOpen);
        if (!staysOpen)
            QCOMPARE(Settings().findOptions(QStringLiteral("/none")).folder, QStringLiteral("/none"));
    }

    void multiLinePhrases_data()
    {
        QTest::addColumn<int>("syntaxIndex");
        QTest::addColumn<QString>("phrases");
        QTest::addColumn<QStringList>("matching");
        QTest::addColumn<QStringList>("notMatching");
        QTest::addColumn<bool>("wholeWords");
        QTest::newRow("fixed strings are escaped") << 3 << "a.c\n\nx+y\n" << QStringList{"1 a.c 2", "x+y"} << QStringList{"abc", "xxy"} << false;
        QTest::newRow("wildcards") << 0 << "a*c\nq?z" << QStringList{"abbbc", "qxz"} << QStringList{"ab", "qz"} << false;
        QTest::newRow("regular expressions") << 1 << "ab+c\n^z" << QStringList{"abbc", "zed"} << QStringList{"ac", "az"} << false;
        QTest::newRow("one phrase keeps its syntax") << 0 << "\n a*c \n" << QStringList{"abc"} << QStringList{"ab"} << false;
        QTest::newRow("whole words round every phrase") << 3 << "abc\ndef" << QStringList{"x abc y", "x def y"} << QStringList{"x abcd", "adef y"} << true;
    }

    // Several phrases become one pattern that finds a line holding any of them.
    void multiLinePhrases()
    {
        QFETCH(int, syntaxIndex);
        QFETCH(QString, phrases);
        QFETCH(QStringList, matching);
        QFETCH(QStringList, notMatching);
        QFETCH(bool, wholeWords);
        FindDialog dialog(m_dir->path());
        Ui::FindDialog *ui = dialog.form();
        ui->radioButtonMultiple->setChecked(true);
        ui->comboBoxSyntax->setCurrentIndex(syntaxIndex);
        ui->textEditPhrases->setPlainText(phrases);
        ui->checkBoxWholeWords->setChecked(wholeWords);
        QCOMPARE(dialog.findText(), phrases);
        const QRegExp rx(Find::searchPattern(dialog.pattern(), dialog.isWholeWords()),
                         Qt::CaseSensitive, dialog.patternSyntax());
        QVERIFY2(rx.isValid(), qPrintable(rx.pattern()));
        for (const QString &line : matching)
            QVERIFY2(rx.indexIn(line) >= 0, qPrintable(line));
        for (const QString &line : notMatching)
            QVERIFY2(rx.indexIn(line) < 0, qPrintable(line));
    }
};

QTEST_MAIN(TestFindDialog)
#include "tst_finddialog.moc"
