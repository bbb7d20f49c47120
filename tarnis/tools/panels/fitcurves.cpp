#include "tarnis/tools/panels/fitcurves_p.h"

#include "tarnis/plots/plotmapping.h"
#include "tarnis/tools/base/plotlabel_p.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

constexpr int fitZOrder = 20;
constexpr int pointsOfABin = 4;
const QColor goodColour(255, 190, 60);
const QColor badColour(255, 90, 80);
const QColor peakColour(120, 200, 255);

/// The result with only one of its peaks: the others have no area.
FitResult peakAlone(const FitResult& result, std::size_t peak)
{
    FitResult alone;
    alone.model = result.model;
    alone.reference = result.reference;
    alone.parameters = result.parameters;
    for (std::size_t k = 0; k < result.peaks.size(); ++k) {
        const int index = result.indexOf(QStringLiteral("area%1").arg(k + 1));
        if (k != peak && index >= 0)
            alone.parameters[static_cast<std::size_t>(index)].value = 0.0;
    }
    return alone;
}

// The directions from a point of the line whose rays pass all following points within the tolerance.
class DirectionCone {
public:
    /// Whether a point at `step` is inside of the cone and not nearer than the one before it.
    bool includes(const QPointF& step) const
    {
        return lengthOf(step) >= m_reach
            && (!m_isNarrow || (cross(m_right, step) >= 0.0 && cross(step, m_left) >= 0.0));
    }
    void narrow(const QPointF& step)
    {
        m_reach = lengthOf(step);
        if (!(m_reach > tolerance))
            return;
        const double sine = tolerance / m_reach;
        const double cosine = std::sqrt(1.0 - sine * sine);
        const QPointF left(step.x() * cosine - step.y() * sine, step.x() * sine + step.y() * cosine);
        const QPointF right(step.x() * cosine + step.y() * sine, step.y() * cosine - step.x() * sine);
        if (!m_isNarrow || cross(left, m_left) > 0.0)
            m_left = left;
        if (!m_isNarrow || cross(m_right, right) > 0.0)
            m_right = right;
        m_isNarrow = true;
    }

private:
    static constexpr double tolerance = 0.2; // pixels
    static double cross(const QPointF& a, const QPointF& b) { return a.x() * b.y() - a.y() * b.x(); }
    static double lengthOf(const QPointF& step) { return std::hypot(step.x(), step.y()); }

    QPointF m_left;
    QPointF m_right;
    double m_reach = 0.0; // distance of the last point
    bool m_isNarrow = false; // some point is further than the tolerance
};

} // namespace

FitLines linesOf(const FitResult& result, const BinnedData& data, int maxPoints)
{
    FitLines lines;
    if (result.status == FitStatus::Refused || result.last < result.first || result.last >= data.size())
        return lines;
    const double lower = data.edge(result.first);
    const double upper = data.edge(result.last + 1);
    const auto bins = static_cast<int>(result.last - result.first + 1);
    const int points = std::clamp(bins * pointsOfABin, 2, maxPoints);
    // Data are contents of bins: a density times the width of the bin there.
    const auto sample = [&](const auto& density) {
        QList<QPointF> line;
        line.reserve(points + 1);
        for (int i = 0; i <= points; ++i) {
            const double x = lower + (upper - lower) * i / points;
            const std::ptrdiff_t bin = std::clamp(
                data.binAt(x), static_cast<std::ptrdiff_t>(result.first), static_cast<std::ptrdiff_t>(result.last));
            line.append({ x, density(x) * data.binWidth(static_cast<std::size_t>(bin)) });
        }
        return line;
    };
    lines.total = sample([&](double x) { return result.densityAt(x); });
    lines.background = sample([&](double x) { return result.backgroundAt(x); });
    for (std::size_t k = 0; k < result.peaks.size() && result.peaks.size() > 1; ++k)
        lines.peaks.append(sample([alone = peakAlone(result, k)](double x) { return alone.densityAt(x); }));
    for (const FittedPeak& peak : result.peaks)
        lines.centres.append(peak.measures.top);
    return lines;
}

QPolygonF simplified(const QPolygonF& line)
{
    if (line.isEmpty())
        return {};
    QPolygonF kept { line.constFirst() };
    DirectionCone cone;
    for (qsizetype i = 1; i < line.size(); ++i) {
        if (!cone.includes(line.at(i) - kept.constLast())) {
            kept.append(line.at(i - 1));
            cone = {};
        }
        cone.narrow(line.at(i) - kept.constLast());
    }
    if (line.size() > 1)
        kept.append(line.constLast());
    return kept;
}

void paintValues(QPainter& painter, const PlotMapping& mapping, const QList<QPointF>& values, const QColor& colour,
    Qt::PenStyle style)
{
    QPolygonF line;
    line.reserve(values.size());
    for (const QPointF& value : values)
        line.append({ limitedCoordinate(mapping.columnOf(value.x())), limitedCoordinate(mapping.rowOf(value.y())) });
    line = simplified(line);
    // Lines of one pixel, side by side: Qt draws each of them in a tenth of the time of a wider line, and only opaque
    // ones without its threads.
    constexpr double beside = 1.2;
    constexpr double half = 0.3;
    painter.setPen(QPen(Qt::black, 1.0));
    for (const QPointF offset :
        { QPointF(beside, 0.0), QPointF(-beside, 0.0), QPointF(0.0, beside), QPointF(0.0, -beside) })
        painter.drawPolyline(line.translated(offset));
    painter.setPen(QPen(colour, 1.0, style));
    for (const double offset : { -half, half })
        painter.drawPolyline(line.translated(offset, offset));
}

void paintRange(QPainter& painter, const PlotMapping& mapping, AxisRange range, const QColor& colour)
{
    const QRect rect = mapping.frameRect();
    for (const double end : { range.min, range.max }) {
        const double column = std::round(limitedCoordinate(mapping.columnOf(end)));
        paintLine(painter, { column, double(rect.top()) }, { column, double(rect.bottom()) }, colour, true);
    }
}

FitCurves::FitCurves(XYGraphWidget* plot)
    : PlotOverlay(plot, fitZOrder)
{
}

void FitCurves::setRange(AxisRange range)
{
    m_range = range;
    updateOverlay();
}

void FitCurves::setLines(FitLines lines, bool isGuess, bool isAcceptable)
{
    m_lines = std::move(lines);
    m_isGuess = isGuess;
    m_isAcceptable = isAcceptable;
    updateOverlay();
}

void FitCurves::clear()
{
    m_range = {};
    setLines({}, false, true);
}

void FitCurves::paintOverlay(QPainter& painter, const PlotMapping& mapping)
{
    painter.setClipRect(mapping.frameRect());
    const QColor colour = m_isGuess || m_isAcceptable ? goodColour : badColour;
    if (m_range != AxisRange {} && m_range.min != m_range.max)
        paintRange(painter, mapping, m_range, goodColour);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_lines.total.isEmpty())
        return;
    for (const QList<QPointF>& peak : m_lines.peaks)
        paintValues(painter, mapping, peak, peakColour, Qt::SolidLine);
    paintValues(painter, mapping, m_lines.background, colour, Qt::DotLine);
    paintValues(painter, mapping, m_lines.total, colour, m_isGuess ? Qt::DashLine : Qt::SolidLine);
    if (m_lines.centres.size() < 2)
        return;
    // Numbers that identify the peaks of the table.
    for (qsizetype k = 0; k < m_lines.centres.size(); ++k) {
        const double column = limitedCoordinate(mapping.columnOf(m_lines.centres.at(k)));
        paintLabel(painter, QString::number(k + 1), { qRound(column), mapping.frameRect().top() + 2 },
            Qt::AlignHCenter | Qt::AlignTop);
    }
}

} // namespace tarnis
