// Samples by pixel columns, against a look at every sample.
#include "support/randomcases.h"
#include "support/support.h"

#include "tarnis/tools/curves/counterrors_p.h"
#include "tarnis/tools/curves/envelope_p.h"

#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/vectorgraphwidget.h>

#include <QTest>

#include <cmath>
#include <limits>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

QList<ColumnRun> runsOf(qsizetype samples, int perColumn)
{
    QList<ColumnRun> runs;
    for (qsizetype first = 0; first < samples; first += perColumn)
        runs.append({ static_cast<int>(first / perColumn), first, first + perColumn - 1 });
    return runs;
}

/// Every sample in turn.
QList<EnvelopeColumn> oracle(const QList<ColumnRun>& runs, const ShownCurve& curve, EnvelopeOf which)
{
    QList<EnvelopeColumn> columns;
    for (const ColumnRun& run : runs) {
        QList<double> samples;
        for (qsizetype i = run.first; i <= run.last; ++i) {
            const double sample = curve.valueAt(i);
            if (which == EnvelopeOf::Counts ? isCount(sample) : std::isfinite(sample))
                samples.append(sample);
        }
        if (!samples.isEmpty())
            columns.append({ run.column, samples.first(), samples.last(),
                *std::min_element(samples.begin(), samples.end()), *std::max_element(samples.begin(), samples.end()) });
    }
    return columns;
}

double wildSample(Generator& random)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const double wild[] = { std::nan(""), infinity, -infinity, -3.0, 0.5, 1e300, 4503599627370497.0, 0.0 };
    return chance(random, 0.02) ? wild[whole(random, 0, 7)] : std::floor(uniform(random, 0.0, 1e6));
}

} // namespace

class TestEnvelope : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void equalsALookAtEverySample()
    {
        auto random = seededGenerator(21);
        for (int round = 0; round < 300; ++round) {
            ShownCurve curve;
            const int length = whole(random, 0, 500);
            for (int part = whole(random, 1, 2); part > 0; --part) {
                QList<double> samples(part == 1 ? length : whole(random, 0, 500));
                for (double& sample : samples)
                    sample = wildSample(random);
                curve.parts.prepend(samples);
            }
            const QList<ColumnRun> runs = runsOf(whole(random, 0, 600), whole(random, 1, 60));
            for (const auto which : { EnvelopeOf::Numbers, EnvelopeOf::Counts })
                QCOMPARE(envelopeOf(runs, curve, which), oracle(runs, curve, which));
            QCOMPARE(meansOf(runs, curve).size(), oracle(runs, curve, EnvelopeOf::Numbers).size());
        }
    }

    void meansAreThoseOfTheNumbers()
    {
        const ShownCurve curve { {}, {}, { { 4, -1, 6, 10, std::nan(""), 30, 7 } } };
        QCOMPARE(meansOf(runsOf(7, 3), curve), (QList<double> { 3, 20, 7 }));
        QVERIFY(meansOf(runsOf(7, 3), {}).isEmpty());
    }

    /// On axes in both directions, of any zoom.
    void runsShareTheirPixelColumn()
    {
        auto random = seededGenerator(22);
        for (int round = 0; round < 200; ++round) {
            VectorGraphWidget plot;
            const int count = whole(random, 1, 20000);
            plot.init(QStringLiteral("x"), QStringLiteral("y"), 10, 10, true, true);
            plot.initManualX(uniform(random, -1e3, 1e3), uniform(random, 1.1e3, 1e4));
            plot.setData(QList<double>(count, 1.0));
            plot.resize(whole(random, 100, 600), 200);
            plot.grab();
            plot.onAutoScaleX(false);
            const double a = uniform(random, -2e3, 1.2e4);
            const double width = std::pow(10.0, uniform(random, -2.0, 4.0));
            plot.setMinMaxX(a, chance(random, 0.5) ? a + width : a - width);
            const PlotMapping mapping = PlotMapping::of(plot);
            const BinsInView bins = columnsInView(mapping);
            const BinPositions positionOf(mapping, bins);
            QList<ColumnRun> expected;
            for (qsizetype bin = bins.first; bin <= bins.last; ++bin) {
                const int column = static_cast<int>(std::floor(positionOf(bin)));
                if (expected.isEmpty() || expected.constLast().column != column)
                    expected.append({ column, bin, bin });
                expected.last().last = bin;
            }
            QCOMPARE(columnRuns(positionOf, bins), expected);
        }
    }
};

QTEST_MAIN(TestEnvelope)
#include "tst_envelope.moc"
