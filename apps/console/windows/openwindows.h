// The console's open windows: one for each purpose, brought forward, laid out on the screen and closed together.
#pragma once

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

/// `count` cells that fill the area, row by row, the last row stretched to it. Cells of a few windows are about as wide
/// as a plot likes to be.
QList<QRect> tileCells(int count, const QRect& area);

/// `count` cells of one size, each further right and down, beginning again at the corner when the area ends.
QList<QRect> cascadeCells(int count, const QRect& area);

/// How the screen is shared between the console and its windows, so that none covers another.
struct Shares {
    QRect console;
    QRect windows;
};

/// The console stays where it is if half of the area is free beside, above or below it. Otherwise it gets a strip at
/// the left or, where it is too wide for that, at the top, of at least its least size but not more than three fifths.
Shares sharesOf(const QRect& area, const QRect& console, const QSize& least);

/// True if it is the window, or a part or box of it, at any depth. QWidget::isAncestorOf() ends at a window's border.
bool isWithin(const QWidget& widget, const QWidget& window);

/// False where a window cannot place itself, as on Wayland. `platform` as QGuiApplication::platformName() gives it.
bool canPlaceWindows(const QString& platform);

/// The frame that the window manager has given to the window; none before it is on the screen.
QMargins frameOf(const QWidget& window);

/// GUI thread. Windows belong to the main window, but not on the screen: they have an entry of their own in the task
/// bar, may be behind it, and stay when it is minimized. They delete themselves when they close, and are closed with
/// it.
class OpenWindows : public QObject {
    Q_OBJECT
public:
    /// `settings` keeps the places of the windows from one run to the next; it must outlive this.
    OpenWindows(QWidget& mainWindow, QSettings& settings);
    ~OpenWindows() override;

    /// Shows the window of this id and brings it forward; `make` makes it if there is none. `title` is asked now and
    /// with each change of the language.
    QWidget* show(const QString& id, const std::function<QWidget*()>& make, const std::function<QString()>& title);
    /// The ids of the open windows, in the order in which they were opened.
    QStringList ids() const;
    /// Writes the place of every open window to the settings, and the views of their plots to files beside them.
    void storePlaces();
    /// The open window of this id, a minimized one too; null if there is none.
    QWidget* find(const QString& id);
    /// Puts the window that `make` makes in the place of the open one, which closes: its geometry, its place among the
    /// others, the keyboard if it had it, and the maps that were filtered out of it.
    void replace(const QString& id, const std::function<QWidget*()>& make, const std::function<QString()>& title);
    /// The windows on the screen that can be laid out, in the order in which they were opened. Boxes and
    /// the windows that belong to a plot are not among them.
    QList<QWidget*> onScreen() const;
    /// All of them, minimized ones too.
    QList<QWidget*> all() const;
    /// The one that had the keyboard last; null if it is closed, or none had.
    QWidget* front() const { return m_front; }
    /// Brings the console's window or one of the others forward.
    static void bringForward(QWidget& window);

    /// Both leave a part of the screen to the console.
    void tile();
    void cascade();
    /// False if one stays, as for a question about changes.
    bool closeAll();
    /// Asks the first window with work that is not saved (QWidget::isWindowModified()) to close. False if there is
    /// none. It closes, which changed() tells, or stays, which kept() tells.
    bool closeUnsaved();
    /// To be called by a window that was asked to close and stays.
    void keep() { Q_EMIT kept(); }

Q_SIGNALS:
    /// One has opened or closed.
    void changed();
    void kept();
    /// The view of a plot was not stored or not restored.
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
    Shares consoleShares(const QRect& area) const;
    QRect placeConsole(const QRect& area);

    QWidget& m_mainWindow;
    QSettings& m_settings;
    tarnis::PlotView m_views; ///< in the folder "views" beside the settings
    ModelessWidgetManager m_windows; ///< by address of the id in m_ids
    std::set<QString> m_ids;
    QPointer<QWidget> m_front;
    unsigned long long m_opened = 0; ///< counts the windows ever opened
};

} // namespace console
