// Keeps peaks visible when a plot is zoomed out.
#pragma once

#include <tarnis/plots/plotoverlay.h>
#include <tarnis/tools/interactivetool.h>

#include <memory>

QT_BEGIN_NAMESPACE
class QMenu;
QT_END_NAMESPACE

namespace tarnis {

class OverlayCache;
struct ColumnRun;
struct ShownCurve;

/// Determines what a plot shows where several bins share a pixel. Without the tool, a map paints the first non-zero
/// bin, so that a single high bin can be invisible. With the tool, it paints the largest of them, their sum or their
/// mean. Each bin counts for the pixel in which it begins. The read-out, the cuts and saved data still use single bins.
/// Printed maps and vector files contain every bin anyway. On curves, which draw every sample, it adds the envelope: a
/// band from the lowest to the highest sample of each pixel column, with a line along the largest samples or along
/// their mean; Sum has no effect on curves, because a sum of samples does not fit their axis. A mark on the plot shows
/// the method.
class TARNIS_EXPORT BinAggregation : public InteractiveTool, protected PlotOverlay {
    Q_OBJECT

public:
    /// How bins that share a pixel are combined.
    enum class Method {
        None, ///< no aggregation
        Maximum, ///< the largest finite bin
        Sum, ///< sum of the finite bins; only on maps
        Mean ///< mean of the finite bins, including empty ones
    };
    Q_ENUM(Method)

    /// Attaches to the plot, which owns the tool. The initial method is Method::None.
    explicit BinAggregation(XYGraphWidget* plot);
    ~BinAggregation() override;

    Method method() const; ///< see Method
    /// Number of bins along X and Y that share a pixel in the current view; at least 1. @{
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
    QList<QRect> nameBoxes() const override; ///< the note in a corner
    void plotChanged(Changes changes) override;
    void paintOverlay(QPainter& painter, const PlotMapping& mapping) override;

private:
    TARNIS_NO_EXPORT void makeActions();
    TARNIS_NO_EXPORT void fillMenu();
    TARNIS_NO_EXPORT bool isShown() const;
    TARNIS_NO_EXPORT QString noteText() const;
    TARNIS_NO_EXPORT QRect noteBox(const PlotMapping& mapping, const QSize& label) const;
    TARNIS_NO_EXPORT void paintEnvelope(
        QPainter& painter, const PlotMapping& mapping, const ShownCurve& curve, const QList<ColumnRun>& runs) const;

    Method m_method = Method::None;
    std::unique_ptr<OverlayCache> m_cache;
    QList<ShownCurve> m_painted; // curves in the cached picture
    QMenu* m_menu = nullptr; // menu of the action
    QAction* m_menuAction = nullptr;
};

} // namespace tarnis
