// Fits that end on bounds, and fits that need many steps of scoring.
#include "analysis/syntheticspectra.h"
#include "tarnis/analysis/fitsolver_p.h"
#include "tarnis/analysis/spectrumfit.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

using namespace tarnis;
using namespace tarnis::analysis;
using namespace tarnis::testing;

namespace {

constexpr int bins = 40;

std::vector<double> countsAround(double level, Generator& random)
{
    std::vector<double> counts;
    for (int i = 0; i < bins; ++i)
        counts.push_back(static_cast<double>(std::poisson_distribution<int>(level)(random)));
    return counts;
}

/// Area, centre and sigma of a Gaussian on a line, each a variable with narrow random bounds.
VariableMap narrowBounds(Generator& random)
{
    const std::vector<double> middle { 60.0, 20.0, 3.0, 3.0, 0.0 };
    const std::vector<double> reach { 60.0, 8.0, 2.0, 2.0, 0.05 };
    VariableMap map;
    map.constant.assign(middle.size(), 0.0);
    for (std::size_t k = 0; k < middle.size(); ++k) {
        const double lower = middle[k] - reach[k] * uniform(random, 0.1, 0.95);
        const double upper = middle[k] + reach[k] * uniform(random, 0.1, 0.95);
        map.variables.push_back({ static_cast<int>(k), uniform(random, lower, upper), lower, upper });
        map.terms.push_back({ static_cast<int>(k), static_cast<int>(k), 1.0 });
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

/// What the statistic could still fall by, by a step of one variable within its bounds.
double possibleFall(FitSolver& solver, const Minimum& minimum)
{
    const Information information = solver.informationAt(minimum.variables);
    const std::size_t n = minimum.variables.size();
    double largest = 0.0;
    for (std::size_t j = 0; j < n; ++j) {
        const double g = information.gradient[j];
        const bool mayMove =
            g > 0.0 ? !solver.isAtLower(minimum.variables, j) : !solver.isAtUpper(minimum.variables, j);
        if (mayMove && information.matrix[j * n + j] > 0.0)
            largest = std::max(largest, g * g / information.matrix[j * n + j]);
    }
    return largest;
}

} // namespace

class TestFitBounds : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void endsAtMinimaWithinBounds();
    void leavesABoundThatIsNoMinimum();
    void matchesAFitWithTheBoundVariableHeld();
    void endsScoringAfterSixtySteps();
    void reportsABackgroundOfZero_data();
    void reportsABackgroundOfZero();
    void reportsNoBoundOfAFreeBackground();
    void startsWithAPositiveBackgroundOfFixedHeight();
};

void TestFitBounds::endsAtMinimaWithinBounds()
{
    Generator random(1);
    int atBounds = 0;
    for (int i = 0; i < 200; ++i) {
        const std::vector<double> counts = countsAround(5.0, random);
        FitProblem problem(viewOf(counts), 0, bins - 1, {}, BinEvaluation::Integral);
        FitSolver solver(problem, static_cast<FitStatistic>(i % 4), narrowBounds(random), 100);
        const Minimum minimum = solver.minimise(startOf(solver.map()));
        QVERIFY2(minimum.converged, qPrintable(QString::number(i)));
        QVERIFY2(possibleFall(solver, minimum) < 1e-4, qPrintable(QString::number(i)));
        for (std::size_t j = 0; j < minimum.variables.size(); ++j) {
            QVERIFY(minimum.variables[j] >= solver.map().variables[j].lower);
            QVERIFY(minimum.variables[j] <= solver.map().variables[j].upper);
            atBounds += solver.isAtLower(minimum.variables, j) || solver.isAtUpper(minimum.variables, j) ? 1 : 0;
        }
    }
    QVERIFY2(atBounds > 200, qPrintable(QString::number(atBounds)));
}

// Every variable starts on a bound.
void TestFitBounds::leavesABoundThatIsNoMinimum()
{
    Generator random(2);
    for (int i = 0; i < 100; ++i) {
        const std::vector<double> counts = countsAround(5.0, random);
        FitProblem problem(viewOf(counts), 0, bins - 1, {}, BinEvaluation::Integral);
        FitSolver solver(problem, static_cast<FitStatistic>(i % 4), narrowBounds(random), 100);
        std::vector<double> start;
        for (const SolverVariable& variable : solver.map().variables)
            start.push_back(uniform(random, 0.0, 1.0) < 0.5 ? variable.lower : variable.upper);
        const Minimum minimum = solver.minimise(start);
        QVERIFY2(minimum.converged && possibleFall(solver, minimum) < 1e-4, qPrintable(QString::number(i)));
    }
}

void TestFitBounds::matchesAFitWithTheBoundVariableHeld()
{
    Generator random(3);
    std::vector<double> counts = countsAround(5.0, random);
    for (int i = 18; i < 23; ++i)
        counts[static_cast<std::size_t>(i)] += 60.0;
    FitModel model;
    model.centres = { 20.0 };
    FitConstraint constraint;
    constraint.name = QStringLiteral("area");
    constraint.upper = 100.0;
    model.constraints = { constraint };
    const FitResult bounded = fitSpectrum(viewOf(counts), 0, bins - 1, model);
    QVERIFY(bounded.parameters[0].atUpper);
    model.constraints[0].start = 100.0;
    model.constraints[0].fixed = true;
    const FitResult held = fitSpectrum(viewOf(counts), 0, bins - 1, model);
    QVERIFY(std::fabs(bounded.value - held.value) < 1e-6);
    for (std::size_t k = 1; k < held.parameters.size(); ++k) {
        if (!(held.parameters[k].error > 0.0))
            continue;
        QVERIFY(std::fabs(bounded.parameters[k].value - held.parameters[k].value) < 1e-3 * held.parameters[k].error);
        QVERIFY(std::fabs(bounded.parameters[k].error / held.parameters[k].error - 1.0) < 1e-3);
    }
}

// A poor model, and one iteration of the solver: the rest is up to scoring. After 60 steps it ends, and reports whether
// it has arrived.
void TestFitBounds::endsScoringAfterSixtySteps()
{
    Generator random(4);
    int longest = 0;
    int ended = 0;
    for (int i = 0; i < 100; ++i) {
        const std::vector<double> counts = countsAround(2.0, random);
        FitProblem problem(viewOf(counts), 0, bins - 1, {}, BinEvaluation::Integral);
        FitSolver solver(problem, static_cast<FitStatistic>(i % 4), narrowBounds(random), 1);
        const Minimum minimum = solver.minimise(startOf(solver.map()));
        const QString text = QStringLiteral("case %1, %2 calls").arg(i).arg(minimum.calls);
        QVERIFY2(minimum.converged == (possibleFall(solver, minimum) < 1e-5), qPrintable(text));
        longest = std::max(longest, minimum.calls);
        ended += minimum.converged ? 0 : 1;
    }
    QVERIFY2(longest >= 60, qPrintable(QString::number(longest)));
    QVERIFY2(ended > 0 && ended < 5, qPrintable(QString::number(ended)));
}

void TestFitBounds::reportsABackgroundOfZero_data()
{
    QTest::addColumn<bool>("isLeft");
    QTest::addColumn<bool>("isRight");
    QTest::newRow("left end") << true << false;
    QTest::newRow("right end") << false << true;
    QTest::newRow("both ends") << true << true;
}

void TestFitBounds::reportsABackgroundOfZero()
{
    QFETCH(bool, isLeft);
    QFETCH(bool, isRight);
    std::vector<double> counts(bins, 0.0);
    const std::vector<double> peak { 3.0, 20.0, 70.0, 130.0, 160.0, 130.0, 70.0, 20.0, 3.0 };
    std::copy(peak.begin(), peak.end(), counts.begin() + 16);
    // A steep rise from 0 at one end lies below the line at the other end.
    for (int i = 0; i < bins && isLeft != isRight; ++i) {
        const double distance = isLeft ? i : bins - 1 - i;
        counts[static_cast<std::size_t>(i)] += std::floor(distance * distance / 40.0);
    }
    FitModel model;
    model.centres = { 20.0 };
    const FitResult fit = fitSpectrum(viewOf(counts), 0, bins - 1, model);
    QVERIFY(fit.status == FitStatus::Done);
    const FitParameter& level = fit.parameters[static_cast<std::size_t>(fit.indexOf(QStringLiteral("b0")))];
    const FitParameter& slope = fit.parameters[static_cast<std::size_t>(fit.indexOf(QStringLiteral("b1")))];
    QVERIFY(level.atLower && !level.atUpper);
    QCOMPARE(slope.atUpper, isLeft);
    QCOMPARE(slope.atLower, isRight);
    QCOMPARE(slope.error > 0.0, isLeft != isRight);
}

// A peak at the end of the range makes the first estimate of the slope so steep that the line is negative at the other
// end.
void TestFitBounds::startsWithAPositiveBackgroundOfFixedHeight()
{
    Generator random(8);
    std::vector<double> counts = countsAround(5.0, random);
    for (int i = 0; i < bins; ++i)
        counts[static_cast<std::size_t>(i)] += std::floor(400.0 * std::exp(-0.5 * std::pow((i - 5.0) / 2.0, 2.0)));
    for (const FitBackground background : { FitBackground::Linear, FitBackground::Quadratic }) {
        FitModel model;
        model.background = background;
        FitConstraint fixed;
        fixed.name = QStringLiteral("b0");
        fixed.start = 5.0;
        fixed.fixed = true;
        model.constraints.push_back(fixed);
        const FitResult result = fitSpectrum(viewOf(counts), 0, bins - 1, model);
        QVERIFY2(result.status == FitStatus::Done, qPrintable(result.message));
        QVERIFY(std::fabs(result.valueOf(QStringLiteral("centre")) - 5.0) < 0.3);
    }
}

void TestFitBounds::reportsNoBoundOfAFreeBackground()
{
    Generator random(5);
    std::vector<double> counts = countsAround(30.0, random);
    for (int i = 17; i < 24; ++i)
        counts[static_cast<std::size_t>(i)] += 200.0;
    const FitResult fit = fitSpectrum(viewOf(counts), 0, bins - 1, {});
    for (const FitParameter& parameter : fit.parameters)
        QVERIFY2(!parameter.atLower && !parameter.atUpper, qPrintable(parameter.name));
}

QTEST_APPLESS_MAIN(TestFitBounds)
#include "tst_fitbounds.moc"
