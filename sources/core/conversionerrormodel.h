#pragma once

#include "conversionoutput.h"

#include <QAbstractListModel>
#include <QSet>

/**
 * The syntax errors of a run as a list, one row per error ("file:line
 * message"), grown in batches as the engine reports them.
 */
class ConversionErrorModel : public QAbstractListModel
{
    Q_OBJECT
public:
    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

    /** Makes the rows equal the errors of @p output, adding or dropping rows at the end. */
    void update(const ConversionOutput &output);
    void clear();

    const ConversionError &error(int row) const { return m_errors.at(row); }
    int scriptsWithErrors() const { return m_files.size(); }

private:
    QVector<ConversionError> m_errors;
    QSet<QString> m_files;
};
