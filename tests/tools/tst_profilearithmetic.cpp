// Profiles along lines of a map: against a visit of every bin, and for lines along the axes and the diagonal.
#include "support/randomcases.h"
#include "support/support.h"
#include "tarnis/tools/maps/profilearithmetic_p.h"

#include <QTest>

#include <cmath>
#include <limits>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

QList<QList<double>> ramp(int columns, int rows)
{
    QList<QList<double>> bins;
    for (int y = 0; y < rows; ++y) {
        QList<double> row;
        for (int x = 0; x < columns; ++x)
            row.append(x + 100 * y);
        bins.append(row);
    }
    return bins;
}

} // namespace

class TestProfileArithmetic : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void alongTheAxesEachStepIsABin()
    {
        const auto bins = ramp(8, 5);
        const Profile right = profileAlong(bins, { { 1.5, 2.5 }, { 5.5, 2.5 }, 1 }, ProfileJoin::Sum);
        QCOMPARE(right.values, (QList<double> { 201, 202, 203, 204, 205 }));
        const Profile left = profileAlong(bins, { { 5.5, 2.5 }, { 1.5, 2.5 }, 1 }, ProfileJoin::Sum);
        QCOMPARE(left.values, (QList<double> { 205, 204, 203, 202, 201 }));
        const Profile up = profileAlong(bins, { { 3.5, 0.5 }, { 3.5, 4.5 }, 3 }, ProfileJoin::Mean);
        QCOMPARE(up.values, (QList<double> { 3, 103, 203, 303, 403 }));
        QCOMPARE(up.bins, (QList<int> { 3, 3, 3, 3, 3 }));
        const Profile largest = profileAlong(bins, { { 3.5, 0.5 }, { 3.5, 4.5 }, 3 }, ProfileJoin::Maximum);
        QCOMPARE(largest.values, (QList<double> { 4, 104, 204, 304, 404 }));
        QCOMPARE(right.step, 1.0);
    }

    void aPointIsOneStep()
    {
        QCOMPARE(profileAlong(ramp(8, 5), { { 2.5, 1.5 }, { 2.5, 1.5 }, 1 }, ProfileJoin::Sum).values,
            (QList<double> { 102 }));
    }

    void countsEachBinOnce()
    {
        Generator generator = seededGenerator(1);
        for (int i = 0; i < 1500; ++i) {
            QList<QList<double>> rows(whole(generator, 1, 40));
            for (QList<double>& row : rows) {
                row.resize(whole(generator, 0, 40));
                for (double& value : row)
                    value = chance(generator, 0.05) ? std::nan("") : std::floor(uniform(generator, -5, 50));
            }
            const auto place = [&] { return QPointF(uniform(generator, -10, 50), uniform(generator, -10, 50)); };
            const ProfileBand band { place(), place(), uniform(generator, 0, 20) };
            const ProfileSteps steps = stepsOf(band);
            double sum = 0.0;
            double largest = -infinity;
            int count = 0;
            for (int y = 0; y < rows.size(); ++y) {
                for (int x = 0; x < rows.at(y).size(); ++x) {
                    const QPointF at = QPointF(x + 0.5, y + 0.5) - band.from;
                    const double along = QPointF::dotProduct(at, steps.direction);
                    const double across = steps.direction.x() * at.y() - steps.direction.y() * at.x();
                    const double value = rows.at(y).at(x);
                    if (!std::isfinite(value) || along < -steps.step / 2 || along >= (steps.count - 0.5) * steps.step
                        || std::abs(across) > steps.halfWidth)
                        continue;
                    sum += value;
                    largest = std::max(largest, value);
                    ++count;
                }
            }
            const Profile all = profileAlong(rows, band, ProfileJoin::Sum);
            const Profile top = profileAlong(rows, band, ProfileJoin::Maximum);
            QCOMPARE(all.values.size(), steps.count);
            double found = 0.0;
            double foundLargest = -infinity;
            int bins = 0;
            for (int k = 0; k < steps.count; ++k) {
                QCOMPARE(std::isnan(all.values.at(k)), all.bins.at(k) == 0);
                if (all.bins.at(k) > 0) {
                    found += all.values.at(k);
                    foundLargest = std::max(foundLargest, top.values.at(k));
                }
                bins += all.bins.at(k);
            }
            QCOMPARE(bins, count);
            QCOMPARE(found, sum);
            QCOMPARE(foundLargest, largest);
        }
    }

    void noStepOnTheMapIsEmpty()
    {
        Generator generator = seededGenerator(2);
        const auto bins = ramp(60, 60);
        for (int i = 0; i < 1000; ++i) {
            const auto place = [&] { return QPointF(whole(generator, 2, 57) + 0.5, whole(generator, 2, 57) + 0.5); };
            const Profile profile = profileAlong(bins, { place(), place(), 1 }, ProfileJoin::Mean);
            for (const int count : profile.bins)
                QVERIFY(count > 0);
        }
    }

    void survivesOddBands()
    {
        const auto bins = ramp(4, 4);
        QVERIFY(profileAlong(bins, { { std::nan(""), 0 }, { 1, 1 }, 1 }, ProfileJoin::Sum).values.isEmpty());
        QVERIFY(profileAlong(bins, { { 0, 0 }, { infinity, 1 }, 1 }, ProfileJoin::Sum).values.isEmpty());
        QVERIFY(profileAlong(bins, { { 0, 0 }, { 1e12, 1 }, 1 }, ProfileJoin::Sum).values.isEmpty());
        QVERIFY(profileAlong(bins, { { 0, 0 }, { 1, 1 }, infinity }, ProfileJoin::Sum).values.isEmpty());
        const Profile outside = profileAlong(bins, { { 50, 50 }, { 60, 50 }, -3 }, ProfileJoin::Mean);
        QCOMPARE(outside.values.size(), 11);
        QVERIFY(std::isnan(outside.values.first()));
        QCOMPARE(profileAlong({}, { { 0, 0 }, { 3, 0 }, 1 }, ProfileJoin::Sum).values.size(), 4);
    }
};

QTEST_GUILESS_MAIN(TestProfileArithmetic)
#include "tst_profilearithmetic.moc"
