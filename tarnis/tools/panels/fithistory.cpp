#include "tarnis/tools/panels/fithistory_p.h"

#include "tarnis/analysis/figures.h"

#include <cmath>

namespace tarnis {

QStringList namesOf(const FitResult& result)
{
    QStringList names;
    for (const FitParameter& parameter : result.parameters)
        names << parameter.name;
    for (const DerivedQuantity& quantity : result.derived)
        names << quantity.name;
    return names;
}

void FitHistory::add(const QDateTime& time, const FitResult& result)
{
    if (result.status == FitStatus::Refused)
        return;
    FitRecord record { time, result };
    record.result.modelContents = {};
    m_records.append(std::move(record));
    if (m_records.size() > maxRecords)
        m_records.removeFirst();
}

QList<TrendPoint> FitHistory::trendOf(const QString& name) const
{
    QList<TrendPoint> points;
    for (const FitRecord& record : m_records) {
        const double value = record.result.valueOf(name);
        if (!std::isnan(value))
            points.append({ record.time, value, record.result.errorOf(name), record.result.acceptable });
    }
    return points;
}

QString FitHistory::table() const
{
    if (m_records.isEmpty())
        return {};
    const QStringList names = namesOf(m_records.last().result);
    QStringList header { QStringLiteral("time"), QStringLiteral("acceptable"), QStringLiteral("statistic"),
        QStringLiteral("value"), QStringLiteral("ndf") };
    for (const QString& name : names)
        header << name << name + QStringLiteral("_error");
    QString text = header.join(u'\t') + u'\n';
    for (const FitRecord& record : m_records) {
        const FitResult& result = record.result;
        QStringList line { record.time.toString(Qt::ISODateWithMs), QString::number(result.acceptable ? 1 : 0),
            nameOf(result.options.statistic), fullDigits(result.value), QString::number(result.ndf) };
        for (const QString& name : names)
            line << fullDigits(result.valueOf(name)) << fullDigits(result.errorOf(name));
        text += line.join(u'\t') + u'\n';
    }
    return text;
}

} // namespace tarnis
