#include "command/filesender.h"

#include "server/replytext.h"
#include "server/servercontroller.h"

#include <QFile>
#include <QFileInfo>
#include <QMessageBox>

#include <algorithm>
#include <utility>

namespace console {

namespace {

constexpr qint64 sizeLimit = 256LL * 1024 * 1024;

/// Quotes the name if it could be misread.
QString nameInRequest(const QString& name)
{
    const bool isPlain =
        std::none_of(name.begin(), name.end(), [](QChar c) { return c.isSpace() || c == u'"' || c == u'\\'; });
    return isPlain ? name : quotedPath(name);
}

} // namespace

FileSender::FileSender(ServerController& controller, QWidget& window)
    : QObject(&window)
    , m_controller(controller)
    , m_window(window)
    , m_channel(new CommandChannel(controller, QStringLiteral("upload"), this))
{
    connect(m_channel, &CommandChannel::replied, this, &FileSender::onReplied);
    connect(m_channel, &CommandChannel::failed, this, [this](const QString& message) {
        refuse([message] { return tr("the connection broke (%1).").arg(message); });
        m_controller.checkServer();
    });
    connect(&controller, &ServerController::aboutToStop, this, &FileSender::onStopping);
}

FileSender::~FileSender() = default;

void FileSender::start(const QString& path)
{
    if (m_isBusy) {
        Q_EMIT refused([path, other = m_path] { return tr("%1 is not sent: %2 is being sent.").arg(path, other); });
        return;
    }
    m_path = path;
    if (!read(path))
        return;
    m_name = QFileInfo(path).fileName();
    if (const QString problem = commandProblem(m_name); !problem.isEmpty()) {
        refuse([name = m_name] { return tr("its name cannot be sent. %1").arg(commandProblem(name)); });
        return;
    }
    m_isBusy = true;
    lookUp(QStringLiteral("pwd"));
}

bool FileSender::read(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        refuse([error = file.errorString()] { return tr("it cannot be read (%1).").arg(error); });
        return false;
    }
    if (file.size() > sizeLimit) {
        refuse([] { return tr("it is larger than %1.").arg(byteCountText(sizeLimit)); });
        return false;
    }
    m_content = file.readAll();
    if (file.error() == QFileDevice::NoError)
        return true;
    refuse([error = file.errorString()] { return tr("it cannot be read (%1).").arg(error); });
    return false;
}

void FileSender::lookUp(const QString& command)
{
    if (m_controller.state() != ServerState::Up) {
        refuse([] { return tr("there is no connection to the server."); });
        return;
    }
    auto* const asked = new TarnisCmd(command); // the channel takes ownership
    asked->m_cmdName = command.section(u' ', 0, 0);
    m_channel->send(asked);
}

void FileSender::onReplied(const PTarnisCmd& command, const QByteArray& reply)
{
    const QString text = QString::fromUtf8(reply);
    QStringList lines = text.split(u'\n');
    if (!lines.takeFirst().startsWith(u"OK:")) {
        onUnknown(text.trimmed());
    } else if (command->m_cmdName == u"pwd") {
        m_folder = lines.value(0);
        lookUp(QStringLiteral("ls-F ") + quotedPath(m_folder));
    } else if (lines.contains(m_name)) {
        question([name = m_name, folder = m_folder] {
            return tr("\u201c%1\u201d already exists in %2 on the server. Do you want to overwrite it?")
                .arg(name, folder);
        });
    } else {
        finish();
    }
}

void FileSender::onUnknown(const QString& why)
{
    question([name = m_name, why] {
        const QString text = tr(
            "The server does not report whether it has a file \u201c%1\u201d. Do you want to send it? A file of that "
            "name would be overwritten.")
                                 .arg(name);
        return why.isEmpty() ? text : text + QStringLiteral("\n\n") + why;
    });
}

void FileSender::question(const tarnis::TranslatedText& translated)
{
    auto* const box = new QMessageBox(
        QMessageBox::Question, tr("Send a File"), translated(), QMessageBox::Ok | QMessageBox::Cancel, &m_window);
    box->setObjectName(QStringLiteral("sendFileBox"));
    box->setTextFormat(Qt::PlainText);
    box->setDefaultButton(QMessageBox::Cancel);
    box->setAttribute(Qt::WA_DeleteOnClose);
    connect(box, &QDialog::finished, this, [this, box] {
        if (box->standardButton(box->clickedButton()) == QMessageBox::Ok)
            finish();
        else
            m_isBusy = false;
    });
    box->open();
}

void FileSender::finish()
{
    if (m_controller.state() != ServerState::Up) {
        refuse([] { return tr("there is no connection to the server."); });
        return;
    }
    m_isBusy = false;
    Q_EMIT ready(QStringLiteral("txfile ") + nameInRequest(m_name), std::exchange(m_content, {}));
}

void FileSender::refuse(const tarnis::TranslatedText& why)
{
    m_isBusy = false;
    m_content.clear();
    Q_EMIT refused([path = m_path, why] { return tr("%1 is not sent: %2").arg(path, why()); });
}

void FileSender::onStopping()
{
    if (!m_channel->drop().isEmpty())
        refuse([] { return tr("the server was stopped."); });
}

} // namespace console
