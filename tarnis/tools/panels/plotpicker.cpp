#include "tarnis/tools/panels/plotpicker_p.h"

#include "tarnis/plots/plotmapping.h"
#include "tarnis/plots/xygraphwidget.h"

#include <QCursor>
#include <QKeyEvent>
#include <QMouseEvent>

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

constexpr double clickSlack = 5.0; // in pixels; a shorter drag is a click

} // namespace

PlotPicker::PlotPicker(XYGraphWidget* plot)
    : InteractiveTool(plot, Nothing)
{
}

void PlotPicker::setMode(Mode mode)
{
    if (mode == m_mode)
        return;
    m_mode = mode;
    m_isDragging = false;
    setNeeds(mode == Mode::Off ? Needs(Nothing) : Needs(KeyboardFocus));
    if (mode == Mode::Off)
        restoreCursor();
    else
        showCursor(Qt::CrossCursor);
    Q_EMIT modeChanged();
}

double PlotPicker::xAt(const QPointF& pixel) const
{
    return PlotMapping::of(*plot()).valueAt(pixel).x();
}

bool PlotPicker::press(const QPointF& position)
{
    if (!PlotMapping::of(*plot()).plotRect().contains(position.toPoint()))
        return false;
    m_isDragging = true;
    m_from = position;
    return true;
}

void PlotPicker::release(const QPointF& position)
{
    m_isDragging = false;
    const bool isDrag = (position - m_from).manhattanLength() > clickSlack;
    if (m_mode == Mode::Places) {
        const QPointF beside(m_from.x() + clickSlack, m_from.y() + clickSlack);
        Q_EMIT placePicked(xAt(m_from), std::fabs(xAt(beside) - xAt(m_from)));
    } else if (isDrag) {
        const auto [lower, upper] = std::minmax({ xAt(m_from), xAt(position) });
        Q_EMIT rangePicked(lower, upper);
    }
}

void PlotPicker::plotChanged(Changes changes)
{
    if (changes.testFlag(Data))
        Q_EMIT dataChanged();
    if (changes & Changes(RangeX | RangeY | PlotRect))
        Q_EMIT viewChanged();
}

bool PlotPicker::handleEvent(QEvent* event)
{
    if (m_mode == Mode::Off)
        return false;
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: {
        const auto& mouse = static_cast<const QMouseEvent&>(*event);
        return mouse.button() == Qt::LeftButton && press(mouse.position());
    }
    case QEvent::MouseMove: {
        if (!m_isDragging)
            return false;
        const auto [lower, upper] =
            std::minmax({ xAt(m_from), xAt(static_cast<const QMouseEvent&>(*event).position()) });
        if (m_mode == Mode::Range)
            Q_EMIT rangeChanged(lower, upper);
        return true;
    }
    case QEvent::MouseButtonRelease:
        if (!m_isDragging || static_cast<const QMouseEvent&>(*event).button() != Qt::LeftButton)
            return false;
        release(static_cast<const QMouseEvent&>(*event).position());
        return true;
    case QEvent::ShortcutOverride: // Escape would close a dialog around the plot
        if (static_cast<const QKeyEvent&>(*event).key() == Qt::Key_Escape)
            event->accept();
        return false;
    case QEvent::KeyPress:
        if (static_cast<const QKeyEvent&>(*event).key() != Qt::Key_Escape)
            return false;
        setMode(Mode::Off);
        return true;
    default:
        return false;
    }
}

} // namespace tarnis
