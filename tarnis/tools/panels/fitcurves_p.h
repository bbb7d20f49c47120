// Draws a fit over the data of a plot.
#pragma once

#include "tarnis/analysis/spectrumfit.h"
#include "tarnis/plots/axisrange.h"
#include "tarnis/plots/plotoverlay.h"

#include <QList>
#include <QPointF>
#include <QPolygonF>

namespace tarnis {

/// The drawing of a fit: polylines in values of both axes.
struct FitLines {
    QList<QPointF> total; ///< model contents of a bin
    QList<QPointF> background;
    QList<QList<QPointF>> peaks; ///< each peak on the background; empty for a single peak
    QList<double> centres; ///< maxima of the peaks
};

/// The lines of a result for these data, with up to `maxPoints` points each.
FitLines linesOf(const FitResult& result, const BinnedData& data, int maxPoints = 800);

/// Draws range, total, background and peaks of a fit.
class FitCurves : public PlotOverlay {
public:
    explicit FitCurves(XYGraphWidget* plot);

    void setRange(AxisRange range); ///< equal ends: no range
    /// A guess is drawn dashed, a result that is not acceptable in red.
    void setLines(FitLines lines, bool isGuess, bool isAcceptable);
    void clear();

protected:
    void paintOverlay(QPainter& painter, const PlotMapping& mapping) override;

private:
    AxisRange m_range;
    FitLines m_lines;
    bool m_isGuess = false;
    bool m_isAcceptable = true;
};

/// A line of pixels without the points that are less than a fifth of a pixel from the line through those that are kept.
/// Of hundreds of points of a fit a few dozen are left, and each costs a joint of the wide pen.
QPolygonF simplified(const QPolygonF& line);

/// Draws a polyline of values that is visible on light and on dark pixels.
void paintValues(QPainter& painter, const PlotMapping& mapping, const QList<QPointF>& values, const QColor& colour,
    Qt::PenStyle style);

/// Draws the ends of a range of X, and dims the outside.
void paintRange(QPainter& painter, const PlotMapping& mapping, AxisRange range, const QColor& colour);

} // namespace tarnis
