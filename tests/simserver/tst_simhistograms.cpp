// Histograms and the payloads of their replies, decoded like a client does.
#include "histograms.h"
#include "support/cases.h"
#include "support/payload.h"
#include "support/support.h"

#include <QtTest>

#include <cmath>

using namespace simserver;
using namespace tarnis::testing;
using tarnis::testing::doublesOf;

namespace {

Histogram1D rowsOf(int rows, int bins, unsigned long long salt)
{
    Histogram1D histogram;
    histogram.rows = rows;
    histogram.axis = { .label = {}, .unit = {}, .min = -3.5, .max = 17.25, .bins = bins };
    auto generator = seededGenerator(salt);
    std::uniform_int_distribution<int> count(0, 4);
    for (int i = 0; i < rows * bins; ++i)
        histogram.counts.push_back(count(generator));
    return histogram;
}

double sum(std::span<const double> values)
{
    double total = 0.0;
    for (const double value : values)
        total += value;
    return total;
}

} // namespace

class TestSimHistograms : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void rowsComeSampleAfterSample_data()
    {
        addColumns<int, int, int>("first", "last", "bins");
        QTest::newRow("all rows") << 0 << 4 << 24;
        QTest::newRow("some rows") << 1 << 3 << 24;
        QTest::newRow("a single row") << 2 << 2 << 24;
        QTest::newRow("bins joined") << 0 << 4 << 8;
        QTest::newRow("one bin") << 3 << 4 << 1;
    }
    void rowsComeSampleAfterSample()
    {
        QFETCH(int, first);
        QFETCH(int, last);
        QFETCH(int, bins);
        const Histogram1D histogram = rowsOf(5, 24, 1);
        const std::vector<double> values = doublesOf(rowPayload(histogram, first, last, bins));
        const int rows = last - first + 1;
        QCOMPARE(values.size(), static_cast<std::size_t>(rows * bins));
        const int group = 24 / bins;
        for (int k = 0; k < rows; ++k) {
            for (int i = 0; i < bins; ++i) {
                double expected = 0.0;
                for (int j = 0; j < group; ++j)
                    expected += histogram.counts[static_cast<std::size_t>((first + k) * 24 + i * group + j)];
                QCOMPARE(values[static_cast<std::size_t>(k + i * rows)], expected);
            }
        }
    }

    void pairsLandInTheirBins_data()
    {
        addColumns<int, bool>("bins", "all");
        for (const int bins : { 1, 5, 997, 4985 }) {
            QTest::addRow("filled ones of %d bins", bins) << bins << false;
            QTest::addRow("all of %d bins", bins) << bins << true;
        }
    }
    void pairsLandInTheirBins()
    {
        QFETCH(int, bins);
        QFETCH(bool, all);
        const Histogram1D histogram = rowsOf(2, 4985, 2);
        const std::vector<double> expected = rebinned(histogram.row(1), bins);
        const std::vector<double> pairs = doublesOf(pairPayload(histogram, 1, bins, all));
        std::vector<double> found(static_cast<std::size_t>(bins), 0.0);
        const double min = histogram.axis.min;
        const double max = histogram.axis.max;
        std::size_t filled = 0;
        for (std::size_t p = 0; p + 1 < pairs.size(); p += 2) {
            const double index = std::round((pairs[p] - min) * bins / (max - min));
            QVERIFY(index >= 0.0 && index < bins);
            found[static_cast<std::size_t>(index)] += pairs[p + 1];
            filled += pairs[p + 1] != 0.0 ? 1U : 0U;
        }
        QCOMPARE(found, expected);
        QCOMPARE(pairs.size() / 2, all ? static_cast<std::size_t>(bins) : filled);
    }

    void pairsOfAnEmptyRow()
    {
        Histogram1D histogram = rowsOf(1, 10, 3);
        histogram.counts.assign(10, 0.0);
        QCOMPARE(pairPayload(histogram, 0, 10, false).size(), 0);
        QCOMPARE(pairPayload(histogram, 0, 10, true).size(), 160);
    }

    void mapComesRowAfterRow_data()
    {
        addColumns<int, int>("xBins", "yBins");
        QTest::newRow("as it is") << 12 << 8;
        QTest::newRow("columns joined") << 4 << 8;
        QTest::newRow("rows joined") << 12 << 2;
        QTest::newRow("both joined") << 3 << 4;
        QTest::newRow("one bin") << 1 << 1;
    }
    void mapComesRowAfterRow()
    {
        QFETCH(int, xBins);
        QFETCH(int, yBins);
        Histogram2D map;
        map.x.bins = 12;
        map.y.bins = 8;
        for (int i = 0; i < 96; ++i)
            map.counts.push_back(i * i % 31);
        const std::vector<double> values = doublesOf(mapPayload(map, xBins, yBins));
        QCOMPARE(values.size(), static_cast<std::size_t>(xBins * yBins));
        std::vector<double> expected(values.size(), 0.0);
        for (int y = 0; y < 8; ++y) {
            for (int x = 0; x < 12; ++x) {
                const int bin = y * yBins / 8 * xBins + x * xBins / 12;
                expected[static_cast<std::size_t>(bin)] += map.counts[static_cast<std::size_t>(y * 12 + x)];
            }
        }
        QCOMPARE(values, expected);
    }

    void everyHistogramHoldsEveryEvent()
    {
        HistogramSet set(5);
        const EventModel model({ .modules = 5, .peaks = 4, .background = 0.5 });
        Random random(3, 1, 0);
        for (int i = 0; i < 5000; ++i)
            set.fill(model.sample(random));
        for (const Histogram1D& histogram : set.all1D())
            QCOMPARE(sum(histogram.counts), 5000.0);
        for (const Histogram2D& map : set.all2D())
            QCOMPARE(sum(map.counts), 5000.0);
        // The rows of `time` add up to `total`, their sums are `counts`.
        const Histogram1D& time = *set.find1D("time");
        std::vector<double> total(HistogramSet::timeBins, 0.0);
        for (int row = 0; row < 5; ++row) {
            QCOMPARE(sum(time.row(row)), set.find1D("counts")->counts[static_cast<std::size_t>(row)]);
            QCOMPARE(sum(set.find1D("position")->row(row)), sum(time.row(row)));
            for (std::size_t i = 0; i < total.size(); ++i)
                total[i] += time.row(row)[i];
        }
        QCOMPARE(total, set.find1D("total")->counts);
    }

    void eventsLandInTheirBins()
    {
        HistogramSet set(4);
        set.fill({ .module = 2, .horizontal = 0.625, .vertical = 0.25, .time = 0.5 });
        QCOMPARE(set.find1D("time")->row(2)[8192], 1.0);
        QCOMPARE(set.find1D("position")->row(2)[256], 1.0);
        QCOMPARE(set.find2D("image")->counts[256 * 1024 + 640], 1.0);
        QCOMPARE(set.find2D("timemap")->counts[640 * 1024 + 512], 1.0);
    }

    void sharesAtTheBordersStayInside()
    {
        HistogramSet set(1);
        const double last = std::nextafter(1.0, 0.0);
        set.fill({ .module = 0, .horizontal = last, .vertical = last, .time = last });
        set.fill({ .module = 0, .horizontal = 0.0, .vertical = 0.0, .time = 0.0 });
        QCOMPARE(set.find1D("total")->counts.back(), 1.0);
        QCOMPARE(set.find1D("total")->counts.front(), 1.0);
        QCOMPARE(set.find2D("image")->counts.back(), 1.0);
        QCOMPARE(set.find2D("image")->counts.front(), 1.0);
    }

    void clearLeavesTheMeasuredSpectrum()
    {
        HistogramSet set(2);
        Spectrum spectrum;
        spectrum.counts = { 5.0, 6.0 };
        spectrum.offset = -1.0;
        spectrum.slope = 0.5;
        spectrum.unit = QStringLiteral("keV");
        set.addSpectrum(spectrum);
        set.fillSampled(1);
        set.fill(Event());
        set.clear();
        QCOMPARE(set.find1D("spectrum")->counts, spectrum.counts);
        QCOMPARE(sum(set.find1D("sampled")->counts), 0.0);
        QCOMPARE(sum(set.find1D("time")->counts), 0.0);
        QCOMPARE(set.find1D("spectrum")->axis.min, -1.0);
        QCOMPARE(set.find1D("spectrum")->axis.max, 0.0);
        QCOMPARE(set.find1D("sampled")->axis.label, QStringLiteral("Energy"));
    }

    void anotherNumberOfModules()
    {
        HistogramSet set(2);
        set.fill(Event());
        set.setModules(7);
        QCOMPARE(set.find1D("time")->rows, 7);
        QCOMPARE(set.find1D("position")->counts.size(), std::size_t { 7 * 1024 });
        QCOMPARE(set.find1D("counts")->axis.bins, 7);
        QCOMPARE(sum(set.find1D("total")->counts), 0.0);
        set.fill({ .module = 6, .horizontal = 0.99, .vertical = 0.0, .time = 0.0 });
        QCOMPARE(set.find1D("counts")->counts[6], 1.0);
    }

    void namesAreFound()
    {
        const HistogramSet set(1);
        QVERIFY(set.find1D("time") != nullptr);
        QVERIFY(set.find1D("Time") == nullptr);
        QVERIFY(set.find1D("image") == nullptr);
        QVERIFY(set.find1D("spectrum") == nullptr);
        QVERIFY(set.find2D("image") != nullptr);
        QVERIFY(set.find2D("time") == nullptr);
    }
};

QTEST_APPLESS_MAIN(TestSimHistograms)
#include "tst_simhistograms.moc"
