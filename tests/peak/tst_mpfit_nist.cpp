// Certified problems of the NIST Statistical Reference Datasets, from both starts, beside cminpack's lmdif.
#include "nistproblem.h"
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
    return std::isnan(error) ? 0.0 : std::clamp(-std::log10(error), 0.0, certifiedDigits);
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

} // namespace

class TestMpfitNist : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void reachesTheDigitsOfLmdif_data();
    void reachesTheDigitsOfLmdif();
};

void TestMpfitNist::reachesTheDigitsOfLmdif_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("start");
    QTest::addColumn<bool>("tight");
    const auto folder = sharedData(QStringLiteral("nist"));
    if (!folder)
        QSKIP("no ../shared/data/nist");
    for (const bool tight : { false, true }) {
        for (const QFileInfo& file : QDir(*folder).entryInfoList({ QStringLiteral("*.dat") }, QDir::Files)) {
            for (int start = 0; start < 2; ++start) {
                QTest::addRow("%s, start %d, %s tolerances", qPrintable(file.completeBaseName()), start + 1,
                    tight ? "tight" : "default")
                    << file.filePath() << start << tight;
            }
        }
    }
}

void TestMpfitNist::reachesTheDigitsOfLmdif()
{
    QFETCH(QString, path);
    QFETCH(int, start);
    QFETCH(bool, tight);
    const NistProblem problem = readNistProblem(path);
    const LeastSquaresProblem fit = problem.from(std::size_t(start));
    FitSettings settings;
    if (tight) {
        settings.tolerance = 1e-15;
        settings.maxiter = 5000;
    }
    settings.epsfcn = 2.220446049250313e-16; settings.maxiter=5000;
    const FitReport ours = runMpfit(fit, settings);
    settings.epsfcn=0;
    const FitReport peers = runLmdif(fit, settings);
    const Digits own = reached(ours, problem);
    const Digits theirs = reached(peers, problem);
    size_t k=0; for(;k<std::min(ours.calls.size(),peers.calls.size());++k) if(ours.calls[k]!=peers.calls[k]) break;
    std::printf("%zu/%zu/%zu ",k,ours.calls.size(),peers.calls.size());
    std::printf("%-9s %d %-8s mpfit %4.1f %4.1f %4.1f status %d calls %5d   lmdif %4.1f %4.1f %4.1f status %d calls %5d\n",
        problem.name.c_str(), start + 1, tight ? "tight" : "default", own.parameters, own.deviations, own.sum,
        ours.status, ours.nfev, theirs.parameters, theirs.deviations, theirs.sum, peers.status, peers.nfev);
}

QTEST_GUILESS_MAIN(TestMpfitNist)
#include "tst_mpfit_nist.moc"
