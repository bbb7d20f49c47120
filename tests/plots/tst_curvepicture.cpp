// The curves of the 1D plots, pixel by pixel against the drawing sample by sample, on seeded random plots.
#include "plots/randomcurves.h"
#include "support/curveoracle.h"
#include "support/curveprobe.h"
#include "support/frameoracle.h"
#include "support/randomcases.h"
#include "support/support.h"

#include <tarnis/plots/rasterpath.h>

#include <QLoggingCategory>
#include <QPainter>
#include <QTest>

#include <cmath>

using namespace tarnis::testing;

namespace {

/// The curves alone on an image of that pixel ratio.
template <typename PaintCurves>
QImage curveImage(const QRect& graph, double ratio, QPainter::RenderHints hints, PaintCurves paintCurves)
{
    QImage image(QSize(graph.right() + 30, graph.bottom() + 30) * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::black);
    QPainter painter(&image);
    painter.setRenderHints(hints);
    painter.setClipRect(graph);
    paintCurves(painter);
    return image;
}

void paintOracle(const VectorState& curves, QPainter& painter, const QRect& graph)
{
    tarnis::testing::paintVector(curves, painter, graph);
}

void paintOracle(MultiState& curves, QPainter& painter, const QRect& graph)
{
    tarnis::testing::paintMulti(curves, painter, graph);
}

/// Whether the next picture of the plot is the one of the oracle, for this frame and these curves.
template <typename Plot, typename State> bool isDrawnAs(const FrameState& frame, State& curves, Plot& plot)
{
    FrameState drawn = frame;
    const QPixmap expected = tarnis::testing::framePicture(drawn, plot, [&](QPainter& painter, const QRect& graph) {
        curves.graphRect = graph;
        paintOracle(curves, painter, graph);
    });
    plot.refreshPixmapIfRequired();
    return plot.m_pixmap.toImage() == expected.toImage();
}

/// Whether the plot draws its curves alone as the oracle does.
template <typename Plot>
bool areCurvesTheSame(Plot& plot, const QRect& graph, double ratio, QPainter::RenderHints hints = {})
{
    plot.m_graphRect = graph;
    auto curves = plot.curveState();
    const QImage expected =
        curveImage(graph, ratio, hints, [&](QPainter& painter) { paintOracle(curves, painter, graph); });
    return curveImage(graph, ratio, hints, [&](QPainter& painter) { plot.onPaint(painter, graph); }) == expected;
}

QRect randomGraph(Generator& random)
{
    const int left = whole(random, 0, 90);
    const int top = whole(random, 0, 30);
    const int width = whole(random, 1, 500);
    return { left, top, width, whole(random, 1, 300) };
}

} // namespace

class TestCurvePicture : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLoggingCategory::setFilterRules(QStringLiteral("tarnis.*.debug=false")); }
    void environmentChoosesThePath()
    {
        const bool isPainter = tarnis::rasterPath() == tarnis::RasterPath::Painter;
        QCOMPARE(isPainter, qgetenv("TARNIS_RASTER") == "painter");
    }
    void oneSeriesIsTheSame()
    {
        auto random = tarnis::testing::seededGenerator(3401);
        VectorProbe plot;
        plot.m_doubleBuffered = true;
        for (int number = 0; number < 1500; ++number) {
            shuffle(plot, random);
            plot.m_refreshRequired = true;
            VectorState curves = plot.curveState();
            if (!isDrawnAs(plot.frameState(), curves, plot))
                QFAIL(qPrintable(describe(plot, number)));
        }
    }

    void manySeriesAreTheSame()
    {
        auto random = tarnis::testing::seededGenerator(3501);
        MultiProbe plot;
        plot.m_doubleBuffered = true;
        for (int number = 0; number < 2500; ++number) {
            shuffle(plot, random);
            plot.m_refreshRequired = true;
            MultiState curves = plot.curveState();
            tarnis::testing::fitBeforePaint(curves);
            FrameState frame = plot.frameState();
            frame.minY = curves.minY;
            frame.maxY = curves.maxY;
            if (!isDrawnAs(frame, curves, plot))
                QFAIL(qPrintable(describe(plot, number) + describeForm(plot)));
            QCOMPARE(plot.m_minY, curves.minY);
        }
    }

    void isTheSameAtAnyPixelRatio_data()
    {
        QTest::addColumn<double>("ratio");
        QTest::newRow("1") << 1.0;
        QTest::newRow("1.25") << 1.25;
        QTest::newRow("1.5") << 1.5;
        QTest::newRow("1.75") << 1.75;
        QTest::newRow("2") << 2.0;
        QTest::newRow("3") << 3.0;
    }
    void isTheSameAtAnyPixelRatio()
    {
        QFETCH(double, ratio);
        auto random = tarnis::testing::seededGenerator(3502);
        MultiProbe plot;
        for (int number = 0; number < 150; ++number) {
            shuffle(plot, random);
            if (!areCurvesTheSame(plot, randomGraph(random), ratio))
                QFAIL(qPrintable(describe(plot, number) + describeForm(plot)));
        }
        VectorProbe single;
        for (int number = 0; number < 150; ++number) {
            shuffle(single, random);
            if (!areCurvesTheSame(single, randomGraph(random), ratio))
                QFAIL(qPrintable(describe(single, number)));
        }
    }

    void isTheSameAntialiased()
    {
        auto random = tarnis::testing::seededGenerator(3503);
        VectorProbe plot;
        for (int number = 0; number < 100; ++number) {
            shuffle(plot, random);
            const QRect graph(50, 10, whole(random, 1, 300), whole(random, 1, 200));
            if (!areCurvesTheSame(plot, graph, 1.0, QPainter::Antialiasing))
                QFAIL(qPrintable(describe(plot, number)));
        }
    }

    void columnsThatLeaveATurnedPicture_data()
    {
        QTest::addColumn<double>("rotation");
        QTest::newRow("to the right") << 90.0;
        QTest::newRow("to the left") << -90.0;
    }
    // The engine omits a corner of a rectangle that begins beyond the left edge of the device.
    void columnsThatLeaveATurnedPicture()
    {
        QFETCH(double, rotation);
        auto random = tarnis::testing::seededGenerator(3505);
        MultiProbe plot;
        plot.m_doubleBuffered = true;
        plot.m_rotation = rotation;
        plot.m_columnChart = true;
        plot.m_funcX2Plot = sine; // wide columns, several at a place
        plot.m_funcPlot2X = minusSeven;
        for (int number = 0; number < 200; ++number) {
            plot.resize(whole(random, 100, 400), whole(random, 100, 400));
            plot.clearData();
            QList<double> values(whole(random, 20, 60));
            for (double& value : values)
                value = chance(random, 0.05) ? std::pow(10.0, uniform(random, 2.0, 18.0)) : uniform(random, 0.0, 100.0);
            plot.setData(0, values, 100.0);
            plot.initManualX(-1000.0, 1000.0);
            plot.initMode(false, false);
            plot.setMinMaxY(0.0, 100.0);
            plot.m_refreshRequired = true;
            MultiState curves = plot.curveState();
            if (!isDrawnAs(plot.frameState(), curves, plot))
                QFAIL(qPrintable(describe(plot, number)));
        }
    }

    void returnsTheSumOfTheJoinedSamples()
    {
        auto random = tarnis::testing::seededGenerator(3504);
        MultiProbe plot;
        QImage image(400, 300, QImage::Format_ARGB32_Premultiplied);
        QPainter painter(&image);
        for (int number = 0; number < 500; ++number) {
            shuffleForm(plot, random);
            const QList<double> values = samples(random, sampleCount(random));
            const double first = uniform(random, -10.0, double(values.size()));
            const double last = uniform(random, first, double(values.size()) + 10.0);
            MultiState curves = plot.curveState();
            const double expected =
                tarnis::testing::paintMultiData(curves, painter, values, 0.1, first, last, 0.2, 10, 290);
            const double sum = plot.paintData(painter, values, 0.1, first, last, 0.2, 10, 290);
            QVERIFY2(sum == expected || (std::isnan(sum) && std::isnan(expected)), qPrintable(describeForm(plot)));
        }
    }

    void differsWhenAnythingDiffers()
    {
        MultiProbe plot;
        plot.resize(400, 300);
        for (int i = 0; i < 300; ++i) {
            plot.m_data[0].values.append(100.0 + 50.0 * std::sin(i * 0.1) + i * 7919 % 23);
            plot.m_data[1].values.append(60.0 + i * 31 % 41);
        }
        plot.initManualX(0.0, 300.0);
        plot.initManualY(0.0, 1.2 * largest(plot.m_data[0].values));
        plot.initMode(false, false);
        const QRect graph(40, 10, 340, 260);
        plot.m_graphRect = graph;
        const QImage picture = curveImage(graph, 1.0, {}, [&](QPainter& painter) { plot.onPaint(painter, graph); });
        const auto oracle = [&](auto change) {
            MultiState state = plot.curveState();
            change(state);
            return curveImage(
                graph, 1.0, {}, [&](QPainter& painter) { tarnis::testing::paintMulti(state, painter, graph); });
        };
        QCOMPARE(oracle([](MultiState&) {}), picture);
        QVERIFY(oracle([](MultiState& state) { state.columnChart = true; }) != picture);
        QVERIFY(oracle([](MultiState& state) { state.connectPoints = false; }) != picture);
        QVERIFY(oracle([](MultiState& state) { state.logScaleY = true; }) != picture);
        QVERIFY(oracle([](MultiState& state) { state.addType = 1; }) != picture);
        QVERIFY(oracle([](MultiState& state) { state.addType = 3; }) != picture);
        QVERIFY(oracle([](MultiState& state) { state.maxX = 301.0; }) != picture);
        QVERIFY(oracle([](MultiState& state) { state.maxY *= 1.01; }) != picture);
        QVERIFY(oracle([](MultiState& state) { state.data[0].enable = false; }) != picture);
        QVERIFY(oracle([](MultiState& state) { state.data[1].color = Qt::magenta; }) != picture);
        QVERIFY(oracle([](MultiState& state) { state.data[0].values[150] = 0.0; }) != picture);
    }
};

QTEST_MAIN(TestCurvePicture)
#include "tst_curvepicture.moc"
