// A plot of several curves, each with its own x axis, and a legend.
#pragma once

#include <tarnis/formats/dataset.h>
#include <tarnis/plots/xygraphwidget.h>

#include <QPolygonF>

#include <vector>

namespace cli {

/// Draws the rows of all datasets over one x axis that covers them all.
class CurvesPlot : public XYGraphWidget {
public:
    /// Each spectrum has rows and columns.
    explicit CurvesPlot(const std::vector<tarnis::Dataset>& spectra);

    double lowest() const { return m_lowest; } ///< lower end of all x axes
    double highest() const { return m_highest; } ///< upper end of all x axes
    double largest() const { return m_largest; } ///< the largest finite value, at least 0

    void onPaint(QPainter& painter, QRect const& graph) override;

protected:
    /// The curve is broken where values are missing.
    struct Curve {
        QString name;
        std::vector<QPolygonF> parts;
    };
    void addRow(const tarnis::Dataset& spectrum, qsizetype row, const std::vector<double>& centres);
    void paintLegend(QPainter& painter, const QRect& graph) const;

    std::vector<Curve> m_curves;
    double m_lowest = 0.0;
    double m_highest = 0.0;
    double m_largest = 0.0;
};

} // namespace cli
