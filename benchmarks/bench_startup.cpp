// Time from start to end of programs that only initialise: one on Tarnis::Core, beside one on Qt Core and Network
// alone, and one on Tarnis::Tarnis. The programs run one after the other in short rounds; the counters are the medians
// of those rounds.
#include "measure.h"

#include <chrono>
#include <spawn.h>
#include <string>
#include <sys/wait.h>

extern char** environ;

namespace {

/// Milliseconds from the start of a program to its end; negative if it fails.
double runMilliseconds(const std::string& program)
{
    const auto start = std::chrono::steady_clock::now();
    std::string path = program;
    char* const arguments[] = { path.data(), nullptr };
    pid_t child = 0;
    int status = 0;
    if (posix_spawn(&child, path.c_str(), nullptr, nullptr, arguments, environ) != 0
        || waitpid(child, &status, 0) != child || status != 0)
        return -1.0;
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

void startup(benchmark::State& state)
{
    std::vector<double> qt;
    std::vector<double> core;
    std::vector<double> widgets;
    for ([[maybe_unused]] const auto& iteration : state) {
        qt.push_back(runMilliseconds(STARTUP_QT));
        core.push_back(runMilliseconds(STARTUP_CORE));
        widgets.push_back(runMilliseconds(STARTUP_WIDGETS));
        if (qt.back() < 0.0 || core.back() < 0.0 || widgets.back() < 0.0)
            state.SkipWithError("a program failed");
    }
    state.counters["qt_ms"] = median(qt);
    state.counters["core_ms"] = median(core);
    state.counters["widgets_ms"] = median(widgets);
    state.counters["core_to_qt"] = median(core) / median(qt);
    state.counters["widgets_to_core"] = median(widgets) / median(core);
}

} // namespace

BENCHMARK(startup)->Iterations(50)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    return runBenchmarks(argc, argv);
}
