// The keys, the actions and the stored state of the ruler.
#include "tarnis/tools/plotruler.h"

#include "tarnis/plots/plotmapping.h"
#include "tarnis/plots/xy2dgraphwidget.h"
#include "tarnis/tools/base/plotpositions_p.h"
#include "tarnis/tools/base/toolaction_p.h"

#include <QKeyEvent>
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

bool PlotRuler::claimsKey(const QKeyEvent& event) const
{
    return m_isOn && (event.key() == Qt::Key_Escape || (m_isSet && event.matches(QKeySequence::Copy)));
}

bool PlotRuler::handleKey(const QKeyEvent& event)
{
    const bool isPlain = event.modifiers() == Qt::NoModifier;
    if (event.key() == Qt::Key_R && isPlain) {
        setOn(!m_isOn);
        return true;
    }
    if (!m_isOn)
        return false;
    if (event.matches(QKeySequence::Copy) && m_isSet) {
        copy();
        return true;
    }
    if (moveEndBy(binsOfKey(event)))
        return true;
    if (event.key() == Qt::Key_Space && isPlain && m_isSet && m_grip == Grip::None) {
        setEnds(QPointF(m_to), QPointF(m_from)); // copies, as both ends change
        return true;
    }
    if (event.key() != Qt::Key_Escape || !isPlain)
        return false;
    if (m_grip != Grip::None)
        endDrag(true);
    else if (m_isSet)
        clear();
    else
        setOn(false);
    return true;
}

/// Moves x₂, by keyboard. Without a ruler one begins in the middle of the view. Returns false if there is nothing to
/// move: the ends follow curves along Y.
bool PlotRuler::moveEndBy(const QPoint& bins)
{
    const bool isMap = qobject_cast<const XY2DGraphWidget*>(plot()) != nullptr;
    const PlotMapping mapping = PlotMapping::of(*plot());
    if (bins.isNull() || (bins.x() == 0 && !isMap) || m_grip != Grip::None || !mapping.isValid())
        return false;
    const QPointF from = m_isSet ? m_from : mapping.valueAt(QRectF(mapping.plotRect()).center());
    setEnds(from, movedByBins(mapping, m_isSet ? m_to : from, bins.x(), bins.y()));
    return true;
}

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
