// Errors of counts on curves.
#pragma once

#include <tarnis/plots/plotoverlay.h>
#include <tarnis/tools/interactivetool.h>

#include <QPair>

#include <memory>

namespace tarnis {

class OverlayCache;
struct ShownCurve;

/// Error bars on every visible curve whose values are counts: whole numbers that are not negative. The bar of a sum is
/// that of the summed counts. Values that are no counts have no bar, since nothing is known about their errors. Where a
/// bin is narrower than three pixels, a band from the lowest to the highest end in each pixel column takes the place of
/// the bars. On a logarithmic axis a bar that reaches 0 ends at the lower edge of the plot. With the keyboard on the
/// plot, E switches the bars. They appear in saved pictures.
class TARNIS_EXPORT ErrorBars : public InteractiveTool, protected PlotOverlay {
    Q_OBJECT

public:
    /// How long a bar is.
    enum class Method {
        Poisson, ///< the exact central interval of 68.27 %, also for 0 counts (F. Garwood, 1936)
        SquareRoot ///< the square root of the counts to either side; nothing for 0 counts
    };
    Q_ENUM(Method)

    /// Attaches to the plot, which owns the bars. They are switched off; the method is Poisson.
    explicit ErrorBars(XYGraphWidget* plot);
    ~ErrorBars() override;

    bool isOn() const; ///< the bars are shown
    Method method() const; ///< how long a bar is
    /// Both ends of the bar of a count, in counts; NaN for what is no count.
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
    bool handleEvent(QEvent* event) override;
    void plotChanged(Changes changes) override;
    void paintOverlay(QPainter& painter, const PlotMapping& mapping) override;

private:
    TARNIS_NO_EXPORT void makeActions();
    TARNIS_NO_EXPORT void paintCurve(QPainter& painter, const PlotMapping& mapping, const ShownCurve& curve) const;

    bool m_isOn = false;
    Method m_method = Method::Poisson;
    std::unique_ptr<OverlayCache> m_cache;
    QList<ShownCurve> m_painted; // what the cached picture shows
    QAction* m_switch = nullptr;
    QAction* m_poisson = nullptr;
};

} // namespace tarnis
