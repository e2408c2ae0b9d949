#include "finddialog.h"

#include "find.h"
#include "historylist.h"
#include "settings.h"
#include "ui_finddialog.h"

#include <QCompleter>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>

namespace {

// Puts @p text at the top of the combo's list unless it is already an entry.
void addToList(QComboBox *combo, const QString &text, const QIcon &icon = QIcon())
{
    if (text.isEmpty())
        return;
    const int index = combo->findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (index < 0)
        combo->insertItem(0, icon, text);
    combo->setCurrentIndex(index < 0 ? 0 : index);
}

QIcon folderIcon()
{
    return QIcon(QStringLiteral(":/images/folder.png"));
}

} // namespace

FindDialog::FindDialog(const QString &folder, QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::FindDialog>())
{
    m_ui->setupUi(this);
    setWindowTitle(QStringLiteral("Find"));
    connect(m_ui->radioButtonSingle, &QRadioButton::clicked, this, &FindDialog::changeControl);
    connect(m_ui->radioButtonMultiple, &QRadioButton::clicked, this, &FindDialog::changeControl);
    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &FindDialog::accept);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &FindDialog::reject);
    connect(m_ui->toolButtonBrowse, &QToolButton::clicked, this, &FindDialog::chooseFolder);
    // What is typed stays as typed: inline completion turned "*" into "*.*" and
    // "/usr" into "/usr/include" behind the user's back. Earlier entries are
    // still offered in a list.
    for (QComboBox *combo : {m_ui->comboBoxFindFiles, m_ui->comboBoxSearchIn,
                             m_ui->comboBoxFindText}) {
        combo->completer()->setCompletionMode(QCompleter::PopupCompletion);
        combo->completer()->setCaseSensitivity(Qt::CaseSensitive);
    }
    loadSettings(folder);
    changeControl();
}

FindDialog::~FindDialog() = default;

void FindDialog::loadSettings(const QString &folder)
{
    const Settings::FindOptions stored = Settings().findOptions(QDir::toNativeSeparators(folder));
    HistoryList::read(m_ui->comboBoxFindFiles, stored.files);
    m_ui->comboBoxFindFiles->setCurrentIndex(0);

    // The folder handed in stays one pick away when another one was searched last.
    addToList(m_ui->comboBoxSearchIn, QDir::toNativeSeparators(folder), folderIcon());
    addToList(m_ui->comboBoxSearchIn, stored.folder, folderIcon());

    if (stored.text.contains(QLatin1Char('\n'))) {
        // Phrases saved from the multi-line mode come back there.
        m_ui->textEditPhrases->setPlainText(stored.text);
        m_ui->radioButtonMultiple->setChecked(true);
    } else {
        addToList(m_ui->comboBoxFindText, stored.text);
    }
    m_ui->checkBoxMatchCase->setChecked(stored.matchCase);
    m_ui->checkBoxWholeWords->setChecked(stored.wholeWords);
    const int syntax = stored.patternSyntax;
    m_ui->comboBoxSyntax->setCurrentIndex(
        syntax >= 0 && syntax < m_ui->comboBoxSyntax->count() ? syntax : 0);
}

void FindDialog::saveSettings()
{
    Settings::FindOptions options;
    options.files = HistoryList::write(m_ui->comboBoxFindFiles);
    options.folder = m_ui->comboBoxSearchIn->currentText();
    options.text = findText();
    options.matchCase = isCaseSensitive();
    options.wholeWords = isWholeWords();
    options.patternSyntax = m_ui->comboBoxSyntax->currentIndex();
    Settings().setFindOptions(options);
}

bool FindDialog::execute()
{
    const bool accepted = exec() == QDialog::Accepted;
    if (folder().isEmpty()) {
        // Nothing is kept without a folder; a cancelled dialog needs no message.
        if (accepted)
            QMessageBox::information(nullptr, QStringLiteral("Find"),
                                     QStringLiteral("Empty folder to search"));
        return false;
    }
    addToList(m_ui->comboBoxFindFiles, maskText());
    addToList(m_ui->comboBoxSearchIn, m_ui->comboBoxSearchIn->currentText().trimmed(),
              folderIcon());
    if (isMultiLine())
        addToList(m_ui->comboBoxFindText, findText());
    saveSettings();
    return accepted;
}

void FindDialog::accept()
{
    const QString dir = folder();
    if (!dir.isEmpty()) {
        const QFileInfo info(dir);
        QString problem;
        if (!info.exists())
            problem = QStringLiteral("The folder %1 does not exist.");
        else if (!info.isDir())
            problem = QStringLiteral("%1 is not a folder.");
        else if (!info.isReadable() || !info.isExecutable())
            problem = QStringLiteral("The folder %1 cannot be read.");
        if (!problem.isEmpty()) {
            QMessageBox::warning(this, QStringLiteral("Find"),
                                 problem.arg(QDir::toNativeSeparators(dir)));
            return;
        }
    }
    const QString text = pattern();
    if (!text.isEmpty()) {
        const QRegExp check(Find::searchPattern(text, isWholeWords()),
                            isCaseSensitive() ? Qt::CaseSensitive : Qt::CaseInsensitive,
                            patternSyntax());
        if (!check.isValid()) {
            QMessageBox::warning(this, QStringLiteral("Find"),
                                 QStringLiteral("The text to find is not a valid %1 pattern: %2")
                                     .arg(m_ui->comboBoxSyntax->currentText(),
                                          check.errorString()));
            return;
        }
    }
    QDialog::accept();
}

void FindDialog::changeControl()
{
    const bool single = m_ui->radioButtonSingle->isChecked();
    m_ui->comboBoxFindText->setEnabled(single);
    m_ui->textEditPhrases->setEnabled(!single);
}

void FindDialog::chooseFolder()
{
    const QString chosen = QFileDialog::getExistingDirectory(this, QStringLiteral("Search in"),
                                                             folder());
    if (!chosen.isEmpty())
        addToList(m_ui->comboBoxSearchIn, QDir::toNativeSeparators(chosen), folderIcon());
}

QString FindDialog::maskText() const
{
    return m_ui->comboBoxFindFiles->currentText().trimmed();
}

QString FindDialog::folder() const
{
    return QDir::fromNativeSeparators(m_ui->comboBoxSearchIn->currentText().trimmed());
}

bool FindDialog::isMultiLine() const
{
    return m_ui->radioButtonMultiple->isChecked();
}

QString FindDialog::findText() const
{
    return isMultiLine() ? m_ui->textEditPhrases->toPlainText()
                         : m_ui->comboBoxFindText->currentText();
}

QString FindDialog::pattern() const
{
    if (!isMultiLine())
        return findText();
    QRegExp::PatternSyntax syntax = chosenSyntax();
    return Find::phrasesPattern(findText().split(QLatin1Char('\n')), syntax);
}

QRegExp::PatternSyntax FindDialog::patternSyntax() const
{
    QRegExp::PatternSyntax syntax = chosenSyntax();
    if (isMultiLine())
        Find::phrasesPattern(findText().split(QLatin1Char('\n')), syntax);
    return syntax;
}

QRegExp::PatternSyntax FindDialog::chosenSyntax() const
{
    const QString name = m_ui->comboBoxSyntax->currentText();
    if (name == QLatin1String("RegExp"))
        return QRegExp::RegExp;
    if (name == QLatin1String("RegExp2"))
        return QRegExp::RegExp2;
    if (name == QLatin1String("FixedString"))
        return QRegExp::FixedString;
    return QRegExp::Wildcard;
}

bool FindDialog::isCaseSensitive() const
{
    return m_ui->checkBoxMatchCase->isChecked();
}

bool FindDialog::isWholeWords() const
{
    return m_ui->checkBoxWholeWords->isChecked();
}
