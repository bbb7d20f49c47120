// The cost of the log. Off: a line beside a call of an empty function, a block beside the copy of its file name. On:
// lines of four threads beside bare fputs() and fflush() of lines of the same length. Each pair runs in one program,
// one after the other in short rounds; the counters "over_ns" and "ratio" compare the medians of those rounds.
#include "measure.h"
#include "tarnis/foundation/log.h"

#include <QTemporaryDir>

#include <chrono>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

[[gnu::noinline]] void emptyCall(int value)
{
    benchmark::DoNotOptimize(value);
}

[[gnu::noinline]] void logLine(int value)
{
    LOG_DBG("value %d", value);
}

[[gnu::noinline]] void copyFileName()
{
    const std::string copy(tarnis::sourceName(__FILE__));
    benchmark::DoNotOptimize(copy.data());
}

[[gnu::noinline]] void logBlock()
{
    LOG_BLOCK("block of [%s]", "something");
}

// Nanoseconds that one call takes, over `count` calls.
template <typename Call> double nanosecondsPerCall(int count, const Call& call)
{
    const auto start = Clock::now();
    for (int i = 0; i < count; ++i)
        call(i);
    return std::chrono::duration<double, std::nano>(Clock::now() - start).count() / count;
}

// Alternating rounds of both, so that other load on the machine affects both equally.
template <typename Ours, typename Peer>
void compare(benchmark::State& state, int callsPerRound, const Ours& ours, const Peer& peer)
{
    std::vector<double> oursNs;
    std::vector<double> peerNs;
    for ([[maybe_unused]] const auto& iteration : state) {
        oursNs.push_back(nanosecondsPerCall(callsPerRound, ours));
        peerNs.push_back(nanosecondsPerCall(callsPerRound, peer));
    }
    state.counters["ours_ns"] = median(oursNs);
    state.counters["peer_ns"] = median(peerNs);
    state.counters["over_ns"] = median(oursNs) - median(peerNs);
    state.counters["ratio"] = median(oursNs) / median(peerNs);
}

void lineWhileOff(benchmark::State& state)
{
    compare(state, 100000, logLine, emptyCall);
}

void blockWhileOff(benchmark::State& state)
{
    compare(
        state, 100000, [](int) { logBlock(); }, [](int) { copyFileName(); });
}

template <typename Call> void onFourThreads(int callsPerThread, const Call& call)
{
    std::vector<std::jthread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&call, callsPerThread] {
            for (int i = 0; i < callsPerThread; ++i)
                call(i);
        });
    }
}

void linesOfFourThreads(benchmark::State& state)
{
    constexpr int linesPerThread = 2000;
    const QTemporaryDir folder;
    initlog(folder.filePath("ours.log").toStdString(), 0);
    FILE* const bare = std::fopen(folder.filePath("bare.log").toUtf8().constData(), "a");
    // A line in the format of the log, with time and name.
    const std::string entry = std::string(23 + 1 + 25 + 1 + 4 + 1 + 8 + 9, '-') + "value 1000\n";
    compare(
        state, 1, [](int) { onFourThreads(linesPerThread, logLine); },
        [&](int) {
            onFourThreads(linesPerThread, [&](int) {
                std::fputs(entry.c_str(), bare);
                std::fflush(bare);
            });
        });
    closelog();
    std::fclose(bare);
    for (const char* const counter : { "ours_ns", "peer_ns", "over_ns" })
        state.counters[counter].value /= 4 * linesPerThread;
    state.counters["lines_per_s"] = 1e9 / state.counters["ours_ns"].value;
}

} // namespace

BENCHMARK(lineWhileOff)->Iterations(200);
BENCHMARK(blockWhileOff)->Iterations(200);
BENCHMARK(linesOfFourThreads)->Iterations(20)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
