// Drawing, actions and stored views of the reference curves.
#include "tarnis/foundation/message.h"
#include "tarnis/plots/plotmapping.h"
#include "tarnis/plots/xygraphwidget.h"
#include "tarnis/tools/base/overlaycache_p.h"
#include "tarnis/tools/base/plotlabel_p.h"
#include "tarnis/tools/base/plotreadout_p.h"
#include "tarnis/tools/base/toolaction_p.h"
#include "tarnis/tools/curves/envelope_p.h"
#include "tarnis/tools/curves/referencecurves_p.h"

#include <QActionGroup>
#include <QCoreApplication>
#include <QFileDialog>
#include <QJsonArray>
#include <QMenu>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

constexpr int gapAbove = 8; // between axis and strip
constexpr int gapBelow = 6;
constexpr double pointRadius = 1.5;
constexpr double narrowBin = 3.0; // pixels

const QLatin1String viewKey("view");
const QLatin1String normKey("norm");
const QLatin1String filesKey("files");
constexpr const char* viewNames[] = { "over", "difference", "ratio", "significance" }; // in the order of View
constexpr const char* normNames[] = { "none", "totalCounts", "liveTime" }; // in the order of Norm

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

/// The line through the visible samples. Of samples in one pixel column the first, the smallest, the largest and the
/// last are joined, which covers the same pixels as all of them.
QPolygonF lineOf(const PlotMapping& mapping, const QList<double>& values, double norm)
{
    BinsInView bins = columnsInView(mapping);
    bins.last = std::min(bins.last, values.size() - 1);
    const QList<EnvelopeColumn> columns = envelopeOf(
        bins.first, bins.last, [&](qsizetype i) { return values.at(i) * norm; }, BinPositions(mapping, bins));
    QPolygonF line;
    const auto append = [&](const EnvelopeColumn& column, double value) {
        const QPointF at(column.position, limitedCoordinate(mapping.rowOf(value)));
        if (line.isEmpty() || line.constLast() != at)
            line.append(at);
    };
    for (const EnvelopeColumn& column : columns) {
        append(column, column.first);
        append(column, column.isRising ? column.lowest : column.highest);
        append(column, column.isRising ? column.highest : column.lowest);
        append(column, column.last);
    }
    return line;
}

/// The axis of the comparison, beside the strip.
struct StripAxis {
    QRect strip;
    AxisRange range;

    double rowOf(double value) const
    {
        return limitedCoordinate(strip.bottom() - (value - range.min) / (range.max - range.min) * strip.height());
    }
};

void paintMarks(QPainter& painter, const StripAxis& axis, double same)
{
    const int height = painter.fontMetrics().height();
    const QRect& strip = axis.strip;
    for (const double mark : { axis.range.min, same, axis.range.max }) {
        if (mark == axis.range.min && axis.rowOf(mark) - axis.rowOf(same) < height)
            continue; // the mark for equality has priority
        const int row =
            std::clamp(static_cast<int>(axis.rowOf(mark)), strip.top() + height / 2, strip.bottom() - height / 2);
        painter.drawText(QRect(0, row - height / 2, strip.left() - 4, height), Qt::AlignRight | Qt::AlignVCenter,
            QString::number(mark, 'g', 4));
    }
}

QColor mixedWithGrey(const QColor& color)
{
    constexpr int grey = 160;
    return { (color.red() + grey) / 2, (color.green() + grey) / 2, (color.blue() + grey) / 2 };
}

} // namespace

QRect ReferenceCurves::stripRect(const PlotMapping& mapping) const
{
    const int height = mapping.rotation() != 0.0 ? plot()->width() : plot()->height();
    const QRect rect = mapping.frameRect();
    return QRect(QPoint(rect.left(), height - m_stripHeight + gapAbove), QPoint(rect.right(), height - gapBelow));
}

void ReferenceCurves::paintOverlay(QPainter& painter, const PlotMapping& mapping)
{
    if (m_current < 0)
        return;
    const QList<ShownCurve> live = shownCurves(*plot());
    const bool isStale = !isSameData(live, m_painted);
    m_painted = live;
    m_cache->paint(painter, plot(), mapping, mapping.frameRect(), isStale, [&](QPainter& inside) {
        for (int i = 0; i < m_references.size(); ++i)
            paintReference(inside, mapping, i, live);
    });
    if (m_stripHeight == 0)
        return;
    const QRect strip = stripRect(mapping);
    const QRect area(QPoint(0, strip.top() - gapAbove), strip.bottomRight() + QPoint(gapBelow, gapBelow));
    m_stripCache->paint(
        painter, plot(), mapping, area, isStale, [&](QPainter& inside) { paintStrip(inside, mapping, strip, live); });
}

void ReferenceCurves::paintReference(
    QPainter& painter, const PlotMapping& mapping, int index, const QList<ShownCurve>& live) const
{
    const Reference& reference = m_references.at(index);
    for (int i = 0; i < reference.curves.size(); ++i) {
        const ShownCurve* const own = i < live.size() ? &live.at(i) : nullptr;
        const double norm = own != nullptr ? normOf(reference, *own, reference.curves.at(i)) : 1.0;
        QPen pen(mixedWithGrey(own != nullptr ? own->color : QColor(Qt::white)), 1.0);
        const QPolygonF line = lineOf(mapping, reference.curves.at(i), norm);
        // Dashes are invisible and slow if the line goes up and down in each pixel column.
        if (line.size() <= mapping.frameRect().width())
            pen.setDashPattern(index == m_current ? QList<qreal> { 4, 3 } : QList<qreal> { 1, 3 });
        painter.setPen(pen);
        painter.drawPolyline(line);
    }
    if (index == m_current)
        paintLabel(painter, reference.name, mapping.frameRect().bottomRight() - QPoint(4, 4),
            Qt::AlignRight | Qt::AlignBottom);
}

std::vector<ReferenceCurves::Point> ReferenceCurves::comparedPoints(
    const PlotMapping& mapping, const QList<ShownCurve>& live, const QList<Pair>& compared) const
{
    std::vector<Point> points;
    const BinsInView bins = columnsInView(mapping);
    for (const Pair& pair : compared) {
        const ShownCurve& curve = live.at(pair.live);
        for (qsizetype i = bins.first; i <= std::min(bins.last, pair.reference.size() - 1); ++i) {
            const ComparedBin bin =
                comparedBin(comparisonOf(m_view), curve.valueAt(i), pair.reference.at(i), pair.norm, pair.isContained);
            if (std::isfinite(bin.value))
                points.push_back(
                    { limitedCoordinate(mapping.columnOf(middleOf(mapping.columnEdges(i)))), bin, curve.color });
        }
    }
    return points;
}

void ReferenceCurves::paintStrip(
    QPainter& painter, const PlotMapping& mapping, const QRect& strip, const QList<ShownCurve>& live) const
{
    painter.fillRect(strip, XYGraphWidget::m_backGroundColor);
    painter.setPen(Qt::black);
    painter.drawRect(strip);
    const QString problem = this->problem();
    if (!problem.isEmpty()) {
        paintLabel(painter, problem, strip.center(), Qt::AlignHCenter | Qt::AlignVCenter);
        return;
    }
    const QList<Pair> compared = pairs(live);
    const std::vector<Point> points = comparedPoints(mapping, live, compared);
    std::vector<double> values;
    for (const Point& point : points)
        values.push_back(point.bin.value);
    const StripAxis axis { strip, comparisonAxis(comparisonOf(m_view), values) };
    const double same = m_view == View::Ratio ? 1.0 : 0.0;
    paintMarks(painter, axis, same);
    painter.save();
    painter.setClipRect(strip.adjusted(1, 1, 0, 0), Qt::IntersectClip);
    painter.setPen(QPen(QColor(128, 128, 128), 1.0, Qt::DashLine));
    painter.drawLine(QLineF(strip.left(), axis.rowOf(same), strip.right(), axis.rowOf(same)));
    const AxisRange bin = mapping.columnEdges(columnsInView(mapping).first);
    const bool hasErrors =
        m_view != View::Significance && std::abs(mapping.columnOf(bin.max) - mapping.columnOf(bin.min)) >= narrowBin;
    for (const Point& point : points) {
        const auto [value, error] = point.bin;
        painter.setPen(point.color);
        if (hasErrors && std::isfinite(error))
            painter.drawLine(QLineF(point.column, axis.rowOf(value - error), point.column, axis.rowOf(value + error)));
        painter.fillRect(
            QRectF(point.column - pointRadius, axis.rowOf(value) - pointRadius, 2 * pointRadius, 2 * pointRadius),
            point.color);
    }
    painter.restore();
    const bool isContained =
        std::any_of(compared.begin(), compared.end(), [](const Pair& pair) { return pair.isContained; });
    paintTitle(painter, strip, isContained);
}

void ReferenceCurves::paintTitle(QPainter& painter, const QRect& strip, bool isContained) const
{
    const QString name = m_references.at(m_current).name;
    QString title = m_view == View::Ratio ? tr("data / %1").arg(name)
        : m_view == View::Significance    ? tr("(data − %1) / σ").arg(name)
                                          : tr("data − %1").arg(name);
    if (isContained)
        title += tr(", errors of the counts since");
    paintLabel(painter, title, { strip.right() - 3, strip.top() + 3 }, Qt::AlignRight);
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
        connect(addMenuChoice(*m_menu, *group, text, isChecked), &QAction::triggered, this, choose);
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
    auto* const norms = new QActionGroup(m_menu);
    const auto addNorm = [&](const QString& text, Norm norm) {
        addChoice(norms, text, norm == m_norm, [this, norm] { setNorm(norm); });
    };
    addNorm(tr("As Measured"), Norm::None);
    addNorm(tr("Scaled to the Total Counts"), Norm::TotalCounts);
    addNorm(tr("Scaled to the Live Time"), Norm::LiveTime);
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
    return { { viewKey, QLatin1String(viewNames[static_cast<int>(m_view)]) },
        { normKey, QLatin1String(normNames[static_cast<int>(m_norm)]) }, { filesKey, files } };
}

void ReferenceCurves::restoreState(const QJsonObject& state)
{
    for (int i = 0; i < 4; ++i) {
        if (state.value(viewKey).toString() == QLatin1String(viewNames[i]))
            setView(static_cast<View>(i));
    }
    for (int i = 0; i < 3; ++i) {
        if (state.value(normKey).toString() == QLatin1String(normNames[i]))
            setNorm(static_cast<Norm>(i));
    }
    const QJsonArray files = state.value(filesKey).toArray();
    for (const auto& file : files) {
        const QString path = file.toString();
        const bool isOpen = std::any_of(m_references.begin(), m_references.end(),
            [&](const Reference& reference) { return reference.path == path; });
        if (!path.isEmpty() && !isOpen)
            addFile(path); // a missing file is skipped
    }
}

} // namespace tarnis
