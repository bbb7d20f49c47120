#include "tarnis/plots/math/binreduction_p.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace tarnis {

namespace {

/// The partial results of the groups of a pixel line.
struct Gathered {
    std::vector<double> values; // the sum, or the largest
    std::vector<double> counts; // number of finite bins, for the mean

    void start(std::size_t groups)
    {
        values.assign(groups, 0.0);
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

constexpr double noBin = -std::numeric_limits<double>::infinity();

/// The larger of both; NaN and infinities do not count. Without a branch.
double largerBin(double best, double value)
{
    return value > best && value <= std::numeric_limits<double>::max() ? value : best; // a NaN is never above
}

/// The largest of each group. The rows of a group are combined first, by vectors, since many groups have one column.
void gatherLargest(std::vector<double>& largest, std::vector<double>& across, const std::vector<int>& columns,
    const BinRows& rows, int firstRow, int endRow)
{
    const int first = columns.front();
    across.assign(static_cast<std::size_t>(columns.back() - first), noBin);
    for (int row = firstRow; row < endRow; ++row) {
        const QList<double>& bins = rows.at(row);
        if (bins.size() <= first)
            continue;
        const double* const values = bins.constData() + first;
        double* const into = across.data();
        const qsizetype count = std::min<qsizetype>(bins.size() - first, static_cast<qsizetype>(across.size()));
        for (qsizetype i = 0; i < count; ++i)
            into[i] = largerBin(into[i], values[i]);
    }
    for (std::size_t k = 0; k < largest.size(); ++k) {
        const double* const group = across.data() + (columns[k] - first);
        const int width = columns[k + 1] - columns[k];
        double best = std::max(group[0], group[width - 1]); // all of most groups
        for (int i = 1; i < width - 1; ++i)
            best = std::max(best, group[i]);
        largest[k] = best;
    }
}

/// Groups are short: one flat loop over the bins is faster than one for each group. `groupOf` begins with `first`.
void gather(Gathered& gathered, const std::vector<int>& groupOf, int first, const QList<double>& row)
{
    const double* values = row.constData();
    const int end = static_cast<int>(std::min<qsizetype>(row.size(), first + static_cast<qsizetype>(groupOf.size())));
    constexpr double largest = std::numeric_limits<double>::max();
    double* into = gathered.values.data();
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
    std::vector<double> across;
    for (std::size_t g = 0; g + 1 < rowGroups.size(); ++g) {
        gathered.start(columns.size() - 1);
        if (reduction == BinReduction::Maximum)
            gatherLargest(gathered.values, across, columns, rows, rowGroups[g], rowGroups[g + 1]);
        for (int row = rowGroups[g]; row < rowGroups[g + 1] && reduction != BinReduction::Maximum; ++row)
            gather(gathered, groupOf, view.x.first, rows.at(row));
        QList<double> line(view.x.end, 0.0);
        double* const bins = line.data();
        for (std::size_t k = 0; k + 1 < columns.size(); ++k)
            bins[columns[k]] = gathered.reduced(k, reduction);
        result[rowGroups[g + 1] - 1] = std::move(line);
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
