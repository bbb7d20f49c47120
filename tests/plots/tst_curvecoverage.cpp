// Smooth curves: against QPainter's antialiasing, and by the pixels that a sample must reach.
#include "support/support.h"

#include "tarnis/plots/raster/curvecoverage_p.h"

#include <QPainter>
#include <QPainterPath>
#include <QTest>

#include <cmath>
#include <limits>
#include <random>

using namespace tarnis;

namespace {

constexpr QSize size(120, 80);
constexpr QRgb black = 0xff000000;
const double notANumber = std::numeric_limits<double>::quiet_NaN();

/// Values from 0 to 80 from the bottom to the top.
SmoothRows plainRows()
{
    return { false, 0.0, 1.0, double(size.height()), 1e5 };
}

QImage drawn(const QList<double>& values, CurveShape shape, const SmoothColumns& columns, double width = 1.5)
{
    CurveCoverage coverage;
    coverage.begin(size);
    coverage.add(
        { { values.constData(), 0 }, { 0, static_cast<int>(values.size()) }, shape, width, plainRows().bottom, black },
        columns, plainRows());
    return coverage.image();
}

double opacity(const QImage& image, int x, int y)
{
    return qAlpha(image.pixel(x, y)) / 255.0;
}

/// Of a column: as much of it as the line covers.
double coveredHeight(const QImage& image, int x)
{
    double height = 0.0;
    for (int y = 0; y < image.height(); ++y)
        height += opacity(image, x, y);
    return height;
}

/// By QPainter.
QImage painted(const QPolygonF& line, double width)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(0U);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Qt::black, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(line);
    return image;
}

} // namespace

class TestCurveCoverage : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void looksLikeThePaintersLines_data()
    {
        QTest::addColumn<double>("pixelsPerBin");
        QTest::addColumn<double>("roughness");
        QTest::newRow("wide bins, smooth") << 12.0 << 6.0;
        QTest::newRow("wide bins, steep") << 9.0 << 60.0;
        QTest::newRow("bins of a pixel") << 1.0 << 8.0;
    }
    void looksLikeThePaintersLines()
    {
        QFETCH(double, pixelsPerBin);
        QFETCH(double, roughness);
        auto random = tarnis::testing::seededGenerator(1);
        for (int round = 0; round < 20; ++round) {
            QList<double> values;
            QPolygonF line;
            for (int i = 0; i * pixelsPerBin < size.width(); ++i) {
                values.append(40.0 + roughness * (std::uniform_real_distribution<double>(-0.5, 0.5)(random)));
                line.append(QPointF((i + 0.5) * pixelsPerBin, size.height() - values.last()));
            }
            const QImage ours = drawn(values, CurveShape::Lines, { 0.0, pixelsPerBin, {} }, 2.0);
            const QImage theirs = painted(line, 2.0);
            double sum = 0.0;
            double ink = 0.0;
            for (int y = 0; y < size.height(); ++y) {
                for (int x = 8; x < size.width() - 8; ++x) {
                    sum += std::abs(opacity(ours, x, y) - opacity(theirs, x, y));
                    ink += opacity(theirs, x, y);
                }
            }
            QVERIFY2(sum < 0.16 * ink, qPrintable(QString::number(sum / ink)));
        }
    }

    void flatLinesHaveTheirWidth()
    {
        for (const double width : { 1.0, 1.5, 2.25, 4.0 }) {
            const QImage image = drawn(QList<double>(300, 33.3), CurveShape::Lines, { 0.0, 0.4, {} }, width);
            for (int x = 2; x < size.width() - 2; ++x)
                QVERIFY(std::abs(coveredHeight(image, x) - width) < 0.02);
        }
    }

    // One sample among thousands of a pixel column reaches its row.
    void losesNoSample()
    {
        auto random = tarnis::testing::seededGenerator(2);
        for (int round = 0; round < 50; ++round) {
            QList<double> values(50000, 5.0);
            const auto at = std::uniform_int_distribution<int>(0, 49999)(random);
            values[at] = 70.0;
            const double perBin = size.width() / 50000.0;
            for (const CurveShape shape :
                { CurveShape::Lines, CurveShape::Steps, CurveShape::Columns, CurveShape::Points }) {
                const QImage image = drawn(values, shape, { 0.0, perBin, {} }, 2.0);
                const int x = static_cast<int>((at + 0.5) * perBin);
                QVERIFY(opacity(image, x, 10) > 0.2);
                if (shape != CurveShape::Points)
                    QVERIFY(opacity(image, x, 40) > 0.05);
            }
        }
    }

    void reversedAxesAreMirrored()
    {
        QList<double> values;
        for (int i = 0; i < 30; ++i)
            values.append(10.0 + 2.0 * i + (i % 5) * 4.0);
        QList<double> mirrored(values.crbegin(), values.crend());
        for (const CurveShape shape : { CurveShape::Lines, CurveShape::Steps, CurveShape::Columns }) {
            const QImage a = drawn(values, shape, { 120.0, -4.0, {} });
            const QImage b = drawn(mirrored, shape, { 0.0, 4.0, {} });
            QCOMPARE(a, b);
        }
    }

    void functionsPlaceBins()
    {
        QList<double> values;
        for (int i = 0; i < 40; ++i)
            values.append(double(10 + i));
        SmoothColumns columns;
        columns.function = [](double bin) { return 3.0 * bin; };
        QCOMPARE(drawn(values, CurveShape::Lines, columns), drawn(values, CurveShape::Lines, { 0.0, 3.0, {} }));
        columns.function = [](double bin) { return 120.0 - 3.0 * bin; };
        QCOMPARE(drawn(values, CurveShape::Steps, columns), drawn(values, CurveShape::Steps, { 120.0, -3.0, {} }));
    }

    void stepsFollowTheBins()
    {
        const QImage image = drawn({ 20.0, 60.0, 20.0 }, CurveShape::Steps, { 0.0, 40.0, {} }, 2.0);
        QVERIFY(opacity(image, 20, 59) > 0.9);
        QVERIFY(opacity(image, 60, 19) > 0.9);
        QVERIFY(opacity(image, 20, 19) == 0.0);
        QVERIFY(opacity(image, 40, 40) + opacity(image, 39, 40) > 1.5); // the edge
        QVERIFY(opacity(image, 60, 40) == 0.0);
    }

    void columnsAreFilledToTheBase()
    {
        const QImage image = drawn({ 20.0, 60.0, 0.0 }, CurveShape::Columns, { 0.0, 40.0, {} });
        QVERIFY(opacity(image, 60, 40) > 0.3 && opacity(image, 60, 40) < 0.7);
        QVERIFY(opacity(image, 60, 75) > 0.3);
        QVERIFY(opacity(image, 20, 40) == 0.0);
        QVERIFY(opacity(image, 100, 70) == 0.0);
    }

    void gapsStayOpen()
    {
        const QImage image = drawn({ 40.0, 40.0, notANumber, notANumber, notANumber, notANumber, 40.0, 40.0 },
            CurveShape::Lines, { 0.0, 15.0, {} }, 2.0);
        QVERIFY(opacity(image, 10, 39) > 0.9);
        QVERIFY(opacity(image, 110, 39) > 0.9);
        for (int x = 30; x < 90; ++x)
            QCOMPARE(coveredHeight(image, x), 0.0);
    }

    void survivesAnyValue()
    {
        const double infinity = std::numeric_limits<double>::infinity();
        const QList<double> values { 0, infinity, 5, -infinity, notANumber, 1e300, -1e300, 40, notANumber };
        for (const CurveShape shape :
            { CurveShape::Lines, CurveShape::Steps, CurveShape::Columns, CurveShape::Points }) {
            for (const double perBin : { 14.0, 0.01, -3.0, 1e12, 1e-12, 0.0, notANumber, infinity })
                QCOMPARE(drawn(values, shape, { 3.0, perBin, {} }).size(), size);
            QCOMPARE(drawn({}, shape, { 0.0, 1.0, {} }).pixel(5, 5), 0U);
        }
        CurveCoverage none;
        none.begin(QSize(0, 10));
        none.add({ { values.constData(), 0 }, { 0, 9 }, CurveShape::Lines, 2.0, 0.0, black }, {}, plainRows());
        QVERIFY(none.image().isNull());
    }

    // Remains of a curve in the buffers must not appear in the next picture.
    void beginsClean()
    {
        const QList<double> first { 79.9, 0.0, 80.0, 79.5, -3.0, 90.0 };
        const QList<double> second { 40.0, 41.0, 42.0, 43.0, 44.0, 45.0 };
        CurveCoverage used;
        const SmoothColumns columns { 0.0, 20.0, {} };
        const auto add = [&](const QList<double>& values) {
            used.add({ { values.constData(), 0 }, { 0, 6 }, CurveShape::Lines, 3.0, 0.0, black }, columns, plainRows());
        };
        used.begin(size);
        add(first);
        used.begin(size);
        add(second);
        QCOMPARE(used.image(), drawn(second, CurveShape::Lines, columns, 3.0));
    }

    void logarithmicRowsHaveNoPlaceForZero()
    {
        const SmoothRows rows { true, 0.0, 10.0, 80.0, 1e5 };
        QCOMPARE(rows.at(10.0), 70.0);
        QCOMPARE(rows.at(0.0), 1e5);
        QCOMPARE(rows.at(-1.0), 1e5);
        QVERIFY(std::isnan(rows.at(notANumber)));
        const SmoothRows reversed { true, 2.0, -10.0, 80.0, 1e5 };
        QCOMPARE(reversed.at(10.0), 70.0);
        QCOMPARE(reversed.at(0.0), -1e5);
    }
};

QTEST_MAIN(TestCurveCoverage)
#include "tst_curvecoverage.moc"
