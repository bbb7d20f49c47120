#include "tarnis/plots/doublebufferedwidget.h"

#include "tarnis/plots/plotpixmap_p.h"

#include <QPainter>

#include <utility>

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
    // A window that has moved to a screen of another pixel ratio wants a picture of that resolution.
    const bool otherScreen = !m_pixmap.isNull() && m_pixmap.devicePixelRatio() != devicePixelRatio();
    if (!m_doubleBuffered || (!m_refreshRequired && !otherScreen))
        return;
    m_refreshRequired = false;
    bool filled = false;
    do {
        filled = !std::exchange(m_coversPicture, false) || tarnis::isTurned(m_rotation) || devicePixelRatio() != 1.0;
        drawPicture(filled);
    } while (!filled && !m_coversPicture);
}

void DoubleBufferedWidget::drawPicture(bool filled)
{
    m_pixmap = QPixmap(); // first, so that the new one can take its place in memory
    m_pixmap = filled ? tarnis::windowPixmap(*this, size()) : QPixmap(size());
    QPainter painter;
    if (m_pixmap.isNull() || !painter.begin(&m_pixmap))
        return; // an empty widget, or one beyond the memory: there is nothing to paint on
    initPainter(&painter);
    tarnis::useWidgetCoordinates(painter, m_pixmap, size());
    QRect turned(0, 0, height(), width());
    QRect* rect = nullptr;
    if (tarnis::isQuarterTurn(m_rotation)) {
        painter.translate(width(), 0);
        rect = &turned;
    } else if (tarnis::isQuarterTurnBack(m_rotation)) {
        painter.translate(0, height());
        rect = &turned;
    }
    if (rect != nullptr)
        painter.rotate(m_rotation);

    Q_EMIT painting();
    paint(painter, rect);
    Q_EMIT painted();
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
