#include "windows/windowaccess.h"

#include "app/controlhelp.h"
#include "plots/boxplacer.h"
#include "plots/colourbarmenu.h"
#include "plots/escapekey.h"
#include "plots/plotpanels.h"
#include "plots/plottheme.h"
#include "plots/plottools.h"
#include "screen/placement.h"
#include "screen/windowframe.h"
#include "windows/tooltips.h"

#include <tarnis/dialogs/graph2ddialog.h>
#include <tarnis/dialogs/graph2dfilterdialog.h>
#include <tarnis/dialogs/selectcheckeddialog.h>
#include <tarnis/export/exportdialog.h>
#include <tarnis/peak/peaksearchdialog.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/plots/xygraphwidget.h>

#include <QCoreApplication>
#include <QDialog>
#include <QEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLayout>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QTableWidget>
#include <QVariant>
#include <QWindow>

namespace console {

namespace {

void nameIfNameless(QWidget* control, const QString& name)
{
    if (control && (control->accessibleName().isEmpty() || control->property("isNamedHere").toBool())) {
        control->setAccessibleName(name);
        control->setProperty("isNamedHere", true); // updated when the language changes
    }
}

/// Names the library's controls that have neither a text nor a label.
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
}

/// The region box enables both buttons even if its list is empty.
void updateRegionButtons(QWidget& window, const QListWidget& list)
{
    auto* const deleteButton = window.findChild<QPushButton*>(QStringLiteral("deleteButton"));
    auto* const clearButton = window.findChild<QPushButton*>(QStringLiteral("clearButton"));
    if (!deleteButton || !clearButton || !list.isEnabled())
        return; // currently not editable
    const QString none = WindowAccess::tr("There is no region yet: drag one over the map");
    const bool isAny = list.count() > 0;
    setEnabledWithHelp(deleteButton, isAny && list.currentRow() >= 0, QString(),
        isAny ? WindowAccess::tr("Choose a region in the list first") : none);
    setEnabledWithHelp(clearButton, isAny, QString(), none);
}

/// Opens peak search, filter, filtered maps, selection of curves and export beside their plot, if the screen has space.
void placeBesideData(QDialog& dialog)
{
    QWidget* const owner = dialog.parentWidget();
    const bool isAboutPlot = qobject_cast<XYGraphWidget*>(owner) || (owner && owner->findChild<XYGraphWidget*>());
    const bool isTool = qobject_cast<PeakSearchDialog*>(&dialog) || qobject_cast<SelectCheckedDialog*>(&dialog)
        || qobject_cast<Graph2DFilterDialog*>(&dialog) || qobject_cast<tarnis::ExportDialog*>(&dialog);
    const bool isFilteredMap = qobject_cast<Graph2DDialog*>(&dialog) && qobject_cast<Graph2DDialog*>(owner);
    if (!isAboutPlot || !(isTool || isFilteredMap) || dialog.property("isPlaced").toBool()
        || !canPlaceWindows(QGuiApplication::platformName()) || !dialog.screen())
        return;
    dialog.setProperty("isPlaced", true); // the user may move it
    const QMargins border = frameOf(*owner->window());
    const QRect data = owner->window()->frameGeometry();
    const QRect area = dialog.screen()->availableGeometry();
    const QRect place =
        placeBeside(dialog.size(), data, area, border)
            .value_or(leastOverlap(dialog.size().grownBy(border), area, { data }).marginsRemoved(border));
    const QPoint corner = place.topLeft() - QPoint(border.left(), border.top());
    dialog.move(corner);
    if (QWindow* const window = dialog.windowHandle()) // move() ignores the position of a new widget, which is (0, 0)
        window->setFramePosition(corner);
}

/// The library's columns are wider than the table.
void showEveryColumn(QWidget& window)
{
    if (auto* const peaks = qobject_cast<PeakSearchDialog*>(&window) ? window.findChild<QTableWidget*>() : nullptr)
        peaks->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
}

void watchRegions(QWidget& window)
{
    auto* const list = window.findChild<QListWidget*>(QStringLiteral("roiListWidget"));
    if (!list)
        return;
    const auto update = [&window, list] { updateRegionButtons(window, *list); };
    update();
    if (list->property("isWatched").toBool())
        return;
    list->setProperty("isWatched", true);
    // Queued, because the library sets the buttons after it has changed the list.
    QObject::connect(list->model(), &QAbstractItemModel::rowsInserted, list, update, Qt::QueuedConnection);
    QObject::connect(list->model(), &QAbstractItemModel::rowsRemoved, list, update, Qt::QueuedConnection);
    QObject::connect(list->model(), &QAbstractItemModel::modelReset, list, update, Qt::QueuedConnection);
    QObject::connect(list, &QListWidget::currentRowChanged, list, update, Qt::QueuedConnection);
}

} // namespace

WindowAccess::WindowAccess(QObject* parent)
    : QObject(parent)
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool WindowAccess::eventFilter(QObject* object, QEvent* event)
{
    // Before the menu computes the size of its entries.
    if (event->type() == QEvent::Polish && qobject_cast<XY2DGraphWidget*>(object->parent())) {
        if (auto* const menu = qobject_cast<QMenu*>(object))
            translateColourBarMenu(*menu);
    }
    if (event->type() == QEvent::Polish || event->type() == QEvent::Show) {
        auto* const dialog = qobject_cast<QDialog*>(object);
        if (dialog && BoxPlacer::isBox(*dialog) && dialog->parentWidget()->window()->layout())
            BoxPlacer::of(*dialog->parentWidget()->window()).adopt(*dialog);
        else if (dialog && event->type() == QEvent::Show)
            placeBesideData(*dialog);
    }
    if (event->type() == QEvent::Show || event->type() == QEvent::WindowTitleChange) {
        auto* const widget = qobject_cast<QWidget*>(object);
        if (widget && (widget->isWindow() || BoxPlacer::plotOf(*widget)))
            makeAccessible(*widget);
    }
    if (event->type() == QEvent::LanguageChange && object->isWidgetType()) {
        auto* const widget = static_cast<QWidget*>(object);
        if (widget->isWindow()) // after the window has retranslated its own texts
            QMetaObject::invokeMethod(
                widget, [widget] { addToolTips(*widget); }, Qt::QueuedConnection);
    }
    if (event->type() == QEvent::KeyPress && object->isWidgetType()) {
        const auto& key = static_cast<const QKeyEvent&>(*event);
        auto* const widget = static_cast<QWidget*>(object);
        // Keys that the focused control has not handled reach the window.
        return key.key() == Qt::Key_Escape && key.modifiers() == Qt::NoModifier
            && (widget->isWindow() || BoxPlacer::plotOf(*widget)) && handleEscape(*widget);
    }
    return false;
}

/// Adds another close key, because Escape does not close windows with data.
void WindowAccess::addCloseKey(QWidget& window)
{
    const bool isBox = window.isModal() || !window.isWindow() || window.windowFlags().testFlag(Qt::FramelessWindowHint);
    if (!qobject_cast<QDialog*>(&window) || isBox || window.findChild<QShortcut*>(QStringLiteral("closeShortcut")))
        return;
    auto* const shortcut = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_W), &window);
    shortcut->setObjectName(QStringLiteral("closeShortcut"));
    connect(shortcut, &QShortcut::activated, &window, &QWidget::close);
}

void WindowAccess::makeAccessible(QWidget& window)
{
    // The library's form resets its title when the language changes.
    if (qobject_cast<SelectCheckedDialog*>(&window) && window.windowTitle() == u"Dialog")
        window.setWindowTitle(tr("Select Visible Items"));
    // The lists of windows of a desktop may contain the boxes, whose title is "Dialog" or empty.
    const XYGraphWidget* const plotOfBox = BoxPlacer::plotOf(window);
    // Even an unchanged title is a change if it is empty, which would lead here again.
    if (plotOfBox && window.isWindow() && window.windowTitle() != plotOfBox->window()->windowTitle())
        window.setWindowTitle(plotOfBox->window()->windowTitle());
    addToolBar(window);
    nameControls(window);
    addCloseKey(window);
    addToolTips(window);
    watchRegions(window);
    showEveryColumn(window);
    const auto plots = window.findChildren<XYGraphWidget*>();
    for (XYGraphWidget* const plot : plots)
        attachTools(*plot);
    applyTheme(window);
    auto* const update = window.findChild<QPushButton*>(QStringLiteral("updatePushButton"));
    if (!update)
        return;
    update->setFocusPolicy(Qt::StrongFocus); // the library's form removes it from the tab order
    if (window.findChild<QShortcut*>(QStringLiteral("updateShortcut")))
        return;
    auto* const shortcut = new QShortcut(QKeySequence(Qt::Key_F5), &window);
    shortcut->setObjectName(QStringLiteral("updateShortcut"));
    connect(shortcut, &QShortcut::activated, update, &QPushButton::click);
}

} // namespace console
