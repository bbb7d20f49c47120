#include "tarnis/plots/doublebufferedwidget.h"

#include "tarnis/plots/plotpixmap_p.h"

#include <QMetaMethod>
#include <QPainter>

#include <optional>
#include <utility>

namespace {

/// Rotates the painter of a picture of `size`. Returns the rectangle of the picture in the rotated coordinates; empty
/// without a rotation.
std::optional<QRect> turn(QPainter& painter, double rotation, const QSize& size)
{
    if (!tarnis::isTurned(rotation))
        return std::nullopt;
    if (tarnis::isQuarterTurn(rotation))
        painter.translate(size.width(), 0);
    else
        painter.translate(0, size.height());
    painter.rotate(rotation);
    return QRect(QPoint(0, 0), size.transposed());
}

} // namespace

DoubleBufferedWidget::DoubleBufferedWidget(QWidget* parent)
    : QWidget(parent)
{
}

DoubleBufferedWidget::~DoubleBufferedWidget() = default;

void DoubleBufferedWidget::refreshPixmap()
{
    m_refreshRequired = true;
    update();
}

void DoubleBufferedWidget::refreshPixmapIfRequired()
{
    // A window that has moved to a screen with another pixel ratio needs a picture of that resolution.
    const bool otherScreen = !m_pixmap.isNull() && m_pixmap.devicePixelRatio() != devicePixelRatio();
    if (!m_doubleBuffered || (!m_refreshRequired && !otherScreen))
        return;
    m_refreshRequired = false;
    const bool isFillSeen = isSignalConnected(QMetaMethod::fromSignal(&DoubleBufferedWidget::painting))
        || tarnis::isTurned(m_rotation) || devicePixelRatio() != 1.0 || tarnis::fillOf(*this).alpha() != 255;
    bool filled = false;
    do {
        filled = !std::exchange(m_coversPicture, false) || isFillSeen;
        m_pixmap = QPixmap(); // freed first, so that the new one can reuse its memory
        m_pixmap = filled ? tarnis::windowPixmap(*this, size()) : QPixmap(size());
        QPainter painter;
        if (m_pixmap.isNull() || !painter.begin(&m_pixmap))
            return; // an empty widget, or one too large for the memory
        initPainter(&painter);
        tarnis::useWidgetCoordinates(painter, m_pixmap, size());
        std::optional<QRect> turned = turn(painter, m_rotation, size());
        Q_EMIT painting();
        paint(painter, turned ? &*turned : nullptr);
        Q_EMIT painted();
    } while (!filled && !m_coversPicture);
}

void DoubleBufferedWidget::paintEvent(QPaintEvent* /*event*/)
{
    refreshPixmapIfRequired();
    QPainter painter(this);
    if (m_doubleBuffered)
        painter.drawPixmap(0, 0, m_pixmap);
    else
        paint(painter, nullptr);
}

void DoubleBufferedWidget::resizeEvent(QResizeEvent* /*event*/)
{
    refreshPixmap();
}
