#include "tarnis/plots/math/binreduction_p.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace tarnis {

namespace {

/// The partial results of the groups of a pixel line.
struct Gathered {
    std::vector<double> values; // the sum, or the largest
    std::vector<double> counts; // number of finite bins, for the mean

    void start(std::size_t groups, BinReduction reduction)
    {
        constexpr double none = -std::numeric_limits<double>::infinity();
        values.assign(groups, reduction == BinReduction::Maximum ? none : 0.0);
        counts.assign(groups, 0.0);
    }
    double reduced(std::size_t group, BinReduction reduction) const
    {
        const double value = values[group];
        if (reduction == BinReduction::Maximum)
            return std::isfinite(value) ? value : 0.0;
        return reduction == BinReduction::Mean && counts[group] > 0.0 ? value / counts[group] : value;
    }
};

/// The first bin of each group of adjacent bins at one pixel, and the end of the last group.
template <typename PixelOf> std::vector<int> groupsOf(const BinSpan& span, int end, const PixelOf& pixelOf)
{
    std::vector<int> first;
    for (int bin = span.first; bin < end; ++bin) {
        if (first.empty() || pixelOf(bin) != pixelOf(bin - 1))
            first.push_back(bin);
    }
    first.push_back(end);
    return first;
}

/// Groups are short: one flat loop over the bins is faster than one for each group. `groupOf` begins with `first`.
void gather(
    Gathered& gathered, const std::vector<int>& groupOf, int first, const QList<double>& row, BinReduction reduction)
{
    const double* values = row.constData();
    const int end = static_cast<int>(std::min<qsizetype>(row.size(), first + static_cast<qsizetype>(groupOf.size())));
    constexpr double largest = std::numeric_limits<double>::max();
    double* into = gathered.values.data();
    if (reduction == BinReduction::Maximum) {
        for (int i = first; i < end; ++i) {
            double& best = into[groupOf[static_cast<std::size_t>(i - first)]];
            best = values[i] > best && values[i] <= largest ? values[i] : best; // a NaN is never above
        }
        return;
    }
    for (int i = first; i < end; ++i) {
        const auto group = static_cast<std::size_t>(groupOf[static_cast<std::size_t>(i - first)]);
        const bool isCounted = std::abs(values[i]) <= largest;
        into[group] += isCounted ? values[i] : 0.0;
        gathered.counts[group] += isCounted ? 1.0 : 0.0;
    }
}

int rowPixel(const BinGeometry& view, int row)
{
    return view.paintsBars() ? view.bar(row, view.x.first).top() : view.lineTop(row);
}

} // namespace

bool hasSharedPixels(const BinGeometry& view)
{
    return std::abs(view.x.pixels) < 1.0 || std::abs(view.y.pixels) < 1.0;
}

BinRows reducedBins(const BinRows& rows, const BinGeometry& view, BinReduction reduction)
{
    const int rowEnd = static_cast<int>(std::min<qsizetype>(view.y.end, rows.size()));
    if (reduction == BinReduction::First || !hasSharedPixels(view) || view.x.first >= view.x.end
        || view.y.first >= rowEnd)
        return rows;
    const std::vector<int> columns = groupsOf(view.x, view.x.end, [&](int column) { return view.left(column); });
    const std::vector<int> rowGroups = groupsOf(view.y, rowEnd, [&](int row) { return rowPixel(view, row); });
    std::vector<int> groupOf;
    for (std::size_t k = 0; k + 1 < columns.size(); ++k)
        groupOf.insert(groupOf.end(), static_cast<std::size_t>(columns[k + 1] - columns[k]), static_cast<int>(k));
    BinRows result(rows.size());
    Gathered gathered;
    for (std::size_t g = 0; g + 1 < rowGroups.size(); ++g) {
        gathered.start(columns.size() - 1, reduction);
        for (int row = rowGroups[g]; row < rowGroups[g + 1]; ++row)
            gather(gathered, groupOf, view.x.first, rows.at(row), reduction);
        QList<double> line(view.x.end, 0.0);
        for (std::size_t k = 0; k + 1 < columns.size(); ++k)
            line[columns[k]] = gathered.reduced(k, reduction);
        result[rowGroups[g + 1] - 1] = line;
    }
    return result;
}

double largestBin(const BinRows& rows)
{
    double largest = 0.0;
    for (const QList<double>& row : rows) {
        for (const double value : row)
            largest = std::isfinite(value) ? std::max(largest, value) : largest;
    }
    return largest;
}

} // namespace tarnis
