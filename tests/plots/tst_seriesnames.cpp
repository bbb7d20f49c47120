// Columns of a CSV file and the curve of a peak search, with their names.
#include "tarnis/plots/math/seriesnames_p.h"

#include <QTest>

using tarnis::AddType;
using tarnis::Series;

namespace {

const tarnis::SeriesTexts words { QStringLiteral("Module"), QStringLiteral("ch"), 5 };

Series record(double value, bool enable = true, int count = 2)
{
    return { QList<double>(count, value), Qt::white, enable };
}

QString headerOf(const QList<Series>& series, AddType type, int groupSize)
{
    return tarnis::csvTableOf(series, type, groupSize, words).header.value_or(QStringLiteral("no header"));
}

/// First samples of the enabled columns.
QList<double> firstLine(const QList<Series>& series, AddType type, int groupSize)
{
    QList<double> values;
    const auto table = tarnis::csvTableOf(series, type, groupSize, words);
    for (const Series& column : table.columns) {
        if (column.enable)
            values << column.values.value(0, -1.0);
    }
    return values;
}

QString searched(const QList<Series>& series, AddType type, int groupSize)
{
    const auto curve = tarnis::firstEnabledCurve(series, type, groupSize, words);
    return curve ? curve->name + QStringLiteral(": %1").arg(curve->samples.value(0, -1.0)) : QStringLiteral("nothing");
}

} // namespace

class TestSeriesNames : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void tableOfSeries()
    {
        const QList<Series> series { record(1), record(2, false), record(3), record(4) };
        QCOMPARE(
            headerOf(series, AddType::AddNone, 3), QStringLiteral("Module 5 - ch 0,Module 5 - ch 2,Module 6 - ch 0"));
        QCOMPARE(firstLine(series, AddType::AddNone, 3), (QList<double> { 1, 3, 4 }));
    }

    void tableOfGroups()
    {
        const QList<Series> series { record(1), record(2, false), record(3, false), record(4), record(5) };
        QCOMPARE(headerOf(series, AddType::AddEachGroup, 2), QStringLiteral("Module 5,Module 7"));
        QCOMPARE(firstLine(series, AddType::AddEachGroup, 2), (QList<double> { 3, 5 }));
        // The first series of the group decides, also an empty one.
        QCOMPARE(headerOf({ record(1, false, 0), record(2), record(3), record(4) }, AddType::AddEachGroup, 2),
            QStringLiteral("Module 6"));
    }

    void oneGroupHasNoHeader()
    {
        QCOMPARE(headerOf({ record(1), record(2) }, AddType::AddEachGroup, 8), QStringLiteral("no header"));
        QCOMPARE(firstLine({ record(1), record(2) }, AddType::AddEachGroup, 8), (QList<double> { 3 }));
    }

    void tableOfPositions()
    {
        const QList<Series> series { record(1), record(2, false), record(3), record(10), record(20) };
        QCOMPARE(headerOf(series, AddType::AddEachPosition, 3), QStringLiteral("ch 0,ch 2"));
        QCOMPARE(firstLine(series, AddType::AddEachPosition, 3), (QList<double> { 11, 3 }));
        // A position without a record is a column without numbers.
        QCOMPARE(headerOf({ record(1) }, AddType::AddEachPosition, 3), QStringLiteral("ch 0,ch 1,ch 2"));
    }

    void tableOfAll()
    {
        const QList<Series> series { record(1), record(2, false), record(3) };
        QCOMPARE(headerOf(series, AddType::AddAll, 8), QStringLiteral("All"));
        QCOMPARE(firstLine(series, AddType::AddAll, 8), (QList<double> { 6 })); // hidden ones too
    }

    void tableOfNothing()
    {
        QCOMPARE(headerOf({}, AddType::AddNone, 8), QString());
        QCOMPARE(headerOf({ record(1, false) }, AddType::AddNone, 8), QString());
        QCOMPARE(headerOf({}, AddType::AddEachGroup, 8), QString());
        QCOMPARE(headerOf({}, AddType::AddAll, 8), QStringLiteral("All"));
    }

    void searchOfSeries()
    {
        const QList<Series> series { record(1, false), record(2, false), record(3, false), record(4) };
        QCOMPARE(
            searched(series, AddType::AddNone, 3), QStringLiteral("Module 1 - ch 0: 4")); // without the first number
        QCOMPARE(searched({ record(1, false) }, AddType::AddNone, 3), QStringLiteral("nothing"));
        QCOMPARE(searched({}, AddType::AddNone, 3), QStringLiteral("nothing"));
    }

    void searchOfGroups()
    {
        const QList<Series> series { record(1, false), record(2), record(3), record(4, false), record(5) };
        QCOMPARE(searched(series, AddType::AddEachGroup, 2), QStringLiteral("Module 1: 7"));
        QCOMPARE(searched({ record(1, false), record(2) }, AddType::AddEachGroup, 2), QStringLiteral("nothing"));
        QCOMPARE(searched({ record(1, true, 0), record(2), record(3) }, AddType::AddEachGroup, 3),
            QStringLiteral("Module 0: 5"));
    }

    void searchOfPositions()
    {
        const QList<Series> series { record(1, false), record(2), record(3), record(4, false), record(5) };
        QCOMPARE(searched(series, AddType::AddEachPosition, 2), QStringLiteral("ch 1: 6"));
    }

    void searchOfAll()
    {
        QCOMPARE(searched({ record(1, false), record(2) }, AddType::AddAll, 2), QStringLiteral("All: 3"));
        QCOMPARE(searched({ record(1, false) }, AddType::AddAll, 2), QStringLiteral("nothing"));
    }

    void keepsPlaceholdersInTexts()
    {
        QCOMPARE(tarnis::recordName({ QStringLiteral("%2 g"), QStringLiteral("%1"), 0 }, 3, 4),
            QStringLiteral("%2 g 3 - %1 4"));
    }

    void setNamesReplaceDefaultNames()
    {
        tarnis::SeriesTexts named = words;
        named.names = { QString(), QStringLiteral("gamma, \"slow\"") };
        const QList<Series> series { record(1, false), record(2), record(3) };
        QCOMPARE(tarnis::csvTableOf(series, AddType::AddNone, 2, named).header,
            QStringLiteral("\"gamma, \"\"slow\"\"\",Module 6 - ch 0"));
        QCOMPARE(tarnis::csvTableOf(series, AddType::AddEachGroup, 1, named).header,
            QStringLiteral("\"gamma, \"\"slow\"\"\",Module 7"));
        QCOMPARE(tarnis::csvTableOf(series, AddType::AddEachGroup, 2, named).header, QStringLiteral("Module 6"));
        QCOMPARE(tarnis::firstEnabledCurve(series, AddType::AddNone, 2, named)->name, named.names.at(1));
        QCOMPARE(tarnis::firstEnabledCurve(series, AddType::AddEachGroup, 1, named)->name, named.names.at(1));
    }

    void curvesHaveNames_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("groupSize");
        QTest::addColumn<QString>("names");
        QTest::newRow("one group") << int(AddType::AddNone) << 8 << "ch 0|gamma|ch 2";
        QTest::newRow("groups") << int(AddType::AddNone) << 2 << "Module 5 - ch 0|gamma|Module 6 - ch 0";
        QTest::newRow("groups of one") << int(AddType::AddNone) << 1 << "Module 5|gamma|Module 7";
        QTest::newRow("sums of one") << int(AddType::AddEachGroup) << 1 << "Module 5|gamma|Module 7";
        QTest::newRow("sums of groups") << int(AddType::AddEachGroup) << 2 << "Module 5|Module 6|Module 7";
        QTest::newRow("positions") << int(AddType::AddEachPosition) << 3 << "ch 0|ch 1|ch 2";
        QTest::newRow("all") << int(AddType::AddAll) << 2 << "All|All|All";
    }
    void curvesHaveNames()
    {
        QFETCH(int, type);
        QFETCH(int, groupSize);
        QFETCH(QString, names);
        tarnis::SeriesTexts named = words;
        named.names = { QString(), QStringLiteral("gamma") };
        QStringList made;
        for (int i = 0; i < 3; ++i)
            made << tarnis::curveNameOf(named, AddType(type), groupSize, i, 3);
        QCOMPARE(made.join(u'|'), names);
        QCOMPARE(tarnis::curveNameOf({}, AddType::AddNone, 8, 4, 8), QStringLiteral("4")); // without words
    }
};

QTEST_APPLESS_MAIN(TestSeriesNames)
#include "tst_seriesnames.moc"
