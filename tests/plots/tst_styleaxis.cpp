// Ticks, labels and calm ranges of styled axes.
#include "support/cases.h"
#include "support/support.h"

#include "tarnis/plots/math/styleaxis_p.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

QStringList texts(const QList<AxisLabel>& labels)
{
    QStringList result;
    for (const AxisLabel& label : labels)
        result.append(label.plain());
    return result;
}

} // namespace

class TestStyleAxis : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void labelsLinearTicks_data()
    {
        addColumns<double, double, int, int, QString>("low", "high", "most", "form", "labels");
        const auto add = [](const char* name, double low, double high, int most, LargeNumbers form,
                             const char* labels) {
            QTest::newRow(name) << low << high << most << int(form) << QString::fromUtf8(labels);
        };
        add("small", 0, 10, 5, LargeNumbers::Prefixes, "0 2 4 6 8 10");
        add("five digits", 0, 60000, 4, LargeNumbers::Prefixes, "0 20000 40000 60000");
        add("thousands", 0, 400000, 4, LargeNumbers::Prefixes, "0 100k 200k 300k 400k");
        add("millions", 0, 1600000, 4, LargeNumbers::Prefixes, "0 0.5M 1.0M 1.5M");
        add("powers", 0, 1600000, 4, LargeNumbers::Powers, "0 0.5×10^6 1.0×10^6 1.5×10^6");
        add("small powers", 0, 0.00004, 4, LargeNumbers::Powers, "0 1×10^−5 2×10^−5 3×10^−5 4×10^−5");
        add("far offset beyond", 1e20, 1e20 + 4e14, 2, LargeNumbers::Prefixes,
            "1.000000×10^20 1.000002×10^20 1.000004×10^20");
        add("micro", 0, 0.00004, 4, LargeNumbers::Prefixes, "0 10µ 20µ 30µ 40µ");
        add("beyond the prefixes", 0, 2e30, 4, LargeNumbers::Prefixes, "0 0.5×10^30 1.0×10^30 1.5×10^30 2.0×10^30");
        add("below the prefixes", 0, 4e-30, 4, LargeNumbers::Prefixes, "0 1×10^−30 2×10^−30 3×10^−30 4×10^−30");
        add("decimals", -0.1, 0.3, 4, LargeNumbers::Prefixes, "−0.1 0.0 0.1 0.2 0.3");
        add("reversed", 10, 0, 2, LargeNumbers::Prefixes, "0 5 10");
        add("far offset", 1234567.0, 1234567.4, 2, LargeNumbers::Prefixes, "1234567.0 1234567.2 1234567.4");
    }
    void labelsLinearTicks()
    {
        QFETCH(double, low);
        QFETCH(double, high);
        QFETCH(int, most);
        QFETCH(int, form);
        QFETCH(QString, labels);
        const TickPlan plan = linearPlan({ low, high }, most, 0.0);
        QCOMPARE(texts(axisLabels(plan, LargeNumbers(form))).join(u' '), labels);
    }

    void labelsDecades_data()
    {
        addColumns<double, double, int, QString>("low", "high", "most", "labels");
        QTest::newRow("counts") << 0.5 << 30000.0 << 6 << "1 10 100 1000 10000";
        QTest::newRow("large counts") << 0.5 << 3e6 << 8 << "10^0 10^1 10^2 10^3 10^4 10^5 10^6";
        QTest::newRow("every second") << 0.5 << 3e6 << 4 << "10^0 10^2 10^4 10^6";
        QTest::newRow("few decades") << 0.5 << 20.0 << 9 << "0.5 1 2 5 10 20";
        QTest::newRow("within one") << 20.0 << 80.0 << 3 << "20 40 60 80";
        QTest::newRow("from nothing") << 0.0 << 100.0 << 4 << "1 10 100";
        QTest::newRow("fractions") << 1e-5 << 1e-2 << 4 << "10^−5 10^−4 10^−3 10^−2";
    }
    void labelsDecades()
    {
        QFETCH(double, low);
        QFETCH(double, high);
        QFETCH(int, most);
        QFETCH(QString, labels);
        QCOMPARE(texts(decadeLabels(decadePlan({ low, high }, most), LargeNumbers::Prefixes)).join(u' '), labels);
    }

    void ticksAreInsideAndEven()
    {
        auto random = tarnis::testing::seededGenerator(1);
        std::uniform_real_distribution<double> exponent(-12.0, 12.0);
        std::uniform_real_distribution<double> offset(-3.0, 3.0);
        for (int i = 0; i < 5000; ++i) {
            const double span = std::pow(10.0, exponent(random));
            const double low = offset(random) * span;
            const int most = 1 + i % 12;
            const TickPlan plan = linearPlan({ low, low + span }, most, 0.0);
            QVERIFY(plan.major.size() <= std::max(most + 1, 6));
            QVERIFY(most < 2 || plan.major.size() >= 2);
            for (const double value : plan.major + plan.minor)
                QVERIFY(value >= low - 1e-6 * span && value <= low + span * (1.0 + 1e-6));
            for (qsizetype k = 1; k < plan.major.size(); ++k)
                QVERIFY(std::abs(plan.major.at(k) - plan.major.at(k - 1) - plan.step) < 1e-6 * plan.step);
            QCOMPARE(axisLabels(plan, LargeNumbers::Prefixes).size(), plan.major.size());
            QList<double> ticks = plan.major + plan.minor;
            std::sort(ticks.begin(), ticks.end());
            const double part = ticks.at(1) - ticks.at(0);
            QVERIFY(part <= plan.step / 3.9 && ticks.last() + part > low + span * (1.0 - 1e-6));
        }
    }

    void labelsOfAnAxisDiffer()
    {
        auto random = tarnis::testing::seededGenerator(2);
        std::uniform_real_distribution<double> exponent(-14.0, 17.0);
        for (int i = 0; i < 2000; ++i) {
            const double span = std::pow(10.0, exponent(random));
            const TickPlan plan = linearPlan({ -0.3 * span, span }, 8, 0.0);
            for (const LargeNumbers form : { LargeNumbers::Prefixes, LargeNumbers::Powers }) {
                QStringList labels = texts(axisLabels(plan, form));
                const qsizetype count = labels.size();
                labels.removeDuplicates();
                QCOMPARE(labels.size(), count);
            }
        }
    }

    void hasNoTicksWithoutARange()
    {
        const double infinity = std::numeric_limits<double>::infinity();
        const double nan = std::numeric_limits<double>::quiet_NaN();
        for (const AxisRange range : { AxisRange { 3, 3 }, AxisRange { 0, nan }, AxisRange { -infinity, infinity },
                 AxisRange { 1e17, 1e17 + 32 } }) {
            QVERIFY(linearPlan(range, 5, 0.0).major.isEmpty());
            QVERIFY(axisLabels(linearPlan(range, 5, 0.0), LargeNumbers::Prefixes).isEmpty());
        }
        // A step between them would not be a number, or not a precise one.
        for (const AxisRange range : { AxisRange { 0, 1.7e308 }, AxisRange { -1.7e308, 0 }, AxisRange { 0, 1e-310 } })
            QVERIFY(linearPlan(range, 1, 0.0).major.isEmpty());
        QVERIFY(decadePlan({ 1, 1 }, 5).major.isEmpty());
        QVERIFY(decadePlan({ 1, infinity }, 5).major.isEmpty());
        QVERIFY(decadePlan({ nan, nan }, 5).major.isEmpty());
    }

    void keepsWholeSteps()
    {
        const TickPlan plan = linearPlan({ 0, 3 }, 10, 1.0);
        QCOMPARE(plan.major, (QList<double> { 0, 1, 2, 3 }));
        QVERIFY(plan.minor.isEmpty());
    }

    void leavesHeadRoom()
    {
        auto random = tarnis::testing::seededGenerator(3);
        std::uniform_real_distribution<double> exponent(-9.0, 12.0);
        for (int i = 0; i < 3000; ++i) {
            const double high = std::pow(10.0, exponent(random));
            const AxisRange range = roomyRange({ 0.1 * high, high });
            QCOMPARE(range.min, 0.0);
            QVERIFY2(range.max >= 1.05 * high * (1 - 1e-9) && range.max <= 1.1 * high * (1 + 1e-9),
                qPrintable(QString::number(range.max / high)));
            const AxisRange both = roomyRange({ -high, 0.5 * high });
            QVERIFY(both.min < -high && both.max > 0.5 * high);
        }
        QCOMPARE(roomyRange({ 0, 1234 }).max, 1300.0);
        QCOMPARE(roomyRange({ 0, 0 }).max, 1.0);
        QCOMPARE(roomyRange({ 0, std::numeric_limits<double>::infinity() }).max, 1.0);
        QCOMPARE(roomyRange({ 5, -5 }).max, 1.0); // no values
    }

    void leavesHeadRoomOnDecades()
    {
        QCOMPARE(roomyDecades({ 1, 12345 }).min, 0.5);
        QCOMPARE(roomyDecades({ 1, 12345 }).max, 30000.0);
        QCOMPARE(roomyDecades({ 120, 12345 }).min, 10.0);
        QCOMPARE(roomyDecades({ 0.03, 2 }).min, 0.02);
        QCOMPARE(roomyDecades({ 0, 0 }).max, 10.0);
        for (double high = 1.0; high < 1e9; high *= 1.7) {
            const AxisRange range = roomyDecades({ 1, high });
            QVERIFY(range.max >= high * 1.05);
            QVERIFY(std::log10(range.max / high) <= std::max(0.12 * std::log10(range.max / range.min) + 0.2, 1.31));
        }
    }

    void staysCalmWhileDataVary()
    {
        auto random = tarnis::testing::seededGenerator(4);
        AxisRange shown = roomyRange({ 0, 1000 });
        AxisRange decades = roomyDecades({ 1, 1000 });
        const AxisRange first = shown;
        const AxisRange firstDecades = decades;
        for (int i = 0; i < 1000; ++i) {
            const double high = std::uniform_real_distribution<double>(900, 1030)(random);
            shown = calmRange(shown, { 0, high });
            decades = calmDecades(decades, { 1, high });
            QCOMPARE(shown, first);
            QCOMPARE(decades, firstDecades);
        }
        QVERIFY(calmRange(shown, { 0, 1049 }).max > first.max); // before the data touch the end
        QCOMPARE(calmRange(shown, { 0, 500 }).max, roomyRange({ 0, 500 }).max);
        QVERIFY(calmRange(shown, { -10, 1000 }).min < 0.0);
        QCOMPARE(calmDecades(decades, { 1, 5e6 }), roomyDecades({ 1, 5e6 }));
    }

    void keepsRoomForLabels()
    {
        QCOMPARE(calmLength(0, 40, 10), 40);
        QCOMPARE(calmLength(40, 35, 10), 40);
        QCOMPARE(calmLength(40, 20, 10), 20);
        QCOMPARE(calmLength(40, 41, 10), 41);
    }

    void readsUnits()
    {
        QCOMPARE(unitIn("Energy [keV]"), "keV");
        QCOMPARE(unitIn("Energy ( keV ) "), "keV");
        QCOMPARE(unitIn("Counts"), "");
        QCOMPARE(unitIn("[mm]"), "");
        QCOMPARE(withUnit("Energy", "keV"), "Energy (keV)");
        QCOMPARE(withUnit("Energy [MeV]", "keV"), "Energy [MeV]");
        QCOMPARE(withUnit("", "keV"), "keV");
        QCOMPARE(withUnit("Energy", ""), "Energy");
    }
};

QTEST_MAIN(TestStyleAxis)
#include "tst_styleaxis.moc"
