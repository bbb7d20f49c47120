// Files of datasets and plots: a table against the same numbers by QTextStream, a large map as PDF and SVG.
//
// Counters: milliseconds, bytes of the file, and for tables the ratio to the peer of the same run.
#include "headless.h"
#include "measure.h"

#include <tarnis/export/plotexporter.h>
#include <tarnis/formats/csv.h>
#include <tarnis/plots/xy2dgraphwidget.h>

#include <QApplication>
#include <QTextStream>

#include <random>

namespace {

tarnis::Dataset spectrum()
{
    tarnis::Dataset data;
    data.rows = 1;
    data.columns = 16384;
    data.x.values = tarnis::uniformEdges(0.0, 40000.0, data.columns);
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> value(0.0, 1000.0);
    for (qsizetype i = 0; i < data.columns; ++i)
        data.values.push_back(value(random));
    return data;
}

QByteArray byTextStream(const tarnis::Dataset& data)
{
    QByteArray text;
    QTextStream stream(&text);
    stream.setRealNumberPrecision(17);
    const std::vector<double> centres = tarnis::centresOf(data.x, data.columns);
    for (std::size_t i = 0; i < data.values.size(); ++i)
        stream << centres[i] << ',' << data.values[i] << '\n';
    stream.flush();
    return text;
}

void writeTable(benchmark::State& state)
{
    const tarnis::Dataset data = spectrum();
    std::vector<double> own;
    std::vector<double> peer;
    QByteArray text;
    for (auto _ : state) {
        own.push_back(millisecondsOf([&] { text = tarnis::encodeCsv(data); }));
        peer.push_back(millisecondsOf([&] { benchmark::DoNotOptimize(byTextStream(data)); }));
    }
    state.counters["ms"] = median(own);
    state.counters["ratio"] = median(own) / median(peer);
    state.counters["bytes"] = double(text.size());
}
BENCHMARK(writeTable);

void readTable(benchmark::State& state)
{
    const QByteArray text = tarnis::encodeCsv(spectrum());
    std::vector<double> own;
    for (auto _ : state)
        own.push_back(millisecondsOf([&] { benchmark::DoNotOptimize(tarnis::decodeCsv(text)); }));
    state.counters["ms"] = median(own);
}
BENCHMARK(readTable);

/// Poisson counts, as on a detector: every bin is filled, and adjacent bins differ.
void fill(XY2DGraphWidget& plot)
{
    constexpr int side = 1024;
    std::mt19937_64 random(1);
    std::poisson_distribution<int> count(20.0);
    plot.resize(900, 800);
    plot.init("x", "y", side, side, false, false);
    plot.initManualX(0.0, side);
    plot.initManualY(0.0, side);
    for (int row = 0; row < side; ++row) {
        QList<double> values(side);
        for (double& value : values)
            value = count(random);
        plot.setData(row, values, 60.0, false);
    }
}

void saveMap(benchmark::State& state, tarnis::PictureFormat format)
{
    XY2DGraphWidget plot;
    fill(plot);
    std::vector<double> own;
    QByteArray file;
    for (auto _ : state)
        own.push_back(millisecondsOf([&] { file = tarnis::PlotExporter(plot).picture(format, {}, nullptr); }));
    state.counters["ms"] = median(own);
    state.counters["bytes"] = double(file.size());
}
BENCHMARK_CAPTURE(saveMap, pdf, tarnis::PictureFormat::Pdf);
BENCHMARK_CAPTURE(saveMap, svg, tarnis::PictureFormat::Svg);

} // namespace

int main(int argc, char** argv)
{
    prepareHeadless();
    const QApplication application(argc, argv);
    return runBenchmarks(argc, argv);
}
