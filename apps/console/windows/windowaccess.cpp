#include "windows/windowaccess.h"

#include "windows/colourbarmenu.h"
#include "windows/leavetool.h"
#include "windows/plotkeys.h"

#include <tarnis/dialogs/selectcheckeddialog.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/plots/xygraphwidget.h>

#include <QCoreApplication>
#include <QDialog>
#include <QEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPushButton>
#include <QShortcut>
#include <QVariant>

namespace console {

namespace {

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
    if (event->type() == QEvent::KeyPress && object->isWidgetType()) {
        const auto& key = static_cast<const QKeyEvent&>(*event);
        auto* const widget = static_cast<QWidget*>(object);
        // What the control with the keyboard has not taken has come up to the window.
        return key.key() == Qt::Key_Escape && key.modifiers() == Qt::NoModifier && widget->isWindow()
            && takesEscape(*widget);
    }
    return false;
}

/// Escape does not close windows with data: another key does.
void WindowAccess::addCloseKey(QWidget& window)
{
    const bool isBox = window.isModal() || window.windowFlags().testFlag(Qt::FramelessWindowHint);
    if (!qobject_cast<QDialog*>(&window) || isBox || window.findChild<QShortcut*>(QStringLiteral("closeShortcut")))
        return;
    auto* const shortcut = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_W), &window);
    shortcut->setObjectName(QStringLiteral("closeShortcut"));
    connect(shortcut, &QShortcut::activated, &window, &QWidget::close);
}

void WindowAccess::makeAccessible(QWidget& window)
{
    // The library's form takes its own title up again when the language changes.
    if (qobject_cast<SelectCheckedDialog*>(&window) && window.windowTitle() == u"Dialog")
        window.setWindowTitle(tr("Select Visible Items"));
    nameControls(window);
    addCloseKey(window);
    const auto plots = window.findChildren<XYGraphWidget*>();
    for (XYGraphWidget* const plot : plots)
        m_plotKeys->serve(*plot);
    auto* const update = window.findChild<QPushButton*>(QStringLiteral("updatePushButton"));
    if (!update)
        return;
    update->setFocusPolicy(Qt::StrongFocus); // the library's form takes it out of the way of Tab
    if (window.findChild<QShortcut*>(QStringLiteral("updateShortcut")))
        return;
    auto* const shortcut = new QShortcut(QKeySequence(Qt::Key_F5), &window);
    shortcut->setObjectName(QStringLiteral("updateShortcut"));
    connect(shortcut, &QShortcut::activated, update, &QPushButton::click);
}

} // namespace console
