#include "tarnis/tools/base/overlaycache_p.h"

#include "tarnis/plots/plothooks_p.h"
#include "tarnis/plots/plotmapping.h"
#include "tarnis/plots/plotpixmap_p.h"
#include "tarnis/plots/xygraphwidget.h"

#include <QPainter>

namespace tarnis {

void OverlayCache::paint(QPainter& painter, const XYGraphWidget* plot, const PlotMapping& mapping, const QRect& area,
    bool isStale, const Drawing& drawing)
{
    if (area.isEmpty())
        return;
    if (painter.device() != static_cast<const QPaintDevice*>(plot)) {
        painter.save();
        painter.setClipRect(area, Qt::IntersectClip);
        drawing(painter);
        painter.restore();
        return;
    }
    const double ratio = plot->devicePixelRatioF();
    const bool isSame = !isStale && !m_picture.isNull() && m_area == area && m_rect == mapping.frameRect()
        && m_x == mapping.x() && m_y == mapping.y() && m_isLog == mapping.isLogY()
        && m_picture.devicePixelRatio() == ratio;
    if (!isSame) {
        m_area = area;
        m_rect = mapping.frameRect();
        m_x = mapping.x();
        m_y = mapping.y();
        m_isLog = mapping.isLogY();
        const QSize pixels = (QSizeF(area.size()) * ratio).toSize();
        if (m_picture.size() != pixels) // new memory takes as long as a fill
            m_picture = QPixmap(pixels);
        m_picture.setDevicePixelRatio(ratio);
        m_picture.fill(Qt::transparent);
        QPainter inside(&m_picture);
        inside.setFont(painter.font());
        inside.translate(-area.topLeft());
        drawing(inside);
    }
    const PlotHooks* const hooks = PlotHooks::existing(*plot);
    if (hooks != nullptr && hooks->isPartial())
        copyParts(painter, m_picture, hooks->parts() & area, area.topLeft());
    else
        painter.drawPixmap(area.topLeft(), m_picture);
}

} // namespace tarnis
