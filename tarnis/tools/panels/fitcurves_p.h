// A fit over the data of a plot.
#pragma once

#include "tarnis/analysis/spectrumfit.h"
#include "tarnis/plots/axisrange.h"
#include "tarnis/plots/plotoverlay.h"

#include <QList>
#include <QPointF>

namespace tarnis {

/// What is drawn of a fit: polylines in values of both axes.
struct FitLines {
    QList<QPointF> total; ///< model contents of a bin
    QList<QPointF> background;
    QList<QList<QPointF>> peaks; ///< each on the background; none for a single peak
    QList<double> centres; ///< tops of the peaks
};

/// The lines of a result that was made of these data, up to `maxPoints` on each.
FitLines linesOf(const FitResult& result, const BinnedData& data, int maxPoints = 800);

/// Draws range, total, background and peaks of a fit.
class FitCurves : public PlotOverlay {
public:
    explicit FitCurves(XYGraphWidget* plot);

    void setRange(AxisRange range); ///< equal ends: none
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

/// Draws a polyline of values that shows on light and on dark pixels.
void paintValues(QPainter& painter, const PlotMapping& mapping, const QList<QPointF>& values, const QColor& color,
    Qt::PenStyle style);

/// Draws the ends of a range of X, and dims what is outside of it.
void paintRange(QPainter& painter, const PlotMapping& mapping, AxisRange range, const QColor& color);

} // namespace tarnis
