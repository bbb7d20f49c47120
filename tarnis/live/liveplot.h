/// @file
/// A live plot of curves.
#pragma once

#include <tarnis/live/livewidget.h>

#include <QPointer>
#include <QStringList>

class MultiVectorGraphWidget;

namespace tarnis {

class PlotLegend;

/// A live plot of a histogram in rows or pairs, with one curve for each row. The reply of a map leads to State::Failed.
/// See LiveWidget.
class TARNIS_EXPORT LivePlot : public LiveWidget {
    Q_OBJECT
    /// See setSeriesWord().
    Q_PROPERTY(QString seriesWord READ seriesWord WRITE setSeriesWord)
    /// See setSeriesNames() of tarnis/plots/curvenames.h.
    Q_PROPERTY(QStringList seriesNames READ seriesNames WRITE setSeriesNames)
    /// Whether Y is logarithmic.
    Q_PROPERTY(bool logScale READ isLogScale WRITE setLogScale)
    /// See isLegendShown().
    Q_PROPERTY(bool legendShown READ isLegendShown WRITE setLegendShown)
public:
    /// Initially without client and command. The axes are "Channel" and "Counts".
    explicit LivePlot(QWidget* parent = nullptr);

    /// The plot, for access to colours, tools and ranges.
    MultiVectorGraphWidget* plot() const;

    /// The word in series names that precedes the row number, for example "Module". @{
    void setSeriesWord(const QString& word);
    QString seriesWord() const;
    /// @}
    /// Names of the rows, starting with the first. @{
    void setSeriesNames(const QStringList& names);
    QStringList seriesNames() const;
    /// @}
    /// Whether Y is logarithmic. @{
    void setLogScale(bool on);
    bool isLogScale() const;
    /// @}
    /// Whether the plot has a PlotLegend; false by default. @{
    void setLegendShown(bool shown);
    bool isLegendShown() const;
    /// @}

protected:
    void showData(const HistogramReply& histogram) override;
    void clearData() override;
    void followWindow() override;
    void raiseWindows() override;
    QString unsuitability(const HistogramReply& histogram) const override;

private:
    MultiVectorGraphWidget* m_plot;
    QPointer<PlotLegend> m_legend;
    HistogramAxis m_axis;
    QStringList m_seriesNames;
};

} // namespace tarnis
