// A plot frame on the screen that records what the mouse tools do.
#pragma once

#include "support/frameprobe.h"

#include <tarnis/plots/xygraphwidget.h>

#include <QMouseEvent>

namespace tarnis::testing {

class Plot : public tarnis::testing::FrameProbe<XYGraphWidget> {
public:
    Plot()
    {
        m_doubleBuffered = true;
        init(QStringLiteral("x"), QStringLiteral("y"), 1000.0, 100.0, true, true);
        resize(500, 400);
        show();
        paintNow();
    }

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

inline const QList<double> untouched { 0.0, 1000.0, 0.0, 100.0 };

} // namespace tarnis::testing
