// The asynchronous client on the loopback interface: requests per second and latency beside a blocking loop of send and
// recv, large replies beside a raw recv loop, and what idle clients cost. Ratios are of the same run.
#include "measure.h"
#include "replyserver.h"

#include <tarnis/client/client.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <sched.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <fstream>
#include <memory>
#include <string>
#include <vector>

using namespace tarnis::bench;

namespace {

// Runs the event loop until the last of the futures that count down has ended.
class Countdown {
public:
    explicit Countdown(int count)
        : m_left(count)
    {
    }
    void operator()()
    {
        if (--m_left == 0)
            m_loop.quit();
    }
    void wait()
    {
        if (m_left > 0)
            m_loop.exec();
    }

private:
    int m_left;
    QEventLoop m_loop;
};

std::unique_ptr<tarnis::Client> connectedTo(quint16 port)
{
    auto client = std::make_unique<tarnis::Client>();
    client->connectTo("127.0.0.1", port);
    Countdown connected(1);
    QObject::connect(client.get(), &tarnis::Client::connected, client.get(), [&] { connected(); });
    connected.wait();
    QObject::disconnect(client.get(), &tarnis::Client::connected, nullptr, nullptr);
    return client;
}

// The peer: a blocking socket without an event loop.
class RawClient {
public:
    explicit RawClient(quint16 port)
        : m_socket(connectTo(port))
    {
        receiveSmall(2);
    }
    ~RawClient() { ::close(m_socket); }
    RawClient(const RawClient&) = delete;
    RawClient& operator=(const RawClient&) = delete;

    void exchange(const std::string& request, std::size_t replySize)
    {
        sendAll(m_socket, request.data(), request.size());
        receiveSmall(replySize);
    }
    double receiveLarge(const std::string& request, std::size_t size)
    {
        sendAll(m_socket, request.data(), request.size());
        // Untouched pages, like those of a new reply.
        void* const pages = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        receive(static_cast<char*>(pages), size);
        const double seconds = std::chrono::duration<double>(Clock::now() - ReplyServer::firstByte()).count();
        ::munmap(pages, size);
        return seconds;
    }

private:
    void receiveSmall(std::size_t size)
    {
        char buffer[256];
        receive(buffer, size);
    }
    void receive(char* to, std::size_t size) const
    {
        for (std::size_t filled = 0; filled < size;) {
            const ssize_t count = ::recv(m_socket, to + filled, size - filled, 0);
            if (count <= 0)
                std::abort();
            filled += std::size_t(count);
        }
    }
    int m_socket;
};

double secondsOf(const auto& work)
{
    const Clock::time_point start = Clock::now();
    work();
    return std::chrono::duration<double>(Clock::now() - start).count();
}

std::size_t residentBytes()
{
    std::ifstream file("/proc/self/statm");
    std::size_t total = 0;
    std::size_t resident = 0;
    file >> total >> resident;
    return resident * std::size_t(::sysconf(_SC_PAGESIZE));
}

// A thousand idle clients of one process. Runs first, because memory freed by other measurements would be reused.
void idleClients(benchmark::State& state)
{
    const auto server = std::make_unique<ReplyServer>();
    const int count = int(state.range(0));
    // The server has a thread for each client: their cost is measured first, with bare sockets.
    std::vector<std::unique_ptr<RawClient>> bare;
    bare.push_back(std::make_unique<RawClient>(server->port()));
    bare.front()->exchange("text 16 16\n", 18); // the server's own buffer
    const std::size_t before = residentBytes();
    for (int i = 0; i < count; ++i) {
        bare.push_back(std::make_unique<RawClient>(server->port()));
        bare.back()->exchange("text 16 16\n", 18);
    }
    const std::size_t withBare = residentBytes();
    std::vector<std::unique_ptr<tarnis::Client>> clients;
    Countdown connected(count);
    for (int i = 0; i < count; ++i) {
        clients.push_back(std::make_unique<tarnis::Client>());
        QObject::connect(clients.back().get(), &tarnis::Client::connected, clients.back().get(), [&] { connected(); });
        clients.back()->connectTo("127.0.0.1", server->port());
    }
    connected.wait();
    // Each has exchanged something, to include what an idle client keeps of its last request.
    Countdown ends(count);
    for (const auto& client : clients)
        client->request("text 16 16").then([&](const tarnis::Reply&) { ends(); });
    ends.wait();
    const std::size_t withClients = residentBytes();
    for ([[maybe_unused]] auto _ : state) {
        QEventLoop loop;
        QTimer::singleShot(5000, &loop, &QEventLoop::quit);
        const double busy = millisecondsOf([&] { loop.exec(); });
        state.counters["core_percent"] = busy / 5000 * 100;
        state.SetIterationTime(busy / 1000);
    }
    const double serverBytes = double(withBare - before) / count;
    state.counters["kib_each"] = (double(withClients - withBare) / count - serverBytes) / 1024;
    state.counters["server_kib_each"] = serverBytes / 1024;
}
BENCHMARK(idleClients)->Arg(1000)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

// Where client and server run. On one processor a round trip costs two switches of threads; on two, each message wakes
// the other processor, which costs a virtual machine much more. Otherwise the system decides, and not always alike for
// the client and for its peer.
enum class Processors { Free, One, Two };
constexpr const char* processors = "processors";

// The processors of this thread, while the object exists. Threads that it starts inherit them.
class Placement {
public:
    // Where the server is started.
    explicit Placement(Processors where)
        : m_where(where)
        , m_client(::sched_getcpu())
    {
        ::sched_getaffinity(0, sizeof m_before, &m_before);
        if (where == Processors::One)
            bind(m_client);
        else if (where == Processors::Two)
            bind(otherThan(m_client));
    }
    ~Placement() { ::sched_setaffinity(0, sizeof m_before, &m_before); }
    Placement(const Placement&) = delete;
    Placement& operator=(const Placement&) = delete;

    // For the client, when the server's threads exist.
    void moveToClient() const
    {
        if (m_where == Processors::Two)
            bind(m_client);
    }

private:
    static void bind(int processor)
    {
        cpu_set_t one;
        CPU_ZERO(&one);
        CPU_SET(processor, &one);
        ::sched_setaffinity(0, sizeof one, &one);
    }
    int otherThan(int processor) const
    {
        for (int other = 0; other < CPU_SETSIZE; ++other)
            if (other != processor && CPU_ISSET(other, &m_before))
                return other;
        return processor;
    }

    Processors m_where;
    int m_client;
    cpu_set_t m_before {};
};

// A full queue: the throughput of one client.
void queuedRequests(benchmark::State& state)
{
    const Placement placement { Processors(state.range(0)) };
    const ReplyServer server;
    placement.moveToClient();
    const auto client = connectedTo(server.port());
    RawClient raw(server.port());
    constexpr int count = 20000;
    std::vector<double> ratios;
    double best = 0;
    double rawBest = 0;
    for ([[maybe_unused]] auto _ : state) {
        const double seconds = secondsOf([&] {
            Countdown ends(count);
            for (int i = 0; i < count; ++i)
                client->request("text 16 16").then([&](const tarnis::Reply& reply) {
                    if (!reply.isOk())
                        std::abort();
                    ends();
                });
            ends.wait();
        });
        const double rawSeconds = secondsOf([&] {
            for (int i = 0; i < count; ++i)
                raw.exchange("text 16 16\n", 18);
        });
        state.SetIterationTime(seconds);
        ratios.push_back(seconds / rawSeconds);
        best = std::max(best, count / seconds);
        rawBest = std::max(rawBest, count / rawSeconds);
    }
    state.counters["best_per_second"] = best;
    state.counters["raw_best_per_second"] = rawBest;
    state.counters["ratio_to_raw"] = median(ratios);
}
BENCHMARK(queuedRequests)
    ->ArgName(processors)
    ->DenseRange(0, 2)
    ->UseManualTime()
    ->Iterations(7)
    ->Unit(benchmark::kMillisecond);

// One request at a time, from the call to the continuation.
void latency(benchmark::State& state)
{
    const Placement placement { Processors(state.range(0)) };
    const ReplyServer server;
    placement.moveToClient();
    const auto client = connectedTo(server.port());
    RawClient raw(server.port());
    std::vector<double> clientTimes;
    std::vector<double> rawTimes;
    for ([[maybe_unused]] auto _ : state) {
        clientTimes.push_back(secondsOf([&] {
            Countdown end(1);
            client->request("text 16 16").then([&](const tarnis::Reply&) { end(); });
            end.wait();
        }));
        rawTimes.push_back(secondsOf([&] { raw.exchange("text 16 16\n", 18); }));
        state.SetIterationTime(clientTimes.back());
    }
    state.counters["median_us"] = 1e6 * median(clientTimes);
    state.counters["raw_us"] = 1e6 * median(rawTimes);
}
BENCHMARK(latency)
    ->ArgName(processors)
    ->DenseRange(0, 2)
    ->UseManualTime()
    ->Iterations(5000)
    ->Unit(benchmark::kMicrosecond);

void largeReply(benchmark::State& state)
{
    const Placement placement { Processors(state.range(1)) };
    const ReplyServer server;
    placement.moveToClient();
    const auto client = connectedTo(server.port());
    RawClient raw(server.port());
    const auto size = std::size_t(state.range(0));
    const std::string request = "binary " + std::to_string(size);
    std::vector<double> clientTimes;
    std::vector<double> rawTimes;
    for ([[maybe_unused]] auto _ : state) {
        Countdown end(1);
        double seconds = 0;
        client->requestBinary(QString::fromStdString(request)).then([&](const tarnis::Reply& reply) {
            seconds = std::chrono::duration<double>(Clock::now() - ReplyServer::firstByte()).count();
            if (reply.data.size() != qsizetype(size))
                std::abort();
            end();
        });
        end.wait();
        clientTimes.push_back(seconds);
        rawTimes.push_back(raw.receiveLarge(request + "\n", 4 + size + 6));
        state.SetIterationTime(seconds);
    }
    state.counters["client_us"] = 1e6 * median(clientTimes);
    state.counters["recv_us"] = 1e6 * median(rawTimes);
    state.counters["ratio"] = median(clientTimes) / median(rawTimes);
}
BENCHMARK(largeReply)
    ->ArgNames({ "bytes", processors })
    ->Args({ 8 << 10, 0 })
    ->Args({ 8 << 10, 1 })
    ->Args({ 8 << 10, 2 })
    ->Args({ 8 << 20, 0 })
    ->Args({ 64 << 20, 0 })
    ->UseManualTime()
    ->Iterations(40)
    ->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv)
{
    // A thousand clients and their server's ends exceed the default limit of open files.
    rlimit files {};
    ::getrlimit(RLIMIT_NOFILE, &files);
    files.rlim_cur = files.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &files);
    const QCoreApplication application(argc, argv);
    return runBenchmarks(argc, argv);
}
