// Mouse, keys, actions and stored views of the line profile.
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/tools/base/menutool_p.h"
#include "tarnis/tools/base/plotlabel_p.h"
#include "tarnis/tools/base/plotpositions_p.h"
#include "tarnis/tools/base/toolaction_p.h"
#include "tarnis/tools/maps/lineprofile_p.h"

#include <QActionGroup>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>

#include <cmath>

namespace tarnis {

namespace {

constexpr double reach = 8.0; // pixels
constexpr double clickSlack = 5.0; // pixels; a shorter line is a click
constexpr double handleDistance = 14.0; // minimum distance from the line

const QLatin1String onKey("on");
const QLatin1String lineKey("line"); // [x, y, x, y]
const QLatin1String widthKey("width");
const QLatin1String joinKey("join");
constexpr const char* joinNames[] = { "sum", "mean", "maximum" }; // in the order of Join

void drawProfile(QPainter& painter, const IconInk& ink)
{
    painter.drawRect(QRectF(2.0, 2.0, 12.0, 12.0));
    painter.setPen(QPen(ink.accent, 1.4));
    painter.drawLine(QPointF(4.0, 11.5), QPointF(12.0, 4.5));
    painter.setBrush(ink.accent);
    painter.drawEllipse(QPointF(4.0, 11.5), 1.0, 1.0);
    painter.drawEllipse(QPointF(12.0, 4.5), 1.0, 1.0);
}

void drawBand(QPainter& painter, const IconInk& ink)
{
    painter.drawLine(QPointF(2.0, 10.0), QPointF(10.0, 2.0));
    painter.drawLine(QPointF(6.0, 14.0), QPointF(14.0, 6.0));
    painter.setPen(QPen(ink.accent, 1.4));
    painter.drawLine(QPointF(6.0, 6.0), QPointF(10.0, 10.0));
}

/// Converts a value to bins. All bins of an axis are as wide as `first`.
double binsOf(double value, AxisRange first)
{
    return (value - first.min) / (first.max - first.min);
}

double distance(const QPointF& a, const QPointF& b)
{
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

/// Distance from a point to the segment between two others.
double distanceToLine(const QPointF& at, const QPointF& from, const QPointF& to)
{
    const QPointF way = to - from;
    const double length = QPointF::dotProduct(way, way);
    const double share = length > 0.0 ? std::clamp(QPointF::dotProduct(at - from, way) / length, 0.0, 1.0) : 0.0;
    return distance(at, from + way * share);
}

} // namespace

QPointF toBins(const PlotMapping& mapping, const QPointF& position)
{
    return { binsOf(position.x(), mapping.columnEdges(0)), binsOf(position.y(), mapping.rowEdges(0)) };
}

QPointF fromBins(const PlotMapping& mapping, const QPointF& bins)
{
    const AxisRange x = mapping.columnEdges(0);
    const AxisRange y = mapping.rowEdges(0);
    return { x.min + bins.x() * (x.max - x.min), y.min + bins.y() * (y.max - y.min) };
}

LineProfile::Shape LineProfile::shape(const PlotMapping& mapping) const
{
    Shape line;
    line.band = { toBins(mapping, m_from), toBins(mapping, m_to), m_width };
    line.steps = stepsOf(line.band);
    const auto pixelOf = [&](const QPointF& bins) {
        const QPointF at = fromBins(mapping, bins);
        return QPointF(limitedCoordinate(mapping.columnOf(at.x())), limitedCoordinate(mapping.rowOf(at.y())));
    };
    const QPointF along = line.steps.direction;
    const QPointF across = QPointF(-along.y(), along.x()) * line.steps.halfWidth;
    const QPointF begin = line.band.from - along * (line.steps.step / 2.0);
    const QPointF end = line.band.from + along * ((line.steps.count - 0.5) * line.steps.step);
    line.corners = { pixelOf(begin + across), pixelOf(end + across), pixelOf(end - across), pixelOf(begin - across) };
    line.from = pixelOf(line.band.from);
    line.to = pixelOf(line.band.to);
    line.middle = (line.from + line.to) / 2.0;
    const QPointF edge = (line.corners[0] + line.corners[1]) / 2.0;
    const QPointF way = edge - line.middle;
    const double length = std::hypot(way.x(), way.y());
    line.handle = length >= handleDistance || length == 0.0 ? edge : line.middle + way * (handleDistance / length);
    return line;
}

LineProfile::Grip LineProfile::gripAt(const PlotMapping& mapping, const QPointF& pixel) const
{
    if (!m_isSet)
        return Grip::None;
    const Shape line = shape(mapping);
    const QPointF at = mapping.toFrame(pixel);
    if (distance(at, line.to) <= reach)
        return Grip::To;
    if (distance(at, line.from) <= reach)
        return Grip::From;
    if (distance(at, line.handle) <= reach)
        return Grip::Width;
    return distanceToLine(at, line.from, line.to) <= reach ? Grip::Line : Grip::None;
}

/// The window of the profile follows the map's.
bool LineProfile::handleEvent(QEvent* event)
{
    if (m_plot != nullptr && m_plot->isWindow() && event->type() == QEvent::Hide)
        m_plot->hide();
    if (event->type() == QEvent::Show) // later: the desktop places a window that is shown after the map's beside it
        QMetaObject::invokeMethod(
            this, [this] { showWithMap(); }, Qt::QueuedConnection);
    return InteractiveTool::handleEvent(event);
}

void LineProfile::showWithMap()
{
    if (m_isOn && m_plot != nullptr && m_plot->isWindow() && plot() != nullptr && plot()->isVisible())
        m_plot->show();
}

bool LineProfile::handlePress(const QMouseEvent& event)
{
    const PlotMapping mapping = PlotMapping::of(*plot());
    if (!m_isOn || m_grip != Grip::None)
        return m_grip != Grip::None;
    if (event.button() != Qt::LeftButton || !isOverPlot(mapping, event.position())
        || m_menuTool->isChosenSince(*plot()))
        return false;
    plot()->setFocus(Qt::MouseFocusReason);
    m_wasFrom = m_from;
    m_wasTo = m_to;
    m_wasWidth = m_width;
    m_pressed = mapping.valueAt(event.position());
    m_grip = gripAt(mapping, event.position());
    if (m_grip == Grip::None) {
        m_grip = Grip::To;
        setLine(m_pressed, m_pressed);
    }
    return true;
}

bool LineProfile::handleMove(const QMouseEvent& event)
{
    const PlotMapping mapping = PlotMapping::of(*plot());
    const bool isOver = isOverPlot(mapping, event.position());
    if (m_grip != Grip::None) {
        if (mapping.isValid())
            drag(mapping, pixelInPlot(mapping, event.position()));
        return true;
    }
    if (!m_isOn || event.buttons() != Qt::NoButton)
        return false;
    restoreCursor();
    if (!isOver)
        return false;
    const Grip grip = gripAt(mapping, event.position());
    showCursor(grip == Grip::None ? Qt::CrossCursor : grip == Grip::Line ? Qt::SizeAllCursor : Qt::PointingHandCursor);
    return false;
}

bool LineProfile::handleRelease(const QMouseEvent& event)
{
    if (m_grip == Grip::None)
        return false;
    if (event.button() == Qt::LeftButton)
        endDrag(isTooShort());
    return true;
}

/// A click on the map, to activate its window for example, draws no line, because that would replace the existing one.
bool LineProfile::isTooShort() const
{
    const Shape line = shape(PlotMapping::of(*plot()));
    return m_grip != Grip::Width && distance(line.from, line.to) < clickSlack;
}

void LineProfile::handleHide()
{
    endDrag(true);
}

void LineProfile::drag(const PlotMapping& mapping, const QPointF& pixel)
{
    const QPointF at = mapping.valueAt(pixel);
    switch (m_grip) {
    case Grip::From:
        setLine(at, m_to);
        break;
    case Grip::To:
        setLine(m_from, at);
        break;
    case Grip::Line:
        setLine(m_wasFrom + at - m_pressed, m_wasTo + at - m_pressed);
        break;
    default: {
        const Shape line = shape(mapping);
        const QPointF way = toBins(mapping, at) - line.band.from;
        const QPointF along = line.steps.direction;
        setBandWidth(std::round(2.0 * std::abs(along.x() * way.y() - along.y() * way.x())));
        break;
    }
    }
}

void LineProfile::endDrag(bool cancel)
{
    if (m_grip == Grip::None)
        return;
    m_grip = Grip::None;
    restoreCursor();
    showPending();
    if (!cancel)
        return;
    m_width = m_wasWidth;
    setLine(m_wasFrom, m_wasTo);
}

bool LineProfile::claimsKey(const QKeyEvent& event) const
{
    return m_isOn && event.key() == Qt::Key_Escape;
}

bool LineProfile::handleKey(const QKeyEvent& event)
{
    if (const QPoint bins = binsOfKey(event); m_isOn && m_isSet && m_grip == Grip::None && !bins.isNull()) {
        const PlotMapping mapping = PlotMapping::of(*plot());
        if (mapping.isValid())
            setLine(m_from, movedByBins(mapping, m_to, bins.x(), bins.y()));
        return true;
    }
    if (event.modifiers() != Qt::NoModifier)
        return false;
    if (event.key() == Qt::Key_B) {
        setOn(!m_isOn);
        return true;
    }
    if (event.key() == Qt::Key_Space && m_isOn && m_isSet && m_grip == Grip::None) {
        setLine(QPointF(m_to), QPointF(m_from)); // copies, as both ends change
        return true;
    }
    if (event.key() != Qt::Key_Escape || !m_isOn)
        return false;
    if (m_grip != Grip::None)
        endDrag(true);
    else
        setOn(false);
    return true;
}

void LineProfile::makeActions()
{
    auto* const onAction = new ToolAction(
        this, "lineProfile", [] { return LineProfile::tr("Profile Along a Line"); }, drawProfile);
    onAction->setCheckable(true);
    onAction->showKeys({ Qt::Key_B });
    connect(onAction, &QAction::triggered, this, &LineProfile::setOn);
    auto* const band = new ToolAction(
        this, "profileBand", [] { return LineProfile::tr("Width of the Profile"); }, drawBand);
    m_menu = new QMenu(plot());
    connect(this, &QObject::destroyed, m_menu, &QObject::deleteLater);
    connect(m_menu, &QMenu::aboutToShow, this, &LineProfile::fillMenu);
    band->setMenu(m_menu);
    m_switch = onAction;
    m_menuAction = band;
}

void LineProfile::fillMenu()
{
    m_menu->clear();
    const auto addChoice = [this](QActionGroup* group, const QString& text, bool isChecked, const auto& choose) {
        connect(addMenuChoice(*m_menu, *group, text, isChecked), &QAction::triggered, this, choose);
    };
    auto* const joins = new QActionGroup(m_menu);
    const auto addJoin = [&](const QString& text, Join join) {
        addChoice(joins, text, join == m_join, [this, join] { setJoin(join); });
    };
    addJoin(tr("Sum Across the Band"), Join::Sum);
    addJoin(tr("Mean Across the Band"), Join::Mean);
    addJoin(tr("Maximum Across the Band"), Join::Maximum);
    m_menu->addSeparator();
    auto* const widths = new QActionGroup(m_menu);
    for (const double width : { 1.0, 3.0, 5.0, 9.0, 15.0, 25.0 })
        addChoice(widths, tr("Width in Bins: %1").arg(width), width == m_width, [this, width] { setBandWidth(width); });
}

QList<QAction*> LineProfile::actions() const
{
    return { m_switch, m_menuAction };
}

QString LineProfile::stateName() const
{
    return QStringLiteral("lineProfile");
}

QJsonObject LineProfile::saveState() const
{
    QJsonObject state { { onKey, m_isOn }, { widthKey, m_width },
        { joinKey, QLatin1String(joinNames[static_cast<int>(m_join)]) } };
    if (m_isSet)
        state.insert(lineKey, placesToJson({ m_from, m_to }));
    return state;
}

void LineProfile::restoreState(const QJsonObject& state)
{
    const QPointer<LineProfile> self(this); // slots may delete the tool
    setBandWidth(state.value(widthKey).toDouble(m_width));
    for (int i = 0; i < 3 && !self.isNull(); ++i) {
        if (state.value(joinKey).toString() == QLatin1String(joinNames[i]))
            setJoin(static_cast<Join>(i));
    }
    const std::optional<PlacePair> line = placesFromJson(state.value(lineKey));
    if (line && !self.isNull())
        setLine(line->from, line->to);
    if (!self.isNull())
        setOn(state.value(onKey).toBool(m_isOn));
}

} // namespace tarnis
