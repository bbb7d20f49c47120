// HDF5 files: exact round trips through the core, damaged files, and what h5py reads.
#include "datasets.h"

#include <tarnis/formats/formats.h>
#include <tarnis/hdf5/nexusfile.h>

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

using namespace tarnis;
using namespace tarnis::testing;

Q_DECLARE_METATYPE(tarnis::Dataset)

class TestHdf5 : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void readsBackBitForBit_data()
    {
        QTest::addColumn<Dataset>("data");
        QTest::newRow("spectrum") << described(curves(1, 500));
        QTest::newRow("one value") << curves(1, 1);
        Dataset data = described(curves(3, 40));
        data.x.values = uniformEdges(0.1, 40000.0, 40);
        data.rowNames = QStringList { "module 0", "Ω", "" };
        data.errors = awkwardNumbers(120, 9);
        QTest::newRow("curves with errors") << data;
        data = described(map(7, 5));
        data.x.values = awkwardNumbers(6, 6);
        data.y.values = awkwardNumbers(7, 7);
        data.errors = awkwardNumbers(35, 5);
        QTest::newRow("map") << data;
        QTest::newRow("map over bin numbers") << map(4, 3);
    }
    void readsBackBitForBit()
    {
        QFETCH(Dataset, data);
        // Through the core, which loads the library when it is needed.
        const EncodeResult file = encodeDataset(data, FileFormat::Hdf5);
        QCOMPARE(file.error, QString());
        const DatasetResult back = decodeDataset(file.bytes, FileFormat::Hdf5);
        QCOMPARE(back.error, QString());
        QVERIFY(sameBits(back.data.values, data.values));
        QVERIFY(sameBits(back.data.errors, data.errors));
        QVERIFY(sameBits(back.data.x.values, data.x.values));
        QVERIFY(sameBits(back.data.y.values, data.y.values));
        QCOMPARE(back.data, data);
    }

    void refusesDamagedFiles()
    {
        const QByteArray whole = encodeHdf5(described(map(7, 5))).bytes;
        QVERIFY(!decodeHdf5({}).error.isEmpty());
        QVERIFY(!decodeHdf5("1\n2\n").error.isEmpty());
        QVERIFY(!decodeHdf5(QByteArrayView(whole).first(600)).error.isEmpty());
        QCOMPARE(encodeHdf5({}).error, QString("there are no values to write"));
    }

    void refusesAHeapWithoutEnd()
    {
        // A file of another program with texts in a string heap.
        QFile file(QStringLiteral(HDF5_FILES "/nexus.h5"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QByteArray bytes = file.readAll();
        const DatasetResult whole = decodeHdf5(bytes);
        QCOMPARE(whole.error, QString());
        QCOMPARE(whole.data.x.values, (std::vector<double> { 0.0, 1.0, 2.0, 4.0 }));
        const qsizetype heap = bytes.indexOf("GCOL");
        QVERIFY(heap > 0);
        bytes.replace(heap + 16, 16, QByteArray(16, '\0'));
        QVERIFY(!decodeHdf5(bytes).error.isEmpty());
    }

    void opensInH5py()
    {
        const QTemporaryDir folder;
        Dataset data = described(map(3, 2));
        data.x.values = { 0.0, 1.5, 4.0 };
        data.values = { 1.0, 2.0, 3.0, 4.0, 5.0, 6.0 };
        data.errors = { 1.0, 1.5, 2.0, 2.0, 2.5, 2.5 };
        QCOMPARE(writeDataset(folder.filePath("a.h5"), data), QString());
        const QString script = QStringLiteral(R"(
import sys
import h5py
f = h5py.File(sys.argv[1], "r")
text = lambda value: value.decode() if isinstance(value, bytes) else value
entry = f[text(f.attrs["default"])]
group = entry[text(entry.attrs["default"])]
signal = text(group.attrs["signal"])
axes = [text(name) for name in group.attrs["axes"]]
print(text(group.attrs["NX_class"]), signal, axes, [int(group.attrs[name + "_indices"]) for name in axes])
print(group[signal][()].tolist(), group[signal + "_errors"][()].tolist(), text(group[signal].attrs["units"]))
print(group["x"][()].tolist(), text(group["x"].attrs["units"]), text(group["y"].attrs["units"]), group["y"].shape)
print("start_time" in entry, text(entry["snapshot_time"][()]), text(group["x"].attrs["long_name"]))
)");
        QProcess python;
        python.start("/usr/bin/python3", { "-c", script, folder.filePath("a.h5") });
        QVERIFY(python.waitForFinished());
        QCOMPARE(python.readAllStandardError(), QByteArray());
        QCOMPARE(QString::fromUtf8(python.readAllStandardOutput()),
            "NXdata counts ['y', 'x'] [0, 1]\n"
            "[[1.0, 2.0], [3.0, 4.0], [5.0, 6.0]] [[1.0, 1.5], [2.0, 2.0], [2.5, 2.5]] 1/s\n"
            "[0.0, 1.5, 4.0] µs mm (4,)\n"
            "False 2026-03-10T12:30:15.250Z Time, of flight\n");
    }
};

QTEST_GUILESS_MAIN(TestHdf5)
#include "tst_hdf5.moc"
