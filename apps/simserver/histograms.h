// The histograms of a run and the payloads of their replies. Counts are doubles, so that a reply can copy them; they
// are exact up to 2^53. Not thread-safe.
#pragma once

#include "events.h"
#include "spectrum.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <span>
#include <vector>

namespace simserver {

struct Axis {
    QString label; ///< one word
    QString unit; ///< one word
    double min = 0.0; ///< left edge of bin 0
    double max = 1.0; ///< right edge of the last bin, above min
    int bins = 1;
};

/// Rows of equal length over one axis.
struct Histogram1D {
    QString name;
    Axis axis;
    int rows = 1;
    std::vector<double> counts; ///< rows * bins, row-major

    std::span<const double> row(int number) const;
};

/// A map; bin (x, y) is at y * x.bins + x, row 0 has the smallest y.
struct Histogram2D {
    QString name;
    Axis x;
    Axis y;
    std::vector<double> counts;
};

/// Sums the bins of one row into `bins` bins; `bins` must divide the row's length.
std::vector<double> rebinned(std::span<const double> row, int bins);

/// Interleaved doubles of the rows first..last. `bins` must divide the histogram's bins.
QByteArray rowPayload(const Histogram1D& histogram, int first, int last, int bins);

/// Pairs of a bin's left edge and its count, ascending; without `all` only for non-zero bins.
QByteArray pairPayload(const Histogram1D& histogram, int row, int bins, bool all);

/// Doubles in row-major order. `xBins` and `yBins` must divide the bins of the axes.
QByteArray mapPayload(const Histogram2D& histogram, int xBins, int yBins);

/// All histograms of the server: `time` and `position` with a row for each module, `total`, `counts`, the maps `image`
/// and `timemap`, and with a measured spectrum `spectrum` as read and `sampled`, which accumulates.
class HistogramSet {
public:
    static constexpr int timeBins = 16384;
    static constexpr int positionBins = 1024;
    static constexpr int mapBins = 1024;
    static constexpr double periodMicroseconds = 40000.0;
    static constexpr double sizeMillimetres = 1000.0;

    explicit HistogramSet(int modules);

    /// Adds `spectrum` and `sampled`.
    void addSpectrum(const Spectrum& spectrum);
    /// Changes the number of modules, and resets everything except `spectrum`.
    void setModules(int modules);

    void fill(const Event& event);
    /// Adds a count to a channel of `sampled`; only after addSpectrum(), with a channel of that spectrum.
    void fillSampled(std::size_t channel);
    /// Resets everything except `spectrum`.
    void clear();

    const std::vector<Histogram1D>& all1D() const { return m_1d; }
    const std::vector<Histogram2D>& all2D() const { return m_2d; }
    const Histogram1D* find1D(const QString& name) const; ///< null without one
    const Histogram2D* find2D(const QString& name) const; ///< null without one

private:
    enum Index1D : std::size_t { Time, Position, Total, Counts, Measured, Sampled };
    enum Index2D : std::size_t { Image, TimeMap };

    std::vector<Histogram1D> m_1d; ///< in the order of Index1D
    std::vector<Histogram2D> m_2d; ///< in the order of Index2D
};

} // namespace simserver
