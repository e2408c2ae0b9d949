#include "conversionoptionsdialog.h"

#include "conversion.h"
#include "databaseapilistreader.h"
#include "databaselistreader.h"
#include "navarch.h"
#include "settings.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QVBoxLayout>

namespace {

QString keyOf(const QComboBox *combo)
{
    const QString name = combo->currentText();
    if (name.isEmpty())
        return name;
    auto *conversion = dynamic_cast<Conversion *>(Navarch::instance().getCommand(CONVERSION));
    return conversion ? conversion->nameMap().value(name, name) : name;
}

} // namespace

ConversionOptionsDialog::ConversionOptionsDialog(const QString &title, QWidget *parent)
    : QDialog(parent)
    , m_database(new QComboBox(this))
    , m_api(new QComboBox(this))
{
    setWindowTitle(title);
    setMinimumWidth(360);
    QStringList databases;
    DatabaseListReader().list(databases);
    QStringList apis;
    DatabaseAPIListReader().list(apis);
    // The first, empty entry leaves the switch off the command line.
    m_database->addItem(QString());
    m_database->addItems(databases);
    m_api->addItem(QString());
    m_api->addItems(apis);

    Settings settings;
    settings.beginGroup(QStringLiteral("ConversionOptionsDialog"));
    m_database->setCurrentIndex(settings.value(QStringLiteral("Database"), 0).toInt());
    m_api->setCurrentIndex(settings.value(QStringLiteral("DatabaseAPI"), 0).toInt());
    settings.endGroup();

    auto *form = new QFormLayout;
    form->addRow(QStringLiteral("Database:"), m_database);
    form->addRow(QStringLiteral("Database interface:"), m_api);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &ConversionOptionsDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &ConversionOptionsDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
}

QString ConversionOptionsDialog::databaseKey() const
{
    return keyOf(m_database);
}

QString ConversionOptionsDialog::apiKey() const
{
    return keyOf(m_api);
}

void ConversionOptionsDialog::accept()
{
    Settings settings;
    settings.beginGroup(QStringLiteral("ConversionOptionsDialog"));
    settings.setValue(QStringLiteral("Database"), qMax(0, m_database->currentIndex()));
    settings.setValue(QStringLiteral("DatabaseAPI"), qMax(0, m_api->currentIndex()));
    settings.endGroup();
    Q_EMIT ChangeOption(databaseKey(), apiKey());
    QDialog::accept();
}
