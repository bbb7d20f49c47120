// A map of N x N bins on a plot of 800 x 800 pixels, against explicit drawing calls and against QCustomPlot without
// interpolation. The contestants take turns within each round; the counters are medians over the rounds, in
// milliseconds of the thread's processor time.
//
//   map, spelt   bins of the map: this library, and one drawing call for each bin; auto scale of Z included
//   table        the map with the 256 colours of viridis instead of five points
//   qcpMap       QCustomPlot's map image made and drawn, its colours rounded to a table
//   plot         change of one bin, redraw of the picture, repaint of the window
//   qcpPlot      change of one cell, replot of QCustomPlot with immediate refresh, names of axes and a colour scale
//   qcpBare      the same without names and scale
#include "measure.h"
#include "support/map2dprobe.h"

#include <tarnis/tools/colourmaps.h>

#include <qcustomplot.h>

#include <QApplication>
#include <QPainter>
#include <QPixmap>

#include <time.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace {

constexpr int plotSide = 800;

using tarnis::testing::MapProbe;
using tarnis::testing::MapState;

enum Values { Whole, Fractions };

/// A fifth of the bins is empty, the others fall off exponentially.
QList<QList<double>> randomRows(int side, Values values)
{
    std::mt19937_64 generator(7);
    std::bernoulli_distribution isEmpty(0.2);
    std::exponential_distribution<double> height(0.01);
    QList<QList<double>> rows;
    for (int row = 0; row < side; ++row) {
        QList<double> bins(side);
        for (double& bin : bins) {
            const double value = 1.0 + height(generator);
            bin = isEmpty(generator) ? 0.0 : (values == Whole ? std::floor(value) : value);
        }
        rows.append(bins);
    }
    return rows;
}

class Plot : public MapProbe {
public:
    Plot(const QList<QList<double>>& rows, bool logScale)
    {
        const auto side = static_cast<double>(rows.size());
        m_doubleBuffered = true;
        init(QStringLiteral("x"), QStringLiteral("y"), side, side, true, true);
        initManualX(0.0, side);
        initManualY(0.0, side);
        for (int row = 0; row < rows.size(); ++row)
            setData(row, rows.at(row), *std::max_element(rows.at(row).begin(), rows.at(row).end()), false);
        onLogScale(logScale);
        resize(plotSide + 200, plotSide + 200);
        show();
        // The colour bar determines its width while it is painted.
        for (int i = 0; i < 3; ++i) {
            QCoreApplication::processEvents();
            repaintNow();
        }
        resize(size() + QSize(plotSide, plotSide) - m_graphRect.size());
        QCoreApplication::processEvents();
        repaintNow();
    }
    void repaintNow()
    {
        refreshPixmap();
        repaint();
    }
    void changeBin()
    {
        QList<double>& row = m_data[0];
        row[0] = row.at(0) > 0.0 ? 0.0 : 1.0;
    }
};

class PeerMap : public QCPColorMap {
public:
    using QCPColorMap::draw;
    using QCPColorMap::QCPColorMap;
};

class Peer : public QCustomPlot {
public:
    enum Parts { MapOnly, WithScaleAndNames };

    Peer(const Plot& plot, bool logScale, Parts parts)
        : m_map(new PeerMap(xAxis, yAxis))
    {
        const MapState state = plot.mapState();
        const int side = static_cast<int>(state.data.size());
        m_map->data()->setSize(side, side);
        m_map->data()->setRange(QCPRange(0.5, side - 0.5), QCPRange(0.5, side - 0.5));
        for (int row = 0; row < side; ++row) {
            for (int column = 0; column < side; ++column)
                m_map->data()->setCell(column, row, state.data.at(row).at(column));
        }
        m_map->setGradient(QCPColorGradient(QCPColorGradient::gpJet));
        m_map->setInterpolate(false);
        if (parts == WithScaleAndNames)
            addScaleAndNames();
        m_map->setDataScaleType(logScale ? QCPAxis::stLogarithmic : QCPAxis::stLinear);
        m_map->setDataRange(QCPRange(state.minZ, state.maxZ));
        xAxis->setRange(0.0, side);
        yAxis->setRange(0.0, side);
        const QRect graph = plot.frameState().graphRect;
        axisRect()->setAutoMargins(QCP::msNone);
        axisRect()->setMargins(QMargins(graph.left(), graph.top(), 10, plot.height() - graph.top() - plotSide));
        resize(plot.size());
        show();
        QCoreApplication::processEvents();
        replot(rpImmediateRefresh);
        // Gives the map the same pixels; the difference is in the margins.
        const QMargins margins = axisRect()->margins();
        axisRect()->setMargins(
            margins + QMargins(0, 0, axisRect()->width() - plotSide, axisRect()->height() - plotSide));
        replot(rpImmediateRefresh);
    }
    QSize mapSize() const { return axisRect()->size(); }
    void changeCell() { m_map->data()->setCell(0, 0, m_map->data()->cell(0, 0) > 0.0 ? 0.0 : 1.0); }
    void drawMap(QPixmap& pixmap)
    {
        QCPPainter painter(&pixmap);
        painter.setClipRect(axisRect()->rect());
        m_map->draw(&painter);
    }

private:
    void addScaleAndNames()
    {
        auto* scale = new QCPColorScale(this);
        plotLayout()->addElement(0, 1, scale);
        scale->setType(QCPAxis::atRight);
        scale->setRangeDrag(false);
        m_map->setColorScale(scale);
        m_map->setGradient(QCPColorGradient(QCPColorGradient::gpJet));
        xAxis->setLabel(QStringLiteral("x"));
        yAxis->setLabel(QStringLiteral("y"));
    }

    PeerMap* m_map;
};

class Times {
public:
    template <typename Work> double take(const Work& work)
    {
        m_times.push_back(millisecondsOf(work));
        return m_times.back();
    }
    double median() const { return ::median(m_times); }

private:
    std::vector<double> m_times;
};

void drawMap(Plot& plot, QPixmap& pixmap)
{
    const QRect graph = plot.frameState().graphRect;
    QPainter painter(&pixmap);
    painter.setClipRect(graph);
    plot.onPaint(painter, graph);
}

void drawSpeltOut(const Plot& plot, QPixmap& pixmap)
{
    MapState state = plot.mapState();
    const QRect graph = plot.frameState().graphRect;
    QPainter painter(&pixmap);
    painter.setClipRect(graph);
    tarnis::testing::oracleAutoZ(state);
    tarnis::testing::oraclePaintBins(painter, graph, state);
}

void map(benchmark::State& state, Values values, bool logScale)
{
    Plot plot(randomRows(static_cast<int>(state.range(0)), values), logScale);
    Peer peer(plot, logScale, Peer::WithScaleAndNames);
    Peer bare(plot, logScale, Peer::MapOnly);
    QPixmap pixmap(plot.size());
    Plot withTable(randomRows(static_cast<int>(state.range(0)), values), logScale);
    tarnis::ColourMaps::apply(withTable, QStringLiteral("viridis"));
    Times product;
    Times table;
    Times spelt;
    Times peerMap;
    Times whole;
    Times peerWhole;
    Times bareWhole;
    QPixmap expected(plot.size());
    QPixmap actual(plot.size());
    expected.fill(Qt::gray);
    actual.fill(Qt::gray);
    drawSpeltOut(plot, expected);
    drawMap(plot, actual);
    const QSize asked(plotSide, plotSide);
    if (plot.frameState().graphRect.size() != asked || peer.mapSize() != asked || bare.mapSize() != asked) {
        state.SkipWithError("the plot has another size");
        return;
    }
    if (expected.toImage() != actual.toImage()) {
        state.SkipWithError("the pictures differ");
        return;
    }
    int round = 0;
    for (auto _ : state) {
        state.SetIterationTime(product.take([&] { drawMap(plot, pixmap); }) * 1e-3);
        table.take([&] { drawMap(withTable, pixmap); });
        if (round++ % 4 == 0)
            spelt.take([&] { drawSpeltOut(plot, pixmap); });
        peerMap.take([&] {
            peer.changeCell();
            peer.drawMap(pixmap);
        });
        whole.take([&] {
            plot.changeBin();
            plot.repaintNow();
        });
        peerWhole.take([&] {
            peer.changeCell();
            peer.replot(QCustomPlot::rpImmediateRefresh);
        });
        bareWhole.take([&] {
            bare.changeCell();
            bare.replot(QCustomPlot::rpImmediateRefresh);
        });
    }
    state.counters["map"] = product.median();
    state.counters["table"] = table.median();
    state.counters["table/map"] = table.median() / product.median();
    state.counters["spelt"] = spelt.median();
    state.counters["spelt/map"] = spelt.median() / product.median();
    state.counters["qcpMap"] = peerMap.median();
    state.counters["qcpMap/map"] = peerMap.median() / product.median();
    state.counters["plot"] = whole.median();
    state.counters["qcpPlot"] = peerWhole.median();
    state.counters["qcpPlot/plot"] = peerWhole.median() / whole.median();
    state.counters["qcpBare"] = bareWhole.median();
    state.counters["qcpBare/plot"] = bareWhole.median() / whole.median();
}

void registerAll()
{
    struct Kind {
        const char* name;
        Values values;
        bool logScale;
    };
    for (const Kind& kind : { Kind { "whole/linear", Whole, false }, Kind { "whole/log", Whole, true },
             Kind { "fractions/linear", Fractions, false }, Kind { "fractions/log", Fractions, true } }) {
        auto* entry = benchmark::RegisterBenchmark(kind.name, map, kind.values, kind.logScale);
        for (const int side : { 64, 256, 512, 1024, 2048 })
            entry->Arg(side);
        entry->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(31);
    }
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    registerAll();
    return runBenchmarks(argc, argv);
}
