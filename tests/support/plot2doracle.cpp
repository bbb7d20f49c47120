#include "support/plot2doracle.h"

#include "support/devicepixeloracle.h"

#include <QPainter>

#include <algorithm>
#include <cfloat>
#include <cmath>

namespace tarnis::testing {

namespace {

constexpr double farAway = 1 << 24;

/// Truncates the fraction; positions beyond any widget are clamped.
int pixel(double position)
{
    if (!(position >= -farAway))
        return static_cast<int>(-farAway);
    return position > farAway ? static_cast<int>(farAway) : static_cast<int>(position);
}

/// An integer number of bins; invalid values are far outside of the data.
int binIndex(double whole)
{
    if (!(whole >= -2e9))
        return -2000000000;
    return whole > 2e9 ? 2000000000 : static_cast<int>(whole);
}

double logOf(double x)
{
    return x > 0.0 ? std::log10(x) : 0.0;
}

QColor blend(const QColor& a, const QColor& b, double t)
{
    const double red = b.red() * t + a.red() * (1 - t);
    const double green = b.green() * t + a.green() * (1 - t);
    const double blue = b.blue() * t + a.blue() * (1 - t);
    for (const double channel : { red, green, blue }) {
        if (!(std::trunc(channel) >= 0.0 && std::trunc(channel) <= 255.0))
            return QColor();
    }
    return QColor(static_cast<int>(red), static_cast<int>(green), static_cast<int>(blue));
}

} // namespace

bool oracleEqual(double a, double b)
{
    const double larger = std::fabs(a) < std::fabs(b) ? std::fabs(b) : std::fabs(a);
    double t = DBL_EPSILON;
    if (larger > 1.0)
        t = DBL_EPSILON * larger;
    return std::fabs(a - b) <= t;
}

QColor oracleColour(const MapState& map, double value)
{
    double lo = map.minZ;
    double hi = map.maxZ;
    double v = value;
    if (map.logScale) {
        lo = logOf(lo);
        hi = logOf(hi);
        v = logOf(v);
    }
    const double q1 = lo * 0.75 + hi * 0.25;
    const double mid = (lo + hi) * 0.5;
    const double q3 = lo * 0.25 + hi * 0.75;
    if (v < q1) {
        if (v < lo)
            return map.colors[0];
        return blend(map.colors[0], map.colors[1], (v - lo) / (q1 - lo));
    }
    if (v < mid)
        return blend(map.colors[1], map.colors[2], (v - q1) / (mid - q1));
    if (v < q3)
        return blend(map.colors[2], map.colors[3], (v - mid) / (q3 - mid));
    if (v > hi)
        return map.colors[4];
    return blend(map.colors[3], map.colors[4], (v - q3) / (hi - q3));
}

namespace {

double oracleCurved(OracleCurve curve, double value)
{
    switch (curve) {
    case OracleCurve::Log:
        return value > 0.0 ? std::log10(value) : 0.0;
    case OracleCurve::SquareRoot:
        return value < 0.0 ? 0.0 : std::sqrt(value);
    default:
        return value;
    }
}

} // namespace

QColor oracleTableColour(const std::vector<QRgb>& table, double low, double high, OracleCurve curve, double value)
{
    const double from = oracleCurved(curve, low) + 0.0; // no negative zero
    const double to = oracleCurved(curve, high) + 0.0;
    const double t = (oracleCurved(curve, value) - from) / (to - from);
    if (std::isnan(t))
        return {};
    const auto entries = static_cast<double>(table.size());
    for (std::size_t i = 0; i + 1 < table.size(); ++i) {
        if (t * entries < static_cast<double>(i + 1))
            return QColor(table[i]);
    }
    return QColor(table.back());
}

double oracleStepX(const MapState& map)
{
    if (!oracleEqual(map.stepX, 0.0))
        return map.stepX;
    if (map.data.isEmpty())
        return 1e-5;
    return (map.initMaxX - map.initMinX) / static_cast<double>(map.data.at(0).size());
}

double oracleStepY(const MapState& map)
{
    if (!oracleEqual(map.stepY, 0.0))
        return map.stepY;
    if (map.data.isEmpty())
        return 1e-5;
    return (map.initMaxY - map.initMinY) / static_cast<double>(map.data.size());
}

void oracleAutoZ(MapState& map)
{
    if (!map.autoZ)
        return;
    map.minZ = 0.0;
    if (map.logScale) {
        map.minZ = 1.0;
        for (const QList<double>& row : map.data) {
            for (const double value : row) {
                if (value > 0.0 && !oracleEqual(value, 0.0) && value < map.minZ)
                    map.minZ = value;
            }
        }
    }
    map.maxZ = 0.0;
    for (const double rowMax : map.rowMax) {
        if (rowMax > map.maxZ)
            map.maxZ = rowMax;
    }
}

void oraclePaintBins(QPainter& painter, const QRect& rect, const MapState& map)
{
    if (map.data.isEmpty())
        return;
    double pxX = rect.width() / (map.maxX - map.minX);
    double pxY = rect.height() / (map.maxY - map.minY);
    double xLo = map.minX, xHi = map.maxX, yLo = map.minY, yHi = map.maxY;
    if (map.manualX) {
        xLo = (map.minX - map.initMinX) / oracleStepX(map);
        xHi = (map.maxX - map.initMinX) / oracleStepX(map);
        pxX *= oracleStepX(map);
    } else {
        pxX *= map.resolutionX;
    }
    if (map.manualY) {
        yLo = (map.minY - map.initMinY) / oracleStepY(map);
        yHi = (map.maxY - map.initMinY) / oracleStepY(map);
        pxY *= oracleStepY(map);
    } else {
        pxY *= map.resolutionY;
    }
    const int rowEnd = std::min(binIndex(std::ceil(yHi)), static_cast<int>(map.data.size()));
    const int columnEnd = std::min(binIndex(std::ceil(xHi)), static_cast<int>(map.data.at(0).size()));
    for (int row = std::max(0, binIndex(std::floor(yLo))); row < rowEnd; ++row) {
        const double yBottom = rect.bottom() - (row - yLo) * pxY;
        const double yTop = rect.bottom() - (row - yLo + 1) * pxY;
        int last = -1;
        for (int column = std::max(0, binIndex(std::floor(xLo))); column < columnEnd; ++column) {
            if (column >= map.data.at(row).size())
                break;
            const double value = map.data.at(row).at(column);
            if (oracleEqual(value, 0.0))
                continue;
            const double position = (column - xLo) * pxX + rect.left();
            const int px = pixel(position);
            if (px == last)
                continue;
            const QColor colour = oracleColour(map, value);
            last = px;
            if (pxX > 1.0) {
                painter.setPen(colour);
                painter.setBrush(QBrush(colour));
                const double right = std::trunc(position) + std::trunc(pxX) - 1;
                const double bottom = std::trunc(yTop) + std::trunc(yBottom - yTop) - 1;
                QRect bar;
                bar.setCoords(px, pixel(yTop), pixel(right), pixel(bottom));
                painter.drawRects(&bar, 1);
            } else {
                painter.setPen(colour);
                painter.drawLine(px, pixel(yBottom), px, pixel(yTop));
            }
        }
    }
}

void oraclePaintPoints(QPainter& painter, const QRect& rect, const MapState& map)
{
    if (map.points.isEmpty())
        return;
    painter.setPen(QPen(QBrush(Qt::red), 2.0, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
    for (const QPointF& point : map.points) {
        const double cx = rect.left() + rect.width() * (point.x() - map.minX) / (map.maxX - map.minX);
        const double cy = rect.bottom() - rect.height() * (point.y() - map.minY) / (map.maxY - map.minY);
        oracleStroke(painter, QLine(pixel(cx - 2), pixel(cy - 2), pixel(cx + 2), pixel(cy + 2)));
        oracleStroke(painter, QLine(pixel(cx + 2), pixel(cy - 2), pixel(cx - 2), pixel(cy + 2)));
    }
}

} // namespace tarnis::testing
