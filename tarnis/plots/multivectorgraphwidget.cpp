// State, series and actions. The rest of the class: _paint (curves, peaks, read-out), _tools (files, visible items,
// peak search).
#include "tarnis/plots/multivectorgraphwidget.h"

#include "tarnis/foundation/retranslator.h"
#include "tarnis/plots/math/floatcomparison_p.h"
#include "tarnis/plots/math/seriesgrouping_p.h"

#include <QAction>

#include <algorithm>

namespace {

/// Keeps the largest value at 90 % of the axis.
constexpr double headroom = 1.1111111111111112;
constexpr int initialSeries = 8;

} // namespace

MultiVectorGraphWidget::MultiVectorGraphWidget(QWidget* parent)
    : XYGraphWidget(parent)
    , m_data(initialSeries)
{
    for (int i = 0; i < initialSeries; ++i)
        m_data[i].color = tarnis::rotationColour(i);
    // The range must be set before the frame lays out its ticks.
    connect(this, &DoubleBufferedWidget::painting, this, &MultiVectorGraphWidget::onPainting, Qt::DirectConnection);

    const auto add = [this](const char* text) {
        auto* action = new QAction(this);
        tarnis::setTranslatedText(*action, *this, [text] { return tr(text); });
        addAction(action);
        return action;
    };
    const auto addCheckable = [&add](const char* text, bool checked) {
        QAction* action = add(text);
        action->setCheckable(true);
        action->setChecked(checked);
        return action;
    };
    connect(add(QT_TR_NOOP("Save CSV...")), &QAction::triggered, this, &MultiVectorGraphWidget::onSaveCsv);
    connect(addCheckable(QT_TR_NOOP("Column Chart"), false), &QAction::toggled, this,
        &MultiVectorGraphWidget::onColumnChart);
    connect(addCheckable(QT_TR_NOOP("Connect Points"), true), &QAction::toggled, this,
        &MultiVectorGraphWidget::onConnectPoints);
    m_actPeakSearch = add(QT_TR_NOOP("Peak Search"));
    connect(m_actPeakSearch, &QAction::triggered, this, &MultiVectorGraphWidget::onPeakSearch);
    connect(
        addCheckable(QT_TR_NOOP("Log Scale"), false), &QAction::triggered, this, &MultiVectorGraphWidget::onLogScale);

    m_showGrid = true;
    m_actShowGrid->setChecked(true);
    setMouseTracking(true);
}

// The peak search dialog signals its destruction, which must happen before this object is destroyed.
MultiVectorGraphWidget::~MultiVectorGraphWidget()
{
    for (const auto& open : { m_visibleDialogs.map, m_peakDialogs.map }) // copies, because each dialog removes itself
        qDeleteAll(open);
}

void MultiVectorGraphWidget::setData(int index, const QList<double>& values, double maxValue)
{
    if (index < 0)
        return;
    if (index >= m_data.size())
        m_data.resize(qsizetype(index) + 1);
    m_data[index].values = values;
    dataTouched();
    const int group = index / groupSize();
    if (group >= m_maxValues.size())
        m_maxValues.resize(group + 1);
    m_maxValues[group] = maxValue;
    fitAutoScaledAxes();
}

void MultiVectorGraphWidget::resizeData(int count)
{
    m_data.resize(std::max(count, 0));
    dataTouched();
}

void MultiVectorGraphWidget::setEnable(int index, bool enable)
{
    if (index < 0)
        return;
    if (index >= m_data.size())
        m_data.resize(qsizetype(index) + 1);
    m_data[index].enable = enable;
    dataTouched();
}

void MultiVectorGraphWidget::setColor(int index, QColor colour)
{
    if (index < 0)
        return;
    if (index >= m_data.size())
        m_data.resize(qsizetype(index) + 1);
    m_data[index].color = colour;
    dataTouched();
}

void MultiVectorGraphWidget::clearData()
{
    m_data.resize(groupSize());
    for (Data& series : m_data)
        series.values.clear();
    m_maxValues.clear();
    m_peaks.clear();
    dataTouched();
}

bool MultiVectorGraphWidget::hasData() const
{
    return tarnis::filledSeries(m_data) > 0;
}

int MultiVectorGraphWidget::getValidDataCount()
{
    return tarnis::filledSeries(m_data);
}

int MultiVectorGraphWidget::getMaxCount()
{
    const double count = static_cast<double>(tarnis::longestSeries(m_data)) * m_resolution;
    return tarnis::roundToInt(count);
}

double MultiVectorGraphWidget::getMaxValue()
{
    return tarnis::maxOfCurves(m_data, m_maxValues, m_addType, groupSize());
}

bool MultiVectorGraphWidget::getData(int index, QList<double>& values)
{
    if (index < 0 || index >= m_data.size())
        return false;
    values = m_data.at(index).values;
    return true;
}

void MultiVectorGraphWidget::setManualIndex(const QList<double>& index)
{
    m_manualIndex = index;
}

void MultiVectorGraphWidget::setResolution(unsigned int resolution)
{
    if (resolution == m_resolution)
        return;
    m_resolution = std::max(resolution, 1U);
    dataTouched();
    refreshPixmap();
}

void MultiVectorGraphWidget::setAddType(AddType type)
{
    m_addType = type;
    dataTouched();
    initMode(m_autoScaleX, m_autoScaleY);
    fitAutoScaledAxes();
    if (QWidget* dialog = m_visibleDialogs.map.value(this))
        dialog->close();
    refreshPixmap();
}

void MultiVectorGraphWidget::setFuncX2Plot(double (*x2plot)(double, void*), double (*plot2x)(double, void*))
{
    m_funcX2Plot = x2plot;
    m_funcPlot2X = plot2x;
    dataTouched();
    removeAction(m_actPeakSearch);
}

int MultiVectorGraphWidget::groupSize() const
{
    return std::max(m_groupSize, 1);
}

void MultiVectorGraphWidget::fitAutoScaledAxes()
{
    if (m_autoScaleX) {
        m_minX = m_initMinX;
        adjustAxisX(getMaxCount());
    }
    if (m_autoScaleY) {
        m_minY = m_initMinY;
        adjustAxisY(headroom * getMaxValue());
    }
}

void MultiVectorGraphWidget::onAutoScaleX(bool checked)
{
    XYGraphWidget::onAutoScaleX(checked);
    if (!checked)
        return;
    m_minX = m_initMinX;
    adjustAxisX(m_initAutoScaleX ? getMaxCount() : m_initMaxX);
    refreshPixmap();
}

void MultiVectorGraphWidget::onAutoScaleY(bool checked)
{
    XYGraphWidget::onAutoScaleY(checked);
    if (!checked)
        return;
    m_minY = m_initMinY;
    adjustAxisY(headroom * getMaxValue());
    refreshPixmap();
}

void MultiVectorGraphWidget::onSelectXRange(bool on)
{
    if (on && !hasData())
        m_actSelectXRange->setChecked(false);
    else
        XYGraphWidget::onSelectXRange(on);
}

void MultiVectorGraphWidget::onConnectPoints(bool bConnectPoints)
{
    m_connectPoints = bConnectPoints;
    refreshPixmap();
}

void MultiVectorGraphWidget::onColumnChart(bool bColumnChart)
{
    m_columnChart = bColumnChart;
    refreshPixmap();
}

void MultiVectorGraphWidget::onLogScale(bool on)
{
    setLogScaleY(on);
}
