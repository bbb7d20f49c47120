// The simulated server used by a host application: started and stopped by the library's manager, with commands over
// sessions.
#include "support/wait.h"

#include <tarnis/server/tarnis.h>
#include <tarnis/server/tarniscmd.h>
#include <tarnis/server/tarnissession.h>

#include <QSignalSpy>
#include <QtTest>

#include <memory>

namespace {

const QByteArray prompt = "> ";

} // namespace

class TestSimHost : public QObject {
    Q_OBJECT
private:
    /// Sends a command over the manager's named session and returns the reply's text.
    QByteArray ask(const QString& command)
    {
        const QSignalSpy replies(m_server.get(), &Tarnis::onCmdReply);
        m_server->SendCmd("control", "test", command, false);
        if (!tarnis::testing::eventually([&] { return !replies.isEmpty(); }))
            return "no reply";
        return replies.front().at(2).toByteArray();
    }

    std::unique_ptr<Tarnis> m_server;

private Q_SLOTS:
    void init()
    {
        qputenv("TARNIS_SIMSERVER_OPTIONS", "--start --rate 20000 --maxevents 1000 --modules 5");
        m_server = std::make_unique<Tarnis>(&prompt);
        m_server->SetLocal(true);
        const QString path = SIMSERVER_PATH;
        QVERIFY(m_server->Run(&path));
        TRY_VERIFY(m_server->IsServerConnected());
    }

    void cleanup()
    {
        QSignalSpy statuses(m_server.get(), &Tarnis::StatusChanged);
        QVERIFY(m_server->Shutdown());
        const auto isIdle = [&] {
            return !statuses.isEmpty() && statuses.back().front().value<Tarnis::SERVER_STATUS>() == Tarnis::IDLE;
        };
        TRY_VERIFY(isIdle());
        m_server.reset();
    }

    void managerStartsAndStopsIt()
    {
        QVERIFY(m_server->GetServerAddress().startsWith("localhost:"));
        QCOMPARE(ask("pwd"), QByteArray("OK:\n/\n"));
    }

    void optionsComeByTheEnvironment() { QVERIFY(ask("setting").contains("\nmodules: 5\n")); }

    void statIsReadBySections()
    {
        TRY_VERIFY(ask("stat").contains("\nstate: STOPPED\n"));
        QMap<QString, QList<QString>> sections;
        TarnisCmd::devideByKey(QString::fromUtf8(ask("stat")), sections);
        QCOMPARE(sections.keys(), (QStringList { "histograms", "modules", "run", "server" }));
        QMap<QString, QString> run;
        TarnisCmd::makeNameValueMap(sections["run"], run);
        QCOMPARE(run["events"], QStringLiteral("1000"));
    }

    void binaryRepliesComeOverASession()
    {
        const std::unique_ptr<TarnisSession> session(m_server->NewTarnisSession(nullptr));
        QSignalSpy results(session.get(), &TarnisSession::result);
        session->start();
        for (const char* const text : { "hist1d time", "hist2d image", "hist1d nothing" }) {
            auto command = std::make_unique<TarnisCmd>(text);
            command->m_bBinary = true;
            session->send(command.release());
        }
        TRY_COMPARE(results.size(), 3);
        const auto sizeOf = [&](int i) { return results.at(i).at(1).toByteArray().size(); };
        const auto textOf = [&](int i) { return results.at(i).at(0).value<PTarnisCmd>()->m_replyText; };
        QCOMPARE(sizeOf(0), 5 * 16384 * 8);
        QVERIFY(textOf(0).startsWith("OK: time rows 0 to 4, run 1, "));
        QCOMPARE(sizeOf(1), 1024 * 1024 * 8);
        QVERIFY(textOf(1).endsWith(", exported 1024 x 1024 y\n"));
        QCOMPARE(sizeOf(2), 0);
        QCOMPARE(textOf(2), QStringLiteral("NG:no 1D histogram 'nothing'; hists lists them\n"));
    }

    void uploadAndPathCommands()
    {
        QCOMPARE(ask("txfile /config/new.set\nrate: 5\n"), QByteArray("OK:\nfile: /config/new.set\nbytes: 8\n"));
        QVERIFY(ask("ls-F \"/config\"").contains("\nnew.set\n"));
        QCOMPARE(ask("ls-F \"/data/test beam \\\"A\\\"\""), QByteArray("OK:\n"));
    }

    void settingsAreDownloaded()
    {
        TRY_VERIFY(ask("stat").contains("\nstate: STOPPED\n"));
        for (const auto& [key, value] : { std::pair { "ip", "10.0.0.7" }, { "tcp", "4000" }, { "bcp", "4001" },
                 { "rate", "33" }, { "inst", "ABC" }, { "run", "17" } })
            QVERIFY(m_server->SetSettingValue(key, value));
        const QSignalSpy replies(m_server.get(), &Tarnis::onCmdReply);
        QCOMPARE(m_server->DownloadSettings("control", true), 2);
        TRY_COMPARE(replies.size(), 3);
        QCOMPARE(replies.at(0).at(2).toByteArray(), QByteArray("OK:\n"));
        QCOMPARE(replies.at(1).at(2).toByteArray(), QByteArray("OK:\n"));
        QCOMPARE(replies.at(2).at(2).toByteArray(), QByteArray("OK:\nfile: /simserver.settings\n"));
        m_server->SetBasePath("/data/M\u00fcller", true);
        TRY_COMPARE(replies.size(), 4);
        const QByteArray settings = ask("setting");
        for (const char* const line : { "\nip: 10.0.0.7\n", "\ntcp: 4000\n", "\nrate: 33\n", "\ninst: ABC\n",
                 "\nrun: 17\n", "\nbasepath: /data/M\u00fcller\n" })
            QVERIFY2(settings.contains(line), line);
    }
};

QTEST_GUILESS_MAIN(TestSimHost)
#include "tst_simhost.moc"
