#include "conversionlogview.h"

#include "conversion.h"
#include "encodings.h"

#include <QDir>
#include <QFileInfo>
#include <QRegExp>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextCodec>
#include <QTextCursor>
#include <QUrl>

#include <algorithm>

namespace {

// What the line shows: a carriage return inside a line redraws it, as on a
// terminal, so the text after the last one that is followed by anything wins.
// On a Japanese system the engine and the command line speak Shift_JIS.
QString displayText(const QByteArray &line)
{
    QByteArray text = line;
    while (text.endsWith('\r'))
        text.chop(1);
    const int cr = text.lastIndexOf('\r');
    if (cr >= 0)
        text = text.mid(cr + 1);
    static QTextCodec *const codec = ansiCodePage() == 932
        ? QTextCodec::codecForName("Shift_JIS")
        : QTextCodec::codecForName("UTF-8");
    return codec->toUnicode(text);
}

} // namespace

ConversionLogView::ConversionLogView(QTextBrowser *browser, Conversion *conversion,
                                     QObject *parent)
    : QObject(parent)
    , m_browser(browser)
    , m_conversion(conversion)
{
    m_browser->setOpenLinks(false);
    m_browser->setOpenExternalLinks(false);
    m_browser->setUndoRedoEnabled(false);
    m_browser->document()->setMaximumBlockCount(MaxBlocks);
    m_timer.setSingleShot(true);
    m_timer.setInterval(30);
    connect(&m_timer, &QTimer::timeout, this, &ConversionLogView::render);
    connect(m_browser, &QTextBrowser::anchorClicked, this, &ConversionLogView::followLink);
}

void ConversionLogView::outputChanged()
{
    // Output arrives in many small pieces: one redraw for a burst of them.
    if (!m_timer.isActive())
        m_timer.start();
}

void ConversionLogView::flush()
{
    m_timer.stop();
    render();
}

void ConversionLogView::removeBlocksFrom(int changedFrom)
{
    QTextDocument *document = m_browser->document();
    // Blocks beyond what the document keeps were trimmed from its top.
    while (int(m_blocks.size()) > document->blockCount())
        m_blocks.pop_front();
    int remove = 0;
    for (auto it = m_blocks.rbegin(); it != m_blocks.rend(); ++it) {
        // A complete line's range ends after its line feed: it changed when
        // that line feed or anything before it within the line did.
        if (it->second <= changedFrom && !(m_tailShown && it == m_blocks.rbegin()))
            break;
        ++remove;
    }
    if (remove == 0)
        return;
    if (remove >= document->blockCount() || remove >= int(m_blocks.size())) {
        document->clear();
        m_blocks.clear();
    } else {
        QTextCursor cursor(document);
        const QTextBlock first = document->findBlockByNumber(document->blockCount() - remove);
        cursor.setPosition(first.position() - 1);
        cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
        cursor.removeSelectedText();
        m_blocks.erase(m_blocks.end() - remove, m_blocks.end());
    }
    m_rendered = m_blocks.empty() ? 0 : m_blocks.back().second;
    m_tailShown = false;
}

void ConversionLogView::appendBlock()
{
    QTextCursor cursor(m_browser->document());
    cursor.movePosition(QTextCursor::End);
    if (!m_blocks.empty())
        cursor.insertBlock(QTextBlockFormat(), QTextCharFormat());
}

void ConversionLogView::appendLine(int start, int end, bool complete)
{
    const QByteArray &buffer = m_conversion->output();
    const QByteArray bytes = buffer.mid(start, end - start - (complete ? 1 : 0));
    const QString text = displayText(bytes);

    appendBlock();
    QTextCursor cursor(m_browser->document());
    cursor.movePosition(QTextCursor::End);
    static const QRegExp errorLine(
        QStringLiteral("line (\\d+) - unexpected token '?([^'\\n]+)(Failed|'|$)"));
    QRegExp pattern(errorLine);
    pattern.setMinimal(true);
    const QString script = pattern.indexIn(text) >= 0 ? m_conversion->outputParser().scriptBefore(start)
                                                       : QString();
    if (script.isEmpty()) {
        cursor.insertText(text, QTextCharFormat());
    } else {
        const QString path = QFileInfo(script).absoluteFilePath();
        QUrl url = QUrl::fromLocalFile(path);
        url.setFragment(pattern.cap(1));
        QTextCharFormat link;
        link.setAnchor(true);
        link.setAnchorHref(url.toString(QUrl::FullyEncoded));
        link.setForeground(m_browser->palette().link());
        link.setFontUnderline(true);
        cursor.insertText(QStringLiteral("%1:%2").arg(QDir::toNativeSeparators(script), pattern.cap(1)),
                          link);
        cursor.insertText(QStringLiteral(" Unexpected token '%1'").arg(pattern.cap(2)),
                          QTextCharFormat());
    }
    m_blocks.emplace_back(start, end);
}

void ConversionLogView::render()
{
    if (!m_browser)
        return;
    ConversionOutput &output = m_conversion->outputParser();
    const QByteArray &buffer = output.buffer();
    const int changedFrom = output.takeChangedFrom();
    if (changedFrom < m_rendered || m_tailShown)
        removeBlocksFrom(std::min(changedFrom, m_rendered));
    if (m_blocks.empty())
        m_browser->document()->clear();

    // A flood of lines: show the newest ones and say how many were left out.
    int from = m_rendered;
    const int lastNewline = buffer.lastIndexOf('\n');
    int lines = 0;
    int skipTo = from;
    if (lastNewline >= from) {
        for (int at = lastNewline; at >= from && lines <= MaxBlocks; at = buffer.lastIndexOf('\n', at - 1)) {
            ++lines;
            skipTo = at + 1;
            if (at == 0)
                break;
        }
        if (lines > MaxBlocks) {
            const int skipped = buffer.left(skipTo).mid(from).count('\n');
            appendBlock();
            QTextCursor cursor(m_browser->document());
            cursor.movePosition(QTextCursor::End);
            cursor.insertText(QStringLiteral("[%1 lines of output not shown here]").arg(skipped),
                              QTextCharFormat());
            m_blocks.emplace_back(from, skipTo);
            from = skipTo;
        }
    }
    for (int end = buffer.indexOf('\n', from); end >= 0; end = buffer.indexOf('\n', from)) {
        appendLine(from, end + 1, true);
        from = end + 1;
    }
    m_rendered = from;
    if (from < buffer.size()) {
        appendLine(from, buffer.size(), false);
        m_tailShown = true;
    }
    while (int(m_blocks.size()) > m_browser->document()->blockCount())
        m_blocks.pop_front();
    // The newest line always shows.
    m_browser->moveCursor(QTextCursor::End);
    if (QScrollBar *bar = m_browser->verticalScrollBar())
        bar->setValue(bar->maximum());
}

void ConversionLogView::followLink(const QUrl &url)
{
    const int line = url.fragment().toInt();
    QUrl file = url;
    file.setFragment(QString());
    const QString path = file.isLocalFile() ? file.toLocalFile() : file.toString();
    if (!path.isEmpty())
        Q_EMIT openFileAtLine(path, line);
}
