#include "windows/servertext.h"

#include "availability.h"
#include "replytext.h"
#include "servercontroller.h"
#include "sessionlink.h"
#include "ui_servertext.h"
#include "windows/openwindows.h"
#include "windows/pathwindows.h"

#include <QEvent>
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
constexpr qsizetype sizeLimit = qsizetype { 4 } * 1024 * 1024; // more is no text to edit

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
    , m_link(new SessionLink(context.controller.tarnis(), QStringLiteral("text"), this))
{
    m_context.parent = this; // of what this window opens
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
    connect(m_link, &SessionLink::replied, this, &ServerTextWindow::onReplied);
    connect(m_link, &SessionLink::waitingChanged, this, &ServerTextWindow::updateControls);
    connect(m_link, &SessionLink::failed, this, [this](int, const QString& message) {
        stay();
        say(tr("No reply: %1. Try again.").arg(message));
        m_context.controller.checkServer();
    });
    connect(&context.controller, &ServerController::aboutToStop, this, [this] {
        stay();
        if (!m_link->drop().isEmpty())
            say(tr("No reply: the server was stopped. The text stays here."));
    });
    connect(&context.controller, &ServerController::stateChanged, this, &ServerTextWindow::updateControls);
    updateControls();
}

ServerTextWindow::~ServerTextWindow() = default;

bool ServerTextWindow::isModified() const
{
    return ui->edit->document()->isModified();
}

void ServerTextWindow::chooseOpen()
{
    askAboutChanges([this] { showOpenChooser(); });
}

void ServerTextWindow::showOpenChooser()
{
    auto* const chooser = new FileChooser(m_context, tr("Open on the Server"));
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    chooser->setExt({ QStringLiteral("*") }, false, QString());
    connect(chooser, qOverload<const QString&>(&SelectDirectoryDialog::accepted), this, &ServerTextWindow::openFile);
    chooser->open();
}

void ServerTextWindow::chooseSaveAs()
{
    auto* const chooser = new FolderChooser(m_context, tr("Save on the Server"));
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    // The first is put behind a name that has none of them.
    chooser->setExt({ QStringLiteral("txt"), QStringLiteral("csv"), QStringLiteral("log"), QStringLiteral("set"),
                        QStringLiteral("cfg"), QStringLiteral("conf"), QStringLiteral("settings") },
        false, true);
    if (const qsizetype slash = m_path.lastIndexOf(u'/'); slash > 0)
        chooser->setDir(m_path.left(slash));
    connect(chooser, qOverload<const QString&>(&SelectPathDialog::accepted), this, &ServerTextWindow::saveTo);
    connect(chooser, &QDialog::rejected, this, [this] { stay(); });
    chooser->open();
}

void ServerTextWindow::save()
{
    if (m_path.isEmpty())
        chooseSaveAs();
    else
        saveTo(m_path);
}

void ServerTextWindow::openFile(const QString& path)
{
    m_asked = path;
    say(tr("Reading %1...").arg(path));
    send(QStringLiteral("rxfile ") + quotedPath(path), readName, true);
}

void ServerTextWindow::saveTo(const QString& path)
{
    const auto bytes = bytesOfText(ui->edit->toPlainText(), m_form);
    if (!bytes) {
        stay();
        say(tr("Not saved: the file is in Latin-1, and a character of the text is not."));
        return;
    }
    m_asked = path;
    say(tr("Writing %1...").arg(path));
    // A request is sent as Latin-1: each byte is one character of it.
    send(QStringLiteral("txfile ") + quotedPath(path) + u'\n' + QString::fromLatin1(*bytes), writeName, false);
}

void ServerTextWindow::send(const QString& request, const QString& name, bool isBinary)
{
    const QString problem = commandProblem(request.section(u'\n', 0, 0));
    if (!problem.isEmpty() || m_context.controller.state() != ServerState::Up) {
        stay();
        say(problem.isEmpty() ? tr("Needs a connected server. The text stays here.") : problem);
        return;
    }
    auto* const command = new TarnisCmd(request); // the session takes it over
    command->m_cmdName = name;
    command->m_bBinary = isBinary;
    m_link->send(command);
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
        say(tr("%1 is not opened: %2").arg(m_asked, command->m_replyText.trimmed()));
        return;
    }
    TextForm form;
    const auto text = bytes.size() <= sizeLimit ? textOfFile(bytes, form) : std::nullopt;
    if (!text) {
        say(tr("%1 is not opened: it is no text, or larger than %2.").arg(m_asked, byteCountText(sizeLimit)));
        return;
    }
    m_path = m_asked;
    m_form = form;
    ui->edit->setPlainText(*text);
    ui->edit->document()->setModified(false);
    say(tr("Opened, %1.").arg(byteCountText(bytes.size())));
}

void ServerTextWindow::onWritten(const QByteArray& reply)
{
    const QString text = QString::fromUtf8(reply);
    if (!text.startsWith(u"OK:")) {
        stay();
        say(tr("%1 is not saved: %2").arg(m_asked, text.trimmed()));
        return;
    }
    m_path = m_asked;
    ui->edit->document()->setModified(false);
    say(tr("Saved."));
    if (const auto next = std::exchange(m_afterSave, {}))
        next();
}

void ServerTextWindow::askAboutChanges(const std::function<void()>& goOn)
{
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
        ui->edit->document()->setModified(false);
        goOn();
    } else {
        stay();
    }
}

/// What was to follow the saving does not.
void ServerTextWindow::stay()
{
    if (std::exchange(m_afterSave, {}))
        m_context.windows.keep();
}

void ServerTextWindow::reject()
{
    // Close button, Escape and the window's own button all come here.
    if (!findChild<QMessageBox*>(QStringLiteral("changesBox")))
        askAboutChanges([this] { QDialog::reject(); });
}

void ServerTextWindow::say(const QString& text)
{
    ui->stateLabel->setText(text);
}

void ServerTextWindow::updateControls()
{
    setWindowModified(isModified());
    ui->pathLabel->setText(m_path.isEmpty() ? tr("A text without a file yet") : m_path);
    const bool isUp = m_context.controller.state() == ServerState::Up;
    const bool isFree = m_link->waiting().isEmpty();
    const QString reason = isUp ? tr("Wait for the reply") : tr("Needs a connected server. The text stays here.");
    setAvailable(ui->openButton, isUp && isFree, withKey(tr("Open a file on the server"), openKey), reason);
    setAvailable(
        ui->saveAsButton, isUp && isFree, withKey(tr("Save under another name on the server"), saveAsKey), reason);
    setAvailable(ui->saveButton, isUp && isFree && (isModified() || m_path.isEmpty()),
        withKey(tr("Save on the server"), saveKey), isUp && isFree ? tr("Nothing has changed") : reason);
}

void ServerTextWindow::changeEvent(QEvent* event)
{
    QDialog::changeEvent(event);
    if (event->type() != QEvent::LanguageChange)
        return;
    ui->retranslateUi(this);
    updateControls();
}

} // namespace console
