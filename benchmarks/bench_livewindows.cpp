// Live windows on one simulated server for a minute - ten 1D windows, then four 2D windows of 1024 x 1024 bins: share
// of the processor, memory, polls that did not come, and how long the GUI thread keeps events waiting.
//
// usage: bench_livewindows [--seconds N] [curves | maps]
//
// Ends with 1 if a poll is missing, the memory grows, or the GUI thread works for 20 ms (maps: 40 ms) or more at a
// stretch.
#include "eventwaits.h"
#include "headless.h"
#include "measure.h"

#include <tarnis/dialogs/graph1ddialog.h>
#include <tarnis/dialogs/graph2ddialog.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/server/tarnissession.h>

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <utility>
#include <vector>

#include <unistd.h>

namespace {

constexpr double longestPollSeconds = 2.0; ///< the period is a second and what the server takes
constexpr double warmUpSeconds = 10.0; ///< caches, fonts and the heap's first growth
constexpr double maxGrowthMiB = 8.0;

/// The values of a process in /proc.
struct Usage {
    double cpuSeconds = 0.0;
    double residentMiB = 0.0;

    static Usage of(qint64 process)
    {
        QFile file(QStringLiteral("/proc/%1/stat").arg(process));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        // After the name in brackets, from field 3 on: user and system time are 14 and 15, resident pages 24.
        const QByteArray text = file.readAll();
        const QList<QByteArray> fields = text.mid(text.lastIndexOf(')') + 2).split(' ');
        const auto ticks = static_cast<double>(sysconf(_SC_CLK_TCK));
        const auto page = static_cast<double>(sysconf(_SC_PAGESIZE));
        return { (fields.value(11).toDouble() + fields.value(12).toDouble()) / ticks,
            fields.value(21).toDouble() * page / 1048576.0 };
    }
};

/// A simulated server with a run, as long as the object exists.
class Server {
public:
    Server()
    {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QStringLiteral(SIMSERVER_PATH), { "--start", "--rate", "5000" });
        QByteArray line;
        while (!line.endsWith('\n') && m_process.waitForReadyRead(10000))
            line += m_process.readLine();
        m_port = line.mid(line.lastIndexOf(' ') + 1).trimmed().toUShort();
    }
    ~Server()
    {
        m_process.write("exit\n");
        if (!m_process.waitForFinished(5000))
            m_process.kill();
    }
    Q_DISABLE_COPY_MOVE(Server)

    quint16 port() const { return m_port; }
    qint64 process() const { return m_process.processId(); }

private:
    QProcess m_process;
    quint16 m_port = 0;
};

/// The histogram that a window polls.
struct Histogram {
    const char* command;
    double xMax; ///< 0: the replies contain their axis
    int lastRow;
};

const Histogram histograms[] = {
    { "hist1d time 0 7", 40000.0, 7 },
    { "hist1d position 0 7", 1000.0, 7 },
    { "hist1d total", 40000.0, 0 },
    { "hist1d total pairs", 0.0, 0 },
    { "hist1d counts", 8.0, 0 },
};

/// The polls of a window whose replies have been shown.
class Polls {
public:
    Polls() { m_sinceLast.start(); }
    void add()
    {
        m_longestGap = std::max(m_longestGap, secondsSinceLast());
        m_sinceLast.restart();
        ++m_count;
    }
    int count() const { return m_count; }
    /// Between two of them, or since the last one.
    double longestGap() const { return std::max(m_longestGap, secondsSinceLast()); }

private:
    double secondsSinceLast() const { return static_cast<double>(m_sinceLast.elapsed()) / 1000.0; }

    int m_count = 0;
    double m_longestGap = 0.0;
    QElapsedTimer m_sinceLast;
};

struct WatchedWindow {
    virtual ~WatchedWindow() = default;
    Polls polls;
};

using Windows = std::vector<std::unique_ptr<WatchedWindow>>;

template <typename Window> void open(Window& window, const QPoint& at, const QSize& size)
{
    window.setAttribute(Qt::WA_DeleteOnClose, false);
    window.move(at);
    window.resize(size);
    window.show();
}

struct WatchedCurves : WatchedWindow {
    WatchedCurves(TarnisSession& model, const Histogram& histogram, const QPoint& at)
        : window(&model, histogram.command, "X", 0.0, histogram.xMax, 1, 0, "row", {}, histogram.command, 0,
            histogram.lastRow, nullptr)
    {
        open(window, at, QSize(700, 450));
        QObject::connect(&window, &Graph1DDialog::onGraphUpdated, &window, [this] { polls.add(); });
    }
    Graph1DDialog window;
};

struct WatchedMap : WatchedWindow {
    struct Window : Graph2DDialog {
        Window(TarnisSession& model, const QString& command, Polls& shown)
            : Graph2DDialog(
                &model, command, "X", 1024, 0.0, 1000.0, 1, 0, "Y", 1024, 0.0, 1000.0, 1, 0, {}, command, nullptr)
            , polls(shown)
        {
        }
        void result(PTarnisCmd command, QByteArray payload) override
        {
            Graph2DDialog::result(command, payload);
            if (payload.size() == 8 << 20 && timer->isActive())
                polls.add();
        }
        Polls& polls;
    };
    WatchedMap(TarnisSession& model, const QString& command, const QPoint& at)
        : window(model, command, polls)
    {
        open(window, at, QSize(900, 900));
    }
    Window window;
};

struct Kind {
    const char* name;
    double longestStretchMs;
    Windows (*open)(TarnisSession&);
};

Windows tenCurves(TarnisSession& model)
{
    Windows windows;
    for (int i = 0; i < 10; ++i)
        windows.push_back(std::make_unique<WatchedCurves>(model, histograms[i % 5], QPoint(30 * i, 20 * i)));
    return windows;
}

Windows fourMaps(TarnisSession& model)
{
    Windows windows;
    for (int i = 0; i < 4; ++i)
        windows.push_back(std::make_unique<WatchedMap>(
            model, i % 2 == 0 ? "hist2d image" : "hist2d timemap", QPoint(40 * i, 30 * i)));
    return windows;
}

const Kind kinds[] = { { "curves", 20.0, tenCurves }, { "maps", 40.0, fourMaps } };

std::vector<double> sorted(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values;
}

/// How long the GUI thread works without interruption: its own time between checks of its queue. Waiting is not
/// included.
class BusyTimes {
public:
    BusyTimes()
    {
        QObject::connect(
            QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, &m_receiver, [this] {
                const double now = threadMilliseconds();
                milliseconds.push_back(now - std::exchange(m_last, now));
            });
    }
    std::vector<double> milliseconds;

private:
    QObject m_receiver;
    double m_last = threadMilliseconds();
};

double quantile(const std::vector<double>& sorted, double share)
{
    return sorted.empty() ? 0.0 : sorted[static_cast<std::size_t>(share * static_cast<double>(sorted.size() - 1))];
}

/// Once a second after the warm-up.
class MemorySamples {
public:
    void add(double mebibytes) { m_samples.push_back(mebibytes); }
    /// The minimum of the second half minus the median of the first: replies of 8 MiB are allocated and freed, and the
    /// heap releases memory late.
    double growth() const
    {
        const auto middle = m_samples.begin() + static_cast<std::ptrdiff_t>(m_samples.size() / 2);
        if (middle == m_samples.begin())
            return 0.0;
        const std::vector<double> before = sorted({ m_samples.begin(), middle });
        return *std::min_element(middle, m_samples.end()) - before[before.size() / 2];
    }
    void print(const char* name) const
    {
        if (m_samples.empty())
            return;
        const auto [lowest, highest] = std::minmax_element(m_samples.begin(), m_samples.end());
        std::printf("%-28s %8.1f %8.1f %8.1f MiB (lowest, highest, growth)\n", name, *lowest, *highest, growth());
    }

private:
    std::vector<double> m_samples;
};

int run(const Kind& kind, int seconds)
{
    Server server;
    if (server.port() == 0) {
        std::fputs("the simulated server does not start\n", stderr);
        return 2;
    }
    const QByteArray prompt("> ");
    TarnisSession model(QStringLiteral("127.0.0.1"), server.port(), &prompt, nullptr); // only provides its address

    const Windows windows = kind.open(model);

    // The measurements are about running windows, not about opening many at once.
    QTimer::singleShot(1000, QCoreApplication::instance(), [] { QCoreApplication::exit(); });
    QApplication::exec();

    const BusyTimes busyTimes;
    const EventWaits waits(std::chrono::milliseconds(10));
    MemorySamples ownMemory;
    MemorySamples serverMemory;
    const Usage ownStart = Usage::of(getpid());
    const Usage serverStart = Usage::of(server.process());
    QElapsedTimer elapsed;
    elapsed.start();
    QTimer everySecond;
    QObject::connect(&everySecond, &QTimer::timeout, &everySecond, [&] {
        const double now = static_cast<double>(elapsed.elapsed()) / 1000.0;
        if (now >= std::min(warmUpSeconds, seconds / 2.0)) {
            ownMemory.add(Usage::of(getpid()).residentMiB);
            serverMemory.add(Usage::of(server.process()).residentMiB);
        }
        if (now >= seconds)
            QCoreApplication::exit(); // quit() would close the windows
    });
    everySecond.start(1000);
    QApplication::exec();

    const double time = static_cast<double>(elapsed.elapsed()) / 1000.0;
    const double own = Usage::of(getpid()).cpuSeconds - ownStart.cpuSeconds;
    const double other = Usage::of(server.process()).cpuSeconds - serverStart.cpuSeconds;
    int polls = 0;
    double longestGap = 0.0;
    for (const auto& window : windows) {
        polls += window->polls.count();
        longestGap = std::max(longestGap, window->polls.longestGap());
    }
    const std::vector<double> work = sorted(busyTimes.milliseconds);
    const std::vector<double> wait = sorted(waits.milliseconds());

    std::printf("%s: %zu windows for %.1f s: %d polls\n", kind.name, windows.size(), time, polls);
    std::printf("%-28s %8.2f %%\n", "processor, all windows", 100.0 * own / time);
    std::printf("%-28s %8.2f %%\n", "processor, server", 100.0 * other / time);
    ownMemory.print("memory, all windows");
    serverMemory.print("memory, server");
    std::printf("%-28s %8.2f s\n", "longest wait for a poll", longestGap);
    const auto print = [](const char* name, const std::vector<double>& values) {
        std::printf("%-28s %8.2f %8.2f %8.2f ms (median, 99 %%, longest)\n", name, quantile(values, 0.5),
            quantile(values, 0.99), quantile(values, 1.0));
    };
    print("GUI thread at a stretch", work);
    print("an event waits for it", wait);

    const bool good = longestGap < longestPollSeconds && ownMemory.growth() < maxGrowthMiB
        && serverMemory.growth() < maxGrowthMiB && quantile(work, 1.0) < kind.longestStretchMs;
    std::puts(good ? "within the limits" : "beyond the limits");
    return good ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    prepareHeadless();
    const QApplication application(argc, argv);
    QStringList arguments = QApplication::arguments().mid(1);
    int seconds = 60;
    if (const qsizetype option = arguments.indexOf(QLatin1String("--seconds")); option >= 0) {
        seconds = arguments.value(option + 1).toInt();
        arguments.remove(option, std::min<qsizetype>(2, arguments.size() - option));
    }
    const auto isMeant = [&](const Kind& kind) { return arguments.isEmpty() || arguments == QStringList(kind.name); };
    if (seconds < 1 || std::ranges::none_of(kinds, isMeant)) {
        std::fputs("usage: bench_livewindows [--seconds N] [curves | maps]\n", stderr);
        return 2;
    }
    int status = 0;
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
    for (const Kind& kind : kinds) {
        if (isMeant(kind))
            status = std::max(status, run(kind, seconds));
    }
    return status;
}
