// All faults of the simulated server, with the client and the server object: each request ends exactly once and in
// time, memory is bounded, and the next request is answered after the end of the fault.
#include "support/cases.h"
#include "support/quickserver.h"
#include "support/replies.h"
#include "support/scriptedserver.h"
#include "support/serverfaults.h"
#include "support/support.h"
#include "support/wait.h"

#include <tarnis/client/histogrampoller.h>
#include <tarnis/client/server.h>

#include <QFile>
#include <QTest>

#include <memory>

using namespace tarnis;
using namespace tarnis::testing;
using namespace std::chrono_literals;

using Outcome = Reply::Outcome;

namespace {

RequestOptions limited(RequestOptions::Form form, std::chrono::milliseconds silence = 10s)
{
    RequestOptions options;
    options.form = form;
    options.silence = silence;
    options.deadline = 10s;
    options.maxSize = 4 << 20;
    return options;
}

} // namespace

class TestClientFaults : public QObject {
    Q_OBJECT
private:
    /// A server with a fault since its start.
    std::unique_ptr<Server> serverWith(const QByteArray& fault)
    {
        qputenv("TARNIS_SIMSERVER_OPTIONS", "--start --rate 1000 --fault " + fault + " --fault-delay 5");
        return std::make_unique<Server>(quick());
    }

private Q_SLOTS:
    void handlesInvalidReplies_data()
    {
        QTest::addColumn<QByteArray>("fault");
        QTest::newRow("none") << QByteArray("none");
        for (const QByteArray& fault : replyFaults())
            QTest::newRow(fault.constData()) << fault;
    }
    void handlesInvalidReplies()
    {
        QFETCH(QByteArray, fault);
        const auto server = serverWith("none");
        QCOMPARE(endOf(server->startLocal(SIMSERVER_PATH)).outcome, ServerStep::Outcome::Done);
        Client control(quick().client);
        control.connectTo(server->host(), server->port());
        const auto set = control.request(QString::fromLatin1("fault " + fault + " delay:5"));
        QVERIFY(eventually([&] { return set.isFinished(); }));
        const qint64 before = residentBytes();

        // With a connection that is made during the fault.
        auto client = std::make_unique<Client>(quick().client);
        client->connectTo(server->host(), server->port());
        int ends = 0;
        QList<QFuture<Reply>> futures;
        const std::chrono::milliseconds silence = fault == "none" ? 10s : 100ms;
        for (int round = 0; round < 2; ++round) {
            for (const char* const text : { "stat", "hists", "pwd" })
                futures.append(client->request(text, limited(RequestOptions::Form::Text, silence)));
            for (const char* const text :
                { "hist1d time 0 1 bins:64", "hist1d position 0 pairs bins:64", "hist2d image bins:16" })
                futures.append(client->request(text, limited(RequestOptions::Form::Binary, silence)));
        }
        for (const QFuture<Reply>& future : futures) {
            QFuture<Reply>(future).then([&](const Reply& reply) {
                ++ends;
                const auto format = HistogramFormat::ofCommand("hist1d time");
                HistogramReply::parse(reply.data, reply.binaryText, format);
            });
        }
        QVERIFY(eventually([&] { return ends == futures.size(); }));
        for (const QFuture<Reply>& future : futures) {
            QVERIFY(future.isFinished());
            QCOMPARE(future.resultCount(), 1);
            if (fault == "none")
                QVERIFY2(future.result().isOk(), qPrintable(future.result().reason));
        }
        QVERIFY(hasGrownLessThan(64, before));

        // The fault ends. The client recovers automatically.
        const auto cleared = control.request("fault none");
        QVERIFY(eventually([&] { return cleared.isFinished(); }));
        const auto isAnswered = [&] {
            const auto next = client->request("pwd", limited(RequestOptions::Form::Text, 100ms));
            return eventually([&] { return next.isFinished(); }) && next.result().isOk();
        };
        // Replies still outstanding from before the end of the fault may make some requests fail.
        QVERIFY(eventually(isAnswered));
        QCOMPARE(ends, futures.size());
    }

    void pollsGoOn_data()
    {
        QTest::addColumn<QByteArray>("fault");
        for (const char* const fault : { "close-in-reply", "silent", "wrong-length", "oversized-length", "cut-payload",
                 "no-axis", "bad-index", "garbage" })
            QTest::newRow(fault) << QByteArray(fault);
    }
    void pollsGoOn()
    {
        QFETCH(QByteArray, fault);
        const auto server = serverWith("none");
        QCOMPARE(endOf(server->startLocal(SIMSERVER_PATH)).outcome, ServerStep::Outcome::Done);
        PollOptions options;
        options.interval = 5ms;
        options.silence = 200ms;
        const QString command = "hist1d position 0 pairs bins:64";
        auto poller =
            HistogramPoller::shared(*server->client("plots"), command, HistogramFormat::ofCommand(command), options);
        int updates = 0;
        QStringList failures;
        connect(poller.get(), &HistogramPoller::updated, this, [&] { ++updates; });
        connect(poller.get(), &HistogramPoller::failed, this, [&](const QString& why) { failures.append(why); });
        QVERIFY(eventually([&] { return updates > 1; }));
        Client control(quick().client);
        control.connectTo(server->host(), server->port());
        control.request(QString::fromLatin1("fault " + fault));
        QVERIFY(eventually([&] { return !failures.isEmpty(); }));
        QVERIFY(!failures.first().isEmpty());
        const auto cleared = control.request("fault none");
        QVERIFY(eventually([&] { return cleared.isFinished(); }));
        const int then = updates;
        QVERIFY(eventually([&] { return updates > then + 1; }));
    }

    void startsGoWrong_data()
    {
        addColumns<QByteArray, bool>("fault", "comesUp");
        QTest::newRow("port-split") << QByteArray("port-split") << true;
        QTest::newRow("port-late") << QByteArray("port-late") << true;
        for (const QByteArray& fault : startFaults())
            QTest::newRow(fault.constData()) << fault << false;
        QTest::newRow("ignore-exit") << QByteArray("ignore-exit") << true;
    }
    void startsGoWrong()
    {
        QFETCH(QByteArray, fault);
        QFETCH(bool, comesUp);
        const auto server = serverWith(fault);
        int steps = 0;
        const auto step = server->startLocal(SIMSERVER_PATH);
        QFuture<ServerStep>(step).then([&](const ServerStep&) { ++steps; });
        const ServerStep end = endOf(step);
        QVERIFY2((end.outcome == ServerStep::Outcome::Done) == comesUp, qPrintable(end.reason));
        QCOMPARE(end.reason.isEmpty(), comesUp);
        QCOMPARE(endOf(server->shutdown()).outcome, ServerStep::Outcome::Done);
        QCOMPARE(server->state(), Server::State::Idle);
        QCOMPARE(steps, 1);
    }

    void endsWhileItWorks_data()
    {
        addColumns<QByteArray, QString>("fault", "word");
        QTest::newRow("exit") << QByteArray("exit") << "code 3";
        QTest::newRow("crash") << QByteArray("crash") << "crashed";
    }
    void endsWhileItWorks()
    {
        QFETCH(QByteArray, fault);
        QFETCH(QString, word);
        const auto server = serverWith(fault);
        QCOMPARE(endOf(server->startLocal(SIMSERVER_PATH)).outcome, ServerStep::Outcome::Done);
        const auto reply = server->client("control")->request("stat");
        QVERIFY(eventually([&] { return reply.isFinished() && server->state() == Server::State::Failed; }));
        QVERIFY(!reply.result().isOk());
        QVERIFY2(server->reason().contains(word), qPrintable(server->reason()));
        qputenv("TARNIS_SIMSERVER_OPTIONS", "--fault none");
        QCOMPARE(endOf(server->restart()).outcome, ServerStep::Outcome::Done);
        const auto again = server->client("control")->request("stat");
        QVERIFY(eventually([&] { return again.isFinished(); }));
        QVERIFY(again.result().isOk());
    }
};

QTEST_GUILESS_MAIN(TestClientFaults)
#include "tst_clientfaults.moc"
