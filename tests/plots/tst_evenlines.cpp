// The lines of plots at any device pixel ratio: their width in device pixels is the ratio, everywhere.
#include "support/curveprobe.h"
#include "support/map2dprobe.h"

#include <tarnis/plots/viewselectedroi.h>

#include <QAction>
#include <QPainter>
#include <QTest>

#include <cmath>

using tarnis::testing::MapProbe;
using tarnis::testing::MultiProbe;
using tarnis::testing::VectorProbe;

namespace {

constexpr int width = 400;
constexpr int height = 300;

const QRect graph(20, 10, 360, 280);

/// The picture drawn by `draw` on a black screen of that ratio.
template <typename Draw> QImage drawnAt(double ratio, Draw draw)
{
    QImage image(QSize(width, height) * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::black);
    QPainter painter(&image);
    painter.setClipRect(graph);
    draw(painter);
    return image;
}

int thicknessAt(double ratio)
{
    return std::max(1, static_cast<int>(std::floor(ratio + 0.5)));
}

/// Lengths of the stretches that are not black, on the image's pixels from `from` on in steps of one column or row.
QList<int> runs(const QImage& image, QPoint from, QPoint step)
{
    QList<int> lengths;
    int run = 0;
    for (QPoint at = from; image.rect().contains(at); at += step) {
        const bool isInk = (image.pixel(at) & 0xffffffU) != 0;
        if (!isInk && run > 0)
            lengths.append(run);
        run = isInk ? run + 1 : 0;
    }
    if (run > 0)
        lengths.append(run);
    return lengths;
}

QList<int> runsInRow(const QImage& image, double row)
{
    return runs(image, QPoint(0, static_cast<int>(row)), QPoint(1, 0));
}

QList<int> runsInColumn(const QImage& image, double column)
{
    return runs(image, QPoint(static_cast<int>(column), 0), QPoint(0, 1));
}

/// A plot of 18 samples or stretches of samples on `graph`, 20 pixels each.
template <typename Plot> void prepare(Plot& plot, double samples)
{
    plot.init(QStringLiteral("x"), QStringLiteral("y"), samples, 100.0, false, false);
    plot.setMinMaxX(0.0, samples);
    plot.setMinMaxY(0.0, 100.0);
    plot.m_graphRect = graph;
    plot.resize(width, height);
}

/// Rows that differ in their place within the device's pixels.
double levelOf(int number)
{
    return 3.0 + 5.1 * number;
}

/// A chart of one value a sample.
void setSamples(MultiProbe& plot, int count, bool joined)
{
    prepare(plot, count);
    QList<double> values;
    for (int i = 0; i < count; ++i)
        values.append(levelOf(i % 18));
    plot.setData(0, values, 100.0);
    plot.setMinMaxX(0.0, count);
    plot.setMinMaxY(0.0, 100.0);
    plot.m_connectPoints = joined;
}

QImage cutOut(const QImage& image, QPoint center, int reach)
{
    return image.copy(QRect(center - QPoint(reach, reach), center + QPoint(reach, reach)));
}

} // namespace

class TestEvenLines : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void levelPartsOfACurve_data() { ratios(); }
    void levelPartsOfACurve()
    {
        QFETCH(double, ratio);
        VectorProbe plot;
        prepare(plot, 18 * 200);
        QList<double> values;
        for (int i = 0; i < 18 * 200; ++i)
            values.append(levelOf(i / 200));
        plot.setData(values);
        plot.setMinMaxX(0.0, 18 * 200);
        plot.setMinMaxY(0.0, 100.0);
        const QImage image = drawnAt(ratio, [&](QPainter& painter) { plot.onPaint(painter, graph); });
        for (int part = 0; part < 18; ++part)
            QCOMPARE(runsInColumn(image, (graph.left() + 20 * part + 10) * ratio), QList<int> { thicknessAt(ratio) });
    }

    void crossesAreAlike_data() { ratios(); }
    void crossesAreAlike()
    {
        QFETCH(double, ratio);
        MultiProbe plot;
        setSamples(plot, 18, false);
        const QImage image = drawnAt(ratio, [&](QPainter& painter) { plot.onPaint(painter, graph); });
        const int reach = static_cast<int>(6 * ratio);
        QList<QImage> crosses;
        for (int i = 0; i < 18; ++i) {
            const double row = std::trunc(graph.bottom() - levelOf(i) * graph.height() / 100.0);
            const QPoint first(int(std::floor((graph.left() + 20 * i + 10 - 2) * ratio + 0.5)),
                int(std::floor((row - 2) * ratio + 0.5)));
            crosses.append(cutOut(image, first + QPoint(1, 1) * int(2 * ratio), reach));
        }
        QVERIFY(crosses.constFirst() != cutOut(image, QPoint(0, 0), reach));
        for (const QImage& cross : std::as_const(crosses))
            QCOMPARE(cross, crosses.constFirst());
    }

    void columnsMeet_data() { ratios(); }
    void columnsMeet()
    {
        QFETCH(double, ratio);
        MultiProbe plot;
        prepare(plot, 77);
        plot.setData(0, QList<double>(77, 50.0), 100.0);
        plot.setMinMaxX(0.0, 77.0);
        plot.setMinMaxY(0.0, 100.0);
        plot.m_columnChart = true;
        const QImage image = drawnAt(ratio, [&](QPainter& painter) { plot.onPaint(painter, graph); });
        for (const double row : { 160.0, 200.0, 270.0 }) {
            const QList<int> lengths = runsInRow(image, row * ratio);
            QCOMPARE(lengths.size(), 1);
            QVERIFY(lengths.first() >= int((graph.width() - 3) * ratio));
        }
    }

    void boundsOfARange_data() { ratios(); }
    void boundsOfARange()
    {
        QFETCH(double, ratio);
        VectorProbe plot;
        prepare(plot, 360.0);
        const int thickness = thicknessAt(ratio);
        for (const double first : { 10.0, 11.0, 12.3, 13.0, 14.6 }) {
            plot.m_xRangeMin = first;
            plot.m_xRangeMax = first + 171.0;
            const QImage image = drawnAt(ratio, [&](QPainter& painter) { plot.paintSelectedRect(painter); });
            QSet<int> widths;
            for (double row = graph.top() + 2; row < graph.bottom() - 2; ++row) {
                const QList<int> lengths = runsInRow(image, row * ratio);
                widths.unite(QSet<int>(lengths.cbegin(), lengths.cend()));
            }
            QCOMPARE(widths, QSet<int> { thickness });
            // Along the line, the gaps stay open.
            int column = 0;
            while (runsInColumn(image, column).isEmpty())
                ++column;
            const QList<int> dashes = runsInColumn(image, column).mid(1);
            QVERIFY(dashes.size() > 10);
            const QList<int> dashesInside = dashes.mid(0, dashes.size() - 1);
            for (const int dash : dashesInside)
                QVERIFY2(std::abs(dash - 4 * thickness) <= 1, qPrintable(QString::number(dash)));
            QVERIFY(std::abs(int(dashesInside.size()) - int(graph.height() * ratio / (6 * thickness))) <= 2);
        }
    }

    void edgesOfACut_data() { ratios(); }
    void edgesOfACut()
    {
        QFETCH(double, ratio);
        MapProbe plot;
        plot.init("x", "y", 100.0, 100.0, false, false);
        plot.resize(width, height);
        plot.m_graphRect = graph;
        plot.m_act1dCut->setChecked(true);
        for (const double from : { 10.0, 13.0, 17.0, 22.0 }) {
            plot.m_graphRect = graph;
            plot.m_cutMinX = plot.m_cutMinY = from;
            plot.m_cutMaxX = plot.m_cutMaxY = from + 61.0;
            const QImage image = drawnAt(ratio, [&](QPainter& painter) { plot.paintSelectedRect(painter); });
            const QSet<int> expected { thicknessAt(ratio) };
            QSet<int> widths;
            for (double row = graph.top() + 3; row < graph.bottom() - 3; ++row) {
                const QList<int> lengths = runsInRow(image, row * ratio);
                if (lengths.size() <= 2) // no edge along this row
                    widths.unite(QSet<int>(lengths.cbegin(), lengths.cend()));
            }
            QCOMPARE(widths, expected);
        }
    }

    void outlinesOfRegions_data() { ratios(); }
    void outlinesOfRegions()
    {
        QFETCH(double, ratio);
        MapProbe plot;
        plot.init("x", "y", 100.0, 100.0, false, false);
        plot.initManualX(0.0, 100.0);
        plot.initManualY(0.0, 100.0);
        plot.resize(width, height);
        plot.m_graphRect = graph;
        plot.enalbeRoiSelect(QRect(QPoint(0, 0), QPoint(100, 100)));
        plot.m_actRoi->setChecked(true);
        const QList<QRect> regions { { QPoint(11, 20), QPoint(30, 81) }, { QPoint(37, 15), QPoint(44, 77) },
            { QPoint(53, 22), QPoint(71, 79) }, { QPoint(74, 21), QPoint(95, 83) } };
        for (const QRect& region : regions)
            plot.GetViewSelectedROI()->addRoi(region);
        const QImage image = drawnAt(ratio, [&](QPainter& painter) { plot.paintSelectedRect(painter); });
        // The last one is selected and dashed: its sides may have a gap here.
        const QList<int> across = runsInRow(image, graph.center().y() * ratio);
        QVERIFY(across.size() >= 6);
        QCOMPARE(across, QList<int>(across.size(), thicknessAt(ratio)));
        for (const QRect& region : regions.mid(0, 3)) {
            const double column = graph.left() + graph.width() * (region.left() + 3) / 100.0;
            QCOMPARE(runsInColumn(image, column * ratio), QList<int>(2, thicknessAt(ratio)));
        }
    }

    void crossesOnAMap_data() { ratios(); }
    void crossesOnAMap()
    {
        QFETCH(double, ratio);
        MapProbe plot;
        plot.init("x", "y", 360.0, 280.0, false, false);
        plot.initManualX(0.0, 360.0);
        plot.initManualY(0.0, 280.0);
        plot.m_graphRect = graph;
        plot.m_data = { { 0.0 } };
        plot.m_rowMax = { 0.0 };
        for (int i = 0; i < 12; ++i)
            plot.m_points.append(QPointF(15 + 27 * i, 20 + 21 * i));
        const QImage image = drawnAt(ratio, [&](QPainter& painter) { plot.onPaint(painter, graph); });
        const int reach = static_cast<int>(6 * ratio);
        QList<QImage> crosses;
        for (const QPointF& point : std::as_const(plot.m_points)) {
            const QPoint corner(graph.left() + int(point.x()) - 3, graph.bottom() - int(point.y()) - 3);
            const QPoint first(int(std::floor(corner.x() * ratio + 0.5)), int(std::floor(corner.y() * ratio + 0.5)));
            crosses.append(cutOut(image, first + QPoint(1, 1) * int(3 * ratio), reach));
        }
        QVERIFY(crosses.constFirst() != cutOut(image, QPoint(0, 0), reach));
        for (const QImage& cross : std::as_const(crosses))
            QCOMPARE(cross, crosses.constFirst());
    }

    void ticksOfAColourBar_data() { ratios(); }
    void ticksOfAColourBar()
    {
        QFETCH(double, ratio);
        class Bar : public ColorBarWidget {
        public:
            using ColorBarWidget::ColorBarWidget;
            using ColorBarWidget::paint;
        };
        Bar bar(nullptr);
        bar.setMin(0.0);
        bar.setMax(100.0);
        QRect frame(0, 0, 100, height);
        const QImage image = drawnAt(ratio, [&](QPainter& painter) {
            painter.setClipping(false);
            bar.paint(painter, &frame);
        });
        // One pixel after the bar there are only ticks, on grey.
        const int column = static_cast<int>(std::floor(15 * ratio));
        const QRgb ground = image.pixel(column, image.height() - 2);
        QList<int> ticks;
        int run = 0;
        for (int y = 0; y < image.height(); ++y) {
            const bool isTick = image.pixel(column, y) != ground;
            if (!isTick && run > 0)
                ticks.append(run);
            run = isTick ? run + 1 : 0;
        }
        QVERIFY(ticks.size() > 4);
        QCOMPARE(ticks, QList<int>(ticks.size(), thicknessAt(ratio)));
    }

private:
    static void ratios()
    {
        QTest::addColumn<double>("ratio");
        for (const double ratio : { 1.0, 1.25, 1.5, 1.75, 2.0, 3.0 })
            QTest::addRow("%g", ratio) << ratio;
    }
};

QTEST_MAIN(TestEvenLines)
#include "tst_evenlines.moc"
