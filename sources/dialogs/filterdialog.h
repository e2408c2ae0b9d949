#pragma once

#include <QDialog>
#include <memory>

namespace Ui {
class SetFilterDialog;
}

/** "Filter": chooses the file mask of the active panel, remembering the last masks. */
class FilterDialog : public QDialog
{
    Q_OBJECT
public:
    explicit FilterDialog(QWidget *parent = nullptr);
    ~FilterDialog() override;

    /** The mask chosen (the combo box's current text). */
    QString mask() const;
    void setMask(const QString &mask);

    void accept() override;

private:
    std::unique_ptr<Ui::SetFilterDialog> m_ui;
};
