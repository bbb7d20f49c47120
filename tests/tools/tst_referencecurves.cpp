// Reference curves: freezing, files, runs, comparison, the strip, live data and stored views.
#include "support/pictures.h"
#include "support/randomcases.h"
#include "support/support.h"
#include "support/visibleplot.h"
#include "tools/samples.h"

#include <tarnis/formats/formats.h>
#include <tarnis/plots/curvenames.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/errorbars.h>
#include <tarnis/tools/plotlegend.h>
#include <tarnis/tools/plotstyle.h>
#include <tarnis/tools/referencecurves.h>

#include <QAction>
#include <QJsonArray>
#include <QJsonObject>
#include <QMenu>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>
#include <memory>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

Dataset dataset(qsizetype rows, qsizetype columns, double value)
{
    Dataset data;
    data.title = QStringLiteral("run 12");
    data.rows = rows;
    data.columns = columns;
    data.values.assign(static_cast<std::size_t>(rows * columns), value);
    return data;
}

} // namespace

class TestReferenceCurves : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void countsInTheAutomaticRangeOfAStyle()
    {
        VectorGraphWidget plot;
        plot.init("Time", "Counts", 10, 40, true, true);
        plot.initManualX(0, 4);
        plot.setData({ 4, 400, 16, 25 });
        plot.setMaxValue(400);
        new PlotStyle(&plot);
        auto* const references = new ReferenceCurves(&plot);
        showActive(plot);
        QVERIFY(references->freeze(QStringLiteral("before")));
        const auto show = [&](const QList<double>& samples, double largest) {
            plot.setData(samples);
            plot.setMaxValue(largest);
            plot.refreshPixmap();
            plot.grab();
            return rangeY(plot).max;
        };
        const double withReference = show({ 4, 40, 16, 25 }, 40);
        QVERIFY2(withReference >= 400, qPrintable(QString::number(withReference)));
        references->setNorm(ReferenceCurves::Norm::TotalCounts); // a fifth of it
        const double scaled = show({ 4, 40, 16, 25 }, 40);
        QVERIFY2(scaled >= 400.0 * 85.0 / 445.0 && scaled < 150, qPrintable(QString::number(scaled)));
        references->setNorm(ReferenceCurves::Norm::None);
        plot.onAutoScaleX(false);
        plot.setMinMaxX(2, 4); // the large value is not visible
        const double zoomed = show({ 4, 40, 16, 25 }, 40);
        QVERIFY2(zoomed < 450 && references->extremes(2, 3, false) == qMakePair(16.0, 25.0),
            qPrintable(QString::number(zoomed)));
        plot.onAutoScaleX(true);
        references->clear();
        const double without = show({ 4, 40, 16, 25 }, 40);
        QVERIFY2(without >= 40 && without < 80, qPrintable(QString::number(without)));
    }

    void findsItsExtremes()
    {
        VectorGraphWidget plot;
        fillFourBins(plot, { -4, 9, std::nan(""), 0 });
        ReferenceCurves references(&plot);
        QVERIFY(references.extremes(0, 3, false).first > references.extremes(0, 3, false).second); // none yet
        QVERIFY(references.freeze());
        QCOMPARE(references.extremes(0, 3, false), qMakePair(-4.0, 9.0));
        QCOMPARE(references.extremes(0, 3, true), qMakePair(9.0, 9.0));
        QCOMPARE(references.extremes(-5, 0, false), qMakePair(-4.0, -4.0));
        QVERIFY(references.extremes(2, 99, true).first > references.extremes(2, 99, true).second);
    }

    void freezesTheCurvesOfTheMoment()
    {
        VectorGraphWidget plot;
        fillFourBins(plot, { 4, 9, 16, 25 });
        ReferenceCurves references(&plot);
        showActive(plot);
        QVERIFY(references.freeze(QStringLiteral("before")));
        QCOMPARE(references.names(), QStringList { QStringLiteral("before") });
        QVERIFY(references.compared(0).isEmpty()); // nothing is compared yet
        plot.setData({ 8, 9, 20, 26 });
        plot.refreshPixmap();
        references.setView(ReferenceCurves::View::Difference);
        QCOMPARE(references.compared(0), (QList<double> { 4, 0, 4, 1 }));
        references.setView(ReferenceCurves::View::Ratio);
        QCOMPARE(references.compared(0).at(0), 2.0);
        references.setView(ReferenceCurves::View::Significance);
        QCOMPARE(references.compared(0).at(0), 2.0); // 4 counts since, error 2
        plot.setData({ 0, 9, 20, 26 }); // cleared: the counts are independent
        QCOMPARE(references.compared(0).at(0), -2.0);
    }

    void clearedDataAreAnotherMeasurement()
    {
        VectorGraphWidget plot;
        fillFourBins(plot, { 4, 9 });
        ReferenceCurves references(&plot);
        references.freeze();
        references.setView(ReferenceCurves::View::Significance);
        plot.setData({ 8, 13 });
        QCoreApplication::processEvents(); // reports the data
        QCOMPARE(references.compared(0).at(0), 2.0); // 4 counts since, error 2
        plot.setData({ 0, 0 });
        QCoreApplication::processEvents();
        plot.setData({ 12, 13 }); // above the reference again
        QCoreApplication::processEvents();
        QCOMPARE(references.compared(0).at(0), 2.0); // 8, error 4
    }

    void pairsCurvesByName()
    {
        MultiVectorGraphWidget plot;
        plot.init("Channel", "Counts", 0, 0, true, true);
        plot.m_groupSize = 1;
        for (int i = 0; i < 3; ++i)
            plot.setData(i, { 10.0 * i, 1 }, 30);
        ReferenceCurves references(&plot);
        references.freeze();
        plot.setEnable(0, false);
        references.setView(ReferenceCurves::View::Difference);
        QCOMPARE(references.compared(0), (QList<double> { 0, 0 })); // with curve 1, not 0
        QVERIFY(references.problem().isEmpty());
    }

    void hidesTheCurvesOfHiddenOnes()
    {
        MultiVectorGraphWidget plot;
        plot.init("Channel", "Counts", 0, 0, true, true);
        plot.m_groupSize = 1;
        for (int i = 0; i < 3; ++i)
            plot.setData(i, { 10.0 * (i + 1), 1 }, 30);
        ReferenceCurves references(&plot);
        references.freeze();
        references.setView(ReferenceCurves::View::Difference);
        QCOMPARE(references.extremes(0, 1, false), qMakePair(1.0, 30.0));
        plot.setEnable(0, false);
        plot.setEnable(2, false);
        QCOMPARE(references.extremes(0, 1, false), qMakePair(1.0, 20.0));
        QCOMPARE(references.compared(0), (QList<double> { 0, 0 })); // with its own reference, though it is alone
        references.add(dataset(3, 2, 40)); // without names: by their order
        QCOMPARE(references.compared(0), (QList<double> { -20, -39 }));
        references.removeCurrent();
        plot.setEnable(2, true);
        QCOMPARE(references.extremes(0, 1, false), qMakePair(1.0, 30.0));
    }

    void itsNameIsBesideTheLegend()
    {
        MultiVectorGraphWidget plot;
        plot.init("Channel", "Counts", 0, 0, true, true);
        plot.m_groupSize = 1;
        plot.m_doubleBuffered = true;
        for (int i = 0; i < 3; ++i)
            plot.setData(i, QList<double>(10, 30.0), 30);
        const PlotStyle style(&plot);
        PlotLegend legend(&plot);
        ReferenceCurves references(&plot);
        showActive(plot, { 600, 400 });
        legend.setPlace({ 1, 1 });
        const QRect list = legend.overlayBoxes().first();
        const QPoint beside(list.left() - 8, PlotMapping::of(plot).plotRect().bottom() - 10);
        QVERIFY(colourAt(plot.grab().toImage(), beside).lightness() > 200);
        references.freeze(QStringLiteral("before"));
        QVERIFY(colourAt(plot.grab().toImage(), beside).lightness() < 128);
    }

    void readsFilesAndRuns()
    {
        const QTemporaryDir directory;
        const QString path = directory.filePath(QStringLiteral("old.csv"));
        QVERIFY(writeDataset(path, dataset(1, 4, 5)).isEmpty());
        VectorGraphWidget plot;
        fillFourBins(plot, { 6, 5, 4, 3 });
        ReferenceCurves references(&plot);
        QCOMPARE(references.addFile(path), QString());
        QCOMPARE(references.names(), QStringList { QStringLiteral("old.csv") });
        references.setView(ReferenceCurves::View::Difference);
        QCOMPARE(references.compared(0), (QList<double> { 1, 0, -1, -2 }));
        QCOMPARE(references.add(dataset(1, 4, 6)), QString());
        QCOMPARE(references.current(), 1);
        QCOMPARE(references.names().at(1), QStringLiteral("run 12"));
        QCOMPARE(references.compared(0), (QList<double> { 0, -1, -2, -3 }));
        references.setCurrent(0);
        QCOMPARE(references.compared(0).at(0), 1.0);
    }

    void reportsWhatDoesNotFit()
    {
        VectorGraphWidget plot;
        fillFourBins(plot, { 6, 5, 4, 3 });
        ReferenceCurves references(&plot);
        references.setView(ReferenceCurves::View::Ratio);
        QVERIFY(!references.problem().isEmpty());
        QVERIFY(!references.addFile(QStringLiteral("/no/such/file.csv")).isEmpty());
        QVERIFY(!references.addFile(QStringLiteral("/no/such/file.doc")).isEmpty());
        Dataset broken = dataset(1, 4, 6);
        broken.values.pop_back();
        QVERIFY(!references.add(broken).isEmpty());
        Dataset map = dataset(2, 2, 6);
        map.kind = Dataset::Kind::Map;
        QVERIFY(!references.add(map).isEmpty());
        QVERIFY(references.names().isEmpty());
        QCOMPARE(references.add(dataset(1, 7, 6)), QString());
        QCOMPARE(references.problem(), QStringLiteral("The reference has 7 bins, the plot has 4."));
        QVERIFY(references.compared(0).isEmpty());
        showActive(plot); // with the problem in the strip
        plot.grab();
    }

    void stripReservesSpaceBelowThePlot()
    {
        VectorGraphWidget plot;
        fillFourBins(plot, { 16, 16, 16, 16 });
        showActive(plot);
        const QImage before = plot.grab().toImage();
        const QRect whole = PlotMapping::of(plot).plotRect();
        auto* const references = new ReferenceCurves(&plot);
        references->freeze(QStringLiteral("r"));
        plot.setData({ 32, 16, 16, 16 });
        plot.refreshPixmap();
        references->setView(ReferenceCurves::View::Difference);
        plot.grab();
        const QRect smaller = PlotMapping::of(plot).plotRect();
        QVERIFY(smaller.bottom() < whole.bottom() - 60);
        const QImage with = plot.grab().toImage();
        // The point of bin 0 is white, at 16 of an axis from -20 to 20.
        const int column = PlotMapping::of(plot).pixelOf({ 0.5, 0 }).toPoint().x();
        const int top = plot.height() - 120 + 8;
        const int bottom = plot.height() - 6;
        const int row = bottom - 2 - static_cast<int>((16.0 + 20.0) / 40.0 * (bottom - top - 4));
        QCOMPARE(colourAt(with, QPoint(column - 1, row)), QColor(Qt::white));
        QCOMPARE(colourAt(with, QPoint(column, bottom - 4)), QColor(Qt::black));
        plot.resize(500, 90); // a third at most
        plot.grab();
        plot.resize(500, 400);
        delete references;
        plot.setData({ 16, 16, 16, 16 });
        plot.refreshPixmap();
        QCOMPARE(plot.grab().toImage(), before);
    }

    void stripSurvivesAnySizeOfAStyledPlot()
    {
        VectorGraphWidget plot;
        fillFourBins(plot, { 16, 16, 16, 16 });
        new PlotStyle(&plot);
        ReferenceCurves references(&plot);
        references.freeze(QStringLiteral("r"));
        references.setView(ReferenceCurves::View::Ratio);
        showActive(plot);
        for (const int width : { 1, 10, 30, 60, 100, 400 }) {
            for (const int height : { 1, 10, 30, 60, 100, 300 }) {
                plot.resize(width, height);
                plot.grab();
            }
        }
        QCOMPARE(plot.grab().toImage().size(), plot.size() * plot.devicePixelRatio());
    }

    void keysFreezeAndRelease()
    {
        VectorGraphWidget plot;
        fillFourBins(plot, { 1, 2, 3, 4 });
        ReferenceCurves references(&plot);
        showActive(plot);
        QTest::keyClick(&plot, Qt::Key_C, Qt::ShiftModifier);
        QCOMPARE(references.names().size(), 1);
        QTest::keyClick(&plot, Qt::Key_C, Qt::ShiftModifier);
        QCOMPARE(references.names().size(), 0);
        QCOMPARE(references.current(), -1);
        for (int i = 0; i < 30; ++i)
            references.freeze(QString::number(i));
        QCOMPARE(references.names().size(), ReferenceCurves::maxReferences);
        QCOMPARE(references.names().last(), QStringLiteral("29"));
        references.clear();
        QVERIFY(references.names().isEmpty());
    }

    void menuOffersViewsAndNorms()
    {
        VectorGraphWidget plot;
        fillFourBins(plot, { 1, 2, 3, 4 });
        ReferenceCurves references(&plot);
        references.freeze();
        QMenu* const menu = references.actions().last()->menu();
        Q_EMIT menu->aboutToShow();
        QAction* ratio = nullptr;
        for (QAction* const action : menu->actions())
            ratio = action->text() == QStringLiteral("Ratio") ? action : ratio;
        QVERIFY(ratio != nullptr);
        ratio->trigger();
        QCOMPARE(references.view(), ReferenceCurves::View::Ratio);
    }

    void itsNameIsReadableOverABandOfErrors()
    {
        VectorGraphWidget plot;
        plot.init("Time", "Counts", 2000, 4, true, true);
        plot.initManualX(0, 2000);
        plot.initManualY(0, 4);
        plot.setData(QList<double>(2000, 1.0));
        ErrorBars bars(&plot);
        ReferenceCurves references(&plot);
        showActive(plot);
        references.freeze(QStringLiteral("before"));
        const auto lettersIn = [&] {
            const QImage image = plot.grab().toImage();
            const QRect corner(PlotMapping::of(plot).frameRect().bottomRight() - QPoint(60, 24), QSize(60, 24));
            const QImage label = image.copy(onDevice(image, corner));
            int letters = 0;
            for (int y = 0; y < label.height(); ++y) {
                for (int x = 0; x < label.width(); ++x)
                    letters += label.pixelColor(x, y).lightness() > 180 ? 1 : 0;
            }
            return letters;
        };
        const int alone = lettersIn();
        QVERIFY(alone > 10);
        bars.setOn(true);
        QVERIFY2(std::abs(lettersIn() - alone) < alone / 10, qPrintable(QString::number(lettersIn())));
    }

    void restoresItsState()
    {
        const QTemporaryDir directory;
        const QString path = directory.filePath(QStringLiteral("old.csv"));
        QVERIFY(writeDataset(path, dataset(1, 4, 5)).isEmpty());
        VectorGraphWidget plot;
        fillFourBins(plot, { 6, 5, 4, 3 });
        ReferenceCurves references(&plot);
        references.freeze();
        references.addFile(path);
        references.setView(ReferenceCurves::View::Ratio);
        references.setNorm(ReferenceCurves::Norm::TotalCounts);
        const QJsonObject state = references.saveState();
        ReferenceCurves other(&plot);
        other.restoreState(state);
        QCOMPARE(other.names(), QStringList { QStringLiteral("old.csv") });
        QCOMPARE(other.saveState(), state);
        other.restoreState(state); // not twice
        other.restoreState({ { "files", QJsonArray { "/no/such/file.csv", 7 } }, { "view", "x" }, { "norm", 1 } });
        other.restoreState({ { "norm", "rangeCounts" }, { "normRange", QJsonArray { 5, "x" } } });
        QCOMPARE(other.saveState(), state);
        references.setNormRange(0.1, 2.7);
        other.restoreState(references.saveState());
        QCOMPARE(other.normRange(), (AxisRange { 0.1, 2.7 }));
        QCOMPARE(other.saveState(), references.saveState());
    }

    void survivesOddPlots()
    {
        XY2DGraphWidget map;
        ReferenceCurves onMap(&map);
        QVERIFY(!onMap.freeze());
        onMap.add(dataset(2, 3, 1));
        onMap.setView(ReferenceCurves::View::Ratio);
        map.resize(300, 200);
        map.grab();
        MultiVectorGraphWidget plot;
        ReferenceCurves references(&plot);
        QVERIFY(!references.freeze());
        references.add(dataset(3, 5, std::nan("")));
        references.setView(ReferenceCurves::View::Ratio);
        plot.resize(0, 0);
        plot.grab();
        plot.resize(300, 200);
        plot.grab();
        ReferenceCurves unattached(nullptr);
        QVERIFY(!unattached.freeze());
        unattached.add(dataset(1, 1, 1));
        unattached.setView(ReferenceCurves::View::Ratio);
        unattached.openFile();
        QVERIFY(unattached.compared(0).isEmpty());
    }

    void attachesAndDetachesUnderLiveData()
    {
        MultiVectorGraphWidget plot;
        plot.init("Channel", "Counts", 0, 0, true, true);
        showActive(plot);
        Generator generator = seededGenerator(8);
        std::unique_ptr<ReferenceCurves> references;
        for (int i = 0; i < 300; ++i) {
            QList<double> samples(whole(generator, 0, 3) * 500);
            for (double& sample : samples)
                sample = chance(generator, 0.1) ? std::nan("") : std::floor(uniform(generator, -5, 2000));
            plot.setData(whole(generator, 0, 2), samples, 2000);
            plot.refreshPixmap();
            switch (whole(generator, 0, 6)) {
            case 0:
                references = references ? nullptr : std::make_unique<ReferenceCurves>(&plot);
                break;
            case 1:
                if (references)
                    references->freeze();
                break;
            case 2:
                if (references)
                    references->setView(static_cast<ReferenceCurves::View>(whole(generator, 0, 3)));
                break;
            case 3:
                if (references)
                    references->setNorm(static_cast<ReferenceCurves::Norm>(whole(generator, 0, 3)));
                break;
            case 4:
                plot.resize(whole(generator, 0, 600), whole(generator, 0, 400));
                break;
            case 5:
                plot.setLogScaleY(chance(generator, 0.5));
                break;
            default:
                QCoreApplication::processEvents();
            }
            plot.grab();
        }
    }
};

QTEST_MAIN(TestReferenceCurves)
#include "tst_referencecurves.moc"
