// The curves that a plot shows, for tools that compute with them.
#pragma once

#include "tarnis/plots/axisrange.h"

#include <QColor>
#include <QList>
#include <QString>

#include <limits>
#include <optional>

class XYGraphWidget;

namespace tarnis {

class PlotMapping;
class SampleBlocks;

/// A curve that is shown. It shares the plot's samples, and keeps them when the plot gets new ones.
struct ShownCurve {
    QString name; ///< name set by the host, else its number; empty if there is only one curve
    QColor colour;
    QList<QList<double>> parts; ///< several for a sum; the first has the length of the curve
    QString identity = {}; ///< as `name`, also if it is the only curve; empty on a plot of one series
    int place = 0; ///< among all curves of the plot, hidden ones included

    qsizetype size() const { return parts.isEmpty() ? 0 : parts.constFirst().size(); }
    /// The sample, or the sum over the parts that contain it. Empty outside of the curve.
    std::optional<double> at(qsizetype index) const;
    /// at(), or NaN outside of the curve.
    double valueAt(qsizetype index) const
    {
        if (parts.size() == 1 && index >= 0 && index < parts.constFirst().size())
            return parts.constFirst().at(index);
        return at(index).value_or(std::numeric_limits<double>::quiet_NaN());
    }
};

/// The visible curves in the order of the plot; empty for a map.
QList<ShownCurve> shownCurves(const XYGraphWidget& plot);
/// The curves that would be visible if they were not hidden.
QList<ShownCurve> hiddenCurves(const XYGraphWidget& plot);

/// The blocks of the samples of a curve that is not a sum; null without them. Valid until the next call.
const SampleBlocks* blocksOf(XYGraphWidget& plot, const ShownCurve& curve);

/// True if both have the same samples. Fast: compares only addresses, because shared samples never change.
bool isSameData(const QList<ShownCurve>& a, const QList<ShownCurve>& b);

/// Bins from `first` to `last`, both inclusive; empty if `first` is larger.
struct BinsInView {
    qsizetype first = 0;
    qsizetype last = -1;
};

/// The columns that are at least partly visible.
BinsInView columnsInView(const PlotMapping& mapping);
/// The pixels of the middles of bins, in frame coordinates, limited to the range of a painter. Without a function of
/// the host bins have equal widths, and a pixel is computed by a multiplication.
class BinPositions {
public:
    BinPositions(const PlotMapping& mapping, BinsInView bins);
    double operator()(qsizetype bin) const
    {
        return m_isEven ? m_begin + m_step * static_cast<double>(bin - m_first) : position(bin);
    }
    /// From one bin to the next; 0 if that differs.
    double step() const { return m_isEven ? m_step : 0.0; }

private:
    double position(qsizetype bin) const;

    const PlotMapping& m_mapping;
    qsizetype m_first = 0;
    double m_begin = 0.0;
    double m_step = 0.0;
    bool m_isEven = false;
};

/// The columns, or rows, that overlap a range.
BinsInView columnsBetween(const PlotMapping& mapping, AxisRange x);
BinsInView rowsBetween(const PlotMapping& mapping, AxisRange y);

/// The middle of a range.
inline double middleOf(AxisRange range)
{
    return range.min + (range.max - range.min) / 2.0;
}

} // namespace tarnis
