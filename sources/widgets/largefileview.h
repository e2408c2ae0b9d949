#pragma once

#include <QAbstractScrollArea>
#include <QFile>
#include <QStringList>

class QTextCodec;

/**
 * A read-only view of a file too large, or with lines too long, for the editor.
 *
 * Only the bytes on screen are read, so opening costs nothing whatever the
 * file's size, and no layout of a whole line is ever made: a long line is
 * broken into rows as wide as the view. The position is a byte offset, which
 * the vertical scroll bar shows.
 */
class LargeFileView : public QAbstractScrollArea
{
    Q_OBJECT
public:
    LargeFileView(const QString &path, QTextCodec *codec, QWidget *parent = nullptr);

    bool isOpen() const { return m_file.isOpen(); }
    /** Byte offset of the first row shown. */
    qint64 topOffset() const { return m_top; }
    /** The rows now shown, decoded. */
    QStringList visibleRows() const;
    /** Shows the start of line @p line (0-based) at the top; false past the last line. */
    bool goToLine(int line);

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    struct Row
    {
        qint64 start;
        QByteArray bytes; // without the line end
    };

    QByteArray readAt(qint64 offset, qint64 length) const;
    QVector<Row> rowsFrom(qint64 offset, int count) const;
    qint64 nextRowStart(qint64 rowStart) const;
    qint64 rowStartAtOrBefore(qint64 offset) const;
    int cutRow(const QByteArray &bytes) const;
    int columns() const;
    int visibleRowCount() const;
    qint64 lastPageTop() const;
    void setTop(qint64 offset);
    void updateScrollBar();

    mutable QFile m_file;
    QTextCodec *m_codec = nullptr;
    bool m_utf8 = true;
    qint64 m_size = 0;
    qint64 m_top = 0;
    qint64 m_scale = 1; // bytes per scroll bar step, for files past 2 GB
};
