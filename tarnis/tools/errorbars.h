// Error bars of counts on curves.
#pragma once

#include <tarnis/plots/plotoverlay.h>
#include <tarnis/tools/interactivetool.h>

#include <QPair>

#include <memory>

namespace tarnis {

class OverlayCache;
struct BinsInView;
struct ColumnRun;
struct ShownCurve;

/// Error bars on every visible curve whose values are counts (non-negative integers). The bar of a sum is that of the
/// summed counts. Other values have no bar, because their errors are unknown. If bins are narrower than three pixels, a
/// band from the lowest to the highest end in each pixel column replaces the bars. On a logarithmic axis a bar that
/// reaches 0 ends at the lower edge of the plot. While the plot has the focus, E switches the bars on and off. They
/// appear in saved pictures.
class TARNIS_EXPORT ErrorBars : public InteractiveTool, protected PlotOverlay {
    Q_OBJECT

public:
    /// The length of a bar.
    enum class Method {
        Poisson, ///< the exact central interval of 68.27 %, also for 0 counts (F. Garwood, 1936)
        SquareRoot ///< the square root of the counts to either side; no bar for 0 counts
    };
    Q_ENUM(Method)

    /// Attaches to the plot, which owns the tool. Initially the bars are off and the method is Poisson.
    explicit ErrorBars(XYGraphWidget* plot);
    ~ErrorBars() override;

    bool isOn() const; ///< whether the bars are shown
    Method method() const; ///< the length of a bar
    /// Both ends of the bar of a count, in counts; NaN for what is not a count.
    static QPair<double, double> interval(Method method, double count);

    QList<QAction*> actions() const override;
    QString stateName() const override;
    QJsonObject saveState() const override;
    void restoreState(const QJsonObject& state) override;

public Q_SLOTS:
    void setOn(bool on); ///< see isOn()
    void setMethod(tarnis::ErrorBars::Method method); ///< see method()

Q_SIGNALS:
    void onChanged(bool on); ///< see isOn()

protected:
    bool handleKey(const QKeyEvent& event) override;
    void plotChanged(Changes changes) override;
    void paintOverlay(QPainter& painter, const PlotMapping& mapping) override;

private:
    TARNIS_NO_EXPORT void makeActions();
    TARNIS_NO_EXPORT void paintCurves(
        QPainter& painter, const PlotMapping& mapping, const QList<ShownCurve>& curves) const;
    TARNIS_NO_EXPORT void paintBand(
        QPainter& painter, const PlotMapping& mapping, const ShownCurve& curve, const QList<ColumnRun>& runs) const;
    TARNIS_NO_EXPORT void paintBars(QPainter& painter, const PlotMapping& mapping, const ShownCurve& curve,
        const BinsInView& bins, double width) const;

    bool m_isOn = false;
    Method m_method = Method::Poisson;
    std::unique_ptr<OverlayCache> m_cache;
    QList<ShownCurve> m_painted; // curves in the cached picture
    QAction* m_switch = nullptr;
    QAction* m_poisson = nullptr;
};

} // namespace tarnis
