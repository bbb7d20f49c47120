// A plot frame on the screen that records what the mouse tools do, and the mouse on it.
#pragma once

#include "plots/visibleframe.h"
#include "support/plotmouse.h"

#include <QMouseEvent>
#include <QTest>

#include <memory>

namespace tarnis::testing {

class Plot : public VisibleFrame {
public:
    void onSetRectangle(double x1, double x2, double y1, double y2) override
    {
        rectangles.append({ x1, x2, y1, y2 });
        XYGraphWidget::onSetRectangle(x1, x2, y1, y2);
    }
    void onAutoScaleX(bool checked) override
    {
        ++autoScaleCalls;
        XYGraphWidget::onAutoScaleX(checked);
    }
    void mousePressEvent(QMouseEvent* event) override
    {
        XYGraphWidget::mousePressEvent(event);
        accepted = event->isAccepted();
    }

    QList<double> ranges() const { return { m_minX, m_maxX, m_minY, m_maxY }; }
    QPoint middle() const { return m_graphRect.center(); }

    QList<QList<double>> rectangles;
    int autoScaleCalls = 0;
    bool accepted = true;
};

/// The base of tests with a new plot for each function.
class ToolTest : public QObject {
protected:
    /// False if the plot does not appear.
    bool open()
    {
        plot = std::make_unique<Plot>();
        mouse = std::make_unique<PlotMouse>(*plot);
        const bool isShown = QTest::qWaitForWindowExposed(plot.get());
        plot->wasRefreshed();
        plot->autoScaleCalls = 0;
        return isShown;
    }
    void close()
    {
        mouse.reset();
        plot.reset();
    }

    std::unique_ptr<Plot> plot;
    std::unique_ptr<PlotMouse> mouse;
};

inline const QList<double> untouched { 0.0, 1000.0, 0.0, 100.0 };

} // namespace tarnis::testing
