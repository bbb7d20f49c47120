#include "tarnis/dialogs/tabletext_p.h"

#include <QTableWidget>

namespace tarnis {

namespace {

template <typename ItemOf> QString joinedLine(int columns, ItemOf itemOf)
{
    QStringList texts;
    for (int column = 0; column < columns; ++column) {
        const QTableWidgetItem* const item = itemOf(column);
        texts.append(item ? item->text() : QString());
    }
    return texts.join(QLatin1Char(',')) + QLatin1Char('\n');
}

} // namespace

QString tableText(const QTableWidget& table)
{
    const int columns = table.columnCount();
    QString text = joinedLine(columns, [&](int column) { return table.horizontalHeaderItem(column); });
    for (int row = 0; row < table.rowCount(); ++row)
        text += joinedLine(columns, [&](int column) { return table.item(row, column); });
    return text;
}

} // namespace tarnis
