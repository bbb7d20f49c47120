// The base of all tools that attach to a plot.
#pragma once

#include <tarnis/plots/plotobserver.h>
#include <tarnis/tarnis_export.h>

#include <QJsonObject>
#include <QList>
#include <QObject>
#include <QRect>

QT_BEGIN_NAMESPACE
class QAction;
class QCursor;
class QKeyEvent;
class QMouseEvent;
class QWheelEvent;
QT_END_NAMESPACE
class XYGraphWidget;

namespace tarnis {

/// A tool that is attached to one plot from its construction to its destruction. It is a child of the plot, which
/// deletes it; a host may delete it earlier at any time. When the last tool is removed, the plot's previous focus
/// policy, mouse tracking and cursor are restored. GUI thread only.
class TARNIS_EXPORT InteractiveTool : public QObject, public PlotObserver {
    Q_OBJECT

public:
    /// Input that a tool needs from the plot.
    enum Need : unsigned int {
        Nothing = 0,
        MouseMoves = 1, ///< mouse moves without a pressed button
        KeyboardFocus = 2, ///< key events, after a click or Tab
        ReadOut = 4 ///< the tool shows a read-out at the pointer; the plot's own tool tips are disabled
    };
    Q_DECLARE_FLAGS(Needs, Need)

    ~InteractiveTool() override;

    /// The plot; null after it has been destroyed, or if null was passed.
    XYGraphWidget* plot() const { return observedPlot(); }
    /// The tools that are attached to a plot, in the order of their attachment.
    static QList<InteractiveTool*> toolsOf(const XYGraphWidget& plot);
    /// Cancels the drags under way on a plot, as hiding it does. Call it before its view is stored, for example.
    static void cancelDrags(XYGraphWidget& plot);

    /// The actions of the tool for tool bars and menus, in the order of display. They are owned by the tool and follow
    /// the application's language. Their shortcuts are for display only: the tool handles the keys itself while the
    /// plot has the focus. The default implementation returns an empty list.
    virtual QList<QAction*> actions() const;

    /// Boxes that the tool draws over the data, in the frame's coordinates of PlotMapping. The texts of PlotCrosshair
    /// and PlotRuler avoid them. An override must not depend on these texts. The default implementation returns
    /// cornerBoxes() and nameBoxes().
    virtual QList<QRect> overlayBoxes() const;

    /// The tool's part of a stored view.
    ///
    /// stateName() is its key, the class name without namespaces here. saveState() returns settings and positions in
    /// units of the axes, and an empty object if there is nothing to store, as here. restoreState() sets known keys,
    /// keeps the current value for a key that is missing or has a value out of range, and ignores unknown keys; it
    /// never fails. @{
    virtual QString stateName() const;
    virtual QJsonObject saveState() const;
    virtual void restoreState(const QJsonObject& state);
    /// @}

    /// Passes a change of the language to the tool's own actions.
    bool event(QEvent* event) override;

Q_SIGNALS:
    void actionsChanged(); ///< actions() has changed

protected:
    /// Null causes a warning, and the tool does nothing.
    InteractiveTool(XYGraphWidget* plot, Needs needs);

    /// An event of the plot, before the plot handles it. Return true to hide it from the plot and from tools that were
    /// attached earlier. This one passes the event to the functions below.
    virtual bool handleEvent(QEvent* event);
    /// Events of the mouse and of keys; each returns false here. Positions are in pixels of the plot. Keys arrive only
    /// while the plot itself has the keyboard, not an editor in it. @{
    virtual bool handlePress(const QMouseEvent& event);
    virtual bool handleMove(const QMouseEvent& event);
    virtual bool handleRelease(const QMouseEvent& event);
    virtual bool handleDoubleClick(const QMouseEvent& event);
    virtual bool handleWheel(QWheelEvent& event);
    virtual bool handleKey(const QKeyEvent& event);
    /// @}
    /// True for a key that the tool would handle and that a shortcut of the window must not take, as Escape in a
    /// dialog; false here.
    virtual bool claimsKey(const QKeyEvent& event) const;
    /// The pointer has left the plot, or the plot is hidden. A drag under way sees no release after that. @{
    virtual void handleLeave();
    virtual void handleHide();
    /// @}
    /// Boxes in the corners of the plot, in the coordinates of overlayBoxes() and part of these. All texts of other
    /// tools avoid them; the tool repaints all overlays when they move. An override must not depend on other texts. The
    /// default implementation returns an empty list.
    virtual QList<QRect> cornerBoxes() const;
    /// Names of things in the plot, part of overlayBoxes(), which names of markers avoid. An override may depend on
    /// cornerBoxes() only. The default implementation returns an empty list.
    virtual QList<QRect> nameBoxes() const;
    /// Passes the events of the plot to handleEvent().
    bool eventFilter(QObject* object, QEvent* event) final;

    /// The boxes in the corners of a plot, of all its tools.
    static QList<QRect> cornerBoxesOf(const XYGraphWidget& plot);
    /// The names in a plot, of all its tools.
    static QList<QRect> nameBoxesOf(const XYGraphWidget& plot);

    /// Makes this tool receive the plot's events before all other tools: for a tool that the user has given the
    /// keyboard focus.
    void receiveEventsFirst();
    /// Changes what the tool needs. @{
    void setNeeds(Needs needs);
    Needs needs() const { return m_needs; }
    /// @}
    /// Shows a cursor over the plot until restoreCursor(). Ignored while another tool shows a cursor. @{
    void showCursor(const QCursor& cursor);
    void restoreCursor();
    /// @}

private:
    Needs m_needs;
};
Q_DECLARE_OPERATORS_FOR_FLAGS(InteractiveTool::Needs)

} // namespace tarnis
