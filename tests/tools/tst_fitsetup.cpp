// Settings, ties, texts, lines, residuals and history of a fit panel, without the panel.
#include "tarnis/tools/panels/fitcurves_p.h"
#include "tarnis/tools/panels/fithistory_p.h"
#include "tarnis/tools/panels/fitparametermodel_p.h"
#include "tarnis/tools/panels/fitsetup_p.h"
#include "tarnis/tools/panels/plotspectra_p.h"
#include "tarnis/tools/panels/stripplot_p.h"
#include "tarnis/tools/panels/wrappedlabel_p.h"

#include <QJsonArray>
#include <QLineF>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>

using namespace tarnis;
using namespace Qt::StringLiterals;

namespace {

/// A Gaussian of 10000 counts at 50 with sigma 4 on 20 a bin.
std::vector<double> peakAtFifty()
{
    std::vector<double> contents;
    std::mt19937_64 random(7);
    const std::array widths { 4.0 };
    for (int i = 0; i <= 100; ++i) {
        const double mean = 20.0 + 10000.0 * peakIntegral(PeakShape::Gaussian, i - 0.5, i + 0.5, 50.0, widths);
        contents.push_back(static_cast<double>(std::poisson_distribution<int>(mean)(random)));
    }
    return contents;
}

BinnedData viewOf(const std::vector<double>& contents)
{
    BinnedData data;
    data.contents = contents;
    return data;
}

FitConstraint held(const char* name, double value)
{
    FitConstraint constraint;
    constraint.name = QString::fromLatin1(name);
    constraint.start = value;
    constraint.fixed = true;
    return constraint;
}

FitConstraint atLeast(const char* name, double lower)
{
    FitConstraint constraint;
    constraint.name = QString::fromLatin1(name);
    constraint.lower = lower;
    return constraint;
}

FitConstraint tied(const char* name, const char* other, double factor = 1.0)
{
    FitConstraint constraint;
    constraint.name = QString::fromLatin1(name);
    constraint.tiedTo = QString::fromLatin1(other);
    constraint.factor = factor;
    return constraint;
}

FitSetup setupOf(double lower, double upper)
{
    FitSetup setup;
    setup.range = { lower, upper };
    return setup;
}

} // namespace

class TestFitSetup : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsTies_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("isValid");
        QTest::addColumn<QString>("back");
        QTest::newRow("name") << "sigma1" << true << "sigma1";
        QTest::newRow("factor") << "0.5*area1" << true << "0.5 * area1";
        QTest::newRow("offset") << " centre1 +10.5 " << true << "centre1 + 10.5";
        QTest::newRow("both") << "-2 * area1 - 3e2" << true << "-2 * area1 - 300";
        QTest::newRow("none") << "  " << true << "";
        QTest::newRow("number") << "17" << false << "";
        QTest::newRow("two names") << "area1 + area2" << false << "";
        QTest::newRow("factor behind") << "area1 * 2" << false << "";
    }
    void readsTies()
    {
        QFETCH(QString, text);
        QFETCH(bool, isValid);
        QFETCH(QString, back);
        const std::optional<FitTie> tie = fitTieOf(text);
        QCOMPARE(tie.has_value(), isValid);
        if (tie)
            QCOMPARE(textOf(*tie), back);
    }

    void refusesAFitWithoutRangeOrBins()
    {
        const std::vector<double> contents = peakAtFifty();
        QCOMPARE(runFit(viewOf(contents), {}).status, FitStatus::Refused);
        QVERIFY(runFit(viewOf(contents), {}).message.contains(QStringLiteral("range")));
        QVERIFY(!runFit(viewOf(contents), setupOf(500, 600)).message.isEmpty());
        QVERIFY(!runFit({}, setupOf(0, 10)).message.isEmpty());
    }

    void fitsTheBinsWhoseCentreIsInTheRange()
    {
        const std::vector<double> contents = peakAtFifty();
        const FitResult result = runFit(viewOf(contents), setupOf(19.6, 80.2));
        QCOMPARE(result.first, std::size_t(20));
        QCOMPARE(result.last, std::size_t(80));
        QVERIFY(result.acceptable);
        QVERIFY(std::fabs(result.valueOf(QStringLiteral("centre")) - 50.0) < 0.2);
    }

    void keepsConstraintsOfParametersThatExist()
    {
        FitSetup setup = setupOf(20, 80);
        setup.setConstraint(held("sigma", 5.0));
        setup.setConstraint(atLeast("area7", 1.0));
        setup.setConstraint(tied("area", "area9"));
        QCOMPARE(setup.modelToFit().constraints.size(), std::size_t(1));
        const std::vector<double> contents = peakAtFifty();
        const FitResult result = runFit(viewOf(contents), setup);
        QCOMPARE(result.valueOf(QStringLiteral("sigma")), 5.0);
        QVERIFY(!result.acceptable); // the peak is narrower
    }

    void beginsAtTheLastResult()
    {
        const std::vector<double> contents = peakAtFifty();
        const FitSetup setup = setupOf(20, 80);
        const FitResult first = runFit(viewOf(contents), setup);
        const FitModel model = setup.modelToFit(&first);
        QVERIFY(!model.constraints.empty());
        for (const FitConstraint& constraint : model.constraints)
            QCOMPARE(constraint.start.value_or(std::nan("")), first.valueOf(constraint.name));
        const FitResult again = runFit(viewOf(contents), setup, &first);
        const double move = again.valueOf(QStringLiteral("centre")) - first.valueOf(QStringLiteral("centre"));
        QVERIFY(std::fabs(move) < 1e-4 * first.errorOf(QStringLiteral("centre")));
    }

    void sortsClickedPeaks()
    {
        FitSetup setup;
        setup.isAutomatic = true;
        setup.setConstraint(atLeast("area", 1.0));
        setup.setCentres({ 70.0, 30.0 });
        QCOMPARE(setup.model.centres.front(), 30.0);
        QCOMPARE(setup.model.peaks, 2);
        QVERIFY(!setup.isAutomatic);
        QVERIFY(setup.model.constraints.empty());
    }

    void comesBackFromJson()
    {
        FitSetup setup = setupOf(-3.5, 1e6);
        setup.setCentres({ 10, 20.25 });
        setup.model.shape = PeakShape::Voigt;
        setup.model.background = FitBackground::Exponential;
        setup.model.widthMode = WidthMode::Own;
        setup.model.withStep = true;
        setup.options.statistic = FitStatistic::Pearson;
        setup.setConstraint(held("sigma1", 2.5));
        setup.setConstraint(tied("sigma2", "sigma1", 2.0));
        FitSetup back;
        back.fromJson(setup.toJson());
        QCOMPARE(back.toJson(), setup.toJson());
        QCOMPARE(back.model.shape, PeakShape::Voigt);
    }

    void keepsWhatDamagedJsonLacks()
    {
        FitSetup setup = setupOf(1, 2);
        const QJsonObject before = setup.toJson();
        setup.fromJson(QJsonObject { { "range", "x" }, { "peaks", 99 }, { "shape", 5 }, { "statistic", "best" },
            { "centres", QJsonArray { 1.0, 2.0, 3.0 } } });
        QCOMPARE(setup.toJson(), before);
        setup.fromJson(QJsonObject());
        QCOMPARE(setup.toJson(), before);
    }

    void standardizesResiduals()
    {
        std::vector<double> contents = peakAtFifty();
        const FitResult result = runFit(viewOf(contents), setupOf(20, 80));
        const double before = residualsOf(viewOf(contents), result)[5];
        contents[25] += 3.0 * std::sqrt(result.modelContents[5]);
        const std::vector<double> residuals = residualsOf(viewOf(contents), result);
        QCOMPARE(residuals.size(), std::size_t(60));
        QVERIFY(std::fabs(residuals[5] - before - 3.0) < 1e-9);
        QVERIFY(residualsOf(viewOf(contents).part(0, 10), result).empty());
    }

    void keepsALimitedHistory()
    {
        FitHistory history;
        history.add(QDateTime::currentDateTime(), FitResult());
        QVERIFY(history.records().isEmpty()); // refused
        const std::vector<double> contents = peakAtFifty();
        const FitResult result = runFit(viewOf(contents), setupOf(20, 80));
        const QDateTime start = QDateTime::fromSecsSinceEpoch(1000);
        for (int i = 0; i < FitHistory::maxRecords + 5; ++i)
            history.add(start.addSecs(i), result);
        QCOMPARE(history.records().size(), FitHistory::maxRecords);
        QCOMPARE(history.records().first().time, start.addSecs(5));
        const QList<TrendPoint> trend = history.trendOf(QStringLiteral("fwhm"));
        QCOMPARE(trend.size(), FitHistory::maxRecords);
        QVERIFY(trend.first().error > 0.0);
        QVERIFY(history.trendOf(QStringLiteral("nothing")).isEmpty());
        QVERIFY(namesOf(result).contains(QStringLiteral("centre")));
        QCOMPARE(history.table().count(u'\n'), FitHistory::maxRecords + 1);
    }

    void editsConstraintsInTheTable()
    {
        FitSetup setup = setupOf(20, 80);
        FitParameterModel model(setup);
        const std::vector<double> contents = peakAtFifty();
        model.setResult(runFit(viewOf(contents), setup), false);
        model.setUnit(QStringLiteral("keV"));
        QSignalSpy edited(&model, &FitParameterModel::edited);
        QSignalSpy refused(&model, &FitParameterModel::refused);
        QCOMPARE(model.index(1, FitParameterModel::Name).data().toString(), u"Centre"_s);
        QCOMPARE(model.index(1, FitParameterModel::Unit).data().toString(), QStringLiteral("keV"));
        QVERIFY(model.index(1, FitParameterModel::Name).data(Qt::ToolTipRole).toString().contains(u"centre"_s));
        QVERIFY(model.index(1, FitParameterModel::Value).data().toString().contains(u'('));
        QVERIFY(model.setData(model.index(1, FitParameterModel::Value), QStringLiteral("51.5")));
        QVERIFY(model.setData(model.index(1, FitParameterModel::Lower), QStringLiteral("40")));
        QVERIFY(model.setData(model.index(1, FitParameterModel::Fixed), Qt::Checked, Qt::CheckStateRole));
        QVERIFY(!model.setData(model.index(1, FitParameterModel::Upper), QStringLiteral("many")));
        QVERIFY(!model.setData(model.index(1, FitParameterModel::Tie), QStringLiteral("2 +")));
        QCOMPARE(edited.size(), 3);
        QCOMPARE(refused.size(), 2);
        const FitConstraint centre = setup.constraint(QStringLiteral("centre"));
        QCOMPARE(*centre.lower, 40.0);
        QVERIFY(centre.fixed);
        QVERIFY(model.setData(model.index(1, FitParameterModel::Lower), QString()));
        QVERIFY(!setup.constraint(QStringLiteral("centre")).lower);
    }

    void announcesOnlyTheValuesOfAFit()
    {
        FitSetup setup = setupOf(20, 80);
        FitParameterModel model(setup);
        const std::vector<double> contents = peakAtFifty();
        FitResult result = runFit(viewOf(contents), setup);
        const QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
        const QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
        model.setResult(result, false);
        QCOMPARE(resets.size(), 1);
        model.setResult(result, false);
        QCOMPARE(changes.size(), 1);
        QCOMPARE(changes.first().at(0).toModelIndex(), model.index(0, FitParameterModel::Value));
        QCOMPARE(changes.first().at(1).toModelIndex(), model.index(model.rowCount() - 1, FitParameterModel::Value));
        model.setResult(result, true); // after an edit of the constraints
        QCOMPARE(changes.last().at(1).toModelIndex().column(), int(FitParameterModel::Tie));
        QCOMPARE(resets.size(), 1);
        result.parameters.front().name = QStringLiteral("other");
        model.setResult(result, false);
        QCOMPARE(resets.size(), 2);
    }

    // Distances of all points from the line that is left.
    void simplifiesLines()
    {
        QVERIFY(simplified({}).isEmpty());
        QCOMPARE(simplified({ { 3.0, 4.0 } }), QPolygonF({ { 3.0, 4.0 } }));
        const auto distance = [](const QPointF& point, const QPointF& from, const QPointF& to) {
            const QPointF along = to - from;
            const double square = QPointF::dotProduct(along, along);
            const double part =
                square > 0.0 ? std::clamp(QPointF::dotProduct(point - from, along) / square, 0.0, 1.0) : 0.0;
            return QLineF(point, from + part * along).length();
        };
        for (const double width : { 0.0, 10.0, -10.0, 500.0 }) {
            QPolygonF line;
            for (int i = 0; i <= 400; ++i) // a peak of 200 rows
                line.append({ width * i / 400.0, 200.0 * std::exp(-0.5 * std::pow((i - 200) / 16.0, 2)) });
            const QPolygonF kept = simplified(line);
            QVERIFY2(kept.size() < 60, qPrintable(QString::number(kept.size())));
            QCOMPARE(kept.first(), line.first());
            QCOMPARE(kept.last(), line.last());
            for (const QPointF& point : line) {
                double nearest = 1e9;
                for (qsizetype k = 1; k < kept.size(); ++k)
                    nearest = std::min(nearest, distance(point, kept.at(k - 1), kept.at(k)));
                QVERIFY2(nearest <= 0.2 + 1e-9, qPrintable(QString::number(nearest)));
            }
        }
    }

    void givesMessagesTheHeightOfTheirText()
    {
        WrappedLabel label;
        label.setText(QStringLiteral("one"));
        const int one = label.heightForWidth(300);
        label.setText(QStringLiteral("one\ntwo\nthree"));
        QVERIFY(label.heightForWidth(300) >= 3 * one - 2);
        label.setText(QStringLiteral("a long message of many words ").repeated(10));
        QVERIFY(label.heightForWidth(100) > 2 * label.heightForWidth(300));
        QVERIFY(label.minimumSizeHint().height() <= one);
        QFont large = label.font();
        large.setPointSize(2 * large.pointSize());
        const int small = label.heightForWidth(300);
        label.setFont(large);
        QVERIFY(label.heightForWidth(300) > small);
    }

    /// Every name that a fit can produce has a label, so that no key of a file is shown to the user.
    void labelsEveryQuantity()
    {
        FitSetup setup;
        setup.range = { 20.0, 80.0 };
        const std::vector<double> contents = peakAtFifty();
        QStringList keys { QStringLiteral("width_factor"), QStringLiteral("step"), QStringLiteral("energy2 [keV]") };
        for (const PeakShape shape : allPeakShapes) {
            setup.model.shape = shape;
            setup.model.background = FitBackground::Quadratic;
            setup.model.peaks = 3;
            setup.model.centres = { 45.0, 50.0, 55.0 };
            const FitResult result = guessSpectrumFit(viewOf(contents), 20, 80, setup.model, setup.options);
            for (const FitParameter& parameter : result.parameters)
                keys << parameter.name;
            for (const DerivedQuantity& quantity : result.derived)
                keys << quantity.name;
        }
        QVERIFY(keys.size() > 100);
        for (const QString& key : std::as_const(keys)) {
            const ParameterText text = parameterTextOf(key, FitBackground::Quadratic, QStringLiteral("ch"));
            QVERIFY2(text.label != key && !text.toolTip.isEmpty(), qPrintable(key));
        }
        const auto unitOf = [](const char* name, FitBackground background) {
            return parameterTextOf(QString::fromLatin1(name), background, QStringLiteral("ch")).unit;
        };
        QCOMPARE(unitOf("area2", FitBackground::Linear), QStringLiteral("cts"));
        QCOMPARE(unitOf("height", FitBackground::Linear), QStringLiteral("cts/ch"));
        QCOMPARE(unitOf("b1", FitBackground::Linear), QStringLiteral("cts/ch²"));
        QCOMPARE(unitOf("b1", FitBackground::Exponential), QStringLiteral("1/ch"));
        QCOMPARE(unitOf("fwhm1 [keV]", FitBackground::Linear), QStringLiteral("keV"));
        QCOMPARE(unitOf("eta", FitBackground::Linear), QString());
    }

    void findsTheUnitOfAnAxis()
    {
        QCOMPARE(unitOfAxis(QStringLiteral("Energy [keV]")), QStringLiteral("keV"));
        QCOMPARE(unitOfAxis(QStringLiteral("Time (ns)")), QStringLiteral("ns"));
        QCOMPARE(unitOfAxis(QStringLiteral("Channel")), QStringLiteral("ch"));
        QCOMPARE(unitOfAxis(QString()), QStringLiteral("ch"));
        QCOMPARE(unitOfAxis(QStringLiteral("Position")), QStringLiteral("x"));
    }

    void givesStripsAHeight()
    {
        QCOMPARE(heightOf({}), (AxisRange { 0.0, 1.0 }));
        const AxisRange one = heightOf({ { 0.0, 5.0, 0.0 } });
        QVERIFY(one.min < 5.0 && one.max > 5.0);
        const AxisRange withError = heightOf({ { 0.0, 5.0, 2.0 }, { 1.0, noNumber, 1.0 } });
        QVERIFY(withError.min < 3.0 && withError.max > 7.0);
    }

    void findsBinsByTheirCentres()
    {
        const std::vector<double> contents(10, 1.0);
        const BinnedData data = viewOf(contents);
        QCOMPARE(binsBetween(data, 2.0, 5.0).first, 2);
        QCOMPARE(binsBetween(data, 2.0, 5.0).last, 4);
        QCOMPARE(binsBetween(data, 5.0, 2.0).last, 4);
        QVERIFY(binsBetween(data, 2.1, 2.9).isEmpty());
        QCOMPARE(binsBetween(data, -INFINITY, INFINITY).last, 9);
        QVERIFY(binsBetween(data, noNumber, 3.0).isEmpty());
        QVERIFY(binsBetween({}, 0.0, 3.0).isEmpty());
    }
};

QTEST_MAIN(TestFitSetup)
#include "tst_fitsetup.moc"
