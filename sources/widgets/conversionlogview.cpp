#include "conversionlogview.h"

#include "conversion.h"
#include "conversionerrormodel.h"
#include "encodings.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QRegularExpression>
#include <QSaveFile>
#include <QScrollBar>
#include <QSplitter>
#include <QTextBlock>
#include <QTextCodec>
#include <QTextCursor>
#include <QToolButton>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>

namespace {

// What the line shows: a carriage return inside a line redraws it, as on a
// terminal, so the text after the last one that is followed by anything wins.
// On a Japanese system the engine and the command line speak Shift_JIS.
QString displayText(const char *data, int size)
{
    while (size > 0 && data[size - 1] == '\r')
        --size;
    int start = size;
    while (start > 0 && data[start - 1] != '\r')
        --start;
    static QTextCodec *const codec = ansiCodePage() == 932
        ? QTextCodec::codecForName("Shift_JIS")
        : QTextCodec::codecForName("UTF-8");
    return codec->toUnicode(data + start, size - start);
}

} // namespace

ConversionLogView::ConversionLogView(QPlainTextEdit *view, Conversion *conversion, QWidget *parent)
    : QWidget(parent ? parent : view->parentWidget())
    , m_view(view)
    , m_conversion(conversion)
    , m_errors(new ConversionErrorModel(this))
    , m_errorList(new QListView)
    , m_progress(new QProgressBar)
    , m_counters(new QLabel)
    , m_findEdit(new QLineEdit)
    , m_nextError(new QAction(QStringLiteral("Next Error"), this))
    , m_previousError(new QAction(QStringLiteral("Previous Error"), this))
{
    if (QWidget *host = view->parentWidget()) {
        if (QLayout *layout = host->layout())
            delete layout->replaceWidget(view, this);
    }

    m_view->setReadOnly(true);
    m_view->setUndoRedoEnabled(false);
    m_view->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_view->setMaximumBlockCount(MaxBlocks);
    m_view->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard
                                    | Qt::LinksAccessibleByMouse);
    m_view->viewport()->installEventFilter(this);
    m_view->viewport()->setMouseTracking(true);

    m_errorList->setModel(m_errors);
    m_errorList->setUniformItemSizes(true);
    m_errorList->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_errorList->setToolTip(QStringLiteral("Errors of the run: Enter or a double click opens the "
                                           "script at the line"));

    m_progress->setFormat(QStringLiteral("%v / %m scripts"));
    m_progress->setMaximum(1);
    m_progress->setValue(0);
    m_progress->setMaximumWidth(220);
    m_findEdit->setPlaceholderText(QStringLiteral("Find in log"));
    m_findEdit->setToolTip(QStringLiteral("Enter finds the next match, Shift+Enter the previous one"));
    m_findEdit->setClearButtonEnabled(true);
    m_findEdit->setMaximumWidth(260);

    m_nextError->setShortcut(QKeySequence(Qt::Key_F9));
    m_previousError->setShortcut(QKeySequence(Qt::SHIFT + Qt::Key_F9));
    for (QAction *action : {m_nextError, m_previousError}) {
        action->setShortcutContext(Qt::WindowShortcut);
        action->setToolTip(QStringLiteral("%1 (%2)").arg(action->text(),
                                                         action->shortcut().toString()));
        addAction(action);
    }
    auto *previous = new QToolButton;
    previous->setDefaultAction(m_previousError);
    auto *next = new QToolButton;
    next->setDefaultAction(m_nextError);
    auto *save = new QToolButton;
    save->setText(QStringLiteral("Save Log..."));

    auto *tools = new QHBoxLayout;
    tools->setContentsMargins(0, 0, 0, 0);
    tools->addWidget(m_progress);
    tools->addWidget(m_counters);
    tools->addWidget(previous);
    tools->addWidget(next);
    tools->addStretch();
    tools->addWidget(m_findEdit);
    tools->addWidget(save);
    auto *splitter = new QSplitter(Qt::Horizontal);
    splitter->addWidget(m_view);
    splitter->addWidget(m_errorList);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 1);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(tools);
    layout->addWidget(splitter);
    updateCounters();

    // The end is followed only while the reader is there: the scroll bar's
    // range grows after the text is laid out, so the choice is kept between
    // the moves of the reader.
    QScrollBar *bar = m_view->verticalScrollBar();
    connect(bar, &QScrollBar::valueChanged, this,
            [this, bar](int value) { m_followEnd = value >= bar->maximum(); });
    connect(bar, &QScrollBar::rangeChanged, this, [this, bar] {
        if (m_followEnd)
            bar->setValue(bar->maximum());
    });

    m_timer.setSingleShot(true);
    m_timer.setInterval(30);
    connect(&m_timer, &QTimer::timeout, this, &ConversionLogView::render);
    connect(m_nextError, &QAction::triggered, this, &ConversionLogView::nextError);
    connect(m_previousError, &QAction::triggered, this, &ConversionLogView::previousError);
    connect(save, &QToolButton::clicked, this, &ConversionLogView::saveLog);
    connect(m_findEdit, &QLineEdit::returnPressed, this, [this] {
        const bool found = find(m_findEdit->text(),
                                QApplication::keyboardModifiers() & Qt::ShiftModifier);
        m_findEdit->setStyleSheet(found || m_findEdit->text().isEmpty()
                                      ? QString()
                                      : QStringLiteral("QLineEdit { background: #fdd; }"));
    });
    connect(m_errorList, &QListView::activated, this, [this](const QModelIndex &index) {
        const ConversionError &error = m_errors->error(index.row());
        Q_EMIT openFileAtLine(QFileInfo(error.file).absoluteFilePath(), error.line);
    });
    connect(m_errorList->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &ConversionLogView::showErrorInLog);
}

void ConversionLogView::outputChanged()
{
    // Output arrives in many small pieces: one pass for a burst of them.
    if (!m_timer.isActive())
        m_timer.start();
}

void ConversionLogView::flush()
{
    do {
        m_timer.stop();
        render();
    } while (m_timer.isActive());
}

bool ConversionLogView::isCaughtUp() const
{
    // A pass is due whenever output waits to be shown.
    return !m_timer.isActive();
}

void ConversionLogView::setRunning(bool running, int scripts, bool complete)
{
    m_running = running;
    m_complete = complete;
    if (running)
        m_scriptTotal = scripts;
    updateCounters();
}

void ConversionLogView::removeBlocksFrom(int changedFrom)
{
    QTextDocument *document = m_view->document();
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

void ConversionLogView::appendLines(int from, int to)
{
    const QByteArray &buffer = m_conversion->output();
    const char *data = buffer.constData();
    static const QRegularExpression errorLine(
        QStringLiteral("line (\\d+) - unexpected token '?([^'\\n]+?)(Failed|'|$)"));
    QTextCursor cursor(m_view->document());
    cursor.movePosition(QTextCursor::End);
    cursor.beginEditBlock();
    QTextCharFormat plainFormat;
    QTextCharFormat linkFormat;
    linkFormat.setAnchor(true);
    linkFormat.setForeground(m_view->palette().link());
    linkFormat.setFontUnderline(true);
    // Plain lines are gathered and inserted at once: one insertion, one layout.
    QString plain;
    bool first = m_blocks.empty();
    for (int start = from; start < to;) {
        int end = buffer.indexOf('\n', start);
        const bool complete = end >= 0 && end < to;
        end = complete ? end + 1 : to;
        const QString text = displayText(data + start, end - start - (complete ? 1 : 0));
        if (!first)
            plain += QLatin1Char('\n');
        first = false;
        QRegularExpressionMatch match;
        QString script;
        if (text.contains(QLatin1String("unexpected token"))) {
            match = errorLine.match(text);
            if (match.hasMatch())
                script = m_conversion->outputParser().scriptBefore(start);
        }
        if (script.isEmpty()) {
            plain += text;
        } else {
            cursor.insertText(plain, plainFormat);
            plain.clear();
            QUrl url = QUrl::fromLocalFile(QFileInfo(script).absoluteFilePath());
            url.setFragment(match.captured(1));
            linkFormat.setAnchorHref(url.toString(QUrl::FullyEncoded));
            cursor.insertText(QStringLiteral("%1:%2").arg(QDir::toNativeSeparators(script),
                                                          match.captured(1)),
                              linkFormat);
            plain = QStringLiteral(" Unexpected token '%1'").arg(match.captured(2));
        }
        m_blocks.emplace_back(start, end);
        start = end;
    }
    cursor.insertText(plain, plainFormat);
    cursor.endEditBlock();
}

void ConversionLogView::render()
{
    ConversionOutput &output = m_conversion->outputParser();
    const QByteArray &buffer = output.buffer();
    const int changedFrom = output.takeChangedFrom();
    if (changedFrom < m_rendered || m_tailShown)
        removeBlocksFrom(std::min(changedFrom, m_rendered));
    if (m_blocks.empty())
        m_view->document()->clear();

    // A flood of lines: show the newest ones and say how many were left out.
    int from = m_rendered;
    const int lastNewline = buffer.lastIndexOf('\n');
    if (lastNewline >= from) {
        const int lines = int(std::count(buffer.constData() + from,
                                         buffer.constData() + lastNewline + 1, '\n'));
        if (lines > MaxBlocks) {
            int skipTo = from;
            for (int skip = lines - MaxBlocks; skip > 0; --skip)
                skipTo = buffer.indexOf('\n', skipTo) + 1;
            QTextCursor cursor(m_view->document());
            cursor.movePosition(QTextCursor::End);
            if (!m_blocks.empty())
                cursor.insertBlock();
            cursor.insertText(
                QStringLiteral("[%1 lines of output not shown here]").arg(lines - MaxBlocks),
                QTextCharFormat());
            m_blocks.emplace_back(from, skipTo);
            from = skipTo;
        }
    }
    // Lines go in by slices until the pass has used its time; the rest waits
    // for the next pass, after the events that came in meanwhile.
    QElapsedTimer pass;
    pass.start();
    int to = from;
    while (pass.elapsed() < PassMilliseconds) {
        int end = to;
        int lines = 0;
        for (int at = buffer.indexOf('\n', end); at >= 0 && lines < LinesPerSlice;
             at = buffer.indexOf('\n', end)) {
            end = at + 1;
            ++lines;
        }
        if (lines == 0)
            break;
        appendLines(to, end);
        to = end;
    }
    m_rendered = to;
    if (buffer.indexOf('\n', to) >= 0) {
        // More lines wait. While the engine runs, the next pass comes after a
        // pause as long as this one, in which its output is read: a flood
        // then piles up and its older lines are left out, instead of the
        // window holding the engine back.
        m_timer.start(m_conversion->isRunning() ? PassMilliseconds : 0);
    } else if (to < buffer.size()) {
        appendLines(to, buffer.size());
        m_tailShown = true;
    }
    while (int(m_blocks.size()) > m_view->document()->blockCount())
        m_blocks.pop_front();
    m_errors->update(output);
    updateCounters();
}

void ConversionLogView::updateCounters()
{
    const int scripts = m_conversion->outputParser().scriptCount();
    const int total = std::max(m_scriptTotal, scripts);
    m_progress->setMaximum(std::max(total, 1));
    m_progress->setValue(m_running || !m_complete ? std::max(0, scripts - 1) : scripts);
    m_counters->setText(QStringLiteral("%1 error(s) in %2 script(s)")
                            .arg(m_errors->rowCount())
                            .arg(m_errors->scriptsWithErrors()));
}

void ConversionLogView::nextError()
{
    const int current = m_errorList->currentIndex().row();
    selectError(current < 0 ? 0 : current + 1);
}

void ConversionLogView::previousError()
{
    const int current = m_errorList->currentIndex().row();
    selectError(current < 0 ? m_errors->rowCount() - 1 : current - 1);
}

void ConversionLogView::selectError(int row)
{
    const int count = m_errors->rowCount();
    if (count == 0)
        return;
    // Round the ends, as find does.
    row = (row % count + count) % count;
    const QModelIndex index = m_errors->index(row);
    m_errorList->setCurrentIndex(index);
    m_errorList->scrollTo(index);
    showErrorInLog(index);
}

void ConversionLogView::showErrorInLog(const QModelIndex &index)
{
    if (!index.isValid())
        return;
    const int position = m_errors->error(index.row()).position;
    // The block whose output range holds the error's line, if it is still shown.
    const auto it = std::upper_bound(m_blocks.cbegin(), m_blocks.cend(), position,
                                     [](int pos, const std::pair<int, int> &block) {
                                         return pos < block.first;
                                     });
    if (it == m_blocks.cbegin() || position >= (it - 1)->second)
        return;
    const int number = int(it - m_blocks.cbegin()) - 1 + m_view->document()->blockCount()
                       - int(m_blocks.size());
    const QTextBlock block = m_view->document()->findBlockByNumber(number);
    if (!block.isValid())
        return;
    QTextCursor cursor(block);
    cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    m_view->setTextCursor(cursor);
    m_view->centerCursor();
}

bool ConversionLogView::find(const QString &text, bool backward)
{
    if (text.isEmpty())
        return false;
    const QTextDocument::FindFlags flags = backward ? QTextDocument::FindBackward
                                                    : QTextDocument::FindFlags();
    if (m_view->find(text, flags))
        return true;
    const QTextCursor kept = m_view->textCursor();
    QTextCursor cursor = kept;
    cursor.movePosition(backward ? QTextCursor::End : QTextCursor::Start);
    m_view->setTextCursor(cursor);
    if (m_view->find(text, flags))
        return true;
    m_view->setTextCursor(kept);
    return false;
}

bool ConversionLogView::saveTo(const QString &path, QString *error)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(m_conversion->output()) < 0
        || !file.commit()) {
        if (error)
            *error = file.errorString();
        return false;
    }
    return true;
}

void ConversionLogView::saveLog()
{
    const QString path = QFileDialog::getSaveFileName(
        this, QStringLiteral("Save Log"), QDir::home().filePath(QStringLiteral("conversion.log")),
        QStringLiteral("Log files (*.log *.txt);;All files (*)"));
    if (path.isEmpty())
        return;
    QString error;
    if (!saveTo(path, &error))
        QMessageBox::warning(this, QStringLiteral("Morvane Navarch"),
                             QStringLiteral("The log could not be saved to '%1': %2")
                                 .arg(QDir::toNativeSeparators(path), error));
}

bool ConversionLogView::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_view->viewport()) {
        if (event->type() == QEvent::MouseMove) {
            const auto *mouse = static_cast<QMouseEvent *>(event);
            m_view->viewport()->setCursor(m_view->anchorAt(mouse->pos()).isEmpty()
                                              ? Qt::IBeamCursor
                                              : Qt::PointingHandCursor);
        } else if (event->type() == QEvent::MouseButtonRelease) {
            const auto *mouse = static_cast<QMouseEvent *>(event);
            const QString anchor = m_view->anchorAt(mouse->pos());
            if (mouse->button() == Qt::LeftButton && !anchor.isEmpty()
                && !m_view->textCursor().hasSelection())
                followLink(QUrl(anchor));
        }
    }
    return QWidget::eventFilter(watched, event);
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
