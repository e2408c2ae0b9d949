#pragma once

#include <QDialog>
#include <memory>

namespace Ui {
class DialogCreateDir;
}

/** "Make Directory": asks for the name of a new folder. */
class MakeDirDialog : public QDialog
{
    Q_OBJECT
public:
    explicit MakeDirDialog(QWidget *parent = nullptr);
    ~MakeDirDialog() override;

    QString name() const;

private:
    std::unique_ptr<Ui::DialogCreateDir> m_ui;
};
