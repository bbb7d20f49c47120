#include "tarnis/formats/csv.h"

#include "tarnis/formats/numbertext_p.h"

namespace tarnis {

namespace {

QByteArray matrixText(const Dataset& data)
{
    QByteArray text;
    for (const double centre : centresOf(data.x, data.columns)) {
        text += '\t';
        appendNumber(text, centre);
    }
    const std::vector<double> y = centresOf(data.y, data.rows);
    for (qsizetype row = 0; row < data.rows; ++row) {
        text += '\n';
        appendNumber(text, y[static_cast<std::size_t>(row)]);
        for (qsizetype column = 0; column < data.columns; ++column) {
            text += '\t';
            appendNumber(text, data.at(row, column));
        }
    }
    return text;
}

QByteArray columnsText(const Dataset& data)
{
    const std::vector<double> edges = edgesOf(data.x, data.columns);
    QByteArray text = "low\thigh";
    for (qsizetype row = 0; row < data.rows; ++row)
        text += '\t' + data.rowNames.value(row, data.name).simplified().toUtf8();
    for (qsizetype column = 0; column < data.columns; ++column) {
        text += '\n';
        appendNumber(text, edges[static_cast<std::size_t>(column)]);
        text += '\t';
        appendNumber(text, edges[static_cast<std::size_t>(column) + 1]);
        for (qsizetype row = 0; row < data.rows; ++row) {
            text += '\t';
            appendNumber(text, data.at(row, column));
        }
    }
    return text;
}

} // namespace

QString tableText(const Dataset& data)
{
    if (!isConsistent(data))
        return {};
    const bool map = data.kind == Dataset::Kind::Map;
    return QString::fromUtf8((map ? matrixText(data) : columnsText(data)) + '\n');
}

} // namespace tarnis
