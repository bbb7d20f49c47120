#include "tarnis/tools/binaggregation.h"

#include "tarnis/plots/exactdrawing_p.h"
#include "tarnis/plots/mapcolouring_p.h"
#include "tarnis/plots/math/floatcomparison_p.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/plotmapping.h"
#include "tarnis/plots/raster/deviceimage_p.h"
#include "tarnis/tools/base/labelplacement_p.h"
#include "tarnis/tools/base/overlaycache_p.h"
#include "tarnis/tools/base/plotcurves_p.h"
#include "tarnis/tools/base/plotlabel_p.h"
#include "tarnis/tools/base/toolaction_p.h"
#include "tarnis/tools/curves/envelope_p.h"

#include <QActionGroup>
#include <QFontMetrics>
#include <QMenu>
#include <QPainter>
#include <QSignalBlocker>

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

constexpr int envelopeZOrder = 2;
constexpr int bandAlpha = 90;

const QLatin1String methodKey("method");
constexpr const char* methodNames[] = { "none", "maximum", "sum", "mean" }; // in the order of Method

BinReduction reductionOf(BinAggregation::Method method)
{
    switch (method) {
    case BinAggregation::Method::Maximum:
        return BinReduction::Maximum;
    case BinAggregation::Method::Sum:
        return BinReduction::Sum;
    case BinAggregation::Method::Mean:
        return BinReduction::Mean;
    default:
        return BinReduction::First;
    }
}

void drawPeaks(QPainter& painter, const IconInk& ink)
{
    for (int i = 0; i < 4; ++i)
        painter.drawLine(QPointF(2.5 + 3.5 * i, 14.0), QPointF(2.5 + 3.5 * i, 10.0));
    painter.setPen(QPen(ink.accent, 1.4));
    painter.drawPolyline(QPolygonF { { 2.0, 8.0 }, { 6.0, 7.0 }, { 8.0, 2.0 }, { 10.0, 7.0 }, { 14.0, 8.0 } });
}

/// With a bin's edges and the pixels for each unit of the axis.
double binsPerPixel(qsizetype bins, AxisRange bin, double pixelsPerUnit)
{
    const double width = std::abs(pixelsPerUnit * (bin.max - bin.min));
    return bins > 0 && width > 0.0 && std::isfinite(width) ? std::max(1.0 / width, 1.0) : 1.0;
}

} // namespace

BinAggregation::BinAggregation(XYGraphWidget* plot)
    : InteractiveTool(plot, Nothing)
    , PlotOverlay(plot, envelopeZOrder)
    , m_cache(std::make_unique<OverlayCache>())
{
    makeActions();
}

BinAggregation::~BinAggregation()
{
    const QSignalBlocker quiet(this); // a slot would get an object that is being deleted
    setMethod(Method::None);
}

BinAggregation::Method BinAggregation::method() const
{
    return m_method;
}

void BinAggregation::setMethod(Method method)
{
    if (method == m_method || plot() == nullptr)
        return;
    m_method = method;
    m_cache->drop();
    if (auto* const map = qobject_cast<XY2DGraphWidget*>(plot()))
        PlotAccess::setReduction(*map, reductionOf(method));
    updateOverlay();
    Q_EMIT methodChanged();
}

double BinAggregation::binsPerPixelX() const
{
    const PlotMapping mapping = plot() != nullptr ? PlotMapping::of(*plot()) : PlotMapping();
    if (!mapping.isValid())
        return 1.0;
    return binsPerPixel(
        mapping.columns(), mapping.columnEdges(0), mapping.frameRect().width() / (mapping.x().max - mapping.x().min));
}

double BinAggregation::binsPerPixelY() const
{
    const PlotMapping mapping = plot() != nullptr ? PlotMapping::of(*plot()) : PlotMapping();
    if (!mapping.isValid())
        return 1.0;
    return binsPerPixel(
        mapping.rows(), mapping.rowEdges(0), mapping.frameRect().height() / (mapping.y().max - mapping.y().min));
}

bool BinAggregation::isShown() const
{
    const bool isMap = qobject_cast<const XY2DGraphWidget*>(plot()) != nullptr;
    return m_method != Method::None && (isMap || m_method != Method::Sum)
        && (binsPerPixelX() > 1.0 || binsPerPixelY() > 1.0);
}

void BinAggregation::plotChanged(Changes changes)
{
    if (m_method != Method::None && changes.testFlag(Data))
        updateOverlay();
}

void BinAggregation::paintOverlay(QPainter& painter, const PlotMapping& mapping)
{
    const bool isMap = qobject_cast<const XY2DGraphWidget*>(plot()) != nullptr;
    if (!isShown() || (isMap && exactDeviceBehind(painter) != nullptr)) // there the map has every bin
        return;
    const QList<ShownCurve> curves = shownCurves(*plot()); // none for a map
    const bool isStale = !isSameData(curves, m_painted);
    m_painted = curves;
    m_cache->paint(painter, plot(), mapping, mapping.frameRect(), isStale, [&](QPainter& inside) {
        const BinsInView bins = columnsInView(mapping);
        const QList<ColumnRun> runs = columnRuns(BinPositions(mapping, bins), bins);
        for (const ShownCurve& curve : curves)
            paintEnvelope(inside, mapping, curve, runs);
    });
    const LabelLayout note(noteText(), painter.font());
    note.paint(painter, noteBox(mapping, note.size()).topLeft());
}

QString BinAggregation::noteText() const
{
    const QString method = m_method == Method::Mean ? tr("mean") : m_method == Method::Sum ? tr("sum") : tr("maximum");
    const QString bins = qobject_cast<const XY2DGraphWidget*>(plot()) != nullptr
        ? QStringLiteral("%1 × %2").arg(binsPerPixelX(), 0, 'g', 3).arg(binsPerPixelY(), 0, 'g', 3)
        : QString::number(binsPerPixelX(), 'g', 3);
    return tr("%1 of %2 bins per pixel").arg(method, bins);
}

QRect BinAggregation::noteBox(const PlotMapping& mapping, const QSize& label) const
{
    const QRect rect = mapping.frameRect();
    const QRect corner = labelFrame(label, rect.bottomLeft() + QPoint(4, -4), Qt::AlignLeft | Qt::AlignBottom);
    return movedPast(corner, rect, cornerBoxesOf(*plot()), Qt::RightEdge);
}

QList<QRect> BinAggregation::nameBoxes() const
{
    const PlotMapping mapping = plot() != nullptr ? PlotMapping::of(*plot()) : PlotMapping();
    if (!mapping.isValid() || !isShown())
        return {};
    return { noteBox(mapping, labelSize(QFontMetrics(plot()->font()), noteText())) };
}

void BinAggregation::paintEnvelope(
    QPainter& painter, const PlotMapping& mapping, const ShownCurve& curve, const QList<ColumnRun>& runs) const
{
    const SampleBlocks* const blocks = blocksOf(*plot(), curve);
    const QList<EnvelopeColumn> columns = envelopeOf(runs, curve, EnvelopeOf::Numbers, blocks);
    const QList<double> means = m_method == Method::Mean ? meansOf(runs, curve, blocks) : QList<double>();
    QColor band = curve.colour;
    band.setAlpha(bandAlpha);
    QPolygonF line;
    QList<ColumnSpan> spans;
    for (qsizetype i = 0; i < columns.size(); ++i) {
        const EnvelopeColumn& entry = columns.at(i);
        const double top = limitedCoordinate(mapping.rowOf(entry.highest));
        const double bottom = limitedCoordinate(mapping.rowOf(entry.lowest));
        spans.append({ entry.column, truncateToPixel(std::floor(std::min(top, bottom))),
            truncateToPixel(std::floor(std::max(top, bottom))) });
        line << QPointF(entry.column, means.isEmpty() ? top : limitedCoordinate(mapping.rowOf(means.at(i))));
    }
    fillColumns(painter, mapping.frameRect(), spans, band);
    painter.setPen(curve.colour.lighter(120));
    for (const ColumnPart& part : connectedParts(runs, columns))
        painter.drawPolyline(line.constData() + part.begin, static_cast<int>(part.end - part.begin));
}

void BinAggregation::makeActions()
{
    auto* const choose = new ToolAction(
        this, "binAggregation", [] { return BinAggregation::tr("Bins That Share a Pixel"); }, drawPeaks);
    m_menu = new QMenu(plot());
    connect(this, &QObject::destroyed, m_menu, &QObject::deleteLater);
    connect(m_menu, &QMenu::aboutToShow, this, &BinAggregation::fillMenu);
    choose->setMenu(m_menu);
    m_menuAction = choose;
}

void BinAggregation::fillMenu()
{
    m_menu->clear();
    auto* const methods = new QActionGroup(m_menu);
    const auto addMethod = [&](const QString& text, Method method) {
        QAction* const entry = methods->addAction(text);
        entry->setCheckable(true);
        entry->setChecked(method == m_method);
        connect(entry, &QAction::triggered, this, [this, method] { setMethod(method); });
        m_menu->addAction(entry);
    };
    const bool isMap = qobject_cast<const XY2DGraphWidget*>(plot()) != nullptr;
    addMethod(isMap ? tr("First Bin") : tr("Curve Only"), Method::None);
    addMethod(tr("Maximum"), Method::Maximum);
    if (isMap)
        addMethod(tr("Sum"), Method::Sum);
    addMethod(tr("Mean"), Method::Mean);
}

QList<QAction*> BinAggregation::actions() const
{
    return { m_menuAction };
}

QString BinAggregation::stateName() const
{
    return QStringLiteral("binAggregation");
}

QJsonObject BinAggregation::saveState() const
{
    return { { methodKey, QLatin1String(methodNames[static_cast<int>(m_method)]) } };
}

void BinAggregation::restoreState(const QJsonObject& state)
{
    for (int i = 0; i < 4; ++i) {
        if (state.value(methodKey).toString() == QLatin1String(methodNames[i]))
            setMethod(static_cast<Method>(i));
    }
}

} // namespace tarnis
