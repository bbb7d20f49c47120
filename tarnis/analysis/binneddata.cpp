#include "tarnis/analysis/binneddata.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace tarnis {

namespace {

QString sentence(const char* text)
{
    return QCoreApplication::translate("tarnis::BinnedData", text);
}

// Every integer up to this one is exactly representable as double.
constexpr double largestCount = 9007199254740992.0;

} // namespace

BinnedData BinnedData::part(std::size_t first, std::size_t last) const
{
    BinnedData result = *this;
    const std::size_t count = last - first + 1;
    result.contents = contents.subspan(first, count);
    if (!variances.empty())
        result.variances = variances.subspan(first, count);
    if (!edges.empty())
        result.edges = edges.subspan(first, count + 1);
    result.firstCentre = centre(first);
    return result;
}

std::ptrdiff_t BinnedData::binAt(double x) const
{
    if (contents.empty() || !(x >= edge(0)) || !(x < edge(size())))
        return -1;
    if (!edges.empty())
        return std::upper_bound(edges.begin(), edges.end(), x) - edges.begin() - 1;
    auto bin = static_cast<std::ptrdiff_t>(std::floor((x - firstCentre) / width + 0.5));
    return std::clamp(bin, std::ptrdiff_t(0), static_cast<std::ptrdiff_t>(size()) - 1);
}

QString BinnedData::fault() const
{
    if (contents.empty())
        return sentence(QT_TRANSLATE_NOOP("tarnis::BinnedData", "There are no bins."));
    if (!variances.empty() && variances.size() != contents.size())
        return sentence(QT_TRANSLATE_NOOP("tarnis::BinnedData", "Each bin needs one variance."));
    for (const double variance : variances) {
        if (!(variance >= 0.0) || std::isinf(variance))
            return sentence(QT_TRANSLATE_NOOP(
                "tarnis::BinnedData", "A variance is negative or not finite. Correct the variances."));
    }
    if (edges.empty()) {
        if (!std::isfinite(firstCentre) || !std::isfinite(width) || width <= 0.0)
            return sentence(
                QT_TRANSLATE_NOOP("tarnis::BinnedData", "The axis needs a finite start and a positive bin width."));
        return {};
    }
    if (edges.size() != contents.size() + 1)
        return sentence(QT_TRANSLATE_NOOP("tarnis::BinnedData", "The axis needs one more edge than bins."));
    for (std::size_t i = 0; i + 1 < edges.size(); ++i) {
        if (!(edges[i] < edges[i + 1]) || !std::isfinite(edges[i]) || !std::isfinite(edges[i + 1]))
            return sentence(
                QT_TRANSLATE_NOOP("tarnis::BinnedData", "The edges of the axis must be finite and increase."));
    }
    return {};
}

QString faultOfCounts(std::span<const double> contents, std::size_t firstBin)
{
    for (std::size_t i = 0; i < contents.size(); ++i) {
        const double y = contents[i];
        if (!std::isfinite(y))
            return sentence(QT_TRANSLATE_NOOP("tarnis::BinnedData", "Bin %1 is not a finite number."))
                .arg(firstBin + i);
        if (y < 0.0)
            return sentence(
                QT_TRANSLATE_NOOP("tarnis::BinnedData",
                    "Bin %1 is negative (%2). Contents that were subtracted are not counts and need variances."))
                .arg(firstBin + i)
                .arg(y);
        // By conversion: floor() is a call on processors without SSE 4.1.
        if (y > largestCount || y != static_cast<double>(static_cast<std::int64_t>(y)))
            return sentence(
                QT_TRANSLATE_NOOP("tarnis::BinnedData",
                    "Bin %1 is not an integer (%2). Contents that were scaled are not counts and need variances."))
                .arg(firstBin + i)
                .arg(y);
    }
    return {};
}

} // namespace tarnis
