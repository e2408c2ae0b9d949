#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QObject>
#include <QPointer>
#include <QStringList>

class QAction;
class QBoxLayout;
class QCheckBox;
class QFileSystemWatcher;
class QLabel;
class QLineEdit;
class QPushButton;
class QScrollBar;
class QTextBrowser;
class QTextCodec;
class QWidget;
class LargeFileView;
class QsciLexer;
class QsciScintilla;

/**
 * The code editor hosted in a panel. execute() builds a fresh editor in the host
 * layout and loads the file set with setFile(); the operations below tolerate the
 * absence of an editor (they do nothing or give 0, false or an empty string).
 *
 * A file too large for the editor, or with a line too long for it, is shown
 * read-only in a LargeFileView instead, and there is no editor.
 *
 * The open file is watched: a change on disk reloads an unmodified document at
 * once and otherwise offers to reload or keep it; saving over a file changed on
 * disk asks first.
 */
class Edit : public QObject
{
    Q_OBJECT
public:
    explicit Edit(QObject *parent = nullptr);
    ~Edit() override;

    void execute();

    void setHostLayout(QBoxLayout *layout) { m_hostLayout = layout; }
    /** A read-only editor views the file (F3); takes effect at once and on the next load. */
    void setReadOnly(bool readOnly);
    bool isReadOnly() const;
    QString filePath() const { return m_filePath; }
    /** What went wrong with the last load or save; empty when nothing did. */
    QString errorString() const { return m_error; }
    /** The loaded file holds bytes the codec cannot read, or NUL bytes: it is shown read-only. */
    bool hasDecodingErrors() const { return m_decodingErrors; }
    bool isBinary() const { return m_binary; }

    int lineCount() const;
    /** The text of line @p line without its line end; empty past the last line. */
    QString lineText(int line) const;
    QString text() const;
    /**
     * Replaces the whole text; the result counts as the unmodified document.
     * A modified document is first put to the save prompt: false, and nothing
     * replaced, when the user cancels.
     */
    bool setText(const QString &text);
    void markLine(int line);
    /** Removes the marks that markLine() set. */
    void clearMarkedLines();
    bool isLineMarked(int line) const;
    void goToLine(int line);
    /** Selects @p length characters at @p column of @p line and scrolls them into view. */
    void showMatch(int line, int column, int length);
    int currentLine() const;
    int fontSize() const { return m_fontSize; }
    void setFontSize(int size);
    void zoomIn();
    void zoomOut();
    /** The codec for the next load, and for saving the current text. */
    void setCodec(const QByteArray &name);
    QByteArray codecName() const;
    bool isModified() const;
    /** Undoes every change since the last load or save. */
    void revert();
    /** The file name, as the prompts show it. */
    QString name() const;
    QAction *findAction() const { return m_findAction; }
    QAction *findNextAction() const { return m_findNextAction; }
    QScrollBar *verticalScrollBar() const;
    bool hasFocus() const;
    void setSearchMode(bool on);
    /** The language used to highlight the file ("SQL", "Java", ...; empty for plain text). */
    QString language() const { return m_language; }

    /** Asks about unsaved changes with Save, Discard and Cancel; false for Cancel. */
    bool savePrompt(const QString &text);
    /** Asks with Discard and Cancel; true after discarding. */
    bool discardPrompt(const QString &text);
    /** Closes the editor after the save prompt; false when the user keeps it open. */
    bool closeEditor();
    /** Writes the text back in the file's codec, byte-order mark and line ends. */
    bool save();

    QsciScintilla *editorWidget() const;
    /** The view that shows a file too large for the editor; null otherwise. */
    LargeFileView *largeFileView() const { return m_largeView; }
    /** The file's mode forbids writing: it is shown read-only. */
    bool isFileReadOnly() const { return m_fileReadOnly; }
    /** The text of the notice shown above the editor; empty when none is shown. */
    QString notice() const;
    /** The editor with its notice line and its search bar. */
    QWidget *widget() const;

    /** Makes the two editors scroll together. */
    void linkScrollBar(Edit *other);

    /** The search bar's hits as links "<a href=#n>n : text</a>", after search(). */
    QStringList searchLinks() const { return m_searchLinks; }
    void setSearchText(const QString &text);

    /** Chooses the highlighting for a file from its extension, then the conversion. */
    static QString languageName(const QString &fileName, const QString &conversion);
    /** Largest file the editor opens; larger ones go to the large-file view. */
    static qint64 maximumFileSize();
    /** Longest line the editor opens; a file with a longer one goes to the large-file view. */
    static int maximumLineLength();
    /** From this size on a file is shown without highlighting or folding. */
    static qint64 plainTextSize();

Q_SIGNALS:
    /** The user asked to close the editor (Escape). */
    void hide();
    void startConversion();
    void searchResults(const QStringList &links);

public Q_SLOTS:
    void setFile(const QString &absoluteFilePath);
    /** Finds every hit of the search bar's text and lists them as links. */
    void search();
    /** Picks the highlighting for the conversion direction now in use. */
    void changeConversion(const QString &conversion);
    void showSearchBar();
    bool findNext();
    bool findPrevious();
    void replaceCurrent();
    int replaceAll();
    /** Reads the file again, keeping the position shown. */
    void reload();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct DiskState
    {
        bool exists = false;
        qint64 size = -1;
        QDateTime modified;
        bool operator==(const DiskState &o) const
        {
            return exists == o.exists && size == o.size && modified == o.modified;
        }
    };
    static DiskState diskState(const QString &path);

    bool readFile(QByteArray *data);
    void load(const QByteArray &data);
    void openLargeFileView(bool longLine);
    void watchFile();
    void fileChangedOnDisk();
    void showNotice(const QString &text);
    void showDiskChoice(bool show);
    void buildSearchBar();
    void applyLanguage();
    void applyFont();
    void updateLineNumberMargin();
    void markChangedLines(int position, int modificationType, int linesAdded);
    void fail(const QString &message);
    QTextCodec *codec() const;

    QPointer<QWidget> m_container;
    QPointer<QsciScintilla> m_editor;
    QsciLexer *m_lexer = nullptr;
    QBoxLayout *m_hostLayout = nullptr;
    QLabel *m_notice = nullptr;
    QWidget *m_diskChoice = nullptr;
    LargeFileView *m_largeView = nullptr;
    QFileSystemWatcher *m_watcher = nullptr;
    QWidget *m_searchBar = nullptr;
    QLineEdit *m_findEdit = nullptr;
    QLineEdit *m_replaceEdit = nullptr;
    QCheckBox *m_matchCase = nullptr;
    QPushButton *m_replaceButton = nullptr;
    QPushButton *m_replaceAllButton = nullptr;
    QTextBrowser *m_results = nullptr;
    QAction *m_findAction = nullptr;
    QAction *m_findNextAction = nullptr;
    QAction *m_saveAction = nullptr;

    QString m_filePath;
    QByteArray m_codecName = "System";
    QByteArray m_fileCodec;    // the codec the file was read with (its BOM's, if any)
    QByteArray m_byteOrderMark;
    QString m_conversion;
    QString m_language;
    QString m_error;
    QStringList m_searchLinks;
    int m_fontSize = 12;
    bool m_readOnly = false;
    bool m_decodingErrors = false;
    bool m_binary = false;
    bool m_existedAtLoad = false;
    bool m_fileReadOnly = false;
    DiskState m_diskState; // the file as last loaded or saved
};
