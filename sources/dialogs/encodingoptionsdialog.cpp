#include "encodingoptionsdialog.h"
#include "filenamecodec.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTextCodec>
#include <QVBoxLayout>

QStringList EncodingOptionsDialog::encodingList()
{
    QStringList names;
    const QList<QByteArray> codecs = QTextCodec::availableCodecs();
    for (const QByteArray &codec : codecs) {
        if (codec != FileNameCodec::codecName())
            names << QString::fromLatin1(codec);
    }
    // Qt lists "System" only where the platform has an ANSI code page; the
    // choice means the machine's own encoding everywhere.
    if (!names.contains(QStringLiteral("System")))
        names << QStringLiteral("System");
    // "Shift_JIS" stays: the Japanese encoding is listed once.
    const int sjis = names.indexOf(QStringLiteral("SJIS"));
    if (sjis >= 0)
        names.removeAt(sjis);
    names.sort(Qt::CaseSensitive);
    return names;
}

EncodingOptionsDialog::EncodingOptionsDialog(QWidget *parent)
    : QDialog(parent)
    , m_encodings(encodingList())
    , m_sourceCombo(new QComboBox(this))
    , m_targetCombo(new QComboBox(this))
{
    setWindowTitle(QStringLiteral("Encoding options"));
    setWindowModality(Qt::WindowModal);
    setStyleSheet(QStringLiteral("QGroupBox { color: darkBlue }"));
    setMinimumWidth(360);

    for (QComboBox *combo : {m_sourceCombo, m_targetCombo}) {
        combo->setEditable(false);
        combo->addItems(m_encodings);
        combo->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    }
    connect(m_sourceCombo, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &EncodingOptionsDialog::setSourceEncodingIndex);
    connect(m_targetCombo, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &EncodingOptionsDialog::setTargetEncodingIndex);

    auto *layout = new QVBoxLayout(this);
    layout->setSpacing(8);
    auto *sourceRow = new QHBoxLayout;
    sourceRow->setSpacing(6);
    sourceRow->addWidget(new QLabel(QStringLiteral("Source encoding:"), this));
    sourceRow->addWidget(m_sourceCombo);
    auto *targetRow = new QHBoxLayout;
    targetRow->setSpacing(6);
    targetRow->addWidget(new QLabel(QStringLiteral("Target encoding:"), this));
    targetRow->addWidget(m_targetCombo);
    auto *buttons = new QHBoxLayout;
    auto *ok = new QPushButton(QStringLiteral("OK"), this);
    auto *cancel = new QPushButton(QStringLiteral("Cancel"), this);
    ok->setDefault(true);
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    connect(ok, &QPushButton::clicked, this, &EncodingOptionsDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &EncodingOptionsDialog::reject);
    layout->addLayout(sourceRow);
    layout->addLayout(targetRow);
    layout->addLayout(buttons);

    setSourceEncoding(QStringLiteral("System"));
    setTargetEncoding(QStringLiteral("System"));
}

void EncodingOptionsDialog::setSourceEncoding(const QString &name)
{
    m_sourceCombo->setCurrentIndex(m_encodings.indexOf(name));
}

void EncodingOptionsDialog::setTargetEncoding(const QString &name)
{
    m_targetCombo->setCurrentIndex(m_encodings.indexOf(name));
}

void EncodingOptionsDialog::setSourceEncodingIndex(int index)
{
    m_sourceEncoding = m_sourceCombo->itemText(index);
}

void EncodingOptionsDialog::setTargetEncodingIndex(int index)
{
    m_targetEncoding = m_targetCombo->itemText(index);
}
