// The table of all peaks, and their marks on a plot.
#pragma once

#include "tarnis/analysis/energycalibration.h"
#include "tarnis/analysis/peaktable.h"
#include "tarnis/plots/plotoverlay.h"
#include "tarnis/tools/panels/fitcurves_p.h"

#include <QAbstractTableModel>

namespace tarnis {

/// One row for each peak.
class PeakTableModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Position, Energy, Area, Fwhm, Height, Background, Significance, Verdict, Columns };

    using QAbstractTableModel::QAbstractTableModel;

    /// calibration: invalid if there is none.
    void setPeaks(const PeakTable& table, const EnergyCalibration& calibration);
    void retranslate();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    QString textOf(const TablePeak& peak, int column) const;

    PeakTable m_table;
    EnergyCalibration m_calibration;
};

/// The table as text, separated by tabs, with energies if there is a calibration.
QString peakTableText(const PeakTable& table, const EnergyCalibration& calibration);

/// Marks of peaks and the curves of their fits.
class PeakMarks : public PlotOverlay {
public:
    explicit PeakMarks(XYGraphWidget* plot);

    void setPeaks(const PeakTable& table, QList<FitLines> lines);
    void select(int row); ///< -1: none

protected:
    void paintOverlay(QPainter& painter, const PlotMapping& mapping) override;

private:
    struct Mark {
        double centre = 0.0;
        double top = 0.0; ///< height with the background
        bool acceptable = false;
    };
    QList<Mark> m_marks;
    QList<FitLines> m_lines;
    int m_selected = -1;
};

} // namespace tarnis
