// How a session ends: at once from any of its waits, in the background, and when a reply is too large.
#include "sessionclient.h"
#include "support/cases.h"

#include "support/fullbacklog.h"

#include <tarnis/server/sessionend.h>

#include <QAbstractSocket>
#include <QSemaphore>
#include <QTest>

#include <atomic>
#include <limits>

using namespace tarnis::testing;

namespace {

/// Counts those that have been deleted.
class CountedSession : public TarnisSession {
public:
    CountedSession(const ScriptedServer& server, std::atomic_int& deleted, const QByteArray* prompt = nullptr)
        : TarnisSession(ScriptedServer::host(), server.port(), prompt ? prompt : server.prompt(), nullptr)
        , m_deleted(deleted)
    {
    }
    ~CountedSession() override { ++m_deleted; }

private:
    std::atomic_int& m_deleted;
};

} // namespace

class TestSessionEnd : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void leavesAConnectionAttempt()
    {
        FullBacklog listener;
        QVERIFY(listener.isFull());
        const QByteArray itsPrompt("> ");
        SessionClient client(ScriptedServer::host(), listener.port(), &itsPrompt);
        client.start();
        QVERIFY(listener.waitForAttempt());
        client.destroy();
        QCoreApplication::processEvents();
        QCOMPARE(client.signalled, QStringList()); // a blocking attempt would fail with an error
    }

    void leavesAReadWithoutTimeout_data()
    {
        QTest::addColumn<bool>("binary");
        QTest::newRow("text") << false;
        QTest::newRow("binary") << true;
    }
    void leavesAReadWithoutTimeout()
    {
        QFETCH(bool, binary);
        ScriptedServer server;
        server.answer("ask", { Step::hold("never") });
        SessionClient client(server);
        client.session->setTimeout(std::numeric_limits<int>::max());
        client.send("ask", binary ? SessionClient::Binary : SessionClient::Text);
        client.start();
        QVERIFY(server.waitForHold("never"));
        client.destroy(); // otherwise it waits for 68 years
        QVERIFY(server.waitUntilDeserted());
        QCOMPARE(server.farewells(), 1);
    }

    void leavesAPause()
    {
        const ScriptedServer server;
        SessionClient client(server);
        client.send("ask")->m_afterSleep = std::numeric_limits<int>::max();
        client.start();
        QVERIFY(client.waitForAnswers(1));
        client.destroy();
        QVERIFY(server.waitForFarewells(1));
    }

    void waitsOnAfterOtherEvents()
    {
        // The wait runs the worker's event dispatcher, which other events wake too.
        ScriptedServer server;
        server.answer("ask", { Step::raw("par"), Step::hold("rest"), Step::text("t") });
        SessionClient client(server);
        std::unique_ptr<QObject> object;
        QSemaphore ready;
        connect(
            client.session.get(), &TarnisSession::connected, client.session.get(),
            [&] {
                object = std::make_unique<QObject>(); // lives on the worker's thread
                ready.release();
            },
            Qt::DirectConnection);
        client.send("ask");
        client.start();
        QVERIFY(server.waitForHold("rest"));
        ready.acquire();
        for (int i = 0; i < 200; ++i)
            QMetaObject::invokeMethod(
                object.get(), [&] { ready.release(); }, Qt::QueuedConnection);
        ready.acquire(200);
        server.release("rest");
        QVERIFY(client.waitForAnswers(1));
        QCOMPARE(client.answers[0].bytes, "part");
        client.destroy();
    }

    void doesNotHoldUpTheCaller()
    {
        const ScriptedServer server;
        std::atomic_int deleted = 0;
        QSemaphore inSlot;
        QSemaphore gate;
        QList<TarnisSession*> sessions;
        for (int i = 0; i < 3; ++i) {
            auto* const session = new CountedSession(server, deleted);
            connect(
                session, &TarnisSession::connected, session,
                [&] {
                    inSlot.release();
                    gate.acquire();
                },
                Qt::DirectConnection);
            session->start();
            sessions.append(session);
        }
        inSlot.acquire(3);
        for (TarnisSession* const session : std::as_const(sessions))
            tarnis::endInBackground(session); // a destructor would wait for the gate
        gate.release(3);
        tarnis::waitForEndingSessions();
        QCOMPARE(deleted.load(), 3);
        QVERIFY(server.waitForFarewells(3));
    }

    void endedSessionTouchesItsPromptNoMore()
    {
        ScriptedServer server({ Step::raw("wel"), Step::hold("gate"), Step::raw("come> "), Step::silence() });
        std::atomic_int deleted = 0;
        auto prompt = std::make_unique<QByteArray>("> ");
        auto* const session = new CountedSession(server, deleted, prompt.get());
        session->start();
        QVERIFY(server.waitForHold("gate"));
        tarnis::endInBackground(session);
        prompt.reset();
        server.release("gate");
        tarnis::waitForEndingSessions();
        QCOMPARE(deleted.load(), 1);
    }

    void deliversNothingAfterItsEnd()
    {
        ScriptedServer server;
        server.answer("ask", { Step::hold("gate"), Step::text("late") });
        std::atomic_int deleted = 0;
        auto* const session = new CountedSession(server, deleted);
        int results = 0;
        connect(session, &TarnisSession::result, this, [&] { ++results; });
        session->send(new TarnisCmd("ask"));
        session->send(new TarnisCmd("never"));
        session->start();
        QVERIFY(server.waitForHold("gate"));
        tarnis::endInBackground(session);
        server.release("gate");
        tarnis::waitForEndingSessions();
        QCoreApplication::processEvents();
        QCOMPARE(results, 0);
        QCOMPARE(server.requests().size(), 1);
    }

    void acceptsASessionThatNeverRan()
    {
        const ScriptedServer server;
        std::atomic_int deleted = 0;
        QObject parent;
        auto* const session = new CountedSession(server, deleted);
        session->setParent(&parent);
        tarnis::endInBackground(session);
        QCOMPARE(deleted.load(), 1);
        QVERIFY(parent.children().isEmpty());
        tarnis::endInBackground(nullptr);
        tarnis::waitForEndingSessions();
    }

    void refusesALargeReply_data()
    {
        addColumns<QByteArray, bool, bool>("reply", "binary", "accepted");
        const auto field = [](int length) { return QByteArray(1, char(length)) + QByteArray(3, '\0'); };
        QTest::newRow("text of the limit") << QByteArray(8, 'x') + "> " << false << true;
        QTest::newRow("text beyond") << QByteArray(11, 'x') + "> " << false << false;
        QTest::newRow("endless text") << QByteArray(100000, 'x') << false << false;
        QTest::newRow("payload of the limit") << field(6) + QByteArray(6, 'x') + "OK> " << true << true;
        QTest::newRow("announced payload") << field(11) << true << false;
        QTest::newRow("text behind a payload") << field(6) + QByteArray(11, 'x') << true << false;
    }
    void refusesALargeReply()
    {
        QFETCH(QByteArray, reply);
        QFETCH(bool, binary);
        QFETCH(bool, accepted);
        ScriptedServer server;
        server.answer("ask", { Step::raw(reply), Step::silence() });
        SessionClient client(server);
        client.session->setMaxReplySize(10); // the prompt counts as long as it is incomplete
        client.send("ask", binary ? SessionClient::Binary : SessionClient::Text);
        client.start();
        if (accepted) {
            QVERIFY(client.waitForAnswers(1));
            QCOMPARE(client.errors.size(), 0);
            return;
        }
        QVERIFY(client.waitForEnd());
        QCOMPARE(client.errorCodes(), QList<int>({ QAbstractSocket::SocketResourceError }));
        QVERIFY2(client.errors.at(0).second.contains("limit of 10 bytes"), qPrintable(client.errors.at(0).second));
        QVERIFY(server.waitForFarewells(1));
    }

    void refusesALargeGreetingOnce()
    {
        const ScriptedServer server({ Step::raw(QByteArray(100, 'x')), Step::silence() });
        SessionClient client(server);
        client.session->setMaxReplySize(10);
        client.start();
        QVERIFY(client.waitForEnd());
        QCOMPARE(client.errorCodes(), QList<int>({ QAbstractSocket::SocketResourceError }));
    }

    void hasALimitUnlessItIsZero()
    {
        ScriptedServer server;
        server.answer("huge", { Step::raw("\xff\xff\xff\x7f"), Step::silence() });
        SessionClient client(server);
        client.send("huge", SessionClient::Binary);
        client.start();
        QVERIFY(client.waitForEnd());
        QCOMPARE(client.errorCodes(), QList<int>({ QAbstractSocket::SocketResourceError }));

        SessionClient unlimited(server);
        unlimited.session->setMaxReplySize(0);
        unlimited.send("huge", SessionClient::Binary);
        unlimited.startImpatient();
        QVERIFY(unlimited.waitForEnd());
        QCOMPARE(unlimited.errorCodes(), QList<int>({ QAbstractSocket::SocketTimeoutError }));
    }
};

QTEST_GUILESS_MAIN(TestSessionEnd)
#include "tst_sessionend.moc"
