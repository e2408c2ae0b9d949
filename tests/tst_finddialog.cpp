#include "finddialog.h"
#include "settings.h"
#include "testsupport.h"
#include "ui_finddialog.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

namespace {

// Runs @p action on the next modal widget other than @p notThis.
void onModal(std::function<void(QWidget *)> action, QWidget *notThis = nullptr)
{
    auto *timer = new QTimer;
    timer->setInterval(10);
    QObject::connect(timer, &QTimer::timeout, [timer, action, notThis] {
        QWidget *widget = QApplication::activeModalWidget();
        if (widget && widget != notThis) {
            timer->stop();
            timer->deleteLater();
            action(widget);
        }
    });
    timer->start();
}

QVariant stored(const QString &key)
{
    Settings settings;
    settings.beginGroup("Main Window");
    settings.beginGroup("FindDialog");
    return settings.value(key);
}

} // namespace

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

    void labelsAndDefaults()
    {
        FindDialog dialog(m_dir->path());
        Ui::FindDialog *ui = dialog.form();
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Find"));
        QCOMPARE(ui->radioButtonSingle->text(), QStringLiteral("Singe word/phrase"));
        QCOMPARE(ui->radioButtonMultiple->text(),
                 QStringLiteral("Multiple words/phrases (separated by new line)"));
        QCOMPARE(ui->groupBoxOptions->title(), QStringLiteral("Find options:"));
        QCOMPARE(ui->comboBoxFindFiles->count(), 2);
        QCOMPARE(ui->comboBoxFindFiles->currentText(), QStringLiteral("*.*"));
        QCOMPARE(dialog.folder(), m_dir->path());
        QCOMPARE(ui->comboBoxSyntax->currentText(), QStringLiteral("Wildcard"));
        QVERIFY(!dialog.isCaseSensitive() && !dialog.isWholeWords());
        QVERIFY(ui->comboBoxFindText->isEnabled());
        QVERIFY(!ui->textEditPhrases->isEnabled());
    }

    void changeControl()
    {
        FindDialog dialog(m_dir->path());
        dialog.show();
        Ui::FindDialog *ui = dialog.form();
        QTest::mouseClick(ui->radioButtonMultiple, Qt::LeftButton, {}, QPoint(8, 8));
        QVERIFY(!ui->comboBoxFindText->isEnabled());
        QVERIFY(ui->textEditPhrases->isEnabled());
        QTest::mouseClick(ui->radioButtonSingle, Qt::LeftButton, {}, QPoint(8, 8));
        QVERIFY(ui->comboBoxFindText->isEnabled());
        QVERIFY(!ui->textEditPhrases->isEnabled());
    }

    void syntaxNames_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("syntax");
        QTest::newRow("Wildcard") << 0 << int(QRegExp::Wildcard);
        QTest::newRow("RegExp") << 1 << int(QRegExp::RegExp);
        QTest::newRow("RegExp2") << 2 << int(QRegExp::RegExp2);
        QTest::newRow("FixedString") << 3 << int(QRegExp::FixedString);
    }

    void syntaxNames()
    {
        QFETCH(int, index);
        QFETCH(int, syntax);
        FindDialog dialog(m_dir->path());
        dialog.form()->comboBoxSyntax->setCurrentIndex(index);
        QCOMPARE(int(dialog.patternSyntax()), syntax);
    }

    // Accepted values are saved and come back the next time.
    void settingsRoundTrip()
    {
        const QString other = m_dir->createDir("other");
        {
            FindDialog dialog(m_dir->path());
            onModal([other](QWidget *w) {
                auto *d = static_cast<FindDialog *>(w);
                d->form()->comboBoxFindFiles->setEditText("Scripts (*.sql)");
                d->form()->comboBoxSearchIn->setEditText(other);
                d->form()->comboBoxFindText->setEditText("select");
                d->form()->checkBoxMatchCase->setChecked(true);
                d->form()->checkBoxWholeWords->setChecked(true);
                d->form()->comboBoxSyntax->setCurrentIndex(3);
                d->form()->buttonBox->button(QDialogButtonBox::Ok)->click();
            });
            QVERIFY(dialog.execute());
            QCOMPARE(dialog.maskText(), QStringLiteral("Scripts (*.sql)"));
        }
        QCOMPARE(stored("SearchIn").toString(), other);
        QCOMPARE(stored("FindText").toString(), QStringLiteral("select"));
        QCOMPARE(stored("IsCaseValuse").toBool(), true);
        QCOMPARE(stored("IsWholeWords").toBool(), true);
        QCOMPARE(stored("PatternSynx").toInt(), 3);
        QVERIFY(stored("FindFiles").toString().startsWith(";Scripts (*.sql)"));

        FindDialog again(m_dir->path());
        QCOMPARE(again.folder(), other);
        QVERIFY(again.form()->comboBoxSearchIn->findText(m_dir->path()) >= 0);
        QCOMPARE(again.findText(), QStringLiteral("select"));
        QCOMPARE(again.maskText(), QStringLiteral("Scripts (*.sql)"));
        QVERIFY(again.isCaseSensitive() && again.isWholeWords());
        QCOMPARE(again.patternSyntax(), QRegExp::FixedString);
    }

    void emptyFolder()
    {
        FindDialog dialog(m_dir->path());
        QString message;
        onModal([&message](QWidget *w) {
            auto *d = static_cast<FindDialog *>(w);
            d->form()->comboBoxSearchIn->setEditText("");
            onModal([&message](QWidget *box) {
                message = static_cast<QMessageBox *>(box)->text();
                static_cast<QMessageBox *>(box)->accept();
            }, d);
            d->form()->buttonBox->button(QDialogButtonBox::Ok)->click();
        });
        QVERIFY(!dialog.execute());
        QCOMPARE(message, QStringLiteral("Empty folder to search"));
        QVERIFY(!stored("SearchIn").isValid());
    }

    void badInputKeepsDialogOpen_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("syntaxIndex");
        QTest::addColumn<QString>("messagePart");
        QTest::newRow("invalid regular expression") << "" << "a(b" << 1 << "not a valid RegExp";
        QTest::newRow("invalid wildcard") << "" << "a[b" << 0 << "not a valid Wildcard";
        QTest::newRow("missing folder") << "gone" << "x" << 0 << "does not exist";
    }

    // A bad entry is reported and the dialog stays open to fix it.
    void badInputKeepsDialogOpen()
    {
        QFETCH(QString, folder);
        QFETCH(QString, text);
        QFETCH(int, syntaxIndex);
        QFETCH(QString, messagePart);
        FindDialog dialog(m_dir->path());
        QString message;
        bool stillOpen = false;
        onModal([&](QWidget *w) {
            auto *d = static_cast<FindDialog *>(w);
            if (!folder.isEmpty())
                d->form()->comboBoxSearchIn->setEditText(m_dir->filePath(folder));
            d->form()->comboBoxFindText->setEditText(text);
            d->form()->comboBoxSyntax->setCurrentIndex(syntaxIndex);
            onModal([&, d](QWidget *box) {
                message = static_cast<QMessageBox *>(box)->text();
                static_cast<QMessageBox *>(box)->accept();
                QTimer::singleShot(0, d, [&, d] {
                    stillOpen = d->isVisible();
                    d->reject();
                });
            }, d);
            d->form()->buttonBox->button(QDialogButtonBox::Ok)->click();
        });
        QVERIFY(!dialog.execute());
        QVERIFY2(message.contains(messagePart), qPrintable(message));
        QVERIFY(stillOpen);
    }

    // Several phrases become one pattern that finds a line holding any of them.
    void multiLinePhrases()
    {
        FindDialog dialog(m_dir->path());
        Ui::FindDialog *ui = dialog.form();
        ui->radioButtonMultiple->setChecked(true);
        ui->comboBoxSyntax->setCurrentIndex(3); // FixedString
        ui->textEditPhrases->setPlainText("a.b\n\nx*y\n");
        QCOMPARE(dialog.findText(), QStringLiteral("a.b\n\nx*y\n"));
        const QRegExp rx(dialog.pattern(), Qt::CaseSensitive, dialog.patternSyntax());
        QVERIFY(rx.indexIn("1 a.b 2") >= 0);
        QVERIFY(rx.indexIn("x*y") >= 0);
        QVERIFY(rx.indexIn("axb") < 0);
        QVERIFY(rx.indexIn("xxy") < 0);
    }
};

QTEST_MAIN(TestFindDialog)
#include "tst_finddialog.moc"
