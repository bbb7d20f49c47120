#include "tarnis/plots/math/styleaxis_p.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace tarnis {

namespace {

constexpr double tolerance = 1e-9; // fraction of a step
constexpr double largestPlain = 1e5;
constexpr double smallestPlain = 1e-3;
constexpr int maxDecimals = 3; // decimals of a mantissa
constexpr double room = 0.05;
constexpr double minRoom = 0.01; // minimum free fraction before the axis grows
constexpr double minUse = 0.75; // minimum used fraction before the axis shrinks
constexpr double lowestCount = 0.5;
constexpr int maxMultiples = 1000; // of a step; more are the ticks of a damaged range

double powerOfTen(int exponent)
{
    return std::pow(10.0, exponent);
}

/// Largest of 1, 2, 5 times a power of ten that is not above `value`.
double roundStepTo(double value)
{
    const double power = std::pow(10.0, std::floor(std::log10(value)));
    const double mantissa = value / power * (1.0 + tolerance);
    return power * (mantissa >= 5.0 ? 5.0 : (mantissa >= 2.0 ? 2.0 : 1.0));
}

/// Decimals of multiples of the step; negative for tens, hundreds and so on.
int decimalsOf(double step)
{
    return -static_cast<int>(std::floor(std::log10(step) + tolerance));
}

QString fixed(double value, int decimals)
{
    QString text = QString::number(value, 'f', std::max(decimals, 0));
    const bool isZero = std::none_of(text.cbegin(), text.cend(), [](QChar c) { return c >= u'1' && c <= u'9'; });
    if (text.startsWith(u'-'))
        text.replace(0, 1, isZero ? QString() : QString(QChar(0x2212))); // a minus sign, as wide as a digit
    return text;
}

QString prefixOf(int exponent)
{
    switch (exponent) {
    case -12:
        return QStringLiteral("p");
    case -9:
        return QStringLiteral("n");
    case -6:
        return QStringLiteral("µ");
    case -3:
        return QStringLiteral("m");
    case 3:
        return QStringLiteral("k");
    case 6:
        return QStringLiteral("M");
    case 9:
        return QStringLiteral("G");
    case 12:
        return QStringLiteral("T");
    case 15:
        return QStringLiteral("P");
    default:
        return {};
    }
}

QString exponentText(int exponent)
{
    return fixed(exponent, 0);
}

double largestMagnitude(const QList<double>& values)
{
    double largest = 0.0;
    for (const double value : values)
        largest = std::max(largest, std::abs(value));
    return largest;
}

/// A value of a decade plan: 1, 2 or 5 times a power of ten, or neither.
struct Decade {
    int exponent = 0;
    int mantissa = 1;
};

Decade decadeOf(double value)
{
    const int exponent = static_cast<int>(std::floor(std::log10(value) + tolerance));
    return { exponent, static_cast<int>(std::lround(value / powerOfTen(exponent))) };
}

QList<double> multiplesIn(AxisRange range, double step)
{
    QList<double> values;
    const double first = std::ceil(range.min / step - tolerance);
    const double count = std::floor(range.max / step + tolerance) - first;
    for (int i = 0; i <= std::min<double>(count, maxMultiples); ++i)
        values.append((first + i) * step);
    return values;
}

/// First of the round mantissas at or above the value.
double roundDecadeFrom(double value)
{
    constexpr std::array mantissas { 1.0, 1.5, 2.0, 3.0, 4.0, 5.0, 6.0, 8.0, 10.0 };
    const double power = std::pow(10.0, std::floor(std::log10(value) + tolerance));
    for (const double mantissa : mantissas) {
        if (mantissa * power * (1.0 + tolerance) >= value)
            return mantissa * power;
    }
    return 10.0 * power;
}

/// Counts up to ten begin below 1, so that a single count can be distinguished from none; larger values begin at a
/// power of ten.
double lowestDecadeEnd(double smallest)
{
    constexpr double below = 0.8;
    constexpr double few = 10.0;
    if (!(smallest > 0.0) || (smallest >= 1.0 && smallest * below < few))
        return lowestCount;
    if (smallest < 1.0)
        return roundStepTo(smallest * below);
    return std::pow(10.0, std::floor(std::log10(smallest * below)));
}

AxisRange ordered(AxisRange range)
{
    return { std::min(range.min, range.max), std::max(range.min, range.max) };
}

} // namespace

double roundStepFrom(double value)
{
    const double power = std::pow(10.0, std::floor(std::log10(value)));
    const double mantissa = value / power * (1.0 - tolerance);
    return power * (mantissa <= 1.0 ? 1.0 : (mantissa <= 2.0 ? 2.0 : (mantissa <= 5.0 ? 5.0 : 10.0)));
}

TickPlan linearPlan(AxisRange range, int maxTicks, double smallestStep)
{
    const auto [low, high] = ordered(range);
    const double span = high - low;
    TickPlan plan;
    if (!std::isfinite(span) || !(span > 0.0) || span < 1e-12 * std::max(std::abs(low), std::abs(high)))
        return plan;
    const double step = std::max(roundStepFrom(span / std::max(maxTicks, 1)), smallestStep);
    if (!std::isnormal(step)) // of a range about as long, or as short, as numbers can be
        return plan;
    plan.step = step;
    plan.major = multiplesIn({ low, high }, plan.step);
    if (const double finer = roundStepTo(plan.step * 0.6);
        maxTicks > 1 && plan.major.size() < 2 && finer >= smallestStep) {
        plan.step = finer; // rounding up left too few ticks
        plan.major = multiplesIn({ low, high }, plan.step);
    }
    const int parts = std::lround(plan.step / powerOfTen(-decimalsOf(plan.step))) == 2 ? 4 : 5;
    const double part = plan.step / parts;
    if (part < smallestStep)
        return plan;
    const double firstPart = std::ceil(low / part - tolerance);
    const double partCount = std::floor(high / part + tolerance) - firstPart;
    for (int i = 0; i <= std::min<double>(partCount, double(maxMultiples) * parts); ++i) {
        if (std::fmod(firstPart + i, parts) != 0.0)
            plan.minor.append((firstPart + i) * part);
    }
    return plan;
}

TickPlan decadePlan(AxisRange range, int maxTicks)
{
    const auto positive = [](double value) { return value > 0.0 ? value : 1.0; };
    const auto [low, high] = ordered({ positive(range.min), positive(range.max) });
    TickPlan plan;
    if (!std::isfinite(high) || !(high > low))
        return plan;
    const int first = static_cast<int>(std::ceil(std::log10(low) - tolerance));
    const int last = static_cast<int>(std::floor(std::log10(high) + tolerance));
    const int powers = last - first + 1;
    if (powers < 2 && std::log10(high / low) < 1.0)
        return linearPlan({ low, high }, maxTicks, 0.0);
    const int every = std::max(1, (powers + maxTicks - 1) / std::max(maxTicks, 1));
    const bool withHalves = powers <= 2 && maxTicks >= 3 * powers + 1;
    for (int exponent = first - 1; exponent <= last; ++exponent) {
        for (int mantissa = 1; mantissa < 10; ++mantissa) {
            const double value = mantissa * powerOfTen(exponent);
            if (value < low * (1.0 - tolerance) || value > high * (1.0 + tolerance))
                continue;
            const bool isMajor = mantissa == 1 ? exponent % every == 0 : withHalves && (mantissa == 2 || mantissa == 5);
            if (isMajor)
                plan.major.append(value);
            else if (every == 1 || mantissa == 1)
                plan.minor.append(value);
        }
    }
    return plan;
}

QString AxisLabel::plain() const
{
    return exponent.isEmpty() ? text : text + u'^' + exponent;
}

QList<AxisLabel> axisLabels(const TickPlan& plan, LargeNumbers form)
{
    QList<AxisLabel> labels;
    const double largest = largestMagnitude(plan.major);
    if (plan.major.isEmpty() || !(plan.step > 0.0))
        return labels;
    const int decimals = decimalsOf(plan.step);
    const int magnitude = largest > 0.0 ? static_cast<int>(std::floor(std::log10(largest) + tolerance)) : 0;
    const int thousands = 3 * static_cast<int>(std::floor(magnitude / 3.0));
    const bool hasPrefix = thousands == 0 || !prefixOf(thousands).isEmpty();
    const bool isByPrefix = form == LargeNumbers::Prefixes && hasPrefix;
    const int exponent = isByPrefix ? thousands : magnitude;
    const bool isPlain = largest < largestPlain && (largest >= smallestPlain || largest == 0.0);
    // Beyond the prefixes, written out a value has more digits than fit on a plot.
    const bool isScaled = !isPlain && (exponent + decimals <= maxDecimals || !hasPrefix);
    for (const double value : plan.major) {
        if (!isScaled || value == 0.0) {
            labels.append({ fixed(value, value == 0.0 ? (isScaled ? 0 : decimals) : decimals), {} });
            continue;
        }
        const QString mantissa = fixed(value / powerOfTen(exponent), exponent + decimals);
        if (isByPrefix)
            labels.append({ mantissa + prefixOf(exponent), {} });
        else
            labels.append({ mantissa + QStringLiteral("×10"), exponentText(exponent) });
    }
    return labels;
}

QList<AxisLabel> decadeLabels(const TickPlan& plan, LargeNumbers form)
{
    if (plan.step > 0.0)
        return axisLabels(plan, form);
    QList<AxisLabel> labels;
    if (plan.major.isEmpty())
        return labels;
    const bool isPlain = plan.major.constLast() < largestPlain && plan.major.constFirst() >= smallestPlain;
    for (const double value : plan.major) {
        const auto [exponent, mantissa] = decadeOf(value);
        if (isPlain)
            labels.append({ fixed(value, std::max(-exponent, 0)), {} });
        else if (mantissa == 1)
            labels.append({ QStringLiteral("10"), exponentText(exponent) });
        else
            labels.append({ QString::number(mantissa) + QStringLiteral("×10"), exponentText(exponent) });
    }
    return labels;
}

AxisRange roomyRange(AxisRange data)
{
    const double low = std::min(data.min, 0.0);
    const double high = std::max(data.max, 0.0);
    const double span = high - low;
    if (!std::isfinite(span) || !(span > 0.0))
        return { 0.0, 1.0 };
    const double step = roundStepTo(span * room);
    if (!(step > 0.0))
        return { low, high }; // below the smallest numbers
    const auto rounded = [&](double end) { return std::ceil((end + span * room) / step - tolerance) * step; };
    return { low < 0.0 ? -rounded(-low) : 0.0, high > 0.0 ? rounded(high) : 0.0 };
}

AxisRange roomyDecades(AxisRange data)
{
    if (!std::isfinite(data.max) || !(data.max > 0.0))
        return { lowestCount, 10.0 };
    AxisRange range;
    range.min = lowestDecadeEnd(data.min);
    const double decades = std::log10(data.max / range.min);
    range.max = std::max(roundDecadeFrom(data.max * std::pow(10.0, room * decades)), 10.0 * range.min);
    return range;
}

AxisRange calmRange(AxisRange shown, AxisRange data)
{
    const AxisRange fresh = roomyRange(data);
    const double span = shown.max - shown.min;
    const auto isCalm = [span](double end, double extreme) {
        if (end == 0.0 || extreme <= 0.0)
            return end == 0.0 && extreme <= 0.0;
        return extreme <= end - span * minRoom && extreme >= end * minUse;
    };
    return isCalm(shown.max, data.max) && isCalm(-shown.min, -data.min) ? shown : fresh;
}

AxisRange calmDecades(AxisRange shown, AxisRange data)
{
    const AxisRange fresh = roomyDecades(data);
    const double span = std::log10(shown.max / shown.min);
    if (!(shown.min > 0.0) || !(span > 0.0) || !(data.max > 0.0))
        return fresh;
    const double use = std::log10(data.max / shown.min) / span;
    const bool isLowKept = fresh.min >= shown.min && std::log10(fresh.min / shown.min) <= 0.5;
    return isLowKept && use <= 1.0 - minRoom && use >= minUse ? shown : fresh;
}

int calmLength(int kept, int needed, int slack)
{
    return needed <= kept && kept - needed <= slack ? kept : needed;
}

QString unitIn(const QString& name)
{
    const QString text = name.trimmed();
    for (const auto& [opening, closing] : { std::pair(u'[', u']'), std::pair(u'(', u')') }) {
        const qsizetype open = text.lastIndexOf(opening);
        if (open > 0 && text.endsWith(closing))
            return text.mid(open + 1, text.size() - open - 2).trimmed();
    }
    return {};
}

QString withUnit(const QString& name, const QString& unit)
{
    if (unit.isEmpty() || !unitIn(name).isEmpty())
        return name;
    return name.isEmpty() ? unit : QStringLiteral("%1 (%2)").arg(name, unit);
}

} // namespace tarnis
