#include "tarnis/tools/envelope_p.h"

#include <algorithm>
#include <cmath>

namespace tarnis {

QList<EnvelopeColumn> envelopeOf(qsizetype first, qsizetype last, const std::function<double(qsizetype)>& valueOf,
    const std::function<int(qsizetype)>& columnOf)
{
    QList<EnvelopeColumn> columns;
    int count = 0; // samples of the last entry
    for (qsizetype i = first; i <= last; ++i) {
        const double value = valueOf(i);
        if (!std::isfinite(value))
            continue;
        const int column = columnOf(i);
        if (columns.isEmpty() || columns.constLast().column != column) {
            columns.append({ column, value, value, value });
            count = 1;
            continue;
        }
        EnvelopeColumn& entry = columns.last();
        ++count;
        entry.lowest = std::min(entry.lowest, value);
        entry.highest = std::max(entry.highest, value);
        entry.mean += (value - entry.mean) / count;
    }
    return columns;
}

} // namespace tarnis
