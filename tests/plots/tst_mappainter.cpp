// The composed map compared with single drawing calls, on random data, zooms, scales and painters.
#include "support/cases.h"
#include "support/plot2doracle.h"
#include "support/randomcases.h"
#include "support/support.h"
#include "tarnis/plots/raster/mappainter_p.h"

#include <QImage>
#include <QPainter>
#include <QTest>

#include <cfloat>
#include <cmath>
#include <functional>
#include <limits>

using namespace tarnis::testing;

namespace {

/// Values of one kind: counts, fractions, or anything at all.
double randomValue(Generator& generator, int kind, double top)
{
    static const double odd[] = { std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
        -std::numeric_limits<double>::infinity(), 1e300, -1e300, 1e-300, -0.0, DBL_EPSILON, 2.3e-16, -2.3e-16, 65535.0,
        65536.0, 2147483647.0, 2147483648.0, -2147483648.0, 4294967296.0, -1.0, 0.5 };
    switch (kind) {
    case 0:
        return std::floor(uniform(generator, 0.0, top));
    case 1:
        return uniform(generator, -0.1 * top, top);
    case 2:
        return std::exp(uniform(generator, -20.0, 20.0));
    default:
        return odd[whole(generator, 0, static_cast<int>(std::size(odd)) - 1)];
    }
}

struct Bins {
    int columns = 0;
    int rows = 0;
    int kind = 0; ///< of the values; 4 mixes all
    double zeros = 0.2;
    bool ragged = false;
};

void fill(MapState& map, const Bins& bins, Generator& generator)
{
    const double top = std::exp(uniform(generator, 0.0, 12.0));
    for (int row = 0; row < bins.rows; ++row) {
        const int length = bins.ragged ? whole(generator, 0, bins.columns + 3) : bins.columns;
        QList<double> values(length);
        double largest = 0.0;
        for (double& value : values) {
            const int kind = bins.kind == 4 ? whole(generator, 0, 3) : bins.kind;
            value = chance(generator, bins.zeros) ? 0.0 : randomValue(generator, kind, top);
            if (value > largest)
                largest = value;
        }
        map.data.append(values);
        map.rowMax.append(largest);
    }
}

/// A visible range of `bins` bins of `step`, from a fraction of one to far beyond all.
void zoom(double& min, double& max, int bins, double step, double initMin, Generator& generator)
{
    double low = 0.0;
    double high = bins;
    switch (whole(generator, 0, 5)) {
    case 0:
        break;
    case 1:
        low = uniform(generator, -0.5 * bins, 1.2 * bins);
        high = low + std::exp(uniform(generator, -8.0, std::log(2.0 * bins + 2.0)));
        break;
    case 2:
        low = std::floor(uniform(generator, -2.0, bins));
        high = low + whole(generator, 1, bins + 1);
        break;
    case 3:
        low = uniform(generator, -1.0, bins);
        high = low + uniform(generator, 0.01, 3.0);
        break;
    case 4:
        low = -uniform(generator, 0.0, 20.0 * bins);
        high = uniform(generator, 0.0, 20.0 * bins);
        break;
    default:
        low = uniform(generator, 0.0, 0.5 * bins);
        high = uniform(generator, 0.5 * bins, bins + 1.0);
        break;
    }
    min = low * step + initMin;
    max = high * step + initMin;
}

void setAxes(MapState& map, const Bins& bins, Generator& generator)
{
    map.manualX = chance(generator, 0.5);
    map.manualY = chance(generator, 0.5);
    map.initMinX = map.manualX ? uniform(generator, -100.0, 100.0) : 0.0;
    map.initMinY = map.manualY ? uniform(generator, -100.0, 100.0) : 0.0;
    const double stepX = map.manualX ? std::exp(uniform(generator, -5.0, 5.0)) : 1.0;
    const double stepY = map.manualY ? std::exp(uniform(generator, -5.0, 5.0)) : 1.0;
    map.initMaxX = map.initMinX + bins.columns * stepX;
    map.initMaxY = map.initMinY + bins.rows * stepY;
    map.stepX = chance(generator, 0.5) ? stepX : 0.0;
    map.stepY = chance(generator, 0.5) ? stepY : 0.0;
    if (chance(generator, 0.2)) {
        map.resolutionX = static_cast<unsigned int>(whole(generator, 1, 5));
        map.resolutionY = static_cast<unsigned int>(whole(generator, 1, 5));
    }
    zoom(map.minX, map.maxX, bins.columns, stepX, map.initMinX, generator);
    zoom(map.minY, map.maxY, bins.rows, stepY, map.initMinY, generator);
}

void setColours(MapState& map, Generator& generator)
{
    map.logScale = chance(generator, 0.3);
    map.autoZ = chance(generator, 0.6);
    if (!map.autoZ) {
        map.minZ = uniform(generator, -10.0, 100.0);
        map.maxZ = chance(generator, 0.2) ? map.minZ : map.minZ + uniform(generator, -20.0, 1000.0);
    }
    if (chance(generator, 0.5)) {
        for (QColor& colour : map.colors)
            colour = QColor::fromRgb(static_cast<QRgb>(generator()) | 0xff000000U);
    }
    if (chance(generator, 0.1))
        map.colors.back() =
            QColor::fromHsv(whole(generator, 0, 359), whole(generator, 0, 255), whole(generator, 0, 255));
    if (chance(generator, 0.05))
        map.colors.front() = QColor::fromRgbF(0.3F, 0.6F, 0.1F);
}

tarnis::ColourScale scaleOf(const MapState& map)
{
    return tarnis::ColourScale(map.minZ, map.maxZ, map.logScale, map.colors);
}

tarnis::BinGeometry viewOf(const MapState& map, const QRect& rect)
{
    const tarnis::BinAxis x = { map.minX, map.maxX, map.initMinX, map.manualX, oracleStepX(map), map.resolutionX };
    const tarnis::BinAxis y = { map.minY, map.maxY, map.initMinY, map.manualY, oracleStepY(map), map.resolutionY };
    tarnis::BinGeometry view;
    view.rect = rect;
    view.x = tarnis::visibleBins(x, rect.width(), map.data.isEmpty() ? 0 : map.data.at(0).size());
    view.y = tarnis::visibleBins(y, rect.height(), map.data.size());
    return view;
}

/// Where and how a picture is painted.
struct Canvas {
    QSize device;
    QRect rect; ///< the plot
    QPoint offset; ///< of the painter
    QImage::Format format = QImage::Format_ARGB32_Premultiplied;

    template <typename Paint> QImage painted(const Paint& paint) const
    {
        QImage image(device, format);
        image.fill(QColor(10, 20, 30));
        QPainter painter(&image);
        painter.translate(offset);
        painter.setPen(Qt::white);
        painter.drawRect(rect);
        painter.setClipRect(rect);
        paint(painter);
        return image;
    }
};

Canvas randomCanvas(Generator& generator)
{
    Canvas canvas;
    canvas.device = QSize(whole(generator, 1, 300), whole(generator, 1, 260));
    const QPoint topLeft(whole(generator, 0, 60), whole(generator, 0, 40));
    canvas.rect = QRect(topLeft, QSize(whole(generator, 1, 260), whole(generator, 1, 220)));
    if (chance(generator, 0.3))
        canvas.offset = QPoint(whole(generator, -60, 60), whole(generator, -60, 60));
    if (chance(generator, 0.3))
        canvas.format = QImage::Format_RGB32;
    return canvas;
}

QString described(const MapState& map, const Canvas& canvas, const QImage& expected, const QImage& actual)
{
    int different = 0;
    QPoint first(-1, -1);
    for (int y = 0; y < expected.height(); ++y) {
        for (int x = 0; x < expected.width(); ++x) {
            if (expected.pixel(x, y) != actual.pixel(x, y) && different++ == 0)
                first = QPoint(x, y);
        }
    }
    const tarnis::BinGeometry view = viewOf(map, canvas.rect);
    return QStringLiteral("%1 pixels differ, first (%2,%3): %4 for %5; plot (%6,%7) %8x%9 offset (%10,%11); ")
               .arg(different)
               .arg(first.x())
               .arg(first.y())
               .arg(actual.pixel(first), 8, 16)
               .arg(expected.pixel(first), 8, 16)
               .arg(canvas.rect.x())
               .arg(canvas.rect.y())
               .arg(canvas.rect.width())
               .arg(canvas.rect.height())
               .arg(canvas.offset.x())
               .arg(canvas.offset.y())
        + QStringLiteral("x %1 px from %2, columns %3..%4, y %5 px from %6, rows %7..%8, left %9")
              .arg(view.x.pixels, 0, 'g', 17)
              .arg(view.x.low, 0, 'g', 17)
              .arg(view.x.first)
              .arg(view.x.end)
              .arg(view.y.pixels, 0, 'g', 17)
              .arg(view.y.low, 0, 'g', 17)
              .arg(view.y.first)
              .arg(view.y.end)
              .arg(view.left(view.x.first));
}

} // namespace

Q_DECLARE_METATYPE(std::function<void(QPainter&)>)

class TestMapPainter : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { tarnis::setAvx2(true); }

    void picturesAreThoseOfTheOracle_data()
    {
        addColumns<int, int, int, double, bool>("cases", "maxBins", "kind", "zeros", "ragged");
        QTest::newRow("few bins, counts") << 3000 << 40 << 0 << 0.2 << false;
        QTest::newRow("few bins, sparse") << 2000 << 40 << 0 << 0.8 << false;
        QTest::newRow("few bins, dense") << 1000 << 40 << 0 << 0.0 << false;
        QTest::newRow("few bins, fractions") << 1000 << 40 << 1 << 0.2 << false;
        QTest::newRow("few bins, ragged") << 2000 << 40 << 0 << 0.2 << true;
        QTest::newRow("few bins, anything") << 2000 << 40 << 4 << 0.2 << true;
        QTest::newRow("about a pixel each, counts") << 1500 << 300 << 0 << 0.3 << false;
        QTest::newRow("about a pixel each, anything") << 1500 << 300 << 4 << 0.3 << true;
        QTest::newRow("many bins, exponential") << 300 << 800 << 2 << 0.2 << false;
        QTest::newRow("many bins, anything") << 300 << 800 << 4 << 0.5 << true;
        QTest::newRow("2048 bins, counts") << 40 << 2048 << 0 << 0.2 << false;
    }
    void picturesAreThoseOfTheOracle()
    {
        QFETCH(int, cases);
        QFETCH(int, maxBins);
        QFETCH(int, kind);
        QFETCH(double, zeros);
        QFETCH(bool, ragged);
        Generator generator = seededGenerator(qHash(QLatin1String(QTest::currentDataTag())));
        tarnis::MapPainter product;
        for (int number = 0; number < cases && !QTest::currentTestFailed(); ++number) {
            MapState map;
            const Bins bins = { whole(generator, 0, maxBins), whole(generator, 0, maxBins), kind, zeros, ragged };
            fill(map, bins, generator);
            setAxes(map, bins, generator);
            setColours(map, generator);
            oracleAutoZ(map);
            compare(product, map, randomCanvas(generator), number);
        }
    }

    void pictureInPlainLoops_data() { picturesAreThoseOfTheOracle_data(); }
    void pictureInPlainLoops()
    {
        tarnis::setAvx2(false);
        QFETCH(int, cases);
        QFETCH(int, maxBins);
        QFETCH(int, kind);
        QFETCH(double, zeros);
        QFETCH(bool, ragged);
        Generator generator = seededGenerator(1 + qHash(QLatin1String(QTest::currentDataTag())));
        tarnis::MapPainter product;
        for (int number = 0; number < cases / 4 && !QTest::currentTestFailed(); ++number) {
            MapState map;
            const Bins bins = { whole(generator, 0, maxBins), whole(generator, 0, maxBins), kind, zeros, ragged };
            fill(map, bins, generator);
            setAxes(map, bins, generator);
            setColours(map, generator);
            oracleAutoZ(map);
            compare(product, map, randomCanvas(generator), number);
        }
    }

    void paintersOfAllKinds_data()
    {
        using Change = std::function<void(QPainter&)>;
        addColumns<std::function<void(QPainter&)>, int>("change", "format");
        const auto format = [](QImage::Format f) { return static_cast<int>(f); };
        const Change none = [](QPainter&) {};
        addCase("as it is", none, format(QImage::Format_RGB32));
        addCase("ARGB", none, format(QImage::Format_ARGB32));
        addCase("16 bits", none, format(QImage::Format_RGB16));
        addCase("64 bits", none, format(QImage::Format_RGBA64_Premultiplied));
        addCase("gray", none, format(QImage::Format_Grayscale8));
        addCase("opacity", Change([](QPainter& p) { p.setOpacity(0.5); }), format(QImage::Format_RGB32));
        addCase("turned", Change([](QPainter& p) {
            p.translate(150, 0);
            p.rotate(90);
        }),
            format(QImage::Format_RGB32));
        addCase("shifted by half a pixel", Change([](QPainter& p) { p.translate(0.5, 0.25); }),
            format(QImage::Format_RGB32));
        addCase("antialiased", Change([](QPainter& p) { p.setRenderHint(QPainter::Antialiasing); }),
            format(QImage::Format_RGB32));
        addCase("inverting", Change([](QPainter& p) { p.setCompositionMode(QPainter::RasterOp_SourceXorDestination); }),
            format(QImage::Format_RGB32));
        addCase("clipped to two rectangles", Change([](QPainter& p) {
            p.setClipRegion(QRegion(20, 20, 30, 30) + QRegion(60, 40, 50, 30), Qt::IntersectClip);
        }),
            format(QImage::Format_RGB32));
        addCase("clipped to a circle",
            Change([](QPainter& p) { p.setClipRegion(QRegion(20, 20, 60, 60, QRegion::Ellipse), Qt::IntersectClip); }),
            format(QImage::Format_ARGB32_Premultiplied));
        addCase("clipped to nothing", Change([](QPainter& p) { p.setClipRect(QRect(), Qt::IntersectClip); }),
            format(QImage::Format_RGB32));
        addCase("not clipped", Change([](QPainter& p) { p.setClipping(false); }), format(QImage::Format_RGB32));
        addCase("clipped to less", Change([](QPainter& p) { p.setClipRect(QRect(30, 25, 40, 20)); }),
            format(QImage::Format_RGB32));
        addCase("clipped to more", Change([](QPainter& p) { p.setClipRect(QRect(0, 0, 200, 200)); }),
            format(QImage::Format_RGB32));
    }
    void paintersOfAllKinds()
    {
        QFETCH(std::function<void(QPainter&)>, change);
        QFETCH(int, format);
        Generator generator = seededGenerator(11);
        tarnis::MapPainter product;
        for (int number = 0; number < 60; ++number) {
            MapState map;
            const Bins bins = { whole(generator, 1, 120), whole(generator, 1, 120), number % 2, 0.3, false };
            fill(map, bins, generator);
            setAxes(map, bins, generator);
            setColours(map, generator);
            oracleAutoZ(map);
            Canvas canvas;
            canvas.device = QSize(160, 140);
            canvas.rect = QRect(15, 10, 110, 100);
            canvas.format = static_cast<QImage::Format>(format);
            const QImage expected = canvas.painted([&](QPainter& painter) {
                change(painter);
                oraclePaintBins(painter, canvas.rect, map);
            });
            const QImage actual = canvas.painted([&](QPainter& painter) {
                change(painter);
                product.paint(painter, viewOf(map, canvas.rect), map.data, scaleOf(map));
            });
            if (actual != expected)
                QFAIL(qPrintable(QString::number(number) + ": " + described(map, canvas, expected, actual)));
        }
    }

    void viewsBeyondAllIntegers_data()
    {
        addColumns<double, double>("min", "max");
        const double infinity = std::numeric_limits<double>::infinity();
        QTest::newRow("far below") << -5e9 << -4e9;
        QTest::newRow("far above") << 4e9 << 5e9;
        QTest::newRow("around all") << -1e300 << 1e300;
        QTest::newRow("reversed") << 10.0 << -3.0;
        QTest::newRow("reversed, far below") << 10.0 << -3e9;
        QTest::newRow("empty") << 5.0 << 5.0;
        QTest::newRow("a fraction of nothing") << 5.0 << std::nextafter(5.0, 6.0);
        QTest::newRow("not a number") << std::nan("") << 5.0;
        QTest::newRow("infinite") << -infinity << infinity;
        QTest::newRow("up to infinity") << 0.0 << infinity;
    }
    void viewsBeyondAllIntegers()
    {
        QFETCH(double, min);
        QFETCH(double, max);
        tarnis::MapPainter product;
        for (int axes = 0; axes < 16; ++axes) {
            MapState map;
            map.data = QList<QList<double>>(10, QList<double>(10, 7.0));
            map.manualX = (axes & 1) != 0;
            map.manualY = (axes & 2) != 0;
            map.stepX = map.stepY = 1.0;
            map.minX = (axes & 4) != 0 ? min : 0.0;
            map.maxX = (axes & 4) != 0 ? max : 10.0;
            map.minY = (axes & 8) != 0 ? min : 0.0;
            map.maxY = (axes & 8) != 0 ? max : 10.0;
            Canvas canvas;
            canvas.device = QSize(60, 50);
            canvas.rect = QRect(5, 5, 40, 30);
            compare(product, map, canvas, axes);
        }
    }

    void translucentEndsLieOverWhatIsThere()
    {
        MapState map;
        map.data = { { 1.0, 50.0, 1000.0 }, { -3.0, 0.0, 2000.0 } };
        map.maxX = map.maxY = 3.0;
        map.colors.front() = QColor(255, 0, 0, 100);
        map.colors.back() = QColor(0, 255, 0, 100);
        Canvas canvas;
        canvas.device = QSize(60, 50);
        canvas.rect = QRect(5, 5, 40, 30);
        tarnis::MapPainter product;
        compare(product, map, canvas, 0);
    }

    void emptyFirstRow()
    {
        MapState map;
        map.data = { {}, { 1.0, 2.0, 3.0 } };
        map.maxX = map.maxY = 3.0;
        map.stepX = map.stepY = 1.0;
        Canvas canvas;
        canvas.device = QSize(60, 50);
        canvas.rect = QRect(5, 5, 40, 30);
        tarnis::MapPainter product;
        compare(product, map, canvas, 0);
    }

private:
    void compare(tarnis::MapPainter& product, const MapState& map, const Canvas& canvas, int number)
    {
        const QImage expected = canvas.painted([&](QPainter& painter) { oraclePaintBins(painter, canvas.rect, map); });
        const QImage actual = canvas.painted(
            [&](QPainter& painter) { product.paint(painter, viewOf(map, canvas.rect), map.data, scaleOf(map)); });
        if (actual != expected)
            QFAIL(qPrintable(QStringLiteral("case %1: %2").arg(number).arg(described(map, canvas, expected, actual))));
    }
};

QTEST_MAIN(TestMapPainter)
#include "tst_mappainter.moc"
