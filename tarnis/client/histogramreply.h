/// @file
/// Histogram replies as values with axes. Plain values and functions, for any thread.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QByteArray>
#include <QList>
#include <QMetaType>
#include <QString>

namespace tarnis {

/// Equal bins from `min` to `max`.
struct TARNIS_EXPORT HistogramAxis {
    double min = 0.0; ///< lower edge of the first bin
    double max = 0.0; ///< upper edge of the last bin
    qsizetype bins = 0; ///< 0 where it is not known

    /// Lower edge of a bin, which may be outside; `min` without bins.
    double edge(qsizetype bin) const
    {
        return bins == 0 ? min : min + (max - min) * static_cast<double>(bin) / static_cast<double>(bins);
    }
    bool operator==(const HistogramAxis&) const = default; ///< exact
};

/// What the caller knows of a reply before it comes: the reply itself does not tell its format.
struct TARNIS_EXPORT HistogramFormat {
    /// The three formats of histogram replies.
    enum class Kind {
        Rows, ///< rows side by side, sample by sample: row k of sample i is value k + i * rows
        Pairs, ///< pairs of position and value for some of the bins; the text ends with "(min max bins)"
        Map, ///< rows one after the other, lowest y first; the text ends with "exported X x Y y"
    };
    Kind kind = Kind::Rows; ///< see Kind
    /// Rows: how many there are; 0: as many as the bins of the text's axis, "(min max bins)", divide the values into.
    int rows = 0;
    HistogramAxis x; ///< Rows: used where the text holds no axis. Map: its ends. Its bins may be 0
    HistogramAxis y; ///< Map: its ends
    /// Largest accepted number of bins of a row. An axis of pairs costs memory for each bin, also of an empty reply.
    qsizetype maxBins = qsizetype(1) << 22;
    /// Largest accepted number of rows where the reply decides on it, with `rows` 0: each costs memory and drawing
    /// time.
    qsizetype maxRows = 1024;

    /// The format of the reply to "hist1d NAME ...", "hist1d NAME ... pairs ..." and "hist2d NAME ..." of the simulated
    /// server.
    static HistogramFormat ofCommand(const QString& command);
    bool operator==(const HistogramFormat&) const = default; ///< exact
};

/// A histogram, or the reason why a reply is none.
struct TARNIS_EXPORT HistogramReply {
    /// Where a reply is wrong.
    enum class Error {
        None, ///< the reply is a histogram
        Refused, ///< the text begins with "NG:"
        Text, ///< position counts characters of the text
        Payload, ///< position counts bytes of the payload
    };

    HistogramFormat::Kind kind = HistogramFormat::Kind::Rows; ///< as expected
    QList<QList<double>> rows; ///< each of x.bins values; one row for Pairs; y.bins rows for Map, lowest y first
    QList<double> positions; ///< Pairs: the positions as sent; else empty
    HistogramAxis x; ///< without ends in reply and format: from 0 to its bins
    HistogramAxis y; ///< Map; as x
    double maximum = 0.0; ///< largest finite value; 0 if all are negative or there is none
    qsizetype nonFinite = 0; ///< values that are NaN or infinite
    QString text; ///< the text behind the payload

    Error error = Error::None; ///< see Error; rows is empty with any other than None
    qsizetype position = 0; ///< of the error
    QString reason; ///< of the error, as a text for users

    /// True if rows holds the histogram.
    bool isOk() const { return error == Error::None; }

    /// Reads a binary reply: the payload of little-endian 64-bit numbers and the text behind it. All sizes are checked
    /// before memory is used for them. Any input is legal.
    static HistogramReply parse(const QByteArray& payload, const QString& text, const HistogramFormat& format);
};

} // namespace tarnis

Q_DECLARE_METATYPE(tarnis::HistogramReply)
