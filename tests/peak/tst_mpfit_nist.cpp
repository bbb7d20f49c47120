// Certified problems of the NIST Statistical Reference Datasets, from both starts, beside cminpack's lmdif.
#include "nistproblem.h"
#include "support/cases.h"
#include "support/support.h"

#include <QDir>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <cstdio>

using namespace tarnis::testing;

namespace {

constexpr double certifiedDigits = 11.0;

// Common decimal digits of a value and its certified one, between 0 and 11.
double digits(double value, double certified)
{
    if (value == certified)
        return certifiedDigits;
    const double error = std::fabs(value - certified) / std::fabs(certified);
    return std::isnan(error) || error >= 1.0 ? 0.0 : std::min(-std::log10(error), certifiedDigits);
}

double fewestDigits(const std::vector<double>& values, const std::vector<double>& certified)
{
    double fewest = certifiedDigits;
    for (std::size_t i = 0; i < values.size(); ++i)
        fewest = std::min(fewest, digits(values[i], certified[i]));
    return fewest;
}

struct Digits {
    double parameters;
    double deviations;
    double sum;
};

Digits reached(const FitReport& report, const NistProblem& problem)
{
    return { fewestDigits(report.x, problem.certified), fewestDigits(report.error, problem.standardDeviations),
        digits(report.sumOfSquares, problem.residualSumOfSquares) };
}

void print(const char* who, const Digits& d, const FitReport& report)
{
    std::printf("  %s %4.1f %4.1f %4.1f  status %d %5d calls", who, d.parameters, d.deviations, d.sum, report.status,
        report.nfev);
}

bool isAtLeast(const Digits& a, const Digits& b)
{
    return a.parameters >= b.parameters && a.deviations >= b.deviations && a.sum >= b.sum;
}

// Starts from which neither fitter reaches the certified values, and why.
QString reasonForFailure(const std::string& name, int start)
{
    if (name == "BoxBOD" && start == 0) {
        return QStringLiteral(
            "the first step takes b2 to where exp(-b2 x) vanishes at all x; the residuals do not depend"
            " on b2 there, and b1 comes out as the mean of y");
    }
    return {};
}

} // namespace

class TestMpfitNist : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void reachesTheDigitsOfLmdif_data()
    {
        addColumns<QString, int, bool>("path", "start", "tight");
        const QString folder = testData(QStringLiteral("nist"));
        std::printf(
            "Digits of parameters, standard deviations, residual sum. First mpfit with its own difference step, then"
            " with lmdif's, then lmdif.\n");
        for (const bool tight : { false, true }) {
            for (const QFileInfo& file : QDir(folder).entryInfoList({ QStringLiteral("*.dat") }, QDir::Files)) {
                for (int start = 0; start < 2; ++start) {
                    QTest::addRow("%s, start %d, %s tolerances", qPrintable(file.completeBaseName()), start + 1,
                        tight ? "tight" : "default")
                        << file.filePath() << start << tight;
                }
            }
        }
    }
    void reachesTheDigitsOfLmdif()
    {
        QFETCH(QString, path);
        QFETCH(int, start);
        QFETCH(bool, tight);
        const NistProblem problem = readNistProblem(path);
        const LeastSquaresProblem fit = problem.from(std::size_t(start));
        const double tolerance = tight ? 1e-15 : 1e-10;
        const FitReport ownStep = runMpfit(fit, { .tolerance = tolerance });
        const FitReport sameStep = runMpfit(fit, { .tolerance = tolerance, .epsfcn = lmdifPrecision });
        const FitReport lmdif = runLmdif(fit, { .tolerance = tolerance });
        const Digits own = reached(ownStep, problem);
        const Digits same = reached(sameStep, problem);
        const Digits theirs = reached(lmdif, problem);
        std::printf("%-8s %d %-7s", problem.name.c_str(), start + 1, tight ? "tight" : "default");
        print("own step", own, ownStep);
        print("same step", same, sameStep);
        print("lmdif", theirs, lmdif);
        std::printf("\n");

        const Digits wanted { theirs.parameters - 0.5, theirs.deviations - 0.5, theirs.sum - 0.5 };
        QVERIFY(isAtLeast(same, wanted));
        QCOMPARE(sameStep.nfev, lmdif.nfev);
        QVERIFY(sameStep.x == lmdif.x);
        // The last digits of a fit by differences are the rounding of the differences: with another step they are
        // others.
        const Digits certain { std::min(4.0, wanted.parameters), std::min(3.5, wanted.deviations),
            std::min(8.0, wanted.sum) };
        QVERIFY(isAtLeast(own, certain));

        const QString reason = reasonForFailure(problem.name, start);
        QCOMPARE(theirs.parameters < 4.0, !reason.isEmpty());
        QCOMPARE(own.parameters < 4.0, !reason.isEmpty());
        if (!reason.isEmpty())
            std::printf("         neither: %s\n", qPrintable(reason));
    }

    void needsMoreThanTheDefaultIterations_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("MGH09") << QStringLiteral("MGH09");
        QTest::newRow("MGH17") << QStringLiteral("MGH17");
    }
    // From their far starts these two converge slowly along a valley: the default of 200 iterations is not enough.
    void needsMoreThanTheDefaultIterations()
    {
        QFETCH(QString, name);
        const QString path = testData(QStringLiteral("nist/") + name + QStringLiteral(".dat"));
        const NistProblem problem = readNistProblem(path);
        const FitReport report = runMpfit(problem.from(0), { .maxiter = 0 });
        QCOMPARE(report.status, 5);
        QVERIFY(reached(report, problem).parameters < 4.0);
    }
};

QTEST_GUILESS_MAIN(TestMpfitNist)
#include "tst_mpfit_nist.moc"
