#include "filterdialog.h"

#include "historylist.h"
#include "settings.h"
#include "ui_filterdialog.h"

#include <QLineEdit>

namespace {
const char *const FiltersKey = "Filters";
}

FilterDialog::FilterDialog(QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::SetFilterDialog>())
{
    m_ui->setupUi(this);
    setWindowTitle(QStringLiteral("Filter"));
    m_ui->comboBox->clear();
    m_ui->comboBox->setInsertPolicy(QComboBox::NoInsert);
    Settings settings;
    const QString stored = Settings::readMainWindowValue(settings, QLatin1String(FiltersKey),
                                                         QStringLiteral("*.*"))
                               .toString();
    HistoryList::read(m_ui->comboBox, stored);
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
    Settings settings;
    Settings::writeMainWindowValue(settings, QLatin1String(FiltersKey),
                                   HistoryList::write(m_ui->comboBox));
    QDialog::accept();
}
