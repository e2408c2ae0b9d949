#include "connectionoptionsdialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

ConnectionOptionsDialog::ConnectionOptionsDialog(QWidget *parent)
    : EngineOptionsDialog(QStringLiteral("Connection options"), 360, parent)
    , m_dataSource(new QLineEdit(this))
    , m_user(new QLineEdit(this))
    , m_password(new QLineEdit(this))
{
    m_password->setEchoMode(QLineEdit::Password);

    auto *form = new QFormLayout;
    form->addRow(QStringLiteral("Data source:"), m_dataSource);
    form->addRow(QStringLiteral("User:"), m_user);
    form->addRow(QStringLiteral("Password:"), m_password);
    auto *note = new QLabel(QStringLiteral("The password is kept for this session only."), this);
    note->setWordWrap(true);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(note);
    layout->addWidget(createButtons());
}

void ConnectionOptionsDialog::setOptions(const QMap<QString, QString> &options)
{
    m_dataSource->setText(options.value(QStringLiteral("/D")));
    m_user->setText(options.value(QStringLiteral("/U")));
    m_password->setText(options.value(QStringLiteral("/P")));
}

void ConnectionOptionsDialog::applyTo(QMap<QString, QString> &options) const
{
    storeOption(options, QStringLiteral("/D"), m_dataSource->text().trimmed());
    storeOption(options, QStringLiteral("/U"), m_user->text().trimmed());
    storeOption(options, QStringLiteral("/P"), m_password->text());
}
