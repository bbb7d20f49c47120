// The console's open windows: one for each purpose; raises, arranges and closes them.
#pragma once

#include "screen/placement.h"

#include <tarnis/foundation/modelesswidgetmanager.h>
#include <tarnis/tools/plotview.h>

#include <QList>
#include <QObject>
#include <QPointer>
#include <QRect>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <set>

class QSettings;

namespace console {

/// True if it is the window, or a part or box of it, at any depth. QWidget::isAncestorOf() stops at window boundaries.
bool isWithin(const QWidget& widget, const QWidget& window);

/// GUI thread. Windows are children of the main window, but independent on the screen: they have their own entry in the
/// task bar, may be behind it, and stay visible when it is minimized. They delete themselves when they close, and are
/// closed with it.
class OpenWindows : public QObject {
    Q_OBJECT
public:
    /// `settings` stores the positions of the windows; it must outlive this object.
    OpenWindows(QWidget& mainWindow, QSettings& settings);
    ~OpenWindows() override;

    /// Shows and raises the window of this id; `make` creates it if necessary. `title` is called now and on each
    /// language change.
    QWidget* show(const QString& id, const std::function<QWidget*()>& make, const std::function<QString()>& title);
    /// The ids of the open windows, in the order in which they were opened.
    QStringList ids() const;
    /// Writes the geometry of every open window to the settings, and the views of their plots to files beside them.
    void storePlaces();
    /// The open window of this id, possibly minimized; null if it is not open.
    QWidget* find(const QString& id);
    /// Replaces the open window by one that `make` creates. The new one adopts its geometry, its order, the focus if it
    /// had it, the view of its plot, and its filtered maps. The old one is closed.
    void replace(const QString& id, const std::function<QWidget*()>& make, const std::function<QString()>& title);
    /// The visible windows that can be arranged, in the order of opening. Excludes boxes and the windows of a plot.
    QList<QWidget*> onScreen() const;
    /// All windows, including minimized ones.
    QList<QWidget*> all() const;
    /// The last active window; null if it is closed, or none was active.
    QWidget* front() const { return m_front; }
    /// Raises the console's window or one of the others.
    static void bringForward(QWidget& window);

    /// Both reserve a part of the screen for the console.
    void tile();
    void cascade();
    /// False if one stays open, for example because of unsaved changes.
    bool closeAll();
    /// The same, without storing geometry and views again.
    bool closeAllAsStored();
    /// Requests the first window with unsaved work (QWidget::isWindowModified()) to close. False without one. Then
    /// changed() is emitted if it closes, or kept() if it stays open.
    bool closeUnsaved();
    /// Call it when a window stays open after a request to close.
    void keep() { Q_EMIT kept(); }

Q_SIGNALS:
    /// A window was opened or closed.
    void changed();
    void kept();
    /// The view of a plot could not be stored or restored.
    void viewFailed(const QString& text);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;
    void place(QWidget& window, const QString& id);
    void storePlace(const QWidget& window);
    void storeView(const QWidget& window);
    void restoreView(const QWidget& window, const QString& id);
    void* keyOf(const QString& id);
    QWidget* enter(const QString& id, QWidget* window, const std::function<QString()>& title);
    void arrange(const std::function<QList<QRect>(int count, const QRect& area)>& cells);
    ScreenSplit consoleSplit(const QRect& area) const;
    QRect placeConsole(const QRect& area);

    QWidget& m_mainWindow;
    QSettings& m_settings;
    tarnis::PlotView m_views; ///< in the folder "views" beside the settings
    ModelessWidgetManager m_windows; ///< by address of the id in m_ids
    std::set<QString> m_ids;
    QPointer<QWidget> m_front;
    bool m_keepsPlaces = false; ///< closing windows does not store their places
    unsigned long long m_opened = 0; ///< number of windows ever opened
};

} // namespace console
