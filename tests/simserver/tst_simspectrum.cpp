// Reading measured spectra, and drawing events from them.
#include "simserver/chisquare.h"
#include "spectrum.h"
#include "support/cases.h"
#include "support/support.h"

#include <QTemporaryDir>
#include <QtTest>

#include <numeric>

using namespace simserver;
using namespace tarnis::testing;

namespace {

std::vector<double> countsOf(const QByteArray& text)
{
    const SpectrumResult result = parseSpectrum(text);
    return result.error.isEmpty() ? result.spectrum.counts : std::vector<double> { -1.0 };
}

} // namespace

class TestSimSpectrum : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void numbersAreRead_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("one a line") << QByteArray("1\n2\n3\n");
        QTest::newRow("without a last line feed") << QByteArray("1\n2\n3");
        QTest::newRow("with line ends of two bytes") << QByteArray("1\r\n2\r\n3\r\n");
        QTest::newRow("several a line") << QByteArray("1 2\n 3 \n");
        QTest::newRow("with comments and empty lines") << QByteArray("# counts\n\n1 # first\n2\n\n3\n");
        QTest::newRow("with decimals") << QByteArray("1.0\n2e0\n3.\n");
        QTest::newRow("spe") << QByteArray("$SPEC_ID:\nx\n$DATA:\n0 2\n 1\n 2\n 3\n$ROI:\n0\n");
        QTest::newRow("spe with line ends of two bytes") << QByteArray("$DATA:\r\n0 2\r\n1\r\n2\r\n3\r\n");
        QTest::newRow("spe that begins at channel 5") << QByteArray("$DATA:\n5 7\n1 2 3\n");
        QTest::newRow("spe behind empty lines") << QByteArray("\n\n$DATA:\n0 2\n1 2 3\n");
    }
    void numbersAreRead()
    {
        QFETCH(QByteArray, text);
        QCOMPARE(countsOf(text), (std::vector<double> { 1.0, 2.0, 3.0 }));
    }

    void badTextIsRefused_data()
    {
        addColumns<QByteArray, QString>("text", "error");
        addCase("nothing", QByteArray(), QStringLiteral("no channels"));
        addCase("comments only", QByteArray("# a\n"), QStringLiteral("no channels"));
        addCase("a word", QByteArray("1\ntwo\n"), QStringLiteral("line 2: 'two' is not a count"));
        addCase("a negative count", QByteArray("-1\n"), QStringLiteral("line 1: '-1' is not a count"));
        addCase("not a number", QByteArray("nan\n"), QStringLiteral("line 1: 'nan' is not a count"));
        addCase("infinity", QByteArray("inf\n"), QStringLiteral("line 1: 'inf' is not a count"));
        addCase("a sum beyond the largest number", QByteArray("1e308\n1e308\n"),
            QStringLiteral("the sum of the counts is not finite"));
        addCase("spe without data", QByteArray("$SPEC_ID:\nx\n"), QStringLiteral("no $DATA section"));
        addCase("spe with a range that ends too early", QByteArray("$DATA:\n0 1\n1\n2\n3\n"),
            QStringLiteral("$DATA announces 2 channels and holds 3"));
        addCase(
            "truncated spe", QByteArray("$DATA:\n0 9\n1\n"), QStringLiteral("$DATA announces 10 channels and holds 1"));
        addCase("spe with a reversed range", QByteArray("$DATA:\n3 1\n"),
            QStringLiteral("line 2: '3 1' is not a range of channels"));
        addCase("spe with a huge range", QByteArray("$DATA:\n0 99999999999\n"),
            QStringLiteral("line 2: '0 99999999999' is not a range of channels"));
        addCase("spe with a word for a count", QByteArray("$DATA:\n0 1\n1\nx\n"),
            QStringLiteral("line 4: 'x' is not a count"));
        addCase("spe with two data sections", QByteArray("$DATA:\n0 0\n1\n$DATA:\n0 0\n1\n"),
            QStringLiteral("line 5: '0 0' is not a range of channels"));
    }
    void badTextIsRefused()
    {
        QFETCH(QByteArray, text);
        QTEST(parseSpectrum(text).error, "error");
    }

    void calibrationIsRead_data()
    {
        addColumns<QByteArray, double, double, QString>("text", "offset", "slope", "unit");
        const QByteArray data = "$DATA:\n4 5\n1 2\n";
        QTest::newRow("none") << data << 4.0 << 1.0 << QStringLiteral("channel");
        QTest::newRow("behind the data") << data + "$ENER_FIT:\n1.5 0.25\n" << 2.5 << 0.25 << QStringLiteral("keV");
        QTest::newRow("before the data") << "$ENER_FIT:\n1.5 0.25\n" + data << 2.5 << 0.25 << QStringLiteral("keV");
        QTest::newRow("zeros") << data + "$ENER_FIT:\n0 0\n" << 4.0 << 1.0 << QStringLiteral("channel");
        QTest::newRow("words") << data + "$ENER_FIT:\na b\n" << 4.0 << 1.0 << QStringLiteral("channel");
        QTest::newRow("infinite") << data + "$ENER_FIT:\n0 inf\n" << 4.0 << 1.0 << QStringLiteral("channel");
    }
    void calibrationIsRead()
    {
        QFETCH(QByteArray, text);
        const Spectrum spectrum = parseSpectrum(text).spectrum;
        QTEST(spectrum.offset, "offset");
        QTEST(spectrum.slope, "slope");
        QTEST(spectrum.unit, "unit");
    }

    void measuredSpectraAreRead_data()
    {
        addColumns<QString, int, double, QString>("name", "channels", "sum", "unit");
        QTest::newRow("germanium") << "spectra/hpge-pottery.spe" << 16384 << 304706.0 << "keV";
        QTest::newRow("caesium iodide") << "spectra/csi-ba133-cs137.spe" << 4094 << 166239.0 << "channel";
    }
    void measuredSpectraAreRead()
    {
        QFETCH(QString, name);
        QFETCH(int, channels);
        const SpectrumResult result = readSpectrum(tarnis::testing::testData(name));
        QCOMPARE(result.error, QString());
        const std::vector<double>& counts = result.spectrum.counts;
        QCOMPARE(counts.size(), static_cast<std::size_t>(channels));
        QTEST(std::accumulate(counts.begin(), counts.end(), 0.0), "sum");
        QTEST(result.spectrum.unit, "unit");
    }

    void missingFileIsAnError()
    {
        const QTemporaryDir folder;
        QVERIFY(!readSpectrum(folder.filePath("absent.spe")).error.isEmpty());
        QVERIFY(!readSpectrum(folder.path()).error.isEmpty());
    }

    void samplesFollowTheCounts()
    {
        std::vector<double> counts;
        for (int i = 0; i < 500; ++i)
            counts.push_back(i % 7 == 3 ? 40.0 + i : 1.0 + i % 5);
        const ChannelSampler sampler(counts);
        QVERIFY(sampler.isValid());
        constexpr int events = 400000;
        std::vector<double> found(counts.size(), 0.0);
        Random random(1, 1, 1);
        for (int i = 0; i < events; ++i)
            found.at(sampler.sample(random)) += 1.0;
        const double sum = std::accumulate(counts.begin(), counts.end(), 0.0);
        for (double& count : counts)
            count *= events / sum;
        QVERIFY(std::abs(chisquare::deviation(found, counts)) < 4.0);
    }

    void emptyChannelsAreNeverDrawn()
    {
        std::vector<double> counts(1000, 0.0);
        counts[3] = 1.0;
        counts[999] = 1e6;
        const ChannelSampler sampler(counts);
        Random random(1, 1, 1);
        for (int i = 0; i < 100000; ++i) {
            const std::size_t channel = sampler.sample(random);
            QVERIFY(channel == 3 || channel == 999);
        }
    }

    void spectrumWithoutCountsIsNotSampled()
    {
        QVERIFY(!ChannelSampler({}).isValid());
        QVERIFY(!ChannelSampler({ 0.0, 0.0 }).isValid());
        QVERIFY(ChannelSampler({ 0.5 }).isValid());
    }
};

QTEST_APPLESS_MAIN(TestSimSpectrum)
#include "tst_simspectrum.moc"
