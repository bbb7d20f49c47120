// Special functions of arrays against those of one number in more digits.
#include "tarnis/analysis/special_p.h"
#include "tarnis/foundation/avx2_p.h"

#include <QTest>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

using namespace tarnis;
using namespace tarnis::analysis;

namespace {

/// Distance of two numbers in units of the last digit of the second one.
double unitsApart(double found, long double expected)
{
    const double rounded = static_cast<double>(expected);
    const double unit =
        std::nextafter(std::fabs(rounded), std::numeric_limits<double>::infinity()) - std::fabs(rounded);
    return static_cast<double>(std::fabs(static_cast<long double>(found) - expected)) / unit;
}

/// 1003 numbers, which is no multiple of the size of a block.
std::vector<double> numbersBetween(double least, double largest)
{
    std::mt19937_64 random(3);
    std::uniform_real_distribution<double> distribution(least, largest);
    std::vector<double> numbers;
    for (int i = 0; i < 1003; ++i)
        numbers.push_back(distribution(random));
    return numbers;
}

} // namespace

class TestSpecial : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void computesExponentials_data()
    {
        QTest::addColumn<double>("least");
        QTest::addColumn<double>("largest");
        QTest::newRow("near 0") << -1e-3 << 1e-3;
        QTest::newRow("of a peak") << -50.0 << 0.0;
        QTest::newRow("far out") << -745.0 << 0.0;
        QTest::newRow("large") << 0.0 << 709.0;
    }

    void computesExponentials()
    {
        QFETCH(double, least);
        QFETCH(double, largest);
        const std::vector<double> x = numbersBetween(least, largest);
        std::vector<double> found = x;
        exponentials(found.data(), found.size());
        for (std::size_t i = 0; i < x.size(); ++i)
            QVERIFY2(unitsApart(found[i], std::exp(static_cast<long double>(x[i]))) <= 1.5,
                qPrintable(QString::number(x[i], 'g', 17)));
    }

    void keepsExponentialsAtTheLimits()
    {
        constexpr double infinity = std::numeric_limits<double>::infinity();
        for (const double x : { -infinity, -1e300, -746.0, 0.0, 710.0, infinity }) {
            std::vector<double> found(5, x);
            exponentials(found.data(), found.size());
            QCOMPARE(found, std::vector<double>(5, std::exp(x)));
        }
        std::vector<double> none(5, std::nan(""));
        exponentials(none.data(), none.size());
        QVERIFY(std::isnan(none.front()) && std::isnan(none.back()));
    }

    void computesScaledTails()
    {
        std::vector<double> a { 0.0, 1e-300, 0.1, 4.0, 30.0, 1e8 };
        const std::vector<double> random = numbersBetween(0.0, 8.0);
        a.insert(a.end(), random.begin(), random.end());
        for (const double x : a) {
            // The function of the standard library underflows.
            const long double y = x;
            const long double expected = y < 100.0L ? std::exp(y * y) * std::erfc(y) : 0.56418958354775628695L / y;
            QVERIFY2(unitsApart(scaledErfc(x), expected) <= 4.0, qPrintable(QString::number(x, 'g', 17)));
        }
        QCOMPARE(scaledErfc(std::numeric_limits<double>::infinity()), 0.0);
        QVERIFY(std::isnan(scaledErfc(std::nan(""))));
    }

    void computesGaussians()
    {
        constexpr double centre = 3.25;
        constexpr double sigma = 1.5;
        std::vector<double> x = numbersBetween(centre - 37.0 * sigma, centre + 37.0 * sigma);
        x.insert(x.end(), { centre, std::nextafter(centre, 0.0), centre - 100.0 * sigma, centre + 100.0 * sigma });
        std::vector<double> densities(x.size());
        std::vector<double> tails(x.size());
        gaussians(x.data(), x.size(), centre, sigma, densities.data(), tails.data());
        for (std::size_t i = 0; i < x.size(); ++i) {
            const long double z = (static_cast<long double>(x[i]) - centre) / sigma;
            const long double density = std::exp(-0.5L * z * z);
            const long double tail = 0.5L * std::erfc(std::fabs(z) / std::sqrt(2.0L));
            const double error = static_cast<double>((1.0L + z * z) * 1e-15L);
            const QByteArray place = QByteArray::number(x[i], 'g', 17);
            if (std::fabs(z) > 40.0L) {
                QVERIFY2(densities[i] == 0.0 && tails[i] == 0.0, place);
                continue;
            }
            QVERIFY2(std::fabs(densities[i] - density) <= error * density, place);
            QVERIFY2(std::fabs(std::fabs(tails[i]) - tail) <= error * tail, place);
            QCOMPARE(std::signbit(tails[i]), x[i] >= centre);
        }
    }

    void addsWeightedProducts()
    {
        for (std::size_t n = 0; n < 20; ++n) {
            std::vector<std::vector<double>> columns(17, std::vector<double>(n));
            std::vector<const double*> pointers;
            std::vector<double> weights(n);
            std::vector<double> a(n);
            std::vector<double> expected(columns.size());
            for (std::size_t i = 0; i < n; ++i) {
                weights[i] = 1.0 + static_cast<double>(i % 3);
                a[i] = static_cast<double>(i) - 5.0;
                for (std::size_t k = 0; k < columns.size(); ++k) {
                    columns[k][i] = static_cast<double>(i * k % 11);
                    expected[k] += weights[i] * a[i] * columns[k][i];
                }
            }
            pointers.reserve(columns.size());
            for (const std::vector<double>& column : columns)
                pointers.push_back(column.data());
            for (std::size_t count = 0; count <= columns.size(); ++count) {
                std::vector<double> sums(columns.size() + 1, -1.0);
                weightedDots(weights.data(), a.data(), pointers.data(), count, n, sums.data());
                for (std::size_t k = 0; k < sums.size(); ++k)
                    QCOMPARE(sums[k], k < count ? expected[k] : -1.0);
            }
        }
    }

    void computesAlikeOnAllProcessors()
    {
#ifdef TARNIS_AVX2
        if (!hasAvx2())
            QSKIP("This processor has no AVX2.");
        const std::vector<double> x = numbersBetween(-800.0, 20.0);
        const std::vector<double> y = numbersBetween(0.0, 3.0);
        const auto outputOf = [&](const BinKernels& kernels, std::size_t n) {
            std::vector<double> all = x;
            kernels.exponentials(all.data(), n);
            std::vector<double> density(n);
            std::vector<double> tail(n);
            kernels.gaussians(x.data(), n, -10.0, 2.0, density.data(), tail.data());
            all.insert(all.end(), density.begin(), density.end());
            all.insert(all.end(), tail.begin(), tail.end());
            const std::vector<const double*> columns(9, y.data());
            std::vector<double> sums(columns.size());
            kernels.weightedDots(x.data(), y.data(), columns.data(), columns.size(), n, sums.data());
            all.insert(all.end(), sums.begin(), sums.end());
            all.push_back(kernels.sumOfDeviances(y.data(), y.data() + 3, n));
            return all;
        };
        for (std::size_t n = 0; n < 1000; n = 2 * n + 1)
            QVERIFY(outputOf(plainKernels, n) == outputOf(avx2Kernels, n));
#else
        QSKIP("Only processors of one kind have AVX2.");
#endif
    }

    void addsDeviances()
    {
        std::mt19937_64 random(5);
        std::vector<double> y;
        std::vector<double> m;
        double sum = 0.0;
        for (int i = 0; i < 50; ++i) {
            QVERIFY(std::fabs(sumOfDeviances(y.data(), m.data(), y.size()) - sum) <= 1e-14 * sum);
            m.push_back(std::pow(10.0, std::uniform_real_distribution<double>(-2.0, 3.0)(random)));
            y.push_back(static_cast<double>(std::poisson_distribution<int>(m.back())(random)));
            sum += 2.0 * halfDeviance(y.back(), m.back());
        }
    }

    void knowsWhereDeviancesAreUndefined()
    {
        const auto sumWith = [](double y, double m) {
            std::vector<double> contents(13, 5.0);
            std::vector<double> model(13, 5.0);
            contents[6] = y;
            model[6] = m;
            return sumOfDeviances(contents.data(), model.data(), contents.size());
        };
        QCOMPARE(sumWith(0.0, 0.0), 0.0);
        QCOMPARE(sumWith(0.0, 3.0), 6.0);
        QVERIFY(std::isnan(sumWith(1.0, 0.0)));
        QVERIFY(std::isnan(sumWith(1.0, -1.0)));
        QVERIFY(std::isnan(sumWith(4.0, -4.5)));
        QVERIFY(std::isnan(sumWith(0.0, -1e-9)));
        QVERIFY(std::isnan(sumWith(1.0, std::nan(""))));
    }
};

QTEST_APPLESS_MAIN(TestSpecial)
#include "tst_special.moc"
