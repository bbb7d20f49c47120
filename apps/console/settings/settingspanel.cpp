#include "settings/settingspanel.h"

#include "app/controlhelp.h"
#include "server/replytext.h"
#include "server/servercontroller.h"
#include "settings/addsettingdialog.h"
#include "settings/settingsmodel.h"
#include "ui_settingspanel.h"

#include <tarnis/foundation/retranslator.h>
#include <tarnis/server/tarniscmd.h>

#include <QHostAddress>
#include <QTime>

#include <utility>

namespace console {

namespace {

constexpr QLatin1String session("control");
constexpr QLatin1String readName("settingCmd");
constexpr QLatin1String readFirstName("settingBeforeSendCmd");
constexpr QLatin1String basePathName("settingBasePathCmd"); // defined by the manager, like the next two
constexpr QLatin1String saveName("savesettingCmd");
constexpr QLatin1String lineName("updateSettingCmd");

bool isIPv4(const QString& text)
{
    return text.count(u'.') == 3 && QHostAddress(text).protocol() == QAbstractSocket::IPv4Protocol;
}

} // namespace

SettingsPanel::SettingsPanel(ServerController& controller, QWidget* parent)
    : QWidget(parent)
    , m_controller(controller)
    , ui(std::make_unique<Ui::SettingsPanel>())
    , m_model(new SettingsModel(controller.tarnis(), this))
{
    tarnis::onLanguageChange(*this, [this] {
        ui->retranslateUi(this);
        Q_EMIT m_model->headerDataChanged(Qt::Horizontal, 0, SettingsModel::ColumnCount - 1);
        updateControls();
    });
    ui->setupUi(this);
    ui->table->setModel(m_model);

    connect(ui->readButton, &QPushButton::clicked, this, &SettingsPanel::read);
    connect(ui->addButton, &QPushButton::clicked, this, &SettingsPanel::addSetting);
    connect(ui->removeButton, &QPushButton::clicked, this, &SettingsPanel::removeSetting);
    connect(ui->revertButton, &QPushButton::clicked, m_model, &SettingsModel::takeServerValues);
    connect(ui->sendSettingsButton, &QPushButton::clicked, this, [this] { send(false); });
    connect(ui->saveButton, &QPushButton::clicked, this, [this] { send(true); });
    connect(ui->pathButton, &QPushButton::clicked, this, &SettingsPanel::setBasePath);
    connect(ui->pathEdit, &QLineEdit::returnPressed, this, &SettingsPanel::setBasePath);
    connect(ui->pathEdit, &QLineEdit::textChanged, this, &SettingsPanel::updateControls);
    connect(ui->addressButton, &QPushButton::clicked, this, &SettingsPanel::setReadoutAddress);
    connect(ui->ipEdit, &QLineEdit::returnPressed, this, &SettingsPanel::setReadoutAddress);
    connect(ui->ipEdit, &QLineEdit::textChanged, this, &SettingsPanel::updateControls);
    connect(ui->indexSpin, &QSpinBox::valueChanged, this, &SettingsPanel::showReadoutAddress);
    connect(ui->table->selectionModel(), &QItemSelectionModel::currentChanged, this, &SettingsPanel::updateControls);

    connect(
        m_model, &SettingsModel::refused, this, [this](const QString& text) { setStateText([text] { return text; }); });
    connect(m_model, &SettingsModel::edited, this, &SettingsPanel::onEdited);
    connect(&controller, &ServerController::stateChanged, this, &SettingsPanel::onServerState);
    connect(&controller.tarnis(), &Tarnis::onCmdReply, this, &SettingsPanel::onCmdReply);
    connect(&controller.tarnis(), &Tarnis::onBasePathChange, this, [this](const QString& path) {
        setStateText([path] { return tr("The base path %1 is being sent.").arg(path); });
    });
    connect(ui->pathBrowseButton, &QPushButton::clicked, this, &SettingsPanel::basePathWanted);
    showState();
    updateControls();
}

SettingsPanel::~SettingsPanel() = default;

void SettingsPanel::focusTable()
{
    ui->table->setFocus(Qt::ShortcutFocusReason);
    if (!ui->table->currentIndex().isValid())
        ui->table->setCurrentIndex(m_model->index(0, SettingsModel::Value));
}

bool SettingsPanel::canSend() const
{
    return m_controller.state() == ServerState::Up && m_linesPending == 0 && !m_sendAsked;
}

bool SettingsPanel::hasChangesToSend() const
{
    return canSend() && !m_model->changedNames().isEmpty();
}

void SettingsPanel::read()
{
    if (m_controller.state() != ServerState::Up)
        return;
    m_refusals.clear();
    setStateText([] { return tr("Reading..."); });
    sendRead();
}

void SettingsPanel::sendRead()
{
    m_controller.tarnis().SendCmd(session, readName, QStringLiteral("setting"), false);
}

void SettingsPanel::onCommandAccepted(const QString& command)
{
    const bool isSetting = command.section(u' ', 0, 0) == u"setting" && command.contains(u':');
    const bool mayChange = isSetting || changesRun(command);
    // Before they are sent, the settings are read anyway.
    if (mayChange && canSend())
        sendRead();
}

void SettingsPanel::send(bool save)
{
    if (!canSend())
        return;
    m_refusals.clear();
    m_sendAsked = save;
    setStateText([] { return tr("Reading the settings of the server..."); });
    updateControls();
    m_controller.tarnis().SendCmd(session, readFirstName, QStringLiteral("setting"), false);
}

void SettingsPanel::sendAll()
{
    m_isSaving = *std::exchange(m_sendAsked, std::nullopt);
    m_model->noteSending(m_model->changedNames());
    m_linesSent = m_controller.tarnis().DownloadSettings(session, m_isSaving) + (m_isSaving ? 1 : 0);
    m_linesPending = m_linesSent;
    setStateText([count = m_linesSent] { return tr("Sending %Ln line(s)...", nullptr, count); });
    updateControls();
}

void SettingsPanel::onCmdReply(const QString& name, const QString& command, const QByteArray& result)
{
    const QString reply = QString::fromUtf8(result);
    if (name == readName)
        onSettingReply(reply);
    else if (name == readFirstName && m_sendAsked) {
        takeValues(reply); // a server that does not report its values may still accept settings
        sendAll();
    } else if (name == saveName || name.startsWith(lineName))
        onSendReply(command, reply);
    else if (name == basePathName && replyKind(reply) == ReplyKind::Refused)
        setStateText([answer = reply.trimmed()] { return tr("The server refused the base path: %1").arg(answer); });
    else if (name == basePathName) {
        m_model->noteSending({ QStringLiteral("basepath") });
        read();
    }
}

void SettingsPanel::onSettingReply(const QString& reply)
{
    if (replyKind(reply) == ReplyKind::Refused) {
        setStateText([answer = reply.trimmed()] { return answer; });
        return;
    }
    takeValues(reply);
    // After the values, whose arrival updates the number of changes.
    if (const QStringList refusals = std::exchange(m_refusals, {}); !refusals.isEmpty())
        setStateText([refusals, sent = m_linesSent] {
            return tr("The server refused %L1 of %L2: %3").arg(refusals.size()).arg(sent).arg(refusals.first());
        });
    else if (std::exchange(m_isAccepted, false) && m_model->changedNames().isEmpty())
        setStateText([isSaving = m_isSaving, time = QTime::currentTime().toString(u"HH:mm:ss")] {
            return isSaving ? tr("As on the server, saved there at %1.").arg(time)
                            : tr("As on the server, sent at %1.").arg(time);
        });
}

void SettingsPanel::takeValues(const QString& reply)
{
    if (replyKind(reply) == ReplyKind::Refused)
        return;
    QMap<QString, QString> values;
    TarnisCmd::makeNameValueMap(reply.split(u'\n'), values);
    values.remove(QStringLiteral("OK"));
    m_hasRead = true;
    if (!std::exchange(m_isFresh, false)) {
        m_model->setServerValues(values);
        return;
    }
    if (const int kept = m_model->setFreshServerValues(values); kept > 0)
        setStateText([kept] {
            return tr("The server has restarted. %Ln setting(s) sent before are not on it: send the settings again.",
                nullptr, kept);
        });
}

void SettingsPanel::onSendReply(const QString& command, const QString& reply)
{
    if (replyKind(reply) == ReplyKind::Refused)
        m_refusals.append(QStringLiteral("%1: %2").arg(command.section(u' ', 0, 0), reply.trimmed()));
    m_linesPending = qMax(0, m_linesPending - 1);
    if (m_linesPending > 0)
        return;
    m_isAccepted = m_refusals.isEmpty();
    updateControls();
    sendRead();
}

void SettingsPanel::onServerState()
{
    const bool isUp = m_controller.state() == ServerState::Up;
    if (!isUp) {
        m_linesPending = 0;
        m_sendAsked.reset();
        m_refusals.clear();
        m_isAccepted = false;
        showState(); // no request is under way
    }
    if (isUp && !m_wasUp) {
        m_isFresh = m_controller.isLocal();
        if (m_choice != m_controller.choice())
            m_model->forgetSent();
        m_choice = m_controller.choice();
        read();
    }
    m_wasUp = isUp;
    updateControls();
}

/// The state without a request under way.
void SettingsPanel::showState()
{
    setStateText([this] { return stateText(); });
}

QString SettingsPanel::stateText() const
{
    const auto changed = int(m_model->changedNames().size());
    const QString changes = changed > 0 ? tr("%Ln changed here, not on the server yet.", nullptr, changed) : QString();
    if (m_controller.state() == ServerState::Up)
        return changed > 0 ? changes : tr("As on the server.");
    const QString state =
        m_hasRead ? tr("Not connected. Showing the settings that were last read.") : tr("No settings were read yet.");
    return changed > 0 ? state + u' ' + changes : state;
}

void SettingsPanel::onEdited()
{
    if (m_linesPending == 0 && !m_sendAsked)
        showState();
    showReadoutAddress();
    const QString path = m_controller.tarnis().GetSettingValue(QStringLiteral("basepath"), QString());
    if (path != std::exchange(m_shownPath, path)) // otherwise keeps what the user is typing
        ui->pathEdit->setText(path);
    updateControls();
}

void SettingsPanel::addSetting()
{
    auto* dialog = new AddSettingDialog(*m_model, this);
    dialog->open();
}

void SettingsPanel::removeSetting()
{
    m_model->remove(ui->table->currentIndex().row());
}

void SettingsPanel::setBasePath()
{
    if (!ui->pathButton->isEnabled())
        return;
    Tarnis& tarnis = m_controller.tarnis();
    const bool isStoredOnly = m_controller.status() == Tarnis::IDLE;
    tarnis.SetBasePath(ui->pathEdit->text().trimmed(), ui->instCheck->isChecked());
    m_model->reload();
    if (isStoredOnly)
        setStateText([] { return tr("The base path is kept until settings are sent."); });
}

void SettingsPanel::setReadoutAddress()
{
    if (!ui->addressButton->isEnabled())
        return;
    QString ip = ui->ipEdit->text().trimmed();
    const auto tcp = unsigned(ui->tcpSpin->value());
    const auto bcp = unsigned(ui->bcpSpin->value());
    if (ui->indexSpin->value() < 0)
        m_controller.tarnis().SetReadoutAddress(ip, tcp, bcp);
    else
        m_controller.tarnis().SetReadoutAddress(ui->indexSpin->value(), ip, tcp, bcp);
    m_model->reload();
    tarnis::setTranslatedText(*ui->addressLabel,
        [address = m_controller.tarnis().GetReadoutAddressText()] { return tr("Set: %1").arg(address); });
}

void SettingsPanel::showReadoutAddress()
{
    QString ip;
    unsigned int tcp = 0;
    unsigned int bcp = 0;
    if (ui->indexSpin->value() < 0)
        m_controller.tarnis().GetReadoutAddress(ip, tcp, bcp);
    else
        m_controller.tarnis().GetReadoutAddress(ui->indexSpin->value(), ip, tcp, bcp);
    const QString shown = QStringLiteral("%1 %2 %3 %4").arg(ui->indexSpin->value()).arg(ip).arg(tcp).arg(bcp);
    if (shown == std::exchange(m_shownAddress, shown))
        return; // unchanged: keeps what the user is typing
    ui->ipEdit->setText(ip);
    ui->tcpSpin->setValue(int(qMin(tcp, 65535U)));
    ui->bcpSpin->setValue(int(qMin(bcp, 65535U)));
}

void SettingsPanel::setStateText(const tarnis::TranslatedText& translated)
{
    tarnis::setTranslatedText(*ui->stateLabel, translated);
}

void SettingsPanel::updateControls()
{
    const bool isUp = m_controller.state() == ServerState::Up;
    const bool hasChanges = !m_model->changedNames().isEmpty();
    const QString needsServer = tr("Needs a connected server");
    const QString wait = isUp ? tr("Wait until the sent lines are answered") : needsServer;
    setEnabledWithHelp(ui->readButton, isUp, withKey(tr("Ask the server for its settings"), Qt::Key_F5), needsServer);
    setEnabledWithHelp(ui->sendSettingsButton, hasChangesToSend(),
        withKey(tr("Send the settings to the server"), Qt::Key_F6),
        canSend() ? tr("There is nothing to send: all settings are as on the server") : wait);
    setEnabledWithHelp(
        ui->saveButton, canSend(), withKey(tr("Send all settings and let the server store them"), Qt::Key_F7), wait);
    setEnabledWithHelp(ui->addButton, true, tr("Add a setting here"), QString());
    const QModelIndex chosen = ui->table->currentIndex();
    setEnabledWithHelp(ui->removeButton, m_model->isRemovable(chosen.row()), tr("Remove the selected setting here"),
        chosen.isValid() ? tr("The server has this setting; only settings that were added here can be removed")
                         : tr("Choose a setting in the table first"));
    setEnabledWithHelp(
        ui->revertButton, hasChanges, tr("Reset all values to the server's"), tr("Nothing was changed here"));

    const QString pathProblem = settingProblem(QStringLiteral("basepath"), ui->pathEdit->text().trimmed());
    const Tarnis::SERVER_STATUS status = m_controller.status();
    const QString refusal = m_controller.basePathRefusal();
    const bool hasPath = !ui->pathEdit->text().trimmed().isEmpty() && pathProblem.isEmpty();
    const QString pathHelp = status == Tarnis::IDLE ? tr("Keep the base path until settings are sent")
                                                    : tr("Send the base path to the server");
    QString pathReason = pathProblem.isEmpty() ? tr("Type a path first") : pathProblem;
    if (!refusal.isEmpty())
        pathReason = refusal;
    setEnabledWithHelp(ui->pathButton, refusal.isEmpty() && hasPath, pathHelp, pathReason);

    setEnabledWithHelp(ui->pathBrowseButton, isUp && refusal.isEmpty(),
        tr("Choose the folder of the data on the server"), isUp ? refusal : needsServer);

    const QString ip = ui->ipEdit->text().trimmed();
    const bool isAddress = isIPv4(ip);
    setEnabledWithHelp(ui->addressButton, isUp && isAddress,
        tr("Store the address in the settings; then send the settings"),
        isUp ? tr("Type an IPv4 address such as 192.168.0.16 first") : needsServer);
    Q_EMIT controlsChanged();
}

} // namespace console
