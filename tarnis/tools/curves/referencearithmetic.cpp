#include "tarnis/tools/curves/referencearithmetic_p.h"

#include "tarnis/tools/curves/counterrors_p.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarnis {

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double ratiosInside = 0.95; // those of few counts scatter widely
constexpr double shareToShrink = 0.8; // of a smaller axis
constexpr double smallestSignificance = 5.0;

/// The smallest of 1, 2 and 5 times a power of ten that is not below the width.
double roundedWidth(double width)
{
    const double power = std::pow(10.0, std::floor(std::log10(width)));
    if (!(power > 0.0))
        return width; // overflow
    for (const double factor : { 1.0, 2.0, 5.0 }) {
        if (factor * power >= width)
            return factor * power;
    }
    return std::isfinite(10.0 * power) ? 10.0 * power : width;
}

} // namespace

ComparedBin comparedBin(Comparison comparison, double live, double reference, double norm, bool isContained)
{
    const double scaled = norm * reference;
    const bool areCounts = isCount(live) && isCount(reference);
    const double excess = live - scaled;
    const double added = std::max(live - reference, 0.0); // with (1 - norm) times the reference: the excess
    const double variance = !areCounts ? nan
        : isContained                  ? added + (1.0 - norm) * (1.0 - norm) * reference
                                       : live + norm * scaled;
    switch (comparison) {
    case Comparison::Difference:
        return { excess, std::sqrt(variance) };
    case Comparison::Significance:
        return { variance > 0.0 ? excess / std::sqrt(variance) : nan, 1.0 };
    default:
        break;
    }
    if (scaled == 0.0)
        return { nan, nan };
    // For a ratio to contained counts: (1 + added / reference) / norm, with independent errors.
    const double numerator = isContained ? added : live;
    const double relative = (numerator + numerator * numerator / reference) / (scaled * scaled);
    return { live / scaled, areCounts ? std::sqrt(relative) : nan };
}

void comparedValues(Comparison comparison, const double* live, const double* reference, qsizetype count, double norm,
    bool isContained, double* values)
{
    switch (comparison) {
    case Comparison::Difference:
        for (qsizetype i = 0; i < count; ++i)
            values[i] = live[i] - norm * reference[i];
        return;
    case Comparison::Ratio:
        for (qsizetype i = 0; i < count; ++i) {
            const double scaled = norm * reference[i];
            values[i] = scaled != 0.0 ? live[i] / scaled : nan;
        }
        return;
    default:
        for (qsizetype i = 0; i < count; ++i)
            values[i] = comparedBin(comparison, live[i], reference[i], norm, isContained).value;
    }
}

bool isContinuation(const QList<double>& live, const QList<double>& reference)
{
    if (live.size() != reference.size())
        return false;
    bool isAbove = false;
    for (qsizetype i = 0; i < live.size(); ++i) {
        if (!(live.at(i) >= reference.at(i)))
            return false;
        isAbove = isAbove || live.at(i) > reference.at(i);
    }
    return isAbove;
}

bool isBelow(const QList<double>& live, const QList<double>& reference)
{
    if (live.size() != reference.size())
        return false;
    for (qsizetype i = 0; i < live.size(); ++i) {
        if (live.at(i) < reference.at(i))
            return true;
    }
    return false;
}

AxisRange comparisonAxis(Comparison comparison, std::vector<double> values, const std::optional<AxisRange>& shown)
{
    const double middle = comparison == Comparison::Ratio ? 1.0 : 0.0;
    std::erase_if(values, [](double value) { return !std::isfinite(value); });
    for (double& value : values)
        value = std::abs(value - middle);
    double width = 0.0;
    if (!values.empty()) {
        const double share = comparison == Comparison::Ratio ? ratiosInside : 1.0;
        const auto rank = static_cast<std::ptrdiff_t>(std::ceil(share * static_cast<double>(values.size() - 1)));
        std::nth_element(values.begin(), values.begin() + rank, values.end());
        width = *(values.begin() + rank);
    }
    if (!(width > 0.0) || !std::isfinite(width))
        width = 1.0;
    const double minHalf = comparison == Comparison::Significance ? smallestSignificance : 0.0;
    double half = std::max(roundedWidth(width), minHalf);
    if (shown) {
        const double shownHalf = shown->max - middle;
        if (half < shownHalf && std::max(roundedWidth(width / shareToShrink), minHalf) >= shownHalf)
            half = shownHalf;
    }
    return { comparison == Comparison::Ratio ? std::max(middle - half, 0.0) : middle - half, middle + half };
}

} // namespace tarnis
