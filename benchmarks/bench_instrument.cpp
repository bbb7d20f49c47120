// The program of examples/instrument on servers that misbehave: the longest stretch in which its GUI thread does not
// sleep, in time of that thread and by the clock, how long an event waits for the thread, and the memory that a fault
// costs. The clock's values include what other programs, and other virtual machines, took of the processor.
#include "eventwaits.h"
#include "headless.h"
#include "instrument.h"
#include "measure.h"

#include "support/scriptedserver.h"
#include "support/serverfaults.h"
#include "support/wait.h"

#include <tarnis/live/livemap.h>

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QEventLoop>
#include <QTimer>

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <fstream>

using namespace tarnis;
using namespace tarnis::testing;
using namespace std::chrono_literals;

namespace {

/// Measures the event loop from waking up to going to sleep, which may be several iterations: while a large reply
/// arrives the loop does not sleep, but handles other events between two parts.
class Watchdog : public QObject {
public:
    Watchdog()
    {
        const auto* const dispatcher = QAbstractEventDispatcher::instance();
        connect(dispatcher, &QAbstractEventDispatcher::awake, this, [this] { begin(); });
        connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, this, [this] { end(); });
        begin();
    }

    double worstThread() const { return m_worstThread; }
    double worstWall() const { return m_worstWall; }

private:
    void begin()
    {
        if (m_isAwake)
            return; // an iteration that did not go to sleep
        m_thread = threadMilliseconds();
        m_wall = std::chrono::steady_clock::now();
        m_isAwake = true;
    }
    void end()
    {
        if (!std::exchange(m_isAwake, false))
            return;
        const std::chrono::duration<double, std::milli> wall = std::chrono::steady_clock::now() - m_wall;
        m_worstThread = std::max(m_worstThread, threadMilliseconds() - m_thread);
        m_worstWall = std::max(m_worstWall, wall.count());
    }

    double m_thread = 0.0;
    std::chrono::steady_clock::time_point m_wall;
    bool m_isAwake = false;
    double m_worstThread = 0.0;
    double m_worstWall = 0.0;
};

double residentMiB()
{
    std::ifstream file("/proc/self/statm");
    double total = 0.0;
    double resident = 0.0;
    file >> total >> resident;
    return resident * double(::sysconf(_SC_PAGESIZE)) / (1 << 20);
}

void run(std::chrono::milliseconds time)
{
    QEventLoop loop;
    QTimer::singleShot(time, &loop, &QEventLoop::quit);
    loop.exec();
}

RequestOptions impatient()
{
    RequestOptions options;
    options.silence = 500ms;
    return options;
}

void measure(benchmark::State& state, const QString& address, const std::function<void()>& beginFault)
{
    Instrument window({}, impatient());
    window.resize(1200, 800);
    window.show();
    window.open(address);
    run(1500ms); // the first paint loads fonts
    for ([[maybe_unused]] auto _ : state) {
        const double before = residentMiB();
        beginFault();
        const Watchdog watchdog;
        const EventWaits waits(2ms);
        for (int round = 0; round < 4; ++round) {
            for (int i = 0; i < 5; ++i)
                window.send("stat");
            run(500ms);
        }
        state.SetIterationTime(watchdog.worstThread() / 1e3);
        state.counters["worst_wall_ms"] = watchdog.worstWall();
        state.counters["longest_wait_ms"] = waits.longest();
        const QList<LiveWidget*> plots = window.findChildren<LiveWidget*>();
        state.counters["current_plots"] = double(std::count_if(plots.begin(), plots.end(),
            [](const LiveWidget* plot) { return plot->state() == LiveWidget::State::Current; }));
        state.counters["more_mib"] = residentMiB() - before;
    }
}

void simulated(benchmark::State& state, const QByteArray& fault)
{
    qputenv("TARNIS_SIMSERVER_OPTIONS", "--start --rate 5000");
    ServerProcess process;
    process.start(SIMSERVER_PATH);
    if (!eventually([&] { return process.port() != 0; }))
        std::abort();
    Client control;
    control.connectTo("127.0.0.1", process.port());
    measure(state, QString("127.0.0.1:%1").arg(process.port()),
        [&] { control.request(QString::fromLatin1("fault " + fault)); });
}

void scripted(benchmark::State& state, const Script& answer)
{
    ScriptedServer server;
    server.answerOthers([&](const std::string&) { return answer; });
    measure(state, QString("127.0.0.1:%1").arg(server.port()), [] {});
}

/// `rows` x `bins` values without two equal neighbours, which are the slowest to draw.
Step histogram(int rows, int bins, const QString& text)
{
    QByteArray payload(qsizetype(rows) * bins * qsizetype(sizeof(double)), Qt::Uninitialized);
    auto* const values = reinterpret_cast<double*>(payload.data());
    for (int i = 0; i < rows * bins; ++i)
        values[i] = double(i * 7919LL % 104729);
    return Step::binary(payload, text.toLatin1());
}

struct Sizes {
    int curves;
    int curveBins;
    int mapRows;
    int mapBins;
};

/// Histograms of other sizes than the program requested.
void otherSizes(benchmark::State& state, const Sizes& sizes)
{
    const Script curves { histogram(sizes.curves, sizes.curveBins, QString("OK: (0 1 %1)\n").arg(sizes.curveBins)) };
    const Script map { histogram(
        sizes.mapRows, sizes.mapBins, QString("OK: exported %1 x %2 y\n").arg(sizes.mapBins).arg(sizes.mapRows)) };
    ScriptedServer server;
    server.answerOthers([&](const std::string& request) {
        return request.starts_with("hist1d") ? curves
            : request.starts_with("hist2d")  ? map
                                             : Script { Step::text("OK:\n") };
    });
    measure(state, QString("127.0.0.1:%1").arg(server.port()), [] {});
}

} // namespace

int main(int argc, char** argv)
{
    prepareHeadless();
    qputenv("QT_NO_GLIB", "1"); // whose dispatcher does not report when it wakes up
    const QApplication application(argc, argv);
    const auto add = [](const std::string& name, const auto& function, const auto& argument) {
        benchmark::RegisterBenchmark(
            name.c_str(), [function, argument](benchmark::State& state) { function(state, argument); })
            ->Iterations(1)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    };
    add("none", simulated, QByteArray("none"));
    for (const QByteArray& fault : replyFaults())
        add(fault.toStdString(), simulated, fault);
    const QByteArray much(16 << 20, 'x');
    add("endless-text", scripted, Script { Step::raw(much), Step::silence() });
    add("huge-payload", scripted, Script { Step::binary(much, "OK: (0 1 2)\n") });
    add("endless-refusal", scripted, Script { Step::text("NG:" + much) });
    // The largest that the program accepts, 8 MiB, and one beyond the default limits.
    add("most-values", otherSizes, Sizes { 64, 1 << 14, 1 << 14, 64 });
    add("most-bins", otherSizes, Sizes { 1, 1 << 20, 1, 1 << 20 });
    add("most-rows", otherSizes, Sizes { 64, 1000, 1 << 14, 64 });
    add("too-many-rows", otherSizes, Sizes { 1000, 1000, 1000000, 1 });
    return runBenchmarks(argc, argv);
}
