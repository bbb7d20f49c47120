// Reference implementation of the cut through a 2D plot, its regions and its colour bar, in addition to the bins in
// plot2doracle. Shares no code with the library except for the text of numbers.
#pragma once

#include "support/plot2doracle.h"

#include <QSize>

#include <optional>

class QPainter;
class QWidget;

namespace tarnis::testing {

/// The cut rectangle and its displayed part.
struct CutState {
    double minX = 0.0, maxX = 0.0, minY = 0.0, maxY = 0.0;
    bool active = true;
    bool insideOnly = false;
};

/// One projection for a cut plot.
struct CutResult {
    QList<double> values;
    QList<double> index;
    double peak = 0.0, inside = 0.0, total = 0.0;
    QString label;
    QString notes;
};

CutResult oracleCutX(const MapState& map, const CutState& cut, const QString& nameY);
CutResult oracleCutY(const MapState& map, const CutState& cut, const QString& nameX);

/// Sums of the visible bins, independent of the cut.
void oracleVisibleSums(const MapState& map, QList<double>& horizontal, QList<double>& vertical);

/// Widens a range of the X axis to complete bins.
void oracleSnapX(const MapState& map, double& min, double& max);

/// Draws the four lines of the cut and returns its rectangle in pixels. The painter is clipped to `graph`.
QRect oraclePaintCut(QPainter& painter, const QRect& graph, const MapState& map, const CutState& cut);

/// Draws the regions; `selected` is dashed, -1 for none.
void oraclePaintRegions(
    QPainter& painter, const QRect& graph, const MapState& map, const QList<QRect>& regions, int selected);

/// Inputs and results of painting a colour bar.
struct BarState {
    QList<double> positions;
    QList<QColor> colors;
    int ticks = 10;
    bool logScale = false;
    double min = 0.0, max = 100.0;

    QRect minRect, maxRect;
    std::optional<int> wantedWidth; ///< requested width, if its labels are too wide
};

/// Paints the bar into `rect`, or into the painter's viewport if that is null, with the metrics of `widget`.
void oraclePaintBar(BarState& bar, QPainter& painter, const QRect* rect, const QWidget& widget);

/// Values of the marks from top to bottom.
double oracleBarValue(const BarState& bar, int i, int t);

/// The text for a pixel of the plot; empty for none.
QString oracleReadOut(const MapState& map, QPoint pixel, const QRect& graph, const QString& nameX, const QString& nameY,
    int decimalX, int decimalY);

} // namespace tarnis::testing
