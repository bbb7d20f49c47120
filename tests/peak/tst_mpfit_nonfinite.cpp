// Numbers that are not finite, huge or degenerate: every fit ends with the expected status.
#include "fitcase.h"
#include "support/cases.h"
#include "support/support.h"

#include <QTest>

#include <climits>
#include <cmath>
#include <limits>

using namespace tarnis::testing;

namespace {

const double nan_ = std::nan("");
constexpr double infinity = std::numeric_limits<double>::infinity();

// An exponential decay whose residual number `at` is replaced in the calls from `from` on.
FitCase spoiltDecay(double bad, int at, std::size_t from)
{
    FitCase fit(5, { 2.0, 0.3 }, {});
    auto calls = std::make_shared<std::size_t>(0);
    fit.function = [=](std::span<const double> x, std::span<double> r, double**) {
        constexpr double y[] = { 5.1, 3.0, 1.9, 1.05, 0.71 };
        for (std::size_t i = 0; i < 5; ++i)
            r[i] = y[i] - x[0] * std::exp(-x[1] * double(i));
        if (++*calls >= from)
            r[std::size_t(at)] = bad;
        return 0;
    };
    return fit;
}

// Spoils a residual, a derivative, a start, a bound or a step at random.
double spoilt(double value, std::mt19937_64& random)
{
    const double values[] = { nan_, infinity, -infinity, 1e308, -1e308, 1e160, 1e-320, 0.0, value, value, value };
    return values[random() % std::size(values)];
}

} // namespace

class TestMpfitNonFinite : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void endsWithLimitReached_data()
    {
        addColumns<double, std::size_t>("bad", "from");
        QTest::newRow("NaN from the start") << nan_ << std::size_t(1);
        QTest::newRow("infinity from the start") << infinity << std::size_t(1);
        QTest::newRow("NaN in the Jacobian") << nan_ << std::size_t(2);
        QTest::newRow("infinity in the Jacobian") << -infinity << std::size_t(2);
        QTest::newRow("NaN in the second column") << nan_ << std::size_t(3);
        QTest::newRow("NaN in a later Jacobian") << nan_ << std::size_t(6);
    }
    void endsWithLimitReached()
    {
        QFETCH(double, bad);
        QFETCH(std::size_t, from);
        for (int at = 0; at < 5; ++at) {
            FitCase fit = spoiltDecay(bad, at, from);
            QCOMPARE(fit.run(), 5);
            QCOMPARE(fit.result.status, 5);
            QVERIFY(fit.result.nfev < 20);
            QVERIFY(std::isfinite(fit.x[0]) && std::isfinite(fit.x[1]));
        }
    }

    void refusesANonFiniteTrialAsLmdifDoes_data()
    {
        QTest::addColumn<double>("bad");
        QTest::newRow("NaN") << nan_;
        QTest::newRow("infinity") << infinity;
    }
    void refusesANonFiniteTrialAsLmdifDoes()
    {
        // The logarithm is undefined at the first step; shorter steps converge.
        QFETCH(double, bad);
        FitCase fit(1, { 0.01 }, [=](std::span<const double> x, std::span<double> r, double**) {
            r[0] = x[0] > 0.0 ? std::log(x[0]) - std::log(1e-4) : bad;
            return 0;
        });
        QVERIFY(fit.run() > 0);
        QVERIFY(std::any_of(fit.calls.begin(), fit.calls.end(), [](const FitCase::Call& c) { return c.x[0] <= 0.0; }));
        QVERIFY(std::fabs(fit.x[0] / 1e-4 - 1.0) < 1e-6);
    }

    void finiteCheckStops_data() { endsWithLimitReached_data(); }
    void finiteCheckStops()
    {
        QFETCH(double, bad);
        QFETCH(std::size_t, from);
        for (int at = 0; at < 5; ++at) {
            FitCase fit = spoiltDecay(bad, at, from);
            fit.configure([](mp_config& c) { c.nofinitecheck = 1; });
            QCOMPARE(fit.run(), -16);
            QCOMPARE(fit.x, (std::vector { 2.0, 0.3 }));
            QCOMPARE(fit.result.nfev, 0);
            QCOMPARE(fit.result.version[0], '\0');
            QCOMPARE(fit.resid[0], -77.0);
        }
    }

    void finiteCheckLeavesAGoodFitAlone()
    {
        FitCase plain = rosenbrockFrom(-1.2, 1.0);
        plain.configure([](mp_config&) {}).run();
        FitCase checked = rosenbrockFrom(-1.2, 1.0);
        checked.configure([](mp_config& c) { c.nofinitecheck = 1; }).run();
        QCOMPARE(checked.status, plain.status);
        QCOMPARE(checked.x, plain.x);
        FitCase off = spoiltDecay(nan_, 0, 1);
        off.configure([](mp_config& c) { c.nofinitecheck = -1; });
        QCOMPARE(off.run(), 5);
    }

    void hugeResidualsEnd()
    {
        for (const double size : { 1e150, 1e155, 1e160, 1e200, 1e300, 1e308 }) {
            FitCase fit(3, { 1.0, 2.0 }, [=](std::span<const double> x, std::span<double> r, double**) {
                r[0] = size * (x[0] * x[0] - 2.0);
                r[1] = size * (x[0] * x[1] - 1.0);
                r[2] = size * 0.1;
                return 0;
            });
            QVERIFY(fit.run() > 0);
            QVERIFY(fit.result.nfev < 2000);
        }
    }

    // Start and slope are finite, their product is not.
    void anInfiniteNormOfTheParametersIsNoConvergence()
    {
        FitCase fit(2, { 1e160 }, [](std::span<const double> x, std::span<double> r, double**) {
            r[0] = x[0] == 1e160 ? 1.0 : 1e305;
            r[1] = 0.0;
            return 0;
        });
        QCOMPARE(fit.run(), 5);
        QCOMPARE(fit.x[0], 1e160);
    }

    void scaledResidualsGiveTheSameFit_data()
    {
        QTest::addColumn<double>("size");
        QTest::newRow("1e-150") << 1e-150;
        QTest::newRow("1e-100") << 1e-100;
        QTest::newRow("1e100") << 1e100;
        QTest::newRow("1e140") << 1e140;
    }
    void scaledResidualsGiveTheSameFit()
    {
        QFETCH(double, size);
        FitCase fit = straightLine({ 1.0, 3.1, 4.9, 7.0 }, { 1.0, 1.0 });
        const FitCase::Function line = fit.function;
        fit.function = [=](std::span<const double> x, std::span<double> r, double** dvec) {
            line(x, r, dvec);
            for (double& v : r)
                v *= size;
            return 0;
        };
        QVERIFY(fit.run() > 0);
        QVERIFY(std::fabs(fit.x[0] - 1.03) < 1e-6 && std::fabs(fit.x[1] - 1.98) < 1e-6);
    }

    void nonFiniteStarts_data()
    {
        addColumns<double, bool>("start", "bounded");
        QTest::newRow("NaN") << nan_ << false;
        QTest::newRow("infinity") << infinity << false;
        QTest::newRow("NaN between bounds") << nan_ << true;
        QTest::newRow("largest") << std::numeric_limits<double>::max() << false;
    }
    void nonFiniteStarts()
    {
        QFETCH(double, start);
        QFETCH(bool, bounded);
        for (const int side : { 0, 1, -1, 2, 3 }) {
            FitCase fit = straightLine({ 1.0, 3.1, 4.9, 7.0 }, { start, 1.0 });
            fit.side(0, side).side(1, side);
            if (bounded)
                fit.bound(0, -5.0, 5.0);
            QVERIFY(fit.run() > 0);
            QVERIFY(fit.result.nfev < 5000);
            // A parameter without influence and without a number.
            FitCase idle = straightLine({ 1.0, 3.1, 4.9, 7.0 }, { 0.0, 0.0, start });
            idle.function = [](std::span<const double> x, std::span<double> r, double** dvec) {
                for (std::size_t i = 0; i < 4; ++i) {
                    r[i] = 1.0 + double(i) - x[0] - std::cos(x[1]) * double(i);
                    for (std::size_t j = 0; dvec && j < 3; ++j)
                        dvec[j][i] = j == 0 ? -1.0 : j == 1 ? std::sin(x[1]) * double(i) : 0.0;
                }
                return 0;
            };
            idle.side(0, side).side(1, side).side(2, side);
            QVERIFY(idle.run() > 0);
            QVERIFY(idle.result.nfev < 5000);
        }
    }

    void constantResidualsConverge()
    {
        FitCase fit(3, { 1.0, 2.0 }, [](std::span<const double>, std::span<double> r, double**) {
            std::fill(r.begin(), r.end(), 3.0);
            return 0;
        });
        QCOMPARE(fit.run(), 4);
        QCOMPARE(fit.x, (std::vector { 1.0, 2.0 }));
        QCOMPARE(fit.result.bestnorm, 27.0);
        QCOMPARE(fit.xerror, (std::vector { 0.0, 0.0 }));
        QCOMPARE(fit.covar, std::vector<double>(4));
    }

    void zeroResidualsConverge()
    {
        FitCase fit = straightLine({ 1.0, 2.0, 3.0 }, { 1.0, 1.0 });
        QCOMPARE(fit.run(), 4);
        QCOMPARE(fit.result.bestnorm, 0.0);
        QCOMPARE(fit.result.niter, 1);
    }

    void hugeCountsAreRefused()
    {
        // Nothing may be accessed: x has only one element.
        double x = 1.0;
        const mp_func never = [](int, int, double*, double*, double**, void*) { return -1; };
        QCOMPARE(mpfit(never, INT_MAX, -1, &x, nullptr, nullptr, nullptr, nullptr), -19);
        QCOMPARE(mpfit(never, INT_MIN, 1, &x, nullptr, nullptr, nullptr, nullptr), -18);
        const int status = mpfit(never, INT_MAX / 16, 1, &x, nullptr, nullptr, nullptr, nullptr);
        QVERIFY(status == 0 || status == -20);
    }

    void everySpoiltFitEnds()
    {
        std::mt19937_64 random = seededGenerator(51);
        std::uniform_real_distribution<double> uniform(-3.0, 3.0);
        for (int i = 0; i < 20000; ++i) {
            const std::size_t n = 1 + random() % 3;
            std::vector<double> start(n);
            for (double& x : start)
                x = spoilt(uniform(random), random);
            std::mt19937_64 inner(random());
            FitCase fit(int(n + random() % 4), start,
                [inner](std::span<const double> x, std::span<double> r, double** dvec) mutable {
                    for (std::size_t k = 0; k < r.size(); ++k) {
                        r[k] = 0.0;
                        for (std::size_t j = 0; j < x.size(); ++j) {
                            r[k] += std::sin(double(k + 1) * x[j]) + x[j] * double(j);
                            if (dvec && dvec[j])
                                dvec[j][k] = spoilt(std::cos(double(k + 1) * x[j]), inner);
                        }
                        if (inner() % 10 == 0)
                            r[k] = spoilt(r[k], inner);
                    }
                    return inner() % 500 == 0 ? -3 : 0;
                });
            for (mp_par& par : fit.pars) {
                par.side = int(random() % 5) - 1;
                par.limited[0] = random() % 2;
                par.limited[1] = random() % 2;
                par.limits[0] = spoilt(-3.5, random);
                par.limits[1] = spoilt(3.5, random);
                par.step = spoilt(0.0, random);
                par.relstep = spoilt(0.0, random);
                par.fixed = random() % 8 == 0;
            }
            fit.configure([&](mp_config& c) {
                c.maxiter = int(random() % 50);
                c.douserscale = random() % 2;
                c.nofinitecheck = random() % 4 == 0;
                c.stepfactor = spoilt(1.0, random);
                c.ftol = spoilt(1e-6, random);
            });
            fit.run();
            QVERIFY(fit.calls.size() < 100000);
        }
    }
};

QTEST_GUILESS_MAIN(TestMpfitNonFinite)
#include "tst_mpfit_nonfinite.moc"
