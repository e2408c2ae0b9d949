#pragma once

#include "engineoptionsdialog.h"

class QLineEdit;

/** The engine's data source ("/D"), user ("/U") and password ("/P"). */
class ConnectionOptionsDialog : public EngineOptionsDialog
{
    Q_OBJECT
public:
    explicit ConnectionOptionsDialog(QWidget *parent = nullptr);

    /** Shows the values of @p options that this dialog edits. */
    void setOptions(const QMap<QString, QString> &options);
    /** Writes the edited values into @p options; an empty value removes its switch. */
    void applyTo(QMap<QString, QString> &options) const;


private:
    QLineEdit *m_dataSource;
    QLineEdit *m_user;
    QLineEdit *m_password;
};
