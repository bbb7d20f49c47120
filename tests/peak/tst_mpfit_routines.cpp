// The fitter's linear algebra: documented properties of each routine, and bit-identity with cminpack's routine of the
// same name.
#include "support/support.h"
#include "tarnis/peak/mpfit_p.h"

#include <QTest>

#include <cminpack.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace fitter = tarnis::fitter;
using tarnis::testing::seededGenerator;

namespace {

using Vector = std::vector<double>;

constexpr double infinity = std::numeric_limits<double>::infinity();

// An m x n matrix by columns.
struct Matrix {
    int m;
    int n;
    Vector a;

    double at(int i, int j) const { return a[std::size_t(j) * std::size_t(m) + std::size_t(i)]; }
};

struct QrFactors {
    Matrix matrix;
    std::vector<int> ipvt;
    Vector rdiag;
    Vector acnorm;
};

QrFactors factoriseHere(Matrix a)
{
    const std::size_t n = std::size_t(a.n);
    QrFactors f { std::move(a), std::vector<int>(n), Vector(n), Vector(n) };
    Vector wa(n);
    fitter::qrfac(f.matrix.m, f.matrix.n, f.matrix.a.data(), f.ipvt.data(), f.rdiag.data(), f.acnorm.data(), wa.data());
    return f;
}

QrFactors factoriseThere(Matrix a)
{
    const std::size_t n = std::size_t(a.n);
    QrFactors f { std::move(a), std::vector<int>(n), Vector(n), Vector(n) };
    Vector wa(n);
    ::qrfac(f.matrix.m, f.matrix.n, f.matrix.a.data(), f.matrix.m, 1, f.ipvt.data(), f.matrix.n, f.rdiag.data(),
        f.acnorm.data(), wa.data());
    return f;
}

// R with its diagonal in place, as in the fit.
Matrix withDiagonal(QrFactors f)
{
    for (int j = 0; j < std::min(f.matrix.m, f.matrix.n); ++j)
        f.matrix.a[std::size_t(j) * std::size_t(f.matrix.m) + std::size_t(j)] = f.rdiag[std::size_t(j)];
    return f.matrix;
}

std::vector<int> oneBased(std::vector<int> ipvt)
{
    for (int& j : ipvt)
        ++j;
    return ipvt;
}

class Random {
public:
    explicit Random(unsigned long long salt)
        : m_engine(seededGenerator(salt))
    {
    }
    double uniform(double low, double high) { return std::uniform_real_distribution<double>(low, high)(m_engine); }
    int pick(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_engine); }
    Vector vector(int n, double low = -1.0, double high = 1.0)
    {
        Vector v(static_cast<std::size_t>(n));
        std::generate(v.begin(), v.end(), [&] { return uniform(low, high); });
        return v;
    }
    // Columns of very different sizes; sometimes a column of zeros or a copy of another.
    Matrix matrix(int m, int n)
    {
        Matrix a { m, n, vector(m * n) };
        for (int j = 0; j < n; ++j) {
            const double size = std::pow(10.0, uniform(-4.0, 4.0));
            const bool zero = pick(0, 9) == 0;
            const bool copy = j > 0 && pick(0, 9) == 0;
            for (int i = 0; i < m; ++i) {
                double& element = a.a[std::size_t(j) * std::size_t(m) + std::size_t(i)];
                element = zero ? 0.0 : copy ? 2.0 * a.at(i, j - 1) : element * size;
            }
        }
        return a;
    }

private:
    std::mt19937_64 m_engine;
};

bool isNear(double a, double b, double tolerance)
{
    return std::fabs(a - b) <= tolerance * std::max(std::fabs(a), std::fabs(b));
}

} // namespace

class TestMpfitRoutines : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void enormIsTheEuclideanNorm_data()
    {
        QTest::addColumn<Vector>("x");
        QTest::addColumn<double>("norm");
        QTest::newRow("nothing") << Vector {} << 0.0;
        QTest::newRow("zeros") << Vector { 0.0, -0.0 } << 0.0;
        QTest::newRow("3, 4") << Vector { 3.0, -4.0 } << 5.0;
        QTest::newRow("huge") << Vector { 3e200, 4e200 } << 5e200;
        QTest::newRow("tiny") << Vector { 3e-200, 4e-200 } << 5e-200;
        QTest::newRow("denormal") << Vector { 3 * 0x1p-1070, 4 * 0x1p-1070 } << 5 * 0x1p-1070;
        QTest::newRow("huge and ordinary") << Vector { 3e153, 1.0, 4e153 } << 5e153;
        QTest::newRow("largest") << Vector { std::numeric_limits<double>::max() } << std::numeric_limits<double>::max();
        QTest::newRow("huge descending, tiny ascending") << Vector { 4e300, 3e300, 1e-300, 2e-300 } << 5e300;
        QTest::newRow("ordinary and tiny") << Vector { 1e-160, 3.0, 4.0 } << 5.0;
    }
    void enormIsTheEuclideanNorm()
    {
        QFETCH(Vector, x);
        QFETCH(double, norm);
        const double result = fitter::enorm(int(x.size()), x.data());
        QVERIFY2(isNear(result, norm, 1e-15), qPrintable(QString::number(result, 'g', 17)));
    }

    void enormIsExact()
    {
        Random random(1);
        for (int round = 0; round < 20000; ++round) {
            Vector x = random.vector(random.pick(1, 12));
            const double exponent = random.uniform(-300.0, 300.0);
            for (double& v : x)
                v *= std::pow(10.0, std::clamp(exponent + random.uniform(-20.0, 20.0), -306.0, 306.0));
            long double sum = 0.0L;
            for (const double v : x)
                sum += static_cast<long double>(v) * static_cast<long double>(v);
            QVERIFY(isNear(fitter::enorm(int(x.size()), x.data()), double(std::sqrt(sum)), 1e-14));
        }
    }

    void enormOfNonFinite()
    {
        const auto norm = [](Vector x) { return fitter::enorm(int(x.size()), x.data()); };
        const double nan = std::nan("");
        QVERIFY(std::isnan(norm({ nan })));
        QVERIFY(std::isnan(norm({ 1.0, nan, 1e200, 1e-200 })));
        QVERIFY(std::isnan(norm({ 1e200, nan })));
        QVERIFY(std::isnan(norm({ 0.0, nan, 0.0 })));
        QVERIFY(std::isinf(norm({ infinity })));
        QVERIFY(std::isinf(norm({ 1.0, -infinity, 1e300 })));
        QVERIFY(!std::isfinite(norm({ infinity, -infinity })));
    }

    void enormAsInCminpack()
    {
        Random random(2);
        for (int round = 0; round < 20000; ++round) {
            const Vector x = random.vector(random.pick(1, 40), -1e5, 1e5);
            QVERIFY(fitter::enorm(int(x.size()), x.data()) == ::enorm(int(x.size()), x.data()));
        }
    }

    void qrfacGivesBackTheMatrix()
    {
        // P'A'A P = R'R, with R's diagonal falling and the columns a permutation.
        Random random(3);
        for (int round = 0; round < 2000; ++round) {
            const int n = random.pick(1, 6);
            const int m = n + random.pick(0, 10);
            const Matrix a { m, n, random.vector(m * n) };
            const QrFactors f = factoriseHere(a);
            const Matrix r = withDiagonal(f);
            std::vector<int> order = f.ipvt;
            std::sort(order.begin(), order.end());
            for (int j = 0; j < n; ++j) {
                QCOMPARE(order[std::size_t(j)], j);
                if (j > 0)
                    QVERIFY(std::fabs(r.at(j, j)) <= std::fabs(r.at(j - 1, j - 1)) * (1 + 1e-12));
                for (int k = 0; k < n; ++k) {
                    double left = 0.0;
                    for (int i = 0; i < m; ++i)
                        left += a.at(i, f.ipvt[std::size_t(j)]) * a.at(i, f.ipvt[std::size_t(k)]);
                    double right = 0.0;
                    for (int i = 0; i <= std::min(j, k); ++i)
                        right += r.at(i, j) * r.at(i, k);
                    QVERIFY(std::fabs(left - right) < 1e-13 * m);
                }
            }
        }
    }

    void qrfacAsInCminpack()
    {
        Random random(4);
        for (int round = 0; round < 5000; ++round) {
            const int n = random.pick(1, 7);
            const Matrix a = random.matrix(n + random.pick(0, 12), n);
            const QrFactors here = factoriseHere(a);
            const QrFactors there = factoriseThere(a);
            QVERIFY(here.matrix.a == there.matrix.a);
            QVERIFY(oneBased(here.ipvt) == there.ipvt);
            QVERIFY(here.rdiag == there.rdiag);
            QVERIFY(here.acnorm == there.acnorm);
        }
    }

    void qrsolvAsInCminpack()
    {
        Random random(5);
        for (int round = 0; round < 5000; ++round) {
            const int n = random.pick(1, 6);
            const int m = n + random.pick(0, 4);
            const QrFactors f = factoriseHere(random.matrix(m, n));
            Vector diag = random.vector(n, 0.0, 10.0);
            if (random.pick(0, 3) == 0)
                diag[std::size_t(random.pick(0, n - 1))] = 0.0;
            const Vector qtb = random.vector(n);
            const std::vector<int> pivots = oneBased(f.ipvt);
            const std::size_t size = std::size_t(n);
            Vector x(size), sdiag(size), wa(size), x2(size), sdiag2(size), wa2(size);
            Matrix r = withDiagonal(f);
            Matrix r2 = r;
            fitter::qrsolv(n, r.a.data(), m, f.ipvt.data(), diag.data(), qtb.data(), x.data(), sdiag.data(), wa.data());
            ::qrsolv(n, r2.a.data(), m, pivots.data(), diag.data(), qtb.data(), x2.data(), sdiag2.data(), wa2.data());
            QVERIFY(r.a == r2.a);
            QVERIFY(x == x2);
            QVERIFY(sdiag == sdiag2);
        }
    }

    void lmparKeepsTheBound()
    {
        Random random(6);
        for (int round = 0; round < 5000; ++round) {
            const int n = random.pick(1, 6);
            const int m = n + random.pick(0, 6);
            const QrFactors f = factoriseHere({ m, n, random.vector(m * n) });
            Matrix r = withDiagonal(f);
            const Vector diag = random.vector(n, 0.5, 2.0);
            const Vector qtb = random.vector(n);
            const double delta = std::pow(10.0, random.uniform(-3.0, 3.0));
            const std::size_t size = std::size_t(n);
            Vector x(size), sdiag(size), wa1(size), wa2(size);
            const double par = fitter::lmpar(n, r.a.data(), m, f.ipvt.data(), diag.data(), qtb.data(), delta, 0.0,
                x.data(), sdiag.data(), wa1.data(), wa2.data());
            for (std::size_t j = 0; j < size; ++j)
                wa1[j] = diag[j] * x[j];
            const double length = fitter::enorm(n, wa1.data());
            QVERIFY(par >= 0.0);
            QVERIFY(par == 0.0 ? length <= 1.1 * delta : std::fabs(length - delta) <= 0.1 * delta * (1 + 1e-12));
        }
    }

    void lmparAsInCminpack()
    {
        Random random(7);
        for (int round = 0; round < 10000; ++round) {
            const int n = random.pick(1, 6);
            const int m = n + random.pick(0, 6);
            const QrFactors f = factoriseHere(random.matrix(m, n));
            Matrix r = withDiagonal(f);
            Matrix r2 = r;
            const Vector diag = random.vector(n, 0.01, 100.0);
            const Vector qtb = random.vector(n);
            const double delta = std::pow(10.0, random.uniform(-6.0, 6.0));
            const double before = random.pick(0, 1) ? 0.0 : random.uniform(0.0, 5.0);
            const std::vector<int> pivots = oneBased(f.ipvt);
            const std::size_t size = std::size_t(n);
            Vector x(size), sdiag(size), wa1(size), wa2(size), x2(size), sdiag2(size), wa3(size), wa4(size);
            const double par = fitter::lmpar(n, r.a.data(), m, f.ipvt.data(), diag.data(), qtb.data(), delta, before,
                x.data(), sdiag.data(), wa1.data(), wa2.data());
            double par2 = before;
            ::lmpar(n, r2.a.data(), m, pivots.data(), diag.data(), qtb.data(), delta, &par2, x2.data(), sdiag2.data(),
                wa3.data(), wa4.data());
            QVERIFY(par == par2);
            QVERIFY(x == x2);
        }
    }

    void lmparEndsWithNonFinite()
    {
        for (const double bad : { infinity, -infinity, std::nan(""), 1e300 }) {
            for (int place = 0; place < 4; ++place) {
                Vector r { 1.0, 0.0, 0.5, 1.0 };
                Vector qtb { 1.0, 1.0 };
                Vector diag { 1.0, 1.0 };
                double delta = 0.1;
                (place == 0 ? r[0] : place == 1 ? qtb[1] : place == 2 ? diag[0] : delta) = bad;
                const int ipvt[] = { 0, 1 };
                Vector x(2), sdiag(2), wa1(2), wa2(2);
                fitter::lmpar(2, r.data(), 2, ipvt, diag.data(), qtb.data(), delta, 0.0, x.data(), sdiag.data(),
                    wa1.data(), wa2.data());
            }
        }
    }

    void covarIsTheInverse()
    {
        Random random(8);
        for (int round = 0; round < 2000; ++round) {
            const int n = random.pick(1, 5);
            const int m = n + random.pick(3, 10);
            const Matrix a { m, n, random.vector(m * n) };
            const QrFactors f = factoriseHere(a);
            Matrix c = withDiagonal(f);
            Vector wa(static_cast<std::size_t>(n));
            fitter::covar(n, c.a.data(), m, f.ipvt.data(), 1e-14, wa.data());
            for (int i = 0; i < n; ++i) {
                for (int j = 0; j < n; ++j) {
                    double product = 0.0; // (A'A C)(i, j)
                    for (int k = 0; k < n; ++k) {
                        double normal = 0.0;
                        for (int l = 0; l < m; ++l)
                            normal += a.at(l, i) * a.at(l, k);
                        product += normal * c.at(k, j);
                    }
                    QVERIFY(std::fabs(product - (i == j ? 1.0 : 0.0)) < 1e-6);
                }
            }
        }
    }

    void covarAsInCminpack()
    {
        Random random(9);
        for (int round = 0; round < 5000; ++round) {
            const int n = random.pick(1, 6);
            const int m = n + random.pick(0, 6);
            const QrFactors f = factoriseHere(random.matrix(m, n));
            Matrix here = withDiagonal(f);
            Matrix there = here;
            const std::vector<int> pivots = oneBased(f.ipvt);
            Vector wa(static_cast<std::size_t>(n));
            const double tol = random.pick(0, 1) ? 1e-14 : 1e-3;
            fitter::covar(n, here.a.data(), m, f.ipvt.data(), tol, wa.data());
            ::covar(n, there.a.data(), m, pivots.data(), tol, wa.data());
            for (int i = 0; i < n; ++i) {
                for (int j = 0; j < n; ++j)
                    QVERIFY(here.at(i, j) == there.at(i, j));
            }
        }
    }
};

QTEST_GUILESS_MAIN(TestMpfitRoutines)
#include "tst_mpfit_routines.moc"
