#include "filemaskdialog.h"

#include "historylist.h"
#include "settings.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace {
const char *const MasksGroup = "Main Window/Conversion";
}

FileMaskDialog::FileMaskDialog(QWidget *parent)
    : QDialog(parent)
    , m_combo(new QComboBox(this))
{
    setWindowTitle(QStringLiteral("File masks"));
    setMinimumWidth(360);
    m_combo->setEditable(true);
    m_combo->setInsertPolicy(QComboBox::NoInsert);
    m_combo->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);

    Settings settings;
    settings.beginGroup(QLatin1String(MasksGroup));
    HistoryList::read(m_combo, settings.value(QStringLiteral("Masks"), QStringLiteral("*.*")).toString());
    settings.endGroup();
    m_combo->setCurrentIndex(0);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &FileMaskDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &FileMaskDialog::reject);

    auto *layout = new QVBoxLayout(this);
    auto *label = new QLabel(QStringLiteral("Convert the files of the selected folders that match "
                                            "(several masks separated by \";\"):"),
                             this);
    label->setWordWrap(true);
    layout->addWidget(label);
    layout->addWidget(m_combo);
    layout->addWidget(buttons);
}

QString FileMaskDialog::mask() const
{
    const QString text = m_combo->currentText().trimmed();
    return text.isEmpty() ? QStringLiteral("*.*") : text;
}

void FileMaskDialog::accept()
{
    Settings settings;
    settings.beginGroup(QLatin1String(MasksGroup));
    settings.setValue(QStringLiteral("Masks"), HistoryList::write(m_combo));
    settings.endGroup();
    QDialog::accept();
}
