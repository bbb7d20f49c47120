// The arithmetic below the fits: deviances to rounding, and what the solver keeps of its last points.
#include "analysis/syntheticspectra.h"
#include "tarnis/analysis/fitsolver_p.h"
#include "tarnis/analysis/special_p.h"
#include "tarnis/analysis/spectrumfit.h"
#include "tarnis/foundation/avx2_p.h"

#include <QTest>

#include <array>
#include <cmath>
#include <numeric>
#include <random>
#include <vector>

using namespace tarnis;
using namespace tarnis::analysis;
using namespace tarnis::testing;

namespace {

constexpr int bins = 100;

/// A Gaussian of 5000 counts at 48.7 on a line.
std::vector<double> peakOnALine()
{
    std::vector<double> counts;
    std::mt19937_64 random(1);
    const std::array sigma { 4.2 };
    for (int i = 0; i < bins; ++i) {
        const double mean = 30.0 + 5000.0 * peakIntegral(PeakShape::Gaussian, i - 0.5, i + 0.5, 48.7, sigma);
        counts.push_back(static_cast<double>(std::poisson_distribution<int>(mean)(random)));
    }
    return counts;
}

/// Each parameter is a variable.
VariableMap allParameters()
{
    VariableMap map;
    const std::array start { 4000.0, 48.0, 3.5, 30.0, 0.0 };
    map.constant.assign(start.size(), 0.0);
    for (int k = 0; k < static_cast<int>(start.size()); ++k) {
        map.variables.push_back({ k, start[static_cast<std::size_t>(k)], k == 4 ? -1.0 : 0.01, 1e6 });
        map.terms.push_back({ k, k, 1.0 });
    }
    return map;
}

std::vector<double> startOf(const VariableMap& map)
{
    std::vector<double> start;
    for (const SolverVariable& variable : map.variables)
        start.push_back(variable.start);
    return start;
}

/// y (q - ln(1 + q)) with q = (m - y)/y, in more digits, by a series near q = 0.
long double exactHalfDeviance(long double y, long double m)
{
    const long double q = (m - y) / y;
    if (std::fabs(q) > 0.01L)
        return y * (q - std::log1p(q));
    long double sum = 0.0L;
    long double power = q * q;
    for (int k = 2; k < 14; ++k, power *= -q)
        sum += power / static_cast<long double>(k);
    return y * sum;
}

} // namespace

class TestFitSolver : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void computesDeviancesToRounding()
    {
        std::vector<double> ratios { 1e-6, 0.1, 0.5, 0.7094, 0.7095, 0.9, 1.1, 1.4095, 1.4097, 2.0, 100.0, 1e6 };
        for (double distance = 1e-12; distance < 0.5; distance *= 3.0) {
            ratios.push_back(1.0 + distance);
            ratios.push_back(1.0 - distance);
        }
        for (const double y : { 1.0, 7.0, 30.0, 1234.0, 1e9 }) {
            for (const double ratio : ratios) {
                const double m = ratio * y;
                const double expected = static_cast<double>(exactHalfDeviance(y, m));
                const double found = halfDeviance(y, m);
                QVERIFY2(std::fabs(found - expected) <= 4e-15 * expected,
                    qPrintable(QStringLiteral("y %1, ratio %2: %3").arg(y).arg(ratio, 0, 'g', 17).arg(found)));
            }
        }
        QCOMPARE(halfDeviance(0.0, 2.5), 2.5);
        QCOMPARE(halfDeviance(5.0, 5.0), 0.0);
    }

    // The vectors of some processors change no bit of a result.
    void fitsAlikeOnAllProcessors()
    {
        const std::vector<double> counts = peakOnALine();
        const FitResult wide = fitSpectrum(viewOf(counts), 0, bins - 1, {});
        setAvx2(false);
        const FitResult plain = fitSpectrum(viewOf(counts), 0, bins - 1, {});
        setAvx2(true);
        QCOMPARE(plain.value, wide.value);
        QVERIFY(plain.covariance == wide.covariance);
        QVERIFY(plain.modelContents == wide.modelContents);
        QCOMPARE(plain.goodness, wide.goodness);
    }

    // The information is kept for the point, not for the last position of the problem.
    void keepsTheInformationOfAPoint()
    {
        const std::vector<double> counts = peakOnALine();
        FitProblem problem(viewOf(counts), 0, bins - 1, {}, BinEvaluation::Integral);
        FitSolver solver(problem, FitStatistic::Cash, allParameters(), 100);
        FitSolver other(problem, FitStatistic::Pearson, allParameters(), 100);
        const std::vector<double> start = startOf(solver.map());
        const Information first = solver.informationAt(start);
        std::vector<double> moved = start;
        moved[1] += 1.0;
        const Information second = solver.informationAt(moved);
        QVERIFY(second.matrix != first.matrix);
        other.informationAt(start);
        const Information again = solver.informationAt(moved);
        QCOMPARE(again.matrix, second.matrix);
        QCOMPARE(again.gradient, second.gradient);
        QCOMPARE(again.value, second.value);
        const double total = std::accumulate(problem.values().begin(), problem.values().end(), 0.0);
        other.informationAt(start);
        solver.informationAt(moved);
        QCOMPARE(std::accumulate(problem.values().begin(), problem.values().end(), 0.0), total);
        QCOMPARE(solver.informationAt(start).matrix, first.matrix);
    }

    // From the same start after any other point, the solver takes the same steps.
    void minimisesIndependentlyOfItsPast()
    {
        const std::vector<double> counts = peakOnALine();
        FitProblem problem(viewOf(counts), 0, bins - 1, {}, BinEvaluation::Integral);
        FitSolver solver(problem, FitStatistic::Cash, allParameters(), 100);
        const std::vector<double> start = startOf(solver.map());
        const Minimum fresh = solver.minimise(start);
        QVERIFY(fresh.converged);
        for (const bool atMinimum : { false, true }) {
            solver.valueAt(atMinimum ? fresh.variables : start);
            const Minimum again = solver.minimise(start);
            QCOMPARE(again.variables, fresh.variables);
            QCOMPARE(again.value, fresh.value);
            QCOMPARE(again.calls, fresh.calls);
        }
    }

    void needsFewEvaluations()
    {
        const std::vector<double> counts = peakOnALine();
        const FitResult result = fitSpectrum(viewOf(counts), 0, bins - 1, {});
        QCOMPARE(result.status, FitStatus::Done);
        QVERIFY2(result.calls <= 15, qPrintable(QString::number(result.calls)));
    }

    // Contents of polynomial backgrounds are sums of columns that are filled once.
    void keepsTheColumnsOfPolynomials_data()
    {
        QTest::addColumn<FitBackground>("background");
        QTest::addRow("constant") << FitBackground::Constant;
        QTest::addRow("linear") << FitBackground::Linear;
        QTest::addRow("quadratic") << FitBackground::Quadratic;
    }

    void keepsTheColumnsOfPolynomials()
    {
        QFETCH(FitBackground, background);
        const std::vector<double> counts(20, 10.0);
        FitModel model;
        model.background = background;
        FitProblem problem(viewOf(counts), 0, counts.size() - 1, model, BinEvaluation::Integral);
        const std::vector<double> p { 0.0, 9.5, 2.0, 12.0, 0.3, -0.02 };
        problem.evaluate(p.data());
        problem.differentiate();
        problem.evaluate(std::vector<double>(p.size(), 1.0).data());
        const auto values = problem.evaluate(p.data());
        problem.differentiate();
        for (std::size_t i = 0; i < counts.size(); ++i) {
            // The integral of u^2 over a bin of width 1 is u^2 + 1/12.
            const double u = static_cast<double>(i) - 9.5;
            const std::array powers { 1.0, u, u * u + 1.0 / 12.0 };
            double expected = 0.0;
            for (int k = 0; k < problem.layout().backgrounds; ++k) {
                const auto power = static_cast<std::size_t>(k);
                expected += p[3 + power] * powers[power];
                QVERIFY(std::fabs(problem.column(3 + k)[i] - powers[power]) < 1e-12);
            }
            QVERIFY(std::fabs(values[i] - expected) < 1e-12);
        }
    }
};

QTEST_APPLESS_MAIN(TestFitSolver)
#include "tst_fitsolver.moc"
