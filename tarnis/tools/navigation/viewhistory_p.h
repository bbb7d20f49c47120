// The history of a user's views, in the order of the gestures that created them. No widget, no clock.
#pragma once

#include "tarnis/plots/axisrange.h"

#include <QList>
#include <QtGlobal>

namespace tarnis {

/// The view of a plot. The range of an axis that follows the data is not part of it.
struct ViewState {
    AxisRange x;
    AxisRange y;
    AxisRange levels; ///< limits of a map's colours
    bool autoX = true;
    bool autoY = true;
    bool autoLevels = true;
    bool logScale = false; ///< log scale of Y, or of a map's colours
};

/// True if the difference is invisible: ends within 1e-9 of the span, and equal flags.
bool isSameView(const ViewState& a, const ViewState& b);

/// The cause of a change. Changes of the same kind and serial within a short time are one gesture.
struct ViewGesture {
    int kind = 0;
    int serial = 0;
};

/// A list of views with a current one.
class ViewHistory {
public:
    /// Changes of the same gesture within this time are one entry.
    static constexpr qint64 sameGestureMs = 700;
    static constexpr qsizetype maxEntries = 50;

    explicit ViewHistory(const ViewState& start)
        : m_entries { start }
    {
    }

    const ViewState& current() const { return m_entries.at(m_index); }
    /// Replaces the current view without an entry, after a change by the data or the host.
    void settle(const ViewState& view) { m_entries[m_index] = view; }
    /// Records that a gesture led to `view` at `timeMs`. Views after the current one are dropped. Returns whether the
    /// list changed.
    bool commit(const ViewState& view, const ViewGesture& gesture, qint64 timeMs);

    bool canGoBack() const { return m_index > 0; }
    bool canGoForward() const { return m_index + 1 < m_entries.size(); }
    /// Makes the previous or the next view the current one and returns it; the current view if there is none. @{
    const ViewState& goBack();
    const ViewState& goForward();
    /// @}

private:
    QList<ViewState> m_entries;
    qsizetype m_index = 0;
    ViewGesture m_gesture; // gesture of the current entry
    qint64 m_timeMs = 0;
    bool m_isOpen = false; // the current entry accepts further changes of its gesture
};

} // namespace tarnis
