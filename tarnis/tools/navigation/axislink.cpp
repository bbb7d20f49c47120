#include "tarnis/tools/axislink.h"

#include "tarnis/foundation/trace_p.h"
#include "tarnis/plots/plotobserver.h"
#include "tarnis/plots/xygraphwidget.h"
#include "tarnis/tools/navigation/viewcontrol_p.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

namespace tarnis {

/// One axis of the group.
class TARNIS_NO_EXPORT AxisLink::Member : public PlotObserver {
public:
    Member(AxisLink& link, XYGraphWidget& plot, Qt::Orientation axis)
        : PlotObserver(&plot)
        , m_link(link)
        , m_axis(axis)
    {
    }

    Qt::Orientation axis() const { return m_axis; }
    AxisRange range() const { return ViewControl(*observedPlot()).range(m_axis); }
    bool isAuto() const { return ViewControl(*observedPlot()).isAuto(m_axis); }
    void show(AxisRange range)
    {
        ViewControl(*observedPlot()).show(m_axis, range);
        m_set = { isAuto(), this->range() };
    }
    void fit()
    {
        ViewControl(*observedPlot()).fit(m_axis);
        m_set = { isAuto(), range() };
    }
    /// True once if the axis was changed after show() or fit(). A plot does not report a change that another one undoes
    /// in the same pass of the event loop.
    bool takeChangeSinceSet()
    {
        const std::optional<View> set = std::exchange(m_set, std::nullopt);
        return set && (set->isAuto != isAuto() || (!set->isAuto && set->range != range()));
    }

protected:
    void plotChanged(Changes changes) override
    {
        if (changes.testFlag(m_axis == Qt::Horizontal ? RangeX : RangeY) || changes.testFlag(AutoScale))
            m_link.follow(*this);
    }
    void axisInitialized(Qt::Orientation axis, double /*previousMin*/, double /*previousMax*/) override;

private:
    struct View {
        bool isAuto = true;
        AxisRange range;
    };

    AxisLink& m_link;
    Qt::Orientation m_axis;
    std::optional<View> m_set; ///< state right after the group set it
};

struct TARNIS_NO_EXPORT AxisLink::State {
    std::vector<std::unique_ptr<Member>> members;
    bool isAuto = true;
    AxisRange range; // range of the group, unless it is automatic
};

/// A host that sets up an axis shows its full range. In a group that is not automatic, the range of the group is kept
/// if the new axis overlaps it; otherwise the group adopts the range of the axis.
void AxisLink::Member::axisInitialized(Qt::Orientation axis, double /*previousMin*/, double /*previousMax*/)
{
    if (axis != m_axis || m_link.m_state->isAuto || isAuto())
        return;
    const AxisRange initial = range();
    const AxisRange wanted = m_link.m_state->range;
    if (std::max(wanted.min, wanted.max) <= std::min(initial.min, initial.max)
        || std::min(wanted.min, wanted.max) >= std::max(initial.min, initial.max))
        return;
    if (m_axis == Qt::Horizontal)
        observedPlot()->setMinMaxX(wanted.min, wanted.max);
    else
        observedPlot()->setMinMaxY(wanted.min, wanted.max);
}

AxisLink::AxisLink(QObject* parent)
    : QObject(parent)
    , m_state(std::make_unique<State>())
{
}

AxisLink::~AxisLink() = default;

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
    dropDestroyed();
    m_state->members.push_back(std::make_unique<Member>(*this, *plot, axis));
    Member& added = *m_state->members.back();
    if (m_state->members.size() == 1) {
        m_state->isAuto = added.isAuto();
        m_state->range = added.range();
    } else if (!m_state->isAuto) {
        added.show(m_state->range);
    } else if (!added.isAuto()) {
        added.fit();
    }
}

void AxisLink::remove(XYGraphWidget* plot, Qt::Orientation axis)
{
    const Member* const gone = find(plot, axis);
    std::erase_if(m_state->members, [gone](const auto& member) { return member.get() == gone; });
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

/// Called for every change of a member, including changes made by the group. Then the member is equal to the group,
/// which ends the recursion.
void AxisLink::follow(const Member& source)
{
    const bool isAuto = source.isAuto();
    const AxisRange range = source.range();
    if (isAuto == m_state->isAuto && (isAuto || range == m_state->range))
        return;
    if (!isAuto && !(std::isfinite(range.min) && std::isfinite(range.max) && range.min != range.max))
        return; // a range that another plot cannot show
    m_state->isAuto = isAuto;
    m_state->range = range;
    for (const auto& member : m_state->members) {
        if (member.get() == &source || member->observedPlot() == nullptr)
            continue;
        if (isAuto && !member->isAuto())
            member->fit();
        else if (!isAuto && (member->isAuto() || member->range() != range))
            member->show(range);
    }
    QMetaObject::invokeMethod(
        this, [this] { followLateChanges(); }, Qt::QueuedConnection);
    if (!isAuto)
        Q_EMIT rangeChanged(range.min, range.max);
}

void AxisLink::followLateChanges()
{
    for (const auto& member : m_state->members) {
        if (member->observedPlot() != nullptr && member->takeChangeSinceSet()) {
            follow(*member);
            return; // all members have been set to this change
        }
    }
}

} // namespace tarnis
