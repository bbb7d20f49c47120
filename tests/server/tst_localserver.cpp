// The process of a local server: its folder, its port, its end.
#include "support/cases.h"
#include "support/fakeserver.h"
#include "support/scriptedserver.h"
#include "support/wait.h"
#include "tarnis/server/localserver_p.h"
#include "tarnis/server/serverexit_p.h"

#include <QCoreApplication>
#include <QPointer>
#include <QProcess>
#include <QTest>

#include <memory>

using namespace tarnis::testing;
using tarnis::ServerExit;

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

class TestLocalServer : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void workingDirectory_data()
    {
        addColumns<QString, QString>("processPath", "expected");
        addCase("program in a folder", "/opt/daq/server", "/opt/daq/");
        addCase("arguments do not count", "/opt/daq/server -c /etc/x", "/opt/daq/");
        addCase("a blank in a folder's name cuts the path", "/opt/my daq/server", "/opt/");
        addCase("relative", "bin/server", "bin/");
        addCase("bare name", "server", "./");
        addCase("in the root", "/server", "//");
    }
    void workingDirectory()
    {
        QFETCH(QString, processPath);
        QFETCH(QString, expected);
        QCOMPARE(tarnis::workingDirectory(processPath), expected);
    }

    void announcedPort_data()
    {
        QTest::addColumn<QString>("output");
        QTest::addColumn<int>("expected"); // -1: not announced
        QTest::newRow("whole line") << "UI port: 5000\n" << 5000;
        QTest::newRow("behind other output") << "starting\nUI port: 5000\nready\n" << 5000;
        QTest::newRow("no blank") << "UI port:5000\n" << 5000;
        QTest::newRow("blanks around the digits") << "UI port:  5000 \r\n" << 5000;
        QTest::newRow("largest") << "UI port: 65535\n" << 65535;
        QTest::newRow("too large") << "UI port: 70000\n" << 0;
        QTest::newRow("one too large") << "UI port: 65536\n" << 0;
        QTest::newRow("negative") << "UI port: -1\n" << 0;
        QTest::newRow("zero") << "UI port: 0\n" << 0;
        QTest::newRow("no number") << "UI port: none\n" << 0;
        QTest::newRow("something behind the number") << "UI port: 5000.\n" << 0;
        QTest::newRow("no base but 10") << "UI port: 0x10\n" << 0;
        QTest::newRow("no line feed") << "UI port: 5000" << 0;
        QTest::newRow("nothing behind") << "UI port:" << 0;
        QTest::newRow("the first one counts") << "UI port: 1\nUI port: 2\n" << 1;
        QTest::newRow("other case") << "ui port: 5000\n" << -1;
        QTest::newRow("second piece of a line") << " 5000\n" << -1;
        QTest::newRow("empty") << "" << -1;
    }
    void announcedPort()
    {
        QFETCH(QString, output);
        QFETCH(int, expected);
        const std::optional<quint16> port = tarnis::announcedPort(output);
        QCOMPARE(port ? int(*port) : -1, expected);
    }

    // The end of a local server's process, with grace times that a test can wait for.

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

private:
    int m_argumentCount = 1;
    char m_name[16] = "tst_serverexit";
    char* m_arguments[2] = { m_name, nullptr };
    std::unique_ptr<QCoreApplication> m_application;
};

QTEST_APPLESS_MAIN(TestLocalServer)
#include "tst_localserver.moc"
