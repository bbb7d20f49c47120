// All peaks of a plot in a table: search, marks, energies, lifetimes.
#include "support/support.h"
#include "support/wait.h"

#include <tarnis/analysis/figures.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/tools/peakpanel.h>
#include <tarnis/tools/plotcalibration.h>

#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>

#include <array>
#include <cmath>
#include <memory>
#include <random>

using namespace tarnis;

namespace {

constexpr std::array centres { 300.5, 700.5, 1100.5 };

void show(VectorGraphWidget& plot)
{
    std::mt19937_64 random(3);
    QList<double> samples;
    const std::array widths { 3.0 };
    for (int i = 0; i < 1500; ++i) {
        double mean = 15.0;
        for (const double centre : centres)
            mean += 4000.0 * peakIntegral(PeakShape::Gaussian, i, i + 1.0, centre, widths);
        samples << static_cast<double>(std::poisson_distribution<int>(mean)(random));
    }
    plot.m_doubleBuffered = true;
    plot.init(QStringLiteral("Channel"), QStringLiteral("Counts"), 1500, 600, true, true);
    plot.setData(samples);
    plot.setMaxValue(600);
    plot.refreshPixmap();
    plot.resize(600, 400);
    plot.show();
    plot.grab();
}

bool search(PeakPanel& panel)
{
    const QSignalSpy searched(&panel, &PeakPanel::searched);
    panel.search();
    return tarnis::testing::eventually([&] { return !searched.isEmpty(); });
}

EnergyCalibration halves()
{
    std::vector<CalibrationPoint> points;
    for (const double centre : centres)
        points.push_back({ centre, 0.1, 0.5 * centre, 0.0, {}, 0.0 });
    return fitEnergyCalibration(points, 0, 1500).calibration;
}

} // namespace

class TestPeakPanel : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void findsAllPeaks()
    {
        VectorGraphWidget plot;
        show(plot);
        const QImage before = plot.grab().toImage();
        PeakPanel panel(&plot);
        QVERIFY(search(panel));
        QCOMPARE(panel.peaks().peaks.size(), centres.size());
        for (std::size_t i = 0; i < centres.size(); ++i)
            QVERIFY(std::fabs(panel.peaks().peaks[i].centre - centres[i]) < 0.5);
        QVERIFY(plot.grab().toImage() != before);
        const QAbstractItemModel& model = *panel.findChild<QTableView*>()->model();
        QVERIFY(model.index(0, 0).data().toString().contains(u'('));
        panel.clear();
        QCOMPARE(plot.grab().toImage(), before);
    }

    void findsOnlyPeaksOfTheGivenSignificance()
    {
        VectorGraphWidget plot;
        show(plot);
        PeakPanel panel(&plot);
        QCOMPARE(panel.significance(), 4.0);
        panel.setSignificance(1000.0);
        QCOMPARE(panel.significance(), 100.0);
        QVERIFY(search(panel));
        QVERIFY(panel.peaks().peaks.empty());
        panel.setSignificance(0.0);
        QCOMPARE(panel.significance(), 2.0);
        panel.setSignificance(6.0);
        QVERIFY(search(panel));
        QCOMPARE(panel.peaks().peaks.size(), centres.size());
    }

    void searchesTheVisibleRange()
    {
        VectorGraphWidget plot;
        show(plot);
        plot.onAutoScaleX(false);
        plot.setMinMaxX(500, 900);
        PeakPanel panel(&plot);
        panel.setVisibleOnly(true);
        QVERIFY(search(panel));
        QCOMPARE(panel.peaks().peaks.size(), std::size_t(1));
    }

    void showsEnergiesOnceThePlotIsCalibrated()
    {
        VectorGraphWidget plot;
        show(plot);
        PeakPanel panel(&plot);
        const QTableView& view = *panel.findChild<QTableView*>();
        QVERIFY(search(panel));
        const auto shownColumns = [&view] {
            int shown = 0;
            for (int column = 0; column < view.model()->columnCount(); ++column)
                shown += view.isColumnHidden(column) ? 0 : 1;
            return shown;
        };
        const int before = shownColumns();
        QCOMPARE(PlotCalibration::apply(plot, halves()), QString());
        TRY_COMPARE(shownColumns(), before + 1);
        PlotCalibration::remove(plot);
        TRY_COMPARE(shownColumns(), before);
    }

    void searchesTheChosenCurve()
    {
        MultiVectorGraphWidget plot;
        plot.init(QStringLiteral("Channel"), QStringLiteral("Counts"), 0, 0, true, true);
        plot.m_groupSize = 1;
        for (int k = 0; k < 2; ++k) {
            QList<double> samples;
            for (int i = 0; i < 400; ++i) {
                const double z = (i - (k == 0 ? 100.0 : 300.0)) / 4.0;
                samples << std::round(20.0 + 500.0 * std::exp(-0.5 * z * z));
            }
            plot.setData(k, samples, 600.0);
        }
        plot.resizeData(2);
        PeakPanel panel(&plot);
        panel.show();
        auto& curves = *panel.findChild<QComboBox*>();
        TRY_COMPARE(curves.count(), 2);
        QVERIFY(curves.isVisible());
        curves.setCurrentIndex(1);
        QVERIFY(search(panel));
        QCOMPARE(panel.peaks().peaks.size(), std::size_t(1));
        QVERIFY(std::fabs(panel.peaks().peaks.front().centre - 300.0) < 1.0);
        plot.setData(1, QList<double>(400, 20.0), 600.0); // the choice stays
        QCoreApplication::processEvents();
        QCOMPARE(curves.currentIndex(), 1);
    }

    void writesEnergiesOfACalibratedPlot()
    {
        VectorGraphWidget plot;
        show(plot);
        QCOMPARE(PlotCalibration::apply(plot, halves()), QString());
        PeakPanel panel(&plot);
        QVERIFY(search(panel));
        const QStringList names = panel.table().section(u'\n', 0, 0).split(u'\t');
        const QStringList first = panel.table().section(u'\n', 1, 1).split(u'\t');
        const double energy = first.value(names.indexOf(QStringLiteral("energy"))).toDouble();
        QVERIFY(std::fabs(energy - 150.25) < 0.5);
        panel.copy();
        QCOMPARE(QGuiApplication::clipboard()->text(), panel.table());
    }

    void reportsWhyThereAreNone()
    {
        VectorGraphWidget plot;
        PeakPanel panel(&plot);
        QVERIFY2(panel.message().contains(QStringLiteral("Find and Fit")), qPrintable(panel.message()));
        QVERIFY(search(panel));
        QVERIFY(!panel.message().isEmpty());
        QVERIFY(panel.peaks().peaks.empty());
    }

    void outlivesItsPlot()
    {
        auto plot = std::make_unique<VectorGraphWidget>();
        show(*plot);
        PeakPanel panel(plot.get());
        panel.search();
        plot.reset();
        TRY_VERIFY(!panel.isRunning());
        QCOMPARE(panel.peaks().peaks.size(), centres.size());
        QVERIFY(search(panel));
        QCOMPARE(panel.plot(), nullptr);
        panel.grab();
    }
};

QTEST_MAIN(TestPeakPanel)
#include "tst_peakpanel.moc"
