#include "tarnis/tools/axislink.h"

#include "tarnis/foundation/trace_p.h"
#include "tarnis/plots/plothooks_p.h"
#include "tarnis/plots/plotobserver.h"
#include "tarnis/plots/xygraphwidget.h"
#include "tarnis/tools/navigation/viewcontrol_p.h"

#include <QPointF>
#include <QPointer>
#include <QtNumeric>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace tarnis {

namespace {

/// Whether other plots can show it.
bool isShowable(AxisRange range)
{
    return std::isfinite(range.min) && std::isfinite(range.max) && range.min != range.max;
}

/// GUI thread only.
quint64 nextSerial()
{
    static quint64 s_last = 0;
    return ++s_last;
}

} // namespace

/// One axis of the group.
class TARNIS_NO_EXPORT AxisLink::Member : public PlotObserver {
public:
    Member(AxisLink& link, XYGraphWidget& plot, Qt::Orientation axis)
        : PlotObserver(&plot)
        , m_link(link)
        , m_axis(axis)
    {
        note(view(), serialOf(view()));
    }

    Qt::Orientation axis() const { return m_axis; }
    LinkedView view() const ///< the current one, without a serial
    {
        const ViewControl control(*observedPlot());
        return { control.isAuto(m_axis), control.range(m_axis), 0 };
    }
    /// The serial of the group that has set this view, or a new one for a change of the plot.
    quint64 serialOf(const LinkedView& view) const
    {
        const LinkedView& linked = PlotHooks::of(*observedPlot()).linkedView(m_axis);
        return linked.serial > 0 && linked.isSame(view) ? linked.serial : nextSerial();
    }
    void show(const LinkedView& wanted)
    {
        ViewControl control(*observedPlot());
        if (wanted.isAuto && !control.isAuto(m_axis))
            control.fit(m_axis);
        else if (!wanted.isAuto && (control.isAuto(m_axis) || control.range(m_axis) != wanted.range))
            control.show(m_axis, wanted.range);
        note(view(), wanted.serial);
    }
    /// The group knows this view of the plot.
    void note(const LinkedView& view, quint64 serial)
    {
        m_known = { view.isAuto, view.range, serial };
        PlotHooks::of(*observedPlot()).linkedView(m_axis) = m_known;
    }
    double crosshair() const ///< position of the plot's own cross, NaN without one
    {
        return PlotHooks::along(PlotHooks::of(*observedPlot()).crosshair(), m_axis);
    }
    void showCrosshair(double position) { PlotHooks::of(*observedPlot()).moveLinkedCrosshair(m_axis, position); }
    /// Whether the view is not the known one. A plot does not report a change that another one undoes in the same pass
    /// of the event loop.
    bool isChanged() const
    {
        const LinkedView now = view();
        return !m_known.isSame(now) && (now.isAuto || isShowable(now.range));
    }

protected:
    void plotChanged(Changes /*changes*/) override
    {
        if (isChanged())
            m_link.follow(*this);
    }
    void axisInitialized(Qt::Orientation axis, double /*previousMin*/, double /*previousMax*/) override;
    void crosshairMoved(const QPointF& value) override;

private:
    AxisLink& m_link;
    Qt::Orientation m_axis;
    LinkedView m_known; ///< the one that the group has set or followed last
};

struct TARNIS_NO_EXPORT AxisLink::State {
    std::vector<std::unique_ptr<Member>> members;
    LinkedView view; // of the group
    bool isPosted = false; // a call of followLateChanges()
    const Member* latestCrosshair = nullptr; // may be gone; only for comparisons
};

/// A host that sets up an axis shows its full range. In a group that is not automatic, the range of the group is kept
/// if the new axis overlaps it; otherwise the group adopts the range of the axis.
void AxisLink::Member::axisInitialized(Qt::Orientation axis, double /*previousMin*/, double /*previousMax*/)
{
    if (axis != m_axis || m_link.m_state->view.isAuto || ViewControl(*observedPlot()).isAuto(axis))
        return;
    const AxisRange initial = ViewControl(*observedPlot()).range(axis);
    const AxisRange wanted = m_link.m_state->view.range;
    if (std::max(wanted.min, wanted.max) <= std::min(initial.min, initial.max)
        || std::min(wanted.min, wanted.max) >= std::max(initial.min, initial.max))
        return;
    if (m_axis == Qt::Horizontal)
        observedPlot()->setMinMaxX(wanted.min, wanted.max);
    else
        observedPlot()->setMinMaxY(wanted.min, wanted.max);
}

void AxisLink::Member::crosshairMoved(const QPointF& value)
{
    if (!std::isnan(PlotHooks::along(value, m_axis)))
        m_link.m_state->latestCrosshair = this;
    m_link.showCrosshairs();
}

AxisLink::AxisLink(QObject* parent)
    : QObject(parent)
    , m_state(std::make_unique<State>())
{
}

AxisLink::~AxisLink()
{
    dropDestroyed();
    for (const auto& member : m_state->members)
        member->showCrosshair(qQNaN());
}

AxisLink::Member* AxisLink::find(const XYGraphWidget* plot, Qt::Orientation axis) const
{
    const auto found = std::find_if(m_state->members.begin(), m_state->members.end(),
        [&](const auto& member) { return member->observedPlot() == plot && member->axis() == axis; });
    return plot != nullptr && found != m_state->members.end() ? found->get() : nullptr;
}

void AxisLink::dropDestroyed()
{
    std::erase_if(m_state->members, [](const auto& member) { return member->observedPlot() == nullptr; });
}

void AxisLink::add(XYGraphWidget* plot, Qt::Orientation axis)
{
    if (plot == nullptr) {
        qCWarning(TARNIS_TRACE_CATEGORY(), "AxisLink: a null plot cannot be linked");
        return;
    }
    if (contains(plot, axis))
        return;
    const QPointer<XYGraphWidget> guard(plot); // a slot may delete it
    followLateChanges(); // a change that is not yet reported came first
    if (guard.isNull())
        return;
    dropDestroyed();
    m_state->members.push_back(std::make_unique<Member>(*this, *plot, axis));
    Member& added = *m_state->members.back();
    if (m_state->members.size() == 1)
        m_state->view = added.view();
    m_state->view.serial = nextSerial(); // to join is a change, also for other groups of the axis
    added.show(m_state->view);
    connect(plot, &QObject::destroyed, this, &AxisLink::showCrosshairs); // a plot takes its cross with it
    showCrosshairs();
    postLateChanges();
}

void AxisLink::remove(XYGraphWidget* plot, Qt::Orientation axis)
{
    Member* const gone = find(plot, axis);
    if (gone == nullptr)
        return;
    gone->showCrosshair(qQNaN());
    std::erase_if(m_state->members, [gone](const auto& member) { return member.get() == gone; });
    showCrosshairs();
}

bool AxisLink::contains(const XYGraphWidget* plot, Qt::Orientation axis) const
{
    return find(plot, axis) != nullptr;
}

qsizetype AxisLink::count() const
{
    return std::count_if(m_state->members.begin(), m_state->members.end(),
        [](const auto& member) { return member->observedPlot() != nullptr; });
}

/// Changes of several members in one pass of the event loop follow each other. A change that arrives from another group
/// with the same axis is older than this group's view if this group has followed a later one meanwhile. Without that
/// rule two ranges could run round a ring of groups forever.
void AxisLink::follow(Member& source)
{
    LinkedView view = source.view();
    view.serial = source.serialOf(view);
    source.note(view, view.serial);
    postLateChanges();
    if (view.isSame(m_state->view))
        return;
    if (view.serial <= m_state->view.serial) {
        source.show(m_state->view);
        return;
    }
    m_state->view = view;
    for (const auto& member : m_state->members) {
        if (member.get() != &source && member->observedPlot() != nullptr && !member->isChanged())
            member->show(view);
    }
    if (!view.isAuto)
        Q_EMIT rangeChanged(view.range.min, view.range.max);
}

void AxisLink::postLateChanges()
{
    if (std::exchange(m_state->isPosted, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_state->isPosted = false;
            followLateChanges();
        },
        Qt::QueuedConnection);
}

/// Follows a change that no plot has reported yet, or that none will report.
void AxisLink::followLateChanges()
{
    const auto changed = std::find_if(m_state->members.begin(), m_state->members.end(),
        [](const auto& member) { return member->observedPlot() != nullptr && member->isChanged(); });
    if (changed != m_state->members.end())
        follow(**changed);
}

void AxisLink::showCrosshairs()
{
    for (const auto& member : m_state->members) {
        if (member->observedPlot() != nullptr)
            member->showCrosshair(crosshairFor(*member));
    }
}

/// The cross that moved last in another plot, otherwise any; NaN without one.
double AxisLink::crosshairFor(const Member& member) const
{
    double position = qQNaN();
    for (const auto& other : m_state->members) {
        const bool isOther = other->observedPlot() != nullptr && other->observedPlot() != member.observedPlot();
        const double candidate = isOther ? other->crosshair() : qQNaN();
        if (!std::isnan(candidate) && (std::isnan(position) || other.get() == m_state->latestCrosshair))
            position = candidate;
    }
    return position;
}

} // namespace tarnis
