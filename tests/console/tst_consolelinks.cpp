// Groups of linked plots: which axes share a range, how plots join and leave, what is stored.
#include "plots/plotlinks.h"
#include "plots/plottools.h"
#include "support/visibleplot.h"
#include "support/wait.h"

#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/plotcalibration.h>
#include <tarnis/tools/plotcrosshair.h>
#include <tarnis/tools/plottoolbar.h>
#include <tarnis/tools/plotview.h>

#include <QAction>
#include <QImage>
#include <QMenu>
#include <QPointer>
#include <QTest>
#include <QToolButton>

using namespace console;
using namespace tarnis::testing;
using tarnis::AxisRange;

namespace {

/// A plot with its bar.
template <typename Plot> struct LinkedPlot {
    LinkedPlot(const QString& nameX, const QString& nameY)
    {
        plot.init(nameX, nameY, 100.0, 50.0, true, true);
        addLinks(bar);
    }
    PlotLink& link() const { return *plot.template findChild<PlotLink*>(); }
    QAction& action() { return *bar.actions().constFirst(); }
    void choose(const char* group) { bar.template findChild<QAction*>(QLatin1StringView(group))->trigger(); }
    Plot plot;
    tarnis::PlotToolBar bar { &plot };
};
using Curve = LinkedPlot<VectorGraphWidget>;
using Map = LinkedPlot<XY2DGraphWidget>;

const QString timeName = QStringLiteral("Time [us]");
const QString countsName = QStringLiteral("Counts");

} // namespace

class TestConsoleLinks : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void plotsOfAGroupShareTheAxisOfTheSameName()
    {
        Curve first(timeName, countsName);
        Curve second(timeName, countsName);
        Curve energies(QStringLiteral("Energy [keV]"), countsName);
        for (Curve* const curve : { &first, &second, &energies })
            curve->choose("linkGroupA");
        const AxisRange before = rangeX(energies.plot);
        showX(first.plot, { 20.0, 30.0 });
        TRY_COMPARE(rangeX(second.plot), (AxisRange { 20.0, 30.0 }));
        QCOMPARE(rangeX(energies.plot), before);
        showX(second.plot, { 5.0, 6.0 });
        TRY_COMPARE(rangeX(first.plot), (AxisRange { 5.0, 6.0 }));
    }

    void countsOfCurvesStayTheirOwn()
    {
        Curve first(timeName, countsName);
        Curve second(timeName, countsName);
        first.choose("linkGroupA");
        second.choose("linkGroupA");
        const AxisRange before = rangeY(second.plot);
        showY(first.plot, { 1.0, 2.0 });
        showX(first.plot, { 20.0, 30.0 });
        TRY_COMPARE(rangeX(second.plot), (AxisRange { 20.0, 30.0 }));
        QCOMPARE(rangeY(second.plot), before);
    }

    void energiesNeedTheSameCalibration()
    {
        tarnis::EnergyCalibration calibration;
        calibration.coefficients = { 0.0, 2.0 };
        tarnis::EnergyCalibration other = calibration;
        other.coefficients = { 0.0, 3.0 };
        Curve first(timeName, countsName);
        Curve second(timeName, countsName);
        Curve apart(timeName, countsName);
        QCOMPARE(tarnis::PlotCalibration::apply(first.plot, calibration), QString());
        QCOMPARE(tarnis::PlotCalibration::apply(second.plot, calibration), QString());
        QCOMPARE(tarnis::PlotCalibration::apply(apart.plot, other), QString());
        QCOMPARE(apart.plot.getNameX(), first.plot.getNameX());
        for (Curve* const curve : { &first, &second, &apart })
            curve->choose("linkGroupA");
        const AxisRange before = rangeX(apart.plot);
        showX(first.plot, { 20.0, 30.0 });
        TRY_COMPARE(rangeX(second.plot), (AxisRange { 20.0, 30.0 }));
        QCOMPARE(rangeX(apart.plot), before);
    }

    void aMapSharesBothAxes()
    {
        Map map(QStringLiteral("X"), timeName);
        Map other(QStringLiteral("X"), timeName);
        Curve curve(timeName, countsName);
        map.choose("linkGroupB");
        other.choose("linkGroupB");
        curve.choose("linkGroupB");
        showX(map.plot, { 1.0, 2.0 });
        showY(map.plot, { 3.0, 4.0 });
        TRY_COMPARE(rangeX(other.plot), (AxisRange { 1.0, 2.0 }));
        TRY_COMPARE(rangeY(other.plot), (AxisRange { 3.0, 4.0 }));
        TRY_COMPARE(rangeX(curve.plot), (AxisRange { 3.0, 4.0 }));
    }

    void groupsAreApartAndCanBeLeft()
    {
        Curve first(timeName, countsName);
        Curve second(timeName, countsName);
        Curve third(timeName, countsName);
        first.choose("linkGroupA");
        second.choose("linkGroupA");
        third.choose("linkGroupB");
        const AxisRange before = rangeX(third.plot);
        second.choose("linkGroup"); // not linked
        showX(first.plot, { 20.0, 30.0 });
        third.choose("linkGroupA"); // the range of the group
        TRY_COMPARE(rangeX(third.plot), (AxisRange { 20.0, 30.0 }));
        QCOMPARE(rangeX(second.plot), before);
    }

    void aClosedPlotLeavesItsGroup()
    {
        Curve first(timeName, countsName);
        first.choose("linkGroupA");
        {
            Curve second(timeName, countsName);
            second.choose("linkGroupA");
        }
        showX(first.plot, { 20.0, 30.0 });
        Curve third(timeName, countsName);
        third.choose("linkGroupA");
        TRY_COMPARE(rangeX(third.plot), (AxisRange { 20.0, 30.0 }));
    }

    void aCrossIsShownInThePlotsOfItsGroup()
    {
        Curve first(timeName, countsName);
        Curve second(timeName, countsName);
        Curve apart(timeName, countsName);
        for (Curve* const curve : { &first, &second, &apart }) {
            curve->plot.setMaxValue(3.0);
            attachTools(curve->plot);
            curve->plot.findChild<tarnis::PlotCrosshair*>()->setOn(true);
            showActive(curve->plot);
        }
        first.choose("linkGroupA");
        second.choose("linkGroupA");
        apart.choose("linkGroupB");
        const QImage none = second.plot.grab().toImage();
        const QImage noneApart = apart.plot.grab().toImage();
        first.plot.findChild<tarnis::PlotCrosshair*>()->pinAt({ 20.0, 1.0 });
        QVERIFY(second.plot.grab().toImage() != none);
        QCOMPARE(apart.plot.grab().toImage(), noneApart);
        second.plot.findChild<tarnis::PlotCrosshair*>()->setOn(false);
        QCOMPARE(second.plot.grab().toImage(), none);
    }

    void theButtonNamesTheGroup()
    {
        Curve curve(timeName, countsName);
        QCOMPARE(curve.action().text(), QStringLiteral("Link"));
        curve.choose("linkGroupC");
        QCOMPARE(curve.action().text(), QStringLiteral("Link C"));
        curve.choose("linkGroup");
        QCOMPARE(curve.action().text(), QStringLiteral("Link"));
        QPointer<QMenu> menu = curve.action().menu();
        delete &curve.link();
        TRY_VERIFY(menu.isNull());
    }

    void theGroupIsPartOfTheView()
    {
        Curve first(timeName, countsName);
        showX(first.plot, { 20.0, 30.0 });
        first.choose("linkGroupA");
        const QJsonObject state = tarnis::PlotView::stateOf(first.plot);
        Curve second(timeName, countsName);
        QCOMPARE(tarnis::PlotView::apply(second.plot, state), QString());
        QCOMPARE(second.link().group(), QStringLiteral("A"));
        showX(second.plot, { 40.0, 50.0 });
        TRY_COMPARE(rangeX(first.plot), (AxisRange { 40.0, 50.0 }));
        second.link().restoreState({ { QStringLiteral("group"), QStringLiteral("unknown") } });
        QCOMPARE(second.link().group(), QStringLiteral("A"));
    }
};

QTEST_MAIN(TestConsoleLinks)
#include "tst_consolelinks.moc"
