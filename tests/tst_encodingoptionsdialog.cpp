#include "encodingoptionsdialog.h"
#include "filenamecodec.h"
#include "testsupport.h"

#include <QComboBox>
#include <QtTest>

class TestEncodingOptionsDialog : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void defaultsAndList()
    {
        EncodingOptionsDialog dialog;
        QCOMPARE(dialog.sourceEncoding(), QStringLiteral("System"));
        QCOMPARE(dialog.targetCombo()->currentText(), QStringLiteral("System"));
        // Sorted, Shift_JIS listed once, and the file-name codec is no text encoding.
        const QStringList names = EncodingOptionsDialog::encodingList();
        QVERIFY(!names.contains(QStringLiteral("SJIS")) && names.contains(QStringLiteral("Shift_JIS")));
        QVERIFY(!names.contains(QString::fromLatin1(FileNameCodec::codecName())));
        QStringList sorted = names;
        sorted.sort(Qt::CaseSensitive);
        QCOMPARE(names, sorted);
        QCOMPARE(dialog.sourceCombo()->count(), names.size());
        QVERIFY(!dialog.sourceCombo()->isEditable());
    }

    void setByName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("found");
        QTest::newRow("listed name") << "UTF-8" << true;
        QTest::newRow("differs only in case") << "utf-8" << false;
        QTest::newRow("removed alias") << "SJIS" << false;
    }

    void setByName()
    {
        QFETCH(QString, name);
        QFETCH(bool, found);
        EncodingOptionsDialog dialog;
        dialog.setSourceEncoding(name);
        dialog.setTargetEncoding(name);
        QCOMPARE(dialog.sourceCombo()->currentIndex() >= 0, found);
        QCOMPARE(dialog.targetCombo()->currentIndex() >= 0, found);
        if (found)
            QCOMPARE(dialog.sourceEncoding() + dialog.targetEncoding(), name + name);
    }
};

QTEST_MAIN(TestEncodingOptionsDialog)
#include "tst_encodingoptionsdialog.moc"
