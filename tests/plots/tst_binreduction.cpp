// Bins that share a pixel, compared with a reduction of the painted bins pixel by pixel, on random maps and zooms.
#include "support/randomcases.h"
#include "support/support.h"
#include "tarnis/plots/math/binreduction_p.h"

#include <QTest>

#include <cmath>
#include <limits>
#include <map>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

BinRows randomRows(Generator& generator, int columns, int rows)
{
    BinRows bins;
    for (int y = 0; y < rows; ++y) {
        QList<double> row(whole(generator, 0, columns));
        for (double& value : row)
            value = chance(generator, 0.1) ? std::nan("") : std::floor(uniform(generator, -3, 20));
        bins.append(row);
    }
    return bins;
}

BinGeometry randomView(Generator& generator, int columns, int rows)
{
    const auto axis = [&](int bins) {
        BinAxis result;
        result.min = chance(generator, 0.5) ? 0.0 : uniform(generator, -2, bins);
        result.max = result.min + uniform(generator, 1, 1.5 * bins);
        result.manual = true;
        result.step = 1.0;
        return result;
    };
    const QRect rect(10, 20, whole(generator, 1, 60), whole(generator, 1, 60));
    return { rect, visibleBins(axis(columns), rect.width(), columns), visibleBins(axis(rows), rect.height(), rows) };
}

/// The finite bins at each pixel, by the pixel where a bin begins.
std::map<std::pair<int, int>, QList<double>> byPixel(const BinRows& rows, const BinGeometry& view)
{
    std::map<std::pair<int, int>, QList<double>> pixels;
    for (int y = view.y.first; y < view.y.end; ++y) {
        for (int x = view.x.first; x < std::min<int>(view.x.end, static_cast<int>(rows.at(y).size())); ++x) {
            const int row = view.paintsBars() ? view.bar(y, view.x.first).top() : view.lineTop(y);
            if (std::isfinite(rows.at(y).at(x)))
                pixels[{ view.left(x), row }].append(rows.at(y).at(x));
        }
    }
    return pixels;
}

} // namespace

class TestBinReduction : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void reducesEachPixel()
    {
        Generator generator = seededGenerator(1);
        for (int i = 0; i < 1500; ++i) {
            const int columns = whole(generator, 1, 150);
            const int count = whole(generator, 1, 150);
            const BinRows rows = randomRows(generator, columns, count);
            const BinGeometry view = randomView(generator, columns, count);
            const auto expected = byPixel(rows, view);
            for (const BinReduction reduction : { BinReduction::Maximum, BinReduction::Sum, BinReduction::Mean }) {
                const BinRows result = reducedBins(rows, view, reduction);
                QCOMPARE(result.size(), rows.size());
                if (!hasSharedPixels(view))
                    continue;
                auto shown = byPixel(result, view);
                for (const auto& [pixel, values] : expected) {
                    double wanted = reduction == BinReduction::Maximum ? -infinity : 0.0;
                    for (const double value : values)
                        wanted = reduction == BinReduction::Maximum ? std::max(wanted, value) : wanted + value;
                    if (reduction == BinReduction::Mean)
                        wanted /= static_cast<double>(values.size());
                    // One bin of the pixel has the value, all others are 0.
                    double found = 0.0;
                    int filled = 0;
                    for (const double value : shown[pixel]) {
                        found += value;
                        filled += static_cast<int>(value != 0.0);
                    }
                    QVERIFY(filled <= 1);
                    QVERIFY2(std::abs(found - wanted) < 1e-9, qPrintable(QString::number(i)));
                }
            }
        }
    }

    void keepsWhatSharesNoPixel()
    {
        const BinRows rows { { 1, 2 }, { 3, 4 } };
        const BinAxis axis { 0, 2, 0, true, 1, 1 };
        const BinGeometry view { QRect(0, 0, 100, 100), visibleBins(axis, 100, 2), visibleBins(axis, 100, 2) };
        QVERIFY(!hasSharedPixels(view));
        QCOMPARE(reducedBins(rows, view, BinReduction::Sum), rows);
    }

    void survivesOddViews()
    {
        const BinRows rows { { 1, 2 }, { infinity, std::nan("") } };
        for (const double end : { 0.0, -5.0, 1e300, std::nan(""), infinity }) {
            const BinAxis axis { 0, end, 0, true, 1, 1 };
            const BinGeometry view { QRect(0, 0, 1, 1), visibleBins(axis, 1, 2), visibleBins(axis, 1, 2) };
            QCOMPARE(reducedBins(rows, view, BinReduction::Maximum).size(), 2);
            QCOMPARE(reducedBins({}, view, BinReduction::Sum).size(), 0);
        }
        QCOMPARE(largestBin(rows), 2.0);
        QCOMPARE(largestBin({ { -1 } }), 0.0);
    }
};

QTEST_GUILESS_MAIN(TestBinReduction)
#include "tst_binreduction.moc"
