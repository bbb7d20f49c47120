#include "mainwindow.h"

#include "app/colours.h"
#include "app/columnscroll.h"
#include "app/controlhelp.h"
#include "app/keyboarddialog.h"
#include "app/languagemenu.h"
#include "command/commandpanel.h"
#include "command/history.h"
#include "histograms/histogramwindowupdater.h"
#include "histograms/serverhistograms.h"
#include "notices/messagelist.h"
#include "plots/plottheme.h"
#include "plots/plottools.h"
#include "run/runcontrol.h"
#include "run/runpanel.h"
#include "saves/savedialog.h"
#include "saves/savereports.h"
#include "server/connectdialog.h"
#include "server/lastserver.h"
#include "server/replytext.h"
#include "server/servercontroller.h"
#include "server/statuspoller.h"
#include "server/statustext.h"
#include "settings/settingspanel.h"
#include "ui_mainwindow.h"
#include "windowentries.h"
#include "windows/openwindows.h"
#include "windows/windowaccess.h"

#include <tarnis/foundation/files.h>
#include <tarnis/foundation/helpers.h>
#include <tarnis/foundation/retranslator.h>

#include <QApplication>
#include <QMessageBox>
#include <QScreen>
#include <QSettings>
#include <QSignalBlocker>

#include <utility>

namespace console {

namespace {

constexpr QSize spaceForFrame(16, 40); // its size is unknown before the window is shown

} // namespace

MainWindow::MainWindow(QSettings& store, const QString& language)
    : m_store(store)
    , ui(std::make_unique<Ui::MainWindow>())
    , m_controller(new ServerController(this))
    , m_saves(new SaveReports(*m_controller, store, [this] { return runNumber(); }))
    , m_entries(windowEntries())
    , m_windows(new OpenWindows(*this, store))
    , m_histograms(new ServerHistograms(*m_controller))
    , m_windowUpdater(new HistogramWindowUpdater(*m_windows, *m_histograms))
{
    tarnis::onLanguageChange(*this, [this] { setTexts(); });
    ui->setupUi(this);
    new WindowAccess(this); // the window's
    ui->viewMenu->addMenu(new LanguageMenu(m_store, language, ui->viewMenu));
    ui->viewMenu->addMenu(new PlotThemeMenu(m_store, ui->viewMenu));
    m_commandPanel = new CommandPanel(*m_controller, this);
    m_settingsPanel = new SettingsPanel(*m_controller, this);
    m_statusPoller = new StatusPoller(
        *m_controller, [this] { return !m_commandPanel->isBusy(); }, this);
    m_runPanel = new RunPanel(*m_controller, *m_statusPoller, ui->centre);
    ui->centreLayout->insertWidget(1, m_runPanel);
    ui->runMenu->addActions(m_runPanel->actions());
    ui->splitter->insertWidget(0, m_commandPanel);
    ui->sideSplitter->insertWidget(0, new ColumnScroll(m_settingsPanel));
    ui->splitter->setSizes({ 600, 500 });
    ui->splitter->setStretchFactor(0, 3);
    ui->splitter->setStretchFactor(1, 2);
    ui->sideSplitter->setStretchFactor(0, 3);
    ui->sideSplitter->setStretchFactor(1, 1);

    connectActions();
    addWindowActions();
    connect(m_windows, &OpenWindows::changed, this, &MainWindow::updateControls);
    connect(m_windows, &OpenWindows::changed, this, &MainWindow::passLiveTime);
    connect(m_statusPoller, &StatusPoller::runStatusChanged, this, &MainWindow::passLiveTime);
    connect(m_histograms, &ServerHistograms::changed, this, &MainWindow::updateControls);
    connect(m_windows, &OpenWindows::changed, this, &MainWindow::goOnLeaving);
    connect(m_windows, &OpenWindows::viewFailed, this,
        [this](const QString& text) { onStatusMessage(alertOf(Alert::Severity::Warning, [text] { return text; })); });
    connect(m_windows, &OpenWindows::kept, this, [this] {
        m_isAskingToSave = false;
        m_isRunGivenUp = false;
    });
    connect(m_controller, &ServerController::stateChanged, this, &MainWindow::updateControls);
    connect(m_saves, &SaveReports::saved, m_statusPoller, &StatusPoller::noteSaved);
    connect(m_controller, &ServerController::alert, this, &MainWindow::onAlert);
    connect(m_controller, &ServerController::statusMessage, this, &MainWindow::onStatusMessage);
    connect(m_commandPanel, &CommandPanel::statusMessage, this, &MainWindow::onStatusMessage);
    connect(&m_runPanel->control(), &RunControl::statusMessage, this, &MainWindow::onStatusMessage);
    connect(&m_runPanel->control(), &RunControl::answered, m_commandPanel, &CommandPanel::addExchange);
    connect(m_commandPanel, &CommandPanel::accepted, m_settingsPanel, &SettingsPanel::onCommandAccepted);
    connect(m_settingsPanel, &SettingsPanel::basePathWanted, this, [this] { openWindow(QStringLiteral("base-path")); });
    connect(m_commandPanel, &CommandPanel::nothingLost, this, [this] {
        if (ui->alertBar->alert().action == AlertAction::SendAgain)
            ui->alertBar->setAlert({});
    });
    connect(m_commandPanel, &CommandPanel::commandTyped, this, &MainWindow::remember);
    connect(m_commandPanel, &CommandPanel::accepted, m_statusPoller, [this](const QString& command) {
        if (changesRun(command))
            m_statusPoller->refresh();
    });
    connect(m_commandPanel, &CommandPanel::busyChanged, m_statusPoller, &StatusPoller::refreshIfFree);
    connect(m_commandPanel, &CommandPanel::busyChanged, this, &MainWindow::updateControls);
    connect(m_settingsPanel, &SettingsPanel::controlsChanged, this, &MainWindow::updateControls);
    connect(ui->alertBar, &AlertBar::actionTriggered, this, &MainWindow::onAlertAction);
    restore();
    updateControls();
    m_commandPanel->focusCommand();
}

MainWindow::~MainWindow()
{
    m_controller->disconnect(this);
    // In this order: each uses some of those that follow, and all use the controller.
    delete m_runPanel;
    delete m_statusPoller;
    delete m_commandPanel;
    delete m_settingsPanel;
    delete m_windowUpdater;
    delete m_windows;
    delete m_histograms;
    delete m_saves;
    delete m_controller;
}

void MainWindow::connectActions()
{
    ui->chooseButton->setDefaultAction(ui->chooseAction);
    ui->startButton->setDefaultAction(ui->startAction);
    ui->restartButton->setDefaultAction(ui->restartAction);
    ui->shutDownButton->setDefaultAction(ui->shutDownAction);
    connect(ui->chooseAction, &QAction::triggered, this, [this] { chooseServer(); });
    connect(ui->startAction, &QAction::triggered, this, &MainWindow::startAgain);
    connect(ui->restartAction, &QAction::triggered, this, &MainWindow::startAgain);
    connect(
        ui->shutDownAction, &QAction::triggered, this, [this] { unlessRunMatters([this] { m_controller->stop(); }); });
    connect(ui->forceAction, &QAction::triggered, this,
        [this] { unlessRunMatters([this] { m_controller->endByForce(); }); });
    connect(ui->quitAction, &QAction::triggered, this, &MainWindow::close);
    connect(ui->sendFileAction, &QAction::triggered, m_commandPanel, &CommandPanel::chooseFileToSend);
    connect(ui->giveUpAction, &QAction::triggered, m_commandPanel, &CommandPanel::giveUp);
    connect(ui->saveRecordAction, &QAction::triggered, this, &MainWindow::saveRecord);
    connect(ui->clearRecordAction, &QAction::triggered, m_commandPanel, &CommandPanel::clearRecord);
    connect(ui->readAction, &QAction::triggered, m_settingsPanel, &SettingsPanel::read);
    connect(ui->sendSettingsAction, &QAction::triggered, this, [this] { m_settingsPanel->send(false); });
    connect(ui->sendAndSaveAction, &QAction::triggered, this, [this] { m_settingsPanel->send(true); });
    connect(ui->goToCommandAction, &QAction::triggered, m_commandPanel, &CommandPanel::focusCommand);
    connect(ui->goToSettingsAction, &QAction::triggered, m_settingsPanel, &SettingsPanel::focusTable);
    connect(ui->goToConsoleAction, &QAction::triggered, this, [this] { OpenWindows::bringForward(*this); });
    connect(ui->goToMessagesAction, &QAction::triggered, this, [this] { ui->messageList->setFocus(); });
    connect(ui->tileAction, &QAction::triggered, m_windows, &OpenWindows::tile);
    connect(ui->cascadeAction, &QAction::triggered, m_windows, &OpenWindows::cascade);
    connect(ui->closeWindowsAction, &QAction::triggered, m_windows, &OpenWindows::closeAll);
    connect(ui->darkAction, &QAction::toggled, this, &MainWindow::setDark);
    connect(ui->keysAction, &QAction::triggered, this, &MainWindow::showKeyboard);
    connect(ui->aboutAction, &QAction::triggered, this, &MainWindow::showAbout);
}

void MainWindow::startServer(const Options& options)
{
    checkStore();
    const LastServer last = readLastServer(m_store);
    const ServerChoice choice = options.server.value_or(last.choice);
    QByteArray prompt = m_controller->prompt();
    if (options.prompt)
        prompt = *options.prompt;
    else if (choice == last.choice && !last.prompt.isEmpty())
        prompt = last.prompt;
    if (!options.server && !last.problem.isEmpty()) {
        onAlert({ Alert::Severity::Warning, tr("The last server cannot be used. %1").arg(last.problem),
            AlertAction::ChooseServer });
        chooseServer(last.choice, prompt);
        return;
    }
    if (choice == last.choice && last.problem.isEmpty())
        m_controller->setKnown(choice);
    m_isServerChosen = true;
    m_controller->start(choice, prompt);
}

void MainWindow::updateControls()
{
    const ServerState state = m_controller->state();
    const bool isUp = state == ServerState::Up;
    const bool isStopping = state == ServerState::Stopping;
    const bool canStart = state == ServerState::Off || state == ServerState::Failed;
    const bool isLocal = m_controller->isLocal();
    const QString name = m_controller->serverName();
    const QString needsServer = tr("Needs a connected server");

    ui->startAction->setText(isLocal ? tr("&Start Server") : tr("Co&nnect"));
    ui->shutDownAction->setText(isLocal ? tr("Shut &Down Server") : tr("&Disconnect"));
    ui->restartAction->setText(isLocal ? tr("&Restart Server") : tr("&Reconnect"));
    setEnabledWithHelp(ui->startAction, canStart, isLocal ? tr("Start %1").arg(name) : tr("Connect to %1").arg(name),
        isStopping ? tr("Wait until the server has ended") : tr("A server is in use already"));
    setEnabledWithHelp(ui->restartAction, isUp || state == ServerState::Failed,
        isLocal ? tr("Shut the server down and start it again") : tr("Disconnect and connect again"),
        tr("There is no server to restart"));
    setEnabledWithHelp(ui->shutDownAction, !canStart && !isStopping,
        isLocal ? tr("Let the server end") : tr("Disconnect from the server, which keeps running"),
        tr("No server is in use"));
    setEnabledWithHelp(ui->forceAction, m_controller->hasProcess(), tr("Kill the local server; unsaved data are lost"),
        tr("No server process of this console is running"));
    setEnabledWithHelp(ui->chooseAction, !isStopping, tr("Start another server, or connect to one"),
        tr("Wait until the server has ended"));
    setEnabledWithHelp(ui->sendFileAction, isUp, tr("Send a file to the server with txfile"), needsServer);
    setEnabledWithHelp(
        ui->giveUpAction, m_commandPanel->isBusy(), tr("Stop waiting for the reply"), tr("No command is under way"));
    setEnabledWithHelp(ui->readAction, isUp, tr("Ask the server for its settings"), needsServer);
    const bool canSend = m_settingsPanel->canSend();
    const QString wait = isUp ? tr("Wait until the sent lines are answered") : needsServer;
    setEnabledWithHelp(ui->sendSettingsAction, m_settingsPanel->hasChangesToSend(),
        tr("Send the settings to the server"),
        canSend ? tr("There is nothing to send: all settings are as on the server") : wait);
    setEnabledWithHelp(ui->sendAndSaveAction, canSend, tr("Send the settings and let the server store them"), wait);
    const bool hasRecord = m_commandPanel->hasRecord();
    const QString noRecord = tr("The record is empty");
    setEnabledWithHelp(ui->saveRecordAction, hasRecord, tr("Write the commands and replies to a text file"), noRecord);
    setEnabledWithHelp(
        ui->clearRecordAction, hasRecord, tr("Remove the commands and replies from the window"), noRecord);
    for (qsizetype i = 0; i < m_windowActions.size(); ++i) {
        const auto& entry = m_entries.at(static_cast<std::size_t>(i));
        const QString reason = refusal(entry);
        setEnabledWithHelp(m_windowActions.at(i), reason.isEmpty(), entry.help, reason);
    }
    ui->sideSplitter->widget(0)->setAccessibleName(tr("Settings and addresses"));
    updateArranging();
    showStatus();
    if (m_isServerChosen)
        reopenWindows();

    if (m_isClosing && state == ServerState::Off)
        QMetaObject::invokeMethod(this, &MainWindow::close, Qt::QueuedConnection);
}

void MainWindow::showStatus()
{
    StatusIndicator indicator = StatusIndicator::Off;
    QString status;
    const QString name = m_controller->serverName();
    const QString address = m_controller->tarnis().GetServerAddress();
    QString server = name;
    switch (m_controller->state()) {
    case ServerState::Off:
        status = tr("No server");
        server = tr("last: %1").arg(name);
        break;
    case ServerState::Starting:
        indicator = StatusIndicator::Waiting;
        status = m_controller->isLocal() ? tr("Starting...") : tr("Connecting...");
        break;
    case ServerState::Up:
        indicator = m_controller->status() == Tarnis::RUNNING ? StatusIndicator::Busy : StatusIndicator::Good;
        status = statusText(m_controller->status());
        if (m_controller->isLocal())
            server = tr("%1 at %2").arg(name, address);
        break;
    case ServerState::Failed:
        indicator = StatusIndicator::Bad;
        status = tr("No connection");
        break;
    case ServerState::Stopping:
        indicator = StatusIndicator::Waiting;
        status = statusText(Tarnis::SHUTTING_DOWN);
        break;
    }
    ui->indicatorLabel->setPixmap(indicatorPicture(indicator, 18, devicePixelRatioF()));
    ui->indicatorLabel->setAccessibleName(status);
    ui->statusLabel->setText(status);
    const QString tip =
        tr("Name of this status in the log: %1").arg(QLatin1String(Tarnis::GetStatusName(m_controller->status())));
    ui->statusLabel->setToolTip(tip);
    ui->indicatorLabel->setToolTip(tip);
    ui->serverLabel->setText(server);
}

void MainWindow::onAlert(const Alert& alert)
{
    ui->alertBar->setAlert(alert);
    if (!alert.text.isEmpty())
        m_commandPanel->addMessage(alert.text);
}

void MainWindow::onStatusMessage(const Alert& alert)
{
    ui->alertBar->setStatusMessage(alert);
    if (!alert.text.isEmpty())
        m_commandPanel->addMessage(alert.text);
}

void MainWindow::onAlertAction(AlertAction action)
{
    switch (action) {
    case AlertAction::StartAgain:
    case AlertAction::ConnectAgain:
        startAgain();
        break;
    case AlertAction::ChooseServer:
        chooseServer();
        break;
    case AlertAction::Stop:
        m_controller->stop();
        break;
    case AlertAction::EndByForce:
        m_controller->endByForce();
        break;
    case AlertAction::SendAgain:
        if (m_controller->state() == ServerState::Up)
            ui->alertBar->setAlert({});
        m_commandPanel->sendAgain();
        break;
    case AlertAction::None:
        break;
    }
}

void MainWindow::startAgain()
{
    unlessRunMatters([this] { m_controller->restart(); });
}

void MainWindow::chooseServer()
{
    chooseServer(m_controller->choice(), m_controller->prompt());
}

void MainWindow::chooseServer(const ServerChoice& current, const QByteArray& currentPrompt)
{
    auto* dialog = new ConnectDialog(current, currentPrompt, this);
    connect(dialog, &QDialog::accepted, this, [this, dialog] {
        const ServerChoice choice = dialog->choice();
        const QByteArray prompt = dialog->prompt();
        unlessRunMatters(
            [this, choice, prompt] {
                m_isServerChosen = true;
                m_controller->start(choice, prompt);
                remember();
            },
            [this, choice, prompt] { chooseServer(choice, prompt); });
    });
    dialog->open();
}

QString MainWindow::runNumber() const
{
    const std::optional<qint64> run = m_statusPoller->runStatus().run;
    return run ? QString::number(*run) : QString();
}

void MainWindow::saveRecord()
{
    auto* dialog =
        new SaveDialog(this, tr("Save the Record"), { tr("Text (*.txt)") }, m_saves->suggestedName(tr("Record")));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& path) {
        const QString error = tarnis::writeFile(path, m_commandPanel->recordText().toUtf8() + '\n');
        if (error.isEmpty())
            setSaveFilePath(path);
        const QSignalBlocker blocker(m_saves); // the record is not server data
        m_saves->report(*this, path, error);
    });
    dialog->open();
}

void MainWindow::showKeyboard()
{
    QWidget* const asking = QApplication::activeWindow(); // perhaps a live window
    auto* box = new KeyboardDialog(ui->menuBar->findChildren<QMenu*>(), asking ? asking : this);
    box->open();
    if (asking && plotOf(*asking))
        box->showPlots();
}

void MainWindow::showAbout()
{
    auto* box = new QMessageBox(QMessageBox::NoIcon, tr("About"),
        tr("<p><b>Tarnis Console %1</b></p><p>Operates a data-acquisition server: status, commands, settings, live "
           "windows.</p>")
            .arg(QStringLiteral(TARNIS_CONSOLE_VERSION)),
        QMessageBox::Close, this);
    box->setObjectName(QStringLiteral("aboutBox"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

void MainWindow::setDark(bool isDark)
{
    QApplication::setPalette(isDark ? darkPalette() : QPalette()); // an empty one follows the desktop
}

void MainWindow::restore()
{
    restoreGeometry(m_store.value(QStringLiteral("window/geometry")).toByteArray());
    if (const QScreen* const place = screen(); place && !isMaximized())
        resize(size().boundedTo(place->availableGeometry().size() - spaceForFrame));
    ui->splitter->restoreState(m_store.value(QStringLiteral("window/splitter")).toByteArray());
    ui->sideSplitter->restoreState(m_store.value(QStringLiteral("window/sideSplitter")).toByteArray());
    ui->darkAction->setChecked(m_store.value(QStringLiteral("window/dark")).toBool());
    m_windowsToReopen = m_store.value(QStringLiteral("windows/open")).toStringList();
    m_commandPanel->history().setEntries(m_store.value(QStringLiteral("commands")).toStringList());
}

void MainWindow::remember()
{
    m_store.setValue(QStringLiteral("window/geometry"), saveGeometry());
    m_store.setValue(QStringLiteral("window/splitter"), ui->splitter->saveState());
    m_store.setValue(QStringLiteral("window/sideSplitter"), ui->sideSplitter->saveState());
    m_store.setValue(QStringLiteral("window/dark"), ui->darkAction->isChecked());
    m_store.setValue(QStringLiteral("commands"), m_commandPanel->history().entries());
    rememberWindows();
    if (m_isServerChosen) // otherwise the stored server may still be corrected
        writeLastServer(m_store, m_controller->choice(), m_controller->prompt());
    m_store.sync();
    checkStore();
}

/// Reports once that the settings cannot be stored.
void MainWindow::checkStore()
{
    if (m_store.status() == QSettings::NoError || std::exchange(m_isStoreFaultReported, true))
        return;
    const QString file = m_store.fileName();
    onStatusMessage(alertOf(Alert::Severity::Warning, [file, status = m_store.status()] {
        return status == QSettings::FormatError
            ? tr("The settings file %1 is not valid. Settings are not stored.").arg(file)
            : tr("The settings file %1 cannot be written. Commands, windows and the server are not stored.").arg(file);
    }));
}

void MainWindow::setTexts()
{
    ui->retranslateUi(this);
    std::vector<WindowEntry> translated = windowEntries();
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        m_windowActions.at(qsizetype(i))->setText(translated[i].menuText);
        m_entries[i] = std::move(translated[i]);
    }
    updateControls();
}

} // namespace console
