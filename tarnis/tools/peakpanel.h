// All peaks of a plot's curve, in a table.
#pragma once

#include <tarnis/analysis/peaktable.h>
#include <tarnis/tarnis_export.h>

#include <QWidget>

#include <memory>

class XYGraphWidget;

namespace tarnis {

/// A panel beside a plot of curves that searches and fits all its peaks: one table with errors, marks and fitted curves
/// on the plot. It works on a thread of the global pool. With a PlotCalibration on the plot the table has energies too.
/// Values are shown as value(uncertainty); files and the clipboard carry all digits. GUI thread only.
class TARNIS_EXPORT PeakPanel : public QWidget {
    Q_OBJECT

public:
    /// A panel for a plot, which may be destroyed first: then the panel keeps its table.
    explicit PeakPanel(XYGraphWidget* plot, QWidget* parent = nullptr);
    ~PeakPanel() override;

    XYGraphWidget* plot() const; ///< null once it has been destroyed
    const PeakTable& peaks() const; ///< of the last search
    bool isRunning() const; ///< a search is under way
    /// Significance that a peak of the search needs, 4 at first; 2 to 100. @{
    double significance() const;
    void setSignificance(double significance);
    /// @}
    /// Only the visible range is searched; the whole curve at first. @{
    bool isVisibleOnly() const;
    void setVisibleOnly(bool on);
    /// @}
    QString message() const; ///< number of peaks, or why there are none
    QString table() const; ///< header and peaks with all digits, separated by tabs

public Q_SLOTS:
    void search(); ///< starts a search of the present data
    void clear(); ///< an empty table, no marks
    void copy(); ///< table() to the clipboard

Q_SIGNALS:
    void searched(); ///< a search has ended; see peaks() and message()

protected:
    void changeEvent(QEvent* event) override;

private:
    struct Internals;
    TARNIS_NO_EXPORT void build();
    TARNIS_NO_EXPORT void setTexts();
    TARNIS_NO_EXPORT void showTable();

    std::unique_ptr<Internals> m_data;
};

} // namespace tarnis
