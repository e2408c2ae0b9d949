#include "largefileview.h"

#include <QFontDatabase>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTextCodec>

#include <cstring>
#include <limits>

namespace {

// How far back the start of a line is looked for; a line longer than this is
// broken into rows counted from the offset looked at.
constexpr qint64 LineSearchBytes = 64 * 1024;

} // namespace

LargeFileView::LargeFileView(const QString &path, QTextCodec *codec, QWidget *parent)
    : QAbstractScrollArea(parent)
    , m_file(path)
    , m_codec(codec)
{
    m_utf8 = !codec || codec->mibEnum() == 106;
    if (m_file.open(QIODevice::ReadOnly))
        m_size = m_file.size();
    m_scale = std::max<qint64>(1, m_size / std::numeric_limits<int>::max() + 1);
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    setFont(font);
    setFocusPolicy(Qt::StrongFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(verticalScrollBar(), &QScrollBar::actionTriggered, this, [this] {
        // Dragging or clicking the bar: its position is a byte offset.
        setTop(rowStartAtOrBefore(qint64(verticalScrollBar()->sliderPosition()) * m_scale));
    });
    updateScrollBar();
}

QByteArray LargeFileView::readAt(qint64 offset, qint64 length) const
{
    offset = qBound<qint64>(0, offset, m_size);
    if (!m_file.seek(offset))
        return {};
    return m_file.read(std::min(length, m_size - offset));
}

// Where a row of at most columns() characters ends in @p bytes (of one line),
// cut where a character starts.
int LargeFileView::cutRow(const QByteArray &bytes) const
{
    int cut = std::min(bytes.size(), columns());
    if (m_utf8) {
        while (cut > 1 && cut < bytes.size()
               && (static_cast<unsigned char>(bytes.at(cut)) & 0xc0) == 0x80)
            --cut;
    }
    return std::max(cut, 1);
}

qint64 LargeFileView::nextRowStart(qint64 rowStart) const
{
    const QByteArray bytes = readAt(rowStart, columns() + 4);
    const int newline = bytes.indexOf('\n');
    if (newline >= 0 && newline <= cutRow(bytes))
        return rowStart + newline + 1;
    return std::min(m_size, rowStart + cutRow(bytes));
}

QVector<LargeFileView::Row> LargeFileView::rowsFrom(qint64 offset, int count) const
{
    QVector<Row> rows;
    while (rows.size() < count && offset < m_size) {
        const qint64 next = nextRowStart(offset);
        QByteArray bytes = readAt(offset, next - offset);
        if (bytes.endsWith('\n'))
            bytes.chop(1);
        if (bytes.endsWith('\r'))
            bytes.chop(1);
        rows.append(Row{offset, bytes});
        offset = next;
    }
    return rows;
}

qint64 LargeFileView::rowStartAtOrBefore(qint64 offset) const
{
    offset = qBound<qint64>(0, offset, m_size);
    const qint64 from = std::max<qint64>(0, offset - LineSearchBytes);
    const QByteArray before = readAt(from, offset - from);
    const int newline = before.lastIndexOf('\n');
    qint64 row = newline >= 0 ? from + newline + 1 : from;
    if (newline < 0 && from > 0)
        return offset; // deep inside a very long line: rows start here
    for (qint64 next = row; next <= offset && next < m_size; next = nextRowStart(row))
        row = next;
    return row;
}

int LargeFileView::columns() const
{
    const int width = fontMetrics().horizontalAdvance(QLatin1Char('M'));
    return std::max(20, viewport()->width() / std::max(1, width));
}

int LargeFileView::visibleRowCount() const
{
    return std::max(1, viewport()->height() / std::max(1, fontMetrics().lineSpacing()));
}

qint64 LargeFileView::lastPageTop() const
{
    qint64 top = m_size;
    for (int i = 0; i < visibleRowCount() && top > 0; ++i)
        top = rowStartAtOrBefore(top - 1);
    return top;
}

void LargeFileView::setTop(qint64 offset)
{
    m_top = qBound<qint64>(0, offset, m_size);
    updateScrollBar();
    viewport()->update();
}

bool LargeFileView::goToLine(int line)
{
    // The file is read from its start, in blocks, only as far as the line.
    constexpr qint64 BlockBytes = 1024 * 1024;
    qint64 offset = 0;
    int found = 0;
    while (found < line && offset < m_size) {
        const QByteArray block = readAt(offset, BlockBytes);
        if (block.isEmpty())
            return false;
        const char *begin = block.constData();
        const char *p = begin;
        const char *end = begin + block.size();
        while (found < line) {
            const auto *nl = static_cast<const char *>(std::memchr(p, '\n', size_t(end - p)));
            if (!nl)
                break;
            ++found;
            p = nl + 1;
        }
        offset += found < line ? block.size() : p - begin;
    }
    if (found < line)
        return false;
    setTop(offset);
    return true;
}

void LargeFileView::updateScrollBar()
{
    QScrollBar *bar = verticalScrollBar();
    const QSignalBlocker blocker(bar);
    bar->setRange(0, static_cast<int>(m_size / m_scale));
    bar->setPageStep(std::max(1, static_cast<int>(qint64(visibleRowCount()) * columns() / m_scale)));
    bar->setSingleStep(std::max(1, static_cast<int>(columns() / m_scale)));
    bar->setValue(static_cast<int>(m_top / m_scale));
}

QStringList LargeFileView::visibleRows() const
{
    QStringList rows;
    for (const Row &row : rowsFrom(m_top, visibleRowCount()))
        rows << (m_codec ? m_codec->toUnicode(row.bytes) : QString::fromUtf8(row.bytes));
    return rows;
}

void LargeFileView::paintEvent(QPaintEvent *)
{
    QPainter painter(viewport());
    painter.fillRect(viewport()->rect(), palette().base());
    painter.setPen(palette().text().color());
    const int spacing = fontMetrics().lineSpacing();
    int y = fontMetrics().ascent();
    for (const QString &row : visibleRows()) {
        painter.drawText(2, y, row);
        y += spacing;
    }
}

void LargeFileView::keyPressEvent(QKeyEvent *event)
{
    qint64 top = m_top;
    switch (event->key()) {
    case Qt::Key_Down:
        top = nextRowStart(m_top);
        break;
    case Qt::Key_Up:
        top = m_top > 0 ? rowStartAtOrBefore(m_top - 1) : 0;
        break;
    case Qt::Key_PageDown:
        for (int i = 0; i < visibleRowCount() - 1 && top < m_size; ++i)
            top = nextRowStart(top);
        break;
    case Qt::Key_PageUp:
        for (int i = 0; i < visibleRowCount() - 1 && top > 0; ++i)
            top = rowStartAtOrBefore(top - 1);
        break;
    case Qt::Key_Home:
        top = 0;
        break;
    case Qt::Key_End:
        top = lastPageTop();
        break;
    default:
        QAbstractScrollArea::keyPressEvent(event);
        return;
    }
    setTop(std::min(top, std::max<qint64>(m_top, lastPageTop())));
}

void LargeFileView::resizeEvent(QResizeEvent *event)
{
    QAbstractScrollArea::resizeEvent(event);
    updateScrollBar();
}
