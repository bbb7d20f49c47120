// A panel with a table of all peaks of a plot's curve.
#pragma once

#include <tarnis/analysis/peaktable.h>
#include <tarnis/tarnis_export.h>

#include <QWidget>

#include <memory>

class XYGraphWidget;

namespace tarnis {

/// A panel beside a plot of curves that searches and fits all its peaks: one table with errors, marks and fitted curves
/// on the plot. Of several curves the user chooses one. It runs on a thread of the global pool. With a PlotCalibration
/// on the plot the table has energies too. Values are shown as value(uncertainty); files and the clipboard contain all
/// digits. GUI thread only.
class TARNIS_EXPORT PeakPanel : public QWidget {
    Q_OBJECT

public:
    /// Creates a panel for a plot, which may be destroyed first; the panel then keeps its table.
    explicit PeakPanel(XYGraphWidget* plot, QWidget* parent = nullptr);
    ~PeakPanel() override;

    XYGraphWidget* plot() const; ///< the plot; null after it has been destroyed
    const PeakTable& peaks() const; ///< peaks of the last search
    bool isRunning() const; ///< whether a search is running
    /// Minimum significance of a peak; default 4, 2 to 100. @{
    double significance() const;
    void setSignificance(double significance);
    /// @}
    /// Whether only the visible range is searched; by default the complete curve. @{
    bool isVisibleOnly() const;
    void setVisibleOnly(bool on);
    /// @}
    QString message() const; ///< number of peaks, or why there are none
    QString table() const; ///< header and peaks with all digits, separated by tabs

public Q_SLOTS:
    void search(); ///< starts a search of the current data
    void clear(); ///< clears the table and removes the marks
    void copy(); ///< copies table() to the clipboard

Q_SIGNALS:
    void searched(); ///< a search has ended; see peaks() and message()

private:
    struct Internals;
    TARNIS_NO_EXPORT void build();
    TARNIS_NO_EXPORT void setTexts();
    TARNIS_NO_EXPORT void showTable();

    std::unique_ptr<Internals> m_data;
};

} // namespace tarnis
