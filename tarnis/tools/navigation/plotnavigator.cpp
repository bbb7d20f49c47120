// The views and their history. Gestures are in plotnavigator_events.cpp.
#include "tarnis/tools/navigation/plotnavigator_p.h"

#include "tarnis/plots/plotmapping.h"
#include "tarnis/tools/base/plotlabel_p.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPointer>

#include <algorithm>
#include <optional>
#include <utility>

namespace tarnis {

namespace {

constexpr int marksZOrder = 90; // above the other tools
constexpr int markMargin = 4;

} // namespace

PlotNavigator::PlotNavigator(XYGraphWidget* plot)
    : InteractiveTool(plot, KeyboardFocus | MouseMoves)
    , PlotOverlay(plot, marksZOrder)
{
    if (plot == nullptr)
        return;
    m_data = std::make_unique<Internals>(*this, *plot);
    plot->setAttribute(Qt::WA_AcceptTouchEvents);
    makeActions();
    connect(this, &PlotNavigator::historyChanged, this, &PlotNavigator::updateActions);
}

PlotNavigator::~PlotNavigator()
{
    if (plot() != nullptr)
        plot()->setAttribute(Qt::WA_AcceptTouchEvents, m_data->hadTouch);
}

bool PlotNavigator::canGoBack() const
{
    return m_data != nullptr && m_data->history.canGoBack();
}

bool PlotNavigator::canGoForward() const
{
    return m_data != nullptr && m_data->history.canGoForward();
}

bool PlotNavigator::isHeld(Qt::Orientation axis) const
{
    if (plot() == nullptr || m_data->view.isAuto(axis))
        return false;
    if (const auto cut = PlotAccess::cutAxis(*plot()); cut && axis == Qt::Horizontal) {
        const auto* const ofMap = cut->map.findChild<PlotNavigator*>(QString(), Qt::FindDirectChildrenOnly);
        return ofMap != nullptr && ofMap->isHeld(cut->axis);
    }
    return axis == Qt::Horizontal ? m_data->isHeldX : m_data->isHeldY;
}

void PlotNavigator::goBack()
{
    if (plot() == nullptr)
        return;
    if (!noteChange())
        return;
    if (!m_data->history.canGoBack()) {
        Q_EMIT message(tr("There is no earlier view."));
        return;
    }
    m_data->show(m_data->history.goBack(), *plot());
    updateOverlay();
    Q_EMIT historyChanged();
}

void PlotNavigator::goForward()
{
    if (plot() == nullptr)
        return;
    if (!noteChange())
        return;
    if (!m_data->history.canGoForward()) {
        Q_EMIT message(tr("There is no later view."));
        return;
    }
    m_data->show(m_data->history.goForward(), *plot());
    updateOverlay();
    Q_EMIT historyChanged();
}

void PlotNavigator::goHome()
{
    if (plot() == nullptr)
        return;
    if (!noteChange())
        return;
    m_data->view.takeKey(Qt::Key_Home);
    commit(OnceKind, ++m_data->serial, 0);
}

void PlotNavigator::fitX()
{
    fit(Qt::Horizontal, false);
}

void PlotNavigator::fitY()
{
    fit(Qt::Vertical, false);
}

void PlotNavigator::fit(Qt::Orientation axis, bool both)
{
    if (plot() == nullptr)
        return;
    if (!noteChange())
        return;
    m_data->view.fit(axis);
    if (both)
        m_data->view.fit(axis == Qt::Horizontal ? Qt::Vertical : Qt::Horizontal);
    commit(OnceKind, ++m_data->serial, 0);
}

void PlotNavigator::zoomIn()
{
    zoomAboutMiddle(eighthsPerNotch);
}

void PlotNavigator::zoomOut()
{
    zoomAboutMiddle(-eighthsPerNotch);
}

void PlotNavigator::zoomAboutMiddle(int eighths)
{
    if (plot() == nullptr)
        return;
    if (!noteChange())
        return;
    zoomAxis(Qt::Horizontal, 0.5, eighths);
    if (m_data->view.map() != nullptr)
        zoomAxis(Qt::Vertical, 0.5, eighths);
    commit(OnceKind, ++m_data->serial, 0);
}

// History

/// Records changes by others since the last check: a setup by the host without a history entry, anything else with one.
/// False if a slot of historyChanged() has deleted the navigator: nothing of it may be used then.
bool PlotNavigator::noteChange()
{
    const ViewState now = m_data->view.state();
    const bool isSetUp = std::exchange(m_data->isInitialized, false);
    if (isSetUp || isSameView(now, m_data->history.current())) {
        m_data->history.settle(now);
        return true;
    }
    const QPointer<PlotNavigator> self(this);
    commit(ForeignKind, m_data->serial, static_cast<quint64>(m_data->clock.elapsed()));
    return !self.isNull();
}

void PlotNavigator::commit(int kind, int serial, quint64 timeMs)
{
    const ViewState now = m_data->view.state();
    const ViewState& before = m_data->history.current();
    m_data->isHeldX = !now.autoX && (m_data->isHeldX || before.autoX || now.x != before.x);
    m_data->isHeldY = !now.autoY && (m_data->isHeldY || before.autoY || now.y != before.y);
    const bool isNew = m_data->history.commit(now, { kind, serial }, static_cast<qint64>(timeMs));
    updateOverlay();
    if (isNew)
        Q_EMIT historyChanged(); // last: a slot may delete the navigator
}

void PlotNavigator::plotChanged(Changes changes)
{
    if (changes.testFlag(Data))
        m_data->view.forgetData();
    if (m_data->isPanning)
        return; // one entry at its end
    if ((changes & (RangeX | RangeY | ScaleType | AutoScale | Levels)) && !noteChange())
        return;
    if (changes.testFlag(ScaleType))
        updateActions();
    if (changes.testFlag(AutoScale)) {
        updateOverlay();
        Q_EMIT historyChanged();
    }
}

/// Some windows set up the axis again with every reply, which shows its full range. Restores the user's view.
void PlotNavigator::axisInitialized(Qt::Orientation axis, double previousMin, double previousMax)
{
    const bool isX = axis == Qt::Horizontal;
    AxisRange& known = isX ? m_data->initialX : m_data->initialY;
    const AxisRange initial = isX ? PlotAccess::initialX(*plot()) : PlotAccess::initialY(*plot());
    const AxisRange shown { previousMin, previousMax };
    const bool isHeldByUser = !m_data->view.isAuto(axis) && shown != known && isHeld(axis);
    const bool isReached = std::max(shown.min, shown.max) > std::min(initial.min, initial.max)
        && std::min(shown.min, shown.max) < std::max(initial.min, initial.max);
    known = initial;
    m_data->view.forgetData();
    if (isHeldByUser && isReached) {
        if (isX)
            plot()->setMinMaxX(shown.min, shown.max);
        else
            plot()->setMinMaxY(shown.min, shown.max);
    } else if (!m_data->view.isAuto(axis)) {
        m_data->isInitialized = true;
    }
}

// Marks of held axes

QString PlotNavigator::markText(Qt::Orientation axis) const
{
    const auto cut = axis == Qt::Horizontal ? PlotAccess::cutAxis(*plot()) : std::nullopt;
    return (cut ? cut->axis : axis) == Qt::Horizontal ? tr("X held") : tr("Y held");
}

QRect PlotNavigator::markFrame(Qt::Orientation axis) const
{
    if (plot() == nullptr || !isHeld(axis))
        return {};
    const QRect rect = PlotMapping::of(*plot()).frameRect();
    const QSize size = labelSize(QFontMetrics(plot()->font()), markText(axis));
    return axis == Qt::Horizontal
        ? labelFrame(size, rect.bottomRight() - QPoint(markMargin, markMargin), Qt::AlignRight | Qt::AlignBottom)
        : labelFrame(size, rect.topLeft() + QPoint(markMargin, markMargin), Qt::AlignLeft | Qt::AlignTop);
}

QList<QRect> PlotNavigator::cornerBoxes() const
{
    QList<QRect> frames;
    for (const Qt::Orientation axis : { Qt::Horizontal, Qt::Vertical }) {
        if (const QRect frame = markFrame(axis); !frame.isNull())
            frames.append(frame);
    }
    return frames;
}

void PlotNavigator::paintOverlay(QPainter& painter, const PlotMapping& mapping)
{
    const auto mark = [&](Qt::Orientation axis) {
        const QRect frame = markFrame(axis);
        if (frame.isNull())
            return QRect();
        painter.setFont(plot()->font());
        paintLabel(painter, markText(axis), frame.topLeft(), Qt::AlignLeft | Qt::AlignTop, LabelStyle::Button);
        return QRectF(mapping.fromFrame(frame.topLeft()), mapping.fromFrame(frame.bottomRight())).normalized().toRect();
    };
    m_data->markX = mark(Qt::Horizontal);
    m_data->markY = mark(Qt::Vertical);
    QRegion marks;
    for (const QRect& frame : cornerBoxes())
        marks += frame.adjusted(-1, -1, 1, 1);
    noteDrawn(painter, marks);
}

bool PlotNavigator::isSaved() const
{
    return false;
}

} // namespace tarnis
