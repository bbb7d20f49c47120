#include "tarnis/tools/referencecurves.h"

#include "tarnis/formats/formats.h"
#include "tarnis/plots/math/sampleblocks_p.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/plothooks_p.h"
#include "tarnis/plots/plotmapping.h"
#include "tarnis/plots/plotstyling_p.h"
#include "tarnis/tools/base/overlaycache_p.h"
#include "tarnis/tools/curves/referencecurves_p.h"

#include <QFileInfo>
#include <QKeyEvent>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

namespace tarnis {

namespace {

constexpr int referencesZOrder = 5;
constexpr int preferredStrip = 120; // pixels
constexpr int partOfPlot = 3; // at most

double sumOf(const QList<double>& values, BinsInView bins)
{
    double sum = 0.0;
    for (qsizetype i = bins.first; i <= bins.last && i < values.size(); ++i)
        sum += std::isfinite(values[i]) ? values[i] : 0.0;
    return sum;
}

/// Without those at the ends whose centre is outside.
BinsInView centredIn(const PlotMapping& mapping, AxisRange x)
{
    const auto isInside = [&](qsizetype bin) {
        const AxisRange edges = mapping.columnEdges(bin);
        const double centre = edges.min + (edges.max - edges.min) / 2.0;
        return centre >= x.min && centre < x.max;
    };
    BinsInView bins = columnsBetween(mapping, x);
    while (bins.first <= bins.last && !isInside(bins.first))
        ++bins.first;
    while (bins.first <= bins.last && !isInside(bins.last))
        --bins.last;
    return bins;
}

QList<double> samplesOf(const ShownCurve& curve)
{
    if (curve.parts.size() == 1)
        return curve.parts.constFirst();
    QList<double> samples(curve.size());
    for (qsizetype i = 0; i < samples.size(); ++i)
        samples[i] = curve.valueAt(i);
    return samples;
}

} // namespace

Comparison comparisonOf(ReferenceCurves::View view)
{
    switch (view) {
    case ReferenceCurves::View::Ratio:
        return Comparison::Ratio;
    case ReferenceCurves::View::Significance:
        return Comparison::Significance;
    default:
        return Comparison::Difference;
    }
}

ReferenceCurves::ReferenceCurves(XYGraphWidget* plot)
    : InteractiveTool(plot, KeyboardFocus)
    , PlotOverlay(plot, referencesZOrder)
    , m_cache(std::make_unique<OverlayCache>())
    , m_stripCache(std::make_unique<OverlayCache>())
    , m_pairs(std::make_unique<Pairs>())
{
    makeActions();
}

ReferenceCurves::~ReferenceCurves()
{
    m_view = View::Over;
    placeStrip();
    if (m_current >= 0)
        refreshFit();
}

QStringList ReferenceCurves::names() const
{
    QStringList names;
    for (const Reference& reference : m_references)
        names.append(reference.name);
    return names;
}

int ReferenceCurves::current() const
{
    return m_current;
}

ReferenceCurves::View ReferenceCurves::view() const
{
    return m_view;
}

ReferenceCurves::Norm ReferenceCurves::norm() const
{
    return m_norm;
}

AxisRange ReferenceCurves::normRange() const
{
    return m_normRange;
}

void ReferenceCurves::append(const Reference& reference)
{
    if (m_references.size() >= maxReferences)
        m_references.removeFirst();
    m_references.append(reference);
    m_current = static_cast<int>(m_references.size()) - 1;
    renew();
}

bool ReferenceCurves::freeze(const QString& name)
{
    const QList<ShownCurve> live = plot() != nullptr ? shownCurves(*plot()) : QList<ShownCurve>();
    if (live.isEmpty())
        return false;
    Reference reference { name.isEmpty() ? QTime::currentTime().toString(QStringLiteral("HH:mm:ss")) : name, {},
        m_liveTime, true, true, {}, {} };
    for (const ShownCurve& curve : live) {
        reference.curveNames.append(curve.identity);
        reference.curves.append(samplesOf(curve));
    }
    append(reference);
    return true;
}

QString ReferenceCurves::add(const Dataset& data, const QString& name)
{
    if (!isConsistent(data))
        return tr("The data are incomplete. Choose another file or run.");
    if (data.kind == Dataset::Kind::Map)
        return tr("These are the data of a map. Choose a spectrum or curves.");
    Reference reference { name.isEmpty() ? data.title : name, {}, data.liveTime, false, false, {}, {} };
    for (qsizetype row = 0; row < data.rows; ++row) {
        const auto first = data.values.begin() + row * data.columns;
        reference.curves.append(QList<double>(first, first + data.columns));
        reference.curveNames.append(data.rowNames.value(row));
    }
    append(reference);
    return {};
}

QString ReferenceCurves::addFile(const QString& path)
{
    const DatasetResult result = readDataset(path);
    if (!result.error.isEmpty())
        return result.error;
    QString error = add(result.data, QFileInfo(path).fileName());
    if (error.isEmpty())
        m_references.last().path = path;
    return error;
}

void ReferenceCurves::dropPictures()
{
    m_cache->drop();
    m_stripCache->drop();
    m_pairs->all.clear();
    m_pairs->axis.reset();
}

void ReferenceCurves::renew()
{
    dropPictures();
    placeStrip();
    refreshFit();
    updateOverlay();
    Q_EMIT referencesChanged();
}

/// The automatic range of a style includes the references.
void ReferenceCurves::refreshFit() const
{
    PlotStyling* const styling = stylingOf(plot());
    if (styling == nullptr || !PlotAccess::isAutoY(*plot()))
        return;
    styling->noteData();
    plot()->refreshPixmap();
}

QPair<double, double> ReferenceCurves::extremes(qsizetype first, qsizetype last, bool aboveZero) const
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    QPair<double, double> found { infinity, -infinity };
    const auto include = [&](double value) {
        if (std::isfinite(value))
            found = { std::min(found.first, value), std::max(found.second, value) };
    };
    if (plot() == nullptr || m_current < 0)
        return found;
    const QList<Pair>& all = pairs(shownCurves(*plot()));
    for (const Pair& pair : all) {
        const qsizetype begin = std::max<qsizetype>(first, 0);
        const qsizetype count = std::min(last + 1, pair.reference.size()) - begin;
        if (count <= 0)
            continue;
        const double* const samples = pair.reference.constData() + begin;
        const SampleBlocks* const blocks = blocksOf(*plot(), { {}, {}, { pair.reference } });
        const SampleExtremes quick =
            blocks != nullptr ? blocks->extremes(begin, begin + count) : extremesOf(samples, count);
        if (!aboveZero && quick.finite) {
            include(quick.low * pair.norm);
            include(quick.high * pair.norm);
            continue;
        }
        for (qsizetype i = 0; i < count; ++i) {
            if (!aboveZero || samples[i] > 0.0)
                include(samples[i] * pair.norm);
        }
    }
    return found;
}

void ReferenceCurves::setView(View view)
{
    if (view == m_view)
        return;
    m_view = view;
    renew();
}

void ReferenceCurves::setNorm(Norm norm)
{
    if (norm == m_norm)
        return;
    m_norm = norm;
    renew();
}

void ReferenceCurves::setNormRange(double lower, double upper)
{
    const AxisRange range { lower, upper };
    if (!std::isfinite(lower) || !std::isfinite(upper) || lower >= upper
        || (range == m_normRange && m_norm == Norm::RangeCounts))
        return;
    m_normRange = range;
    m_norm = Norm::RangeCounts;
    renew();
}

void ReferenceCurves::setLiveTime(double seconds)
{
    const double known = std::isfinite(seconds) && seconds > 0.0 ? seconds : 0.0;
    if (known == m_liveTime)
        return;
    m_liveTime = known;
    dropPictures();
    if (m_current >= 0 && m_norm == Norm::LiveTime)
        refreshFit();
    updateOverlay();
}

void ReferenceCurves::setCurrent(int index)
{
    if (index < 0 || index >= m_references.size() || index == m_current)
        return;
    m_current = index;
    renew();
}

void ReferenceCurves::removeCurrent()
{
    if (m_current < 0)
        return;
    m_references.removeAt(m_current);
    m_current = static_cast<int>(m_references.size()) - 1;
    renew();
}

void ReferenceCurves::clear()
{
    m_references.clear();
    m_current = -1;
    renew();
}

void ReferenceCurves::toggleFrozen()
{
    if (m_current >= 0 && m_references.at(m_current).isFrozen)
        removeCurrent();
    else
        freeze();
}

/// Reserves space for the strip below the plot while there is something to compare.
void ReferenceCurves::placeStrip()
{
    if (plot() == nullptr)
        return;
    const int height = PlotHooks::of(*plot()).pictureSize().height();
    const int wanted = m_view == View::Over || m_current < 0 ? 0 : std::min(preferredStrip, height / partOfPlot);
    if (wanted == m_stripHeight)
        return;
    PlotAccess::addBottomMargin(*plot(), wanted - m_stripHeight);
    m_stripHeight = wanted;
    plot()->refreshPixmap();
}

bool ReferenceCurves::handleEvent(QEvent* event)
{
    if (event->type() == QEvent::Resize)
        placeStrip();
    return InteractiveTool::handleEvent(event);
}

bool ReferenceCurves::handleKey(const QKeyEvent& event)
{
    if (event.key() != Qt::Key_C || event.modifiers() != Qt::ShiftModifier)
        return false;
    toggleFrozen();
    return true;
}

void ReferenceCurves::plotChanged(Changes changes)
{
    if (!changes.testFlag(Data) || m_current < 0)
        return;
    noteClearing();
    updateOverlay();
}

/// Once the data have been cleared they are another measurement, also after they have exceeded the reference again.
void ReferenceCurves::noteClearing()
{
    const QList<Pair> all = pairs(shownCurves(*plot()));
    for (const Pair& pair : all) {
        Reference& reference = m_references[pair.index];
        if (!reference.isContinued || pair.live < 0 || !isBelow(pair.samples, pair.reference))
            continue;
        reference.isContinued = false;
        m_pairs->all.clear();
    }
}

bool ReferenceCurves::isLiveTimeKnown(const Reference& reference) const
{
    return m_liveTime > 0.0 && reference.liveTime > 0.0;
}

/// Empty if what it needs is missing.
std::optional<double> ReferenceCurves::normOf(
    const Reference& reference, const QList<double>& live, const QList<double>& values) const
{
    if (m_norm == Norm::None)
        return 1.0;
    double norm = 0.0;
    if (m_norm == Norm::LiveTime) {
        norm = isLiveTimeKnown(reference) ? m_liveTime / reference.liveTime : 0.0;
    } else {
        const BinsInView bins = m_norm == Norm::RangeCounts
            ? centredIn(PlotMapping::of(*plot()), m_normRange)
            : BinsInView { 0, std::max(live.size(), values.size()) - 1 };
        norm = sumOf(live, bins) / sumOf(values, bins);
    }
    return std::isfinite(norm) && norm > 0.0 ? std::optional(norm) : std::nullopt;
}

/// The curve of the same name. Without a match of names, the curve at the same position if both lists have the same
/// length. -1 without one.
int ReferenceCurves::curveOf(const Reference& reference, int row, const QList<ShownCurve>& curves, qsizetype count)
{
    for (int i = 0; i < curves.size(); ++i) {
        const ShownCurve& curve = curves.at(i);
        const qsizetype named = curve.identity.isEmpty() ? -1 : reference.curveNames.indexOf(curve.identity);
        if (named == row || (named < 0 && curve.place == row && count == reference.curves.size()))
            return i;
    }
    return -1;
}

/// What each curve of each reference is compared with. Kept until the data or the choices change: the totals of long
/// curves take as long as the drawing.
const QList<ReferenceCurves::Pair>& ReferenceCurves::pairs(const QList<ShownCurve>& live) const
{
    if (!m_pairs->all.isEmpty() && isSameData(live, m_pairs->live))
        return m_pairs->all;
    m_pairs->live = live;
    m_pairs->all.clear();
    m_pairs->rows.clear();
    QList<QList<double>> samples;
    for (const ShownCurve& curve : live)
        samples.append(samplesOf(curve));
    const QList<ShownCurve> hidden = hiddenCurves(*plot());
    const qsizetype count = live.size() + hidden.size();
    for (int index = 0; index < m_references.size(); ++index) {
        const Reference& reference = m_references.at(index);
        for (int row = 0; row < reference.curves.size(); ++row) {
            Pair pair { index, curveOf(reference, row, live, count), {}, reference.curves.at(row), {} };
            if (pair.live < 0 && curveOf(reference, row, hidden, count) >= 0)
                continue; // hidden with its curve
            if (pair.live >= 0) {
                pair.samples = samples.at(pair.live);
                const std::optional<double> norm = normOf(reference, pair.samples, pair.reference);
                pair.norm = norm.value_or(1.0);
                pair.isScaled = norm.has_value();
                compare(pair);
            }
            m_pairs->all.append(pair);
        }
    }
    return m_pairs->all;
}

void ReferenceCurves::compare(Pair& pair) const
{
    if (m_view == View::Over || pair.index != m_current || pair.samples.size() != pair.reference.size())
        return;
    pair.isContained = m_references.at(pair.index).isContinued && isContinuation(pair.samples, pair.reference);
    pair.values.resize(pair.reference.size());
    comparedValues(comparisonOf(m_view), pair.samples.constData(), pair.reference.constData(), pair.values.size(),
        pair.norm, pair.isContained, pair.values.data());
}

QList<ReferenceCurves::Pair> ReferenceCurves::comparedPairs(const QList<ShownCurve>& live) const
{
    QList<Pair> compared;
    const QList<Pair>& all = pairs(live);
    std::copy_if(all.begin(), all.end(), std::back_inserter(compared), [this](const Pair& pair) {
        return pair.index == m_current && pair.live >= 0 && pair.samples.size() == pair.reference.size();
    });
    return compared;
}

QString ReferenceCurves::problem() const
{
    if (plot() == nullptr || m_current < 0)
        return tr("There is no reference. Freeze the curves or open a file.");
    const QList<ShownCurve> live = shownCurves(*plot());
    if (live.isEmpty())
        return tr("The plot shows no curve.");
    if (!comparedPairs(live).isEmpty())
        return {};
    const Reference& reference = m_references.at(m_current);
    const qsizetype bins = reference.curves.isEmpty() ? 0 : reference.curves.constFirst().size();
    if (bins != live.constFirst().size())
        return tr("The reference has %1 bins, the plot has %2.").arg(bins).arg(live.constFirst().size());
    return tr("No curve of the reference has the name of a visible one.");
}

QList<double> ReferenceCurves::compared(int curve) const
{
    QList<double> values;
    if (plot() == nullptr || m_view == View::Over)
        return values;
    const QList<ShownCurve> live = shownCurves(*plot());
    const QList<Pair> all = comparedPairs(live);
    for (const Pair& pair : all) {
        if (pair.live != curve)
            continue;
        values = pair.values;
    }
    return values;
}

} // namespace tarnis
