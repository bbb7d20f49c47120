// Keyboard support for plots: a menu with all mouse operations, and access to the boxes.
#pragma once

#include <QObject>
#include <QPointer>

class QFocusFrame;
class QMenu;
class XYGraphWidget;

namespace console {

/// An event filter for any number of plots. The menu key opens a plot's tools, and F6 moves the focus to the boxes
/// beside the window and back. The keys that move and zoom are those of the library's navigator. GUI thread.
class PlotKeys : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;
    ~PlotKeys() override;

    /// Enables keyboard focus for the plot; call it once for each plot.
    void serve(XYGraphWidget& plot);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;
    bool isKeyOfEditor(QObject* object, QEvent* event);
    void openTools(XYGraphWidget& plot);
    void addEditors(QMenu& menu, XYGraphWidget& plot);
    void addMapTools(QMenu& menu, XYGraphWidget& plot);
    void watchEditor(XYGraphWidget& plot);

    QPointer<QFocusFrame> m_frame; ///< frame around the plot with the focus
};

} // namespace console
