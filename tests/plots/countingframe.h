// A plot frame that counts the calls of a subclass.
#pragma once

#include "support/frameprobe.h"

#include <tarnis/plots/xygraphwidget.h>

#include <QTest>

namespace tarnis::testing {

/// Counts the calls that a host's subclass receives.
class Plot : public tarnis::testing::FrameProbe<XYGraphWidget> {
public:
    void onAutoScaleX(bool checked) override
    {
        calls << QStringLiteral("autoX %1").arg(checked);
        XYGraphWidget::onAutoScaleX(checked);
    }
    void onAutoScaleY(bool checked) override
    {
        calls << QStringLiteral("autoY %1").arg(checked);
        XYGraphWidget::onAutoScaleY(checked);
    }
    void updateModeAndCursor() override
    {
        calls << QStringLiteral("mode");
        XYGraphWidget::updateModeAndCursor();
    }
    void onPaint(QPainter& painter, QRect const& graph) override
    {
        ++paints;
        clip = painter.clipBoundingRect();
        pen = painter.pen();
        painted = graph;
    }

    QStringList calls;
    int paints = 0;
    QRectF clip;
    QPen pen;
    QRect painted;
};

} // namespace tarnis::testing
