// Reference implementation of the 2D plot: every value, pixel position and drawing call in the defined order, with
// nothing merged, cached or skipped. Deliberately slow. Shares no code with the library.
#pragma once

#include <QColor>
#include <QFontMetrics>
#include <QList>
#include <QPointF>
#include <QRect>
#include <QString>

#include <array>
#include <vector>

class QPainter;

namespace tarnis::testing {

/// The inputs of painting a map.
struct MapState {
    QList<QList<double>> data; ///< [row][column], row 0 at the bottom
    QList<double> rowMax;
    double minX = 0.0, maxX = 0.0, minY = 0.0, maxY = 0.0; ///< visible
    double initMinX = 0.0, initMaxX = 0.0, initMinY = 0.0, initMaxY = 0.0;
    bool manualX = false, manualY = false;
    double stepX = 0.0, stepY = 0.0;
    unsigned int resolutionX = 1, resolutionY = 1;
    double minZ = 0.0, maxZ = 100.0;
    bool autoZ = true, logScale = false;
    /// From the lower end of the scale to its upper one.
    std::array<QColor, 5> colors = { QColor("#000000"), QColor("#0000ff"), QColor("#00ff00"), QColor("#ffff00"),
        QColor("#ff0000") };
    QList<QPointF> points; ///< axis units
};

/// Equality within DBL_EPSILON of the larger magnitude, or DBL_EPSILON if that is at most 1.
bool oracleEqual(double a, double b);

QColor oracleColour(const MapState& map, double value);

/// How values are transformed before they are compared with the limits.
enum class OracleCurve { Linear, Log, SquareRoot };

/// The entry of a table of colours for a value between two limits. Invalid where it is undefined.
QColor oracleTableColour(const std::vector<QRgb>& table, double low, double high, OracleCurve curve, double value);
double oracleStepX(const MapState& map);
double oracleStepY(const MapState& map);

/// Sets minZ and maxZ from the data, if autoZ is on.
void oracleAutoZ(MapState& map);

void oraclePaintBins(QPainter& painter, const QRect& rect, const MapState& map);
void oraclePaintPoints(QPainter& painter, const QRect& rect, const MapState& map);

} // namespace tarnis::testing
