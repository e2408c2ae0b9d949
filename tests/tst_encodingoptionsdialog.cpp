#include "encodingoptionsdialog.h"
#include "testsupport.h"

#include <QComboBox>
#include <QtTest>

class TestEncodingOptionsDialog : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void defaultsAndList();
    void setByName_data();
    void setByName();
};

void TestEncodingOptionsDialog::defaultsAndList()
{
    EncodingOptionsDialog dialog;
    QCOMPARE(dialog.sourceCombo()->currentText(), QStringLiteral("System"));
    QCOMPARE(dialog.targetCombo()->currentText(), QStringLiteral("System"));
    QCOMPARE(dialog.sourceEncoding(), QStringLiteral("System"));
    QCOMPARE(dialog.targetEncoding(), QStringLiteral("System"));

    const QStringList names = EncodingOptionsDialog::encodingList();
    QVERIFY(!names.contains(QStringLiteral("SJIS")));
    QVERIFY(names.contains(QStringLiteral("Shift_JIS")));
    QStringList sorted = names;
    sorted.sort(Qt::CaseSensitive);
    QCOMPARE(names, sorted);
    QCOMPARE(dialog.sourceCombo()->count(), names.size());
    QVERIFY(!dialog.sourceCombo()->isEditable());

    // A choice made in the list is what the getter reports.
    dialog.show();
    dialog.sourceCombo()->setFocus();
    dialog.sourceCombo()->setCurrentIndex(dialog.encodings().indexOf(QStringLiteral("Shift_JIS")));
    QCOMPARE(dialog.sourceEncoding(), QStringLiteral("Shift_JIS"));
}

void TestEncodingOptionsDialog::setByName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("found");
    QTest::newRow("listed name") << "UTF-8" << true;
    QTest::newRow("differs only in case") << "utf-8" << false;
    QTest::newRow("removed alias") << "SJIS" << false;
}

void TestEncodingOptionsDialog::setByName()
{
    QFETCH(QString, name);
    QFETCH(bool, found);
    EncodingOptionsDialog dialog;
    dialog.setSourceEncoding(name);
    dialog.setTargetEncoding(name);
    QCOMPARE(dialog.sourceCombo()->currentIndex() >= 0, found);
    QCOMPARE(dialog.targetCombo()->currentIndex() >= 0, found);
    if (found) {
        QCOMPARE(dialog.sourceEncoding(), name);
        QCOMPARE(dialog.targetEncoding(), name);
    }
}

QTEST_MAIN(TestEncodingOptionsDialog)
#include "tst_encodingoptionsdialog.moc"
