#include "tarnis/tools/plottoolbar.h"

#include "tarnis/foundation/retranslator.h"
#include "tarnis/foundation/trace_p.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/tools/base/toolaction_p.h"
#include "tarnis/tools/interactivetool.h"

#include <QActionEvent>
#include <QEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QToolButton>

#include <algorithm>

namespace tarnis {

namespace {

constexpr int iconPixels = 18;

/// A dashed frame: the rectangle that the mouse draws.
void drawRectangle(QPainter& painter, const IconInk& ink)
{
    painter.drawPolyline(QPolygonF { { 2.0, 1.5 }, { 2.0, 14.0 }, { 14.5, 14.0 } });
    painter.setPen(QPen(ink.accent, 1.3, Qt::DashLine, Qt::FlatCap));
    painter.drawRect(QRectF(5.0, 3.0, 8.5, 7.5));
}

/// Four arrows from the centre.
void drawMove(QPainter& painter, const IconInk& ink)
{
    painter.translate(8.0, 8.0);
    for (int quarter = 0; quarter < 4; ++quarter) {
        painter.rotate(90.0);
        painter.setPen(QPen(ink.line, 1.2, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(QPointF(0.0, 0.0), QPointF(0.0, -6.0));
        painter.setPen(QPen(ink.accent, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPolyline(QPolygonF { { -2.0, -4.5 }, { 0.0, -6.5 }, { 2.0, -4.5 } });
    }
}

/// Two arrow heads, narrow enough for the extension button of a bar.
void drawMore(QPainter& painter, const IconInk& /*ink*/)
{
    for (const double column : { 5.0, 8.5 })
        painter.drawPolyline(QPolygonF { { column, 4.5 }, { column + 2.5, 8.0 }, { column, 11.5 } });
}

void drawMoreBelow(QPainter& painter, const IconInk& ink)
{
    painter.translate(16.0, 0.0);
    painter.rotate(90.0);
    drawMore(painter, ink);
}

/// Mirrors an action of the plot's own menu, with another icon and text. Both always have the same state.
class MirrorAction : public ToolAction {
public:
    MirrorAction(QObject* owner, const char* name, ActionText currentText, IconDrawing drawing, QAction& original)
        : ToolAction(owner, name, currentText, drawing)
    {
        const auto follow = [this, &original] {
            setCheckable(original.isCheckable());
            setChecked(original.isChecked());
            setEnabled(original.isEnabled());
            setVisible(original.isVisible());
        };
        connect(&original, &QAction::changed, this, follow);
        connect(this, &QAction::triggered, &original, [&original, follow] {
            original.trigger();
            follow();
        });
        follow();
    }
};

QWidget* buttonOf(QWidget* widget)
{
    return qobject_cast<QToolButton*>(widget);
}

} // namespace

PlotToolBar::PlotToolBar(XYGraphWidget* plot, QWidget* parent)
    : QToolBar(parent)
    , m_plot(plot)
    , m_menu(new QMenu(this))
{
    m_end = addSeparator();
    m_end->setVisible(false);
    setIconSize(QSize(iconPixels, iconPixels));
    setFocusPolicy(Qt::NoFocus);
    m_menu->setToolTipsVisible(true);
    nameBar();
    drawExtension();
    onLanguageChange(*this, [this] { nameBar(); });
    connect(this, &QToolBar::orientationChanged, this, &PlotToolBar::drawExtension); // after the button's own change
    if (plot == nullptr) {
        qCWarning(TARNIS_TRACE_CATEGORY(), "PlotToolBar: a tool bar without a plot stays empty");
        return;
    }
    m_watched = plot;
    plot->installEventFilter(this); // tools are children of the plot
    connect(plot, &QObject::destroyed, this, [this] {
        m_plot = nullptr; // destroyed() is emitted before QPointers are cleared
        collect();
    });
    addPlotActions();
    collect();
}

PlotToolBar::~PlotToolBar() = default;

XYGraphWidget* PlotToolBar::plot() const
{
    return m_plot;
}

QMenu* PlotToolBar::menu() const
{
    return m_menu;
}

void PlotToolBar::addPlotActions()
{
    m_plotActions << new MirrorAction(
        this, "zoomRectangle", [] { return PlotToolBar::tr("Zoom to a Rectangle"); }, drawRectangle,
        *PlotAccess::rectangleAction(*m_plot))
                  << new MirrorAction(
                         this, "move", [] { return PlotToolBar::tr("Move with the Mouse"); }, drawMove,
                         *PlotAccess::moveAction(*m_plot));
}

void PlotToolBar::follow(InteractiveTool& tool)
{
    connect(&tool, &InteractiveTool::actionsChanged, this, &PlotToolBar::collectLater, Qt::UniqueConnection);
}

/// A tool is still under construction when it becomes a child of the plot, and still exists when it is removed.
void PlotToolBar::collectLater()
{
    if (m_isPosted)
        return;
    m_isPosted = true;
    QMetaObject::invokeMethod(
        this, [this] { collect(); }, Qt::QueuedConnection);
}

void PlotToolBar::collect()
{
    m_isPosted = false;
    QList<QPointer<QAction>> wanted;
    QList<qsizetype> groups; // index of the first action of each group
    if (m_plot) {
        for (QAction* const action : std::as_const(m_plotActions))
            wanted.append(action);
        for (InteractiveTool* const tool : InteractiveTool::toolsOf(*m_plot)) {
            follow(*tool);
            const QList<QAction*> actions = tool->actions();
            if (!actions.isEmpty())
                groups.append(wanted.size());
            for (QAction* const action : actions)
                wanted.append(action);
        }
    }
    if (wanted == m_collected)
        return;
    for (const QPointer<QAction>& action : std::as_const(m_collected)) {
        if (action)
            removeAction(action);
    }
    qDeleteAll(m_separators);
    m_separators.clear();
    m_collected = wanted;
    for (qsizetype i = 0; i < wanted.size(); ++i) {
        if (groups.contains(i))
            m_separators.append(insertSeparator(m_end));
        insertAction(m_end, wanted.at(i));
    }
    chooseTabStop();
}

/// Of a bar that is too short for all buttons.
QToolButton* PlotToolBar::extensionButton() const
{
    return findChild<QToolButton*>(QStringLiteral("qt_toolbar_ext_button"));
}

/// The style's own icon is black, also on a dark bar.
void PlotToolBar::drawExtension()
{
    if (QToolButton* const more = extensionButton())
        more->setIcon(drawnIcon(orientation() == Qt::Horizontal ? drawMore : drawMoreBelow));
}

void PlotToolBar::nameBar()
{
    setWindowTitle(tr("Tools of the Plot"));
    setAccessibleName(windowTitle());
    m_menu->setTitle(tr("&Plot"));
    if (QToolButton* const more = extensionButton()) {
        more->setAccessibleName(tr("More Tools"));
        more->setToolTip(tr("More Tools"));
    }
}

/// Keeps the menu in sync with the bar, and sets name and keys of each new button.
void PlotToolBar::actionEvent(QActionEvent* event)
{
    QToolBar::actionEvent(event);
    if (event->type() == QEvent::ActionRemoved) {
        m_menu->removeAction(event->action());
        separateHost();
        return;
    }
    if (event->type() == QEvent::ActionAdded) {
        m_menu->insertAction(event->before(), event->action());
        separateHost();
    }
    if (QWidget* const button = buttonOf(widgetForAction(event->action()))) {
        button->setAccessibleName(event->action()->text().remove(u'&'));
        button->setAccessibleDescription(event->action()->toolTip());
        if (event->type() == QEvent::ActionAdded) {
            button->setFocusPolicy(Qt::NoFocus); // a click does not take the focus from the plot
            if (event->action()->menu() != nullptr && m_collected.contains(event->action()))
                qobject_cast<QToolButton*>(button)->setPopupMode(QToolButton::InstantPopup); // also by Space
            button->installEventFilter(this);
        }
        chooseTabStop();
    }
}

void PlotToolBar::separateHost()
{
    const QList<QAction*> entries = actions();
    if (m_end != nullptr && entries.contains(m_end))
        m_end->setVisible(entries.last() != m_end);
}

QList<QWidget*> PlotToolBar::buttons() const
{
    QList<QWidget*> found;
    for (QAction* const action : actions()) {
        QWidget* const button = buttonOf(widgetForAction(action));
        if (button != nullptr && action->isVisible() && action->isEnabled())
            found.append(button);
    }
    return found;
}

/// Only one button is in the tab order: the one that had the focus last, or the first enabled one.
void PlotToolBar::chooseTabStop()
{
    const QList<QWidget*> usable = buttons();
    QWidget* const chosen = usable.contains(m_tabStop.data()) || usable.isEmpty() ? m_tabStop.data() : usable.first();
    if (m_tabStop && m_tabStop != chosen)
        m_tabStop->setFocusPolicy(Qt::NoFocus);
    m_tabStop = chosen;
    if (chosen != nullptr)
        chosen->setFocusPolicy(Qt::TabFocus);
}

bool PlotToolBar::moveFocus(const QWidget& from, int key)
{
    const QList<QWidget*> usable = buttons();
    const qsizetype at = usable.indexOf(const_cast<QWidget*>(&from));
    if (usable.isEmpty())
        return false;
    const bool isMirrored = isRightToLeft();
    qsizetype next = 0;
    if (key == (isMirrored ? Qt::Key_Left : Qt::Key_Right) || key == Qt::Key_Down)
        next = (at + 1) % usable.size();
    else if (key == (isMirrored ? Qt::Key_Right : Qt::Key_Left) || key == Qt::Key_Up)
        next = (at + usable.size() - 1) % usable.size();
    else if (key == Qt::Key_End)
        next = usable.size() - 1;
    else if (key != Qt::Key_Home)
        return false;
    usable.at(next)->setFocus(Qt::OtherFocusReason);
    return true;
}

bool PlotToolBar::eventFilter(QObject* object, QEvent* event)
{
    if (object == m_watched) {
        if (event->type() == QEvent::ChildAdded || event->type() == QEvent::ChildRemoved)
            collectLater();
        return false;
    }
    const auto* const button = qobject_cast<QToolButton*>(object);
    if (button == nullptr)
        return QToolBar::eventFilter(object, event);
    if (event->type() == QEvent::KeyPress) {
        const auto& key = static_cast<const QKeyEvent&>(*event);
        return key.modifiers() == Qt::NoModifier && moveFocus(*button, key.key());
    }
    if (event->type() == QEvent::FocusIn) {
        if (m_tabStop && m_tabStop != button)
            m_tabStop->setFocusPolicy(Qt::NoFocus);
        m_tabStop = const_cast<QToolButton*>(button);
        m_tabStop->setFocusPolicy(Qt::TabFocus);
    }
    return false;
}

} // namespace tarnis
