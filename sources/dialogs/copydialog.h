#pragma once

#include <QDialog>
#include <memory>

namespace Ui {
class CopyFileDialog;
}

/** "Copy": shows where the selection goes and lets the user change it. */
class CopyDialog : public QDialog
{
    Q_OBJECT
public:
    explicit CopyDialog(const QString &target, QWidget *parent = nullptr);
    ~CopyDialog() override;

    QString target() const;

private:
    std::unique_ptr<Ui::CopyFileDialog> m_ui;
};
