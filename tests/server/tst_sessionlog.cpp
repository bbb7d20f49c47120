// The log lines of a session, read from a real log file.
#include "sessionclient.h"
#include "support/cases.h"

#include "support/logfile.h"
#include "support/wait.h"

#include <QRegularExpression>
#include <QTest>

#include <algorithm>

using namespace tarnis::testing;

namespace {

// A command that calls a function on the worker when it is processed.
class Hook : public TarnisCmd {
public:
    Hook(const QString& text, std::function<void()> action)
        : TarnisCmd(text)
        , m_action(std::move(action))
    {
    }
    QString getCmdString() const override
    {
        m_action();
        return m_cmd;
    }

private:
    std::function<void()> m_action;
};

class Trace {
public:
    explicit Trace(SessionClient& client)
        : self(QString::asprintf("%p", static_cast<void*>(client.session.get())))
    {
    }
    // The worker's lines without its idle iterations, whose number depends on time, and without the ends of commands,
    // which are logged by the thread that releases them last.
    QStringList worker() const
    {
        QStringList lines = m_log.messagesOfThreadWith("BLCK TarnisSession::run(), this[" + self + "]");
        lines.removeIf([](const QString& line) { return line.startsWith("DBG TarnisCmd::~"); });
        const QStringList idle { "BLCK loop", "BLCK locking", "BLCK cmd is null, sleep 50" };
        for (qsizetype i = 0; i + 2 < lines.size();) {
            if (lines.mid(i, 3) == idle)
                lines.remove(i, 3);
            else
                ++i;
        }
        return lines;
    }
    // From after the greeting to the end of the loop.
    QStringList loop() const
    {
        const QStringList lines = worker();
        const qsizetype begin = lines.indexOf("DBG start thread loop") + 1;
        return lines.mid(begin, lines.indexOf("DBG exit loop") - begin);
    }
    QStringList errors() const
    {
        QStringList lines;
        for (const LogEntry& entry : m_log.entries()) {
            if (entry.word == "ERR")
                lines.append(entry.message);
        }
        return lines;
    }
    QString read() const { return "BLCK TarnisSession::read(), this[" + self + "]"; }
    QString readBinary() const { return "BLCK TarnisSession::readBinary(), this[" + self + "]"; }
    const LogFile& log() const { return m_log; }
    const QString self;

private:
    const LogFile m_log;
};

/// Sends a command and quits while the worker waits for the queue. Rarely the worker has already released the lock
/// without having logged it; then it does not take the command.
void quitAtTheLock(bool& wasTaken)
{
    const ScriptedServer server;
    SessionClient client(server);
    const Trace trace(client);
    client.start();
    QVERIFY(client.waitForConnected());
    {
        const QMutexLocker locker(&client.session->m_mutex);
        // With the queue locked, the worker continues up to its next check of the queue.
        QVERIFY(eventually([&] {
            const QStringList lines = trace.worker();
            return !lines.isEmpty() && lines.last() == "BLCK locking";
        }));
        client.send("stat");
        client.session->quit();
    }
    QVERIFY(client.waitForEnd());
    wasTaken = trace.worker().contains("DBG quit");
    if (!wasTaken)
        return;
    QCOMPARE(client.signalled, QStringList("connected"));
    QCOMPARE(client.session->queued(), QStringList());
    QCOMPARE(server.requests().size(), 0);
}

} // namespace

class TestSessionLog : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void recordsAWholeSession()
    {
        const ScriptedServer server;
        SessionClient client(server);
        const Trace trace(client);
        client.session->SetId(QStringLiteral("c\u00f6ntrol"));
        client.send(QStringLiteral("gr\u00fcn"))->m_afterSleep = 3;
        client.start();
        QVERIFY(client.waitForAnswers(1));
        client.destroy();
        QCOMPARE(trace.worker(),
            QStringList({
                "BLCK TarnisSession::run(), this[" + trace.self + "]",
                "BLCK try block",
                QString("DBG connecting to 127.0.0.1:%1").arg(server.port()),
                "DBG wait for connected",
                "DBG connected",
                "DBG read first prompt",
                trace.read(),
                "BLCK emit connected()",
                "DBG start thread loop",
                "BLCK loop",
                "BLCK locking",
                QStringLiteral("BLCK handle cmd: id[c\u00f6ntrol] name[name of gr\u00fcn] cmd[gr\u00fcn]"),
                "BLCK cmd is not empty",
                "BLCK write",
                "BLCK receive response",
                trace.read(),
                "BLCK emit result()",
                "BLCK sleep 3",
                "DBG exit loop",
                "BLCK close socket",
                "DBG exit TarnisSession::run()",
            }));
        QCOMPARE(trace.errors(), QStringList());
    }

    void blocksLieInsideOneAnother()
    {
        const ScriptedServer server;
        SessionClient client(server);
        const Trace trace(client);
        client.send("stat");
        client.start();
        QVERIFY(client.waitForAnswers(1));
        QVERIFY(eventually([&] {
            const QList<LogEntry> entries = trace.log().entries();
            return std::any_of(entries.begin(), entries.end(),
                [](const LogEntry& entry) { return entry.message == "cmd is null, sleep 50"; });
        }));
        client.destroy();
        // Depth of each block of the worker: the number of open blocks when it opens.
        QHash<QString, int> depth;
        int open = 0;
        QString worker;
        for (const LogEntry& entry : trace.log().entries()) {
            if (entry.message == "TarnisSession::run(), this[" + trace.self + "]")
                worker = entry.thread;
            if (entry.thread != worker || worker.isEmpty())
                continue;
            if (entry.word == "BLCK")
                depth.insert(entry.message, open++);
            else if (entry.word == "<")
                --open;
        }
        QCOMPARE(open, 0);
        QCOMPARE(depth["try block"], 1);
        QCOMPARE(depth["emit connected()"], 2);
        QCOMPARE(depth["loop"], 2);
        QCOMPARE(depth["locking"], 3);
        QCOMPARE(depth["cmd is null, sleep 50"], 3);
        QCOMPARE(depth["handle cmd: id[] name[name of stat] cmd[stat]"], 3);
        QCOMPARE(depth["cmd is not empty"], 4);
        QCOMPARE(depth["write"], 5);
        QCOMPARE(depth["receive response"], 5);
        QCOMPARE(depth["emit result()"], 4);
        QCOMPARE(depth["sleep 0"], 4);
        QCOMPARE(depth["close socket"], 2);
    }

    void namesTheSourceFile()
    {
        const ScriptedServer server;
        SessionClient client(server);
        const Trace trace(client);
        client.send("stat");
        client.start();
        QVERIFY(client.waitForAnswers(1));
        client.destroy();
        for (const LogEntry& entry : trace.log().entries()) {
            if (!entry.file.isEmpty())
                QVERIFY2(
                    entry.file.startsWith("tarnissession") || entry.file == "tarniscmd.cpp", qPrintable(entry.file));
        }
    }

    void idleRounds()
    {
        const ScriptedServer server;
        SessionClient client(server);
        const Trace trace(client);
        client.session->send(nullptr);
        client.start();
        QVERIFY(eventually([&] { return trace.log().messages().count("BLCK cmd is null, sleep 50") >= 3; }));
        client.destroy();
        QCOMPARE(trace.loop(), QStringList());
    }

    void commandsOfEachKind_data()
    {
        addColumns<QString, int, QStringList>("text", "form", "inside");
        addCase("text", "stat", int(SessionClient::Text),
            QStringList { "BLCK cmd is not empty", "BLCK write", "BLCK receive response", "read" });
        addCase("binary", "hist", int(SessionClient::Binary),
            QStringList { "BLCK cmd is not empty", "BLCK write", "BLCK receive response", "readBinary" });
        addCase("empty", "", int(SessionClient::Text), QStringList());
        addCase("upload", "txfile a\nb", int(SessionClient::Text),
            QStringList { "BLCK cmd is not empty", "BLCK txfile", "BLCK receive response", "read" });
        addCase("upload without a line", "txfile a", int(SessionClient::Text),
            QStringList {
                "BLCK cmd is not empty", "BLCK txfile", "DBG NG:Command does not contain newline charactor[\\n]." });
        addCase("upload with an end mark", "txfile a\u0004", int(SessionClient::Text),
            QStringList { "BLCK cmd is not empty", "BLCK txfile", "DBG NG:File contains EOT(0x04) char." });
    }
    void commandsOfEachKind()
    {
        QFETCH(QString, text);
        QFETCH(int, form);
        QFETCH(QStringList, inside);
        ScriptedServer server;
        server.answer("hist", { Step::binary(QByteArray("x")) });
        SessionClient client(server);
        const Trace trace(client);
        client.send(text, SessionClient::Form(form));
        client.start();
        QVERIFY(client.waitForAnswers(1));
        client.destroy();
        inside.replaceInStrings(QRegularExpression("^read$"), trace.read());
        inside.replaceInStrings(QRegularExpression("^readBinary$"), trace.readBinary());
        // A command with a line feed continues on the next line of the file.
        QStringList lines = trace.loop();
        lines.removeIf([](const QString& line) {
            return line.startsWith("BLCK handle cmd") || line == "BLCK loop" || line == "BLCK locking"
                || line == "DBG quit"; // logged if the end comes between two checks
        });
        QCOMPARE(lines, inside + QStringList({ "BLCK emit result()", "BLCK sleep 0" }));
    }

    void failedConnection()
    {
        const QByteArray prompt("> ");
        SessionClient client(ScriptedServer::host(), ScriptedServer::closedPort(), &prompt);
        const Trace trace(client);
        client.start();
        QVERIFY(client.waitForEnd());
        QCOMPARE(trace.worker().last(), "ERR socket error: [0][Connection refused]");
        QCOMPARE(trace.errors(), QStringList("socket error: [0][Connection refused]"));
        QCOMPARE(client.errors[0].second, "Connection refused");
    }

    void failedGreeting_data()
    {
        addColumns<bool, QString>("dropped", "emission");
        QTest::newRow("silence") << false << "BLCK emit error(5, Network operation timed out)";
        QTest::newRow("closed") << true << "BLCK emit error(1, The remote host closed the connection)";
    }
    void failedGreeting()
    {
        QFETCH(bool, dropped);
        QFETCH(QString, emission);
        const ScriptedServer server({ dropped ? Step::drop() : Step::silence() });
        SessionClient client(server);
        const Trace trace(client);
        client.startImpatient();
        QVERIFY(client.waitForEnd());
        const QStringList lines = trace.worker();
        QCOMPARE(lines.mid(lines.indexOf("DBG read first prompt")),
            QStringList({ "DBG read first prompt", trace.read(), "ERR socket read error",
                "DBG socke is open. write close", "DBG socket close", emission }));
    }

    void failedReply()
    {
        ScriptedServer server;
        server.answer("stat", { Step::drop() });
        SessionClient client(server);
        const Trace trace(client);
        client.send("stat");
        client.start();
        QVERIFY(client.waitForEnd());
        const QStringList lines = trace.worker();
        QCOMPARE(lines.mid(lines.indexOf("BLCK receive response")),
            QStringList({ "BLCK receive response", trace.read(), "DBG exit loop", "BLCK close socket",
                "DBG exit TarnisSession::run()" }));
        QCOMPARE(trace.errors(), QStringList());
    }

    void quitWithACommandJustTaken()
    {
        bool wasTaken = false;
        for (int attempt = 0; attempt < 10 && !wasTaken && !QTest::currentTestFailed(); ++attempt)
            quitAtTheLock(wasTaken);
        QVERIFY(wasTaken);
    }

    void quitWithAReplyJustRead()
    {
        const ScriptedServer server;
        SessionClient client(server);
        const Trace trace(client);
        client.send(new Hook(QString(), [&] { client.session->quit(); }));
        client.start();
        QVERIFY(client.waitForEnd());
        QVERIFY(trace.loop().endsWith("BLCK quite"));
        QCOMPARE(client.signalled, QStringList("connected"));
        QVERIFY(server.waitForFarewells(1));
    }

    void writesNothingWhenOff()
    {
        const ScriptedServer server;
        SessionClient client(server);
        client.send("stat");
        client.start();
        QVERIFY(client.waitForAnswers(1));
        const LogFile log(31);
        client.ask("stat");
        client.destroy();
        QCOMPARE(log.messages(), QStringList());
    }
};

QTEST_GUILESS_MAIN(TestSessionLog)
#include "tst_sessionlog.moc"
