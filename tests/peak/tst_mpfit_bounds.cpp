// Bounded fits: the three rules of the step one by one, and random linear problems against all their active sets.
#include "fitcase.h"
#include "support/cases.h"
#include "support/support.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

using namespace tarnis::testing;

namespace {

// Residual x - target for each parameter: separable, so that the first step reaches the target.
FitCase towards(std::vector<double> start, std::vector<double> targets)
{
    const int n = int(targets.size());
    FitCase fit(n, std::move(start), [targets](std::span<const double> x, std::span<double> r, double** dvec) {
        for (std::size_t i = 0; i < targets.size(); ++i) {
            r[i] = x[i] - targets[i];
            for (std::size_t j = 0; dvec && j < targets.size(); ++j) {
                if (dvec[j])
                    dvec[j][i] = i == j ? 1.0 : 0.0;
            }
        }
        return 0;
    });
    for (mp_par& par : fit.pars)
        par.side = 3;
    fit.configure([](mp_config& c) { c.stepfactor = 1e6; });
    return fit;
}

// The call of the first step, after the start and the analytic Jacobian.
const std::vector<double>& firstStep(const FitCase& fit)
{
    return fit.calls.at(2).x;
}

struct LinearProblem {
    std::size_t m;
    std::size_t n;
    std::vector<double> a; ///< row by row
    std::vector<double> y;
    std::vector<mp_par> pars;
    std::vector<double> start;

    double sum(const std::vector<double>& x) const
    {
        double total = 0.0;
        for (std::size_t i = 0; i < m; ++i) {
            double r = -y[i];
            for (std::size_t j = 0; j < n; ++j)
                r += a[i * n + j] * x[j];
            total += r * r;
        }
        return total;
    }
};

bool isInside(const mp_par& par, double x, double slack)
{
    return !(par.limited[0] && x < par.limits[0] - slack) && !(par.limited[1] && x > par.limits[1] + slack);
}

// Gauss elimination with pivoting; nothing for a singular matrix.
std::optional<std::vector<double>> solve(std::vector<std::vector<double>> a, std::vector<double> b)
{
    const std::size_t n = b.size();
    for (std::size_t k = 0; k < n; ++k) {
        std::size_t pivot = k;
        for (std::size_t i = k; i < n; ++i) {
            if (std::fabs(a[i][k]) > std::fabs(a[pivot][k]))
                pivot = i;
        }
        if (std::fabs(a[pivot][k]) < 1e-12)
            return std::nullopt;
        std::swap(a[k], a[pivot]);
        std::swap(b[k], b[pivot]);
        for (std::size_t i = k + 1; i < n; ++i) {
            const double factor = a[i][k] / a[k][k];
            for (std::size_t j = k; j < n; ++j)
                a[i][j] -= factor * a[k][j];
            b[i] -= factor * b[k];
        }
    }
    for (std::size_t k = n; k-- > 0;) {
        for (std::size_t j = k + 1; j < n; ++j)
            b[k] -= a[k][j] * b[j];
        b[k] /= a[k][k];
    }
    return b;
}

// The least-squares solution with each parameter either free (0) or on its lower (1) or upper bound (2).
std::optional<std::vector<double>> solveWith(const LinearProblem& p, const std::vector<int>& set)
{
    std::vector<double> x(p.n);
    std::vector<std::size_t> free;
    for (std::size_t j = 0; j < p.n; ++j) {
        if (set[j] == 0)
            free.push_back(j);
        else if (!p.pars[j].limited[set[j] - 1])
            return std::nullopt;
        else
            x[j] = p.pars[j].limits[set[j] - 1];
    }
    std::vector normal(free.size(), std::vector<double>(free.size()));
    std::vector<double> right(free.size());
    for (std::size_t i = 0; i < p.m; ++i) {
        double rest = p.y[i];
        for (std::size_t j = 0; j < p.n; ++j)
            rest -= set[j] == 0 ? 0.0 : p.a[i * p.n + j] * x[j];
        for (std::size_t k = 0; k < free.size(); ++k) {
            right[k] += p.a[i * p.n + free[k]] * rest;
            for (std::size_t l = 0; l < free.size(); ++l)
                normal[k][l] += p.a[i * p.n + free[k]] * p.a[i * p.n + free[l]];
        }
    }
    const auto solution = solve(normal, right);
    if (!solution)
        return std::nullopt;
    for (std::size_t k = 0; k < free.size(); ++k)
        x[free[k]] = (*solution)[k];
    return x;
}

// The minimum sum of squares inside the box: the best feasible solution over all active sets.
double enumeratedMinimum(const LinearProblem& p)
{
    double best = std::numeric_limits<double>::infinity();
    std::vector<int> set(p.n, 0);
    for (;;) {
        if (const auto x = solveWith(p, set)) {
            bool inside = true;
            for (std::size_t j = 0; j < p.n; ++j)
                inside = inside && isInside(p.pars[j], (*x)[j], 1e-11);
            if (inside)
                best = std::min(best, p.sum(*x));
        }
        std::size_t j = 0;
        while (j < p.n && set[j] == 2)
            set[j++] = 0;
        if (j == p.n)
            return best;
        ++set[j];
    }
}

enum Kind { Ordinary, Collinear, ZeroColumn, OneFree };

LinearProblem randomProblem(std::mt19937_64& random, Kind kind)
{
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    const auto pick = [&](std::size_t count) { return std::size_t(random() % count); };
    LinearProblem p;
    p.n = kind == Collinear ? 2 + pick(4) : 1 + pick(5);
    p.m = p.n + pick(8);
    p.a.resize(p.m * p.n);
    p.y.resize(p.m);
    std::generate(p.a.begin(), p.a.end(), [&] { return uniform(random); });
    std::generate(p.y.begin(), p.y.end(), [&] { return 3.0 * uniform(random); });
    for (std::size_t i = 0; i < p.m; ++i) {
        if (kind == Collinear)
            p.a[i * p.n + 1] = -2.0 * p.a[i * p.n];
        if (kind == ZeroColumn)
            p.a[i * p.n] = 0.0;
    }
    const std::size_t freeOne = pick(p.n);
    for (std::size_t j = 0; j < p.n; ++j) {
        mp_par par {};
        par.fixed = kind == OneFree && j != freeOne;
        par.limited[0] = pick(4) != 0;
        par.limited[1] = pick(4) != 0;
        const double a = 2.0 * uniform(random);
        const double b = 2.0 * uniform(random);
        par.limits[0] = std::min(a, b);
        par.limits[1] = std::max(a, b);
        const double low = par.limited[0] ? par.limits[0] : par.limits[1] - 6.0;
        const double high = par.limited[1] ? par.limits[1] : low + 6.0;
        const double inside = low + (high - low) * 0.5 * (uniform(random) + 1.0);
        const std::size_t place = pick(4);
        p.start.push_back(place == 0 ? low : place == 1 ? high : std::clamp(inside, low, high));
        p.pars.push_back(par);
    }
    return p;
}

FitCase fitOf(const LinearProblem& p)
{
    FitCase fit(int(p.m), p.start, [&p](std::span<const double> x, std::span<double> r, double** dvec) {
        for (std::size_t i = 0; i < p.m; ++i) {
            r[i] = -p.y[i];
            for (std::size_t j = 0; j < p.n; ++j) {
                r[i] += p.a[i * p.n + j] * x[j];
                if (dvec && dvec[j])
                    dvec[j][i] = p.a[i * p.n + j];
            }
        }
        return 0;
    });
    fit.pars = p.pars;
    return fit;
}

// Makes a held parameter one between two equal bounds, for the oracle.
void pin(mp_par& par, double value)
{
    par.limited[0] = par.limited[1] = 1;
    par.limits[0] = par.limits[1] = value;
}

// Parameters on a bound, fixed ones included.
int peggedIn(const LinearProblem& p, const std::vector<double>& x)
{
    int pegged = 0;
    for (std::size_t j = 0; j < p.n; ++j) {
        const mp_par& par = p.pars[j];
        pegged += (par.limited[0] && x[j] == par.limits[0]) || (par.limited[1] && x[j] == par.limits[1]);
    }
    return pegged;
}

} // namespace

class TestMpfitBounds : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cutsTheStepAtABound()
    {
        FitCase fit = towards({ 1.0 }, { 9.0 });
        fit.boundAbove(0, 3.0).run();
        QCOMPARE(firstStep(fit), (std::vector { 3.0 }));
        QCOMPARE(fit.x[0], 3.0);
        QCOMPARE(fit.result.npegged, 1);
        QVERIFY(fit.status > 0);

        FitCase down = towards({ 1.0 }, { -9.0 });
        down.boundBelow(0, -3.0).run();
        QCOMPARE(firstStep(down), (std::vector { -3.0 }));
        QCOMPARE(down.x[0], -3.0);
    }

    void cutsAllComponentsAlike()
    {
        // A quarter of the way to 9 is allowed; the other parameter also moves a quarter of its way.
        FitCase fit = towards({ 1.0, 1.0 }, { 9.0, 5.0 });
        fit.boundAbove(0, 3.0).run();
        QCOMPARE(firstStep(fit), (std::vector { 3.0, 2.0 }));
        QCOMPARE(fit.x[0], 3.0);
        QVERIFY(std::fabs(fit.x[1] - 5.0) < 1e-9);
    }

    void holdsAParameterOnItsBound()
    {
        FitCase fit = towards({ 3.0, 1.0 }, { 9.0, 5.0 });
        fit.boundAbove(0, 3.0).run();
        QCOMPARE(firstStep(fit), (std::vector { 3.0, 5.0 }));
        QCOMPARE(fit.x, (std::vector { 3.0, 5.0 }));
        for (const FitCase::Call& call : fit.calls)
            QCOMPARE(call.x[0], 3.0);
    }

    void letsGoOfABound()
    {
        FitCase fit = towards({ 3.0, 1.0 }, { 2.0, 5.0 });
        fit.boundAbove(0, 3.0).boundBelow(1, 1.0).run();
        QCOMPARE(firstStep(fit), (std::vector { 2.0, 5.0 }));
        QCOMPARE(fit.result.npegged, 0);
    }

    void zeroesAComponentThatLeadsOutwards()
    {
        // The gradient leads x0 inwards, the Gauss-Newton step outwards: the columns nearly agree.
        FitCase fit(2, { 0.0, 0.0 }, [](std::span<const double> x, std::span<double> r, double** dvec) {
            const double j[2][2] = { { 1.0, 1.1 }, { 1.0, 1.0 } };
            const double y[2] = { 2.0, 1.0 };
            for (std::size_t i = 0; i < 2; ++i) {
                r[i] = j[i][0] * x[0] + j[i][1] * x[1] - y[i];
                for (std::size_t k = 0; dvec && k < 2; ++k)
                    dvec[k][i] = j[i][k];
            }
            return 0;
        });
        fit.side(0, 3).side(1, 3).boundBelow(0, 0.0).run();
        // Unbounded: x1 = 10, x0 = -9. The first trial keeps x0 where it is.
        QCOMPARE(firstStep(fit)[0], 0.0);
        QVERIFY(firstStep(fit)[1] > 0.0);
        QCOMPARE(fit.x[0], 0.0);
        QVERIFY(std::fabs(fit.x[1] - 3.2 / 2.21) < 1e-6);
    }

    void heldColumnCountsAsZero()
    {
        FitCase fit = towards({ 3.0, 1.0 }, { 9.0, 5.0 });
        fit.boundAbove(0, 3.0).run();
        QCOMPARE(fit.covar, (std::vector { 0.0, 0.0, 0.0, 1.0 }));
        QCOMPARE(fit.xerror, (std::vector { 0.0, 1.0 }));

        // All on their bounds, all columns held: nothing remains to be done.
        FitCase cornered = towards({ 3.0, 1.0 }, { 9.0, 5.0 });
        cornered.boundAbove(0, 3.0).boundAbove(1, 1.0).run();
        QCOMPARE(cornered.status, 4);
        QCOMPARE(cornered.result.npegged, 2);
    }

    void snapsToABoundNearby_data()
    {
        addColumns<double, bool>("bound", "upper");
        QTest::addColumn<double>("target"); // target of the step
        QTest::addColumn<bool>("snaps");
        const double up = 2.220446049250313e-16;
        QTest::newRow("upper, positive: one bit below") << 2.0 << true << 2.0 * (1 - up) << true;
        QTest::newRow("upper, positive: four bits below") << 2.0 << true << 2.0 * (1 - 4 * up) << false;
        QTest::newRow("upper, negative: one bit below") << -2.0 << true << -2.0 * (1 + up) << true;
        QTest::newRow("upper, negative: four bits below") << -2.0 << true << -2.0 * (1 + 4 * up) << false;
        QTest::newRow("upper, zero: just below") << 0.0 << true << -2e-16 << true;
        QTest::newRow("upper, zero: farther below") << 0.0 << true << -3e-16 << false;
        QTest::newRow("lower, positive: one bit above") << 2.0 << false << 2.0 * (1 + up) << true;
        QTest::newRow("lower, positive: four bits above") << 2.0 << false << 2.0 * (1 + 4 * up) << false;
        QTest::newRow("lower, negative: one bit above") << -2.0 << false << -2.0 * (1 - up) << true;
        QTest::newRow("lower, negative: four bits above") << -2.0 << false << -2.0 * (1 - 4 * up) << false;
        QTest::newRow("lower, zero: just above") << 0.0 << false << 2e-16 << true;
        QTest::newRow("lower, zero: farther above") << 0.0 << false << 3e-16 << false;
    }
    void snapsToABoundNearby()
    {
        QFETCH(double, bound);
        QFETCH(bool, upper);
        QFETCH(double, target);
        QFETCH(bool, snaps);
        // Near enough to the target that the step is exact.
        const double start = target + (upper ? -1.0 : 1.0) * (bound == 0.0 ? 1e-15 : 0x1p-40);
        FitCase fit = towards({ start }, { target });
        (upper ? fit.boundAbove(0, bound) : fit.boundBelow(0, bound)).configure([](mp_config& c) {
            c.ftol = c.xtol = c.gtol = 1e-300;
        });
        fit.run();
        QVERIFY(fit.calls.size() > 2);
        QCOMPARE(firstStep(fit)[0] == bound, snaps);
        QVERIFY(isInside(fit.pars[0], fit.x[0], 0.0));
    }

    void reachesABoundFromFarAway()
    {
        // Each of these ends a few bits beside the bound in plain arithmetic, since the start is much larger.
        std::mt19937_64 random = seededGenerator(41);
        std::uniform_real_distribution<double> uniform(-1.0, 1.0);
        for (int i = 0; i < 2000; ++i) {
            const double bound = 0.01 * uniform(random);
            const double start = bound + 3.0 + uniform(random);
            FitCase fit = towards({ start, 0.0 }, { bound - 1.0 - std::fabs(uniform(random)), 1.0 });
            fit.boundBelow(0, bound).run();
            QCOMPARE(firstStep(fit)[0], bound);
            QVERIFY(firstStep(fit)[0] == bound);
            QVERIFY(std::fabs(fit.x[1] - 1.0) < 1e-9);
        }
    }

    void predictsTheShortenedStep()
    {
        // Three quarters of the way are allowed. In units of fnorm = 8 the cut step has a norm of 3/4, and the
        // prediction takes alpha once more: (9/16)^2. The true reduction is 1 - (1/4)^2, three times as much: with ftol
        // above both it is the ratio that keeps the fit from ending. Without the second alpha the ratio would be 1.7.
        FitCase fit = towards({ 1.0 }, { 9.0 });
        fit.boundAbove(0, 7.0).configure([](mp_config& c) {
            c.ftol = 1.0;
            c.xtol = 1e-300;
        });
        QCOMPARE(fit.run(), 4);
        QCOMPARE(fit.result.niter, 2);
        // Seven eighths: prediction (49/64)^2, ratio 1.7, and the fit ends.
        FitCase nearly = towards({ 1.0 }, { 9.0 });
        nearly.boundAbove(0, 8.0).configure([](mp_config& c) {
            c.ftol = 1.0;
            c.xtol = 1e-300;
        });
        QCOMPARE(nearly.run(), 1);
    }

    void countsWhatEndedOnABound()
    {
        FitCase fit = towards({ 1.0, 1.0, 1.0, 1.0 }, { 9.0, -9.0, 2.0, 1.0 });
        fit.bound(0, 0.0, 3.0).bound(1, 0.0, 3.0).bound(2, 0.0, 3.0).bound(3, 1.0, 1.0).hold(3);
        QVERIFY(fit.run() > 0);
        QCOMPARE(fit.result.npegged, 3);
        QCOMPARE(fit.result.nfree, 3);
        QCOMPARE(fit.x[0], 3.0);
        QCOMPARE(fit.x[1], 0.0);
    }

    void neverLeavesTheBox()
    {
        // Differences may leave it below, never above with the automatic side; steps may not at all.
        std::mt19937_64 random = seededGenerator(42);
        for (int i = 0; i < 2000; ++i) {
            const LinearProblem p = randomProblem(random, Ordinary);
            FitCase fit = fitOf(p);
            for (mp_par& par : fit.pars)
                par.side = 3;
            fit.run();
            for (const FitCase::Call& call : fit.calls) {
                for (std::size_t j = 0; j < p.n; ++j)
                    QVERIFY(isInside(p.pars[j], call.x[j], 0.0));
            }
        }
    }

    void findsTheMinimumInTheBox_data()
    {
        addColumns<int, int>("kind", "side");
        QTest::newRow("ordinary, numerical derivatives") << int(Ordinary) << 0;
        QTest::newRow("ordinary, differences to both sides") << int(Ordinary) << 2;
        QTest::newRow("ordinary, analytic derivatives") << int(Ordinary) << 3;
        QTest::newRow("two collinear columns") << int(Collinear) << 0;
        QTest::newRow("two collinear columns, analytic derivatives") << int(Collinear) << 3;
        QTest::newRow("a column of zeros") << int(ZeroColumn) << 0;
        QTest::newRow("all but one held") << int(OneFree) << 0;
    }
    void findsTheMinimumInTheBox()
    {
        QFETCH(int, kind);
        QFETCH(int, side);
        std::mt19937_64 random = seededGenerator(43);
        for (int i = 0; i < 4000; ++i) {
            LinearProblem p = randomProblem(random, Kind(kind));
            for (mp_par& par : p.pars)
                par.side = side;
            FitCase fit = fitOf(p);
            const int status = fit.run();
            for (std::size_t j = 0; j < p.n; ++j) {
                if (p.pars[j].fixed)
                    pin(p.pars[j], p.start[j]);
                QVERIFY(isInside(p.pars[j], fit.x[j], 0.0));
            }
            const double best = enumeratedMinimum(p);
            const double reached = p.sum(fit.x);
            QVERIFY2(status > 0 && reached <= best * (1 + 1e-7) + 1e-9,
                qPrintable(QStringLiteral("case %1: status %2, sum %3, least sum %4")
                               .arg(i)
                               .arg(status)
                               .arg(reached, 0, 'g', 12)
                               .arg(best, 0, 'g', 12)));
            if (kind != OneFree)
                QCOMPARE(fit.result.npegged, peggedIn(p, fit.x));
        }
    }
};

QTEST_GUILESS_MAIN(TestMpfitBounds)
#include "tst_mpfit_bounds.moc"
