// Commands typed in the console, with well-behaved and misbehaving servers.
#include "command/commandpanel.h"
#include "mainwindow.h"
#include "notices/alertbar.h"
#include "server/servercontroller.h"

#include "console/consolefixture.h"
#include "support/payload.h"
#include "support/scriptedserver.h"
#include "support/wait.h"

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>

using namespace console;
using namespace tarnis::testing;

namespace {

} // namespace

class TestConsoleCommands : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }

    void keepsACommandUntilThereIsAServer()
    {
        ScriptedServer server;
        server.answer("hello", { Step::text("hi\n") });
        ConsoleFixture fixture;
        fixture.type(QStringLiteral("hello"));
        fixture.enter();
        QCOMPARE(fixture.edit().text(), QStringLiteral("hello"));
        QVERIFY(fixture.widget<QLabel>("progressLabel").text().contains(QStringLiteral("server")));
        fixture.use(server);
        QVERIFY(fixture.reaches(ServerState::Up));
        fixture.enter();
        QVERIFY(fixture.shows(QStringLiteral("> hello\nhi")));
        QVERIFY(fixture.edit().text().isEmpty());
    }

    void whatCannotBeSentStaysWithAReason()
    {
        ScriptedServer server;
        ConsoleFixture fixture(server);
        fixture.edit().setText(QString::fromUtf8("set \u03b1"));
        fixture.enter();
        QCOMPARE(fixture.edit().text(), QString::fromUtf8("set \u03b1"));
        QVERIFY(fixture.widget<QLabel>("progressLabel").text().contains(QStringLiteral("Latin-1")));
    }

    void repliesAppearBelowTheirCommands()
    {
        ScriptedServer server;
        server.answer("a", { Step::hold("gate"), Step::text("1\n") });
        server.answer("b", { Step::text("NG:2\n") });
        server.answer("c", { Step::text("") });
        ConsoleFixture fixture(server);
        for (const char* command : { "a", "b", "c" })
            fixture.send(QLatin1String(command));
        QVERIFY(server.waitForHold("gate"));
        server.open("gate");
        QVERIFY(fixture.shows(QStringLiteral("(an empty reply)")));
        QString record = fixture.record();
        record.remove(QRegularExpression(QStringLiteral("\\d\\d:\\d\\d:\\d\\d  ")));
        QCOMPARE(record, QStringLiteral("> a\n1\n> b\nNG:2\n> c\n(an empty reply)"));
    }

    void aLongReplyIsSeenWhileItComes()
    {
        ScriptedServer server;
        server.answer("slow", { Step::raw("half of it\n"), Step::hold("gate"), Step::text("the rest\n") });
        ConsoleFixture fixture(server);
        fixture.send(QStringLiteral("slow"));
        QVERIFY(fixture.shows(QStringLiteral("half of it")));
        QVERIFY(fixture.widget<QProgressBar>("progressBar").isVisible());
        QVERIFY(fixture.widget<QLabel>("progressLabel").text().contains(QStringLiteral("11 bytes")));
        server.open("gate");
        QVERIFY(fixture.shows(QStringLiteral("the rest")));
        QVERIFY(fixture.isFree());
        QCOMPARE(fixture.record().count(QStringLiteral("half of it")), 1);
        QVERIFY(!fixture.widget<QProgressBar>("progressBar").isVisible());
    }

    void aBinaryReplyIsShownInNumbers()
    {
        ScriptedServer server;
        server.answer("hist1d x", { Step::binary(bytesOf({ 1.0, 5.0 }), "OK: x\n") });
        server.answer("numbers", { Step::binary(bytesOf({ 2.0 }), "") });
        ConsoleFixture fixture(server);
        fixture.send(QStringLiteral("hist1d x"));
        QVERIFY(fixture.shows(QStringLiteral("2 values\nsum 6, minimum 1, maximum 5\nfirst: 1 5\ntext: OK: x")));
        QVERIFY(!fixture.widget<QCheckBox>("binaryCheck").isChecked());
        fixture.type(QStringLiteral("numbers"));
        fixture.press("binaryCheck");
        fixture.enter();
        QVERIFY(fixture.shows(QStringLiteral("1 value\nsum 2")));
    }

    void keepsTheChoiceOfBinaryReplies()
    {
        ConsoleFixture fixture;
        fixture.type(QStringLiteral("hist1d"));
        QVERIFY(fixture.widget<QCheckBox>("binaryCheck").isChecked());
        fixture.press("binaryCheck");
        fixture.type(QStringLiteral(" total"));
        QVERIFY(!fixture.widget<QCheckBox>("binaryCheck").isChecked());
    }

    void reconnectsWithOneClick()
    {
        ScriptedServer server;
        server.answerInTurn("a", { { Step::raw("half"), Step::drop() }, { Step::text("whole\n") } });
        ConsoleFixture fixture(server);
        fixture.send(QStringLiteral("a"));
        fixture.type(QStringLiteral("being typed"));
        TRY_COMPARE(fixture.alert().action, AlertAction::SendAgain);
        QVERIFY(fixture.alert().text.contains(u'a'));
        QCOMPARE(fixture.window->controller().state(), ServerState::Up);
        fixture.press("alertButton");
        QVERIFY(fixture.shows(QStringLiteral("whole")));
        QVERIFY(fixture.alert().text.isEmpty());
        QCOMPARE(fixture.edit().text(), QStringLiteral("being typed"));
    }

    void aLostCommandComesBackToAnEmptyLine()
    {
        ScriptedServer server;
        server.answerInTurn("a", { { Step::drop() }, { Step::text("whole\n") } });
        ConsoleFixture fixture(server);
        fixture.send(QStringLiteral("a"));
        QVERIFY(fixture.shows(QStringLiteral("No reply: a")));
        QCOMPARE(fixture.edit().text(), QStringLiteral("a"));
        TRY_COMPARE(fixture.alert().action, AlertAction::SendAgain);
        QTest::keyClick(&fixture.edit(), Qt::Key_Return);
        QVERIFY(fixture.alert().text.isEmpty()); // otherwise it could be sent a second time
        QVERIFY(fixture.shows(QStringLiteral("whole")));
    }

    void aCommandCanBeGivenUp()
    {
        ScriptedServer server;
        server.answer("never", { Step::silence() });
        server.answer("next", { Step::text("done\n") });
        ConsoleFixture fixture;
        QVERIFY(!fixture.widget<QPushButton>("giveUpButton").isEnabled());
        fixture.use(server);
        QVERIFY(fixture.reaches(ServerState::Up));
        fixture.send(QStringLiteral("never"));
        QVERIFY(server.waitForRequest("never"));
        fixture.press("giveUpButton");
        QVERIFY(!fixture.window->commandPanel().isBusy());
        QVERIFY(fixture.record().contains(QStringLiteral("Given up: never")));
        QVERIFY(fixture.alert().text.isEmpty());
        fixture.send(QStringLiteral("next"));
        QVERIFY(fixture.shows(QStringLiteral("done")));
    }

    void commandsAfterACancelledOneCanBeSentAgain()
    {
        ScriptedServer server;
        server.answer("never", { Step::silence() });
        server.answer("next", { Step::text("done\n") });
        server.answer("last", { Step::text("done too\n") });
        ConsoleFixture fixture(server);
        for (const char* const command : { "never", "next", "last" })
            fixture.send(QLatin1String(command));
        QVERIFY(server.waitForRequest("never"));
        fixture.press("giveUpButton");
        QCOMPARE(fixture.alert().action, AlertAction::SendAgain);
        QVERIFY2(fixture.alert().text.contains(QStringLiteral("2 later commands")), qPrintable(fixture.alert().text));
        fixture.press("alertButton");
        QVERIFY(fixture.shows(QStringLiteral("done too")));
        QVERIFY(fixture.alert().text.isEmpty());
        QCOMPARE(server.requests().count("never"), 1);
    }
};

QTEST_MAIN(TestConsoleCommands)
#include "tst_consolecommands.moc"
