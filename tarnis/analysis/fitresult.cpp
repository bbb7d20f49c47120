// The queries of a fit result.
#include "tarnis/analysis/fitproblem_p.h"
#include "tarnis/analysis/special_p.h"
#include "tarnis/analysis/spectrumfit.h"

#include <cmath>

namespace tarnis {

int FitResult::indexOf(const QString& name) const
{
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        if (parameters[i].name == name)
            return static_cast<int>(i);
    }
    return -1;
}

double FitResult::valueOf(const QString& name) const
{
    if (const int index = indexOf(name); index >= 0)
        return parameters[static_cast<std::size_t>(index)].value;
    for (const DerivedQuantity& quantity : derived) {
        if (quantity.name == name)
            return quantity.value;
    }
    return noNumber;
}

double FitResult::errorOf(const QString& name) const
{
    if (const int index = indexOf(name); index >= 0)
        return parameters[static_cast<std::size_t>(index)].shownError;
    for (const DerivedQuantity& quantity : derived) {
        if (quantity.name == name)
            return quantity.error;
    }
    return noNumber;
}

double FitResult::backgroundAt(double x) const
{
    const analysis::FitLayout layout(model);
    if (parameters.size() != static_cast<std::size_t>(layout.count))
        return noNumber;
    std::array<double, 3> b {};
    for (int k = 0; k < layout.backgrounds; ++k)
        b[static_cast<std::size_t>(k)] = parameters[static_cast<std::size_t>(layout.background + k)].value;
    return analysis::backgroundDensity(model.background, b.data(), x - reference);
}

double FitResult::densityAt(double x) const
{
    double sum = backgroundAt(x);
    if (std::isnan(sum))
        return sum;
    const analysis::FitLayout layout(model);
    for (std::size_t k = 0; k < static_cast<std::size_t>(layout.peaks); ++k) {
        const auto at = [&](int index) { return parameters[static_cast<std::size_t>(index)].value; };
        std::array<double, maxWidthParameters> widths {};
        for (std::size_t w = 0; w < static_cast<std::size_t>(layout.widths); ++w)
            widths[w] = at(layout.width[k][w]);
        const double centre = at(layout.centre[k]);
        if (model.widthMode == WidthMode::Calibrated)
            widths[0] *= model.widths.sigma(centre);
        const double area = at(layout.area[k]);
        sum += area * peakDensity(model.shape, x, centre, widths);
        if (layout.step >= 0) {
            const double scale = model.shape == PeakShape::PseudoVoigt ? 1.0 / analysis::fwhmPerSigma
                : model.shape == PeakShape::Lorentzian                 ? 2.0 / analysis::fwhmPerSigma
                                                                       : 1.0;
            sum += area * at(layout.step) * analysis::normalDistribution((centre - x) / (scale * widths[0]));
        }
    }
    return sum;
}

} // namespace tarnis
