// Zooms and moves a plot by wheel, middle button, touchpad, touch screen and keys, with a history.
#pragma once

#include <tarnis/plots/plotoverlay.h>
#include <tarnis/tools/interactivetool.h>

#include <memory>

QT_BEGIN_NAMESPACE
class QKeyEvent;
class QMouseEvent;
class QNativeGestureEvent;
class QWheelEvent;
QT_END_NAMESPACE

namespace tarnis {

/// Attached to a plot, it adds these gestures; all other events are handled by the plot.
///
/// - Wheel over the plot: zooms at the pointer, curves along X, maps along both axes; with Shift along Y, with Ctrl
///   along both. Wheel over an axis: that axis. Wheel over the colour bar of a map: the upper limit, with Shift the
///   lower one. Inside a scroll area, the wheel without Ctrl only works if the plot has the keyboard focus.
/// - Middle drag: moves the plot, begun on an axis along that axis. Escape cancels it.
/// - Double click, while no mouse tool is active: both axes follow the data again; on an axis, only that axis.
/// - Backspace and Alt+Left go back to the previous view, Alt+Right forward again; so do the side buttons of a mouse.
/// - Arrows move, plus and minus zoom along X, Page Up and Page Down along Y, Home shows everything; G switches the
///   grid, L the logarithmic scale.
///
/// A change by the user stops automatic scaling of that axis only; a click on the mark "X held" or "Y held" on the plot
/// resumes it. Such a range is kept when the host sets up the axis again with initManualX() or initManualY(), if the
/// new axis overlaps it. Zooming in is limited to 4 bins (a quarter of fewer than 16), 1 count or a tenth of a decade,
/// zooming out to 1.2 times the data. The history keeps 50 views: ranges, limits of colours, scale type and which axes
/// follow the data. Each gesture, including those of the plot's own tools, is one entry; new data make no entry.
class TARNIS_EXPORT PlotNavigator : public InteractiveTool, protected PlotOverlay {
    Q_OBJECT

public:
    /// Attaches to the plot, which owns the navigator.
    explicit PlotNavigator(XYGraphWidget* plot);
    ~PlotNavigator() override;

    bool canGoBack() const; ///< whether there is a previous view
    bool canGoForward() const; ///< whether the user went back from a view
    /// Whether the user has changed the range of an axis, which therefore does not follow the data.
    bool isHeld(Qt::Orientation axis) const;

    /// Back, forward, all data, zoom in and out, logarithmic scale and grid.
    QList<QAction*> actions() const override;
    QString stateName() const override; ///< stores nothing, as the view is stored by PlotView

public Q_SLOTS:
    /// Shows the previous or next view. Without one, emits message(). @{
    void goBack();
    void goForward();
    /// @}
    void goHome(); ///< both axes follow the data; goBack() reverts it
    void zoomIn(); ///< one step about the middle, along X on curves and along both axes on maps
    void zoomOut(); ///< the opposite
    /// The axis follows the data again. @{
    void fitX();
    void fitY();
    /// @}

Q_SIGNALS:
    void historyChanged(); ///< canGoBack(), canGoForward() or isHeld() may have changed
    void message(const QString& text); ///< a sentence for a status bar, in the application's language

protected:
    bool handleEvent(QEvent* event) override;
    bool handlePress(const QMouseEvent& event) override;
    bool handleMove(const QMouseEvent& event) override;
    bool handleRelease(const QMouseEvent& event) override;
    bool handleDoubleClick(const QMouseEvent& event) override;
    bool handleWheel(QWheelEvent& event) override;
    bool handleKey(const QKeyEvent& event) override;
    bool claimsKey(const QKeyEvent& event) const override;
    void handleHide() override;
    QList<QRect> cornerBoxes() const override; ///< the marks of held axes
    void plotChanged(Changes changes) override;
    void axisInitialized(Qt::Orientation axis, double previousMin, double previousMax) override;
    void paintOverlay(QPainter& painter, const PlotMapping& mapping) override;
    bool isSaved() const override;

private:
    struct Internals;
    TARNIS_NO_EXPORT bool handlePinch(const QNativeGestureEvent& event);
    TARNIS_NO_EXPORT void beginPan(const QPointF& position, quint64 timeMs);
    TARNIS_NO_EXPORT void endPan(bool cancel);
    TARNIS_NO_EXPORT bool takeFocus();
    TARNIS_NO_EXPORT void placeWheel(const PlotMapping& mapping, const QWheelEvent& event);
    TARNIS_NO_EXPORT void zoomAxis(Qt::Orientation axis, double share, int eighths);
    TARNIS_NO_EXPORT void zoomLevels(bool upper, int eighths);
    TARNIS_NO_EXPORT bool noteChange();
    TARNIS_NO_EXPORT void commit(int kind, int serial, quint64 timeMs);
    TARNIS_NO_EXPORT void zoomAboutMiddle(int eighths);
    TARNIS_NO_EXPORT QString markText(Qt::Orientation axis) const;
    TARNIS_NO_EXPORT QRect markFrame(Qt::Orientation axis) const;
    TARNIS_NO_EXPORT void fit(Qt::Orientation axis, bool both);
    TARNIS_NO_EXPORT void switchLog();
    TARNIS_NO_EXPORT void switchGrid();
    TARNIS_NO_EXPORT void makeActions();
    TARNIS_NO_EXPORT void updateActions();

    std::unique_ptr<Internals> m_data;
};

} // namespace tarnis
