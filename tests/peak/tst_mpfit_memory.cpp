// Storage: if any allocation fails, the status is -20, and all memory is freed in every case.
#include <tarnis/peak/mpfit.h>

#include <QTest>

#include <climits>
#include <cmath>
#include <cstdlib>
#include <new>
#include <stdexcept>

namespace {

// Counts the program's allocations between watch() and the end of the call under test.
struct AllocationCounts {
    bool watching = false;
    int allocations = 0;
    int live = 0;
    int failing = 0; ///< number of the allocation that fails; 0: none
    std::size_t largest = 0;
};

AllocationCounts heap;

void* allocate(std::size_t size)
{
    if (heap.watching) {
        heap.largest = std::max(heap.largest, size);
        if (++heap.allocations == heap.failing || size > (std::size_t(1) << 40))
            throw std::bad_alloc();
    }
    void* block = std::malloc(size ? size : 1);
    if (!block)
        throw std::bad_alloc();
    heap.live += heap.watching ? 1 : 0;
    return block;
}

void release(void* block) noexcept
{
    if (block && heap.watching)
        --heap.live;
    std::free(block);
}

} // namespace

void* operator new(std::size_t size)
{
    return allocate(size);
}
void* operator new[](std::size_t size)
{
    return allocate(size);
}
void operator delete(void* block) noexcept
{
    release(block);
}
void operator delete[](void* block) noexcept
{
    release(block);
}
void operator delete(void* block, std::size_t) noexcept
{
    release(block);
}
void operator delete[](void* block, std::size_t) noexcept
{
    release(block);
}

namespace {

enum class Behaviour { Runs, StopsAtOnce, StopsInTheJacobian, StopsOnATrial, Throws, NotFinite };

struct Script {
    Behaviour behaviour;
    int calls = 0;
};

int scripted(int m, int, double* x, double* r, double** dvec, void* data)
{
    Script& script = *static_cast<Script*>(data);
    ++script.calls;
    for (int i = 0; i < m; ++i) {
        r[i] = i - x[0] - x[1] * i * i;
        if (dvec && dvec[1])
            dvec[1][i] = -i * i;
    }
    switch (script.behaviour) {
    case Behaviour::StopsAtOnce:
        return -1;
    case Behaviour::StopsInTheJacobian:
        return script.calls == 2 ? -1 : 0;
    case Behaviour::StopsOnATrial:
        return script.calls == 4 ? -1 : 0;
    case Behaviour::Throws:
        throw std::runtime_error("from the residuals");
    case Behaviour::NotFinite:
        r[0] = NAN;
        return 0;
    case Behaviour::Runs:
        break;
    }
    return 0;
}

struct Outcome {
    int status = 0;
    bool threw = false;
    int calls = 0;
};

// One fit with all kinds of records and counted allocations.
Outcome watchedFit(Behaviour behaviour, int failing = 0)
{
    double x[] = { 0.0, 0.5, 3.0 };
    mp_par pars[3] {};
    pars[1].side = 3;
    pars[1].limited[0] = 1;
    pars[2].fixed = 1;
    mp_config config {};
    config.nofinitecheck = 1;
    double xerror[3], covar[9], resid[6];
    mp_result result {};
    result.xerror = xerror;
    result.covar = covar;
    result.resid = resid;
    Script script { behaviour };
    Outcome outcome;
    heap = { true, 0, 0, failing, 0 };
    try {
        outcome.status = mpfit(scripted, 6, 3, x, pars, &config, &script, &result);
    } catch (const std::runtime_error&) {
        outcome.threw = true;
    }
    heap.watching = false;
    outcome.calls = script.calls;
    return outcome;
}

} // namespace

class TestMpfitMemory : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void freesAllMemory_data()
    {
        QTest::addColumn<int>("behaviour");
        QTest::addColumn<int>("status");
        QTest::newRow("runs") << int(Behaviour::Runs) << 4;
        QTest::newRow("stops at once") << int(Behaviour::StopsAtOnce) << 0;
        QTest::newRow("stops in the Jacobian") << int(Behaviour::StopsInTheJacobian) << 0;
        QTest::newRow("stops on a trial step") << int(Behaviour::StopsOnATrial) << -1;
        QTest::newRow("not finite") << int(Behaviour::NotFinite) << -16;
    }
    void freesAllMemory()
    {
        QFETCH(int, behaviour);
        QFETCH(int, status);
        const Outcome outcome = watchedFit(Behaviour(behaviour));
        QCOMPARE(outcome.status, status);
        QVERIFY(heap.allocations > 0);
        QCOMPARE(heap.live, 0);

        QVERIFY(watchedFit(Behaviour::Throws).threw);
        // The exception object itself does not come from here.
        QVERIFY(heap.live <= 1);
    }

    void refusedAllocation()
    {
        QCOMPARE(watchedFit(Behaviour::Runs).status, 4);
        const int allocations = heap.allocations;
        for (int failing = 1; failing <= allocations; ++failing) {
            const Outcome outcome = watchedFit(Behaviour::Runs, failing);
            QCOMPARE(outcome.status, -20);
            QCOMPARE(outcome.calls, 0);
            QCOMPARE(heap.live, 0);
        }
    }

    void refusedAllocationComesBeforeTheParameters()
    {
        double x[] = { 1.0 };
        mp_par par {};
        par.fixed = 1;
        heap = { true, 0, 0, 1, 0 };
        const int status = mpfit(scripted, 4, 1, x, &par, nullptr, nullptr, nullptr);
        heap.watching = false;
        QCOMPARE(status, -20);
    }

    void countsBeyondTheAddressSpace()
    {
        // Neither the vectors nor the Jacobian can be allocated; x is never read.
        double x[] = { 1.0 };
        heap = { true, 0, 0, 1, 0 };
        const int vectors = mpfit(scripted, INT_MAX, INT_MAX, x, nullptr, nullptr, nullptr, nullptr);
        heap.watching = false;
        QCOMPARE(vectors, -20);
        QVERIFY(heap.largest >= std::size_t(INT_MAX) * 12 * sizeof(double));

        std::vector<double> many(std::size_t(1) << 20);
        heap = { true, 0, 0, 0, 0 };
        const int jacobian =
            mpfit(scripted, int(many.size()), int(many.size()), many.data(), nullptr, nullptr, nullptr, nullptr);
        heap.watching = false;
        QCOMPARE(jacobian, -20);
        QCOMPARE(heap.largest, many.size() * many.size() * sizeof(double));
        QCOMPARE(heap.live, 0);
    }

    void allocatesOncePerCall()
    {
        // No more for a fit of many iterations than for one that is stopped at once.
        watchedFit(Behaviour::StopsAtOnce);
        const int atOnce = heap.allocations;
        watchedFit(Behaviour::Runs);
        QCOMPARE(heap.allocations, atOnce);
    }
};

QTEST_GUILESS_MAIN(TestMpfitMemory)
#include "tst_mpfit_memory.moc"
