#include "windows/plotkeys.h"

#include "app/availability.h"
#include "windows/boxplacer.h"

#include <tarnis/foundation/helpers.h>
#include <tarnis/plots/colorbarwidget.h>
#include <tarnis/plots/viewselectedroi.h>
#include <tarnis/plots/xy2dgraphwidget.h>

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QDialog>
#include <QFocusFrame>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QPushButton>
#include <QShortcut>

#include <algorithm>
#include <cmath>
#include <memory>

namespace console {

namespace {

constexpr double maxEdge = 1e9; // limit of a region's edge, prevents overflow of widths
constexpr int boxKey = Qt::Key_F6;

struct Range {
    double min = 0.0;
    double max = 0.0;

    double width() const { return max - min; }
};

Range rangeX(XYGraphWidget& plot)
{
    Range range;
    plot.getMinMaxX(range.min, range.max);
    return range;
}

Range rangeY(XYGraphWidget& plot)
{
    Range range;
    plot.getMinMaxY(range.min, range.max);
    return range;
}

/// Access to the protected positions of the labels that open an editor.
class PlotLabels : public XYGraphWidget {
public:
    struct Label {
        const char* name;
        QRect rect;
    };
    static QList<Label> of(XYGraphWidget& plot)
    {
        return { { QT_TRANSLATE_NOOP("console::PlotKeys", "&Left End of the Axis..."),
                     plot.*(&PlotLabels::m_labelRectMinX) },
            { QT_TRANSLATE_NOOP("console::PlotKeys", "&Right End of the Axis..."),
                plot.*(&PlotLabels::m_labelRectMaxX) },
            { QT_TRANSLATE_NOOP("console::PlotKeys", "&Bottom End of the Axis..."),
                plot.*(&PlotLabels::m_labelRectMinY) },
            { QT_TRANSLATE_NOOP("console::PlotKeys", "&Top End of the Axis..."),
                plot.*(&PlotLabels::m_labelRectMaxY) } };
    }
    /// A label opens its editor without a tool, and with the two tools for single clicks.
    static bool isEditable(XYGraphWidget& plot)
    {
        const int mode = plot.*(&PlotLabels::m_mode);
        return mode == 0 || mode == 2 || mode == 3;
    }
};

class MapRegions : public XY2DGraphWidget {
public:
    static bool isOffered(XY2DGraphWidget& map) { return map.*(&MapRegions::m_actRoi) != nullptr; }
};

void sendMouse(QWidget& widget, QEvent::Type type, QPoint position, Qt::MouseButton button)
{
    const Qt::MouseButtons held = type == QEvent::MouseButtonPress ? button : Qt::NoButton;
    QMouseEvent event(type, QPointF(position), QPointF(widget.mapToGlobal(position)), button, held, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

void click(QWidget& widget, QPoint position)
{
    sendMouse(widget, QEvent::MouseButtonPress, position, Qt::LeftButton);
    sendMouse(widget, QEvent::MouseButtonRelease, position, Qt::LeftButton);
}

/// Adds the middle half of the visible range as a new region.
void addMiddle(XY2DGraphWidget& map)
{
    map.SetRoiEnabled(true);
    ViewSelectedROI* const regions = map.GetViewSelectedROI();
    if (!regions)
        return;
    const auto edge = [](const Range& range, double share) {
        return int(std::lround(std::clamp(range.min + range.width() * share, -maxEdge, maxEdge)));
    };
    const Range x = rangeX(map);
    const Range y = rangeY(map);
    regions->addRoi(QRect(QPoint(edge(x, 0.25), edge(y, 0.25)), QPoint(edge(x, 0.75), edge(y, 0.75))));
    map.refreshROI();
}

QPushButton* autoButtonOf(const XY2DGraphWidget& map)
{
    for (QPushButton* const button : map.findChildren<QPushButton*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (button->isCheckable())
            return button;
    }
    return nullptr;
}

/// An editor of the bar that is left without a number lets the colours be automatic again.
void restoreAutoUnlessEntered(ColorBarWidget& bar, QPushButton& button)
{
    auto* const edit = bar.findChild<QLineEdit*>(QString(), Qt::FindDirectChildrenOnly);
    if (!edit) {
        button.click();
        return;
    }
    const auto isEntered = std::make_shared<bool>(false);
    QObject::connect(edit, &QLineEdit::returnPressed, edit, [isEntered] { *isEntered = true; });
    QObject::connect(
        edit, &QObject::destroyed, &button,
        [isEntered, &button, bar = QPointer<ColorBarWidget>(&bar)] {
            if (!*isEntered && bar && !bar->isAutoScale())
                button.click();
        },
        Qt::QueuedConnection);
}

/// Opens the editor of a colour limit, which ends automatic limits.
void editLimit(XY2DGraphWidget& map, bool isUpper)
{
    auto* const bar = map.findChild<ColorBarWidget*>();
    QPushButton* const button = autoButtonOf(map);
    if (!bar || !button)
        return;
    const bool wasAuto = bar->isAutoScale();
    if (wasAuto)
        button->click();
    const int lineHeight = bar->fontMetrics().height(); // distance of the two labels from the ends of the bar
    click(*bar, { bar->width() * 7 / 10, isUpper ? lineHeight : bar->height() - 1 - lineHeight });
    if (wasAuto)
        restoreAutoUnlessEntered(*bar, *button);
}

void goToBox(XYGraphWidget& plot, qsizetype number)
{
    const QList<QDialog*> boxes = BoxPlacer::boxesOf(plot);
    if (number >= boxes.size()) {
        plot.window()->activateWindow();
        plot.setFocus(Qt::ShortcutFocusReason);
        return;
    }
    QDialog* const box = boxes.at(number);
    box->activateWindow();
    if (QWidget* const last = box->isWindow() ? nullptr : box->focusWidget()) {
        last->setFocus(Qt::TabFocusReason); // in the pane of the window, which is already active
    } else if (!box->focusWidget()) {
        for (QWidget* widget = box->nextInFocusChain(); widget != box; widget = widget->nextInFocusChain()) {
            if ((widget->focusPolicy() & Qt::TabFocus) && widget->isEnabled()) {
                widget->setFocus(Qt::TabFocusReason);
                break;
            }
        }
    }
    if (!box->findChild<QShortcut*>(QStringLiteral("boxShortcut"))) {
        auto* const shortcut = new QShortcut(QKeySequence(boxKey), box);
        shortcut->setObjectName(QStringLiteral("boxShortcut"));
        QObject::connect(shortcut, &QShortcut::activated, &plot,
            [&plot, box] { goToBox(plot, BoxPlacer::boxesOf(plot).indexOf(box) + 1); });
    }
}

} // namespace

PlotKeys::~PlotKeys()
{
    delete m_frame;
}

void PlotKeys::serve(XYGraphWidget& plot)
{
    plot.setFocusPolicy(Qt::StrongFocus);
    plot.installEventFilter(this);
}

/// Return and Escape give the focus back to the plot. Otherwise Escape would close the window.
void PlotKeys::watchEditor(XYGraphWidget& plot)
{
    auto* edit = plot.findChild<QLineEdit*>(QString(), Qt::FindDirectChildrenOnly); // boxes beside the plot have their
                                                                                    // own handling
    if (auto* const bar = plot.findChild<ColorBarWidget*>(); bar && !edit)
        edit = bar->findChild<QLineEdit*>(QString(), Qt::FindDirectChildrenOnly);
    if (!edit)
        return;
    edit->installEventFilter(this);
    edit->selectAll();
    connect(
        edit, &QObject::destroyed, this,
        [guard = QPointer<XYGraphWidget>(&plot)] {
            if (guard && guard->isVisible())
                guard->setFocus(Qt::OtherFocusReason);
        },
        Qt::QueuedConnection); // queued, because the editor may be destroyed together with the plot
}

void PlotKeys::addEditors(QMenu& menu, XYGraphWidget& plot)
{
    const bool isEditable = PlotLabels::isEditable(plot);
    for (const PlotLabels::Label& label : PlotLabels::of(plot)) {
        QAction* const action = menu.addAction(tr(label.name));
        setAvailable(action, isEditable && label.rect.isValid(), QString(), tr("Switch off the mouse tool first"));
        // Queued until after the menu, which would take the focus away again.
        connect(
            action, &QAction::triggered, &plot,
            [this, &plot, middle = center(label.rect)] {
                click(plot, middle);
                watchEditor(plot);
            },
            Qt::QueuedConnection);
    }
}

void PlotKeys::addMapTools(QMenu& menu, XYGraphWidget& plot)
{
    auto* const map = qobject_cast<XY2DGraphWidget*>(&plot);
    auto* const bar = map ? map->findChild<ColorBarWidget*>() : nullptr;
    if (!bar)
        return;
    const auto add = [&](const QString& text, const auto& act) {
        connect(menu.addAction(text), &QAction::triggered, map, act, Qt::QueuedConnection);
    };
    add(tr("&Colours..."),
        [map, bar] { sendMouse(*map, QEvent::MouseButtonPress, bar->geometry().center(), Qt::RightButton); });
    add(tr("&Upper Limit of the Colours..."), [this, map] {
        editLimit(*map, true);
        watchEditor(*map);
    });
    add(tr("Lo&wer Limit of the Colours..."), [this, map] {
        editLimit(*map, false);
        watchEditor(*map);
    });
    if (MapRegions::isOffered(*map))
        add(tr("Add a Re&gion in the Middle"), [map] { addMiddle(*map); });
}

void PlotKeys::openTools(XYGraphWidget& plot)
{
    auto* const menu = new QMenu(&plot);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setToolTipsVisible(true);
    menu->addActions(plot.actions());
    menu->addSeparator();
    addEditors(*menu, plot);
    addMapTools(*menu, plot);
    if (!BoxPlacer::boxesOf(plot).isEmpty()) {
        QAction* const action = menu->addAction(tr("To the Bo&x Beside"));
        action->setShortcut(QKeySequence(boxKey)); // only displayed: the plot handles the key itself
        connect(
            action, &QAction::triggered, &plot, [&plot] { goToBox(plot, 0); }, Qt::QueuedConnection);
    }
    menu->popup(plot.mapToGlobal(plot.rect().center()));
}

bool PlotKeys::isKeyOfEditor(QObject* object, QEvent* event)
{
    auto* const edit = qobject_cast<QLineEdit*>(object);
    if (!edit || event->type() != QEvent::KeyPress || static_cast<QKeyEvent*>(event)->key() != Qt::Key_Escape)
        return false;
    if (auto* const bar = qobject_cast<ColorBarWidget*>(edit->parentWidget()))
        bar->deleteEditLine();
    else if (edit->parentWidget())
        sendMouse(*edit->parentWidget(), QEvent::MouseButtonPress, QPoint(0, 0), Qt::LeftButton); // drops it
    return true;
}

bool PlotKeys::eventFilter(QObject* object, QEvent* event)
{
    auto* const plot = qobject_cast<XYGraphWidget*>(object);
    if (!plot)
        return isKeyOfEditor(object, event);
    switch (event->type()) {
    case QEvent::KeyPress: { // an editor inside the plot propagates unhandled keys
        const auto& key = static_cast<const QKeyEvent&>(*event);
        if (!plot->hasFocus() || key.key() != boxKey || key.modifiers() != Qt::NoModifier)
            return false;
        goToBox(*plot, 0);
        return true;
    }
    case QEvent::ContextMenu:
        if (static_cast<QContextMenuEvent*>(event)->reason() != QContextMenuEvent::Keyboard)
            return false; // the plot itself opens its menu for the mouse
        openTools(*plot);
        return true;
    case QEvent::FocusIn:
        delete m_frame;
        m_frame = new QFocusFrame(plot->window()); // deleted with the window
        m_frame->setWidget(plot);
        return false;
    case QEvent::FocusOut:
        delete m_frame;
        return false;
    default:
        return false;
    }
}

} // namespace console
