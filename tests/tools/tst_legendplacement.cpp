// The corner that a legend chooses, and when it leaves it.
#include "support/support.h"
#include "support/wait.h"

#include "tarnis/tools/curves/legendplacement_p.h"

#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/plotmapping.h>
#include <tarnis/tools/plotlegend.h>

#include <QJsonObject>
#include <QTest>
#include <QTimer>

#include <limits>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

constexpr int bins = 100;

/// Two curves: a flat one near zero, and one with a block of `height` at these bins.
void setBlock(MultiVectorGraphWidget& plot, int first, int last, double height = 100.0)
{
    QList<double> block(bins, 1.0);
    std::fill(block.begin() + first, block.begin() + last + 1, height);
    plot.setData(0, QList<double>(bins, 1.0), 1);
    plot.setData(1, block, 1);
}

} // namespace

class TestLegendPlacement : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_plot = std::make_unique<MultiVectorGraphWidget>();
        m_plot->init(QStringLiteral("Time"), QStringLiteral("Counts"), bins, 110, false, false);
        m_plot->initManualX(0, bins);
        m_plot->initManualY(0, 110);
        m_plot->resize(500, 400);
        m_legend = new PlotLegend(m_plot.get());
        m_plot->show();
    }
    void cleanup() { m_plot.reset(); }

    void leavesAPeak()
    {
        setBlock(*m_plot, 85, 99);
        TRY_COMPARE(m_legend->place(), QPointF(0, 0));
        setBlock(*m_plot, 0, 15);
        TRY_COMPARE(m_legend->place(), QPointF(1, 1)); // not back to the first one
    }

    void staysIfNoCornerIsMuchBetter()
    {
        setBlock(*m_plot, 0, 99);
        m_plot->grab();
        setBlock(*m_plot, 30, 60);
        TRY_VERIFY(PlotMapping::of(*m_plot).columns() == bins);
        m_plot->grab();
        QCoreApplication::processEvents();
        QCOMPARE(m_legend->place(), QPointF(1, 0));
    }

    void staysWhereTheUserPutIt()
    {
        m_legend->setPlace({ 1, 0 });
        setBlock(*m_plot, 85, 99);
        m_plot->grab();
        QCoreApplication::processEvents();
        QCOMPARE(m_legend->place(), QPointF(1, 0));
        QVERIFY(m_legend->saveState().contains(QStringLiteral("place")));
    }

    void storesNoPlaceThatItChose()
    {
        setBlock(*m_plot, 85, 99);
        TRY_COMPARE(m_legend->place(), QPointF(0, 0));
        QVERIFY(!m_legend->saveState().contains(QStringLiteral("place")));
    }

    void leavesDataInAZoomedViewAtRest()
    {
        setBlock(*m_plot, 70, 79);
        m_plot->grab();
        m_plot->setMinMaxX(10, 79); // the block is behind the legend
        m_plot->refreshPixmap();
        TRY_COMPARE(m_legend->place(), QPointF(0, 0));
        setBlock(*m_plot, 10, 20); // live data do not move it
        m_plot->refreshPixmap();
        m_plot->grab();
        QCoreApplication::processEvents();
        QVERIFY(!isWaitingForRest());
        QCOMPARE(m_legend->place(), QPointF(0, 0));
        m_plot->setMinMaxX(0, bins);
        m_plot->refreshPixmap();
        TRY_COMPARE(m_legend->place(), QPointF(1, 0)); // its place in the whole view
    }

    void leavesTheFirstDataOfAZoomedView()
    {
        m_plot->setMinMaxX(10, 79); // as of a stored view
        m_plot->refreshPixmap();
        TRY_VERIFY(isWaitingForRest());
        TRY_VERIFY(!isWaitingForRest());
        setBlock(*m_plot, 70, 79);
        m_plot->refreshPixmap();
        TRY_COMPARE(m_legend->place(), QPointF(0, 0));
    }

    void staysWhereTheUserPutItInAZoomedView()
    {
        m_legend->setPlace({ 1, 0 });
        setBlock(*m_plot, 70, 79);
        m_plot->setMinMaxX(10, 79);
        m_plot->refreshPixmap();
        m_plot->grab();
        QCoreApplication::processEvents();
        QVERIFY(!isWaitingForRest());
        QCOMPARE(m_legend->place(), QPointF(1, 0));
    }

    void measuresTheCoveredColumns()
    {
        setBlock(*m_plot, 50, 99, 60.0);
        m_plot->grab();
        const PlotMapping mapping = PlotMapping::of(*m_plot);
        const QRect frame = mapping.frameRect();
        const QList<ShownCurve> curves = shownCurves(*m_plot);
        const int middle = int(mapping.rowOf(60.0));
        const QRect across(frame.left(), middle - 5, frame.width(), 10);
        QVERIFY(std::abs(coverageOf(across, curves, mapping) - 0.5) < 0.03);
        QCOMPARE(coverageOf(across.translated(0, -20), curves, mapping), 0.0);
        QVERIFY(coverageOf(across.translated(0, 20), curves, mapping) < 0.03); // only the rising line
        QCOMPARE(coverageOf({}, curves, mapping), 0.0);
        QCOMPARE(coverageOf(across, { { {}, {}, { QList<double>(bins, std::numeric_limits<double>::quiet_NaN()) } } },
                     mapping),
            0.0);
    }

private:
    /// Whether the legend will choose a place again.
    bool isWaitingForRest() const
    {
        const QList<QTimer*> timers = m_legend->findChildren<QTimer*>();
        return std::any_of(timers.begin(), timers.end(), [](const QTimer* timer) { return timer->isActive(); });
    }

    std::unique_ptr<MultiVectorGraphWidget> m_plot;
    PlotLegend* m_legend = nullptr;
};

QTEST_MAIN(TestLegendPlacement)
#include "tst_legendplacement.moc"
