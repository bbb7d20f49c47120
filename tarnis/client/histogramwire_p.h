// Reads the parts of a histogram reply, the block of doubles and the text after it, for the live windows and
// HistogramReply. Pure functions.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace tarnis {

/// The lines of a reply's text. The text is trimmed, then each line.
QStringList replyTextLines(const QString& replyText);

/// Number of complete doubles in a payload; trailing bytes are ignored.
qsizetype doubleCount(const QByteArray& payload);

/// One double of the payload, which is little-endian.
double doubleAt(const QByteArray& payload, qsizetype index);

/// Every `stride`-th double of the payload from `first` on, `count` of them, all inside the payload.
QList<double> stridedDoubles(const QByteArray& payload, qsizetype first, qsizetype stride, qsizetype count);

/// The largest value, starting from `start`; NaN values are ignored.
double largest(const QList<double>& values, double start);

/// The axis at the end of a reply in the pair format: "... (min max bins)".
struct PairAxis {
    double min = 0.0;
    double max = 0.0;
    int bins = 0;
};

/// Reads the axis and drops a trailing line feed and then a trailing ")" from `replyText` on the way. Empty if the "("
/// is missing or the first character, if there are not three tokens separated by single spaces, or if there are more
/// than 2^24 bins.
std::optional<PairAxis> takePairAxis(QString& replyText);

/// The nearest integer to (x - min) * bins / (max - min), halves away from zero; also outside of the bins.
double nearestBin(double x, const PairAxis& axis);

/// The nearest bin to `x`; empty outside of the bins or for NaN.
std::optional<int> binOf(double x, const PairAxis& axis);

/// Samples of the pair format. `xs` is filled in the order of the pairs, `ys` by bin.
struct PairSamples {
    QList<double> xs;
    QList<double> ys;
};

/// Splits the payload into x, y pairs, at most as many as there are bins. Empty if one is outside of the bins.
std::optional<PairSamples> pairSamples(const QByteArray& payload, const PairAxis& axis);

/// The bin counts of a 2D reply.
struct BinCounts {
    int x = 0;
    int y = 0;
};

/// The counts after the word "exported" ("exported X x Y y"). Empty if the word is missing or the first one, or is
/// followed by fewer than four tokens. A count that is not a 32-bit integer is 0.
std::optional<BinCounts> exportedCounts(const QString& replyText);

} // namespace tarnis
