// Histogram replies as values with axes, or errors with their position.
#include "support/cases.h"
#include "support/payload.h"
#include "support/randomcases.h"
#include "support/support.h"

#include <tarnis/client/histogramreply.h>

#include <QTest>

#include <cmath>
#include <limits>

using namespace tarnis;
using namespace tarnis::testing;

using Error = HistogramReply::Error;
using Kind = HistogramFormat::Kind;

namespace {

HistogramFormat formatOf(Kind kind, int rows = 0)
{
    HistogramFormat format;
    format.kind = kind;
    format.rows = rows;
    format.maxBins = 1000;
    format.maxRows = 50;
    format.maxMapRows = 60;
    format.maxValues = 2000;
    return format;
}

} // namespace

class TestHistogramReply : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void readsRowsAndTheirAxis()
    {
        const QByteArray payload = bytesOf({ 0, 10, 1, 11, 2, 12 });
        const auto reply = HistogramReply::parse(payload, "OK: time rows 2 to 3 (0 40 3)\n", formatOf(Kind::Rows));
        QVERIFY2(reply.isOk(), qPrintable(reply.reason));
        QCOMPARE(reply.rows, QList<QList<double>>({ { 0, 1, 2 }, { 10, 11, 12 } }));
        QCOMPARE(reply.x, HistogramAxis({ 0, 40, 3 }));
        QCOMPARE(reply.maximum, 12.0);
    }

    void rowsWithoutAnAxis()
    {
        HistogramFormat format = formatOf(Kind::Rows, 2);
        const QByteArray payload = bytesOf({ 0, 10, 1, 11, 2, 12 });
        QCOMPARE(HistogramReply::parse(payload, "OK (fine)", format).x, HistogramAxis({ 0, 3, 3 }));
        format.x = { -1, 1, 0 };
        QCOMPARE(HistogramReply::parse(payload, "", format).x, HistogramAxis({ -1, 1, 3 }));
    }

    void placesPairsInTheirBins()
    {
        const auto reply = HistogramReply::parse(bytesOf({ 2, 20, 0, 5 }), "ok (0 4 4)\n", formatOf(Kind::Pairs));
        QVERIFY2(reply.isOk(), qPrintable(reply.reason));
        QCOMPARE(reply.rows, QList<QList<double>>({ { 5, 0, 20, 0 } }));
        QCOMPARE(reply.positions, QList<double>({ 2, 0 }));
        QCOMPARE(HistogramReply::parse({}, "ok (0 4 4)", formatOf(Kind::Pairs)).rows.first(), QList<double>(4, 0.0));
    }

    void readsAMapRowByRow()
    {
        HistogramFormat format = formatOf(Kind::Map);
        format.y = { 5, 6, 0 };
        const auto reply = HistogramReply::parse(bytesOf({ 1, 2, 3, 4, 5, 6 }), "OK: exported 3 x 2 y\n", format);
        QVERIFY2(reply.isOk(), qPrintable(reply.reason));
        QCOMPARE(reply.rows, QList<QList<double>>({ { 1, 2, 3 }, { 4, 5, 6 } }));
        QCOMPARE(reply.x, HistogramAxis({ 0, 3, 3 }));
        QCOMPARE(reply.y, HistogramAxis({ 5, 6, 2 }));
    }

    void acceptsTheMaximumNumberOfBins()
    {
        const HistogramFormat format = formatOf(Kind::Rows, 1);
        const auto most = HistogramReply::parse(bytesOf(QList<double>(format.maxBins, 1.0)), "OK\n", format);
        QVERIFY2(most.isOk(), qPrintable(most.reason));
        QCOMPARE(most.rows.constFirst().size(), format.maxBins);
        const auto more = HistogramReply::parse(bytesOf(QList<double>(format.maxBins + 1, 1.0)), "OK\n", format);
        QCOMPARE(more.error, Error::Payload);
    }

    void countsValuesThatAreNoNumbers()
    {
        const double infinite = std::numeric_limits<double>::infinity();
        const double nan = std::numeric_limits<double>::quiet_NaN();
        const auto reply = HistogramReply::parse(bytesOf({ nan, 3, infinite, -infinite }), "", formatOf(Kind::Rows, 1));
        QCOMPARE(reply.nonFinite, 3);
        QCOMPARE(reply.maximum, 3.0);
        QCOMPARE(reply.rowMaxima, QList<double>({ 3.0 }));
    }

    void findsTheMaximumOfEachRow()
    {
        const QByteArray interleaved = bytesOf({ 1, -5, 7, -6, 2, -7 });
        const auto rows = HistogramReply::parse(interleaved, "", formatOf(Kind::Rows, 2));
        QCOMPARE(rows.rowMaxima, QList<double>({ 7, 0 }));
        QCOMPARE(rows.maximum, 7.0);
        const auto map = HistogramReply::parse(interleaved, "OK: exported 2 x 3 y", formatOf(Kind::Map));
        QCOMPARE(map.rowMaxima, QList<double>({ 1, 7, 2 }));
    }

    void acceptsTheMaximumNumberOfValues()
    {
        const auto pairs = HistogramReply::parse(bytesOf(QList<double>(4000, 1.0)), "a (0 4 4)", formatOf(Kind::Pairs));
        QVERIFY2(pairs.isOk(), qPrintable(pairs.reason));
        HistogramFormat format = formatOf(Kind::Rows, 2);
        const auto rows = HistogramReply::parse(bytesOf(QList<double>(2000, 1.0)), "", format);
        QVERIFY2(rows.isOk(), qPrintable(rows.reason));
        format = formatOf(Kind::Map);
        const auto map = HistogramReply::parse(bytesOf(QList<double>(60, 1.0)), "OK: exported 1 x 60 y", format);
        QVERIFY2(map.isOk(), qPrintable(map.reason));
    }

    void reportsWhyAReplyIsInvalid_data()
    {
        addColumns<Kind, int, QByteArray, QString, Error, int>("kind", "rows", "payload", "text", "error", "position");
        const QByteArray two = bytesOf({ 1, 1 });
        addCase("refused", Kind::Rows, 1, two, "NG:no such row\n", Error::Refused, 0);
        addCase("cut value", Kind::Rows, 1, two.chopped(3), "", Error::Payload, 8);
        addCase("no rows known", Kind::Rows, 0, two, "OK", Error::Text, 2);
        addCase("not the axis' bins", Kind::Rows, 1, two, "a (0 1 1)", Error::Payload, 8);
        addCase("fewer than a row", Kind::Rows, 0, two, "a (0 1 3)", Error::Payload, 16);
        addCase("not whole rows", Kind::Rows, 3, two, "", Error::Payload, 0);
        addCase("rows without values", Kind::Rows, 2000000000, QByteArray(), "", Error::Payload, 0);
        addCase("too many rows", Kind::Rows, 0, bytesOf(QList<double>(51, 1.0)), "a (0 1 1)", Error::Payload, 0);
        addCase("too many rows of a map", Kind::Map, 0, bytesOf(QList<double>(61, 1.0)), "OK: exported 1 x 61 y",
            Error::Text, 4);
        addCase("too many values", Kind::Rows, 3, bytesOf(QList<double>(2001, 1.0)), "", Error::Payload, 0);
        addCase("too many pairs", Kind::Pairs, 0, bytesOf(QList<double>(4002, 1.0)), "a (0 4 4)", Error::Payload, 0);
        addCase("no axis", Kind::Pairs, 0, two, "OK:\n", Error::Text, 4);
        addCase("axis not closed", Kind::Pairs, 0, two, "a (0 1 2", Error::Text, 8);
        addCase("axis of two", Kind::Pairs, 0, two, "a (0 1)", Error::Text, 2);
        addCase("axis of words", Kind::Pairs, 0, two, "a (0 x 1)", Error::Text, 2);
        addCase("axis without end", Kind::Pairs, 0, two, "a (0 inf 1)", Error::Text, 2);
        addCase("axis backwards", Kind::Pairs, 0, two, "a (1 0 1)", Error::Text, 2);
        addCase("no bins", Kind::Pairs, 0, two, "a (0 1 0)", Error::Text, 2);
        addCase("too many bins", Kind::Pairs, 0, two, "a (0 1 1001)", Error::Text, 2);
        addCase("very many bins", Kind::Pairs, 0, two, "a (0 1 9000000000000000000)", Error::Text, 2);
        addCase("half a pair", Kind::Pairs, 0, bytesOf({ 0, 1, 0 }), "a (0 1 2)", Error::Payload, 16);
        addCase("outside", Kind::Pairs, 0, bytesOf({ 0, 1, 4, 1 }), "a (0 4 4)", Error::Payload, 16);
        addCase("position NaN", Kind::Pairs, 0, bytesOf({ std::nan(""), 1 }), "a (0 4 4)", Error::Payload, 0);
        addCase("no counts", Kind::Map, 0, two, "OK: 2 x 1 y", Error::Text, 0);
        addCase("counts of words", Kind::Map, 0, two, "OK: exported a x b y", Error::Text, 4);
        addCase("negative counts", Kind::Map, 0, two, "OK: exported -1 x -2 y", Error::Text, 4);
        addCase("other counts", Kind::Map, 0, two, "OK: exported 1 x 1 y", Error::Payload, 8);
        addCase("huge counts", Kind::Map, 0, two, "OK: exported 2147483647 x 2147483647 y", Error::Text, 4);
    }
    void reportsWhyAReplyIsInvalid()
    {
        QFETCH(Kind, kind);
        QFETCH(int, rows);
        QFETCH(QByteArray, payload);
        QFETCH(QString, text);
        const auto reply = HistogramReply::parse(payload, text, formatOf(kind, rows));
        QTEST(reply.error, "error");
        QTEST(int(reply.position), "position");
        QVERIFY(!reply.reason.isEmpty());
        QVERIFY(reply.rows.isEmpty());
        QVERIFY(reply.positions.isEmpty());
    }

    void formatsOfCommands()
    {
        QCOMPARE(HistogramFormat::ofCommand("hist1d time 2 5 bins:64").kind, Kind::Rows);
        QCOMPARE(HistogramFormat::ofCommand("hist1d pairs 2 pairs all").kind, Kind::Pairs);
        QCOMPARE(HistogramFormat::ofCommand("hist2d image bins:16").kind, Kind::Map);
    }

    void edgesDivideTheAxisEvenly()
    {
        const HistogramAxis axis { 10, 20, 5 };
        QCOMPARE(axis.edge(0), 10.0);
        QCOMPARE(axis.edge(1), 12.0);
        QCOMPARE(axis.edge(5), 20.0);
        QCOMPARE(HistogramAxis().edge(3), 0.0);
    }

    // Every value of a histogram is restored from the reply made of it.
    void readsWhatWasWritten()
    {
        auto generator = seededGenerator(131);
        for (int round = 0; round < 2000; ++round) {
            const int rows = whole(generator, 1, 6);
            const int bins = whole(generator, 1, 40);
            QList<QList<double>> histogram(rows);
            for (QList<double>& row : histogram) {
                for (int i = 0; i < bins; ++i)
                    row.append(uniform(generator, -10, 1000));
            }
            QList<double> bySample;
            for (int i = 0; i < bins; ++i) {
                for (const QList<double>& row : histogram)
                    bySample.append(row.at(i));
            }
            const QString axis = QStringLiteral("rows (-5 %1 %2)\n").arg(whole(generator, -4, 9)).arg(bins);
            QCOMPARE(HistogramReply::parse(bytesOf(bySample), axis, formatOf(Kind::Rows)).rows, histogram);
            QList<double> byRow;
            for (const QList<double>& row : histogram)
                byRow += row;
            const QString counts = QStringLiteral("OK: exported %1 x %2 y").arg(bins).arg(rows);
            QCOMPARE(HistogramReply::parse(bytesOf(byRow), counts, formatOf(Kind::Map)).rows, histogram);
            QList<double> pairs;
            for (int i = bins - 1; i >= 0; --i)
                pairs += { double(i), histogram.first().at(i) };
            const QString pairAxis = QStringLiteral("OK: (0 %1 %1)").arg(bins);
            QCOMPARE(
                HistogramReply::parse(bytesOf(pairs), pairAxis, formatOf(Kind::Pairs)).rows.first(), histogram.first());
        }
    }
};

QTEST_APPLESS_MAIN(TestHistogramReply)
#include "tst_histogramreply.moc"
