// Accessibility of all console windows: plots with keyboard focus, a key to update, and an accessible name on each
// control.
#pragma once

#include <QObject>

class QWidget;

namespace console {

/// An event filter for all windows of the application, including the library's: a new window gets names for its unnamed
/// controls, F5 and Tab for its Update button, Ctrl+W to close it, and keys for its plots. Escape ends the tool of a
/// plot and does not close a live window. GUI thread.
class WindowAccess : public QObject {
    Q_OBJECT
public:
    explicit WindowAccess(QObject* parent);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;
    void makeAccessible(QWidget& window);
    static void addCloseKey(QWidget& window);
};

} // namespace console
