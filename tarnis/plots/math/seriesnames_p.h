// The curves of a plot of many series as its tools name them: columns of a CSV file, the subject of a peak search.
#pragma once

#include "tarnis/plots/math/seriesgrouping_p.h"

#include <QString>

#include <optional>

namespace tarnis {

/// Words of the plot for its groups and positions, and the number of the first group.
struct SeriesWords {
    QString group;
    QString item;
    int firstNumber = 0;
};

/// "word number".
QString numberedName(const QString& word, int number);

/// "group g - item p" of a record.
QString recordName(const SeriesWords& words, int group, int position);

/// What a CSV file holds: a heading for each enabled column, and the columns.
struct CsvTable {
    std::optional<QString> header;
    QList<Series> columns;
};

/// The curves of the type. Hidden series count in the sum of all, and one group alone has no header.
CsvTable csvTableOf(const QList<Series>& series, AddType type, int groupSize, const SeriesWords& words);

/// A curve with its name.
struct NamedCurve {
    QString name;
    QList<double> samples;
};

/// The first curve of the type that is enabled, which is the one to search for peaks; nothing if none is. Its name
/// takes no account of the number of the first group.
std::optional<NamedCurve> firstEnabledCurve(
    const QList<Series>& series, AddType type, int groupSize, const SeriesWords& words);

} // namespace tarnis
