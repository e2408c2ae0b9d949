#pragma once

#include <QString>

class QComboBox;

/**
 * The ";"-separated history lists that the filter, mask and find dialogs keep:
 * the current text first, then up to 15 of the combo's items, no duplicates,
 * each entry preceded by ";".
 */
namespace HistoryList {

QString write(const QComboBox *combo);
void read(QComboBox *combo, const QString &stored);

} // namespace HistoryList
