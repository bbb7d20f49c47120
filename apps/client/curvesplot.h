// A plot of several curves, each with its own x axis, and a legend.
#pragma once

#include "curvelegend.h"

#include <tarnis/formats/dataset.h>
#include <tarnis/plots/xygraphwidget.h>

#include <QPolygonF>

#include <vector>

namespace cli {

/// How curves are drawn.
struct CurvesStyle {
    std::vector<QColor> colours; ///< repeat after the last one, with another dash pattern
    QColor surround; ///< background of the legend
    QColor text;
    double lineWidth = 1.0;
    double growth = 1.0; ///< of texts
    bool residuals = false; ///< the first curve contains counts, the second one a model of them
};

/// Draws the rows of all datasets over one x axis that covers them all, with a legend below.
class CurvesPlot : public XYGraphWidget {
public:
    /// Each spectrum has rows and columns.
    CurvesPlot(const std::vector<tarnis::Dataset>& spectra, CurvesStyle style);

    double lowest() const { return m_lowest; } ///< lower end of all x axes
    double highest() const { return m_highest; } ///< upper end of all x axes
    double smallest() const { return m_smallest; } ///< the smallest finite value, at most 0
    double largest() const { return m_largest; } ///< the largest finite value, at least 0
    double smallestAboveZero() const { return m_smallestAboveZero; } ///< 0 without such a value

    void paint(QPainter& painter, QRect* rect) override;
    void onPaint(QPainter& painter, QRect const& graph) override;

protected:
    /// The curve is interrupted at missing values.
    struct Curve {
        QString name;
        std::vector<QPolygonF> parts;
        std::vector<QPointF> points() const;
    };
    void addRow(const tarnis::Dataset& spectrum, qsizetype row, bool isAlone, const std::vector<double>& centres);
    void noteValue(double value);
    void paintCounts(QPainter& painter, const Curve& curve) const;
    void paintStrip(QPainter& painter, const QRect& room) const;
    QPen penOf(std::size_t curve) const;
    QFont textFont(const QPainter& painter) const;

    CurvesStyle m_style;
    std::vector<Curve> m_curves;
    std::vector<QPointF> m_residuals;
    double m_lowest = 0.0;
    double m_highest = 0.0;
    double m_smallest = 0.0;
    double m_largest = 0.0;
    double m_smallestAboveZero = 0.0;
};

} // namespace cli
