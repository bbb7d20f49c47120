// A table's text as CSV.
#pragma once

#include <QString>

class QTableWidget;

namespace tarnis {

/// The header texts joined with ",", then each row's cell texts likewise, each line ended by a line feed. Nothing is
/// quoted or escaped: a comma in a cell makes an extra field. A cell without an item counts as empty.
QString tableText(const QTableWidget& table);

} // namespace tarnis
