#pragma once

#include "engineoptionsdialog.h"

class QLineEdit;

/**
 * The engine's project file ("/PRJF="), INI file ("/INI="), tables DDL file
 * ("/TBLDDL=") and free extra options (kept under " ").
 */
class MigrationOptionsDialog : public EngineOptionsDialog
{
    Q_OBJECT
public:
    explicit MigrationOptionsDialog(QWidget *parent = nullptr);

    void setOptions(const QMap<QString, QString> &options);
    /** Writes the edited values into @p options; an empty value removes its entry. */
    void applyTo(QMap<QString, QString> &options) const;


private:
    QLineEdit *addFileRow(class QFormLayout *form, const QString &label, const QString &filter);

    QLineEdit *m_project;
    QLineEdit *m_ini;
    QLineEdit *m_tablesDdl;
    QLineEdit *m_extra;
};
