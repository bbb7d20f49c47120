// Spectra in the .spe format: written and read back, measured files, damaged ones.
#include "datasets.h"
#include "support/cases.h"
#include "support/support.h"

#include <tarnis/formats/formats.h>
#include <tarnis/formats/spe.h>

#include <numeric>

using namespace tarnis;
using namespace tarnis::testing;

class TestSpe : public QObject {
    Q_OBJECT
private:
    static Dataset counted(qsizetype channels)
    {
        Dataset data;
        data.rows = 1;
        data.columns = channels;
        for (qsizetype i = 0; i < channels; ++i)
            data.values.push_back(static_cast<double>(i * i % 100000));
        data.x.name = QStringLiteral("Channel");
        return data;
    }

private Q_SLOTS:
    void readsBack()
    {
        Dataset data = counted(1000);
        data.title = QStringLiteral("A source");
        data.time = QDateTime(QDate(2026, 3, 10), QTime(12, 30, 15), QTimeZone::utc());
        data.liveTime = 300.25;
        data.realTime = 301.0;
        data.calibration = { -0.035087, 0.182804, -6.86613e-10 };
        data.calibrationUnit = QStringLiteral("keV");
        const DatasetResult back = decodeSpe(encodeSpe(data));
        QCOMPARE(back.error, QString());
        QCOMPARE(back.data, data);
    }

    void readsBackChannelsFromANumber()
    {
        Dataset data = counted(10);
        data.x.values = uniformEdges(100.0, 110.0, 10);
        QCOMPARE(decodeSpe(encodeSpe(data)).data, data);
    }

    void refusesWhatTheFormatCannotHold()
    {
        QVERIFY(encodeSpe(map(2, 2)).isEmpty());
        QVERIFY(encodeSpe(curves(1, 20)).isEmpty());
        Dataset data = counted(4);
        data.x.values = uniformEdges(0.0, 2.0, 4);
        QVERIFY(encodeSpe(data).isEmpty());
    }

    void readsSectionsInAnyOrder()
    {
        const DatasetResult result = decodeSpe("$ENER_FIT:\n0.5 2\n$DATA:\n0 2\n 1 2\n3\n$ROI:\n1\n$OTHER:\nx y z\n");
        QCOMPARE(result.error, QString());
        QCOMPARE(result.data.values, (std::vector<double> { 1.0, 2.0, 3.0 }));
        QCOMPARE(result.data.calibration, (std::vector<double> { 0.5, 2.0 }));
        QCOMPARE(result.data.calibrationUnit, QString("keV"));
    }

    void leavesOutACalibrationOfZeros()
    {
        QVERIFY(decodeSpe("$DATA:\n0 0\n1\n$ENER_FIT:\n0 0\n").data.calibration.empty());
    }

    void reportsWhatIsWrongAndWhere_data()
    {
        addColumns<QByteArray, QString>("text", "error");
        addCase("empty", QByteArray(), "it has no section $DATA");
        addCase("no range", QByteArray("$DATA:\n"), "it has no section $DATA");
        addCase("bad range", QByteArray("$DATA:\n0 x\n"), "line 2: '0 x' is not the first and the last channel");
        addCase("reversed", QByteArray("$DATA:\n5 2\n"), "line 2: '5 2' is not the first");
        addCase("fraction", QByteArray("$DATA:\n0 2.5\n"), "line 2: '0 2.5' is not the first");
        addCase("huge", QByteArray("$DATA:\n0 1e15\n"), "line 2: '0 1e15': more than 16777216 channels");
        addCase("not a count", QByteArray("$DATA:\n0 1\n3\nabc\n"), "line 4: 'abc' is not a count");
        addCase("negative", QByteArray("$DATA:\n0 1\n-3\n"), "line 3: '-3' is not a count");
        addCase("not finite", QByteArray("$DATA:\n0 1\nnan\n"), "line 3: 'nan' is not a count");
        addCase("too few", QByteArray("$DATA:\n0 2\n3\n"), "$DATA announces 3 channels and has 1");
        addCase("too many", QByteArray("$DATA:\n0 0\n3\n4\n"), "line 4: more than the announced 1 channels");
        addCase("twice", QByteArray("$DATA:\n0 0\n3\n$DATA:\n0 0\n3\n"), "line 5: a second section $DATA");
    }
    void reportsWhatIsWrongAndWhere()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, error);
        const DatasetResult result = decodeSpe(text);
        QVERIFY2(result.error.startsWith(error), qUtf8Printable(result.error));
        QVERIFY(result.data.values.empty());
    }

    void readsMeasuredSpectra_data()
    {
        addColumns<QString, qsizetype, double>("name", "channels", "liveTime");
        QTest::newRow("germanium") << "hpge-pottery.spe" << qsizetype(16384) << 16543.0;
        QTest::newRow("caesium iodide") << "csi-ba133-cs137.spe" << qsizetype(4094) << 300.0;
    }
    void readsMeasuredSpectra()
    {
        QFETCH(QString, name);
        const DatasetResult result = readDataset(testData(QStringLiteral("spectra/") + name));
        QCOMPARE(result.error, QString());
        QTEST(result.data.columns, "channels");
        QTEST(result.data.liveTime, "liveTime");
        QVERIFY(result.data.time.isValid());
        QVERIFY(std::accumulate(result.data.values.begin(), result.data.values.end(), 0.0) > 1000.0);
    }
};

QTEST_GUILESS_MAIN(TestSpe)
#include "tst_spe.moc"
