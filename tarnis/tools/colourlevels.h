// Controls the limits and the scale of a map's colours.
#pragma once

#include <tarnis/plots/plotoverlay.h>
#include <tarnis/tools/interactivetool.h>

#include <QElapsedTimer>
#include <QPair>
#include <QTimer>

#include <optional>

QT_BEGIN_NAMESPACE
class QMenu;
QT_END_NAMESPACE
class XY2DGraphWidget;

namespace tarnis {

class LevelStrip;

/// Attached to a map, it shows a strip between the map and the colour bar, with a histogram of the bin values in the
/// colours of the map. Two lines in it are the limits of the colours:
///
/// - Dragging a line moves that limit, dragging between them moves both; Escape cancels. A double click makes the
///   limits follow the data again.
/// - While the strip has the focus, Left and Right select a line, Up and Down move it, and Home makes the limits follow
///   the data.
/// - The context menu contains the colour maps, for this map or for all maps of the program, the scale, and limits by
///   percentiles.
///
/// The histogram and the percentiles include all painted bins, which are the finite non-zero ones, or the sums or means
/// that a BinAggregation shows in their place. They are updated at most once a second. Limits set by the user are kept.
class TARNIS_EXPORT ColourLevels : public InteractiveTool, protected PlotOverlay {
    Q_OBJECT

public:
    /// How the colours are distributed between the limits.
    enum class Scale {
        Linear,
        SquareRoot, ///< values below 0 count as 0
        Logarithmic ///< values at or below 0 count as 1
    };
    Q_ENUM(Scale)
    /// How the limits are determined.
    enum class Mode {
        Automatic, ///< by the plot: from 0, or the smallest value above 0, to the largest one
        Percentiles, ///< see setPercentiles()
        Held ///< set by the user or the host
    };
    Q_ENUM(Mode)

    /// Attaches to the map, which owns the tool. The strip is initially shown.
    explicit ColourLevels(XY2DGraphWidget* map);
    ~ColourLevels() override;

    Mode mode() const; ///< the current mode
    Scale scale() const; ///< in use
    double lower() const; ///< limit; 0 without a map
    double upper() const; ///< limit; 0 without a map
    QPair<double, double> percentiles() const; ///< as set by setPercentiles(); default 0 and 100
    bool isStripVisible() const; ///< whether the strip is shown; a narrow map has no space for it and hides it

    QList<QAction*> actions() const override;
    QString stateName() const override;
    QJsonObject saveState() const override;
    void restoreState(const QJsonObject& state) override;

public Q_SLOTS:
    void setLevels(double lower, double upper); ///< sets fixed limits; values that are not finite are ignored
    /// The limits follow the percentiles of the painted bins, each from 0 to 100. A map without such bins keeps its
    /// limits.
    void setPercentiles(double lower, double upper);
    void setAutomatic(); ///< the limits follow the data as without the tool
    void setScale(tarnis::ColourLevels::Scale scale); ///< scale of the colours
    void setStripVisible(bool visible); ///< without the strip, the map uses its space

Q_SIGNALS:
    void levelsChanged(); ///< limits, scale or mode() have changed

protected:
    bool handleEvent(QEvent* event) override;
    void plotChanged(Changes changes) override;
    void paintOverlay(QPainter& painter, const PlotMapping& mapping) override;
    void handleHide() override;

private:
    TARNIS_NO_EXPORT XY2DGraphWidget* map() const;
    TARNIS_NO_EXPORT void makeActions();
    TARNIS_NO_EXPORT void fillMenu();
    TARNIS_NO_EXPORT void fillColours(QMenu& menu, bool forAll);
    TARNIS_NO_EXPORT void reserveSpace();
    TARNIS_NO_EXPORT bool read();
    TARNIS_NO_EXPORT void update();
    TARNIS_NO_EXPORT void applyLevels(double lower, double upper);

    LevelStrip* m_strip = nullptr; // a child of the map
    QMenu* m_menu = nullptr; // of the action
    QAction* m_switch = nullptr;
    QAction* m_menuAction = nullptr;
    std::optional<QPair<double, double>> m_percentiles;
    QPair<double, double> m_applied; // limits last set by the percentiles
    QTimer m_timer; // limits the update rate to one per second
    QElapsedTimer m_lastRead;
};

} // namespace tarnis
