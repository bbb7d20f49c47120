// Reliability of the results and verdicts of fits: pulls of the area in pseudo-experiments against stored ones, right
// and wrong verdicts on simulated windows, and random starts on random data.
//
// usage: bench_fitquality [pulls FILE] [verdicts [N]] [starts [N]]
#include <tarnis/analysis/spectrumfit.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace tarnis;
using Random = std::mt19937_64;

constexpr double fwhmPerSigma = 2.354820045;

double uniform(Random& random, double lower, double upper)
{
    return std::uniform_real_distribution<double>(lower, upper)(random);
}

double logUniform(Random& random, double lower, double upper)
{
    return std::exp(uniform(random, std::log(lower), std::log(upper)));
}

std::vector<double> countsOf(const std::vector<double>& means, Random& random)
{
    std::vector<double> counts;
    for (const double mean : means)
        counts.push_back(mean > 0.0 ? static_cast<double>(std::poisson_distribution<long>(mean)(random)) : 0.0);
    return counts;
}

void addPeak(std::vector<double>& means, PeakShape shape, double area, double centre, std::vector<double> widths)
{
    for (std::size_t i = 0; i < means.size(); ++i) {
        const auto x = static_cast<double>(i);
        means[i] += area * peakIntegral(shape, x - 0.5, x + 0.5, centre, widths);
    }
}

FitResult fit(const std::vector<double>& counts, const FitModel& model, const FitOptions& options = {})
{
    BinnedData data;
    data.contents = counts;
    return fitSpectrum(data, 0, static_cast<std::ptrdiff_t>(counts.size()) - 1, model, options);
}

// Pulls -----------------------------------------------------------------------------------------------------------

struct Pulls {
    std::vector<double> pulls;
    double sum = 0.0;

    void add(double area, double error, double truth)
    {
        if (!(error > 0.0))
            return;
        pulls.push_back((area - truth) / error);
        sum += area;
    }
    double mean() const
    {
        double total = 0.0;
        for (const double pull : pulls)
            total += pull;
        return total / static_cast<double>(pulls.size());
    }
    double width() const
    {
        double squares = 0.0;
        for (const double pull : pulls)
            squares += (pull - mean()) * (pull - mean());
        return std::sqrt(squares / static_cast<double>(pulls.size() - 1));
    }
};

using PullTable = std::map<std::string, Pulls>;

void addExperiment(PullTable& table, const std::vector<double>& counts, const FitModel& model, double truth)
{
    const auto run = [&](FitStatistic statistic) {
        FitOptions options;
        options.statistic = statistic;
        options.profileWeakAreas = false;
        return fit(counts, model, options);
    };
    const auto area = [](const FitResult& result) { return result.parameters.at(0); };
    for (const FitStatistic statistic : { FitStatistic::Cash, FitStatistic::Pearson, FitStatistic::Neyman }) {
        const FitResult result = run(statistic);
        if (result.parameters.empty())
            continue;
        const std::string name = nameOf(statistic).data();
        table[name + " absolute"].add(area(result).value, area(result).error, truth);
        table[name + " scaled by sqrt(S/ndf)"].add(area(result).value, area(result).scaledError, truth);
    }
    const FitResult unweighted = run(FitStatistic::Unweighted);
    if (unweighted.parameters.empty())
        return;
    table["unweighted scaled by sqrt(S/ndf)"].add(area(unweighted).value, area(unweighted).scaledError, truth);
    table["unweighted sandwich"].add(area(unweighted).value, area(unweighted).sandwichError, truth);
}

/// Compares our pulls with the stored row; returns whether they agree within four combined errors.
bool compare(const QJsonObject& row, const Pulls& ours)
{
    const auto count = static_cast<double>(ours.pulls.size());
    const double meanError = std::hypot(row["pull_mean_error"].toDouble(), ours.width() / std::sqrt(count));
    const double widthError = std::hypot(row["pull_width_error"].toDouble(), ours.width() / std::sqrt(2.0 * count));
    const double mean = (ours.mean() - row["pull_mean"].toDouble()) / meanError;
    const double width = (ours.width() - row["pull_width"].toDouble()) / widthError;
    const bool agrees = std::fabs(mean) < 4.0 && std::fabs(width) < 4.0;
    std::printf("  %-34s pull %6.3f +- %5.3f, width %5.3f; stored %6.3f, %5.3f %s\n",
        qPrintable(row["statistic"].toString() + u' ' + row["errors"].toString()), ours.mean(),
        ours.width() / std::sqrt(count), ours.width(), row["pull_mean"].toDouble(), row["pull_width"].toDouble(),
        agrees ? "" : "DIFFERS");
    return agrees;
}

int pullStudies(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "%s cannot be read\n", qPrintable(path));
        return 2;
    }
    int differing = 0;
    for (const QJsonValue value : QJsonDocument::fromJson(file.readAll())["studies"].toArray()) {
        const QJsonObject study = value.toObject();
        const double area = study["area"].toDouble();
        Random random(static_cast<unsigned long long>(study["seed"].toInt()));
        std::vector<double> means(101, study["background_per_channel"].toDouble());
        addPeak(means, PeakShape::Gaussian, area, study["centre"].toDouble(), { study["sigma"].toDouble() });
        FitModel model;
        for (const QJsonValue held : study["held"].toArray()) {
            FitConstraint constraint;
            constraint.name = held.toString();
            constraint.start = study[constraint.name].toDouble();
            constraint.fixed = true;
            model.constraints.push_back(constraint);
        }
        PullTable table;
        for (int i = 0; i < study["experiments"].toInt(); ++i)
            addExperiment(table, countsOf(means, random), model, area);
        std::printf("height %g on %g, held: %d\n", study["height"].toDouble(),
            study["background_per_channel"].toDouble(), static_cast<int>(model.constraints.size()));
        for (const QJsonValue row : study["table"].toArray()) {
            const QString name = row["statistic"].toString() + u' ' + row["errors"].toString();
            const auto ours = table.find(name.toStdString());
            if (ours != table.end() && ours->second.pulls.size() > 1)
                differing += compare(row.toObject(), ours->second) ? 0 : 1;
        }
    }
    return differing == 0 ? 0 : 1;
}

// Verdicts --------------------------------------------------------------------------------------------------------

/// A window with its truth.
struct Window {
    std::string kind;
    std::vector<double> counts;
    double area = 0.0; ///< area of all peaks
    double centre = 0.0; ///< mean of all peaks
    std::vector<double> means; ///< the truth
    std::string description;
};

constexpr std::size_t windowBins = 80;

/// A peak or a background that the fit does not have.
void addUnexpectedPeak(int which, Window& window, std::vector<double>& means, double sigma, Random& random)
{
    if (which == 0) {
        const double tail = uniform(random, 0.5, 2.0) * sigma;
        addPeak(means, PeakShape::TailLeft, window.area, window.centre, { sigma, tail });
        window.centre -= tail; // the mean
        window.description += ", tail";
    } else if (which == 1) {
        addPeak(means, PeakShape::Lorentzian, window.area, window.centre, { 0.5 * fwhmPerSigma * sigma });
        window.description += ", Lorentzian";
    } else if (which == 2) {
        for (std::size_t i = 0; i < windowBins; ++i)
            means[i] *= 0.3 + 1.4 * std::pow(2.0 * static_cast<double>(i) / windowBins - 1.0, 2);
        addPeak(means, PeakShape::Gaussian, window.area, window.centre, { sigma });
        window.description += ", curved background";
    } else {
        addPeak(means, PeakShape::Gaussian, window.area, window.centre, { sigma });
        for (std::size_t i = 0; i < windowBins; ++i)
            means[i] += 0.02 * window.area / sigma * 0.5
                * std::erfc((static_cast<double>(i) - window.centre) / sigma / std::sqrt(2.0));
        window.description += ", step";
    }
}

Window windowOf(int number, Random& random)
{
    Window window;
    const double level = logUniform(random, 0.5, 300.0);
    const double slope = uniform(random, -0.8, 0.8) * level / windowBins;
    const double sigma = uniform(random, 2.0, 5.0);
    const double centre = uniform(random, 32.0, 48.0);
    const double area = logUniform(random, 60.0, 60000.0);
    std::vector<double> means;
    for (std::size_t i = 0; i < windowBins; ++i)
        means.push_back(level + slope * (static_cast<double>(i) - 0.5 * windowBins));
    window.area = area;
    window.centre = centre;
    char text[160];
    std::snprintf(text, sizeof text, "area %.0f, sigma %.2f, level %.1f", area, sigma, level);
    window.description = text;
    switch (number % 4) {
    case 0:
        window.kind = "single";
        addPeak(means, PeakShape::Gaussian, area, centre, { sigma });
        break;
    case 1: {
        window.kind = "doublet";
        const double apart = uniform(random, 0.3, 2.0);
        const double second = uniform(random, 0.2, 1.0) * area;
        const double other = centre + apart * fwhmPerSigma * sigma * (number % 8 == 1 ? 1.0 : -1.0);
        addPeak(means, PeakShape::Gaussian, area, centre, { sigma });
        addPeak(means, PeakShape::Gaussian, second, other, { sigma });
        window.area = area + second;
        window.centre = (area * centre + second * other) / window.area;
        std::snprintf(text, sizeof text, ", second %.0f, %.2f FWHM apart", second, apart);
        window.description += text;
        break;
    }
    case 2:
        window.kind = "wrong model";
        addUnexpectedPeak(number / 4 % 4, window, means, sigma, random);
        break;
    default:
        window.kind = "empty";
        window.area = 0.0;
        break;
    }
    window.counts = countsOf(means, random);
    window.means = std::move(means);
    return window;
}

/// The Cash statistic of model contents.
double deviance(const std::vector<double>& counts, const std::vector<double>& model)
{
    double sum = 0.0;
    for (std::size_t i = 0; i < counts.size(); ++i)
        sum += model[i] - counts[i] + (counts[i] > 0.0 ? counts[i] * std::log(counts[i] / model[i]) : 0.0);
    return 2.0 * sum;
}

struct Calls {
    int windows = 0;
    int right = 0; ///< area and centre within 4 errors of the truth
    int hidden = 0; ///< wrong, but truth and fit differ by less than 4 standard deviations for these contents
    int silentlyWrong = 0; ///< wrong, although they differ by more
    int refused = 0;
};

bool isWrong(const Window& window, const FitResult& result)
{
    double area = result.valueOf(QStringLiteral("area_total"));
    double error = result.errorOf(QStringLiteral("area_total"));
    if (result.peaks.size() == 1) {
        area = result.valueOf(QStringLiteral("area"));
        error = result.errorOf(QStringLiteral("area"));
        const double centre = result.valueOf(QStringLiteral("centre"));
        const double centreError = result.errorOf(QStringLiteral("centre"));
        if (window.area > 0.0 && std::fabs(centre - window.centre) > 4.0 * centreError)
            return true;
    }
    return std::fabs(area - window.area) > 4.0 * error;
}

void judge(Calls& calls, const Window& window, const FitResult& result, const char* how)
{
    ++calls.windows;
    if (!result.acceptable) {
        ++calls.refused;
        if (window.kind == "single" && std::getenv("SHOW_REFUSED"))
            std::printf("  refused (%s) %s: %s\n", how, window.description.c_str(),
                qPrintable(result.reasons.join(QStringLiteral(" | "))));
        return;
    }
    if (!isWrong(window, result)) {
        ++calls.right;
        return;
    }
    const double excess = deviance(window.counts, result.modelContents) - deviance(window.counts, window.means);
    if (excess <= 16.0) {
        ++calls.hidden;
        return;
    }
    ++calls.silentlyWrong;
    const bool isOne = result.peaks.size() == 1;
    const QString area = isOne ? QStringLiteral("area") : QStringLiteral("area_total");
    std::printf("  silently wrong (%s): %s, %s; total %.0f, found %.0f +- %.0f, off %.1f; centre off %.1f; statistic "
                "above that of the truth by %.1f\n",
        how, window.kind.c_str(), window.description.c_str(), window.area, result.valueOf(area), result.errorOf(area),
        (result.valueOf(area) - window.area) / result.errorOf(area),
        isOne ? (result.valueOf(QStringLiteral("centre")) - window.centre) / result.errorOf(QStringLiteral("centre"))
              : 0.0,
        excess);
}

int verdicts(int number)
{
    std::map<std::string, Calls> one;
    std::map<std::string, Calls> automatic;
    Random random(20);
    for (int i = 0; i < number; ++i) {
        const Window window = windowOf(i, random);
        BinnedData data;
        data.contents = window.counts;
        judge(one[window.kind], window, fit(window.counts, {}), "one peak");
        judge(automatic[window.kind], window, fitSpectrumAutomatically(data, 0, windowBins - 1, {}), "automatic");
    }
    int wrong = 0;
    for (const auto& [title, table] : { std::pair { "one Gaussian", &one }, std::pair { "automatic", &automatic } }) {
        std::printf("%s\n| window | number | accepted, right | accepted, off, not to be seen | accepted, off, to be "
                    "seen | not acceptable |\n"
                    "|---|---|---|---|---|---|\n",
            title);
        for (const auto& [kind, calls] : *table) {
            std::printf("| %s | %d | %d | %d | %d | %d |\n", kind.c_str(), calls.windows, calls.right, calls.hidden,
                calls.silentlyWrong, calls.refused);
            wrong += calls.silentlyWrong;
        }
    }
    return wrong == 0 ? 0 : 1;
}

// Random starts ---------------------------------------------------------------------------------------------------

int starts(int number)
{
    Random random(30);
    int results = 0;
    int bad = 0;
    for (int i = 0; i < number; ++i) {
        std::vector<double> means;
        const auto bins = static_cast<std::size_t>(uniform(random, 6.0, 120.0));
        const double level = logUniform(random, 0.01, 1e4);
        for (std::size_t k = 0; k < bins; ++k)
            means.push_back(level * logUniform(random, 0.1, 10.0));
        FitModel model;
        model.shape = allPeakShapes[static_cast<std::size_t>(i) % allPeakShapes.size()];
        model.peaks = static_cast<int>(uniform(random, 1.0, 4.0));
        model.background = static_cast<FitBackground>(i % 5);
        for (const QString& name : model.parameterNames()) {
            FitConstraint constraint;
            constraint.name = name;
            constraint.start = uniform(random, -10.0, 120.0);
            if (i % 2 == 0)
                model.constraints.push_back(constraint);
        }
        FitOptions options;
        options.statistic = static_cast<FitStatistic>(i / 5 % 4);
        const FitResult result = fit(countsOf(means, random), model, options);
        if (result.status == FitStatus::Refused)
            continue;
        ++results;
        bool isFinite = std::isfinite(result.value);
        for (const FitParameter& parameter : result.parameters)
            isFinite = isFinite && std::isfinite(parameter.value);
        bad += result.acceptable && !isFinite ? 1 : 0;
    }
    std::printf(
        "%d random starts: %d results, %d of them accepted with a value that is not finite\n", number, results, bad);
    return bad == 0 ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    const std::string what = argc > 1 ? argv[1] : "verdicts";
    if (what == "pulls" && argc > 2)
        return pullStudies(QString::fromLocal8Bit(argv[2]));
    const int number = argc > 2 ? std::atoi(argv[2]) : 0;
    if (what == "starts")
        return starts(number > 0 ? number : 10000);
    return verdicts(number > 0 ? number : 2000);
}
