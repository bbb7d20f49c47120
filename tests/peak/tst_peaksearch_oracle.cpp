// Random series with PeakSearch and with its reference implementation: the same segments and bit-identical peaks.
#include "support/peaksearchoracle.h"
#include "support/support.h"
#include "tarnis/peak/peaksearch_p.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace tarnis::testing;
using tarnis::PeakSegment;

namespace {

struct Case {
    QList<double> x;
    QList<double> y;
    int start;
    int end;
    double threshold;
    int width;
    bool peak;
};

// Series with difficult cases: plateaus, zeros, negatives, runs at the ends, overlapping peaks.
class Cases {
public:
    explicit Cases(unsigned long long salt)
        : m_random(seededGenerator(salt))
    {
    }

    Case next(int longest)
    {
        const int n = pick(0, longest);
        Case c { abscissae(n), series(n), pick(0, n), 0, 0.0, pick(0, 5), pick(0, 3) != 0 };
        c.end = pick(c.start, n);
        if (pick(0, 2) == 0) {
            c.start = 0;
            c.end = n;
        }
        const double levels[] = { 0.0, 1.0, 2.0, 5.0, 0.5, -1.0, 20.0 };
        c.threshold = levels[pick(0, 6)];
        return c;
    }

private:
    int pick(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_random); }
    double uniform() { return std::uniform_real_distribution<double>(0.0, 1.0)(m_random); }

    QList<double> abscissae(int n)
    {
        QList<double> x;
        double at = 10.0 * uniform() - 5.0;
        for (int i = 0; i < n; ++i) {
            x.append(at);
            at += pick(0, 9) == 0 ? 0.0 : uniform();
        }
        return x;
    }

    QList<double> series(int n)
    {
        QList<double> y(n);
        const int kind = pick(0, 3);
        double level = pick(-2, 8);
        for (double& sample : y) {
            switch (kind) {
            case 0: // small whole numbers
                sample = pick(-1, 6);
                break;
            case 1: // a walk with plateaus
                level += pick(-1, 1);
                sample = level;
                break;
            case 2: // a walk without equal samples, now and then a zero
                level += 2.0 * uniform() - 1.0;
                sample = pick(0, 19) == 0 ? 0.0 : level;
                break;
            default: // noise for the peaks below
                sample = 2.0 * uniform();
            }
        }
        for (int peaks = kind == 3 ? pick(1, 4) : 0; peaks > 0 && n > 0; --peaks) {
            const double center = n * uniform();
            const double sigma = 0.5 + 4.0 * uniform();
            const double height = 30.0 * uniform();
            for (int i = 0; i < n; ++i)
                y[i] += height * std::exp(-0.5 * (i - center) * (i - center) / (sigma * sigma));
        }
        return y;
    }

    std::mt19937_64 m_random;
};

QString descriptionOf(const Case& c)
{
    QString text = QStringLiteral("[%1, %2) threshold %3 width %4 peak %5:")
                       .arg(c.start)
                       .arg(c.end)
                       .arg(c.threshold)
                       .arg(c.width)
                       .arg(c.peak);
    for (const double sample : c.y)
        text += QLatin1Char(' ') + QString::number(sample, 'g', 17);
    return text;
}

bool areSame(double a, double b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

bool areSame(const QList<double>& a, const QList<double>& b)
{
    return a.size() == b.size()
        && std::equal(a.begin(), a.end(), b.begin(), [](double p, double q) { return areSame(p, q); });
}

bool areSame(const PeakSearch::Gaussian& a, const PeakSearch::Gaussian& b)
{
    return areSame(a.N, b.N) && areSame(a.center, b.center) && areSame(a.sigma, b.sigma) && areSame(a.offset, b.offset)
        && a.start == b.start && areSame(a.points, b.points);
}

bool areSame(const QList<PeakSearch::Gaussian>& a, const QList<PeakSearch::Gaussian>& b)
{
    return a.size() == b.size()
        && std::equal(a.begin(), a.end(), b.begin(), [](const auto& p, const auto& q) { return areSame(p, q); });
}

bool isSegment(const Case& c, const PeakSegment& segment, const OracleSegment& oracle)
{
    return c.y.mid(segment.first, segment.last - segment.first) == oracle.y;
}

} // namespace

class TestPeakSearchOracle : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void findsTheSegmentsOfTheOracleByIndex()
    {
        Cases cases(61);
        qsizetype found = 0;
        qsizetype shifted = 0;
        for (int round = 0; round < 60000; ++round) {
            const Case c = cases.next(60);
            const auto segments = tarnis::findPeakSegments(c.y, c.start, c.end, { c.threshold, c.width, c.peak });
            const auto oracle = oracleIndexSegments(c.y, c.start, c.end, c.threshold, c.width, c.peak);
            QVERIFY2(qsizetype(segments.size()) == oracle.size(), qPrintable(descriptionOf(c)));
            for (qsizetype k = 0; k < oracle.size(); ++k) {
                const PeakSegment& segment = segments[std::size_t(k)];
                QVERIFY2(isSegment(c, segment, oracle[k]), qPrintable(descriptionOf(c)));
                QVERIFY2(segment.pos == oracle[k].pos, qPrintable(descriptionOf(c)));
                shifted += segment.pos != segment.first;
            }
            found += oracle.size();
        }
        QVERIFY(found > 20000);
        QVERIFY(shifted > 300);
    }

    void findsTheSegmentsOfTheOracleByX()
    {
        Cases cases(62);
        for (int round = 0; round < 60000; ++round) {
            const Case c = cases.next(60);
            const auto segments = tarnis::findPeakSegments(c.y, 0, c.y.size(), { c.threshold, c.width, c.peak });
            const auto oracle = oracleXSegments(c.x, c.y, c.threshold, c.width, c.peak);
            QVERIFY2(qsizetype(segments.size()) == oracle.size(), qPrintable(descriptionOf(c)));
            for (qsizetype k = 0; k < oracle.size(); ++k) {
                const PeakSegment& segment = segments[std::size_t(k)];
                QVERIFY2(isSegment(c, segment, oracle[k]), qPrintable(descriptionOf(c)));
                QVERIFY2(c.x.mid(segment.first, segment.last - segment.first) == oracle[k].second,
                    qPrintable(descriptionOf(c)));
            }
        }
    }

    void findsThePeaksOfTheOracleByIndex()
    {
        Cases cases(63);
        qsizetype found = 0;
        for (int round = 0; round < 8000; ++round) {
            const Case c = cases.next(60);
            const auto peaks = PeakSearch(c.y, c.start, c.end, c.threshold, c.width, c.peak).exec();
            const auto oracle = oracleIndexPeaks(c.y, c.start, c.end, c.threshold, c.width, c.peak);
            QVERIFY2(areSame(peaks, oracle), qPrintable(descriptionOf(c)));
            found += peaks.size();
        }
        QVERIFY(found > 1500);
    }

    void findsThePeaksOfTheOracleByX()
    {
        Cases cases(64);
        qsizetype found = 0;
        for (int round = 0; round < 8000; ++round) {
            const Case c = cases.next(60);
            if (c.x.isEmpty())
                continue;
            const auto peaks = PeakSearch(c.x, c.y, c.threshold, c.width, c.peak).exec();
            const auto oracle = oracleXPeaks(c.x, c.y, c.threshold, c.width, c.peak);
            QVERIFY2(areSame(peaks, oracle), qPrintable(descriptionOf(c)));
            found += peaks.size();
        }
        QVERIFY(found > 1500);
    }
};

QTEST_GUILESS_MAIN(TestPeakSearchOracle)
#include "tst_peaksearch_oracle.moc"
