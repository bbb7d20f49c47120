// The actions of the navigator.
#include "tarnis/tools/navigation/plotnavigator_p.h"

#include "tarnis/tools/base/toolaction_p.h"

#include <QPainter>
#include <QPainterPath>

namespace tarnis {

namespace {

/// An arrow to the left with a bent tail, as in browsers.
void drawBack(QPainter& painter, const IconInk& ink)
{
    QPainterPath tail(QPointF(3.0, 6.0));
    tail.lineTo(9.5, 6.0);
    tail.arcTo(QRectF(6.0, 6.0, 7.5, 7.5), 90.0, -180.0);
    tail.lineTo(6.5, 13.5);
    painter.drawPath(tail);
    painter.setPen(QPen(ink.accent, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(QPolygonF { { 6.5, 2.5 }, { 3.0, 6.0 }, { 6.5, 9.5 } });
}

void drawForward(QPainter& painter, const IconInk& ink)
{
    painter.translate(16.0, 0.0);
    painter.scale(-1.0, 1.0);
    drawBack(painter, ink);
}

/// A frame with arrows into its corners: shows all data.
void drawHome(QPainter& painter, const IconInk& ink)
{
    for (const double turn : { 0.0, 90.0, 180.0, 270.0 }) {
        painter.save();
        painter.translate(8.0, 8.0);
        painter.rotate(turn);
        painter.drawPolyline(QPolygonF { { -6.0, -2.0 }, { -6.0, -6.0 }, { -2.0, -6.0 } });
        painter.setPen(QPen(ink.accent, 1.4, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(QPointF(-5.2, -5.2), QPointF(-2.0, -2.0));
        painter.restore();
    }
}

void drawLens(QPainter& painter, const IconInk& ink, bool isPlus)
{
    painter.drawEllipse(QPointF(6.8, 6.8), 4.8, 4.8);
    painter.setPen(QPen(ink.line, 1.9, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(10.6, 10.6), QPointF(14.2, 14.2));
    painter.setPen(QPen(ink.accent, 1.4, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(4.6, 6.8), QPointF(9.0, 6.8));
    if (isPlus)
        painter.drawLine(QPointF(6.8, 4.6), QPointF(6.8, 9.0));
}

/// An axis with the ticks of one decade.
void drawLog(QPainter& painter, const IconInk& ink)
{
    painter.drawLine(QPointF(3.0, 1.5), QPointF(3.0, 14.5));
    painter.setPen(QPen(ink.accent, 1.2, Qt::SolidLine, Qt::RoundCap));
    for (const double row : { 14.0, 9.5, 6.8, 4.9, 3.4, 2.0 })
        painter.drawLine(QPointF(3.8, row), QPointF(row > 13.0 || row < 3.0 ? 13.5 : 9.0, row));
}

void drawGrid(QPainter& painter, const IconInk& ink)
{
    painter.setPen(QPen(ink.accent, 1.0));
    for (const double place : { 6.0, 10.0 }) {
        painter.drawLine(QPointF(place, 2.0), QPointF(place, 14.0));
        painter.drawLine(QPointF(2.0, place), QPointF(14.0, place));
    }
    painter.setPen(QPen(ink.line, 1.2));
    painter.drawRect(QRectF(2.0, 2.0, 12.0, 12.0));
}

} // namespace

void PlotNavigator::makeActions()
{
    Internals& data = *m_data;
    const auto add = [this](const char* name, ActionText text, IconDrawing drawing,
                         std::initializer_list<QKeySequence> keys, void (PlotNavigator::*act)()) {
        auto* const action = new ToolAction(this, name, text, drawing);
        action->showKeys(keys);
        connect(action, &QAction::triggered, this, act);
        return action;
    };
    data.back = add(
        "back", [] { return PlotNavigator::tr("Previous View"); }, drawBack,
        { Qt::Key_Backspace, QKeySequence(Qt::ALT | Qt::Key_Left) }, &PlotNavigator::goBack);
    data.forward = add(
        "forward", [] { return PlotNavigator::tr("Next View"); }, drawForward,
        { QKeySequence(Qt::ALT | Qt::Key_Right) }, &PlotNavigator::goForward);
    data.home = add(
        "home", [] { return PlotNavigator::tr("Show All"); }, drawHome, { Qt::Key_Home }, &PlotNavigator::goHome);
    data.zoomIn = add(
        "zoomIn", [] { return PlotNavigator::tr("Zoom In"); },
        [](QPainter& painter, const IconInk& ink) { drawLens(painter, ink, true); }, { Qt::Key_Plus },
        &PlotNavigator::zoomIn);
    data.zoomOut = add(
        "zoomOut", [] { return PlotNavigator::tr("Zoom Out"); },
        [](QPainter& painter, const IconInk& ink) { drawLens(painter, ink, false); }, { Qt::Key_Minus },
        &PlotNavigator::zoomOut);
    data.log = add(
        "logScale", [] { return PlotNavigator::tr("Logarithmic Scale"); }, drawLog, { Qt::Key_L },
        &PlotNavigator::switchLog);
    data.grid = add(
        "grid", [] { return PlotNavigator::tr("Grid"); }, drawGrid, { Qt::Key_G }, &PlotNavigator::switchGrid);
    data.log->setCheckable(true);
    data.grid->setCheckable(true);
    connect(PlotAccess::gridAction(*plot()), &QAction::changed, this, &PlotNavigator::updateActions);
    updateActions();
}

void PlotNavigator::updateActions()
{
    setUsable(m_data->back, canGoBack(), [] { return PlotNavigator::tr("There is no earlier view."); });
    setUsable(m_data->forward, canGoForward(), [] { return PlotNavigator::tr("There is no later view."); });
    if (plot() == nullptr)
        return;
    m_data->log->setChecked(m_data->view.state().logScale);
    m_data->grid->setChecked(PlotAccess::isGridShown(*plot()));
}

void PlotNavigator::switchLog()
{
    if (plot() == nullptr)
        return;
    if (!noteChange())
        return;
    m_data->view.setLogScale(!m_data->view.state().logScale);
    updateActions();
    commit(OnceKind, ++m_data->serial, 0);
}

void PlotNavigator::switchGrid()
{
    if (plot() == nullptr)
        return;
    PlotAccess::gridAction(*plot())->trigger();
    updateActions();
}

QList<QAction*> PlotNavigator::actions() const
{
    if (m_data == nullptr)
        return {};
    return { m_data->back, m_data->forward, m_data->home, m_data->zoomIn, m_data->zoomOut, m_data->log, m_data->grid };
}

QString PlotNavigator::stateName() const
{
    return QStringLiteral("navigator");
}

} // namespace tarnis
