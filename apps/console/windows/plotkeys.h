// What a plot does for the keyboard: keys that move and zoom it, and a menu with all that the mouse can do on it.
#pragma once

#include <QObject>
#include <QPointer>

class QFocusFrame;
class QMenu;
class XYGraphWidget;

namespace console {

/// An event filter for any number of plots. Arrows move a plot by a tenth of its range, plus and minus zoom along X,
/// Page Up and Page Down along Y, Home shows everything again, the menu key opens its tools, and F6 goes to the boxes
/// beside the window and back. GUI thread.
class PlotKeys : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;
    ~PlotKeys() override;

    /// Lets the plot take the keyboard; once for each plot is enough.
    void serve(XYGraphWidget& plot);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;
    bool isKeyOfEditor(QObject* object, QEvent* event);
    bool isTaken(XYGraphWidget& plot, int key);
    void openTools(XYGraphWidget& plot);
    void addEditors(QMenu& menu, XYGraphWidget& plot);
    void addMapTools(QMenu& menu, XYGraphWidget& plot);
    void watchEditor(XYGraphWidget& plot);

    QPointer<QFocusFrame> m_frame; ///< around the plot that has the keyboard
};

} // namespace console
