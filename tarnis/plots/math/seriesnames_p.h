// Names of the curves of a plot of many series, for the columns of a CSV file and the peak search.
#pragma once

#include "tarnis/plots/math/seriesgrouping_p.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace tarnis {

/// Terms of the plot for its groups and positions, the number of the first group, and names of single records. The name
/// of a record may be empty or missing.
struct SeriesTexts {
    QString group;
    QString item;
    int firstNumber = 0;
    QStringList names = {};
};

/// "word number".
QString numberedName(const QString& word, int number);

/// "group g - item p" of a record.
QString recordName(const SeriesTexts& texts, int group, int position);

/// The display name of a curve: that of its record if it is a single record with a name, else made of terms that
/// distinguish it from the others. `number` is the index among the curves of the type, `records` the number of records
/// of the plot. Never empty.
QString curveNameOf(const SeriesTexts& texts, AddType type, int groupSize, int number, qsizetype records);

/// The content of a CSV file: a heading for each enabled column, and the columns.
struct CsvTable {
    std::optional<QString> header;
    QList<Series> columns;
};

/// The curves of the type. Hidden series are included in the sum of all, and a single group has no header.
CsvTable csvTableOf(const QList<Series>& series, AddType type, int groupSize, const SeriesTexts& texts);

/// A curve with its name.
struct NamedCurve {
    QString name;
    QList<double> samples;
};

/// The first enabled curve of the type, which is searched for peaks; empty if all are disabled. Its name ignores the
/// number of the first group.
std::optional<NamedCurve> firstEnabledCurve(
    const QList<Series>& series, AddType type, int groupSize, const SeriesTexts& texts);

} // namespace tarnis
