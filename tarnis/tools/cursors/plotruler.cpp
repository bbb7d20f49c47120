#include "tarnis/tools/plotruler.h"

#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/plotmapping.h"
#include "tarnis/tools/base/plotcurves_p.h"
#include "tarnis/tools/base/plotlabel_p.h"
#include "tarnis/tools/base/plotplaces_p.h"
#include "tarnis/tools/base/toolaction_p.h"
#include "tarnis/tools/cursors/rulerreading_p.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QJsonArray>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <cmath>

namespace tarnis {

namespace {

constexpr int rulerZOrder = 45;
constexpr double reach = 8.0;
constexpr double endTick = 5.0;
const QColor rulerColor(120, 230, 255);

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

std::optional<double> cellOf(const QList<QList<double>>& rows, qsizetype column, qsizetype row)
{
    if (row < 0 || row >= rows.size() || column < 0 || column >= rows.at(row).size())
        return std::nullopt;
    return rows.at(row).at(column);
}

/// Sum of the finite values of `count` bins.
template <typename ValueAt> double sumOf(BinsInView bins, const ValueAt& valueAt)
{
    double sum = 0.0;
    for (qsizetype i = bins.first; i <= bins.last; ++i) {
        const double value = valueAt(i);
        sum += std::isfinite(value) ? value : 0.0;
    }
    return sum;
}

} // namespace

PlotRuler::PlotRuler(XYGraphWidget* plot)
    : InteractiveTool(plot, KeyboardFocus)
    , PlotOverlay(plot, rulerZOrder)
{
    makeActions();
}

PlotRuler::~PlotRuler() = default;

bool PlotRuler::isOn() const
{
    return m_isOn;
}

bool PlotRuler::isSet() const
{
    return m_isSet;
}

QPointF PlotRuler::from() const
{
    return m_isSet && plot() != nullptr ? snapped(PlotMapping::of(*plot()), m_from) : QPointF();
}

QPointF PlotRuler::to() const
{
    return m_isSet && plot() != nullptr ? snapped(PlotMapping::of(*plot()), m_to) : QPointF();
}

QString PlotRuler::text() const
{
    return m_isSet && plot() != nullptr ? reading().text() : QString();
}

QString PlotRuler::table() const
{
    return m_isSet && plot() != nullptr ? reading().table() : QString();
}

void PlotRuler::setOn(bool on)
{
    if (on == m_isOn)
        return;
    endDrag(true);
    m_isOn = on;
    setNeeds(on ? MouseMoves | KeyboardFocus : Needs(KeyboardFocus));
    if (on)
        showCursor(Qt::CrossCursor);
    else
        restoreCursor();
    updateActions();
    Q_EMIT onChanged(on);
}

void PlotRuler::setEnds(const QPointF& from, const QPointF& to)
{
    if (plot() == nullptr || !isFinitePlace(from) || !isFinitePlace(to))
        return;
    m_from = from;
    m_to = to;
    m_isSet = true;
    renew();
}

void PlotRuler::clear()
{
    m_grip = Grip::None;
    m_isSet = false;
    renew();
}

void PlotRuler::copy() const
{
    const QString numbers = table();
    if (!numbers.isEmpty())
        QGuiApplication::clipboard()->setText(numbers);
}

void PlotRuler::renew()
{
    updateOverlay();
    updateActions();
    const QString now = text();
    if (now == m_text)
        return;
    m_text = now;
    Q_EMIT textChanged(now);
}

void PlotRuler::plotChanged(Changes /*changes*/)
{
    if (m_isSet)
        renew();
}

QPointF PlotRuler::snapped(const PlotMapping& mapping, const QPointF& position) const
{
    const QPointF inBin = snappedToBins(mapping, position);
    const QList<ShownCurve> curves = shownCurves(*plot());
    const double value = curves.isEmpty() ? std::nan("") : curves.first().valueAt(mapping.columnAt(inBin.x()));
    return { inBin.x(), std::isfinite(value) ? value : inBin.y() };
}

RulerReading PlotRuler::reading() const
{
    const PlotMapping mapping = PlotMapping::of(*plot());
    const QPointF a = snapped(mapping, m_from);
    const QPointF b = snapped(mapping, m_to);
    const BinsInView columns = columnsBetween(mapping, { a.x(), b.x() });
    const qsizetype width = columns.last - columns.first + 1;
    if (const auto* map = qobject_cast<const XY2DGraphWidget*>(plot())) {
        const QList<QList<double>>& cells = PlotAccess::rows(*map);
        const auto cellAt = [&](const QPointF& at) {
            return cellOf(cells, mapping.columnAt(at.x()), mapping.rowAt(at.y()));
        };
        RulerReading reading = readingBetween(a, b, cellAt(a), cellAt(b), false);
        const BinsInView rows = rowsBetween(mapping, { a.y(), b.y() });
        reading.bins = width * (rows.last - rows.first + 1);
        const double sum = sumOf(rows, [&](qsizetype row) {
            return sumOf(columns, [&](qsizetype column) { return cellOf(cells, column, row).value_or(0.0); });
        });
        reading.sums = { { {}, sum } };
        return reading;
    }
    const QList<ShownCurve> curves = shownCurves(*plot());
    const auto firstAt = [&](const QPointF& at) {
        return curves.isEmpty() ? std::nullopt : curves.first().at(mapping.columnAt(at.x()));
    };
    RulerReading reading = readingBetween(a, b, firstAt(a), firstAt(b), mapping.isLogY());
    reading.bins = width;
    for (const ShownCurve& curve : curves)
        reading.sums.append({ curve.name, curve.sumBetween(columns.first, columns.last) });
    return reading;
}

PlotRuler::Grip PlotRuler::gripAt(const PlotMapping& mapping, const QPointF& pixel) const
{
    if (!m_isSet)
        return Grip::None;
    if (isHit(mapping, snapped(mapping, m_to), pixel, false, reach))
        return Grip::To;
    return isHit(mapping, snapped(mapping, m_from), pixel, false, reach) ? Grip::From : Grip::None;
}

bool PlotRuler::handleEvent(QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove:
        return m_isOn && handleMouse(event);
    case QEvent::Hide:
        endDrag(true);
        return false;
    case QEvent::ShortcutOverride: {
        const auto& key = static_cast<const QKeyEvent&>(*event);
        const bool isOurs = key.key() == Qt::Key_Escape || (m_isSet && key.matches(QKeySequence::Copy));
        if (m_isOn && plot()->hasFocus() && isOurs)
            event->accept();
        return false;
    }
    case QEvent::KeyPress: {
        const auto& key = static_cast<const QKeyEvent&>(*event);
        return plot()->hasFocus() && handleKey(key.key(), key.modifiers());
    }
    default:
        return false;
    }
}

bool PlotRuler::handleMouse(QEvent* event)
{
    const auto& mouse = static_cast<const QMouseEvent&>(*event);
    const PlotMapping mapping = PlotMapping::of(*plot());
    const bool isOver = mapping.isValid() && mapping.plotRect().contains(mouse.position().toPoint());
    const QPointF at = isOver ? mapping.valueAt(mouse.position()) : QPointF();
    if (m_grip != Grip::None) {
        if (event->type() == QEvent::MouseButtonRelease && mouse.button() == Qt::LeftButton)
            endDrag(false);
        else if (event->type() == QEvent::MouseMove && isOver)
            setEnds(m_grip == Grip::From ? at : m_from, m_grip == Grip::To ? at : m_to);
        return true;
    }
    if (event->type() != QEvent::MouseButtonPress || mouse.button() != Qt::LeftButton || !isOver)
        return false;
    plot()->setFocus(Qt::MouseFocusReason);
    m_wasSet = m_isSet;
    m_wasFrom = m_from;
    m_wasTo = m_to;
    m_grip = gripAt(mapping, mouse.position());
    if (m_grip == Grip::None) {
        m_grip = Grip::To;
        setEnds(at, at);
    }
    return true;
}

void PlotRuler::endDrag(bool cancel)
{
    if (m_grip == Grip::None)
        return;
    m_grip = Grip::None;
    if (!cancel)
        return;
    m_isSet = m_wasSet;
    m_from = m_wasFrom;
    m_to = m_wasTo;
    renew();
}

bool PlotRuler::handleKey(int key, Qt::KeyboardModifiers modifiers)
{
    if (key == Qt::Key_R && modifiers == Qt::NoModifier) {
        setOn(!m_isOn);
        return true;
    }
    if (!m_isOn)
        return false;
    if (key == Qt::Key_C && modifiers == Qt::ControlModifier && m_isSet) {
        copy();
        return true;
    }
    if (key != Qt::Key_Escape || modifiers != Qt::NoModifier)
        return false;
    if (m_grip != Grip::None)
        endDrag(true);
    else if (m_isSet)
        clear();
    else
        setOn(false);
    return true;
}

void PlotRuler::paintOverlay(QPainter& painter, const PlotMapping& mapping)
{
    if (!m_isSet)
        return;
    const auto pixelOf = [&](const QPointF& place) {
        return QPointF(std::round(limitedCoordinate(mapping.columnOf(place.x()))),
            std::round(limitedCoordinate(mapping.rowOf(place.y()))));
    };
    const QRect rect = mapping.frameRect();
    const QPointF a = pixelOf(snapped(mapping, m_from));
    const QPointF b = pixelOf(snapped(mapping, m_to));
    painter.save();
    painter.setClipRect(rect);
    paintLine(painter, a, { b.x(), a.y() }, rulerColor, true);
    paintLine(painter, { b.x(), a.y() }, b, rulerColor, true);
    paintLine(painter, a, b, rulerColor);
    for (const QPointF& end : { a, b }) {
        paintLine(painter, end - QPointF(endTick, 0.0), end + QPointF(endTick, 0.0), rulerColor);
        paintLine(painter, end - QPointF(0.0, endTick), end + QPointF(0.0, endTick), rulerColor);
    }
    painter.restore();
    const auto paintEnd = [&](const QString& name, const QPointF& end) {
        const int column = static_cast<int>(end.x());
        if (column < rect.left())
            paintLabel(painter, QStringLiteral("◂ ") + name, rect.bottomLeft(), Qt::AlignLeft | Qt::AlignBottom);
        else if (column > rect.right())
            paintLabel(painter, name + QStringLiteral(" ▸"), rect.bottomRight(), Qt::AlignRight | Qt::AlignBottom);
        else
            paintLabel(painter, name,
                QPoint(column, std::clamp(static_cast<int>(end.y()), rect.top() + 24, rect.bottom()) - 8),
                Qt::AlignHCenter | Qt::AlignBottom);
    };
    paintEnd(QStringLiteral("A"), a);
    paintEnd(QStringLiteral("B"), b);
    const QString line = QFontMetrics(painter.font()).elidedText(m_text, Qt::ElideRight, rect.width() - 12);
    paintLabel(painter, line, { rect.right() - 2, rect.top() + 2 }, Qt::AlignRight);
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
    m_copy->setEnabled(m_isSet);
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
        state.insert(endsKey, QJsonArray { m_from.x(), m_from.y(), m_to.x(), m_to.y() });
    return state;
}

void PlotRuler::restoreState(const QJsonObject& state)
{
    setOn(state.value(onKey).toBool(m_isOn));
    const QJsonArray ends = state.value(endsKey).toArray();
    if (ends.size() == 4)
        setEnds({ ends.at(0).toDouble(std::nan("")), ends.at(1).toDouble(std::nan("")) },
            { ends.at(2).toDouble(std::nan("")), ends.at(3).toDouble(std::nan("")) });
    else if (!state.contains(endsKey))
        clear();
}

} // namespace tarnis
