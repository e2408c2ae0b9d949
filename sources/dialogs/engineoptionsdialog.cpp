#include "engineoptionsdialog.h"

#include <QDialogButtonBox>

EngineOptionsDialog::EngineOptionsDialog(const QString &title, int minimumWidth, QWidget *parent)
    : QDialog(parent)
{
    setWindowTitle(title);
    setMinimumWidth(minimumWidth);
}

QDialogButtonBox *EngineOptionsDialog::createButtons()
{
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &EngineOptionsDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &EngineOptionsDialog::reject);
    return buttons;
}

void EngineOptionsDialog::storeOption(QMap<QString, QString> &options, const QString &key,
                                      const QString &value)
{
    if (value.isEmpty())
        options.remove(key);
    else
        options.insert(key, value);
}
