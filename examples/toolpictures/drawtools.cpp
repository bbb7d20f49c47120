// Draws the tools on made-up data, without a window on the screen: the pictures of docs/tools.md.
//
// usage: drawtools FOLDER   writes tools-*.png into an existing folder
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/colourlevels.h>
#include <tarnis/tools/colourmaps.h>
#include <tarnis/tools/errorbars.h>
#include <tarnis/tools/lineprofile.h>
#include <tarnis/tools/plotmarkers.h>
#include <tarnis/tools/plotruler.h>
#include <tarnis/tools/plotstyle.h>
#include <tarnis/tools/referencecurves.h>

#include <QApplication>
#include <QDir>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>

namespace {

constexpr double energyRange = 1500.0; // keV
constexpr int mapSide = 128;

/// Counts of three lines on a falling background; `scale` is about the counts of a bin of the latter.
QList<double> spectrum(int bins, double scale, unsigned int seed)
{
    std::mt19937 generator(seed);
    QList<double> counts(bins);
    for (int i = 0; i < bins; ++i) {
        const double energy = (i + 0.5) * energyRange / bins;
        const auto line = [&](double at, double height) {
            const double distance = (energy - at) / 12.0;
            return height * std::exp(-distance * distance / 2.0);
        };
        const double expected = std::exp(-energy / 450.0) + line(380.0, 5.0) + line(785.0, 2.8) + line(1205.0, 1.1);
        counts[i] = std::poisson_distribution<int>(expected * scale)(generator);
    }
    return counts;
}

void show(VectorGraphWidget& plot, const QList<double>& counts)
{
    plot.setData(counts);
    plot.setMaxValue(*std::max_element(counts.begin(), counts.end()));
    plot.refreshPixmap();
}

void prepare(VectorGraphWidget& plot, const QList<double>& counts, QSize size)
{
    plot.m_doubleBuffered = true;
    plot.init(QStringLiteral("Energy"), QStringLiteral("Counts"), energyRange, 100.0, true, true);
    plot.initManualX(0.0, energyRange);
    (new tarnis::PlotStyle(&plot))->setUnits(QStringLiteral("keV"), {});
    plot.resize(size);
    show(plot, counts);
}

/// A wide and a narrow spot on a low background.
void prepare(XY2DGraphWidget& map, QSize size)
{
    map.m_doubleBuffered = true;
    map.init(QStringLiteral("X"), QStringLiteral("Y"), mapSide, mapSide, true, true);
    map.initManualX(0.0, mapSide);
    map.initManualY(0.0, mapSide);
    std::mt19937 generator(7);
    for (int row = 0; row < mapSide; ++row) {
        QList<double> bins(mapSide);
        for (int column = 0; column < mapSide; ++column) {
            const auto spot = [&](double x, double y, double width, double height) {
                return height * std::exp(-(std::pow(column - x, 2) + std::pow(row - y, 2)) / (2.0 * width * width));
            };
            const double expected = 2.0 + spot(46.0, 79.0, 16.0, 60.0) + spot(91.0, 40.0, 6.0, 200.0);
            bins[column] = std::poisson_distribution<int>(expected)(generator);
        }
        map.setData(row, bins, *std::max_element(bins.begin(), bins.end()), row == mapSide - 1);
    }
    (new tarnis::PlotStyle(&map))->setUnits(QStringLiteral("mm"), QStringLiteral("mm"));
    tarnis::ColourMaps::apply(map, QStringLiteral("viridis"));
    map.resize(size);
}

/// The widget as it appears after the deferred calls of its tools.
QPixmap picture(QWidget& widget)
{
    widget.show();
    for (int i = 0; i < 5; ++i) {
        QCoreApplication::processEvents();
        widget.grab();
    }
    return widget.grab();
}

QPixmap markers()
{
    VectorGraphWidget plot;
    prepare(plot, spectrum(500, 110.0, 1), { 700, 420 });
    auto* const marked = new tarnis::PlotMarkers(&plot);
    marked->add({ 380.0, 0.0 });
    marked->add({ 785.0, 0.0 });
    (new tarnis::PlotRuler(&plot))->setEnds({ 310.0, 0.0 }, { 460.0, 0.0 });
    return picture(plot);
}

QPixmap errorBars()
{
    VectorGraphWidget plot;
    prepare(plot, spectrum(150, 10.0, 2), { 700, 380 });
    (new tarnis::ErrorBars(&plot))->setOn(true);
    return picture(plot);
}

QPixmap reference()
{
    VectorGraphWidget plot;
    prepare(plot, spectrum(150, 55.0, 3), { 700, 500 });
    auto* const references = new tarnis::ReferenceCurves(&plot);
    references->freeze(QStringLiteral("before"));
    references->setView(tarnis::ReferenceCurves::View::Ratio);
    show(plot, spectrum(150, 75.0, 4));
    return picture(plot);
}

QPixmap colourMaps()
{
    constexpr int rowHeight = 24;
    const QStringList names = tarnis::ColourMaps::names();
    QPixmap page(360, static_cast<int>(names.size()) * rowHeight + 8);
    page.fill(Qt::white);
    QPainter painter(&page);
    for (int i = 0; i < names.size(); ++i) {
        const QRect row(8, 4 + i * rowHeight, 100, rowHeight);
        painter.drawText(row, Qt::AlignLeft | Qt::AlignVCenter, names.at(i));
        painter.drawImage(row.right() + 12, row.top() + 4, tarnis::ColourMaps::preview(names.at(i), { 230, 16 }));
    }
    return page;
}

QPixmap levels()
{
    XY2DGraphWidget map;
    prepare(map, { 700, 520 });
    auto* const colours = new tarnis::ColourLevels(&map);
    colours->setScale(tarnis::ColourLevels::Scale::SquareRoot);
    colours->setLevels(0.0, 90.0);
    return picture(map);
}

QPixmap profile()
{
    QWidget window;
    auto* const column = new QVBoxLayout(&window);
    column->setContentsMargins(0, 0, 0, 0);
    auto* const map = new XY2DGraphWidget;
    prepare(*map, { 700, 520 });
    auto* const line = new tarnis::LineProfile(map);
    column->addWidget(map, 2);
    column->addWidget(line->profilePlot(), 1); // a child of the window instead of a window
    line->setOn(true);
    line->setLine({ 20.0, 86.0 }, { 110.0, 24.0 });
    line->setBandWidth(9.0);
    line->profilePlot()->show();
    window.resize(700, 780);
    return picture(window);
}

} // namespace

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    if (argc != 2 || !QDir(QString::fromLocal8Bit(argv[1])).exists()) {
        qWarning("usage: drawtools FOLDER\nFOLDER must exist.");
        return 2;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    const std::pair<const char*, std::function<QPixmap()>> pictures[] = { { "tools-markers.png", markers },
        { "tools-errorbars.png", errorBars }, { "tools-reference.png", reference },
        { "tools-colourmaps.png", colourMaps }, { "tools-levels.png", levels }, { "tools-profile.png", profile } };
    for (const auto& [name, draw] : pictures) {
        const QString path = folder.filePath(QLatin1String(name));
        if (draw().save(path))
            continue;
        qWarning("%s cannot be written. Choose a folder that you may write to.", qPrintable(path));
        return 1;
    }
    return 0;
}
