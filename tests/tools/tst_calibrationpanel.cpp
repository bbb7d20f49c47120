// Calibration of a plot: lines found in its peaks, edits, the axis, files, lifetimes.
#include "support/support.h"
#include "support/wait.h"

#include <tarnis/analysis/peakshape.h>
#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/tools/calibrationpanel.h>
#include <tarnis/tools/plotcalibration.h>

#include <QFile>
#include <QSignalSpy>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

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

bool calibrate(CalibrationPanel& panel)
{
    QSignalSpy calibrated(&panel, &CalibrationPanel::calibrated);
    panel.calibrate();
    return !calibrated.isEmpty() || calibrated.wait(60000);
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
