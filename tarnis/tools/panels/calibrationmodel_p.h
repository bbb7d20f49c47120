// The table of a calibration: peaks with their assigned lines.
#pragma once

#include "tarnis/analysis/calibrationlines.h"
#include "tarnis/analysis/energycalibration.h"

#include <QAbstractTableModel>

#include <vector>

namespace tarnis {

/// A peak, and its line if it has one.
struct CalibrationRow {
    CalibrationPoint point; ///< energy 0: no line
    bool isUsed = false; ///< used in the fit
};

/// The rows of peaks sorted by position, with their assigned lines.
std::vector<CalibrationRow> rowsOf(std::vector<MeasuredPeak> peaks, const std::vector<CalibrationPoint>& assigned);

/// The points of the rows that are used.
std::vector<CalibrationPoint> usedPoints(const std::vector<CalibrationRow>& rows);

/// A one-line summary of a calibration.
QString summaryOf(const EnergyCalibration& calibration);

/// One row for each peak. Energy, name and use can be edited.
class CalibrationModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Use, Position, Energy, Name, Residual, Columns };

    using QAbstractTableModel::QAbstractTableModel;

    void setRows(std::vector<CalibrationRow> rows);
    const std::vector<CalibrationRow>& rows() const { return m_rows; }
    void setCalibration(const EnergyCalibration& calibration);
    void retranslate();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

Q_SIGNALS:
    void edited();
    void refused(const QString& reason); ///< an invalid entry, with the reason for the user

private:
    QString textOf(const CalibrationRow& row, int column) const;

    std::vector<CalibrationRow> m_rows;
    EnergyCalibration m_calibration;
};

} // namespace tarnis
