#include "browse/runswindow.h"

#include "app/controlhelp.h"
#include "browse/pathwindows.h"
#include "command/commandpanel.h"
#include "server/commandchannel.h"
#include "server/replytext.h"
#include "server/servercontroller.h"
#include "ui_runswindow.h"
#include <tarnis/foundation/retranslator.h>

#include <QHeaderView>

#include <algorithm>

namespace console {

namespace {

constexpr QLatin1String pwdName("runsPwd");
constexpr QLatin1String listName("runsLs");

} // namespace

RunsWindow::RunsWindow(const WindowContext& context)
    : QDialog(context.parent)
    , m_context(context)
    , ui(std::make_unique<Ui::RunsWindow>())
    , m_channel(new CommandChannel(context.controller, QStringLiteral("runs"), this))
{
    m_context.parent = this; // parent of the windows opened from here
    tarnis::onLanguageChange(*this, [this] {
        ui->retranslateUi(this);
        ui->prefixCombo->setItemText(0, tr("all"));
        Q_EMIT m_runs.headerDataChanged(Qt::Horizontal, 0, RunTable::ColumnCount - 1);
        updateControls();
    });
    ui->setupUi(this);
    m_order.setSourceModel(&m_runs);
    ui->table->setModel(&m_order);
    ui->table->sortByColumn(RunTable::Prefix, Qt::AscendingOrder);
    ui->table->horizontalHeader()->setHighlightSections(false);
    ui->table->horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    ui->table->horizontalHeader()->setStretchLastSection(true);
    ui->table->verticalHeader()->setDefaultSectionSize(ui->table->fontMetrics().height() + 6);

    connect(ui->folderEdit, &QLineEdit::returnPressed, this, &RunsWindow::refresh);
    addKey(ui->refreshButton, Qt::Key_F5);
    connect(ui->refreshButton, &QPushButton::clicked, this, &RunsWindow::refresh);
    connect(ui->browseButton, &QPushButton::clicked, this, &RunsWindow::browse);
    connect(ui->closeButton, &QPushButton::clicked, this, &RunsWindow::close);
    connect(ui->insertButton, &QPushButton::clicked, this, &RunsWindow::insertChosen);
    connect(ui->table, &QTableView::activated, this, &RunsWindow::insertChosen);
    connect(ui->table->selectionModel(), &QItemSelectionModel::selectionChanged, this, &RunsWindow::updateControls);
    connect(ui->partEdit, &QLineEdit::textChanged, this, [this](const QString& part) {
        m_order.setPart(part.trimmed());
        showCount();
    });
    connect(ui->prefixCombo, &QComboBox::currentIndexChanged, this, [this](int index) {
        m_order.setPrefix(index > 0 ? ui->prefixCombo->currentText() : QString());
        showCount();
    });
    connect(m_channel, &CommandChannel::replied, this, &RunsWindow::onReplied);
    connect(m_channel, &CommandChannel::waitingChanged, this, &RunsWindow::updateControls);
    connect(m_channel, &CommandChannel::failed, this, [this](const QString& message) {
        tarnis::setTranslatedText(
            *ui->stateLabel, [message] { return tr("No reply: %1. Refresh to ask again.").arg(message); });
        m_context.controller.checkServer();
    });
    connect(&context.controller, &ServerController::aboutToStop, this, [this] {
        if (!m_channel->drop().isEmpty())
            tarnis::setTranslatedText(*ui->stateLabel, [] { return tr("No reply: the server was stopped."); });
    });
    connect(&context.controller, &ServerController::stateChanged, this, &RunsWindow::updateControls);
    fillPrefixes();
    refresh();
}

RunsWindow::~RunsWindow() = default;

void RunsWindow::setFolder(const QString& folder)
{
    ui->folderEdit->setText(folder);
    refresh();
}

void RunsWindow::refresh()
{
    if (m_context.controller.state() != ServerState::Up)
        return;
    m_channel->drop(); // a list of another folder was requested: drop it
    m_asked = ui->folderEdit->text().trimmed();
    if (const QString problem = commandProblem(quotedPath(m_asked)); !problem.isEmpty()) {
        tarnis::setTranslatedText(*ui->stateLabel, [asked = quotedPath(m_asked)] {
            return tr("The folder cannot be requested: %1").arg(commandProblem(asked));
        });
        return;
    }
    tarnis::setTranslatedText(*ui->stateLabel, [] { return tr("Asking the server..."); });
    if (m_asked.isEmpty())
        ask(QStringLiteral("pwd"), pwdName);
    else
        ask(QStringLiteral("ls-F ") + quotedPath(m_asked), listName);
}

void RunsWindow::ask(const QString& command, const QString& name)
{
    auto* const asked = new TarnisCmd(command); // the channel takes ownership
    asked->m_cmdName = name;
    m_channel->send(asked);
}

void RunsWindow::onReplied(const PTarnisCmd& command, const QByteArray& reply)
{
    const QString text = QString::fromUtf8(reply);
    QStringList lines = text.split(u'\n');
    if (!lines.constFirst().startsWith(u"OK:")) {
        tarnis::setTranslatedText(*ui->stateLabel,
            [answer = text.trimmed()] { return tr("The server does not list the folder: %1").arg(answer); });
        return;
    }
    lines.removeFirst();
    if (command->m_cmdName == listName) {
        onListed(lines);
        return;
    }
    m_asked = lines.value(0);
    ask(QStringLiteral("ls-F ") + quotedPath(m_asked), listName);
}

void RunsWindow::onListed(const QStringList& entries)
{
    m_runs.setRuns(runDirectoriesOf(entries));
    m_others = std::count_if(entries.begin(), entries.end(), [](const QString& entry) { return !entry.isEmpty(); })
        - m_runs.rowCount();
    m_shown = m_asked;
    m_isListed = true;
    ui->table->resizeColumnsToContents();
    fillPrefixes();
    showCount();
    updateControls();
}

void RunsWindow::fillPrefixes()
{
    const QString before = ui->prefixCombo->currentIndex() > 0 ? ui->prefixCombo->currentText() : QString();
    const QStringList prefixes = m_runs.prefixes();
    {
        const QSignalBlocker blocker(ui->prefixCombo);
        ui->prefixCombo->clear();
        ui->prefixCombo->addItem(tr("all"));
        ui->prefixCombo->addItems(prefixes);
        ui->prefixCombo->setCurrentIndex(int(prefixes.indexOf(before)) + 1);
    }
    m_order.setPrefix(ui->prefixCombo->currentIndex() > 0 ? before : QString());
}

void RunsWindow::showCount()
{
    if (!m_isListed)
        return;
    tarnis::setTranslatedText(*ui->stateLabel, [this] {
        const int all = m_runs.rowCount();
        const int shown = m_order.rowCount();
        const QString count =
            shown == all ? tr("%Ln run(s)", nullptr, all) : tr("%L1 of %Ln run(s)", nullptr, all).arg(shown);
        return m_others == 0
            ? tr("%1 in %2").arg(count, m_shown)
            : tr("%1 in %2, and %3").arg(count, m_shown, tr("%Ln other entry(s)", nullptr, int(m_others)));
    });
}

void RunsWindow::browse()
{
    if (bringForward<FolderChooser>(*this))
        return;
    auto* const chooser = new FolderChooser(m_context, [] { return tr("Folder of the Runs"); });
    connect(chooser, qOverload<const QString&>(&SelectPathDialog::accepted), this, &RunsWindow::setFolder);
    chooser->show();
}

void RunsWindow::insertChosen()
{
    const QModelIndexList chosen = ui->table->selectionModel()->selectedRows(RunTable::Name);
    if (chosen.isEmpty())
        return;
    const QString folder = m_shown.endsWith(u'/') ? m_shown : m_shown + u'/';
    m_context.commandPanel.insertPath(folder + chosen.constFirst().data().toString());
}

void RunsWindow::updateControls()
{
    const bool isUp = m_context.controller.state() == ServerState::Up;
    const bool isAsking = !m_channel->waiting().isEmpty();
    setEnabledWithHelp(ui->refreshButton, isUp && !isAsking, withKey(tr("Ask the server again"), Qt::Key_F5),
        isUp ? tr("Wait for the reply") : tr("Needs a connected server. Showing the previous runs."));
    setEnabledWithHelp(ui->browseButton, isUp, tr("Choose the folder on the server"), tr("Needs a connected server"));
    setEnabledWithHelp(ui->insertButton, ui->table->selectionModel()->hasSelection(),
        tr("Insert the run's path into the command line"), tr("Choose a run in the table first"));
}

} // namespace console
