#include "tarnis/tools/plotcalibration.h"

#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/plotmapping.h"

#include <algorithm>

namespace tarnis {

namespace {

/// The ends of the data, or of the axis without data.
std::pair<double, double> axisOf(const XYGraphWidget& plot)
{
    const PlotMapping mapping = PlotMapping::of(plot);
    if (mapping.columns() == 0)
        return std::minmax({ mapping.x().min, mapping.x().max });
    return std::minmax({ mapping.columnEdges(0).min, mapping.columnEdges(mapping.columns() - 1).max });
}

} // namespace

PlotCalibration::PlotCalibration(
    XYGraphWidget& plot, const EnergyCalibration& calibration, std::pair<double, double> axis)
    : QObject(&plot)
    , m_calibration(calibration)
    , m_lower(axis.first)
    , m_upper(axis.second)
    , m_previousName(plot.getNameX())
{
    plot.setFuncX2Tick(&PlotCalibration::toTick, &PlotCalibration::fromTick, this);
    plot.setNameX(tr("Energy [%1]").arg(calibration.unit));
}

PlotCalibration* PlotCalibration::of(const XYGraphWidget& plot)
{
    return plot.findChild<PlotCalibration*>(QString(), Qt::FindDirectChildrenOnly);
}

QString PlotCalibration::apply(XYGraphWidget& plot, const EnergyCalibration& calibration)
{
    if (!calibration.isValid())
        return tr("There is no calibration to apply.");
    if (of(plot) == nullptr && PlotAccess::hasTickFunction(plot))
        return tr("The axis of this plot has a second scale already.");
    const std::pair<double, double> axis = axisOf(plot);
    if (!calibration.risesFrom(axis.first, axis.second))
        return tr("The energy does not rise over the whole axis of the plot.");
    remove(plot);
    new PlotCalibration(plot, calibration, axis);
    plot.refreshPixmap();
    return {};
}

void PlotCalibration::remove(XYGraphWidget& plot)
{
    PlotCalibration* const present = of(plot);
    if (present == nullptr)
        return;
    plot.setFuncX2Tick(nullptr, nullptr, nullptr);
    plot.setNameX(present->m_previousName);
    delete present;
    plot.refreshPixmap();
}

// A parabola turns somewhere outside of the data, and a view may reach there: the scale goes on along its tangent.
double PlotCalibration::energyAt(double x) const
{
    const double inside = std::clamp(x, m_lower, m_upper);
    return m_calibration.energyAt(inside) + (x - inside) * m_calibration.slopeAt(inside);
}

double PlotCalibration::positionOf(double energy) const
{
    for (const double end : { m_lower, m_upper }) {
        const double atEnd = m_calibration.energyAt(end);
        if (end == m_lower ? energy <= atEnd : energy >= atEnd)
            return end + (energy - atEnd) / m_calibration.slopeAt(end);
    }
    return m_calibration.positionOf(energy);
}

double PlotCalibration::toTick(double x, void* self)
{
    return static_cast<const PlotCalibration*>(self)->energyAt(x);
}

double PlotCalibration::fromTick(double energy, void* self)
{
    return static_cast<const PlotCalibration*>(self)->positionOf(energy);
}

} // namespace tarnis
