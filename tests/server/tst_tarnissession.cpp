// A session's interface: initial members, queue, prompt, message boxes, lifetime.
#include "sessionclient.h"
#include "support/cases.h"

#include "support/logfile.h"
#include "support/messageboxwatcher.h"
#include "support/metamethods.h"
#include "support/virtualorder.h"
#include "support/wait.h"

#include <QAbstractSocket>
#include <QApplication>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

using namespace tarnis::testing;

namespace {

const QByteArray prompt("> ");

QString address(const void* object)
{
    return QString::asprintf("%p", object);
}

} // namespace

class TestTarnisSession : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void cleanup() { TarnisSession::SetDefaultPrompt(nullptr); }

    void declaresSignalsInOrder()
    {
        const QMetaObject& meta = TarnisSession::staticMetaObject;
        QCOMPARE(ownMethods(meta),
            QStringList({ "signal connected()", "signal result(PTarnisCmd,QByteArray)", "signal error(int,QString)",
                "signal read(QByteArray)" }));
        QCOMPARE(meta.superClass(), &QThread::staticMetaObject);
    }

    void keepsItsMembersInOrder()
    {
        struct Probe : TarnisSession {
            Probe()
                : TarnisSession("h", 7, nullptr, nullptr)
            {
            }
            std::vector<const void*> members() const
            {
                return { &m_host, &m_port, &m_mutex, &m_bQuit, &m_timeout, &m_pPrompt, &m_queue, &m_id };
            }
            bool hasInitialValues() const
            {
                return m_host == "h" && m_port == 7 && !m_bQuit && m_timeout == 40 && !m_pPrompt && m_queue.isEmpty()
                    && m_id.isEmpty() && !m_pDefaultPrompt;
            }
        };
        const Probe probe;
        QVERIFY(std::ranges::is_sorted(probe.members()));
        QVERIFY(probe.hasInitialValues());
    }

    void belongsToItsParent()
    {
        QObject parent;
        const auto* const session = new TarnisSession("h", 7, &prompt, &parent);
        QCOMPARE(session->parent(), &parent);
        QVERIFY(!session->isRunning());
    }

    void connectsByNames()
    {
        TarnisSession session("h", 7, &prompt, nullptr);
        TarnisSession other("h", 7, &prompt, nullptr);
        QVERIFY(
            connect(&session, SIGNAL(result(PTarnisCmd, QByteArray)), &other, SIGNAL(result(PTarnisCmd, QByteArray))));
        QVERIFY(connect(&session, SIGNAL(error(int, QString)), &other, SIGNAL(error(int, QString))));
        QVERIFY(connect(&session, SIGNAL(read(QByteArray)), &other, SIGNAL(read(QByteArray))));
        QVERIFY(connect(&session, SIGNAL(connected()), &other, SIGNAL(connected())));
    }

    void queuesInOrder()
    {
        SessionProbe session("h", 7, &prompt, nullptr);
        session.send(new TarnisCmd("a"));
        session.send(new TarnisCmd("b"));
        session.sendPrevious(new TarnisCmd("c"));
        session.sendPrevious(nullptr);
        QCOMPARE(session.queued(), QStringList({ "(null)", "c", "a", "b" }));
        session.cancel();
        QVERIFY(session.queued().isEmpty());
    }

    void putsAListInFront()
    {
        SessionProbe session("h", 7, &prompt, nullptr);
        session.send(new TarnisCmd("d"));
        session.sendPrevious(QList<TarnisCmd*> {});
        session.sendPrevious({ new TarnisCmd("a"), new TarnisCmd("b"), new TarnisCmd("c") });
        QCOMPARE(session.queued(), QStringList({ "a", "b", "c", "d" }));
    }

    void cancelledCommandsMayUseTheSession()
    {
        struct ResendingCommand : TarnisCmd {
            explicit ResendingCommand(TarnisSession& session)
                : TarnisCmd("old")
                , m_session(session)
            {
            }
            ~ResendingCommand() override { m_session.send(new TarnisCmd("new")); }
            TarnisSession& m_session;
        };
        SessionProbe session("h", 7, &prompt, nullptr);
        session.send(new ResendingCommand(session));
        session.send(new ResendingCommand(session));
        session.cancel();
        QCOMPARE(session.queued(), QStringList({ "new", "new" }));
    }

    void unstartedSessionDestroysItsCommands()
    {
        const LogFile log(0);
        auto* const cmd = new TarnisCmd("stat");
        {
            TarnisSession session("h", 7, &prompt, nullptr);
            session.send(cmd);
        }
        QVERIFY(log.messages().contains("DBG TarnisCmd::~TarnisCmd(), " + address(cmd)));
    }

    void storesTimeoutAndId()
    {
        SessionProbe session("h", 7, &prompt, nullptr);
        session.setTimeout(-3);
        QCOMPARE(session.timeout(), -3);
        session.SetId("control");
        QCOMPARE(session.id(), "control");
    }

    void prefersItsOwnPrompt()
    {
        QByteArray common("$ ");
        TarnisSession::SetDefaultPrompt(&common);
        QCOMPARE(TarnisSession("h", 7, &prompt, nullptr).GetPrompt(), &prompt);
        QCOMPARE(TarnisSession("h", 7, nullptr, nullptr).GetPrompt(), &common);
    }

    void complainsWithoutAnyPrompt()
    {
        const LogFile log;
        MessageBoxWatcher boxes;
        TarnisSession session("h", 7, nullptr, nullptr);
        QCOMPARE(session.GetPrompt(), nullptr);
        QCOMPARE(boxes.titles, QStringList("Assertion"));
        QCOMPARE(boxes.texts, QStringList("Assertion failed: m_pDefaultPrompt != nullptr || m_pPrompt != nullptr"));
        QCOMPARE(boxes.icons.first(), QMessageBox::Critical);
        QCOMPARE(boxes.buttons.first(), QMessageBox::Ok);
        QVERIFY(boxes.areParentless);
        QVERIFY(log.messages().contains("BLCK xASSERT(m_pDefaultPrompt != nullptr || m_pPrompt != nullptr)"));
    }

    void workerWithoutPromptComplainsOnTheGuiThreadAndEnds()
    {
        MessageBoxWatcher boxes;
        const ScriptedServer server;
        TarnisSession session(ScriptedServer::host(), server.port(), nullptr, nullptr);
        int errors = 0;
        connect(&session, &TarnisSession::error, this, [&] { ++errors; });
        session.start();
        QVERIFY(eventually([&] { return session.isFinished() && boxes.titles.size() == 1; }));
        QVERIFY(boxes.areOnGuiThread);
        TRY_COMPARE(errors, 1); // a queued call of the worker
        QVERIFY(server.waitForFarewells(1));
    }

    void showsErrors_data()
    {
        addColumns<int, QString>("code", "text");
        addCase("refused", int(QAbstractSocket::ConnectionRefusedError),
            QStringLiteral("The connection was refused by the peer."));
        addCase("unknown host", int(QAbstractSocket::HostNotFoundError), QStringLiteral("The host was not found."));
        addCase("closed", int(QAbstractSocket::RemoteHostClosedError), QStringLiteral("It's %1 over."));
        addCase("unknown", int(QAbstractSocket::UnknownSocketError), QStringLiteral("It's %1 over."));
    }
    void showsErrors()
    {
        QFETCH(int, code);
        QFETCH(QString, text);
        QCoreApplication::setApplicationName("Counting room");
        const LogFile log;
        const MessageBoxWatcher boxes;
        TarnisSession::showErrorMessage(code, "It's %1 over");
        QCOMPARE(boxes.titles, QStringList("Counting room"));
        QCOMPARE(boxes.texts, QStringList(text));
        QCOMPARE(boxes.icons.first(), QMessageBox::Information);
        QCOMPARE(boxes.buttons.first(), QMessageBox::Ok);
        QVERIFY(boxes.areParentless);
        QCOMPARE(log.messages(),
            QStringList(QString("BLCK static TarnisSession::showErrorMessage(socketError[%1], message[It's %2 over])")
                            .arg(QString::number(code), "%1")));
    }

    void logsEveryOperation()
    {
        const LogFile log;
        QString self;
        QString first;
        {
            auto* const session = new TarnisSession("h", 7, &prompt, nullptr);
            self = address(session);
            session->SetId(QStringLiteral("gr\u00fcn"));
            auto* const cmd = new TarnisCmd(QStringLiteral("text \u00b5"));
            cmd->m_cmdName = QStringLiteral("name \u00b5");
            first = address(cmd);
            session->send(cmd);
            session->send(nullptr);
            session->sendPrevious(nullptr);
            session->sendPrevious({ nullptr, nullptr });
            session->cancel();
            session->setTimeout(1);
            session->GetPrompt();
            delete session;
        }
        QCOMPARE(log.messages(),
            QStringList({
                "DBG TarnisSession::TarnisSession(), this[" + self + "]",
                QString("BLCK TarnisSession::SetId(), this[" + self + "] id[gr\u00fcn]"),
                QString("DBG TarnisCmd::TarnisCmd(cmd[text \u00b5]), ") + first,
                QString("BLCK TarnisSession::send(), this[" + self + "] cmdName[name \u00b5] cmd[text \u00b5]"),
                "BLCK TarnisSession::send(), this[" + self + "] cmdName[] cmd[]",
                "BLCK TarnisSession::sendPrevious(), this[" + self + "] cmdName[] cmd[]",
                "BLCK TarnisSession::sendPrevious(), this[" + self + "] size[2]",
                "BLCK TarnisSession::cancel(), this[" + self + "]",
                "DBG TarnisCmd::~TarnisCmd(), " + first,
                QString("BLCK TarnisSession::~TarnisSession(), this[" + self + "] id[gr\u00fcn]"),
                "BLCK waiting",
                "BLCK canceling",
                "BLCK TarnisSession::cancel(), this[" + self + "]",
            }));
    }
};

QTEST_MAIN(TestTarnisSession)
#include "tst_tarnissession.moc"
