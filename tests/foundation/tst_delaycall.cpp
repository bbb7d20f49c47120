#include "support/metamethods.h"
#include "support/wait.h"
#include "tarnis/foundation/delaycall.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include <atomic>
#include <memory>
#include <stdexcept>

namespace {

constexpr int never = 1000000; // ms

// Counts its existing copies, so that a test can detect when a function was dropped.
using Captured = std::shared_ptr<int>;

void runEventsOnce()
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace

class TestDelayCall : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void slotsAreInOrder()
    {
        QCOMPARE(tarnis::testing::ownMethods(DelayCall::staticMetaObject),
            (QStringList { "slot onDestroyed(QObject*)", "slot onTimeout()" }));
    }

    void runsOnTheNextTurnWithoutDelay_data()
    {
        QTest::addColumn<int>("delayMs");
        QTest::newRow("no delay") << 0;
        QTest::newRow("negative delay") << -5;
    }
    void runsOnTheNextTurnWithoutDelay()
    {
        QFETCH(int, delayMs);
        int calls = 0;
        delay_call([&] { ++calls; }, delayMs, nullptr);
        QCOMPARE(calls, 0);
        TRY_COMPARE(calls, 1);
    }

    void runsAfterTheDelay()
    {
        int calls = 0;
        QElapsedTimer timer;
        timer.start();
        delay_call([&] { ++calls; }, 60, nullptr);
        TRY_COMPARE(calls, 1);
        QVERIFY(timer.elapsed() >= 55); // a coarse timer may come 5 % early
    }

    void runsOnceAndRemovesItself()
    {
        int calls = 0;
        const Captured captured = std::make_shared<int>(0);
        QPointer<DelayCall> call = new DelayCall([&calls, captured] { ++calls; }, 0, nullptr);
        TRY_VERIFY(call.isNull());
        QCOMPARE(calls, 1);
        QCOMPARE(captured.use_count(), 1);
    }

    void emptyFunctionDoesNothing()
    {
        QPointer<DelayCall> call = new DelayCall({}, 0, nullptr);
        TRY_VERIFY(call.isNull());
    }

    void guardDropsTheCall()
    {
        int calls = 0;
        const Captured captured = std::make_shared<int>(0);
        auto guard = std::make_unique<QObject>();
        QPointer<DelayCall> call = new DelayCall([&calls, captured] { ++calls; }, 0, guard.get());
        QCOMPARE(captured.use_count(), 2);
        guard.reset();
        QCOMPARE(captured.use_count(), 1); // released at once
        TRY_VERIFY(call.isNull());
        QCOMPARE(calls, 0);
    }

    void anExistingGuardDoesNotDropTheCall()
    {
        int calls = 0;
        QObject guard;
        delay_call([&] { ++calls; }, 0, &guard);
        TRY_COMPARE(calls, 1);
    }

    void functionMayDestroyItsGuard()
    {
        int calls = 0;
        auto guard = std::make_unique<QObject>();
        QPointer<DelayCall> call = new DelayCall(
            [&] {
                guard.reset();
                ++calls;
            },
            0, guard.get());
        TRY_VERIFY(call.isNull());
        QCOMPARE(calls, 1);
        QVERIFY(!guard);
    }

    void functionMayDestroyTheGuardOfOthers()
    {
        int calls = 0;
        auto guard = std::make_unique<QObject>();
        const Captured captured = std::make_shared<int>(0);
        delay_call(
            [&] {
                guard.reset();
                QCOMPARE(captured.use_count(), 1);
                ++calls;
            },
            0, guard.get());
        QPointer<DelayCall> other = new DelayCall([&calls, captured] { calls += 100; }, never, guard.get());
        TRY_VERIFY(other.isNull());
        QCOMPARE(calls, 1);
    }

    void droppedCallMayDestroyTheGuardOfOthers()
    {
        const Captured captured = std::make_shared<int>();
        auto guardOfOther = std::make_shared<QObject>();
        auto guard = std::make_unique<QObject>();
        delay_call([guardOfOther] {}, never, guard.get());
        delay_call([captured] {}, never, guardOfOther.get());
        guardOfOther.reset();
        guard.reset();
        QCOMPARE(captured.use_count(), 1L);
    }

    void functionMayRunAnEventLoopWithOtherCalls()
    {
        bool othersCame = false;
        bool done = false;
        delay_call(
            [&] {
                QEventLoop loop;
                delay_call(
                    [&] {
                        othersCame = true;
                        loop.quit();
                    },
                    0, nullptr);
                loop.exec();
                done = true;
            },
            0, nullptr);
        TRY_VERIFY(done);
        QVERIFY(othersCame);
    }

    void functionMayAskForAnotherCall()
    {
        QList<int> order;
        delay_call(
            [&] {
                delay_call([&] { order.append(2); }, 0, nullptr);
                order.append(1);
            },
            0, nullptr);
        TRY_COMPARE(order, (QList<int> { 1, 2 }));
    }

    void functionThatThrowsReleasesTheMutex()
    {
        QPointer<DelayCall> call = new DelayCall([] { throw std::runtime_error("refused"); }, never, nullptr);
        QVERIFY_THROWS_EXCEPTION(std::runtime_error, call->onTimeout());
        runEventsOnce();
        QVERIFY(call.isNull());
        int calls = 0;
        delay_call([&] { ++calls; }, 0, nullptr);
        TRY_COMPARE(calls, 1);
    }

    void callsOfTwoThreadsRunOneAtATime()
    {
        constexpr int callsPerThread = 200;
        std::atomic<int> inside = 0;
        std::atomic<int> together = 0;
        std::atomic<int> calls = 0;
        const auto body = [&] {
            if (++inside > 1)
                ++together;
            --inside;
            ++calls;
        };
        QThread threads[2];
        QObject contexts[2];
        for (int t = 0; t < 2; ++t) {
            contexts[t].moveToThread(&threads[t]);
            threads[t].start();
            QMetaObject::invokeMethod(&contexts[t], [&body] {
                for (int i = 0; i < callsPerThread; ++i)
                    delay_call(body, 0, nullptr);
            });
        }
        TRY_COMPARE(calls.load(), 2 * callsPerThread);
        QCOMPARE(together.load(), 0);
        for (QThread& thread : threads) {
            thread.quit();
            thread.wait();
        }
    }
};

QTEST_GUILESS_MAIN(TestDelayCall)
#include "tst_delaycall.moc"
