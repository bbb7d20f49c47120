// The colour scale bit by bit, compared with an explicit blend: single values and rows, AVX2 and plain loops.
#include "support/cases.h"
#include "support/plot2doracle.h"
#include "support/randomcases.h"
#include "support/support.h"
#include "tarnis/plots/math/binvalues_p.h"
#include "tarnis/plots/raster/bincolouring_p.h"

#include <QTest>

#include <cfloat>
#include <cmath>
#include <limits>

using namespace tarnis::testing;

namespace {

QColor randomColour(Generator& generator)
{
    return QColor(static_cast<QRgb>(generator()) | 0xff000000U);
}

/// Limits and colours of one of many kinds: ascending, descending, equal, beyond all numbers.
MapState randomScale(Generator& generator)
{
    static const double odd[] = { 0.0, -0.0, 1.0, -1.0, 5.0, 1e-300, 1e300, -1e300,
        std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
        std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::max(), DBL_EPSILON };
    MapState map;
    map.logScale = generator() % 2 == 0;
    const auto limit = [&] {
        switch (generator() % 4) {
        case 0:
            return odd[generator() % std::size(odd)];
        case 1:
            return std::floor(uniform(generator, 0.0, 1000.0));
        default:
            return uniform(generator, -100.0, 1000.0);
        }
    };
    map.minZ = limit();
    map.maxZ = generator() % 8 == 0 ? map.minZ : limit();
    if (map.maxZ < map.minZ && generator() % 4 != 0)
        std::swap(map.minZ, map.maxZ);
    if (generator() % 2 == 0) {
        for (QColor& colour : map.colors)
            colour = randomColour(generator);
    }
    return map;
}

/// Values about the limits, at the breakpoints and anywhere.
double randomValue(Generator& generator, const MapState& map)
{
    static const double odd[] = { 0.0, -0.0, DBL_EPSILON, -DBL_EPSILON, 2.3e-16, 1e-300, 1e300, -1e300, 65535.0,
        65536.0, 4294967296.0, std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
        std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::denorm_min() };
    switch (generator() % 8) {
    case 0:
        return odd[generator() % std::size(odd)];
    case 1:
        return map.minZ;
    case 2:
        return map.maxZ;
    case 3: {
        const double part = 0.25 * static_cast<double>(generator() % 5);
        const double point = map.minZ * (1.0 - part) + map.maxZ * part;
        return generator() % 2 == 0 ? point : std::nextafter(point, generator() % 2 == 0 ? 1e308 : -1e308);
    }
    case 4:
        return std::floor(uniform(generator, 0.0, 1000.0));
    default:
        return std::isfinite(map.maxZ - map.minZ) ? map.minZ + uniform(generator, -0.2, 1.2) * (map.maxZ - map.minZ)
                                                  : uniform(generator, -10.0, 1000.0);
    }
}

tarnis::ColourScale scaleOf(const MapState& map)
{
    return { map.minZ, map.maxZ, map.logScale, map.colors };
}

/// The pixel painted by a pen of the colour; an invalid colour is black.
QRgb penPixel(const QColor& colour)
{
    return colour.isValid() ? colour.rgb() : 0xff000000U;
}

} // namespace

class TestColourScale : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { tarnis::setAvx2(true); }

    void coloursBitByBit()
    {
        Generator generator = seededGenerator(1);
        for (int i = 0; i < 4000; ++i) {
            const MapState map = randomScale(generator);
            const tarnis::ColourScale scale = scaleOf(map);
            for (int k = 0; k < 500; ++k) {
                const double value = randomValue(generator, map);
                const QColor expected = oracleColour(map, value);
                const QColor colour = scale.colour(value);
                if (colour != expected || scale.pixel(value) != penPixel(expected))
                    QFAIL(qPrintable(QStringLiteral("%1 on %2 to %3%4: %5 for %6")
                                         .arg(value, 0, 'g', 17)
                                         .arg(map.minZ, 0, 'g', 17)
                                         .arg(map.maxZ, 0, 'g', 17)
                                         .arg(map.logScale ? " log" : "", colour.name(), expected.name())));
            }
        }
    }

    void tablesBitByBit_data()
    {
        QTest::addColumn<bool>("wide");
        QTest::newRow("lanes") << true;
        QTest::newRow("plain loops") << false;
    }
    void tablesBitByBit()
    {
        QFETCH(bool, wide);
        tarnis::setAvx2(wide);
        Generator generator = seededGenerator(11);
        tarnis::BinColouring converter;
        for (int i = 0; i < 1500; ++i) {
            const MapState map = randomScale(generator);
            const auto name = static_cast<tarnis::TableName>(generator() % tarnis::tableCount);
            const auto curve = generator() % 3;
            const tarnis::ColourTable& table = tarnis::colorTable(name);
            const std::vector<QRgb> entries(table.begin(), table.end());
            const tarnis::ColourScale scale(map.minZ, map.maxZ, static_cast<tarnis::ScaleCurve>(curve), table);
            QVERIFY(scale.isOpaque());
            converter.setScale(scale);
            std::vector<double> values(generator() % 300);
            for (double& value : values)
                value = randomValue(generator, map);
            std::vector<QRgb> pixels(values.size(), 7U);
            converter.convert(values.data(), static_cast<int>(values.size()), pixels.data());
            for (std::size_t k = 0; k < values.size(); ++k) {
                const QColor expected =
                    oracleTableColour(entries, map.minZ, map.maxZ, static_cast<OracleCurve>(curve), values[k]);
                const QRgb pixel = oracleEqual(values[k], 0.0) ? 0U : penPixel(expected);
                if (scale.colour(values[k]) != expected || pixels[k] != pixel)
                    QFAIL(qPrintable(QStringLiteral("%1 on %2 to %3, curve %4: %5 for %6")
                                         .arg(values[k], 0, 'g', 17)
                                         .arg(map.minZ, 0, 'g', 17)
                                         .arg(map.maxZ, 0, 'g', 17)
                                         .arg(curve)
                                         .arg(pixels[k], 8, 16)
                                         .arg(pixel, 8, 16)));
            }
        }
    }

    /// Five colours on a square root scale are those of the roots on a linear one.
    void squareRootsBitByBit()
    {
        Generator generator = seededGenerator(12);
        for (int i = 0; i < 1000; ++i) {
            const MapState map = randomScale(generator);
            MapState roots = map;
            roots.logScale = false;
            roots.minZ = map.minZ < 0.0 ? 0.0 : std::sqrt(map.minZ);
            roots.maxZ = map.maxZ < 0.0 ? 0.0 : std::sqrt(map.maxZ);
            const tarnis::ColourScale scale(map.minZ, map.maxZ, tarnis::ScaleCurve::SquareRoot, map.colors);
            std::vector<double> values(100);
            for (double& value : values)
                value = randomValue(generator, map);
            std::vector<QRgb> pixels(values.size());
            scale.pixels(values.data(), static_cast<int>(values.size()), pixels.data());
            for (std::size_t k = 0; k < values.size(); ++k) {
                const QColor expected = oracleColour(roots, values[k] < 0.0 ? 0.0 : std::sqrt(values[k]));
                QCOMPARE(scale.colour(values[k]), expected);
                QCOMPARE(pixels[k], penPixel(expected));
            }
        }
    }

    void tablesHoldThePublishedColours_data()
    {
        addColumns<int, QColor, QColor, QColor>("name", "low", "middle", "high");
        const auto row = [](const char* text, tarnis::TableName name, QRgb low, QRgb middle, QRgb high) {
            QTest::newRow(text) << static_cast<int>(name) << QColor(low) << QColor(middle) << QColor(high);
        };
        using tarnis::TableName;
        row("viridis", TableName::Viridis, 0x440154, 0x21918c, 0xfde725);
        row("cividis", TableName::Cividis, 0x00224e, 0x7d7c78, 0xfee838);
        row("magma", TableName::Magma, 0x000004, 0xb73779, 0xfcfdbf);
        row("inferno", TableName::Inferno, 0x000004, 0xbc3754, 0xfcffa4);
        row("turbo", TableName::Turbo, 0x30123b, 0xa4fc3c, 0x7a0403);
        row("greys", TableName::Greys, 0x000000, 0x808080, 0xffffff);
        row("diverging", TableName::Diverging, 0x3b4cc0, 0xdddddd, 0xb40426);
    }
    void tablesHoldThePublishedColours()
    {
        QFETCH(int, name);
        QFETCH(QColor, low);
        QFETCH(QColor, middle);
        QFETCH(QColor, high);
        const tarnis::ColourTable& table = tarnis::colorTable(static_cast<tarnis::TableName>(name));
        const auto isNear = [](const QColor& a, const QColor& b) {
            return std::abs(a.red() - b.red()) <= 2 && std::abs(a.green() - b.green()) <= 2
                && std::abs(a.blue() - b.blue()) <= 2;
        };
        QCOMPARE(QColor(table.front()), low);
        QVERIFY2(isNear(QColor(table[128]), middle), qPrintable(QColor(table[128]).name()));
        QCOMPARE(QColor(table.back()), high);
    }

    void rowsBitByBit_data()
    {
        addColumns<bool, bool>("wide", "counts");
        QTest::newRow("lanes, fractions") << true << false;
        QTest::newRow("lanes, counts") << true << true;
        QTest::newRow("plain loops, fractions") << false << false;
        QTest::newRow("plain loops, counts") << false << true;
    }
    void rowsBitByBit()
    {
        QFETCH(bool, wide);
        QFETCH(bool, counts);
        tarnis::setAvx2(wide);
        Generator generator = seededGenerator(counts ? 2 : 3);
        tarnis::BinColouring converter;
        for (int i = 0; i < 2500; ++i) {
            const MapState map = randomScale(generator);
            converter.setScale(scaleOf(map));
            for (int round = 0; round < 3; ++round) {
                std::vector<double> values(generator() % 300);
                for (double& value : values)
                    value = counts && generator() % 16 != 0 ? std::floor(uniform(generator, 0.0, 50.0))
                                                            : randomValue(generator, map);
                std::vector<QRgb> pixels(values.size(), 7U);
                converter.convert(values.data(), static_cast<int>(values.size()), pixels.data());
                for (std::size_t k = 0; k < values.size(); ++k) {
                    const QRgb expected = oracleEqual(values[k], 0.0) ? 0U : penPixel(oracleColour(map, values[k]));
                    if (pixels[k] != expected)
                        QFAIL(qPrintable(QStringLiteral("%1 on %2 to %3: %4 for %5")
                                             .arg(values[k], 0, 'g', 17)
                                             .arg(map.minZ, 0, 'g', 17)
                                             .arg(map.maxZ, 0, 'g', 17)
                                             .arg(pixels[k], 8, 16)
                                             .arg(expected, 8, 16)));
                }
            }
        }
    }

    void groupsBitByBit_data()
    {
        addColumns<bool, int>("wide", "widest");
        QTest::newRow("lanes, one or two columns") << true << 2;
        QTest::newRow("lanes, up to six columns") << true << 6;
        QTest::newRow("plain loops, one or two columns") << false << 2;
        QTest::newRow("plain loops, up to six columns") << false << 6;
    }
    void groupsBitByBit()
    {
        QFETCH(bool, wide);
        QFETCH(int, widest);
        tarnis::setAvx2(wide);
        Generator generator = seededGenerator(static_cast<unsigned long long>(widest));
        tarnis::BinColouring converter;
        for (int i = 0; i < 1500; ++i) {
            MapState map = randomScale(generator);
            converter.setScale(scaleOf(map));
            const auto base = static_cast<int>(generator() % 5);
            std::vector<int> first { base };
            const auto groups = static_cast<int>(1 + generator() % 200);
            for (int group = 0; group < groups; ++group)
                first.push_back(first.back() + 1 + static_cast<int>(generator() % static_cast<unsigned int>(widest)));
            std::vector<double> values(static_cast<std::size_t>(first.back()));
            for (double& value : values)
                value = generator() % 2 == 0 ? 0.0 : randomValue(generator, map);
            std::vector<int> chosen;
            for (int group = 0; group < groups; ++group) {
                if (generator() % 3 == 0)
                    chosen.push_back(group);
            }
            std::vector<QRgb> all(static_cast<std::size_t>(groups), 7U);
            std::vector<QRgb> some(chosen.size(), 7U);
            converter.convertGroups(values.data(), first.data(), nullptr, groups, all.data());
            converter.convertGroups(
                values.data(), first.data(), chosen.data(), static_cast<int>(chosen.size()), some.data());
            std::vector<QRgb> expected;
            for (std::size_t group = 0; group + 1 < first.size(); ++group) {
                QRgb pixel = 0;
                for (int column = first[group]; pixel == 0 && column < first[group + 1]; ++column) {
                    const double value = values[static_cast<std::size_t>(column)];
                    pixel = oracleEqual(value, 0.0) ? 0U : penPixel(oracleColour(map, value));
                }
                expected.push_back(pixel);
            }
            QVERIFY2(all == expected, qPrintable(QString::number(i)));
            for (std::size_t k = 0; k < chosen.size(); ++k)
                QCOMPARE(some[k], expected[static_cast<std::size_t>(chosen[k])]);
        }
    }

    void listsPixels_data()
    {
        QTest::addColumn<bool>("wide");
        QTest::newRow("lanes") << true;
        QTest::newRow("plain loops") << false;
    }
    void listsPixels()
    {
        QFETCH(bool, wide);
        tarnis::setAvx2(wide);
        Generator generator = seededGenerator(5);
        for (std::size_t count = 0; count < 200; ++count) {
            std::vector<QRgb> pixels(count);
            std::vector<int> expected;
            for (std::size_t i = 0; i < count; ++i) {
                pixels[i] = static_cast<QRgb>(generator() % 3);
                if (pixels[i] == 1)
                    expected.push_back(static_cast<int>(i));
            }
            std::vector<int> places(count + tarnis::placesBeyond, -1);
            const int found = tarnis::listPixels(pixels.data(), static_cast<int>(count), 1U, places.data());
            places.resize(static_cast<std::size_t>(found));
            QVERIFY(places == expected);
        }
    }

    void laysPixelsOver_data() { listsPixels_data(); }
    void laysPixelsOver()
    {
        QFETCH(bool, wide);
        tarnis::setAvx2(wide);
        Generator generator = seededGenerator(6);
        for (std::size_t count = 0; count < 100; ++count) {
            std::vector<QRgb> line(count + 1, 0xff123456U);
            std::vector<QRgb> pixels(count + 1, 0xff654321U);
            std::vector<QRgb> expected = line;
            for (std::size_t i = 0; i < count; ++i) {
                pixels[i] = generator() % 2 == 0 ? 0U : static_cast<QRgb>(generator()) | 0xff000000U;
                if (pixels[i] != 0)
                    expected[i] = pixels[i];
            }
            tarnis::copyOver(line.data(), pixels.data(), static_cast<int>(count)); // not the last one
            QVERIFY(line == expected);
        }
    }

    void equalScalesGiveEqualColours()
    {
        const MapState map;
        QVERIFY(scaleOf(map) == scaleOf(map));
        MapState other = map;
        other.logScale = true;
        QVERIFY(!(scaleOf(map) == scaleOf(other)));
        other = map;
        other.colors[2] = Qt::white;
        QVERIFY(!(scaleOf(map) == scaleOf(other)));
        other = map;
        other.maxZ = std::nextafter(map.maxZ, 1e9);
        QVERIFY(!(scaleOf(map) == scaleOf(other)));
        other.maxZ = std::numeric_limits<double>::quiet_NaN();
        QVERIFY(!(scaleOf(other) == scaleOf(other)));
    }

    void findsTheSmallestPositiveBin()
    {
        Generator generator = seededGenerator(7);
        for (int i = 0; i < 3000; ++i) {
            MapState map;
            map.logScale = true;
            const auto rows = generator() % 6;
            for (unsigned long long row = 0; row < rows; ++row) {
                QList<double> values(static_cast<qsizetype>(generator() % 40));
                for (double& value : values)
                    value = generator() % 2 == 0 ? uniform(generator, -1.0, 3.0) : randomValue(generator, map);
                map.data.append(values);
                map.rowMax.append(0.0);
            }
            oracleAutoZ(map);
            QCOMPARE(tarnis::smallestPositiveBin(map.data), map.minZ);
        }
    }

    void knowsWhichBinsAreEmpty_data()
    {
        addColumns<double, bool>("value", "empty");
        QTest::newRow("0") << 0.0 << true;
        QTest::newRow("-0") << -0.0 << true;
        QTest::newRow("epsilon") << DBL_EPSILON << true;
        QTest::newRow("minus epsilon") << -DBL_EPSILON << true;
        QTest::newRow("above epsilon") << std::nextafter(DBL_EPSILON, 1.0) << false;
        QTest::newRow("1") << 1.0 << false;
        QTest::newRow("-1") << -1.0 << false;
        QTest::newRow("NaN") << std::numeric_limits<double>::quiet_NaN() << false;
        QTest::newRow("infinity, which is within its own tolerance") << std::numeric_limits<double>::infinity() << true;
    }
    void knowsWhichBinsAreEmpty()
    {
        QFETCH(double, value);
        QTEST(tarnis::isEmptyBin(value), "empty");
        QCOMPARE(tarnis::isEmptyBin(value), oracleEqual(value, 0.0));
    }
};

QTEST_APPLESS_MAIN(TestColourScale)
#include "tst_colourscale.moc"
