// What the settings panel keeps when the server starts again, or another one is used.
#include "console/settingsconsole.h"

using namespace console;
using namespace tarnis::testing;

class TestConsoleSettingsRestart : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }

    void whatWasSentIsKeptOverARestart()
    {
        ScriptedServer server;
        server.answerInTurn("setting",
            { okReply("rate: 10\nseed: 1\n"), okReply("rate: 10\nseed: 1\n"), okReply("rate: 20\nseed: 1\n"),
                okReply("rate: 10\nseed: 7\n") });
        const FakeServer program(FakeServer::wellBehaved(server.port()));
        SettingsConsole fixture(program, server);
        TRY_COMPARE(fixture.here("rate"), QStringLiteral("10"));
        QVERIFY(fixture.sends("rate", "20"));
        TRY_COMPARE(fixture.onServer("rate"), QStringLiteral("20"));

        fixture.choose("restartAction");
        TRY_COMPARE(fixture.onServer("seed"), QStringLiteral("7"));
        QCOMPARE(fixture.here("rate"), QStringLiteral("20"));
        QCOMPARE(fixture.onServer("rate"), QStringLiteral("10"));
        QCOMPARE(fixture.model().changedNames(), QStringList { "rate" });
        QCOMPARE(fixture.here("seed"), QStringLiteral("7"));
        QVERIFY(fixture.settingsState().contains(QStringLiteral("has restarted")));
        QVERIFY(fixture.settingsState().contains(QStringLiteral("1 setting")));
    }

    void whatOthersSentSinceIsNotKept()
    {
        ScriptedServer server;
        server.answerInTurn("setting",
            { okReply("rate: 10\n"), okReply("rate: 10\n"), okReply("rate: 20\n"), okReply("rate: 30\n"),
                okReply("rate: 10\n") });
        const FakeServer program(FakeServer::wellBehaved(server.port()));
        SettingsConsole fixture(program, server);
        TRY_COMPARE(fixture.here("rate"), QStringLiteral("10"));
        QVERIFY(fixture.sends("rate", "20"));
        TRY_COMPARE(fixture.onServer("rate"), QStringLiteral("20"));
        fixture.press("readButton");
        TRY_COMPARE(fixture.here("rate"), QStringLiteral("30"));
        fixture.choose("restartAction");
        TRY_COMPARE(fixture.here("rate"), QStringLiteral("10"));
        QVERIFY(fixture.model().changedNames().isEmpty());
    }

    void aRemoteServerIsFollowed()
    {
        ScriptedServer server;
        server.answerInTurn(
            "setting", { okReply("rate: 10\n"), okReply("rate: 10\n"), okReply("rate: 20\n"), okReply("rate: 30\n") });
        SettingsConsole fixture(server);
        TRY_COMPARE(fixture.here("rate"), QStringLiteral("10"));
        QVERIFY(fixture.sends("rate", "20"));
        TRY_COMPARE(fixture.onServer("rate"), QStringLiteral("20"));
        fixture.choose("restartAction"); // disconnects and connects again
        TRY_COMPARE(fixture.here("rate"), QStringLiteral("30"));
        QVERIFY(fixture.model().changedNames().isEmpty());
    }

    void aBasePathThatWasSentIsKeptOverARestart()
    {
        ScriptedServer server;
        server.answerInTurn(
            "setting", { okReply("basepath: /\n"), okReply("basepath: /data\n"), okReply("basepath: /\n") });
        const FakeServer program(FakeServer::wellBehaved(server.port()));
        SettingsConsole fixture(program, server);
        TRY_COMPARE(fixture.here("basepath"), QStringLiteral("/"));
        fixture.widget<QLineEdit>("pathEdit").setText(QStringLiteral("/data"));
        fixture.press("pathButton");
        TRY_COMPARE(fixture.onServer("basepath"), QStringLiteral("/data"));
        fixture.choose("restartAction");
        TRY_COMPARE(fixture.onServer("basepath"), QStringLiteral("/"));
        QCOMPARE(fixture.here("basepath"), QStringLiteral("/data"));
        QCOMPARE(fixture.widget<QLineEdit>("pathEdit").text(), QStringLiteral("/data"));
    }

    void anotherServerDoesNotGetWhatWasSentToTheFirst()
    {
        ScriptedServer first;
        first.answerInTurn("setting", { okReply("rate: 10\n"), okReply("rate: 10\n"), okReply("rate: 20\n") });
        ScriptedServer second;
        second.answer("setting", okReply("rate: 5\n"));
        const FakeServer one(FakeServer::wellBehaved(first.port()));
        const FakeServer two(FakeServer::wellBehaved(second.port()));
        SettingsConsole fixture(one, first);
        TRY_COMPARE(fixture.here("rate"), QStringLiteral("10"));
        QVERIFY(fixture.sends("rate", "20"));
        TRY_COMPARE(fixture.onServer("rate"), QStringLiteral("20"));
        fixture.use(two);
        TRY_COMPARE(fixture.here("rate"), QStringLiteral("5"));
        QVERIFY(fixture.model().changedNames().isEmpty());
    }
};

QTEST_MAIN(TestConsoleSettingsRestart)
#include "tst_consolesettingsrestart.moc"
