// Groups the samples of a curve by pixel columns.
#pragma once

#include <QList>

#include <cmath>

namespace tarnis {

/// The finite samples that share a pixel column.
struct EnvelopeColumn {
    int column = 0;
    double position = 0.0; ///< position of the first sample, in pixels
    double first = 0.0; ///< sample
    double last = 0.0; ///< sample
    double lowest = 0.0;
    double highest = 0.0;
    double mean = 0.0;
    bool isRising = true; ///< the lowest sample precedes the highest

    friend bool operator==(const EnvelopeColumn&, const EnvelopeColumn&) = default;
};

/// One entry for each run of samples from `first` to `last` in the same pixel column, in their order. `valueOf` returns
/// a sample, `positionOf` its finite position in pixels. Non-finite samples are ignored.
template <typename ValueOf, typename PositionOf>
QList<EnvelopeColumn> envelopeOf(qsizetype first, qsizetype last, const ValueOf& valueOf, const PositionOf& positionOf)
{
    QList<EnvelopeColumn> columns;
    EnvelopeColumn entry;
    double sum = 0.0;
    qsizetype count = 0; // number of samples of the entry
    const auto finish = [&] {
        if (count == 0)
            return;
        entry.mean = sum / static_cast<double>(count);
        columns.append(entry);
    };
    for (qsizetype i = first; i <= last; ++i) {
        const double value = valueOf(i);
        if (!std::isfinite(value))
            continue;
        const double position = positionOf(i);
        // The comparison avoids calling floor() for most samples.
        if (count == 0 || position < entry.column || position >= entry.column + 1.0) {
            finish();
            entry = { static_cast<int>(std::floor(position)), position, value, value, value, value, value, true };
            sum = value;
            count = 1;
            continue;
        }
        ++count;
        sum += value;
        entry.last = value;
        if (value < entry.lowest) {
            entry.lowest = value;
            entry.isRising = false;
        }
        if (value > entry.highest) {
            entry.highest = value;
            entry.isRising = true;
        }
    }
    finish();
    return columns;
}

} // namespace tarnis
