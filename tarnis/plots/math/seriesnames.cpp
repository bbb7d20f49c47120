#include "tarnis/plots/math/seriesnames_p.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>

namespace tarnis {

namespace {

CsvTable tableWithHeader(const QList<Series>& columns, const QStringList& names)
{
    QStringList shown;
    for (qsizetype i = 0; i < columns.size(); ++i) {
        if (columns.at(i).enable)
            shown.append(names.at(i));
    }
    return { shown.join(u','), columns };
}

/// As a field of a CSV file.
QString csvField(QString name)
{
    static const QString special = QStringLiteral(",\"\n\r");
    if (std::none_of(name.cbegin(), name.cend(), [](QChar c) { return special.contains(c); }))
        return name;
    return u'"' + name.replace(u'"', QStringLiteral("\"\"")) + u'"';
}

/// The host's name of a record, or else its name made of terms and numbers.
QString nameOr(const SeriesTexts& texts, qsizetype record, const QString& other)
{
    const QString name = texts.names.value(record);
    return name.isEmpty() ? other : name;
}

QString headingOr(const SeriesTexts& texts, qsizetype record, const QString& other)
{
    const QString name = texts.names.value(record);
    return name.isEmpty() ? other : csvField(name);
}

/// The record of a group that consists of a single record and so can have a host's name.
qsizetype recordOfGroup(int group, int groupSize)
{
    return groupSize == 1 ? group : -1;
}

CsvTable tableOfRecords(const QList<Series>& series, int groupSize, const SeriesTexts& texts)
{
    QStringList names;
    for (int i = 0; i < series.size(); ++i)
        names.append(headingOr(texts, i, recordName(texts, i / groupSize + texts.firstNumber, i % groupSize)));
    return tableWithHeader(series, names);
}

CsvTable tableOfGroups(const QList<Series>& series, int groupSize, const SeriesTexts& texts)
{
    const QList<SummedCurve> groups = curvesByGroup(series, groupSize);
    QList<Series> columns;
    QStringList names;
    for (int group = 0; group < groups.size(); ++group) {
        columns.append({ wholeSums(series, groups.at(group)), groups.at(group).colour,
            series.at(qsizetype(group) * groupSize).enable });
        names.append(
            headingOr(texts, recordOfGroup(group, groupSize), numberedName(texts.group, group + texts.firstNumber)));
    }
    CsvTable table = tableWithHeader(columns, names);
    if (groups.size() == 1)
        table.header.reset();
    return table;
}

CsvTable tableOfPositions(const QList<Series>& series, int groupSize, const SeriesTexts& texts)
{
    const QList<SummedCurve> positions = curvesByPosition(series, groupSize);
    QList<Series> columns;
    QStringList names;
    for (int position = 0; position < positions.size(); ++position) {
        const SummedCurve& curve = positions.at(position);
        columns.append({ wholeSums(series, curve), curve.colour, curve.enable });
        names.append(numberedName(texts.item, position));
    }
    return tableWithHeader(columns, names);
}

/// Index of the first enabled record among every `step`-th one, or -1.
int firstEnabled(const QList<Series>& series, int step)
{
    for (qsizetype i = 0; i < series.size(); i += step) {
        if (series.at(i).enable)
            return static_cast<int>(i);
    }
    return -1;
}

/// Every `step`-th record from `first` on; restarted while there are no samples.
SummedCurve curveFrom(const QList<Series>& series, int first, int step, qsizetype end)
{
    SummedCurve curve;
    for (qsizetype i = first; i < end; i += step) {
        if (lengthOf(series, curve) == 0)
            curve.records.clear();
        curve.records.append(static_cast<int>(i));
    }
    return curve;
}

} // namespace

QString numberedName(const QString& word, int number)
{
    return QStringLiteral("%1 %2").arg(word, QString::number(number));
}

QString recordName(const SeriesTexts& texts, int group, int position)
{
    return QStringLiteral("%1 - %2").arg(numberedName(texts.group, group), numberedName(texts.item, position));
}

QString curveNameOf(const SeriesTexts& texts, AddType type, int groupSize, int number, qsizetype records)
{
    const bool isRecord = type == AddType::AddNone || (type == AddType::AddEachGroup && groupSize == 1);
    const QString group = numberedName(texts.group, number / groupSize + texts.firstNumber).trimmed();
    const QString item = numberedName(texts.item, number % groupSize).trimmed();
    if (isRecord && groupSize == 1)
        return nameOr(texts, number, group);
    if (isRecord)
        return nameOr(texts, number, records <= groupSize ? item : QStringLiteral("%1 - %2").arg(group, item));
    if (type == AddType::AddEachGroup)
        return numberedName(texts.group, number + texts.firstNumber).trimmed();
    if (type == AddType::AddEachPosition)
        return numberedName(texts.item, number).trimmed();
    return QCoreApplication::translate("tarnis::CurveNames", "All");
}

CsvTable csvTableOf(const QList<Series>& series, AddType type, int groupSize, const SeriesTexts& texts)
{
    switch (type) {
    case AddType::AddNone:
        return tableOfRecords(series, groupSize, texts);
    case AddType::AddEachGroup:
        return tableOfGroups(series, groupSize, texts);
    case AddType::AddEachPosition:
        return tableOfPositions(series, groupSize, texts);
    case AddType::AddAll:
        break;
    }
    return { QStringLiteral("All"), { { wholeSums(series, curveOfAll(series, false)), Qt::white, true } } };
}

std::optional<NamedCurve> firstEnabledCurve(
    const QList<Series>& series, AddType type, int groupSize, const SeriesTexts& texts)
{
    const qsizetype count = series.size();
    const int first = firstEnabled(series, type == AddType::AddEachGroup ? groupSize : 1);
    if (first < 0)
        return std::nullopt;
    switch (type) {
    case AddType::AddNone:
        return NamedCurve { nameOr(texts, first, recordName(texts, first / groupSize, first % groupSize)),
            series.at(first).values };
    case AddType::AddEachGroup:
        return NamedCurve { nameOr(
                                texts, recordOfGroup(first, groupSize), numberedName(texts.group, first / groupSize)),
            wholeSums(series, curveFrom(series, first, 1, std::min(qsizetype(first) + groupSize, count))) };
    case AddType::AddEachPosition:
        return NamedCurve { numberedName(texts.item, first),
            wholeSums(series, curveFrom(series, first, groupSize, count)) };
    case AddType::AddAll:
        break;
    }
    return NamedCurve { QStringLiteral("All"), wholeSums(series, curveOfAll(series, false)) };
}

} // namespace tarnis
