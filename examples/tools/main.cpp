// Attaches every tool to two live plots whose X axes are linked, without any server.
//
// usage: tools [--picture PNG]   writes the window to an image and quits
// The views are stored when the window closes, and come back at the next start.
#include <tarnis/plots/curvenames.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/axislink.h>
#include <tarnis/tools/binaggregation.h>
#include <tarnis/tools/colourlevels.h>
#include <tarnis/tools/colourmaps.h>
#include <tarnis/tools/errorbars.h>
#include <tarnis/tools/lineprofile.h>
#include <tarnis/tools/plotcrosshair.h>
#include <tarnis/tools/plotevents.h>
#include <tarnis/tools/plotkeyboard.h>
#include <tarnis/tools/plotlegend.h>
#include <tarnis/tools/plotmarkers.h>
#include <tarnis/tools/plotnavigator.h>
#include <tarnis/tools/plotruler.h>
#include <tarnis/tools/plotstyle.h>
#include <tarnis/tools/plottoolbar.h>
#include <tarnis/tools/plotview.h>
#include <tarnis/tools/referencecurves.h>

#include <QApplication>
#include <QStatusBar>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <random>

namespace {

constexpr int bins = 256;
constexpr int rows = 128;

/// Three sources in one detector: their spectra, and the time of each event in a map.
struct Source {
    QList<QList<double>> spectra { 3, QList<double>(bins, 0.0) };
    QList<QList<double>> map { rows, QList<double>(bins, 0.0) };

    void measure()
    {
        std::uniform_int_distribution<int> sources(0, 2);
        std::uniform_int_distribution<int> times(0, rows - 1);
        for (int event = 0; event < 20000; ++event) {
            const int source = sources(generator);
            std::normal_distribution<double> line(50.0 + 60.0 * source, 6.0 + 6.0 * source); // ends in the axis
            const int bin = std::clamp(static_cast<int>(line(generator)), 0, bins - 1);
            ++spectra[source][bin];
            ++map[times(generator)][bin];
        }
    }

    std::mt19937 generator { 1 };
};

struct Window : QWidget {
    Window();
    void takeData();
    void addPlot(XYGraphWidget& plot, const QString& nameY, double maxY);

    MultiVectorGraphWidget curves;
    XY2DGraphWidget map;
    QStatusBar status;
    Source source;
    tarnis::AxisLink link;
};

Window::Window()
{
    setWindowTitle(QStringLiteral("Tools"));
    new QVBoxLayout(this);
    addPlot(curves, QStringLiteral("Counts"), 10.0);
    addPlot(map, QStringLiteral("Time [s]"), rows);
    map.initManualY(0.0, rows);
    new tarnis::PlotLegend(&curves); // owned by the plot
    new tarnis::ErrorBars(&curves);
    new tarnis::ReferenceCurves(&curves);
    tarnis::setSeriesNames(curves, { QStringLiteral("Sodium"), QStringLiteral("Cobalt"), QStringLiteral("Caesium") });
    new tarnis::ColourLevels(&map);
    new tarnis::LineProfile(&map);
    tarnis::ColourMaps::apply(map, QStringLiteral("viridis"));
    layout()->addWidget(&status);
    resize(760, 640);
}

/// A plot with the tools that fit every plot, below the bar of all its tools.
void Window::addPlot(XYGraphWidget& plot, const QString& nameY, double maxY)
{
    plot.m_doubleBuffered = true;
    plot.init(QStringLiteral("Energy [keV]"), nameY, bins, maxY, true, true);
    plot.initManualX(0.0, bins);
    layout()->addWidget(new tarnis::PlotToolBar(&plot));
    layout()->addWidget(&plot);
    plot.setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    plot.setMinimumHeight(160);
    new tarnis::PlotStyle(&plot);
    new tarnis::PlotNavigator(&plot);
    new tarnis::PlotKeyboard(&plot);
    new tarnis::PlotCrosshair(&plot);
    new tarnis::PlotMarkers(&plot);
    new tarnis::PlotRuler(&plot);
    new tarnis::BinAggregation(&plot);
    link.add(&plot, Qt::Horizontal);
    connect(new tarnis::PlotEvents(&plot), &tarnis::PlotEvents::clicked, this,
        [this](const tarnis::PlotPoint& point) { status.showMessage(tr("%1 keV").arg(point.value.x())); });
}

void Window::takeData()
{
    source.measure();
    const auto largest = [](const QList<double>& bins) { return *std::max_element(bins.begin(), bins.end()); };
    for (int i = 0; i < source.spectra.size(); ++i)
        curves.setData(i, source.spectra.at(i), largest(source.spectra.at(i)));
    for (int row = 0; row < rows; ++row)
        map.setData(row, source.map.at(row), largest(source.map.at(row)), row == rows - 1);
    curves.refreshPixmap();
    map.refreshPixmap();
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    Window window;
    window.takeData();
    if (argc == 3 && qstrcmp(argv[1], "--picture") == 0) {
        window.show();
        for (int i = 0; i < 5; ++i)
            QCoreApplication::processEvents(); // the bars collect the tools
        return window.grab().save(QString::fromLocal8Bit(argv[2])) ? 0 : 1;
    }
    const tarnis::PlotView views;
    QStringList errors { views.restore(window.curves, QStringLiteral("spectra")),
        views.restore(window.map, QStringLiteral("times")) };
    window.show();
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &window, &Window::takeData);
    timer.start(100);
    const int code = QApplication::exec();
    errors << views.save(window.curves, QStringLiteral("spectra")) << views.save(window.map, QStringLiteral("times"));
    for (const QString& error : errors.filter(QStringLiteral(".")))
        qWarning("%s", qPrintable(error));
    return code;
}
