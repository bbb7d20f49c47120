// The GUI thread's share of a poll: from the reply of 8 rows of 16,384 doubles to the picture on the window, 800 x 400.
// Limit: less than 10 ms. The counters are medians in milliseconds of the thread: taking the reply over, drawing, both;
// beside them one copy of the reply's bytes.
#include <tarnis/dialogs/graph1ddialog.h>
#include <tarnis/plots/multivectorgraphwidget.h>

#include <QApplication>
#include <QLoggingCategory>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <ctime>
#include <random>
#include <vector>

namespace {

constexpr int rows = 8;
constexpr int samplesPerRow = 16384;

enum Shape { Noisy, Smooth, Counts };

/// A reply in the row format: all rows of a sample side by side.
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

/// Time of this thread alone: what other programs do in between does not count.
template <typename Work> double millisecondsOf(Work work)
{
    const auto now = [] {
        timespec time {};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
    };
    const double start = now();
    work();
    return now() - start;
}

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
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
    const PTarnisCmd command(new TarnisCmd("hist"));
    command->m_bBinary = true;
    command->m_replyText = QStringLiteral("OK:\n");
    const QByteArray payload = payloadOf(shape);

    std::vector<double> taken;
    std::vector<double> drawn;
    std::vector<double> whole;
    std::vector<double> copied;
    for (auto unused : state) {
        taken.push_back(millisecondsOf([&] { window.result(command, payload); }));
        drawn.push_back(millisecondsOf([&] { plot.repaint(); }));
        whole.push_back(taken.back() + drawn.back());
        copied.push_back(millisecondsOf([&] {
            QByteArray copy = payload;
            copy.detach();
            benchmark::DoNotOptimize(copy.constData());
        }));
        state.SetIterationTime(whole.back() / 1000.0);
    }
    state.counters["take_ms"] = median(taken);
    state.counters["draw_ms"] = median(drawn);
    state.counters["gui_ms"] = median(whole);
    state.counters["copy_ms"] = median(copied);
}

void addCase(const char* name, Shape shape, bool logScale)
{
    benchmark::RegisterBenchmark(
        name, [shape, logScale](benchmark::State& state) { replyToPicture(state, shape, logScale); })
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(101);
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    addCase("noisy", Noisy, false);
    addCase("noisy-log", Noisy, true);
    addCase("smooth", Smooth, false);
    addCase("smooth-log", Smooth, true);
    addCase("counts", Counts, false);
    addCase("counts-log", Counts, true);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
