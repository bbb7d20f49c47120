// The samples of a curve by pixel columns. Numbers in and out.
#pragma once

#include <QList>

#include <functional>

namespace tarnis {

/// The finite samples that share a pixel column.
struct EnvelopeColumn {
    int column = 0;
    double lowest = 0.0;
    double highest = 0.0;
    double mean = 0.0;

    friend bool operator==(const EnvelopeColumn&, const EnvelopeColumn&) = default;
};

/// One entry for each run of samples from `first` to `last` in the same pixel column, in their order. `valueOf` returns
/// a sample, `columnOf` its pixel column. Samples that are not finite are left out.
QList<EnvelopeColumn> envelopeOf(qsizetype first, qsizetype last, const std::function<double(qsizetype)>& valueOf,
    const std::function<int(qsizetype)>& columnOf);

} // namespace tarnis
