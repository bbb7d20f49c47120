// The bins of a fit and the model over them.
#pragma once

#include "tarnis/analysis/binneddata.h"
#include "tarnis/analysis/fitmodel.h"
#include "tarnis/analysis/peakshape_p.h"

#include <array>
#include <span>
#include <vector>

namespace tarnis::analysis {

/// Index of each parameter in a model; -1: not present.
struct FitLayout {
    explicit FitLayout(const FitModel& model);

    int peaks;
    int widths; ///< parameters besides area and centre
    std::array<int, FitModel::maxPeaks> area {};
    std::array<int, FitModel::maxPeaks> centre {};
    std::array<std::array<int, maxWidthParameters>, FitModel::maxPeaks> width {};
    int step = -1;
    int background = 0; ///< index of the first background parameter
    int backgrounds = 0;
    int count = 0; ///< number of all parameters
};

/// Contents, edges and model of the bins of a range. Evaluates the model into its own columns.
class FitProblem {
public:
    FitProblem(
        const BinnedData& data, std::size_t first, std::size_t last, const FitModel& model, BinEvaluation evaluation);

    std::size_t bins() const { return m_contents.size(); }
    std::span<const double> contents() const { return m_contents; }
    std::span<const double> variances() const { return m_variances; } ///< empty: counts
    std::span<const double> edges() const { return m_edges; }
    double lower() const { return m_edges.front(); }
    double upper() const { return m_edges.back(); }
    double reference() const { return 0.5 * (lower() + upper()); }
    double meanWidth() const { return (upper() - lower()) / static_cast<double>(bins()); }
    const FitModel& model() const { return m_model; }
    const FitLayout& layout() const { return m_layout; }
    BinEvaluation evaluation() const { return m_evaluation; }

    /// Model contents at the parameters p. Valid until the next call; free of charge for the same parameters again.
    std::span<const double> evaluate(const double* p);
    /// Model contents of the last evaluate().
    std::span<const double> values() const { return m_values; }
    /// Derivatives of all model contents at the parameters of the last evaluate(): those by parameter k.
    void differentiate();
    /// Whether the column of a parameter is the same for all parameters: that of a polynomial background.
    bool isConstant(int parameter) const
    {
        return parameter >= m_layout.background && m_model.background != FitBackground::Exponential;
    }
    std::span<const double> column(int parameter) const
    {
        return { m_columns.data() + static_cast<std::size_t>(parameter) * bins(), bins() };
    }

    /// Contents of a peak of unit area at the parameters of the last evaluate().
    std::span<const double> unitContents(int peak) const
    {
        return { m_unit.data() + static_cast<std::size_t>(peak) * bins(), bins() };
    }
    /// FitModel::parameterNames() of the model.
    const std::vector<QString>& names() const { return m_names; }

    /// The width parameters of peak k, and sigma of the Gaussian for its step.
    void widthsOf(int peak, const double* p, double* widths) const;

private:
    double* writableColumn(int parameter) { return m_columns.data() + static_cast<std::size_t>(parameter) * bins(); }
    void addPeak(int peak);
    void differentiatePeak(int peak);
    void addStep(int peak);
    void differentiateStep(int peak);
    void fillPolynomials();
    void setBackground();
    void differentiateBackground();
    double stepSigma(int peak, double& byWidth) const;

    FitModel m_model;
    FitLayout m_layout;
    std::vector<QString> m_names;
    BinEvaluation m_evaluation;
    std::vector<double> m_contents;
    std::vector<double> m_variances;
    std::vector<double> m_edges;
    std::vector<double> m_p;
    std::vector<double> m_values; ///< model
    std::vector<double> m_columns; ///< derivatives, bin by bin for each parameter; of polynomials filled once
    std::vector<double> m_unit; ///< contents of each peak for unit area
    std::vector<double> m_peakColumns; ///< scratch: derivatives of one peak of unit area
    std::vector<PeakScratch> m_scratch; ///< of each peak
    bool m_isEvaluated = false; ///< m_values are those of m_p
    bool m_isDifferentiated = false; ///< and m_columns
};

/// The background's density at u from the middle of the range.
double backgroundDensity(FitBackground background, const double* b, double u);

} // namespace tarnis::analysis
