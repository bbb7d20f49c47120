#include "command/commandpanel.h"

#include "app/controlhelp.h"
#include "command/filesender.h"
#include "command/history.h"
#include "server/replytext.h"
#include "server/servercontroller.h"
#include "ui_commandpanel.h"

#include <tarnis/foundation/retranslator.h>

#include <QFileDialog>

#include <utility>

namespace console {

namespace {

constexpr qsizetype liveBytes = 16384;
constexpr int progressIntervalMs = 100;
constexpr int progressDelayMs = 400; // a quick reply shows no progress

} // namespace

CommandPanel::CommandPanel(ServerController& controller, QWidget* parent)
    : QWidget(parent)
    , m_controller(controller)
    , ui(std::make_unique<Ui::CommandPanel>())
    , m_channel(new CommandChannel(controller, QStringLiteral("console"), this))
    , m_fileSender(new FileSender(controller, *this))
{
    tarnis::onLanguageChange(*this, [this] {
        ui->retranslateUi(this);
        updateControls();
    });
    ui->setupUi(this);
    QSizePolicy keepsRoom = ui->progressBar->sizePolicy();
    keepsRoom.setRetainSizeWhenHidden(true);
    ui->progressBar->setSizePolicy(keepsRoom);

    connect(ui->commandEdit, &QLineEdit::returnPressed, this, &CommandPanel::sendTyped);
    connect(ui->commandEdit, &QLineEdit::textChanged, this, &CommandPanel::onTyped);
    connect(ui->binaryCheck, &QCheckBox::clicked, this, [this] { m_isBinaryChosen = true; });
    connect(ui->sendButton, &QPushButton::clicked, this, &CommandPanel::sendTyped);
    connect(ui->giveUpButton, &QPushButton::clicked, this, &CommandPanel::giveUp);
    connect(ui->sendFileButton, &QPushButton::clicked, this, &CommandPanel::chooseFileToSend);

    connect(m_fileSender, &FileSender::ready, this, &CommandPanel::sendContent);
    connect(m_fileSender, &FileSender::refused, this, [this](const tarnis::TranslatedText& translated) {
        Q_EMIT statusMessage(alertOf(Alert::Severity::Warning, translated));
    });
    connect(m_channel, &CommandChannel::progress, this, &CommandPanel::onProgress);
    connect(m_channel, &CommandChannel::replied, this, &CommandPanel::onReplied);
    connect(m_channel, &CommandChannel::failed, this, &CommandPanel::onFailed);
    connect(m_channel, &CommandChannel::waitingChanged, this, &CommandPanel::onWaitingChanged);
    connect(&controller, &ServerController::stateChanged, this, &CommandPanel::updateControls);
    connect(&controller, &ServerController::aboutToStop, this, [this] { keepLost(m_channel->drop()); });

    connect(ui->transcript, &Transcript::textChanged, this, [this] {
        if (hasRecord() != std::exchange(m_hadRecord, hasRecord()))
            Q_EMIT busyChanged();
    });
    m_progressTimer.setInterval(progressIntervalMs);
    connect(&m_progressTimer, &QTimer::timeout, this, &CommandPanel::showProgress);
    onWaitingChanged();
}

CommandPanel::~CommandPanel() = default;

History& CommandPanel::history()
{
    return ui->commandEdit->history();
}

void CommandPanel::focusCommand()
{
    ui->commandEdit->setFocus(Qt::ShortcutFocusReason);
    ui->commandEdit->selectAll();
}

bool CommandPanel::isBusy() const
{
    return !m_channel->waiting().isEmpty();
}

bool CommandPanel::hasRecord() const
{
    return !ui->transcript->document()->isEmpty();
}

QString CommandPanel::recordText() const
{
    return ui->transcript->toPlainText();
}

void CommandPanel::addMessage(const QString& text)
{
    ui->transcript->addNote(text);
}

void CommandPanel::insertPath(const QString& path)
{
    const int cursor =
        ui->commandEdit->selectionStart() >= 0 ? ui->commandEdit->selectionStart() : ui->commandEdit->cursorPosition();
    const bool needsSpace = cursor > 0 && !ui->commandEdit->text().at(cursor - 1).isSpace();
    ui->commandEdit->insert((needsSpace ? QStringLiteral(" ") : QString()) + quotedPath(path));
    ui->commandEdit->setFocus(Qt::OtherFocusReason);
}

void CommandPanel::clearRecord()
{
    ui->transcript->clear();
}

void CommandPanel::sendTyped()
{
    if (!ui->sendButton->isEnabled()) {
        hint(ui->sendButton->toolTip());
        return;
    }
    const QString command = ui->commandEdit->text().trimmed();
    history().add(command);
    Q_EMIT commandTyped();
    const bool isBinary = ui->binaryCheck->isChecked();
    ui->commandEdit->clear();
    send({ command, command, isBinary });
    ui->commandEdit->setFocus();
    if (!m_lost.isEmpty() && m_lost.constFirst().text == command) {
        m_lost.removeFirst(); // it is sent again
        if (m_lost.isEmpty())
            Q_EMIT nothingLost();
    }
}

void CommandPanel::send(const Request& request)
{
    auto* command = new TarnisCmd(request.text); // the channel takes ownership
    command->m_cmdName = request.name;
    command->m_bBinary = request.isBinary;
    command->m_bProgress = true;
    m_channel->send(command);
}

/// Records the command that is being sent, so that every reply appears below its command.
void CommandPanel::announce()
{
    m_isAnnounced = true;
    m_received = 0;
    m_shown = 0;
    m_liveTail.clear();
    m_elapsed.start();
    ui->transcript->addCommand(m_channel->waiting().constFirst().name);
}

void CommandPanel::giveUp()
{
    const QList<Request> lost = m_channel->drop();
    if (lost.isEmpty())
        return;
    ui->transcript->addNote(tr("Given up: %1. The server may still be working on it.").arg(lost.first().name));
    const QList<Request> behind = lost.mid(1);
    keepLost(behind);
    if (behind.isEmpty())
        return;
    Q_EMIT statusMessage(alertOf(
        Alert::Severity::Warning,
        [name = lost.first().name, count = int(behind.size())] {
            return tr("\u201c%1\u201d was given up; %Ln later command(s) got no reply.", nullptr, count).arg(name);
        },
        AlertAction::SendAgain));
}

void CommandPanel::chooseFileToSend()
{
    auto* dialog = new QFileDialog(this, tr("Send a File"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    connect(dialog, &QFileDialog::fileSelected, this, &CommandPanel::sendFile);
    dialog->open();
}

void CommandPanel::sendFile(const QString& path)
{
    m_fileSender->start(path);
}

void CommandPanel::sendContent(const QString& request, const QByteArray& content)
{
    Q_EMIT statusMessage({});
    // Latin-1 in both directions preserves every byte. The client refuses a file with the byte 0x04.
    const QString shown = QStringLiteral("%1  (%2)").arg(request, byteCountText(content.size()));
    send({ request + u'\n' + QString::fromLatin1(content), shown, false });
}

void CommandPanel::onProgress(const QByteArray& piece)
{
    m_received += piece.size();
    m_liveTail = (m_liveTail + piece).right(liveBytes);
}

void CommandPanel::showProgress()
{
    const qint64 elapsedMs = m_elapsed.elapsed();
    const bool isLong = elapsedMs >= progressDelayMs;
    ui->progressBar->setVisible(isLong);
    if (!isLong)
        return;
    const QList<Request> waiting = m_channel->waiting();
    QString text = tr("%1: %2 s, %3")
                       .arg(waiting.value(0).name)
                       .arg(double(elapsedMs) / 1000.0, 0, 'f', 1)
                       .arg(byteCountText(m_received));
    if (waiting.size() > 1)
        text += tr(", %Ln more to go", nullptr, int(waiting.size()) - 1);
    ui->progressLabel->setText(text);
    if (m_shown != m_received) {
        m_shown = m_received;
        ui->transcript->setLive(visibleText(m_liveTail));
    }
}

void CommandPanel::onReplied(const PTarnisCmd& command, const QByteArray& reply)
{
    m_isAnnounced = false;
    if (command->m_bBinary) {
        const QString text = visibleText(command->m_replyText.toUtf8());
        const bool isFile = requestsFile(command->m_cmd);
        const QString block = isFile ? fileText(reply) : binaryText(summarizeBinary(reply));
        ui->transcript->addReply(text.isEmpty() ? block : block + u'\n' + tr("text: %1").arg(text), replyKind(text));
    } else {
        const QString text = visibleText(reply);
        ui->transcript->addReply(text.isEmpty() ? tr("(an empty reply)") : text, replyKind(text));
        takeReply(command->m_cmd, reply);
    }
}

void CommandPanel::addExchange(const QString& command, const QByteArray& reply)
{
    const QString text = visibleText(reply);
    if (isBusy()) { // the reply under way must appear below its own command
        ui->transcript->addNote(QStringLiteral("%1: %2").arg(command, text));
    } else {
        ui->transcript->addCommand(command);
        ui->transcript->addReply(text.isEmpty() ? tr("(an empty reply)") : text, replyKind(text));
    }
    takeReply(command, reply);
}

void CommandPanel::takeReply(const QString& command, const QByteArray& reply)
{
    m_controller.readReply(command, reply);
    if (replyKind(QString::fromUtf8(reply)) != ReplyKind::Refused)
        Q_EMIT accepted(command);
}

void CommandPanel::onFailed(const QString& message, const QList<Request>& unanswered)
{
    ui->transcript->addNote(tr("The connection broke: %1.").arg(message));
    keepLost(unanswered);
    // A lost server has its own alert.
    if (!unanswered.isEmpty() && m_controller.state() == ServerState::Up) {
        Q_EMIT statusMessage(alertOf(
            Alert::Severity::Warning,
            [name = unanswered.first().name, message] {
                return tr("The connection broke before the reply to \u201c%1\u201d was complete (%2). The next command "
                          "opens a new one.")
                    .arg(name, message);
            },
            AlertAction::SendAgain));
    }
    m_controller.checkServer();
}

void CommandPanel::keepLost(const QList<Request>& unanswered)
{
    if (unanswered.isEmpty())
        return;
    m_lost = unanswered;
    for (const Request& request : unanswered)
        ui->transcript->addNote(tr("No reply: %1").arg(request.name));
    // A single command can be restored to the command line, unless the user is typing there.
    if (ui->commandEdit->text().isEmpty() && !unanswered.first().text.contains(u'\n'))
        ui->commandEdit->setText(unanswered.first().text);
}

void CommandPanel::sendAgain()
{
    if (m_controller.state() != ServerState::Up)
        return;
    const QList<Request> lost = std::exchange(m_lost, {});
    if (!lost.isEmpty() && ui->commandEdit->text() == lost.first().text)
        ui->commandEdit->clear();
    for (const Request& request : lost)
        send(request);
}

void CommandPanel::onWaitingChanged()
{
    if (!isBusy()) {
        m_isAnnounced = false;
        m_progressTimer.stop();
        ui->transcript->clearLive();
        ui->progressLabel->clear();
        ui->progressBar->hide();
    } else if (!m_isAnnounced) {
        announce();
        m_progressTimer.start();
    }
    updateControls();
    Q_EMIT busyChanged();
}

void CommandPanel::hint(const QString& text)
{
    if (!isBusy())
        ui->progressLabel->setText(text);
}

void CommandPanel::onTyped(const QString& text)
{
    if (text.isEmpty())
        m_isBinaryChosen = false;
    if (!m_isBinaryChosen)
        ui->binaryCheck->setChecked(looksBinary(text));
    hint(text.isEmpty() ? QString() : commandProblem(text));
    updateControls();
}

void CommandPanel::updateControls()
{
    const bool isUp = m_controller.state() == ServerState::Up;
    const QString typed = ui->commandEdit->text();
    const QString problem = commandProblem(typed);
    const QString needsServer = tr("Needs a connected server. What you type stays here.");
    setEnabledWithHelp(ui->sendButton, isUp && problem.isEmpty(), tr("Send the command (Enter)"),
        typed.isEmpty() ? tr("Type a command first") : (problem.isEmpty() ? needsServer : problem));
    setEnabledWithHelp(ui->sendFileButton, isUp,
        withKey(tr("Send a file to the server with txfile"), Qt::CTRL | Qt::Key_O), needsServer);
    setEnabledWithHelp(ui->giveUpButton, isBusy(),
        withKey(tr("Stop waiting for the reply and close its connection"), Qt::CTRL | Qt::Key_G),
        tr("No command is under way"));
    ui->binaryCheck->setToolTip(tr("The reply is a block of numbers followed by text, as of hist1d and hist2d, or a "
                                   "file, as of rxfile; set automatically for known commands"));
}

} // namespace console
