#include "browse/servertext.h"

#include "app/controlhelp.h"
#include "browse/pathwindows.h"
#include "server/commandchannel.h"
#include "server/replytext.h"
#include "server/servercontroller.h"
#include "ui_servertext.h"
#include "windows/openwindows.h"

#include <tarnis/foundation/retranslator.h>

#include <QFontDatabase>
#include <QKeySequence>
#include <QMessageBox>
#include <QStringDecoder>

#include <utility>

namespace console {

namespace {

constexpr QLatin1String readName("textRead");
constexpr QLatin1String writeName("textWrite");
constexpr QKeyCombination openKey = Qt::CTRL | Qt::Key_O;
constexpr QKeyCombination saveKey = Qt::CTRL | Qt::Key_S;
constexpr QKeyCombination saveAsKey = Qt::CTRL | Qt::SHIFT | Qt::Key_S;
constexpr qsizetype sizeLimit = qsizetype { 4 } * 1024 * 1024; // limit for editing

} // namespace

std::optional<QString> textOfFile(const QByteArray& bytes, TextForm& form)
{
    if (bytes.contains('\0'))
        return std::nullopt;
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder.decode(bytes);
    form.isUtf8 = !decoder.hasError() && text.toUtf8() == bytes;
    if (!form.isUtf8)
        text = QString::fromLatin1(bytes);
    const qsizetype returns = text.count(u'\r');
    form.hasCarriageReturns = returns > 0;
    if (returns > 0 && (returns != text.count(QLatin1String("\r\n")) || returns != text.count(u'\n')))
        return std::nullopt;
    return text.remove(u'\r');
}

std::optional<QByteArray> bytesOfText(const QString& text, const TextForm& form)
{
    QString lines = text;
    if (form.hasCarriageReturns)
        lines.replace(u'\n', QLatin1String("\r\n"));
    const QByteArray bytes = form.isUtf8 ? lines.toUtf8() : lines.toLatin1();
    return form.isUtf8 || QString::fromLatin1(bytes) == lines ? std::optional(bytes) : std::nullopt;
}

ServerTextWindow::ServerTextWindow(const WindowContext& context)
    : QDialog(context.parent)
    , m_context(context)
    , ui(std::make_unique<Ui::ServerText>())
    , m_channel(new CommandChannel(context.controller, QStringLiteral("text"), this))
{
    m_context.parent = this; // parent of the windows opened from here
    tarnis::onLanguageChange(*this, [this] {
        ui->retranslateUi(this);
        updateControls();
    });
    ui->setupUi(this);
    ui->edit->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    addKey(ui->openButton, openKey);
    addKey(ui->saveButton, saveKey);
    addKey(ui->saveAsButton, saveAsKey);
    connect(ui->openButton, &QPushButton::clicked, this, &ServerTextWindow::chooseOpen);
    connect(ui->saveButton, &QPushButton::clicked, this, &ServerTextWindow::save);
    connect(ui->saveAsButton, &QPushButton::clicked, this, &ServerTextWindow::chooseSaveAs);
    connect(ui->closeButton, &QPushButton::clicked, this, &ServerTextWindow::close);
    connect(ui->edit, &QPlainTextEdit::modificationChanged, this, &ServerTextWindow::updateControls);
    connect(m_channel, &CommandChannel::replied, this, &ServerTextWindow::onReplied);
    connect(m_channel, &CommandChannel::waitingChanged, this, &ServerTextWindow::updateControls);
    connect(m_channel, &CommandChannel::failed, this, [this](const QString& message, const QList<Request>& lost) {
        stay();
        if (!lost.isEmpty() && lost.constFirst().name == writeName)
            keepModified(); // the server may have written all or part of it
        setStateText([message] { return tr("No reply: %1. Try again.").arg(message); });
        m_context.controller.checkServer();
    });
    connect(&context.controller, &ServerController::aboutToStop, this, [this] {
        stay();
        const QList<Request> lost = m_channel->drop();
        if (lost.isEmpty())
            return;
        if (lost.constFirst().name == writeName)
            keepModified();
        setStateText([] { return tr("No reply: the server was stopped. The text stays here."); });
    });
    connect(&context.controller, &ServerController::stateChanged, this, &ServerTextWindow::updateControls);
    updateControls();
}

ServerTextWindow::~ServerTextWindow() = default;

bool ServerTextWindow::isModified() const
{
    return ui->edit->document()->isModified();
}

/// Marks the text as modified, even after undo: the content of the file is unknown.
void ServerTextWindow::keepModified()
{
    ui->edit->document()->setModified(false);
    ui->edit->document()->setModified(true);
}

bool ServerTextWindow::isUnderWay(QLatin1String name) const
{
    const QList<Request> waiting = m_channel->waiting();
    return !waiting.isEmpty() && waiting.constFirst().name == name;
}

/// Without a server, a chooser cannot list anything.
bool ServerTextWindow::mayChoose()
{
    if (m_context.controller.state() == ServerState::Up)
        return true;
    stay();
    setStateText([] { return tr("Needs a connected server. The text stays here."); });
    return false;
}

void ServerTextWindow::chooseOpen()
{
    if (!mayChoose() || bringForward<FileChooser>(*this))
        return;
    auto* const chooser = new FileChooser(m_context, [] { return tr("Open on the Server"); });
    chooser->setExt({ QStringLiteral("*") }, false, QString());
    connect(chooser, qOverload<const QString&>(&SelectDirectoryDialog::accepted), this, [this](const QString& path) {
        askAboutChanges([this, path] {
            m_context.windows.keep();
            openFile(path);
        });
    });
    chooser->show();
}

void ServerTextWindow::chooseSaveAs()
{
    if (!mayChoose() || bringForward<FolderChooser>(*this))
        return;
    auto* const chooser = new FolderChooser(m_context, [] { return tr("Save on the Server"); });
    chooser->askForName(m_path.section(u'/', -1));
    if (const qsizetype slash = m_path.lastIndexOf(u'/'); slash > 0)
        chooser->setDir(m_path.left(slash));
    connect(chooser, qOverload<const QString&>(&SelectPathDialog::accepted), this, &ServerTextWindow::saveTo);
    connect(chooser, &QDialog::rejected, this, [this] { stay(); });
    chooser->show();
}

void ServerTextWindow::save()
{
    const QString path = isUnderWay(writeName) ? m_asked : m_path;
    if (path.isEmpty())
        chooseSaveAs();
    else
        saveTo(path);
}

void ServerTextWindow::openFile(const QString& path)
{
    if (isUnderWay(writeName)) {
        setStateText([path] { return tr("%1 is not opened: the text is being written.").arg(path); });
        return;
    }
    if (isUnderWay(readName))
        m_channel->drop(); // replaced by this request
    if (send(QStringLiteral("rxfile ") + quotedPath(path), readName, true)) {
        m_asked = path;
        setStateText([path] { return tr("Reading %1...").arg(path); });
    }
}

void ServerTextWindow::saveTo(const QString& path)
{
    if (isUnderWay(writeName)) {
        if (path != m_asked)
            m_afterSave = [this, path, next = std::exchange(m_afterSave, {})] {
                m_afterSave = next;
                saveTo(path);
            };
        return; // the reply handles later changes, if an action is waiting for it
    }
    const auto bytes = bytesOfText(ui->edit->toPlainText(), m_form);
    if (!bytes) {
        stay();
        setStateText([] { return tr("Not saved: the file is in Latin-1, and a character of the text is not."); });
        return;
    }
    if (isUnderWay(readName))
        m_channel->drop(); // it would replace the text
    m_sentRevision = ui->edit->document()->revision();
    // A request is sent as Latin-1: each byte is one character of it.
    const QString content = QString::fromLatin1(*bytes);
    if (send(QStringLiteral("txfile ") + quotedPath(path) + u'\n' + content, writeName, false)) {
        m_asked = path;
        setStateText([path] { return tr("Writing %1...").arg(path); });
    }
}

bool ServerTextWindow::send(const QString& request, const QString& name, bool isBinary)
{
    const QString line = request.section(u'\n', 0, 0);
    if (!commandProblem(line).isEmpty() || m_context.controller.state() != ServerState::Up) {
        stay();
        setStateText([line] {
            const QString why = commandProblem(line);
            return why.isEmpty() ? tr("Needs a connected server. The text stays here.") : why;
        });
        return false;
    }
    auto* const command = new TarnisCmd(request); // the channel takes ownership
    command->m_cmdName = name;
    command->m_bBinary = isBinary;
    m_channel->send(command);
    return true;
}

void ServerTextWindow::onReplied(const PTarnisCmd& command, const QByteArray& reply)
{
    if (command->m_cmdName == readName)
        onRead(command, reply);
    else
        onWritten(reply);
    updateControls();
}

void ServerTextWindow::onRead(const PTarnisCmd& command, const QByteArray& bytes)
{
    if (!command->m_replyText.startsWith(u"OK:")) {
        setStateText([path = m_asked, answer = command->m_replyText.trimmed()] {
            return tr("%1 is not opened: %2").arg(path, answer);
        });
        return;
    }
    TextForm form;
    const auto text = bytes.size() <= sizeLimit ? textOfFile(bytes, form) : std::nullopt;
    if (!text) {
        setStateText([path = m_asked] {
            return tr("%1 is not opened: it is not a text, or larger than %2.").arg(path, byteCountText(sizeLimit));
        });
        return;
    }
    m_path = m_asked;
    m_form = form;
    ui->edit->setPlainText(*text);
    ui->edit->document()->setModified(false);
    setStateText([count = bytes.size()] { return tr("Opened, %1.").arg(byteCountText(count)); });
}

void ServerTextWindow::onWritten(const QByteArray& reply)
{
    const QString text = QString::fromUtf8(reply);
    if (!text.startsWith(u"OK:")) {
        stay();
        setStateText([path = m_asked, answer = text.trimmed()] { return tr("%1 is not saved: %2").arg(path, answer); });
        return;
    }
    m_path = m_asked;
    const auto next = std::exchange(m_afterSave, {});
    if (ui->edit->document()->revision() == m_sentRevision) {
        ui->edit->document()->setModified(false);
        setStateText([] { return tr("Saved."); });
        if (next)
            next();
        return;
    }
    keepModified();
    setStateText([] { return tr("Saved. Later edits are not saved yet."); });
    if (next) {
        m_afterSave = next;
        save();
    }
}

void ServerTextWindow::askAboutChanges(const std::function<void()>& goOn)
{
    if (findChild<QMessageBox*>(QStringLiteral("changesBox")))
        return; // asked already
    if (!isModified()) {
        goOn();
        return;
    }
    const bool canSave = m_context.controller.state() == ServerState::Up;
    auto* const box = new QMessageBox(QMessageBox::Question, windowTitle().remove(QLatin1String("[*]")),
        tr("The text has changes that are not saved on the server."), QMessageBox::Discard | QMessageBox::Cancel, this);
    if (canSave)
        box->addButton(QMessageBox::Save);
    else
        box->setInformativeText(tr("No server is connected: they cannot be saved now."));
    box->setDefaultButton(canSave ? QMessageBox::Save : QMessageBox::Cancel);
    box->setObjectName(QStringLiteral("changesBox"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    connect(box, &QMessageBox::finished, this,
        [this, box, goOn] { onAnswered(box->standardButton(box->clickedButton()), goOn); });
    box->open();
}

void ServerTextWindow::onAnswered(int button, const std::function<void()>& goOn)
{
    m_afterSave = goOn;
    if (button == QMessageBox::Save) {
        save();
    } else if (button == QMessageBox::Discard) {
        m_afterSave = {};
        goOn(); // the changes are kept until they are replaced
    } else {
        stay();
    }
}

/// Cancels the action that was waiting for the save.
void ServerTextWindow::stay()
{
    if (std::exchange(m_afterSave, {}))
        m_context.windows.keep();
}

void ServerTextWindow::reject()
{
    // Called for the Close button, Escape and the window's close button.
    askAboutChanges([this] {
        ui->edit->document()->setModified(false);
        QDialog::reject();
    });
}

void ServerTextWindow::setStateText(const tarnis::TranslatedText& translated)
{
    tarnis::setTranslatedText(*ui->stateLabel, translated);
}

void ServerTextWindow::updateControls()
{
    setWindowModified(isModified());
    ui->pathLabel->setText(m_path.isEmpty() ? tr("A text without a file yet") : m_path);
    const bool isUp = m_context.controller.state() == ServerState::Up;
    const bool isFree = m_channel->waiting().isEmpty();
    ui->edit->setReadOnly(isUnderWay(readName)); // text entered now would be lost when the file arrives
    const QString reason = isUp ? tr("Wait for the reply") : tr("Needs a connected server. The text stays here.");
    setEnabledWithHelp(ui->openButton, isUp && isFree, withKey(tr("Open a file on the server"), openKey), reason);
    setEnabledWithHelp(
        ui->saveAsButton, isUp && isFree, withKey(tr("Save under another name on the server"), saveAsKey), reason);
    setEnabledWithHelp(ui->saveButton, isUp && isFree && (isModified() || m_path.isEmpty()),
        withKey(tr("Save on the server"), saveKey), isUp && isFree ? tr("Nothing has changed") : reason);
}

} // namespace console
