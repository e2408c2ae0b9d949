#pragma once

#include <QStringList>

/**
 * Reads one of the comma-separated direction tables and keeps its column of
 * display names, in file order.
 */
class Reader
{
public:
    virtual ~Reader() = default;

    void read(const QString &path);
    void list(QStringList &out) const;

private:
    QStringList m_lines;
};

/** The lines of a table file: CR LF and LF line ends, blank lines dropped. */
QStringList readTableLines(const QString &path, bool *ok);
