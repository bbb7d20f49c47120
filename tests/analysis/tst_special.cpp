// Special functions of arrays against those of one number in more digits.
#include "tarnis/analysis/special_p.h"

#include <QTest>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

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

    // The formulae change at 0.46875 and at 4.
    void computesScaledTails()
    {
        std::vector<double> a { 0.0, 0.1, 0.46875, 0.47, 3.9, 4.0, 4.1, 1e8 };
        const std::vector<double> random = numbersBetween(0.0, 8.0);
        a.insert(a.end(), random.begin(), random.end());
        std::vector<double> found = a;
        scaledErfcs(found.data(), found.size());
        for (std::size_t i = 0; i < a.size(); ++i) {
            QCOMPARE(found[i], scaledErfc(a[i]));
            const long double x = a[i];
            if (x < 100.0L)
                QVERIFY2(unitsApart(found[i], std::exp(x * x) * std::erfc(x)) <= 8.0,
                    qPrintable(QString::number(a[i], 'g', 17)));
        }
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
