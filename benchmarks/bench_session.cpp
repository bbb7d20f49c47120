// Replies over the loopback interface beside a raw recv loop, the readers' growth with the reply's length, and what
// idle sessions cost beside bare threads. Ratios are medians over pairs that are measured in turn.
#include "measure.h"
#include "replyserver.h"

#include "support/chunksocket.h"

#include <tarnis/server/tarnissession.h>

#include <QCoreApplication>
#include <QEventLoop>

#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <memory>
#include <thread>
#include <vector>

using namespace tarnis::bench;

namespace {

const QByteArray prompt("> ");

double secondsSinceFirstByte(Clock::time_point end)
{
    return std::chrono::duration<double>(end - ReplyServer::firstByte()).count();
}

// Untouched pages: operator new often returns the block of the last reply.
class FreshPages {
public:
    explicit FreshPages(std::size_t size)
        : m_size(size)
        , m_pages(static_cast<char*>(::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)))
    {
    }
    ~FreshPages() { ::munmap(m_pages, m_size); }
    FreshPages(const FreshPages&) = delete;
    FreshPages& operator=(const FreshPages&) = delete;
    char* data() const { return m_pages; }

private:
    std::size_t m_size;
    char* m_pages;
};

// The peer: a blocking socket, one buffer made for each reply and filled by recv.
class RawClient {
public:
    explicit RawClient(quint16 port)
        : m_socket(connectTo(port))
    {
        receive(2);
    }
    ~RawClient() { ::close(m_socket); }
    RawClient(const RawClient&) = delete;
    RawClient& operator=(const RawClient&) = delete;

    double ask(const std::string& request, std::size_t replySize)
    {
        // As long as a session pauses, so that all peers start with equally cold caches.
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        sendAll(m_socket, request.data(), request.size());
        receive(replySize);
        return secondsSinceFirstByte(Clock::now());
    }

private:
    void receive(std::size_t size)
    {
        const FreshPages fresh(size);
        for (std::size_t filled = 0; filled < size;) {
            const ssize_t count = ::recv(m_socket, fresh.data() + filled, size - filled, 0);
            if (count <= 0)
                std::abort();
            filled += std::size_t(count);
        }
        benchmark::DoNotOptimize(fresh.data());
    }
    int m_socket;
};

// The same on a separate thread that passes the buffer to the event loop of this thread, as any reader beside a GUI
// must.
class QueuedRawClient {
public:
    explicit QueuedRawClient(quint16 port)
        : m_client(port)
    {
    }
    double ask(const std::string& request, std::size_t replySize)
    {
        Clock::time_point end;
        const std::jthread reader([&] {
            m_client.ask(request, replySize);
            QMetaObject::invokeMethod(&m_receiver, [&] {
                end = Clock::now();
                m_loop.quit();
            });
        });
        m_loop.exec();
        return secondsSinceFirstByte(end);
    }

private:
    RawClient m_client;
    QObject m_receiver;
    QEventLoop m_loop;
};

// A session and a receiver on the event loop of this thread.
class QueuedClient {
public:
    explicit QueuedClient(quint16 port)
        : m_session("127.0.0.1", port, &prompt, nullptr)
    {
        QObject::connect(
            &m_session, &TarnisSession::result, &m_receiver, [this](const PTarnisCmd&, const QByteArray& bytes) {
                m_end = Clock::now();
                m_size = bytes.size();
                m_loop.quit();
            });
        QObject::connect(&m_session, &TarnisSession::error, &m_receiver, [] { std::abort(); });
        m_session.start();
    }
    double ask(const std::string& request, bool binary, qsizetype size)
    {
        auto* const cmd = new TarnisCmd(QString::fromStdString(request).trimmed());
        cmd->m_bBinary = binary;
        cmd->m_afterSleep = 0;
        m_session.send(cmd);
        m_loop.exec();
        if (m_size != size)
            std::abort();
        return secondsSinceFirstByte(m_end);
    }

private:
    QObject m_receiver;
    QEventLoop m_loop;
    TarnisSession m_session;
    Clock::time_point m_end;
    qsizetype m_size = 0;
};

void compareReplies(benchmark::State& state, const std::string& request, bool binary, std::size_t replySize)
{
    const ReplyServer server;
    std::vector<double> session;
    std::vector<double> raw;
    std::vector<double> handedOver;
    {
        QueuedClient queued(server.port());
        RawClient bare(server.port());
        QueuedRawClient bareQueued(server.port());
        const auto size = qsizetype(state.range(0));
        queued.ask(request, binary, size);
        bare.ask(request, replySize);
        for ([[maybe_unused]] auto _ : state) {
            session.push_back(queued.ask(request, binary, size));
            raw.push_back(bare.ask(request, replySize));
            handedOver.push_back(bareQueued.ask(request, replySize));
            state.SetIterationTime(session.back());
        }
    }
    state.counters["session_us"] = 1e6 * median(session);
    state.counters["recv_us"] = 1e6 * median(raw);
    state.counters["ratio"] = median(session) / median(raw);
    state.counters["recv_queued_us"] = 1e6 * median(handedOver);
    state.counters["ratio_queued"] = median(session) / median(handedOver);
}

void binaryReply(benchmark::State& state)
{
    const auto size = std::size_t(state.range(0));
    compareReplies(state, "binary " + std::to_string(size) + "\n", true, 4 + size + 6);
}
BENCHMARK(binaryReply)
    ->Arg(8 << 10)
    ->Arg(512 << 10)
    ->Arg(8 << 20)
    ->Arg(64 << 20)
    ->UseManualTime()
    ->Iterations(40)
    ->Unit(benchmark::kMicrosecond);

void textReplyIn64KiBChunks(benchmark::State& state)
{
    const auto size = std::size_t(state.range(0));
    compareReplies(state, "text " + std::to_string(size) + " 65536\n", false, size + 2);
}
BENCHMARK(textReplyIn64KiBChunks)
    ->Arg(1 << 20)
    ->Arg(8 << 20)
    ->Arg(64 << 20)
    ->UseManualTime()
    ->Iterations(20)
    ->Unit(benchmark::kMicrosecond);

// The reader alone, on exact chunks: bytes per second stay the same when the reply grows.
void readText(benchmark::State& state)
{
    TarnisSession session(QString(), 0, &prompt, nullptr);
    const QByteArray piece(state.range(1), 'x');
    const QByteArrayList pieces = QByteArrayList(state.range(0) / state.range(1), piece) << prompt;
    QByteArray buffer;
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        auto socket = std::make_unique<tarnis::testing::ChunkSocket>(pieces);
        state.ResumeTiming();
        benchmark::DoNotOptimize(session.read(*socket, buffer, false));
        state.PauseTiming();
        socket.reset();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(readText)
    ->Args({ 16 << 10, 1 })
    ->Args({ 64 << 10, 1 })
    ->Args({ 256 << 10, 1 })
    ->Args({ 16 << 20, 64 << 10 })
    ->Args({ 32 << 20, 64 << 10 })
    ->Args({ 64 << 20, 64 << 10 })
    ->Unit(benchmark::kMicrosecond);

double processSeconds()
{
    rusage usage {};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) { return double(time.tv_sec) + 1e-6 * double(time.tv_usec); };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double residentKiB()
{
    std::ifstream statm("/proc/self/statm");
    double total = 0;
    double resident = 0;
    statm >> total >> resident;
    return resident * double(::sysconf(_SC_PAGESIZE)) / 1024;
}

struct IdleCost {
    double cpuMsPerSecond = 0;
    double kiBEach = 0;
};

constexpr int idleCount = 64;
constexpr auto idleTime = std::chrono::seconds(3);

template <typename Make> IdleCost idleCost(Make make)
{
    const double before = residentKiB();
    const auto sleepers = make();
    IdleCost cost;
    cost.kiBEach = (residentKiB() - before) / idleCount;
    const double cpu = processSeconds();
    std::this_thread::sleep_for(idleTime);
    cost.cpuMsPerSecond = 1e3 * (processSeconds() - cpu) / double(idleTime.count());
    return cost;
}

// The server's part, one blocked thread for each client, is measured with bare clients and subtracted.
void idleSessions(benchmark::State& state)
{
    for ([[maybe_unused]] auto _ : state) {
        const ReplyServer server;
        const IdleCost threads = idleCost([] {
            std::vector<std::jthread> sleepers;
            for (int i = 0; i < idleCount; ++i)
                sleepers.emplace_back([](const std::stop_token& stop) {
                    while (!stop.stop_requested())
                        QThread::msleep(50);
                });
            return sleepers;
        });
        const IdleCost clients = idleCost([&] {
            std::vector<std::unique_ptr<RawClient>> all;
            for (int i = 0; i < idleCount; ++i)
                all.push_back(std::make_unique<RawClient>(server.port()));
            return all;
        });
        const IdleCost sessions = idleCost([&] {
            std::vector<std::unique_ptr<TarnisSession>> all;
            QEventLoop loop;
            int connected = 0;
            for (int i = 0; i < idleCount; ++i) {
                all.push_back(std::make_unique<TarnisSession>("127.0.0.1", server.port(), &prompt, nullptr));
                QObject::connect(all.back().get(), &TarnisSession::connected, &loop, [&] {
                    if (++connected == idleCount)
                        loop.quit();
                });
                all.back()->start();
            }
            loop.exec();
            return all;
        });
        state.counters["threads_cpu_ms_per_s"] = threads.cpuMsPerSecond;
        state.counters["sessions_cpu_ms_per_s"] = sessions.cpuMsPerSecond;
        state.counters["cpu_ratio"] = sessions.cpuMsPerSecond / threads.cpuMsPerSecond;
        state.counters["thread_KiB"] = threads.kiBEach;
        state.counters["session_KiB"] = sessions.kiBEach - clients.kiBEach;
    }
}
BENCHMARK(idleSessions)->Iterations(1)->Unit(benchmark::kSecond);

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    return runBenchmarks(argc, argv);
}
