// Curves, on pixels and on paper.
#include "tarnis/plots/exactdrawing_p.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/raster/deviceimage_p.h"
#include "tarnis/tools/style/stylepainter_p.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

constexpr double farAway = 1e5; // rows beyond are outside of any picture
constexpr double pointScale = 3.0; // diameter of points, in widths of lines
constexpr double fillAlpha = 0.45;
constexpr double screenFinest = 0.25; // resolution of a picture without a stated resolution

/// The vertices of a curve for a vector painter. Of samples that cannot be distinguished, the first, the last and both
/// extremes are kept.
class Outline {
public:
    Outline(const SmoothCurve& curve, const SmoothColumns& columns, const SmoothRows& rows, double finest)
        : m_curve(curve)
        , m_columns(columns)
        , m_rows(rows)
        , m_finest(finest)
    {
    }

    QList<QPolygonF> lines() const
    {
        QList<QPolygonF> parts(1);
        for (int begin = m_curve.range.begin; begin < m_curve.range.end;) {
            const int end = endOfGroup(begin);
            appendExtremes(parts, begin, end);
            begin = end;
        }
        return parts;
    }

private:
    int endOfGroup(int begin) const
    {
        int end = begin + 1;
        while (end < m_curve.range.end && std::abs(m_columns.edge(end) - m_columns.edge(begin)) < m_finest)
            ++end;
        return end;
    }
    void append(QList<QPolygonF>& parts, int i) const
    {
        const double row = m_rows.at(m_curve.samples[i]);
        if (std::isnan(row)) {
            if (!parts.constLast().isEmpty())
                parts.append(QPolygonF());
            return;
        }
        if (m_curve.shape == CurveShape::Lines || m_curve.shape == CurveShape::Points) {
            parts.last().append(QPointF(m_columns.edge(i + 0.5), row));
            return;
        }
        parts.last().append(QPointF(m_columns.edge(i), row));
        parts.last().append(QPointF(m_columns.edge(i + 1.0), row));
    }
    void appendExtremes(QList<QPolygonF>& parts, int begin, int end) const
    {
        int least = begin;
        int largest = begin;
        for (int i = begin + 1; i < end; ++i) {
            least = m_curve.samples[i] < m_curve.samples[least] ? i : least;
            largest = m_curve.samples[i] > m_curve.samples[largest] ? i : largest;
        }
        int drawn[] { begin, least, largest, end - 1 };
        std::sort(std::begin(drawn), std::end(drawn));
        std::for_each(
            std::begin(drawn), std::unique(std::begin(drawn), std::end(drawn)), [&](int i) { append(parts, i); });
    }

    const SmoothCurve& m_curve;
    const SmoothColumns& m_columns;
    const SmoothRows& m_rows;
    double m_finest;
};

/// The area between the steps of a curve and its base.
QPainterPath areaUnder(const QList<QPolygonF>& steps, double base)
{
    QPainterPath path;
    for (const QPolygonF& part : steps) {
        if (part.isEmpty())
            continue;
        path.moveTo(part.constFirst().x(), base);
        for (const QPointF& vertex : part)
            path.lineTo(vertex);
        path.lineTo(part.constLast().x(), base);
        path.closeSubpath();
    }
    return path;
}

SmoothColumns scaled(const SmoothColumns& columns, double scale)
{
    constexpr double middleOfPixel = 0.5;
    if (!columns.function)
        return { (columns.origin + middleOfPixel) * scale, columns.pixelsPerBin * scale, {} };
    return { 0.0, 1.0, [=, inner = columns.function](double bin) { return (inner(bin) + middleOfPixel) * scale; } };
}

SmoothRows rowsOf(AxisRange y, bool isLog, int height, double scale)
{
    const double low = isLog ? floorLog10(y.min) : y.min;
    const double high = isLog ? floorLog10(y.max) : y.max;
    SmoothRows rows { isLog, low, high != low ? height / (high - low) * scale : 0.0, (height - 0.5) * scale, farAway };
    return rows;
}

} // namespace

double StylePainter::curveWidth() const
{
    return (options.lineWidth > 0.0 ? options.lineWidth : theme().lineWidth) * m_growth;
}

CurveShape StylePainter::shape() const
{
    switch (options.form) {
    case PlotStyle::CurveForm::Lines:
        return CurveShape::Lines;
    case PlotStyle::CurveForm::Steps:
        return CurveShape::Steps;
    case PlotStyle::CurveForm::Columns:
        return CurveShape::Columns;
    case PlotStyle::CurveForm::Points:
        return CurveShape::Points;
    case PlotStyle::CurveForm::AsPlot:
        break;
    }
    const auto* const many = qobject_cast<const MultiVectorGraphWidget*>(&m_plot);
    if (many != nullptr && PlotAccess::drawsColumns(*many))
        return CurveShape::Columns;
    return many != nullptr && !PlotAccess::joinsPoints(*many) ? CurveShape::Points : CurveShape::Lines;
}

void StylePainter::paintCurves(QPainter& painter, const QRect& graph)
{
    const QList<StyledCurve> shown = styledCurves(m_plot);
    if (shown.isEmpty() || graph.width() <= 0 || graph.height() <= 0)
        return;
    const double onDevice = deviceScale(painter);
    const double scale = onDevice > 0.0 ? onDevice : 1.0;
    const bool isLog = PlotAccess::isLogY(m_plot);
    const SmoothColumns columns = scaled(curvePlaces(m_plot, graph.width()).columns, scale);
    const SmoothRows rows = rowsOf(PlotAccess::y(m_plot), isLog, graph.height(), scale);
    const double width = curveWidth() * scale * (shape() == CurveShape::Points ? pointScale : 1.0);
    const double lowEnd = rows.pixelsPerUnit < 0.0 ? 0.0 : graph.height() * scale; // of a logarithmic axis
    const double base = isLog ? lowEnd : rows.at(0.0);
    QList<SmoothCurve> curves;
    for (const StyledCurve& curve : shown)
        curves.append(
            { curve.run(), curve.range, shape(), width, base, curveColour(curve.number, curve.colour).rgba() });
    painter.save();
    if (onDevice > 0.0) {
        m_coverage.begin(QSize(int(std::ceil(graph.width() * scale)), int(std::ceil(graph.height() * scale))));
        for (const SmoothCurve& curve : std::as_const(curves))
            m_coverage.add(curve, columns, rows);
        layOver(painter, graph.topLeft(), m_coverage.image(), scale);
    } else {
        strokeCurves(painter, graph, curves, columns, rows);
    }
    painter.restore();
}

void StylePainter::strokeCurves(QPainter& painter, const QRect& graph, const QList<SmoothCurve>& curves,
    const SmoothColumns& columns, const SmoothRows& rows) const
{
    const ExactDevice* const device = exactDeviceBehind(painter);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(graph.topLeft());
    for (const SmoothCurve& curve : curves) {
        const QList<QPolygonF> parts =
            Outline(curve, columns, rows, device != nullptr ? device->finest() : screenFinest).lines();
        QColor colour = QColor::fromRgba(curve.colour);
        if (curve.shape == CurveShape::Columns) {
            colour.setAlphaF(float(fillAlpha));
            painter.fillPath(areaUnder(parts, curve.base), colour);
            colour.setAlpha(255);
        }
        const bool isPoints = curve.shape == CurveShape::Points;
        painter.setBrush(isPoints ? QBrush(colour) : QBrush(Qt::NoBrush));
        painter.setPen(
            isPoints ? QPen(Qt::NoPen) : QPen(colour, curve.width, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
        for (const QPolygonF& part : parts) {
            if (!isPoints)
                painter.drawPolyline(part);
            for (qsizetype i = 0; isPoints && i < part.size(); ++i)
                painter.drawEllipse(part.at(i), curve.width / 2.0, curve.width / 2.0);
        }
    }
}

} // namespace tarnis
