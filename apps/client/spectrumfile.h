// Common parts of the analysis commands: a spectrum in channels from a file, and channel options.
#pragma once

#include "arguments.h"
#include "outcome.h"

#include <tarnis/analysis/binneddata.h>
#include <tarnis/formats/dataset.h>

#include <QJsonValue>

#include <cstddef>
#include <utility>
#include <vector>

namespace cli {

/// One spectrum whose bins are channels with integer numbers.
struct Spectrum {
    tarnis::Dataset data;
    qsizetype firstChannel = 0; ///< number of the first bin

    /// A view in channels: channel c extends from c - 0.5 to c + 0.5. Valid as long as the spectrum.
    tarnis::BinnedData bins() const;
    qsizetype lastChannel() const { return firstChannel + data.columns - 1; }
    std::ptrdiff_t binOf(qsizetype channel) const { return channel - firstChannel; }
};

/// Reads a file with one spectrum: CSV, .spe, .npy, .h5.
Result<Spectrum> readSpectrum(const QString& path);

/// Channels LO:HI of an option, both ends inclusive and within the spectrum; all channels if it is missing.
Result<Range<qsizetype>> channelOption(const Arguments& arguments, const QString& option, const Spectrum& spectrum);

/// Wrong usage with a sentence of the library, without its full stop.
Failure wrongUse(QString sentence);

/// A JSON number; null for NaN.
QJsonValue jsonNumber(double value);

/// Lines of columns, each as wide as its widest text.
QByteArray alignedTable(const QList<QStringList>& rows);

} // namespace cli
