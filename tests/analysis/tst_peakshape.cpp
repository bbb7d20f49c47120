// Shapes of peaks: reference densities, unit area, derivatives against differences.
#include "referencedata.h"

#include <tarnis/analysis/peakshape.h>

#include <QJsonArray>
#include <QTest>

#include <cmath>
#include <map>

using namespace tarnis;
using namespace tarnis::testing;
using namespace Qt::StringLiterals;

namespace {

std::vector<double> widthsOf(PeakShape shape)
{
    switch (shape) {
    case PeakShape::Gaussian:
    case PeakShape::Lorentzian:
        return { 1.7 };
    case PeakShape::PseudoVoigt:
        return { 4.0, 0.3 };
    case PeakShape::Voigt:
        return { 1.5, 0.8 };
    case PeakShape::TailLeft:
    case PeakShape::TailRight:
        return { 1.5, 2.5 };
    case PeakShape::BackToBack:
        return { 1.2, 0.9, 0.4 };
    case PeakShape::Hypermet:
        return { 1.5, 3.0, 0.25 };
    }
    return {};
}

// Names of shapes and parameters in the reference data.
struct ReferenceShape {
    PeakShape shape;
    std::vector<QLatin1StringView> parameters;
};

const std::map<QString, ReferenceShape>& referenceShapes()
{
    static const std::map<QString, ReferenceShape> shapes {
        { u"gaussian"_s, { PeakShape::Gaussian, { "sigma"_L1 } } },
        { u"pseudovoigt"_s, { PeakShape::PseudoVoigt, { "fwhm"_L1, "eta"_L1 } } },
        { u"emg"_s, { PeakShape::TailRight, { "sigma"_L1, "tau"_L1 } } },
        { u"voigt"_s, { PeakShape::Voigt, { "sigma"_L1, "gamma"_L1 } } },
        { u"back-to-back exponentials"_s, { PeakShape::BackToBack, { "sigma"_L1, "alpha"_L1, "beta"_L1 } } },
        { u"hypermet"_s, { PeakShape::Hypermet, { "sigma"_L1, "tau"_L1, "tail_fraction"_L1 } } },
    };
    return shapes;
}

} // namespace

class TestPeakShape : public QObject {
    Q_OBJECT

private slots:
    // The reference has ten digits; its channel integrals are differences of a distribution function near 1.
    void findsTheReference()
    {
        const QJsonObject file = referenceNumbers(u"synthetic/shapes.json"_s);
        bool ok = true;
        for (const QJsonValue& entry : file["shapes"_L1].toArray()) {
            const auto known = referenceShapes().find(entry["shape"_L1].toString());
            if (known == referenceShapes().end())
                continue;
            const auto& [shape, names] = known->second;
            std::vector<double> widths;
            for (const QLatin1StringView parameter : names)
                widths.push_back(entry["parameters"_L1][parameter].toDouble());
            // The reference takes the derivatives of a narrow Gaussian part from differences of nearly equal numbers.
            const double digits = widths[0] < 0.02 ? 5e-9 : 1e-13;
            const double centre = entry["parameters"_L1]["centre"_L1].toDouble();
            for (const QJsonValue& row : entry["rows"_L1].toArray()) {
                const double x = row["x"_L1].toDouble();
                const PeakDensity found = peakDensityWithDerivatives(shape, x, centre, widths);
                const QString name = u"%1 at %2"_s.arg(nameOf(shape)).arg(x);
                const auto compare = [&](double number, const QJsonValue& value) {
                    ok &= agrees(name, number, value.toDouble(), 2e-9 * std::fabs(value.toDouble()) + digits);
                };
                compare(found.value, row["density"_L1]);
                const bool hasDerivatives = row["derivatives"_L1].isArray();
                if (hasDerivatives)
                    compare(found.byCentre, row["derivatives"_L1][0]);
                for (std::size_t k = 0; hasDerivatives && k < widths.size(); ++k)
                    compare(found.byWidth[k], row["derivatives"_L1][static_cast<qsizetype>(k) + 1]);
                if (row["integral_of_channel"_L1].isDouble())
                    compare(peakIntegral(shape, x - 0.5, x + 0.5, centre, widths), row["integral_of_channel"_L1]);
            }
        }
        QVERIFY(ok);
    }

    void hasUnitArea_data() { addShapes(); }
    void hasUnitArea()
    {
        QFETCH(PeakShape, shape);
        const std::vector<double> widths = widthsOf(shape);
        double sum = 0.0;
        double trapezoids = 0.0;
        for (int i = -2000; i < 2000; ++i) {
            const double x = 0.05 * i;
            sum += peakIntegral(shape, x, x + 0.05, 0.3, widths);
            trapezoids += 0.025 * (peakDensity(shape, x, 0.3, widths) + peakDensity(shape, x + 0.05, 0.3, widths));
        }
        // Lorentzians have part of their area outside: 2 h/(pi 100).
        const bool heavy =
            shape == PeakShape::Lorentzian || shape == PeakShape::PseudoVoigt || shape == PeakShape::Voigt;
        QVERIFY(std::fabs(sum - 1.0) < (heavy ? 0.012 : 1e-9));
        QVERIFY(std::fabs(sum - trapezoids) < 1e-4);
    }

    void derivativesAgreeWithDifferences_data() { addShapes(); }
    void derivativesAgreeWithDifferences()
    {
        QFETCH(PeakShape, shape);
        const std::vector<double> widths = widthsOf(shape);
        for (double x = -12.0; x <= 14.0; x += 0.37) {
            const PeakDensity found = peakDensityWithDerivatives(shape, x, 0.3, widths);
            const double h = 1e-5;
            const double byCentre =
                (peakDensity(shape, x, 0.3 + h, widths) - peakDensity(shape, x, 0.3 - h, widths)) / (2 * h);
            QVERIFY(agrees(u"by centre at %1"_s.arg(x), found.byCentre, byCentre, 1e-9));
            for (std::size_t k = 0; k < widths.size(); ++k) {
                std::vector<double> more = widths;
                std::vector<double> less = widths;
                more[k] += h;
                less[k] -= h;
                const double byWidth = (peakDensity(shape, x, 0.3, more) - peakDensity(shape, x, 0.3, less)) / (2 * h);
                QVERIFY(agrees(u"by width %1 at %2"_s.arg(k).arg(x), found.byWidth[k], byWidth, 1e-9));
            }
        }
    }

    void measuresItself_data() { addShapes(); }
    void measuresItself()
    {
        QFETCH(PeakShape, shape);
        const std::vector<double> widths = widthsOf(shape);
        const PeakMeasures measures = peakMeasures(shape, 5.0, widths);
        double highest = 0.0;
        double top = 0.0;
        for (double x = -5.0; x < 15.0; x += 0.001) {
            const double density = peakDensity(shape, x, 5.0, widths);
            if (density > highest) {
                highest = density;
                top = x;
            }
        }
        QVERIFY(std::fabs(measures.top - top) < 0.002);
        QVERIFY(std::fabs(measures.height - highest) < 1e-6);
        double low = top;
        double high = top;
        while (peakDensity(shape, low, 5.0, widths) > 0.5 * highest)
            low -= 0.0005;
        while (peakDensity(shape, high, 5.0, widths) > 0.5 * highest)
            high += 0.0005;
        QVERIFY(std::fabs(measures.fwhm - (high - low)) < 0.003);
        QVERIFY(measures.fwtm > measures.fwhm);
    }

    void mirrorsTheTail()
    {
        const std::vector<double> widths { 1.5, 2.5 };
        for (double t = -9.0; t < 9.0; t += 0.5) {
            QCOMPARE(peakDensity(PeakShape::TailLeft, 3.0 + t, 3.0, widths),
                peakDensity(PeakShape::TailRight, 3.0 - t, 3.0, widths));
            const double left = peakIntegral(PeakShape::TailLeft, 3.0 + t, 3.2 + t, 3.0, widths);
            const double right = peakIntegral(PeakShape::TailRight, 2.8 - t, 3.0 - t, 3.0, widths);
            QVERIFY(std::fabs(left - right) < 1e-15);
        }
        QVERIFY(
            peakMeasures(PeakShape::TailRight, 3.0, widths).mean > peakMeasures(PeakShape::TailRight, 3.0, widths).top);
    }

    void becomesAGaussianWithoutItsTail()
    {
        for (double x = -6.0; x < 6.0; x += 0.3) {
            const double gaussian = peakDensity(PeakShape::Gaussian, x, 0.0, std::vector<double> { 1.5 });
            QVERIFY(std::fabs(
                        peakDensity(PeakShape::TailRight, x - 0.0, -1e-4, std::vector<double> { 1.5, 1e-4 }) - gaussian)
                < 1e-6);
            QVERIFY(
                std::fabs(peakDensity(PeakShape::Voigt, x, 0.0, std::vector<double> { 1.5, 1e-9 }) - gaussian) < 1e-8);
        }
    }

    void namesItsShapes()
    {
        for (const PeakShape shape : allPeakShapes) {
            QCOMPARE(peakShapeOf(nameOf(shape)), std::optional(shape));
            QVERIFY(!titleOf(shape).isEmpty());
            QCOMPARE(widthParameterNames(shape).size(), widthsOf(shape).size());
        }
        QVERIFY(!peakShapeOf(u"triangle"_s));
    }

    void refusesTooFewWidths()
    {
        QVERIFY(std::isnan(peakDensity(PeakShape::Voigt, 0.0, 0.0, std::vector<double> { 1.0 })));
        QVERIFY(std::isnan(peakIntegral(PeakShape::Gaussian, 0.0, 1.0, 0.0, {})));
        QVERIFY(std::isnan(peakMeasures(PeakShape::BackToBack, 0.0, std::vector<double> { 1.0, 1.0 }).fwhm));
    }

private:
    static void addShapes()
    {
        QTest::addColumn<PeakShape>("shape");
        for (const PeakShape shape : allPeakShapes)
            QTest::newRow(QByteArray(nameOf(shape).data(), nameOf(shape).size())) << shape;
    }
};

QTEST_APPLESS_MAIN(TestPeakShape)
#include "tst_peakshape.moc"
