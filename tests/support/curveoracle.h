// The data of the 1D plots drawn sample by sample and call by call from its written rules, without any code of the
// plots: the reference for the product's pictures, read-outs and speed.
#pragma once

#include <tarnis/plots/multivectorgraphwidget.h>

#include <QList>
#include <QRect>

class QPainter;

namespace tarnis::testing {

/// The inputs of the curves of any 1D plot.
struct CurveAxes {
    double minX = 0.0, maxX = 0.0, minY = 0.0, maxY = 0.0;
    double initMinX = 0.0, initMaxX = 0.0;
    bool manualX = false;
    bool logScaleY = false;
    bool autoScaleY = false;
    QRect graphRect; ///< of the latest paint
};

/// A plot of one series.
struct VectorState : CurveAxes {
    QList<double> data;
    QList<PeakSearch::Gaussian> peaks;
};

/// Draws samples and peak into the plot rectangle.
void paintVector(const VectorState& state, QPainter& painter, const QRect& rect);

/// A plot of many series.
struct MultiState : CurveAxes {
    QList<MultiVectorGraphWidget::Data> data;
    QList<double> maxValues;
    int groupSize = 8;
    int addType = 0;
    unsigned int resolution = 1;
    bool columnChart = false;
    bool connectPoints = true;
    double (*x2plot)(double, void*) = nullptr;
    double (*plot2x)(double, void*) = nullptr;
    QList<PeakSearch::Gaussian> peaks;
    bool peakDialogOpen = false;
    int peakSelected = -1;
    double peakThreshold = 0.0;
    bool peakDisplayPoints = false;
};

/// Preparation of a cached paint: an automatic Y range ends at the largest value.
void fitBeforePaint(MultiState& state);

/// Draws curves and peaks into the plot rectangle; moves the lower end of an automatic Y range.
void paintMulti(MultiState& state, QPainter& painter, const QRect& rect);

/// Draws one curve; returns the sum of the samples that it joined.
double paintMultiData(const MultiState& state, QPainter& painter, const QList<double>& values, double sx, double first,
    double last, double sy, int x0, int y0);

} // namespace tarnis::testing
