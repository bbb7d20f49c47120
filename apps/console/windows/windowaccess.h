// What every window of the console has for people without a mouse or without sight: plots that take the keyboard, a key
// to update, a name on each control.
#pragma once

#include <QObject>

class QWidget;

namespace console {

class PlotKeys;

/// Watches all windows of the application, the library's among them: each that comes up gets names on its nameless
/// controls, F5 and Tab on its Update button, Ctrl+W to close it, and keys in its plots. Escape leaves the tool of a
/// plot and does not close a live window. GUI thread.
class WindowAccess : public QObject {
    Q_OBJECT
public:
    explicit WindowAccess(QObject* parent);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;
    void makeAccessible(QWidget& window);
    static void addCloseKey(QWidget& window);

    PlotKeys* m_plotKeys;
};

} // namespace console
