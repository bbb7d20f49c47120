#include "tables/snapshotrecord.h"

#include <tarnis/foundation/helpers.h>

#include <QHash>

#include <algorithm>
#include <cmath>

namespace console {

namespace {

constexpr int differenceDigits = 10;
enum Column { Value, Before, Change };

QHash<QString, QString> byName(const QList<NameValue>& values)
{
    QHash<QString, QString> map;
    for (const NameValue& value : values)
        map.insert(value.name, value.value);
    return map;
}

} // namespace

QString changeText(const QString& before, const QString& now)
{
    if (before == now)
        return {};
    bool wasNumber = false;
    bool isNumber = false;
    const double difference = now.toDouble(&isNumber) - before.toDouble(&wasNumber);
    if (!wasNumber || !isNumber || !std::isfinite(difference))
        return SnapshotRecord::tr("changed");
    const QString text = numStr(difference, 'g', differenceDigits);
    return difference > 0.0 ? u'+' + text : text;
}

void SnapshotRecord::take(const QList<NameValue>& values)
{
    const bool isFirst = m_values.isEmpty();
    const QHash<QString, QString> before = byName(m_values);
    m_values.clear();
    for (const NameValue& value : values)
        nvUpdate(m_values, value);

    const QHash<QString, QString> now = byName(m_values);
    nvClear(m_rows);
    m_rows.removeIf([&](const NameValues& row) { return !before.contains(row.name) && !now.contains(row.name); });
    for (const NameValue& value : std::as_const(m_values))
        nvUpdate(m_rows, { value.name, { value.value } });
    for (NameValues& row : m_rows) {
        const bool isGone = row.values.isEmpty();
        const bool isNew = !before.contains(row.name);
        if (isGone)
            row.values.append(QString());
        row.values.append(before.value(row.name));
        if (isGone)
            row.values.append(tr("gone"));
        else if (isNew)
            row.values.append(isFirst ? QString() : tr("new"));
        else
            row.values.append(changeText(row.values.at(Before), row.values.at(Value)));
    }
}

qsizetype SnapshotRecord::changes() const
{
    return std::count_if(
        m_rows.cbegin(), m_rows.cend(), [](const NameValues& row) { return !row.values.at(Change).isEmpty(); });
}

} // namespace console
