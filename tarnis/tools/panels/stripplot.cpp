#include "tarnis/tools/panels/stripplot_p.h"

#include "tarnis/plots/plotmapping.h"
#include "tarnis/plots/xygraphwidget.h"
#include "tarnis/tools/base/plotlabel_p.h"

#include <QDateTime>
#include <QLineF>
#include <QLocale>
#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

constexpr double room = 0.08; // margin above and below the points, as a fraction of their height
constexpr double minBand = 3.0; // minimum half height of a strip with bands
constexpr double pointRadius = 2.3;

// A dot of a few pixels: looks like a circle, without the curves of one.
QPolygonF octagon(double radius)
{
    QPolygonF corners;
    for (int i = 0; i <= 8; ++i)
        corners.append(QLineF::fromPolar(radius, 45.0 * i + 22.5).p2());
    return corners;
}

double partOf(AxisRange range, double value)
{
    return (value - range.min) / (range.max - range.min);
}

QString numberText(double value)
{
    return QString::number(value, 'g', 5);
}

} // namespace

AxisRange heightOf(const std::vector<StripPoint>& points)
{
    AxisRange range { std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity() };
    for (const StripPoint& point : points) {
        if (!std::isfinite(point.y))
            continue;
        const double error = std::isfinite(point.error) ? point.error : 0.0;
        range.min = std::min(range.min, point.y - error);
        range.max = std::max(range.max, point.y + error);
    }
    if (!(range.min <= range.max))
        return { 0.0, 1.0 };
    // A constant trend still needs a height.
    const double height = range.max > range.min ? range.max - range.min : std::max(1e-12, std::fabs(range.max) * 0.01);
    return { range.min - room * height, range.max + room * height };
}

StripPlot::StripPlot(QWidget* parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void StripPlot::tieTo(XYGraphWidget* plot)
{
    m_tied = plot;
    update();
}

void StripPlot::setPoints(std::vector<StripPoint> points)
{
    m_points = std::move(points);
    update();
}

void StripPlot::setName(const QString& nameY)
{
    m_name = nameY;
    update();
}

void StripPlot::setBands(bool on)
{
    m_hasBands = on;
    update();
}

void StripPlot::setTimeAxis(bool on)
{
    m_isTimeAxis = on;
    update();
}

AxisRange StripPlot::rangeX() const
{
    if (const auto* const plot = qobject_cast<const XYGraphWidget*>(m_tied.data()))
        return PlotMapping::of(*plot).x();
    if (m_points.empty())
        return { 0.0, 1.0 };
    const auto [low, high] = std::minmax_element(
        m_points.begin(), m_points.end(), [](const StripPoint& a, const StripPoint& b) { return a.x < b.x; });
    const double half = high->x > low->x ? room * (high->x - low->x) : 0.5;
    return { low->x - half, high->x + half };
}

AxisRange StripPlot::rangeY() const
{
    AxisRange range = heightOf(m_points);
    if (m_hasBands) {
        const double reach = std::max({ minBand, std::fabs(range.min), std::fabs(range.max) });
        range = { -reach, reach };
    }
    return range;
}

QRect StripPlot::plotRect() const
{
    const QFontMetrics metrics = fontMetrics();
    int left = std::max(metrics.horizontalAdvance(QStringLiteral("-0.00000")), metrics.horizontalAdvance(m_name) + 6);
    int right = metrics.averageCharWidth();
    if (const auto* const plot = qobject_cast<const XYGraphWidget*>(m_tied.data())) {
        const QRect shown = PlotMapping::of(*plot).plotRect();
        const int before = shown.left();
        const int after = plot->width() - 1 - shown.right();
        if (shown.isValid() && before + after < width() / 2) {
            left = std::max(left, before);
            right = after;
        }
    }
    const int text = metrics.height();
    return rect().adjusted(left, 2, -std::max(right, 2), m_tied ? -3 : -text - 3);
}

QSize StripPlot::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    return { metrics.averageCharWidth() * 50, metrics.height() * 6 };
}

QSize StripPlot::minimumSizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    return { metrics.averageCharWidth() * 20, metrics.height() * 6 };
}

void StripPlot::paintBands(QPainter& painter, const QRect& rect, AxisRange y) const
{
    const auto row = [&](double value) { return rect.bottom() - partOf(y, value) * rect.height(); };
    QColor band = palette().color(QPalette::Highlight);
    for (const double reach : { 2.0, 1.0 }) {
        band.setAlpha(40);
        painter.fillRect(QRectF(rect.left(), row(reach), rect.width(), row(-reach) - row(reach)), band);
    }
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawLine(QPointF(rect.left(), row(0.0)), QPointF(rect.right(), row(0.0)));
}

void StripPlot::paintPoints(QPainter& painter, const QRect& rect, AxisRange x, AxisRange y) const
{
    painter.save();
    painter.setClipRect(rect);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath strong; // filling one path takes a fraction of the time of as many circles
    QPainterPath weak;
    for (QPainterPath* const path : { &strong, &weak })
        path->setFillRule(Qt::WindingFill);
    const QPolygonF dot = octagon(pointRadius);
    const QColor strongColour = palette().color(QPalette::Active, QPalette::Text);
    const QColor weakColour = palette().color(QPalette::Disabled, QPalette::Text);
    for (const StripPoint& point : m_points) {
        if (!std::isfinite(point.y))
            continue;
        const auto row = [&](double value) {
            return limitedCoordinate(rect.bottom() - partOf(y, value) * rect.height());
        };
        const double column = limitedCoordinate(rect.left() + partOf(x, point.x) * rect.width());
        if (point.error > 0.0) {
            painter.setPen(point.isWeak ? weakColour : strongColour);
            painter.drawLine(QPointF(column, row(point.y - point.error)), QPointF(column, row(point.y + point.error)));
        }
        (point.isWeak ? weak : strong).addPolygon(dot.translated(column, row(point.y)));
    }
    painter.fillPath(weak, weakColour);
    painter.fillPath(strong, strongColour);
    painter.restore();
}

void StripPlot::paintTexts(QPainter& painter, const QRect& rect, AxisRange x, AxisRange y) const
{
    painter.setPen(palette().color(QPalette::WindowText));
    const int text = fontMetrics().height();
    const QRect margin(0, rect.top(), rect.left() - 4, rect.height());
    painter.drawText(margin, Qt::AlignRight | Qt::AlignTop, numberText(y.max));
    painter.drawText(margin, Qt::AlignRight | Qt::AlignBottom, numberText(y.min));
    painter.drawText(margin, Qt::AlignRight | Qt::AlignVCenter, m_name);
    if (m_tied || m_points.empty())
        return;
    const auto end = [&](double value) {
        return m_isTimeAxis ? QDateTime::fromMSecsSinceEpoch(qRound64(value * 1000.0)).toString("HH:mm:ss")
                            : numberText(value);
    };
    const QRect below(rect.left(), rect.bottom() + 2, rect.width(), text);
    painter.drawText(below, Qt::AlignLeft, end(x.min));
    painter.drawText(below, Qt::AlignRight, end(x.max));
}

void StripPlot::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const QRect rect = plotRect();
    if (rect.width() < 2 || rect.height() < 2)
        return;
    const AxisRange x = rangeX();
    const AxisRange y = rangeY();
    painter.fillRect(rect, palette().color(QPalette::Base));
    if (m_hasBands)
        paintBands(painter, rect, y);
    if (x.min != x.max)
        paintPoints(painter, rect, x, y);
    painter.setPen(palette().color(QPalette::Mid));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(rect);
    paintTexts(painter, rect, x, y);
}

} // namespace tarnis
