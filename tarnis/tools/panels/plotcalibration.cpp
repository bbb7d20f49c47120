#include "tarnis/tools/plotcalibration.h"

#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/plothooks_p.h"
#include "tarnis/plots/plotmapping.h"
#include "tarnis/plots/plotobserver.h"
#include "tarnis/plots/plotoverlay.h"
#include "tarnis/plots/plotstyling_p.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

constexpr int labelsZOrder = -10;
constexpr int endRoom = 30; // pixels that a label extends beyond an end of the axis

/// The ends of the data, or of the axis if there are no data.
std::pair<double, double> axisOf(const XYGraphWidget& plot)
{
    const PlotMapping mapping = PlotMapping::of(plot);
    if (mapping.columns() == 0)
        return std::minmax({ mapping.x().min, mapping.x().max });
    return std::minmax({ mapping.columnEdges(0).min, mapping.columnEdges(mapping.columns() - 1).max });
}

/// Replaces the plot's own labels, which show positions, by round energies.
class EnergyLabels : public PlotOverlay {
public:
    explicit EnergyLabels(XYGraphWidget& plot)
        : PlotOverlay(&plot, labelsZOrder)
        , m_plot(plot)
    {
    }

protected:
    void paintOverlay(QPainter& painter, const PlotMapping& mapping) override;

private:
    XYGraphWidget& m_plot; // destroys its calibration, which destroys this object
};

void EnergyLabels::paintOverlay(QPainter& painter, const PlotMapping& mapping)
{
    if (stylingOf(&m_plot) != nullptr)
        return; // a style draws the second scale itself
    const QRect graph = mapping.frameRect();
    // The strip of the labels. Beside the plot its upper part is used by the lowest Y label.
    const QRect strip(graph.left() - 4, graph.bottom() + 4, graph.width() + endRoom, 16);
    painter.fillRect(strip, Qt::lightGray);
    painter.fillRect(QRect(graph.left() - endRoom, graph.bottom() + 9, endRoom, 11), Qt::lightGray);
    painter.setPen(Qt::black);
    const double left = mapping.tickOf(mapping.x().min);
    const double right = mapping.tickOf(mapping.x().max);
    // The ends of an axis are not round; drops digits below the visible resolution.
    const double step = std::pow(10.0, std::floor(std::log10(std::max(1e-9, std::fabs(right - left)))) - 3.0);
    int decimal = m_plot.getDecimalX();
    QList<double> energies { left, right };
    energies << XYGraphWidget::calcTicks(left, right, decimal);
    QList<QRect> taken;
    const QFontMetrics metrics(painter.font());
    for (const double energy : energies) {
        const double share = (energy - left) / (right - left);
        if (!(share >= 0.0 && share <= 1.0))
            continue;
        const double x = energy == left ? mapping.x().min
            : energy == right           ? mapping.x().max
                                        : PlotAccess::fromTick(m_plot, energy);
        const QString text = QString::number(std::round(energy / step) * step + 0.0, 'g', 6);
        QRect place(0, graph.bottom() + 5, metrics.horizontalAdvance(text) + 8, 15);
        place.moveLeft(qRound(mapping.columnOf(x)) - place.width() / 2);
        const bool isFree =
            std::none_of(taken.begin(), taken.end(), [&](const QRect& other) { return other.intersects(place); });
        if (!isFree)
            continue;
        taken << place;
        painter.drawText(place, Qt::AlignHCenter | Qt::AlignTop, text);
    }
}

} // namespace

PlotCalibration::~PlotCalibration() = default;

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
    PlotHooks::of(plot).setPositionName(m_previousName);
    m_labels = std::make_unique<EnergyLabels>(plot);
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
        return tr("The energy does not increase over the complete axis of the plot.");
    remove(plot);
    new PlotCalibration(plot, calibration, axis);
    plot.refreshPixmap();
    PlotObserver::announceData(plot); // tables show energies
    return {};
}

void PlotCalibration::remove(XYGraphWidget& plot)
{
    PlotCalibration* const present = of(plot);
    if (present == nullptr)
        return;
    plot.setFuncX2Tick(nullptr, nullptr, nullptr);
    PlotHooks::of(plot).setPositionName(std::nullopt);
    plot.setNameX(present->m_previousName);
    delete present;
    plot.refreshPixmap();
    PlotObserver::announceData(plot);
}

// A parabola has an extremum outside of the data, and a view may extend there. The scale continues along the tangent.
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
