#include "tarnis/tools/panels/calibrationmodel_p.h"

#include "tarnis/analysis/figures.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <cmath>

namespace tarnis {

std::vector<CalibrationRow> rowsOf(std::vector<MeasuredPeak> peaks, const std::vector<CalibrationPoint>& assigned)
{
    std::sort(peaks.begin(), peaks.end(),
        [](const MeasuredPeak& a, const MeasuredPeak& b) { return a.position < b.position; });
    std::vector<CalibrationRow> rows;
    for (const MeasuredPeak& peak : peaks) {
        CalibrationRow row;
        row.point.position = peak.position;
        row.point.positionError = peak.error;
        for (const CalibrationPoint& point : assigned) {
            if (point.position == peak.position)
                row = { point, true };
        }
        rows.push_back(row);
    }
    return rows;
}

std::vector<CalibrationPoint> usedPoints(const std::vector<CalibrationRow>& rows)
{
    std::vector<CalibrationPoint> points;
    for (const CalibrationRow& row : rows) {
        if (row.isUsed)
            points.push_back(row.point);
    }
    return points;
}

QString summaryOf(const EnergyCalibration& calibration)
{
    const std::vector<double> p = calibration.uncentred();
    QString formula = QStringLiteral("E = %1 + %2 x").arg(p.at(0), 0, 'g', 6).arg(p.at(1), 0, 'g', 6);
    if (p.size() > 2)
        formula += QStringLiteral(" + %1 x²").arg(p.at(2), 0, 'g', 4);
    QString text = QCoreApplication::translate(
        "tarnis::CalibrationPanel", "%1 from %2 lines, chi squared %3 for %4 degrees of freedom.")
                       .arg(formula)
                       .arg(calibration.points.size())
                       .arg(calibration.chi2, 0, 'g', 4)
                       .arg(calibration.ndf);
    // Errors are not scaled; a large value means that they are too small or a line is wrong.
    if (calibration.ndf > 0 && calibration.chi2 > 4.0 * calibration.ndf)
        text += u' '
            + QCoreApplication::translate(
                "tarnis::CalibrationPanel", "The lines deviate from the curve by more than their errors.");
    return text;
}

void CalibrationModel::setRows(std::vector<CalibrationRow> rows)
{
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

void CalibrationModel::setCalibration(const EnergyCalibration& calibration)
{
    m_calibration = calibration;
    if (!m_rows.empty())
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, Columns - 1));
}

void CalibrationModel::retranslate()
{
    Q_EMIT headerDataChanged(Qt::Horizontal, 0, Columns - 1);
}

int CalibrationModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int CalibrationModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : Columns;
}

QString CalibrationModel::textOf(const CalibrationRow& row, int column) const
{
    const CalibrationPoint& point = row.point;
    switch (column) {
    case Position:
        return figureText(point.position, point.positionError);
    case Energy:
        if (point.energy <= 0.0)
            return {};
        return point.energyError > 0.0 ? figureText(point.energy, point.energyError)
                                       : QString::number(point.energy, 'g', 8);
    case Name:
        return point.name;
    case Residual:
        if (point.energy <= 0.0 || !m_calibration.isValid())
            return {};
        return QString::number(
            std::round(1000.0 * (point.energy - m_calibration.energyAt(point.position))) / 1000.0 + 0.0, 'f', 3);
    default:
        return {};
    }
}

QVariant CalibrationModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const CalibrationRow& row = m_rows[static_cast<std::size_t>(index.row())];
    if (role == Qt::CheckStateRole && index.column() == Use)
        return row.isUsed ? Qt::Checked : Qt::Unchecked;
    if (role == Qt::EditRole && index.column() == Energy)
        return row.point.energy > 0.0 ? QString::number(row.point.energy, 'g', 10) : QString();
    if (role == Qt::DisplayRole || role == Qt::EditRole)
        return textOf(row, index.column());
    if (role == Qt::TextAlignmentRole && index.column() != Name)
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

QVariant CalibrationModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    const QStringList names { tr("Used"), tr("Position"), tr("Energy [%1]").arg(m_calibration.unit), tr("Line"),
        tr("Residual") };
    return names.value(section);
}

Qt::ItemFlags CalibrationModel::flags(const QModelIndex& index) const
{
    Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    if (!index.isValid())
        return flags;
    if (index.column() == Use && m_rows[static_cast<std::size_t>(index.row())].point.energy > 0.0)
        flags |= Qt::ItemIsUserCheckable;
    if (index.column() == Energy || index.column() == Name)
        flags |= Qt::ItemIsEditable;
    return flags;
}

bool CalibrationModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || index.row() >= rowCount())
        return false;
    CalibrationRow& row = m_rows[static_cast<std::size_t>(index.row())];
    if (role == Qt::CheckStateRole && index.column() == Use && row.point.energy > 0.0) {
        row.isUsed = value.toInt() == Qt::Checked;
    } else if (role == Qt::EditRole && index.column() == Name) {
        row.point.name = value.toString().trimmed();
    } else if (role == Qt::EditRole && index.column() == Energy) {
        const QString text = value.toString().trimmed();
        bool isNumber = false;
        double energy = text.toDouble(&isNumber);
        if (!isNumber)
            energy = QLocale().toDouble(text, &isNumber);
        if (!text.isEmpty() && (!isNumber || !std::isfinite(energy) || energy <= 0.0)) {
            Q_EMIT refused(tr("\"%1\" is not a positive energy.").arg(text));
            return false;
        }
        if (text == data(index, Qt::EditRole).toString())
            return true; // an editor that was closed without a change
        row.point.energy = text.isEmpty() ? 0.0 : energy;
        // An entered energy has an unknown error, and is not the one of the assigned line.
        row.point.energyError = 0.0;
        row.point.name.clear();
        row.isUsed = !text.isEmpty();
    } else {
        return false;
    }
    Q_EMIT dataChanged(this->index(index.row(), 0), this->index(index.row(), Columns - 1));
    Q_EMIT edited();
    return true;
}

} // namespace tarnis
