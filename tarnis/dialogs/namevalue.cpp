#include "tarnis/dialogs/namevalue.h"

#include <algorithm>

namespace {

template <typename Record> auto findName(QList<Record>& list, const QString& name)
{
    return std::find_if(list.begin(), list.end(), [&](const Record& record) { return record.name == name; });
}

} // namespace

void nvClear(QList<NameValues>& list)
{
    for (NameValues& record : list)
        record.values.clear();
}

void nvUpdate(QList<NameValue>& list, NameValue const& item)
{
    const auto found = findName(list, item.name);
    if (found == list.end())
        list.append(item);
    else
        found->value = item.value;
}

void nvUpdate(QList<NameValues>& list, NameValues const& item)
{
    const auto found = findName(list, item.name);
    if (found == list.end())
        list.append(item);
    else if (!item.values.isEmpty())
        found->values.append(item.values.first());
}
