// The parts of a histogram reply, as the live windows and HistogramReply read them: the block of doubles and the text
// behind it. Plain values.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace tarnis {

/// The lines of a reply's text: trimmed as a whole, then each.
QStringList replyTextLines(const QString& replyText);

/// How many whole doubles a payload holds; trailing bytes do not count.
qsizetype doubleCount(const QByteArray& payload);

/// One double of the payload, which is little-endian.
double doubleAt(const QByteArray& payload, qsizetype index);

/// Every `stride`-th double of the payload from `first` on, `count` of them, all inside the payload.
QList<double> stridedDoubles(const QByteArray& payload, qsizetype first, qsizetype stride, qsizetype count);

/// The largest value, starting from `start`; values that do not compare are passed over.
double largest(const QList<double>& values, double start);

/// The axis at the end of a reply in the pair format: "... (min max bins)".
struct PairAxis {
    double min = 0.0;
    double max = 0.0;
    int bins = 0;
};

/// Reads the axis and drops a trailing line feed and then a trailing ")" from `replyText` on the way. Nothing, if the
/// "(" is missing or first, if there are not three tokens at single blanks, or if there are more than 2^24 bins.
std::optional<PairAxis> takePairAxis(QString& replyText);

/// The nearest integer to (x - min) * bins / (max - min), halves away from zero; outside of the bins too.
double nearestBin(double x, const PairAxis& axis);

/// The bin of `x`, which is the nearest one; nothing outside of the bins or for a position that is no number.
std::optional<int> binOf(double x, const PairAxis& axis);

/// Samples of the pair format. `xs` is filled from the front, `ys` at the bins.
struct PairSamples {
    QList<double> xs;
    QList<double> ys;
};

/// Cuts the payload into x, y pairs, at most as many as there are bins. Nothing, if one lies outside of the bins.
std::optional<PairSamples> pairSamples(const QByteArray& payload, const PairAxis& axis);

/// The bin counts of a 2D reply.
struct BinCounts {
    int x = 0;
    int y = 0;
};

/// The counts behind the word "exported" ("exported X x Y y"), or nothing where the word is missing or first, or has
/// fewer than four tokens behind it. A count that is no integer of 32 bits is 0.
std::optional<BinCounts> exportedCounts(const QString& replyText);

} // namespace tarnis
