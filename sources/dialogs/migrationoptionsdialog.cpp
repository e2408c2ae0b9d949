#include "migrationoptionsdialog.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QToolButton>
#include <QVBoxLayout>

MigrationOptionsDialog::MigrationOptionsDialog(QWidget *parent)
    : EngineOptionsDialog(QStringLiteral("Migration options"), 480, parent)
{
    auto *form = new QFormLayout;
    m_project = addFileRow(form, QStringLiteral("Project file:"),
                           QStringLiteral("Project files (*.prj *.xml);;All files (*)"));
    m_ini = addFileRow(form, QStringLiteral("INI file:"),
                       QStringLiteral("INI files (*.ini);;All files (*)"));
    m_tablesDdl = addFileRow(form, QStringLiteral("Tables DDL file:"),
                             QStringLiteral("SQL scripts (*.sql);;All files (*)"));
    m_extra = new QLineEdit(this);
    m_extra->setPlaceholderText(QStringLiteral("further engine switches, e.g. /LOG=\"...\""));
    form->addRow(QStringLiteral("Extra options:"), m_extra);

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(createButtons());
}

QLineEdit *MigrationOptionsDialog::addFileRow(QFormLayout *form, const QString &label,
                                              const QString &filter)
{
    auto *edit = new QLineEdit(this);
    auto *browse = new QToolButton(this);
    browse->setText(QStringLiteral("..."));
    browse->setToolTip(QStringLiteral("Choose a file"));
    connect(browse, &QToolButton::clicked, this, [this, edit, label, filter] {
        const QString start = edit->text().isEmpty() ? QDir::homePath()
                                                     : QFileInfo(edit->text()).absolutePath();
        const QString chosen = QFileDialog::getOpenFileName(this, label, start, filter);
        if (!chosen.isEmpty())
            edit->setText(QDir::toNativeSeparators(chosen));
    });
    auto *row = new QHBoxLayout;
    row->addWidget(edit);
    row->addWidget(browse);
    form->addRow(label, row);
    return edit;
}

void MigrationOptionsDialog::setOptions(const QMap<QString, QString> &options)
{
    m_project->setText(options.value(QStringLiteral("/PRJF=")));
    m_ini->setText(options.value(QStringLiteral("/INI=")));
    m_tablesDdl->setText(options.value(QStringLiteral("/TBLDDL=")));
    m_extra->setText(options.value(QStringLiteral(" ")));
}

void MigrationOptionsDialog::applyTo(QMap<QString, QString> &options) const
{
    storeOption(options, QStringLiteral("/PRJF="), m_project->text().trimmed());
    storeOption(options, QStringLiteral("/INI="), m_ini->text().trimmed());
    storeOption(options, QStringLiteral("/TBLDDL="), m_tablesDdl->text().trimmed());
    storeOption(options, QStringLiteral(" "), m_extra->text().trimmed());
}
