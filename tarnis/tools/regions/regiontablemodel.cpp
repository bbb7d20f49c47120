#include "tarnis/tools/regions/regiontablemodel_p.h"

#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/viewselectedroi.h"
#include "tarnis/tools/plotcalibration.h"

#include <QLocale>

#include <cmath>

namespace tarnis {

namespace {

QString limitText(double value)
{
    return QString::number(value, 'g', 8);
}

} // namespace

RegionTableModel::RegionTableModel(PlotRegions* tool, QObject* parent)
    : QAbstractTableModel(parent)
    , m_tool(tool)
{
}

bool RegionTableModel::isMap() const
{
    return m_tool && qobject_cast<XY2DGraphWidget*>(m_tool->plot()) != nullptr;
}

QList<PlotRegion> RegionTableModel::allRegions() const
{
    QList<PlotRegion> regions = m_tool->regions();
    XYGraphWidget& plot = *m_tool->plot();
    double min = 0.0;
    double max = 0.0;
    if (plot.GetXRange(min, max))
        regions << PlotRegion::rangeX(min, max, tr("Selected range"));
    auto* const map = qobject_cast<XY2DGraphWidget*>(&plot);
    if (map == nullptr || !map->IsRoiEnabled() || map->GetViewSelectedROI() == nullptr)
        return regions;
    int number = 0;
    for (const QRect& roi : map->GetViewSelectedROI()->getRoiList()) {
        // Corners are inclusive: the bin of the upper one belongs to the region.
        regions << PlotRegion { PlotRegion::Kind::Rectangle, tr("ROI %1").arg(++number),
            { QPointF(roi.topLeft()), QPointF(roi.bottomRight()) + QPointF(1.0, 1.0) } };
    }
    return regions;
}

void RegionTableModel::refresh()
{
    std::vector<RegionRow> rows;
    if (m_tool && m_tool->plot() != nullptr) {
        const QList<PlotRegion> regions = allRegions();
        const PlotCalibration* const applied = PlotCalibration::of(*m_tool->plot());
        options.calibration = applied != nullptr ? applied->calibration() : EnergyCalibration();
        if (!regions.isEmpty())
            rows = isMap() ? regionRows(regions, mapOf(*m_tool->plot()), options)
                           : regionRows(regions, spectraOf(*m_tool->plot()), options);
    }
    if (rows.size() == m_rows.size()) {
        replaceRows(std::move(rows));
        return;
    }
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

// Without a reset, which would close an open editor when data arrive. Each run of changed rows is announced once; views
// paint nothing else.
void RegionTableModel::replaceRows(std::vector<RegionRow> rows)
{
    m_rows.swap(rows);
    const int count = rowCount();
    const auto isChanged = [&](int row) {
        const auto i = static_cast<std::size_t>(row);
        return !isSameRow(m_rows[i], rows[i]);
    };
    for (int first = 0; first < count; ++first) {
        if (!isChanged(first))
            continue;
        int last = first;
        while (last + 1 < count && isChanged(last + 1))
            ++last;
        Q_EMIT dataChanged(index(first, 0), index(last, Columns - 1));
        first = last;
    }
}

void RegionTableModel::freeze(const QString& when)
{
    m_frozen.clear();
    for (const RegionRow& row : m_rows)
        m_frozen.push_back({ row.name, row.curve, row.sum, row.net });
    m_frozenAt = when;
    Q_EMIT headerDataChanged(Qt::Horizontal, SumSince, NetSince);
    if (!m_rows.empty())
        Q_EMIT dataChanged(index(0, SumSince), index(rowCount() - 1, NetSince));
    refresh();
}

void RegionTableModel::release()
{
    m_frozen.clear();
    refresh();
}

QString RegionTableModel::text() const
{
    return regionTableText(m_rows, isMap(), m_frozen);
}

int RegionTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int RegionTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : Columns;
}

bool RegionTableModel::isEditable(const RegionRow& row) const
{
    return m_tool && row.region < m_tool->regions().size();
}

QString RegionTableModel::textOf(const RegionRow& row, int column) const
{
    const FrozenRow* const frozen = column >= SumSince ? frozenOf(row, m_frozen) : nullptr;
    switch (column) {
    case Name:
        return row.name;
    case Curve:
        return row.curve;
    case From:
        return limitText(row.limits.left());
    case To:
        return limitText(row.limits.right());
    case FromY:
        return limitText(row.limits.top());
    case ToY:
        return limitText(row.limits.bottom());
    default:
        break;
    }
    if (!row.fault.isEmpty())
        return QStringLiteral("–");
    switch (column) {
    case Bins:
        return QString::number(row.bins);
    case Sum:
        return sumText(row);
    case Net:
        return netText(row);
    case Centroid:
        return valueText(row.centroid);
    case CentroidY:
        return valueText(row.centroidY);
    case Energy:
        return valueText(row.energy);
    case Fwhm:
        return std::isnan(row.fwhm) ? QStringLiteral("–") : QString::number(row.fwhm, 'g', 4);
    case Maximum:
        return QString::number(row.maximum.value, 'g', 7);
    case MaximumAt:
        return isMap() && !std::isnan(row.maximumAt)
            ? QStringLiteral("%1; %2").arg(limitText(row.maximumAt), limitText(row.maximumAtY))
            : std::isnan(row.maximumAt) ? QStringLiteral("–")
                                        : limitText(row.maximumAt);
    case Share:
        return std::isnan(row.share) ? QStringLiteral("–") : QStringLiteral("%1 %").arg(100.0 * row.share, 0, 'f', 2);
    case SumSince:
        return valueText(frozen != nullptr ? since(row.sum, frozen->sum) : RegionValue());
    case NetSince:
        return valueText(frozen != nullptr ? since(row.net, frozen->net) : RegionValue());
    default:
        return {};
    }
}

QVariant RegionTableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const RegionRow& row = m_rows[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return textOf(row, index.column());
    case Qt::ToolTipRole:
        return row.fault.isEmpty() ? row.note : row.fault;
    case Qt::DecorationRole:
        return index.column() == Curve && !row.curve.isEmpty() ? QVariant(row.colour) : QVariant();
    case Qt::TextAlignmentRole:
        return index.column() > Curve ? QVariant(Qt::AlignRight | Qt::AlignVCenter) : QVariant();
    default:
        return {};
    }
}

QVariant RegionTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    const QStringList names { tr("Region"), tr("Curve"), tr("From"), tr("To"), tr("From Y"), tr("To Y"), tr("Bins"),
        tr("Sum"), tr("Net"), tr("Centroid"), tr("Centroid Y"), tr("Energy [%1]").arg(options.calibration.unit),
        tr("FWHM"), tr("Maximum"), tr("Maximum at"), tr("Share"), tr("Sum since %1").arg(m_frozenAt),
        tr("Net since %1").arg(m_frozenAt) };
    return names.value(section);
}

Qt::ItemFlags RegionTableModel::flags(const QModelIndex& index) const
{
    Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    if (!index.isValid() || index.row() >= rowCount())
        return flags;
    const RegionRow& row = m_rows[static_cast<std::size_t>(index.row())];
    const int column = index.column();
    if (column != Name && (column < From || column > ToY))
        return flags;
    // A polygon has more than two limits.
    const bool isLimited =
        isEditable(row) && (column == Name || m_tool->regions().at(row.region).kind != PlotRegion::Kind::Polygon);
    return isLimited ? flags | Qt::ItemIsEditable : flags;
}

bool RegionTableModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::EditRole || !flags(index).testFlag(Qt::ItemIsEditable))
        return false;
    const int number = m_rows[static_cast<std::size_t>(index.row())].region;
    PlotRegion region = m_tool->regions().at(number);
    if (index.column() == Name) {
        region.name = value.toString().trimmed();
        if (region.name.isEmpty())
            return false;
    } else {
        bool isNumber = false;
        double limit = value.toString().toDouble(&isNumber);
        if (!isNumber)
            limit = QLocale().toDouble(value.toString(), &isNumber);
        if (!isNumber || !std::isfinite(limit)) {
            Q_EMIT refused(tr("\"%1\" is not a number.").arg(value.toString()));
            return false;
        }
        QRectF box = region.bounds();
        // A limit beyond the other one moves the whole region. Otherwise the other limit would become this one.
        switch (index.column()) {
        case From:
            limit < box.right() ? box.setLeft(limit) : box.moveLeft(limit);
            break;
        case To:
            limit > box.left() ? box.setRight(limit) : box.moveRight(limit);
            break;
        case FromY:
            limit < box.bottom() ? box.setTop(limit) : box.moveTop(limit);
            break;
        default:
            limit > box.top() ? box.setBottom(limit) : box.moveBottom(limit);
            break;
        }
        region.points = { box.topLeft(), box.bottomRight() };
    }
    m_tool->replace(number, region);
    refresh();
    return true;
}

} // namespace tarnis
