// Random sequences of requests, cancellations, connections, deletions and server faults. In all cases each future ends
// exactly once, replies belong to their requests and come in order, and the queue stays within its bound.
// TARNIS_TEST_STEPS sets the number of steps, TARNIS_TEST_SEED the sequence.
#include "support/randomcases.h"
#include "support/scriptedserver.h"
#include "support/support.h"

#include <tarnis/client/client.h>

#include <QMap>
#include <QTest>

#include <array>
#include <memory>
#include <thread>
#include <vector>

using namespace tarnis;
using namespace tarnis::testing;
using namespace std::chrono_literals;

using Outcome = Reply::Outcome;

namespace {

constexpr int maxQueued = 40;

/// The first word of a request selects the server's behaviour.
const std::array<const char*, 12> behaviours { "echo", "echo", "echo", "binary", "bytes", "refuse", "drop", "reset",
    "silent", "half", "huge", "negative" };

Script answerTo(const std::string& request)
{
    const QByteArray text = QByteArray::fromStdString(request);
    const QByteArray word = text.left(text.indexOf(' '));
    if (word == "binary")
        return { Step::binary(text, "OK:\n") };
    if (word == "bytes")
        return { Step::text(text).inChunksOf(7) };
    if (word == "refuse")
        return { Step::text("NG:" + text) };
    if (word == "drop")
        return { Step::drop() };
    if (word == "reset")
        return { Step::raw("x"), Step::reset() };
    if (word == "silent")
        return { Step::silence() };
    if (word == "half")
        return { Step::binary(text).cutAt({ 2 }), Step::drop() };
    if (word == "huge")
        return { Step::binary(text).announcing(2147483647), Step::silence() };
    if (word == "negative")
        return { Step::binary(text, "OK:\n").announcing(-5) };
    return { Step::text(text) };
}

/// One request and its result.
struct Record {
    int sequence = 0;
    int priority = 0;
    int client = 0; ///< number of the client object, never reused
    QString text;
    QFuture<Reply> future;
    int ends = 0;
};

class RandomScenario {
public:
    explicit RandomScenario(std::mt19937_64 generator)
        : m_random(generator)
    {
        for (const auto& server : m_servers)
            server->answerOthers(answerTo);
        for (int slot = 0; slot < int(m_clients.size()); ++slot)
            renew(slot);
    }

    void step();
    /// Ends all requests.
    void finish();
    QString fault; ///< the first violated property
    int total = 0; ///< requests
    QMap<Outcome, int> outcomes;
    int cancelledByCaller = 0;

private:
    void renew(int slot);
    void connectClient(Client& client);
    void request(int slot);
    void cancelSome();
    void onEnd(Record& record, const Reply& reply);
    void check(Record& record, const Reply& reply);
    void runEventLoop();
    void sweep();
    void note(const QString& what)
    {
        if (fault.isEmpty())
            fault = what;
    }

    std::mt19937_64 m_random;
    std::array<std::unique_ptr<ScriptedServer>, 2> m_servers { std::make_unique<ScriptedServer>(),
        std::make_unique<ScriptedServer>() };
    std::array<std::unique_ptr<Client>, 3> m_clients;
    std::array<int, 3> m_numbers {};
    int m_nextNumber = 0;
    int m_depth = 0; ///< of the event loops in receivers
    std::vector<std::shared_ptr<Record>> m_records;
    QMap<std::pair<int, int>, int> m_lastReplied; ///< client and priority to sequence
};

void RandomScenario::renew(int slot)
{
    ClientOptions options;
    options.maxQueued = maxQueued;
    options.reconnect.first = 0ms;
    options.reconnect.longest = 2ms;
    options.reconnect.enabled = chance(m_random, 0.8);
    options.reconnect.maxAttempts = whole(m_random, 0, 3);
    options.keepAlive.interval = std::chrono::milliseconds(whole(m_random, 0, 3));
    options.keepAlive.command = "echo alive";
    m_clients[std::size_t(slot)] = std::make_unique<Client>(options);
    m_numbers[std::size_t(slot)] = m_nextNumber++;
    connectClient(*m_clients[std::size_t(slot)]);
}

void RandomScenario::connectClient(Client& client)
{
    const quint16 port =
        chance(m_random, 0.05) ? ScriptedServer::closedPort() : m_servers[std::size_t(whole(m_random, 0, 1))]->port();
    client.connectTo(ScriptedServer::host(), chance(m_random, 0.02) ? quint16(0) : port);
}

void RandomScenario::request(int slot)
{
    auto record = std::make_shared<Record>();
    const bool troubles = chance(m_random, 0.15);
    const int kind = troubles ? whole(m_random, 0, int(behaviours.size()) - 1) : whole(m_random, 0, 5);
    const QByteArray word = behaviours[std::size_t(kind)];
    record->sequence = ++total;
    record->priority = whole(m_random, -1, 1);
    record->client = m_numbers[std::size_t(slot)];
    record->text = QString::fromLatin1(word) + ' ' + QString::number(total);
    RequestOptions options;
    options.priority = record->priority;
    if (word == "binary" || word == "half" || word == "huge" || word == "negative")
        options.form = RequestOptions::Form::Binary;
    if (word == "silent" || word == "huge")
        options.silence = std::chrono::milliseconds(whole(m_random, 1, 3));
    if (chance(m_random, 0.1))
        options.deadline = std::chrono::milliseconds(whole(m_random, 1, 5));
    Client& client = *m_clients[std::size_t(slot)];
    if (chance(m_random, 0.02))
        options.progress = [&client](const Progress&) { client.abort(); };
    else if (chance(m_random, 0.05))
        options.progress = [this](const Progress&) { runEventLoop(); };
    record->future = client.request(record->text, options);
    record->future.then([this, record](const Reply& reply) { onEnd(*record, reply); });
    m_records.push_back(record);
    if (client.pending() > maxQueued + 1)
        note(QStringLiteral("%1 requests are pending").arg(client.pending()));
}

void RandomScenario::onEnd(Record& record, const Reply& reply)
{
    ++record.ends;
    ++outcomes[reply.outcome];
    check(record, reply);
    if (chance(m_random, 0.05))
        runEventLoop();
}

/// As the message box of a receiver does.
void RandomScenario::runEventLoop()
{
    constexpr int deepest = 3;
    if (m_depth == deepest)
        return;
    ++m_depth;
    QCoreApplication::processEvents();
    --m_depth;
}

void RandomScenario::check(Record& record, const Reply& reply)
{
    if (reply.reason.isEmpty() != reply.isOk())
        note(QStringLiteral("%1 ended with the reason '%2'").arg(record.text, reply.reason));
    if (reply.outcome != Outcome::Replied && reply.outcome != Outcome::Refused)
        return;
    const bool isNegative = record.text.startsWith("negative");
    const QString body = reply.outcome == Outcome::Refused ? reply.text().mid(3)
        : isNegative                                       ? reply.binaryText.chopped(4)
                                                           : QString::fromLatin1(reply.data);
    if (body != record.text)
        note(QStringLiteral("%1 was answered by '%2'").arg(record.text, body));
    int& last = m_lastReplied[{ record.client, record.priority }];
    if (record.sequence < last)
        note(QStringLiteral("%1 was answered behind request %2").arg(record.text).arg(last));
    last = record.sequence;
}

void RandomScenario::cancelSome()
{
    if (m_records.empty())
        return;
    const std::size_t some = std::uniform_int_distribution<std::size_t>(0, m_records.size() - 1)(m_random);
    // Qt 6.4 uses freed memory when a future is cancelled that has ended and had a continuation.
    if (!m_records[some]->future.isFinished())
        m_records[some]->future.cancel();
}

/// Checks and removes the requests that have ended.
void RandomScenario::sweep()
{
    std::erase_if(m_records, [this](const std::shared_ptr<Record>& record) {
        if (!record->future.isFinished())
            return false;
        const bool byCaller = record->future.isCanceled() && record->future.resultCount() == 0;
        cancelledByCaller += byCaller ? 1 : 0;
        if (record->ends != (byCaller ? 0 : 1))
            note(QStringLiteral("%1 ended %2 times").arg(record->text).arg(record->ends));
        return true;
    });
}

void RandomScenario::step()
{
    const int slot = whole(m_random, 0, int(m_clients.size()) - 1);
    Client& client = *m_clients[std::size_t(slot)];
    const int lot = whole(m_random, 0, 999);
    if (lot < 300)
        request(slot);
    else if (lot < 320)
        cancelSome();
    else if (lot < 321)
        client.cancelAll();
    else if (lot < 322)
        client.abort();
    else if (lot < 323)
        client.close();
    else if (lot < 325)
        connectClient(client);
    else if (lot < 328)
        client.reconnectNow();
    else if (lot < 329)
        renew(slot);
    else {
        // The servers are threads of this process. On a busy machine a yield takes long.
        if (lot > 990)
            std::this_thread::yield();
        QCoreApplication::processEvents();
    }
    Client& current = *m_clients[std::size_t(slot)]; // maybe a new one
    const bool isDown = current.state() == Client::State::Disconnected || current.state() == Client::State::Failed;
    if (isDown && chance(m_random, 0.2))
        connectClient(current);
    if (m_records.size() > 200)
        sweep();
}

void RandomScenario::finish()
{
    for (auto& client : m_clients)
        client.reset();
    for (const auto& record : m_records) {
        if (!record->future.isFinished())
            note(record->text + " has not ended with its client");
    }
    sweep();
}

int steps()
{
    bool isNumber = false;
    const int wanted = qEnvironmentVariableIntValue("TARNIS_TEST_STEPS", &isNumber);
    return isNumber ? wanted : 10000;
}

} // namespace

class TestClientProperty : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void eachFutureEndsOnce()
    {
        RandomScenario scenario(seededGenerator(1313));
        for (int step = 0; step < steps() && scenario.fault.isEmpty(); ++step)
            scenario.step();
        scenario.finish();
        QVERIFY2(scenario.fault.isEmpty(), qPrintable(scenario.fault));
        qInfo() << scenario.total << "requests, ended as" << scenario.outcomes.values() << "by the caller"
                << scenario.cancelledByCaller;
        // The sequence reaches every end.
        for (const Outcome outcome :
            { Outcome::Replied, Outcome::Refused, Outcome::Failed, Outcome::TimedOut, Outcome::Cancelled })
            QVERIFY(scenario.outcomes.value(outcome) > 0);
        QVERIFY(scenario.cancelledByCaller > 0);
    }
};

QTEST_GUILESS_MAIN(TestClientProperty)
#include "tst_clientproperty.moc"
