// What a plot keeps for its observers and overlays. A plot without any has none.
#pragma once

#include "tarnis/plots/axisrange.h"
#include "tarnis/plots/plotobserver.h"

#include <QCursor>
#include <QList>
#include <QObject>
#include <QRect>
#include <QStringList>

QT_BEGIN_NAMESPACE
class QPainter;
QT_END_NAMESPACE

namespace tarnis {

class PlotOverlay;
class PlotStyling;

/// Owned by the plot. It compares the plot's state with the one last reported and calls the observers from the event
/// loop. It also keeps what tools changed in the widget's input, and restores it with the last tool.
class PlotHooks : public QObject {
public:
    explicit PlotHooks(XYGraphWidget& plot);
    ~PlotHooks() override;

    /// Those of the plot, made if they are missing.
    static PlotHooks& of(XYGraphWidget& plot);
    static PlotHooks* existing(const XYGraphWidget& plot);

    void add(PlotObserver& observer);
    void remove(PlotObserver& observer);
    void add(PlotOverlay& overlay);
    void remove(PlotOverlay& overlay);

    /// The state may have changed: compared later, from the event loop.
    void touch();
    void touchData();
    void initialized(Qt::Orientation axis, AxisRange previous);
    /// Compares, and calls the observers, now.
    void deliver();

    /// Names of a plot of many series, by index. @{
    const QStringList& seriesNames() const { return m_seriesNames; }
    void setSeriesNames(const QStringList& names);
    /// @}

    /// The style that was attached last; null for the classic drawing. @{
    PlotStyling* styling() const { return m_stylings.isEmpty() ? nullptr : m_stylings.constLast(); }
    void add(PlotStyling& styling) { m_stylings.append(&styling); }
    void remove(PlotStyling& styling) { m_stylings.removeOne(&styling); }
    /// @}

    bool hasOverlays() const { return !m_overlays.isEmpty(); }
    /// `saved` leaves out the drawings that do not belong into files. The painter's coordinates are the frame's.
    void paintOverlays(QPainter& painter, bool saved) const;
    /// On the widget or on a copy of its cached picture, where a turned plot turns its overlays.
    void paintOverlaysTurned(QPainter& painter, bool saved) const;

    // Input that tools change; each call of acquire needs one of release.
    void acquireTracking();
    void releaseTracking();
    void acquireFocus();
    void releaseFocus();
    void showCursor(const void* owner, const QCursor& cursor);
    void restoreCursor(const void* owner);

    /// A tool shows what is under the pointer: the plot's own tool tips stay away. @{
    void acquireReadOut() { ++m_readOuts; }
    void releaseReadOut() { --m_readOuts; }
    bool hasReadOut() const { return m_readOuts > 0; }
    /// @}

private:
    struct State {
        AxisRange x;
        AxisRange y;
        AxisRange levels; // of a map's colours
        bool autoX = false;
        bool autoY = false;
        bool autoLevels = true;
        bool logScale = false;
        QRect rect;
    };
    State state() const;
    void post();

    XYGraphWidget& m_plot;
    QList<PlotObserver*> m_observers;
    QList<PlotOverlay*> m_overlays; // in the order of drawing
    State m_reported;
    bool m_dataChanged = false;
    bool m_isPosted = false;

    int m_tracking = 0;
    bool m_hadTracking = false;
    int m_focus = 0;
    Qt::FocusPolicy m_hadFocusPolicy = Qt::NoFocus;
    const void* m_cursorOwner = nullptr;
    QCursor m_hadCursor;
    bool m_hadOwnCursor = false;
    int m_readOuts = 0;
    QStringList m_seriesNames;
    QList<PlotStyling*> m_stylings;
};

} // namespace tarnis
