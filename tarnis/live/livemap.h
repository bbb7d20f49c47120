/// @file
/// A live map.
#pragma once

#include <tarnis/live/livewidget.h>

class XY2DGraphWidget;

namespace tarnis {

/// A live map of a histogram. See LiveWidget.
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

private:
    XY2DGraphWidget* m_plot;
    HistogramAxis m_x;
    HistogramAxis m_y;
    bool m_isLogScale = false;
};

} // namespace tarnis
