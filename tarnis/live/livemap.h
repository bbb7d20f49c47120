/// @file
/// A live map.
#pragma once

#include <tarnis/live/livewidget.h>

class XY2DGraphWidget;

namespace tarnis {

/// A live map of a histogram. The reply must be of HistogramFormat::Kind::Map, the default for commands "hist2d ...";
/// for other commands see setFormat(). The reply of a 1D histogram leads to State::Failed. See LiveWidget.
class TARNIS_EXPORT LiveMap : public LiveWidget {
    Q_OBJECT
    /// Whether the colours are logarithmic.
    Q_PROPERTY(bool logScale READ isLogScale WRITE setLogScale)
public:
    /// Initially without client and command. The axes are "X" and "Y".
    explicit LiveMap(QWidget* parent = nullptr);

    /// The plot, for access to colours, cuts and regions.
    XY2DGraphWidget* plot() const;

    /// Whether the colours are logarithmic. @{
    void setLogScale(bool on);
    bool isLogScale() const;
    /// @}

protected:
    void showData(const HistogramReply& histogram) override;
    void clearData() override;
    void followWindow() override;
    void raiseWindows() override;
    QString unsuitability(const HistogramReply& histogram) const override;

private:
    XY2DGraphWidget* m_plot;
    HistogramAxis m_x;
    HistogramAxis m_y;
    bool m_isLogScale = false;
};

} // namespace tarnis
