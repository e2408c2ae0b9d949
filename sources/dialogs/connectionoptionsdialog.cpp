#include "connectionoptionsdialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace {

void store(QMap<QString, QString> &options, const QString &key, const QString &value)
{
    if (value.isEmpty())
        options.remove(key);
    else
        options.insert(key, value);
}

} // namespace

ConnectionOptionsDialog::ConnectionOptionsDialog(QWidget *parent)
    : QDialog(parent)
    , m_dataSource(new QLineEdit(this))
    , m_user(new QLineEdit(this))
    , m_password(new QLineEdit(this))
{
    setWindowTitle(QStringLiteral("Connection options"));
    setMinimumWidth(360);
    m_password->setEchoMode(QLineEdit::Password);

    auto *form = new QFormLayout;
    form->addRow(QStringLiteral("Data source:"), m_dataSource);
    form->addRow(QStringLiteral("User:"), m_user);
    form->addRow(QStringLiteral("Password:"), m_password);
    auto *note = new QLabel(QStringLiteral("The password is kept for this session only."), this);
    note->setWordWrap(true);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &ConnectionOptionsDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &ConnectionOptionsDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(note);
    layout->addWidget(buttons);
}

void ConnectionOptionsDialog::setOptions(const QMap<QString, QString> &options)
{
    m_dataSource->setText(options.value(QStringLiteral("/D")));
    m_user->setText(options.value(QStringLiteral("/U")));
    m_password->setText(options.value(QStringLiteral("/P")));
}

void ConnectionOptionsDialog::applyTo(QMap<QString, QString> &options) const
{
    store(options, QStringLiteral("/D"), m_dataSource->text().trimmed());
    store(options, QStringLiteral("/U"), m_user->text().trimmed());
    store(options, QStringLiteral("/P"), m_password->text());
}
