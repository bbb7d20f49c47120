// Drawing, actions and stored views of the reference curves.
#include "tarnis/foundation/message.h"
#include "tarnis/plots/curvepaint_p.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/plotmapping.h"
#include "tarnis/plots/plotstyling_p.h"
#include "tarnis/plots/xygraphwidget.h"
#include "tarnis/tools/base/labelplacement_p.h"
#include "tarnis/tools/base/overlaycache_p.h"
#include "tarnis/tools/base/plotlabel_p.h"
#include "tarnis/tools/base/plotreadout_p.h"
#include "tarnis/tools/base/toolaction_p.h"
#include "tarnis/tools/curves/envelope_p.h"
#include "tarnis/tools/curves/referencecurves_p.h"

#include <QActionGroup>
#include <QCoreApplication>
#include <QFileDialog>
#include <QFontMetrics>
#include <QJsonArray>
#include <QMenu>
#include <QPainter>
#include <QPointer>

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

const QLatin1String viewKey("view");
const QLatin1String normKey("norm");
const QLatin1String rangeKey("normRange");
const QLatin1String filesKey("files");
constexpr const char* viewNames[] = { "over", "difference", "ratio", "significance" }; // in the order of View
constexpr const char* normNames[] = { "none", "totalCounts", "liveTime", "rangeCounts" }; // in the order of Norm

void drawFreeze(QPainter& painter, const IconInk& ink)
{
    painter.drawPolyline(QPolygonF { { 1.5, 13.0 }, { 5.0, 11.0 }, { 8.0, 3.0 }, { 11.0, 11.0 }, { 14.5, 13.0 } });
    painter.setPen(QPen(ink.accent, 1.2, Qt::DotLine));
    painter.drawPolyline(QPolygonF { { 1.5, 11.0 }, { 4.5, 9.0 }, { 7.0, 6.0 }, { 11.0, 9.5 }, { 14.5, 11.0 } });
}

void drawOpen(QPainter& painter, const IconInk& ink)
{
    painter.drawPolygon(
        QPolygonF { { 1.5, 13.5 }, { 1.5, 3.0 }, { 6.0, 3.0 }, { 7.5, 4.8 }, { 14.5, 4.8 }, { 14.5, 13.5 } });
    painter.setPen(QPen(ink.accent, 1.2));
    painter.drawPolyline(QPolygonF { { 3.5, 11.5 }, { 6.0, 10.5 }, { 8.0, 7.0 }, { 10.0, 10.5 }, { 12.5, 11.5 } });
}

void drawCompare(QPainter& painter, const IconInk& ink)
{
    painter.drawPolyline(QPolygonF { { 1.5, 7.5 }, { 5.0, 6.0 }, { 8.0, 1.5 }, { 11.0, 6.0 }, { 14.5, 7.5 } });
    painter.drawLine(QPointF(1.5, 12.0), QPointF(14.5, 12.0));
    painter.setPen(QPen(ink.accent, 1.2));
    painter.drawPolyline(QPolygonF { { 1.5, 12.5 }, { 5.0, 10.5 }, { 8.0, 13.8 }, { 11.0, 10.5 }, { 14.5, 12.5 } });
}

/// Samples that are multiplied with a norm above 0.
struct ScaledCurve {
    ShownCurve samples;
    double norm = 1.0;
};

/// The row of a pixel, as the classic curves choose it.
int pixelRow(const PlotMapping& mapping, double value)
{
    return truncateToPixel(limitedCoordinate(mapping.rowOf(value)));
}

/// The lines through the samples in view, one by one, with a gap where a sample is not a number.
QList<QPolygonF> linesThrough(
    const PlotMapping& mapping, const BinPositions& positionOf, const ScaledCurve& curve, BinsInView bins)
{
    QList<QPolygonF> lines(1);
    for (qsizetype i = bins.first; i <= std::min(bins.last, curve.samples.size() - 1); ++i) {
        const double value = curve.samples.valueAt(i) * curve.norm;
        if (std::isfinite(value))
            lines.last().append(QPointF(std::floor(positionOf(i)), pixelRow(mapping, value)));
        else if (!lines.constLast().isEmpty())
            lines.append(QPolygonF());
    }
    return lines;
}

/// The same pixels where several samples share a pixel column.
QList<QLine> linesOf(const QPainter& painter, const PlotMapping& mapping, const ScaledCurve& curve,
    const QList<ColumnRun>& runs, const SampleBlocks* blocks)
{
    QList<QLine> found;
    const QList<EnvelopeColumn> columns = envelopeOf(runs, curve.samples, EnvelopeOf::Numbers, blocks);
    for (const ColumnPart& part : connectedParts(runs, columns)) {
        CurveLines lines(mergingOn(painter));
        for (qsizetype i = part.begin; i < part.end; ++i) {
            const EnvelopeColumn& column = columns.at(i);
            const auto pointOf = [&](double value) {
                return CurvePoint { QPoint(column.column, pixelRow(mapping, value * curve.norm)), false };
            };
            const CurvePoint first = pointOf(column.first);
            const CurvePoint last = pointOf(column.last);
            const int highest = pointOf(column.highest).pixel.y();
            const int lowest = pointOf(column.lowest).pixel.y();
            if (!lines.appendColumn(first, last, std::min(highest, lowest), std::max(highest, lowest)))
                lines.append(first);
        }
        found += lines.lines;
    }
    return found;
}

/// The colour of a reference curve without a live curve.
QColor foreground(const XYGraphWidget& plot)
{
    const PlotStyling* const styling = stylingOf(&plot);
    return styling != nullptr ? styling->foreground() : QColor(Qt::white);
}

/// Half way to a grey that is visible on the plot's background.
QColor faded(const QColor& colour, const XYGraphWidget& plot)
{
    const PlotStyling* const styling = stylingOf(&plot);
    const bool isLight = styling != nullptr && styling->surround().lightness() > 127;
    const int grey = isLight ? 80 : 160;
    return { (colour.red() + grey) / 2, (colour.green() + grey) / 2, (colour.blue() + grey) / 2 };
}

} // namespace

void ReferenceCurves::paintOverlay(QPainter& painter, const PlotMapping& mapping)
{
    if (m_current < 0)
        return;
    const QList<ShownCurve> live = shownCurves(*plot());
    const bool isStale = !isSameData(live, m_painted);
    m_painted = live;
    m_cache->paint(painter, plot(), mapping, mapping.frameRect(), isStale,
        [&](QPainter& inside) { paintReferences(inside, mapping, live); });
    paintName(painter, mapping); // other tools move it more often than the curves change
    if (m_stripHeight == 0 || stripRect(mapping).isEmpty()) // the labels of a style leave a narrow plot no space
        return;
    m_stripCache->paint(painter, plot(), mapping, stripArea(mapping), isStale,
        [&](QPainter& inside) { paintStrip(inside, mapping, live); });
}

void ReferenceCurves::paintReferences(
    QPainter& painter, const PlotMapping& mapping, const QList<ShownCurve>& live) const
{
    const BinsInView bins = columnsInView(mapping);
    const BinPositions positionOf(mapping, bins);
    const bool isDense = bins.last - bins.first >= mapping.frameRect().width();
    const QList<ColumnRun> runs = isDense ? columnRuns(positionOf, bins) : QList<ColumnRun>();
    for (const Pair& pair : pairs(live)) {
        const ScaledCurve curve { { {}, {}, { pair.reference } }, pair.norm };
        QPen pen(faded(pair.live >= 0 ? live.at(pair.live).colour : foreground(*plot()), *plot()), 1.0);
        if (isDense) { // dashes of a line that goes up and down in each pixel column would show nothing
            painter.setPen(pen);
            paintLines(painter, linesOf(painter, mapping, curve, runs, blocksOf(*plot(), curve.samples)));
            continue;
        }
        pen.setDashPattern(pair.index == m_current ? QList<qreal> { 4, 3 } : QList<qreal> { 1, 3 });
        painter.setPen(pen);
        const QList<QPolygonF> lines = linesThrough(mapping, positionOf, curve, bins);
        for (const QPolygonF& line : lines) {
            if (line.size() == 1)
                painter.drawPoint(line.constFirst());
            else
                painter.drawPolyline(line);
        }
    }
}

/// Beside the legend and the marks of held axes, which would cover the name.
QRect ReferenceCurves::nameBox(const PlotMapping& mapping, const QSize& label) const
{
    const QRect rect = mapping.frameRect();
    const QRect corner = labelFrame(label, rect.bottomRight() - QPoint(4, 4), Qt::AlignRight | Qt::AlignBottom);
    return movedPast(corner, rect, cornerBoxesOf(*plot()), Qt::LeftEdge);
}

void ReferenceCurves::paintName(QPainter& painter, const PlotMapping& mapping) const
{
    const LabelLayout label(m_references.at(m_current).name, painter.font());
    label.paint(painter, nameBox(mapping, label.size()).topLeft());
}

QList<QRect> ReferenceCurves::nameBoxes() const
{
    const PlotMapping mapping = m_current >= 0 && plot() != nullptr ? PlotMapping::of(*plot()) : PlotMapping();
    if (!mapping.isValid())
        return {};
    return { nameBox(mapping, labelSize(QFontMetrics(plot()->font()), m_references.at(m_current).name)) };
}

void ReferenceCurves::makeActions()
{
    auto* const freezeAction = new ToolAction(
        this, "freezeCurves", [] { return ReferenceCurves::tr("Freeze the Curves as a Reference"); }, drawFreeze);
    freezeAction->showKeys({ QKeySequence(Qt::SHIFT | Qt::Key_C) });
    connect(freezeAction, &QAction::triggered, this, [this] { freeze(); });
    auto* const open = new ToolAction(
        this, "openReference", [] { return ReferenceCurves::tr("Open a Reference..."); }, drawOpen);
    connect(open, &QAction::triggered, this, &ReferenceCurves::openFile);
    auto* const compare = new ToolAction(
        this, "compareReference", [] { return ReferenceCurves::tr("Compare with the Reference"); }, drawCompare);
    m_menu = new QMenu(plot());
    m_menu->setToolTipsVisible(true);
    connect(this, &QObject::destroyed, m_menu, &QObject::deleteLater);
    connect(m_menu, &QMenu::aboutToShow, this, &ReferenceCurves::fillMenu);
    compare->setMenu(m_menu);
    m_freeze = freezeAction;
    m_open = open;
    m_menuAction = compare;
}

void ReferenceCurves::fillMenu()
{
    m_menu->clear();
    const auto addChoice = [this](QActionGroup* group, const QString& text, bool isChecked, const auto& choose) {
        QAction* const entry = addMenuChoice(*m_menu, *group, text, isChecked);
        connect(entry, &QAction::triggered, this, choose);
        return entry;
    };
    auto* const views = new QActionGroup(m_menu);
    const auto addView = [&](const QString& text, View view) {
        addChoice(views, text, view == m_view, [this, view] { setView(view); });
    };
    addView(tr("Curves Only"), View::Over);
    addView(tr("Difference"), View::Difference);
    addView(tr("Ratio"), View::Ratio);
    addView(tr("Difference in Standard Deviations"), View::Significance);
    m_menu->addSeparator();
    fillNorms();
    if (m_references.isEmpty())
        return;
    m_menu->addSeparator();
    auto* const references = new QActionGroup(m_menu);
    for (int i = 0; i < m_references.size(); ++i)
        addChoice(references, m_references.at(i).name, i == m_current, [this, i] { setCurrent(i); });
    m_menu->addSeparator();
    m_menu->addAction(tr("Remove the Reference"), this, &ReferenceCurves::removeCurrent);
    m_menu->addAction(tr("Remove All References"), this, &ReferenceCurves::clear);
}

void ReferenceCurves::fillNorms()
{
    auto* const norms = new QActionGroup(m_menu);
    const auto addNorm = [&](const QString& text, Norm norm, const auto& choose) {
        QAction* const entry = addMenuChoice(*m_menu, *norms, text, norm == m_norm);
        connect(entry, &QAction::triggered, this, choose);
        return entry;
    };
    addNorm(tr("As Measured"), Norm::None, [this] { setNorm(Norm::None); });
    addNorm(tr("Scaled to the Total Counts"), Norm::TotalCounts, [this] { setNorm(Norm::TotalCounts); });
    const auto takeView = [this] {
        const AxisRange view = PlotMapping::of(*plot()).x();
        setNormRange(std::min(view.min, view.max), std::max(view.min, view.max));
    };
    QAction* const byView = addNorm(tr("Scaled to the Counts in the Visible Range"), Norm::RangeCounts, takeView);
    QString tip = tr("Takes the range of X that is visible now, and keeps it in later views.");
    if (m_norm == Norm::RangeCounts) {
        const AxisRange named = PlotAccess::namedX(*plot(), m_normRange);
        tip = tr("Scaled to the counts from %1 to %2. Choose it again to take the range that is visible now.")
                  .arg(readOutNumber(named.min), readOutNumber(named.max));
    }
    byView->setToolTip(tip);
    QAction* const byTime = addNorm(tr("Scaled to the Live Time"), Norm::LiveTime, [this] { setNorm(Norm::LiveTime); });
    const bool canScale = m_current < 0 ? m_liveTime > 0.0 : isLiveTimeKnown(m_references.at(m_current));
    byTime->setEnabled(canScale);
    if (!canScale)
        byTime->setToolTip(tr("The live time of the data or of the reference is unknown."));
}

void ReferenceCurves::openFile()
{
    if (plot() == nullptr)
        return;
    auto* const dialog = new QFileDialog(plot(), tr("Open a Reference"), {},
        tr("Spectra (*.csv *.txt *.tsv *.dat *.npy *.spe *.h5 *.hdf5 *.nxs);;All Files (*)"));
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& path) {
        const QString error = addFile(path);
        if (!error.isEmpty())
            showMessage({ MessageKind::Warning, QCoreApplication::applicationName(),
                tr("%1 is not a reference.\n\n%2").arg(path, error), MessageButton::Ok, MessageButton::None, plot() });
    });
    dialog->open();
}

QList<QAction*> ReferenceCurves::actions() const
{
    return { m_freeze, m_open, m_menuAction };
}

QString ReferenceCurves::stateName() const
{
    return QStringLiteral("references");
}

QJsonObject ReferenceCurves::saveState() const
{
    QJsonArray files;
    for (const Reference& reference : m_references) {
        if (!reference.path.isEmpty())
            files.append(reference.path);
    }
    QJsonObject state { { viewKey, QLatin1String(viewNames[static_cast<int>(m_view)]) },
        { normKey, QLatin1String(normNames[static_cast<int>(m_norm)]) }, { filesKey, files } };
    if (m_norm == Norm::RangeCounts)
        state.insert(rangeKey, QJsonArray { m_normRange.min, m_normRange.max });
    return state;
}

void ReferenceCurves::restoreState(const QJsonObject& state)
{
    const QPointer<ReferenceCurves> self(this); // a slot may delete it
    for (int i = 0; i < 4 && !self.isNull(); ++i) {
        if (state.value(viewKey).toString() == QLatin1String(viewNames[i]))
            setView(static_cast<View>(i));
    }
    const QString norm = state.value(normKey).toString();
    const QJsonArray range = state.value(rangeKey).toArray();
    for (int i = 0; i < 3 && !self.isNull(); ++i) {
        if (norm == QLatin1String(normNames[i]))
            setNorm(static_cast<Norm>(i));
    }
    if (!self.isNull() && norm == QLatin1String(normNames[3]))
        setNormRange(range.at(0).toDouble(), range.at(1).toDouble());
    const QJsonArray files = state.value(filesKey).toArray();
    for (const auto& file : files) {
        if (self.isNull())
            return;
        const QString path = file.toString();
        const bool isOpen = std::any_of(m_references.begin(), m_references.end(),
            [&](const Reference& reference) { return reference.path == path; });
        if (!path.isEmpty() && !isOpen)
            addFile(path); // a missing one is skipped
    }
}

} // namespace tarnis
