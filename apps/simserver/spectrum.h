// Reads measured spectra from files and samples events from them.
#pragma once

#include "random.h"

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <vector>

namespace simserver {

struct Spectrum {
    std::vector<double> counts; ///< one value per channel, finite, not negative
    double offset = 0.0; ///< abscissa of channel 0's left edge, in `unit`
    double slope = 1.0; ///< width of a channel, above 0
    QString unit = QStringLiteral("channel"); ///< "keV" if the file has an energy calibration
};

struct SpectrumResult {
    Spectrum spectrum;
    QString error; ///< empty on success; else the error, with the line
};

constexpr qsizetype maxSpectrumBytes = qsizetype { 64 } * 1024 * 1024;
constexpr std::size_t maxChannels = 1U << 20U;

/// Reads the .spe text format (sections that begin with "$", of which $DATA and $ENER_FIT are used) or plain numbers,
/// separated by white space, with "#" comments. The first non-space character determines the format.
SpectrumResult parseSpectrum(const QByteArray& text);

/// As above, from a file; an unreadable file is an error.
SpectrumResult readSpectrum(const QString& path);

/// Samples channels according to a spectrum in constant time: the alias method (M. D. Vose, IEEE Transactions on
/// Software Engineering 17, 1991).
class ChannelSampler {
public:
    /// The sampler of an empty spectrum, or one without counts, is invalid.
    explicit ChannelSampler(const std::vector<double>& counts);

    bool isValid() const { return !m_threshold.empty(); }
    /// A channel number below the spectrum's length. The sampler must be valid.
    std::size_t sample(Random& random) const;

private:
    std::vector<double> m_threshold;
    std::vector<std::size_t> m_alias;
};

} // namespace simserver
