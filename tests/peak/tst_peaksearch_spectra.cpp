// Two measured gamma spectra: every strong isolated line is found at its centroid.
#include "support/cases.h"
#include "support/support.h"

#include <tarnis/peak/peaksearch.h>

#include <QFile>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>

using namespace tarnis::testing;

namespace {

// The channels of a spectrum in .spe format, `binning` of them added up to one.
QList<double> readSpectrum(const QString& path, int binning)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s cannot be read", qPrintable(path));
    const QList<QByteArray> lines = file.readAll().split('\n');
    qsizetype line = lines.indexOf("$DATA:") >= 0 ? lines.indexOf("$DATA:") : lines.indexOf("$DATA:\r");
    QList<double> channels;
    for (line += 2; line < lines.size() && !lines[line].startsWith('$'); ++line) {
        for (const QByteArray& word : lines[line].simplified().split(' ')) {
            if (!word.isEmpty())
                channels.append(word.toDouble());
        }
    }
    QList<double> bins;
    for (qsizetype i = 0; i + binning <= channels.size(); i += binning)
        bins.append(std::accumulate(channels.begin() + i, channels.begin() + i + binning, 0.0));
    return bins;
}

double meanOf(const QList<double>& y, qsizetype begin, qsizetype end)
{
    return std::accumulate(y.begin() + begin, y.begin() + end, 0.0) / double(end - begin);
}

struct Line {
    qsizetype channel; ///< of the highest sample
    double height;
    double centroid; ///< centroid of the part above half height
};

// A line is strong if its highest sample is a wide local maximum, several times the level on either side.
std::optional<Line> strongLineAt(const QList<double>& y, qsizetype i, double least, qsizetype reach, double contrast)
{
    if (y[i] < least || i < 3 * reach || i + 3 * reach >= y.size())
        return std::nullopt;
    const auto highest = std::max_element(y.begin() + i - 3 * reach, y.begin() + i + 3 * reach + 1);
    if (highest - y.begin() != i)
        return std::nullopt;
    const double left = meanOf(y, i - 3 * reach, i - reach);
    const double right = meanOf(y, i + reach + 1, i + 3 * reach + 1);
    if (y[i] < contrast * std::max(left, right))
        return std::nullopt;
    const double half = 0.5 * (y[i] + 0.5 * (left + right));
    qsizetype first = i;
    qsizetype last = i;
    while (y[first - 1] > half)
        --first;
    while (y[last + 1] > half)
        ++last;
    double sum = 0.0;
    double moment = 0.0;
    for (qsizetype k = first; k <= last; ++k) {
        sum += y[k] - half;
        moment += (y[k] - half) * double(k);
    }
    return Line { i, y[i], moment / sum };
}

} // namespace

class TestPeakSearchSpectra : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void findsTheStrongLines_data()
    {
        addColumns<QString, int, double, double, int, int, bool, double>(
            "file", "binning", "threshold", "least", "reach", "lines", "abscissae", "tolerance");
        const QString germanium = QStringLiteral("spectra/hpge-pottery.spe");
        const QString iodide = QStringLiteral("spectra/csi-ba133-cs137.spe");
        QTest::newRow("germanium, by index") << germanium << 1 << 100.0 << 200.0 << 12 << 12 << false << 0.5;
        QTest::newRow("germanium, by abscissa") << germanium << 1 << 100.0 << 200.0 << 12 << 12 << true << 0.5;
        // Its lines are a hundred channels wide with few counts, so eight channels are binned. The strong line is not
        // isolated: the background is twice as high on its left as on its right, and a constant one shifts the fit to
        // the left.
        QTest::newRow("caesium iodide, by index") << iodide << 8 << 160.0 << 200.0 << 9 << 1 << false << 1.5;
        QTest::newRow("caesium iodide, by abscissa") << iodide << 8 << 160.0 << 200.0 << 9 << 1 << true << 1.5;
    }
    void findsTheStrongLines()
    {
        QFETCH(QString, file);
        QFETCH(int, binning);
        QFETCH(double, threshold);
        QFETCH(double, least);
        QFETCH(int, reach);
        QFETCH(int, lines);
        QFETCH(bool, abscissae);
        QFETCH(double, tolerance);
        const QList<double> y = readSpectrum(testData(file), binning);
        QList<double> x(y.size());
        std::iota(x.begin(), x.end(), 0.0);
        const QList<PeakSearch::Gaussian> peaks = abscissae
            ? PeakSearch(x, y, threshold, 3, true).exec()
            : PeakSearch(y, 0, int(y.size()), threshold, 3, true).exec();

        int strong = 0;
        for (qsizetype i = 0; i < y.size(); ++i) {
            const auto line = strongLineAt(y, i, least, reach, 1.8);
            if (!line)
                continue;
            ++strong;
            double nearest = HUGE_VAL;
            for (const PeakSearch::Gaussian& peak : peaks)
                nearest = std::min(nearest, std::fabs(peak.center - line->centroid));
            std::printf("line at %lld of %g: centroid %.3f, peak %.3f beside it\n",
                static_cast<long long>(line->channel), line->height, line->centroid, nearest);
            QVERIFY2(nearest <= tolerance, qPrintable(QString::number(line->channel)));
        }
        QCOMPARE(strong, lines);
    }
};

QTEST_GUILESS_MAIN(TestPeakSearchSpectra)
#include "tst_peaksearch_spectra.moc"
