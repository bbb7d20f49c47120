// Complete pictures of the 2D plot compared with the reference drawing, on random states: the frame with bins, crosses
// and grid, the overlay of cut and regions, the colour bar, and all of them together.
#include "support/cutoracle.h"
#include "support/map2dprobe.h"
#include "support/randomcases.h"
#include "support/support.h"

#include <tarnis/foundation/helpers.h>
#include <tarnis/plots/rasterpath.h>
#include <tarnis/plots/viewselectedroi.h>

#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <limits>

using namespace tarnis::testing;

namespace {

double randomBin(Generator& generator)
{
    static const double odd[] = { std::nan(""), std::numeric_limits<double>::infinity(), -1.0, 0.5, 1e300, 1e-300 };
    if (chance(generator, 0.2))
        return 0.0;
    if (chance(generator, 0.1))
        return odd[whole(generator, 0, 5)];
    return chance(generator, 0.5) ? std::floor(uniform(generator, 0.0, 100.0)) : uniform(generator, 0.0, 100.0);
}

class Plot : public MapProbe {
public:
    using XY2DGraphWidget::paint;
    using XY2DGraphWidget::paintSelectedRect;

    void shuffle(Generator& generator)
    {
        m_data.clear();
        m_rowMax.clear();
        const int rows = whole(generator, 0, 30);
        const int columns = whole(generator, 0, 30);
        for (int row = 0; row < rows; ++row) {
            QList<double> values(chance(generator, 0.1) ? whole(generator, 0, 40) : columns);
            for (double& value : values)
                value = randomBin(generator);
            setData(row, values, uniform(generator, 0.0, 120.0), false);
        }
        m_manualX = chance(generator, 0.5);
        m_manualY = chance(generator, 0.5);
        m_initMinX = std::floor(uniform(generator, -20.0, 20.0));
        m_initMaxX = m_initMinX + uniform(generator, 1.0, 60.0);
        m_initMinY = std::floor(uniform(generator, -20.0, 20.0));
        m_initMaxY = m_initMinY + uniform(generator, 1.0, 60.0);
        m_minX = uniform(generator, -30.0, 30.0);
        m_maxX = m_minX + uniform(generator, 0.1, 60.0);
        m_minY = uniform(generator, -30.0, 30.0);
        m_maxY = m_minY + uniform(generator, 0.1, 60.0);
        m_decimalX = whole(generator, 0, 3);
        m_decimalY = whole(generator, 0, 3);
        m_showGrid = chance(generator, 0.7);
        m_paintGridOnGraph = chance(generator, 0.8);
        m_notes = chance(generator, 0.3) ? QStringLiteral("notes") : QString();
        shuffleScale(generator);
        m_points.clear();
        for (int i = whole(generator, 0, 3); i > 0; --i)
            m_points.append(QPointF(uniform(generator, -30.0, 60.0), uniform(generator, -30.0, 60.0)));
        m_cutMinX = uniform(generator, -30.0, 60.0);
        m_cutMaxX = m_cutMinX + uniform(generator, -1.0, 40.0);
        m_cutMinY = uniform(generator, -30.0, 60.0);
        m_cutMaxY = m_cutMinY + uniform(generator, -1.0, 40.0);
    }
    void shuffleScale(Generator& generator)
    {
        m_logScale = chance(generator, 0.3);
        m_colorBar->setLogScale(m_logScale);
        m_colorBar->setAutoScale(chance(generator, 0.6));
        m_minZ = uniform(generator, -10.0, 100.0);
        m_maxZ = chance(generator, 0.1) ? m_minZ : m_minZ + uniform(generator, -20.0, 1000.0);
        m_colorBar->setMin(m_minZ);
        m_colorBar->setMax(m_maxZ);
        for (QColor* colour : { &colMin, &colHalfMin, &colHalf, &colHalfMax, &colMax })
            *colour = QColor::fromRgb(static_cast<QRgb>(generator()) | 0xff000000U);
    }
    CutState cutState() const { return { m_cutMinX, m_cutMaxX, m_cutMinY, m_cutMaxY, m_1dCutActive, m_1dCutInside }; }
    /// Checks the mark alone: no windows.
    void check(QAction* action, bool on)
    {
        const QSignalBlocker quiet(action);
        action->setChecked(on);
    }
};

BarState barStateOf(const MapProbe& plot)
{
    const ColorBarWidget& bar = *plot.m_colorBar;
    BarState state;
    state.positions = bar.*(&BarProbe::m_positions);
    state.colors = bar.*(&BarProbe::m_colors);
    state.ticks = bar.*(&BarProbe::m_ticks);
    state.logScale = bar.*(&BarProbe::m_logScale);
    state.min = bar.*(&BarProbe::m_min);
    state.max = bar.*(&BarProbe::m_max);
    return state;
}

QString firstDifference(const QImage& actual, const QImage& expected)
{
    if (actual.size() != expected.size())
        return QStringLiteral("sizes differ");
    for (int y = 0; y < expected.height(); ++y) {
        for (int x = 0; x < expected.width(); ++x) {
            if (actual.pixel(x, y) != expected.pixel(x, y))
                return QStringLiteral("(%1,%2): %3 for %4")
                    .arg(x)
                    .arg(y)
                    .arg(actual.pixel(x, y), 8, 16)
                    .arg(expected.pixel(x, y), 8, 16);
        }
    }
    return QStringLiteral("none");
}

/// Draws frame, bins and crosses by the reference implementation, with a painter that has the widget's font and pen.
void paintMapSpeltOut(QPainter& painter, FrameState& frame, MapState& map)
{
    paintFrame(frame, painter, nullptr, [&](QPainter& p, const QRect& graph) {
        oracleAutoZ(map);
        oraclePaintBins(p, graph, map);
        if (!map.data.isEmpty())
            oraclePaintPoints(p, graph, map);
    });
}

} // namespace

class TestMapPicture : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        Plot().onPatternRainbow1();
        setNumberFormat('g', 6);
    }

    void environmentChoosesThePath()
    {
        const bool isPainter = tarnis::rasterPath() == tarnis::RasterPath::Painter;
        QCOMPARE(isPainter, qgetenv("TARNIS_RASTER") == "painter");
    }
    void mapsMatchTheOracle()
    {
        Generator generator = seededGenerator(1);
        Plot plot;
        for (int number = 0; number < 600; ++number) {
            plot.resize(whole(generator, 150, 500), whole(generator, 100, 400));
            plot.shuffle(generator);
            MapState map = plot.mapState();
            FrameState frame = plot.frameState();
            QImage expected(plot.size(), QImage::Format_RGB32);
            QImage actual(plot.size(), QImage::Format_RGB32);
            {
                QPainter painter(&expected);
                plot.initPainter(&painter);
                paintMapSpeltOut(painter, frame, map);
            }
            {
                QPainter painter(&actual);
                plot.initPainter(&painter);
                plot.paint(painter, nullptr);
            }
            QVERIFY2(
                actual == expected, qPrintable(QString::number(number) + ": " + firstDifference(actual, expected)));
            QCOMPARE(plot.m_graphRect, frame.graphRect);
            QCOMPARE(plot.m_minZ, map.minZ);
            QCOMPARE(plot.m_maxZ, map.maxZ);
            QVERIFY(oracleEqual(barStateOf(plot).min, map.minZ) || !map.autoZ);
        }
    }

    void overlaysMatchTheOracle()
    {
        Generator generator = seededGenerator(2);
        Plot plot;
        plot.check(plot.m_act1dCut, true);
        for (int number = 0; number < 2000; ++number) {
            plot.shuffle(generator);
            if (chance(generator, 0.1))
                plot.m_maxX = plot.m_minX - uniform(generator, 0.0, 5.0);
            plot.m_graphRect = QRect(
                whole(generator, 0, 30), whole(generator, 0, 30), whole(generator, 1, 200), whole(generator, 1, 150));
            QImage expected(260, 200, QImage::Format_RGB32);
            expected.fill(Qt::darkBlue);
            QImage actual = expected;
            QRect rect;
            {
                QPainter painter(&expected);
                painter.setClipRect(plot.m_graphRect);
                rect = oraclePaintCut(painter, plot.m_graphRect, plot.mapState(), plot.cutState());
            }
            {
                QPainter painter(&actual);
                plot.paintSelectedRect(painter);
            }
            QVERIFY2(
                actual == expected, qPrintable(QString::number(number) + ": " + firstDifference(actual, expected)));
            QCOMPARE(plot.m_cutPixelRect, rect);
        }
    }

    void overlayLeavesThePainterUnclipped()
    {
        Plot plot;
        for (const bool cut : { false, true }) {
            plot.check(plot.m_act1dCut, cut);
            QImage image(50, 50, QImage::Format_RGB32);
            QPainter painter(&image);
            plot.paintSelectedRect(painter);
            QVERIFY(!painter.hasClipping());
        }
    }

    void regionsMatchTheOracle()
    {
        Generator generator = seededGenerator(3);
        Plot plot;
        plot.enalbeRoiSelect(QRect(QPoint(-100, -100), QPoint(100, 100)));
        plot.SetRoiEnabled(true);
        ViewSelectedROI* view = plot.GetViewSelectedROI();
        QVERIFY(view);
        for (int number = 0; number < 1000; ++number) {
            plot.shuffle(generator);
            plot.m_graphRect = QRect(
                whole(generator, 0, 30), whole(generator, 0, 30), whole(generator, 1, 200), whole(generator, 1, 150));
            QList<QRect> regions;
            for (int i = whole(generator, 0, 8); i > 0; --i) {
                const QPoint corner(whole(generator, -40, 60), whole(generator, -40, 60));
                regions.append(QRect(corner, QSize(whole(generator, 1, 40), whole(generator, 1, 40))));
            }
            const bool editable = chance(generator, 0.7);
            view->setEditable(true);
            view->setRoiList(regions, whole(generator, -1, 8));
            view->setEditable(editable);
            QImage expected(260, 200, QImage::Format_RGB32);
            expected.fill(Qt::darkBlue);
            QImage actual = expected;
            {
                QPainter painter(&expected);
                painter.setClipRect(plot.m_graphRect);
                oraclePaintRegions(painter, plot.m_graphRect, plot.mapState(), view->getRoiList(),
                    editable ? view->currentIndex() : -1);
            }
            {
                QPainter painter(&actual);
                plot.paintSelectedRect(painter);
            }
            QVERIFY2(
                actual == expected, qPrintable(QString::number(number) + ": " + firstDifference(actual, expected)));
        }
        view->setEditable(true);
    }

    void barsMatchTheOracle()
    {
        Generator generator = seededGenerator(4);
        Plot plot;
        for (int number = 0; number < 1000; ++number) {
            plot.shuffleScale(generator);
            plot.m_colorBar->setAutoScale(false);
            if (chance(generator, 0.2))
                plot.m_colorBar->setMin(-uniform(generator, 0.0, 10.0));
            plot.updatePattern();
            plot.setColorBarTicks(whole(generator, 0, 20));
            QFont font = plot.font();
            font.setPixelSize(whole(generator, 8, 20));
            plot.m_colorBar->setFont(font);
            plot.m_colorBar->resize(whole(generator, 20, 120), whole(generator, 5, 400));
            setNumberFormat(chance(generator, 0.5) ? 'g' : 'f', whole(generator, 1, 8));

            BarState state = barStateOf(plot);
            QSignalSpy asked(plot.m_colorBar, &ColorBarWidget::sizeChanging);
            plot.m_colorBar->disconnect(&plot);
            const QImage actual = plot.m_colorBar->getPixmap().toImage();
            QPixmap picture(plot.m_colorBar->size());
            picture.fill(plot.m_colorBar->palette().color(QPalette::Window));
            {
                QPainter painter(&picture);
                painter.setFont(plot.m_colorBar->font());
                painter.setPen(plot.m_colorBar->palette().color(plot.m_colorBar->foregroundRole()));
                oraclePaintBar(state, painter, nullptr, *plot.m_colorBar);
            }
            QVERIFY2(actual == picture.toImage(),
                qPrintable(QString::number(number) + ": " + firstDifference(actual, picture.toImage())));
            QCOMPARE(plot.m_colorBar->*(&BarProbe::m_minRect), state.minRect);
            QCOMPARE(plot.m_colorBar->*(&BarProbe::m_maxRect), state.maxRect);
            QCOMPARE(asked.size(), state.wantedWidth ? 1 : 0);
            if (state.wantedWidth)
                QCOMPARE(asked.at(0).at(0).toInt(), *state.wantedWidth);
        }
    }

    void barsAnywhere()
    {
        class Bar : public BarProbe {
        public:
            using BarProbe::BarProbe;
            using ColorBarWidget::paint;
        };
        Bar bar(nullptr);
        bar.updatePos(0.0, Qt::black);
        bar.updatePos(1.0, Qt::white);
        Generator generator = seededGenerator(5);
        for (int number = 0; number < 300; ++number) {
            QRect rect(
                whole(generator, 0, 40), whole(generator, 0, 40), whole(generator, 20, 90), whole(generator, 40, 200));
            BarState state;
            state.positions = bar.m_positions;
            state.colors = bar.m_colors;
            QImage expected(150, 260, QImage::Format_RGB32);
            expected.fill(Qt::darkBlue);
            QImage actual = expected;
            {
                QPainter painter(&expected);
                oraclePaintBar(state, painter, &rect, bar);
            }
            {
                QPainter painter(&actual);
                bar.paint(painter, &rect);
            }
            QVERIFY2(actual == expected, qPrintable(firstDifference(actual, expected)));
            QCOMPARE(bar.m_maxRect.top(), 0); // for any rectangle
        }
    }

    void picturesMatchTheOracle()
    {
        Generator generator = seededGenerator(6);
        Plot plot;
        plot.enalbeRoiSelect(QRect(QPoint(-100, -100), QPoint(100, 100)));
        plot.SetRoiEnabled(true);
        ViewSelectedROI* view = plot.GetViewSelectedROI();
        view->addRoi(QRect(QPoint(1, 1), QPoint(6, 4)));
        view->addRoi(QRect(QPoint(-4, 2), QPoint(20, 14)));
        for (int number = 0; number < 200; ++number) {
            plot.resize(whole(generator, 250, 500), whole(generator, 150, 400));
            plot.shuffle(generator);
            plot.check(plot.m_act1dCut, chance(generator, 0.5));
            plot.check(plot.m_actRoi, chance(generator, 0.7));
            delete plot.toPixmap(); // labels on the bar may request another margin
            MapState map = plot.mapState();
            FrameState frame = plot.frameState();
            QPixmap expected(plot.size());
            expected.fill(plot.palette().color(QPalette::Window));
            {
                QPainter painter(&expected);
                plot.initPainter(&painter);
                paintMapSpeltOut(painter, frame, map);
                painter.setClipRect(frame.graphRect);
                if (plot.m_act1dCut->isChecked())
                    oraclePaintCut(painter, frame.graphRect, map, plot.cutState());
                else if (plot.m_actRoi->isChecked())
                    oraclePaintRegions(painter, frame.graphRect, map, view->getRoiList(), view->currentIndex());
                painter.setClipping(false);
                const QPixmap bar = plot.m_colorBar->getPixmap();
                painter.drawPixmap(plot.width() - bar.width(), plot.m_colorBar->y(), bar);
            }
            const std::unique_ptr<QPixmap> actual(plot.toPixmap());
            QVERIFY2(actual->toImage() == expected.toImage(),
                qPrintable(QString::number(number) + ": " + firstDifference(actual->toImage(), expected.toImage())));
        }
    }

    void nothingIsPaintedWithoutRows()
    {
        Plot plot;
        plot.resize(300, 200);
        plot.init("x", "y", 10.0, 10.0, true, true);
        plot.showPoint(5.0, 5.0);
        plot.m_showGrid = false;
        const std::unique_ptr<QPixmap> picture(plot.toPixmap());
        const QImage inside = picture->toImage().copy(plot.m_graphRect.adjusted(1, 1, -1, -1));
        QImage black = inside;
        black.fill(Qt::black);
        QCOMPARE(inside, black);
        double maxZ = 7.0;
        QVERIFY(plot.getMaxZ(maxZ));
        QCOMPARE(maxZ, 0.0);
        QCOMPARE(plot.m_minZ, 0.0);
        QCOMPARE(plot.m_colorBar->*(&BarProbe::m_max), 0.0);
    }

    void crossesButNoBinsWithAnEmptyFirstRow()
    {
        Plot plot;
        plot.resize(300, 200);
        plot.init("x", "y", 10.0, 10.0, false, false);
        plot.m_showGrid = false;
        plot.setData(1, QList<double>(10, 50.0), 50.0, false);
        plot.showPoint(5.0, 5.0);
        const std::unique_ptr<QPixmap> picture(plot.toPixmap());
        const QImage image = picture->toImage();
        QSet<QRgb> colors;
        const QRect inside = plot.m_graphRect.adjusted(1, 1, -1, -1);
        for (int y = inside.top(); y <= inside.bottom(); ++y) {
            for (int x = inside.left(); x <= inside.right(); ++x)
                colors.insert(image.pixel(x, y));
        }
        QCOMPARE(colors, (QSet<QRgb> { QColor(Qt::black).rgb(), QColor(Qt::red).rgb() }));
    }
};

QTEST_MAIN(TestMapPicture)
#include "tst_mappicture.moc"
