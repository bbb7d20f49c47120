// What a fit panel is set to: range, model, options, and what the user knows about parameters. Values; no widgets.
#pragma once

#include "tarnis/analysis/spectrumfit.h"
#include "tarnis/plots/axisrange.h"

#include <QJsonObject>
#include <QString>

#include <optional>
#include <vector>

namespace tarnis {

/// A parameter that follows another one: value = offset + factor * other.
struct FitTie {
    QString other; ///< empty: none
    double factor = 1.0;
    double offset = 0.0;
};

/// The tie of a text such as "sigma1", "0.5 * area1" or "centre1 + 10.5"; no name for an empty text, nothing for
/// another text.
std::optional<FitTie> fitTieOf(const QString& text);
/// The text of a tie; empty without one.
QString textOf(const FitTie& tie);

/// The settings of a fit.
struct FitSetup {
    AxisRange range; ///< in units of the axis; equal ends: none
    FitModel model;
    FitOptions options;
    bool isAutomatic = false; ///< as many peaks as the contents justify

    /// What is known about a parameter; only its name if nothing is.
    FitConstraint constraint(const QString& name) const;
    /// Replaces what is known about the parameter of that name.
    void setConstraint(const FitConstraint& constraint);
    /// Peaks at these places; fixed, bounded and tied parameters of other peaks are dropped.
    void setCentres(std::vector<double> centres);
    /// The model with the constraints of those parameters that it has. With a result of the same parameters it begins
    /// at the values of that.
    FitModel modelToFit(const FitResult* from = nullptr) const;

    /// For a stored view. fromJson() keeps the present value of what is missing or out of range. @{
    QJsonObject toJson() const;
    void fromJson(const QJsonObject& json);
    /// @}
};

/// Fits or guesses the bins of the range.
FitResult runFit(const BinnedData& data, const FitSetup& setup, const FitResult* from = nullptr);
FitResult runGuess(const BinnedData& data, const FitSetup& setup);

/// One line about a result: the verdict, the statistic and the reasons against it.
QString summaryOf(const FitResult& result, bool isGuess);

/// Parameters and derived quantities, one a line, columns separated by tabs, full digits.
QString tableOf(const FitResult& result);

/// (contents - model) / square root of the model, or of the variances for other values than counts, one for each bin of
/// the result.
std::vector<double> residualsOf(const BinnedData& data, const FitResult& result);

} // namespace tarnis
