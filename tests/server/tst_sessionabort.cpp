// An exception on a session's thread ends the process. The program starts itself again as the process that aborts.
#include "sessionclient.h"
#include "support/cases.h"

#include "support/logfile.h"
#include "support/wait.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <sys/resource.h>

#include <stdexcept>

#include <tarnis/foundation/log.h>

using namespace tarnis::testing;

namespace {

struct CustomException : std::runtime_error {
    using std::runtime_error::runtime_error;
};

class ThrowingCommand : public TarnisCmd {
public:
    explicit ThrowingCommand(const QString& kind)
        : TarnisCmd(kind)
    {
    }
    QString getCmdString() const override
    {
        if (m_cmd == "standard")
            throw std::runtime_error("no state to go back to");
        if (m_cmd == "own")
            throw CustomException("own %s text");
        throw 42;
    }
};

// Runs in the process that aborts.
int dieOf(const QString& kind, const QString& logPath)
{
    const rlimit noCore { 0, 0 };
    ::setrlimit(RLIMIT_CORE, &noCore);
    initlog(logPath.toStdString(), 0);
    const ScriptedServer server;
    SessionClient client(server);
    client.session->send(new ThrowingCommand(kind));
    client.start();
    eventually([] { return false; });
    return 0;
}

} // namespace

class TestSessionAbort : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void endsTheProcess_data()
    {
        addColumns<QString, QString>("kind", "lastLine");
        addCase("standard exception", "standard", "exit with St13runtime_error[no state to go back to]");
        addCase("exception of its own", "own", "exit with N12_GLOBAL__N_115CustomExceptionE[own %s text]");
        addCase("anything else", "number", "exit with unknown error");
    }
    void endsTheProcess()
    {
        QFETCH(QString, kind);
        const QTemporaryDir folder;
        const QString logPath = folder.filePath("abort.log");
        QProcess process;
        process.start(QCoreApplication::applicationFilePath(), { "--die-of", kind, logPath });
        QVERIFY(process.waitForFinished(60000));
        QCOMPARE(process.exitStatus(), QProcess::CrashExit);
        const QList<LogEntry> entries = logEntries(logPath);
        QVERIFY(!entries.isEmpty());
        // The log is closed after it: no block of the session ends any more.
        QCOMPARE(entries.last().word, "ERR");
        QTEST(entries.last().message, "lastLine");
        QCOMPARE(entries.last().file, "tarnissession_run.cpp");
    }
};

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 4 && arguments[1] == "--die-of")
        return dieOf(arguments[2], arguments[3]);
    TestSessionAbort test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_sessionabort.moc"
