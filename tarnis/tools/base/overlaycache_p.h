// A drawing over a plot that costs more than a few lines, kept as a picture until the view or the data change.
#pragma once

#include "tarnis/plots/axisrange.h"

#include <QPixmap>
#include <QRect>

#include <functional>

QT_BEGIN_NAMESPACE
class QPainter;
class QWidget;
QT_END_NAMESPACE

namespace tarnis {

class PlotMapping;

/// Other overlays repaint with each move of the pointer; this one is then copied. On printers and in files it is drawn.
class OverlayCache {
public:
    using Drawing = std::function<void(QPainter&)>;

    /// Draws inside of `area`, in the frame's coordinates. `isStale` demands a new picture.
    void paint(QPainter& painter, const QWidget* plot, const PlotMapping& mapping, const QRect& area, bool isStale,
        const Drawing& drawing);
    void drop() { m_picture = QPixmap(); } ///< the next paint draws

private:
    QPixmap m_picture;
    QRect m_area;
    QRect m_rect; // of the plot
    AxisRange m_x;
    AxisRange m_y;
    bool m_isLog = false;
};

} // namespace tarnis
