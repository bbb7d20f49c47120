// The lines of a crosshair at the positions of crosses in linked plots.
#pragma once

#include "tarnis/plots/plotoverlay.h"

#include <QLineF>
#include <QList>

namespace tarnis {

/// A line on each axis on which a linked plot has a cross. Not saved, because it belongs to the pointer.
class LinkedCross : public PlotOverlay {
public:
    explicit LinkedCross(XYGraphWidget* plot);

    void setOn(bool on);
    /// Call it when a cross has moved. Repaints only the pixels that change.
    void renew();

protected:
    void paintOverlay(QPainter& painter, const PlotMapping& mapping) override;
    bool isSaved() const override { return false; }

private:
    QList<QLineF> lines(const PlotMapping& mapping) const;

    XYGraphWidget* m_plot;
    bool m_isOn = false;
};

} // namespace tarnis
