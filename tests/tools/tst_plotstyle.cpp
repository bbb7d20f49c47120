// Styles: colours by calculation, pixels by the plot's mapping, ranges, and the classic look without them.
#include "support/colourvision.h"
#include "support/contrast.h"
#include "support/pictures.h"
#include "tools/styledplots.h"

#include <tarnis/dialogs/selectcheckeddialog.h>
#include <tarnis/export/plotexporter.h>
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
#include <QActionGroup>
#include <QJsonObject>
#include <QPointer>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTest>

#include <cmath>
#include <limits>
#include <memory>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

const QList<PlotStyle::Theme> allThemes { PlotStyle::Theme::Light, PlotStyle::Theme::Dark, PlotStyle::Theme::Print,
    PlotStyle::Theme::HighContrast };

} // namespace

class TestPlotStyle : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void coloursAreReadable()
    {
        for (const PlotStyle::Theme theme : allThemes) {
            const QColor background = PlotStyle::backgroundColour(theme);
            QVERIFY(contrast(PlotStyle::textColour(theme), background) >= 7.0);
            for (int i = 0; i < PlotStyle::seriesColourCount(); ++i)
                QVERIFY2(contrast(PlotStyle::seriesColour(theme, i), background) >= 3.0,
                    qPrintable(QStringLiteral("%1 %2").arg(int(theme)).arg(i)));
        }
    }

    // 17 is about eight just noticeable differences.
    void coloursDifferForEveryEye()
    {
        for (const PlotStyle::Theme theme : allThemes) {
            for (const Matrix& eye : eyes) {
                for (int i = 0; i < PlotStyle::seriesColourCount(); ++i) {
                    for (int k = 0; k < i; ++k) {
                        const double apart =
                            distance(PlotStyle::seriesColour(theme, i), PlotStyle::seriesColour(theme, k), eye);
                        QVERIFY2(apart >= 17.0,
                            qPrintable(QStringLiteral("%1: %2 %3 %4").arg(int(theme)).arg(i).arg(k).arg(apart)));
                    }
                }
            }
        }
    }

    void theListOfCurvesShowsTheirColours()
    {
        struct SingleCurves : MultiVectorGraphWidget {
            SingleCurves() { m_groupSize = 1; }
        } plot;
        plot.setAddType(MultiVectorGraphWidget::AddEachGroup);
        plot.resizeData(2);
        for (int i = 0; i < 2; ++i)
            plot.setData(i, QList<double>(4, i + 1.0), i + 1.0);
        const PlotStyle style(&plot, PlotStyle::Theme::Light);
        QVERIFY(QMetaObject::invokeMethod(&plot, "onSelectVisibles"));
        auto* const dialog = plot.findChild<SelectCheckedDialog*>();
        QVERIFY(dialog);
        for (int i = 0; i < 2; ++i)
            QCOMPARE(dialog->getTable()->item(i, 1)->background().color(), PlotStyle::seriesColour(style.theme(), i));
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
                QVERIFY(hasColour(image, plot, 25.0, 100.0 * (i + 1) + 0.5, PlotStyle::seriesColour(theme, i)));
                QVERIFY(!hasColour(image, plot, 25.0, 100.0 * (i + 1) - 50, PlotStyle::seriesColour(theme, i)));
            }
        }
    }

    void drawsEachCurveForm()
    {
        VectorGraphWidget plot;
        plot.init("Channel", "Counts", 100, 10, true, true);
        plot.setData({ 10, 100, 10, 100 });
        plot.setMaxValue(100);
        PlotStyle style(&plot);
        const QColor colour = PlotStyle::seriesColour(PlotStyle::Theme::Light, 0);
        style.setCurveForm(PlotStyle::CurveForm::Steps);
        QVERIFY(hasColour(grabbed(plot), plot, 1.2, 100, colour));
        style.setCurveForm(PlotStyle::CurveForm::Lines);
        QVERIFY(!hasColour(grabbed(plot), plot, 1.2, 100, colour));
        QVERIFY(hasColour(grabbed(plot), plot, 1.0, 55, colour));
        style.setCurveForm(PlotStyle::CurveForm::Points);
        QVERIFY(!hasColour(grabbed(plot), plot, 1.0, 55, colour));
        QVERIFY(hasColour(grabbed(plot), plot, 1.5, 100, colour));
        style.setCurveForm(PlotStyle::CurveForm::Columns);
        const QImage columns = grabbed(plot);
        const QPoint inside = PlotMapping::of(plot).pixelOf({ 1.5, 50 }).toPoint();
        QVERIFY(colourAt(columns, inside) != QColor(Qt::white));
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

    void drawsBinsAtTheMappedPositions()
    {
        XY2DGraphWidget map;
        fill(map);
        const PlotStyle style(&map, PlotStyle::Theme::Light);
        const QImage image = grabbed(map);
        for (int i = 0; i < 10; ++i) {
            const QPoint at = PlotMapping::of(map).pixelOf({ i + 0.4, i + 0.4 }).toPoint();
            QCOMPARE(colourAt(image, at), XY2DGraphWidget::colMax);
            const QPoint beside = PlotMapping::of(map).pixelOf({ i + 1.4, i + 0.4 }).toPoint();
            QCOMPARE(colourAt(image, beside), XY2DGraphWidget::colMin); // empty
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
        QVERIFY(hasColour(grabbed(map), map, 12.0, 5.0, Qt::white));
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
            QVERIFY(hasColour(image, plot, 25.0, 200.5, PlotStyle::seriesColour(PlotStyle::Theme::Light, 1)));
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
            QCOMPARE(image.pixelColor(1, 1), PlotStyle::backgroundColour(PlotStyle::Theme::Dark));
            int found = 0;
            for (int y = 0; y < image.height(); ++y)
                found +=
                    isAbout(image.pixelColor(image.width() / 2, y), PlotStyle::seriesColour(PlotStyle::Theme::Dark, 1));
            QVERIFY(found >= 1);
        }
        QString error;
        const QByteArray svg = exporter.picture(PictureFormat::Svg, {}, &error);
        QVERIFY(svg.contains(PlotStyle::seriesColour(PlotStyle::Theme::Dark, 2).name().toUtf8()));
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
        QVERIFY(entry("printTheme")->isChecked() && entry("printTheme")->actionGroup()->isExclusive());
        QVERIFY(entry("steps")->isVisible() && !entry("squareBins")->isVisible());
        XY2DGraphWidget map;
        const PlotStyle styleOfMap(&map);
        QVERIFY(!styleOfMap.findChild<QAction*>("steps")->isVisible()); // it has no curves
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
