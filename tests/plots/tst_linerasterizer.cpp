// Pixels of lines against those of the raster engine, and lines drawn through a painter in any of its states.
#include "support/randomcases.h"
#include "support/support.h"

#include "tarnis/plots/curvepaint_p.h"
#include "tarnis/plots/raster/devicepixels_p.h"
#include "tarnis/plots/raster/linerasterizer_p.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QTest>
#include <QWidget>

#include <cmath>

using tarnis::LineRasterizer;
using tarnis::PixelRows;

using tarnis::testing::Generator;
using tarnis::testing::whole;

namespace {

constexpr QRgb ink = qRgb(255, 51, 0);

QImage emptyImage(const QSize& size, QImage::Format format = QImage::Format_RGB32)
{
    QImage image(size, format);
    image.fill(Qt::black);
    return image;
}

PixelRows rowsOf(QImage& image)
{
    return { image.bits(), image.bytesPerLine() };
}

/// From nearly nothing to beyond the image, steep and flat.
QLine randomLine(Generator& random, const QSize& size, int beyond)
{
    const auto within = [&](int length) { return whole(random, -beyond, length - 1 + beyond); };
    const QPoint from(within(size.width()), within(size.height()));
    QPoint to(within(size.width()), within(size.height()));
    const int kind = whole(random, 0, 4);
    if (kind < 3) // a neighbour
        to.setX(std::clamp(from.x() + whole(random, -kind, kind), -beyond, size.width() - 1 + beyond));
    else if (kind == 3)
        to.setY(std::clamp(from.y() + whole(random, -2, 2), -beyond, size.height() - 1 + beyond));
    return { from, to };
}

QList<QLine> randomLines(Generator& random, const QSize& size, int count, int beyond)
{
    QList<QLine> lines;
    for (int i = 0; i < count; ++i)
        lines.append(randomLine(random, size, beyond));
    return lines;
}

/// Settings of a painter before lines are drawn.
void prepareNothing(QPainter& painter)
{
    painter.setPen(QColor(ink));
}

void prepareClip(QPainter& painter)
{
    painter.setPen(Qt::white);
    painter.setClipRect(QRect(31, 17, 201, 111));
}

void prepareEmptyClip(QPainter& painter)
{
    painter.setPen(Qt::white);
    painter.setClipRect(QRect(500, 17, 201, 111));
}

void prepareTwoClips(QPainter& painter)
{
    painter.setPen(Qt::white);
    painter.setClipRegion(QRegion(10, 10, 60, 60) + QRegion(90, 30, 100, 90));
}

void prepareFractionalClip(QPainter& painter)
{
    painter.setPen(Qt::white);
    painter.setClipRect(QRectF(31.4, 17.6, 201.3, 110.8));
}

void prepareEllipse(QPainter& painter)
{
    painter.setPen(Qt::white);
    QPainterPath path;
    path.addEllipse(QRectF(20.0, 10.0, 220.0, 150.0));
    painter.setClipPath(path);
}

void prepareRectangularPath(QPainter& painter)
{
    painter.setPen(Qt::white);
    QPainterPath path;
    path.addRect(QRectF(20.5, 10.5, 220.0, 150.0));
    painter.setClipPath(path);
}

void prepareClipWithinClip(QPainter& painter)
{
    painter.setPen(Qt::white);
    painter.setClipRect(QRect(10, 10, 200, 150));
    painter.setClipRect(QRect(60, 5, 200, 100), Qt::IntersectClip);
}

void prepareClipOfAScale(QPainter& painter)
{
    painter.setPen(Qt::white);
    painter.scale(1.3, 1.7);
    painter.setClipRect(QRect(11, 13, 121, 71));
    painter.resetTransform();
}

void prepareClipThenShift(QPainter& painter)
{
    painter.setPen(Qt::white);
    painter.setClipRect(QRect(31, 17, 201, 111));
    painter.translate(12, -9);
}

void prepareClipOff(QPainter& painter)
{
    painter.setPen(Qt::white);
    painter.setClipRect(QRect(31, 17, 201, 111));
    painter.setClipping(false);
}

void prepareShift(QPainter& painter)
{
    painter.setPen(Qt::green);
    painter.translate(-20, 13);
    painter.setClipRect(QRect(31, 17, 201, 111));
}

void prepareFractionalShift(QPainter& painter)
{
    painter.setPen(Qt::green);
    painter.translate(0.4, 0.7);
}

void prepareQuarterTurn(QPainter& painter)
{
    painter.setPen(Qt::green);
    painter.translate(300, 0);
    painter.rotate(90.0);
}

void prepareScale(QPainter& painter)
{
    painter.setPen(Qt::green);
    painter.scale(1.25, 1.25);
}

void prepareWindow(QPainter& painter)
{
    painter.setPen(Qt::green);
    painter.setWindow(0, 0, 600, 400);
}

void prepareTranslucentPen(QPainter& painter)
{
    painter.setPen(QColor(255, 0, 0, 100));
}

void prepareDashes(QPainter& painter)
{
    painter.setPen(QPen(Qt::yellow, 1, Qt::DashLine));
}

void prepareWidePen(QPainter& painter)
{
    painter.setPen(QPen(Qt::yellow, 3));
}

void prepareNoPen(QPainter& painter)
{
    painter.setPen(Qt::NoPen);
}

void prepareFineColour(QPainter& painter)
{
    painter.setPen(QColor::fromRgba64(0x1280, 0x7f7f, 0xfe90));
}

void prepareAntialiasing(QPainter& painter)
{
    painter.setPen(Qt::cyan);
    painter.setRenderHint(QPainter::Antialiasing);
}

void prepareXor(QPainter& painter)
{
    painter.setPen(Qt::cyan);
    painter.setCompositionMode(QPainter::RasterOp_SourceXorDestination);
}

void prepareOpacity(QPainter& painter)
{
    painter.setPen(Qt::cyan);
    painter.setOpacity(0.5);
}

using Prepare = void (*)(QPainter&);

} // namespace

Q_DECLARE_METATYPE(Prepare)

class TestLineRasterizer : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void linesAreThoseOfTheEngine()
    {
        auto random = tarnis::testing::seededGenerator(3601);
        for (int number = 0; number < 400; ++number) {
            const QSize size(whole(random, 1, 500), whole(random, 1, 400));
            const QList<QLine> lines = randomLines(random, size, whole(random, 1, 60), 0);
            QImage expected = emptyImage(size);
            QPainter painter(&expected);
            painter.setPen(QColor(ink));
            painter.drawLines(lines);
            painter.end();

            QImage image = emptyImage(size);
            LineRasterizer mask(image.rect());
            for (const QLine& line : lines)
                mask.addLine(line.p1(), line.p2());
            mask.writeTo(rowsOf(image), ink);
            QVERIFY2(image == expected, qPrintable(QStringLiteral("case %1").arg(number)));
        }
    }

    void leavesOutWhatIsOutside()
    {
        auto random = tarnis::testing::seededGenerator(3602);
        const QSize size(120, 90);
        for (int number = 0; number < 400; ++number) {
            const QRect area(QPoint(whole(random, 0, 60), whole(random, 0, 40)),
                QPoint(whole(random, 0, 119), whole(random, 0, 89)));
            const QList<QLine> lines = randomLines(random, size, 40, 0);
            QImage expected = emptyImage(size);
            if (area.isValid()) {
                QPainter painter(&expected);
                painter.setPen(QColor(ink));
                painter.setClipRect(area);
                painter.drawLines(lines);
            }
            QImage image = emptyImage(size);
            LineRasterizer mask(area);
            for (const QLine& line : lines)
                mask.addLine(line.p1(), line.p2());
            mask.writeTo(rowsOf(image), ink);
            QVERIFY2(image == expected, qPrintable(QStringLiteral("case %1").arg(number)));
        }
    }

    void isEmptyAfterwards()
    {
        QImage image = emptyImage({ 40, 30 });
        LineRasterizer mask(image.rect());
        mask.addRow(0, 39, 5);
        mask.addColumn(20, 0, 29);
        mask.writeTo(rowsOf(image), ink);
        QCOMPARE(image.pixel(39, 5), ink);
        QCOMPARE(image.pixel(20, 29), ink);
        image.fill(Qt::black);
        mask.addRow(3, 3, 7);
        mask.writeTo(rowsOf(image), ink);
        QImage expected = emptyImage({ 40, 30 });
        expected.setPixel(3, 7, ink);
        QCOMPARE(image, expected);
    }

    void anEmptyArea()
    {
        QImage image = emptyImage({ 4, 3 });
        for (const QRect& area : { QRect(), QRect(2, 2, 0, 5), QRect(QPoint(3, 2), QPoint(0, 0)) }) {
            LineRasterizer mask(area);
            mask.addLine({ 0, 0 }, { 3, 2 });
            mask.addRow(0, 3, 1);
            mask.addColumn(1, 0, 2);
            mask.writeTo(rowsOf(image), ink);
        }
        QCOMPARE(image, emptyImage({ 4, 3 }));
    }

    void paintsAsThePainter_data()
    {
        QTest::addColumn<Prepare>("prepare");
        const auto row = [](const char* name, Prepare prepare) { QTest::newRow(name) << prepare; };
        row("as it is", prepareNothing);
        row("clipped", prepareClip);
        row("clipped away", prepareEmptyClip);
        row("clipped to two rectangles", prepareTwoClips);
        row("clipped to fractions", prepareFractionalClip);
        row("clipped to an ellipse", prepareEllipse);
        row("clipped to a path that is a rectangle", prepareRectangularPath);
        row("clipped twice", prepareClipWithinClip);
        row("clipped while it scaled", prepareClipOfAScale);
        row("clipped, then shifted", prepareClipThenShift);
        row("clip switched off", prepareClipOff);
        row("shifted", prepareShift);
        row("shifted by a fraction", prepareFractionalShift);
        row("turned", prepareQuarterTurn);
        row("scaled", prepareScale);
        row("with a window", prepareWindow);
        row("translucent", prepareTranslucentPen);
        row("dashed", prepareDashes);
        row("wide", prepareWidePen);
        row("no pen", prepareNoPen);
        row("color of 16 bits a channel", prepareFineColour);
        row("antialiased", prepareAntialiasing);
        row("exclusive or", prepareXor);
        row("half opaque", prepareOpacity);
    }
    void paintsAsThePainter()
    {
        QFETCH(Prepare, prepare);
        auto random = tarnis::testing::seededGenerator(3603);
        const QSize size(300, 200);
        for (int number = 0; number < 60; ++number) {
            const QList<QLine> lines =
                randomLines(random, size, whole(random, 0, 400), number % 3 == 0 ? 0 : whole(random, 0, 500));
            QImage expected = emptyImage(size, QImage::Format_ARGB32_Premultiplied);
            QImage image = expected;
            {
                QPainter painter(&expected);
                prepare(painter);
                const bool isScaled =
                    painter.combinedTransform().isScaling() && !painter.combinedTransform().isRotating();
                for (const QLine& line : lines) {
                    if (isScaled)
                        tarnis::drawEvenLine(painter, line); // the painter's own lines would have an uneven thickness
                    else
                        painter.drawLine(line);
                }
            }
            {
                QPainter painter(&image);
                prepare(painter);
                tarnis::paintLines(painter, lines);
            }
            QVERIFY2(image == expected, qPrintable(QStringLiteral("case %1").arg(number)));
        }
    }

    void paintsAsThePainterInAnyFormat_data()
    {
        QTest::addColumn<QImage::Format>("format");
        QTest::newRow("RGB32") << QImage::Format_RGB32;
        QTest::newRow("ARGB32") << QImage::Format_ARGB32;
        QTest::newRow("ARGB32 premultiplied") << QImage::Format_ARGB32_Premultiplied;
        QTest::newRow("RGB16") << QImage::Format_RGB16;
        QTest::newRow("RGB888") << QImage::Format_RGB888;
        QTest::newRow("RGBA8888") << QImage::Format_RGBA8888;
        QTest::newRow("RGBA64") << QImage::Format_RGBA64;
        QTest::newRow("grey") << QImage::Format_Grayscale8;
    }
    void paintsAsThePainterInAnyFormat()
    {
        QFETCH(QImage::Format, format);
        auto random = tarnis::testing::seededGenerator(3604);
        const QSize size(133, 77);
        const QList<QLine> lines = randomLines(random, size, 300, 20);
        QImage expected = emptyImage(size, format);
        QImage image = expected;
        for (QImage* target : { &expected, &image }) {
            QPainter painter(target);
            painter.setPen(QColor(ink));
            if (target == &expected)
                painter.drawLines(lines);
            else
                tarnis::paintLines(painter, lines);
        }
        QCOMPARE(image, expected);
    }

    void paintsOnAWidget()
    {
        class Lines : public QWidget {
        public:
            QList<QLine> lines;
            bool byPainter = false;

        protected:
            void paintEvent(QPaintEvent* /*event*/) override
            {
                QPainter painter(this);
                painter.setPen(QColor(ink));
                if (byPainter)
                    painter.drawLines(lines);
                else
                    tarnis::paintLines(painter, lines);
            }
        };
        auto random = tarnis::testing::seededGenerator(3605);
        QWidget window;
        window.resize(400, 300);
        Lines child; // at an offset, partly outside of its window
        child.setParent(&window);
        child.setGeometry(250, 37, 300, 200);
        child.lines = randomLines(random, child.size(), 500, 100);
        const QImage picture = window.grab().toImage();
        child.byPainter = true;
        QCOMPARE(picture, window.grab().toImage());
        child.lines.clear();
        QVERIFY(picture != window.grab().toImage());
    }
};

QTEST_MAIN(TestLineRasterizer)
#include "tst_linerasterizer.moc"
