// Windows around the candidates of a search, one fit for each, and the table of their peaks.
#include "tarnis/analysis/peaktable.h"

#include "tarnis/analysis/figures.h"
#include "tarnis/analysis/fitsearch_p.h"
#include "tarnis/analysis/peakfinder_p.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

QString sentence(const char* text)
{
    return QCoreApplication::translate("tarnis::PeakTable", text);
}

constexpr double fwhmPerSigma = 2.354820045;

// Peaks that are fitted together.
struct Window {
    std::vector<PeakCandidate> peaks;
    std::size_t first = 0;
    std::size_t last = 0;
};

class TableMaker {
public:
    TableMaker(const BinnedData& data, const PeakTableOptions& options, std::size_t first, std::size_t last)
        : m_data(data)
        , m_options(options)
        , m_first(first)
        , m_last(last)
    {
    }
    PeakTable make();

private:
    QString faultOfUse() const;
    double fwhm(double x) const { return fwhmPerSigma * m_table.widths.sigma(x); }
    std::vector<Window> windowsOf(const std::vector<PeakCandidate>& candidates) const;
    std::vector<Window> grouped(const std::vector<PeakCandidate>& candidates) const;
    std::size_t binNear(double x) const;
    FitResult fit(const Window& window) const;
    FitResult fitAt(const Window& window, std::vector<double> centres) const;
    FitResult pruned(FitResult fit, const Window& window) const;
    void add(FitResult fit, const Window& window);

    const BinnedData& m_data;
    const PeakTableOptions& m_options;
    std::size_t m_first;
    std::size_t m_last;
    PeakTable m_table;
};

std::size_t TableMaker::binNear(double x) const
{
    if (x <= m_data.edge(m_first))
        return m_first;
    if (x >= m_data.edge(m_last + 1))
        return m_last;
    return static_cast<std::size_t>(m_data.binAt(x));
}

// Peaks closer than four full widths share a window; a group too large for one fit is split at the widest gap.
std::vector<Window> TableMaker::grouped(const std::vector<PeakCandidate>& candidates) const
{
    std::vector<Window> windows;
    for (const PeakCandidate& candidate : candidates) {
        if (!windows.empty()
            && candidate.position - windows.back().peaks.back().position < 4.0 * fwhm(candidate.position))
            windows.back().peaks.push_back(candidate);
        else
            windows.push_back({ { candidate }, 0, 0 });
    }
    // Leaves space for one more peak found by the fit.
    for (std::size_t w = 0; w < windows.size(); ++w) {
        while (windows[w].peaks.size() >= FitModel::maxPeaks) {
            std::vector<PeakCandidate>& peaks = windows[w].peaks;
            std::size_t cut = 1;
            const auto gap = [&](std::size_t i) { return peaks[i].position - peaks[i - 1].position; };
            for (std::size_t i = 1; i < peaks.size(); ++i) {
                if (gap(i) > gap(cut))
                    cut = i;
            }
            const auto middle = peaks.begin() + static_cast<std::ptrdiff_t>(cut);
            Window right { { middle, peaks.end() }, 0, 0 };
            peaks.erase(middle, peaks.end());
            windows.insert(windows.begin() + static_cast<std::ptrdiff_t>(w) + 1, std::move(right));
        }
    }
    return windows;
}

// Three full widths to either side and eight bins of background in total, limited to half the distance to the next
// window's peak.
std::vector<Window> TableMaker::windowsOf(const std::vector<PeakCandidate>& candidates) const
{
    std::vector<Window> windows = grouped(candidates);
    for (std::size_t w = 0; w < windows.size(); ++w) {
        Window& window = windows[w];
        const double left = window.peaks.front().position;
        const double right = window.peaks.back().position;
        const double bin = m_data.binWidth(window.peaks.front().bin);
        double low = left - std::max(3.0 * fwhm(left), 1.5 * fwhm(left) + 4.0 * bin);
        double high = right + std::max(3.0 * fwhm(right), 1.5 * fwhm(right) + 4.0 * bin);
        if (w > 0)
            low = std::max(low, 0.5 * (left + windows[w - 1].peaks.back().position));
        if (w + 1 < windows.size())
            high = std::min(high, 0.5 * (right + windows[w + 1].peaks.front().position));
        window.first = binNear(low);
        window.last = binNear(high);
    }
    return windows;
}

FitResult TableMaker::fitAt(const Window& window, std::vector<double> centres) const
{
    FitModel model;
    model.shape = m_options.shape;
    model.background = m_options.background;
    model.peaks = static_cast<int>(centres.size());
    model.centres = std::move(centres);
    if (model.shape == PeakShape::Gaussian) {
        const double middle = 0.5 * (window.peaks.front().position + window.peaks.back().position);
        model.constraints.push_back(
            { QStringLiteral("sigma"), m_table.widths.sigma(middle), false, {}, {}, {}, 1.0, 0.0 });
    }
    return fitSpectrum(m_data, static_cast<std::ptrdiff_t>(window.first), static_cast<std::ptrdiff_t>(window.last),
        model, m_options.fit);
}

// Removes the weakest peak of a multiplet if its area is less than three errors, and fits the rest again.
FitResult TableMaker::pruned(FitResult fit, const Window& window) const
{
    while (fit.status != FitStatus::Refused && fit.peaks.size() > 1) {
        std::size_t weakest = 0;
        double ratio = 3.0;
        bool found = false;
        for (std::size_t k = 0; k < fit.peaks.size(); ++k) {
            const QString name = QStringLiteral("area%1").arg(k + 1);
            const double error = fit.errorOf(name);
            const double own = error > 0.0 ? fit.valueOf(name) / error : 0.0;
            if (own < ratio) {
                ratio = own;
                weakest = k;
                found = true;
            }
        }
        if (!found)
            break;
        std::vector<double> centres;
        for (std::size_t k = 0; k < fit.peaks.size(); ++k) {
            if (k != weakest)
                centres.push_back(
                    std::clamp(fit.peaks[k].measures.top, m_data.edge(window.first), m_data.edge(window.last + 1)));
        }
        FitResult fewer = fitAt(window, std::move(centres));
        if (fewer.status == FitStatus::Refused)
            break;
        fit = std::move(fewer);
    }
    return fit;
}

FitResult TableMaker::fit(const Window& window) const
{
    std::vector<double> centres;
    for (const PeakCandidate& candidate : window.peaks)
        centres.push_back(candidate.position);
    FitResult result = pruned(fitAt(window, centres), window);
    // At most one more: further ones would describe a continuum by peaks.
    if (m_options.multiplets && result.status != FitStatus::Refused && result.goodness > 4.0
        && result.peaks.size() < FitModel::maxPeaks) {
        FitResult more = analysis::fitOneMore(m_data, result);
        if (analysis::isJustified(more, result))
            return more;
    }
    return result;
}

void TableMaker::add(FitResult fit, const Window& window)
{
    for (std::size_t k = 0; k < fit.peaks.size(); ++k) {
        const QString number = fit.peaks.size() > 1 ? QString::number(k + 1) : QString();
        const QString area = QStringLiteral("area") + number;
        TablePeak peak;
        peak.window = m_table.windows.size();
        peak.number = k;
        const PeakMeasures& measures = fit.peaks[k].measures;
        peak.centre = measures.top;
        const double topError = fit.errorOf(QStringLiteral("top") + number);
        peak.centreError = std::isnan(topError) ? fit.errorOf(QStringLiteral("centre") + number) : topError;
        peak.area = fit.peaks[k].area;
        peak.areaError = fit.errorOf(area);
        if (const int index = fit.indexOf(area); index >= 0)
            peak.areaProfile = fit.parameters[static_cast<std::size_t>(index)].profile;
        peak.fwhm = measures.fwhm;
        peak.fwhmError = fit.errorOf(QStringLiteral("fwhm") + number);
        peak.height = peak.area * measures.height;
        peak.background = fit.backgroundAt(measures.top);
        peak.acceptable = fit.acceptable;
        for (const PeakCandidate& candidate : window.peaks) {
            if (std::fabs(candidate.position - peak.centre) < 0.5 * fwhm(peak.centre))
                peak.significance = std::max(peak.significance, candidate.significance);
        }
        m_table.peaks.push_back(peak);
    }
    m_table.windows.push_back(std::move(fit));
}

// Scaled or subtracted contents, which the fits would refuse one by one.
QString TableMaker::faultOfUse() const
{
    const FitStatistic statistic = m_options.fit.statistic;
    const bool needsCounts = statistic == FitStatistic::Cash || statistic == FitStatistic::Pearson;
    if (!needsCounts || !m_data.variances.empty())
        return {};
    const QString reason = faultOfCounts(m_data.contents.subspan(m_first, m_last - m_first + 1), m_first);
    if (reason.isEmpty())
        return {};
    return sentence(QT_TRANSLATE_NOOP("tarnis::PeakTable",
                        "The search for peaks needs counts. %1 Fit the range of a peak with the statistic unweighted."))
        .arg(reason);
}

PeakTable TableMaker::make()
{
    m_table.fault = m_data.fault();
    if (!m_table.fault.isEmpty())
        return m_table;
    if (!analysis::canBeSearched(m_data, m_first, m_last)) {
        m_table.fault = sentence(QT_TRANSLATE_NOOP("tarnis::PeakTable",
            "The range contains no bins, or contents that are not finite numbers. Choose another one."));
        return m_table;
    }
    if (const QString reason = faultOfUse(); !reason.isEmpty()) {
        m_table.fault = reason;
        return m_table;
    }
    const auto widths = m_options.widths ? m_options.widths : estimateWidths(m_data, m_first, m_last);
    if (!widths) {
        // A spectrum without a strong peak may still have weak ones; they cannot be fitted without a width.
        m_table.fault = sentence(QT_TRANSLATE_NOOP("tarnis::PeakTable",
                                     "No peak is strong enough to measure its width; the search finds peaks up to %1 "
                                     "bins wide. Fit the range of "
                                     "a peak instead."))
                            .arg(static_cast<int>(analysis::widestFwhm(m_last - m_first + 1)));
        return m_table;
    }
    m_table.widths = *widths;
    const std::vector<PeakCandidate> candidates =
        findPeaks(m_data, m_table.widths, m_options.significance, m_first, m_last);
    for (const Window& window : windowsOf(candidates)) {
        FitResult result = fit(window);
        if (result.status != FitStatus::Refused)
            add(std::move(result), window);
        else if (m_table.peaks.empty() && m_table.fault.isEmpty())
            m_table.fault = result.message;
    }
    if (!m_table.peaks.empty())
        m_table.fault.clear();
    return m_table;
}

} // namespace

PeakTable analysePeaks(const BinnedData& data, const PeakTableOptions& options, std::size_t first, std::size_t last)
{
    return TableMaker(data, options, first, last).make();
}

QString tableText(const PeakTable& table)
{
    QString text = QStringLiteral(
        "centre\tcentre_error\tarea\tarea_error\tfwhm\tfwhm_error\theight\tbackground\tsignificance\tacceptable\n");
    for (const TablePeak& peak : table.peaks) {
        for (const double value : { peak.centre, peak.centreError, peak.area, peak.areaError, peak.fwhm, peak.fwhmError,
                 peak.height, peak.background, peak.significance })
            text += fullDigits(value) + QLatin1Char('\t');
        text += peak.acceptable ? QStringLiteral("yes\n") : QStringLiteral("no\n");
    }
    return text;
}

} // namespace tarnis
