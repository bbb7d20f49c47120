// The plot frame's pictures, pixel by pixel against the frame drawn call by call, on seeded random plots.
#include "support/frameoracle.h"
#include "support/frameprobe.h"
#include "support/randomcases.h"
#include "support/support.h"

#include <tarnis/foundation/helpers.h>
#include <tarnis/plots/xygraphwidget.h>

#include <QPainter>
#include <QTest>

#include <cmath>
#include <limits>

using tarnis::testing::chance;
using tarnis::testing::FrameState;
using tarnis::testing::Generator;
using tarnis::testing::uniform;
using tarnis::testing::whole;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

/// Draws something distinguishable from grid and clip.
void drawCross(QPainter& painter, const QRect& graph)
{
    painter.setPen(QColor(200, 120, 0));
    painter.drawLine(graph.topLeft(), graph.bottomRight());
    painter.drawLine(graph.left() - 30, graph.center().y(), graph.right() + 30, graph.center().y());
    painter.setPen(Qt::green);
    painter.drawRect(graph.adjusted(graph.width() / 3, graph.height() / 3, 0, 0));
}

class CrossPlot : public tarnis::testing::FrameProbe<XYGraphWidget> {
public:
    void onPaint(QPainter& painter, QRect const& graph) override
    {
        drawCross(painter, graph);
        m_minY -= refit;
    }

    double refit = 0.0; ///< change of an automatic axis by painting
};

double channelToMass(double x, void* offset)
{
    return x * x * 0.01 + *static_cast<double*>(offset);
}

double massToChannel(double mass, void* offset)
{
    return std::sqrt((mass - *static_cast<double*>(offset)) * 100.0);
}

/// Ends of a range: usually typical values, sometimes values that break naive arithmetic.
double limit(Generator& random)
{
    switch (whole(random, 0, 13)) {
    case 0:
        return 0.0;
    case 1:
        return 1.0;
    case 2:
        return whole(random, -10, 10);
    case 3:
        return std::pow(10.0, whole(random, -3, 6));
    case 4:
        return whole(random, 0, 1) * 1024.0 * whole(random, 1, 32);
    case 5:
        return uniform(random, -1.0, 1.0);
    case 6:
        return uniform(random, -1e-9, 1e-9);
    case 7:
        return std::pow(10.0, uniform(random, -12.0, 15.0));
    case 8:
        return -std::pow(10.0, uniform(random, -12.0, 15.0));
    default:
        return uniform(random, -2000.0, 20000.0);
    }
}

double oddLimit(Generator& random)
{
    const double odd[] = { infinity, -infinity, notANumber, 1e308, -1e308, 5e-324, 1e-310, 4.6e18, -2147483649.0 };
    return odd[whole(random, 0, 8)];
}

QSize plotSize(Generator& random)
{
    switch (whole(random, 0, 9)) {
    case 0:
        return { whole(random, 1, 80), whole(random, 1, 60) };
    case 1:
        return { whole(random, 800, 1600), whole(random, 600, 1200) };
    case 2:
        return { whole(random, 1, 1600), whole(random, 1, 40) };
    default:
        return { whole(random, 60, 700), whole(random, 50, 500) };
    }
}

QString name(Generator& random)
{
    const QString names[] = { QString(), QStringLiteral("Energy [keV]"), QStringLiteral("X"),
        QStringLiteral("Ünits µs"),
        QStringLiteral("A name that is a good deal longer than most plots are wide, so that it is cut somewhere") };
    return names[whole(random, 0, 4)];
}

/// Sets everything that the picture depends on at random.
void shuffle(CrossPlot& plot, Generator& random)
{
    plot.resize(plotSize(random));
    const bool odd = chance(random, 0.08);
    const auto end = [&] { return odd && chance(random, 0.5) ? oddLimit(random) : limit(random); };
    plot.setMinMaxX(end(), end());
    plot.setMinMaxY(end(), end());
    if (chance(random, 0.1))
        plot.setMinMaxX(plot.m_minX, plot.m_minX);
    if (chance(random, 0.1))
        plot.setMinMaxY(plot.m_minY, plot.m_minY);
    if (chance(random, 0.2))
        plot.initManualX(uniform(random, -100.0, 100.0), uniform(random, -100.0, 100.0));
    if (chance(random, 0.3)) {
        plot.setMinMaxX(0.0, plot.adjustAxis(std::fabs(limit(random))));
        plot.setMinMaxY(0.0, plot.adjustAxis(std::fabs(limit(random))));
    }
    plot.m_logScaleY = chance(random, 0.3);
    plot.setDecimalX(whole(random, -1, 4));
    plot.setDecimalY(whole(random, -1, 4));
    plot.m_tickDecimalX = whole(random, 0, 3);
    plot.m_nameX = name(random);
    plot.m_nameY = name(random);
    plot.setNotes(chance(random, 0.5) ? QString() : name(random));
    plot.m_margin = chance(random, 0.6)
        ? QMargins()
        : QMargins(whole(random, 0, 60), whole(random, 0, 60), whole(random, 0, 120), whole(random, 0, 60));
    plot.m_showGrid = chance(random, 0.8);
    plot.m_paintGridOnGraph = chance(random, 0.4);
    const double rotations[] = { 0.0, 90.0, -90.0, 45.0, std::nextafter(90.0, 91.0), 180.0 };
    plot.m_rotation = chance(random, 0.6) ? 0.0 : rotations[whole(random, 0, 5)];
    static double offset = 0.5;
    if (chance(random, 0.15))
        plot.setFuncX2Tick(channelToMass, massToChannel, &offset);
    else
        plot.setFuncX2Tick(nullptr, nullptr, nullptr);
    QFont font;
    font.setPointSize(whole(random, 6, 16));
    font.setBold(chance(random, 0.2));
    plot.setFont(font);
    XYGraphWidget::m_backGroundColor = chance(random, 0.7) ? QColor(Qt::black) : QColor(20, 40, 90);
    setNumberFormat(chance(random, 0.8) ? 'g' : 'f', whole(random, 0, 9));
    plot.m_xRangeMin = chance(random, 0.5) ? 0.0 : end();
    plot.m_xRangeMax = chance(random, 0.3) ? plot.m_xRangeMin
        : std::isfinite(plot.m_minX)       ? uniform(random, plot.m_minX, plot.m_minX + 100.0)
                                           : end();
}

QString describe(const CrossPlot& plot, int number)
{
    return QStringLiteral("case %1: %2x%3, x %4 to %5, y %6 to %7, log %8, decimals %9")
               .arg(number)
               .arg(plot.width())
               .arg(plot.height())
               .arg(plot.m_minX)
               .arg(plot.m_maxX)
               .arg(plot.m_minY)
               .arg(plot.m_maxY)
               .arg(plot.m_logScaleY)
               .arg(plot.m_decimalX)
        + QStringLiteral(" and %1, rotation %2").arg(plot.m_decimalY).arg(plot.m_rotation);
}

/// The state after a paint, as text.
QString traces(const FrameState& state)
{
    QString text;
    QDebug(&text) << state.graphRect << state.labelRectMinX << state.labelRectMaxX << state.labelRectMinY
                  << state.labelRectMaxY << state.tickDecimalX << state.tickDecimalY;
    return text;
}

/// Brush and clip of the painter after a paint.
QString painterState(const QPainter& painter)
{
    QString text;
    QDebug(&text) << painter.brush() << painter.hasClipping() << painter.clipBoundingRect();
    return text;
}

} // namespace

class TestFramePicture : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        setNumberFormat('g', 6);
        XYGraphWidget::m_backGroundColor = Qt::black;
    }
    void cleanup() { init(); }

    void isTheSameThroughTheCache()
    {
        auto random = tarnis::testing::seededGenerator(3201);
        CrossPlot plot;
        plot.m_doubleBuffered = true;
        for (int number = 0; number < 2500; ++number) {
            shuffle(plot, random);
            plot.m_refreshRequired = true;
            FrameState state = plot.frameState();
            const QPixmap expected = tarnis::testing::framePicture(state, plot, drawCross);
            plot.refreshPixmapIfRequired();
            if (plot.m_pixmap.toImage() != expected.toImage())
                QFAIL(qPrintable(describe(plot, number)));
            if (traces(plot.frameState()) != traces(state))
                QFAIL(qPrintable(describe(plot, number) + traces(plot.frameState()) + traces(state)));
        }
    }

    void isTheSameWithoutACache()
    {
        auto random = tarnis::testing::seededGenerator(3202);
        CrossPlot plot;
        for (int number = 0; number < 1000; ++number) {
            shuffle(plot, random);
            plot.refit = chance(random, 0.3) ? uniform(random, 0.0, 100.0) : 0.0;
            FrameState state = plot.frameState();
            const std::unique_ptr<QPixmap> picture(plot.toPixmap());
            const bool turned = std::fabs(std::fabs(plot.m_rotation) - 90.0) < 1e-9;
            QPixmap expected(turned ? plot.size().transposed() : plot.size());
            QCOMPARE(picture->size(), expected.size());
            {
                QPainter painter(&expected);
                plot.initPainter(&painter);
                tarnis::testing::paintFrame(state, painter, nullptr, [&](QPainter& data, const QRect& graph) {
                    drawCross(data, graph);
                    state.minY -= plot.refit;
                });
            }
            if (picture->toImage() != expected.toImage())
                QFAIL(qPrintable(describe(plot, number)));
            if (traces(plot.frameState()) != traces(state))
                QFAIL(qPrintable(describe(plot, number)));
        }
    }

    void isTheSameInAGivenRectangle()
    {
        auto random = tarnis::testing::seededGenerator(3203);
        CrossPlot plot;
        for (int number = 0; number < 1000; ++number) {
            shuffle(plot, random);
            QRect rect(QPoint(whole(random, -50, 200), whole(random, -50, 150)), plotSize(random));
            QImage picture(500, 400, QImage::Format_ARGB32_Premultiplied);
            picture.fill(Qt::cyan);
            QImage expected = picture;
            FrameState state = plot.frameState();
            QPainter painter(&picture);
            QPainter expectedPainter(&expected);
            const QPen pen(QColor(whole(random, 0, 255), 0, 200), whole(random, 0, 3));
            painter.setPen(pen);
            expectedPainter.setPen(pen);
            plot.paint(painter, &rect);
            tarnis::testing::paintFrame(state, expectedPainter, &rect, drawCross);
            QCOMPARE(painterState(painter), painterState(expectedPainter));
            painter.end();
            expectedPainter.end();
            if (picture != expected)
                QFAIL(qPrintable(describe(plot, number)));
            if (traces(plot.frameState()) != traces(state))
                QFAIL(qPrintable(describe(plot, number)));
        }
    }

    void showsTheSelectedRangeOverThePicture()
    {
        auto random = tarnis::testing::seededGenerator(3204);
        CrossPlot plot;
        plot.m_doubleBuffered = true;
        for (int number = 0; number < 600; ++number) {
            shuffle(plot, random);
            plot.m_refreshRequired = true;
            FrameState state = plot.frameState();
            QImage expected(plot.size(), QImage::Format_ARGB32_Premultiplied);
            {
                QPainter painter(&expected);
                painter.drawPixmap(0, 0, tarnis::testing::framePicture(state, plot, drawCross));
                tarnis::testing::paintFrameOverlay(state, painter);
            }
            QImage picture(plot.size(), QImage::Format_ARGB32_Premultiplied);
            plot.render(&picture);
            if (picture != expected)
                QFAIL(qPrintable(describe(plot, number)));
        }
    }

    void aPaintThatLeavesPixelsFindsThePictureFilled()
    {
        struct PartlyPaintedPlot : XYGraphWidget {
            void paint(QPainter& painter, QRect* rect) override
            {
                ++paints;
                if (withFrame)
                    XYGraphWidget::paint(painter, rect);
                painter.fillRect(0, 0, 10, 10, Qt::red);
            }
            void onPaint(QPainter&, QRect const&) override { }
            QImage picture()
            {
                refreshPixmap();
                refreshPixmapIfRequired();
                return m_pixmap.toImage();
            }

            bool withFrame = true;
            int paints = 0;
        };
        PartlyPaintedPlot plot;
        plot.m_doubleBuffered = true;
        plot.resize(200, 150);
        QPixmap mark(plot.size());
        mark.fill(Qt::lightGray);
        QPainter(&mark).fillRect(0, 0, 10, 10, Qt::red);
        const QImage framed = plot.picture();
        QCOMPARE(plot.picture(), framed);
        QCOMPARE(plot.paints, 2);
        plot.withFrame = false;
        QCOMPARE(plot.picture(), mark.toImage());
        QCOMPARE(plot.paints, 4); // the first of the two detected uncovered pixels
        QCOMPARE(plot.picture(), mark.toImage());
        QCOMPARE(plot.paints, 5);
        plot.withFrame = true;
        QCOMPARE(plot.picture(), framed);
    }

    void thePictureIsFilledBeforeThePaint()
    {
        CrossPlot plot;
        plot.m_doubleBuffered = true;
        plot.resize(200, 150);
        QList<QImage> seen;
        const auto redraw = [&] {
            plot.refreshPixmap();
            plot.refreshPixmapIfRequired();
        };
        redraw();
        QObject::connect(&plot, &DoubleBufferedWidget::painting, &plot, [&] { seen.append(plot.m_pixmap.toImage()); });
        redraw();
        redraw();
        QPixmap filled(plot.size());
        filled.fill(Qt::lightGray);
        QCOMPARE(seen, QList<QImage>({ filled.toImage(), filled.toImage() }));
    }

    void keepsTheFormatOfATranslucentPalette()
    {
        CrossPlot plot;
        plot.m_doubleBuffered = true;
        plot.resize(200, 150);
        QPalette colours = plot.palette();
        colours.setBrush(QPalette::Window, QColor(0, 0, 0, 100));
        plot.setPalette(colours);
        for (int i = 0; i < 3; ++i) {
            plot.refreshPixmap();
            plot.refreshPixmapIfRequired();
            QVERIFY(plot.m_pixmap.hasAlphaChannel());
        }
    }

    void differsWhenAnythingDiffers()
    {
        CrossPlot plot;
        plot.m_doubleBuffered = true;
        plot.resize(400, 300);
        plot.setMinMaxX(0.0, 100.0);
        plot.setMinMaxY(0.0, 50.0);
        plot.m_refreshRequired = true;
        plot.refreshPixmapIfRequired();
        const QImage picture = plot.m_pixmap.toImage();
        const auto oracle = [&](auto change) {
            FrameState state = plot.frameState();
            change(state);
            return tarnis::testing::framePicture(state, plot, drawCross).toImage();
        };
        QCOMPARE(oracle([](FrameState&) {}), picture);
        QVERIFY(oracle([](FrameState& state) { state.maxX = 100.5; }) != picture);
        QVERIFY(oracle([](FrameState& state) { state.minY = -1.0; }) != picture);
        QVERIFY(oracle([](FrameState& state) { state.showGrid = false; }) != picture);
        QVERIFY(oracle([](FrameState& state) { state.paintGridOnGraph = true; }) != picture);
        QVERIFY(oracle([](FrameState& state) { state.logScaleY = true; }) != picture);
        QVERIFY(oracle([](FrameState& state) { state.nameX = QStringLiteral("x"); }) != picture);
        QVERIFY(oracle([](FrameState& state) { state.nameY = QStringLiteral("y"); }) != picture);
        QVERIFY(oracle([](FrameState& state) { state.notes = QStringLiteral("n"); }) != picture);
        QVERIFY(oracle([](FrameState& state) { state.margin = QMargins(0, 0, 1, 0); }) != picture);
        QVERIFY(oracle([](FrameState& state) { state.rotation = 90.0; }) != picture);
        QVERIFY(oracle([](FrameState& state) { state.backGround = Qt::blue; }) != picture);
    }
};

QTEST_MAIN(TestFramePicture)
#include "tst_framepicture.moc"
