#include "makedirdialog.h"

#include "ui_makedirdialog.h"

MakeDirDialog::MakeDirDialog(QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::DialogCreateDir>())
{
    m_ui->setupUi(this);
    setWindowTitle(QStringLiteral("Make Directory"));
    m_ui->lineEdit->setFocus();
}

MakeDirDialog::~MakeDirDialog() = default;

QString MakeDirDialog::name() const
{
    return m_ui->lineEdit->text();
}
