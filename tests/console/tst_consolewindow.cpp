// The settings and the server in the console's main window, with well-behaved and misbehaving servers.
#include "command/commandpanel.h"
#include "command/history.h"
#include "mainwindow.h"
#include "notices/alertbar.h"
#include "server/connectdialog.h"
#include "server/servercontroller.h"
#include "settings/settingsmodel.h"
#include "settings/settingspanel.h"

#include "console/consolefixture.h"
#include "support/fakeserver.h"
#include "support/scriptedserver.h"
#include "support/wait.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSettings>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>

using namespace console;
using namespace tarnis::testing;

class TestConsoleWindow : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }

    // Settings.

    void settingsAreReadAndSentAndChecked()
    {
        ScriptedServer server;
        server.answerInTurn("setting",
            { { Step::text("OK:\nrate: 10\n") }, { Step::text("OK:\nrate: 10\n") },
                { Step::text("OK:\nrate: 20\n") } });
        ConsoleFixture fixture;
        SettingsModel& model = fixture.window->settingsPanel().model();
        QVERIFY(!fixture.widget<QPushButton>("readButton").isEnabled());
        fixture.use(server);
        TRY_COMPARE(model.rowCount(), 1);
        QCOMPARE(fixture.settingsState(), QStringLiteral("As on the server."));
        QVERIFY(model.setData(model.index(0, SettingsModel::Value), "20", Qt::EditRole));
        QVERIFY(fixture.settingsState().startsWith(QStringLiteral("1 changed")));
        fixture.press("saveButton");
        QVERIFY(!fixture.widget<QPushButton>("saveButton").isEnabled());
        TRY_VERIFY(model.changedNames().isEmpty());
        QVERIFY(server.requests().contains("setting rate:20 "));
        QVERIFY(server.requests().contains("savesetting"));
        QVERIFY(fixture.widget<QPushButton>("saveButton").isEnabled());
    }

    void reportsARejectedSetting()
    {
        ScriptedServer server;
        server.answer("setting", { Step::text("OK:\nrate: 10\n") });
        server.answer("setting rate:0 ", { Step::text("NG:rate is too small\n") });
        ConsoleFixture fixture;
        SettingsModel& model = fixture.window->settingsPanel().model();
        fixture.use(server);
        TRY_COMPARE(model.rowCount(), 1);
        model.setData(model.index(0, SettingsModel::Value), "0", Qt::EditRole);
        fixture.press("sendSettingsButton");
        TRY_VERIFY(fixture.settingsState().contains(QStringLiteral("rate is too small")));
        QCOMPARE(model.changedNames(), QStringList { "rate" });
    }

    void theBasePathFollowsTheStatus()
    {
        ScriptedServer server;
        ConsoleFixture fixture;
        auto& path = fixture.widget<QLineEdit>("pathEdit");
        path.setText(QStringLiteral("/data"));
        fixture.press("pathButton"); // no server: kept
        QCOMPARE(fixture.window->controller().tarnis().GetSettingValue("basepath", QString()), QStringLiteral("/data"));
        fixture.use(server);
        QVERIFY(fixture.reaches(ServerState::Up));
        path.setText(QStringLiteral("/data/a b"));
        QVERIFY(!fixture.widget<QPushButton>("pathButton").isEnabled());
        path.setText(QStringLiteral("/data/a"));
        fixture.widget<QCheckBox>("instCheck").setChecked(true);
        fixture.press("pathButton");
        QVERIFY(server.waitForRequest("setting inst: basepath:/data/a"));
        fixture.window->controller().tarnis().SetStatus(Tarnis::RUNNING);
        QVERIFY(!fixture.widget<QPushButton>("pathButton").isEnabled());
        QVERIFY(fixture.widget<QPushButton>("pathButton").toolTip().contains(QStringLiteral("Running")));
    }

    void storesTheReadoutAddressInTheSettings()
    {
        const ScriptedServer server;
        ConsoleFixture fixture(server);
        Tarnis& tarnis = fixture.window->controller().tarnis();
        fixture.widget<QLineEdit>("ipEdit").setText(QStringLiteral("10.0.0"));
        QVERIFY(!fixture.widget<QPushButton>("addressButton").isEnabled());
        fixture.widget<QLineEdit>("ipEdit").setText(QStringLiteral("10.0.0.7"));
        fixture.widget<QSpinBox>("tcpSpin").setValue(24);
        fixture.widget<QSpinBox>("bcpSpin").setValue(4660);
        fixture.press("addressButton");
        QCOMPARE(tarnis.GetSettingValue("ip", QString()), QStringLiteral("10.0.0.7"));
        fixture.widget<QSpinBox>("indexSpin").setValue(2);
        QVERIFY(fixture.widget<QLineEdit>("ipEdit").text().isEmpty());
        fixture.widget<QLineEdit>("ipEdit").setText(QStringLiteral("10.0.0.8"));
        fixture.press("addressButton");
        QCOMPARE(tarnis.GetSettingValue("ip2", QString()), QStringLiteral("10.0.0.8"));
        QCOMPARE(tarnis.GetReadoutAddressText(), QStringLiteral("10.0.0.8:0"));
        fixture.widget<QSpinBox>("indexSpin").setValue(-1);
        QCOMPARE(fixture.widget<QLineEdit>("ipEdit").text(), QStringLiteral("10.0.0.7"));
        QCOMPARE(fixture.widget<QSpinBox>("bcpSpin").value(), 4660);
    }

    // The server.

    void theDialogShowsWhatIsMissing()
    {
        ConnectDialog dialog({ ServerChoice::Kind::Remote, {}, QStringLiteral("daq"), 5000 }, "> ", nullptr);
        auto* ok = dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
        QVERIFY(ok->isEnabled());
        QVERIFY((dialog.choice() == ServerChoice { ServerChoice::Kind::Remote, {}, QStringLiteral("daq"), 5000 }));
        QCOMPARE(dialog.prompt(), QByteArray("> "));
        dialog.findChild<QLineEdit*>(QStringLiteral("hostEdit"))->clear();
        QVERIFY(!ok->isEnabled());
        auto* program = dialog.findChild<QLineEdit*>(QStringLiteral("programEdit"));
        QTest::keyClicks(program, QStringLiteral("/no/such/program"));
        QVERIFY(dialog.findChild<QRadioButton*>(QStringLiteral("localRadio"))->isChecked());
        QVERIFY(!ok->isEnabled());
        program->setText(QStringLiteral("/bin/sh"));
        QVERIFY(ok->isEnabled());
        dialog.findChild<QLineEdit*>(QStringLiteral("promptEdit"))->clear();
        QVERIFY(!ok->isEnabled());
        QVERIFY(!ok->toolTip().isEmpty());
    }

    void restartsADeadServerWithOneClick()
    {
        ScriptedServer server;
        server.answer("a", { Step::silence() });
        const FakeServer program(FakeServer::wellBehaved(server.port()));
        ConsoleFixture fixture(program);
        fixture.send(QStringLiteral("a"));
        fixture.type(QStringLiteral("being typed"));
        QVERIFY(server.waitForRequest("a"));
        fixture.choose("forceAction");
        QVERIFY(fixture.reaches(ServerState::Failed));
        QCOMPARE(fixture.alert().action, AlertAction::StartAgain);
        QCOMPARE(fixture.widget<QLabel>("statusLabel").text(), QStringLiteral("No connection"));
        fixture.press("alertButton");
        QVERIFY(fixture.reaches(ServerState::Up));
        QVERIFY(fixture.alert().text.isEmpty());
        QCOMPARE(fixture.edit().text(), QStringLiteral("being typed"));
        fixture.send(QStringLiteral("b"));
        QVERIFY(fixture.shows(QStringLiteral("> b\n(an empty reply)")));
    }

    void closingEndsTheServerInEveryState_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<ServerState>("state");
        QTest::newRow("no server") << "none" << ServerState::Off;
        QTest::newRow("remote, nobody greets") << "mute" << ServerState::Starting;
        QTest::newRow("remote") << "remote" << ServerState::Up;
        QTest::newRow("remote, a reply under way") << "busy" << ServerState::Up;
        QTest::newRow("remote, refused") << "refused" << ServerState::Failed;
        QTest::newRow("local, no port yet") << "await-end" << ServerState::Starting;
        QTest::newRow("local") << "print UI port: %1\\n;await-end" << ServerState::Up;
        QTest::newRow("local, ended by itself") << "exit 1" << ServerState::Failed;
    }
    void closingEndsTheServerInEveryState()
    {
        QFETCH(QString, kind);
        QFETCH(ServerState, state);
        ScriptedServer server;
        ScriptedServer mute({ Step::silence() });
        server.answer("long", { Step::silence() });
        const FakeServer program(QString(kind).replace("%1", QString::number(server.port())).split(u';'));
        ConsoleFixture fixture;
        if (kind == u"mute")
            fixture.use(mute);
        else if (kind == u"refused")
            fixture.start({ ServerChoice::Kind::Remote, {}, ScriptedServer::host(), ScriptedServer::closedPort() });
        else if (kind == u"remote" || kind == u"busy")
            fixture.use(server);
        else if (kind != u"none")
            fixture.use(program);
        QVERIFY(fixture.reaches(state));
        if (kind == u"busy") {
            fixture.send(QStringLiteral("long"));
            QVERIFY(server.waitForRequest("long"));
        }
        const QProcess* process = fixture.window->controller().tarnis().process();
        const qint64 processId = process ? process->processId() : 0;
        fixture.window->close();
        TRY_VERIFY(!fixture.window->isVisible());
        if (processId > 0)
            TRY_VERIFY(!isRunning(processId));
        fixture.window.reset();
        QVERIFY(server.waitUntilDeserted());
        QVERIFY(mute.waitUntilDeserted());
    }

    void closingADeafServerOffersToEndIt()
    {
        ScriptedServer server;
        const FakeServer program(FakeServer::deaf(server.port()));
        ConsoleFixture fixture(program);
        const qint64 processId = fixture.window->controller().tarnis().process()->processId();
        fixture.window->close();
        TRY_COMPARE(fixture.alert().action, AlertAction::EndByForce);
        QVERIFY(fixture.window->isVisible());
        fixture.press("alertButton");
        TRY_VERIFY(!fixture.window->isVisible());
        TRY_VERIFY(!isRunning(processId));
    }

    void aBusyServerKeepsTheWindowOpen()
    {
        ScriptedServer server;
        ConsoleFixture fixture(server);
        fixture.window->controller().tarnis().SetStatus(Tarnis::HARDWARE_BUSY);
        fixture.window->close();
        QVERIFY(fixture.window->isVisible());
        QVERIFY(fixture.alert().text.contains(QStringLiteral("busy")));
        fixture.window->controller().tarnis().SetStatus(Tarnis::SERVER_CONNECTED);
        fixture.choose("shutDownAction");
        QVERIFY(fixture.reaches(ServerState::Off));
        QCoreApplication::processEvents();
        QVERIFY(fixture.window->isVisible()); // the previous close was cancelled
    }

    void storesTheStateForTheNextStart()
    {
        QTemporaryDir directory;
        const QString file = directory.filePath(QStringLiteral("console.ini"));
        ScriptedServer server(wellBehaved(), "# ");
        Options options;
        options.server = ServerChoice { ServerChoice::Kind::Remote, {}, ScriptedServer::host(), server.port() };
        options.prompt = "# ";
        {
            QSettings store(file, QSettings::IniFormat);
            MainWindow window(store);
            window.resize(1300, 800);
            window.show();
            window.commandPanel().history().add(QStringLiteral("typed once"));
            window.startServer(options);
            TRY_COMPARE(window.controller().state(), ServerState::Up);
            window.close();
            TRY_VERIFY(!window.isVisible());
        }
        QSettings store(file, QSettings::IniFormat);
        MainWindow window(store);
        window.show();
        QCOMPARE(window.commandPanel().history().entries(), QStringList { "typed once" });
        window.startServer({});
        TRY_COMPARE(window.controller().state(), ServerState::Up);
        QVERIFY(window.controller().choice() == *options.server);
        QCOMPARE(window.controller().prompt(), QByteArray("# "));
        window.close();
        TRY_VERIFY(!window.isVisible());
    }

    void everyWindowOpensOnceAndCloses()
    {
        ScriptedServer server;
        server.answer("stat", { Step::text("OK:\na: 1\n") });
        server.answer("setting", { Step::text("OK:\nb: 2\n") });
        ConsoleFixture fixture;
        QVERIFY(!fixture.window->openWindow(fixture.window->entries().front()));
        fixture.use(server);
        QVERIFY(fixture.reaches(ServerState::Up));
        for (const WindowEntry& entry : fixture.window->entries()) {
            const QPointer<QWidget> window = fixture.window->openWindow(entry);
            QVERIFY(window && window->isVisible());
            QCOMPARE(fixture.window->openWindow(entry), window.data());
            QVERIFY2(!window->windowTitle().isEmpty(), qPrintable(entry.id));
            window->close();
            TRY_VERIFY(window.isNull());
            QVERIFY(fixture.window->openWindow(entry));
        }
    }
};

QTEST_MAIN(TestConsoleWindow)
#include "tst_consolewindow.moc"
