// The legend: entries, clicks, keys, place, and its part of a stored view.
#include "support/pictures.h"
#include "support/support.h"
#include "support/wait.h"

#include <tarnis/plots/curvenames.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/plotoverlay.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/tools/plotlegend.h>
#include <tarnis/tools/plotnavigator.h>

#include <QImage>
#include <QJsonArray>
#include <QMouseEvent>
#include <QPainter>
#include <QTest>
#include <QWheelEvent>

#include <cmath>
#include <memory>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

const QList<QColor> colors { Qt::red, Qt::green, Qt::cyan };

void send(QWidget& widget, QEvent::Type type, const QPointF& at, Qt::MouseButton button, Qt::MouseButtons buttons)
{
    QMouseEvent event(type, at, widget.mapToGlobal(at), button, buttons, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &event);
}

void click(QWidget& widget, const QPointF& at)
{
    send(widget, QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton);
    send(widget, QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton);
}

void doubleClick(QWidget& widget, const QPointF& at)
{
    click(widget, at);
    send(widget, QEvent::MouseButtonDblClick, at, Qt::LeftButton, Qt::LeftButton);
    send(widget, QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton);
}

} // namespace

class TestPlotLegend : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_plot = std::make_unique<MultiVectorGraphWidget>();
        m_plot->init(QStringLiteral("Time"), QStringLiteral("Counts"), 10, 10, false, false);
        m_plot->initManualX(0, 10);
        m_plot->initManualY(0, 10);
        m_plot->m_doubleBuffered = true;
        for (int i = 0; i < colors.size(); ++i) {
            m_plot->setData(i, QList<double>(10, 0.0), 1); // on the axis, so that colours are found in the legend alone
            m_plot->setColor(i, colors.at(i));
        }
        setSeriesNames(*m_plot, { QStringLiteral("first"), QStringLiteral("second"), QStringLiteral("third") });
        m_plot->resize(500, 400);
        m_legend = new PlotLegend(m_plot.get());
        m_plot->show();
        m_plot->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_plot.get()));
        m_plot->setFocus();
        m_plot->grab();
    }

    void cleanup() { m_plot.reset(); }

    void listsCurvesWithSamples()
    {
        QCOMPARE(m_legend->count(), 3);
        QCOMPARE(m_legend->name(1), QStringLiteral("second"));
        QCOMPARE(m_legend->name(3), QString());
        QVERIFY(!entryAt(0).isNull());
        QVERIFY(entryAt(1).y() > entryAt(0).y());
        m_legend->setVisible(false);
        QVERIFY(entryAt(0).isNull());
    }

    void paperHasTheNames()
    {
        // On a device with this multiple of the screen's resolution.
        const auto light = [this](int scale) {
            QImage page(m_plot->size() * scale, QImage::Format_RGB32);
            page.setDotsPerMeterX(qRound(m_plot->logicalDpiX() * scale / 0.0254));
            page.setDotsPerMeterY(qRound(m_plot->logicalDpiY() * scale / 0.0254));
            page.fill(Qt::black);
            QPainter painter(&page);
            painter.scale(scale, scale);
            PlotOverlay::paintAll(*m_plot, painter);
            painter.end();
            double sum = 0.0;
            for (int y = 0; y < page.height(); ++y)
                for (int x = 0; x < page.width(); ++x)
                    sum += qGray(page.pixel(x, y));
            return sum / scale / scale;
        };
        // Half of the light is that of the names, which are white.
        QVERIFY2(std::fabs(light(8) / light(1) - 1.0) < 0.1,
            qPrintable(QStringLiteral("%1 %2").arg(light(8)).arg(light(1))));
    }

    void clickHidesAndShowsAgain()
    {
        const QPointF second = entryAt(1);
        click(*m_plot, second);
        QCOMPARE(shown(), (QList<bool> { true, false, true }));
        QVERIFY(entryAt(1).isNull()); // greyed
        click(*m_plot, second);
        QCOMPARE(shown(), (QList<bool> { true, true, true }));
    }

    void doubleClickIsolatesAndBringsAllBack()
    {
        const QPointF second = entryAt(1);
        doubleClick(*m_plot, second);
        QCOMPARE(shown(), (QList<bool> { false, true, false }));
        doubleClick(*m_plot, second);
        QCOMPARE(shown(), (QList<bool> { true, true, true }));
    }

    void hiddenEntriesStayAfterNewData()
    {
        m_legend->toggle(2);
        m_plot->setData(2, QList<double>(10, 0.0), 5);
        QCOMPARE(m_legend->count(), 3);
        QCOMPARE(shown(), (QList<bool> { true, true, false }));
    }

    void dragMovesItInsideThePlot()
    {
        const QPointF start = entryAt(1);
        send(*m_plot, QEvent::MouseButtonPress, start, Qt::LeftButton, Qt::LeftButton);
        send(*m_plot, QEvent::MouseMove, start + QPointF(-100, 50), Qt::NoButton, Qt::LeftButton);
        send(*m_plot, QEvent::MouseButtonRelease, start + QPointF(-100, 50), Qt::LeftButton, Qt::NoButton);
        QCOMPARE(shown(), (QList<bool> { true, true, true })); // not a click
        QCOMPARE(entryAt(1), start + QPointF(-100, 50));
        m_legend->setPlace({ -5, 7 });
        QCOMPARE(m_legend->place(), QPointF(0, 1));
        m_legend->setPlace({ std::nan(""), 0 });
        QCOMPARE(m_legend->place(), QPointF(0, 1));
    }

    void keysChooseHideAndIsolate()
    {
        new PlotNavigator(m_plot.get()); // the legend handles its keys in the meantime
        m_legend->setVisible(false);
        double min = 0.0;
        double max = 0.0;
        m_plot->getMinMaxX(min, max);
        QTest::keyClick(m_plot.get(), Qt::Key_L, Qt::ShiftModifier);
        QVERIFY(m_legend->isVisible());
        QTest::keyClick(m_plot.get(), Qt::Key_Down);
        QTest::keyClick(m_plot.get(), Qt::Key_Space);
        QCOMPARE(shown(), (QList<bool> { true, false, true }));
        QTest::keyClick(m_plot.get(), Qt::Key_End);
        QTest::keyClick(m_plot.get(), Qt::Key_Return);
        QCOMPARE(shown(), (QList<bool> { false, false, true }));
        QTest::keyClick(m_plot.get(), Qt::Key_Escape);
        QTest::keyClick(m_plot.get(), Qt::Key_Space); // the legend has no keys now
        QCOMPARE(shown(), (QList<bool> { false, false, true }));
        double sameMin = 0.0;
        double sameMax = 0.0;
        m_plot->getMinMaxX(sameMin, sameMax);
        QCOMPARE(sameMin, min);
        QCOMPARE(sameMax, max);
        QTest::keyClick(m_plot.get(), Qt::Key_L, Qt::ShiftModifier);
        QTest::keyClick(m_plot.get(), Qt::Key_L, Qt::ShiftModifier);
        QVERIFY(!m_legend->isVisible());
    }

    void savedPictureHasNoChosenEntry()
    {
        const auto saved = [this] { return std::unique_ptr<QPixmap>(m_plot->toPixmap())->toImage(); };
        const QImage picture = saved();
        const QImage screen = m_plot->grab().toImage();
        QTest::keyClick(m_plot.get(), Qt::Key_L, Qt::ShiftModifier);
        QCOMPARE(saved(), picture);
        QVERIFY(m_plot->grab().toImage() != screen);
    }

    void longListScrolls()
    {
        m_plot->m_groupSize = 100; // a colour for each
        for (int i = 3; i < 100; ++i)
            m_plot->setData(i, QList<double>(10, 0.0), 1);
        QCOMPARE(m_legend->count(), 100);
        const QPointF at = entryAt(0);
        QVERIFY(!at.isNull());
        QWheelEvent wheel(at, m_plot->mapToGlobal(at), QPoint(), QPoint(0, -120), Qt::NoButton, Qt::NoModifier,
            Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(m_plot.get(), &wheel);
        QVERIFY(entryAt(0).isNull());
        QTest::keyClick(m_plot.get(), Qt::Key_L, Qt::ShiftModifier);
        QTest::keyClick(m_plot.get(), Qt::Key_Home);
        QVERIFY(!entryAt(0).isNull());
    }

    void groupsAreHiddenAsAWhole()
    {
        m_plot->m_groupSize = 2;
        m_plot->setAddType(MultiVectorGraphWidget::AddEachGroup);
        QCOMPARE(m_legend->count(), 2);
        m_legend->toggle(0);
        QCOMPARE(m_legend->isShown(0), false);
        QCOMPARE(m_legend->isShown(1), true);
        m_legend->toggle(0);
        QCOMPARE(m_legend->isShown(0), true);
        m_legend->isolate(1);
        QCOMPARE(m_legend->isShown(0), false);
        QCOMPARE(m_legend->isShown(1), true);
    }

    void aSumOffersNothingToHide()
    {
        m_plot->setAddType(MultiVectorGraphWidget::AddAll);
        QCOMPARE(m_legend->count(), 1);
        m_legend->toggle(0);
        m_legend->isolate(0);
        m_plot->setAddType(MultiVectorGraphWidget::AddNone);
        QCOMPARE(shown(), (QList<bool> { true, true, true }));
    }

    void drawsNothingOnOtherPlots()
    {
        VectorGraphWidget plot;
        plot.init(QStringLiteral("X"), QStringLiteral("Y"), 10, 10, true, true);
        plot.m_doubleBuffered = true;
        plot.resize(300, 200);
        const QImage before = plot.grab().toImage();
        PlotLegend& legend = *new PlotLegend(&plot);
        QCOMPARE(plot.grab().toImage(), before);
        QCOMPARE(legend.count(), 0);
        QVERIFY(!legend.actions().first()->isEnabled());
        legend.toggle(0);
        legend.isolate(0);
        legend.showAll();
        legend.restoreState(legend.saveState());
    }

    void clicksBesideItReachThePlot()
    {
        new PlotNavigator(m_plot.get());
        m_plot->setMinMaxX(2, 5);
        const QPointF beside = QRectF(PlotMapping::of(*m_plot).plotRect()).center();
        doubleClick(*m_plot, beside);
        double min = 0.0;
        double max = 0.0;
        QVERIFY(m_plot->getMinMaxX(min, max)); // the navigator has fitted the axis
        QCOMPARE(shown(), (QList<bool> { true, true, true }));
    }

    void stateComesBack()
    {
        m_legend->setPlace({ 0.25, 0.5 });
        m_legend->toggle(1);
        m_legend->setVisible(false);
        const QJsonObject state = m_legend->saveState();
        m_legend->setPlace({ 1, 1 });
        m_legend->toggle(1);
        m_legend->toggle(0);
        m_legend->setVisible(true);
        m_legend->restoreState(state);
        QCOMPARE(m_legend->place(), QPointF(0.25, 0.5));
        QCOMPARE(shown(), (QList<bool> { true, false, true }));
        QVERIFY(!m_legend->isVisible());
        m_legend->restoreState({ { QStringLiteral("place"), true }, { QStringLiteral("hidden"), QStringLiteral("1") },
            { QStringLiteral("visible"), 3 } });
        QCOMPARE(m_legend->saveState(), state);
        for (const QJsonArray& place :
            { QJsonArray { 1, QStringLiteral("1") }, QJsonArray { true, 1 }, QJsonArray { 1 } })
            m_legend->restoreState({ { QStringLiteral("place"), place } });
        QCOMPARE(m_legend->saveState(), state);
    }

    void leavesTheMarksOfHeldAxes()
    {
        PlotNavigator navigator(m_plot.get());
        m_legend->setPlace({ 0, 0 });
        const QPointF before = entryAt(0);
        m_plot->setMinMaxY(2, 8);
        TRY_VERIFY(navigator.isHeld(Qt::Vertical));
        QCOMPARE(navigator.overlayBoxes().size(), 1);
        const QRect mark = navigator.overlayBoxes().constFirst();
        QVERIFY(!m_legend->overlayBoxes().constFirst().intersects(mark));
        QVERIFY(entryAt(0).y() > before.y());
        QCOMPARE(m_legend->place(), QPointF(0, 0));
    }

    void turnedPlotFindsItsEntries()
    {
        for (const double angle : { 90.0, -90.0 }) {
            m_plot->m_rotation = angle;
            m_plot->refreshPixmap();
            m_plot->grab();
            const QPointF second = entryAt(1);
            QVERIFY(!second.isNull());
            click(*m_plot, second);
            QCOMPARE(shown(), (QList<bool> { true, false, true }));
            click(*m_plot, second);
        }
    }

private:
    /// The left end of an entry's line, found by its colour in the picture.
    QPointF entryAt(int number)
    {
        const QImage image = m_plot->grab().toImage();
        const QRect rect = PlotMapping::of(*m_plot).plotRect().adjusted(3, 3, -3, -8);
        for (int row = rect.top(); row < rect.bottom(); ++row) {
            for (int column = rect.left(); column < rect.right(); ++column) {
                if (colourAt(image, QPoint(column, row)) == colors.at(number))
                    return { column + 1.0, row + 1.0 };
            }
        }
        return {};
    }

    QList<bool> shown() const { return { m_legend->isShown(0), m_legend->isShown(1), m_legend->isShown(2) }; }

    std::unique_ptr<MultiVectorGraphWidget> m_plot;
    PlotLegend* m_legend = nullptr;
};

QTEST_MAIN(TestPlotLegend)
#include "tst_plotlegend.moc"
