// The profile of a map along a line. Numbers in and out.
#pragma once

#include <QList>
#include <QPointF>

namespace tarnis {

/// How the bins across the band are joined.
enum class ProfileJoin { Sum, Mean, Maximum };

/// A band in units of bins: bin i reaches from i to i + 1.
struct ProfileBand {
    QPointF from; ///< in the middle of the band
    QPointF to;
    double width = 1.0; ///< across, in bins
};

/// A profile in steps of equal length.
struct Profile {
    QList<double> values; ///< of the steps; NaN for one without a finite bin
    QList<int> bins; ///< finite bins that were joined
    double step = 1.0; ///< length in bins
};

/// The direction of a band, and what follows from it. Each bin whose centre is in the band belongs to one step. A step
/// is as long as a bin seen along the line, 1 to 1.41 bins, so that no step of a band on the map is without a bin; a
/// narrower band than that is widened to it.
struct ProfileSteps {
    QPointF direction; ///< of length 1
    double step = 1.0;
    double halfWidth = 0.5;
    int count = 1;
};
ProfileSteps stepsOf(const ProfileBand& band);

/// The profile. A band of more than maxProfileSteps, or with ends that are not finite, has no values.
Profile profileAlong(const QList<QList<double>>& rows, const ProfileBand& band, ProfileJoin join);
constexpr int maxProfileSteps = 1 << 20;

} // namespace tarnis
