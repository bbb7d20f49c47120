#include "tarnis/dialogs/graph2dkernel_p.h"

#include "tarnis/dialogs/graph2dfilterdialog.h"
#include "tarnis/plots/raster/bincolouring_avx2_p.h"

#include <algorithm>
#include <array>
#include <vector>

namespace tarnis {

namespace {

/// The row's values, padded with zeros to `columns`.
const double* paddedRow(const QList<double>& row, qsizetype columns, std::vector<double>& buffer)
{
    if (row.size() >= columns)
        return row.constData();
    buffer.assign(static_cast<std::size_t>(columns), 0.0);
    std::copy(row.begin(), row.end(), buffer.begin());
    return buffer.data();
}

/// The five source rows for one row of the result, the highest first, each at least `columns` wide.
class Neighbours {
public:
    Neighbours(const QList<QList<double>>& source, qsizetype y, qsizetype columns)
    {
        for (std::size_t i = 0; i < m_rows.size(); ++i)
            m_rows[i] = paddedRow(source.at(y + 2 - static_cast<qsizetype>(i)), columns, m_padding[i]);
    }
    const double* row(std::size_t i) const { return m_rows[i]; }

private:
    std::array<std::vector<double>, 5> m_padding;
    std::array<const double*, 5> m_rows {};
};

/// Filters `count` adjacent bins from `first` on. Each bin's terms are added in the order of the kernel, which
/// determines the rounding; processing adjacent bins keeps the sums in registers.
template <int count>
inline void filterBins(double* out, const Neighbours& neighbours, qsizetype first, const Graph2DFilter& filter)
{
    double sums[count] = {};
    for (std::size_t i = 0; i < 5; ++i) {
        const double* const row = neighbours.row(i) + first - 2;
        for (int j = 0; j < 5; ++j) {
            const double weight = filter.matrix[i][j];
            for (int bin = 0; bin < count; ++bin)
                sums[bin] += weight * row[j + bin];
        }
    }
    for (int bin = 0; bin < count; ++bin)
        out[first + bin] = filter.divisor != 0 ? sums[bin] / filter.divisor : sums[bin];
}

/// The bins from 2 to `end` - 1.
template <int block>
inline void filterRow(double* out, qsizetype end, const Neighbours& neighbours, const Graph2DFilter& filter)
{
    qsizetype x = 2;
    for (; x + block <= end; x += block)
        filterBins<block>(out, neighbours, x, filter);
    for (; x < end; ++x)
        filterBins<1>(out, neighbours, x, filter);
}

void filterRowPlain(double* out, qsizetype end, const Neighbours& neighbours, const Graph2DFilter& filter)
{
    filterRow<8>(out, end, neighbours, filter);
}

#ifdef TARNIS_AVX2
/// The same loops, compiled for 256-bit vectors.
[[gnu::flatten]] TARNIS_AVX2 void filterRowWide(
    double* out, qsizetype end, const Neighbours& neighbours, const Graph2DFilter& filter)
{
    filterRow<32>(out, end, neighbours, filter);
}
#else
constexpr auto filterRowWide = filterRowPlain;
#endif

} // namespace

QList<QList<double>> filtered(const QList<QList<double>>& source, const Graph2DFilter& filter)
{
    QList<QList<double>> target = source;
    const qsizetype columns = source.isEmpty() ? 0 : source.first().size();
    if (columns < 5)
        return target;
    const auto filterOne = hasAvx2() ? filterRowWide : filterRowPlain;
    for (qsizetype y = source.size() - 3; y >= 2; --y) {
        QList<double>& row = target[y];
        filterOne(row.data(), std::min(row.size(), columns - 2), Neighbours(source, y, columns), filter);
    }
    return target;
}

} // namespace tarnis
