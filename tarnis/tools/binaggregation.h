// Peaks that stay visible when a plot is zoomed out.
#pragma once

#include <tarnis/plots/plotoverlay.h>
#include <tarnis/tools/interactivetool.h>

#include <memory>

QT_BEGIN_NAMESPACE
class QMenu;
QT_END_NAMESPACE

namespace tarnis {

class OverlayCache;
struct ShownCurve;

/// What a plot shows where several bins share a pixel. Without the tool, a map paints the first bin that is not 0, so
/// that a single high bin can vanish; with it, the largest of them, their sum or their mean. Each bin counts for the
/// pixel in which it begins. The read-out, the cuts and saved data remain those of the bins; printed maps and vector
/// files have every bin anyway. On curves, which draw every sample, it adds the envelope: a band from the lowest to the
/// highest sample of each pixel column, with a line along the largest samples or along their mean; a sum of samples has
/// no place on the axis of one sample, so that Sum adds nothing. A mark on the plot says what is shown.
class TARNIS_EXPORT BinAggregation : public InteractiveTool, protected PlotOverlay {
    Q_OBJECT

public:
    /// How bins that share a pixel are joined.
    enum class Method {
        None, ///< as without the tool
        Maximum, ///< the largest finite bin
        Sum, ///< of the finite bins; on maps only
        Mean ///< of the finite bins, empty ones included
    };
    Q_ENUM(Method)

    /// Attaches to the plot, which owns the tool. The method is None.
    explicit BinAggregation(XYGraphWidget* plot);
    ~BinAggregation() override;

    Method method() const; ///< see Method
    /// Bins along X and Y that share a pixel in the present view; at least 1. @{
    double binsPerPixelX() const;
    double binsPerPixelY() const;
    /// @}

    QList<QAction*> actions() const override;
    QString stateName() const override;
    QJsonObject saveState() const override;
    void restoreState(const QJsonObject& state) override;

public Q_SLOTS:
    void setMethod(tarnis::BinAggregation::Method method); ///< see Method; repaints

Q_SIGNALS:
    void methodChanged(); ///< see method()

protected:
    void plotChanged(Changes changes) override;
    void paintOverlay(QPainter& painter, const PlotMapping& mapping) override;

private:
    TARNIS_NO_EXPORT void makeActions();
    TARNIS_NO_EXPORT void fillMenu();
    TARNIS_NO_EXPORT bool isShown() const;
    TARNIS_NO_EXPORT void paintEnvelope(QPainter& painter, const PlotMapping& mapping, const ShownCurve& curve) const;

    Method m_method = Method::None;
    std::unique_ptr<OverlayCache> m_cache;
    QList<ShownCurve> m_painted; // what the cached picture shows
    QMenu* m_menu = nullptr; // of the action
    QAction* m_menuAction = nullptr;
};

} // namespace tarnis
