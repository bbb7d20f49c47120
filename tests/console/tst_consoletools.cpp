// The tools on the plots of the console's windows, and their stored views.
#include "console/consolefixture.h"
#include "console/histogramserver.h"
#include "console/windowlists.h"
#include "support/wait.h"

#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/binaggregation.h>
#include <tarnis/tools/colourlevels.h>
#include <tarnis/tools/errorbars.h>
#include <tarnis/tools/lineprofile.h>
#include <tarnis/tools/plotlegend.h>
#include <tarnis/tools/plotnavigator.h>
#include <tarnis/tools/plottoolbar.h>
#include <tarnis/tools/referencecurves.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

using namespace console;
using namespace tarnis::testing;

namespace {

std::pair<double, double> rangeX(XYGraphWidget& plot)
{
    std::pair<double, double> ends;
    plot.getMinMaxX(ends.first, ends.second);
    return ends;
}

QString viewFile(const ConsoleFixture& fixture, const QString& id)
{
    return QFileInfo(fixture.store.fileName()).path() + QStringLiteral("/views/") + id + QStringLiteral(".json");
}

} // namespace

class TestConsoleTools : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void liveWindowsHaveABarAboveTheirPlot()
    {
        HistogramServer server;
        ConsoleFixture fixture;
        fixture.use(server);
        QVERIFY(fixture.reaches(ServerState::Up) && isListed(fixture, "time"));
        for (const char* const id : { "curves", "map" }) {
            QWidget* const window = fixture.find(id);
            auto* const bar = window->findChild<tarnis::PlotToolBar*>();
            QVERIFY2(bar, id);
            QVERIFY(bar->plot() != nullptr);
            QCOMPARE(window->findChildren<tarnis::PlotToolBar*>().size(), 1);
            const auto count = [&](auto tool) { // of the plot itself, not of the plots beside it
                const auto tools = tarnis::InteractiveTool::toolsOf(*bar->plot());
                return std::count_if(tools.begin(), tools.end(), [&](tarnis::InteractiveTool* attached) {
                    return qobject_cast<decltype(tool)>(attached) != nullptr;
                });
            };
            const int onMap = qobject_cast<XY2DGraphWidget*>(bar->plot()) != nullptr ? 1 : 0;
            QCOMPARE(count(static_cast<tarnis::PlotNavigator*>(nullptr)), 1);
            QCOMPARE(count(static_cast<tarnis::BinAggregation*>(nullptr)), 1);
            QCOMPARE(count(static_cast<tarnis::ColourLevels*>(nullptr)), onMap);
            QCOMPARE(count(static_cast<tarnis::LineProfile*>(nullptr)), onMap);
            QCOMPARE(count(static_cast<tarnis::ErrorBars*>(nullptr)), 1 - onMap);
            QCOMPARE(count(static_cast<tarnis::ReferenceCurves*>(nullptr)), 1 - onMap);
            TRY_VERIFY(bar->findChild<QAction*>() != nullptr && bar->actions().size() > 8);
        }
    }

    void aWindowOpensWithTheViewThatItHad()
    {
        HistogramServer server;
        ConsoleFixture fixture;
        fixture.use(server);
        QVERIFY(fixture.reaches(ServerState::Up) && isListed(fixture, "time"));
        auto* window = fixture.open<Graph1DDialog>("curves");
        QPointer<MultiVectorGraphWidget> plot = window->getGraphWidget();
        TRY_VERIFY(plot->hasData());
        const auto whole = rangeX(*plot);
        auto* const navigator = plot->findChild<tarnis::PlotNavigator*>();
        navigator->zoomIn();
        plot->findChild<tarnis::PlotLegend*>()->setPlace({ 0.5, 0.25 });
        const auto zoomed = rangeX(*plot);
        QVERIFY(zoomed.second - zoomed.first < whole.second - whole.first);
        window->close();
        TRY_VERIFY(plot.isNull());
        QVERIFY(QFile::exists(viewFile(fixture, "curves")));

        window = fixture.open<Graph1DDialog>("curves");
        plot = window->getGraphWidget();
        QCOMPARE(rangeX(*plot), zoomed);
        TRY_VERIFY(plot->hasData());
        QCOMPARE(rangeX(*plot), zoomed);
        QCOMPARE(plot->findChild<tarnis::PlotLegend*>()->place(), QPointF(0.5, 0.25));
        plot->findChild<tarnis::PlotNavigator*>()->goHome();
        QCOMPARE(rangeX(*plot), whole);
    }

    void aViewThatTheAxisDoesNotReachIsNotShown()
    {
        HistogramServer server;
        ConsoleFixture fixture;
        const QString path = viewFile(fixture, "curves");
        QVERIFY(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(R"({"format":"tarnis-view","version":1,"x":{"auto":false,"min":1e7,"max":2e7}})");
        file.close();
        fixture.use(server);
        QVERIFY(fixture.reaches(ServerState::Up) && isListed(fixture, "time"));
        auto& plot = *fixture.open<Graph1DDialog>("curves")->getGraphWidget();
        TRY_VERIFY(plot.hasData());
        QVERIFY(rangeX(plot).second < 1e7);
    }

    void aDamagedViewIsReportedAndLeftAlone()
    {
        HistogramServer server;
        ConsoleFixture fixture;
        const QString path = viewFile(fixture, "curves");
        QVERIFY(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("{\"format\":");
        file.close();
        fixture.use(server);
        QVERIFY(fixture.reaches(ServerState::Up) && isListed(fixture, "time"));
        auto* const window = fixture.open<Graph1DDialog>("curves");
        QVERIFY2(fixture.alert().text.contains(path), qPrintable(fixture.alert().text));
        QPointer<QWidget> guard = window;
        window->close();
        TRY_VERIFY(guard.isNull());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("{\"format\":"));
    }
};

QTEST_MAIN(TestConsoleTools)
#include "tst_consoletools.moc"
