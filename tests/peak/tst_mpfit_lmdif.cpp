// Without bounds the fit is that of lmdif: every call at the same point, to the last bit. On the problems of More,
// Garbow and Hillstrom, with their published minima.
#include "mghproblems.h"
#include "support/cases.h"

#include <QTest>

#include <algorithm>
#include <cmath>

using namespace tarnis::testing;

namespace {

// The fit with central differences of an absolute step; its sum of squares.
double minimumWithStep(const LeastSquaresProblem& problem, double step)
{
    std::vector<mp_par> pars(problem.start.size());
    for (mp_par& par : pars) {
        par.side = 2;
        par.step = step;
    }
    const mp_func residuals = [](int m, int npar, double* x, double* fvec, double**, void* data) {
        static_cast<const LeastSquaresProblem*>(data)->residuals({ x, std::size_t(npar) }, { fvec, std::size_t(m) });
        return 0;
    };
    LeastSquaresProblem copy = problem;
    mp_result result {};
    mpfit(residuals, problem.m, int(pars.size()), copy.start.data(), pars.data(), nullptr, &copy, &result);
    return result.bestnorm;
}

} // namespace

class TestMpfitLmdif : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void goesTheSameWay_data()
    {
        addColumns<std::size_t, double, double>("index", "factor", "tolerance");
        const std::vector<MghProblem> problems = mghProblems();
        for (std::size_t i = 0; i < problems.size(); ++i) {
            for (const double factor : { 1.0, 10.0, 100.0 }) {
                for (const double tolerance : { 1e-10, 1e-15 }) {
                    QTest::addRow("%s, start times %g, tolerances %g", problems[i].fit.name.c_str(), factor, tolerance)
                        << i << factor << tolerance;
                }
            }
        }
    }
    void goesTheSameWay()
    {
        QFETCH(std::size_t, index);
        QFETCH(double, factor);
        QFETCH(double, tolerance);
        LeastSquaresProblem problem = mghProblems()[index].fit;
        for (double& x : problem.start)
            x *= factor;
        const FitSettings settings { .tolerance = tolerance, .epsfcn = lmdifPrecision, .maxfev = 3000 };
        const FitReport ours = runMpfit(problem, settings);
        const FitReport theirs = runLmdif(problem, settings);
        QCOMPARE(ours.status, theirs.status);
        QCOMPARE(ours.nfev, theirs.nfev);
        QCOMPARE(ours.calls.size(), theirs.calls.size());
        QVERIFY(ours.calls == theirs.calls);
        QVERIFY(ours.x == theirs.x);
        // The covariance is taken with the same rank tolerance from the same factors.
        for (std::size_t j = 0; j < ours.error.size(); ++j)
            QVERIFY(ours.error[j] == theirs.error[j] || std::isnan(theirs.error[j]));
    }

    void reachesAPublishedMinimum_data()
    {
        QTest::addColumn<std::size_t>("index");
        const std::vector<MghProblem> problems = mghProblems();
        for (std::size_t i = 0; i < problems.size(); ++i)
            QTest::newRow(problems[i].fit.name.c_str()) << i;
    }
    void reachesAPublishedMinimum()
    {
        QFETCH(std::size_t, index);
        const MghProblem problem = mghProblems()[index];
        const double sum = problem.step > 0.0 ? minimumWithStep(problem.fit, problem.step)
                                              : runMpfit(problem.fit, FitSettings {}).sumOfSquares;
        const bool reached = std::any_of(problem.minima.begin(), problem.minima.end(), [sum](double minimum) {
            return minimum == 0.0 ? sum < 1e-20 : std::fabs(sum - minimum) <= 2e-5 * minimum;
        });
        QVERIFY2(reached, qPrintable(QString::number(sum, 'g', 10)));
    }
};

QTEST_GUILESS_MAIN(TestMpfitLmdif)
#include "tst_mpfit_lmdif.moc"
