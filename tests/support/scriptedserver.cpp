#include "support/scriptedserver.h"

#include "support/payload.h"
#include "support/scriptedconnection_p.h"
#include "support/wait.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QStringList>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <latch>
#include <stdexcept>
#include <thread>

namespace tarnis::testing {

namespace {

int boundSocket(quint16& port)
{
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (fd < 0 || ::bind(fd, generic, size) != 0 || ::getsockname(fd, generic, &size) != 0)
        throw std::runtime_error("scripted server: no port on 127.0.0.1");
    port = ntohs(address.sin_port);
    return fd;
}

Step make(Step::Kind kind, const QByteArray& bytes = {})
{
    Step step;
    step.kind = kind;
    step.bytes = bytes.toStdString();
    return step;
}

} // namespace

Step Step::text(const QByteArray& body)
{
    return make(Kind::Text, body);
}

Step Step::binary(const QByteArray& payload, const QByteArray& text)
{
    Step step = make(Kind::Binary, payload);
    step.behind = text.toStdString();
    step.announced = payload.size();
    return step;
}

Step Step::doubles(const QList<double>& values, const QByteArray& text)
{
    return binary(bytesOf(values), text);
}

Step Step::raw(const QByteArray& bytes)
{
    return make(Kind::Raw, bytes);
}

Step Step::inChunksOf(qsizetype size) const
{
    Step step = *this;
    step.chunkSize = std::size_t(size);
    return step;
}

Step Step::cutAt(const QList<qsizetype>& offsets) const
{
    Step step = *this;
    step.cuts.assign(offsets.begin(), offsets.end());
    return step;
}

Step Step::announcing(qint32 length) const
{
    Step step = *this;
    step.announced = length;
    return step;
}

Step Step::expect(const QByteArray& bytes)
{
    return make(Kind::Expect, bytes);
}

Step Step::expectLine(const QByteArray& line)
{
    return make(Kind::Expect, line + '\n');
}

Step Step::hold(const QByteArray& gate)
{
    return make(Kind::Hold, gate);
}

Step Step::silence()
{
    return make(Kind::Silence);
}

Step Step::drop()
{
    return make(Kind::Drop);
}

Step Step::reset()
{
    return make(Kind::Reset);
}

Step Step::serve()
{
    return make(Kind::Serve);
}

Script wellBehaved()
{
    return { Step::text({}), Step::serve() };
}

class ScriptedServer::Private {
public:
    Private(const Script& defaultScript, const QByteArray& promptBytes)
        : prompt(promptBytes)
        , script(defaultScript)
        , listener(boundSocket(port))
    {
        shared.prompt = promptBytes.toStdString();
        if (::listen(listener, SOMAXCONN) != 0)
            throw std::runtime_error("scripted server: cannot listen");
        std::latch started(1);
        acceptor = std::jthread([this, &started](const std::stop_token& stop) {
            started.count_down();
            acceptClients(stop);
        });
        started.wait();
    }

    ~Private()
    {
        acceptor.request_stop();
        wakeUp.signal();
        acceptor.join();
        ::close(listener);
        connections.clear();
    }

    void acceptClients(const std::stop_token& stop)
    {
        while (!stop.stop_requested()) {
            wakeUp.waitWith(listener);
            const int fd = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
            if (fd < 0)
                continue;
            const std::lock_guard lock(shared.mutex);
            const auto own = scripts.find(int(connections.size()));
            connections.push_back(
                std::make_unique<ScriptedConnection>(shared, fd, own == scripts.end() ? script : own->second));
        }
    }

    template <typename Function> auto locked(Function function)
    {
        const std::lock_guard lock(shared.mutex);
        return function();
    }

    void wakeConnections()
    {
        for (const auto& connection : connections)
            connection->wakeUp();
    }

    const QByteArray prompt;
    quint16 port = 0;
    SharedState shared;
    const Script script;
    std::map<int, Script> scripts; ///< guarded by the mutex of the shared state, as all below
    std::vector<std::unique_ptr<ScriptedConnection>> connections;
    WakeUp wakeUp;
    int listener;
    std::jthread acceptor;
};

ScriptedServer::ScriptedServer(const Script& script, const QByteArray& prompt)
    : d(std::make_unique<Private>(script, prompt))
{
}

ScriptedServer::~ScriptedServer() = default;

quint16 ScriptedServer::port() const
{
    return d->port;
}

QString ScriptedServer::host()
{
    return QStringLiteral("127.0.0.1");
}

const QByteArray* ScriptedServer::prompt() const
{
    return &d->prompt;
}

quint16 ScriptedServer::closedPort()
{
    quint16 port = 0;
    ::close(boundSocket(port));
    return port;
}

void ScriptedServer::answer(const QByteArray& request, const Script& reply)
{
    answerInTurn(request, { reply });
}

void ScriptedServer::answerInTurn(const QByteArray& request, const std::vector<Script>& replies)
{
    d->locked([&] { d->shared.answers[request.toStdString()].assign(replies.begin(), replies.end()); });
}

void ScriptedServer::answerOthers(const std::function<Script(const std::string& request)>& responder)
{
    d->locked([&] { d->shared.responder = responder; });
}

void ScriptedServer::setScript(int connection, const Script& script)
{
    d->locked([&] { d->scripts[connection] = script; });
}

void ScriptedServer::release(const QByteArray& gate, int times)
{
    d->locked([&] {
        d->shared.gates[gate.toStdString()].permits += times;
        d->wakeConnections();
    });
}

void ScriptedServer::open(const QByteArray& gate)
{
    d->locked([&] {
        d->shared.gates[gate.toStdString()].open = true;
        d->wakeConnections();
    });
}

int ScriptedServer::holding(const QByteArray& gate) const
{
    return d->locked([&] { return d->shared.gates[gate.toStdString()].waiting; });
}

int ScriptedServer::connectionCount() const
{
    return d->locked([&] { return int(d->connections.size()); });
}

int ScriptedServer::openConnections() const
{
    return d->locked([&] {
        return int(std::ranges::count_if(d->connections, [](const auto& connection) { return connection->isOpen; }));
    });
}

int ScriptedServer::farewells() const
{
    return d->locked([&] {
        return int(std::ranges::count_if(d->connections, [](const auto& connection) {
            return connection->clientClosed && connection->received.ends_with("close");
        }));
    });
}

QByteArray ScriptedServer::received(int connection) const
{
    return d->locked([&] {
        return std::size_t(connection) < d->connections.size()
            ? QByteArray::fromStdString(d->connections[std::size_t(connection)]->received)
            : QByteArray();
    });
}

QList<QByteArray> ScriptedServer::requests() const
{
    return d->locked([&] {
        QList<QByteArray> all;
        for (const std::string& request : d->shared.requests)
            all.append(QByteArray::fromStdString(request));
        return all;
    });
}

QStringList ScriptedServer::failures() const
{
    return d->locked([&] {
        QStringList all;
        for (const std::string& failure : d->shared.failures)
            all.append(QString::fromStdString(failure));
        return all;
    });
}

bool ScriptedServer::waitForConnections(int count) const
{
    return eventually([&] { return connectionCount() >= count; });
}

bool ScriptedServer::waitForRequests(int count) const
{
    return eventually([&] { return requests().size() >= count; });
}

bool ScriptedServer::waitForRequest(const QByteArray& request) const
{
    return eventually([&] { return requests().contains(request); });
}

bool ScriptedServer::waitForHold(const QByteArray& gate, int count) const
{
    return eventually([&] { return holding(gate) >= count; });
}

bool ScriptedServer::waitForFarewells(int count) const
{
    return eventually([&] { return farewells() >= count; });
}

bool ScriptedServer::waitUntilDeserted() const
{
    return eventually([&] { return openConnections() == 0; });
}

} // namespace tarnis::testing
