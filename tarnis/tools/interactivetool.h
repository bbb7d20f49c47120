// The base of all tools that attach to a plot.
#pragma once

#include <tarnis/plots/plotobserver.h>
#include <tarnis/tarnis_export.h>

#include <QJsonObject>
#include <QList>
#include <QObject>

QT_BEGIN_NAMESPACE
class QAction;
class QCursor;
QT_END_NAMESPACE
class XYGraphWidget;

namespace tarnis {

/// A tool that is attached to one plot from its construction to its destruction. It is a child of the plot, which
/// deletes it; a host may delete it earlier at any time. With the last tool the plot gets back the focus policy, the
/// mouse tracking and the cursor that it had before. GUI thread only.
class TARNIS_EXPORT InteractiveTool : public QObject, public PlotObserver {
    Q_OBJECT

public:
    /// What a tool changes in the plot's input.
    enum Need : unsigned int {
        Nothing = 0,
        MouseMoves = 1, ///< moves without a pressed button
        KeyboardFocus = 2, ///< keys, after a click or Tab
        ReadOut = 4 ///< the tool shows what is under the pointer; the plot's own tool tips stay away
    };
    Q_DECLARE_FLAGS(Needs, Need)

    ~InteractiveTool() override;

    /// The plot; null once it has been destroyed, and where null was passed.
    XYGraphWidget* plot() const { return observedPlot(); }
    /// The tools that are attached to a plot, in the order of their attachment.
    static QList<InteractiveTool*> toolsOf(const XYGraphWidget& plot);

    /// What the user can do with the tool, for tool bars and menus, in the order of display. The actions belong to the
    /// tool and follow the application's language. Their shortcuts are for display only: the tool handles the keys
    /// itself while the plot has the focus. Empty here.
    virtual QList<QAction*> actions() const;

    /// The tool's part of a stored view.
    ///
    /// stateName() is its key, the class name without namespaces here. saveState() returns settings and positions in
    /// units of the axes, and an empty object if there is nothing to store, as here. restoreState() takes over what it
    /// knows, keeps the present value for a key that is missing or has a value out of range, and ignores unknown keys;
    /// it never fails. @{
    virtual QString stateName() const;
    virtual QJsonObject saveState() const;
    virtual void restoreState(const QJsonObject& state);
    /// @}

    /// Passes a change of the language to the tool's own actions.
    bool event(QEvent* event) override;

Q_SIGNALS:
    void actionsChanged(); ///< actions() returns another list

protected:
    /// Null is reported as a warning, and the tool does nothing.
    InteractiveTool(XYGraphWidget* plot, Needs needs);

    /// An event of the plot, before the plot handles it. Return true to keep it from the plot and from tools that were
    /// attached earlier.
    virtual bool handleEvent(QEvent* event);
    /// Passes the events of the plot to handleEvent().
    bool eventFilter(QObject* object, QEvent* event) final;

    /// Receives the plot's events before all other tools from now on: for a tool that the user gave the keys to.
    void receiveEventsFirst();
    /// Changes what the tool needs. @{
    void setNeeds(Needs needs);
    Needs needs() const { return m_needs; }
    /// @}
    /// Shows a cursor over the plot until restoreCursor(). While another tool shows one, nothing happens. @{
    void showCursor(const QCursor& cursor);
    void restoreCursor();
    /// @}

private:
    Needs m_needs;
};
Q_DECLARE_OPERATORS_FOR_FLAGS(InteractiveTool::Needs)

} // namespace tarnis
