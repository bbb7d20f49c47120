// Plots on the screen, as tools meet them.
#pragma once

#include "support/wait.h"

#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/xygraphwidget.h>

#include <QSize>
#include <QTest>

namespace tarnis::testing {

/// Shows the plot in a window of its own, which has the keyboard, and draws it once.
inline void showActive(XYGraphWidget& plot, QSize size = { 500, 400 })
{
    plot.m_doubleBuffered = true;
    plot.resize(size);
    plot.show();
    plot.activateWindow();
    if (!QTest::qWaitForWindowActive(&plot, timeoutMs))
        qFatal("no window");
    plot.setFocus();
    plot.grab();
}

/// The pixel at this place, in the units of the axes.
inline QPoint pixelOf(const XYGraphWidget& plot, double x, double y)
{
    return PlotMapping::of(plot).pixelOf({ x, y }).toPoint();
}

/// The visible range of an axis.
inline AxisRange rangeX(XYGraphWidget& plot)
{
    AxisRange range;
    plot.getMinMaxX(range.min, range.max);
    return range;
}
inline AxisRange rangeY(XYGraphWidget& plot)
{
    AxisRange range;
    plot.getMinMaxY(range.min, range.max);
    return range;
}

/// Shows a range of an axis and ends its automatic scaling, as a zoom by the user does.
inline void showX(XYGraphWidget& plot, AxisRange range)
{
    plot.onAutoScaleX(false);
    plot.setMinMaxX(range.min, range.max);
    plot.refreshPixmap();
}
inline void showY(XYGraphWidget& plot, AxisRange range)
{
    plot.onAutoScaleY(false);
    plot.setMinMaxY(range.min, range.max);
    plot.refreshPixmap();
}

} // namespace tarnis::testing
