// A plot by keyboard, and for screen readers.
#pragma once

#include <tarnis/tools/interactivetool.h>

#include <memory>

QT_BEGIN_NAMESPACE
class QDialog;
QT_END_NAMESPACE

namespace tarnis {

/// Attached to a plot, it lets the user do by keyboard what the mouse does on the plot, and describes the plot to
/// assistive technology. A PlotNavigator beside it moves and zooms by keys.
///
/// - Tab and a click give the plot the keyboard; a frame shows where it is.
/// - The menu key and Shift+F10 open a menu: the plot's own actions and editors for the ends of the axes; for a map
///   also its colours, their limits and a new region.
/// - F6 goes to the boxes that the plot has opened (ranges, cuts, regions, peaks), from one to the next and back.
/// - Return and Escape in an editor that the menu opened give the keyboard back to the plot.
/// - The plot has the role of a chart with a name, the visible ranges as its value, and its data as a description; so
///   has the colour bar of a map. A name or description that the host sets goes before these.
class TARNIS_EXPORT PlotKeyboard : public InteractiveTool {
    Q_OBJECT

public:
    /// Attaches to the plot, which owns the tool.
    explicit PlotKeyboard(XYGraphWidget* plot);
    ~PlotKeyboard() override;

    /// Attaches one to every plot of the application that has none: those on the screen, and others when they are first
    /// shown, also in windows that the library opens. In effect until the application object is destroyed; a second
    /// call does nothing. Needs a QApplication.
    static void attachToAll();

    /// The texts for assistive technology, in the language of the application. @{
    QString name() const; ///< title of the plot or of its window
    QString value() const; ///< the visible ranges, "Time from 0 to 100, Counts from 0 to 20"
    QString description() const; ///< the data, "3 of 8 curves with 1024 bins"
    /// @}

    QString stateName() const override; ///< it stores nothing

public Q_SLOTS:
    void openMenu(); ///< the menu of the menu key, in the middle of the plot
    void goToBox(); ///< gives the keyboard to the first box; without any, nothing happens

protected:
    bool handleEvent(QEvent* event) override;

private:
    class Internals;
    TARNIS_NO_EXPORT QList<QDialog*> boxes() const;
    TARNIS_NO_EXPORT void goTo(qsizetype box);

    std::unique_ptr<Internals> m_data;
};

} // namespace tarnis
