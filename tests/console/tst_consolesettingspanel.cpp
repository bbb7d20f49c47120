// The settings panel: editing, sending, refusals.
#include "app/language.h"
#include "console/settingsconsole.h"
#include "settings/settingstable.h"
#include "support/cases.h"
#include "windows/openwindows.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QScrollBar>
#include <QStandardItemModel>

using namespace console;
using namespace tarnis::testing;

class TestConsoleSettingsPanel : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }
    void cleanup() { setLanguage(QStringLiteral("en")); }

    void showsCompleteNamesInANarrowTable()
    {
        QStandardItemModel model(1, 3);
        model.setHorizontalHeaderLabels(
            { QStringLiteral("Name"), QStringLiteral("Value here"), QStringLiteral("On the server") });
        model.setItem(0, 0, new QStandardItem(QStringLiteral("dead time correction")));
        SettingsTable table;
        table.setModel(&model);
        const auto isComplete = [&] {
            const QHeaderView& header = *table.horizontalHeader();
            const QString name = model.item(0, 0)->text();
            bool isEachHeaderComplete = true;
            for (int column = 0; column < 3; ++column)
                isEachHeaderComplete &= table.columnWidth(column) >= header.sectionSizeHint(column);
            return isEachHeaderComplete && table.columnWidth(0) > table.fontMetrics().horizontalAdvance(name);
        };
        table.resize(150, 200);
        table.show();
        TRY_VERIFY(isComplete());
        QVERIFY(table.horizontalScrollBar()->maximum() > 0);
        table.resize(700, 200);
        TRY_COMPARE(table.horizontalScrollBar()->maximum(), 0);
        QVERIFY(isComplete());
        model.item(0, 0)->setText(QString(500, u'n'));
        TRY_VERIFY(table.columnWidth(0) > 200);
        QVERIFY(table.columnWidth(0) < 500);
    }

    void aReadingKeepsWhatTheUserIsTyping()
    {
        ScriptedServer server;
        server.answerInTurn("setting", { okReply("rate: 10\nseed: 1\n"), okReply("rate: 10\nseed: 2\n") });
        SettingsConsole fixture(server);
        TRY_COMPARE(fixture.here("seed"), QStringLiteral("1"));
        auto& table = fixture.widget<SettingsTable>("table");
        table.edit(fixture.model().index(fixture.model().rowOf("rate"), SettingsModel::Value));
        const QPointer<QLineEdit> editor = table.findChild<QLineEdit*>();
        QVERIFY(editor);
        QTest::keyClicks(editor, "25");
        fixture.window->settingsPanel().read();
        TRY_COMPARE(fixture.here("seed"), QStringLiteral("2"));
        QVERIFY(editor);
        QCOMPARE(editor->text(), QStringLiteral("25"));
        QTest::keyClick(editor, Qt::Key_Return);
        TRY_COMPARE(fixture.model().changedNames(), QStringList { "rate" });
        QCOMPARE(fixture.here("rate"), QStringLiteral("25"));
    }

    void sendsBackChangesOfOtherClientsUnchanged()
    {
        ScriptedServer server;
        server.answerInTurn("setting",
            { okReply("rate: 10\nseed: 1\n"), okReply("rate: 10\nseed: 2\n"), okReply("rate: 20\nseed: 2\n") });
        SettingsConsole fixture(server);
        TRY_COMPARE(fixture.here("seed"), QStringLiteral("1"));
        QVERIFY(fixture.sends("rate", "20"));
        QCOMPARE(fixture.here("seed"), QStringLiteral("2"));
        TRY_VERIFY(fixture.model().changedNames().isEmpty());
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
        QTest::newRow("send") << QByteArray("sendSettingsButton");
        QTest::newRow("send and save") << QByteArray("saveButton");
    }
    void thePressOfAButtonDoesNotMoveTheKeyboardToTheBasePath()
    {
        QFETCH(QByteArray, button);
        ScriptedServer server;
        server.answer("setting", okReply("rate: 10\nbasepath: /data\n"));
        SettingsConsole fixture(server);
        const auto& path = fixture.widget<QLineEdit>("pathEdit");
        TRY_COMPARE(path.text(), QStringLiteral("/data"));
        QVERIFY(fixture.edit("rate", "20"));
        auto& pressed = fixture.widget<QPushButton>(button.constData());
        pressed.setFocus();
        QVERIFY(fixture.pressed(button.constData()));
        QVERIFY(!path.hasSelectedText());
        TRY_COMPARE(fixture.window->focusWidget(), &pressed);
        QCOMPARE(path.text(), QStringLiteral("/data"));
    }

    void doesNotTakeTheFocusBackFromAnotherControl()
    {
        ScriptedServer server;
        server.answerInTurn("setting",
            { okReply("rate: 10\n"), { Step::hold("reading"), Step::text("OK:\nrate: 10\n") }, okReply("rate: 10\n") });
        SettingsConsole fixture(server);
        TRY_COMPARE(fixture.here("rate"), QStringLiteral("10"));
        QVERIFY(fixture.edit("rate", "20"));
        auto& button = fixture.widget<QPushButton>("sendSettingsButton");
        TRY_VERIFY(button.isEnabled());
        button.setFocus();
        fixture.press("sendSettingsButton");
        QVERIFY(server.waitForHold("reading"));
        QVERIFY(!button.isEnabled());
        QVERIFY(!fixture.window->focusWidget()); // key presses have no effect
        fixture.edit("rate", "11");
        fixture.ConsoleFixture::edit().setFocus();
        server.open("reading");
        TRY_VERIFY(button.isEnabled());
        QCOMPARE(fixture.window->focusWidget(), &fixture.ConsoleFixture::edit());
    }

    void sendsSettingsToAServerThatHidesItsOwn()
    {
        ScriptedServer server;
        server.answer("setting", { Step::text("NG:it is a secret\n") });
        SettingsConsole fixture;
        fixture.use(server);
        TRY_VERIFY(fixture.settingsState().contains(QStringLiteral("secret")));
        QVERIFY(fixture.model().add("rate", "20"));
        QVERIFY(fixture.pressed("sendSettingsButton"));
        QVERIFY(server.waitForRequest("setting rate:20 "));
    }

    void sendCannotBePressedTwice()
    {
        ScriptedServer server;
        server.answerInTurn(
            "setting", { okReply("rate: 10\n"), { Step::hold("gate"), Step::text("OK:\nrate: 10\n") } });
        SettingsConsole fixture(server);
        fixture.press("saveButton");
        QVERIFY(server.waitForHold("gate"));
        QVERIFY(!fixture.widget<QPushButton>("saveButton").isEnabled());
        QVERIFY(!fixture.widget<QPushButton>("saveButton").toolTip().isEmpty());
        server.open("gate");
        TRY_VERIFY(fixture.widget<QPushButton>("saveButton").isEnabled());
        QCOMPARE(server.requests().count("setting rate:10 "), 1);
    }

    void showsThatTheServerHasAcceptedTheSettings()
    {
        ScriptedServer server;
        server.answerInTurn(
            "setting", { okReply("rate: 10\n"), okReply("rate: 10\n"), okReply("rate: 20\n"), okReply("rate: 20\n") });
        SettingsConsole fixture(server);
        QVERIFY(fixture.sends("rate", "20"));
        TRY_VERIFY(fixture.settingsState().startsWith(QStringLiteral("As on the server, sent at ")));
        QVERIFY(fixture.pressed("saveButton"));
        TRY_VERIFY(fixture.settingsState().startsWith(QStringLiteral("As on the server, saved there at ")));
        fixture.press("readButton");
        TRY_COMPARE(fixture.settingsState(), QStringLiteral("As on the server."));
    }

    void aLongRefusalDoesNotWidenTheWindow()
    {
        const QByteArray refusal = "NG:<h1>" + QByteArray(20000, 'W') + "</h1>\n";
        ScriptedServer server;
        server.answer("setting", { Step::text(refusal) });
        server.answer("stat", { Step::text("OK:\n--run\nstate: STOPPED\n") });
        server.answer("start", { Step::text(refusal) });
        ConsoleFixture fixture;
        fixture.use(server);
        TRY_VERIFY(fixture.settingsState().contains(QStringLiteral("WWW")));
        auto& start = fixture.widget<QAction>("startRunAction");
        TRY_VERIFY(start.isEnabled());
        start.trigger();
        TRY_VERIFY(fixture.alert().text.contains(QStringLiteral("WWW")));
        const QSize alert = fixture.widget<QLabel>("textLabel").minimumSizeHint();
        QVERIFY2(alert.width() < 300, qPrintable(QString::number(alert.width())));
        const QSize state = fixture.widget<QLabel>("stateLabel").minimumSizeHint();
        QVERIFY2(state.width() < 300, qPrintable(QString::number(state.width())));
    }

    void showsARejectionUntilTheNextReading()
    {
        ScriptedServer server;
        server.answer("setting", okReply("rate: 10\n"));
        server.answer("setting rate:0 ", { Step::text("NG:rate is too small\n") });
        SettingsConsole fixture(server);
        TRY_COMPARE(fixture.model().rowCount(), 1);
        QVERIFY(fixture.sends("rate", "0"));
        TRY_VERIFY(fixture.settingsState().contains(QStringLiteral("rate is too small")));
        QVERIFY(!fixture.record().contains(QStringLiteral("too small")));
        QVERIFY(fixture.alert().text.isEmpty());
        const auto readings = server.requests().count("setting");
        fixture.press("readButton");
        TRY_VERIFY(server.requests().count("setting") > readings);
        TRY_VERIFY(fixture.settingsState().startsWith(QStringLiteral("1 changed")));
    }

    // Texts of the panel.

    void keepsTheStateTextWhenTheLanguageChanges()
    {
        ScriptedServer server;
        server.answer("setting", okReply("rate: 10\n"));
        server.answer("setting rate:0 ", { Step::text("NG:rate is too small\n") });
        SettingsConsole fixture(server);
        TRY_COMPARE(fixture.model().rowCount(), 1);
        QVERIFY(fixture.sends("rate", "0"));
        TRY_VERIFY(fixture.settingsState().contains(QStringLiteral("rate is too small")));
        const QString english = fixture.settingsState();
        setLanguage(QStringLiteral("de"));
        TRY_VERIFY(fixture.settingsState() != english);
        QVERIFY2(
            fixture.settingsState().contains(QStringLiteral("rate is too small")), qPrintable(fixture.settingsState()));
        setLanguage(QStringLiteral("en"));
        TRY_COMPARE(fixture.settingsState(), english);
    }

    void whatIsSentByCommandIsReadAgain_data()
    {
        addColumns<QString, QByteArray, bool>("command", "reply", "isRead");
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
        server.answerInTurn("setting", { okReply("rate: 10\n"), okReply("rate: 20\n") });
        server.answer(command.toLatin1(), { Step::text(reply) });
        SettingsConsole fixture(server);
        TRY_COMPARE(fixture.here("rate"), QStringLiteral("10"));
        fixture.send(command);
        QVERIFY(fixture.isFree());
        if (!isRead)
            fixture.press("readButton");
        TRY_COMPARE(fixture.here("rate"), QStringLiteral("20"));
        QCOMPARE(fixture.settingsState(), QStringLiteral("As on the server."));
        QCOMPARE(server.requests().count("setting"), 2);
    }

    void aDeadServerHasNoState()
    {
        auto server = std::make_unique<ScriptedServer>();
        server->answer("setting", okReply("rate: 10\n"));
        SettingsConsole fixture;
        QVERIFY(!fixture.settingsState().isEmpty());
        fixture.connectTo(*server);
        TRY_COMPARE(fixture.settingsState(), QStringLiteral("As on the server."));
        server.reset();
        fixture.window->controller().checkServer();
        QVERIFY(fixture.reaches(ServerState::Failed));
        QVERIFY2(fixture.isNotConnected(), qPrintable(fixture.settingsState()));
        QVERIFY(fixture.edit("rate", "20"));
        QVERIFY2(fixture.isNotConnected(), qPrintable(fixture.settingsState()));
        QVERIFY(fixture.settingsState().contains(QStringLiteral("1 changed")));
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
        server.answerInTurn("setting", { okReply("rate: 10\n"), { Step::silence() } });
        SettingsConsole fixture(server);
        TRY_COMPARE(fixture.settingsState(), QStringLiteral("As on the server."));
        fixture.press(button.constData());
        QVERIFY2(fixture.settingsState().startsWith(QStringLiteral("Reading")), qPrintable(fixture.settingsState()));
        fixture.choose("shutDownAction");
        QVERIFY(fixture.reaches(ServerState::Off));
        QVERIFY2(fixture.isNotConnected(), qPrintable(fixture.settingsState()));
    }

    void theNextServersRejectionReplacesThePreviousOne()
    {
        ScriptedServer server;
        server.answerInTurn(
            "setting", { okReply("rate: 10\n"), okReply("rate: 10\n"), okReply("rate: 20\n"), okReply("rate: 10\n") });
        const FakeServer program(FakeServer::wellBehaved(server.port()));
        SettingsConsole fixture(program, server);
        TRY_COMPARE(fixture.here("rate"), QStringLiteral("10"));
        QVERIFY(fixture.sends("rate", "20"));
        TRY_COMPARE(fixture.onServer("rate"), QStringLiteral("20"));
        fixture.choose("restartAction");
        TRY_VERIFY(fixture.settingsState().contains(QStringLiteral("has restarted")));
        fixture.start({ ServerChoice::Kind::Remote, {}, ScriptedServer::host(), ScriptedServer::closedPort() });
        QVERIFY(fixture.reaches(ServerState::Failed));
        QVERIFY2(fixture.isNotConnected(), qPrintable(fixture.settingsState()));
    }

    void theBasePathIsChosenFromTheServersFolders()
    {
        ScriptedServer server;
        server.answer("pwd", { Step::text("OK:\n/data\n") });
        server.answer("ls-F \"/data\"", { Step::text("OK:\na/\n") });
        SettingsConsole fixture;
        auto& button = fixture.widget<QPushButton>("pathBrowseButton");
        QVERIFY(!button.isEnabled() && !button.toolTip().isEmpty());
        fixture.use(server);
        QVERIFY(fixture.reaches(ServerState::Up));
        fixture.press("pathBrowseButton");
        TRY_VERIFY(!fixture.window->windows().onScreen().isEmpty());
        QCOMPARE(fixture.find("base-path"), fixture.window->windows().onScreen().constFirst());
        fixture.window->controller().tarnis().SetStatus(Tarnis::RUNNING);
        QVERIFY(!button.isEnabled());
        QVERIFY(button.toolTip().contains(QStringLiteral("Running")));
    }

    // A local server that restarts with its own values.

    void whatCannotBeDoneIsOff()
    {
        ScriptedServer server;
        server.answer("setting", okReply("rate: 10\n"));
        SettingsConsole fixture;
        auto& send = fixture.widget<QPushButton>("sendSettingsButton");
        auto& remove = fixture.widget<QPushButton>("removeButton");
        auto& address = fixture.widget<QPushButton>("addressButton");
        fixture.widget<QLineEdit>("ipEdit").setText(QStringLiteral("192.168.0.16"));
        QVERIFY(!send.isEnabled());
        QVERIFY(!address.isEnabled());
        fixture.connectTo(server);
        TRY_COMPARE(fixture.here("rate"), QStringLiteral("10"));
        fixture.widget<QLineEdit>("ipEdit").setText(QStringLiteral("192.168.0.16"));
        QVERIFY(address.isEnabled());
        QVERIFY(!send.isEnabled()); // nothing was changed
        QVERIFY(!send.toolTip().isEmpty());
        fixture.widget<QTableView>("table").setCurrentIndex(fixture.model().index(0, SettingsModel::Value));
        QVERIFY(!remove.isEnabled()); // the server has it
        QVERIFY(fixture.model().add(QStringLiteral("user.note"), QStringLiteral("x")));
        QVERIFY(send.isEnabled());
        const int row = fixture.model().rowOf(QStringLiteral("user.note"));
        fixture.widget<QTableView>("table").setCurrentIndex(fixture.model().index(row, SettingsModel::Value));
        QVERIFY(remove.isEnabled());
    }

    void anEmptyRecordIsNeitherSavedNorCleared()
    {
        ScriptedServer server;
        server.answer("pwd", okReply("/\n"));
        SettingsConsole fixture;
        fixture.choose("clearRecordAction");
        QVERIFY(!fixture.widget<QAction>("clearRecordAction").isEnabled());
        QVERIFY(!fixture.widget<QAction>("saveRecordAction").isEnabled());
        fixture.use(server);
        QVERIFY(fixture.reaches(ServerState::Up));
        fixture.send(QStringLiteral("pwd"));
        QVERIFY(fixture.shows(QStringLiteral("> pwd")));
        QVERIFY(fixture.widget<QAction>("clearRecordAction").isEnabled());
        fixture.choose("clearRecordAction");
        TRY_VERIFY(!fixture.widget<QAction>("clearRecordAction").isEnabled());
    }
};

QTEST_MAIN(TestConsoleSettingsPanel)
#include "tst_consolesettingspanel.moc"
