// Places for texts beside boxes, and lines of read-outs.
#include "support/cases.h"
#include "support/randomcases.h"
#include "support/support.h"

#include "tarnis/tools/base/labelplace_p.h"

#include <QFont>
#include <QFontMetrics>
#include <QTest>

#include <algorithm>

using namespace tarnis;
using namespace tarnis::testing;

class TestLabelPlace : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void prefersTheTopAndAvoidsBoxes_data()
    {
        addColumns<QSize, QList<QRect>, QRect>("text", "boxes", "expected");
        const QRect legend(70, 0, 30, 40);
        QTest::newRow("nothing there") << QSize(50, 10) << QList<QRect>() << QRect(0, 0, 100, 10);
        QTest::newRow("beside") << QSize(50, 10) << QList<QRect> { legend } << QRect(0, 0, 67, 10);
        QTest::newRow("below") << QSize(80, 10) << QList<QRect> { legend } << QRect(0, 43, 100, 10);
        QTest::newRow("between") << QSize(40, 10) << QList<QRect> { legend, { 0, 0, 20, 10 } } << QRect(23, 0, 44, 10);
        QTest::newRow("too wide") << QSize(500, 10) << QList<QRect> { legend } << QRect(0, 43, 100, 10);
        QTest::newRow("too high for below") << QSize(80, 30) << QList<QRect> { legend } << QRect(0, 0, 67, 30);
        QTest::newRow("no space") << QSize(10, 10) << QList<QRect> { { 0, 0, 100, 60 } } << QRect(0, 0, 0, 10);
    }
    void prefersTheTopAndAvoidsBoxes()
    {
        QFETCH(const QSize, text);
        QFETCH(const QList<QRect>, boxes);
        QTEST(freeRow({ 0, 0, 100, 60 }, text, boxes), "expected");
    }

    void neverIntersectsABox()
    {
        auto random = seededGenerator(77);
        for (int round = 0; round < 2000; ++round) {
            const QRect inside(
                whole(random, -50, 50), whole(random, -50, 50), whole(random, 1, 300), whole(random, 1, 200));
            QList<QRect> boxes(whole(random, 0, 5));
            for (QRect& box : boxes)
                box = QRect(
                    whole(random, -80, 300), whole(random, -80, 250), whole(random, 1, 150), whole(random, 1, 100));
            const QSize text(whole(random, 1, 300), whole(random, 1, 40));
            const QRect row = freeRow(inside, text, boxes);
            QCOMPARE(row.height(), text.height());
            QVERIFY(row.left() >= inside.left() && row.left() + row.width() <= inside.left() + inside.width());
            QVERIFY(row.top() >= inside.top());
            QVERIFY(std::none_of(
                boxes.cbegin(), boxes.cend(), [&](const QRect& box) { return row.isValid() && box.intersects(row); }));
        }
    }

    void wrapsParts()
    {
        const QFontMetrics metrics { QFont() };
        const int two = metrics.horizontalAdvance(QStringLiteral("one: 1   two: 2"));
        const QString text = QStringLiteral("one: 1   two: 2   six: 6");
        QCOMPARE(wrapped({ text, metrics }, metrics, 10000, 9), text);
        QCOMPARE(wrapped({ text, metrics }, metrics, two, 9), QStringLiteral("one: 1   two: 2\nsix: 6"));
        const int one = metrics.horizontalAdvance(QStringLiteral("two: 2   "));
        QCOMPARE(wrapped({ text, metrics }, metrics, one, 9), QStringLiteral("one: 1\ntwo: 2\nsix: 6"));
        const QString cut = wrapped({ text, metrics }, metrics, two, 1);
        QVERIFY2(cut.endsWith(u'…') && !cut.contains(u'\n'), qPrintable(cut));
    }

    void widensLinesRatherThanElideParts()
    {
        const QFontMetrics metrics { QFont() };
        const QString text = QStringLiteral("Time [14000, 14002.44) bin 5734   4 ± 2   six: 6");
        const int part = metrics.horizontalAdvance(QStringLiteral("Time [14000, 14002.44) bin 5734"));
        QCOMPARE(widthFor({ text, metrics }, { part + 50, 700, 900 }, 9), part + 50);
        const int width = widthFor({ text, metrics }, { 20, 10, 900 }, 9);
        QVERIFY(width >= part && width <= part + 2);
        QVERIFY(!wrapped({ text, metrics }, metrics, width, 9).contains(u'…'));
        QCOMPARE(widthFor({ text, metrics }, { 20, 700, 900 }, 1), 700); // all in one line
        QCOMPARE(widthFor({ text, metrics }, { 20, 10, 30 }, 9), 30);
    }
};

QTEST_MAIN(TestLabelPlace)
#include "tst_labelplace.moc"
