#include "conversionerrormodel.h"

#include "filenamecodec.h"

#include <QDir>

int ConversionErrorModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_errors.size();
}

QVariant ConversionErrorModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_errors.size())
        return QVariant();
    const ConversionError &error = m_errors.at(index.row());
    const QString file = FileNameCodec::displayName(QDir::toNativeSeparators(error.file));
    switch (role) {
    case Qt::DisplayRole:
        return QStringLiteral("%1:%2 %3")
            .arg(QDir(file).dirName())
            .arg(error.line)
            .arg(error.message);
    case Qt::ToolTipRole:
        return QStringLiteral("%1:%2 %3").arg(file).arg(error.line).arg(error.message);
    default:
        return QVariant();
    }
}

void ConversionErrorModel::update(const ConversionOutput &output)
{
    const int count = output.errorCount();
    int keep = std::min(count, int(m_errors.size()));
    // The last rows may have been rewritten with the progress line.
    while (keep > 0 && !(m_errors.at(keep - 1) == output.errorAt(keep - 1)
                         && m_errors.at(keep - 1).position == output.errorAt(keep - 1).position))
        --keep;
    if (keep < m_errors.size()) {
        beginRemoveRows(QModelIndex(), keep, m_errors.size() - 1);
        m_errors.resize(keep);
        endRemoveRows();
        m_files.clear();
        for (const ConversionError &error : qAsConst(m_errors))
            m_files.insert(error.file);
    }
    if (count > keep) {
        beginInsertRows(QModelIndex(), keep, count - 1);
        m_errors.reserve(count);
        for (int i = keep; i < count; ++i) {
            m_errors.append(output.errorAt(i));
            m_files.insert(m_errors.last().file);
        }
        endInsertRows();
    }
}

void ConversionErrorModel::clear()
{
    beginResetModel();
    m_errors.clear();
    m_files.clear();
    endResetModel();
}
