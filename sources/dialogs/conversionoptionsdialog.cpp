#include "conversionoptionsdialog.h"

#include "databaseapilistreader.h"
#include "databaselistreader.h"
#include "settings.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QVBoxLayout>

ConversionOptionsDialog::ConversionOptionsDialog(const QString &title,
                                                 const QMap<QString, QString> &nameMap,
                                                 Settings::Side side, QWidget *parent)
    : QDialog(parent)
    , m_nameMap(nameMap)
    , m_side(side)
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

    // Chosen by name: a list that changes between versions keeps the choice.
    const Settings::DatabaseChoice stored = Settings().databaseChoice(side);
    m_database->setCurrentIndex(qMax(0, m_database->findText(stored.database, Qt::MatchExactly)));
    m_api->setCurrentIndex(qMax(0, m_api->findText(stored.api, Qt::MatchExactly)));

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

QString ConversionOptionsDialog::keyOf(const QComboBox *combo) const
{
    const QString name = combo->currentText();
    return name.isEmpty() ? name : m_nameMap.value(name, name);
}

QPair<QString, QString> ConversionOptionsDialog::storedKeys(const QMap<QString, QString> &nameMap,
                                                            Settings::Side side)
{
    const Settings::DatabaseChoice names = Settings().databaseChoice(side);
    const auto key = [&nameMap](const QString &name) {
        return name.isEmpty() ? name : nameMap.value(name, name);
    };
    return {key(names.database), key(names.api)};
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
    Settings().setDatabaseChoice(m_side, {m_database->currentText(), m_api->currentText()});
    Q_EMIT ChangeOption(databaseKey(), apiKey());
    QDialog::accept();
}
