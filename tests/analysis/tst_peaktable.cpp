// All peaks of a spectrum: search, widths, windows, multiplets.
#include "referencedata.h"

#include "support/randomcases.h"

#include <tarnis/analysis/peaktable.h>

#include <QJsonArray>
#include <QTest>

#include <cmath>
#include <limits>

using namespace tarnis;
using namespace tarnis::testing;
using namespace Qt::StringLiterals;

namespace {

struct Peak {
    double centre;
    double area;
};

std::vector<double> spectrumOf(
    const std::vector<Peak>& peaks, const WidthCalibration& widths, int bins, double level, int seed)
{
    Generator generator(static_cast<Generator::result_type>(seed));
    std::vector<double> counts;
    for (int i = 0; i < bins; ++i) {
        double mean = level * std::exp(-2.0 * i / bins) + 0.1 * level;
        for (const Peak& peak : peaks)
            mean += peak.area
                * peakIntegral(PeakShape::Gaussian, i - 0.5, i + 0.5, peak.centre,
                    std::vector<double> { widths.sigma(peak.centre) });
        counts.push_back(static_cast<double>(std::poisson_distribution<int>(mean)(generator)));
    }
    return counts;
}

BinnedData over(const std::vector<double>& counts)
{
    BinnedData data;
    data.contents = counts;
    return data;
}

const TablePeak* nearest(const PeakTable& table, double centre)
{
    const TablePeak* best = nullptr;
    for (const TablePeak& peak : table.peaks) {
        if (!best || std::fabs(peak.centre - centre) < std::fabs(best->centre - centre))
            best = &peak;
    }
    return best;
}

const std::vector<Peak> plainPeaks { { 300, 4000 }, { 700, 9000 }, { 1200, 3000 }, { 1215, 2500 }, { 1700, 5000 },
    { 1900, 300 } };
const WidthCalibration plainWidths { 4.0, 0.006 };

} // namespace

class TestPeakTable : public QObject {
    Q_OBJECT

private slots:
    void findsPeaksAndTheirAreas()
    {
        const std::vector<double> counts = spectrumOf(plainPeaks, plainWidths, 2048, 50.0, 3);
        const PeakTable table = analysePeaks(over(counts));
        QCOMPARE(table.fault, QString());
        for (const Peak& truth : plainPeaks) {
            const TablePeak* found = nearest(table, truth.centre);
            QVERIFY(found);
            QVERIFY2(std::fabs(found->centre - truth.centre) < 5.0 * found->centreError,
                qPrintable(QString::number(truth.centre)));
            QVERIFY2(std::fabs(found->area - truth.area) < 5.0 * found->areaError,
                qPrintable(QString::number(truth.centre)));
            QVERIFY(found->acceptable);
        }
        // The doublet shares a window.
        QCOMPARE(nearest(table, 1200)->window, nearest(table, 1215)->window);
        int strong = 0;
        for (const TablePeak& peak : table.peaks)
            strong += peak.acceptable ? 1 : 0;
        QCOMPARE(strong, static_cast<int>(plainPeaks.size()));
    }

    void learnsTheWidths()
    {
        const std::vector<double> counts = spectrumOf(plainPeaks, plainWidths, 2048, 50.0, 4);
        const auto widths = estimateWidths(over(counts));
        QVERIFY(widths);
        for (const double x : { 300.0, 1000.0, 1700.0 })
            QVERIFY(agreesRelatively(u"sigma"_s, widths->sigma(x), plainWidths.sigma(x), 0.05));
        QVERIFY(!estimateWidths(over(std::vector<double>(500, 10.0))));
    }

    void searchesWithFewFalseAlarms()
    {
        int found = 0;
        for (int seed = 0; seed < 10; ++seed)
            found +=
                static_cast<int>(findPeaks(over(spectrumOf({}, plainWidths, 2000, 30.0, seed)), plainWidths).size());
        QVERIFY2(found <= 2, qPrintable(QString::number(found)));
    }

    void findsTheLinesOfMeasuredSpectra_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("germanium") << u"hpge-pottery"_s;
        QTest::newRow("scintillator") << u"csi-ba133-cs137"_s;
    }
    void findsTheLinesOfMeasuredSpectra()
    {
        QFETCH(QString, name);
        const QJsonObject file = referenceNumbers("given/"_L1 + name + ".json"_L1);
        const std::vector<double> counts = spectrumAt("spectra/"_L1 + name + ".spe"_L1);
        const PeakTable table = analysePeaks(over(counts));
        QCOMPARE(table.fault, QString());
        for (const QJsonValue& single : file["single"_L1].toArray()) {
            // The scintillator's lowest line is on the edge of its threshold, its highest has 46 counts.
            if (single["label"_L1].toString() == "p109"_L1 || single["label"_L1].toString() == "p3740"_L1)
                continue;
            const QJsonValue parameters = single["fits"_L1][3]["parameters"_L1];
            const TablePeak* found = nearest(table, parameters["centre"_L1].toDouble());
            QVERIFY2(found && std::fabs(found->centre - parameters["centre"_L1].toDouble()) < 0.3 * found->fwhm,
                qPrintable(single["label"_L1].toString()));
            // The scintillator's lines sit on edges and on each other: their areas depend on the window.
            if (name.startsWith(u"hpge"))
                QVERIFY2(std::fabs(found->area / parameters["area"_L1].toDouble() - 1.0) < 0.05,
                    qPrintable(single["label"_L1].toString()));
        }
    }

    void clipsBackgroundsBelowPeaks()
    {
        const std::vector<double> counts = spectrumOf(plainPeaks, plainWidths, 2048, 50.0, 5);
        const std::vector<double> background = clippedBackground(over(counts), plainWidths);
        QCOMPARE(background.size(), counts.size());
        QVERIFY(background[700] < 0.2 * counts[700]);
        for (std::size_t i = 0; i < counts.size(); ++i)
            QVERIFY(background[i] <= counts[i] + 1e-6);
    }

    void writesATable()
    {
        const std::vector<double> counts = spectrumOf({ { 500, 3000 } }, plainWidths, 1000, 20.0, 6);
        const PeakTable table = analysePeaks(over(counts));
        const QStringList lines = tableText(table).split(u'\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), static_cast<qsizetype>(table.peaks.size()) + 1);
        QCOMPARE(lines[1].count(u'\t'), lines[0].count(u'\t'));
    }

    void refusesBadInput()
    {
        QVERIFY(!analysePeaks(over({})).fault.isEmpty());
        std::vector<double> counts(200, 3.0);
        QVERIFY(!analysePeaks(over(counts)).fault.isEmpty());
        QVERIFY(!analysePeaks(over(counts), {}, 150, 100).fault.isEmpty());
        PeakTableOptions options;
        options.widths = plainWidths;
        QVERIFY(analysePeaks(over(counts), options).peaks.empty());
        QVERIFY(analysePeaks(over(counts), options).fault.isEmpty());
        counts[100] = std::numeric_limits<double>::quiet_NaN();
        QVERIFY(!analysePeaks(over(counts), options).fault.isEmpty());
        QVERIFY(findPeaks(over(counts), plainWidths).empty());
        QVERIFY(clippedBackground(over(counts), plainWidths).empty());
    }
};

QTEST_APPLESS_MAIN(TestPeakTable)
#include "tst_peaktable.moc"
