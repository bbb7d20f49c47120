#include "tables/moduleswindow.h"

#include "app/controlhelp.h"
#include "server/commandchannel.h"
#include "server/replytext.h"
#include "server/servercontroller.h"
#include "tables/tabledialog.h"
#include "ui_modulesform.h"

#include <tarnis/foundation/log.h>
#include <tarnis/foundation/retranslator.h>
#include <tarnis/server/tarniscmds.h>

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QPushButton>
#include <QTableWidget>

namespace console {

namespace {

constexpr int showMs = 100;

} // namespace

ModulesWindow::ModulesWindow(ServerController& controller, QWidget* parent)
    : NameValueListDialog(QList<NameValues>(), QStringList { QString(), QString() }, parent)
    , m_controller(controller)
    , m_form(std::make_unique<Ui::ModulesForm>())
    , m_channel(new CommandChannel(controller, QStringLiteral("modules"), this))
    , m_stateLabel(stateLabelOf(*this))
    , m_sendButton(mainButtonOf(*this))
    , m_giveUpButton(buttonBoxOf(*this).addButton(QString(), QDialogButtonBox::ActionRole))
{
    tarnis::onLanguageChange(*this, [this] {
        const QString text = m_form->commandBox->currentText();
        m_form->retranslateUi(m_form->targetBox->parentWidget());
        m_form->commandBox->setEditText(text);
        setTexts();
    });
    m_showTimer.setSingleShot(true);
    m_showTimer.setInterval(showMs);
    connect(&m_showTimer, &QTimer::timeout, this, &ModulesWindow::showAnswers);
    setUp();
    setTexts();
    connect(m_sendButton, &QPushButton::clicked, this, &ModulesWindow::send);
    connect(m_giveUpButton, &QPushButton::clicked, this, &ModulesWindow::giveUp);
    connect(m_form->targetBox, &QComboBox::currentIndexChanged, this, &ModulesWindow::updateControls);
    connect(m_form->modulesEdit, &QLineEdit::textChanged, this, &ModulesWindow::updateControls);
    connect(m_form->commandBox, &QComboBox::editTextChanged, this, &ModulesWindow::updateControls);
    connect(m_channel, &CommandChannel::replied, this, &ModulesWindow::onReplied);
    connect(m_channel, &CommandChannel::waitingChanged, this, &ModulesWindow::updateControls);
    connect(m_channel, &CommandChannel::failed, this, [this](const QString& message) {
        onEnded(
            [message] {
                return tr("No reply: %1. It is not known whether a module has executed the command: check with stat or "
                          "setting.")
                    .arg(message);
            },
            tr("no reply"));
        m_controller.checkServer();
    });
    connect(&controller, &ServerController::aboutToStop, this, [this] {
        if (!m_channel->drop().isEmpty())
            onEnded([] { return tr("No reply: the server was stopped."); }, tr("no reply"));
    });
    connect(&controller, &ServerController::stateChanged, this, &ModulesWindow::updateControls);
}

ModulesWindow::~ModulesWindow() = default;

void ModulesWindow::setUp()
{
    auto* const form = new QWidget(this);
    m_form->setupUi(form);
    putOnTop(*this, *form);
    m_sendButton->setObjectName(QStringLiteral("sendButton"));
    m_giveUpButton->setObjectName(QStringLiteral("giveUpButton"));
    m_giveUpButton->setAutoDefault(false);
    layTable(*table());
    table()->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents); // but a refusal is a sentence
    table()->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    setTabOrder(m_form->commandBox, table());
    resize(640, 480);
    m_form->targetBox->setFocus();
}

void ModulesWindow::setTexts()
{
    table()->setAccessibleName(tr("Answers of the modules"));
    m_stateLabel->setAccessibleName(tr("State of the command"));
    m_sendButton->setText(tr("Se&nd"));
    m_giveUpButton->setText(tr("&Give Up"));
    showAnswers();
    updateControls();
}

ModulesWindow::Target ModulesWindow::target() const
{
    return Target(m_form->targetBox->currentIndex());
}

ModulesWindow::Commands ModulesWindow::commands(QString& problem) const
{
    Commands made;
    const QString text = m_form->commandBox->currentText().trimmed();
    problem = text.isEmpty() ? tr("Type a command") : commandProblem(text);
    if (!problem.isEmpty())
        return made;
    if (target() == Target::All) {
        made.push_back(std::make_unique<TarnisCmdBroadcast>(text));
        return made;
    }
    if (target() == Target::Family) {
        made.push_back(std::make_unique<TarnisCmdMulticastOrsino>(text));
        return made;
    }
    const QStringList ids = moduleIds(m_form->modulesEdit->text(), problem);
    if (problem.isEmpty() && target() == Target::One && ids.size() > 1)
        problem = tr("These are several modules: choose \"Several modules\" above");
    if (!problem.isEmpty())
        return made;
    if (target() == Target::One) {
        made.push_back(std::make_unique<TarnisCmdUnicast>(ids.constFirst(), text));
        return made;
    }
    int row = 0; // identifies the row of the reply
    for (const QString& id : ids)
        made.push_back(std::make_unique<TarnisCmdUnicastWithIndex>(id, text, row++));
    return made;
}

QString ModulesWindow::addressee(const TarnisCmd& command) const
{
    if (const QString id = command.getUnicastId(); !id.isEmpty())
        return tr("module %1").arg(id);
    return dynamic_cast<const TarnisCmdBroadcast*>(&command) ? tr("all modules") : tr("family orsino");
}

void ModulesWindow::send()
{
    LOG_BLOCK("ModulesWindow::send");
    QString problem;
    auto made = commands(problem);
    if (made.empty() || m_controller.state() != ServerState::Up || !m_channel->waiting().isEmpty())
        return;
    m_answers.clear();
    m_names.clear();
    m_waiting = qsizetype(made.size());
    for (const auto& command : made)
        m_answers.append({ addressee(*command), {}, {} });
    setStateText([] { return tr("Asking the server..."); });
    for (auto& command : made) {
        LOG_INFO("to the modules: %s", command->getCmdString().toUtf8().constData());
        m_channel->send(command.release());
    }
}

void ModulesWindow::onReplied(const PTarnisCmd& command, const QByteArray& reply)
{
    const auto* const indexed = dynamic_cast<const TarnisCmdUnicastWithIndex*>(command.data());
    int row = indexed ? indexed->getIndex() : 0;
    const QList<ModuleAnswer> answers = moduleAnswers(addressee(*command), QString::fromUtf8(reply));
    for (const ModuleAnswer& answer : answers) {
        takeAnswer(row, answer);
        row = int(m_answers.size()); // further modules of a reply are appended
    }
    if (--m_waiting == 0) {
        setStateText([rows = int(m_answers.size())] { return tr("%Ln row(s) answered", nullptr, rows); });
        return;
    }
    tarnis::setTranslatedText(
        *m_stateLabel, [waiting = int(m_waiting)] { return tr("Waiting for %Ln more", nullptr, waiting); });
    if (!m_showTimer.isActive())
        m_showTimer.start();
}

void ModulesWindow::takeAnswer(int row, const ModuleAnswer& answer)
{
    if (row < m_answers.size())
        m_answers[row] = answer;
    else
        m_answers.append(answer);
    for (auto value = answer.values.cbegin(); value != answer.values.cend(); ++value) {
        if (!m_names.contains(value.key()))
            m_names.append(value.key());
    }
}

void ModulesWindow::onEnded(const tarnis::TranslatedText& translated, const QString& answer)
{
    for (ModuleAnswer& row : m_answers) {
        if (row.text.isEmpty())
            row.text = answer;
    }
    m_waiting = 0;
    setStateText(translated);
}

void ModulesWindow::giveUp()
{
    if (!m_channel->drop().isEmpty())
        onEnded(
            [] {
                return tr(
                    "Given up. It is not known whether a module has executed the command: check with stat or setting.");
            },
            tr("given up"));
}

void ModulesWindow::showAnswers()
{
    m_showTimer.stop();
    const QStringList headers = QStringList { tr("Module"), tr("Answer") } + m_names;
    QList<NameValues> rows;
    for (const ModuleAnswer& answer : std::as_const(m_answers)) {
        NameValues row { answer.module, { answer.text.isEmpty() ? tr("waiting...") : answer.text } };
        for (const QString& name : std::as_const(m_names))
            row.values.append(answer.values.value(name)); // even an empty cell, because the file needs all of them
        rows.append(row);
    }
    updateList(rows, &headers);
}

void ModulesWindow::setStateText(const tarnis::TranslatedText& translated)
{
    showAnswers();
    tarnis::setTranslatedText(*m_stateLabel, translated);
}

void ModulesWindow::updateControls()
{
    const bool isUp = m_controller.state() == ServerState::Up;
    const bool isBusy = !m_channel->waiting().isEmpty();
    const bool isAddressed = target() == Target::One || target() == Target::Several;
    setEnabledWithHelp(m_form->modulesEdit, isAddressed, tr("Numbers between commas; 4-7 is a range"),
        tr("All of them get the command"));
    QString problem;
    const auto made = isBusy ? Commands() : commands(problem);
    const QString line = made.empty() ? QString() : made.front()->getCmdString();
    const QString help =
        made.size() > 1 ? tr("Sends \u201c%1\u201d and so on").arg(line) : tr("Sends \u201c%1\u201d").arg(line);
    const QString reason = !isUp ? tr("Needs a connected server") : isBusy ? tr("Wait for the reply") : problem;
    setEnabledWithHelp(m_sendButton, isUp && !isBusy && !made.empty(), help, reason);
    setEnabledWithHelp(m_giveUpButton, isBusy, tr("Stop waiting for the reply"), tr("No command is under way"));
}

} // namespace console
