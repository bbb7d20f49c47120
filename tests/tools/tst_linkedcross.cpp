// The cross of one plot as a line in linked plots: where, when, and at which cost.
#include "support/support.h"
#include "support/visibleplot.h"
#include "support/wait.h"

#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/axislink.h>
#include <tarnis/tools/plotcrosshair.h>

#include <QImage>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QTest>

#include <memory>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

/// A visible plot with a crosshair. Counts drawings of its data, and repainted pixels.
template <typename Plot> class CrossPlot : public Plot {
public:
    explicit CrossPlot(double columns = 100, double rows = 50)
    {
        this->init(QStringLiteral("X"), QStringLiteral("Y"), columns, rows, true, true);
        this->initManualX(0, columns);
        this->initManualY(0, rows);
        if constexpr (std::is_same_v<Plot, VectorGraphWidget>)
            this->setData(QList<double>(int(columns), 3.0));
        showActive(*this, { 400, 300 });
        settle();
    }

    void onPaint(QPainter& painter, const QRect& graph) override
    {
        ++drawings;
        Plot::onPaint(painter, graph);
    }
    void point(double x, double y)
    {
        const QPointF at = PlotMapping::of(*this).pixelOf({ x, y });
        QMouseEvent move(QEvent::MouseMove, at, this->mapToGlobal(at), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(this, &move);
    }
    void leave()
    {
        QEvent event(QEvent::Leave);
        QCoreApplication::sendEvent(this, &event);
    }
    QImage picture() { return this->grab().toImage(); }
    void settle()
    {
        QCoreApplication::processEvents();
        repainted = QRegion();
        drawings = 0;
    }

    PlotCrosshair* cross = new PlotCrosshair(this); // owned by the plot
    int drawings = 0;
    QRegion repainted;

protected:
    void paintEvent(QPaintEvent* event) override
    {
        repainted += event->region();
        Plot::paintEvent(event);
    }
};
using Curve = CrossPlot<VectorGraphWidget>;
using Map = CrossPlot<XY2DGraphWidget>;

/// The pixels that differ.
QRect changeOf(const QImage& before, const QImage& after)
{
    QRect changed;
    for (int y = 0; y < before.height(); ++y) {
        for (int x = 0; x < before.width(); ++x) {
            if (before.pixel(x, y) != after.pixel(x, y))
                changed |= QRect(x, y, 1, 1);
        }
    }
    return changed;
}

bool isColumnAt(const XYGraphWidget& plot, const QRect& change, double x)
{
    return change.width() <= 5 && change.height() > plot.height() / 2
        && std::abs(change.center().x() - pixelOf(plot, x, 0.0).x()) <= 1;
}

} // namespace

class TestLinkedCross : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aCrossIsALineInTheOthers()
    {
        Curve a, b, off;
        AxisLink link;
        for (Curve* const plot : { &a, &b, &off })
            link.add(plot, Qt::Horizontal);
        off.cross->setOn(false);
        const QImage none = b.picture();
        const QImage noneOff = off.picture();
        a.point(30.2, 20.0);
        QVERIFY(isColumnAt(b, changeOf(none, b.picture()), 30.5)); // the middle of the bin
        QCOMPARE(off.picture(), noneOff);
        off.cross->setOn(true);
        QVERIFY(isColumnAt(off, changeOf(noneOff, off.picture()), 30.5));
        a.point(60.2, 20.0);
        QVERIFY(isColumnAt(b, changeOf(none, b.picture()), 60.5));
        a.leave();
        QCOMPARE(b.picture(), none);
        QVERIFY(b.cross->text().isEmpty());
    }

    void onlyThePixelsOfTheLineAreRepainted()
    {
        Curve a, b;
        AxisLink link;
        link.add(&a, Qt::Horizontal);
        link.add(&b, Qt::Horizontal);
        a.point(30.0, 20.0);
        QCoreApplication::processEvents();
        b.settle();
        a.point(60.0, 20.0);
        TRY_VERIFY(!b.repainted.isEmpty());
        QCOMPARE(b.drawings, 0);
        int pixels = 0;
        for (const QRect& part : b.repainted)
            pixels += part.width() * part.height();
        for (const double x : { 30.5, 60.5 }) // the old line and the new one
            QVERIFY(b.repainted.contains(pixelOf(b, x, 25.0)));
        QVERIFY2(pixels < b.width() * b.height() / 20, qPrintable(QString::number(pixels)));
        b.settle();
        b.cross->setOn(false);
        QCoreApplication::processEvents();
        b.settle();
        a.point(70.0, 20.0);
        QCoreApplication::processEvents();
        QVERIFY(b.repainted.isEmpty());
    }

    void aMapAndACurveShareAnAxis()
    {
        Map map;
        Curve curve;
        AxisLink link;
        link.add(&map, Qt::Vertical);
        link.add(&curve, Qt::Horizontal);
        const QImage none = curve.picture();
        const QImage noneMap = map.picture();
        map.point(70.0, 20.5);
        const double y = PlotMapping::of(curve).valueAt(QPointF(changeOf(none, curve.picture()).center())).x();
        QVERIFY2(std::abs(y - 20.5) < 0.5, qPrintable(QString::number(y)));
        map.leave();
        curve.point(10.2, 20.0);
        const QRect change = changeOf(noneMap, map.picture());
        QVERIFY(change.height() <= 5 && change.width() > map.width() / 2);
        QVERIFY(std::abs(change.center().y() - pixelOf(map, 0.0, 10.5).y()) <= 1);
    }

    void aLineOutsideOfTheRangeIsNotShown()
    {
        Curve a, b;
        AxisLink link;
        link.add(&a, Qt::Vertical);
        link.add(&b, Qt::Horizontal);
        showX(b, { 10, 20 });
        QCoreApplication::processEvents();
        const QImage none = b.picture();
        a.cross->pinAt({ 3.0, 30.0 });
        QCOMPARE(b.picture(), none);
        a.cross->pinAt({ 3.0, 15.0 });
        QVERIFY(isColumnAt(b, changeOf(none, b.picture()), 15.0));
    }

    void theLineEndsWithTheLink_data()
    {
        QTest::addColumn<int>("end");
        QTest::newRow("the other plot leaves") << 0;
        QTest::newRow("the plot leaves") << 1;
        QTest::newRow("the cross is switched off") << 2;
        QTest::newRow("the cross is deleted") << 3;
        QTest::newRow("the other plot is deleted") << 4;
        QTest::newRow("the link is deleted") << 5;
    }
    void theLineEndsWithTheLink()
    {
        QFETCH(int, end);
        auto a = std::make_unique<Curve>();
        Curve b;
        auto link = std::make_unique<AxisLink>();
        const QImage none = b.picture();
        a->cross->pinAt({ 30.0, 20.0 });
        link->add(a.get(), Qt::Horizontal);
        link->add(&b, Qt::Horizontal); // takes the cross that is already there
        QVERIFY(isColumnAt(b, changeOf(none, b.picture()), 30.5));
        if (end == 0)
            link->remove(a.get(), Qt::Horizontal);
        else if (end == 1)
            link->remove(&b, Qt::Horizontal);
        else if (end == 2)
            a->cross->setOn(false);
        else if (end == 3)
            delete a->cross;
        else if (end == 4)
            a.reset();
        else
            link.reset();
        QCOMPARE(b.picture(), none);
    }

    void theCrossThatMovedLastIsShown()
    {
        Curve a, b, c;
        AxisLink link;
        for (Curve* const plot : { &a, &b, &c })
            link.add(plot, Qt::Horizontal);
        const QImage none = c.picture();
        b.cross->pinAt({ 30.0, 20.0 });
        a.point(60.0, 20.0);
        QVERIFY(isColumnAt(c, changeOf(none, c.picture()), 60.5));
        a.leave();
        QVERIFY(isColumnAt(c, changeOf(none, c.picture()), 30.5));
        a.point(60.0, 20.0);
        b.cross->pinAt({ 40.0, 20.0 });
        QVERIFY(isColumnAt(c, changeOf(none, c.picture()), 40.5));
    }

    void savedPicturesHaveNoLine()
    {
        Curve a, b;
        AxisLink link;
        link.add(&a, Qt::Horizontal);
        link.add(&b, Qt::Horizontal);
        const auto saved = [&b] {
            QImage image(b.size(), QImage::Format_RGB32);
            image.fill(Qt::black);
            QPainter painter(&image);
            PlotOverlay::paintAll(b, painter);
            return image;
        };
        const QImage none = saved();
        a.point(30.0, 20.0);
        QCOMPARE(saved(), none);
        b.cross->pinAt({ 50.0, 20.0 });
        QVERIFY(saved() != none);
    }
};

QTEST_MAIN(TestLinkedCross)
#include "tst_linkedcross.moc"
