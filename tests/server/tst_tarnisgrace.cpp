// The grace time of half a minute for a local server: the only test of the manager that waits for it.
#include "support/fakeserver.h"
#include "support/managerprobe.h"
#include "support/scriptedserver.h"
#include "support/wait.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QTest>

#include <memory>

using namespace tarnis::testing;

class TestTarnisGrace : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void serversThatIgnoreTheirOrderAreKilledAfterHalfAMinute()
    {
        const QByteArray prompt("> ");
        const FakeServer server({ "print UI port: 5000\\n", "linger" });
        const QString path = server.path();
        TarnisProbe shutDown(&prompt, nullptr);
        auto deleted = std::make_unique<TarnisProbe>(&prompt, nullptr);
        QVERIFY(shutDown.Run(&path));
        QVERIFY(deleted->Run(&path));
        TRY_COMPARE(shutDown.m_status, Tarnis::SERVER_CONNECTED);
        TRY_COMPARE(deleted->m_status, Tarnis::SERVER_CONNECTED);
        const QPointer<QProcess> first = shutDown.m_process;
        const QPointer<QProcess> second = deleted->m_process;
        HostRecord record(shutDown);

        QElapsedTimer timer;
        timer.start();
        QVERIFY(shutDown.Shutdown());
        deleted.reset(); // waits for its own server in the meantime
        QVERIFY(timer.elapsed() >= 29000);
        TRY_COMPARE(record.events,
            (QStringList { "status SHUTTING DOWN", "post Server process crashed.", // the deleted one's
                "post ServerError: Crashed but shutting down or idle. err[1]", "status IDLE" }));
        TRY_VERIFY(first.isNull());
        TRY_VERIFY(second.isNull());
    }
};

QTEST_GUILESS_MAIN(TestTarnisGrace)
#include "tst_tarnisgrace.moc"
