// Polling a histogram: results, failures, age, sharing.
#include "support/replies.h"
#include "support/scriptedserver.h"
#include "support/wait.h"

#include <tarnis/client/histogrampoller.h>

#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>

#include <limits>

using namespace tarnis;
using namespace tarnis::testing;
using namespace std::chrono_literals;

namespace {

const QByteArray axis("OK: (0 2 2)\n");

PollOptions fast()
{
    PollOptions options;
    options.interval = 1ms;
    return options;
}

} // namespace

class TestHistogramPoller : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void cleanup() { QThreadPool::globalInstance()->waitForDone(); }

    void bringsHistograms()
    {
        ScriptedServer server;
        server.answerInTurn("hist", { { Step::doubles({ 1, 2 }, axis) }, { Step::doubles({ 3, 4 }, axis) } });
        Client client(quickClient());
        client.connectTo(server.host(), server.port());
        HistogramPoller poller(client, "hist", {}, fast());
        QVERIFY(!poller.isRunning());
        QList<QList<double>> rows;
        connect(&poller, &HistogramPoller::updated, this,
            [&](const HistogramReply& histogram) { rows.append(histogram.rows.first()); });
        poller.start();
        QVERIFY(eventually([&] { return rows.size() >= 3; }));
        QCOMPARE(rows.first(), QList<double>({ 1, 2 }));
        QCOMPARE(rows.last(), QList<double>({ 3, 4 }));
        QCOMPARE(poller.last().rows.first(), QList<double>({ 3, 4 }));
        poller.stop();
        QVERIFY(!poller.isRunning());
    }

    void continuesAfterFailures()
    {
        ScriptedServer server;
        server.answerInTurn("hist",
            { { Step::binary("", "NG:not yet\n") }, { Step::binary("", "NG:not yet\n") }, { Step::binary("123", axis) },
                { Step::drop() }, { Step::doubles({ 3, 4 }, axis) } });
        Client client(quickClient());
        client.connectTo(server.host(), server.port());
        HistogramPoller poller(client, "hist", {}, fast());
        QSignalSpy failed(&poller, &HistogramPoller::failed);
        QSignalSpy updated(&poller, &HistogramPoller::updated);
        poller.start();
        QVERIFY(eventually([&] { return !updated.isEmpty(); }));
        QCOMPARE(failed.size(), 3);
        QCOMPARE(failed.at(0).first().toString(), QStringLiteral("not yet"));
        QVERIFY(failed.at(1).first().toString().contains("64-bit"));
    }

    void reportsItsAge()
    {
        ScriptedServer server;
        server.answerInTurn("hist", { { Step::doubles({ 1, 2 }, axis) }, { Step::silence() } });
        Client client(quickClient());
        client.connectTo(server.host(), server.port());
        PollOptions options = fast();
        options.staleAfter = 10ms;
        HistogramPoller poller(client, "hist", {}, options);
        QSignalSpy updated(&poller, &HistogramPoller::updated);
        QList<std::chrono::milliseconds> ages;
        connect(&poller, &HistogramPoller::stale, this, [&](std::chrono::milliseconds age) {
            if (!updated.isEmpty())
                ages.append(age);
        });
        poller.start();
        QVERIFY(eventually([&] { return ages.size() == 3; }));
        QVERIFY(ages.at(2) > ages.at(1) && ages.at(1) > ages.at(0));
        QVERIFY(poller.age() >= ages.at(2));
        QCOMPARE(updated.size(), 1);
    }

    void viewersShareThePoll()
    {
        ScriptedServer server;
        server.answer("hist", { Step::hold("gate"), Step::doubles({ 1, 2 }, axis) });
        Client client(quickClient());
        client.connectTo(server.host(), server.port());
        PollOptions slow;
        slow.interval = 1h;
        auto first = HistogramPoller::shared(client, "hist", {}, slow);
        auto second = HistogramPoller::shared(client, "hist", {}, fast());
        QCOMPARE(first, second);
        QCOMPARE(first->interval(), 1ms);
        QVERIFY(first != HistogramPoller::shared(client, "other", {}));
        QSignalSpy one(first.get(), &HistogramPoller::updated);
        QVERIFY(server.waitForHold("gate"));
        server.open("gate");
        QVERIFY(eventually([&] { return one.size() > 1; }));
        const QPointer<HistogramPoller> watched(first.get());
        // Also in its own signal.
        connect(first.get(), &HistogramPoller::updated, this, [&] {
            first.reset();
            second.reset();
        });
        QVERIFY(eventually([&] { return !watched; }));
        QVERIFY(HistogramPoller::shared(client, "hist", {}, slow)->last().rows.isEmpty());
    }

    void pollsAtTheShortestIntervalOfItsViewers()
    {
        Client client(quickClient());
        const auto every = [&](std::chrono::milliseconds interval) {
            PollOptions options;
            options.interval = interval;
            return HistogramPoller::shared(client, "hist", {}, options);
        };
        auto slow = every(1h);
        auto quick = every(10ms);
        auto second = every(1s);
        QCOMPARE(slow->interval(), 10ms);
        second = every(2s); // a viewer of another interval replaces that of 1 s
        QCOMPARE(slow->interval(), 10ms);
        quick.reset();
        QCOMPARE(slow->interval(), 2s);
        slow->setInterval(5s); // until the viewers change
        auto slower = every(2h);
        QCOMPARE(slow->interval(), 5s);
        second.reset();
        QCOMPARE(slow->interval(), 1h);
        slow.reset();
        QCOMPARE(slower->interval(), 2h);
        QVERIFY(slower->isRunning());
    }

    void reportsARefusalWithoutAReason()
    {
        ScriptedServer server;
        server.answer("hist", { Step::binary("", "NG:\n") });
        Client client(quickClient());
        client.connectTo(server.host(), server.port());
        HistogramPoller poller(client, "hist", {}, fast());
        QSignalSpy failed(&poller, &HistogramPoller::failed);
        poller.start();
        QVERIFY(eventually([&] { return !failed.isEmpty(); }));
        QVERIFY(!failed.first().first().toString().isEmpty());
        QVERIFY(!HistogramReply::parse({}, "NG:", {}).reason.isEmpty());
    }

    void stopEndsThePollsOfAllViewers()
    {
        ScriptedServer server;
        server.answer("hist", { Step::doubles({ 1, 2 }, axis) });
        Client client(quickClient());
        client.connectTo(server.host(), server.port());
        const auto first = HistogramPoller::shared(client, "hist", {}, fast());
        QSignalSpy updated(first.get(), &HistogramPoller::updated);
        QVERIFY(eventually([&] { return !updated.isEmpty(); }));
        auto second = HistogramPoller::shared(client, "hist", {});
        second.reset(); // the others go on
        QVERIFY(first->isRunning());
        second = HistogramPoller::shared(client, "hist", {});
        first->stop();
        QVERIFY(!second->isRunning());
        QCOMPARE(second->last().rows.first(), QList<double>({ 1, 2 }));
        const auto third = HistogramPoller::shared(client, "hist", {});
        QVERIFY(second->isRunning());
        updated.clear();
        QVERIFY(eventually([&] { return !updated.isEmpty(); }));
    }

    void acceptsAnyTimes()
    {
        using std::chrono::milliseconds;
        const milliseconds longest(std::numeric_limits<int>::max());
        ScriptedServer server;
        server.answer("hist", { Step::doubles({ 1, 2 }, axis) });
        Client client(quickClient());
        client.connectTo(server.host(), server.port());
        for (const milliseconds time :
            { milliseconds::min(), milliseconds(-1), milliseconds(qint64(1) << 31), milliseconds::max() }) {
            PollOptions options;
            options.interval = options.staleAfter = options.deadline = options.silence = time;
            HistogramPoller poller(client, "hist", {}, options);
            QCOMPARE(poller.interval(), time > 0ms ? longest : 1ms);
            QSignalSpy updated(&poller, &HistogramPoller::updated);
            QSignalSpy stale(&poller, &HistogramPoller::stale);
            poller.start();
            QVERIFY(eventually([&] { return !updated.isEmpty(); }));
            poller.setInterval(time);
            QCOMPARE(poller.interval(), time > 0ms ? longest : 1ms);
            QVERIFY(stale.isEmpty());
        }
    }

    void outlivesItsClient()
    {
        ScriptedServer server;
        server.answer("hist", { Step::silence() });
        auto client = std::make_unique<Client>(quickClient());
        client->connectTo(server.host(), server.port());
        HistogramPoller poller(*client, "hist", {}, fast());
        QSignalSpy failed(&poller, &HistogramPoller::failed);
        poller.start();
        QVERIFY(server.waitForRequest("hist"));
        client.reset();
        QVERIFY(eventually([&] { return !poller.isRunning(); }));
        QVERIFY(!failed.isEmpty());
    }

    void deletedWhileAReplyIsDecoded()
    {
        ScriptedServer server;
        const QList<double> many(1 << 16, 1.0);
        server.answer("hist", { Step::doubles(many, "OK: (0 2 65536)\n") });
        Client client(quickClient());
        client.connectTo(server.host(), server.port());
        for (int i = 0; i < 20; ++i) {
            auto poller = std::make_unique<HistogramPoller>(client, "hist", HistogramFormat(), fast());
            poller->start();
            QVERIFY(server.waitForRequests(i + 1));
            QVERIFY(eventually([&] { return client.pending() == 0; }));
        }
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
    }
};

QTEST_GUILESS_MAIN(TestHistogramPoller)
#include "tst_histogrampoller.moc"
