// The actions and the stored state of the crosshair.
#include "tarnis/tools/plotcrosshair.h"

#include "tarnis/plots/plotmapping.h"
#include "tarnis/tools/base/toolaction_p.h"

#include <QJsonArray>
#include <QPainter>
#include <QPointer>

namespace tarnis {

namespace {

const QLatin1String onKey("on");
const QLatin1String pinKey("pin"); // [x, y]

void drawCross(QPainter& painter, const IconInk& ink)
{
    painter.drawLine(QPointF(8.0, 1.5), QPointF(8.0, 14.5));
    painter.drawLine(QPointF(1.5, 8.0), QPointF(14.5, 8.0));
    painter.setPen(QPen(ink.accent, 1.4));
    painter.drawEllipse(QPointF(8.0, 8.0), 3.2, 3.2);
}

void drawPin(QPainter& painter, const IconInk& ink)
{
    painter.drawLine(QPointF(8.0, 9.5), QPointF(8.0, 14.5));
    painter.drawLine(QPointF(3.5, 9.5), QPointF(12.5, 9.5));
    painter.setBrush(ink.accent);
    painter.drawPolygon(
        QPolygonF { { 5.5, 1.8 }, { 10.5, 1.8 }, { 9.8, 6.0 }, { 11.5, 9.5 }, { 4.5, 9.5 }, { 6.2, 6.0 } });
}

void drawCopy(QPainter& painter, const IconInk& ink)
{
    painter.drawPolyline(QPolygonF { { 4.5, 11.5 }, { 2.0, 11.5 }, { 2.0, 1.8 }, { 10.0, 1.8 }, { 10.0, 4.0 } });
    painter.drawRect(QRectF(5.5, 4.8, 8.5, 9.7));
    painter.setPen(QPen(ink.accent, 1.2));
    for (const double row : { 8.0, 10.0, 12.0 })
        painter.drawLine(QPointF(7.5, row), QPointF(12.0, row));
}

} // namespace

void PlotCrosshair::makeActions()
{
    auto* const onAction = new ToolAction(
        this, "crosshair", [] { return PlotCrosshair::tr("Values Under the Pointer"); }, drawCross);
    onAction->setCheckable(true);
    onAction->showKeys({ Qt::Key_C });
    connect(onAction, &QAction::triggered, this, &PlotCrosshair::setOn);
    auto* const pinAction = new ToolAction(
        this, "pinCrosshair", [] { return PlotCrosshair::tr("Pin the Cross"); }, drawPin);
    pinAction->setCheckable(true);
    pinAction->showKeys({ Qt::Key_P });
    connect(pinAction, &QAction::triggered, this, &PlotCrosshair::togglePin);
    auto* const copyAction = new ToolAction(
        this, "copyValues", [] { return PlotCrosshair::tr("Copy the Values"); }, drawCopy);
    copyAction->showKeys({ QKeySequence::Copy });
    connect(copyAction, &QAction::triggered, this, &PlotCrosshair::copy);
    m_switch = onAction;
    m_pinSwitch = pinAction;
    m_copy = copyAction;
    updateActions();
}

void PlotCrosshair::togglePin()
{
    if (m_isPinned) {
        release();
        return;
    }
    const PlotMapping mapping = plot() != nullptr ? PlotMapping::of(*plot()) : PlotMapping();
    if (mapping.isValid()) // the pointer is on a tool bar: move the cross to the middle
        pinAt(isShown() ? value(mapping) : mapping.valueAt(QRectF(mapping.plotRect()).center()));
    else
        updateActions(); // unchecks the action again
}

void PlotCrosshair::updateActions()
{
    m_switch->setChecked(m_isOn);
    m_pinSwitch->setChecked(m_isPinned);
    // The pointer is not over the plot while an action is triggered.
    setUsable(m_copy, m_isPinned, [] { return PlotCrosshair::tr("Pin the cross first."); });
}

QList<QAction*> PlotCrosshair::actions() const
{
    return { m_switch, m_pinSwitch, m_copy };
}

QString PlotCrosshair::stateName() const
{
    return QStringLiteral("crosshair");
}

QJsonObject PlotCrosshair::saveState() const
{
    QJsonObject state { { onKey, m_isOn } };
    if (m_isPinned)
        state.insert(pinKey, QJsonArray { m_pin.x(), m_pin.y() });
    return state;
}

void PlotCrosshair::restoreState(const QJsonObject& state)
{
    const QPointer<PlotCrosshair> self(this);
    const QJsonArray pin = state.value(pinKey).toArray();
    if (pin.size() == 2 && pin.at(0).isDouble() && pin.at(1).isDouble())
        pinAt({ pin.at(0).toDouble(), pin.at(1).toDouble() });
    else
        release();
    if (!self.isNull())
        setOn(state.value(onKey).toBool(m_isOn));
}

} // namespace tarnis
