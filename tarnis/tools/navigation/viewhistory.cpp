#include "tarnis/tools/navigation/viewhistory_p.h"

#include <cmath>

namespace tarnis {

namespace {

constexpr double sameShare = 1e-9;

bool isSame(AxisRange a, AxisRange b)
{
    const double near = sameShare * std::abs(a.max - a.min);
    return a == b || (std::abs(a.min - b.min) <= near && std::abs(a.max - b.max) <= near);
}

} // namespace

bool isSameView(const ViewState& a, const ViewState& b)
{
    return a.autoX == b.autoX && a.autoY == b.autoY && a.autoLevels == b.autoLevels && a.logScale == b.logScale
        && (a.autoX || isSame(a.x, b.x)) && (a.autoY || isSame(a.y, b.y))
        && (a.autoLevels || isSame(a.levels, b.levels));
}

bool ViewHistory::commit(const ViewState& view, const ViewGesture& gesture, qint64 timeMs)
{
    const bool continues = m_isOpen && m_index > 0 && gesture.kind == m_gesture.kind
        && gesture.serial == m_gesture.serial && timeMs - m_timeMs <= sameGestureMs;
    m_gesture = gesture;
    m_timeMs = timeMs;
    if (continues) {
        m_entries[m_index] = view;
        if (isSameView(view, m_entries.at(m_index - 1))) { // the gesture restored the previous view
            m_entries.removeAt(m_index--);
            m_isOpen = false;
        }
        return true;
    }
    if (isSameView(view, current())) {
        m_entries[m_index] = view;
        return false;
    }
    m_isOpen = true;
    m_entries.resize(m_index + 1);
    m_entries.append(view);
    if (m_entries.size() > maxEntries)
        m_entries.removeFirst();
    m_index = m_entries.size() - 1;
    return true;
}

const ViewState& ViewHistory::goBack()
{
    m_isOpen = false;
    if (canGoBack())
        --m_index;
    return current();
}

const ViewState& ViewHistory::goForward()
{
    m_isOpen = false;
    if (canGoForward())
        ++m_index;
    return current();
}

} // namespace tarnis
