// The model of a region table.
#pragma once

#include "tarnis/tools/plotregions.h"
#include "tarnis/tools/regions/regionrows_p.h"

#include <QAbstractTableModel>
#include <QPointer>

#include <vector>

namespace tarnis {

/// Rows of the regions of a plot: the editable ones of the tool, and those of the plot's own range selection and region
/// list. Texts are only created for visible cells.
class RegionTableModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column {
        Name,
        Curve,
        From,
        To,
        FromY,
        ToY,
        Bins,
        Sum,
        Net,
        Centroid,
        CentroidY,
        Energy,
        Fwhm,
        Maximum,
        MaximumAt,
        Share,
        SumSince,
        NetSince,
        Columns
    };

    /// Tool and plot may be destroyed first.
    explicit RegionTableModel(PlotRegions* tool, QObject* parent = nullptr);

    /// Reads the plot again.
    void refresh();
    bool isMap() const;
    bool hasEnergies() const { return options.calibration.isValid(); } ///< the plot is calibrated
    const std::vector<RegionRow>& rows() const { return m_rows; }

    void freeze(const QString& when); ///< adds sum and net since then
    void release();
    bool isFrozen() const { return !m_frozen.empty(); }
    QString text() const;

    RegionTableOptions options; ///< takes effect with the next refresh()

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

Q_SIGNALS:
    void refused(const QString& reason); ///< an invalid entry, with the reason for the user

private:
    /// Regions of the tool, then those of the plot.
    QList<PlotRegion> allRegions() const;
    void replaceRows(std::vector<RegionRow> rows); ///< by as many others
    bool isEditable(const RegionRow& row) const;
    QString textOf(const RegionRow& row, int column) const;

    QPointer<PlotRegions> m_tool;
    std::vector<RegionRow> m_rows;
    std::vector<FrozenRow> m_frozen;
    QString m_frozenAt;
};

} // namespace tarnis
