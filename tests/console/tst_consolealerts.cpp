// What the console says of itself: notices that stand and such that pass, the status in words, a memory that is broken.
#include "app/language.h"
#include "command/history.h"
#include "console/consolefixture.h"
#include "server/connectdialog.h"
#include "server/lastserver.h"
#include "server/statustext.h"

#include <QPushButton>
#include <QSpinBox>

using namespace console;
using namespace tarnis::testing;

namespace {

Notice failure(const QString& text)
{
    return { Notice::Severity::Failure, text, Remedy::StartAgain };
}

Notice note(const QString& text)
{
    return { Notice::Severity::Information, text, Remedy::None };
}

} // namespace

class TestConsoleNotice : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }
    void cleanup() { setLanguage(QStringLiteral("en")); }

    // Notices.

    void aFailureIsNotDisplacedByANote()
    {
        NoticeBar bar;
        bar.setNotice(failure(QStringLiteral("gone")));
        bar.setPassingNotice(note(QStringLiteral("by the way")));
        QCOMPARE(bar.notice(), failure(QStringLiteral("gone")));
        QCOMPARE(bar.note(), QStringLiteral("by the way"));
        QVERIFY(!bar.findChild<QPushButton*>(QStringLiteral("remedyButton"))->isHidden());
        bar.setPassingNotice({});
        QCOMPARE(bar.notice(), failure(QStringLiteral("gone")));
        QVERIFY(bar.note().isEmpty());
    }

    void aNotePassesWithTheNext()
    {
        NoticeBar bar;
        bar.setPassingNotice(note(QStringLiteral("one")));
        bar.setPassingNotice(note(QStringLiteral("two")));
        QCOMPARE(bar.notice().text, QStringLiteral("two"));
        bar.setNotice(failure(QStringLiteral("gone")));
        QCOMPARE(bar.notice().text, QStringLiteral("gone"));
        bar.setNotice({});
        QVERIFY(bar.isHidden());
    }

    void whatCanBeSentAgainStaysBesidePassingNotices()
    {
        const Notice lost { Notice::Severity::Warning, QStringLiteral("lost"), Remedy::SendAgain };
        NoticeBar bar;
        bar.setPassingNotice(lost);
        bar.setPassingNotice(note(QStringLiteral("by the way")));
        QCOMPARE(bar.notice(), lost);
        QCOMPARE(bar.note(), QStringLiteral("by the way"));
        bar.setPassingNotice({});
        QCOMPARE(bar.notice(), lost);
        QVERIFY(bar.note().isEmpty());
        bar.findChild<QAbstractButton*>(QStringLiteral("dismissButton"))->click();
        QVERIFY(bar.isHidden());
    }

    void whatIsOlderThanThePassingNoticeGoesWithTheNoticeBefore()
    {
        NoticeBar bar;
        bar.setNotice({ Notice::Severity::Warning, QStringLiteral("slow"), Remedy::Stop });
        bar.setPassingNotice(note(QStringLiteral("by the way")));
        QCOMPARE(bar.note(), QStringLiteral("by the way"));
        const Notice lost { Notice::Severity::Warning, QStringLiteral("lost"), Remedy::SendAgain };
        bar.setPassingNotice(lost);
        QCOMPARE(bar.notice(), lost);
        QVERIFY(bar.note().isEmpty());
        // A failure displaces what can be sent again, and is displaced by nothing that passes.
        bar.setNotice(failure(QStringLiteral("gone")));
        bar.setPassingNotice(lost);
        QCOMPARE(bar.notice(), failure(QStringLiteral("gone")));
        QCOMPARE(bar.note(), QStringLiteral("lost"));
    }

    void dismissingTakesTheNoteFirst()
    {
        NoticeBar bar;
        auto* const dismiss = bar.findChild<QAbstractButton*>(QStringLiteral("dismissButton"));
        bar.setNotice(failure(QStringLiteral("gone")));
        bar.setPassingNotice(note(QStringLiteral("by the way")));
        dismiss->click();
        QVERIFY(bar.note().isEmpty());
        QCOMPARE(bar.notice().text, QStringLiteral("gone"));
        dismiss->click();
        QVERIFY(bar.isHidden());
    }

    void aLostServerStaysSaidWhileOtherThingsAre()
    {
        ConsoleFixture desk;
        desk.start({ ServerChoice::Kind::Remote, {}, ScriptedServer::host(), ScriptedServer::closedPort() });
        QVERIFY(desk.reaches(ServerState::Failed));
        const Notice before = desk.notice();
        desk.window->commandPanel().upload(QStringLiteral("/no/such/file"));
        QCOMPARE(desk.notice(), before);
        QVERIFY(desk.widget<NoticeBar>("noticeBar").note().contains(QStringLiteral("/no/such/file")));
    }

    void aRemoteServerIsConnectedToAgain()
    {
        auto server = std::make_unique<ScriptedServer>();
        ConsoleFixture desk;
        desk.use(*server);
        QVERIFY(desk.reaches(ServerState::Up));
        server.reset();
        desk.window->controller().checkServer();
        QVERIFY(desk.reaches(ServerState::Failed));
        QVERIFY(desk.widget<QPushButton>("remedyButton").text().contains(QStringLiteral("Connect Again")));
    }

    // The status.

    void theStatusIsSaidInWords()
    {
        ScriptedServer server;
        ConsoleFixture desk;
        desk.use(server);
        QVERIFY(desk.reaches(ServerState::Up));
        auto& label = desk.widget<QLabel>("statusLabel");
        QCOMPARE(label.text(), QStringLiteral("Connected"));
        QCOMPARE(label.toolTip(), QStringLiteral("SERVER CONNECTED"));
        setLanguage(QStringLiteral("de"));
        QTRY_COMPARE(label.text(), QStringLiteral("Verbunden"));
        QCOMPARE(label.toolTip(), QStringLiteral("SERVER CONNECTED"));
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

    // What is kept.

    void aServerThatIsKeptWrong_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("host");
        QTest::addColumn<QString>("port");
        QTest::addColumn<QString>("prompt");
        QTest::addColumn<QString>("problem"); // a word of it; empty: none
        QTest::newRow("nothing") << ""
                                 << ""
                                 << ""
                                 << ""
                                 << "";
        QTest::newRow("local") << "local"
                               << ""
                               << "0"
                               << "# "
                               << "";
        QTest::newRow("remote") << "remote"
                                << "daq"
                                << "5000"
                                << "\\x3e"
                                << "";
        QTest::newRow("port too large") << "remote"
                                        << "daq"
                                        << "99999"
                                        << ""
                                        << "99999";
        QTest::newRow("no port") << "remote"
                                 << "daq"
                                 << "0"
                                 << ""
                                 << "no port";
        QTest::newRow("a word as port") << "remote"
                                        << "daq"
                                        << "http"
                                        << ""
                                        << "http";
        QTest::newRow("no host") << "remote"
                                 << ""
                                 << "5000"
                                 << ""
                                 << "host";
        QTest::newRow("a sentence as host") << "remote"
                                            << "my server"
                                            << "5000"
                                            << ""
                                            << "my server";
        QTest::newRow("no such kind") << "virtual"
                                      << ""
                                      << ""
                                      << ""
                                      << "virtual";
        QTest::newRow("a broken prompt") << "local"
                                         << ""
                                         << ""
                                         << "\\q"
                                         << "\\q";
    }
    void aServerThatIsKeptWrong()
    {
        QFETCH(QString, kind);
        QFETCH(QString, host);
        QFETCH(QString, port);
        QFETCH(QString, prompt);
        QFETCH(QString, problem);
        QTemporaryDir directory;
        QSettings memory(directory.filePath(QStringLiteral("console.ini")), QSettings::IniFormat);
        if (!kind.isEmpty()) {
            memory.setValue(QStringLiteral("server/kind"), kind);
            memory.setValue(QStringLiteral("server/host"), host);
            memory.setValue(QStringLiteral("server/port"), port);
            memory.setValue(QStringLiteral("server/prompt"), prompt);
        }
        const LastServer last = readLastServer(memory);
        QCOMPARE(last.problem.isEmpty(), problem.isEmpty());
        QVERIFY2(last.problem.contains(problem), qPrintable(last.problem));
    }

    void whatIsWrittenIsRead()
    {
        QTemporaryDir directory;
        QSettings memory(directory.filePath(QStringLiteral("console.ini")), QSettings::IniFormat);
        const ServerChoice choice { ServerChoice::Kind::Remote, {}, QStringLiteral("::1"), 65535 };
        writeLastServer(memory, choice, "\n# ");
        const LastServer last = readLastServer(memory);
        QVERIFY(last.choice == choice && last.problem.isEmpty());
        QCOMPARE(last.prompt, QByteArray("\n# "));
    }

    void aWrongServerIsAskedFor()
    {
        ConsoleFixture desk;
        desk.memory.setValue(QStringLiteral("server/kind"), QStringLiteral("remote"));
        desk.memory.setValue(QStringLiteral("server/host"), QStringLiteral("daq"));
        desk.memory.setValue(QStringLiteral("server/port"), QStringLiteral("99999"));
        desk.window->startServer({});
        QCOMPARE(desk.window->controller().state(), ServerState::Off);
        QVERIFY(desk.notice().text.contains(QStringLiteral("99999")));
        auto* const dialog = desk.window->findChild<ConnectDialog*>();
        QVERIFY(dialog && dialog->isVisible());
        QCOMPARE(dialog->findChild<QLineEdit*>(QStringLiteral("hostEdit"))->text(), QStringLiteral("daq"));
        dialog->reject();
        desk.window->close();
        QCOMPARE(
            desk.memory.value(QStringLiteral("server/port")).toString(), QStringLiteral("99999")); // not overwritten
    }

    void commandsAreKeptAtOnce()
    {
        ScriptedServer server;
        ConsoleFixture desk;
        desk.use(server);
        QVERIFY(desk.reaches(ServerState::Up));
        desk.send(QStringLiteral("typed"));
        QSettings other(desk.memory.fileName(), QSettings::IniFormat);
        QCOMPARE(other.value(QStringLiteral("commands")).toStringList(), QStringList { QStringLiteral("typed") });
    }

    void aMemoryThatCannotBeWrittenIsSaidOnce()
    {
        QTemporaryDir directory;
        QFile file(directory.filePath(QStringLiteral("file")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QSettings memory(file.fileName() + QStringLiteral("/console.ini"), QSettings::IniFormat);
        MainWindow window(memory);
        window.stateWatch().setInterval(0);
        window.show();
        ScriptedServer server;
        Options options;
        options.server = ServerChoice { ServerChoice::Kind::Remote, {}, ScriptedServer::host(), server.port() };
        options.prompt = "> ";
        window.startServer(options);
        QTRY_COMPARE_WITH_TIMEOUT(window.controller().state(), ServerState::Up, timeoutMs);
        auto* const edit = window.findChild<QLineEdit*>(QStringLiteral("commandEdit"));
        for (int i = 0; i < 2; ++i) {
            QTest::keyClicks(edit, QStringLiteral("typed"));
            QTest::keyClick(edit, Qt::Key_Return);
        }
        QCOMPARE(window.commandPanel().recordText().count(QStringLiteral("cannot be written")), 1);
    }
};

QTEST_MAIN(TestConsoleNotice)
#include "tst_consolealerts.moc"
