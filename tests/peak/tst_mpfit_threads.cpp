// Concurrent fits on several threads share nothing: the results are the same as without concurrency.
#include "fitcase.h"

#include <QTest>

#include <cmath>
#include <latch>
#include <thread>

using namespace tarnis::testing;

namespace {

// Fit number k; each one is a different problem.
FitCase numbered(int k)
{
    FitCase fit(20 + k % 5, { 80.0 + k, 9.0 + 0.1 * k, 2.0, 1.0 }, {});
    fit.function = [k](std::span<const double> p, std::span<double> r, double**) {
        for (std::size_t i = 0; i < r.size(); ++i) {
            const double t = double(i);
            const double y = (100 + k) * std::exp(-0.5 * (t - 10) * (t - 10) / 9) + 5 + std::sin(t * k);
            r[i] = y - p[0] * std::exp(-0.5 * (t - p[1]) * (t - p[1]) / (p[2] * p[2])) - p[3];
        }
        return 0;
    };
    if (k % 2)
        fit.bound(0, 0.0, 90.0 + k).boundBelow(2, 1.0).boundBelow(3, 0.0);
    return fit;
}

} // namespace

class TestMpfitThreads : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void fitsAtOnceAsAlone()
    {
        constexpr int threads = 4;
        constexpr int fits = 60;
        std::vector<FitCase> alone;
        for (int k = 0; k < fits; ++k) {
            alone.push_back(numbered(k));
            QVERIFY(alone.back().run() > 0);
        }
        std::vector<std::vector<FitCase>> together(threads);
        {
            std::latch start(threads);
            std::vector<std::jthread> workers;
            for (auto& mine : together) {
                workers.emplace_back([&start, &mine] {
                    start.arrive_and_wait();
                    for (int k = 0; k < fits; ++k) {
                        mine.push_back(numbered(k));
                        mine.back().run();
                    }
                });
            }
        }
        for (const auto& mine : together) {
            for (std::size_t k = 0; k < alone.size(); ++k) {
                QCOMPARE(mine[k].status, alone[k].status);
                QCOMPARE(mine[k].x, alone[k].x);
                QCOMPARE(mine[k].covar, alone[k].covar);
                QCOMPARE(mine[k].result.nfev, alone[k].result.nfev);
            }
        }
    }

    void fitsWithinAFit()
    {
        FitCase plain = rosenbrockFrom(-1.2, 1.0);
        plain.run();
        FitCase nesting = rosenbrockFrom(-1.2, 1.0);
        const FitCase::Function function = nesting.function;
        nesting.function = [&](std::span<const double> x, std::span<double> r, double** dvec) {
            FitCase inner = numbered(3);
            inner.run();
            return function(x, r, dvec);
        };
        nesting.run();
        QCOMPARE(nesting.x, plain.x);
        QCOMPARE(nesting.status, plain.status);
    }
};

QTEST_GUILESS_MAIN(TestMpfitThreads)
#include "tst_mpfit_threads.moc"
