// Calibration of a plot: lines found in its peaks, edits, the axis, files, lifetimes.
#include "support/savecases.h"
#include "support/support.h"
#include "support/wait.h"

#include <tarnis/analysis/peakshape.h>
#include <tarnis/export/plotexporter.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/calibrationpanel.h>
#include <tarnis/tools/lineprofile.h>
#include <tarnis/tools/plotcalibration.h>
#include <tarnis/tools/plotcrosshair.h>
#include <tarnis/tools/plotkeyboard.h>
#include <tarnis/tools/plotmarkers.h>
#include <tarnis/tools/plotruler.h>

#include <QFile>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QToolTip>

#include <array>
#include <cmath>
#include <memory>
#include <random>

using namespace tarnis;

namespace {

constexpr double slope = 0.4; // keV a channel

/// The lines of Eu-152 and their strengths, in a spectrum of 4096 channels.
void show(VectorGraphWidget& plot)
{
    std::mt19937_64 random(3);
    QList<double> samples;
    const std::array widths { 2.5 };
    const CalibrationLines lines = linesOfSource(QStringLiteral("eu152"));
    for (int i = 0; i < 4096; ++i) {
        double mean = 10.0;
        for (const CalibrationLine& line : lines.lines) {
            const double centre = line.energy / slope;
            if (std::fabs(i - centre) < 30.0)
                mean += 1000.0 * line.intensity * peakIntegral(PeakShape::Gaussian, i, i + 1.0, centre, widths);
        }
        samples << static_cast<double>(std::poisson_distribution<int>(mean)(random));
    }
    plot.m_doubleBuffered = true;
    plot.init(QStringLiteral("Channel"), QStringLiteral("Counts"), 4096, 6000, true, true);
    plot.setData(samples);
    plot.setMaxValue(6000);
    plot.refreshPixmap();
    plot.resize(600, 400);
    plot.show();
    plot.grab();
}

/// Bins of 1 channel.
void show(VectorGraphWidget& plot, const QList<double>& samples)
{
    const auto count = static_cast<double>(samples.size());
    plot.m_doubleBuffered = true;
    plot.init(QStringLiteral("Channel"), QStringLiteral("Counts"), count, 100, true, true);
    plot.initManualX(0.0, count);
    plot.setData(samples);
    plot.setMaxValue(100);
    plot.resize(600, 400);
    plot.show();
    plot.grab();
}

bool calibrate(CalibrationPanel& panel)
{
    const QSignalSpy calibrated(&panel, &CalibrationPanel::calibrated);
    panel.calibrate();
    return tarnis::testing::eventually([&] { return !calibrated.isEmpty(); });
}

int firstUsedRow(const QAbstractItemModel& model)
{
    int row = 0;
    while (row < model.rowCount() && model.index(row, 0).data(Qt::CheckStateRole).toInt() != Qt::Checked)
        ++row;
    return row;
}

} // namespace

class TestCalibrationPanel : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void findsTheLinesOfASource()
    {
        VectorGraphWidget plot;
        show(plot);
        CalibrationPanel panel(&plot);
        panel.setSource(QStringLiteral("eu152"));
        QVERIFY(calibrate(panel));
        QVERIFY2(panel.calibration().isValid(), qPrintable(panel.message()));
        QVERIFY(std::fabs(panel.calibration().energyAt(1000.0) - 400.0) < 0.5);
    }

    void fitsThePolynomialOfAChosenDegree()
    {
        VectorGraphWidget plot;
        show(plot);
        CalibrationPanel panel(&plot);
        panel.setSource(QStringLiteral("eu152"));
        QCOMPARE(panel.degree(), 0);
        QVERIFY(calibrate(panel));
        QCOMPARE(panel.calibration().coefficients.size(), std::size_t(3));
        QSignalSpy calibrated(&panel, &CalibrationPanel::calibrated);
        panel.setDegree(1);
        QCOMPARE(calibrated.size(), 1);
        QCOMPARE(panel.calibration().coefficients.size(), std::size_t(2));
        for (const int wrong : { -1, 3 })
            panel.setDegree(wrong);
        QCOMPARE(panel.degree(), 1);
        QCOMPARE(calibrated.size(), 1);
        panel.setDegree(2);
        QCOMPARE(panel.calibration().coefficients.size(), std::size_t(3));
    }

    void putsEnergiesOnTheAxis()
    {
        VectorGraphWidget plot;
        show(plot);
        CalibrationPanel panel(&plot);
        panel.setSource(QStringLiteral("eu152"));
        QVERIFY(calibrate(panel));
        panel.apply();
        const PlotMapping mapping = PlotMapping::of(plot);
        QVERIFY(mapping.hasTickFunction());
        QVERIFY(std::fabs(mapping.tickOf(1000.0) - 400.0) < 0.5);
        QCOMPARE(plot.getNameX(), QStringLiteral("Energy [keV]"));
        const QImage energies = plot.grab().toImage();
        const QRect graph = mapping.frameRect();
        const QRect labels(graph.left(), graph.bottom() + 5, graph.width(), 15);
        panel.remove();
        QVERIFY(plot.grab().toImage().copy(labels) != energies.copy(labels)); // channels again
        QCOMPARE(PlotCalibration::of(plot), nullptr);
        QCOMPARE(plot.getNameX(), QStringLiteral("Channel"));
        QVERIFY(!PlotMapping::of(plot).hasTickFunction());
    }

    /// The numbers of tools and tables belong to the name of the axis.
    void toolsAndTablesShowEnergies()
    {
        const auto energyAt = [](double x) { return 10.0 + x * (0.5 + 0.0625 * x); };
        EnergyCalibration calibration;
        calibration.coefficients = { 10.0, 0.5, 0.0625 };
        VectorGraphWidget plot;
        show(plot, { 4, 9, 16, 25, 36, 49, 64, 81 });
        PlotCrosshair crosshair(&plot);
        PlotMarkers markers(&plot);
        PlotRuler ruler(&plot);
        const PlotKeyboard keyboard(&plot);
        crosshair.pinAt({ 2.5, 1.0 });
        markers.add({ 2.5, 0.0 });
        ruler.setEnds({ 2.5, 0.0 }, { 6.5, 0.0 });
        QCOMPARE(PlotCalibration::apply(plot, calibration), QString());
        QCOMPARE(crosshair.text(), QStringLiteral("Energy [keV] [11.25, 12.0625) bin 2   16 ± 4"));
        QCOMPARE(
            crosshair.table(), QStringLiteral("bin\tEnergy [keV] lo\tEnergy [keV] hi\tvalue\n2\t11.25\t12.0625\t16\n"));
        QCOMPARE(markers.table().section(u'\n', 1, 1), QStringLiteral("A\t11.640625\t2\t11.25\t12.0625\t16"));
        QVERIFY(ruler.text().startsWith(QStringLiteral("Δx %1 ").arg(energyAt(6.5) - energyAt(2.5))));
        QVERIFY(keyboard.value().startsWith(QStringLiteral("Energy [keV] from 10 to 18,")));

        const Dataset all = PlotExporter(plot).dataset();
        QCOMPARE(all.x.name, QStringLiteral("Energy"));
        QCOMPARE(all.x.unit, QStringLiteral("keV"));
        QCOMPARE(all.x.values.size(), std::size_t(9));
        for (std::size_t i = 0; i < all.x.values.size(); ++i)
            QCOMPARE(all.x.values.at(i), energyAt(double(i)));
        plot.setMinMaxX(2.0, 4.0);
        const PlotExporter exporter(plot);
        QCOMPARE(exporter.dataset(Extent::Visible).x.values, (std::vector { 11.25, 12.0625, 13.0 }));
        QCOMPARE(
            exporter.datasetFor(QStringLiteral("a.SPE"), Extent::Visible).x.values, (std::vector { 2.0, 3.0, 4.0 }));
        const QTemporaryDir folder;
        QCOMPARE(exporter.saveData(folder.filePath(QStringLiteral("a.spe"))), QString());

        PlotCalibration::remove(plot);
        QCOMPARE(crosshair.text(), QStringLiteral("Channel [2, 3) bin 2   16 ± 4"));
        QVERIFY(PlotExporter(plot).dataset().x.values.empty());
    }

    /// They show channels, and name them so.
    void plotsOfAMapKeepItsChannels()
    {
        EnergyCalibration calibration;
        calibration.coefficients = { 100.0, 2.0 };
        XY2DGraphWidget map;
        map.init(QStringLiteral("Channel"), QStringLiteral("Strip"), 4, 2, true, true);
        map.initManualX(0, 4);
        map.initManualY(0, 2);
        for (int row = 0; row < 2; ++row)
            map.setData(row, { 1, 2, 3, 4 }, 4, row == 1);
        map.resize(400, 300);
        map.show();
        map.grab();
        QCOMPARE(PlotCalibration::apply(map, calibration), QString());
        QCOMPARE(map.getNameX(), QStringLiteral("Energy [keV]"));
        LineProfile profile(&map);
        profile.setLine({ 0.5, 0.5 }, { 3.5, 0.5 });
        profile.setOn(true);
        QCoreApplication::processEvents();
        QCOMPARE(profile.profilePlot()->getNameX(), QStringLiteral("Channel"));
        map.on1dCut(true);
        QStringList names;
        for (VectorGraphWidget* const plot : map.findChildren<VectorGraphWidget*>())
            names << plot->getNameX();
        names.removeDuplicates();
        names.sort();
        QCOMPARE(names, QStringList({ QStringLiteral("Channel"), QStringLiteral("Strip") }));
    }

    void toolTipShowsTheEnergy()
    {
        MultiVectorGraphWidget plot;
        plot.init(QStringLiteral("Channel"), QStringLiteral("Counts"), 8, 10, true, true);
        plot.initManualX(0, 8);
        plot.setData(0, { 1, 2, 3, 4, 5, 6, 7, 8 }, 10);
        plot.resizeData(1);
        plot.resize(400, 300);
        plot.show();
        plot.grab();
        EnergyCalibration calibration;
        calibration.coefficients = { 100.0, 2.0 };
        QCOMPARE(PlotCalibration::apply(plot, calibration), QString());
        plot.grab();
        const QPointF at = PlotMapping::of(plot).pixelOf({ 3.5, 5.0 });
        QMouseEvent move(QEvent::MouseMove, at, plot.mapToGlobal(at), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&plot, &move);
        QCOMPARE(QToolTip::text(), QStringLiteral("Energy [keV]:106 i:4"));
    }

    void keepsAScaleOfTheHost()
    {
        VectorGraphWidget plot;
        show(plot);
        plot.setFuncX2Tick([](double x, void*) { return 2.0 * x; }, [](double x, void*) { return x / 2.0; }, nullptr);
        EnergyCalibration calibration;
        calibration.coefficients = { 0.0, 1.0 };
        QVERIFY(!PlotCalibration::apply(plot, calibration).isEmpty());
        QCOMPARE(PlotMapping::of(plot).tickOf(3.0), 6.0);
    }

    void refusesAScaleThatFalls()
    {
        VectorGraphWidget plot;
        show(plot);
        EnergyCalibration calibration;
        calibration.coefficients = { 0.0, 1.0, -0.001 }; // turns at 500
        QVERIFY(!PlotCalibration::apply(plot, calibration).isEmpty());
        QVERIFY(!PlotCalibration::apply(plot, {}).isEmpty());
        QCOMPARE(PlotCalibration::of(plot), nullptr);
    }

    void followsTypedEnergies()
    {
        VectorGraphWidget plot;
        show(plot);
        CalibrationPanel panel(&plot);
        panel.setSource(QStringLiteral("eu152"));
        QVERIFY(calibrate(panel));
        QAbstractItemModel& model = *panel.findChild<QTableView*>()->model();
        const std::size_t before = panel.calibration().points.size();
        const int used = firstUsedRow(model);
        QVERIFY(model.setData(model.index(used, 0), Qt::Unchecked, Qt::CheckStateRole));
        QCOMPARE(panel.calibration().points.size(), before - 1);
        const double energy = panel.calibration().energyAt(1000.0);
        const double typed = model.index(used, 2).data(Qt::EditRole).toDouble() + 1.0;
        QVERIFY(model.setData(model.index(used, 2), QString::number(typed))); // a wrong energy
        QCOMPARE(panel.calibration().points.size(), before);
        QVERIFY(panel.calibration().energyAt(1000.0) != energy);
        QVERIFY(!model.setData(model.index(used, 2), QStringLiteral("-3")));
        QVERIFY(!model.setData(model.index(used, 2), QStringLiteral("x")));
        QVERIFY2(panel.message().contains(u'x'), qPrintable(panel.message()));
        QCOMPARE(model.index(used, 3).data().toString(), QString()); // no longer the line of the source
    }

    void keepsAnAssignedLineWithoutAChange()
    {
        VectorGraphWidget plot;
        show(plot);
        CalibrationPanel panel(&plot);
        panel.setSource(QStringLiteral("eu152"));
        QVERIFY(calibrate(panel));
        QAbstractItemModel& model = *panel.findChild<QTableView*>()->model();
        const int used = firstUsedRow(model);
        const QString shown = model.index(used, 2).data().toString();
        QVERIFY(model.setData(model.index(used, 2), model.index(used, 2).data(Qt::EditRole)));
        QCOMPARE(model.index(used, 2).data().toString(), shown);
        QVERIFY(!model.index(used, 3).data().toString().isEmpty());
    }

    void comesBackFromAFile()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("calibration.json"));
        VectorGraphWidget plot;
        show(plot);
        CalibrationPanel panel(&plot);
        QVERIFY(!panel.saveCalibration(path).isEmpty());
        panel.setSource(QStringLiteral("eu152"));
        QVERIFY(calibrate(panel));
        QCOMPARE(panel.saveCalibration(path), QString());
        CalibrationPanel other(&plot);
        QCOMPARE(other.loadCalibration(path), QString());
        QCOMPARE(other.calibration().energyAt(1000.0), panel.calibration().energyAt(1000.0));
        QVERIFY(!other.loadCalibration(folder.filePath(QStringLiteral("none"))).isEmpty());
    }

    void savesTheWholeFileOrReportsTheCause_data() { tarnis::testing::addSaveFailures(); }
    void savesTheWholeFileOrReportsTheCause()
    {
        using tarnis::testing::SaveFailure;
        QFETCH(SaveFailure, failure);
        QFETCH(QString, cause);
        VectorGraphWidget plot;
        show(plot);
        CalibrationPanel panel(&plot);
        panel.setSource(QStringLiteral("eu152"));
        QVERIFY(calibrate(panel));
        tarnis::testing::SavePlace place(failure, QStringLiteral(".json"));
        if (!place.isThere())
            QSKIP("only root may mount the small disk of this case");
        place.begin();
        const QString error = panel.saveCalibration(place.path());
        if (failure == SaveFailure::None) {
            QCOMPARE(error, QString());
            QCOMPARE(place.content(), calibrationToJson(panel.calibration()));
            return;
        }
        QVERIFY2(error.contains(cause), qPrintable(error));
        QVERIFY(place.isUntouched());
    }

    void readsLinesOfAFile()
    {
        QTemporaryDir folder;
        QFile file(folder.filePath(QStringLiteral("lines.txt")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("121.7817 0.0003\n344.2785 0.0012\n778.9045 0.0024\n1408.013 0.003\n");
        file.close();
        VectorGraphWidget plot;
        CalibrationPanel panel(&plot);
        QCOMPARE(panel.loadLines(file.fileName()), QString());
        QVERIFY(panel.message().contains(u'4'));
        panel.setSource(QStringLiteral("unobtainium"));
        QVERIFY(!panel.message().isEmpty());
        QVERIFY(calibrate(panel)); // no lines, no data: reports this
        QVERIFY(!panel.calibration().isValid());
    }

    void outlivesItsPlot()
    {
        auto plot = std::make_unique<VectorGraphWidget>();
        show(*plot);
        CalibrationPanel panel(plot.get());
        panel.setSource(QStringLiteral("eu152"));
        panel.calibrate();
        plot.reset();
        TRY_VERIFY(!panel.isRunning());
        panel.apply();
        panel.remove();
        QVERIFY(calibrate(panel));
        panel.grab();
    }
};

QTEST_MAIN(TestCalibrationPanel)
#include "tst_calibrationpanel.moc"
