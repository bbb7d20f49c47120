// Labels with a cached layout compared with the painter's text, pixel by pixel.
#include "support/randomcases.h"
#include "support/support.h"
#include "tarnis/plots/labelcache_p.h"

#include <QImage>
#include <QPainter>
#include <QTest>

#include <functional>

using tarnis::testing::Generator;
using tarnis::testing::uniform;
using tarnis::testing::whole;

namespace {

QString randomText(Generator& generator)
{
    static const QStringList texts { "0", "1000", "-12.5", "1e+06", "6.30957e-05", "nan", "inf", "Counts", "a&b", "",
        "two words", " 1", "1 ", "1\n2", "1\t2", QStringLiteral("µs"), QStringLiteral("שלום"), "fi", "AVAWA" };
    return generator() % 2 == 0 ? texts.at(whole(generator, 0, static_cast<int>(texts.size()) - 1))
                                : QString::number(uniform(generator, -1e6, 1e6), 'g', whole(generator, 1, 8));
}

int randomFlags(Generator& generator)
{
    static const Qt::Alignment across[] = { Qt::AlignLeft, Qt::AlignRight, Qt::AlignHCenter, {} };
    static const Qt::Alignment along[] = { Qt::AlignTop, Qt::AlignBottom, Qt::AlignVCenter, {} };
    return static_cast<int>(across[whole(generator, 0, 3)] | along[whole(generator, 0, 3)]);
}

QFont randomFont(Generator& generator)
{
    QFont font;
    font.setPixelSize(whole(generator, 6, 20));
    font.setBold(generator() % 4 == 0);
    font.setItalic(generator() % 4 == 0);
    font.setUnderline(generator() % 8 == 0);
    font.setLetterSpacing(QFont::AbsoluteSpacing, generator() % 4 == 0 ? 1.5 : 0.0);
    return font;
}

/// One way to draw a label.
using Draw = std::function<void(QPainter&, const QRectF&, int, const QString&)>;

QImage picture(Generator generator, const Draw& draw)
{
    QImage image(200, 120, QImage::Format_RGB32);
    image.fill(Qt::lightGray);
    QPainter painter(&image);
    painter.setFont(randomFont(generator));
    if (generator() % 4 == 0)
        painter.setPen(QColor(static_cast<QRgb>(generator())));
    if (generator() % 4 == 0)
        painter.setClipRect(QRect(20, 20, 120, 60));
    if (generator() % 4 == 0) {
        painter.translate(150, 0);
        painter.rotate(90);
    } else if (generator() % 4 == 0) {
        painter.scale(1.25, 1.25);
    }
    if (generator() % 16 == 0)
        painter.setPen(Qt::NoPen);
    if (generator() % 16 == 0)
        painter.setLayoutDirection(Qt::RightToLeft);
    else if (generator() % 2 == 0)
        painter.setLayoutDirection(Qt::LeftToRight);
    for (int i = whole(generator, 1, 5); i > 0; --i) {
        QRectF rect(uniform(generator, -20.0, 150.0), uniform(generator, -20.0, 100.0), uniform(generator, 0.0, 90.0),
            uniform(generator, 0.0, 40.0));
        if (generator() % 2 == 0)
            rect = rect.toRect();
        const int flags = randomFlags(generator);
        draw(painter, rect, flags, randomText(generator));
    }
    return image;
}

} // namespace

class TestLabelCache : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void drawsWhatThePainterDraws()
    {
        Generator generator = tarnis::testing::seededGenerator(1);
        tarnis::LabelCache labels;
        for (int number = 0; number < 4000; ++number) {
            const Generator same = generator;
            generator.discard(200);
            const QImage expected =
                picture(same, [](QPainter& painter, const QRectF& rect, int flags, const QString& text) {
                    painter.drawText(rect, flags, text);
                });
            const QImage actual =
                picture(same, [&](QPainter& painter, const QRectF& rect, int flags, const QString& text) {
                    labels.draw(painter, rect, flags, text);
                });
            QVERIFY2(actual == expected, qPrintable(QString::number(number)));
        }
    }

    void leavesThePainterAsItWas()
    {
        QImage image(100, 50, QImage::Format_RGB32);
        QPainter painter(&image);
        painter.setPen(Qt::red);
        painter.setClipRect(QRect(1, 2, 3, 4));
        tarnis::LabelCache labels;
        labels.draw(painter, QRectF(0, 0, 5, 5), Qt::AlignLeft, "12345"); // too small: clipped
        QCOMPARE(painter.pen().color(), QColor(Qt::red));
        QCOMPARE(painter.clipBoundingRect(), QRectF(1, 2, 3, 4));
        painter.setClipping(false);
        labels.draw(painter, QRectF(0, 0, 5, 5), Qt::AlignLeft, "12345");
        QVERIFY(!painter.hasClipping());
    }

    void advancesAreThoseOfQFontMetrics()
    {
        Generator generator = tarnis::testing::seededGenerator(2);
        tarnis::LabelCache labels;
        for (int number = 0; number < 500; ++number) {
            const QFontMetrics metrics(randomFont(generator));
            for (int i = 0; i < 5; ++i) {
                const QString text = randomText(generator);
                QCOMPARE(labels.advanceOf(text, metrics), metrics.horizontalAdvance(text));
                QCOMPARE(labels.advanceOf(text, metrics), metrics.horizontalAdvance(text));
            }
        }
    }

    void keepsOneFontAtATime()
    {
        tarnis::LabelCache labels;
        for (int size = 8; size < 30; ++size) {
            QFont font;
            font.setPixelSize(size);
            QImage expected(60, 40, QImage::Format_RGB32);
            expected.fill(Qt::white);
            QImage actual = expected;
            {
                QPainter painter(&expected);
                painter.setFont(font);
                painter.drawText(QRectF(expected.rect()), Qt::AlignLeft, "42");
            }
            {
                QPainter painter(&actual);
                painter.setFont(font);
                labels.draw(painter, QRectF(actual.rect()), Qt::AlignLeft, "42");
            }
            QCOMPARE(actual, expected);
        }
    }
};

QTEST_MAIN(TestLabelCache)
#include "tst_labelcache.moc"
