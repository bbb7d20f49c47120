// Attaches every tool to two live plots whose X axes are linked, without any server.
//
// usage: tools [--picture PNG]
//   --picture  writes the window to an image and quits; needs no display with QT_QPA_PLATFORM=offscreen
// The views are stored when the window closes, and come back at the next start.
#include <tarnis/plots/curvenames.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/axislink.h>
#include <tarnis/tools/colourlevels.h>
#include <tarnis/tools/plotcrosshair.h>
#include <tarnis/tools/plotlegend.h>
#include <tarnis/tools/plotmarkers.h>
#include <tarnis/tools/plotnavigator.h>
#include <tarnis/tools/plotruler.h>
#include <tarnis/tools/plottoolbar.h>
#include <tarnis/tools/plotview.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <random>

namespace {

constexpr int bins = 256;
constexpr int rows = 128;
constexpr int eventsPerStep = 20000;

/// Three sources in one detector: their spectra, and the time of each event in a map.
class Source {
public:
    QList<QList<double>> spectra { 3, QList<double>(bins, 0.0) };
    QList<QList<double>> map { rows, QList<double>(bins, 0.0) };

    void measure()
    {
        std::uniform_int_distribution<int> sources(0, 2);
        std::uniform_int_distribution<int> times(0, rows - 1);
        for (int event = 0; event < eventsPerStep; ++event) {
            const int source = sources(m_generator);
            std::normal_distribution<double> line(50.0 + 70.0 * source, 6.0 + 10.0 * source);
            const int bin = std::clamp(static_cast<int>(line(m_generator)), 0, bins - 1);
            ++spectra[source][bin];
            ++map[times(m_generator)][bin];
        }
    }

private:
    std::mt19937 m_generator { 1 };
};

class Window : public QWidget {
public:
    Window();
    void takeData();

    MultiVectorGraphWidget curves;
    XY2DGraphWidget map;

private:
    void addPlot(XYGraphWidget& plot, const QString& nameY, double maxY);

    Source m_source;
    tarnis::AxisLink m_link;
};

Window::Window()
{
    setWindowTitle(QStringLiteral("Tools"));
    new QVBoxLayout(this);
    addPlot(curves, QStringLiteral("Counts"), 10.0);
    addPlot(map, QStringLiteral("Time [s]"), rows);
    map.initManualY(0.0, rows);

    new tarnis::PlotLegend(&curves); // owned by the plot
    tarnis::setSeriesNames(curves, { QStringLiteral("Sodium"), QStringLiteral("Cobalt"), QStringLiteral("Caesium") });
    new tarnis::ColourLevels(&map);
    resize(760, 780);
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
    plot.setMinimumHeight(200);

    new tarnis::PlotNavigator(&plot);
    new tarnis::PlotCrosshair(&plot);
    new tarnis::PlotMarkers(&plot);
    new tarnis::PlotRuler(&plot);
    m_link.add(&plot, Qt::Horizontal);
}

void Window::takeData()
{
    m_source.measure();
    double largest = 0.0;
    for (const QList<double>& spectrum : m_source.spectra)
        largest = std::max(largest, *std::max_element(spectrum.begin(), spectrum.end()));
    for (int i = 0; i < m_source.spectra.size(); ++i)
        curves.setData(i, m_source.spectra.at(i), largest);
    for (int row = 0; row < rows; ++row) {
        const QList<double>& line = m_source.map.at(row);
        map.setData(row, line, *std::max_element(line.begin(), line.end()), row == rows - 1);
    }
    curves.refreshPixmap();
    map.refreshPixmap();
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOption({ QStringLiteral("picture"), QStringLiteral("Writes the window to an image and quits."),
        QStringLiteral("PNG") });
    parser.process(application);
    Window window;
    window.takeData();
    if (parser.isSet(QStringLiteral("picture"))) {
        window.show();
        for (int i = 0; i < 5; ++i)
            QCoreApplication::processEvents(); // the bars collect the tools
        return window.grab().save(parser.value(QStringLiteral("picture"))) ? 0 : 1;
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
