#include "instrument.h"

#include <tarnis/live/livemap.h>
#include <tarnis/live/liveplot.h>

#include <QDateTime>
#include <QDockWidget>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSplitter>
#include <QStatusBar>
#include <QTableView>
#include <QToolBar>
#include <QVBoxLayout>

using tarnis::Server;
using tarnis::SettingsModel;

namespace {

constexpr int maxLogLines = 1000;
constexpr int maxLogChars = 500; // characters per entry
constexpr qint64 maxReply = qint64(8) << 20;

} // namespace

Instrument::Instrument(const tarnis::ServerOptions& options, const tarnis::RequestOptions& request)
    : m_request(request)
    , m_server(options)
    , m_settings(*m_server.client("settings"))
    , m_state(new QLabel)
    , m_run(new QLabel)
    , m_log(new QPlainTextEdit)
    , m_line(new QLineEdit)
{
    m_request.maxSize = maxReply;
    setWindowTitle("Instrument");
    for (QLabel* const label : { m_state, m_run })
        label->setTextFormat(Qt::PlainText);
    statusBar()->addWidget(m_state, 1);
    statusBar()->addPermanentWidget(m_run);
    addActions();
    addPlots();
    addSettings();
    addLog();
    connect(&m_server, &Server::stateChanged, this, [this] { showState(); });
    connect(&m_server, &Server::statisticsChanged, this, [this](const QMap<QString, QString>& numbers) {
        m_run->setText(QString("Run %1, %2 events").arg(numbers.value("state").toLower(), numbers.value("events")));
    });
    showState();
}

void Instrument::open(const QString& target)
{
    const QStringList parts = target.split(':');
    bool isPort = false;
    const ushort port = parts.value(1).toUShort(&isPort);
    if (parts.size() == 2 && isPort)
        m_server.connectTo(parts.first(), port);
    else
        m_server.startLocal(target);
}

void Instrument::addActions()
{
    QToolBar* const bar = addToolBar("Server");
    for (const auto& [text, command] :
        { std::pair("&Start run", "start"), { "S&top run", "stop" }, { "&Clear", "clear" } })
        m_commands << bar->addAction(text, this, [this, command = QString(command)] { send(command); });
    bar->addSeparator();
    m_restart = bar->addAction("&Restart", this, [this] { m_server.restart(); });
    m_cancel = bar->addAction("C&ancel", this, [this] { m_server.cancel(); });
}

void Instrument::addPlots()
{
    auto* const spectrum = new tarnis::LivePlot;
    spectrum->setNameX("Time");
    follow(*spectrum, "hist1d total bins:1024");
    auto* const image = new tarnis::LiveMap;
    follow(*image, "hist2d image bins:128");
    auto* const plots = new QSplitter;
    plots->addWidget(spectrum);
    plots->addWidget(image);
    setCentralWidget(plots);
}

void Instrument::follow(tarnis::LiveWidget& widget, const QString& command)
{
    tarnis::PollOptions options;
    options.interval = std::chrono::milliseconds(500);
    options.silence = m_request.silence;
    options.maxSize = m_request.maxSize;
    widget.setOptions(options);
    widget.setCommand(command);
    widget.setClient(m_server.client("plots")); // a separate connection, so that no command waits for a histogram
}

void Instrument::addSettings()
{
    auto* const panel = new QWidget;
    auto* const table = new QTableView;
    auto* const send = new QPushButton("S&end");
    auto* const revert = new QPushButton("Re&vert");
    auto* const layout = new QVBoxLayout(panel);
    layout->addWidget(table);
    layout->addWidget(send);
    layout->addWidget(revert);
    table->setModel(&m_settings);
    table->horizontalHeader()->setStretchLastSection(true);
    auto* const dock = new QDockWidget("Settings");
    dock->setWidget(panel);
    addDockWidget(Qt::RightDockWidgetArea, dock);

    connect(send, &QPushButton::clicked, &m_settings, &SettingsModel::send);
    connect(revert, &QPushButton::clicked, &m_settings, &SettingsModel::discardChanges);
    connect(m_server.client("settings"), &tarnis::Client::connected, &m_settings, &SettingsModel::refresh);
    connect(&m_settings, &SettingsModel::failed, this, [this](const QString& reason) { log("Settings: " + reason); });
    const auto logRefusal = [this](const QString& name, const QString& reason) {
        log(QString("%1 was not set: %2").arg(name, reason));
    };
    connect(&m_settings, &SettingsModel::refused, this, logRefusal);
    connect(&m_settings, &SettingsModel::invalidValue, this, logRefusal);
    connect(&m_settings, &SettingsModel::sent, this, [this](int accepted, int refused) {
        log(QString("Settings: %1 accepted, %2 refused").arg(accepted).arg(refused));
    });
}

void Instrument::addLog()
{
    auto* const panel = new QWidget;
    auto* const layout = new QVBoxLayout(panel);
    layout->addWidget(m_log);
    layout->addWidget(m_line);
    m_log->setReadOnly(true);
    m_log->setMaximumBlockCount(maxLogLines);
    m_line->setPlaceholderText("Command");
    auto* const dock = new QDockWidget("Log");
    dock->setWidget(panel);
    addDockWidget(Qt::BottomDockWidgetArea, dock);
    connect(m_line, &QLineEdit::returnPressed, this, [this] {
        send(m_line->text());
        m_line->clear();
    });
}

void Instrument::send(const QString& command)
{
    log("> " + command);
    // The future always ends exactly once.
    m_server.client("commands")->request(command, m_request).then(this, [this, command](const tarnis::Reply& reply) {
        const QString text = reply.isOk() ? QString::fromUtf8(reply.data.left(maxLogChars)) : reply.reason;
        log(QString(reply.isOk() ? "< %1: %2" : "! %1: %2").arg(command, text.trimmed()));
    });
}

void Instrument::showState()
{
    const auto state = m_server.state();
    const bool isConnected = state == Server::State::Connected;
    const bool isOver = state == Server::State::Failed || state == Server::State::Idle;
    for (QAction* const action : m_commands)
        action->setEnabled(isConnected);
    if (!isConnected)
        m_run->clear();
    m_restart->setEnabled(state == Server::State::Failed);
    m_cancel->setEnabled(!isConnected && !isOver);
    QString text = QVariant::fromValue(state).toString();
    if (!m_server.reason().isEmpty())
        text += ": " + m_server.reason();
    m_state->setText(text.left(maxLogChars));
    m_state->setToolTip("<qt>" + text.left(maxLogChars).toHtmlEscaped());
    log(text);
}

void Instrument::log(const QString& text)
{
    QString shown = text.left(maxLogChars).replace('\n', " / ");
    for (QChar& c : shown) // a reply may contain anything, and each script in it would load its fonts
        c = c.isPrint() && c.unicode() <= 0xff ? c : QChar('?');
    m_log->appendPlainText(QTime::currentTime().toString("HH:mm:ss ") + shown);
}
