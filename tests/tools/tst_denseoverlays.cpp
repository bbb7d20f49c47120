// Error bars and references of many samples, pixel by pixel against a drawing of every sample. For screens with one
// pixel for each of the plot's.
#include "support/cases.h"
#include "support/pictures.h"
#include "support/randomcases.h"
#include "support/support.h"
#include "support/visibleplot.h"

#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/tools/errorbars.h>
#include <tarnis/tools/referencecurves.h>

#include <QMap>
#include <QPainter>
#include <QTest>

#include <cmath>
#include <optional>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

QList<double> randomCounts(Generator& random, int count, double largest)
{
    QList<double> samples(count);
    for (double& sample : samples)
        sample = chance(random, 0.01) ? std::nan("") : std::floor(uniform(random, 0, largest));
    return samples;
}

/// Pixel column of the middle of a bin.
int columnOf(const PlotMapping& mapping, qsizetype bin)
{
    const AxisRange edges = mapping.columnEdges(bin);
    return static_cast<int>(std::floor(mapping.columnOf(edges.min + (edges.max - edges.min) / 2.0)));
}

/// A line from each sample to the next one.
void drawEverySample(QImage& image, const PlotMapping& mapping, const QList<double>& samples, const QColor& colour)
{
    QPainter painter(&image);
    painter.setClipRect(mapping.frameRect());
    painter.setPen(QPen(colour, 1.0));
    std::optional<QPoint> previous;
    for (qsizetype i = 0; i < samples.size(); ++i) {
        if (!std::isfinite(samples.at(i)))
            continue;
        const QPoint at(columnOf(mapping, i), static_cast<int>(mapping.rowOf(samples.at(i))));
        if (previous)
            painter.drawLine(*previous, at);
        previous = at;
    }
}

} // namespace

class TestDenseOverlays : public QObject {
    Q_OBJECT

private Q_SLOTS:
    /// The band of a pixel column extends from the lowest to the highest end of the bars of its samples.
    void bandsEncloseEveryBar_data()
    {
        addColumns<bool, double, double>("isLog", "from", "to");
        QTest::newRow("linear") << false << 0.0 << 9000.0;
        QTest::newRow("logarithmic") << true << 0.0 << 9000.0;
        QTest::newRow("reversed") << false << 7000.0 << 100.5;
    }
    void bandsEncloseEveryBar()
    {
        QFETCH(bool, isLog);
        QFETCH(double, from);
        QFETCH(double, to);
        auto random = seededGenerator(8);
        QList<double> samples(9000);
        for (double& sample : samples)
            sample = chance(random, 0.02) ? 0.5 : std::floor(uniform(random, 0, 60));
        VectorGraphWidget plot;
        plot.init("Time", "Counts", 10, 100, true, true);
        plot.initManualX(0, 9000);
        plot.initManualY(isLog ? 0.1 : 0, 100);
        plot.setLogScaleY(isLog);
        plot.setData(samples);
        ErrorBars bars(&plot);
        plot.onShowGrid(); // off: its lines would be mistaken for bars
        showActive(plot);
        plot.onAutoScaleX(false);
        plot.setMinMaxX(from, to);
        plot.refreshPixmap();
        const QImage before = plot.grab().toImage();
        bars.setOn(true);
        const QImage after = plot.grab().toImage();
        const PlotMapping mapping = PlotMapping::of(plot);
        const QRect rect = mapping.frameRect();
        QMap<int, QPair<int, int>> bands; // rows by column
        for (int i = 0; i < 9000; ++i) {
            const auto [low, high] = ErrorBars::interval(ErrorBars::Method::Poisson, samples.at(i));
            if (std::isnan(low))
                continue;
            const AxisRange edges = mapping.columnEdges(i);
            const int column = static_cast<int>(std::floor(mapping.columnOf((edges.min + edges.max) / 2.0)));
            const int top = static_cast<int>(std::floor(mapping.rowOf(high)));
            const int bottom = isLog && low <= 0.0 ? rect.bottom() : static_cast<int>(std::floor(mapping.rowOf(low)));
            auto& band = bands.contains(column) ? bands[column] : (bands[column] = { top, bottom });
            band = { std::min(band.first, top), std::max(band.second, bottom) };
        }
        for (int x = rect.left() + 1; x < rect.right(); ++x) {
            for (int y = rect.top() + 1; y < rect.bottom(); ++y) {
                const bool isInside = bands.contains(x) && y >= bands[x].first && y <= bands[x].second;
                const int grey = qRed(before.pixel(x, y));
                const int expected = isInside ? grey + (255 - grey) * 110 / 255 : grey;
                QVERIFY2(std::abs(qRed(after.pixel(x, y)) - expected) <= 2,
                    qPrintable(QStringLiteral("%1 %2: %3").arg(x).arg(y).arg(qRed(after.pixel(x, y)))));
            }
        }
    }

    void denseReferencesCoverThePixelsOfEverySample_data()
    {
        addColumns<double, double, bool>("from", "to", "isLog");
        QTest::newRow("whole") << 0.0 << 20000.0 << false;
        QTest::newRow("part") << 3000.3 << 7100.7 << false;
        QTest::newRow("reversed") << 9000.0 << 400.0 << false;
        QTest::newRow("logarithmic") << 0.0 << 20000.0 << true;
    }
    void denseReferencesCoverThePixelsOfEverySample()
    {
        QFETCH(double, from);
        QFETCH(double, to);
        QFETCH(bool, isLog);
        auto random = seededGenerator(41);
        const QList<double> samples = randomCounts(random, 20000, 900);
        VectorGraphWidget plot;
        plot.init("Channel", "Counts", 10, 1000, true, true);
        plot.initManualX(0, 20000);
        plot.initManualY(isLog ? 0.1 : 0, 1000);
        plot.setLogScaleY(isLog);
        plot.setData(samples);
        ReferenceCurves references(&plot);
        showActive(plot);
        plot.onAutoScaleX(false);
        plot.setMinMaxX(from, to);
        references.freeze();
        plot.setData(QList<double>(20000, 5.0));
        plot.refreshPixmap();
        const QImage with = plot.grab().toImage();
        const PlotMapping mapping = PlotMapping::of(plot);
        references.clear();
        QImage expected = plot.grab().toImage();
        drawEverySample(expected, mapping, samples, QColor(207, 207, 207)); // white, faded
        const QRect free = mapping.frameRect().adjusted(0, 0, 0, -40); // above the label
        QCOMPARE(with.copy(free), expected.copy(free));
    }

    void referenceHasAGapWhereSamplesAreMissing_data()
    {
        QTest::addColumn<int>("perBin"); // samples
        QTest::newRow("dashed") << 1;
        QTest::newRow("dense") << 1000;
    }
    void referenceHasAGapWhereSamplesAreMissing()
    {
        QFETCH(const int, perBin);
        QList<double> samples;
        for (const double value : { 20.0, 20.0, std::nan(""), 20.0, 20.0 })
            samples += QList<double>(perBin, value);
        VectorGraphWidget plot;
        plot.init("Time", "Counts", 10, 40, true, true);
        plot.initManualX(0, 5);
        plot.initManualY(0, 40);
        plot.setData(samples);
        showActive(plot);
        ReferenceCurves references(&plot);
        references.freeze(QStringLiteral("r"));
        plot.setData(QList<double>(samples.size(), 0.0));
        plot.refreshPixmap();
        plot.grab();
        const QImage image = plot.grab().toImage();
        const auto hasReference = [&](double from, double to) {
            const PlotMapping mapping = PlotMapping::of(plot);
            const QRectF line(mapping.pixelOf({ from, 20.5 }), mapping.pixelOf({ to, 19.5 }));
            return hasPixel(image, line.center().toPoint(), (line.size() / 2.0).toSize(),
                [](const QColor& colour) { return colour == QColor(207, 207, 207); }); // white, faded
        };
        QVERIFY(hasReference(0.5, 1.5));
        QVERIFY(!hasReference(2.1, 2.9));
        QVERIFY(hasReference(3.5, 4.5));
    }

    /// Differences of 1, 2 and 5 are the ends of an axis, and small counts have many of them.
    void stripShowsPointsAtTheEndsOfItsAxis()
    {
        VectorGraphWidget plot;
        plot.init("Time", "Counts", 10, 40, true, true);
        plot.initManualX(0, 4);
        plot.initManualY(0, 40);
        plot.setData({ 16, 16, 16, 16 });
        showActive(plot);
        ReferenceCurves references(&plot);
        references.freeze(QStringLiteral("r"));
        plot.setData({ 21, 16, 11, 16 });
        references.setView(ReferenceCurves::View::Difference); // an axis from -5 to 5
        plot.refreshPixmap();
        plot.grab();
        const QImage image = plot.grab().toImage();
        const auto isPointAt = [&](double x, int row) {
            const int column = static_cast<int>(PlotMapping::of(plot).pixelOf({ x, 0 }).x()); // of the error bar
            return colourAt(image, QPoint(column - 1, row)) == QColor(Qt::white)
                && colourAt(image, QPoint(column + 1, row)) == QColor(Qt::white);
        };
        const int top = plot.height() - 120 + 8; // of the frame
        const int bottom = plot.height() - 6;
        for (int i = 1; i <= 3; ++i) {
            QVERIFY(isPointAt(0.5, top + i));
            QVERIFY(isPointAt(2.5, bottom - i));
        }
    }

    void denseStripsShowEveryBin()
    {
        auto random = seededGenerator(42);
        const QList<double> before = randomCounts(random, 8000, 400);
        const QList<double> after = randomCounts(random, 8000, 400);
        VectorGraphWidget plot;
        plot.init("Channel", "Counts", 10, 400, true, true);
        plot.initManualX(0, 8000);
        plot.initManualY(0, 400);
        plot.setData(before);
        ReferenceCurves references(&plot);
        references.freeze();
        references.setView(ReferenceCurves::View::Difference); // uniform from -400 to 400: an axis from -500 to 500
        plot.setData(after);
        showActive(plot);
        const QImage image = plot.grab().toImage();
        const PlotMapping mapping = PlotMapping::of(plot);
        const QRect rect = mapping.frameRect();
        const QRect strip(QPoint(rect.left(), plot.height() - 112), QPoint(rect.right(), plot.height() - 6));
        QImage expected(image.size(), QImage::Format_RGB32);
        expected.fill(Qt::black);
        for (int i = 0; i < 8000; ++i) {
            const double value = after.at(i) - before.at(i);
            if (!std::isfinite(value))
                continue;
            const int row = static_cast<int>(strip.bottom() - 2 - (value + 500.0) / 1000.0 * (strip.height() - 5));
            for (int k = 0; k < 9; ++k)
                expected.setPixelColor(QPoint(columnOf(mapping, i), row) + QPoint(k % 3 - 1, k / 3 - 1), Qt::white);
        }
        const int zero = static_cast<int>(strip.bottom() - 2 - (strip.height() - 5) / 2.0);
        for (int y = strip.top() + 30; y < strip.bottom(); ++y) { // below the title
            for (int x = strip.left() + 1; y != zero && y != zero + 1 && x < strip.right(); ++x)
                QVERIFY2(image.pixelColor(x, y) == expected.pixelColor(x, y),
                    qPrintable(QStringLiteral("%1 %2: %3").arg(x).arg(y).arg(image.pixelColor(x, y).name())));
        }
    }
};

QTEST_MAIN(TestDenseOverlays)
#include "tst_denseoverlays.moc"
