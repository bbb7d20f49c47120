// Finite differences and analytic derivatives, and the comparison of the two on standard output.
#include "fitcase.h"

#include <QTest>

#include <cmath>

using namespace tarnis::testing;

namespace {

const double eps = std::sqrt(2.220446e-16);

// One parameter, residual x^3 - 10: the fit is stopped after its first step, so that one Jacobian is seen.
FitCase cube(double start)
{
    FitCase fit(1, { start }, [](std::span<const double> x, std::span<double> r, double** dvec) {
        r[0] = x[0] * x[0] * x[0] - 10.0;
        if (dvec && dvec[0])
            dvec[0][0] = 3.0 * x[0] * x[0];
        return 0;
    });
    fit.configure([](mp_config& c) { c.maxiter = 1; });
    return fit;
}

struct Difference {
    double start;
    int side;
    double step;
    double relstep;
    double upper; ///< infinite: none
    std::vector<double> points; ///< points at which the residuals of the column are requested, in order
};

void addDifference(const char* name, const Difference& d)
{
    QTest::newRow(name) << d;
}

constexpr double none = HUGE_VAL;

// Two residuals a * t - y with t = 1, 2 and a second parameter without influence; differences are exact with a step of
// 1/1024. The user's derivatives are as given.
FitCase comparedLine(std::array<double, 2> userDerivatives)
{
    FitCase fit(2, { 1.0, 7.0 }, [=](std::span<const double> x, std::span<double> r, double** dvec) {
        r[0] = x[0] - 3.0;
        r[1] = 2.0 * x[0] + 0.25;
        for (std::size_t j = 0; dvec && j < 2; ++j) {
            if (dvec[j]) {
                dvec[j][0] = j == 0 ? userDerivatives[0] : 0.0;
                dvec[j][1] = j == 0 ? userDerivatives[1] : 0.0;
            }
        }
        return 0;
    });
    for (mp_par& par : fit.pars)
        par.step = 1.0 / 1024;
    fit.configure([](mp_config& c) { c.maxiter = 1; });
    return fit;
}

const std::string header = "FJAC DEBUG BEGIN\n"
                           "#        IPNT       FUNC    DERIV_U    DERIV_N   DIFF_ABS   DIFF_REL\n";

} // namespace

Q_DECLARE_METATYPE(Difference)

class TestMpfitDerivatives : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void takesTheDifferenceAt_data()
    {
        QTest::addColumn<Difference>("d");
        addDifference("forward, automatic step", { 2.0, 0, 0.0, 0.0, none, { 2.0 + eps * 2.0 } });
        addDifference("forward at a negative value", { -2.0, 0, 0.0, 0.0, none, { -2.0 + eps * 2.0 } });
        addDifference("forward at zero", { 0.0, 0, 0.0, 0.0, none, { eps } });
        addDifference("right side", { 2.0, 1, 0.5, 0.0, none, { 2.5 } });
        addDifference("left side", { 2.0, -1, 0.5, 0.0, none, { 1.5 } });
        addDifference("left side, automatic step", { 2.0, -1, 0.0, 0.0, none, { 2.0 - eps * 2.0 } });
        addDifference("both sides", { 2.0, 2, 0.5, 0.0, none, { 2.5, 1.5 } });
        addDifference("absolute step", { 2.0, 0, 0.25, 0.0, none, { 2.25 } });
        addDifference("relative step", { 2.0, 0, 0.0, 0.125, none, { 2.25 } });
        addDifference("relative step of a negative value", { -2.0, 0, 0.0, 0.125, none, { -1.75 } });
        addDifference("relative beats absolute", { 2.0, 0, 0.5, 0.125, none, { 2.25 } });
        addDifference("relative at zero falls back to automatic", { 0.0, 0, 0.5, 0.125, none, { eps } });
        addDifference("negative steps are none", { 2.0, 0, -0.5, -0.5, none, { 2.0 + eps * 2.0 } });
        addDifference("a step below the upper bound", { 2.0, 0, 0.5, 0.0, 2.5, { 2.5 } });
        addDifference("less than a step below it", { 2.0, 0, 0.5, 0.0, 2.25, { 1.5 } });
        addDifference("on it", { 2.0, 0, 0.5, 0.0, 2.0, { 1.5 } });
        addDifference("on it, to the right by order", { 2.0, 1, 0.5, 0.0, 2.0, { 2.5 } });
        addDifference("on it, to both sides by order", { 2.0, 2, 0.5, 0.0, 2.0, { 2.5, 1.5 } });
    }
    void takesTheDifferenceAt()
    {
        QFETCH(Difference, d);
        FitCase fit = cube(d.start);
        fit.side(0, d.side);
        fit.pars[0].step = d.step;
        fit.pars[0].relstep = d.relstep;
        if (d.upper != none)
            fit.boundAbove(0, d.upper);
        QVERIFY(fit.run() > 0);
        QVERIFY(fit.calls.size() >= d.points.size() + 1);
        for (std::size_t i = 0; i < d.points.size(); ++i) {
            QCOMPARE(fit.calls[i + 1].x[0], d.points[i]);
            QVERIFY(fit.calls[i + 1].x[0] == d.points[i]);
        }
    }

    void usesEpsfcn()
    {
        FitCase coarse = cube(2.0);
        coarse.configure([](mp_config& c) { c.epsfcn = 1e-6; }).run();
        QVERIFY(coarse.calls[1].x[0] == 2.0 + std::sqrt(1e-6) * 2.0);
        // Below the machine's precision it has no effect.
        FitCase fine = cube(2.0);
        fine.configure([](mp_config& c) { c.epsfcn = 1e-20; }).run();
        QVERIFY(fine.calls[1].x[0] == 2.0 + eps * 2.0);
    }

    void dividesByTheWidth()
    {
        // With one parameter and one residual the Gauss-Newton step is f / f', which shows the derivative that was
        // used.
        const auto derivative = [](int side) {
            FitCase fit = cube(2.0);
            fit.pars[0].step = 0.5;
            fit.side(0, side).run();
            const double trial = fit.calls[fit.calls.size() - 1].x[0];
            return -(2.0 * 2.0 * 2.0 - 10.0) / (trial - 2.0);
        };
        QCOMPARE(derivative(1), (2.5 * 2.5 * 2.5 - 8.0) / 0.5);
        QCOMPARE(derivative(-1), (8.0 - 1.5 * 1.5 * 1.5) / 0.5);
        QCOMPARE(derivative(2), (2.5 * 2.5 * 2.5 - 1.5 * 1.5 * 1.5) / 1.0);
        QCOMPARE(derivative(3), 12.0);
        QCOMPARE(derivative(0), derivative(1));
    }

    void asksForAnalyticColumnsOnce()
    {
        FitCase fit = rosenbrockFrom(-1.2, 1.0);
        fit.side(0, 3).side(1, 3).configure([](mp_config& c) { c.maxiter = 1; }).run();
        // The start, one call for both columns, the step.
        QCOMPARE(fit.calls.size(), std::size_t(3));
        QVERIFY(fit.calls[0].columns.empty());
        QCOMPARE(fit.calls[1].columns, (std::vector { true, true }));
        QCOMPARE(fit.calls[1].x, fit.calls[0].x);
        QVERIFY(fit.calls[2].columns.empty());
        QCOMPARE(fit.result.nfev, 3);
    }

    void mixesAnalyticAndNumericalColumns()
    {
        FitCase fit = straightLine({ 1.0, 3.1, 4.9, 7.0 }, { 0.0, 0.0 });
        fit.side(1, 3).configure([](mp_config& c) { c.maxiter = 1; }).run();
        QCOMPARE(fit.calls.size(), std::size_t(4));
        QCOMPARE(fit.calls[1].columns, (std::vector { false, true }));
        QVERIFY(fit.calls[2].columns.empty());
        QVERIFY(fit.calls[2].x[0] == eps);

        FitCase held = straightLine({ 1.0, 3.1, 4.9, 7.0 }, { 0.0, 0.0 });
        held.hold(1).side(0, 3).side(1, 3).run();
        QCOMPARE(held.calls[1].columns, (std::vector { true, false }));
    }

    void forgottenColumnIsZero()
    {
        FitCase fit = straightLine({ 1.0, 3.1, 4.9, 7.0 }, { 0.0, 2.0 });
        const FitCase::Function line = fit.function;
        fit.function = [&](std::span<const double> x, std::span<double> r, double** dvec) {
            if (dvec)
                dvec[1] = nullptr;
            return line(x, r, dvec);
        };
        fit.side(0, 3).side(1, 3).run();
        QVERIFY(fit.status > 0);
        QCOMPARE(fit.x[1], 2.0);
        QCOMPARE(fit.xerror[1], 0.0);
        QVERIFY(std::fabs(fit.x[0] - 1.0) < 1e-9);
    }

    void analyticFitReachesTheSameAnswer()
    {
        FitCase numerical = rosenbrockFrom(-1.2, 1.0);
        numerical.run();
        FitCase analytic = rosenbrockFrom(-1.2, 1.0);
        analytic.side(0, 3).side(1, 3).run();
        for (const FitCase* fit : { &numerical, &analytic })
            QVERIFY(std::fabs(fit->x[0] - 1.0) < 1e-9 && std::fabs(fit->x[1] - 1.0) < 1e-9);
    }

    void printsTheComparison()
    {
        FitCase fit = comparedLine({ 1.25, 2.0 });
        fit.side(0, 3).pars[0].deriv_debug = 1;
        QCOMPARE(standardOutputOf([&] { fit.run(); }),
            header
                + "FJAC PARM 0\n"
                  "            0         -2       1.25          1       0.25        0.2\n"
                  "            1       2.25          2          2          0          0\n"
                  "FJAC DEBUG END\n");
    }

    void printsOnlyWhatIsOffByMoreThanTheTolerances()
    {
        const auto rows = [](double abstol, double reltol, std::array<double, 2> user) {
            FitCase fit = comparedLine(user);
            fit.pars[0].deriv_debug = 1;
            fit.pars[0].deriv_abstol = abstol;
            fit.pars[0].deriv_reltol = reltol;
            const std::string text = standardOutputOf([&] { fit.run(); });
            const std::string begin = header + "FJAC PARM 0\n";
            const std::string end = "FJAC DEBUG END\n";
            if (!text.starts_with(begin) || !text.ends_with(end))
                return std::string("no frame: ") + text;
            return text.substr(begin.size(), text.size() - begin.size() - end.size());
        };
        const std::string first = "            0         -2       1.25          1       0.25        0.2\n";
        const std::string second = "            1       2.25          3          2          1     0.3333\n";
        QCOMPARE(rows(0.5, 0.0, { 1.25, 3.0 }), second);
        QCOMPARE(rows(0.25, 0.0, { 1.25, 3.0 }), second); // the bound itself is within
        QCOMPARE(rows(0.2, 0.0, { 1.25, 3.0 }), first + second);
        QCOMPARE(rows(0.0, 0.25, { 1.25, 3.0 }), second);
        QCOMPARE(rows(0.1, 0.25, { 1.25, 3.0 }), second);
        QCOMPARE(rows(1.0, 1.0, { 1.25, 3.0 }), std::string());
        // No user derivative: nothing to divide by.
        QCOMPARE(rows(0.0, 0.0, { 0.0, 2.0 }),
            std::string("            0         -2          0          1         -1          0\n"
                        "            1       2.25          2          2          0          0\n"));
    }

    void printsAllParametersUnderDebug()
    {
        // The second parameter has no influence: both derivatives zero, no rows. The index is that of all parameters.
        FitCase fit = comparedLine({ 1.0, 2.0 });
        fit.pars[0].deriv_debug = fit.pars[1].deriv_debug = 1;
        QCOMPARE(standardOutputOf([&] { fit.run(); }),
            header
                + "FJAC PARM 0\n"
                  "            0         -2          1          1          0          0\n"
                  "            1       2.25          2          2          0          0\n"
                  "FJAC PARM 1\n"
                  "FJAC DEBUG END\n");

        FitCase held = comparedLine({ 1.0, 2.0 });
        held.hold(0).pars[1].deriv_debug = 1;
        QCOMPARE(standardOutputOf([&] { held.run(); }), header + "FJAC PARM 1\nFJAC DEBUG END\n");
    }

    void usesTheNumericalColumnUnderDebug()
    {
        FitCase numerical = comparedLine({ 0.0, 0.0 });
        numerical.configure([](mp_config& c) { c.maxiter = 0; }).run();
        FitCase debugged = comparedLine({ 100.0, -100.0 });
        debugged.side(0, 3).pars[0].deriv_debug = 1;
        debugged.configure([](mp_config& c) { c.maxiter = 0; });
        standardOutputOf([&] { debugged.run(); });
        QCOMPARE(debugged.x, numerical.x);
        QCOMPARE(debugged.status, numerical.status);
        // One call more for the user's columns of each Jacobian; side 3 is taken forward.
        QVERIFY(debugged.result.nfev > numerical.result.nfev);
        QCOMPARE(debugged.calls[1].columns, (std::vector { true, false }));
        QCOMPARE(debugged.calls[2].x[0], 1.0 + 1.0 / 1024);
    }

    void printsOncePerJacobian()
    {
        FitCase fit = rosenbrockFrom(-1.2, 1.0);
        fit.pars[0].deriv_debug = 1;
        const std::string text = standardOutputOf([&] { fit.run(); });
        std::size_t begins = 0;
        for (std::size_t at = text.find("BEGIN"); at != std::string::npos; at = text.find("BEGIN", at + 1))
            ++begins;
        std::size_t jacobians = 0;
        for (const FitCase::Call& call : fit.calls)
            jacobians += call.columns.empty() ? 0 : 1;
        QVERIFY(jacobians > 2);
        QCOMPARE(begins, jacobians);
    }

    void printsNothingForHeldParameters()
    {
        FitCase fit = comparedLine({ 1.0, 2.0 });
        fit.hold(1).pars[1].deriv_debug = 1;
        QCOMPARE(standardOutputOf([&] { fit.run(); }), std::string());
    }

    void stopsWithoutAnEndLine()
    {
        FitCase fit = comparedLine({ 1.0, 2.0 });
        fit.pars[0].deriv_debug = 1;
        const FitCase::Function line = fit.function;
        int calls = 0;
        fit.function = [&](std::span<const double> x, std::span<double> r, double** dvec) {
            line(x, r, dvec);
            return ++calls == 3 ? -1 : 0;
        };
        QCOMPARE(standardOutputOf([&] { fit.run(); }), header);
        QCOMPARE(fit.status, 0);
    }
};

QTEST_GUILESS_MAIN(TestMpfitDerivatives)
#include "tst_mpfit_derivatives.moc"
