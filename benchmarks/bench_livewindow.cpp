// The GUI thread's share of a poll, from the reply to the picture on the window: 8 rows of 16,384 doubles at 800 x 400
// (limit: less than 10 ms), and maps, of which 1024 x 1024 at 800 x 800 has to take less than 40 ms. The counters are
// medians in milliseconds of the thread: storing the reply, drawing, both; beside them one copy of the reply's
// bytes.
#include "headless.h"
#include "measure.h"
#include "shownreplies.h"

#include <tarnis/dialogs/graph1ddialog.h>
#include <tarnis/dialogs/graph2ddialog.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>

#include <QApplication>

#include <cmath>
#include <cstring>
#include <functional>
#include <random>
#include <vector>

namespace {

constexpr int rows = 8;
constexpr int samplesPerRow = 16384;

enum Shape { Noisy, Smooth, Counts };

/// A reply in the row format, with interleaved rows.
QByteArray payloadOf(Shape shape)
{
    std::mt19937_64 generator(1);
    std::uniform_real_distribution<double> noise(0.0, 1000.0);
    std::poisson_distribution<int> counts(2.0);
    std::vector<double> values;
    for (int i = 0; i < samplesPerRow; ++i) {
        for (int row = 0; row < rows; ++row) {
            const double smooth = 500.0 + 490.0 * std::sin(i * (5.0 + row) / samplesPerRow * 6.283);
            values.push_back(shape == Noisy ? noise(generator) : shape == Smooth ? smooth : counts(generator));
        }
    }
    return QByteArray(reinterpret_cast<const char*>(values.data()), qsizetype(values.size() * sizeof(double)));
}

void replyToPicture(benchmark::State& state, Shape shape, bool logScale)
{
    Graph1DDialog window(nullptr, "Live", "Time", 0.0, samplesPerRow, 1, 0, "row", {}, {}, 0, rows - 1, nullptr);
    window.setAttribute(Qt::WA_DeleteOnClose, false);
    window.show();
    MultiVectorGraphWidget& plot = *window.getGraphWidget();
    plot.setFixedSize(800, 400);
    plot.setLogScaleY(logScale);
    QApplication::processEvents();
    showReplies(state, window, plot, binaryReply(QStringLiteral("OK:\n")), payloadOf(shape));
}

/// Integer counts or real numbers, row by row.
QByteArray mapPayload(int count, bool whole)
{
    std::mt19937_64 generator(2);
    std::poisson_distribution<int> counts(3.0);
    std::uniform_real_distribution<double> noise(0.0, 10.0);
    std::vector<double> values;
    values.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        values.push_back(whole ? counts(generator) : noise(generator));
    return QByteArray(reinterpret_cast<const char*>(values.data()), qsizetype(values.size() * sizeof(double)));
}

struct Map {
    int columns = 1024;
    int rows = 1024;
    bool whole = true;
    bool logScale = false;
};

void mapToPicture(benchmark::State& state, const Map& map)
{
    Graph2DDialog window(nullptr, "Live", "X", 1, 0.0, 1000.0, 1, 0, "Y", 1, 0.0, 1000.0, 1, 0, {}, {}, nullptr);
    window.setAttribute(Qt::WA_DeleteOnClose, false);
    window.show();
    XY2DGraphWidget& plot = *window.getGraphWidget();
    plot.setFixedSize(800, 800);
    plot.onLogScale(map.logScale);
    QApplication::processEvents();
    const QString text = QStringLiteral("OK: exported %1 x %2 y\n").arg(map.columns).arg(map.rows);
    showReplies(state, window, plot, binaryReply(text), mapPayload(map.columns * map.rows, map.whole));
}

void addCase(const char* name, const std::function<void(benchmark::State&)>& run)
{
    benchmark::RegisterBenchmark(name, run)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(101);
}

void addCurves(const char* name, Shape shape, bool logScale)
{
    addCase(name, [shape, logScale](benchmark::State& state) { replyToPicture(state, shape, logScale); });
}

void addMap(const char* name, const Map& map)
{
    addCase(name, [map](benchmark::State& state) { mapToPicture(state, map); });
}

} // namespace

int main(int argc, char** argv)
{
    prepareHeadless();
    const QApplication application(argc, argv);
    addCurves("noisy", Noisy, false);
    addCurves("noisy-log", Noisy, true);
    addCurves("smooth", Smooth, false);
    addCurves("smooth-log", Smooth, true);
    addCurves("counts", Counts, false);
    addCurves("counts-log", Counts, true);
    addMap("map-256", { .columns = 256, .rows = 256 });
    addMap("map-1024", {});
    addMap("map-1024-log", { .logScale = true });
    addMap("map-1024-real", { .whole = false });
    addMap("map-1024-real-log", { .whole = false, .logScale = true });
    addMap("map-64x16384", { .columns = 64, .rows = 16384 });
    addMap("map-16384x64", { .columns = 16384, .rows = 64 });
    return runBenchmarks(argc, argv);
}
