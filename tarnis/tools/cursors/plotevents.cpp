#include "tarnis/tools/plotevents.h"

#include "tarnis/plots/curvenames.h"
#include "tarnis/plots/math/seriesgrouping_p.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/plotmapping.h"
#include "tarnis/tools/cursors/nearestcurve_p.h"

#include <QApplication>
#include <QMetaMethod>
#include <QMouseEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tarnis {

namespace {

// The maximum number of bins that are searched on each side of the pointer, for curves with more bins than pixels.
constexpr qsizetype maxBinsAside = 2048;

/// The samples of a curve one at a time, added up if the curve is a sum.
class Samples {
public:
    Samples(const QList<Series>& series, const SummedCurve& curve)
        : m_series(series)
        , m_curve(curve)
        , m_length(lengthOf(series, curve))
    {
    }

    qsizetype length() const { return m_length; }
    double operator()(qsizetype bin) const
    {
        double sum = 0.0;
        for (const int record : m_curve.records) {
            const QList<double>& values = m_series.at(record).values;
            if (bin < values.size())
                sum += values.at(bin);
        }
        return sum;
    }

private:
    const QList<Series>& m_series;
    const SummedCurve& m_curve;
    qsizetype m_length;
};

/// Searches the curve nearest to a pixel.
class Search {
public:
    Search(const PlotMapping& mapping, const QPointF& pixel, double reach)
        : m_mapping(mapping)
        , m_place(mapping.toFrame(pixel))
        , m_reach(reach)
    {
    }

    template <typename Sample> double distance(qsizetype length, const Sample& sample) const
    {
        if (length == 0)
            return std::numeric_limits<double>::infinity();
        const qsizetype centre = std::min(std::max(column(0.0), qsizetype(0)), length - 1);
        const auto [left, right] = std::minmax({ column(-m_reach), column(m_reach) });
        const qsizetype first = std::max({ left - 1, centre - maxBinsAside, qsizetype(0) });
        const qsizetype last = std::min({ right + 1, centre + maxBinsAside, length - 1 });
        return distanceToLine(m_place, first, last, [this, &sample](qsizetype bin) {
            const AxisRange edges = m_mapping.columnEdges(bin);
            return QPointF(
                (m_mapping.columnOf(edges.min) + m_mapping.columnOf(edges.max)) / 2.0, m_mapping.rowOf(sample(bin)));
        });
    }

private:
    /// The bin at an offset in pixels from the position; beyond the data, the first or last one.
    qsizetype column(double aside) const
    {
        const double x = m_mapping.xAt(m_place.x() + aside);
        const qsizetype bin = m_mapping.columnAt(x);
        if (bin >= 0)
            return bin;
        const qsizetype last = m_mapping.columns() - 1;
        const double begin = m_mapping.columnEdges(0).min;
        const double end = m_mapping.columnEdges(last).max;
        return std::abs(x - begin) < std::abs(x - end) ? 0 : last;
    }

    const PlotMapping& m_mapping;
    QPointF m_place;
    double m_reach;
};

void readSeries(PlotPoint& point, const MultiVectorGraphWidget& plot, const Search& search, double reach)
{
    const QList<Series>& series = PlotAccess::series(plot);
    const QList<SummedCurve> curves = curvesOf(series, PlotAccess::addType(plot), PlotAccess::groupSize(plot));
    for (int i = 0; i < curves.size(); ++i) {
        const SummedCurve& curve = curves.at(i);
        if (!curve.enable || curve.records.isEmpty())
            continue;
        const Samples samples(series, curve);
        const double distance = search.distance(samples.length(), samples);
        if (distance > reach || distance >= point.distance)
            continue;
        point.series = i;
        point.distance = distance;
        point.sample = std::numeric_limits<double>::quiet_NaN();
        if (point.column >= 0 && point.column < samples.length())
            point.sample = samples(point.column);
    }
    if (point.series >= 0)
        point.seriesName = curveNames(plot).value(point.series);
}

void readSamples(PlotPoint& point, const VectorGraphWidget& plot, const Search& search, double reach)
{
    const QList<double>& samples = PlotAccess::samples(plot);
    const double distance = search.distance(samples.size(), [&samples](qsizetype bin) { return samples.at(bin); });
    if (distance > reach)
        return;
    point.series = 0;
    point.distance = distance;
    if (point.column >= 0)
        point.sample = samples.at(point.column);
}

void readBin(PlotPoint& point, const XY2DGraphWidget& map, const PlotMapping& mapping)
{
    point.row = mapping.rowAt(point.value.y());
    if (point.row < 0 || point.column < 0)
        return;
    const QList<double>& row = PlotAccess::rows(map).at(point.row);
    if (point.column < row.size())
        point.sample = row.at(point.column);
}

} // namespace

PlotEvents::PlotEvents(XYGraphWidget* plot)
    : InteractiveTool(plot, MouseMoves)
{
}

void PlotEvents::setReach(double pixels)
{
    m_reach = pixels >= 0.0 ? pixels : 0.0; // also for NaN
}

PlotPoint PlotEvents::at(const QPointF& pixel) const
{
    PlotPoint point;
    if (plot() == nullptr)
        return point;
    const PlotMapping mapping = PlotMapping::of(*plot());
    if (!mapping.isValid())
        return point;
    point.value = mapping.valueAt(pixel);
    point.column = mapping.columnAt(point.value.x());
    if (mapping.columns() == 0)
        return point;
    const Search search(mapping, pixel, m_reach);
    if (const auto* map = qobject_cast<const XY2DGraphWidget*>(plot()))
        readBin(point, *map, mapping);
    else if (const auto* curves = qobject_cast<const MultiVectorGraphWidget*>(plot()))
        readSeries(point, *curves, search, m_reach);
    else if (const auto* curve = qobject_cast<const VectorGraphWidget*>(plot()))
        readSamples(point, *curve, search, m_reach);
    return point;
}

bool PlotEvents::isInside(const QPointF& pixel) const
{
    const PlotMapping mapping = PlotMapping::of(*plot());
    return mapping.isValid() && PlotAccess::mode(*plot()) == 0 && QRectF(mapping.plotRect()).contains(pixel);
}

bool PlotEvents::handlePress(const QMouseEvent& event)
{
    m_isPressed = event.button() == Qt::LeftButton && isInside(event.position());
    m_pressedAt = event.position();
    return false;
}

bool PlotEvents::handleRelease(const QMouseEvent& event)
{
    if (event.button() != Qt::LeftButton || !std::exchange(m_isPressed, false))
        return false;
    const QPointF moved = event.position() - m_pressedAt;
    if (moved.manhattanLength() < QApplication::startDragDistance() && isInside(event.position()))
        Q_EMIT clicked(at(event.position()), event.modifiers());
    return false;
}

bool PlotEvents::handleDoubleClick(const QMouseEvent& event)
{
    m_isPressed = false;
    if (event.button() == Qt::LeftButton && isInside(event.position()))
        Q_EMIT doubleClicked(at(event.position()), event.modifiers());
    return false;
}

bool PlotEvents::handleMove(const QMouseEvent& event)
{
    if (event.buttons() != Qt::NoButton)
        return false;
    if (!isInside(event.position())) {
        endHover();
        return false;
    }
    m_isHovering = true;
    // The search for the nearest curve is skipped if the signal is not connected.
    static const QMetaMethod signal = QMetaMethod::fromSignal(&PlotEvents::hovered);
    if (isSignalConnected(signal))
        Q_EMIT hovered(at(event.position()));
    return false;
}

void PlotEvents::handleLeave()
{
    endHover();
}

void PlotEvents::handleHide()
{
    endHover();
}

void PlotEvents::endHover()
{
    if (std::exchange(m_isHovering, false))
        Q_EMIT hoverEnded();
}

void PlotEvents::plotChanged(Changes changes)
{
    if (changes.testAnyFlags(RangeX | RangeY))
        Q_EMIT rangeChanged(PlotAccess::x(*plot()), PlotAccess::y(*plot()));
}

} // namespace tarnis
