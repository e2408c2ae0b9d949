#pragma once

#include "settings.h"

#include <QDialog>
#include <QMap>
#include <QPair>

class QComboBox;

/**
 * The database and the database interface of one side of the conversion,
 * opened from the "..." button beside the source or target platform.
 */
class ConversionOptionsDialog : public QDialog
{
    Q_OBJECT
public:
    /**
     * @p nameMap turns the chosen display names into engine keys; @p side
     * picks the stored choice the dialog starts from.
     */
    ConversionOptionsDialog(const QString &title, const QMap<QString, QString> &nameMap,
                            Settings::Side side, QWidget *parent = nullptr);

    QComboBox *databaseCombo() const { return m_database; }
    QComboBox *apiCombo() const { return m_api; }
    /** The engine keys of the chosen database and interface; empty for none. */
    QString databaseKey() const;
    QString apiKey() const;

    void accept() override;

    /** The engine keys last accepted for @p side: what the engine is given at start-up. */
    static QPair<QString, QString> storedKeys(const QMap<QString, QString> &nameMap,
                                              Settings::Side side);

Q_SIGNALS:
    /** The choice was accepted: the engine keys of the database and the interface. */
    void ChangeOption(const QString &database, const QString &api);

private:
    QString keyOf(const QComboBox *combo) const;

    QMap<QString, QString> m_nameMap;
    Settings::Side m_side;
    QComboBox *m_database;
    QComboBox *m_api;
};
