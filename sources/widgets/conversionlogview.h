#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <deque>
#include <utility>

class Conversion;
class QTextBrowser;
class QUrl;

/**
 * Shows the engine's output in the log view as it grows. Only new lines are
 * added; the progress line that the engine rewrites replaces the one shown.
 * Error lines become links "file:line" that open the file at that line.
 *
 * The document keeps the newest MaxBlocks lines; the whole output stays in
 * the conversion command.
 */
class ConversionLogView : public QObject
{
    Q_OBJECT
public:
    ConversionLogView(QTextBrowser *browser, Conversion *conversion, QObject *parent = nullptr);

    /** The output has grown or changed: show it soon. */
    void outputChanged();
    /** Shows whatever is pending now. */
    void flush();

    static constexpr int MaxBlocks = 50000;

Q_SIGNALS:
    void openFileAtLine(const QString &path, int line);

private:
    void render();
    void removeBlocksFrom(int changedFrom);
    void appendLine(int start, int end, bool complete);
    void appendBlock();
    void followLink(const QUrl &url);

    QPointer<QTextBrowser> m_browser;
    Conversion *m_conversion;
    QTimer m_timer;
    // Buffer ranges [start, end) of the blocks shown, in document order; the
    // last one may be the unfinished line.
    std::deque<std::pair<int, int>> m_blocks;
    int m_rendered = 0;
    bool m_tailShown = false;
};
