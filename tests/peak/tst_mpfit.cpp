// mpfit(): rejected arguments, statuses, reported results.
#include "fitcase.h"
#include "support/cases.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <stdexcept>

using namespace tarnis::testing;

namespace {

const std::vector<double> fourPoints { 1.0, 3.1, 4.9, 7.0 };

FitCase lineCase()
{
    return straightLine(fourPoints, { 0.0, 0.0 });
}

int refusedFunction(int, int, double*, double*, double**, void* data)
{
    ++*static_cast<int*>(data);
    return 0;
}

// The arguments of an invalid call.
struct InvalidCall {
    bool hasFunction = true;
    int m = 4;
    int npar = 2;
    bool hasParameters = true;
    std::vector<double> x { 1.0, 2.0 };
    std::vector<mp_par> pars = std::vector<mp_par>(2);
    mp_config config {};
};

using Spoil = void (*)(InvalidCall&);

void addRefusal(const char* name, int status, Spoil spoil)
{
    QTest::newRow(name) << status << spoil;
}

void boundParameter(InvalidCall& call, std::size_t j, double lower, double upper)
{
    call.pars[j].limited[0] = call.pars[j].limited[1] = 1;
    call.pars[j].limits[0] = lower;
    call.pars[j].limits[1] = upper;
}

} // namespace

class TestMpfit : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void refusesBadArguments_data()
    {
        addColumns<int, Spoil>("status", "spoil");
        addRefusal("no function", -17, [](InvalidCall& c) { c.hasFunction = false; });
        addRefusal("no residuals", -18, [](InvalidCall& c) { c.m = 0; });
        addRefusal("negative number of residuals", -18, [](InvalidCall& c) { c.m = -5; });
        addRefusal("no parameter vector", -18, [](InvalidCall& c) { c.hasParameters = false; });
        addRefusal("no parameters", -19, [](InvalidCall& c) { c.npar = 0; });
        addRefusal("negative number of parameters", -19, [](InvalidCall& c) { c.npar = -1; });
        addRefusal("all parameters held", -19, [](InvalidCall& c) { c.pars[0].fixed = c.pars[1].fixed = 1; });
        addRefusal("start below its bound", -21, [](InvalidCall& c) { boundParameter(c, 0, 1.5, 3.0); });
        addRefusal("start above its bound", -21, [](InvalidCall& c) { boundParameter(c, 1, 0.0, 1.5); });
        addRefusal("held parameter outside its bounds", -21, [](InvalidCall& c) {
            c.pars[0].fixed = 1;
            boundParameter(c, 0, 1.5, 3.0);
        });
        addRefusal("bounds equal", -22, [](InvalidCall& c) { boundParameter(c, 0, 1.0, 1.0); });
        addRefusal("bounds crossed", -21, [](InvalidCall& c) { boundParameter(c, 0, 3.0, 0.0); });
        addRefusal("not a number for ftol", -23, [](InvalidCall& c) { c.config.ftol = std::nan(""); });
        addRefusal("not a number for xtol", -23, [](InvalidCall& c) { c.config.xtol = std::nan(""); });
        addRefusal("not a number for gtol", -23, [](InvalidCall& c) { c.config.gtol = std::nan(""); });
        addRefusal("not a number for covtol", -23, [](InvalidCall& c) { c.config.covtol = std::nan(""); });
        addRefusal("not a number for stepfactor", -23, [](InvalidCall& c) { c.config.stepfactor = std::nan(""); });
        addRefusal("fewer residuals than parameters", -24, [](InvalidCall& c) { c.m = 1; });

        addRefusal("function before data", -17, [](InvalidCall& c) {
            c.hasFunction = false;
            c.m = 0;
        });
        addRefusal("data before parameters", -18, [](InvalidCall& c) { c.m = c.npar = 0; });
        addRefusal("free parameters before starts", -19, [](InvalidCall& c) {
            boundParameter(c, 0, 1.5, 3.0);
            c.pars[0].fixed = c.pars[1].fixed = 1;
        });
        addRefusal("start of a later parameter after the bounds of an earlier one", -22, [](InvalidCall& c) {
            boundParameter(c, 0, 1.0, 1.0);
            boundParameter(c, 1, 5.0, 6.0);
        });
        addRefusal("start of an earlier parameter before the bounds of a later one", -21, [](InvalidCall& c) {
            boundParameter(c, 0, 5.0, 6.0);
            boundParameter(c, 1, 2.0, 2.0);
        });
        addRefusal("bounds before tolerances", -22, [](InvalidCall& c) {
            boundParameter(c, 0, 1.0, 1.0);
            c.config.ftol = std::nan("");
        });
        addRefusal("tolerances before the number of residuals", -23, [](InvalidCall& c) {
            c.config.ftol = std::nan("");
            c.m = 1;
        });
    }
    void refusesBadArguments()
    {
        QFETCH(int, status);
        QFETCH(Spoil, spoil);
        InvalidCall call;
        spoil(call);
        const std::vector<double> before = call.x;
        mp_result result;
        std::memset(static_cast<void*>(&result), 0x5A, sizeof result);
        mp_result untouched = result;
        int calls = 0;
        const int answer = mpfit(call.hasFunction ? refusedFunction : nullptr, call.m, call.npar,
            call.hasParameters ? call.x.data() : nullptr, call.pars.data(), &call.config, &calls, &result);
        QCOMPARE(answer, status);
        QCOMPARE(calls, 0);
        QCOMPARE(call.x, before);
        QVERIFY(std::memcmp(&result, &untouched, sizeof result) == 0);
    }

    void acceptsWhatIsLegal()
    {
        // A start on a bound, equal bounds of a held parameter, one residual for each free parameter.
        FitCase fit = straightLine({ 1.0, 3.0 }, { 0.0, 5.0 });
        fit.bound(0, 0.0, 4.0).hold(1).bound(1, 5.0, 5.0);
        QVERIFY(fit.run() > 0);
        FitCase exact = straightLine({ 1.0, 3.0 }, { 0.0, 0.0 });
        QVERIFY(exact.run() > 0);
        QVERIFY(std::fabs(exact.x[0] - 1.0) < 1e-12 && std::fabs(exact.x[1] - 2.0) < 1e-12);
    }

    void takesDefaultsOneByOne()
    {
        FitCase plain = rosenbrockFrom(-1.2, 1.0);
        plain.run();
        FitCase spelt = rosenbrockFrom(-1.2, 1.0);
        spelt.configure([](mp_config& c) { c = { 1e-10, 1e-10, 1e-10, 2.220446e-16, 100.0, 1e-14, 200, 0, 1, 0, 0 }; });
        spelt.run();
        FitCase negative = rosenbrockFrom(-1.2, 1.0);
        negative.configure([](mp_config& c) { c = { -1.0, -1.0, -1.0, -1.0, -1.0, -1.0, -1, -1, -1, 0, -1 }; });
        negative.run();
        for (const FitCase* fit : { &spelt, &negative }) {
            QCOMPARE(fit->status, plain.status);
            QCOMPARE(fit->x, plain.x);
            QCOMPARE(fit->covar, plain.covar);
            QCOMPARE(fit->calls.size(), plain.calls.size());
            for (std::size_t i = 0; i < plain.calls.size(); ++i)
                QCOMPARE(fit->calls[i].x, plain.calls[i].x);
        }
    }

    void callsOnceMoreAtTheAnswer_data()
    {
        addColumns<bool, int, int>("record", "nprint", "more");
        QTest::newRow("no record") << false << 0 << 1;
        QTest::newRow("zeroed record") << true << 0 << 0;
        QTest::newRow("one") << true << 1 << 1;
        QTest::newRow("negative") << true << -3 << 1;
        QTest::newRow("seven") << true << 7 << 1;
    }
    void callsOnceMoreAtTheAnswer()
    {
        QFETCH(bool, record);
        QFETCH(int, nprint);
        QFETCH(int, more);
        FitCase without = rosenbrockFrom(-1.2, 1.0);
        without.configure([](mp_config&) {}).run();
        FitCase fit = rosenbrockFrom(-1.2, 1.0);
        if (record)
            fit.configure([=](mp_config& c) { c.nprint = nprint; });
        fit.run();
        QCOMPARE(fit.result.nfev, without.result.nfev + more);
        QCOMPARE(int(fit.calls.size()), fit.result.nfev);
        if (more)
            QCOMPARE(fit.calls.back().x, fit.x);
        QCOMPARE(fit.resid, without.resid);
    }

    void reportsALine()
    {
        FitCase fit = lineCase();
        QVERIFY(fit.run() > 0);
        // Normal equations of four points at t = 0..3.
        QVERIFY(std::fabs(fit.x[0] - 1.03) < 1e-7);
        QVERIFY(std::fabs(fit.x[1] - 1.98) < 1e-7);
        QCOMPARE(fit.result.status, fit.status);
        QCOMPARE(fit.result.npar, 2);
        QCOMPARE(fit.result.nfree, 2);
        QCOMPARE(fit.result.npegged, 0);
        QCOMPARE(fit.result.nfunc, 4);
        QCOMPARE(fit.result.nfev, int(fit.calls.size()));
        QCOMPARE(fit.result.niter, 3);
        QCOMPARE(fit.result.version, "1.1");
        QVERIFY(std::fabs(fit.result.orignorm - (1.0 + 3.1 * 3.1 + 4.9 * 4.9 + 49.0)) < 1e-12);
        QVERIFY(std::fabs(fit.result.bestnorm - fit.sumOfSquares()) < 1e-15);
        for (std::size_t i = 0; i < 4; ++i)
            QCOMPARE(fit.resid[i], fourPoints[i] - (fit.x[0] + fit.x[1] * double(i)));
        const double expected[] = { 0.7, -0.3, -0.3, 0.2 };
        for (std::size_t i = 0; i < 4; ++i)
            QVERIFY(std::fabs(fit.covar[i] - expected[i]) < 1e-7);
        QVERIFY(fit.covar[1] == fit.covar[2]);
        QCOMPARE(fit.xerror[0], std::sqrt(fit.covar[0]));
        QCOMPARE(fit.xerror[1], std::sqrt(fit.covar[3]));
    }

    void reportsAHeldParameter()
    {
        FitCase fit(4, { 0.0, 1.5, 0.0 }, [](std::span<const double> x, std::span<double> r, double**) {
            for (std::size_t i = 0; i < 4; ++i)
                r[i] = fourPoints[i] - (x[0] + x[1] * double(i) + x[2] * double(i * i));
            return 0;
        });
        fit.hold(1).run();
        QVERIFY(fit.status > 0);
        QCOMPARE(fit.x[1], 1.5);
        QCOMPARE(fit.result.npar, 3);
        QCOMPARE(fit.result.nfree, 2);
        for (const FitCase::Call& call : fit.calls)
            QCOMPARE(call.x[1], 1.5);
        // Sums over t = 0..3 of 1, t^2, t^4 are 4, 14, 98: the inverse has the determinant 196.
        const double expected[] = { 98.0 / 196, 0, -14.0 / 196, 0, 0, 0, -14.0 / 196, 0, 4.0 / 196 };
        for (std::size_t i = 0; i < 9; ++i)
            QVERIFY(std::fabs(fit.covar[i] - expected[i]) < 1e-7);
        QCOMPARE(fit.xerror[1], 0.0);
        QCOMPARE(fit.xerror[2], std::sqrt(fit.covar[8]));
    }

    void givesErrorsOfARankDeficientFit()
    {
        // Only the sum of the two is determined, and the second column is a copy of the first.
        FitCase fit(3, { 0.0, 0.0 }, [](std::span<const double> x, std::span<double> r, double** dvec) {
            for (std::size_t i = 0; i < 3; ++i) {
                r[i] = x[0] + x[1] - double(i);
                if (dvec)
                    dvec[0][i] = dvec[1][i] = 1.0;
            }
            return 0;
        });
        fit.side(0, 3).side(1, 3).run();
        QVERIFY(fit.status > 0);
        QVERIFY(std::fabs(fit.x[0] + fit.x[1] - 1.0) < 1e-9);
        QCOMPARE(int(std::count(fit.xerror.begin(), fit.xerror.end(), 0.0)), 1);
        QCOMPARE(int(std::count(fit.covar.begin(), fit.covar.end(), 0.0)), 3);
    }

    void takesNullRecords()
    {
        FitCase zeroed = lineCase();
        zeroed.run();
        FitCase bare = lineCase();
        bare.pars.clear();
        bare.run();
        QCOMPARE(bare.x, zeroed.x);
        QCOMPARE(bare.result.nfev, zeroed.result.nfev);

        std::vector<double> x { 0.0, 0.0 };
        const mp_func line = [](int, int, double* p, double* r, double**, void*) {
            for (std::size_t i = 0; i < 4; ++i)
                r[i] = fourPoints[i] - (p[0] + p[1] * double(i));
            return 0;
        };
        QCOMPARE(mpfit(line, 4, 2, x.data(), nullptr, nullptr, nullptr, nullptr), zeroed.status);
        QCOMPARE(x, zeroed.x);

        mp_result noArrays {};
        x = { 0.0, 0.0 };
        QCOMPARE(mpfit(line, 4, 2, x.data(), nullptr, nullptr, nullptr, &noArrays), zeroed.status);
        QCOMPARE(noArrays.bestnorm, zeroed.result.bestnorm);
        QVERIFY(!noArrays.resid && !noArrays.xerror && !noArrays.covar);
    }

    void endsWith_data()
    {
        using Change = std::function<void(mp_config&)>;
        addColumns<int, Change>("status", "change");
        constexpr double never = 1e-300;
        addCase("ftol", 1, Change([](mp_config& c) {
            c.ftol = 0.5;
            c.xtol = c.gtol = never;
        }));
        addCase("xtol", 2, Change([](mp_config& c) {
            c.xtol = 10.0;
            c.ftol = c.gtol = never;
        }));
        addCase("ftol and xtol", 3, Change([](mp_config& c) {
            c.ftol = 2.0;
            c.xtol = 100.0;
        }));
        addCase("gtol", 4, Change([](mp_config& c) { c.gtol = 1.0; }));
        addCase("maxiter", 5, Change([](mp_config& c) { c.maxiter = 3; }));
        addCase("maxfev", 5, Change([](mp_config& c) { c.maxfev = 5; }));
        addCase("ftol before maxfev", 1, Change([](mp_config& c) {
            c.ftol = 2.0;
            c.xtol = never;
            c.maxfev = 1;
        }));
        addCase("ftol too small", 6, Change([](mp_config& c) { c.ftol = c.xtol = c.gtol = never; }));
        addCase("ftol too small overrides maxfev", 6, Change([](mp_config& c) {
            c.ftol = c.xtol = c.gtol = never;
            c.maxfev = 1000000;
            c.maxiter = 1000000;
        }));
    }
    void endsWith()
    {
        QFETCH(int, status);
        QFETCH(std::function<void(mp_config&)>, change);
        // A gentle exponential with noise, so that neither the residuals nor the gradient can vanish.
        FitCase fit(6, { 2.0, 0.3 }, [](std::span<const double> x, std::span<double> r, double**) {
            constexpr double y[] = { 5.1, 3.0, 1.9, 1.05, 0.71, 0.42 };
            for (std::size_t i = 0; i < 6; ++i)
                r[i] = y[i] - x[0] * std::exp(-x[1] * double(i));
            return 0;
        });
        fit.configure(change);
        QCOMPARE(fit.run(), status);
        QCOMPARE(fit.result.status, status);
    }

    void looksAtMaxfevAfterAStep()
    {
        FitCase fit = rosenbrockFrom(-1.2, 1.0);
        fit.configure([](mp_config& c) {
            c.maxfev = 1;
            c.nprint = 1;
        });
        QCOMPARE(fit.run(), 5);
        // The start, two derivatives, the first step; the last call comes on top.
        QCOMPARE(fit.result.nfev, 5);
    }

    void stopsAfter200Iterations()
    {
        // Decreases forever, more and more slowly.
        FitCase fit(1, { 1.0 }, [](std::span<const double> x, std::span<double> r, double**) {
            r[0] = 1.0 / std::log(std::fabs(x[0]) + 2.0);
            return 0;
        });
        QCOMPARE(fit.run(), 5);
        QCOMPARE(fit.result.niter, 200);
    }

    void bestnormIsThatOfARejectedStep()
    {
        // The first step from here overshoots and is rejected; the limit ends the fit there.
        FitCase fit = rosenbrockFrom(-1.2, 1.0);
        fit.configure([](mp_config& c) { c.maxfev = 1; });
        QCOMPARE(fit.run(), 5);
        QCOMPARE(fit.calls.size(), std::size_t(4));
        const double start = fit.calls.front().norm;
        const double refused = fit.calls.back().norm;
        QVERIFY(refused > start);
        QCOMPARE(fit.x, (std::vector { -1.2, 1.0 }));
        QVERIFY(std::fabs(fit.result.bestnorm - refused * refused) <= 1e-12 * refused * refused);
        QCOMPARE(fit.resid, (std::vector { 10.0 * (1.0 - 1.2 * 1.2), 2.2 }));

        // Without a limit it is that of the result.
        FitCase whole = rosenbrockFrom(-1.2, 1.0);
        whole.run();
        QCOMPARE(whole.result.bestnorm, std::max(whole.sumOfSquares(), 0.0));
    }

    void userStops_data()
    {
        QTest::addColumn<int>("atCall");
        QTest::newRow("at the first call") << 1;
        QTest::newRow("in the first column") << 2;
        QTest::newRow("in the second column") << 3;
        QTest::newRow("in a later Jacobian") << 6;
    }
    void userStops()
    {
        QFETCH(int, atCall);
        FitCase fit = lineCase();
        const FitCase::Function line = fit.function;
        int calls = 0;
        fit.function = [&](std::span<const double> x, std::span<double> r, double** dvec) {
            line(x, r, dvec);
            return ++calls == atCall ? -5 : 0;
        };
        QCOMPARE(fit.run(), 0);
        QCOMPARE(calls, atCall);
        QCOMPARE(fit.x, (std::vector { 0.0, 0.0 }));
        QCOMPARE(fit.result.nfev, 0);
        QCOMPARE(fit.result.version[0], '\0');
        QCOMPARE(fit.resid.front(), -77.0);
        QCOMPARE(fit.covar.front(), -77.0);
        QCOMPARE(fit.xerror.front(), -77.0);
    }

    void userStopsOnATrialStep()
    {
        FitCase fit = lineCase();
        const FitCase::Function line = fit.function;
        int calls = 0;
        // Calls: start, two columns, step, two columns, step.
        fit.function = [&](std::span<const double> x, std::span<double> r, double** dvec) {
            line(x, r, dvec);
            return ++calls == 7 ? -16 : 0;
        };
        QCOMPARE(fit.run(), -16);
        QCOMPARE(calls, 7);
        QCOMPARE(fit.result.status, -16);
        QCOMPARE(fit.result.nfev, 7);
        QCOMPARE(fit.result.niter, 2);
        QCOMPARE(fit.x, fit.calls[3].x);
        for (std::size_t i = 0; i < 4; ++i)
            QCOMPARE(fit.resid[i], fourPoints[i] - (fit.x[0] + fit.x[1] * double(i)));
        QVERIFY(fit.xerror[0] > 0.0);
        QCOMPARE(fit.result.version, "1.1");
    }

    void lastCallCannotStop()
    {
        FitCase fit = lineCase();
        fit.run();
        const int usual = int(fit.calls.size());
        FitCase refusing = lineCase();
        const FitCase::Function line = refusing.function;
        int calls = 0;
        refusing.function = [&](std::span<const double> x, std::span<double> r, double** dvec) {
            line(x, r, dvec);
            return ++calls == usual ? -1 : 0;
        };
        QCOMPARE(refusing.run(), fit.status);
        QCOMPARE(refusing.x, fit.x);
    }

    void boundsTheFirstStep()
    {
        const auto firstStep = [](double factor) {
            FitCase fit = straightLine({ 1000.0, 1000.0, 1000.0 }, { 1.0, 0.0 });
            fit.configure([=](mp_config& c) { c.stepfactor = factor; }).run();
            return fit.calls[3].x;
        };
        // The scale is that of the columns, sqrt(3) and sqrt(5): the first step is as long as the scaled start,
        // |sqrt(3)|.
        const std::vector<double> near = firstStep(1.0);
        const double length = std::hypot(std::sqrt(3.0) * (near[0] - 1.0), std::sqrt(5.0) * near[1]);
        QVERIFY(std::fabs(length - std::sqrt(3.0)) < 0.1 * std::sqrt(3.0) + 1e-6);
        const std::vector<double> far = firstStep(1e6);
        QVERIFY(std::fabs(far[0] - 1000.0) < 1e-3);
    }

    void takesTheCallersScale()
    {
        // Unit scale: the first bound is factor * |x| in the parameters themselves.
        FitCase fit = straightLine({ 1000.0, 1000.0, 1000.0 }, { 3.0, 4.0 });
        fit.configure([](mp_config& c) {
            c.douserscale = 1;
            c.stepfactor = 1.0;
        });
        QVERIFY(fit.run() > 0);
        const std::vector<double>& first = fit.calls[3].x;
        QVERIFY(std::fabs(std::hypot(first[0] - 3.0, first[1] - 4.0) - 5.0) < 0.5 + 1e-6);
        QVERIFY(std::fabs(fit.x[0] - 1000.0) < 1e-6 && std::fabs(fit.x[1]) < 1e-6);
    }

    void seesOnlyCopiesOfTheParameters()
    {
        FitCase plain = lineCase();
        plain.run();
        struct OverwritingFunction {
            static int residuals(int m, int npar, double* x, double* r, double**, void*)
            {
                for (int i = 0; i < m; ++i)
                    r[i] = fourPoints[std::size_t(i)] - (x[0] + x[1] * i);
                std::fill_n(x, npar, 1e9);
                return 0;
            }
        };
        std::vector<double> x { 0.0, 0.0 };
        QCOMPARE(
            mpfit(OverwritingFunction::residuals, 4, 2, x.data(), nullptr, nullptr, nullptr, nullptr), plain.status);
        QCOMPARE(x, plain.x);
    }

    void letsExceptionsThrough()
    {
        FitCase fit = lineCase();
        fit.function = [](std::span<const double>, std::span<double>, double**) -> int {
            throw std::runtime_error("no");
        };
        QVERIFY_THROWS_EXCEPTION(std::runtime_error, fit.run());
        QCOMPARE(fit.x, (std::vector { 0.0, 0.0 }));
    }
};

QTEST_GUILESS_MAIN(TestMpfit)
#include "tst_mpfit.moc"
