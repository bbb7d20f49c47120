// NPY files: exact round trips, the types and orders of other programs, damaged files.
#include "datasets.h"
#include "support/cases.h"

#include <tarnis/formats/npy.h>

#include <QtEndian>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

QByteArray npy(const QByteArray& dictionary, const QByteArray& content, char version = 1)
{
    QByteArray bytes("\x93NUMPY", 6);
    bytes += version;
    bytes += '\0';
    const auto size = static_cast<quint32>(dictionary.size());
    for (int i = 0; i < (version == 1 ? 2 : 4); ++i)
        bytes += static_cast<char>(size >> (8 * i));
    return bytes + dictionary + content;
}

QByteArray header(const QByteArray& type, const QByteArray& shape, bool fortran = false)
{
    return "{'descr': '" + type + "', 'fortran_order': " + (fortran ? "True" : "False") + ", 'shape': " + shape
        + ", }\n";
}

template <typename Number> QByteArray bytesOf(std::initializer_list<Number> numbers, bool big = false)
{
    QByteArray bytes;
    for (const Number number : numbers) {
        QByteArray one(reinterpret_cast<const char*>(&number), sizeof number);
        if (big)
            std::reverse(one.begin(), one.end());
        bytes += one;
    }
    return bytes;
}

using Values = std::vector<double>;

} // namespace

class TestNpy : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void readsBackBitForBit()
    {
        for (const Dataset& data : { curves(1, 1000), curves(3, 7), map(5, 9), map(1, 1), map(1, 8) }) {
            const DatasetResult back = decodeNpy(encodeNpy(data));
            QCOMPARE(back.error, QString());
            QVERIFY(sameBits(back.data.values, data.values));
            QCOMPARE(back.data.rows, data.rows);
            QCOMPARE(back.data.columns, data.columns);
        }
    }

    void alignsTheValues()
    {
        const Dataset data = curves(1, 10);
        const QByteArray bytes = encodeNpy(data);
        QCOMPARE((bytes.size() - 80) % 64, 0);
        QVERIFY(bytes.contains("{'descr': '<f8', 'fortran_order': False, 'shape': (10,), }"));
    }

    void readsEveryTypeAndByteOrder_data()
    {
        addColumns<QByteArray, QByteArray, Values>("type", "bytes", "values");
        addCase("b1", QByteArray("|b1"), QByteArray("\0\1\2", 3), Values { 0, 1, 1 });
        addCase("i1", QByteArray("|i1"), bytesOf<qint8>({ -128, 127 }), Values { -128, 127 });
        addCase("u1", QByteArray("|u1"), bytesOf<quint8>({ 255 }), Values { 255 });
        addCase("i2", QByteArray("<i2"), bytesOf<qint16>({ -300 }), Values { -300 });
        addCase("u2 big", QByteArray(">u2"), bytesOf<quint16>({ 65000 }, true), Values { 65000 });
        addCase("i4 big", QByteArray(">i4"), bytesOf<qint32>({ -70000 }, true), Values { -70000 });
        addCase("u4", QByteArray("<u4"), bytesOf<quint32>({ 4000000000U }), Values { 4e9 });
        addCase("i8", QByteArray("<i8"), bytesOf<qint64>({ -5000000000 }), Values { -5e9 });
        addCase("u8 big", QByteArray(">u8"), bytesOf<quint64>({ 1ULL << 63U }, true), Values { 0x1p63 });
        addCase("f2", QByteArray("<f2"), bytesOf<quint16>({ 0x3C00, 0xC500, 0x0001, 0x7C00, 0x8000, 0x7BFF }),
            Values { 1.0, -5.0, 0x1p-24, std::numeric_limits<double>::infinity(), -0.0, 65504.0 });
        addCase("f2 big", QByteArray(">f2"), bytesOf<quint16>({ 0x3800 }, true), Values { 0.5 });
        addCase("f4", QByteArray("<f4"), bytesOf<float>({ 1.5F, -0.25F }), Values { 1.5, -0.25 });
        addCase("f4 big", QByteArray(">f4"), bytesOf<float>({ 3.0F }, true), Values { 3.0 });
        addCase("f8 big", QByteArray(">f8"), bytesOf<double>({ 0.1 }, true), Values { 0.1 });
        addCase("native", QByteArray("=f8"), bytesOf<double>({ 0.1 }), Values { 0.1 });
        if (std::numeric_limits<long double>::digits == 64)
            addCase("f16", QByteArray("<f16"), bytesOf<long double>({ 0.5L, -3.0L }), Values { 0.5, -3.0 });
    }
    void readsEveryTypeAndByteOrder()
    {
        QFETCH(QByteArray, type);
        QFETCH(QByteArray, bytes);
        QFETCH(Values, values);
        const QByteArray shape = '(' + QByteArray::number(qsizetype(values.size())) + ",)";
        for (const char version : { '\1', '\2', '\3' }) {
            const DatasetResult result = decodeNpy(npy(header(type, shape), bytes, version));
            QCOMPARE(result.error, QString());
            QVERIFY(sameBits(result.data.values, values));
        }
    }

    void readsFortranOrder()
    {
        const DatasetResult result =
            decodeNpy(npy(header("<f8", "(2, 3)", true), bytesOf<double>({ 1, 4, 2, 5, 3, 6 })));
        QCOMPARE(result.data.values, (Values { 1, 2, 3, 4, 5, 6 }));
        QCOMPARE(result.data.kind, Dataset::Kind::Map);
        QCOMPARE(result.data.at(1, 0), 4.0);
    }

    void readsASingleNumber()
    {
        QCOMPARE(decodeNpy(npy(header("<f8", "()"), bytesOf<double>({ 7 }))).data.values, Values { 7 });
    }

    void reportsWhatIsWrongAndWhere_data()
    {
        addColumns<QByteArray, QString>("bytes", "error");
        const QByteArray eight(8, '\0');
        addCase("empty", QByteArray(), "byte 0: it does not begin as an NPY file");
        addCase("text", QByteArray("1\n2\n3\n4\n5\n6\n"), "byte 0: it does not begin as an NPY file");
        addCase("version", npy(header("<f8", "(1,)"), eight, 9), "byte 6: version 9 of the format");
        addCase("header cut", npy(header("<f8", "(1,)"), {}).first(30), "byte 30: the file ends in its header");
        addCase("not a dictionary", npy("[1, 2]\n", eight), "byte 10: the header is damaged");
        addCase("key missing", npy("{'descr': '<f8', 'shape': (1,)}", eight), "byte 41: the header is damaged");
        addCase("complex", npy(header("<c16", "(1,)"), eight + eight), "the values are of the type '<c16'");
        addCase("objects", npy(header("|O", "(1,)"), eight), "the values are of the type '|O'");
        addCase("record", npy("{'descr': [('a', '<f8')], 'fortran_order': False, 'shape': (1,), }", eight),
            "the values are of the type 'record'");
        addCase("three dimensions", npy(header("<f8", "(1, 1, 1)"), eight), "the array has 3 dimensions");
        addCase("no values", npy(header("<f8", "(0,)"), {}), "the array is empty");
        addCase("huge", npy(header("<f8", "(99999999999, 99999999999)"), eight),
            "the array has more than 134217728 values");
        addCase("overflow", npy(header("<f8", "(9223372036854775807,)"), eight), "the header is damaged");
        addCase("twenty digits", npy(header("<f8", "(99999999999999999999,)"), eight), "the header is damaged");
        addCase("short", npy(header("<f8", "(2,)"), eight), "the shape needs 16 bytes of values and the file has 8");
        addCase("long", npy(header("<f4", "(1,)"), eight), "the shape needs 4 bytes of values and the file has 8");
    }
    void reportsWhatIsWrongAndWhere()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, error);
        const DatasetResult result = decodeNpy(bytes);
        QVERIFY2(result.error.contains(error), qUtf8Printable(result.error));
        QVERIFY(result.data.values.empty());
    }
};

QTEST_GUILESS_MAIN(TestNpy)
#include "tst_npy.moc"
