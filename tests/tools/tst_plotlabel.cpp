// Labels that are laid out once, and lines over the data: pixels of the plain calls of the painter.
#include "support/pictures.h"
#include "support/randomcases.h"
#include "support/support.h"

#include "tarnis/plots/plotpixmap_p.h"
#include "tarnis/tools/base/plotlabel_p.h"

#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QTest>

#include <cmath>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

constexpr QRgb background = 0xff306090U;
const QColor lineColour(235, 235, 235);

QImage canvas()
{
    QImage image(300, 240, QImage::Format_ARGB32_Premultiplied);
    image.fill(background);
    return image;
}

/// The text of a label, drawn by the painter itself.
void drawText(QPainter& painter, const QString& text, const QRect& frame)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QColor(255, 255, 255));
    if (text.contains(u'\n'))
        painter.drawText(frame.adjusted(5, 0, 0, 0), int(Qt::AlignLeft | Qt::AlignVCenter), text);
    else
        painter.drawText(frame, int(Qt::AlignCenter), text);
}

/// The box of a label alone.
void drawBox(QPainter& painter, const QRect& frame)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(110, 110, 110, 205), 1.0));
    painter.setBrush(QColor(24, 24, 24, 205));
    painter.drawRoundedRect(QRectF(frame).adjusted(0.5, 0.5, -0.5, -0.5), 3.0, 3.0);
}

void drawPlainLine(QPainter& painter, const QPointF& from, const QPointF& to, const QColor& colour)
{
    painter.setPen(QPen(QColor(0, 0, 0, 140), 3.0));
    painter.drawLine(from, to);
    painter.setPen(QPen(colour, 1.0));
    painter.drawLine(from, to);
}

} // namespace

class TestPlotLabel : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void drawsThePixelsOfThePainter_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("ascii") << QStringLiteral("Channel [3, 4) bin 3   12");
        QTest::newRow("signs") << QStringLiteral("Δx 3   Σ 7 ± 2.65   ◂ A µs");
        QTest::newRow("lines") << QStringLiteral("first ± 1\nsecond, longer\nthird");
        QTest::newRow("two scripts") << QStringLiteral("abc שלום def");
        QTest::newRow("tall") << QStringLiteral("1\n2\n3\n4\n5\n6\n7\n8\n9");
        QTest::newRow("empty") << QString();
    }
    void drawsThePixelsOfThePainter()
    {
        QFETCH(QString, text);
        for (const double size : { 7.0, 9.0, 13.5 }) {
            QFont font;
            font.setPointSizeF(size);
            QImage expected = canvas();
            QImage drawn = canvas();
            QPainter plain(&expected);
            QPainter painter(&drawn);
            plain.setFont(font);
            painter.setFont(font);
            const LabelLayout label(text, painter.font());
            QCOMPARE(label.size(), labelSize(QFontMetrics(painter.font()), text));
            const QRect frame(QPoint(11, 7), label.size());
            drawBox(plain, frame);
            drawText(plain, text, frame);
            label.paint(painter, frame.topLeft());
            QCOMPARE(drawn, expected);
        }
    }

    void drawsUprightLinesAsThePainter()
    {
        auto random = seededGenerator(5);
        for (int round = 0; round < 300; ++round) {
            const QPointF from(whole(random, -20, 320), whole(random, -300, 300));
            const QPointF to = chance(random, 0.5) ? QPointF(from.x(), whole(random, -300, 500))
                                                   : QPointF(whole(random, -100, 400), from.y());
            const QRect clip(whole(random, 0, 100), whole(random, 0, 100), whole(random, 20, 200), 120);
            QImage expected = canvas();
            QImage drawn = canvas();
            QPainter plain(&expected);
            QPainter painter(&drawn);
            plain.setClipRect(clip);
            painter.setClipRect(clip);
            drawPlainLine(plain, from, to, lineColour);
            paintLine(painter, from, to, lineColour);
            QCOMPARE(drawn, expected);
        }
    }

    void drawsInBandsAsAtOnce()
    {
        auto random = seededGenerator(7);
        for (int round = 0; round < 100; ++round) {
            const QRect area(whole(random, -50, 250), whole(random, -80, 200), whole(random, 1, 300), 180);
            const QRegion clip = round % 3 == 0 ? QRegion()
                : round % 3 == 1                ? QRegion(20, 10, 200, 150)
                                                : QRegion(20, 10, 90, 150) + QRegion(120, 40, 60, 160);
            const bool isSmooth = chance(random, 0.5);
            const auto draw = [&](QPainter& painter) {
                painter.setRenderHint(QPainter::Antialiasing, isSmooth);
                painter.setPen(QPen(QColor(200, 40, 40, 150), isSmooth ? 1.0 : 3.0));
                painter.setBrush(QColor(20, 80, 20, 90));
                if (isSmooth)
                    painter.drawRoundedRect(QRectF(area).adjusted(0.5, 0.5, -0.5, -0.5), 3.0, 3.0);
                else
                    painter.drawConvexPolygon(QPolygon(area));
            };
            QImage expected = canvas();
            QImage drawn = canvas();
            QPainter plain(&expected);
            QPainter painter(&drawn);
            for (QPainter* const each : { &plain, &painter }) {
                each->translate(3, 5);
                if (!clip.isEmpty())
                    each->setClipRegion(clip);
            }
            draw(plain);
            paintInBands(
                painter, area.adjusted(-3, -3, 3, 3), [&] { draw(painter); }, isSmooth ? 24 : 88);
            QCOMPARE(drawn, expected);
        }
    }

    void drawsSlantedLinesThroughTheirPoints()
    {
        auto random = seededGenerator(6);
        for (int round = 0; round < 200; ++round) {
            const QPointF from(whole(random, -100, 400), whole(random, -100, 340));
            const QPointF to(from.x() + whole(random, 1, 300), from.y() + whole(random, -300, 300));
            QImage drawn = canvas();
            QPainter painter(&drawn);
            painter.setClipRect(drawn.rect());
            paintLine(painter, from, to, lineColour);
            const QPointF way = to - from;
            const double length = std::hypot(way.x(), way.y());
            for (int i = 0; i <= 50; ++i) { // the line is seen everywhere, with a dark border
                const QPoint at = (from + way * i / 50.0).toPoint();
                if (drawn.rect().adjusted(2, 2, -2, -2).contains(at))
                    QVERIFY(hasPixel(drawn, at, { 1, 1 }, [](const QColor& c) { return c.rgb() == lineColour.rgb(); }));
            }
            for (int y = 0; y < drawn.height(); ++y) { // and nowhere else
                for (int x = 0; x < drawn.width(); ++x) {
                    const QPointF to0 = QPointF(x, y) - from;
                    const double distance = std::abs(to0.x() * way.y() - to0.y() * way.x()) / length;
                    const bool isFar = distance > 3.0;
                    QVERIFY(drawn.pixel(x, y) == background || (!isFar && areaOfLine(from, to).contains(QPoint(x, y))));
                }
            }
        }
    }

    void drawsTheSamePixelsInEveryClip()
    {
        auto random = seededGenerator(7);
        for (int round = 0; round < 200; ++round) {
            const QPointF from(whole(random, -100, 400), whole(random, -100, 340));
            const QPointF to(whole(random, -100, 400), whole(random, -100, 340));
            const QRect clip(
                whole(random, 0, 100), whole(random, 0, 100), whole(random, 20, 200), whole(random, 2, 120));
            QImage all = canvas();
            QImage part = canvas();
            QPainter painter(&all);
            painter.setClipRect(all.rect());
            paintLine(painter, from, to, lineColour);
            QPainter inside(&part);
            inside.setClipRect(clip);
            paintLine(inside, from, to, lineColour);
            QCOMPARE(part.copy(clip), all.copy(clip));
        }
    }
};

QTEST_MAIN(TestPlotLabel)
#include "tst_plotlabel.moc"
