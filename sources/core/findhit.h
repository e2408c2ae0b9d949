#pragma once

#include <QMetaType>
#include <QString>
#include <QVector>

/** One result of a search: a matching line, or a listed file when no text is given. */
struct FindHit
{
    QString path;
    QString line; // the line number as text; empty for a listed file
    QString text; // the line, trimmed (and cut when very long)
};
Q_DECLARE_METATYPE(FindHit)
Q_DECLARE_METATYPE(QVector<FindHit>)
