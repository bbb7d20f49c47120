// Shows a map of bins with cuts and regions, without any server.
//
// usage: plot2d [--log] [--cut X1,X2,Y1,Y2] [--region X1,Y1,X2,Y2] [--picture PNG] [FILE]
//   FILE       numbers between commas, a row of the map a line, the lowest row first, as the plot's "Save CSV..."
//   writes them; without it, two detectors in coincidence are made up
//   --log      colours by the logarithm
//   --cut      switches the 1D cut on
//   --region   switches the regions on and adds one; their sums are written as they change
//   --picture  writes the windows to an image and quits; needs no display with QT_QPA_PLATFORM=offscreen
#include <tarnis/plots/viewselectedroi.h>
#include <tarnis/plots/xy2dgraphwidget.h>

#include <QAction>
#include <QApplication>
#include <QCommandLineParser>
#include <QFile>
#include <QPainter>
#include <QTextStream>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <optional>
#include <random>

namespace {

using Rows = QList<QList<double>>;

/// Counts of two detectors: lines of each of them, and a peak where both see a particle of one decay.
Rows coincidences()
{
    constexpr int side = 128;
    std::mt19937 generator(1);
    Rows rows;
    for (int row = 0; row < side; ++row) {
        QList<double> bins;
        for (int column = 0; column < side; ++column) {
            const auto bell = [](double x, double center, double width) {
                return std::exp(-0.5 * (x - center) * (x - center) / (width * width));
            };
            const double expected = 0.5 + 8.0 * bell(column, 40.0, 3.0) + 8.0 * bell(row, 80.0, 3.0)
                + 250.0 * bell(column, 40.0, 3.0) * bell(row, 80.0, 3.0) + 60.0 * bell(column + row, 150.0, 5.0);
            bins.append(std::poisson_distribution<int>(expected)(generator));
        }
        rows.append(bins);
    }
    return rows;
}

Rows readRows(QTextStream& text)
{
    Rows rows;
    for (QString line; text.readLineInto(&line);) {
        QList<double> bins;
        for (const QString& word : line.split(u',', Qt::SkipEmptyParts))
            bins.append(word.toDouble());
        rows.append(bins);
    }
    return rows;
}

/// Parses four comma-separated numbers.
std::optional<std::array<double, 4>> readRectangle(const QString& text)
{
    const QStringList words = text.split(u',');
    std::array<double, 4> numbers {};
    bool isGood = words.size() == 4;
    for (qsizetype i = 0; isGood && i < 4; ++i)
        numbers[static_cast<std::size_t>(i)] = words.at(i).toDouble(&isGood);
    return isGood ? std::optional(numbers) : std::nullopt;
}

/// Each region with the sum of its bins. A bin is a unit wide here, so that corners are bins.
void writeSums(const Rows& rows, const QList<QRect>& regions)
{
    for (const QRect& region : regions) {
        double sum = 0.0;
        for (int row = std::max(region.top(), 0); row < std::min<qsizetype>(region.bottom(), rows.size()); ++row) {
            for (int column = std::max(region.left(), 0);
                 column < std::min<qsizetype>(region.right(), rows.at(row).size()); ++column)
                sum += rows.at(row).at(column);
        }
        std::printf("(%d,%d)-(%d,%d): %.0f\n", region.left(), region.top(), region.right(), region.bottom(), sum);
    }
    std::fflush(stdout);
}

/// A window around a plot with cut and region windows beside it: it notifies the plot when it is moved.
class Window : public QWidget {
public:
    Window()
        : plot(this)
    {
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(&plot);
        setGeometry(150, 250, 560, 480);
    }
    XY2DGraphWidget plot;

protected:
    void moveEvent(QMoveEvent* /*event*/) override { plot.onParentMoved(); }
    void resizeEvent(QResizeEvent* /*event*/) override { plot.onParentMoved(); }
    void changeEvent(QEvent* event) override
    {
        if (event->type() != QEvent::ActivationChange || !isActiveWindow())
            return;
        plot.onParentMoved(); // now the window has its frame, beside which cuts and regions are placed
        plot.onParentActivate();
    }
};

void show(XY2DGraphWidget& plot, const Rows& rows)
{
    const qsizetype columns = rows.isEmpty() ? 0 : rows.constFirst().size();
    plot.m_doubleBuffered = true;
    plot.init(QStringLiteral("First"), QStringLiteral("Second"), 0.0, 0.0, true, true);
    plot.initManualX(0.0, static_cast<double>(columns));
    plot.initManualY(0.0, static_cast<double>(rows.size()));
    for (int row = 0; row < rows.size(); ++row) {
        const QList<double>& bins = rows.at(row);
        const double largest = bins.isEmpty() ? 0.0 : *std::max_element(bins.cbegin(), bins.cend());
        plot.setData(row, bins, largest, row == rows.size() - 1);
    }
    plot.enalbeRoiSelect(QRect(QPoint(0, 0), QPoint(static_cast<int>(columns), static_cast<int>(rows.size()))));
    plot.refreshPixmap();
}

/// A picture of all windows at their positions.
QPixmap pictureOfWindows()
{
    QRect all;
    for (const QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible())
            all |= widget->geometry();
    }
    QPixmap picture(all.size());
    picture.fill(Qt::white);
    QPainter painter(&picture);
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible())
            painter.drawPixmap(widget->pos() - all.topLeft(), widget->grab());
    }
    return picture;
}

/// The tool is an entry of the menu.
void switchOn(const QWidget& plot, const QString& entry)
{
    for (QAction* action : plot.actions()) {
        if (action->text() == entry)
            action->trigger();
    }
}

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    QCommandLineParser options;
    options.addHelpOption();
    const QCommandLineOption log(QStringLiteral("log"), QStringLiteral("Colours by the logarithm."));
    const QCommandLineOption cut(
        QStringLiteral("cut"), QStringLiteral("Cut along a rectangle."), QStringLiteral("X1,X2,Y1,Y2"));
    const QCommandLineOption region(
        QStringLiteral("region"), QStringLiteral("Add a region."), QStringLiteral("X1,Y1,X2,Y2"));
    const QCommandLineOption picture(
        QStringLiteral("picture"), QStringLiteral("Write the windows to an image and quit."), QStringLiteral("PNG"));
    options.addOptions({ log, cut, region, picture });
    options.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("Rows of numbers."), QStringLiteral("[FILE]"));
    options.process(application);

    Rows rows;
    if (options.positionalArguments().isEmpty()) {
        rows = coincidences();
    } else {
        QFile file(options.positionalArguments().constFirst());
        if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
            std::fprintf(stderr, "plot2d: %s: %s\n", qPrintable(file.fileName()), qPrintable(file.errorString()));
            return 1;
        }
        QTextStream text(&file);
        rows = readRows(text);
    }

    Window window;
    XY2DGraphWidget& plot = window.plot;
    show(plot, rows);
    QObject::connect(&plot, &XY2DGraphWidget::onSelectRoiChanged, &plot,
        [&rows](const QList<QRect>& regions) { writeSums(rows, regions); });
    window.show();
    if (options.isSet(log))
        switchOn(plot, QStringLiteral("Log Scale"));
    if (const auto edges = readRectangle(options.value(region))) {
        plot.SetRoiEnabled(true);
        const auto corner = [&](std::size_t i) { return QPointF(edges->at(i), edges->at(i + 1)).toPoint(); };
        plot.GetViewSelectedROI()->addRoi(QRect(corner(0), corner(2)));
    }
    if (const auto edges = readRectangle(options.value(cut))) {
        switchOn(plot, QStringLiteral("1D Cut"));
        plot.update1dCutRect(edges->at(0), edges->at(1), edges->at(2), edges->at(3));
    }
    if (options.isSet(picture)) {
        // The colour bar determines the width of its labels while they are painted.
        for (int i = 0; i < 3; ++i)
            QCoreApplication::processEvents();
        return pictureOfWindows().save(options.value(picture)) ? 0 : 1;
    }
    return QApplication::exec();
}
