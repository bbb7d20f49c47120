// Draws spectra and a map in the classic look and in every theme, side by side: drawstyles FOLDER
// writes styles-curves.png and styles-map.png there.
#include <tarnis/plots/curvenames.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/plotstyle.h>

#include <QApplication>
#include <QImage>
#include <QPainter>

#include <cmath>
#include <cstdio>
#include <functional>
#include <memory>
#include <random>

using tarnis::PlotStyle;

namespace {

constexpr QSize plotSize(600, 380);
constexpr int gap = 12;

double bell(double x, double centre, double sigma)
{
    return std::exp(-0.5 * (x - centre) * (x - centre) / (sigma * sigma));
}

// A falling background with peaks, one spectrum for each detector.
void fill(MultiVectorGraphWidget& plot)
{
    std::mt19937 random(7);
    plot.m_groupSize = 1;
    plot.init("Energy [keV]", "Counts", 0, 0, true, true);
    plot.initManualX(0, 2048);
    for (int detector = 0; detector < 4; ++detector) {
        QList<double> counts;
        double largest = 0.0;
        for (int i = 0; i < 512; ++i) {
            const double x = 4.0 * i;
            const double expected = (26000.0 - 5200.0 * detector)
                * (0.45 * std::exp(-x / 500.0) + bell(x, 662 + 190 * detector, 14) + 0.3 * bell(x, 1460, 16) + 0.004);
            counts.append(std::poisson_distribution<int>(expected)(random));
            largest = std::max(largest, counts.last());
        }
        plot.setData(detector, counts, largest);
        tarnis::setSeriesName(plot, detector, QStringLiteral("Detector %1").arg(detector + 1));
    }
    plot.resizeData(4);
    plot.setTitle("Four detectors, run 1234");
    plot.setNotes("2.4M events");
}

void fill(XY2DGraphWidget& map)
{
    std::mt19937 random(11);
    map.init("x [mm]", "y [mm]", 0, 0, true, true);
    map.initManualX(-40, 40);
    map.initManualY(-25, 25);
    for (int row = 0; row < 100; ++row) {
        QList<double> bins;
        double largest = 0.0;
        for (int column = 0; column < 160; ++column) {
            const double x = -40 + column * 0.5;
            const double y = -25 + row * 0.5;
            const double expected = 900.0 * bell(x, -12, 6) * bell(y, 4, 5) + 5000.0 * bell(x, 14, 3) * bell(y, -6, 4)
                + 30.0 * bell(std::hypot(x, y), 20, 1.5) + 0.15;
            bins.append(std::poisson_distribution<int>(expected)(random));
            largest = std::max(largest, bins.last());
        }
        map.setData(row, bins, largest, false);
    }
    map.setTitle("Hits, run 1234");
    map.onLogScale(true);
}

QImage grabbed(XYGraphWidget& plot)
{
    plot.m_doubleBuffered = true;
    plot.resize(plotSize);
    for (int pass = 0; pass < 2; ++pass) { // the space beside a map depends on the labels of its colour bar
        plot.refreshPixmap();
        plot.grab();
    }
    return plot.grab().toImage();
}

// The classic look first, then the themes; a second column shows them on a logarithmic axis or in another form.
template <typename Plot> QImage sheet(const std::function<void(Plot&, PlotStyle*)>& vary)
{
    const int columns = 2;
    const int rows = 5;
    QImage image(
        (plotSize.width() + gap) * columns + gap, (plotSize.height() + gap) * rows + gap, QImage::Format_RGB32);
    image.fill(QColor(0x808080U));
    QPainter painter(&image);
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            Plot plot;
            fill(plot);
            PlotStyle* const style = row > 0 ? new PlotStyle(&plot, PlotStyle::Theme(row - 1)) : nullptr;
            if (column == 1)
                vary(plot, style);
            painter.drawImage(
                gap + column * (plotSize.width() + gap), gap + row * (plotSize.height() + gap), grabbed(plot));
        }
    }
    return image;
}

} // namespace

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: drawstyles FOLDER\n");
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]);
    const QImage curves = sheet<MultiVectorGraphWidget>([](MultiVectorGraphWidget& plot, PlotStyle* style) {
        plot.setLogScaleY(true);
        if (style != nullptr)
            style->setCurveForm(PlotStyle::CurveForm::Steps);
    });
    const QImage maps = sheet<XY2DGraphWidget>([](XY2DGraphWidget& map, PlotStyle* style) {
        map.onLogScale(false);
        if (style != nullptr)
            style->setNumberForm(PlotStyle::NumberForm::Powers);
    });
    if (!curves.save(folder + "/styles-curves.png") || !maps.save(folder + "/styles-map.png")) {
        std::fprintf(stderr, "drawstyles: cannot write to %s: name a folder that exists\n", argv[1]);
        return 1;
    }
    return 0;
}
