// The settings of a fit panel: range, model, options and constraints. No widgets.
#pragma once

#include "tarnis/analysis/spectrumfit.h"
#include "tarnis/plots/axisrange.h"

#include <QJsonObject>
#include <QString>

#include <optional>
#include <vector>

namespace tarnis {

/// A parameter tied to another one: value = offset + factor * other.
struct FitTie {
    QString other; ///< empty: none
    double factor = 1.0;
    double offset = 0.0;
};

/// Parses a tie such as "sigma1", "0.5 * area1" or "centre1 + 10.5". An empty text returns a tie without name; an
/// invalid text returns no tie.
std::optional<FitTie> fitTieOf(const QString& text);
/// The text of a tie; empty without one.
QString textOf(const FitTie& tie);

/// The settings of a fit.
struct FitSetup {
    AxisRange range; ///< in units of the axis; equal ends: no range
    FitModel model;
    FitOptions options;
    bool isAutomatic = false; ///< as many peaks as the contents justify

    /// The constraint of a parameter; contains only its name if there is none.
    FitConstraint constraint(const QString& name) const;
    /// Replaces the constraint of the parameter with that name.
    void setConstraint(const FitConstraint& constraint);
    /// Sets the positions of the peaks; drops constraints of other peaks.
    void setCentres(std::vector<double> centres);
    /// The model with the constraints of its parameters. With a result of the same parameters, the fit starts at its
    /// values.
    FitModel modelToFit(const FitResult* from = nullptr) const;

    /// For a stored view. fromJson() keeps current values for missing or out-of-range keys. @{
    QJsonObject toJson() const;
    void fromJson(const QJsonObject& json);
    /// @}
};

/// Fits or guesses the bins of the range.
FitResult runFit(const BinnedData& data, const FitSetup& setup, const FitResult* from = nullptr);
FitResult runGuess(const BinnedData& data, const FitSetup& setup);

/// A one-line summary of a result: verdict, statistic and reasons.
QString summaryOf(const FitResult& result, bool isGuess);

/// Parameters and derived quantities, one per line, columns separated by tabs, full digits.
QString tableOf(const FitResult& result);

/// (contents - model) / square root of the model, or of the variances for other values than counts, one for each bin of
/// the result.
std::vector<double> residualsOf(const BinnedData& data, const FitResult& result);

} // namespace tarnis
