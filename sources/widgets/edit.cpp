#include "edit.h"

#include "filenamecodec.h"
#include "largefileview.h"
#include "logging.h"
#include "textcodec.h"

#include <Qsci/qscilexerbash.h>
#include <Qsci/qscilexercpp.h>
#include <Qsci/qscilexercsharp.h>
#include <Qsci/qscilexerhtml.h>
#include <Qsci/qscilexerjava.h>
#include <Qsci/qscilexerpascal.h>
#include <Qsci/qscilexerperl.h>
#include <Qsci/qscilexerpython.h>
#include <Qsci/qscilexersql.h>
#include <Qsci/qscilexerxml.h>
#include <Qsci/qsciscintilla.h>

#include <QAction>
#include <QBoxLayout>
#include <QCheckBox>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSaveFile>
#include <QScrollBar>
#include <QTextBrowser>
#include <QTextCodec>
#include <QToolButton>

#include <cstring>

namespace {

const char *const Title = "Morvane Navarch";
constexpr int DiffMarker = 1;
constexpr int ChangeMarker = 2;
constexpr int HitIndicator = 8;
constexpr int MinFontSize = 4;
constexpr int MaxFontSize = 96;

QsciLexer *createLexer(const QString &language, QObject *parent)
{
    if (language == QLatin1String("SQL"))
        return new QsciLexerSQL(parent);
    if (language == QLatin1String("C++"))
        return new QsciLexerCPP(parent);
    if (language == QLatin1String("Java"))
        return new QsciLexerJava(parent);
    if (language == QLatin1String("C#"))
        return new QsciLexerCSharp(parent);
    if (language == QLatin1String("Pascal"))
        return new QsciLexerPascal(parent);
    if (language == QLatin1String("Python"))
        return new QsciLexerPython(parent);
    if (language == QLatin1String("Perl"))
        return new QsciLexerPerl(parent);
    if (language == QLatin1String("HTML"))
        return new QsciLexerHTML(parent);
    if (language == QLatin1String("XML"))
        return new QsciLexerXML(parent);
    if (language == QLatin1String("Bash"))
        return new QsciLexerBash(parent);
    return nullptr;
}

} // namespace

Edit::Edit(QObject *parent)
    : QObject(parent)
{
}

Edit::~Edit()
{
    if (m_container)
        m_container->deleteLater();
}

qint64 Edit::maximumFileSize()
{
    return qint64(4) << 20;
}

int Edit::maximumLineLength()
{
    return 64 * 1024;
}

qint64 Edit::plainTextSize()
{
    return qint64(1) << 20;
}

void Edit::setFile(const QString &absoluteFilePath)
{
    m_filePath = absoluteFilePath;
}

void Edit::execute()
{
    if (m_container)
        delete m_container;
    m_lexer = nullptr;
    m_largeView = nullptr;
    m_error.clear();
    m_searchLinks.clear();

    QWidget *host = m_hostLayout ? m_hostLayout->parentWidget() : nullptr;
    m_container = new QWidget(host);
    auto *layout = new QVBoxLayout(m_container);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);

    m_notice = new QLabel(m_container);
    m_notice->setObjectName(QStringLiteral("notice"));
    m_notice->setWordWrap(true);
    m_notice->setStyleSheet(QStringLiteral("background: #fff3c4; padding: 3px;"));
    m_notice->hide();
    layout->addWidget(m_notice);

    m_diskChoice = new QWidget(m_container);
    auto *choiceRow = new QHBoxLayout(m_diskChoice);
    choiceRow->setContentsMargins(2, 0, 2, 0);
    auto *reloadButton = new QPushButton(tr("Reload from disk"), m_diskChoice);
    reloadButton->setObjectName(QStringLiteral("reloadButton"));
    auto *keepButton = new QPushButton(tr("Keep my version"), m_diskChoice);
    keepButton->setObjectName(QStringLiteral("keepButton"));
    choiceRow->addStretch(1);
    choiceRow->addWidget(reloadButton);
    choiceRow->addWidget(keepButton);
    connect(reloadButton, &QPushButton::clicked, this, &Edit::reload);
    connect(keepButton, &QPushButton::clicked, this, [this] {
        showDiskChoice(false);
        showNotice(tr("The file %1 was changed by another program; you keep your version, "
                      "and saving will ask before overwriting it.").arg(name()));
    });
    m_diskChoice->hide();
    layout->addWidget(m_diskChoice);

    if (m_hostLayout) {
        m_hostLayout->addWidget(m_container, 0, Qt::Alignment());
        m_container->show();
    }

    QByteArray data;
    if (!readFile(&data)) {
        if (m_largeView)
            return;
        showNotice(m_error);
        return;
    }

    m_editor = new QsciScintilla(m_container);
    m_editor->setUtf8(true);
    m_editor->setMarginType(0, QsciScintilla::NumberMargin);
    m_editor->setMarginLineNumbers(0, true);
    m_editor->setMarginType(1, QsciScintilla::SymbolMargin);
    m_editor->setMarginWidth(1, 6);
    m_editor->setMarginMarkerMask(1, 1 << ChangeMarker);
    m_editor->markerDefine(QsciScintilla::Background, DiffMarker);
    m_editor->setMarkerBackgroundColor(QColor(255, 214, 214), DiffMarker);
    m_editor->markerDefine(QsciScintilla::FullRectangle, ChangeMarker);
    m_editor->setMarkerBackgroundColor(QColor(255, 170, 60), ChangeMarker);
    m_editor->indicatorDefine(QsciScintilla::StraightBoxIndicator, HitIndicator);
    m_editor->setIndicatorForegroundColor(QColor(255, 200, 0, 120), HitIndicator);
    m_editor->setBraceMatching(QsciScintilla::SloppyBraceMatch);
    m_editor->setCaretLineVisible(true);
    m_editor->setCaretLineBackgroundColor(QColor(240, 244, 255));
    m_editor->installEventFilter(this);
    layout->addWidget(m_editor, 1);
    connect(m_editor.data(), &QsciScintillaBase::SCN_MODIFIED, this,
            [this](int position, int type, const char *, int, int linesAdded, int, int, int, int,
                   int) { markChangedLines(position, type, linesAdded); });
    connect(m_editor.data(), &QsciScintilla::linesChanged, this, &Edit::updateLineNumberMargin);
    // The editor moves its scroll bar with signals blocked when it scrolls by itself
    // (keys, wheel, going to a line); report the new value so that linked bars follow.
    connect(m_editor.data(), &QsciScintillaBase::SCN_UPDATEUI, this, [this](int updated) {
        if (!(updated & QsciScintillaBase::SC_UPDATE_V_SCROLL))
            return;
        QScrollBar *bar = m_editor->verticalScrollBar();
        Q_EMIT bar->valueChanged(bar->value());
    });

    m_findAction = new QAction(tr("Find"), m_container);
    m_findAction->setObjectName(QStringLiteral("find"));
    m_findAction->setShortcut(QKeySequence::Find);
    m_findAction->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(m_findAction, &QAction::triggered, this, &Edit::showSearchBar);
    m_findNextAction = new QAction(tr("Find next"), m_container);
    m_findNextAction->setObjectName(QStringLiteral("findNext"));
    m_findNextAction->setShortcut(QKeySequence(QStringLiteral("Ctrl+G")));
    m_findNextAction->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(m_findNextAction, &QAction::triggered, this, &Edit::findNext);
    m_saveAction = new QAction(tr("Save"), m_container);
    m_saveAction->setObjectName(QStringLiteral("save"));
    m_saveAction->setShortcut(QKeySequence::Save);
    m_saveAction->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(m_saveAction, &QAction::triggered, this, [this] {
        if (isModified())
            save();
    });
    m_container->addAction(m_findAction);
    m_container->addAction(m_findNextAction);
    m_container->addAction(m_saveAction);
    buildSearchBar();
    layout->addWidget(m_searchBar);
    layout->addWidget(m_results);

    load(data);
    watchFile();
    applyLanguage();
    applyFont();
    m_editor->show();
    m_editor->setFocus(Qt::OtherFocusReason);
}

// Reads the file for the editor; false, with the reason in m_error, when the
// editor cannot show it. A file too large or with too long a line opens in the
// large-file view instead (also false).
bool Edit::readFile(QByteArray *data)
{
    QFileInfo info(m_filePath);
    m_existedAtLoad = info.exists();
    if (info.isDir()) {
        m_error = tr("%1 is a folder.").arg(QDir::toNativeSeparators(m_filePath));
        return false;
    }
    QFile file(m_filePath);
    if (!file.open(QIODevice::ReadOnly)) {
        m_error = tr("Cannot open the file %1: %2")
                      .arg(QDir::toNativeSeparators(m_filePath), file.errorString());
        return false;
    }
    if (file.size() > maximumFileSize()) {
        openLargeFileView(false);
        return false;
    }
    *data = file.readAll();
    // Longest line, in bytes: the editor lays a whole line out at each caret move.
    const char *p = data->constData();
    const char *end = p + data->size();
    while (p < end) {
        const char *nl = static_cast<const char *>(std::memchr(p, '\n', size_t(end - p)));
        const char *lineEnd = nl ? nl : end;
        if (lineEnd - p > maximumLineLength()) {
            data->clear();
            openLargeFileView(true);
            return false;
        }
        p = lineEnd + 1;
    }
    return true;
}

void Edit::openLargeFileView(bool longLine)
{
    const TextCodec::ByteOrderMark mark = [this] {
        QFile file(m_filePath);
        return file.open(QIODevice::ReadOnly) ? TextCodec::byteOrderMark(file.read(4))
                                              : TextCodec::ByteOrderMark();
    }();
    QTextCodec *codec = TextCodec::codecForName(mark.bytes.isEmpty() ? m_codecName : mark.codec);
    if (TextCodec::isWide(codec)) {
        m_error = tr("The file %1 is too large to open in the editor (%2 MB; at most %3 MB).")
                      .arg(QDir::toNativeSeparators(m_filePath))
                      .arg(QFileInfo(m_filePath).size() >> 20)
                      .arg(maximumFileSize() >> 20);
        return;
    }
    m_largeView = new LargeFileView(m_filePath, codec, m_container);
    m_container->layout()->addWidget(m_largeView);
    const QString size = QString::number(QFileInfo(m_filePath).size() / 1048576.0, 'f', 1);
    showNotice(longLine ? tr("The file %1 (%2 MB) has a line longer than the editor takes (%3 "
                             "KB): it is shown read-only, without line numbers.")
                              .arg(name(), size)
                              .arg(maximumLineLength() / 1024)
                        : tr("The file %1 (%2 MB) is larger than the editor takes (%3 MB): it "
                             "is shown read-only, without line numbers.")
                              .arg(name(), size)
                              .arg(maximumFileSize() >> 20));
    m_largeView->show();
    m_largeView->setFocus(Qt::OtherFocusReason);
}

void Edit::load(const QByteArray &data)
{
    m_decodingErrors = false;
    m_binary = false;
    m_byteOrderMark.clear();
    const QFileInfo info(m_filePath);

    // A byte-order mark names the encoding better than any setting; it is kept for saving.
    TextCodec::Decoded decoded = TextCodec::decode(data, m_codecName);
    m_byteOrderMark = decoded.mark.bytes;
    m_fileCodec = decoded.codec;
    QString &text = decoded.text;
    m_binary = decoded.binary;
    m_decodingErrors = m_binary || decoded.invalidCharacters > 0;
    if (m_binary)
        text.replace(QChar(0), QChar(0x2400)); // the symbol for NUL keeps the text displayable

    // New lines follow the line end most used in the file; every existing line keeps its own.
    switch (TextCodec::dominantLineEnd(text)) {
    case TextCodec::LineEnd::CrLf:
        m_editor->setEolMode(QsciScintilla::EolWindows);
        break;
    case TextCodec::LineEnd::Cr:
        m_editor->setEolMode(QsciScintilla::EolMac);
        break;
    case TextCodec::LineEnd::Lf:
        m_editor->setEolMode(QsciScintilla::EolUnix);
        break;
    }

    m_editor->setReadOnly(false);
    m_editor->setText(text);
    m_editor->SendScintilla(QsciScintillaBase::SCI_EMPTYUNDOBUFFER);
    m_editor->setModified(false);
    m_editor->markerDeleteAll(ChangeMarker);
    // The mode bits, not access(): an administrator may write anywhere, but a file
    // made read-only is still meant to stay as it is.
    const QFile::Permissions anyWrite = QFile::WriteOwner | QFile::WriteGroup | QFile::WriteOther;
    m_fileReadOnly = info.exists() && !(info.permissions() & anyWrite);
    m_editor->setReadOnly(m_readOnly || m_decodingErrors || m_fileReadOnly);
    m_diskState = diskState(m_filePath);
    if (m_binary) {
        showNotice(tr("The file %1 is not a text file; it is shown read-only.")
                       .arg(info.fileName()));
    } else if (m_decodingErrors) {
        showNotice(tr("The file %1 holds bytes that are not valid in %2; it is shown "
                      "read-only so that saving cannot damage it. Choose its encoding "
                      "to edit it.")
                       .arg(info.fileName(), QString::fromLatin1(m_fileCodec)));
    } else if (m_fileReadOnly) {
        showNotice(tr("Read-only: the file %1 may not be written; it is shown read-only.")
                       .arg(info.fileName()));
    } else {
        showNotice(QString());
    }
}

void Edit::showNotice(const QString &text)
{
    if (!m_notice)
        return;
    m_notice->setText(text);
    m_notice->setVisible(!text.isEmpty());
}

QString Edit::notice() const
{
    return m_notice && !m_notice->isHidden() ? m_notice->text() : QString();
}

void Edit::showDiskChoice(bool show)
{
    if (m_diskChoice)
        m_diskChoice->setVisible(show);
}

Edit::DiskState Edit::diskState(const QString &path)
{
    const QFileInfo info(path);
    DiskState state;
    state.exists = info.exists();
    if (state.exists) {
        state.size = info.size();
        state.modified = info.lastModified();
    }
    return state;
}

void Edit::watchFile()
{
    if (!m_watcher) {
        m_watcher = new QFileSystemWatcher(this);
        connect(m_watcher, &QFileSystemWatcher::fileChanged, this, &Edit::fileChangedOnDisk);
    }
    // A file replaced by a rename (as saving does) is no longer watched: watch it again.
    if (QFileInfo::exists(m_filePath) && !m_watcher->files().contains(m_filePath))
        m_watcher->addPath(m_filePath);
}

void Edit::fileChangedOnDisk()
{
    if (!m_editor)
        return;
    const DiskState now = diskState(m_filePath);
    watchFile();
    if (now == m_diskState)
        return; // our own save, or a touch that changed nothing
    if (!now.exists) {
        showNotice(tr("The file %1 was removed by another program.").arg(name()));
        return;
    }
    if (!isModified()) {
        reload();
        showNotice(tr("The file %1 was changed by another program and has been reloaded.")
                       .arg(name()));
        return;
    }
    showNotice(tr("The file %1 was changed by another program. Reload it and lose your "
                  "changes, or keep your version?")
                   .arg(name()));
    showDiskChoice(true);
}

void Edit::reload()
{
    if (!m_editor)
        return;
    showDiskChoice(false);
    QByteArray data;
    if (!readFile(&data)) {
        if (m_largeView) {
            // Grown past what the editor takes: the large-file view replaces it.
            m_editor->hide();
            delete m_editor;
            return;
        }
        showNotice(m_error);
        return;
    }
    int line = 0;
    int index = 0;
    m_editor->getCursorPosition(&line, &index);
    const long firstVisible = m_editor->SendScintilla(QsciScintillaBase::SCI_GETFIRSTVISIBLELINE);
    load(data);
    m_editor->setCursorPosition(qMin(line, m_editor->lines() - 1), 0);
    m_editor->SendScintilla(QsciScintillaBase::SCI_SETFIRSTVISIBLELINE, firstVisible);
    watchFile();
}

QTextCodec *Edit::codec() const
{
    return TextCodec::codecForName(m_fileCodec.isEmpty() ? m_codecName : m_fileCodec);
}

QString Edit::languageName(const QString &fileName, const QString &conversion)
{
    static const QHash<QString, QString> byExtension = [] {
        QHash<QString, QString> map;
        const auto add = [&map](const char *language, std::initializer_list<const char *> exts) {
            for (const char *ext : exts)
                map.insert(QLatin1String(ext), QLatin1String(language));
        };
        add("SQL", {"sql", "ddl", "dml", "pls", "plsql", "pkb", "pks", "prc", "fnc", "trg",
                    "vw", "tab", "bteq", "tpt", "hql"});
        add("C++", {"c", "h", "cpp", "cc", "cxx", "hpp", "hh", "hxx", "pc", "ec", "sqc", "sqx"});
        add("Java", {"java", "sqlj"});
        add("C#", {"cs"});
        add("Pascal", {"pas", "dpr", "dpk", "pp", "dfm", "lpr"});
        add("Python", {"py", "pyw"});
        add("Perl", {"pl", "pm"});
        add("HTML", {"html", "htm", "xhtml", "asp", "aspx", "php", "jsp"});
        add("XML", {"xml", "xsd", "xsl", "xslt", "wsdl", "xaml", "rdl", "config", "csproj"});
        add("Bash", {"sh", "ksh", "bash", "zsh"});
        return map;
    }();
    static const QHash<QString, QString> byConversion = [] {
        QHash<QString, QString> map;
        const auto add = [&map](const char *language, std::initializer_list<const char *> keys) {
            for (const char *key : keys)
                map.insert(QString::fromLatin1(key).toLower(), QLatin1String(language));
        };
        add("C++", {"C", "CPP", "C++"});
        add("Java", {"Java"});
        add("C#", {"C#"});
        add("Pascal", {"Pascal", "PascalFRM", "Delphi"});
        add("Python", {"Python"});
        add("Perl", {"Perl"});
        add("HTML", {"HTML", "ASP", "ASP.NET", "PHP"});
        add("XML", {"XML", "WSDL", "RDL"});
        add("Bash", {"KSH"});
        return map;
    }();

    const QString suffix = QFileInfo(fileName).suffix().toLower();
    const auto ext = byExtension.constFind(suffix);
    if (ext != byExtension.constEnd())
        return *ext;
    const QString key = conversion.trimmed().toLower();
    if (key.isEmpty())
        return QString();
    const auto conv = byConversion.constFind(key);
    if (conv != byConversion.constEnd())
        return *conv;
    // Every database direction converts SQL.
    return QStringLiteral("SQL");
}

void Edit::changeConversion(const QString &conversion)
{
    m_conversion = conversion;
    if (m_editor)
        applyLanguage();
}

void Edit::applyLanguage()
{
    const bool large = QFileInfo(m_filePath).size() >= plainTextSize();
    m_language = (large || m_binary) ? QString() : languageName(m_filePath, m_conversion);
    QsciLexer *old = m_lexer;
    m_lexer = createLexer(m_language, m_editor);
    m_editor->setLexer(m_lexer);
    delete old;
    m_editor->setFolding(m_lexer ? QsciScintilla::BoxedTreeFoldStyle
                                 : QsciScintilla::NoFoldStyle,
                         2);
    applyFont();
}

void Edit::applyFont()
{
    if (!m_editor)
        return;
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSize(m_fontSize);
    if (m_lexer) {
        m_lexer->setDefaultFont(font);
        m_lexer->setFont(font, -1);
    }
    m_editor->setFont(font);
    m_editor->setMarginsFont(font);
    updateLineNumberMargin();
}

void Edit::updateLineNumberMargin()
{
    if (!m_editor)
        return;
    const int digits = QString::number(qMax(1, m_editor->lines())).size();
    m_editor->setMarginWidth(0, QString(digits + 1, QLatin1Char('9')));
}

void Edit::markChangedLines(int position, int modificationType, int linesAdded)
{
    if (!(modificationType & (QsciScintillaBase::SC_MOD_INSERTTEXT
                              | QsciScintillaBase::SC_MOD_DELETETEXT))
        || !m_editor->isModified())
        return;
    int line = 0;
    int index = 0;
    m_editor->lineIndexFromPosition(position, &line, &index);
    for (int l = line; l <= line + qMax(0, linesAdded); ++l)
        m_editor->markerAdd(l, ChangeMarker);
}

void Edit::buildSearchBar()
{
    m_searchBar = new QWidget(m_container);
    auto *row = new QHBoxLayout(m_searchBar);
    row->setContentsMargins(2, 0, 2, 0);
    m_findEdit = new QLineEdit(m_searchBar);
    m_findEdit->setPlaceholderText(tr("Find"));
    m_findEdit->setClearButtonEnabled(true);
    m_replaceEdit = new QLineEdit(m_searchBar);
    m_replaceEdit->setPlaceholderText(tr("Replace with"));
    m_matchCase = new QCheckBox(tr("Match case"), m_searchBar);
    auto *previous = new QPushButton(tr("Previous"), m_searchBar);
    auto *next = new QPushButton(tr("Next"), m_searchBar);
    auto *all = new QPushButton(tr("Find all"), m_searchBar);
    m_replaceButton = new QPushButton(tr("Replace"), m_searchBar);
    m_replaceAllButton = new QPushButton(tr("Replace all"), m_searchBar);
    auto *close = new QToolButton(m_searchBar);
    close->setText(QStringLiteral("\u00D7"));
    close->setToolTip(tr("Close the search bar"));
    for (QWidget *w : std::initializer_list<QWidget *>{m_findEdit, previous, next, all,
                                                       m_replaceEdit, m_replaceButton,
                                                       m_replaceAllButton, m_matchCase, close})
        row->addWidget(w);
    m_searchBar->installEventFilter(this);
    m_findEdit->installEventFilter(this);
    m_replaceEdit->installEventFilter(this);
    m_searchBar->hide();

    m_results = new QTextBrowser(m_container);
    m_results->setOpenLinks(false);
    m_results->setMaximumHeight(120);
    m_results->hide();

    connect(m_findEdit, &QLineEdit::returnPressed, this, &Edit::findNext);
    connect(previous, &QPushButton::clicked, this, &Edit::findPrevious);
    connect(next, &QPushButton::clicked, this, &Edit::findNext);
    connect(all, &QPushButton::clicked, this, &Edit::search);
    connect(m_replaceButton, &QPushButton::clicked, this, &Edit::replaceCurrent);
    connect(m_replaceAllButton, &QPushButton::clicked, this, &Edit::replaceAll);
    connect(close, &QToolButton::clicked, this, [this] {
        m_searchBar->hide();
        m_results->hide();
        if (m_editor)
            m_editor->setFocus(Qt::OtherFocusReason);
    });
    connect(m_results, &QTextBrowser::anchorClicked, this, [this](const QUrl &url) {
        goToLine(url.fragment().toInt() - 1);
        if (m_editor)
            m_editor->setFocus(Qt::OtherFocusReason);
    });
}

void Edit::showSearchBar()
{
    if (!m_editor || !m_searchBar)
        return;
    if (m_editor->hasSelectedText() && !m_editor->selectedText().contains(QLatin1Char('\n')))
        m_findEdit->setText(m_editor->selectedText());
    const bool writable = !m_editor->isReadOnly();
    m_replaceEdit->setVisible(writable);
    m_replaceButton->setVisible(writable);
    m_replaceAllButton->setVisible(writable);
    m_searchBar->show();
    m_findEdit->setFocus(Qt::OtherFocusReason);
    m_findEdit->selectAll();
}

void Edit::setSearchText(const QString &text)
{
    if (m_findEdit)
        m_findEdit->setText(text);
}

void Edit::search()
{
    if (!m_editor || !m_findEdit)
        return;
    const QString needle = m_findEdit->text();
    const Qt::CaseSensitivity cs = m_matchCase->isChecked() ? Qt::CaseSensitive
                                                             : Qt::CaseInsensitive;
    m_editor->clearIndicatorRange(0, 0, m_editor->lines(), 0, HitIndicator);
    m_searchLinks.clear();
    if (!needle.isEmpty()) {
        const int lines = lineCount();
        for (int line = 0; line < lines; ++line) {
            const QString lineString = lineText(line);
            for (int at = lineString.indexOf(needle, 0, cs); at >= 0;
                 at = lineString.indexOf(needle, at + needle.size(), cs)) {
                m_searchLinks << tr("<a href=#%1>%1 : %2</a>")
                                     .arg(line + 1)
                                     .arg(lineString.toHtmlEscaped());
                m_editor->fillIndicatorRange(line, at, line, at + needle.size(), HitIndicator);
            }
        }
    }
    m_results->setHtml(m_searchLinks.isEmpty()
                           ? tr("No hits for \"%1\".").arg(needle.toHtmlEscaped())
                           : m_searchLinks.join(QLatin1String("<br/>")));
    m_results->show();
    Q_EMIT searchResults(m_searchLinks);
}

bool Edit::findNext()
{
    if (!m_editor || !m_findEdit || m_findEdit->text().isEmpty())
        return false;
    return m_editor->findFirst(m_findEdit->text(), false, m_matchCase->isChecked(), false, true,
                               true);
}

bool Edit::findPrevious()
{
    if (!m_editor || !m_findEdit || m_findEdit->text().isEmpty())
        return false;
    int lineFrom = -1;
    int indexFrom = -1;
    int lineTo = -1;
    int indexTo = -1;
    m_editor->getSelection(&lineFrom, &indexFrom, &lineTo, &indexTo);
    if (lineFrom < 0)
        m_editor->getCursorPosition(&lineFrom, &indexFrom);
    return m_editor->findFirst(m_findEdit->text(), false, m_matchCase->isChecked(), false, true,
                               false, lineFrom, indexFrom);
}

void Edit::replaceCurrent()
{
    if (!m_editor || m_editor->isReadOnly() || m_findEdit->text().isEmpty())
        return;
    const Qt::CaseSensitivity cs = m_matchCase->isChecked() ? Qt::CaseSensitive
                                                             : Qt::CaseInsensitive;
    if (m_editor->hasSelectedText()
        && m_editor->selectedText().compare(m_findEdit->text(), cs) == 0)
        m_editor->replaceSelectedText(m_replaceEdit->text());
    findNext();
}

int Edit::replaceAll()
{
    if (!m_editor || m_editor->isReadOnly() || m_findEdit->text().isEmpty())
        return 0;
    int count = 0;
    m_editor->beginUndoAction();
    bool found = m_editor->findFirst(m_findEdit->text(), false, m_matchCase->isChecked(), false,
                                     false, true, 0, 0, false);
    while (found) {
        m_editor->replace(m_replaceEdit->text());
        ++count;
        found = m_editor->findNext();
    }
    m_editor->endUndoAction();
    return count;
}

bool Edit::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        if (watched == m_editor && key->key() == Qt::Key_Escape && key->modifiers() == 0
            && !m_editor->isListActive()) {
            if (m_searchBar->isVisible()) {
                m_searchBar->hide();
                m_results->hide();
            } else {
                // Closing deletes this editor: let the key event finish first.
                QMetaObject::invokeMethod(this, &Edit::hide, Qt::QueuedConnection);
            }
            return true;
        }
        if (watched == m_editor && key->key() == Qt::Key_F3 && key->modifiers() == 0) {
            // The key goes on to the window too, which switches its own find off.
            showSearchBar();
            return false;
        }
        if (watched == m_editor && key->key() == Qt::Key_F5 && key->modifiers() == 0) {
            Q_EMIT startConversion();
            return true;
        }
        if (watched != m_editor && key->key() == Qt::Key_Escape) {
            m_searchBar->hide();
            m_results->hide();
            m_editor->setFocus(Qt::OtherFocusReason);
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

void Edit::setReadOnly(bool readOnly)
{
    m_readOnly = readOnly;
    if (m_editor)
        m_editor->setReadOnly(readOnly || m_decodingErrors || m_fileReadOnly);
}

bool Edit::isReadOnly() const
{
    return m_editor ? m_editor->isReadOnly() : m_readOnly;
}

int Edit::lineCount() const
{
    return m_editor ? m_editor->lines() : 0;
}

QString Edit::lineText(int line) const
{
    if (!m_editor || line < 0 || line >= m_editor->lines())
        return QString();
    QString result = m_editor->text(line);
    if (result.endsWith(QLatin1Char('\n')))
        result.chop(1);
    if (result.endsWith(QLatin1Char('\r')))
        result.chop(1);
    return result;
}

QString Edit::text() const
{
    return m_editor ? m_editor->text() : QString();
}

bool Edit::setText(const QString &text)
{
    if (!m_editor)
        return false;
    if (!savePrompt(tr("The document %1 has been modified.<br/>Save changes to the file before "
                       "its text is replaced?")
                        .arg(name())))
        return false;
    const bool readOnly = m_editor->isReadOnly();
    m_editor->setReadOnly(false);
    m_editor->setText(text);
    m_editor->SendScintilla(QsciScintillaBase::SCI_EMPTYUNDOBUFFER);
    m_editor->setModified(false);
    m_editor->markerDeleteAll(ChangeMarker);
    m_editor->setReadOnly(readOnly);
    return true;
}

void Edit::markLine(int line)
{
    if (m_editor && line >= 0 && line < m_editor->lines())
        m_editor->markerAdd(line, DiffMarker);
}

void Edit::clearMarkedLines()
{
    if (m_editor)
        m_editor->markerDeleteAll(DiffMarker);
}

bool Edit::isLineMarked(int line) const
{
    return m_editor && (m_editor->markersAtLine(line) & (1 << DiffMarker));
}

void Edit::goToLine(int line)
{
    if (m_largeView && line >= 0)
        m_largeView->goToLine(line);
    if (!m_editor || line < 0 || line >= m_editor->lines())
        return;
    m_editor->setCursorPosition(line, 0);
    m_editor->ensureLineVisible(line);
}

void Edit::showMatch(int line, int column, int length)
{
    if (!m_editor || line < 0 || line >= m_editor->lines())
        return;
    const QString text = lineText(line);
    column = qBound(0, column, text.size());
    length = qBound(0, length, text.size() - column);
    // Scintilla counts positions in UTF-8 bytes.
    const long lineStart = m_editor->SendScintilla(QsciScintillaBase::SCI_POSITIONFROMLINE, line);
    const long start = lineStart + text.left(column).toUtf8().size();
    const long end = start + text.mid(column, length).toUtf8().size();
    m_editor->ensureLineVisible(line);
    m_editor->SendScintilla(QsciScintillaBase::SCI_SETSEL, end, start);
    // The whole match where it fits, its start first.
    m_editor->SendScintilla(QsciScintillaBase::SCI_SCROLLRANGE, end, start);
}

int Edit::currentLine() const
{
    if (!m_editor)
        return 0;
    int line = 0;
    int index = 0;
    m_editor->getCursorPosition(&line, &index);
    return line;
}

void Edit::setFontSize(int size)
{
    m_fontSize = qBound(MinFontSize, size, MaxFontSize);
    applyFont();
}

void Edit::zoomIn()
{
    setFontSize(m_fontSize + 1);
}

void Edit::zoomOut()
{
    setFontSize(m_fontSize - 1);
}

void Edit::setCodec(const QByteArray &name)
{
    m_codecName = name;
    if (m_editor && m_byteOrderMark.isEmpty())
        m_fileCodec = name;
}

QByteArray Edit::codecName() const
{
    return m_fileCodec.isEmpty() ? m_codecName : m_fileCodec;
}

QWidget *Edit::widget() const
{
    return m_container;
}

QsciScintilla *Edit::editorWidget() const
{
    return m_editor;
}

bool Edit::isModified() const
{
    return m_editor && m_editor->isModified();
}

void Edit::revert()
{
    if (!m_editor)
        return;
    const bool readOnly = m_editor->isReadOnly();
    m_editor->setReadOnly(false);
    while (m_editor->isModified() && m_editor->isUndoAvailable())
        m_editor->undo();
    m_editor->setReadOnly(readOnly);
    m_editor->markerDeleteAll(ChangeMarker);
}

QString Edit::name() const
{
    return m_editor || m_largeView ? FileNameCodec::displayName(QFileInfo(m_filePath).fileName())
                                   : QString();
}

QScrollBar *Edit::verticalScrollBar() const
{
    return m_editor ? m_editor->verticalScrollBar() : nullptr;
}

bool Edit::hasFocus() const
{
    return m_editor && m_editor->hasFocus();
}

void Edit::setSearchMode(bool on)
{
    qCDebug(lcEditor) << "SetSearchMode" << on;
    if (m_findAction)
        m_findAction->setEnabled(on);
    if (m_findNextAction)
        m_findNextAction->setEnabled(on);
}

void Edit::linkScrollBar(Edit *other)
{
    QScrollBar *mine = verticalScrollBar();
    QScrollBar *theirs = other ? other->verticalScrollBar() : nullptr;
    if (!mine || !theirs || mine == theirs)
        return;
    connect(mine, &QScrollBar::valueChanged, theirs, &QScrollBar::setValue,
            Qt::UniqueConnection);
    connect(theirs, &QScrollBar::valueChanged, mine, &QScrollBar::setValue,
            Qt::UniqueConnection);
}

bool Edit::savePrompt(const QString &text)
{
    if (!isModified())
        return true;
    const auto answer = QMessageBox::warning(
        m_editor, QString::fromLatin1(Title), text,
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    if (answer == QMessageBox::Save)
        return save();
    if (answer == QMessageBox::Discard) {
        revert();
        return true;
    }
    return false;
}

bool Edit::discardPrompt(const QString &text)
{
    if (!isModified())
        return true;
    const auto answer = QMessageBox::warning(m_editor, QString::fromLatin1(Title), text,
                                             QMessageBox::Discard | QMessageBox::Cancel,
                                             QMessageBox::Discard);
    if (answer == QMessageBox::Discard) {
        revert();
        return true;
    }
    return false;
}

bool Edit::closeEditor()
{
    if (!m_editor)
        return true;
    const QString text =
        tr("The document %1 has been modified.<br/>Save changes to the file before closing?")
            .arg(name());
    if (!savePrompt(text))
        return false;
    m_container->hide();
    return true;
}

void Edit::fail(const QString &message)
{
    m_error = message;
    QMessageBox::critical(m_editor, QString::fromLatin1(Title), message);
}

bool Edit::save()
{
    if (!m_editor)
        return false;
    m_error.clear();
    const QString shown = QDir::toNativeSeparators(m_filePath);
    if (m_decodingErrors) {
        fail(tr("The file %1 was opened read-only because it could not be read as text; "
                "it is not saved.")
                 .arg(shown));
        return false;
    }
    const QFileInfo info(m_filePath);
    if (m_existedAtLoad && !info.exists()) {
        const auto answer = QMessageBox::question(
            m_editor, QString::fromLatin1(Title),
            tr("The file %1 has been removed since it was opened.<br/>Save it again?").arg(shown),
            QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes);
        if (answer != QMessageBox::Yes) {
            m_error = tr("The file %1 has been removed.").arg(shown);
            return false;
        }
    }
    // The mode bits, not access(): an administrator may write anywhere, but a file
    // made read-only is still meant to stay as it is.
    const QFile::Permissions anyWrite = QFile::WriteOwner | QFile::WriteGroup | QFile::WriteOther;
    if (info.exists() && !(info.permissions() & anyWrite)) {
        fail(tr("Cannot save the file %1: it is read-only.").arg(shown));
        return false;
    }

    if (info.exists() && m_existedAtLoad && !(diskState(m_filePath) == m_diskState)) {
        const auto answer = QMessageBox::warning(
            m_editor, QString::fromLatin1(Title),
            tr("The file %1 has been changed by another program since it was opened.<br/>"
               "Overwrite those changes with yours?")
                .arg(shown),
            QMessageBox::Save | QMessageBox::Cancel, QMessageBox::Cancel);
        if (answer != QMessageBox::Save) {
            m_error = tr("Not saved: the file %1 was changed by another program.").arg(shown);
            return false;
        }
    }

    QTextCodec *textCodec = codec();
    const QString content = m_editor->text();
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    const QByteArray encoded = textCodec->fromUnicode(content.constData(), content.size(), &state);
    if (state.invalidChars > 0) {
        const auto answer = QMessageBox::warning(
            m_editor, QString::fromLatin1(Title),
            tr("%1 characters of the document cannot be written in %2 and would be replaced "
               "by \"?\".<br/>Save anyway?")
                .arg(state.invalidChars)
                .arg(QString::fromLatin1(textCodec->name())),
            QMessageBox::Save | QMessageBox::Cancel, QMessageBox::Cancel);
        if (answer != QMessageBox::Save) {
            m_error = tr("Not saved: characters not representable in %1.")
                          .arg(QString::fromLatin1(textCodec->name()));
            return false;
        }
    }

    // Written aside and renamed over the file, so a failed save leaves the original intact.
    QSaveFile file(m_filePath);
    if (!file.open(QIODevice::WriteOnly)) {
        fail(tr("Cannot save the file %1:<br/>%2").arg(shown, file.errorString()));
        return false;
    }
    file.write(m_byteOrderMark);
    file.write(encoded);
    if (!file.commit()) {
        fail(tr("Cannot save the file %1:<br/>%2").arg(shown, file.errorString()));
        return false;
    }
    m_existedAtLoad = true;
    m_diskState = diskState(m_filePath);
    watchFile();
    showDiskChoice(false);
    m_editor->setModified(false);
    m_editor->markerDeleteAll(ChangeMarker);
    return true;
}
