// What the fit of a spectrum refuses and reports: bad input, no peaks, random input.
#include "analysis/syntheticspectra.h"
#include "support/cases.h"
#include "support/randomcases.h"

#include <tarnis/analysis/spectrumfit.h>

#include <QTest>

#include <cmath>
#include <limits>

using namespace tarnis;
using namespace tarnis::testing;
using namespace Qt::StringLiterals;

class TestSpectrumFitInput : public QObject {
    Q_OBJECT

private slots:
    void flagsWhatIsNoPeak()
    {
        Truth truth;
        truth.areas.clear();
        int accepted = 0;
        Generator generator(15);
        for (int i = 0; i < 50; ++i) {
            const FitResult fit = fitOf(countsOf(truth, 101, generator));
            accepted += fit.acceptable ? 1 : 0;
            QVERIFY(fit.acceptable == fit.reasons.isEmpty());
        }
        QVERIFY2(accepted <= 3, qPrintable(QString::number(accepted)));
    }

    void namesTheBinThatIsNoCount()
    {
        std::vector<double> contents(100, 7.0);
        contents[63] = 7.5;
        BinnedData data;
        data.contents = contents;
        const QString message = fitSpectrum(data, 50, 80, {}).message;
        QVERIFY2(message.contains(u"Bin 63 "_s), qPrintable(message));
    }

    void refusesBadInput_data()
    {
        const double nan = std::numeric_limits<double>::quiet_NaN();
        addColumns<QList<double>, int, int, FitStatistic>("contents", "first", "last", "statistic");
        const QList<double> good { 1, 2, 3, 9, 20, 8, 3, 2, 1, 1, 2 };
        QTest::newRow("empty") << QList<double>() << 0 << 0 << FitStatistic::Cash;
        QTest::newRow("all zero") << QList<double>(20, 0.0) << 0 << 19 << FitStatistic::Cash;
        QTest::newRow("not a number") << QList<double> { 1, nan, 3, 9, 20, 8, 3 } << 0 << 6 << FitStatistic::Unweighted;
        QTest::newRow("infinite") << QList<double> { 1, INFINITY, 3, 9, 20, 8, 3 } << 0 << 6 << FitStatistic::Cash;
        QTest::newRow("negative") << QList<double> { 1, -2, 3, 9, 20, 8, 3 } << 0 << 6 << FitStatistic::Cash;
        QTest::newRow("fraction") << QList<double> { 1, 2.5, 3, 9, 20, 8, 3 } << 0 << 6 << FitStatistic::Pearson;
        QTest::newRow("fraction, Neyman") << QList<double> { 1, 2.5, 3, 9, 20, 8, 3 } << 0 << 6 << FitStatistic::Neyman;
        QTest::newRow("before the axis") << good << -1 << 8 << FitStatistic::Cash;
        QTest::newRow("past the axis") << good << 0 << 11 << FitStatistic::Cash;
        QTest::newRow("reversed") << good << 8 << 2 << FitStatistic::Cash;
        QTest::newRow("fewer bins than parameters") << good << 2 << 5 << FitStatistic::Cash;
    }
    void refusesBadInput()
    {
        QFETCH(QList<double>, contents);
        QFETCH(int, first);
        QFETCH(int, last);
        QFETCH(FitStatistic, statistic);
        BinnedData data;
        data.contents = contents;
        FitOptions options;
        options.statistic = statistic;
        for (const FitResult& fit :
            { fitSpectrum(data, first, last, {}, options), fitSpectrumAutomatically(data, first, last, {}, options) }) {
            QVERIFY(fit.status == FitStatus::Refused);
            QVERIFY(!fit.message.isEmpty());
            QVERIFY(!fit.acceptable);
            QCOMPARE(fit.reasons, QStringList(fit.message));
            QVERIFY(fit.parameters.empty());
        }
    }

    void refusesBadConstraints_data()
    {
        QTest::addColumn<FitConstraint>("constraint");
        const double nan = std::numeric_limits<double>::quiet_NaN();
        QTest::newRow("unknown") << FitConstraint { u"width"_s, 1.0, true, {}, {}, {}, 1.0, 0.0 };
        QTest::newRow("no value") << FitConstraint { u"sigma"_s, {}, true, {}, {}, {}, 1.0, 0.0 };
        QTest::newRow("not finite") << FitConstraint { u"area"_s, nan, true, {}, {}, {}, 1.0, 0.0 };
        QTest::newRow("no width") << FitConstraint { u"sigma"_s, -1.0, true, {}, {}, {}, 1.0, 0.0 };
        QTest::newRow("crossed bounds") << FitConstraint { u"sigma"_s, {}, false, 3.0, 2.0, {}, 1.0, 0.0 };
        QTest::newRow("unknown tie") << FitConstraint { u"sigma"_s, {}, false, {}, {}, u"sigma7"_s, 1.0, 0.0 };
        QTest::newRow("tied to itself") << FitConstraint { u"sigma"_s, {}, false, {}, {}, u"sigma"_s, 1.0, 0.0 };
        QTest::newRow("infinite tie") << FitConstraint { u"sigma"_s, {}, false, {}, {}, u"area"_s, nan, 0.0 };
    }
    void refusesBadConstraints()
    {
        QFETCH(FitConstraint, constraint);
        Generator generator(16);
        FitModel model;
        model.constraints = { constraint };
        const FitResult fit = fitOf(countsOf({}, 101, generator), model);
        QVERIFY(fit.status == FitStatus::Refused);
        QVERIFY2(fit.message.contains(constraint.name), qPrintable(fit.message));
    }

    // For any input: the fit ends, and no NaN is reported as a result.
    void survivesRandomInput()
    {
        Generator generator(17);
        int done = 0;
        // TARNIS_RANDOM_FITS=10000 tries more.
        const int cases = std::max(1500, qEnvironmentVariableIntValue("TARNIS_RANDOM_FITS"));
        for (int i = 0; i < cases; ++i) {
            FitModel model;
            // The other shapes cost ten times as much and use the same solver.
            const bool other = chance(generator, 0.1);
            model.shape = other ? allPeakShapes[static_cast<std::size_t>(
                              whole(generator, 1, static_cast<int>(allPeakShapes.size()) - 1))]
                                : PeakShape::Gaussian;
            model.background = static_cast<FitBackground>(whole(generator, 0, 4));
            const int bins = whole(generator, 8, 24);
            model.centres = { uniform(generator, 0.0, bins - 1.0) };
            model.withStep = chance(generator, 0.1);
            const double level = std::pow(10.0, uniform(generator, -1.0, 4.0));
            std::vector<double> counts;
            for (int bin = 0; bin < bins; ++bin)
                counts.push_back(static_cast<double>(
                    std::poisson_distribution<int>(level * uniform(generator, 0.0, 2.0))(generator)));
            model.constraints = { { QString(widthParameterNames(model.shape)[0]),
                                      std::pow(10.0, uniform(generator, -1.0, 2.0)), false, {}, {}, {}, 1.0, 0.0 },
                { u"area"_s, std::pow(10.0, uniform(generator, -2.0, 6.0)), false, {}, {}, {}, 1.0, 0.0 } };
            FitOptions options;
            options.statistic = static_cast<FitStatistic>(whole(generator, 0, 3));
            options.profileWeakAreas = chance(generator, 0.02);
            options.maxIterations = 20;
            const FitResult fit = fitOf(counts, model, options);
            if (fit.status == FitStatus::Refused) {
                QVERIFY(!fit.message.isEmpty());
                continue;
            }
            ++done;
            QVERIFY(std::isfinite(fit.value));
            for (const FitParameter& parameter : fit.parameters)
                QVERIFY2(std::isfinite(parameter.value), qPrintable(parameter.name));
            for (const FitParameter& parameter : fit.parameters)
                QVERIFY(!fit.acceptable || parameter.name.startsWith(u'b') || parameter.error > 0.0 || parameter.atLower
                    || parameter.atUpper);
            QVERIFY(std::all_of(
                fit.modelContents.begin(), fit.modelContents.end(), [](double m) { return std::isfinite(m); }));
        }
        QVERIFY2(done > 750, qPrintable(QString::number(done)));
    }

    void survivesFixedWidthsOfAnySize_data()
    {
        addColumns<PeakShape>("shape");
        for (const PeakShape shape : allPeakShapes)
            QTest::addRow("%s", nameOf(shape).data()) << shape;
    }
    // A width far above the range once took more memory than there is.
    void survivesFixedWidthsOfAnySize()
    {
        QFETCH(PeakShape, shape);
        Generator generator(31);
        const std::vector<double> counts = countsOf({}, 101, generator);
        for (const QLatin1StringView name : widthParameterNames(shape)) {
            for (const double value : { 1e-300, 1e-9, 1e4, 1e9, 1e15, 1e300 }) {
                FitModel model;
                model.shape = shape;
                model.constraints = { { QString(name), value, true, {}, {}, {}, 1.0, 0.0 } };
                FitOptions options;
                options.profileWeakAreas = false;
                const FitResult fit = fitOf(counts, model, options);
                const QString text = QStringLiteral("%1 = %2: %3").arg(name).arg(value).arg(fit.message);
                QVERIFY2(fit.status == FitStatus::Refused || std::isfinite(fit.value), qPrintable(text));
            }
        }
    }
};

QTEST_APPLESS_MAIN(TestSpectrumFitInput)
#include "tst_spectrumfit_input.moc"
