#include "tarnis/formats/dataset.h"

namespace tarnis {

namespace {

bool fits(const std::vector<double>& list, qsizetype count)
{
    return static_cast<qsizetype>(list.size()) == count;
}

bool isAxisOf(const DataAxis& axis, qsizetype bins)
{
    return axis.values.empty() || fits(axis.values, bins) || fits(axis.values, bins + 1);
}

} // namespace

std::vector<double> uniformEdges(double low, double high, qsizetype bins)
{
    std::vector<double> edges(static_cast<std::size_t>(bins) + 1);
    const double width = (high - low) / static_cast<double>(bins);
    for (std::size_t i = 0; i + 1 < edges.size(); ++i)
        edges[i] = low + static_cast<double>(i) * width;
    edges.back() = high;
    return edges;
}

bool areUniformEdges(const std::vector<double>& edges)
{
    return edges.size() >= 2
        && edges == uniformEdges(edges.front(), edges.back(), static_cast<qsizetype>(edges.size()) - 1);
}

std::vector<double> edgesOf(const DataAxis& axis, qsizetype bins)
{
    if (fits(axis.values, bins + 1))
        return axis.values;
    if (!fits(axis.values, bins) || bins == 0)
        return uniformEdges(0.0, static_cast<double>(bins), bins);
    const std::vector<double>& centres = axis.values;
    std::vector<double> edges(centres.size() + 1);
    for (std::size_t i = 1; i < centres.size(); ++i)
        edges[i] = centres[i - 1] + (centres[i] - centres[i - 1]) / 2.0;
    // The outer bins are as wide as the distance to their neighbours; a single bin has the width 1.
    const double first = bins > 1 ? centres[1] - centres[0] : 1.0;
    const double last = bins > 1 ? centres.back() - centres[centres.size() - 2] : 1.0;
    edges.front() = centres.front() - first / 2.0;
    edges.back() = centres.back() + last / 2.0;
    return edges;
}

std::vector<double> centresOf(const DataAxis& axis, qsizetype bins)
{
    if (bins > 0 && fits(axis.values, bins))
        return axis.values;
    const std::vector<double> edges = edgesOf(axis, bins);
    std::vector<double> centres(static_cast<std::size_t>(bins));
    for (std::size_t i = 0; i < centres.size(); ++i)
        centres[i] = edges[i] + (edges[i + 1] - edges[i]) / 2.0;
    return centres;
}

bool isConsistent(const Dataset& data)
{
    if (data.rows <= 0 || data.columns <= 0 || data.rows > maxDatasetValues / data.columns)
        return false;
    const qsizetype count = data.rows * data.columns;
    return fits(data.values, count) && (data.errors.empty() || fits(data.errors, count))
        && isAxisOf(data.x, data.columns) && (data.kind == Dataset::Kind::Curves || isAxisOf(data.y, data.rows))
        && (data.rowNames.isEmpty() || data.rowNames.size() == data.rows);
}

} // namespace tarnis
