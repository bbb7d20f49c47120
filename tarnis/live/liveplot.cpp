#include "tarnis/live/liveplot.h"

#include "tarnis/client/histogramwire_p.h"
#include "tarnis/plots/curvenames.h"
#include "tarnis/plots/multivectorgraphwidget.h"
#include "tarnis/plots/plotmapping.h"
#include "tarnis/plots/plotobserver.h"
#include "tarnis/tools/plotlegend.h"

namespace tarnis {

LivePlot::LivePlot(QWidget* parent)
    : LiveWidget(new MultiVectorGraphWidget, parent)
    , m_plot(static_cast<MultiVectorGraphWidget*>(frame()))
{
    m_plot->init(tr("Channel"), tr("Counts"), 0.0, 0.0, true, true);
    m_plot->m_groupSize = 1; // each row is a separate group, with its own maximum
    m_plot->setAddType(MultiVectorGraphWidget::AddEachGroup);
    m_plot->resizeData(0);
}

MultiVectorGraphWidget* LivePlot::plot() const
{
    return m_plot;
}

void LivePlot::setSeriesWord(const QString& word)
{
    m_plot->m_groupName = word;
    PlotObserver::announceData(*m_plot);
}

QString LivePlot::seriesWord() const
{
    return m_plot->m_groupName;
}

void LivePlot::setSeriesNames(const QStringList& names)
{
    m_seriesNames = names;
    tarnis::setSeriesNames(*m_plot, names);
}

QStringList LivePlot::seriesNames() const
{
    return m_seriesNames;
}

void LivePlot::setLogScale(bool on)
{
    m_plot->setLogScaleY(on);
}

bool LivePlot::isLogScale() const
{
    return PlotMapping::of(*m_plot).isLogY();
}

void LivePlot::setLegendShown(bool shown)
{
    if (!shown)
        delete m_legend;
    else if (!m_legend)
        m_legend = new PlotLegend(m_plot);
}

bool LivePlot::isLegendShown() const
{
    return m_legend;
}

void LivePlot::showData(const HistogramReply& histogram)
{
    // Setting the same axis again would reset the user's zoom.
    if (!(histogram.x == m_axis)) {
        m_axis = histogram.x;
        m_plot->initManualX(m_axis.min, m_axis.max);
    }
    const int rows = static_cast<int>(histogram.rows.size());
    for (int row = 0; row < rows; ++row)
        m_plot->setData(row, histogram.rows.at(row), histogram.rowMaxima.at(row));
    m_plot->resizeData(rows);
    m_plot->setManualIndex(histogram.positions);
}

void LivePlot::clearData()
{
    m_plot->resizeData(0);
}

QString LivePlot::unsuitability(const HistogramReply& histogram) const
{
    // Where the host knows the number of rows, the values of a map fit rows, too.
    const bool isMap = histogram.kind == HistogramFormat::Kind::Map || exportedCounts(histogram.text);
    return isMap ? tr("The reply is a map, and this widget shows curves. Choose the command of a 1D histogram.")
                 : QString();
}

void LivePlot::followWindow()
{
    m_plot->onParentMoved();
}

void LivePlot::raiseWindows()
{
    m_plot->onParentActivate();
}

} // namespace tarnis
