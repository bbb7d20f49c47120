#include "plots/boxplacer.h"

#include "screen/placement.h"
#include "screen/windowframe.h"

#include <tarnis/plots/xygraphwidget.h>

#include <QDialog>
#include <QEvent>
#include <QGuiApplication>
#include <QLayout>
#include <QScopedValueRollback>
#include <QScreen>
#include <QVariant>
#include <QWindow>

#include <algorithm>

namespace console {

namespace {

constexpr int paneChars = 30; // width of the pane in average characters
constexpr QLatin1String placerName("boxPlacer");
constexpr char plotProperty[] = "plotOfBox";

bool canFloat()
{
    return canPlaceWindows(QGuiApplication::platformName());
}

/// A box with a plot grows with the pane, a box of numbers does not.
bool hasPlot(const QDialog& box)
{
    return box.findChild<XYGraphWidget*>() != nullptr;
}

} // namespace

bool BoxPlacer::isBox(const QWidget& widget)
{
    return qobject_cast<const QDialog*>(&widget) && widget.windowFlags().testFlag(Qt::FramelessWindowHint)
        && qobject_cast<const XYGraphWidget*>(widget.parentWidget());
}

XYGraphWidget* BoxPlacer::plotOf(const QWidget& box)
{
    return isBox(box) ? qobject_cast<XYGraphWidget*>(box.parentWidget())
                      : qobject_cast<XYGraphWidget*>(box.property(plotProperty).value<QObject*>());
}

BoxPlacer* BoxPlacer::find(const QWidget& window)
{
    return static_cast<BoxPlacer*>(window.findChild<QObject*>(placerName, Qt::FindDirectChildrenOnly));
}

BoxPlacer& BoxPlacer::of(QWidget& window)
{
    auto* const placer = find(window);
    return placer ? *placer : *new BoxPlacer(window); // the window's
}

BoxPlacer::BoxPlacer(QWidget& window)
    : QObject(&window)
    , m_window(window)
    , m_margins(window.layout() ? window.layout()->contentsMargins() : QMargins())
{
    setObjectName(placerName);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &BoxPlacer::arrange);
    window.installEventFilter(this);
}

void BoxPlacer::adopt(QDialog& box)
{
    if (canFloat())
        keep(box);
    else
        makePart(box);
}

void BoxPlacer::makePart(QDialog& box)
{
    if (box.isWindow()) {
        box.setProperty(plotProperty, QVariant::fromValue(box.parent()));
        box.setParent(&m_window, Qt::Widget);
    }
    keep(box);
}

void BoxPlacer::keep(QDialog& box)
{
    if (m_boxes.contains(&box))
        return;
    m_boxes.removeAll(nullptr);
    m_boxes.append(&box);
    m_wanted.insert(&box, box.geometry());
    box.installEventFilter(this);
    connect(&box, &QObject::destroyed, this, [this](const QObject* gone) {
        m_wanted.remove(gone);
        m_timer.start(0);
    });
    m_timer.start(0);
}

QList<QDialog*> BoxPlacer::visibleBoxes() const
{
    QList<QDialog*> boxes;
    for (const QPointer<QDialog>& box : m_boxes) {
        if (box && box->isVisibleTo(&m_window))
            boxes.append(box);
    }
    // Numbers first, the plots of a cut below them.
    std::stable_partition(boxes.begin(), boxes.end(), [](const QDialog* box) { return !hasPlot(*box); });
    return boxes;
}

QRect BoxPlacer::area() const
{
    return m_window.screen() ? m_window.screen()->availableGeometry() : QRect();
}

bool BoxPlacer::needsPane(const QList<QDialog*>& boxes) const
{
    if (!canFloat())
        return !boxes.isEmpty();
    const QRect screen = area();
    return std::any_of(boxes.begin(), boxes.end(), [&](QDialog* box) {
        const QRect wanted(m_wanted.value(box).topLeft(), box->size().expandedTo(box->minimumSizeHint()));
        return !screen.contains(wanted) || m_window.frameGeometry().adjusted(1, 1, -1, -1).intersects(wanted);
    });
}

int BoxPlacer::paneWidth() const
{
    int width = m_window.fontMetrics().averageCharWidth() * paneChars;
    const QList<QDialog*> boxes = visibleBoxes();
    for (const QDialog* const box : boxes)
        width = std::max(width, box->minimumSizeHint().width());
    return width;
}

bool BoxPlacer::isRestored() const
{
    return !m_restoredSize.isEmpty() && m_window.size() == m_restoredSize;
}

void BoxPlacer::restorePane(const QSize& size, int grown)
{
    m_restoredSize = size;
    m_restoredGrown = grown;
}

/// Widens the window by the pane as far as the screen allows, so that the plot keeps its size.
void BoxPlacer::growBy(int width, const QRect& before)
{
    if (m_window.isMaximized() || m_window.isFullScreen())
        return;
    QRect place = before;
    place.setWidth(place.width() + width);
    if (canFloat()) // one that is larger than the screen does not become smaller
        place = inside(place, area().marginsRemoved(frameOf(m_window)).united(before));
    m_window.setGeometry(place);
    m_grown += place.width() - before.width();
}

void BoxPlacer::setPane(bool isOn)
{
    const int extra = isOn ? paneWidth() + m_window.fontMetrics().averageCharWidth() : 0;
    const QRect before = m_window.geometry(); // the layout widens a small window by its margin
    if (QLayout* const layout = m_window.layout()) {
        layout->setContentsMargins(m_margins + QMargins(0, 0, extra, 0));
        layout->activate();
    }
    if (isOn && !m_isPane && isRestored()) {
        m_grown = m_restoredGrown;
        m_window.setGeometry(before);
    } else if (isOn && !m_isPane) {
        m_withoutPane = before;
        growBy(extra, before);
        m_withPane = m_window.geometry();
    } else if (!isOn && m_isPane && before == m_withPane && before != m_withoutPane) {
        m_window.setGeometry(m_withoutPane);
    } else if (!isOn && m_isPane) {
        growBy(-m_grown, before); // unless the user has moved or resized it since
    }
    m_isPane = isOn;
    if (!isOn)
        m_grown = 0;
}

QRect BoxPlacer::paneRect() const
{
    const QRect contents = m_window.rect().marginsRemoved(m_margins);
    QRect pane(contents);
    pane.setLeft(contents.right() - paneWidth() + 1);
    return pane;
}

void BoxPlacer::placeInPane(const QList<QDialog*>& boxes)
{
    QList<int> heights;
    QList<bool> grows;
    for (const QDialog* const box : boxes) {
        const int wanted = hasPlot(*box) ? m_window.fontMetrics().height() * 6 : box->sizeHint().height();
        heights.append(std::max(wanted, box->minimumSizeHint().height()));
        grows.append(hasPlot(*box));
    }
    const QList<QRect> places = stackInPane(paneRect(), heights, grows);
    for (qsizetype i = 0; i < boxes.size(); ++i) {
        const QRect place = places.at(i);
        boxes.at(i)->setGeometry(
            boxes.at(i)->isWindow() ? QRect(m_window.mapToGlobal(place.topLeft()), place.size()) : place);
        // Only beside the active window; otherwise the box would cover other windows.
        if (!boxes.at(i)->isWindow() || m_window.isActiveWindow() || boxes.at(i)->isActiveWindow())
            boxes.at(i)->raise();
    }
}

void BoxPlacer::arrange()
{
    if (m_isArranging || !m_window.isVisible())
        return;
    const QScopedValueRollback guard(m_isArranging, true);
    const QList<QDialog*> boxes = visibleBoxes();
    // Decided once for each geometry of the window: a pane reduces the plot, and with it the sizes of the boxes.
    if (m_decidedFor != m_window.frameGeometry() || m_decidedBoxes != boxes.size()) {
        m_decidedFor = m_window.frameGeometry();
        m_decidedBoxes = boxes.size();
        setPane((isRestored() && !boxes.isEmpty()) || needsPane(boxes));
        if (m_isPane)
            m_restoredSize = {}; // for the first box only
        m_decidedFor = m_window.frameGeometry(); // it may have grown
    }
    if (m_isPane)
        placeInPane(boxes);
}

/// A desktop can ignore the size that a window gets while it is just being shown, and then take the same size again for
/// no change. So the window gets another size, and the right one when the desktop has had the time to apply that.
void BoxPlacer::sendSizeAgain(QWindow& shown)
{
    constexpr int timeToApply = 100; // ms
    if (!shown.isExposed())
        return;
    shown.removeEventFilter(this); // until it is shown again
    const auto found = std::find_if(
        m_boxes.begin(), m_boxes.end(), [&](const QDialog* box) { return box && box->windowHandle() == &shown; });
    if (!m_isPane || found == m_boxes.end())
        return;
    const QScopedValueRollback guard(m_isArranging, true);
    (*found)->resize((*found)->size() + QSize(1, 0));
    QTimer::singleShot(timeToApply, this, &BoxPlacer::arrange);
}

bool BoxPlacer::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() == QEvent::Expose)
        sendSizeAgain(static_cast<QWindow&>(*object));
    const bool isChange = event->type() == QEvent::Move || event->type() == QEvent::Resize
        || event->type() == QEvent::Show || event->type() == QEvent::Hide || event->type() == QEvent::WindowStateChange;
    if (!isChange || m_isArranging)
        return false;
    auto* const box = qobject_cast<QDialog*>(object);
    if (!box || box == &m_window) {
        m_timer.start(0);
        return false;
    }
    if (QWindow* const handle = box->windowHandle(); handle && event->type() == QEvent::Show)
        handle->installEventFilter(this);
    m_wanted.insert(box, box->geometry());
    if (m_isPane && event->type() == QEvent::Move)
        arrange(); // at once, to avoid showing it at the wrong position
    else
        m_timer.start(0);
    return false;
}

} // namespace console
