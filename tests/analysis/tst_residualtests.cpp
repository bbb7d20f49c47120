// Detection of missing model parts in a fit's residuals: further peaks, wrong shapes, curved backgrounds.
#include <tarnis/analysis/spectrumfit.h>

#include "support/support.h"

#include <QTest>

#include <array>
#include <cmath>
#include <random>

using namespace tarnis;

namespace {

constexpr int bins = 80;

struct Truth {
    double level = 20.0;
    double bend = 0.0;
    PeakShape shape = PeakShape::Gaussian;
    std::array<double, 2> widths { 3.0, 0.0 };
    double second = 0.0; ///< area of a further peak
    double apart = 0.0;
    double step = 0.0;
};

FitResult fitted(const Truth& truth, const FitOptions& options = {})
{
    std::mt19937_64 random(11);
    std::vector<double> counts;
    const std::array gaussian { 3.0 };
    for (int i = 0; i < bins; ++i) {
        const double u = (i - 40.0) / 40.0;
        double mean =
            truth.level + truth.bend * u * u + truth.step * 0.5 * std::erfc((i - 40.0) / 3.0 / std::sqrt(2.0));
        mean += 4000.0 * peakIntegral(truth.shape, i - 0.5, i + 0.5, 40.0, truth.widths);
        mean += truth.second * peakIntegral(PeakShape::Gaussian, i - 0.5, i + 0.5, 40.0 + truth.apart, gaussian);
        counts.push_back(static_cast<double>(std::poisson_distribution<int>(mean)(random)));
    }
    BinnedData data;
    data.contents = counts;
    return fitSpectrum(data, 0, bins - 1, {}, options);
}

} // namespace

class TestResidualTests : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void acceptsTheRightModel()
    {
        const FitResult result = fitted({});
        QVERIFY2(result.acceptable, qPrintable(result.reasons.join(u'\n')));
    }

    void detectsMissingModelParts_data()
    {
        QTest::addColumn<Truth>("truth");
        QTest::addColumn<QString>("word");
        Truth truth;
        truth.second = 150.0;
        truth.apart = 15.0;
        QTest::newRow("a further peak") << truth << QStringLiteral("a peak is missing");
        truth.second = 2500.0;
        truth.apart = 5.0;
        QTest::newRow("a doublet") << truth << QStringLiteral("shape");
        truth = {};
        truth.shape = PeakShape::TailLeft;
        truth.widths = { 3.0, 4.0 };
        QTest::newRow("a tail") << truth << QStringLiteral("shape");
        truth = {};
        truth.shape = PeakShape::Lorentzian;
        QTest::newRow("a Lorentzian") << truth << QStringLiteral("shape");
        truth = {};
        truth.bend = 60.0;
        QTest::newRow("a bent background") << truth << QStringLiteral("background");
        truth = {};
        truth.step = 30.0;
        QTest::newRow("a step") << truth << QStringLiteral("background");
    }
    void detectsMissingModelParts()
    {
        QFETCH(Truth, truth);
        QFETCH(QString, word);
        const FitResult result = fitted(truth);
        QVERIFY(!result.acceptable);
        QVERIFY2(result.reasons.join(u'\n').contains(word), qPrintable(result.reasons.join(u'\n')));
    }

    void detectsAFurtherPeakWithAllStatistics()
    {
        Truth truth;
        truth.second = 600.0;
        truth.apart = 15.0;
        for (const FitStatistic statistic :
            { FitStatistic::Cash, FitStatistic::Pearson, FitStatistic::Neyman, FitStatistic::Unweighted }) {
            FitOptions options;
            options.statistic = statistic;
            QVERIFY(!fitted(truth, options).acceptable);
        }
    }
};

QTEST_MAIN(TestResidualTests)
#include "tst_residualtests.moc"
