// What a plot does for the keyboard: a menu with all that the mouse can do on it, and the way to its boxes.
#pragma once

#include <QObject>
#include <QPointer>

class QFocusFrame;
class QMenu;
class XYGraphWidget;

namespace console {

/// An event filter for any number of plots. The menu key opens a plot's tools, and F6 goes to the boxes beside the
/// window and back. The keys that move and zoom are those of the library's navigator. GUI thread.
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
    void openTools(XYGraphWidget& plot);
    void addEditors(QMenu& menu, XYGraphWidget& plot);
    void addMapTools(QMenu& menu, XYGraphWidget& plot);
    void watchEditor(XYGraphWidget& plot);

    QPointer<QFocusFrame> m_frame; ///< around the plot that has the keyboard
};

} // namespace console
