#include "windows/openwindows.h"

#include "plots/boxplacer.h"
#include "plots/plottheme.h"
#include "plots/plottools.h"
#include "screen/placement.h"
#include "screen/windowframe.h"
#include "windows/hiddencreation.h"
#include <tarnis/foundation/retranslator.h>

#include <tarnis/dialogs/graph1ddialog.h>
#include <tarnis/dialogs/graph2ddialog.h>
#include <tarnis/foundation/helpers.h>
#include <tarnis/plots/xygraphwidget.h>
#include <tarnis/tools/interactivetool.h>
#include <tarnis/tools/plottoolbar.h>

#include <QApplication>
#include <QFileInfo>
#include <QJsonObject>
#include <QPointer>
#include <QScopedValueRollback>
#include <QScreen>
#include <QSettings>
#include <QStyle>
#include <QWindow>

#include <algorithm>

namespace console {

namespace {

constexpr char orderProperty[] = "openedAs";
constexpr char idProperty[] = "windowId";

/// Shows the window at the same position, maximized or minimized like the other one. Takes the focus only on request.
void showInPlace(QWidget& window, const QRect& place, Qt::WindowStates states, bool isActive)
{
    window.setGeometry(place);
    window.setWindowState(states & ~Qt::WindowActive);
    window.setAttribute(Qt::WA_ShowWithoutActivating, !isActive);
    window.show();
    if (isActive)
        window.activateWindow();
}

/// The main window remains its parent. Without this the desktop keeps it above the main window and out of the task bar.
void makeIndependent(QWidget& window)
{
    window.setWindowFlags(Qt::Window); // hides it
    window.setAttribute(Qt::WA_DontShowOnScreen, false);
    window.winId(); // makes the native window
    window.windowHandle()->setTransientParent(nullptr);
}

QString settingsKey(const QString& id)
{
    QString name = id;
    return QStringLiteral("windows/") + name.replace(u'/', u'_').replace(u'\\', u'_');
}

/// Whether it was filtered from a map of this main window. The histogram may have changed to curves since.
bool isFilteredMap(const QWidget& window, const QWidget& mainWindow)
{
    const QWidget* const parent = window.parentWidget();
    const bool isOfHistogram = qobject_cast<const Graph2DDialog*>(parent) || qobject_cast<const Graph1DDialog*>(parent);
    return qobject_cast<const Graph2DDialog*>(&window) && isOfHistogram && isWithin(window, mainWindow);
}

/// Moves the filtered maps of the old window to the new one, because they are independent results.
void handOverMaps(const QWidget& old, QWidget& fresh)
{
    const auto maps = old.findChildren<Graph2DDialog*>(QString(), Qt::FindDirectChildrenOnly);
    for (Graph2DDialog* const map : maps) {
        if (!map->isVisible())
            continue; // closed already
        const QRect place = map->normalGeometry();
        const Qt::WindowStates states = map->windowState();
        const bool isActive = map->isActiveWindow();
        map->setParent(&fresh, map->windowFlags()); // hides it
        showInPlace(*map, place, states, isActive);
    }
}

/// Makes an axis automatic whose range is outside of it, because the plot would be empty.
void showReachableRanges(const QWidget& window, XYGraphWidget& plot)
{
    const auto isOutside = [](double min, double max, double first, double last) {
        return first < last && (std::max(min, max) <= first || std::min(min, max) >= last);
    };
    double min = 0.0, max = 0.0, first = 0.0, last = 0.0;
    plot.getInitMinMaxX(first, last);
    if (!plot.getMinMaxX(min, max) && isOutside(min, max, first, last))
        plot.onAutoScaleX(true);
    plot.getInitMinMaxY(first, last);
    if (qobject_cast<const Graph2DDialog*>(&window) && !plot.getMinMaxY(min, max) && isOutside(min, max, first, last))
        plot.onAutoScaleY(true);
}

/// Shows the view of the old window in the new one, for example its range and group of links. The range of an axis that
/// has another name now, for example another unit, is not kept.
void handOverView(const QWidget& old, const QWidget& fresh)
{
    XYGraphWidget* const from = plotOf(old);
    XYGraphWidget* const to = plotOf(fresh);
    if (!from || !to)
        return;
    tarnis::InteractiveTool::cancelDrags(*from);
    QJsonObject view = tarnis::PlotView::stateOf(*from);
    if (from->getNameX() != to->getNameX())
        view.remove(QLatin1String("x"));
    if (from->getNameY() != to->getNameY())
        view.remove(QLatin1String("y"));
    tarnis::PlotView::apply(*to, view);
    showReachableRanges(fresh, *to);
}

/// The size of a new window with a plot: room for the tools and a readable plot, but at most three fifths of the screen
/// in each direction. Other windows keep their own size.
QSize comfortableSize(const QWidget& window, const QSize& screen)
{
    if (!plotOf(window))
        return window.size();
    const QFontMetrics metrics = window.fontMetrics();
    const auto* const bar = window.findChild<tarnis::PlotToolBar*>();
    const int margins = 2 * window.style()->pixelMetric(QStyle::PM_LayoutLeftMargin);
    const int barWidth = bar ? bar->sizeHint().width() + margins : 0; // with all its buttons
    const QSize wanted(std::max(110 * metrics.averageCharWidth(), barWidth), 32 * metrics.height());
    return window.size().expandedTo(wanted.boundedTo(screen * 3 / 5));
}

} // namespace

bool isWithin(const QWidget& widget, const QWidget& window)
{
    const QWidget* within = &widget;
    while (within && within != &window)
        within = within->parentWidget();
    return within != nullptr;
}

OpenWindows::OpenWindows(QWidget& mainWindow, QSettings& settings)
    : QObject(&mainWindow)
    , m_mainWindow(mainWindow)
    , m_settings(settings)
    , m_views(QFileInfo(settings.fileName()).path() + QStringLiteral("/views"))
{
    connect(&m_windows, &ModelessWidgetManager::onClosed, this, &OpenWindows::changed);
    connect(qApp, &QApplication::focusChanged, this, [this](const QWidget* /*old*/, QWidget* now) {
        if (now && now->window() != &m_mainWindow)
            m_front = now->window();
    });
}

OpenWindows::~OpenWindows()
{
    const auto windows = m_windows.map.values();
    m_windows.map.clear();
    m_windows.disconnect(this);
    qDeleteAll(windows);
}

QWidget* OpenWindows::show(
    const QString& id, const std::function<QWidget*()>& make, const std::function<QString()>& title)
{
    QWidget* window = m_windows.map.value(keyOf(id));
    const bool isNew = !window;
    if (isNew) {
        window = enter(id, createHidden(make), title);
        applyTheme(*window); // the style is part of the view
        restoreView(*window, id);
        reapplyTheme(*window); // applies the current colours
        place(*window, id);
    }
    bringForward(*window);
    if (isNew)
        Q_EMIT changed();
    return window;
}

void OpenWindows::place(QWidget& window, const QString& id)
{
    const QScreen* const screen = m_mainWindow.screen();
    if (!screen)
        return;
    const QMargins frame = frameOf(m_mainWindow);
    const QRect area = screen->availableGeometry().marginsRemoved(frame);
    const QSize minSize = window.minimumSizeHint().expandedTo(window.minimumSize());
    const QRect stored = m_settings.value(settingsKey(id) + QLatin1String("/place")).toRect();
    const QSize size = (stored.isValid() ? stored.size() : comfortableSize(window, area.size()))
                           .expandedTo(minSize)
                           .boundedTo(area.size());
    if (m_settings.value(settingsKey(id) + QLatin1String("/maximized")).toBool())
        window.setWindowState(Qt::WindowMaximized);
    if (!canPlaceWindows(QGuiApplication::platformName())) {
        window.resize(size);
        return;
    }
    if (stored.isValid()) {
        const QScreen* const home = QGuiApplication::screenAt(stored.center());
        const QRect room = home ? home->availableGeometry().marginsRemoved(frame) : area;
        window.setGeometry(inside(QRect(stored.topLeft(), size), room));
        const QVariant pane = m_settings.value(settingsKey(id) + QLatin1String("/pane"));
        if (pane.isValid() && plotOf(window))
            BoxPlacer::of(window).restorePane(size, pane.toInt());
        return;
    }
    QList<QRect> occupied;
    if (m_mainWindow.isVisible() && !m_mainWindow.isMinimized())
        occupied.append(m_mainWindow.frameGeometry());
    const QList<QWidget*> others = onScreen();
    for (const QWidget* const other : others)
        occupied.append(other->frameGeometry());
    const QRect everything = screen->availableGeometry();
    const QSize own = window.size().expandedTo(minSize).boundedTo(area.size()).grownBy(frame);
    const QSize comfortable = size.grownBy(frame); // unless only the own size finds a free place
    const bool isOwnOneFree = !hasRoomFor(comfortable, everything, occupied) && hasRoomFor(own, everything, occupied);
    const QRect cell = placeOfNewWindow(isOwnOneFree ? own : comfortable, everything, occupied);
    window.setGeometry(cell.marginsRemoved(frame));
}

void OpenWindows::storePlace(const QWidget& window)
{
    const QString key = settingsKey(window.property(idProperty).toString());
    m_settings.setValue(
        key + QLatin1String("/place"), window.isMaximized() ? window.normalGeometry() : window.geometry());
    m_settings.setValue(key + QLatin1String("/maximized"), window.isMaximized());
    const BoxPlacer* const placer = BoxPlacer::find(window);
    if (placer && placer->hasPane() && !window.isMaximized())
        m_settings.setValue(key + QLatin1String("/pane"), placer->grownBy());
    else
        m_settings.remove(key + QLatin1String("/pane"));
}

void OpenWindows::storePlaces()
{
    const auto windows = m_windows.map.values();
    for (const QWidget* const window : windows) {
        if (window && window->isVisible() && !window->isMinimized())
            storePlace(*window);
        if (window && window->isVisible())
            storeView(*window);
    }
}

void OpenWindows::storeView(const QWidget& window)
{
    XYGraphWidget* const plot = plotOf(window);
    if (plot)
        tarnis::InteractiveTool::cancelDrags(*plot); // else the view would be what the pointer has just reached
    const QString error = plot ? m_views.save(*plot, window.property(idProperty).toString()) : QString();
    if (!error.isEmpty())
        Q_EMIT viewFailed(error);
}

void OpenWindows::restoreView(const QWidget& window, const QString& id)
{
    XYGraphWidget* const plot = plotOf(window);
    if (!plot)
        return;
    const QString error = m_views.restore(*plot, id);
    if (!error.isEmpty())
        Q_EMIT viewFailed(error);
    showReachableRanges(window, *plot);
}

bool OpenWindows::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() == QEvent::Close && !m_keepsPlaces) {
        const auto* const window = qobject_cast<const QWidget*>(object);
        if (window && window->isVisible() && !window->isMinimized())
            storePlace(*window);
        if (window && window->isVisible())
            storeView(*window);
    }
    return QObject::eventFilter(object, event);
}

QStringList OpenWindows::ids() const
{
    QStringList found;
    const QList<QWidget*> windows = all();
    for (const QWidget* const window : windows) {
        if (const QString id = window->property(idProperty).toString(); !id.isEmpty())
            found.append(id);
    }
    return found;
}

void* OpenWindows::keyOf(const QString& id)
{
    return const_cast<QString*>(&*m_ids.insert(id).first); // used only as a key, never written
}

QWidget* OpenWindows::enter(const QString& id, QWidget* window, const std::function<QString()>& title)
{
    m_windows.map.insert(keyOf(id), window);
    connect(window, &QObject::destroyed, &m_windows, &ModelessWidgetManager::onDestroyed);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setProperty(orderProperty, qulonglong(++m_opened));
    window->setProperty(idProperty, id);
    addToolBar(*window);
    makeIndependent(*window);
    window->installEventFilter(this);
    tarnis::setTranslatedTitle(*window, title);
    return window;
}

QWidget* OpenWindows::find(const QString& id)
{
    QWidget* const window = m_windows.map.value(keyOf(id));
    return window && window->isVisible() ? window : nullptr; // null if closed but not yet destroyed
}

void OpenWindows::replace(
    const QString& id, const std::function<QWidget*()>& make, const std::function<QString()>& title)
{
    QWidget* const old = find(id);
    if (!old)
        return;
    const QPointer<QWidget> active = QApplication::activeWindow();
    QWidget* const fresh = enter(id, createHidden(make), title);
    applyTheme(*fresh); // the style is part of the view
    handOverView(*old, *fresh);
    disconnect(old, nullptr, &m_windows, nullptr); // the new window uses its key
    fresh->setProperty(orderProperty, old->property(orderProperty));
    showInPlace(*fresh, old->normalGeometry(), old->windowState(), active == old);
    handOverMaps(*old, *fresh);
    const auto replacement = [&](QWidget* window) { return window && isWithin(*window, *old) ? fresh : window; };
    m_front = replacement(m_front);
    QWidget* const next = replacement(active); // the boxes of the old window are closed with it
    old->close();
    if (next && active != old)
        next->activateWindow(); // if the window manager gives the focus to new windows
}

void OpenWindows::bringForward(QWidget& window)
{
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

QList<QWidget*> OpenWindows::onScreen() const
{
    QList<QWidget*> found = all();
    found.removeIf([](const QWidget* window) { return window->isMinimized(); });
    return found;
}

QList<QWidget*> OpenWindows::all() const
{
    QList<QWidget*> found;
    const QWidgetList all = QApplication::topLevelWidgets();
    for (QWidget* const window : all) {
        const bool isFiltered = isFilteredMap(*window, m_mainWindow);
        const bool isOurs = window->property(orderProperty).isValid() && window->parentWidget() == &m_mainWindow;
        if ((isOurs || isFiltered) && window->isVisible() && !window->isModal())
            found.append(window);
    }
    // A filtered map has no number and comes last.
    const auto order = [](const QWidget* window) {
        const QVariant number = window->property(orderProperty);
        return number.isValid() ? number.toULongLong() : ~0ULL;
    };
    std::stable_sort(
        found.begin(), found.end(), [&](const QWidget* a, const QWidget* b) { return order(a) < order(b); });
    return found;
}

void OpenWindows::arrange(const std::function<QList<QRect>(int count, const QRect& area)>& cells)
{
    const QList<QWidget*> windows = onScreen();
    const QScreen* const screen = m_mainWindow.screen();
    if (!screen || !canPlaceWindows(QGuiApplication::platformName()))
        return;
    const QRect whole = screen->availableGeometry();
    QSize minSize;
    for (const QWidget* const window : windows)
        minSize =
            minSize.expandedTo(window->minimumSizeHint().expandedTo(window->minimumSize()).grownBy(frameOf(*window)));
    const auto fit = [&](const QRect& area) {
        const QList<QRect> places = cells(int(windows.size()), area);
        return std::all_of(places.begin(), places.end(),
            [&](const QRect& place) { return place.size().boundedTo(minSize) == minSize; });
    };
    // On a small screen windows may cover the console and each other rather than become too small to read.
    const QRect area = fit(consoleSplit(whole).windows) ? placeConsole(whole) : whole;
    const QList<QRect> places =
        area == whole && !fit(whole) ? cascadeCells(int(windows.size()), whole) : cells(int(windows.size()), area);
    for (qsizetype i = 0; i < windows.size(); ++i) {
        QWidget* const window = windows.at(i);
        window->showNormal();
        const QMargins frame = frameOf(*window);
        const QRect inside = places.at(i).marginsRemoved(frame);
        // A window that is larger than its cell must still be on the screen.
        const QSize size = inside.size().expandedTo(window->minimumSizeHint()).expandedTo(window->minimumSize());
        QRect place(inside.topLeft(), size);
        place = moveIn(place, area.marginsRemoved(frame));
        window->setGeometry(moveIn(place, screen->availableGeometry().marginsRemoved(frame)));
        window->raise();
    }
}

ScreenSplit OpenWindows::consoleSplit(const QRect& area) const
{
    const QSize minSize = m_mainWindow.minimumSizeHint().expandedTo(m_mainWindow.minimumSize());
    if (!m_mainWindow.isVisible() || m_mainWindow.isMinimized())
        return { {}, area };
    return splitScreen(area, m_mainWindow.frameGeometry(), minSize.grownBy(frameOf(m_mainWindow)));
}

/// Places the console. Returns the remaining area for the windows.
QRect OpenWindows::placeConsole(const QRect& area)
{
    const QMargins frame = frameOf(m_mainWindow);
    const ScreenSplit split = consoleSplit(area);
    if (split.console.isNull())
        return split.windows;
    if (split.console != m_mainWindow.frameGeometry()) {
        m_mainWindow.showNormal();
        m_mainWindow.setGeometry(split.console.marginsRemoved(frame));
    }
    return split.windows;
}

void OpenWindows::tile()
{
    arrange(tileCells);
}

void OpenWindows::cascade()
{
    arrange(cascadeCells);
}

bool OpenWindows::closeAll()
{
    QList<QPointer<QWidget>> windows; // one may close another
    for (auto entry = m_windows.map.cbegin(); entry != m_windows.map.cend(); ++entry)
        windows.append(entry.value());
    bool isEachClosed = true;
    for (const QPointer<QWidget>& window : std::as_const(windows)) {
        if (window && !window->close())
            isEachClosed = false;
    }
    return isEachClosed;
}

bool OpenWindows::closeAllAsStored()
{
    const QScopedValueRollback keeping(m_keepsPlaces, true);
    return closeAll();
}

bool OpenWindows::closeUnsaved()
{
    const auto windows = m_windows.map.values();
    const auto found = std::find_if(
        windows.begin(), windows.end(), [](const QWidget* window) { return window && window->isWindowModified(); });
    if (found == windows.end())
        return false;
    (*found)->showNormal();
    (*found)->raise();
    (*found)->close();
    return true;
}

} // namespace console
