// A live table of the regions of a plot.
#pragma once

#include <tarnis/tarnis_export.h>
#include <tarnis/tools/plotregions.h>

#include <QPointer>
#include <QWidget>

class XYGraphWidget;

namespace tarnis {

struct RegionTableControls;
class RegionTableModel;

/// A table beside a plot with one row for each region and curve: limits, bins, sum, net area, centroid, width, maximum,
/// share. It follows the data of the plot. Regions are drawn and dragged on the plot, or edited in the table, including
/// their names. The range selected by the plot's own tool and the regions of a map's own list are rows as well. Values
/// are shown as value(uncertainty); files and the clipboard contain all digits. GUI thread only.
class TARNIS_EXPORT RegionTable : public QWidget {
    Q_OBJECT

public:
    /// Creates a table for a plot, which may be destroyed first. It attaches a PlotRegions to the plot unless there is
    /// one.
    explicit RegionTable(XYGraphWidget* plot, QWidget* parent = nullptr);
    ~RegionTable() override;

    PlotRegions* regions() const; ///< the tool on the plot; null after the plot has been destroyed
    QString table() const; ///< header and rows with all digits, separated by tabs
    bool isFrozen() const; ///< whether the columns "since" are shown
    /// Number of background bins on each side of a range; default 3; 0: no net areas. @{
    int sideBins() const;
    void setSideBins(int bins);
    /// @}
    QString message() const; ///< why the last action failed; usually empty

    /// Writes the regions to a file, or reads them from a file, replacing those of the plot. Returns the error for the
    /// user; empty on success. @{
    QString saveRegions(const QString& path) const;
    QString loadRegions(const QString& path);
    /// @}

public Q_SLOTS:
    void refresh(); ///< updates the table at once; new data update it automatically
    void freeze(); ///< shows further counts in separate columns
    void release(); ///< removes these columns
    void copy(); ///< copies table() to the clipboard

private:
    TARNIS_NO_EXPORT void build();
    TARNIS_NO_EXPORT void setTexts();
    TARNIS_NO_EXPORT void showColumns();
    TARNIS_NO_EXPORT void widenNet();
    TARNIS_NO_EXPORT void showMessage(const QString& text);

    QPointer<PlotRegions> m_regions;
    RegionTableModel* m_model = nullptr;
    std::unique_ptr<RegionTableControls> m_controls;
};

} // namespace tarnis
