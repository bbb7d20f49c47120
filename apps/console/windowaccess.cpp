#include "windowaccess.h"

#include "colourbarmenu.h"

#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/plots/xygraphwidget.h>

#include <QAction>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QFocusFrame>
#include <QKeyEvent>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QShortcut>

namespace console {

namespace {

constexpr double moveShare = 0.1;
constexpr double zoomFactor = 1.25;

void nameIfNameless(QWidget* control, const QString& name)
{
    if (control && (control->accessibleName().isEmpty() || control->property("isNamedHere").toBool())) {
        control->setAccessibleName(name);
        control->setProperty("isNamedHere", true); // a later language changes it
    }
}

/// The library's controls that carry neither a text nor a label.
void nameControls(QWidget& window)
{
    const auto name = [&](const char* object, const QString& text) {
        nameIfNameless(window.findChild<QWidget*>(QLatin1String(object)), text);
    };
    name("typeComboBox", WindowAccess::tr("How the curves are shown"));
    name("toolButton", WindowAccess::tr("Choose the visible curves"));
    name("progressBar", WindowAccess::tr("Progress"));
    name("infoLabel", WindowAccess::tr("Information"));
    name("listWidget", WindowAccess::tr("List"));
    name("tableWidget", WindowAccess::tr("Table"));
    const auto plots = window.findChildren<XYGraphWidget*>();
    for (XYGraphWidget* const plot : plots)
        nameIfNameless(plot, WindowAccess::tr("Plot: %1").arg(plot->window()->windowTitle()));
}

void moveX(XYGraphWidget& plot, double share)
{
    double min = 0.0;
    double max = 0.0;
    plot.getMinMaxX(min, max);
    plot.onAutoScaleX(false);
    plot.setMinMaxX(min + (max - min) * share, max + (max - min) * share);
    plot.refreshPixmap();
}

void moveY(XYGraphWidget& plot, double share)
{
    double min = 0.0;
    double max = 0.0;
    plot.getMinMaxY(min, max);
    plot.onAutoScaleY(false);
    plot.setMinMaxY(min + (max - min) * share, max + (max - min) * share);
    plot.refreshPixmap();
}

void zoomX(XYGraphWidget& plot, double factor)
{
    double min = 0.0;
    double max = 0.0;
    plot.getMinMaxX(min, max);
    const double middle = min + (max - min) / 2.0;
    const double half = (max - min) / 2.0 / factor;
    plot.onAutoScaleX(false);
    plot.setMinMaxX(middle - half, middle + half);
    plot.refreshPixmap();
}

bool pressed(XYGraphWidget& plot, int key)
{
    switch (key) {
    case Qt::Key_Left:
        moveX(plot, -moveShare);
        return true;
    case Qt::Key_Right:
        moveX(plot, moveShare);
        return true;
    case Qt::Key_Up:
        moveY(plot, moveShare);
        return true;
    case Qt::Key_Down:
        moveY(plot, -moveShare);
        return true;
    case Qt::Key_Plus:
        zoomX(plot, zoomFactor);
        return true;
    case Qt::Key_Minus:
        zoomX(plot, 1.0 / zoomFactor);
        return true;
    case Qt::Key_Home:
        plot.onReset();
        return true;
    default:
        return false;
    }
}

void openTools(XYGraphWidget& plot)
{
    if (plot.actions().isEmpty())
        return;
    auto* const menu = new QMenu(&plot);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addActions(plot.actions());
    menu->popup(plot.mapToGlobal(plot.rect().center()));
}

/// The keys of every plot.
class PlotKeys : public QObject {
public:
    using QObject::QObject;
    ~PlotKeys() override { delete m_frame; }

protected:
    bool eventFilter(QObject* object, QEvent* event) override
    {
        auto& plot = static_cast<XYGraphWidget&>(*object);
        switch (event->type()) {
        case QEvent::KeyPress: // an editor inside the plot hands on what it does not take
            return plot.hasFocus() && pressed(plot, static_cast<QKeyEvent*>(event)->key());
        case QEvent::ContextMenu:
            if (static_cast<QContextMenuEvent*>(event)->reason() != QContextMenuEvent::Keyboard)
                return false; // the plot opens its menu by the mouse itself
            openTools(plot);
            return true;
        case QEvent::FocusIn:
            delete m_frame;
            m_frame = new QFocusFrame(plot.window()); // goes with the window
            m_frame->setWidget(&plot);
            return false;
        case QEvent::FocusOut:
            delete m_frame;
            return false;
        default:
            return false;
        }
    }

    QPointer<QFocusFrame> m_frame; ///< around the plot that has the keyboard
};

} // namespace

WindowAccess::WindowAccess(QObject* parent)
    : QObject(parent)
    , m_plotKeys(new PlotKeys(this))
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool WindowAccess::eventFilter(QObject* object, QEvent* event)
{
    // Before the menu takes the size of its entries.
    if (event->type() == QEvent::Polish && qobject_cast<XY2DGraphWidget*>(object->parent())) {
        if (auto* const menu = qobject_cast<QMenu*>(object))
            translateColourBarMenu(*menu);
    }
    if (event->type() == QEvent::Show || event->type() == QEvent::WindowTitleChange) {
        auto* const widget = qobject_cast<QWidget*>(object);
        if (widget && widget->isWindow())
            makeAccessible(*widget);
    }
    return false;
}

void WindowAccess::makeAccessible(QWidget& window)
{
    nameControls(window);
    const auto plots = window.findChildren<XYGraphWidget*>();
    for (XYGraphWidget* const plot : plots) {
        plot->setFocusPolicy(Qt::StrongFocus);
        plot->installEventFilter(m_plotKeys);
    }
    auto* const update = window.findChild<QPushButton*>(QStringLiteral("updatePushButton"));
    if (!update || window.findChild<QShortcut*>(QStringLiteral("updateShortcut")))
        return;
    auto* const shortcut = new QShortcut(QKeySequence(Qt::Key_F5), &window);
    shortcut->setObjectName(QStringLiteral("updateShortcut"));
    connect(shortcut, &QShortcut::activated, update, &QPushButton::click);
}

} // namespace console
