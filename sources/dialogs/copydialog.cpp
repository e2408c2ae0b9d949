#include "copydialog.h"

#include "ui_copydialog.h"

CopyDialog::CopyDialog(const QString &target, QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::CopyFileDialog>())
{
    m_ui->setupUi(this);
    setWindowTitle(QStringLiteral("Copy"));
    m_ui->lineEdit->setText(target);
    m_ui->lineEdit->setFocus();
}

CopyDialog::~CopyDialog() = default;

QString CopyDialog::target() const
{
    return m_ui->lineEdit->text();
}
