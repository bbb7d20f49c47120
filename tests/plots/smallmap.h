// A small map with round pixel coordinates.
#pragma once

#include "support/map2dprobe.h"
#include "support/oversizedpictures.h"
#include "support/plotmouse.h"

#include <QToolTip>

namespace tarnis::testing {

/// 3 x 2 bins on a graph of 60 x 40 pixels.
class Plot : public MapProbe {
public:
    explicit Plot(QWidget* parent = nullptr)
        : MapProbe(parent)
    {
        init("x", "y", 3.0, 2.0, false, false);
        initManualX(10.0, 16.0);
        initManualY(-5.0, 5.0);
        resize(400, 300);
        setData(0, { 1.0, 2.0, 3.0 }, 3.0, false);
        setData(1, { 0.0, -4.0, 1234567.0 }, 1234567.0, false);
        // The labels of the bar request their space while it is painted.
        for (int i = 0; i < 2; ++i)
            delete XY2DGraphWidget::toPixmap();
    }
    /// Sets a graph with round pixel coordinates.
    void useRoundPixels()
    {
        show();
        QCoreApplication::processEvents(); // paints
        m_graphRect = QRect(100, 50, 60, 40);
    }
    ~Plot() override { QToolTip::hideText(); }
    /// Opens the menu of the colour bar with a right click on it.
    QMenu* openMenu()
    {
        PlotMouse(*this).press(m_colorBar->geometry().center(), Qt::RightButton);
        return m_colorBarMenu;
    }
    /// The same while a menu is open, which keeps such a click from the plot.
    QMenu* openSecondMenu()
    {
        const QPointF point = m_colorBar->geometry().center();
        QMouseEvent press(QEvent::MouseButtonPress, point, mapToGlobal(point), Qt::RightButton, Qt::RightButton, {});
        mousePressEvent(&press);
        return m_colorBarMenu;
    }
    QWidget* windowX() const { return m_cutXWindows.map.value(nullptr); }
    QWidget* windowY() const { return m_cutYWindows.map.value(nullptr); }
};

/// Resets the colours that all plots share.
inline void resetColours()
{
    Plot().onPatternRainbow1();
    XYGraphWidget::m_backGroundColor = Qt::black;
}

} // namespace tarnis::testing
