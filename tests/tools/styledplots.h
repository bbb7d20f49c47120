// Plots with data to style, and what is found in their pictures.
#pragma once

#include "support/colourvision.h"
#include "support/pictures.h"

#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>

#include <QTest>

#include <cmath>

namespace tarnis::testing {

inline void fill(VectorGraphWidget& plot)
{
    plot.init("Energy [keV]", "Counts", 100, 10, true, true);
    plot.initManualX(0, 100);
    plot.setData({ 4, 1, 0, std::nan(""), 2.5, 50, 6, 7, 834, 9 });
    plot.setMaxValue(834);
}

inline void fill(MultiVectorGraphWidget& plot, int count = 3)
{
    plot.m_groupSize = 1;
    plot.init("Channel", "Counts", 0, 0, true, true);
    for (int i = 0; i < count; ++i) {
        QList<double> values;
        for (int k = 0; k < 50; ++k)
            values.append(100.0 * (i + 1) + (k % 2));
        plot.setData(i, values, 100.0 * (i + 1) + 1);
    }
    plot.resizeData(count);
}

inline void fill(XY2DGraphWidget& map, const char* nameX = "X [mm]", const char* nameY = "Y [mm]")
{
    map.init(nameX, nameY, 0, 0, true, true);
    map.initManualX(0, 20);
    map.initManualY(0, 10);
    for (int row = 0; row < 10; ++row) {
        QList<double> bins(20, 0.0);
        bins[row] = 1000.0;
        map.setData(row, bins, 1000.0, false);
    }
}

inline QImage grabbed(XYGraphWidget& plot, QSize size = QSize(640, 420))
{
    plot.m_doubleBuffered = true;
    if (plot.size() != size)
        plot.resize(size);
    plot.grab();
    return plot.grab().toImage();
}

inline bool isAbout(const QColor& a, const QColor& b)
{
    return std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) + std::abs(a.blue() - b.blue()) < 100;
}

/// Whether a pixel near the value has about that colour.
inline bool hasColour(const QImage& image, const XYGraphWidget& plot, double x, double y, const QColor& colour)
{
    const QPoint at = PlotMapping::of(plot).pixelOf({ x, y }).toPoint();
    return hasPixel(image, at, QSize(2, 2), [&](const QColor& found) { return isAbout(found, colour); });
}

} // namespace tarnis::testing
