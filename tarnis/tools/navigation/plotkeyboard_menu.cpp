// The menu of the menu key: what the mouse does on labels, on the colour bar and on a map.
#include "tarnis/plots/colorbarwidget.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/plottool_p.h"
#include "tarnis/plots/viewselectedroi.h"
#include "tarnis/tools/navigation/plotkeyboard_p.h"

#include <QAction>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QShortcut>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>

namespace tarnis {

namespace {

constexpr double largestEdge = 1e9; // of a region: leaves room to calculate with widths

struct AxisEnd {
    const char* entry;
    const char* name; // of the editor
    QRect (*label)(const XYGraphWidget&);
};

const std::array<AxisEnd, 4> axisEnds { {
    { QT_TRANSLATE_NOOP("tarnis::PlotKeyboard", "&Left End of the Axis..."),
        QT_TRANSLATE_NOOP("tarnis::PlotKeyboard", "Left end of the axis"), PlotAccess::minXLabel },
    { QT_TRANSLATE_NOOP("tarnis::PlotKeyboard", "&Right End of the Axis..."),
        QT_TRANSLATE_NOOP("tarnis::PlotKeyboard", "Right end of the axis"), PlotAccess::maxXLabel },
    { QT_TRANSLATE_NOOP("tarnis::PlotKeyboard", "&Bottom End of the Axis..."),
        QT_TRANSLATE_NOOP("tarnis::PlotKeyboard", "Bottom end of the axis"), PlotAccess::minYLabel },
    { QT_TRANSLATE_NOOP("tarnis::PlotKeyboard", "&Top End of the Axis..."),
        QT_TRANSLATE_NOOP("tarnis::PlotKeyboard", "Top end of the axis"), PlotAccess::maxYLabel },
} };

/// A click on a label opens its editor with no tool, and with the two that take single clicks.
bool areLabelsEditable(const XYGraphWidget& plot)
{
    const int mode = PlotAccess::mode(plot);
    return mode == NoTool || mode == ZoomInTool || mode == ZoomOutTool;
}

/// The middle half of what is visible, as a new region.
void addMiddleRegion(XY2DGraphWidget& map)
{
    map.SetRoiEnabled(true);
    ViewSelectedROI* const regions = map.GetViewSelectedROI();
    if (regions == nullptr)
        return;
    const auto edge = [](AxisRange range, double share) {
        const double at = range.min + (range.max - range.min) * share;
        return std::isfinite(at) ? static_cast<int>(std::lround(std::clamp(at, -largestEdge, largestEdge))) : 0;
    };
    const AxisRange x = PlotAccess::x(map);
    const AxisRange y = PlotAccess::y(map);
    regions->addRoi(QRect(QPoint(edge(x, 0.25), edge(y, 0.25)), QPoint(edge(x, 0.75), edge(y, 0.75))));
    map.refreshROI();
}

} // namespace

PlotKeyboard::Internals::~Internals()
{
    delete frame;
    for (const QPointer<QShortcut>& shortcut : std::as_const(shortcuts))
        delete shortcut;
}

void PlotKeyboard::Internals::addEntries(QMenu& menu)
{
    menu.addActions(m_plot.actions());
    menu.addSeparator();
    addEditors(menu);
    if (qobject_cast<XY2DGraphWidget*>(&m_plot) != nullptr)
        addMapEntries(menu);
    if (m_tool.boxes().isEmpty())
        return;
    QAction* const action = menu.addAction(PlotKeyboard::tr("To the Bo&x Beside"));
    action->setShortcut(QKeySequence(boxKey)); // shown only: the plot handles the key itself
    action->setShortcutContext(Qt::WidgetShortcut);
    connect(action, &QAction::triggered, &m_tool, &PlotKeyboard::goToBox, Qt::QueuedConnection);
}

// Entries act after the menu has closed, because closing it moves the focus.

void PlotKeyboard::Internals::addEditors(QMenu& menu)
{
    const bool isEditable = areLabelsEditable(m_plot);
    for (int end = 0; end < static_cast<int>(axisEnds.size()); ++end) {
        const AxisEnd& known = axisEnds.at(static_cast<std::size_t>(end));
        QAction* const action = menu.addAction(PlotKeyboard::tr(known.entry));
        action->setEnabled(isEditable && known.label(m_plot).isValid());
        if (!isEditable)
            action->setToolTip(PlotKeyboard::tr("Switch the tool of the mouse off first"));
        connect(
            action, &QAction::triggered, this, [this, end] { openEnd(end); }, Qt::QueuedConnection);
    }
}

void PlotKeyboard::Internals::addMapEntries(QMenu& menu)
{
    auto& map = static_cast<XY2DGraphWidget&>(m_plot);
    const auto add = [&](const QString& text, const auto& act) {
        connect(menu.addAction(text), &QAction::triggered, this, act, Qt::QueuedConnection);
    };
    add(PlotKeyboard::tr("&Colours..."), [&map] {
        ColorBarWidget& bar = PlotAccess::colourBar(map);
        bar.deleteEditLine();
        PlotAccess::openColourBarMenu(map, bar.mapToGlobal(bar.rect().center()));
    });
    add(PlotKeyboard::tr("&Upper Limit of the Colours..."), [this] { openLimit(true); });
    add(PlotKeyboard::tr("Lo&wer Limit of the Colours..."), [this] { openLimit(false); });
    if (PlotAccess::offersRegions(map))
        add(PlotKeyboard::tr("Add a Re&gion in the Middle"), [&map] { addMiddleRegion(map); });
}

void PlotKeyboard::Internals::openEnd(int end)
{
    if (!areLabelsEditable(m_plot))
        return; // a tool was switched on since the menu opened
    const AxisEnd& known = axisEnds.at(static_cast<std::size_t>(end));
    PlotAccess::dropEditor(m_plot);
    PlotAccess::openEditor(m_plot, known.label(m_plot).center());
    watchEditor(PlotAccess::editor(m_plot), PlotKeyboard::tr(known.name));
}

void PlotKeyboard::Internals::openLimit(bool isUpper)
{
    auto& map = static_cast<XY2DGraphWidget&>(m_plot);
    const ColorBarWidget& bar = PlotAccess::colourBar(map);
    const bool wasAuto = bar.isAutoScale();
    PlotAccess::openLimitEditor(map, isUpper);
    auto* const edit = bar.findChild<QLineEdit*>(QString(), Qt::FindDirectChildrenOnly);
    watchEditor(edit,
        isUpper ? PlotKeyboard::tr("Upper limit of the colours") : PlotKeyboard::tr("Lower limit of the colours"));
    if (!wasAuto || edit == nullptr)
        return;
    // Closing an editor without a number makes the colours automatic again.
    const auto isEntered = std::make_shared<bool>(false);
    connect(edit, &QLineEdit::returnPressed, this, [isEntered] { *isEntered = true; });
    connect(
        edit, &QObject::destroyed, this,
        [isEntered, &map] {
            if (!*isEntered)
                map.onAutoScaleZToggled(true);
        },
        Qt::QueuedConnection);
}

/// Return and Escape return the focus to the plot. Unhandled, Escape would close a dialog around the plot.
void PlotKeyboard::Internals::watchEditor(QLineEdit* edit, const QString& name)
{
    if (edit == nullptr)
        return;
    edit->setAccessibleName(name);
    edit->installEventFilter(this);
    edit->selectAll();
    connect(
        edit, &QObject::destroyed, this,
        [this] {
            if (m_plot.isVisible())
                m_plot.setFocus(Qt::OtherFocusReason);
        },
        Qt::QueuedConnection); // if the plot was destroyed, this object is gone too
}

bool PlotKeyboard::Internals::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() != QEvent::KeyPress || static_cast<QKeyEvent*>(event)->key() != Qt::Key_Escape)
        return false;
    if (auto* const bar = qobject_cast<ColorBarWidget*>(object->parent()))
        bar->deleteEditLine();
    else if (object == PlotAccess::editor(m_plot))
        PlotAccess::dropEditor(m_plot);
    return true;
}

} // namespace tarnis
