// Residuals of a fit, below the plot of the counts and the fit.
#pragma once

#include <tarnis/formats/dataset.h>

#include <QColor>
#include <QPointF>
#include <QRect>

#include <vector>

QT_BEGIN_NAMESPACE
class QPainter;
QT_END_NAMESPACE

namespace cli {

/// The first row minus the second one, which is a model of it, in standard deviations, sqrt(model), over the centres of
/// the bins. Skips bins where the model is not above 0, and non-finite values. Requires two rows.
std::vector<QPointF> residualsOf(const tarnis::Dataset& fit);

/// How a strip is drawn.
struct StripStyle {
    QColor text;
    QColor grid;
    QColor mark;
    double thickness = 1.0; ///< of lines
};

/// Draws residuals into a rectangle, on a symmetric scale of at least 3 standard deviations. The x of the points are
/// pixel columns.
void paintResiduals(QPainter& painter, const QRect& rect, const std::vector<QPointF>& points, const StripStyle& style);

} // namespace cli
