#include "filemaskdialog.h"

#include "historylist.h"
#include "settings.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

FileMaskDialog::FileMaskDialog(QWidget *parent)
    : QDialog(parent)
    , m_combo(new QComboBox(this))
{
    setWindowTitle(QStringLiteral("File masks"));
    setMinimumWidth(360);
    m_combo->setEditable(true);
    m_combo->setInsertPolicy(QComboBox::NoInsert);
    m_combo->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);

    HistoryList::read(m_combo, Settings().masks());
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
    Settings().setMasks(HistoryList::write(m_combo));
    QDialog::accept();
}
