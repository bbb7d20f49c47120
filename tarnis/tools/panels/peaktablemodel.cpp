#include "tarnis/tools/panels/peaktablemodel_p.h"

#include "tarnis/analysis/figures.h"
#include "tarnis/plots/plotmapping.h"
#include "tarnis/tools/base/plotlabel_p.h"

#include <QPainter>
#include <QPolygonF>

#include <cmath>

namespace tarnis {

namespace {

constexpr int marksZOrder = 15;
const QColor goodColour(255, 190, 60);
const QColor badColour(255, 90, 80);
const QColor selectedColour(255, 255, 255);

} // namespace

void PeakTableModel::setPeaks(const PeakTable& table, const EnergyCalibration& calibration)
{
    beginResetModel();
    m_table = table;
    m_calibration = calibration;
    endResetModel();
}

void PeakTableModel::retranslate()
{
    Q_EMIT headerDataChanged(Qt::Horizontal, 0, Columns - 1);
    if (rowCount() > 0)
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, Columns - 1));
}

int PeakTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_table.peaks.size());
}

int PeakTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : Columns;
}

QString PeakTableModel::textOf(const TablePeak& peak, int column) const
{
    switch (column) {
    case Position:
        return figureText(peak.centre, peak.centreError);
    case Energy: {
        if (!m_calibration.isValid())
            return {};
        const CalibratedEnergy energy = m_calibration.calibrated(peak.centre, peak.centreError);
        const QString text = figureText(energy.energy, energy.error) + u' ' + m_calibration.unit;
        return energy.extrapolated ? tr("%1, extrapolated").arg(text) : text;
    }
    case Area:
        return figureText(peak.area, peak.areaError);
    case Fwhm:
        return figureText(peak.fwhm, peak.fwhmError);
    case Height:
        return QString::number(peak.height, 'g', 5);
    case Background:
        return QString::number(peak.background, 'g', 5);
    case Significance:
        return peak.significance > 0.0 ? QString::number(peak.significance, 'f', 1) : tr("by the fit");
    default:
        return peak.acceptable ? tr("acceptable") : tr("not acceptable");
    }
}

QVariant PeakTableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const TablePeak& peak = m_table.peaks[static_cast<std::size_t>(index.row())];
    if (role == Qt::DisplayRole)
        return textOf(peak, index.column());
    if (role == Qt::ToolTipRole && peak.window < m_table.windows.size())
        return m_table.windows[peak.window].reasons.join(u'\n');
    if (role == Qt::TextAlignmentRole && index.column() != Verdict)
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

QVariant PeakTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Vertical)
        return section + 1;
    const QStringList names { tr("Position"), tr("Energy"), tr("Area"), tr("FWHM"), tr("Height"), tr("Background"),
        tr("Significance"), tr("Verdict") };
    return names.value(section);
}

QString peakTableText(const PeakTable& table, const EnergyCalibration& calibration)
{
    if (!calibration.isValid())
        return tableText(table);
    QStringList lines = tableText(table).split(u'\n', Qt::SkipEmptyParts);
    if (lines.isEmpty())
        return {};
    lines.first() += QStringLiteral("\tenergy\tenergy_error\textrapolated");
    for (qsizetype i = 1; i < lines.size() && i <= static_cast<qsizetype>(table.peaks.size()); ++i) {
        const TablePeak& peak = table.peaks[static_cast<std::size_t>(i - 1)];
        const CalibratedEnergy energy = calibration.calibrated(peak.centre, peak.centreError);
        lines[i] += u'\t' + fullDigits(energy.energy) + u'\t' + fullDigits(energy.error) + u'\t'
            + QString::number(energy.extrapolated ? 1 : 0);
    }
    return lines.join(u'\n') + u'\n';
}

PeakMarks::PeakMarks(XYGraphWidget* plot)
    : PlotOverlay(plot, marksZOrder)
{
}

void PeakMarks::setPeaks(const PeakTable& table, QList<FitLines> lines)
{
    m_marks.clear();
    for (const TablePeak& peak : table.peaks)
        m_marks.append({ peak.centre, peak.height + peak.background, peak.acceptable });
    m_lines = std::move(lines);
    m_selected = -1;
    updateOverlay();
}

void PeakMarks::select(int row)
{
    m_selected = row;
    updateOverlay();
}

void PeakMarks::paintOverlay(QPainter& painter, const PlotMapping& mapping)
{
    painter.setClipRect(mapping.frameRect());
    painter.setRenderHint(QPainter::Antialiasing);
    const AxisRange view = mapping.x();
    for (const FitLines& lines : m_lines) {
        if (lines.total.isEmpty() || lines.total.last().x() < std::min(view.min, view.max)
            || lines.total.first().x() > std::max(view.min, view.max))
            continue;
        paintValues(painter, mapping, lines.background, goodColour, Qt::DotLine);
        paintValues(painter, mapping, lines.total, goodColour, Qt::SolidLine);
    }
    for (qsizetype i = 0; i < m_marks.size(); ++i) {
        const Mark& mark = m_marks.at(i);
        const double column = limitedCoordinate(mapping.columnOf(mark.centre));
        const double row = limitedCoordinate(mapping.rowOf(mark.top)) - 4.0;
        const double size = i == m_selected ? 7.0 : 4.5;
        painter.setPen(QPen(Qt::black, 1.0));
        painter.setBrush(i == m_selected ? selectedColour : mark.acceptable ? goodColour : badColour);
        painter.drawPolygon(
            QPolygonF { { column, row }, { column - size, row - 1.8 * size }, { column + size, row - 1.8 * size } });
    }
}

} // namespace tarnis
