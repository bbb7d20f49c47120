// Texts of values with uncertainties.
#include "referencedata.h"

#include <tarnis/analysis/figures.h>

#include <QJsonArray>
#include <QTest>

#include <limits>

using namespace tarnis;
using namespace tarnis::testing;
using namespace Qt::StringLiterals;

class TestFigures : public QObject {
    Q_OBJECT

private slots:
    void writesTheReference()
    {
        const QJsonObject file = referenceNumbers(u"synthetic/rounding.json"_s);
        for (const QJsonValue& row : file["rows"_L1].toArray()) {
            const double value = row["value"_L1].toDouble();
            const double uncertainty = row["uncertainty"_L1].toDouble();
            QCOMPARE(figureText(value, uncertainty), row["two_digits"_L1].toString());
            QCOMPARE(figureText(value, uncertainty, FigureRule::ParticleData), row["pdg"_L1].toString());
        }
    }

    void roundsHalfToEven()
    {
        QCOMPARE(figureText(0.125, 0.10), u"0.12(10)"_s);
        QCOMPARE(figureText(0.135, 0.10), u"0.14(10)"_s);
        QCOMPARE(figureText(1.0, 0.0125), u"1.000(12)"_s);
        QCOMPARE(figureText(9.999, 0.12), u"10.00(12)"_s);
        QCOMPARE(figureText(0.07, 1.0), u"0.1(1.0)"_s);
    }

    void followsTheLimitsOfTheParticleDataRule()
    {
        const auto text = [](double uncertainty) { return figureText(1.2341, uncertainty, FigureRule::ParticleData); };
        QCOMPARE(text(0.0100), u"1.234(10)"_s);
        QCOMPARE(text(0.0354), u"1.234(35)"_s);
        QCOMPARE(text(0.0355), u"1.23(4)"_s);
        QCOMPARE(text(0.0949), u"1.23(9)"_s);
        QCOMPARE(text(0.0951), u"1.23(10)"_s);
    }

    void writesAsymmetricErrors()
    {
        QCOMPARE(figureText(1.2345, 0.1234, 0.0812), u"1.234 +0.123 \u22120.081"_s);
        QCOMPARE(figureText(50.0, 12.0, 10.0), u"50 +12 \u221210"_s);
    }

    void usesPowersOfTen()
    {
        QCOMPARE(figureText(1.23456e7, 2345.0), u"1.23456(23)e+07"_s);
        QCOMPARE(figureText(1.5e-7, 2.0e-9), u"1.500(20)e-07"_s);
        QCOMPARE(figureText(999999.0, 12.0), u"999999(12)"_s);
    }

    void answersWithoutAnError()
    {
        const double nan = std::numeric_limits<double>::quiet_NaN();
        QCOMPARE(figureText(1339.5894, 0.0), u"1339.59 \u2013"_s);
        QCOMPARE(figureText(1339.5894, nan), u"1339.59 \u2013"_s);
        QCOMPARE(figureText(1.0, std::numeric_limits<double>::infinity()), u"1 \u2013"_s);
        QCOMPARE(figureText(nan, 1.0), u"\u2013"_s);
        QCOMPARE(figureText(2.0, nan, 1.0), u"2 \u2013"_s);
    }

    void neverWritesMinusZero()
    {
        QCOMPARE(figureText(-0.0, 1.0), u"0.0(1.0)"_s);
        QCOMPARE(figureText(-0.001, 1.0), u"0.0(1.0)"_s);
        QCOMPARE(figureText(-0.0, 0.0), u"0 \u2013"_s);
    }

    void keepsTenDigits()
    {
        QCOMPARE(fullDigits(1.0 / 3.0), u"0.3333333333"_s);
        QCOMPARE(fullDigits(std::numeric_limits<double>::quiet_NaN()), u"nan"_s);
    }
};

QTEST_APPLESS_MAIN(TestFigures)
#include "tst_figures.moc"
