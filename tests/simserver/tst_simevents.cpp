// The event stream: Poisson statistics, reproducibility, and distributions.
#include "acquisition.h"
#include "events.h"
#include "simserver/chisquare.h"
#include "support/support.h"

#include <QtTest>

#include <cmath>

using namespace simserver;
using tarnis::testing::seededGenerator;

namespace {

/// Beyond this a test fails; the probability by chance is 3 in 100,000.
constexpr double limitDeviation = 4.0;

struct TimedEvent {
    double liveTime;
    Event event;
    bool operator==(const TimedEvent& other) const
    {
        return liveTime == other.liveTime && event.module == other.event.module && event.time == other.event.time
            && event.horizontal == other.event.horizontal && event.vertical == other.event.vertical;
    }
};

std::vector<TimedEvent> eventsUntil(EventStream& stream, double until)
{
    std::vector<TimedEvent> events;
    stream.advance(until, 100000000, [&](const Event& event) { events.push_back({ stream.liveTime(), event }); });
    return events;
}

std::vector<Event> sampled(const EventShape& shape, int count)
{
    const EventModel model(shape);
    Random random(5, 1, 0);
    std::vector<Event> events;
    for (int i = 0; i < count; ++i)
        events.push_back(model.sample(random));
    return events;
}

bool never()
{
    return false;
}

bool always()
{
    return true;
}

SettingValues valuesWith(double rate, qint64 maxEvents = 0, double maxTime = 0.0)
{
    SettingValues values;
    values.rate = rate;
    values.maxEvents = maxEvents;
    values.maxTime = maxTime;
    return values;
}

} // namespace

class TestSimEvents : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Random numbers
    void uniformNumbersFillTheIntervalEvenly()
    {
        Random random(1, 2, 3);
        std::vector<double> counts(64, 0.0);
        for (int i = 0; i < 64000; ++i) {
            const double number = random.uniform();
            QVERIFY(number >= 0.0 && number < 1.0);
            counts[static_cast<std::size_t>(number * 64.0)] += 1.0;
        }
        QVERIFY(std::abs(chisquare::deviation(counts, std::vector<double>(64, 1000.0))) < limitDeviation);
    }

    void normalNumbersHaveTheirMoments()
    {
        Random random(1, 2, 4);
        constexpr int count = 100000;
        double sum = 0.0;
        double squares = 0.0;
        double fourths = 0.0;
        for (int i = 0; i < count; ++i) {
            const double x = random.normal();
            sum += x;
            squares += x * x;
            fourths += x * x * x * x;
        }
        QVERIFY(std::abs(sum / count) < 4.0 / std::sqrt(count));
        QVERIFY(std::abs(squares / count - 1.0) < 4.0 * std::sqrt(2.0 / count));
        QVERIFY(std::abs(fourths / count - 3.0) < 4.0 * std::sqrt(96.0 / count));
    }

    void wholeNumbersStayBelowTheLimit()
    {
        Random random(1, 2, 5);
        std::vector<double> counts(7, 0.0);
        for (int i = 0; i < 7000; ++i)
            counts.at(random.below(7)) += 1.0;
        QVERIFY(std::abs(chisquare::deviation(counts, std::vector<double>(7, 1000.0))) < limitDeviation);
        QCOMPARE(random.below(1), std::uint64_t { 0 });
    }

    // The stream
    void countsInEqualTimesArePoisson_data()
    {
        QTest::addColumn<double>("mean");
        QTest::newRow("few in an interval") << 0.7;
        QTest::newRow("some in an interval") << 5.0;
        QTest::newRow("many in an interval") << 60.0;
    }
    void countsInEqualTimesArePoisson()
    {
        QFETCH(double, mean);
        constexpr int intervals = 4000;
        EventStream stream(17, 1, EventShape(), mean); // intervals of one second
        std::vector<double> found(200, 0.0);
        for (int i = 1; i <= intervals; ++i)
            found.at(eventsUntil(stream, i).size()) += 1.0;
        std::vector<double> expected(200, 0.0);
        for (std::size_t k = 0; k < expected.size(); ++k) {
            const double logShare =
                static_cast<double>(k) * std::log(mean) - mean - std::lgamma(static_cast<double>(k) + 1.0);
            expected[k] = intervals * std::exp(logShare);
        }
        QVERIFY(std::abs(chisquare::deviation(found, expected)) < limitDeviation);
    }

    void gapsAreExponential()
    {
        constexpr double rate = 250.0;
        constexpr int cells = 50;
        EventStream stream(18, 1, EventShape(), rate);
        std::vector<double> counts(cells, 0.0);
        double last = 0.0;
        double total = 0.0;
        for (const TimedEvent& timed : eventsUntil(stream, 200.0)) {
            // Equal parts of an exponential distribution.
            const double share = -std::expm1(-(timed.liveTime - last) * rate);
            counts[static_cast<std::size_t>(std::min(share * cells, cells - 1.0))] += 1.0;
            last = timed.liveTime;
            total += 1.0;
        }
        QVERIFY(std::abs(total - 200.0 * rate) < 4.0 * std::sqrt(200.0 * rate));
        QVERIFY(std::abs(chisquare::deviation(counts, std::vector<double>(cells, total / cells))) < limitDeviation);
    }

    void countsInDisjointTimesAreIndependent()
    {
        EventStream stream(19, 1, EventShape(), 20.0);
        constexpr int intervals = 4000;
        double covariance = 0.0;
        double before = static_cast<double>(eventsUntil(stream, 1.0).size()) - 20.0;
        for (int i = 2; i <= intervals; ++i) {
            const double now = static_cast<double>(eventsUntil(stream, i).size()) - 20.0;
            covariance += before * now / 20.0;
            before = now;
        }
        QVERIFY(std::abs(covariance / std::sqrt(intervals)) < limitDeviation);
    }

    void sameSeedGivesTheSameEvents()
    {
        EventStream one(7, 3, EventShape(), 1000.0);
        EventStream other(7, 3, EventShape(), 1000.0);
        const std::vector<TimedEvent> events = eventsUntil(one, 2.0);
        QVERIFY(events.size() > 1000);
        QVERIFY(events == eventsUntil(other, 2.0));
    }

    void anotherSeedOrRunGivesOthers()
    {
        EventStream one(7, 3, EventShape(), 1000.0);
        EventStream otherSeed(8, 3, EventShape(), 1000.0);
        EventStream otherRun(7, 4, EventShape(), 1000.0);
        const double time = eventsUntil(one, 1.0).front().event.time;
        QVERIFY(eventsUntil(otherSeed, 1.0).front().event.time != time);
        QVERIFY(eventsUntil(otherRun, 1.0).front().event.time != time);
    }

    void cuttingTheTimeChangesNothing()
    {
        EventStream whole(9, 1, EventShape(), 5000.0);
        EventStream pieces(9, 1, EventShape(), 5000.0);
        const std::vector<TimedEvent> expected = eventsUntil(whole, 3.0);
        std::vector<TimedEvent> found;
        auto generator = seededGenerator(1);
        std::uniform_real_distribution<double> step(0.0, 0.01);
        double until = 0.0;
        while (until < 3.0) {
            until = std::min(until + step(generator), 3.0);
            const std::vector<TimedEvent> piece = eventsUntil(pieces, until);
            found.insert(found.end(), piece.begin(), piece.end());
        }
        QVERIFY(found == expected);
        QCOMPARE(pieces.liveTime(), 3.0);
    }

    void limitHoldsAndTheRestFollows()
    {
        EventStream whole(9, 2, EventShape(), 1000.0);
        EventStream limited(9, 2, EventShape(), 1000.0);
        const std::vector<TimedEvent> expected = eventsUntil(whole, 1.0);
        std::vector<TimedEvent> found;
        const auto take = [&](const Event& event) { found.push_back({ limited.liveTime(), event }); };
        QVERIFY(!limited.advance(1.0, 10, take));
        QCOMPARE(found.size(), std::size_t { 10 });
        QCOMPARE(limited.liveTime(), found.back().liveTime);
        QVERIFY(!limited.advance(1.0, 0, take));
        QVERIFY(limited.advance(1.0, 1000000, take));
        QVERIFY(found == expected);
    }

    void rateChangeKeepsTheStatistics()
    {
        EventStream stream(11, 1, EventShape(), 100.0);
        double slow = 0.0;
        double fast = 0.0;
        for (int i = 0; i < 400; ++i) {
            stream.setRate(100.0);
            slow += static_cast<double>(eventsUntil(stream, i + 0.5).size());
            stream.setRate(1000.0);
            fast += static_cast<double>(eventsUntil(stream, i + 1.0).size());
        }
        QVERIFY(std::abs(slow - 20000.0) < 4.0 * std::sqrt(20000.0));
        QVERIFY(std::abs(fast - 200000.0) < 4.0 * std::sqrt(200000.0));
    }

    void rateOfZeroGivesNothingUntilItRises()
    {
        EventStream stream(12, 1, EventShape(), 0.0);
        QCOMPARE(eventsUntil(stream, 1000.0).size(), std::size_t { 0 });
        QCOMPARE(stream.liveTime(), 1000.0);
        stream.setRate(100.0);
        QVERIFY(eventsUntil(stream, 1010.0).size() > 800);
        stream.setRate(0.0);
        QCOMPARE(eventsUntil(stream, 2000.0).size(), std::size_t { 0 });
    }

    // The shape
    void allEventsAreInsideTheDetector()
    {
        for (const int modules : { 1, 3, 256 }) {
            const EventShape shape { .modules = modules, .peaks = EventModel::maxPeaks, .background = 0.3 };
            for (const Event& event : sampled(shape, 50000)) {
                QVERIFY(event.horizontal >= 0.0 && event.horizontal < 1.0);
                QVERIFY(event.vertical >= 0.0 && event.vertical < 1.0);
                QVERIFY(event.time >= 0.0 && event.time < 1.0);
                QCOMPARE(event.module, static_cast<int>(event.horizontal * modules));
            }
        }
    }

    void backgroundFallsExponentially()
    {
        constexpr int cells = 100;
        constexpr int count = 200000;
        std::vector<double> counts(cells, 0.0);
        for (const Event& event : sampled({ .modules = 4, .peaks = 0, .background = 0.0 }, count))
            counts[static_cast<std::size_t>(event.time * cells)] += 1.0;
        const double decay = EventModel::backgroundDecay;
        std::vector<double> expected;
        for (int i = 0; i < cells; ++i) {
            const double low = std::exp(-i / decay / cells);
            const double high = std::exp(-(i + 1) / decay / cells);
            expected.push_back(count * (low - high) / (1.0 - std::exp(-1.0 / decay)));
        }
        QVERIFY(std::abs(chisquare::deviation(counts, expected)) < limitDeviation);
    }

    void peaksAreAtTheModelsPositions()
    {
        const EventShape shape { .modules = 4, .peaks = 3, .background = 0.0 };
        const EventModel model(shape);
        const std::vector<Event> events = sampled(shape, 300000);
        for (int module = 0; module < shape.modules; ++module) {
            for (int peak = 0; peak < shape.peaks; ++peak) {
                const double centre = model.peakCentre(peak, module);
                const double sigma = EventModel::peakSigma(peak);
                double count = 0.0;
                double sum = 0.0;
                double squares = 0.0;
                for (const Event& event : events) {
                    const double distance = (event.time - centre) / sigma;
                    if (event.module != module || std::abs(distance) > 8.0)
                        continue;
                    count += 1.0;
                    sum += distance;
                    squares += distance * distance;
                }
                QVERIFY(count > 1000.0);
                QVERIFY(std::abs(sum / count) < 4.0 / std::sqrt(count));
                QVERIFY(std::abs(squares / count - 1.0) < 4.0 * std::sqrt(2.0 / count));
            }
        }
    }

    void modulesShareTheEvents()
    {
        std::vector<double> counts(8, 0.0);
        for (const Event& event : sampled({ .modules = 8, .peaks = 0, .background = 1.0 }, 80000))
            counts.at(static_cast<std::size_t>(event.module)) += 1.0;
        for (std::size_t i = 0; i < 4; ++i) {
            const double other = counts[7 - i];
            QVERIFY(std::abs(counts[i] - other) < 4.0 * std::sqrt(counts[i] + other));
            QVERIFY(counts[i] > 4000.0);
        }
        QVERIFY(counts[3] > counts[0]); // denser towards the middle
    }

    // The acquisition
    void presetOfEventsIsExact()
    {
        Acquisition acquisition(valuesWith(5000.0, 12345));
        acquisition.start(1);
        for (int i = 0; i < 1000 && acquisition.isRunning(); ++i)
            acquisition.advance(0.05, always);
        QVERIFY(!acquisition.isRunning());
        QCOMPARE(acquisition.events(), std::uint64_t { 12345 });
        double sum = 0.0;
        for (const double count : acquisition.histograms().find1D("total")->counts)
            sum += count;
        QCOMPARE(sum, 12345.0);
    }

    void presetOfTimeIsExact()
    {
        Acquisition acquisition(valuesWith(5000.0, 0, 2.5));
        acquisition.start(1);
        for (int i = 0; i < 1000 && acquisition.isRunning(); ++i)
            acquisition.advance(0.07, always);
        QVERIFY(!acquisition.isRunning());
        QCOMPARE(acquisition.liveTime(), 2.5);
        EventStream stream(1, 1, EventShape(), 5000.0);
        QCOMPARE(acquisition.events(), std::uint64_t { eventsUntil(stream, 2.5).size() });
    }

    void twoAcquisitionsAgreeBinByBin()
    {
        Acquisition one(valuesWith(2000.0, 20000));
        Acquisition other(valuesWith(2000.0, 20000));
        one.start(4);
        other.start(4);
        one.advance(1000.0, always);
        while (other.isRunning())
            other.advance(0.03, always);
        for (const Histogram1D& histogram : one.histograms().all1D())
            QCOMPARE(histogram.counts, other.histograms().find1D(histogram.name)->counts);
        for (const Histogram2D& map : one.histograms().all2D())
            QCOMPARE(map.counts, other.histograms().find2D(map.name)->counts);
    }

    void spectrumDoesNotChangeTheEvents()
    {
        Acquisition plain(valuesWith(2000.0, 5000));
        Acquisition measured(valuesWith(2000.0, 5000));
        Spectrum spectrum;
        spectrum.counts = { 1.0, 2.0, 3.0 };
        measured.setSpectrum(spectrum);
        plain.start(1);
        measured.start(1);
        plain.advance(1000.0, always);
        measured.advance(1000.0, always);
        QCOMPARE(plain.histograms().find1D("time")->counts, measured.histograms().find1D("time")->counts);
        const std::vector<double>& live = measured.histograms().find1D("sampled")->counts;
        QCOMPARE(live[0] + live[1] + live[2], 5000.0);
        QCOMPARE(measured.histograms().find1D("spectrum")->counts, spectrum.counts);
    }

    void thresholdDropsTheRightShare()
    {
        Acquisition acquisition(valuesWith(10000.0));
        acquisition.start(1);
        for (Module& module : acquisition.modules())
            module.threshold = 256;
        acquisition.advance(10.0, always);
        const double all = static_cast<double>(acquisition.events() + acquisition.rejected());
        const double share = std::exp(-1.0);
        const double deviation = static_cast<double>(acquisition.events()) - all * share;
        QVERIFY(std::abs(deviation) < 4.0 * std::sqrt(all * share * (1.0 - share)));
    }

    void moduleThatIsOffCountsNothing()
    {
        Acquisition acquisition(valuesWith(10000.0));
        acquisition.modules()[2].enabled = false;
        acquisition.start(1);
        acquisition.advance(1.0, always);
        QCOMPARE(acquisition.modules()[2].counts, std::uint64_t { 0 });
        QVERIFY(acquisition.modules()[1].counts > 0);
        QVERIFY(acquisition.rejected() > 0);
        for (const double count : acquisition.histograms().find1D("time")->row(2))
            QCOMPARE(count, 0.0);
    }

    void timeBeyondTheBudgetIsDead()
    {
        Acquisition acquisition(valuesWith(1e6));
        acquisition.start(1);
        acquisition.advance(10.0, never);
        QCOMPARE(acquisition.events(), std::uint64_t { 4096 });
        QCOMPARE(acquisition.realTime(), 10.0);
        QVERIFY(acquisition.liveTime() < 0.01);
        // The rate over live time is still the configured one.
        QVERIFY(std::abs(acquisition.meanRate() / 1e6 - 1.0) < 4.0 / 64.0);
    }

    void clearKeepsTheRunGoing()
    {
        Acquisition acquisition(valuesWith(1000.0, 0, 3.0));
        acquisition.start(1);
        acquisition.advance(2.0, always);
        acquisition.clear();
        QVERIFY(acquisition.isRunning());
        QCOMPARE(acquisition.events(), std::uint64_t { 0 });
        QCOMPARE(acquisition.liveTime(), 0.0);
        acquisition.advance(2.0, always);
        QVERIFY(acquisition.isRunning()); // the preset counts from the clear
        QCOMPARE(acquisition.liveTime(), 2.0);
        acquisition.advance(2.0, always);
        QVERIFY(!acquisition.isRunning());
        QCOMPARE(acquisition.liveTime(), 3.0);
    }

    void loweredPresetEndsTheRun()
    {
        Acquisition acquisition(valuesWith(1000.0));
        acquisition.start(1);
        acquisition.advance(5.0, always);
        const std::uint64_t events = acquisition.events();
        acquisition.configure(valuesWith(1000.0, 10));
        acquisition.advance(0.001, always);
        QVERIFY(!acquisition.isRunning());
        QCOMPARE(acquisition.events(), events);
    }
};

QTEST_APPLESS_MAIN(TestSimEvents)
#include "tst_simevents.moc"
