#pragma once

#include <QDialog>
#include <QRegExp>
#include <memory>

namespace Ui {
class FindDialog;
}

/**
 * Asks for the masks, folder, text and options of a find-in-files search and
 * keeps the last values in the settings.
 */
class FindDialog : public QDialog
{
    Q_OBJECT
public:
    /** @p folder is the folder to offer when none was searched before. */
    explicit FindDialog(const QString &folder, QWidget *parent = nullptr);
    ~FindDialog() override;

    /** Runs the dialog; true when accepted with a folder. Saves the values. */
    bool execute();

    QString maskText() const;
    QString folder() const;
    /** The text as typed: the one-line text, or the phrases one per line. */
    QString findText() const;
    bool isMultiLine() const;
    /** The pattern to search for: the phrases combined into one when there are several. */
    QString pattern() const;
    /** The syntax of pattern(). */
    QRegExp::PatternSyntax patternSyntax() const;
    /** The syntax chosen in the combo box. */
    QRegExp::PatternSyntax chosenSyntax() const;
    bool isCaseSensitive() const;
    bool isWholeWords() const;

    Ui::FindDialog *form() const { return m_ui.get(); }

public Q_SLOTS:
    void changeControl();
    void accept() override;

private:
    void loadSettings(const QString &folder);
    void saveSettings();
    void chooseFolder();

    std::unique_ptr<Ui::FindDialog> m_ui;
};
