// The profile of a map along a line. Pure functions.
#pragma once

#include <QList>
#include <QPointF>

namespace tarnis {

/// How the bins across the band are combined.
enum class ProfileJoin { Sum, Mean, Maximum };

/// A band in units of bins: bin i extends from i to i + 1.
struct ProfileBand {
    QPointF from; ///< in the middle of the band
    QPointF to;
    double width = 1.0; ///< width across the band, in bins
};

/// A profile in steps of equal length.
struct Profile {
    QList<double> values; ///< values of the steps; NaN for a step without a finite bin
    QList<double> areas; ///< area of the combined finite bins; a bin is 1
    double step = 1.0; ///< length of a step in bins
};

/// The direction of a band, and its steps. A step is as long as a bin in the direction of the line, 1 to 1.41 bins, so
/// that every step on the map contains the centre of a bin. A narrower band is widened to that length.
struct ProfileSteps {
    QPointF direction; ///< unit vector
    double step = 1.0;
    double halfWidth = 0.5;
    int count = 1;
};
ProfileSteps stepsOf(const ProfileBand& band);

/// The profile. A band of more than maxProfileSteps, or with ends that are not finite, has no values.
///
/// Along an axis, and for maxima, a bin belongs to the step that contains its centre. Along a slanted line that would
/// give every step another number of bins, so that sums show a comb where the map is flat. There a bin contributes to
/// each step the fraction of its area that lies in it: a flat map has a flat profile, and all steps together have the
/// contents of the band.
Profile profileAlong(const QList<QList<double>>& rows, const ProfileBand& band, ProfileJoin join);
constexpr int maxProfileSteps = 1 << 20;

} // namespace tarnis
