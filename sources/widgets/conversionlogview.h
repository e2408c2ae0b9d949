#pragma once

#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <deque>
#include <utility>

class Conversion;
class ConversionErrorModel;
class QAction;
class QLabel;
class QLineEdit;
class QListView;
class QModelIndex;
class QPlainTextEdit;
class QProgressBar;
class QUrl;

/**
 * The log of a run: the engine's output as it grows, a progress bar of the
 * scripts, error counters, the list of errors beside the log with keys to go
 * from one to the next, and find and save.
 *
 * Only new lines are added, in batches; the progress line that the engine
 * rewrites replaces the one shown. Error lines become links "file:line" that
 * open the file at that line. The view keeps the newest MaxBlocks lines (the
 * whole output stays in the conversion command, and Save writes all of it),
 * and follows the end only while it is scrolled to the bottom.
 */
class ConversionLogView : public QWidget
{
    Q_OBJECT
public:
    /** Takes the place of @p view in its parent's layout and shows the output of @p conversion. */
    ConversionLogView(QPlainTextEdit *view, Conversion *conversion, QWidget *parent = nullptr);

    /** The output has grown or changed: show it soon. */
    void outputChanged();
    /** Shows whatever is pending now. */
    void flush();
    /** A run starts with @p scripts scripts (0 when unknown), or has ended; the
        last script started counts as done only when the run ended @p complete. */
    void setRunning(bool running, int scripts = 0, bool complete = true);

    QPlainTextEdit *view() const { return m_view; }
    QListView *errorList() const { return m_errorList; }
    QProgressBar *progressBar() const { return m_progress; }
    QLabel *counters() const { return m_counters; }
    QLineEdit *findEdit() const { return m_findEdit; }
    QAction *nextErrorAction() const { return m_nextError; }
    QAction *previousErrorAction() const { return m_previousError; }

    /** Selects the next match of @p text in the log, wrapping round; false when there is none. */
    bool find(const QString &text, bool backward = false);
    /** Writes the whole output of the run to @p path. */
    bool saveTo(const QString &path, QString *error);

    static constexpr int MaxBlocks = 20000;
    /** How long one pass adds lines before the window's other events get their turn. */
    static constexpr int PassMilliseconds = 15;
    static constexpr int LinesPerSlice = 500;
    /** Whether everything the conversion holds is shown. */
    bool isCaughtUp() const;

Q_SIGNALS:
    void openFileAtLine(const QString &path, int line);

public Q_SLOTS:
    void nextError();
    void previousError();
    void saveLog();

private:
    void render();
    void removeBlocksFrom(int changedFrom);
    void appendLines(int from, int to);
    void updateCounters();
    void selectError(int row);
    void showErrorInLog(const QModelIndex &index);
    void followLink(const QUrl &url);
    bool eventFilter(QObject *watched, QEvent *event) override;

    QPlainTextEdit *m_view;
    Conversion *m_conversion;
    ConversionErrorModel *m_errors;
    QListView *m_errorList;
    QProgressBar *m_progress;
    QLabel *m_counters;
    QLineEdit *m_findEdit;
    QAction *m_nextError;
    QAction *m_previousError;
    QTimer m_timer;
    // Buffer ranges [start, end) of the blocks shown, in document order; the
    // last one may be the unfinished line.
    std::deque<std::pair<int, int>> m_blocks;
    int m_rendered = 0;
    bool m_tailShown = false;
    bool m_followEnd = true;
    bool m_running = false;
    bool m_complete = true;
    int m_scriptTotal = 0;
};
