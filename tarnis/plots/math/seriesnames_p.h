// The curves of a plot of many series as its tools name them: columns of a CSV file, the subject of a peak search.
#pragma once

#include "tarnis/plots/math/seriesgrouping_p.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace tarnis {

/// Words of the plot for its groups and positions, the number of the first group, and names of single records; a record
/// without one has an empty name, or none.
struct SeriesWords {
    QString group;
    QString item;
    int firstNumber = 0;
    QStringList names = {};
};

/// "word number".
QString numberedName(const QString& word, int number);

/// "group g - item p" of a record.
QString recordName(const SeriesWords& words, int group, int position);

/// The name of a curve for readers: that of its record, if it is one record that has a name, else made of the words
/// that tell it from the others. `number` counts the curves of the type, `records` the records of the plot. Never
/// empty.
QString curveNameOf(const SeriesWords& words, AddType type, int groupSize, int number, qsizetype records);

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
