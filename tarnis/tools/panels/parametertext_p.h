// Texts of the parameters of a fit and of the quantities derived from them.
#pragma once

#include "tarnis/analysis/fitmodel.h"

#include <QString>

namespace tarnis {

/// How one quantity is shown to the user.
struct ParameterText {
    QString label; ///< for example "Centre 2"
    QString unit; ///< empty: a plain number
    QString toolTip; ///< what it is, with its name in ties and files
};

/// The texts for a name of FitResult::parameters or FitResult::derived, or for one with its own unit, as "fwhm2 [keV]".
/// Unknown names are shown as they are. axisUnit: of the X axis.
ParameterText parameterTextOf(const QString& fullName, FitBackground background, const QString& axisUnit);

/// The unit in the name of an axis, as in "Energy [keV]" or "Energy (keV)"; "ch" for channels, else "x".
QString unitOfAxis(const QString& axisName);

} // namespace tarnis
