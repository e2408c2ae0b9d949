#pragma once

#include <QDialog>
#include <QMap>

class QDialogButtonBox;

/**
 * A dialog that edits some entries of the engine option map: the connection
 * and migration options share how they end and how they store a value.
 */
class EngineOptionsDialog : public QDialog
{
    Q_OBJECT
protected:
    EngineOptionsDialog(const QString &title, int minimumWidth, QWidget *parent);

    /** "OK" and "Cancel", wired to accept and reject. */
    QDialogButtonBox *createButtons();
    /** An empty value removes its switch, so it never reaches the command line. */
    static void storeOption(QMap<QString, QString> &options, const QString &key,
                            const QString &value);
};
