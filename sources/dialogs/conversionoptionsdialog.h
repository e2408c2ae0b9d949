#pragma once

#include <QDialog>

class QComboBox;

/**
 * The database and the database interface of one side of the conversion,
 * opened from the "..." button beside the source or target platform.
 */
class ConversionOptionsDialog : public QDialog
{
    Q_OBJECT
public:
    ConversionOptionsDialog(const QString &title, QWidget *parent = nullptr);

    QComboBox *databaseCombo() const { return m_database; }
    QComboBox *apiCombo() const { return m_api; }
    /** The engine keys of the chosen database and interface; empty for none. */
    QString databaseKey() const;
    QString apiKey() const;

    void accept() override;

Q_SIGNALS:
    /** The choice was accepted: the engine keys of the database and the interface. */
    void ChangeOption(const QString &database, const QString &api);

private:
    QComboBox *m_database;
    QComboBox *m_api;
};
