// Live widgets with a scripted server: data, states, the status line, shared polls.
#include "support/replies.h"
#include "support/scriptedserver.h"
#include "support/wait.h"

#include <tarnis/client/histogrampoller.h>
#include <tarnis/live/livemap.h>
#include <tarnis/live/liveplot.h>
#include <tarnis/plots/curvenames.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/plotlayoutitem.h>
#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/plottoolbar.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QMetaProperty>
#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>

#include <limits>
#include <memory>

using namespace tarnis;
using namespace tarnis::testing;
using namespace std::chrono_literals;

using std::chrono::milliseconds;
using State = LiveWidget::State;

namespace {

const QByteArray axis("OK: (0 8 2)\n");

/// A server and a client that is connected to it.
struct Connection {
    explicit Connection()
        : client(std::make_unique<Client>(quickClient()))
    {
        client->connectTo(server.host(), server.port());
    }
    ScriptedServer server;
    std::unique_ptr<Client> client;
};

void follow(LiveWidget& widget, Connection& connection, int interval = 1)
{
    widget.setInterval(interval);
    widget.setCommand("hist");
    widget.setClient(connection.client.get());
    widget.QWidget::show();
}

QString line(const LiveWidget& widget)
{
    return widget.findChild<QLabel*>()->text();
}

} // namespace

class TestLiveWidgets : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void cleanup() { QThreadPool::globalInstance()->waitForDone(); }

    void showsCurves()
    {
        Connection connection;
        connection.server.answer("hist", { Step::doubles({ 1, 10, 2, 20 }, axis) }); // two rows of two bins
        LivePlot widget;
        widget.setSeriesWord("Module");
        widget.setSeriesNames({ "Ge" });
        HistogramFormat format;
        format.rows = 2;
        widget.setFormat(format);
        QSignalSpy updated(&widget, &LiveWidget::updated);
        follow(widget, connection);
        QVERIFY(eventually([&] { return !updated.isEmpty(); }));
        QCOMPARE(widget.state(), State::Current);
        QVERIFY2(line(widget).startsWith("The plot shows the data of "), qPrintable(line(widget)));
        QCOMPARE(line(widget), widget.statusText());
        QList<double> row;
        QVERIFY(widget.plot()->getData(1, row));
        QCOMPARE(row, QList<double>({ 10, 20 }));
        QCOMPARE(curveNames(*widget.plot()), QStringList({ "Ge", "Module 1" }));
        QCOMPARE(PlotMapping::of(*widget.plot()).x().max, 8.0);

        // The user's zoom is kept with the next data.
        widget.plot()->onAutoScaleX(false);
        widget.plot()->setMinMaxX(2, 4);
        const qsizetype then = updated.size();
        QVERIFY(eventually([&] { return updated.size() > then + 1; }));
        QCOMPARE(PlotMapping::of(*widget.plot()).x().max, 4.0);
    }

    void showsMaps()
    {
        Connection connection;
        connection.server.answerInTurn("hist",
            { { Step::doubles({ 1, 2, 3, 4, 5, 6 }, "OK: exported 2 x 3 y\n") },
                { Step::doubles({ 7, 8 }, "OK: exported 1 x 2 y\n") } });
        LiveMap widget;
        HistogramFormat format;
        format.kind = HistogramFormat::Kind::Map;
        widget.setFormat(format);
        QList<qsizetype> rows;
        connect(&widget, &LiveWidget::updated, this, [&] {
            QList<QList<double>> data;
            widget.plot()->getData(data);
            rows.append(data.size());
        });
        follow(widget, connection);
        QVERIFY(eventually([&] { return rows.size() > 1; }));
        QCOMPARE(rows.first(), 3);
        QCOMPARE(rows.at(1), 2);
        widget.setCommand("another");
        QList<QList<double>> data;
        widget.plot()->getData(data);
        QVERIFY(data.isEmpty());
    }

    void reportsErrors()
    {
        Connection connection;
        connection.server.answerInTurn("hist",
            { { Step::binary("", "NG:<b>not</b> ready\n") }, { Step::doubles({ 1, std::nan("") }, axis) },
                { Step::binary("123", axis) } });
        LivePlot widget;
        QCOMPARE(widget.state(), State::Idle);
        QCOMPARE(widget.statusText(), QStringLiteral("No histogram is chosen. There are no data yet."));
        widget.setCommand("hist");
        QCOMPARE(widget.statusText(), QStringLiteral("There is no connection to a server. There are no data yet."));
        QStringList lines;
        connect(&widget, &LiveWidget::statusChanged, this,
            [&](State state, const QString& text) { lines << QString::number(int(state)) + ": " + text; });
        follow(widget, connection);
        QCOMPARE(lines.last(), QStringLiteral("2: Waiting for data. There are no data yet."));
        QVERIFY(eventually([&] { return lines.size() > 1; }));
        QCOMPARE(lines.last(), QStringLiteral("5: No new data: <b>not</b> ready. There are no data yet."));
        QCOMPARE(widget.findChild<QLabel*>()->textFormat(), Qt::PlainText);
        QVERIFY(eventually([&] { return lines.size() > 2; }));
        QVERIFY2(lines.last().endsWith("Values that are not finite: 1."), qPrintable(lines.last()));
        QCOMPARE(widget.state(), State::Current);
        QVERIFY(eventually([&] { return widget.state() == State::Failed; }));
        QVERIFY(line(widget).contains("64-bit"));
        QCOMPARE(widget.last().rows.size(), 1); // the plot keeps the data
        widget.setPaused(true);
        QVERIFY(line(widget).startsWith("Paused. The plot shows the data of "));
        widget.setPaused(false);
        QCOMPARE(widget.state(), State::Waiting);
    }

    void reportsAMapInPlaceOfACurve_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("rows");
        QTest::newRow("read as a map") << int(HistogramFormat::Kind::Map) << 0;
        QTest::newRow("read as rows that fit") << int(HistogramFormat::Kind::Rows) << 2;
        QTest::newRow("read as rows") << int(HistogramFormat::Kind::Rows) << 0;
        QTest::newRow("read as pairs") << int(HistogramFormat::Kind::Pairs) << 0;
    }
    void reportsAMapInPlaceOfACurve()
    {
        QFETCH(int, kind);
        QFETCH(int, rows);
        Connection connection;
        connection.server.answerInTurn("hist",
            { { Step::doubles({ 1, 2, 3, 4 }, "OK: exported 2 x 2 y\n") },
                { Step::doubles({ 1, 2, 3, 4 }, "OK: exported 2 x 2 y\n") }, { Step::doubles({ 1, 2 }, axis) } });
        LivePlot widget;
        HistogramFormat format;
        format.kind = HistogramFormat::Kind(kind);
        format.rows = rows;
        widget.setFormat(format);
        follow(widget, connection);
        QVERIFY(eventually([&] { return widget.state() == State::Failed; }));
        QVERIFY2(line(widget).contains("The reply is a map, and"), qPrintable(line(widget)));
        QVERIFY(widget.last().rows.isEmpty());
        widget.setFormat({}); // polling has continued
        QVERIFY(eventually([&] { return widget.state() == State::Current; }));
    }

    void reportsACurveInPlaceOfAMap_data()
    {
        QTest::addColumn<int>("kind");
        QTest::newRow("read as a map") << int(HistogramFormat::Kind::Map);
        QTest::newRow("read as rows") << int(HistogramFormat::Kind::Rows);
        QTest::newRow("read as pairs") << int(HistogramFormat::Kind::Pairs);
    }
    void reportsACurveInPlaceOfAMap()
    {
        QFETCH(int, kind);
        Connection connection;
        connection.server.answer("hist", { Step::doubles({ 1, 2 }, axis) });
        connection.server.answer("map", { Step::doubles({ 1, 2 }, "OK: exported 2 x 1 y\n") });
        LiveMap widget;
        HistogramFormat format;
        format.kind = HistogramFormat::Kind(kind);
        widget.setFormat(format);
        follow(widget, connection);
        QVERIFY(eventually([&] { return widget.state() == State::Failed; }));
        QVERIFY2(line(widget).contains("The reply is a 1D histogram"), qPrintable(line(widget)));
        QVERIFY(widget.last().rows.isEmpty());
        format.kind = HistogramFormat::Kind::Map;
        widget.setFormat(format);
        widget.setCommand("map");
        QVERIFY(eventually([&] { return widget.state() == State::Current; }));
    }

    void boundsTimes()
    {
        LivePlot widget;
        PollOptions options;
        options.interval = options.staleAfter = milliseconds::max();
        widget.setOptions(options);
        QCOMPARE(widget.interval(), std::numeric_limits<int>::max());
        QCOMPARE(widget.staleAfter(), std::numeric_limits<int>::max());
        options.interval = options.staleAfter = milliseconds::min();
        widget.setOptions(options);
        QCOMPARE(widget.interval(), 1);
        QCOMPARE(widget.staleAfter(), 0);
    }

    void reportsThatTheServerIsLate()
    {
        Connection connection;
        connection.server.answerInTurn("hist", { { Step::doubles({ 1, 2 }, axis) }, { Step::silence() } });
        LivePlot widget;
        widget.setStaleAfter(10);
        follow(widget, connection);
        QVERIFY(eventually([&] { return widget.state() == State::Stale && widget.last().isOk(); }));
        QVERIFY(line(widget).startsWith("No new data: the server is late."));
    }

    void widgetsOfOneHistogramHaveTimesOfTheirOwn()
    {
        Connection connection;
        connection.server.answerInTurn("hist", { { Step::doubles({ 1, 2 }, axis) }, { Step::silence() } });
        LivePlot patient;
        patient.setStaleAfter(0);
        follow(patient, connection);
        QVERIFY(eventually([&] { return patient.state() == State::Current; }));
        LivePlot strict;
        strict.setStaleAfter(10);
        follow(strict, connection);
        QVERIFY(eventually([&] { return strict.state() == State::Stale; }));
        QCOMPARE(patient.state(), State::Current);
        // A longer interval is used once both have it.
        const auto shared =
            HistogramPoller::shared(*connection.client, "hist", strict.format(), { .interval = std::chrono::hours(2) });
        patient.setInterval(3600000);
        QCOMPARE(shared->interval(), 1ms);
        strict.setInterval(3600000);
        QCOMPARE(shared->interval(), 1h);
    }

    void mayBeDeletedWithTheDataOfAnother()
    {
        Connection connection;
        connection.server.answer("hist", { Step::doubles({ 1, 2 }, axis) });
        LivePlot first;
        follow(first, connection);
        QVERIFY(eventually([&] { return first.state() == State::Current; }));
        auto second = std::make_unique<LivePlot>();
        second->setCommand("hist");
        second->show();
        connect(second.get(), &LiveWidget::updated, this, [&] { second.reset(); });
        second->setClient(connection.client.get()); // has the data of the first at once
        QVERIFY(!second);
    }

    void pollsOnlyWhileItIsVisible()
    {
        Connection connection;
        connection.server.answer("hist", { Step::doubles({ 1, 2 }, axis) });
        LivePlot first;
        LivePlot second;
        QSignalSpy one(&first, &LiveWidget::updated);
        QSignalSpy two(&second, &LiveWidget::updated);
        follow(first, connection, 3600000);
        QVERIFY(eventually([&] { return !one.isEmpty(); }));
        second.setInterval(3600000);
        second.setCommand("hist");
        second.setClient(connection.client.get());
        QCOMPARE(second.state(), State::Waiting);
        QVERIFY(two.isEmpty());
        second.show(); // has the data of the first at once, without a poll
        QCOMPARE(two.size(), 1);
        QCOMPARE(second.state(), State::Current);
        QCOMPARE(connection.server.requests().count("hist"), 1);
        second.hide();
        QCOMPARE(second.state(), State::Waiting);
        QVERIFY(second.statusText().startsWith("Waiting for data. The plot shows the data of "));
    }

    void outlivesItsClient()
    {
        Connection connection;
        connection.server.answer("hist", { Step::doubles({ 1, 2 }, axis) });
        LivePlot widget;
        follow(widget, connection);
        QVERIFY(eventually([&] { return widget.state() == State::Current; }));
        connection.client.reset();
        QCOMPARE(widget.state(), State::Idle);
        QVERIFY(!widget.client());
    }

    void mayBeDeletedByItsSignals()
    {
        Connection connection;
        connection.server.answer("hist", { Step::doubles({ 1, 2 }, axis) });
        auto widget = std::make_unique<LivePlot>();
        connect(widget.get(), &LiveWidget::updated, this, [&] { widget.reset(); });
        follow(*widget, connection);
        QVERIFY(eventually([&] { return !widget; }));
        widget = std::make_unique<LivePlot>();
        connect(widget.get(), &LiveWidget::statusChanged, this, [&](State state) {
            if (state == State::Current)
                widget.reset();
        });
        follow(*widget, connection);
        QVERIFY(eventually([&] { return !widget; }));
    }

    void hasPropertiesForADesigner()
    {
        LivePlot plot;
        LiveMap map;
        const QList<std::pair<const char*, QVariant>> values { { "command", "hist" }, { "interval", 20 },
            { "staleAfter", 30 }, { "nameX", "E" }, { "nameY", "N" }, { "paused", true }, { "statusShown", false },
            { "tools", false }, { "toolBarShown", true }, { "legendShown", true }, { "logScale", true },
            { "seriesWord", "Module" }, { "seriesNames", QStringList { "a", "b" } } };
        for (QObject* const widget : { static_cast<QObject*>(&plot), static_cast<QObject*>(&map) }) {
            for (const auto& [name, value] : values) {
                const int index = widget->metaObject()->indexOfProperty(name);
                if (index < 0)
                    continue;
                const QMetaProperty property = widget->metaObject()->property(index);
                QVERIFY2(property.write(widget, value), name);
                QCOMPARE(property.read(widget), value);
            }
        }
        QVERIFY(plot.metaObject()->indexOfProperty("seriesNames") >= 0);
        QVERIFY(map.metaObject()->indexOfProperty("logScale") >= 0);
        plot.setToolBarShown(false);
        QVERIFY(!plot.findChild<PlotToolBar*>());
        plot.setToolBarShown(true);
        QVERIFY(plot.findChild<PlotToolBar*>());
        plot.setInterval(-1);
        QCOMPARE(plot.interval(), 1);
        plot.setTools(true);
        QVERIFY(plot.hasTools());
    }

    void plotsHaveASizeInLayouts()
    {
        LivePlot live;
        QVERIFY(live.sizeHint().width() >= 480 && live.sizeHint().height() >= 320);
        QVERIFY(live.minimumSizeHint().width() >= 200);

        QWidget window;
        auto* const layout = new QHBoxLayout(&window);
        auto* const plot = new MultiVectorGraphWidget(&window);
        layout->addWidget(new QLabel("beside", &window));
        layout->addItem(new PlotLayoutItem(plot));
        QVERIFY(window.sizeHint().width() > 480);
        window.resize(900, 400);
        window.show();
        QVERIFY(plot->width() > 700); // the remaining space
        plot->setMinimumWidth(600);
        plot->setMaximumHeight(100);
        QVERIFY(window.minimumSizeHint().width() > 600);
        plot->hide();
        QVERIFY(layout->sizeHint().width() < 200);
        delete plot;
        QCOMPARE(layout->count(), 1);
    }
};

QTEST_MAIN(TestLiveWidgets)
#include "tst_livewidgets.moc"
