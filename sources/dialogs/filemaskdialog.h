#pragma once

#include <QDialog>

class QComboBox;

/**
 * Asks which files of the selected folders to convert: one or more masks
 * separated by ";", kept as the "Masks" history.
 */
class FileMaskDialog : public QDialog
{
    Q_OBJECT
public:
    explicit FileMaskDialog(QWidget *parent = nullptr);

    QString mask() const;

    void accept() override;

private:
    QComboBox *m_combo;
};
