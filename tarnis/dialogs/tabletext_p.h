// Converts a table to CSV.
#pragma once

#include <QString>

class QTableWidget;

namespace tarnis {

/// The header texts joined with ",", then each row's cell texts, each line with a final line feed. Nothing is quoted or
/// escaped: a comma in a cell creates an extra field. A cell without an item counts as empty.
QString tableText(const QTableWidget& table);

} // namespace tarnis
