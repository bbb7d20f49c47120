// Multiplets: adds one peak at a time.
#include "tarnis/analysis/fitsearch_p.h"

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace analysis {

namespace {

// Intermediate fits need neither profiles nor the user's constraints, which refer to the final number of peaks.
FitResult fitAt(const BinnedData& data, const FitResult& wanted, std::vector<double> centres)
{
    FitModel model = wanted.model;
    model.peaks = static_cast<int>(centres.size());
    model.centres = std::move(centres);
    model.constraints.clear();
    FitOptions options = wanted.options;
    options.profileErrors = false;
    options.profileWeakAreas = false;
    return fitSpectrum(
        data, static_cast<std::ptrdiff_t>(wanted.first), static_cast<std::ptrdiff_t>(wanted.last), model, options);
}

std::vector<double> centresOf(const FitResult& fit)
{
    std::vector<double> centres;
    for (const FittedPeak& peak : fit.peaks)
        centres.push_back(peak.measures.top);
    return centres;
}

// The position with the highest significance of an additional Gaussian with the fitted width times a factor.
double worstPlace(const BinnedData& data, const FitResult& fit, double factor)
{
    double sigma = 0.0;
    for (const FittedPeak& peak : fit.peaks)
        sigma = sigma > 0.0 ? std::min(sigma, peak.measures.fwhm / 2.3548) : peak.measures.fwhm / 2.3548;
    const double bin = (data.edge(fit.last + 1) - data.edge(fit.first)) / fit.points;
    sigma = std::clamp(factor * sigma, 0.5 * bin, 0.1 * bin * std::max(10, fit.points));
    double best = -1.0;
    double place = data.centre(fit.first);
    for (std::size_t i = fit.first; i <= fit.last; ++i) {
        const double x = data.centre(i);
        double sum = 0.0;
        double variance = 0.0;
        for (std::size_t j = fit.first; j <= fit.last; ++j) {
            const double z = (data.centre(j) - x) / sigma;
            if (std::fabs(z) > 4.0)
                continue;
            const double kernel = std::exp(-0.5 * z * z);
            const double model = fit.modelContents[j - fit.first];
            sum += kernel * (data.contents[j] - model);
            variance += kernel * kernel * std::max(model, 0.05);
        }
        const double significance = sum / std::sqrt(variance);
        if (significance > best) {
            best = significance;
            place = x;
        }
    }
    return place;
}

bool isBetter(const FitResult& a, const FitResult& b)
{
    if (a.status == FitStatus::Refused)
        return false;
    return b.status == FitStatus::Refused || a.value < b.value;
}

} // namespace

FitResult fitOneMore(const BinnedData& data, const FitResult& fit)
{
    std::vector<double> centres;
    FitResult best;
    for (const double factor : { 1.0, 2.0 }) {
        centres = centresOf(fit);
        centres.push_back(worstPlace(data, fit, factor));
        FitResult more = fitAt(data, fit, centres);
        if (isBetter(more, best))
            best = std::move(more);
    }
    for (const FittedPeak& peak : fit.peaks) {
        centres = centresOf(fit);
        const double distance = 0.35 * peak.measures.fwhm;
        std::erase(centres, peak.measures.top);
        const double low = data.edge(fit.first);
        const double high = data.edge(fit.last + 1);
        centres.push_back(std::clamp(peak.measures.top - distance, low, high));
        centres.push_back(std::clamp(peak.measures.top + distance, low, high));
        FitResult split = fitAt(data, fit, centres);
        if (isBetter(split, best))
            best = std::move(split);
    }
    return best;
}

std::vector<double> searchedPositions(const BinnedData& data, const FitResult& wanted)
{
    FitModel model = wanted.model;
    model.peaks = 1;
    model.constraints.clear();
    if (model.widthMode == WidthMode::Own)
        model.widthMode = WidthMode::Shared;
    // Counts are searched with the likelihood, whatever the final statistic: the others find peaks in the noise of high
    // bins.
    FitOptions options = wanted.options;
    if (wanted.areCounts)
        options.statistic = FitStatistic::Cash;
    options.profileErrors = false;
    options.profileWeakAreas = false;
    FitResult fit = fitSpectrum(
        data, static_cast<std::ptrdiff_t>(wanted.first), static_cast<std::ptrdiff_t>(wanted.last), model, options);
    while (fit.status != FitStatus::Refused && static_cast<int>(fit.peaks.size()) < wanted.model.peaks)
        fit = fitOneMore(data, fit);
    return fit.status == FitStatus::Refused ? std::vector<double>() : centresOf(fit);
}

namespace {

// A further peak is accepted only if the statistic decreases by more than 16: the chi-squared law for two parameters
// does not hold, because the position is undefined at area 0 (R. Protassov et al., ApJ 571 (2002) 545).
constexpr double requiredFall = 16.0;

} // namespace

bool isJustified(const FitResult& more, const FitResult& fewer)
{
    if (more.status != FitStatus::Done)
        return false;
    double scale = 1.0;
    if (more.options.statistic == FitStatistic::Unweighted)
        scale = more.ndf > 0 ? more.value / more.ndf : 0.0;
    if (!(fewer.value - more.value > requiredFall * scale))
        return false;
    for (std::size_t k = 0; k < more.peaks.size(); ++k) {
        const QString name = more.peaks.size() > 1 ? QStringLiteral("area%1").arg(k + 1) : QStringLiteral("area");
        if (!(more.valueOf(name) > 3.0 * more.errorOf(name)))
            return false;
        if (k > 0
            && more.peaks[k].centre - more.peaks[k - 1].centre
                < 0.25 * (more.peaks[k].measures.fwhm + more.peaks[k - 1].measures.fwhm))
            return false;
    }
    return true;
}

} // namespace analysis

FitResult fitSpectrumAutomatically(
    const BinnedData& data, std::ptrdiff_t first, std::ptrdiff_t last, const FitModel& model, const FitOptions& options)
{
    FitModel next = model;
    next.peaks = 1;
    next.centres.clear();
    FitOptions quick = options;
    quick.profileErrors = false;
    quick.profileWeakAreas = false;
    FitResult best = fitSpectrum(data, first, last, next, quick);
    if (best.status == FitStatus::Refused)
        return best;
    while (static_cast<int>(best.peaks.size()) < FitModel::maxPeaks) {
        FitResult more = analysis::fitOneMore(data, best);
        if (!analysis::isJustified(more, best))
            break;
        best = std::move(more);
    }
    next = best.model;
    next.peaks = static_cast<int>(best.peaks.size());
    next.constraints = model.constraints;
    next.centres.clear();
    for (const FittedPeak& peak : best.peaks)
        next.centres.push_back(peak.measures.top);
    return fitSpectrum(data, first, last, next, options);
}

} // namespace tarnis
