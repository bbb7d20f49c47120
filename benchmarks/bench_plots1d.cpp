// The curves of the 1D plots, drawing alone, 800 x 400, one thread: against the drawing sample by sample and against
// QCustomPlot with adaptive sampling and without antialiasing. All three take turns within a round, so that a busy
// machine slows them alike; the counters are medians over the rounds in milliseconds of the thread, and their ratios.
#include "headless.h"
#include "measure.h"
#include "support/curveoracle.h"

#include <tarnis/plots/multivectorgraphwidget.h>

#include <qcustomplot.h>

#include <QApplication>
#include <QPainter>
#include <QPixmap>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace {

constexpr int seriesCount = 8;
const QSize pictureSize(800, 400);
const QRect graph(QPoint(56, 18), QPoint(783, 358));

enum Shape { Noisy, Smooth, Counts, Tiny, Zeros };
enum Form { Lines, Columns, Crosses };

struct Case {
    int samples = 0;
    Shape shape = Noisy;
    bool logScale = false;
    int addType = MultiVectorGraphWidget::AddNone;
    int groupSize = 8;
    Form form = Lines;
    double shown = 1.0; ///< visible fraction of the samples, from the middle on
    bool function = false; ///< X is a function of the position
    int alpha = 255;
};

QList<double> samplesOf(const Case& test, int number)
{
    std::mt19937_64 generator(static_cast<std::uint64_t>(number) + 1);
    std::uniform_real_distribution<double> noise(0.0, 1000.0);
    std::poisson_distribution<int> counts(2.0);
    QList<double> samples(test.samples, 0.0);
    for (int i = 0; i < test.samples; ++i) {
        if (test.shape == Noisy)
            samples[i] = noise(generator);
        else if (test.shape == Smooth)
            samples[i] = 500.0 + 490.0 * std::sin((i * (5.0 + number) / test.samples + 0.1 * number) * 6.283);
        else if (test.shape == Counts)
            samples[i] = counts(generator);
        else if (test.shape == Tiny) // nothing may be merged on a log axis
            samples[i] = i == 0 ? 1000.0 : noise(generator) * 1e-19;
    }
    return samples;
}

QPixmap emptyPicture()
{
    QPixmap picture(pictureSize);
    picture.fill(Qt::black);
    return picture;
}

double root(double position, void*)
{
    return std::sqrt(position);
}

double square(double x, void*)
{
    return x * x;
}

/// A plot whose range and rectangle are set explicitly.
class Plot : public MultiVectorGraphWidget {
public:
    explicit Plot(const Case& test)
    {
        m_groupSize = test.groupSize;
        m_addType = static_cast<AddType>(test.addType);
        m_columnChart = test.form == Columns;
        m_connectPoints = test.form == Lines;
        m_logScaleY = test.logScale;
        m_graphRect = graph;
        for (int i = 0; i < seriesCount; ++i) {
            setData(i, samplesOf(test, i), 1000.0);
            m_data[i].color.setAlpha(test.alpha);
        }
        if (test.function)
            setFuncX2Plot(root, square);
        onAutoScaleX(false);
        onAutoScaleY(false);
        double top = 0.0;
        for (const Data& series : std::as_const(m_data))
            top = std::max(top, *std::max_element(series.values.cbegin(), series.values.cend()));
        const int members = test.addType == AddNone ? 1 : test.groupSize;
        const double first = test.shown < 1.0 ? 0.5 * test.samples : 0.0;
        setMinMaxX(first, first + test.shown * test.samples);
        setMinMaxY(test.logScale ? 1.0 : 0.0, top * members);
    }

    tarnis::testing::MultiState state() const
    {
        tarnis::testing::MultiState state;
        state.minX = m_minX;
        state.maxX = m_maxX;
        state.minY = m_minY;
        state.maxY = m_maxY;
        state.logScaleY = m_logScaleY;
        state.graphRect = m_graphRect;
        state.data = m_data;
        state.groupSize = m_groupSize;
        state.addType = m_addType;
        state.columnChart = m_columnChart;
        state.connectPoints = m_connectPoints;
        state.x2plot = m_funcX2Plot;
        state.plot2x = m_funcPlot2X;
        return state;
    }

    using MultiVectorGraphWidget::m_data;
    using MultiVectorGraphWidget::m_maxY;
    using MultiVectorGraphWidget::m_minY;
};

/// The same curves as graphs of QCustomPlot in the same rectangle.
class PeerPlot {
public:
    explicit PeerPlot(const Plot& plot, const Case& test)
    {
        m_plot.resize(pictureSize);
        m_plot.axisRect()->setAutoMargins(QCP::msNone);
        m_plot.axisRect()->setMargins(QMargins(graph.left(), graph.top(), pictureSize.width() - 1 - graph.right(),
            pictureSize.height() - 1 - graph.bottom()));
        m_plot.xAxis->setRange(0.0, test.samples);
        m_plot.yAxis->setRange(plot.m_minY, plot.m_maxY);
        if (test.logScale)
            m_plot.yAxis->setScaleType(QCPAxis::stLogarithmic);
        for (const MultiVectorGraphWidget::Data& series : plot.m_data) {
            auto* curve = new Graph(m_plot.xAxis, m_plot.yAxis);
            QVector<QCPGraphData> points(series.values.size());
            for (qsizetype i = 0; i < points.size(); ++i)
                points[i] = QCPGraphData(static_cast<double>(i) + 0.5, series.values.at(i));
            curve->data()->set(points, true);
            curve->setPen(QPen(series.color));
            curve->setAntialiased(false);
            curve->setAdaptiveSampling(true);
            m_graphs.push_back(curve);
        }
        m_plot.setNotAntialiasedElements(QCP::aeAll);
        m_plot.replot();
    }

    void draw(QPixmap& picture)
    {
        QCPPainter painter(&picture);
        painter.setClipRect(m_plot.axisRect()->rect());
        for (Graph* curve : m_graphs) {
            painter.setPen(curve->pen());
            curve->draw(&painter);
        }
    }

private:
    class Graph : public QCPGraph {
    public:
        using QCPGraph::draw;
        using QCPGraph::QCPGraph;
    };

    QCustomPlot m_plot;
    std::vector<Graph*> m_graphs; // owned by the plot
};

void drawCurves(benchmark::State& state, const Case& test)
{
    Plot plot(test);
    tarnis::testing::MultiState oracle = plot.state();
    PeerPlot peer(plot, test);
    const bool hasPeer = test.addType == MultiVectorGraphWidget::AddNone && test.form == Lines && test.shown == 1.0
        && !test.function && test.alpha == 255 && test.shape <= Counts;
    std::vector<double> own;
    std::vector<double> speltOut;
    std::vector<double> peers;
    bool ownFirst = false;
    for (auto unused : state) {
        QPixmap picture = emptyPicture();
        QPixmap expected = emptyPicture();
        const auto drawOwn = [&] {
            QPainter painter(&picture);
            painter.setClipRect(graph);
            plot.onPaint(painter, graph);
        };
        const auto drawSpeltOut = [&] {
            QPainter painter(&expected);
            painter.setClipRect(graph);
            tarnis::testing::paintMulti(oracle, painter, graph);
        };
        QPixmap other = emptyPicture();
        ownFirst = !ownFirst; // later ones find the engine's code in the cache
        if (ownFirst)
            own.push_back(millisecondsOf(drawOwn));
        speltOut.push_back(millisecondsOf(drawSpeltOut));
        if (hasPeer)
            peers.push_back(millisecondsOf([&] { peer.draw(other); }));
        if (!ownFirst)
            own.push_back(millisecondsOf(drawOwn));
        if (picture.toImage() != expected.toImage()) {
            state.SkipWithError("the pictures differ");
            return;
        }
        state.SetIterationTime(own.back() / 1000.0);
    }
    state.counters["own_ms"] = median(own);
    state.counters["spelt_ms"] = median(speltOut);
    state.counters["x_spelt"] = median(speltOut) / median(own);
    if (hasPeer) {
        state.counters["peer_ms"] = median(peers);
        state.counters["x_peer"] = median(peers) / median(own);
    }
}

void addCase(const std::string& name, const Case& test)
{
    const int rounds = test.samples >= 1000000 ? 5 : test.samples >= 100000 ? 11 : 41;
    benchmark::RegisterBenchmark(name.c_str(), [test](benchmark::State& state) { drawCurves(state, test); })
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(rounds);
}

void addCases()
{
    using Multi = MultiVectorGraphWidget;
    for (const auto& [count, countName] :
        { std::pair { 1000, "1k" }, { 10000, "10k" }, { 100000, "100k" }, { 1000000, "1M" } }) {
        const std::string size = std::string("/8x") + countName;
        for (const auto& [shape, shapeName] :
            { std::pair { Noisy, "noisy" }, { Smooth, "smooth" }, { Counts, "counts" } }) {
            addCase(shapeName + size, { .samples = count, .shape = shape });
            addCase(shapeName + std::string("-log") + size, { .samples = count, .shape = shape, .logScale = true });
        }
        addCase("noisy-group-sums" + size,
            { .samples = count, .shape = Noisy, .addType = Multi::AddEachGroup, .groupSize = 4 });
        addCase("smooth-group-sums" + size,
            { .samples = count, .shape = Smooth, .addType = Multi::AddEachGroup, .groupSize = 4 });
        if (count <= 100000) {
            addCase("noisy-columns" + size, { .samples = count, .shape = Noisy, .form = Columns });
            addCase("noisy-crosses" + size, { .samples = count, .shape = Noisy, .form = Crosses });
        }
    }
}

/// Cases in which merging has little benefit or is not allowed: the plot must not be slower than single drawing calls.
void addHardCases()
{
    for (const int count : { 2, 10, 100 })
        addCase("few/8x" + std::to_string(count), { .samples = count, .shape = Noisy });
    addCase("few-smooth/8x100", { .samples = 100, .shape = Smooth });
    addCase("zoomed/8x100k to 10", { .samples = 100000, .shape = Noisy, .shown = 1e-4 });
    addCase("zoomed/8x100k to 1000", { .samples = 100000, .shape = Noisy, .shown = 1e-2 });
    addCase("function/8x10k", { .samples = 10000, .shape = Noisy, .function = true });
    addCase("translucent/8x10k", { .samples = 10000, .shape = Noisy, .alpha = 100 });
    addCase("tiny-log/8x10k", { .samples = 10000, .shape = Tiny, .logScale = true });
    addCase("zeros/8x10k", { .samples = 10000, .shape = Zeros });
    addCase("few-columns/8x10", { .samples = 10, .shape = Noisy, .form = Columns });
    addCase("few-crosses/8x10", { .samples = 10, .shape = Noisy, .form = Crosses });
    addCase("translucent-columns/8x1k", { .samples = 1000, .shape = Noisy, .form = Columns, .alpha = 100 });
}

} // namespace

int main(int argc, char** argv)
{
    prepareHeadless();
    const QApplication application(argc, argv);
    addCases();
    addHardCases();
    return runBenchmarks(argc, argv);
}
