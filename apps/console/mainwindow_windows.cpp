// The windows of the console: their menu, why they cannot be opened, and their layout.
#include "mainwindow.h"

#include "app/controlhelp.h"
#include "command/commandpanel.h"
#include "histograms/histogramchooser.h"
#include "histograms/histogramwindowupdater.h"
#include "histograms/serverhistograms.h"
#include "plots/plottools.h"
#include "screen/windowframe.h"
#include "server/servercontroller.h"
#include "server/statuspoller.h"
#include "ui_mainwindow.h"
#include "windows/openwindows.h"

#include <QGuiApplication>
#include <QScopedValueRollback>
#include <QSettings>

#include <utility>

namespace console {

namespace {

constexpr QLatin1String histogramPrefix("histogram "); // prefix of the ids of windows opened by the chooser
constexpr QLatin1String openWindowsKey("windows/open");

} // namespace

void MainWindow::addWindowActions()
{
    for (const WindowEntry& entry : m_entries) {
        QAction* action = ui->windowsMenu->addAction(entry.menuText);
        action->setObjectName(entry.id);
        if (m_windowActions.size() < 9)
            action->setShortcut(QKeySequence(Qt::CTRL | Qt::Key(Qt::Key_1 + int(m_windowActions.size()))));
        else
            action->setShortcut(QKeySequence(entry.shortcut));
        connect(action, &QAction::triggered, this, [this, id = entry.id] { openWindow(id); });
        m_windowActions.append(action);
    }
    ui->windowsMenu->addSeparator();
    connect(ui->windowsMenu, &QMenu::aboutToShow, this, &MainWindow::updateArranging);
    connect(ui->windowsMenu, &QMenu::aboutToShow, this, &MainWindow::listOpenWindows);
    ui->windowsMenu->addActions({ ui->tileAction, ui->cascadeAction, ui->closeWindowsAction });
}

QWidget* MainWindow::openWindow(const WindowEntry& entry)
{
    if (!refusal(entry).isEmpty())
        return nullptr;
    const auto make = [this, &entry] { return entry.open(windowContext()); };
    const auto title = [&entry] { return entry.title; };
    if (entry.histogram.isEmpty())
        return m_windows->show(entry.id, make, title);
    using Listed = HistogramWindow::Listed;
    return m_windowUpdater->show({ entry.id, entry.histogram, m_histograms->find(entry.histogram),
        [make](const Listed&) { return make(); }, [title](const Listed&) { return title(); } });
}

void MainWindow::openWindow(const QString& id)
{
    for (const WindowEntry& entry : m_entries) {
        if (entry.id == id)
            openWindow(entry);
    }
}

QString MainWindow::refusal(const WindowEntry& entry) const
{
    if (entry.needsServer && m_controller->state() != ServerState::Up)
        return tr("Needs a connected server");
    if (QString reason = m_histograms->refusal(entry.histogram); !reason.isEmpty())
        return reason;
    return entry.refusal ? entry.refusal(*m_controller) : QString();
}

void MainWindow::updateArranging()
{
    const bool isAnyOpen = !m_windows->onScreen().isEmpty();
    const bool canPlace = canPlaceWindows(QGuiApplication::platformName());
    const QString reason = canPlace
        ? tr("No window is open")
        : tr("This desktop (Wayland) places windows itself; started with QT_QPA_PLATFORM=xcb the console can do it");
    setEnabledWithHelp(ui->tileAction, canPlace && isAnyOpen, tr("Arrange all open windows side by side"), reason);
    setEnabledWithHelp(ui->cascadeAction, canPlace && isAnyOpen, tr("Arrange all open windows in a cascade"), reason);
    setEnabledWithHelp(
        ui->closeWindowsAction, isAnyOpen, tr("Close all windows but this one"), tr("No window is open"));
}

void MainWindow::passLiveTime()
{
    const QList<QWidget*> windows = m_windows->all();
    for (const QWidget* const window : windows)
        setLiveTime(*window, m_statusPoller->runStatus().liveTime.value_or(0.0));
}

void MainWindow::listOpenWindows()
{
    qDeleteAll(m_openActions);
    m_openActions.clear();
    const QList<QWidget*> open = m_windows->all();
    if (!open.isEmpty())
        m_openActions.append(ui->windowsMenu->addSeparator());
    for (QWidget* const window : open) {
        const QString title = window->windowTitle().remove(QLatin1String("[*]")).replace(u'&', QLatin1String("&&"));
        const QString number = QString::number(m_openActions.size());
        QAction* const action =
            ui->windowsMenu->addAction(m_openActions.size() < 10 ? QStringLiteral("&%1 %2").arg(number, title) : title);
        action->setCheckable(true);
        action->setChecked(window == m_windows->front());
        action->setToolTip(tr("Bring this window forward"));
        connect(action, &QAction::triggered, window, [window] { OpenWindows::bringForward(*window); });
        m_openActions.append(action);
    }
}

WindowContext MainWindow::windowContext()
{
    return { *m_controller, this, *m_commandPanel, *m_windows, m_store, *m_histograms, *m_windowUpdater,
        *m_statusPoller };
}

bool MainWindow::reopenWindow(const QString& id)
{
    if (id.startsWith(histogramPrefix)) {
        const auto histogram = m_histograms->find(id.mid(histogramPrefix.size()));
        if (!histogram || m_controller->state() != ServerState::Up)
            return false;
        openHistogram(windowContext(), *histogram);
        return true;
    }
    for (const WindowEntry& entry : std::as_const(m_entries)) {
        if (entry.id != id)
            continue;
        // A window that opens before the list is replaced when the list arrives, and loses its view.
        const bool isEarly = !entry.histogram.isEmpty() && m_histograms->isAwaited();
        return !isEarly && openWindow(entry) != nullptr;
    }
    return true; // from another version: dropped
}

/// Opens each window as soon as its server and histogram are available.
void MainWindow::reopenWindows()
{
    if (m_windowsToReopen.isEmpty() || m_isReopening || m_isClosing || !isVisible())
        return;
    const QScopedValueRollback guard(m_isReopening, true);
    const bool wasActive = isActiveWindow();
    const qsizetype before = m_windowsToReopen.size();
    m_windowsToReopen.removeIf([this](const QString& id) { return reopenWindow(id); });
    if (wasActive && m_windowsToReopen.size() != before)
        activateWindow();
}

void MainWindow::rememberWindows()
{
    QStringList open = m_windows->ids();
    for (const QString& id : std::as_const(m_windowsToReopen)) {
        if (!open.contains(id))
            open.append(id); // its server was not available
    }
    open.removeIf([](const QString& id) { return id == u"base-path" || id == u"server-files" || id == u"histograms"; });
    m_store.setValue(openWindowsKey, open);
    m_windows->storePlaces();
}

} // namespace console
