// Measured spectra: reading them from a file and drawing events from them.
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
    QString unit = QStringLiteral("channel"); ///< "keV" if the file carries an energy calibration
};

struct SpectrumResult {
    Spectrum spectrum;
    QString error; ///< empty on success; otherwise what is wrong, with the line
};

constexpr qsizetype maxSpectrumBytes = qsizetype { 64 } * 1024 * 1024;
constexpr std::size_t maxChannels = 1U << 20U;

/// Reads the .spe text format (sections that begin with "$", of which $DATA and $ENER_FIT are used) or plain numbers,
/// separated by white space, with "#" comments. The first character that is not white space tells which.
SpectrumResult parseSpectrum(const QByteArray& text);

/// The same from a file; a file that cannot be read is an error in words.
SpectrumResult readSpectrum(const QString& path);

/// Draws channels with the frequencies of a spectrum, each in constant time: the alias method (M. D. Vose, IEEE
/// Transactions on Software Engineering 17, 1991).
class ChannelSampler {
public:
    /// An empty spectrum, or one without counts, gives a sampler that is not valid.
    explicit ChannelSampler(const std::vector<double>& counts);

    bool isValid() const { return !m_threshold.empty(); }
    /// A channel number below the spectrum's length. Only if valid.
    std::size_t sample(Random& random) const;

private:
    std::vector<double> m_threshold;
    std::vector<std::size_t> m_alias;
};

} // namespace simserver
