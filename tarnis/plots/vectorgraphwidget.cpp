#include "tarnis/plots/vectorgraphwidget.h"

#include "tarnis/foundation/retranslator.h"
#include "tarnis/foundation/saving_p.h"
#include "tarnis/peak/peaksearchdialog.h"
#include "tarnis/plots/curvepaint_p.h"
#include "tarnis/plots/exactdrawing_p.h"
#include "tarnis/plots/math/csvtext_p.h"
#include "tarnis/plots/math/peakcurve_p.h"
#include "tarnis/plots/plotstyling_p.h"
#include "tarnis/plots/raster/devicepixels_p.h"

#include <QAction>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

/// Keeps the largest sample at 90 % of the axis.
constexpr double headroom = 1.1111111111111112;

void paintSamples(QPainter& painter, const tarnis::SampleView& view, const tarnis::ValueScale& rows,
    const QList<double>& values, int left)
{
    painter.setPen(Qt::white);
    const tarnis::SampleScale columns { view.first, view.pixelsPerSample, left };
    const tarnis::SampleRun samples { values.constData(), 0 };
    const tarnis::SampleRange range = tarnis::wholeSamples(view.first, view.last, values.size());
    if (const tarnis::ExactDevice* const device = tarnis::exactDeviceBehind(painter))
        tarnis::paintCurveExactly(
            painter, samples, range, { false, true, view.first, view.last, columns, {}, rows, {} }, *device);
    else
        tarnis::paintLines(painter, tarnis::joinSamples(samples, range, columns, rows, tarnis::mergingOn(painter)));
}

} // namespace

VectorGraphWidget::VectorGraphWidget(QWidget* parent)
    : XYGraphWidget(parent)
{
    auto* saveCsv = new QAction(this);
    tarnis::setTranslatedText(*saveCsv, *this, [] { return tr("Save CSV..."); });
    connect(saveCsv, &QAction::triggered, this, &VectorGraphWidget::onSaveCsv);
    addAction(saveCsv);
}

VectorGraphWidget::~VectorGraphWidget() = default;

void VectorGraphWidget::setData(const QList<double>& samples)
{
    m_data = samples;
    dataTouched();
    if (m_autoScaleX) {
        m_minX = m_initMinX;
        adjustAxisX(static_cast<double>(m_data.size()));
    }
}

void VectorGraphWidget::setIndex(const QList<double>& index)
{
    m_index = index;
}

void VectorGraphWidget::setMaxValue(double value)
{
    m_maxValue = value;
    dataTouched();
    if (m_autoScaleY) {
        m_minY = m_initMinY;
        adjustAxisY(value * headroom);
    }
}

void VectorGraphWidget::setLogScaleY(bool on)
{
    m_logScaleY = on;
    viewTouched();
    if (m_autoScaleY)
        adjustAxisY(m_maxValue * headroom);
    refreshPixmap();
}

void VectorGraphWidget::onAutoScaleX(bool checked)
{
    XYGraphWidget::onAutoScaleX(checked);
    if (checked) {
        m_minX = m_initMinX;
        if (m_data.isEmpty())
            m_maxX = m_initMaxX;
        else
            adjustAxisX(m_initAutoScaleX ? static_cast<double>(m_data.size()) : m_initMaxX);
    }
    refreshPixmap();
}

void VectorGraphWidget::onAutoScaleY(bool checked)
{
    XYGraphWidget::onAutoScaleY(checked);
    if (!checked)
        return;
    m_minY = m_initMinY;
    adjustAxisY(m_maxValue * headroom);
    refreshPixmap();
}

void VectorGraphWidget::showPeak(const PeakSearch::Gaussian& g)
{
    m_peaks = { g };
    refreshPixmap();
}

void VectorGraphWidget::paintPeak(QPainter& painter, const PeakSearch::Gaussian& g, double scaleY, int x0, int y0)
{
    const double pixelsPerX = m_graphRect.width() / (m_maxX - m_minX);
    const tarnis::AxisRange visible { std::min(m_minX, m_maxX), std::max(m_minX, m_maxX) };
    tarnis::drawEvenLines(painter,
        tarnis::peakLines(g, tarnis::peakExtent(g, visible), std::abs(1 / pixelsPerX),
            { m_minX, pixelsPerX, x0, m_minY, scaleY, y0 }));
}

void VectorGraphWidget::onPaint(QPainter& painter, QRect const& graph)
{
    const tarnis::SampleView view =
        tarnis::sampleView({ m_minX, m_maxX }, { m_initMinX, m_initMaxX }, m_manualX, m_data.size(), graph.width());
    const double pixelsPerY = tarnis::valuePixels({ m_minY, m_maxY }, m_logScaleY, graph.height());
    const tarnis::ValueScale rows(
        m_logScaleY ? tarnis::ValueScale::Kind::LogWithFloor : tarnis::ValueScale::Kind::Linear, m_minY, pixelsPerY,
        graph.bottom());

    tarnis::PlotStyling* const styling = tarnis::stylingOf(this);
    if (styling != nullptr)
        styling->paintCurves(painter, graph);
    else
        paintSamples(painter, view, rows, m_data, graph.left());
    if (!m_peaks.isEmpty()) {
        painter.setPen(styling != nullptr ? styling->accent() : QColor(Qt::red));
        paintPeak(painter, m_peaks.constFirst(), pixelsPerY,
            tarnis::truncateToPixel(graph.left() + view.pixelsPerSample * 0.5), graph.bottom());
    }
}

void VectorGraphWidget::onPeakSearch()
{
    if (QWidget* open = m_modeless.map.value(this)) {
        open->show();
        open->activateWindow();
        return;
    }
    auto* dialog = new PeakSearchDialog(this);
    connect(dialog, &PeakSearchDialog::search, this, &VectorGraphWidget::peakSearch);
    m_modeless.map.insert(this, dialog);
    connect(dialog, &QObject::destroyed, &m_modeless, &ModelessWidgetManager::onDestroyed);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->show();
}

void VectorGraphWidget::peakSearch(int threshold, int width, bool peak)
{
    const tarnis::SampleRange range = tarnis::wholeSamples(m_minX, m_maxX, m_data.size());
    PeakSearch(m_data, range.begin, range.end, 0.01 * m_maxValue * threshold, width, peak).exec();
}

void VectorGraphWidget::onSaveCsv()
{
    tarnis::saveTable(
        this, tr("Save CSV"), tr("CSV Files (*.csv *.txt)"), [this] { return tarnis::csvOfSeries(m_index, m_data); });
}
