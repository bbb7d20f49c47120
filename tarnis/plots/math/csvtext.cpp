#include "tarnis/plots/math/csvtext_p.h"

#include <algorithm>

namespace tarnis {

namespace {

constexpr qsizetype likelyCharsPerNumber = 8;

} // namespace

QString plainNumber(double value)
{
    return QString::number(value, 'g', 6);
}

QString csvOfSeries(const QList<double>& index, const QList<double>& samples)
{
    const bool withIndex = index.size() == samples.size();
    QString text;
    text.reserve(samples.size() * likelyCharsPerNumber * (withIndex ? 2 : 1));
    for (qsizetype i = 0; i < samples.size(); ++i) {
        if (withIndex)
            text += plainNumber(index.at(i)) + u',';
        text += plainNumber(samples.at(i)) + u'\n';
    }
    return text;
}

QString csvOfColumns(const QList<double>& index, const QList<QList<double>>& columns)
{
    qsizetype rows = 0;
    for (const QList<double>& column : columns)
        rows = std::max(rows, column.size());
    QString text;
    text.reserve(rows * (columns.size() + (index.isEmpty() ? 0 : 1)) * likelyCharsPerNumber);
    for (qsizetype row = 0; row < rows; ++row) {
        bool first = true;
        if (row < index.size()) {
            text += plainNumber(index.at(row));
            first = false;
        }
        for (const QList<double>& column : columns) {
            if (!first)
                text += u',';
            first = false;
            if (row < column.size())
                text += plainNumber(column.at(row));
        }
        text += u'\n';
    }
    return text;
}

QString csvOfRows(const QList<QList<double>>& rows)
{
    QString text;
    for (const QList<double>& row : rows) {
        for (qsizetype column = 0; column < row.size(); ++column) {
            if (column > 0)
                text += QLatin1Char(',');
            text += plainNumber(row.at(column));
        }
        text += QLatin1Char('\n');
    }
    return text;
}

} // namespace tarnis
