#include "tarnis/tools/errorbars.h"

#include "tarnis/plots/math/floatcomparison_p.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/plotmapping.h"
#include "tarnis/plots/plotstyling_p.h"
#include "tarnis/plots/raster/deviceimage_p.h"
#include "tarnis/plots/xygraphwidget.h"
#include "tarnis/tools/base/overlaycache_p.h"
#include "tarnis/tools/base/plotcurves_p.h"
#include "tarnis/tools/base/plotlabel_p.h"
#include "tarnis/tools/base/toolaction_p.h"
#include "tarnis/tools/curves/counterrors_p.h"
#include "tarnis/tools/curves/envelope_p.h"

#include <QKeyEvent>
#include <QPainter>
#include <QPointer>

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

constexpr int barsZOrder = 4; // under the references: a dense band would hide their dashes and the name
constexpr double narrowBin = 3.0; // pixels
constexpr double widestCap = 7.0;
constexpr int bandAlpha = 110;

const QLatin1String onKey("on");
const QLatin1String methodKey("method");
const QLatin1String poissonName("poisson");
const QLatin1String squareRootName("sqrt");

void drawBars(QPainter& painter, const IconInk& ink)
{
    for (const QPointF& at : { QPointF(3.5, 9.5), QPointF(8.0, 5.5), QPointF(12.5, 8.0) }) {
        painter.drawLine(at - QPointF(0.0, 3.5), at + QPointF(0.0, 3.5));
        painter.drawLine(at - QPointF(1.5, 3.5), at + QPointF(1.5, -3.5));
        painter.drawLine(at + QPointF(-1.5, 3.5), at + QPointF(1.5, 3.5));
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink.accent);
    for (const QPointF& at : { QPointF(3.5, 9.5), QPointF(8.0, 5.5), QPointF(12.5, 8.0) })
        painter.drawEllipse(at, 1.4, 1.4);
}

void drawPoisson(QPainter& painter, const IconInk& ink)
{
    painter.drawPolyline(QPolygonF {
        { 2.0, 13.0 }, { 4.0, 6.0 }, { 6.0, 3.0 }, { 8.0, 5.5 }, { 10.0, 9.5 }, { 12.0, 11.8 }, { 14.5, 13.0 } });
    painter.setPen(QPen(ink.accent, 1.2));
    painter.drawLine(QPointF(6.0, 5.0), QPointF(6.0, 14.0));
}

/// Rows of both ends of a bar; a logarithmic axis shows what is not above 0 at its low end.
struct BarRows {
    double upper = 0.0;
    double lower = 0.0;
};

BarRows rowsOf(const PlotMapping& mapping, const CountInterval& interval)
{
    const QRect rect = mapping.frameRect();
    const double lowEnd = mapping.y().max < mapping.y().min ? rect.top() : rect.bottom();
    const auto rowOf = [&](double value) {
        return mapping.isLogY() && value <= 0.0 ? lowEnd : limitedCoordinate(mapping.rowOf(value));
    };
    return { rowOf(interval.upper), rowOf(interval.lower) };
}

/// The automatic range of a style includes the bars.
void refreshFit(XYGraphWidget* plot)
{
    if (stylingOf(plot) != nullptr && PlotAccess::isAutoY(*plot))
        plot->refreshPixmap();
}

} // namespace

ErrorBars::ErrorBars(XYGraphWidget* plot)
    : InteractiveTool(plot, KeyboardFocus)
    , PlotOverlay(plot, barsZOrder)
    , m_cache(std::make_unique<OverlayCache>())
{
    makeActions();
}

ErrorBars::~ErrorBars()
{
    if (m_isOn)
        refreshFit(plot());
}

bool ErrorBars::isOn() const
{
    return m_isOn;
}

ErrorBars::Method ErrorBars::method() const
{
    return m_method;
}

QPair<double, double> ErrorBars::interval(Method method, double count)
{
    const CountInterval interval = method == Method::Poisson ? quickPoissonInterval(count) : squareRootInterval(count);
    return { interval.lower, interval.upper };
}

void ErrorBars::setOn(bool on)
{
    if (on == m_isOn)
        return;
    m_isOn = on;
    m_painted.clear();
    m_cache->drop();
    m_switch->setChecked(on);
    refreshFit(plot());
    updateOverlay();
    Q_EMIT onChanged(on);
}

void ErrorBars::setMethod(Method method)
{
    if (method == m_method)
        return;
    m_method = method;
    m_poisson->setChecked(method == Method::Poisson);
    m_cache->drop();
    if (m_isOn)
        refreshFit(plot());
    updateOverlay();
}

void ErrorBars::plotChanged(Changes changes)
{
    if (m_isOn && changes.testFlag(Data))
        updateOverlay();
}

bool ErrorBars::handleKey(const QKeyEvent& event)
{
    if (event.key() != Qt::Key_E || event.modifiers() != Qt::NoModifier)
        return false;
    setOn(!m_isOn);
    return true;
}

void ErrorBars::paintOverlay(QPainter& painter, const PlotMapping& mapping)
{
    if (!m_isOn)
        return;
    const QList<ShownCurve> curves = shownCurves(*plot());
    const bool isStale = !isSameData(curves, m_painted);
    m_painted = curves;
    m_cache->paint(painter, plot(), mapping, mapping.frameRect(), isStale,
        [&](QPainter& inside) { paintCurves(inside, mapping, curves); });
}

void ErrorBars::paintCurves(QPainter& painter, const PlotMapping& mapping, const QList<ShownCurve>& curves) const
{
    const BinsInView bins = columnsInView(mapping);
    if (bins.first > bins.last)
        return;
    const AxisRange middle = mapping.columnEdges(bins.first + (bins.last - bins.first) / 2);
    const double width = std::abs(mapping.columnOf(middle.max) - mapping.columnOf(middle.min));
    const BinPositions positionOf(mapping, bins);
    if (width < narrowBin) {
        const QList<ColumnRun> runs = columnRuns(positionOf, bins);
        for (const ShownCurve& curve : curves)
            paintBand(painter, mapping, curve, runs);
        return;
    }
    for (const ShownCurve& curve : curves)
        paintBars(painter, mapping, curve, bins, width);
}

void ErrorBars::paintBand(
    QPainter& painter, const PlotMapping& mapping, const ShownCurve& curve, const QList<ColumnRun>& runs) const
{
    QColor colour = curve.colour;
    colour.setAlpha(bandAlpha);
    // The ends of a bar rise with its count: those of the least and the largest count enclose all of the column.
    const QList<EnvelopeColumn> columns = envelopeOf(runs, curve, EnvelopeOf::Counts, blocksOf(*plot(), curve));
    QList<ColumnSpan> band;
    band.reserve(columns.size());
    for (const EnvelopeColumn& column : columns) {
        const BarRows rows =
            rowsOf(mapping, { interval(m_method, column.lowest).first, interval(m_method, column.highest).second });
        const auto [top, bottom] = std::minmax(rows.upper, rows.lower); // of a reversed axis too
        band.append({ column.column, truncateToPixel(std::floor(top)), truncateToPixel(std::floor(bottom)) });
    }
    fillColumns(painter, mapping.frameRect(), band, colour);
}

void ErrorBars::paintBars(
    QPainter& painter, const PlotMapping& mapping, const ShownCurve& curve, const BinsInView& bins, double width) const
{
    const BinPositions positionOf(mapping, bins);
    const double cap = std::min(widestCap, width * 0.7) / 2.0;
    painter.setPen(curve.colour);
    for (qsizetype i = bins.first; i <= std::min(bins.last, curve.size() - 1); ++i) {
        const auto [lower, upper] = interval(m_method, curve.valueAt(i)); // NaN for what is no count
        const BarRows rows = rowsOf(mapping, { lower, upper });
        if (std::isnan(lower) || rows.lower == rows.upper)
            continue;
        const double column = positionOf(i);
        painter.drawLine(QLineF(column, rows.upper, column, rows.lower));
        painter.drawLine(QLineF(column - cap, rows.upper, column + cap, rows.upper));
        painter.drawLine(QLineF(column - cap, rows.lower, column + cap, rows.lower));
    }
}

void ErrorBars::makeActions()
{
    auto* const onAction = new ToolAction(
        this, "errorBars", [] { return ErrorBars::tr("Error Bars"); }, drawBars);
    onAction->setCheckable(true);
    onAction->showKeys({ Qt::Key_E });
    connect(onAction, &QAction::triggered, this, &ErrorBars::setOn);
    auto* const poisson = new ToolAction(
        this, "poissonErrors", [] { return ErrorBars::tr("Exact Intervals for Small Counts"); }, drawPoisson);
    poisson->setCheckable(true);
    poisson->setChecked(true);
    connect(poisson, &QAction::triggered, this,
        [this](bool checked) { setMethod(checked ? Method::Poisson : Method::SquareRoot); });
    m_switch = onAction;
    m_poisson = poisson;
}

QList<QAction*> ErrorBars::actions() const
{
    return { m_switch, m_poisson };
}

QString ErrorBars::stateName() const
{
    return QStringLiteral("errorBars");
}

QJsonObject ErrorBars::saveState() const
{
    return { { onKey, m_isOn }, { methodKey, m_method == Method::Poisson ? poissonName : squareRootName } };
}

void ErrorBars::restoreState(const QJsonObject& state)
{
    const QPointer<ErrorBars> self(this); // a slot may delete it
    const QString method = state.value(methodKey).toString();
    if (method == poissonName || method == squareRootName)
        setMethod(method == poissonName ? Method::Poisson : Method::SquareRoot);
    if (!self.isNull())
        setOn(state.value(onKey).toBool(m_isOn));
}

} // namespace tarnis
