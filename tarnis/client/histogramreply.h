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
    qsizetype bins = 0; ///< 0 if unknown

    /// Lower edge of a bin; the index may be out of range. `min` without bins.
    double edge(qsizetype bin) const
    {
        return bins == 0 ? min : min + (max - min) * static_cast<double>(bin) / static_cast<double>(bins);
    }
    bool operator==(const HistogramAxis&) const = default; ///< exact
};

/// The expected format of a reply. The reply itself does not state its format.
struct TARNIS_EXPORT HistogramFormat {
    /// The three formats of histogram replies.
    enum class Kind {
        Rows, ///< interleaved rows: sample i of row k is value k + i * rows
        Pairs, ///< pairs of position and value for some of the bins; the text ends with "(min max bins)"
        Map, ///< consecutive rows, lowest y first; the text ends with "exported X x Y y"
    };
    Kind kind = Kind::Rows; ///< see Kind
    /// Rows: number of rows; 0: number of values divided by the bins of the text's axis, "(min max bins)".
    int rows = 0;
    HistogramAxis x; ///< Rows: used if the text has no axis. Map: range of the axis. The number of bins may be 0
    HistogramAxis y; ///< Map: range of the axis
    /// Largest accepted number of bins of a row. An axis of pairs costs memory for each bin, even for an empty reply.
    qsizetype maxBins = qsizetype(1) << 22;
    /// Rows: largest accepted number of rows if the reply determines it (`rows` is 0). A curve costs a quarter of a
    /// millisecond of drawing time, however few bins it has.
    qsizetype maxRows = 64;
    qsizetype maxMapRows = qsizetype(1) << 14; ///< Map: largest accepted number of rows; each costs memory
    qsizetype maxValues = qsizetype(1) << 22; ///< largest accepted number of values of all rows, or of pairs

    /// The format of the reply to "hist1d NAME ...", "hist1d NAME ... pairs ..." and "hist2d NAME ..." of the simulated
    /// server.
    static HistogramFormat ofCommand(const QString& command);
    bool operator==(const HistogramFormat&) const = default; ///< exact
};

/// A histogram, or the reason why a reply is not a histogram.
struct TARNIS_EXPORT HistogramReply {
    /// Where a reply is wrong.
    enum class Error {
        None, ///< the reply is a histogram
        Refused, ///< the text begins with "NG:"
        Text, ///< position counts characters of the text
        Payload, ///< position counts bytes of the payload
    };

    HistogramFormat::Kind kind = HistogramFormat::Kind::Rows; ///< as expected
    QList<QList<double>> rows; ///< x.bins values each; one row for Pairs; y.bins rows for Map, lowest y first
    QList<double> positions; ///< Pairs: the positions as sent; else empty
    HistogramAxis x; ///< from 0 to its number of bins if neither reply nor format state the range
    HistogramAxis y; ///< Map only; as x
    QList<double> rowMaxima; ///< of each row, the largest finite value; 0 if all are negative or there is none
    double maximum = 0.0; ///< largest of the rows' maxima; 0 without rows
    qsizetype nonFinite = 0; ///< values that are NaN or infinite
    QString text; ///< the text after the payload

    Error error = Error::None; ///< see Error; rows is empty with any other than None
    qsizetype position = 0; ///< position of the error
    QString reason; ///< reason of the error, as a plain text for users; of Refused the server's own, see Reply

    /// True if rows holds the histogram.
    bool isOk() const { return error == Error::None; }

    /// Reads a binary reply: the payload of little-endian 64-bit numbers and the text after it. All sizes are checked
    /// before memory is allocated. Any input is legal.
    static HistogramReply parse(const QByteArray& payload, const QString& text, const HistogramFormat& format);
};

} // namespace tarnis

Q_DECLARE_METATYPE(tarnis::HistogramReply)
