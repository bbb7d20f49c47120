// The settings panel with a changing server: changes by others, restarts, rejections.
#include "app/language.h"
#include "console/consolefixture.h"
#include "settings/settingsmodel.h"
#include "settings/settingspanel.h"
#include "support/wait.h"
#include "windows/openwindows.h"

#include <QCheckBox>
#include <QPushButton>
#include <QTableView>

using namespace console;
using namespace tarnis::testing;

namespace {

/// A console with helpers for its settings.
class SettingsConsole : public ConsoleFixture {
public:
    using ConsoleFixture::ConsoleFixture;
    SettingsModel& model() { return window->settingsPanel().model(); }
    QString here(const QString& name) { return window->controller().tarnis().GetSettingValue(name, QString()); }
    QString onServer(const QString& name)
    {
        return model().index(model().rowOf(name), SettingsModel::OnServer).data().toString();
    }
    bool edit(const QString& name, const QString& value)
    {
        return model().setData(model().index(model().rowOf(name), SettingsModel::Value), value, Qt::EditRole);
    }
    /// Clicks a button and waits until everything that it sent is answered.
    bool pressed(const char* button)
    {
        press(button);
        return eventually([this] { return window->settingsPanel().canDownload(); });
    }
    bool hasRead(const ScriptedServer& server, int times)
    {
        return eventually([&] { return server.requests().count("setting") >= times && model().rowCount() > 0; });
    }
};

Script told(const QByteArray& values)
{
    return { Step::text("OK:\n" + values) };
}

} // namespace

class TestConsoleSettingsPanel : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }
    void cleanup() { setLanguage(QStringLiteral("en")); }

    void sendsBackChangesOfOtherClientsUnchanged()
    {
        ScriptedServer server;
        server.answerInTurn(
            "setting", { told("rate: 10\nseed: 1\n"), told("rate: 10\nseed: 2\n"), told("rate: 20\nseed: 2\n") });
        SettingsConsole desk;
        desk.use(server);
        QVERIFY(desk.hasRead(server, 1));
        TRY_COMPARE(desk.here("seed"), QStringLiteral("1"));
        QVERIFY(desk.edit("rate", "20"));
        QVERIFY(desk.pressed("downloadButton"));
        QCOMPARE(desk.here("seed"), QStringLiteral("2"));
        TRY_VERIFY(desk.model().changedNames().isEmpty());
        bool isSent = false;
        for (const QByteArray& request : server.requests()) {
            QVERIFY2(!request.contains("seed:1"), request.constData());
            isSent = isSent || request.contains("rate:20");
        }
        QVERIFY(isSent);
    }

    void thePressOfAButtonDoesNotMoveTheKeyboardToTheBasePath_data()
    {
        QTest::addColumn<QByteArray>("button");
        QTest::newRow("download") << QByteArray("downloadButton");
        QTest::newRow("download and save") << QByteArray("saveButton");
    }
    void thePressOfAButtonDoesNotMoveTheKeyboardToTheBasePath()
    {
        QFETCH(QByteArray, button);
        ScriptedServer server;
        server.answer("setting", told("rate: 10\nbasepath: /data\n"));
        SettingsConsole desk;
        desk.use(server);
        QVERIFY(desk.hasRead(server, 1));
        const auto& path = desk.widget<QLineEdit>("pathEdit");
        TRY_COMPARE(path.text(), QStringLiteral("/data"));
        QVERIFY(desk.edit("rate", "20"));
        auto& pressed = desk.widget<QPushButton>(button.constData());
        pressed.setFocus();
        QVERIFY(desk.pressed(button.constData()));
        QVERIFY(!path.hasSelectedText());
        TRY_COMPARE(desk.window->focusWidget(), &pressed);
        QCOMPARE(path.text(), QStringLiteral("/data"));
    }

    void doesNotTakeTheFocusBackFromAnotherControl()
    {
        ScriptedServer server;
        server.answerInTurn("setting",
            { told("rate: 10\n"), { Step::hold("reading"), Step::text("OK:\nrate: 10\n") }, told("rate: 10\n") });
        SettingsConsole desk;
        desk.use(server);
        QVERIFY(desk.hasRead(server, 1));
        TRY_COMPARE(desk.here("rate"), QStringLiteral("10"));
        QVERIFY(desk.edit("rate", "20"));
        auto& button = desk.widget<QPushButton>("downloadButton");
        TRY_VERIFY(button.isEnabled());
        button.setFocus();
        desk.press("downloadButton");
        QVERIFY(server.waitForHold("reading"));
        QVERIFY(!button.isEnabled());
        QVERIFY(!desk.window->focusWidget()); // key presses have no effect
        desk.edit("rate", "11");
        desk.ConsoleFixture::edit().setFocus();
        server.open("reading");
        TRY_VERIFY(button.isEnabled());
        QCOMPARE(desk.window->focusWidget(), &desk.ConsoleFixture::edit());
    }

    void aServerThatDoesNotTellItsSettingsGetsThemAllTheSame()
    {
        ScriptedServer server;
        server.answer("setting", { Step::text("NG:it is a secret\n") });
        SettingsConsole desk(server);
        TRY_VERIFY(desk.settingsState().contains(QStringLiteral("secret")));
        QVERIFY(desk.model().add("rate", "20"));
        QVERIFY(desk.pressed("downloadButton"));
        QVERIFY(server.waitForRequest("setting rate:20 "));
    }

    void aDownloadCannotBePressedTwice()
    {
        ScriptedServer server;
        server.answerInTurn("setting", { told("rate: 10\n"), { Step::hold("gate"), Step::text("OK:\nrate: 10\n") } });
        SettingsConsole desk;
        desk.use(server);
        QVERIFY(desk.hasRead(server, 1));
        desk.press("saveButton");
        QVERIFY(server.waitForHold("gate"));
        QVERIFY(!desk.widget<QPushButton>("saveButton").isEnabled());
        QVERIFY(!desk.widget<QPushButton>("saveButton").toolTip().isEmpty());
        server.open("gate");
        TRY_VERIFY(desk.widget<QPushButton>("saveButton").isEnabled());
        QCOMPARE(server.requests().count("setting rate:10 "), 1);
    }

    void showsARejectionUntilTheNextReading()
    {
        ScriptedServer server;
        server.answer("setting", told("rate: 10\n"));
        server.answer("setting rate:0 ", { Step::text("NG:rate is too small\n") });
        SettingsConsole desk;
        desk.use(server);
        QVERIFY(desk.hasRead(server, 1));
        TRY_COMPARE(desk.model().rowCount(), 1);
        QVERIFY(desk.edit("rate", "0"));
        QVERIFY(desk.pressed("downloadButton"));
        TRY_VERIFY(desk.settingsState().contains(QStringLiteral("rate is too small")));
        QVERIFY(!desk.record().contains(QStringLiteral("too small")));
        QVERIFY(desk.alert().text.isEmpty());
        const auto readings = server.requests().count("setting");
        desk.press("readButton");
        TRY_VERIFY(server.requests().count("setting") > readings);
        TRY_VERIFY(desk.settingsState().startsWith(QStringLiteral("1 changed")));
    }

    // Texts of the panel.

    void keepsTheStateTextWhenTheLanguageChanges()
    {
        ScriptedServer server;
        server.answer("setting", told("rate: 10\n"));
        server.answer("setting rate:0 ", { Step::text("NG:rate is too small\n") });
        SettingsConsole desk;
        desk.use(server);
        QVERIFY(desk.hasRead(server, 1));
        TRY_COMPARE(desk.model().rowCount(), 1);
        QVERIFY(desk.edit("rate", "0"));
        QVERIFY(desk.pressed("downloadButton"));
        TRY_VERIFY(desk.settingsState().contains(QStringLiteral("rate is too small")));
        const QString english = desk.settingsState();
        setLanguage(QStringLiteral("de"));
        TRY_VERIFY(desk.settingsState() != english);
        QVERIFY2(desk.settingsState().contains(QStringLiteral("rate is too small")), qPrintable(desk.settingsState()));
        setLanguage(QStringLiteral("en"));
        TRY_COMPARE(desk.settingsState(), english);
    }

    void whatIsSentByCommandIsReadAgain_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<bool>("isRead");
        QTest::newRow("a setting") << "setting rate:20" << QByteArray("OK:\n") << true;
        QTest::newRow("a refused setting") << "setting rate:20" << QByteArray("NG:no\n") << false;
        QTest::newRow("start") << "start" << QByteArray("OK:\n") << true;
        QTest::newRow("stop") << "stop" << QByteArray("OK:\n") << true;
        QTest::newRow("clear") << "clear" << QByteArray("OK:\n") << true;
        QTest::newRow("something else") << "pwd" << QByteArray("OK:\n/\n") << false;
    }
    void whatIsSentByCommandIsReadAgain()
    {
        QFETCH(QString, command);
        QFETCH(QByteArray, reply);
        QFETCH(bool, isRead);
        ScriptedServer server;
        server.answerInTurn("setting", { told("rate: 10\n"), told("rate: 20\n") });
        server.answer(command.toLatin1(), { Step::text(reply) });
        SettingsConsole desk;
        desk.use(server);
        QVERIFY(desk.hasRead(server, 1));
        TRY_COMPARE(desk.here("rate"), QStringLiteral("10"));
        desk.send(command);
        QVERIFY(desk.isFree());
        if (!isRead)
            desk.press("readButton");
        TRY_COMPARE(desk.here("rate"), QStringLiteral("20"));
        QCOMPARE(desk.settingsState(), QStringLiteral("As on the server."));
        QCOMPARE(server.requests().count("setting"), 2);
    }

    void aDeadServerHasNoState()
    {
        auto server = std::make_unique<ScriptedServer>();
        server->answer("setting", told("rate: 10\n"));
        SettingsConsole desk;
        QVERIFY(!desk.settingsState().isEmpty());
        desk.use(*server);
        QVERIFY(desk.hasRead(*server, 1));
        TRY_COMPARE(desk.settingsState(), QStringLiteral("As on the server."));
        server.reset();
        desk.window->controller().checkServer();
        QVERIFY(desk.reaches(ServerState::Failed));
        QVERIFY2(desk.settingsState().startsWith(QStringLiteral("Not connected")), qPrintable(desk.settingsState()));
        QVERIFY(desk.edit("rate", "20"));
        QVERIFY2(desk.settingsState().startsWith(QStringLiteral("Not connected")), qPrintable(desk.settingsState()));
        QVERIFY(desk.settingsState().contains(QStringLiteral("1 changed")));
    }

    void nothingIsUnderWayToADeadServer_data()
    {
        QTest::addColumn<QByteArray>("button");
        QTest::newRow("reading") << QByteArray("readButton");
        QTest::newRow("sending") << QByteArray("saveButton");
    }
    void nothingIsUnderWayToADeadServer()
    {
        QFETCH(QByteArray, button);
        ScriptedServer server;
        server.answerInTurn("setting", { told("rate: 10\n"), { Step::silence() } });
        SettingsConsole desk;
        desk.use(server);
        QVERIFY(desk.hasRead(server, 1));
        TRY_COMPARE(desk.settingsState(), QStringLiteral("As on the server."));
        desk.press(button.constData());
        QVERIFY2(desk.settingsState().startsWith(QStringLiteral("Reading")), qPrintable(desk.settingsState()));
        desk.choose("shutDownAction");
        QVERIFY(desk.reaches(ServerState::Off));
        QVERIFY2(desk.settingsState().startsWith(QStringLiteral("Not connected")), qPrintable(desk.settingsState()));
    }

    void theNextServersRejectionReplacesThePreviousOne()
    {
        ScriptedServer server;
        server.answerInTurn(
            "setting", { told("rate: 10\n"), told("rate: 10\n"), told("rate: 20\n"), told("rate: 10\n") });
        const FakeServer program(FakeServer::wellBehaved(server.port()));
        SettingsConsole desk;
        desk.use(program);
        QVERIFY(desk.hasRead(server, 1));
        TRY_COMPARE(desk.here("rate"), QStringLiteral("10"));
        QVERIFY(desk.edit("rate", "20"));
        QVERIFY(desk.pressed("downloadButton"));
        TRY_COMPARE(desk.onServer("rate"), QStringLiteral("20"));
        desk.choose("restartAction");
        TRY_VERIFY(desk.settingsState().contains(QStringLiteral("has restarted")));
        desk.start({ ServerChoice::Kind::Remote, {}, ScriptedServer::host(), ScriptedServer::closedPort() });
        QVERIFY(desk.reaches(ServerState::Failed));
        QVERIFY2(desk.settingsState().startsWith(QStringLiteral("Not connected")), qPrintable(desk.settingsState()));
    }

    void theBasePathIsChosenFromTheServersFolders()
    {
        ScriptedServer server;
        server.answer("pwd", { Step::text("OK:\n/data\n") });
        server.answer("ls-F \"/data\"", { Step::text("OK:\na/\n") });
        SettingsConsole desk;
        auto& button = desk.widget<QPushButton>("pathBrowseButton");
        QVERIFY(!button.isEnabled() && !button.toolTip().isEmpty());
        desk.use(server);
        QVERIFY(desk.reaches(ServerState::Up));
        desk.press("pathBrowseButton");
        TRY_VERIFY(!desk.window->windows().onScreen().isEmpty());
        QCOMPARE(desk.find("base-path"), desk.window->windows().onScreen().constFirst());
        desk.window->controller().tarnis().SetStatus(Tarnis::RUNNING);
        QVERIFY(!button.isEnabled());
        QVERIFY(button.toolTip().contains(QStringLiteral("Running")));
    }

    // A local server that restarts with its own values.

    void whatWasSentIsKeptOverARestart()
    {
        ScriptedServer server;
        server.answerInTurn("setting",
            { told("rate: 10\nseed: 1\n"), told("rate: 10\nseed: 1\n"), told("rate: 20\nseed: 1\n"),
                told("rate: 10\nseed: 7\n") });
        const FakeServer program(FakeServer::wellBehaved(server.port()));
        SettingsConsole desk;
        desk.use(program);
        QVERIFY(desk.hasRead(server, 1));
        TRY_COMPARE(desk.here("rate"), QStringLiteral("10"));
        QVERIFY(desk.edit("rate", "20"));
        QVERIFY(desk.pressed("downloadButton"));
        TRY_COMPARE(desk.onServer("rate"), QStringLiteral("20"));

        desk.choose("restartAction");
        TRY_COMPARE(desk.onServer("seed"), QStringLiteral("7"));
        QCOMPARE(desk.here("rate"), QStringLiteral("20"));
        QCOMPARE(desk.onServer("rate"), QStringLiteral("10"));
        QCOMPARE(desk.model().changedNames(), QStringList { "rate" });
        QCOMPARE(desk.here("seed"), QStringLiteral("7"));
        QVERIFY(desk.settingsState().contains(QStringLiteral("has restarted")));
        QVERIFY(desk.settingsState().contains(QStringLiteral("1 setting")));
    }

    void whatOthersSentSinceIsNotKept()
    {
        ScriptedServer server;
        server.answerInTurn("setting",
            { told("rate: 10\n"), told("rate: 10\n"), told("rate: 20\n"), told("rate: 30\n"), told("rate: 10\n") });
        const FakeServer program(FakeServer::wellBehaved(server.port()));
        SettingsConsole desk;
        desk.use(program);
        QVERIFY(desk.hasRead(server, 1));
        TRY_COMPARE(desk.here("rate"), QStringLiteral("10"));
        QVERIFY(desk.edit("rate", "20"));
        QVERIFY(desk.pressed("downloadButton"));
        TRY_COMPARE(desk.onServer("rate"), QStringLiteral("20"));
        desk.press("readButton");
        TRY_COMPARE(desk.here("rate"), QStringLiteral("30"));
        desk.choose("restartAction");
        TRY_COMPARE(desk.here("rate"), QStringLiteral("10"));
        QVERIFY(desk.model().changedNames().isEmpty());
    }

    void aRemoteServerIsFollowed()
    {
        ScriptedServer server;
        server.answerInTurn(
            "setting", { told("rate: 10\n"), told("rate: 10\n"), told("rate: 20\n"), told("rate: 30\n") });
        SettingsConsole desk;
        desk.use(server);
        QVERIFY(desk.hasRead(server, 1));
        TRY_COMPARE(desk.here("rate"), QStringLiteral("10"));
        QVERIFY(desk.edit("rate", "20"));
        QVERIFY(desk.pressed("downloadButton"));
        TRY_COMPARE(desk.onServer("rate"), QStringLiteral("20"));
        desk.choose("restartAction"); // disconnects and connects again
        TRY_COMPARE(desk.here("rate"), QStringLiteral("30"));
        QVERIFY(desk.model().changedNames().isEmpty());
    }

    void aBasePathThatWasSentIsKeptOverARestart()
    {
        ScriptedServer server;
        server.answerInTurn("setting", { told("basepath: /\n"), told("basepath: /data\n"), told("basepath: /\n") });
        const FakeServer program(FakeServer::wellBehaved(server.port()));
        SettingsConsole desk;
        desk.use(program);
        QVERIFY(desk.hasRead(server, 1));
        TRY_COMPARE(desk.here("basepath"), QStringLiteral("/"));
        desk.widget<QLineEdit>("pathEdit").setText(QStringLiteral("/data"));
        desk.press("pathButton");
        TRY_COMPARE(desk.onServer("basepath"), QStringLiteral("/data"));
        desk.choose("restartAction");
        TRY_COMPARE(desk.onServer("basepath"), QStringLiteral("/"));
        QCOMPARE(desk.here("basepath"), QStringLiteral("/data"));
        QCOMPARE(desk.widget<QLineEdit>("pathEdit").text(), QStringLiteral("/data"));
    }

    void anotherServerDoesNotGetWhatWasSentToTheFirst()
    {
        ScriptedServer first;
        first.answerInTurn("setting", { told("rate: 10\n"), told("rate: 10\n"), told("rate: 20\n") });
        ScriptedServer second;
        second.answer("setting", told("rate: 5\n"));
        const FakeServer one(FakeServer::wellBehaved(first.port()));
        const FakeServer two(FakeServer::wellBehaved(second.port()));
        SettingsConsole desk;
        desk.use(one);
        QVERIFY(desk.hasRead(first, 1));
        TRY_COMPARE(desk.here("rate"), QStringLiteral("10"));
        QVERIFY(desk.edit("rate", "20"));
        QVERIFY(desk.pressed("downloadButton"));
        TRY_COMPARE(desk.onServer("rate"), QStringLiteral("20"));
        desk.use(two);
        TRY_COMPARE(desk.here("rate"), QStringLiteral("5"));
        QVERIFY(desk.model().changedNames().isEmpty());
    }

    void whatCannotBeDoneIsOff()
    {
        ScriptedServer server;
        server.answer("setting", told("rate: 10\n"));
        SettingsConsole desk;
        auto& send = desk.widget<QPushButton>("downloadButton");
        auto& remove = desk.widget<QPushButton>("removeButton");
        auto& address = desk.widget<QPushButton>("addressButton");
        desk.widget<QLineEdit>("ipEdit").setText(QStringLiteral("192.168.0.16"));
        QVERIFY(!send.isEnabled());
        QVERIFY(!address.isEnabled());
        desk.use(server);
        QVERIFY(desk.hasRead(server, 1));
        TRY_COMPARE(desk.here("rate"), QStringLiteral("10"));
        desk.widget<QLineEdit>("ipEdit").setText(QStringLiteral("192.168.0.16"));
        QVERIFY(address.isEnabled());
        QVERIFY(!send.isEnabled()); // nothing was changed
        QVERIFY(!send.toolTip().isEmpty());
        desk.widget<QTableView>("table").setCurrentIndex(desk.model().index(0, SettingsModel::Value));
        QVERIFY(!remove.isEnabled()); // the server has it
        QVERIFY(desk.model().add(QStringLiteral("user.note"), QStringLiteral("x")));
        QVERIFY(send.isEnabled());
        const int row = desk.model().rowOf(QStringLiteral("user.note"));
        desk.widget<QTableView>("table").setCurrentIndex(desk.model().index(row, SettingsModel::Value));
        QVERIFY(remove.isEnabled());
    }

    void anEmptyRecordIsNeitherSavedNorCleared()
    {
        ScriptedServer server;
        server.answer("pwd", told("/\n"));
        SettingsConsole desk;
        desk.choose("clearRecordAction");
        QVERIFY(!desk.widget<QAction>("clearRecordAction").isEnabled());
        QVERIFY(!desk.widget<QAction>("saveRecordAction").isEnabled());
        desk.use(server);
        QVERIFY(desk.reaches(ServerState::Up));
        desk.send(QStringLiteral("pwd"));
        QVERIFY(desk.shows(QStringLiteral("> pwd")));
        QVERIFY(desk.widget<QAction>("clearRecordAction").isEnabled());
        desk.choose("clearRecordAction");
        TRY_VERIFY(!desk.widget<QAction>("clearRecordAction").isEnabled());
    }
};

QTEST_MAIN(TestConsoleSettingsPanel)
#include "tst_consolesettingspanel.moc"
