// The layout of the plot frame: margins, adjusted axes, pixels and values, labels, grid.
#include "plots/countingframe.h"
#include "support/cases.h"
#include "support/frameprobe.h"

#include <tarnis/foundation/helpers.h>

#include <QTest>

#include <cmath>
#include <limits>

using namespace tarnis::testing;

class TestXYGraphLayout : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { setNumberFormat('g', 6); }
    void cleanup() { setNumberFormat('g', 6); }

    void marginsFitTheWidestLabels_data()
    {
        addColumns<double, double, double, QString, int, int, int>(
            "maxX", "minY", "maxY", "nameY", "leftLetters", "topLines", "rightLetters");
        QTest::newRow("no name") << 1000.0 << 0.0 << 50.0 << "" << 2 << 1 << 4;
        QTest::newRow("with a name") << 1000.0 << 0.0 << 50.0 << "Counts" << 2 << 2 << 4;
        QTest::newRow("longer minimum") << 7.0 << -1234.5 << 50.0 << "" << 7 << 1 << 1;
        QTest::newRow("exponent") << 1e9 << 0.0 << 1e9 << "" << 5 << 1 << 5;
    }
    void marginsFitTheWidestLabels()
    {
        QFETCH(double, maxX);
        QFETCH(double, minY);
        QFETCH(double, maxY);
        QFETCH(QString, nameY);
        QFETCH(int, leftLetters);
        QFETCH(int, topLines);
        QFETCH(int, rightLetters);
        Plot plot;
        plot.setMinMaxX(0.0, maxX);
        plot.setMinMaxY(minY, maxY);
        plot.setNameY(nameY);
        int cw = 0;
        int ch = 0;
        plot.getCharSize(cw, ch);
        QSize topLeft;
        QSize bottomRight;
        plot.getMargin(topLeft, bottomRight);
        QCOMPARE(topLeft, QSize(leftLetters * cw + 10, topLines * ch));
        QCOMPARE(bottomRight, QSize(rightLetters * cw / 2 + 5, 2 * ch + 5));
    }

    void adjustAxisForms()
    {
        Plot plot;
        unsigned int ticks = 0;
        QCOMPARE(plot.adjustAxis(1024.0, ticks), 1200.0);
        QCOMPARE(ticks, 6U);
        QCOMPARE(plot.adjustAxis(100.0, ticks), 100.0);
        QCOMPARE(ticks, 5U);
        QCOMPARE(plot.adjustAxis(0.5), 0.5);
        QVERIFY(std::isnan(plot.adjustAxis(-1.0)));
    }

    void adjustAxisKeepsManualMaxima()
    {
        Plot plot;
        plot.adjustAxisX(1024.0);
        plot.adjustAxisY(1024.0);
        QCOMPARE(plot.m_maxX, 1200.0);
        QCOMPARE(plot.m_maxY, 1200.0);
        plot.initManualX(0.0, 1024.0);
        plot.initManualY(0.0, 1001.0);
        plot.adjustAxisX(7.0);
        plot.adjustAxisY(7.0);
        QCOMPARE(plot.m_maxX, 1024.0);
        QCOMPARE(plot.m_maxY, 1001.0);
        plot.m_logScaleY = true;
        plot.adjustAxisY(7.0);
        QCOMPARE(plot.m_maxY, 1001.0);
    }

    void adjustAxisYByDecades()
    {
        Plot plot;
        plot.m_logScaleY = true;
        plot.adjustAxisY(1000.0);
        QCOMPARE(plot.m_maxY, 1000.0);
        plot.adjustAxisY(1001.0);
        QCOMPARE(plot.m_maxY, 10000.0);
        plot.adjustAxisY(0.5);
        QCOMPARE(plot.m_maxY, 1.0);
    }

    void pixelsAndValues()
    {
        Plot plot;
        plot.m_graphRect = QRect(50, 20, 200, 100);
        plot.setMinMaxX(0.0, 400.0);
        plot.setMinMaxY(0.0, 50.0);
        QCOMPARE(plot.calcGraphPointF({ 150.0, 69.0 }), QPointF(200.0, 25.0));
        QCOMPARE(plot.calcWidgetPointF({ 200.0, 25.0 }), QPointF(150.0, 69.0));
        plot.setMinMaxX(400.0, 0.0); // reversed
        QCOMPARE(plot.calcGraphPointF({ 100.0, 69.0 }).x(), 300.0);
        QCOMPARE(plot.calcWidgetPointF({ 300.0, 25.0 }).x(), 100.0);
    }

    void wholePixelsAndValuesAreRoundedAndCut()
    {
        Plot plot;
        plot.m_graphRect = QRect(0, 0, 100, 100);
        plot.setMinMaxX(0.0, 50.0);
        plot.setMinMaxY(0.0, 33.0);
        QCOMPARE(plot.calcGraphPoint({ 3, 0 }), QPoint(2, 33)); // 1.5 and 32.67
        QCOMPARE(plot.calcWidgetPoint({ 1, 10 }), QPoint(2, 69)); // 2 and 68.7
        plot.setMinMaxX(0.0, 0.0);
        plot.setMinMaxY(0.0, 1e300);
        QCOMPARE(plot.calcGraphPoint({ 3, 0 }), QPoint(0, std::numeric_limits<int>::max()));
        QCOMPARE(plot.calcWidgetPoint({ 1, 0 }), QPoint(std::numeric_limits<int>::max(), 99));
    }

    void mappingIsLinearOnALogAxisToo()
    {
        Plot plot;
        plot.m_graphRect = QRect(0, 0, 100, 100);
        plot.setMinMaxX(0.0, 1.0);
        plot.setMinMaxY(1.0, 1001.0);
        plot.m_logScaleY = true;
        QCOMPARE(plot.calcGraphPointF({ 0.0, 49.0 }).y(), 501.0);
        QCOMPARE(plot.calcWidgetPointF({ 0.0, 501.0 }).y(), 49.0);
    }

    void decimalsReachTheXAxisOnePaintLater()
    {
        Plot plot;
        plot.resize(600, 400);
        plot.setMinMaxX(0.0, 0.5);
        plot.setMinMaxY(0.0, 0.5);
        plot.setDecimalX(2);
        plot.setDecimalY(2);
        plot.paintNow();
        QCOMPARE(plot.m_tickDecimalY, 1); // what calcTicks used
        QCOMPARE(plot.m_tickDecimalX, 2); // set back after calcTicks had worked with 0
        const QImage first = plot.m_pixmap.toImage();
        plot.paintNow();
        QCOMPARE(plot.m_tickDecimalX, 2);
        const QImage second = plot.m_pixmap.toImage();
        QVERIFY(first != second); // the X grid came one paint later
        const int row = plot.m_graphRect.top() + 3;
        int columns = 0;
        for (int x = plot.m_graphRect.left() + 1; x < plot.m_graphRect.right(); ++x) {
            QCOMPARE(first.pixelColor(x, row), QColor(Qt::black));
            if (second.pixelColor(x, row) == QColor(64, 64, 64))
                ++columns;
        }
        QCOMPARE(columns, 9); // 4 inner ticks and 5 halves
        plot.paintNow();
        QCOMPARE(plot.m_pixmap.toImage(), second);
    }

    void secondScaleGetsItsData()
    {
        static double factor = 10.0;
        Plot plot;
        plot.resize(600, 400);
        plot.setMinMaxX(0.0, 10.0);
        plot.setMinMaxY(0.0, 10.0);
        plot.setFuncX2Tick([](double x, void* data) { return x * *static_cast<double*>(data); },
            [](double tick, void* data) { return tick / *static_cast<double*>(data); }, &factor);
        plot.paintNow();
        const QImage tenfold = plot.m_pixmap.toImage();
        plot.setFuncX2Tick(nullptr, nullptr, nullptr);
        plot.paintNow();
        QCOMPARE(plot.m_pixmap.toImage(), tenfold); // 0 to 100 by 20 falls on the same values as 0 to 10 by 2
        factor = 3.0; // 0 to 30 by 5: values 0, 1.67 and so on
        plot.setFuncX2Tick([](double x, void* data) { return x * *static_cast<double*>(data); },
            [](double tick, void* data) { return tick / *static_cast<double*>(data); }, &factor);
        plot.paintNow();
        QVERIFY(plot.m_pixmap.toImage() != tenfold);
        QCOMPARE(plot.m_tickDecimalX, 0);
    }

    void nullScaleIsTheIdentity()
    {
        Plot plot;
        int data = 0;
        plot.setFuncX2Tick(nullptr, nullptr, &data);
        QCOMPARE(plot.m_funcX2Tick(2.5, nullptr), 2.5);
        QCOMPARE(plot.m_funcTick2X(2.5, nullptr), 2.5);
        QCOMPARE(plot.m_funcUserData, static_cast<void*>(&data));
    }

    void labelRectanglesOfOneTick()
    {
        Plot plot;
        plot.resize(600, 400);
        plot.m_labelRectMaxX = QRect(1, 2, 3, 4);
        plot.m_labelRectMaxY = QRect(5, 6, 7, 8);
        plot.paintNow(); // 0 to 0 on both axes: one tick each
        QCOMPARE(plot.m_labelRectMaxX, QRect(1, 2, 3, 4));
        QCOMPARE(plot.m_labelRectMaxY, QRect(5, 6, 7, 8));
        QVERIFY(plot.m_labelRectMinX.right() < 0); // 0 / 0: out of sight, no click opens an editor
        QCOMPARE(plot.m_labelRectMinY.left(), 0);
        plot.m_rotation = 90.0;
        plot.paintNow();
        QCOMPARE(plot.m_labelRectMaxX, QRect(1, 2, 3, 4)); // not turned either
    }

    void labelRectanglesTurnWithThePlot()
    {
        Plot plot;
        plot.resize(600, 400);
        plot.setMinMaxX(0.0, 1000.0);
        plot.setMinMaxY(0.0, 50.0);
        plot.m_rotation = -90.0;
        plot.paintNow();
        const QRect minX = plot.m_labelRectMinX; // at -90 they stay in the picture's coordinates
        const QRect maxY = plot.m_labelRectMaxY;
        QCOMPARE(minX.bottom() - minX.top(), 14);
        plot.m_rotation = 90.0;
        plot.paintNow();
        QCOMPARE(plot.m_labelRectMinX,
            QRect(QPoint(600 - minX.bottom(), minX.left()), QPoint(600 - minX.top(), minX.right())));
        QCOMPARE(plot.m_labelRectMaxY,
            QRect(QPoint(600 - maxY.bottom(), maxY.left()), QPoint(600 - maxY.top(), maxY.right())));
    }

    void dataIsPaintedIntoTheClippedGraph()
    {
        Plot plot;
        plot.resize(600, 400);
        plot.setMinMaxX(0.0, 1000.0);
        plot.setMinMaxY(0.0, 50.0);
        plot.m_margin = QMargins(10, 20, 30, 40);
        plot.paintNow();
        QCOMPARE(plot.paints, 1);
        QCOMPARE(plot.painted, plot.m_graphRect);
        QCOMPARE(plot.clip.toRect(), plot.m_graphRect);
        QCOMPARE(plot.pen.color(), QColor(Qt::black));
        int cw = 0;
        int ch = 0;
        plot.getCharSize(cw, ch);
        QCOMPARE(plot.m_graphRect,
            QRect(QPoint(10 + 2 * cw + 10, 20 + ch), QPoint(599 - 30 - 4 * cw / 2 - 5, 399 - 40 - 2 * ch - 5)));
    }

    void gridGoesUnderOrOverTheData()
    {
        class FilledPlot : public Plot {
        public:
            void onPaint(QPainter& painter, QRect const& graph) override { painter.fillRect(graph, Qt::red); }
        };
        FilledPlot plot;
        plot.resize(600, 400);
        plot.setMinMaxX(0.0, 100.0);
        plot.setMinMaxY(0.0, 100.0);
        const auto gridPixels = [&] {
            plot.paintNow();
            const QImage picture = plot.m_pixmap.toImage();
            int count = 0;
            for (int x = plot.m_graphRect.left() + 1; x < plot.m_graphRect.right(); ++x)
                count += picture.pixelColor(x, plot.m_graphRect.top() + 2) == QColor(64, 64, 64) ? 1 : 0;
            return count;
        };
        QCOMPARE(gridPixels(), 0);
        plot.SetPaintGridLineOnGraph(true);
        QCOMPARE(gridPixels(), 9);
        plot.onShowGrid();
        QCOMPARE(gridPixels(), 0);
    }

    void narrowPlotsKeepTheOuterLabels()
    {
        Plot plot;
        plot.resize(90, 400);
        plot.setMinMaxX(0.0, 1000.0);
        plot.setMinMaxY(0.0, 10.0);
        plot.paintNow();
        const QImage picture = plot.m_pixmap.toImage();
        const auto inkIn = [&](const QRect& rect) {
            for (int y = rect.top(); y <= rect.bottom(); ++y) {
                for (int x = rect.left(); x <= rect.right(); ++x) {
                    if (picture.rect().contains(x, y) && picture.pixelColor(x, y).lightness() < 100)
                        return true;
                }
            }
            return false;
        };
        QVERIFY(inkIn(plot.m_labelRectMinX));
        QVERIFY(inkIn(plot.m_labelRectMaxX));
        int marks = 0; // 0, 200, 400, 600, 800, 1000, labelled or not
        for (int x = 0; x < picture.width(); ++x)
            marks += picture.pixelColor(x, plot.m_graphRect.bottom() + 3) == QColor(Qt::black) ? 1 : 0;
        QCOMPARE(marks, 6);
        const QRect middle(plot.m_labelRectMinX.right() + 1, plot.m_labelRectMinX.top(),
            plot.m_labelRectMaxX.left() - plot.m_labelRectMinX.right() - 1, 15);
        QVERIFY(middle.width() > 0);
        QVERIFY(!inkIn(middle));
    }

    // Both are on the bottom row. On a linear axis there is only the 0.
    void zeroHidesTheLabelOfOneOnALogAxis()
    {
        const auto bottomLabel = [](bool logScale) {
            Plot plot;
            plot.resize(300, 300);
            plot.setMinMaxX(0.0, 100.0);
            plot.setMinMaxY(0.0, 1000.0);
            plot.m_logScaleY = logScale;
            plot.paintNow();
            return plot.m_pixmap.toImage().copy(plot.m_labelRectMinY);
        };
        QCOMPARE(bottomLabel(true), bottomLabel(false));
    }

    void nothingIsLostWithEmptyRanges()
    {
        constexpr double infinity = std::numeric_limits<double>::infinity();
        const double odd[] = { 0.0, 1.0, infinity, -infinity, std::nan(""), 1e308, -1e308, 5e-324 };
        Plot plot;
        plot.resize(300, 200);
        for (const double min : odd) {
            for (const double max : odd) {
                plot.setMinMaxX(min, max);
                plot.setMinMaxY(max, min);
                for (const bool log : { false, true }) {
                    plot.m_logScaleY = log;
                    plot.paintNow();
                    QCOMPARE(
                        plot.m_pixmap.toImage().pixelColor(plot.m_pixmap.rect().bottomRight()), QColor(Qt::lightGray));
                }
            }
        }
        QCOMPARE(plot.paints, 128);
    }
};

QTEST_MAIN(TestXYGraphLayout)
#include "tst_xygraphlayout.moc"
