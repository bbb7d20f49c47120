// The actions and the stored state of the ruler.
#include "tarnis/tools/plotruler.h"

#include "tarnis/tools/base/plotpositions_p.h"
#include "tarnis/tools/base/toolaction_p.h"

#include <QPainter>
#include <QPointer>

#include <optional>

namespace tarnis {

namespace {

const QLatin1String onKey("on");
const QLatin1String endsKey("ends"); // [x, y, x, y]

void drawRuler(QPainter& painter, const IconInk& ink)
{
    painter.drawRect(QRectF(1.5, 5.0, 13.0, 6.0));
    painter.setPen(QPen(ink.accent, 1.2));
    for (const double column : { 4.0, 6.7, 9.3, 12.0 })
        painter.drawLine(QPointF(column, 5.0), QPointF(column, 8.0));
}

void drawSum(QPainter& painter, const IconInk& ink)
{
    painter.drawPolyline(
        QPolygonF { { 12.0, 3.5 }, { 12.0, 2.0 }, { 4.0, 2.0 }, { 8.5, 8.0 }, { 4.0, 14.0 }, { 12.0, 14.0 } });
    painter.setPen(QPen(ink.accent, 1.2));
    painter.drawLine(QPointF(12.0, 14.0), QPointF(12.0, 12.5));
}

} // namespace

void PlotRuler::makeActions()
{
    auto* const onAction = new ToolAction(
        this, "ruler", [] { return PlotRuler::tr("Ruler"); }, drawRuler);
    onAction->setCheckable(true);
    onAction->showKeys({ Qt::Key_R });
    connect(onAction, &QAction::triggered, this, &PlotRuler::setOn);
    auto* const copyAction = new ToolAction(
        this, "copyRuler", [] { return PlotRuler::tr("Copy the Reading of the Ruler"); }, drawSum);
    connect(copyAction, &QAction::triggered, this, &PlotRuler::copy);
    m_switch = onAction;
    m_copy = copyAction;
    updateActions();
}

void PlotRuler::updateActions()
{
    m_switch->setChecked(m_isOn);
    setUsable(m_copy, m_isSet, [] { return PlotRuler::tr("There is no ruler. Switch it on and drag over the plot."); });
}

QList<QAction*> PlotRuler::actions() const
{
    return { m_switch, m_copy };
}

QString PlotRuler::stateName() const
{
    return QStringLiteral("ruler");
}

QJsonObject PlotRuler::saveState() const
{
    QJsonObject state { { onKey, m_isOn } };
    if (m_isSet)
        state.insert(endsKey, placesToJson({ m_from, m_to }));
    return state;
}

void PlotRuler::restoreState(const QJsonObject& state)
{
    const QPointer<PlotRuler> self(this);
    setOn(state.value(onKey).toBool(m_isOn));
    if (self.isNull())
        return;
    if (const std::optional<PlacePair> ends = placesFromJson(state.value(endsKey)))
        setEnds(ends->from, ends->to);
    else if (!state.contains(endsKey))
        clear();
}

} // namespace tarnis
