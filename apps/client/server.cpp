#include "server.h"

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QFutureWatcher>
#include <QTimer>

#include <algorithm>

namespace cli {

namespace {

// Timeouts for ending a local server: first it gets "exit", then SIGTERM, on which it also ends its run, and finally it
// is killed.
constexpr int exitMs = 1000;
constexpr int terminateMs = 4000;

// Interpreted as a length, "NG:" and any character exceed this, so a refusal is not mistaken for a payload.
constexpr qint64 maxReplyBytes = qint64(128) << 20;

Failure noConnection(const QString& text)
{
    return { .code = NoConnection, .text = text };
}

template <typename Value> void waitFor(const QFuture<Value>& future)
{
    QEventLoop loop;
    QFutureWatcher<Value> watcher;
    QObject::connect(&watcher, &QFutureWatcher<Value>::finished, &loop, &QEventLoop::quit);
    watcher.setFuture(future);
    if (!future.isFinished())
        loop.exec();
}

/// "HOST:PORT", with an IPv6 address in brackets.
bool splitAddress(const QString& address, QString& host, quint16& port)
{
    const qsizetype colon = address.lastIndexOf(u':');
    host = address.left(colon);
    if (host.startsWith(u'[') && host.endsWith(u']'))
        host = host.mid(1, host.size() - 2);
    else if (host.contains(u':'))
        return false;
    bool valid = false;
    port = QStringView(address).sliced(colon + 1).toUShort(&valid);
    return colon > 0 && valid && port > 0 && !host.isEmpty();
}

bool isControl(QChar c)
{
    return c.category() == QChar::Other_Control;
}

/// Whether bytes are printable text: valid UTF-8 without control characters other than those that form lines.
bool isReadable(const QString& text)
{
    return std::none_of(text.begin(), text.end(), [](QChar c) {
        const bool isLayout = c == u'\n' || c == u'\r' || c == u'\t' || c == u'\f' || c == u'\x1b';
        return c == QChar::ReplacementCharacter || (isControl(c) && !isLayout);
    });
}

/// The protocol carries Latin-1; another character would be sent as "?".
bool isLatin1(const QString& text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() <= 0xff; });
}

} // namespace

Outcome checkRemoteName(const QString& name, const QString& what)
{
    if (!name.trimmed().isEmpty() && std::none_of(name.begin(), name.end(), isControl) && isLatin1(name))
        return std::nullopt;
    return Failure { .code = WrongUsage,
        .text = QStringLiteral("'%1' is not the name of a %2 on the server").arg(name, what) };
}

Outcome checkServerCommand(const QString& command)
{
    if (command.trimmed().isEmpty())
        return Failure { .code = WrongUsage, .text = "the command is empty" };
    if (command.contains(u'\n'))
        return Failure { .code = WrongUsage, .text = "a command must be on one line" };
    if (!isLatin1(command))
        return Failure { .code = WrongUsage,
            .text =
                QStringLiteral("'%1' has characters outside of Latin-1, which a command cannot hold").arg(command) };
    return std::nullopt;
}

Result<std::unique_ptr<Server>> Server::open(const Arguments& arguments, const Interruption* interruption)
{
    std::unique_ptr<Server> server(new Server);
    server->m_interruption = interruption;
    Outcome outcome = server->readOptions(arguments);
    if (!outcome && !server->m_program.isEmpty())
        outcome = server->start(server->m_program);
    if (!outcome)
        outcome = server->connectToServer();
    server->m_interruption = nullptr;
    if (outcome)
        return *outcome;
    return server;
}

Outcome Server::readOptions(const Arguments& arguments)
{
    const Result<double> seconds = numberOption(arguments, "timeout", 0.001, 86400.0, 10.0);
    if (!seconds.isOk())
        return seconds.failure();
    m_timeout = std::chrono::milliseconds(static_cast<qint64>(seconds.value() * 1000.0));
    if (arguments.has("prompt"))
        m_prompt = arguments.value("prompt").toUtf8();
    if (m_prompt.isEmpty())
        return Failure { .code = WrongUsage, .text = "--prompt needs a text that is not empty" };
    if (arguments.has("server") && arguments.has("local"))
        return Failure { .code = WrongUsage, .text = "--server and --local exclude each other" };
    m_program = arguments.value("local");
    if (arguments.has("local"))
        return m_program.isEmpty() ? Outcome(Failure { .code = WrongUsage, .text = "--local needs a program" })
                                   : std::nullopt;
    const QString address = arguments.has("server") ? arguments.value("server") : qEnvironmentVariable("TARNIS_SERVER");
    if (address.isEmpty())
        return Failure { .code = WrongUsage, .text = "no server: give --server HOST:PORT or --local PROGRAM" };
    if (!splitAddress(address, m_host, m_port))
        return Failure { .code = WrongUsage, .text = QStringLiteral("'%1' is not of the form HOST:PORT").arg(address) };
    return std::nullopt;
}

Outcome Server::start(const QString& program)
{
    m_process = std::make_unique<QProcess>();
    m_process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process->start(program, QStringList());
    const QDeadlineTimer deadline(m_timeout);
    if (!m_process->waitForStarted(int(deadline.remainingTime())))
        return noConnection(QStringLiteral("cannot start '%1': %2").arg(program, m_process->errorString()));
    const QByteArray announcement = "UI port: ";
    while (m_port == 0) {
        if (m_process->canReadLine()) {
            const QByteArray line = m_process->readLine();
            if (line.startsWith(announcement))
                m_port = line.mid(announcement.size()).trimmed().toUShort();
            if (line.startsWith(announcement) && m_port == 0)
                return noConnection(
                    QStringLiteral("'%1' names no usable port: '%2'").arg(program, QString::fromUtf8(line.trimmed())));
            continue;
        }
        if (m_process->state() == QProcess::NotRunning)
            return noConnection(
                QStringLiteral("'%1' has ended before it named its port: %2").arg(program, endOfProgram()));
        if (isInterrupted())
            return noConnection("interrupted");
        if (deadline.hasExpired())
            return noConnection(QStringLiteral("'%1' did not name its port within %2 s")
                                    .arg(program)
                                    .arg(double(m_timeout.count()) / 1000.0));
        waitForOutput(std::chrono::milliseconds(deadline.remainingTime()));
    }
    // What else it prints is of no interest, and must not pile up.
    QObject::connect(m_process.get(), &QProcess::readyReadStandardOutput, m_process.get(),
        [process = m_process.get()] { process->readAllStandardOutput(); });
    m_host = QStringLiteral("127.0.0.1");
    return std::nullopt;
}

/// Of the local server, its end, or an interruption.
void Server::waitForOutput(std::chrono::milliseconds limit) const
{
    QEventLoop loop;
    QTimer::singleShot(limit, &loop, &QEventLoop::quit);
    QObject::connect(m_process.get(), &QProcess::readyReadStandardOutput, &loop, &QEventLoop::quit);
    QObject::connect(m_process.get(), &QProcess::finished, &loop, &QEventLoop::quit);
    if (m_interruption != nullptr)
        QObject::connect(m_interruption, &Interruption::requested, &loop, &QEventLoop::quit);
    if (!isInterrupted())
        loop.exec();
}

QString Server::endOfProgram() const
{
    return m_process->exitStatus() == QProcess::CrashExit ? QStringLiteral("it crashed")
                                                          : QStringLiteral("exit code %1").arg(m_process->exitCode());
}

Server::~Server()
{
    m_client.reset();
    if (!m_process || m_process->state() == QProcess::NotRunning)
        return;
    m_process->write("exit\n");
    m_process->closeWriteChannel();
    if (m_process->waitForFinished(exitMs))
        return;
    m_process->terminate();
    if (!m_process->waitForFinished(terminateMs))
        m_process->kill(); // its destructor waits until the process has ended
}

Outcome Server::connectToServer()
{
    tarnis::ClientOptions options;
    options.prompt = m_prompt;
    options.connectTimeout = m_timeout;
    options.greetingTimeout = m_timeout;
    options.reconnect.enabled = false;
    options.keepAlive.interval = std::chrono::milliseconds(0);
    m_client = std::make_unique<tarnis::Client>(options);
    QEventLoop loop;
    using State = tarnis::Client::State;
    QObject::connect(m_client.get(), &tarnis::Client::stateChanged, &loop, [&](State state) {
        if (state == State::Ready || state == State::Failed)
            loop.quit();
    });
    if (m_interruption != nullptr)
        QObject::connect(m_interruption, &Interruption::requested, &loop, &QEventLoop::quit);
    m_client->connectTo(m_host, m_port);
    if (m_client->state() != State::Failed && m_client->state() != State::Ready && !isInterrupted())
        loop.exec();
    if (isInterrupted())
        return noConnection("interrupted");
    if (m_client->state() == State::Failed)
        return noConnection(QStringLiteral("no connection to %1: %2").arg(address(), m_client->reason()));
    return std::nullopt;
}

QString Server::address() const
{
    return (m_host.contains(u':') ? QStringLiteral("[%1]:%2") : QStringLiteral("%1:%2")).arg(m_host).arg(m_port);
}

tarnis::RequestOptions Server::requestOptions() const
{
    tarnis::RequestOptions options;
    options.deadline = m_timeout;
    options.silence = std::chrono::milliseconds(0);
    options.maxSize = maxReplyBytes;
    return options;
}

Result<tarnis::Reply> Server::ask(const QString& command)
{
    return finish(m_client->request(command, requestOptions()), command);
}

Result<tarnis::Reply> Server::askBinary(const QString& command)
{
    return finish(m_client->requestBinary(command, requestOptions()), command);
}

Result<tarnis::Reply> Server::upload(const QString& name, const QByteArray& content)
{
    return finish(m_client->upload(name, content, requestOptions()), QStringLiteral("txfile ") + name);
}

Failure Server::brokenReply(const QString& command, const QString& reason) const
{
    return noConnection(
        QStringLiteral("the reply to '%1' from %2 cannot be used: %3").arg(command.left(60), address(), reason));
}

Result<tarnis::Reply> Server::checked(tarnis::Reply reply, const QString& what) const
{
    if (reply.announced < 0)
        return brokenReply(what, QStringLiteral("it announces %1 bytes").arg(reply.announced));
    if (!isReadable(reply.text()))
        return brokenReply(what, "it is not text");
    return reply;
}

Result<tarnis::Reply> Server::finish(QFuture<tarnis::Reply> future, const QString& what)
{
    waitFor(future);
    tarnis::Reply reply = future.result();
    switch (reply.outcome) {
    case tarnis::Reply::Outcome::Replied:
        return checked(std::move(reply), what);
    case tarnis::Reply::Outcome::Refused:
        return Failure { .code = Refused, .text = reply.text().isEmpty() ? reply.reason : reply.text().trimmed() };
    case tarnis::Reply::Outcome::TimedOut:
        return noConnection(
            QStringLiteral("no complete reply to '%1' from %2 within %3 s: raise --timeout, or check --prompt")
                .arg(what.left(60), address())
                .arg(double(m_timeout.count()) / 1000.0));
    default:
        return noConnection(
            QStringLiteral("connection to %1 lost during '%2': %3").arg(address(), what.left(60), reply.reason));
    }
}

} // namespace cli
