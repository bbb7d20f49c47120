// The views that a user has seen, in the order of the gestures that led to them. Plain values; no widget, no clock.
#pragma once

#include "tarnis/plots/axisrange.h"

#include <QList>
#include <QtGlobal>

namespace tarnis {

/// What a plot shows. The range of an axis that follows the data is not part of the view.
struct ViewState {
    AxisRange x;
    AxisRange y;
    AxisRange levels; ///< of a map's colours
    bool autoX = true;
    bool autoY = true;
    bool autoLevels = true;
    bool logScale = false; ///< of Y, or of a map's colours
};

/// True if a user would not see a difference: ends within 1e-9 of the span, and equal flags.
bool isSameView(const ViewState& a, const ViewState& b);

/// What made a change. Changes of one kind and serial that follow each other closely are one gesture.
struct ViewGesture {
    int kind = 0;
    int serial = 0;
};

/// A list of views with a place in it.
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
    /// Replaces the current view without an entry: the data or the host changed it.
    void settle(const ViewState& view) { m_entries[m_index] = view; }
    /// A gesture led to `view` at `timeMs`. What lay in front of the current view is dropped. Returns whether the list
    /// changed.
    bool commit(const ViewState& view, const ViewGesture& gesture, qint64 timeMs);

    bool canGoBack() const { return m_index > 0; }
    bool canGoForward() const { return m_index + 1 < m_entries.size(); }
    /// The previous or the next view, which becomes the current one; the current view if there is none. @{
    const ViewState& goBack();
    const ViewState& goForward();
    /// @}
    /// The next change is a new entry, whatever made it.
    void endGesture() { m_isOpen = false; }

private:
    QList<ViewState> m_entries;
    qsizetype m_index = 0;
    ViewGesture m_gesture; // of the current entry
    qint64 m_timeMs = 0;
    bool m_isOpen = false; // the current entry may take further changes of its gesture
};

} // namespace tarnis
