// Sessions of the console itself: the probe of a server, and the command channel.
#include "console/controllerfixture.h"
#include "server/commandchannel.h"
#include "server/servercontroller.h"
#include "server/serverprobe.h"
#include "support/cases.h"

#include "support/scriptedserver.h"
#include "support/wait.h"

#include <QSignalSpy>
#include <QTest>

using namespace console;
using namespace tarnis::testing;

namespace {

ServerProbe::Outcome probe(ServerProbe& probe, quint16 port, int limitMs, const QString& host)
{
    const QSignalSpy finished(&probe, &ServerProbe::finished);
    probe.start(host, port, "> ", limitMs);
    if (!eventually([&] { return !finished.isEmpty(); }))
        qFatal("the probe does not end");
    return finished.first().first().value<ServerProbe::Outcome>();
}

} // namespace

class TestConsoleProbe : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theProbeMeetsAServer()
    {
        ScriptedServer server;
        ServerProbe one;
        QCOMPARE(probe(one, server.port(), timeoutMs, ScriptedServer::host()), ServerProbe::Outcome::Greeted);
        QVERIFY(server.waitForFarewells(1));
        QVERIFY(!one.isActive());
    }

    void theProbeMeetsAGreetingInPieces()
    {
        ScriptedServer server({ Step::text("hello\n").inChunksOf(1), Step::serve() });
        ServerProbe one;
        QCOMPARE(probe(one, server.port(), timeoutMs, ScriptedServer::host()), ServerProbe::Outcome::Greeted);
        QVERIFY(one.received().endsWith("> "));
    }

    void theProbeReportsAMissingServer()
    {
        ServerProbe one;
        QCOMPARE(probe(one, ScriptedServer::closedPort(), timeoutMs, ScriptedServer::host()),
            ServerProbe::Outcome::NotReached);
        QCOMPARE(one.socketError(), QAbstractSocket::ConnectionRefusedError);
    }

    void theProbeMeetsSomethingElse_data()
    {
        addColumns<QByteArray, bool>("greeting", "hangsUp");
        QTest::newRow("silence") << QByteArray() << false;
        QTest::newRow("another prompt") << QByteArray("login: ") << false;
        QTest::newRow("hangs up") << QByteArray("busy\n") << true;
        QTest::newRow("endless talk") << QByteArray(200000, 'x') << false;
    }
    void theProbeMeetsSomethingElse()
    {
        QFETCH(QByteArray, greeting);
        QFETCH(bool, hangsUp);
        ScriptedServer server({ Step::raw(greeting), hangsUp ? Step::drop() : Step::silence() });
        ServerProbe one;
        QCOMPARE(probe(one, server.port(), 300, ScriptedServer::host()), ServerProbe::Outcome::NoPrompt);
    }

    void theProbeIsRefused_data()
    {
        addColumns<QByteArray, QString, bool>("greeting", "reason", "hangsUp");
        QTest::newRow("and disconnected") << QByteArray("NG:too many clients\n") << "too many clients" << true;
        QTest::newRow("and kept") << QByteArray("NG: not now \n") << "not now" << false;
        QTest::newRow("with more text") << QByteArray("NG:a <b>: no\nsecond line\n") << "a <b>: no" << true;
        QTest::newRow("with a long text") << "NG:" + QByteArray(60000, 'x') << QString(200, u'x') + u'\u2026' << true;
    }
    void theProbeIsRefused()
    {
        QFETCH(QByteArray, greeting);
        QFETCH(QString, reason);
        QFETCH(bool, hangsUp);
        ScriptedServer server({ Step::raw(greeting), hangsUp ? Step::drop() : Step::silence() });
        ServerProbe one;
        QCOMPARE(probe(one, server.port(), hangsUp ? timeoutMs : 300, ScriptedServer::host()),
            ServerProbe::Outcome::Refused);
        QCOMPARE(one.refusal(), reason);
    }

    void aStoppedProbeIsSilent()
    {
        ScriptedServer server;
        ServerProbe one;
        QSignalSpy finished(&one, &ServerProbe::finished);
        one.start(ScriptedServer::host(), server.port(), "> ", timeoutMs);
        one.stop();
        QVERIFY(server.waitUntilDeserted());
        QCOMPARE(finished.size(), 0);
    }

    void theLinkAnswersInOrder()
    {
        ScriptedServer server;
        server.answer("a", { Step::text("first") });
        server.answer("b", { Step::doubles({ 1.0 }, "second") });
        ControllerFixture control;
        QVERIFY(control.startsUp(remote(server.port())));
        CommandChannel link(control.controller, QStringLiteral("test"), nullptr);
        QSignalSpy replied(&link, &CommandChannel::replied);
        auto* binary = new TarnisCmd(QStringLiteral("b"));
        binary->m_bBinary = true;
        link.send(new TarnisCmd(QStringLiteral("a")));
        link.send(binary);
        QCOMPARE(link.waiting().size(), qsizetype(2));
        TRY_COMPARE(replied.size(), 2);
        QCOMPARE(replied.at(0).at(1).toByteArray(), QByteArray("first"));
        QCOMPARE(replied.at(1).at(0).value<PTarnisCmd>()->m_replyText, QStringLiteral("second"));
        QVERIFY(link.waiting().isEmpty());
    }

    void theChannelReportsLostCommandsAndReconnects()
    {
        ScriptedServer server;
        server.answerInTurn("a", { { Step::raw("half"), Step::drop() }, { Step::text("whole") } });
        ControllerFixture control;
        QVERIFY(control.startsUp(remote(server.port())));
        CommandChannel link(control.controller, QStringLiteral("test"), nullptr);
        QSignalSpy failed(&link, &CommandChannel::failed);
        QSignalSpy replied(&link, &CommandChannel::replied);
        link.send(new TarnisCmd(QStringLiteral("a")));
        link.send(new TarnisCmd(QStringLiteral("b")));
        TRY_COMPARE(failed.size(), 1);
        const auto lost = failed.first().at(1).value<QList<Request>>();
        QCOMPARE(lost.size(), qsizetype(2));
        QCOMPARE(lost.at(1).text, QStringLiteral("b"));
        link.send(new TarnisCmd(QStringLiteral("a")));
        TRY_COMPARE(replied.size(), 1);
        QCOMPARE(replied.first().at(1).toByteArray(), QByteArray("whole"));
    }

    // A server that does not know the command refuses it without the length of a payload.
    void theChannelReportsARefusalInPlaceOfAPayload()
    {
        ScriptedServer server;
        server.answer("hist1d x", { Step::text("NG:unknown histogram\n") });
        ControllerFixture control;
        QVERIFY(control.startsUp(remote(server.port())));
        CommandChannel channel(control.controller, QStringLiteral("test"), nullptr);
        QSignalSpy replied(&channel, &CommandChannel::replied);
        auto* binary = new TarnisCmd(QStringLiteral("hist1d x"));
        binary->m_bBinary = true;
        channel.send(binary);
        TRY_COMPARE(replied.size(), 1);
        QCOMPARE(replied.at(0).at(0).value<PTarnisCmd>()->m_replyText, QStringLiteral("NG:unknown histogram\n"));
        QVERIFY(replied.at(0).at(1).toByteArray().isEmpty());
    }

    // A server that closed an idle connection costs no command.
    void theChannelReconnectsAfterAnIdleLoss()
    {
        ScriptedServer server;
        ControllerFixture control;
        QVERIFY(control.startsUp(remote(server.port())));
        CommandChannel channel(control.controller, QStringLiteral("test"), nullptr);
        server.setScript(server.connectionCount(),
            { Step::raw("> "), Step::expectLine("a"), Step::raw("first> "), Step::hold("gate"), Step::drop() });
        QSignalSpy replied(&channel, &CommandChannel::replied);
        QSignalSpy failed(&channel, &CommandChannel::failed);
        channel.send(new TarnisCmd(QStringLiteral("a")));
        TRY_COMPARE(replied.size(), 1);
        const int open = server.openConnections();
        server.open("gate");
        TRY_COMPARE(server.openConnections(), open - 1);
        for (int pass = 0; pass < 5; ++pass) // the socket's event, and the queued calls that follow
            QCoreApplication::processEvents();
        channel.send(new TarnisCmd(QStringLiteral("b")));
        TRY_COMPARE(replied.size(), 2);
        QCOMPARE(failed.size(), 0);
    }

    void aDroppedLinkIsSilent()
    {
        ScriptedServer server;
        server.answer("a", { Step::hold("gate"), Step::text("late") });
        ControllerFixture control;
        QVERIFY(control.startsUp(remote(server.port())));
        CommandChannel link(control.controller, QStringLiteral("test"), nullptr);
        QSignalSpy replied(&link, &CommandChannel::replied);
        link.send(new TarnisCmd(QStringLiteral("a")));
        QVERIFY(server.waitForHold("gate"));
        QCOMPARE(link.drop().size(), qsizetype(1));
        server.open("gate");
        link.send(new TarnisCmd(QStringLiteral("b")));
        TRY_COMPARE(replied.size(), 1);
        QCOMPARE(replied.first().at(0).value<PTarnisCmd>()->m_cmd, QStringLiteral("b"));
    }
};

QTEST_MAIN(TestConsoleProbe)
#include "tst_consoleprobe.moc"
