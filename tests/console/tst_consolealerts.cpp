// Messages of the console: permanent and transient alerts, status texts, a broken settings file.
#include "app/language.h"
#include "command/history.h"
#include "console/consolefixture.h"
#include "server/connectdialog.h"
#include "server/lastserver.h"
#include "server/statustext.h"
#include "support/cases.h"
#include "support/wait.h"

#include <QPushButton>
#include <QSpinBox>

using namespace console;
using namespace tarnis::testing;

namespace {

Alert failure(const QString& text)
{
    return { Alert::Severity::Failure, text, AlertAction::StartAgain };
}

Alert note(const QString& text)
{
    return { Alert::Severity::Information, text, AlertAction::None };
}

} // namespace

class TestConsoleAlerts : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }
    void cleanup() { setLanguage(QStringLiteral("en")); }

    // Alerts.

    void aFailureIsNotDisplacedByANote()
    {
        AlertBar bar;
        bar.setAlert(failure(QStringLiteral("gone")));
        bar.setStatusMessage(note(QStringLiteral("by the way")));
        QCOMPARE(bar.alert(), failure(QStringLiteral("gone")));
        QCOMPARE(bar.note(), QStringLiteral("by the way"));
        QVERIFY(!bar.findChild<QPushButton*>(QStringLiteral("alertButton"))->isHidden());
        bar.setStatusMessage({});
        QCOMPARE(bar.alert(), failure(QStringLiteral("gone")));
        QVERIFY(bar.note().isEmpty());
    }

    void aNotePassesWithTheNext()
    {
        AlertBar bar;
        bar.setStatusMessage(note(QStringLiteral("one")));
        bar.setStatusMessage(note(QStringLiteral("two")));
        QCOMPARE(bar.alert().text, QStringLiteral("two"));
        bar.setAlert(failure(QStringLiteral("gone")));
        QCOMPARE(bar.alert().text, QStringLiteral("gone"));
        bar.setAlert({});
        QVERIFY(bar.isHidden());
    }

    void whatCanBeSentAgainStaysBesideStatusMessages()
    {
        const Alert lost { Alert::Severity::Warning, QStringLiteral("lost"), AlertAction::SendAgain };
        AlertBar bar;
        bar.setStatusMessage(lost);
        bar.setStatusMessage(note(QStringLiteral("by the way")));
        QCOMPARE(bar.alert(), lost);
        QCOMPARE(bar.note(), QStringLiteral("by the way"));
        bar.setStatusMessage({});
        QCOMPARE(bar.alert(), lost);
        QVERIFY(bar.note().isEmpty());
        bar.findChild<QAbstractButton*>(QStringLiteral("dismissButton"))->click();
        QVERIFY(bar.isHidden());
    }

    void dropsAnOlderAlertWithTheLastOne()
    {
        AlertBar bar;
        bar.setAlert({ Alert::Severity::Warning, QStringLiteral("slow"), AlertAction::Stop });
        bar.setStatusMessage(note(QStringLiteral("by the way")));
        QCOMPARE(bar.note(), QStringLiteral("by the way"));
        const Alert lost { Alert::Severity::Warning, QStringLiteral("lost"), AlertAction::SendAgain };
        bar.setStatusMessage(lost);
        QCOMPARE(bar.alert(), lost);
        QVERIFY(bar.note().isEmpty());
        // A failure replaces the offer to send again, and is not replaced by a transient alert.
        bar.setAlert(failure(QStringLiteral("gone")));
        bar.setStatusMessage(lost);
        QCOMPARE(bar.alert(), failure(QStringLiteral("gone")));
        QCOMPARE(bar.note(), QStringLiteral("lost"));
    }

    void dismissingRemovesTheStatusMessageFirst()
    {
        AlertBar bar;
        auto* const dismiss = bar.findChild<QAbstractButton*>(QStringLiteral("dismissButton"));
        bar.setAlert(failure(QStringLiteral("gone")));
        bar.setStatusMessage(note(QStringLiteral("by the way")));
        dismiss->click();
        QVERIFY(bar.note().isEmpty());
        QCOMPARE(bar.alert().text, QStringLiteral("gone"));
        dismiss->click();
        QVERIFY(bar.isHidden());
    }

    void keepsTheAlertOfALostServer()
    {
        ConsoleFixture fixture;
        fixture.start({ ServerChoice::Kind::Remote, {}, ScriptedServer::host(), ScriptedServer::closedPort() });
        QVERIFY(fixture.reaches(ServerState::Failed));
        const Alert before = fixture.alert();
        fixture.window->commandPanel().sendFile(QStringLiteral("/no/such/file"));
        QCOMPARE(fixture.alert(), before);
        QVERIFY(fixture.widget<AlertBar>("alertBar").note().contains(QStringLiteral("/no/such/file")));
    }

    void aRemoteServerIsConnectedToAgain()
    {
        auto server = std::make_unique<ScriptedServer>();
        ConsoleFixture fixture(*server);
        server.reset();
        fixture.window->controller().checkServer();
        QVERIFY(fixture.reaches(ServerState::Failed));
        QVERIFY(fixture.widget<QPushButton>("alertButton").text().contains(QStringLiteral("Connect Again")));
    }

    // The status.

    void showsTheStatusAsText()
    {
        ScriptedServer server;
        ConsoleFixture fixture(server);
        auto& label = fixture.widget<QLabel>("statusLabel");
        QCOMPARE(label.text(), QStringLiteral("Connected"));
        QVERIFY(label.toolTip().endsWith(QStringLiteral(": SERVER CONNECTED")));
        setLanguage(QStringLiteral("de"));
        TRY_COMPARE(label.text(), QStringLiteral("Verbunden"));
        QVERIFY(label.toolTip().endsWith(QStringLiteral(": SERVER CONNECTED")));
    }

    void everyStatusHasAWordInGerman()
    {
        for (int status = Tarnis::IDLE; status <= Tarnis::SHUTTING_DOWN; ++status) {
            setLanguage(QStringLiteral("en"));
            const QString english = statusText(Tarnis::SERVER_STATUS(status));
            setLanguage(QStringLiteral("de"));
            QVERIFY2(statusText(Tarnis::SERVER_STATUS(status)) != english, qPrintable(english));
        }
    }

    // Stored settings.

    void aServerThatIsKeptWrong_data()
    {
        addColumns<QString, QString, QString, QString>("kind", "host", "port", "prompt");
        QTest::addColumn<QString>("problem"); // a word of it; empty: none
        addCase("nothing", "", "", "", "", "");
        addCase("local", "local", "", "0", "# ", "");
        addCase("remote", "remote", "daq", "5000", "\\x3e", "");
        addCase("port too large", "remote", "daq", "99999", "", "99999");
        addCase("no port", "remote", "daq", "0", "", "not a valid port");
        addCase("a word as port", "remote", "daq", "http", "", "http");
        addCase("no host", "remote", "", "5000", "", "host");
        addCase("a sentence as host", "remote", "my server", "5000", "", "my server");
        addCase("no such kind", "virtual", "", "", "", "virtual");
        addCase("a broken prompt", "local", "", "", "\\q", "\\q");
    }
    void aServerThatIsKeptWrong()
    {
        QFETCH(QString, kind);
        QFETCH(QString, host);
        QFETCH(QString, port);
        QFETCH(QString, prompt);
        QFETCH(QString, problem);
        QTemporaryDir directory;
        QSettings store(directory.filePath(QStringLiteral("console.ini")), QSettings::IniFormat);
        if (!kind.isEmpty()) {
            store.setValue(QStringLiteral("server/kind"), kind);
            store.setValue(QStringLiteral("server/host"), host);
            store.setValue(QStringLiteral("server/port"), port);
            store.setValue(QStringLiteral("server/prompt"), prompt);
        }
        const LastServer last = readLastServer(store);
        QCOMPARE(last.problem.isEmpty(), problem.isEmpty());
        QVERIFY2(last.problem.contains(problem), qPrintable(last.problem));
    }

    void whatIsWrittenIsRead()
    {
        QTemporaryDir directory;
        QSettings store(directory.filePath(QStringLiteral("console.ini")), QSettings::IniFormat);
        const ServerChoice choice { ServerChoice::Kind::Remote, {}, QStringLiteral("::1"), 65535 };
        writeLastServer(store, choice, "\n# ");
        const LastServer last = readLastServer(store);
        QVERIFY(last.choice == choice && last.problem.isEmpty());
        QCOMPARE(last.prompt, QByteArray("\n# "));
    }

    void asksForAServerIfTheStoredOneIsInvalid()
    {
        ConsoleFixture fixture;
        fixture.store.setValue(QStringLiteral("server/kind"), QStringLiteral("remote"));
        fixture.store.setValue(QStringLiteral("server/host"), QStringLiteral("daq"));
        fixture.store.setValue(QStringLiteral("server/port"), QStringLiteral("99999"));
        fixture.window->startServer({});
        QCOMPARE(fixture.window->controller().state(), ServerState::Off);
        QVERIFY(fixture.alert().text.contains(QStringLiteral("99999")));
        auto* const dialog = fixture.window->findChild<ConnectDialog*>();
        QVERIFY(dialog && dialog->isVisible());
        QCOMPARE(dialog->findChild<QLineEdit*>(QStringLiteral("hostEdit"))->text(), QStringLiteral("daq"));
        dialog->reject();
        fixture.window->close();
        QCOMPARE(
            fixture.store.value(QStringLiteral("server/port")).toString(), QStringLiteral("99999")); // not overwritten
    }

    void commandsAreKeptAtOnce()
    {
        ScriptedServer server;
        ConsoleFixture fixture(server);
        fixture.send(QStringLiteral("typed"));
        QSettings other(fixture.store.fileName(), QSettings::IniFormat);
        QCOMPARE(other.value(QStringLiteral("commands")).toStringList(), QStringList { QStringLiteral("typed") });
    }

    void aStoreThatCannotBeWrittenIsReportedOnce()
    {
        QTemporaryDir directory;
        QFile file(directory.filePath(QStringLiteral("file")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QSettings store(file.fileName() + QStringLiteral("/console.ini"), QSettings::IniFormat);
        MainWindow window(store);
        window.statusPoller().setInterval(0);
        window.show();
        ScriptedServer server;
        Options options;
        options.server = ServerChoice { ServerChoice::Kind::Remote, {}, ScriptedServer::host(), server.port() };
        options.prompt = "> ";
        window.startServer(options);
        TRY_COMPARE(window.controller().state(), ServerState::Up);
        auto* const edit = window.findChild<QLineEdit*>(QStringLiteral("commandEdit"));
        for (int i = 0; i < 2; ++i) {
            QTest::keyClicks(edit, QStringLiteral("typed"));
            QTest::keyClick(edit, Qt::Key_Return);
        }
        QCOMPARE(window.commandPanel().recordText().count(QStringLiteral("cannot be written")), 1);
    }
};

QTEST_MAIN(TestConsoleAlerts)
#include "tst_consolealerts.moc"
