// Caches an expensive drawing over a plot as a picture, until the view or the data change.
#pragma once

#include "tarnis/plots/axisrange.h"

#include <QPixmap>
#include <QRect>

#include <functional>

QT_BEGIN_NAMESPACE
class QPainter;
QT_END_NAMESPACE
class XYGraphWidget;

namespace tarnis {

class PlotMapping;

/// When other overlays are repainted with each pointer move, this one is only copied. On printers and in files it is
/// always drawn.
class OverlayCache {
public:
    using Drawing = std::function<void(QPainter&)>;

    /// Draws inside of `area`, in frame coordinates. `isStale` forces a new picture.
    void paint(QPainter& painter, const XYGraphWidget* plot, const PlotMapping& mapping, const QRect& area,
        bool isStale, const Drawing& drawing);
    void drop() { m_picture = QPixmap(); } ///< forces a new picture in the next paint

private:
    QPixmap m_picture;
    QRect m_area;
    QRect m_rect; // plot rectangle of the picture
    AxisRange m_x;
    AxisRange m_y;
    bool m_isLog = false;
};

} // namespace tarnis
