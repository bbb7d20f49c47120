// The end of a local server's process, with grace times that a test can wait for.
#include "tarnis/server/serverexit_p.h"

#include "support/fakeserver.h"
#include "support/scriptedserver.h"
#include "support/wait.h"

#include <QCoreApplication>
#include <QPointer>
#include <QProcess>
#include <QTest>

#include <memory>

using tarnis::ServerExit;
using namespace tarnis::testing;

namespace {

constexpr int longGraceMs = 60000;
constexpr int shortGraceMs = 50;

QProcess* started(const FakeServer& server)
{
    auto* const process = new QProcess;
    process->start(server.path(), {});
    process->waitForStarted();
    // It has installed its signal handling, or reads its input.
    eventually([&] { return process->bytesAvailable() > 0; });
    return process;
}

bool runs(qint64 processId)
{
    return QFile::exists(QStringLiteral("/proc/%1").arg(processId));
}

} // namespace

// Each function creates its own application object, because its destruction is tested.
class TestServerExit : public QObject {
    Q_OBJECT

    int m_argumentCount = 1;
    char m_name[16] = "tst_serverexit";
    char* m_arguments[2] = { m_name, nullptr };
    std::unique_ptr<QCoreApplication> m_application;

private Q_SLOTS:
    void init() { m_application = std::make_unique<QCoreApplication>(m_argumentCount, m_arguments); }
    void cleanup() { m_application.reset(); }

    void requestsTheExitAndWaits()
    {
        const FakeServer server({ "print ready", "await-end", "note end" });
        const std::unique_ptr<QProcess> process(started(server));
        tarnis::askServerToExit(*process);
        TRY_COMPARE(process->state(), QProcess::NotRunning);
        QCOMPARE(server.noted("end"), QByteArray("exit"));
        QCOMPARE(process->exitStatus(), QProcess::NormalExit);
        QCOMPARE(process->error(), QProcess::UnknownError);
    }

    void askingAnEndedProcessDoesNothing()
    {
        const FakeServer server({ "print ready" });
        const std::unique_ptr<QProcess> process(started(server));
        TRY_COMPARE(process->state(), QProcess::NotRunning);
        tarnis::askServerToExit(*process);
        QCOMPARE(process->error(), QProcess::UnknownError);
    }

    void waitsForTheServer()
    {
        const FakeServer server({ "print ready", "await-end", "note end" });
        const std::unique_ptr<QProcess> process(started(server));
        tarnis::askServerToExit(*process);
        tarnis::waitForServerExit(*process, longGraceMs);
        QCOMPARE(process->state(), QProcess::NotRunning);
        QCOMPARE(server.noted("end"), QByteArray("exit"));
        tarnis::waitForServerExit(*process, longGraceMs);
    }

    void waitingKillsAfterTheGrace()
    {
        const FakeServer server({ "print ready", "linger" });
        const std::unique_ptr<QProcess> process(started(server));
        tarnis::askServerToExit(*process);
        tarnis::waitForServerExit(*process, shortGraceMs);
        QCOMPARE(process->state(), QProcess::NotRunning);
        QCOMPARE(process->exitStatus(), QProcess::CrashExit);
    }

    void keepsTheObjectUntilTheEnd()
    {
        const FakeServer server({ "print ready", "await go", "note end" });
        QPointer<QProcess> process(started(server));
        const QPointer<ServerExit> exit(new ServerExit(process, longGraceMs));
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(process);
        process->write("go");
        TRY_VERIFY(exit.isNull());
        QVERIFY(process.isNull());
        QVERIFY(server.hasNoted("end"));
    }

    void killsAfterTheGrace()
    {
        const FakeServer server({ "print ready", "linger" });
        QPointer<QProcess> process(started(server));
        const qint64 processId = process->processId();
        tarnis::askServerToExit(*process);
        new ServerExit(process, shortGraceMs);
        TRY_VERIFY(process.isNull());
        QVERIFY(!runs(processId));
    }

    void dropsAnEndedProcess()
    {
        const FakeServer server({ "print ready" });
        QPointer<QProcess> process(started(server));
        TRY_COMPARE(process->state(), QProcess::NotRunning);
        new ServerExit(process, longGraceMs);
        TRY_VERIFY(process.isNull());
    }

    void waitsWhenTheApplicationEnds()
    {
        const FakeServer server({ "print ready", "await-end", "note end" });
        const QPointer<QProcess> process(started(server));
        tarnis::askServerToExit(*process);
        new ServerExit(process, longGraceMs);
        m_application.reset();
        QVERIFY(process.isNull());
        QCOMPARE(server.noted("end"), QByteArray("exit"));
    }

    void killsWhenTheApplicationEndsAndTheGraceIsOver()
    {
        const FakeServer server({ "print ready", "linger" });
        const QPointer<QProcess> process(started(server));
        const qint64 processId = process->processId();
        new ServerExit(process, shortGraceMs);
        m_application.reset();
        QVERIFY(process.isNull());
        QVERIFY(!runs(processId));
    }
};

QTEST_APPLESS_MAIN(TestServerExit)
#include "tst_serverexit.moc"
