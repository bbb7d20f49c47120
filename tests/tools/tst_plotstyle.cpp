// Styles: colours by calculation, pixels by the plot's mapping, ranges, and the classic look without them.
#include "support/pictures.h"
#include "support/support.h"
#include "support/wait.h"

#include <tarnis/export/plotexporter.h>
#include <tarnis/plots/curvenames.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/viewselectedroi.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/plotcrosshair.h>
#include <tarnis/tools/plotlegend.h>
#include <tarnis/tools/plotnavigator.h>
#include <tarnis/tools/plotstyle.h>

#include <QAction>
#include <QJsonObject>
#include <QMenu>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <array>
#include <cmath>
#include <limits>
#include <memory>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

const QList<PlotStyle::Theme> allThemes { PlotStyle::Theme::Light, PlotStyle::Theme::Dark, PlotStyle::Theme::Print,
    PlotStyle::Theme::HighContrast };

using Triple = std::array<double, 3>;
using Matrix = std::array<Triple, 3>;

double linear(int channel)
{
    const double share = channel / 255.0;
    return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
}

Triple times(const Matrix& matrix, const Triple& v)
{
    Triple result {};
    for (std::size_t i = 0; i < 3; ++i)
        result[i] = matrix[i][0] * v[0] + matrix[i][1] * v[1] + matrix[i][2] * v[2];
    return result;
}

/// sRGB to XYZ.
const Matrix toXyz { { { 0.4124564, 0.3575761, 0.1804375 }, { 0.2126729, 0.7151522, 0.0721750 },
    { 0.0193339, 0.1191920, 0.9503041 } } };

/// G. M. Machado, M. M. Oliveira, L. A. F. Fernandes, A Physiologically-based Model for Simulation of Color Vision
/// Deficiency, IEEE Trans. Vis. Comput. Graph. 15 (2009) 1291, severity 1.0; the identity is the unimpaired eye.
const std::array<Matrix, 4> eyes { {
    { { { 1, 0, 0 }, { 0, 1, 0 }, { 0, 0, 1 } } },
    { { { 0.152286, 1.052583, -0.204868 }, { 0.114503, 0.786281, 0.099216 }, { -0.003882, -0.048116, 1.051998 } } },
    { { { 0.367322, 0.860646, -0.227968 }, { 0.280085, 0.672501, 0.047413 }, { -0.011820, 0.042940, 0.968881 } } },
    { { { 1.255528, -0.076749, -0.178779 }, { -0.078411, 0.930809, 0.147602 }, { 0.004733, 0.691367, 0.303900 } } },
} };

Triple rgbOf(const QColor& color)
{
    return { linear(color.red()), linear(color.green()), linear(color.blue()) };
}

/// WCAG 2.1.
double contrast(const QColor& a, const QColor& b)
{
    const double la = times(toXyz, rgbOf(a))[1] + 0.05;
    const double lb = times(toXyz, rgbOf(b))[1] + 0.05;
    return std::max(la, lb) / std::min(la, lb);
}

/// CIE 1976 L*a*b* for an eye with this colour matrix.
Triple labOf(const QColor& color, const Matrix& eye)
{
    Triple rgb = times(eye, rgbOf(color));
    for (double& channel : rgb)
        channel = std::clamp(channel, 0.0, 1.0);
    Triple xyz = times(toXyz, rgb);
    constexpr Triple white { 0.95047, 1.0, 1.08883 };
    for (std::size_t i = 0; i < 3; ++i) {
        const double t = xyz[i] / white[i];
        xyz[i] = t > 0.008856 ? std::cbrt(t) : 7.787 * t + 16.0 / 116.0;
    }
    return { 116.0 * xyz[1] - 16.0, 500.0 * (xyz[0] - xyz[1]), 200.0 * (xyz[1] - xyz[2]) };
}

double distance(const QColor& a, const QColor& b, const Matrix& eye)
{
    const Triple la = labOf(a, eye);
    const Triple lb = labOf(b, eye);
    return std::hypot(la[0] - lb[0], la[1] - lb[1], la[2] - lb[2]);
}

void fill(VectorGraphWidget& plot)
{
    plot.init("Energy [keV]", "Counts", 100, 10, true, true);
    plot.initManualX(0, 100);
    plot.setData({ 4, 1, 0, std::nan(""), 2.5, 50, 6, 7, 834, 9 });
    plot.setMaxValue(834);
}

void fill(MultiVectorGraphWidget& plot, int count = 3)
{
    plot.m_groupSize = 1;
    plot.init("Channel", "Counts", 0, 0, true, true);
    for (int i = 0; i < count; ++i) {
        QList<double> values;
        for (int k = 0; k < 50; ++k)
            values.append(100.0 * (i + 1) + (k % 2));
        plot.setData(i, values, 100.0 * (i + 1) + 1);
    }
    plot.resizeData(count);
}

void fill(XY2DGraphWidget& map, const char* nameX = "X [mm]", const char* nameY = "Y [mm]")
{
    map.init(nameX, nameY, 0, 0, true, true);
    map.initManualX(0, 20);
    map.initManualY(0, 10);
    for (int row = 0; row < 10; ++row) {
        QList<double> bins(20, 0.0);
        bins[row] = 1000.0;
        map.setData(row, bins, 1000.0, false);
    }
}

QImage grabbed(XYGraphWidget& plot, QSize size = QSize(640, 420))
{
    plot.m_doubleBuffered = true;
    if (plot.size() != size)
        plot.resize(size);
    plot.grab();
    return plot.grab().toImage();
}

bool isAbout(const QColor& a, const QColor& b)
{
    return std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) + std::abs(a.blue() - b.blue()) < 100;
}

/// Whether a pixel near the value has about that colour.
bool hasColor(const QImage& image, const XYGraphWidget& plot, double x, double y, const QColor& color)
{
    const QPoint at = PlotMapping::of(plot).pixelOf({ x, y }).toPoint();
    return hasPixel(image, at, QSize(2, 2), [&](const QColor& found) { return isAbout(found, color); });
}

} // namespace

class TestPlotStyle : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void coloursAreReadable()
    {
        for (const PlotStyle::Theme theme : allThemes) {
            const QColor background = PlotStyle::backgroundColor(theme);
            QVERIFY(contrast(PlotStyle::textColor(theme), background) >= 7.0);
            for (int i = 0; i < PlotStyle::seriesColorCount(); ++i)
                QVERIFY2(contrast(PlotStyle::seriesColor(theme, i), background) >= 3.0,
                    qPrintable(QStringLiteral("%1 %2").arg(int(theme)).arg(i)));
        }
    }

    // 17 is about eight just noticeable differences.
    void coloursDifferForEveryEye()
    {
        for (const PlotStyle::Theme theme : allThemes) {
            for (const Matrix& eye : eyes) {
                for (int i = 0; i < PlotStyle::seriesColorCount(); ++i) {
                    for (int k = 0; k < i; ++k) {
                        const double apart =
                            distance(PlotStyle::seriesColor(theme, i), PlotStyle::seriesColor(theme, k), eye);
                        QVERIFY2(apart >= 17.0,
                            qPrintable(QStringLiteral("%1: %2 %3 %4").arg(int(theme)).arg(i).arg(k).arg(apart)));
                    }
                }
            }
        }
    }

    void detachingBringsTheClassicLookBack_data()
    {
        QTest::addColumn<QString>("kind");
        for (const char* kind : { "one", "many", "map" })
            QTest::newRow(kind) << kind;
    }
    void detachingBringsTheClassicLookBack()
    {
        QFETCH(QString, kind);
        const auto make = [&]() -> std::unique_ptr<XYGraphWidget> {
            if (kind == "one") {
                auto plot = std::make_unique<VectorGraphWidget>();
                fill(*plot);
                return plot;
            }
            if (kind == "many") {
                auto plot = std::make_unique<MultiVectorGraphWidget>();
                fill(*plot);
                return plot;
            }
            auto map = std::make_unique<XY2DGraphWidget>();
            fill(*map);
            return map;
        };
        const auto untouched = make();
        const auto styled = make();
        const QImage classic = grabbed(*untouched);
        QCOMPARE(grabbed(*styled), classic);
        for (const PlotStyle::Theme theme : allThemes) {
            auto* const style = new PlotStyle(styled.get(), theme);
            QVERIFY(grabbed(*styled) != classic);
            delete style;
            QCOMPARE(grabbed(*styled), classic);
        }
        double low = 0.0;
        double high = 0.0;
        double classicHigh = 0.0;
        styled->getMinMaxY(low, high);
        untouched->getMinMaxY(low, classicHigh);
        QCOMPARE(high, classicHigh);
    }

    void theLatestStyleIsShown()
    {
        VectorGraphWidget plot;
        fill(plot);
        auto* const light = new PlotStyle(&plot, PlotStyle::Theme::Light);
        const QImage first = grabbed(plot);
        auto* const dark = new PlotStyle(&plot, PlotStyle::Theme::Dark);
        QVERIFY(grabbed(plot) != first);
        delete dark;
        QCOMPARE(grabbed(plot), first);
        delete light;
    }

    void drawsCurvesAtTheMappedPositions()
    {
        for (const PlotStyle::Theme theme : allThemes) {
            MultiVectorGraphWidget plot;
            fill(plot);
            const PlotStyle style(&plot, theme);
            const QImage image = grabbed(plot);
            for (int i = 0; i < 3; ++i) {
                QVERIFY(hasColor(image, plot, 25.0, 100.0 * (i + 1) + 0.5, PlotStyle::seriesColor(theme, i)));
                QVERIFY(!hasColor(image, plot, 25.0, 100.0 * (i + 1) - 50, PlotStyle::seriesColor(theme, i)));
            }
        }
    }

    void automaticRangesLeaveHeadRoom()
    {
        VectorGraphWidget plot;
        fill(plot);
        const PlotStyle style(&plot);
        grabbed(plot);
        double low = 0.0;
        double high = 0.0;
        plot.getMinMaxY(low, high);
        QCOMPARE(low, 0.0);
        QVERIFY(high >= 834 * 1.05 && high <= 834 * 1.1);
        QCOMPARE(high, 880.0);
    }

    void automaticRangesShowWhatIsVisibleAndEnabled()
    {
        MultiVectorGraphWidget plot;
        fill(plot);
        const PlotStyle style(&plot);
        grabbed(plot);
        double low = 0.0;
        double high = 0.0;
        plot.getMinMaxX(low, high);
        QCOMPARE(high, 50.0); // ends with the data
        plot.getMinMaxY(low, high);
        QCOMPARE(high, 320.0);
        plot.setEnable(2, false);
        plot.refreshPixmap();
        grabbed(plot);
        plot.getMinMaxY(low, high);
        QCOMPARE(high, 220.0);

        VectorGraphWidget one;
        fill(one);
        const PlotStyle second(&one);
        one.onAutoScaleX(false);
        one.setMinMaxX(1, 59); // without the largest
        one.refreshPixmap();
        grabbed(one);
        one.getMinMaxY(low, high);
        QCOMPARE(high, 54.0);
    }

    void aLiveAxisStaysCalm()
    {
        VectorGraphWidget plot;
        fill(plot);
        const PlotStyle style(&plot);
        grabbed(plot);
        double low = 0.0;
        double first = 0.0;
        plot.getMinMaxY(low, first);
        for (const double largest : { 860.0, 800.0, 700.0, 840.0 }) {
            plot.setData({ 1, 2, largest, 4 });
            plot.setMaxValue(largest);
            plot.refreshPixmap();
            grabbed(plot);
            double high = 0.0;
            plot.getMinMaxY(low, high);
            QCOMPARE(high, first);
        }
    }

    void heldRangesStay()
    {
        MultiVectorGraphWidget plot;
        fill(plot);
        const PlotStyle style(&plot);
        plot.onAutoScaleX(false);
        plot.onAutoScaleY(false);
        plot.setMinMaxX(3, 17);
        plot.setMinMaxY(20, 90);
        plot.refreshPixmap();
        grabbed(plot);
        double low = 0.0;
        double high = 0.0;
        plot.getMinMaxX(low, high);
        QCOMPARE(low, 3.0);
        QCOMPARE(high, 17.0);
        plot.getMinMaxY(low, high);
        QCOMPARE(low, 20.0);
        QCOMPARE(high, 90.0);
    }

    void oneCountIsSeenOnALogarithmicAxis()
    {
        VectorGraphWidget plot;
        plot.init("Channel", "Counts", 100, 10, true, true);
        plot.setData({ 1, 1, 0, 0, 1000, 1000 });
        plot.setMaxValue(1000);
        plot.setLogScaleY(true);
        PlotStyle style(&plot);
        style.setCurveForm(PlotStyle::CurveForm::Steps);
        const QImage image = grabbed(plot);
        const PlotMapping mapping = PlotMapping::of(plot);
        QCOMPARE(mapping.y().min, 0.5);
        QVERIFY(mapping.rowOf(1.0) < mapping.rowOf(0.0) - 10);
        QCOMPARE(mapping.rowOf(0.0), double(mapping.frameRect().bottom()));
        QVERIFY(hasColor(image, plot, 1.0, 1.0, PlotStyle::seriesColor(PlotStyle::Theme::Light, 0)));
    }

    void formsDrawWhatTheySay()
    {
        VectorGraphWidget plot;
        plot.init("Channel", "Counts", 100, 10, true, true);
        plot.setData({ 10, 100, 10, 100 });
        plot.setMaxValue(100);
        PlotStyle style(&plot);
        const QColor color = PlotStyle::seriesColor(PlotStyle::Theme::Light, 0);
        style.setCurveForm(PlotStyle::CurveForm::Steps);
        QVERIFY(hasColor(grabbed(plot), plot, 1.2, 100, color));
        style.setCurveForm(PlotStyle::CurveForm::Lines);
        QVERIFY(!hasColor(grabbed(plot), plot, 1.2, 100, color));
        QVERIFY(hasColor(grabbed(plot), plot, 1.0, 55, color));
        style.setCurveForm(PlotStyle::CurveForm::Points);
        QVERIFY(!hasColor(grabbed(plot), plot, 1.0, 55, color));
        QVERIFY(hasColor(grabbed(plot), plot, 1.5, 100, color));
        style.setCurveForm(PlotStyle::CurveForm::Columns);
        const QImage columns = grabbed(plot);
        const QPoint inside = PlotMapping::of(plot).pixelOf({ 1.5, 50 }).toPoint();
        QVERIFY(colorAt(columns, inside) != QColor(Qt::white));
    }

    void theMenuChoosesTheForm()
    {
        MultiVectorGraphWidget plot;
        fill(plot);
        PlotStyle style(&plot);
        const QImage lines = grabbed(plot);
        plot.onConnectPoints(false);
        const QImage points = grabbed(plot);
        style.setCurveForm(PlotStyle::CurveForm::Points);
        QCOMPARE(grabbed(plot), points);
        style.setCurveForm(PlotStyle::CurveForm::Lines);
        QCOMPARE(grabbed(plot), lines);
    }

    void textsGrowWithThePlot()
    {
        const auto marginsOf = [](QSize size) {
            VectorGraphWidget plot;
            fill(plot);
            const PlotStyle style(&plot);
            grabbed(plot, size);
            return plot.height() - PlotMapping::of(plot).plotRect().bottom();
        };
        QVERIFY(marginsOf({ 1600, 1000 }) > 1.6 * marginsOf({ 640, 420 }));
    }

    void labelsNeverLeaveThePicture()
    {
        for (const double largest : { 3.0, 99999.0, 1.5e6, 3e12, 2e-7, 1e30 }) {
            for (const bool isLog : { false, true }) {
                VectorGraphWidget plot;
                plot.init("Channel", "Counts", 100, 10, true, true);
                plot.setData({ largest, largest / 3, largest / 100 });
                plot.setMaxValue(largest);
                plot.setLogScaleY(isLog);
                PlotStyle style(&plot);
                for (const auto form : { PlotStyle::NumberForm::Prefixes, PlotStyle::NumberForm::Powers }) {
                    style.setNumberForm(form);
                    const QImage image = grabbed(plot);
                    for (int y = 0; y < image.height(); ++y)
                        QCOMPARE(image.pixelColor(0, y), QColor(Qt::white));
                    for (int x = 0; x < image.width(); ++x)
                        QCOMPARE(image.pixelColor(x, image.height() - 1), QColor(Qt::white));
                }
            }
        }
    }

    void theLegendHasRoomOfItsOwn()
    {
        MultiVectorGraphWidget plot;
        fill(plot, 3);
        plot.setTitle("A title");
        PlotStyle style(&plot);
        grabbed(plot);
        const int with = PlotMapping::of(plot).plotRect().top();
        style.setLegendShown(false);
        grabbed(plot);
        QVERIFY(PlotMapping::of(plot).plotRect().top() < with);
        style.setLegendShown(true);
        style.setTitleShown(false);
        grabbed(plot);
        QVERIFY(PlotMapping::of(plot).plotRect().top() < with);
    }

    void aLegendToolReplacesTheLegend()
    {
        MultiVectorGraphWidget plot;
        fill(plot, 3);
        plot.setTitle("A title");
        const PlotStyle style(&plot);
        grabbed(plot);
        const int with = PlotMapping::of(plot).plotRect().top();
        const std::unique_ptr<PlotLegend> legend = std::make_unique<PlotLegend>(&plot);
        plot.refreshPixmap();
        grabbed(plot);
        QVERIFY(PlotMapping::of(plot).plotRect().top() < with);
    }

    void manyCurvesKeepThePlotOpen()
    {
        MultiVectorGraphWidget plot;
        fill(plot, 64);
        const PlotStyle style(&plot);
        grabbed(plot);
        QVERIFY(PlotMapping::of(plot).plotRect().height() > 250);
    }

    void binsAreSquareWhereUnitsAgree()
    {
        XY2DGraphWidget map;
        fill(map);
        PlotStyle style(&map);
        grabbed(map, { 700, 500 });
        const auto aspect = [&map] {
            const QRect rect = PlotMapping::of(map).plotRect();
            return double(rect.width()) / rect.height();
        };
        QVERIFY(std::abs(aspect() - 2.0) < 0.02);
        style.setBinsSquare(false);
        grabbed(map, { 700, 500 });
        QVERIFY(std::abs(aspect() - 2.0) > 0.1);

        XY2DGraphWidget other;
        fill(other, "X [mm]", "Time [us]");
        const PlotStyle second(&other);
        grabbed(other, { 700, 500 });
        const QRect rect = PlotMapping::of(other).plotRect();
        QVERIFY(std::abs(double(rect.width()) / rect.height() - 2.0) > 0.1);
    }

    void drawsBinsAtTheMappedPositions()
    {
        XY2DGraphWidget map;
        fill(map);
        const PlotStyle style(&map, PlotStyle::Theme::Light);
        const QImage image = grabbed(map);
        for (int i = 0; i < 10; ++i) {
            const QPoint at = PlotMapping::of(map).pixelOf({ i + 0.4, i + 0.4 }).toPoint();
            QCOMPARE(colorAt(image, at), XY2DGraphWidget::colMax);
            const QPoint beside = PlotMapping::of(map).pixelOf({ i + 1.4, i + 0.4 }).toPoint();
            QCOMPARE(colorAt(image, beside), XY2DGraphWidget::colMin); // empty
        }
    }

    void regionsAreSeenOnEmptyBins()
    {
        XY2DGraphWidget map;
        fill(map);
        const PlotStyle style(&map, PlotStyle::Theme::Light);
        grabbed(map);
        map.enalbeRoiSelect({ QPoint(0, 0), QPoint(20, 10) });
        map.SetRoiEnabled(true);
        map.GetViewSelectedROI()->addRoi({ QPoint(12, 2), QPoint(18, 8) });
        QVERIFY(hasColor(grabbed(map), map, 12.0, 5.0, Qt::white));
    }

    void turnedPlotsFollow()
    {
        for (const double rotation : { 90.0, -90.0 }) {
            MultiVectorGraphWidget plot;
            fill(plot);
            plot.m_rotation = rotation;
            const PlotStyle style(&plot);
            const QImage image = grabbed(plot, { 420, 640 });
            QVERIFY(PlotMapping::of(plot).isValid());
            QVERIFY(hasColor(image, plot, 25.0, 200.5, PlotStyle::seriesColor(PlotStyle::Theme::Light, 1)));
        }
    }

    void picturesOfFilesFollow()
    {
        MultiVectorGraphWidget plot;
        fill(plot);
        plot.resize(640, 420);
        const PlotStyle style(&plot, PlotStyle::Theme::Dark);
        const PlotExporter exporter(plot);
        for (const double dpi : { 96.0, 150.0, 192.0 }) {
            PictureOptions options;
            options.size = QSize(640, 420);
            options.dpi = dpi;
            const QImage image = exporter.image(options);
            QCOMPARE(image.pixelColor(1, 1), PlotStyle::backgroundColor(PlotStyle::Theme::Dark));
            int found = 0;
            for (int y = 0; y < image.height(); ++y)
                found +=
                    isAbout(image.pixelColor(image.width() / 2, y), PlotStyle::seriesColor(PlotStyle::Theme::Dark, 1));
            QVERIFY(found >= 1);
        }
        QString error;
        const QByteArray svg = exporter.picture(PictureFormat::Svg, {}, &error);
        QVERIFY(svg.contains(PlotStyle::seriesColor(PlotStyle::Theme::Dark, 2).name().toUtf8()));
        QVERIFY(exporter.picture(PictureFormat::Pdf, {}, &error).startsWith("%PDF"));
        QVERIFY(error.isEmpty());
    }

    void survivesAnyPlot()
    {
        const double nan = std::numeric_limits<double>::quiet_NaN();
        const double infinity = std::numeric_limits<double>::infinity();
        const QList<QList<double>> cases { {}, { 5 }, { 0, 0, 0 }, { nan, nan }, { infinity, 1, -infinity }, { -3, -7 },
            { 1e308, -1e308 }, { 1e-320, 2e-320 }, QList<double>(70000, 3.0) };
        for (const QList<double>& values : cases) {
            for (const bool isLog : { false, true }) {
                for (const QSize size :
                    { QSize(640, 420), QSize(120, 60), QSize(30, 30), QSize(5, 3), QSize(1, 1), QSize(2000, 20) }) {
                    VectorGraphWidget plot;
                    plot.init("X", "Y", 0, 0, true, true);
                    plot.setData(values);
                    plot.setMaxValue(1);
                    plot.setLogScaleY(isLog);
                    plot.setTitle("Title");
                    plot.setNotes("Notes");
                    PlotStyle style(&plot, PlotStyle::Theme::Print);
                    grabbed(plot, size);
                    style.setCurveForm(PlotStyle::CurveForm::Columns);
                    grabbed(plot, size);
                    plot.onAutoScaleX(false);
                    plot.setMinMaxX(7, -2); // reversed
                    plot.refreshPixmap();
                    grabbed(plot, size);
                    plot.onAutoScaleY(false);
                    plot.setMinMaxY(3, 3);
                    plot.refreshPixmap();
                    grabbed(plot, size);
                }
            }
        }
    }

    void toolsFollowTheStyledRectangle()
    {
        VectorGraphWidget plot;
        fill(plot);
        auto* const navigator = new PlotNavigator(&plot);
        auto* const cross = new PlotCrosshair(&plot);
        const PlotStyle style(&plot);
        grabbed(plot);
        cross->pinAt({ 85, 800 });
        QVERIFY(cross->text().contains("834"));
        navigator->zoomIn();
        grabbed(plot);
        QVERIFY(navigator->canGoBack());
        navigator->goBack();
        grabbed(plot);
        double low = 0.0;
        double high = 0.0;
        plot.getMinMaxX(low, high);
        QCOMPARE(low, 0.0);
        QCOMPARE(high, 100.0);
        navigator->goHome();
        grabbed(plot);
        plot.getMinMaxY(low, high);
        QCOMPARE(high, 880.0);
    }

    void observersSeeTheStyledRange()
    {
        class Watch : public PlotObserver {
        public:
            using PlotObserver::PlotObserver;
            QList<double> seen;

        protected:
            void plotChanged(Changes /*changes*/) override
            {
                double low = 0.0;
                double high = 0.0;
                observedPlot()->getMinMaxY(low, high);
                seen.append(high);
            }
        };
        VectorGraphWidget plot;
        fill(plot);
        const PlotStyle style(&plot);
        Watch watch(&plot);
        plot.setData({ 1, 2, 1000 });
        plot.setMaxValue(1000);
        TRY_VERIFY(!watch.seen.isEmpty());
        for (const double high : std::as_const(watch.seen))
            QVERIFY(high >= 1050.0 && high <= 1100.0);
    }

    void propertiesReport()
    {
        VectorGraphWidget plot;
        fill(plot);
        PlotStyle style(&plot);
        const QSignalSpy spy(&style, &PlotStyle::styleChanged);
        style.setTheme(PlotStyle::Theme::Dark);
        style.setTheme(PlotStyle::Theme::Dark);
        QCOMPARE(spy.count(), 1);
        style.setLineWidth(99);
        QCOMPARE(style.lineWidth(), 10.0);
        style.setLineWidth(std::nan(""));
        QCOMPARE(style.lineWidth(), 10.0);
        style.setTextScale(0.01);
        QCOMPARE(style.textScale(), 0.5);
        style.setUnits("keV", "1/s");
        QCOMPARE(style.unitX(), "keV");
        QCOMPARE(spy.count(), 4);
    }

    void actionsChooseThemesAndForms()
    {
        VectorGraphWidget plot;
        fill(plot);
        PlotStyle style(&plot);
        QCOMPARE(style.actions().size(), 1);
        QAction* const action = style.actions().constFirst();
        QVERIFY(!action->icon().isNull());
        action->trigger();
        QCOMPARE(style.theme(), PlotStyle::Theme::Dark);
        const auto entry = [&](const char* name) { return style.findChild<QAction*>(name); };
        QVERIFY(entry("darkTheme")->isChecked());
        QVERIFY(!entry("lightTheme")->isChecked());
        entry("printTheme")->trigger();
        QCOMPARE(style.theme(), PlotStyle::Theme::Print);
        entry("printTheme")->trigger(); // once more
        QVERIFY(entry("printTheme")->isChecked());
        entry("steps")->trigger();
        QCOMPARE(style.curveForm(), PlotStyle::CurveForm::Steps);
        entry("powers")->trigger();
        QCOMPARE(style.numberForm(), PlotStyle::NumberForm::Powers);
        entry("powers")->trigger();
        QCOMPARE(style.numberForm(), PlotStyle::NumberForm::Prefixes);
        for (const QAction* const shown : action->menu()->actions())
            QVERIFY(shown->isSeparator() || !shown->text().isEmpty());
    }

    void stateComesBack()
    {
        VectorGraphWidget plot;
        fill(plot);
        PlotStyle style(&plot, PlotStyle::Theme::HighContrast);
        style.setCurveForm(PlotStyle::CurveForm::Columns);
        style.setNumberForm(PlotStyle::NumberForm::Powers);
        style.setLineWidth(2.5);
        style.setTextScale(1.25);
        style.setGridShown(false);
        style.setLegendShown(false);
        style.setTitleShown(false);
        style.setBinsSquare(false);
        const QJsonObject state = style.saveState();
        VectorGraphWidget other;
        fill(other);
        PlotStyle second(&other);
        second.restoreState(state);
        QCOMPARE(second.saveState(), state);
        QCOMPARE(second.theme(), PlotStyle::Theme::HighContrast);
        // Invalid values change nothing.
        second.restoreState({ { "theme", "Purple" }, { "form", 3 }, { "lineWidth", -4 }, { "textScale", 99 },
            { "grid", "yes" }, { "other", 1 } });
        QCOMPARE(second.saveState(), state);
    }

    void attachesToNothingWithAWarning()
    {
        QTest::ignoreMessage(QtWarningMsg, "PlotObserver: no plot to observe; pass one that exists");
        PlotStyle style(nullptr);
        style.setTheme(PlotStyle::Theme::Dark);
        QCOMPARE(style.theme(), PlotStyle::Theme::Light);
        QVERIFY(style.actions().isEmpty());
        style.restoreState({ { "theme", "Dark" } });
    }

    void outlivesNoPlot()
    {
        auto plot = std::make_unique<MultiVectorGraphWidget>();
        fill(*plot);
        const QPointer<PlotStyle> style = new PlotStyle(plot.get());
        grabbed(*plot);
        plot.reset();
        QVERIFY(style.isNull());
    }
};

QTEST_MAIN(TestPlotStyle)
#include "tst_plotstyle.moc"
