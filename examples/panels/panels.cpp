// A plot with docked analysis panels: regions, a fit, all peaks, an energy calibration. With a folder as argument it
// saves a screenshot of each panel and quits.
#include <tarnis/analysis/calibrationlines.h>
#include <tarnis/analysis/peakshape.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/tools/calibrationpanel.h>
#include <tarnis/tools/fitpanel.h>
#include <tarnis/tools/peakpanel.h>
#include <tarnis/tools/plotnavigator.h>
#include <tarnis/tools/regiontable.h>

#include <QApplication>
#include <QDockWidget>
#include <QEventLoop>
#include <QMainWindow>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <random>

namespace {

constexpr int channels = 4096;
constexpr double keVPerChannel = 0.4;

/// A germanium spectrum of Eu-152 on a falling background.
QList<double> spectrum()
{
    std::mt19937_64 random(1);
    const tarnis::CalibrationLines source = tarnis::linesOfSource(QStringLiteral("eu152"));
    const std::array width { 2.5 };
    QList<double> counts;
    for (int i = 0; i < channels; ++i) {
        double mean = 10.0 + 150.0 * std::exp(-i / 900.0);
        for (const tarnis::CalibrationLine& line : source.lines) {
            const double centre = line.energy / keVPerChannel;
            if (std::fabs(i - centre) < 30.0)
                mean += 600.0 * line.intensity
                    * tarnis::peakIntegral(tarnis::PeakShape::Gaussian, i, i + 1.0, centre, width);
        }
        counts << static_cast<double>(std::poisson_distribution<int>(mean)(random));
    }
    return counts;
}

void dock(QMainWindow& window, QWidget* panel)
{
    auto* const frame = new QDockWidget(panel->windowTitle(), &window);
    frame->setObjectName(panel->windowTitle());
    frame->setWidget(panel);
    window.addDockWidget(Qt::RightDockWidgetArea, frame);
    const QList<QDockWidget*> frames = window.findChildren<QDockWidget*>();
    if (frames.size() > 1)
        window.tabifyDockWidget(frames.first(), frame);
}

template <typename Panel> void runUntil(Panel* panel, void (Panel::*done)(), void (Panel::*start)())
{
    QEventLoop loop;
    QObject::connect(panel, done, &loop, &QEventLoop::quit, Qt::QueuedConnection);
    (panel->*start)();
    loop.exec();
}

void zoom(VectorGraphWidget& plot, double lower, double upper)
{
    plot.onAutoScaleX(false);
    plot.setMinMaxX(lower, upper);
    plot.refreshPixmap();
}

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    QMainWindow window;
    auto* const plot = new VectorGraphWidget;
    plot->m_doubleBuffered = true;
    const QList<double> counts = spectrum();
    plot->init(QStringLiteral("Channel"), QStringLiteral("Counts"), channels, 1.0, true, true);
    plot->setData(counts);
    plot->setMaxValue(*std::max_element(counts.begin(), counts.end()));
    plot->setLogScaleY(true);
    window.setCentralWidget(plot);
    new tarnis::PlotNavigator(plot);
    auto* const regions = new tarnis::RegionTable(plot);
    auto* const fit = new tarnis::FitPanel(plot);
    auto* const peaks = new tarnis::PeakPanel(plot);
    auto* const calibration = new tarnis::CalibrationPanel(plot);
    for (QWidget* const panel : std::initializer_list<QWidget*> { fit, regions, peaks, calibration })
        dock(window, panel);
    window.resize(1400, 800);
    window.show();
    if (argc < 2)
        return QApplication::exec();

    const QString folder = QString::fromLocal8Bit(argv[1]);
    const auto save = [&](QWidget* panel, const QString& name) {
        for (QDockWidget* const frame : window.findChildren<QDockWidget*>()) {
            if (frame->widget() == panel)
                frame->raise();
        }
        QApplication::processEvents();
        if (!window.grab().save(folder + u'/' + name))
            std::fprintf(stderr, "%s cannot be written\n", qPrintable(name));
    };
    zoom(*plot, 270, 345);
    fit->setRange(290, 320);
    runUntil(fit, &tarnis::FitPanel::fitted, &tarnis::FitPanel::fit);
    save(fit, QStringLiteral("fitpanel.png"));
    fit->clear();
    zoom(*plot, 550, 950);
    regions->regions()->add(tarnis::PlotRegion::rangeX(600, 624, QStringLiteral("244 keV")));
    regions->regions()->add(tarnis::PlotRegion::rangeX(845, 876, QStringLiteral("344 keV")));
    regions->regions()->add(tarnis::PlotRegion::rangeX(680, 700, QStringLiteral("empty")));
    save(regions, QStringLiteral("regiontable.png"));
    regions->regions()->setRegions({});
    plot->onAutoScaleX(true);
    calibration->setSource(QStringLiteral("eu152"));
    runUntil(calibration, &tarnis::CalibrationPanel::calibrated, &tarnis::CalibrationPanel::calibrate);
    calibration->apply();
    save(calibration, QStringLiteral("calibrationpanel.png"));
    runUntil(peaks, &tarnis::PeakPanel::searched, &tarnis::PeakPanel::search);
    save(peaks, QStringLiteral("peakpanel.png"));
    return 0;
}
