#include "tarnis/tools/plotkeyboard.h"

#include "tarnis/foundation/helpers.h"
#include "tarnis/plots/math/seriesgrouping_p.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/tools/navigation/plotkeyboard_p.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDialog>
#include <QKeyEvent>
#include <QMenu>
#include <QShortcut>

#include <algorithm>

namespace tarnis {

namespace {

/// Attaches a tool to each plot that comes to the screen.
class PlotFinder : public QObject {
public:
    using QObject::QObject;

    static void attach(QObject* object)
    {
        if (auto* const plot = qobject_cast<XYGraphWidget*>(object); plot != nullptr && keyboardOf(plot) == nullptr)
            new PlotKeyboard(plot); // the plot owns it
    }

protected:
    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (event->type() == QEvent::Show)
            attach(object);
        return false;
    }
};

QWidget* firstInTabOrder(QWidget& box)
{
    for (QWidget* widget = box.nextInFocusChain(); widget != &box; widget = widget->nextInFocusChain()) {
        if ((widget->focusPolicy() & Qt::TabFocus) != 0 && widget->isEnabled())
            return widget;
    }
    return nullptr;
}

void giveKeyboardTo(QDialog& box)
{
    box.activateWindow();
    if (QWidget* const last = box.focusWidget()) {
        if (!box.isWindow())
            last->setFocus(Qt::TabFocusReason); // its window is active already
    } else if (QWidget* const first = firstInTabOrder(box)) {
        first->setFocus(Qt::TabFocusReason);
    }
}

QString rangeText(const QString& name, AxisRange range, bool isLog)
{
    const QString text =
        isLog ? PlotKeyboard::tr("%1 from %2 to %3, logarithmic") : PlotKeyboard::tr("%1 from %2 to %3");
    return text.arg(name, numStr(range.min), numStr(range.max));
}

} // namespace

const PlotKeyboard* keyboardOf(const QObject* plot)
{
    return plot != nullptr ? plot->findChild<PlotKeyboard*>(QString(), Qt::FindDirectChildrenOnly) : nullptr;
}

PlotKeyboard::PlotKeyboard(XYGraphWidget* plot)
    : InteractiveTool(plot, KeyboardFocus)
{
    if (plot == nullptr)
        return;
    m_data = std::make_unique<Internals>(*this, *plot);
    for (QObject* const child : plot->children())
        m_data->children.append(child);
    installAccessiblePlots();
    renewAccessible(*plot);
}

PlotKeyboard::~PlotKeyboard()
{
    if (plot() != nullptr)
        renewAccessible(*plot());
}

void PlotKeyboard::attachToAll()
{
    static QPointer<PlotFinder> finder;
    if (finder != nullptr || qApp == nullptr)
        return;
    finder = new PlotFinder(qApp);
    qApp->installEventFilter(finder);
    const QWidgetList widgets = QApplication::allWidgets();
    for (QWidget* const widget : widgets) {
        if (widget->isVisible())
            PlotFinder::attach(widget);
    }
}

QString PlotKeyboard::name() const
{
    if (plot() == nullptr)
        return {};
    const QString title = PlotAccess::title(*plot());
    const QString shown = title.isEmpty() ? plot()->window()->windowTitle() : title;
    return shown.isEmpty() ? tr("Plot") : tr("Plot: %1").arg(shown);
}

QString PlotKeyboard::value() const
{
    if (plot() == nullptr)
        return {};
    const auto named = [](const QString& name, const QString& usual) { return name.isEmpty() ? usual : name; };
    const auto* const map = qobject_cast<XY2DGraphWidget*>(plot());
    QStringList parts { rangeText(named(PlotAccess::nameX(*plot()), tr("X")),
                            PlotAccess::namedX(*plot(), PlotAccess::x(*plot())), false),
        rangeText(named(PlotAccess::nameY(*plot()), tr("Y")), PlotAccess::y(*plot()),
            PlotAccess::isLogY(*plot()) && map == nullptr) };
    if (map != nullptr)
        parts.append(rangeText(tr("colours"), PlotAccess::levels(*map), PlotAccess::isLogZ(*map)));
    return parts.join(QLatin1String(", "));
}

QString PlotKeyboard::description() const
{
    if (const auto* const map = qobject_cast<XY2DGraphWidget*>(plot())) {
        const QList<QList<double>>& rows = PlotAccess::rows(*map);
        const qsizetype columns = rows.isEmpty() ? 0 : rows.constFirst().size();
        return tr("Map of %1 by %2 bins").arg(columns).arg(rows.size());
    }
    if (const auto* const curves = qobject_cast<MultiVectorGraphWidget*>(plot())) {
        const QList<MultiVectorGraphWidget::Data>& series = PlotAccess::series(*curves);
        const auto isFilled = [](const auto& record) { return !record.values.isEmpty(); };
        const auto isShown = [](const auto& record) { return !record.values.isEmpty() && record.enable; };
        return tr("%1 of %2 curves with %3 bins")
            .arg(std::count_if(series.cbegin(), series.cend(), isShown))
            .arg(std::count_if(series.cbegin(), series.cend(), isFilled))
            .arg(longestSeries(series));
    }
    if (const auto* const curve = qobject_cast<VectorGraphWidget*>(plot()))
        return tr("Curve, number of bins: %1").arg(PlotAccess::samples(*curve).size());
    return {};
}

QString PlotKeyboard::stateName() const
{
    return QStringLiteral("keyboard");
}

void PlotKeyboard::openMenu()
{
    if (plot() == nullptr)
        return;
    auto* const menu = new QMenu(plot());
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setToolTipsVisible(true);
    m_data->addEntries(*menu);
    menu->popup(plot()->mapToGlobal(plot()->rect().center()));
}

QList<QDialog*> PlotKeyboard::boxes() const
{
    QList<QDialog*> found;
    for (const QPointer<QObject>& child : std::as_const(m_data->children)) {
        auto* const box = qobject_cast<QDialog*>(child.data());
        if (box != nullptr && box->isVisible())
            found.append(box);
    }
    return found;
}

void PlotKeyboard::goToBox()
{
    if (plot() != nullptr && !boxes().isEmpty())
        goTo(0);
}

void PlotKeyboard::goTo(qsizetype box)
{
    const QList<QDialog*> found = boxes();
    if (box >= found.size()) {
        plot()->window()->activateWindow();
        plot()->setFocus(Qt::ShortcutFocusReason);
        return;
    }
    QDialog* const next = found.at(box);
    giveKeyboardTo(*next);
    QList<QPointer<QShortcut>>& shortcuts = m_data->shortcuts;
    shortcuts.removeAll(nullptr);
    if (std::any_of(shortcuts.cbegin(), shortcuts.cend(), [&](const auto& known) { return known->parent() == next; }))
        return;
    auto* const shortcut = new QShortcut(QKeySequence(boxKey), next);
    shortcuts.append(shortcut);
    connect(shortcut, &QShortcut::activated, this, [this, next] { goTo(boxes().indexOf(next) + 1); });
}

bool PlotKeyboard::handleEvent(QEvent* event)
{
    switch (event->type()) {
    case QEvent::KeyPress: { // an editor inside the plot passes on keys that it does not handle
        const auto& key = static_cast<const QKeyEvent&>(*event);
        if (!plot()->hasFocus())
            return false;
        if (key.key() == boxKey && key.modifiers() == Qt::NoModifier)
            goToBox();
        else if (key.key() == Qt::Key_F10 && key.modifiers() == Qt::ShiftModifier) // a menu event on Windows only
            openMenu();
        else
            return false;
        return true;
    }
    case QEvent::ContextMenu:
        if (static_cast<QContextMenuEvent*>(event)->reason() != QContextMenuEvent::Keyboard)
            return false; // the plot opens its menu for the mouse itself
        openMenu();
        return true;
    case QEvent::ChildAdded: // its class is not known yet: its constructors are running
        m_data->children.removeAll(nullptr);
        m_data->children.append(static_cast<QChildEvent*>(event)->child());
        return false;
    case QEvent::FocusIn:
        delete m_data->frame;
        m_data->frame = new QFocusFrame(plot()->window()); // destroyed with the window
        m_data->frame->setWidget(plot());
        return false;
    case QEvent::FocusOut:
        delete m_data->frame;
        return false;
    default:
        return false;
    }
}

} // namespace tarnis
