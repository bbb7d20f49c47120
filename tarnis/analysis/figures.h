/** @file
 * Numbers with their uncertainties as texts: value(uncertainty). Pure functions, re-entrant, independent of the locale.
 */
#pragma once

#include <tarnis/tarnis_export.h>

#include <QString>

namespace tarnis {

/// Number of digits of an uncertainty.
enum class FigureRule {
    TwoDigits, ///< always two (GUM, JCGM 100:2008, 7.2.6)
    ParticleData, ///< by its first three digits: 100..354 two, 355..949 one, 950..999 becomes 1000 with two
};

/// The value with its uncertainty in brackets, in units of the last place: 1339.589(56), 0.0(1.8), 184640(430). Rounds
/// half to even on the decimal text. Very large and very small numbers get a common power of ten: 1.234(56)e-07.
/// Without a positive finite uncertainty, the value has six digits and a dash: "1339.59 –". "–" for a value that is not
/// finite.
TARNIS_EXPORT QString figureText(double value, double uncertainty, FigureRule rule = FigureRule::TwoDigits);

/// The value with an upper and a lower uncertainty, both positive, rounded to the place of the smaller one: "1.23 +0.12
/// −0.08".
TARNIS_EXPORT QString figureText(double value, double upper, double lower, FigureRule rule = FigureRule::TwoDigits);

/// The number with ten digits, for files and the clipboard; "nan" for NaN.
TARNIS_EXPORT QString fullDigits(double value);

} // namespace tarnis
