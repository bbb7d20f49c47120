// A local server program: its start, its port, all ways of ending.
#include "support/cases.h"
#include "support/fakeserver.h"
#include "support/scriptedserver.h"
#include "support/wait.h"

#include <tarnis/client/serverprocess.h>

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <memory>

using namespace tarnis;
using namespace tarnis::testing;
using namespace std::chrono_literals;

using End = ServerProcess::End;
using State = ServerProcess::State;

namespace {

/// A process object and what it has reported.
struct RecordedProcess {
    RecordedProcess()
    {
        QObject::connect(process.get(), &ServerProcess::started, [this] { events.append("started"); });
        QObject::connect(
            process.get(), &ServerProcess::portKnown, [this](quint16 port) { events.append(QString::number(port)); });
        QObject::connect(process.get(), &ServerProcess::ended, [this](End end, const QString& why) {
            events.append("ended");
            ends.append(end);
            reason = why;
        });
    }
    bool waitForEnd() const
    {
        return eventually([this] { return !ends.isEmpty(); });
    }
    bool waitForPort() const
    {
        return eventually([this] { return process->state() == State::Running; });
    }

    std::unique_ptr<ServerProcess> process = std::make_unique<ServerProcess>();
    QStringList events;
    QList<End> ends;
    QString reason;
};

ServerProcessOptions brief()
{
    ServerProcessOptions options;
    options.startTimeout = 30ms;
    options.exitGrace = 30ms;
    return options;
}

} // namespace

class TestServerProcess : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void startsAndStops()
    {
        const FakeServer server(FakeServer::wellBehaved(5000), "folder with blanks/server");
        RecordedProcess recorded;
        QCOMPARE(recorded.process->state(), State::NotRunning);
        QVERIFY(recorded.process->start(server.path()));
        QVERIFY(!recorded.process->start(server.path()));
        QVERIFY(recorded.events.isEmpty());
        QVERIFY(recorded.waitForPort());
        QCOMPARE(recorded.process->port(), 5000);
        recorded.process->stop();
        QCOMPARE(recorded.process->state(), State::Stopping);
        QVERIFY(recorded.waitForEnd());
        QCOMPARE(recorded.events, QStringList({ "started", "5000", "ended" }));
        QCOMPARE(recorded.ends, QList<End>({ End::Stopped }));
        QVERIFY(server.hasNoted("end"));
        QCOMPARE(recorded.process->port(), 0);
        QVERIFY(recorded.process->start(server.path()));
        QVERIFY(recorded.waitForPort());
    }

    void readsThePort_data()
    {
        QTest::addColumn<QStringList>("script");
        addCase("in one piece", QStringList({ "print UI port: 5000\\n", "linger" }));
        addCase("among other lines", QStringList({ "print a\\nUI port: 5000\\nb\\n", "linger" }));
        addCase("in pieces", QStringList({ "print UI po", "complain x\\n", "print rt: 50", "print 00\\n", "linger" }));
        addCase("behind much output", QStringList({ "flood 300000", "print \\nUI port: 5000\\n", "linger" }));
    }
    void readsThePort()
    {
        QFETCH(QStringList, script);
        const FakeServer server(script);
        RecordedProcess recorded;
        recorded.process->start(server.path());
        QVERIFY(recorded.waitForPort());
        QCOMPARE(recorded.process->port(), 5000);
    }

    void reportsEachEnd_data()
    {
        addColumns<QStringList, End, QString>("script", "end", "word");
        addCase(
            "exits at once", QStringList({ "complain no detector\\n", "exit 3" }), End::Exited, "code 3. no detector");
        addCase("colours", QStringList({ "complain \x1b[1;31mno\tdetector\x1b[0m\\n\\n\x1b[0m", "exit 3" }),
            End::Exited, "code 3. no\tdetector");
        addCase("crashes at once", QStringList("crash"), End::Crashed, "crashed");
        addCase("crashes later", QStringList({ "print UI port: 5000\\n", "crash" }), End::Crashed, "crashed");
        addCase("never a port", QStringList("linger"), End::NoPort, "within");
        addCase("port 0", QStringList({ "print UI port: 0\\n", "linger" }), End::NoPort, "UI port: 0");
        addCase("port 70000", QStringList({ "print UI port: 70000\\n", "linger" }), End::NoPort, "70000");
    }
    void reportsEachEnd()
    {
        QFETCH(QStringList, script);
        QFETCH(QString, word);
        const FakeServer server(script);
        RecordedProcess recorded;
        ServerProcessOptions options;
        if (script == QStringList("linger"))
            options.startTimeout = 30ms;
        recorded.process->start(server.path(), options);
        QVERIFY(recorded.waitForEnd());
        QTEST(recorded.ends.first(), "end");
        QVERIFY2(recorded.reason.contains(word), qPrintable(recorded.reason));
        QCOMPARE(recorded.process->state(), State::NotRunning);
        QCoreApplication::processEvents();
        QCOMPARE(recorded.ends.size(), 1);
    }

    void saysWhyAProgramCannotBeStarted_data()
    {
        addColumns<QString, QString>("program", "why");
        addCase("none", "", "no program is chosen");
        addCase("path", "/nowhere/server", "there is no such file");
        addCase("name", "no-such-server", "no folder of the search path contains it");
        addCase("folder", "/", "it is not an executable file");
        addCase("other file", "/etc/passwd", "it is not an executable file");
    }
    void saysWhyAProgramCannotBeStarted()
    {
        QFETCH(QString, program);
        QFETCH(QString, why);
        RecordedProcess recorded;
        QVERIFY(recorded.process->start(program));
        QVERIFY(recorded.waitForEnd());
        QCOMPARE(recorded.reason, QStringLiteral("The server \"%1\" could not be started: %2.").arg(program, why));
    }

    void reportsAMissingProgram()
    {
        RecordedProcess recorded;
        QVERIFY(recorded.process->start("/nowhere/server"));
        QVERIFY(recorded.events.isEmpty());
        QVERIFY(recorded.waitForEnd());
        QCOMPARE(recorded.events, QStringList("ended"));
        QCOMPARE(recorded.ends.first(), End::NotStarted);
        QVERIFY(recorded.reason.contains("/nowhere/server"));
        QVERIFY2(!recorded.reason.contains("chdir"), qPrintable(recorded.reason));
    }

    void killsAServerThatStays()
    {
        const FakeServer server({ "print UI port: 5000\\n", "linger" });
        RecordedProcess recorded;
        ServerProcessOptions options = brief();
        options.startTimeout = 30s;
        recorded.process->start(server.path(), options);
        QVERIFY(recorded.waitForPort());
        recorded.process->stop();
        QVERIFY(recorded.waitForEnd());
        QCOMPARE(recorded.ends, QList<End>({ End::Stopped }));
    }

    void acceptsAnyTimes_data()
    {
        QTest::addColumn<std::chrono::milliseconds>("time");
        QTest::newRow("none") << 0ms;
        QTest::newRow("negative") << std::chrono::milliseconds::min();
        QTest::newRow("beyond 32 bits") << std::chrono::milliseconds((qint64(1) << 31) + 5);
        QTest::newRow("largest") << std::chrono::milliseconds::max();
    }
    void acceptsAnyTimes()
    {
        QFETCH(std::chrono::milliseconds, time);
        const FakeServer server(FakeServer::wellBehaved(5000));
        const FakeServer stubborn({ "print UI port: 5001\\n", "linger" });
        RecordedProcess recorded;
        ServerProcessOptions options;
        options.startTimeout = time;
        options.exitGrace = time;
        const bool isKilled = time <= 0ms; // no time to exit
        recorded.process->start(isKilled ? stubborn.path() : server.path(), options);
        QVERIFY(recorded.waitForPort());
        recorded.process->stop();
        QVERIFY(recorded.waitForEnd());
        QCOMPARE(recorded.ends, QList<End>({ End::Stopped }));
        if (!isKilled)
            QVERIFY(server.hasNoted("end"));
    }

    // The program of a process object whose thread ends with it is killed, too, after its grace time.
    void killsAProgramWhoseThreadHasEnded()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("server");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        // A FakeServer ends with the thread that started it.
        file.write("#!/bin/sh\necho $$ > pid\necho 'UI port: 5000'\nexec sleep 600\n");
        file.close();
        QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
        QThread thread;
        QObject inThread;
        inThread.moveToThread(&thread);
        thread.start();
        QMetaObject::invokeMethod(&inThread, [&] {
            auto* const process = new ServerProcess;
            ServerProcessOptions options = brief();
            options.startTimeout = 30s;
            connect(process, &ServerProcess::portKnown, process, [process, &thread] {
                delete process;
                thread.quit();
            });
            process->start(path, options);
        });
        QVERIFY(eventually([&] { return thread.isFinished(); }));
        QFile noted(folder.filePath("pid"));
        QVERIFY(noted.open(QIODevice::ReadOnly));
        const qint64 pid = noted.readAll().trimmed().toLongLong();
        QVERIFY(pid > 0);
        QVERIFY(eventually([&] { return !isRunning(pid); }));
    }

    void deletedInItsSignals_data()
    {
        QTest::addColumn<int>("place");
        QTest::newRow("started") << 0;
        QTest::newRow("portKnown") << 1;
        QTest::newRow("ended") << 2;
    }
    void deletedInItsSignals()
    {
        QFETCH(int, place);
        const FakeServer server(FakeServer::wellBehaved(5000));
        auto* process = new ServerProcess;
        const auto end = [&process] { delete std::exchange(process, nullptr); };
        connect(process, &ServerProcess::started, this, [&] {
            if (place == 0)
                end();
        });
        connect(process, &ServerProcess::portKnown, this, [&] {
            if (place == 1)
                end();
            else
                process->stop();
        });
        connect(process, &ServerProcess::ended, this, end);
        process->start(server.path());
        QVERIFY(eventually([&] { return !process; }));
        // Requested to exit, not killed: it has written a note. An early request may have arrived before the program
        // reads its input.
        QVERIFY(eventually([&] { return server.hasNoted("end"); }));
    }
};

QTEST_GUILESS_MAIN(TestServerProcess)
#include "tst_serverprocess.moc"
