// Common declarations of the sources of the navigator.
#pragma once

#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/tools/navigation/plotzones_p.h"
#include "tarnis/tools/navigation/touchinput_p.h"
#include "tarnis/tools/navigation/viewcontrol_p.h"
#include "tarnis/tools/plotnavigator.h"

#include <QElapsedTimer>

namespace tarnis {

/// Wheel steps are in eighths of a degree; this many are a notch.
constexpr int eighthsPerNotch = 120;

/// Kinds of gestures. Consecutive gestures of one kind within a short time are one history entry.
enum GestureKind { OnceKind, WheelKind, PinchKind, PanKind, KeyKind, ForeignKind };

struct TARNIS_NO_EXPORT PlotNavigator::Internals final : TwoFingerGesture {
    Internals(PlotNavigator& owner, XYGraphWidget& plot)
        : navigator(owner)
        , view(plot)
        , history(view.state())
        , initialX(PlotAccess::initialX(plot))
        , initialY(PlotAccess::initialY(plot))
        , touch(plot, *this)
        , hadTouch(plot.testAttribute(Qt::WA_AcceptTouchEvents))
    {
        clock.start();
    }

    /// Shows a view of the history. Its axes are held where they neither follow the data nor are as the host set them
    /// up.
    void show(const ViewState& state, const XYGraphWidget& plot)
    {
        view.apply(state);
        const ViewState now = view.state();
        isHeldX = !now.autoX && now.x != PlotAccess::initialX(plot);
        isHeldY = !now.autoY && now.y != PlotAccess::initialY(plot);
    }

    void beginTwoFingers(const QPointF& middle, quint64 timeMs) override;
    void moveTwoFingers(const QPointF& middle, double scale) override;
    void endTwoFingers(bool cancel) override;

    PlotNavigator& navigator;

    ViewControl view;
    ViewHistory history;
    // Wheel: one sequence for each axis, and one for each limit of the colours
    ZoomSteps stepsX, stepsY, stepsLevels;
    QPointF wheelAt; // position and anchor of the last step
    double wheelShareX = 0.0;
    double wheelShareY = 0.0;
    AxisRange wheelX; // the ranges that it showed
    AxisRange wheelY;
    quint64 wheelTime = 0;
    // Middle drag, or two fingers
    bool isPanning = false;
    QPointF panStart; // in the frame's coordinates
    PlotZone panZone = PlotZone::Outside;
    ViewState panView;
    quint64 panTime = 0;
    QRect touchRect; // plot rectangle at the beginning of a gesture of two fingers
    bool keepsMinY = false; // while two fingers zoom
    // Gestures of others: their number, and the time between them
    int serial = 0;
    QElapsedTimer clock;
    // What the host set up last
    AxisRange initialX;
    AxisRange initialY;
    TouchInput touch;
    bool hadTouch; // before the navigator was attached
    bool isInitialized = false; // since the last check
    bool isHeldX = false;
    bool isHeldY = false;
    // In the order of display
    QAction* back = nullptr;
    QAction* forward = nullptr;
    QAction* home = nullptr;
    QAction* zoomIn = nullptr;
    QAction* zoomOut = nullptr;
    QAction* log = nullptr;
    QAction* grid = nullptr;
    QRect markX; // in pixels of the widget
    QRect markY;
};

} // namespace tarnis
