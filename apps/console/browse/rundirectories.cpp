#include "browse/rundirectories.h"

#include <tarnis/foundation/helpers.h>

#include <algorithm>
#include <tuple>

namespace console {

namespace {

int compared(const RunDirectory& a, const RunDirectory& b)
{
    if (const int prefix = a.prefix.localeAwareCompare(b.prefix); prefix != 0)
        return prefix;
    const auto rest = [](const RunDirectory& run) { return std::tie(run.run, run.dateDigits, run.name); };
    return rest(a) < rest(b) ? -1 : rest(b) < rest(a) ? 1 : 0;
}

} // namespace

QList<RunDirectory> runDirectoriesOf(const QStringList& entries)
{
    QList<RunDirectory> runs;
    for (const QString& entry : entries) {
        RunDirectory run;
        run.name = entry.chopped(entry.endsWith(u'/') ? 1 : 0);
        if (!entry.endsWith(u'/') || !getRunDirInfo(run.name, &run.prefix, &run.run, &run.date))
            continue;
        run.dateDigits = run.name.right(8);
        runs.append(run);
    }
    std::sort(runs.begin(), runs.end(), [](const auto& a, const auto& b) { return compared(a, b) < 0; });
    return runs;
}

void RunTable::setRuns(const QList<RunDirectory>& runs)
{
    beginResetModel();
    m_runs = runs;
    endResetModel();
}

QStringList RunTable::prefixes() const
{
    QStringList prefixes;
    for (const RunDirectory& run : m_runs) {
        if (prefixes.isEmpty() || prefixes.constLast() != run.prefix)
            prefixes.append(run.prefix);
    }
    return prefixes;
}

int RunTable::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_runs.size());
}

int RunTable::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant RunTable::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const RunDirectory& run = m_runs.at(index.row());
    if (role == Qt::TextAlignmentRole && index.column() == Run)
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return {};
    switch (index.column()) {
    case Prefix:
        return run.prefix;
    case Run:
        return run.run;
    case Date:
        return run.date.isValid() ? run.date.toString(Qt::ISODate) : run.dateDigits;
    case Name:
        return run.name;
    default:
        return {};
    }
}

QVariant RunTable::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case Prefix:
        return tr("Prefix");
    case Run:
        return tr("Run");
    case Date:
        return tr("Date");
    case Name:
        return tr("Directory");
    default:
        return {};
    }
}

void RunOrder::setPrefix(const QString& prefix)
{
    m_prefix = prefix;
    invalidateFilter();
}

void RunOrder::setPart(const QString& part)
{
    m_part = part;
    invalidateFilter();
}

bool RunOrder::filterAcceptsRow(int sourceRow, const QModelIndex& /*sourceParent*/) const
{
    const RunDirectory& run = static_cast<const RunTable*>(sourceModel())->runs().at(sourceRow);
    return (m_prefix.isNull() || run.prefix == m_prefix) && run.name.contains(m_part, Qt::CaseInsensitive);
}

bool RunOrder::lessThan(const QModelIndex& left, const QModelIndex& right) const
{
    const auto& runs = static_cast<const RunTable*>(sourceModel())->runs();
    const RunDirectory& a = runs.at(left.row());
    const RunDirectory& b = runs.at(right.row());
    if (left.column() == RunTable::Run && a.run != b.run)
        return a.run < b.run;
    if (left.column() == RunTable::Date && a.dateDigits != b.dateDigits)
        return a.dateDigits < b.dateDigits;
    if (left.column() == RunTable::Name && a.name != b.name)
        return a.name.localeAwareCompare(b.name) < 0;
    return compared(a, b) < 0;
}

} // namespace console
