#include "filterdialog.h"

#include "settings.h"
#include "ui_filterdialog.h"

#include <QComboBox>
#include <QLineEdit>

namespace {

// The history separates masks with ";", which a mask also uses between its
// parts; inside a stored mask that ";" is written as "|", which no file name
// pattern needs, so every mask comes back whole.
const QChar PartSeparator = QLatin1Char(';');
const QChar StoredPartSeparator = QLatin1Char('|');

QString historyOf(const QComboBox *combo)
{
    QStringList entries;
    entries << combo->currentText().trimmed();
    for (int i = 0; i < qMin(combo->count(), 15); ++i) {
        const QString item = combo->itemText(i).trimmed();
        if (!entries.contains(item))
            entries << item;
    }
    QString stored;
    for (QString entry : qAsConst(entries))
        stored += PartSeparator + entry.replace(PartSeparator, StoredPartSeparator);
    return stored;
}

QStringList masksOf(const QString &stored)
{
    QStringList masks = stored.split(PartSeparator, Qt::SkipEmptyParts);
    for (QString &mask : masks)
        mask.replace(StoredPartSeparator, PartSeparator);
    return masks;
}

} // namespace

FilterDialog::FilterDialog(QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::SetFilterDialog>())
{
    m_ui->setupUi(this);
    setWindowTitle(QStringLiteral("Filter"));
    m_ui->comboBox->clear();
    m_ui->comboBox->setInsertPolicy(QComboBox::NoInsert);
    m_ui->comboBox->addItems(masksOf(Settings().filters()));
    if (m_ui->comboBox->count() == 0)
        m_ui->comboBox->addItem(QStringLiteral("*.*"));
    m_ui->comboBox->setCurrentIndex(0);
    m_ui->comboBox->lineEdit()->selectAll();
}

FilterDialog::~FilterDialog() = default;

QString FilterDialog::mask() const
{
    return m_ui->comboBox->currentText().trimmed();
}

void FilterDialog::setMask(const QString &mask)
{
    m_ui->comboBox->setEditText(mask);
}

void FilterDialog::accept()
{
    Settings().setFilters(historyOf(m_ui->comboBox));
    QDialog::accept();
}
