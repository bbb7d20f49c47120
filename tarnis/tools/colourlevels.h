// The limits and the scale of a map's colours.
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

/// Attached to a map, it shows a strip with a histogram of the bin values between the map and the colour bar, coloured
/// as the map is. Two lines in it are the limits of the colours:
///
/// - Dragging a line moves that limit, dragging between them moves both; Escape cancels. A double click lets the limits
///   follow the data again.
/// - With the keyboard on the strip, Left and Right choose a line, Up and Down move it, Home follows the data.
/// - The menu of the right button has the colour maps, for this map or for all maps of the program, the scale, and
///   limits by percentiles.
///
/// The histogram and the percentiles count all bins that a map paints, which are those that are finite and not 0. They
/// follow the data at most once a second. Limits that the user has set stay.
class TARNIS_EXPORT ColourLevels : public InteractiveTool, protected PlotOverlay {
    Q_OBJECT

public:
    /// How the colours are spread between the limits.
    enum class Scale {
        Linear,
        SquareRoot, ///< values below 0 count as 0
        Logarithmic ///< values at or below 0 count as 1
    };
    Q_ENUM(Scale)
    /// Where the limits come from.
    enum class Mode {
        Automatic, ///< the plot's own: from 0, or the smallest value above 0, to the largest one
        Percentiles, ///< see setPercentiles()
        Held ///< set by the user or the host
    };
    Q_ENUM(Mode)

    /// Attaches to the map, which owns the tool. The strip is shown.
    explicit ColourLevels(XY2DGraphWidget* map);
    ~ColourLevels() override;

    Mode mode() const; ///< the source of the limits at present
    Scale scale() const; ///< in use
    double lower() const; ///< limit; 0 without a map
    double upper() const; ///< limit; 0 without a map
    QPair<double, double> percentiles() const; ///< as set; 0 and 100 otherwise
    bool isStripVisible() const; ///< whether the strip is shown

    QList<QAction*> actions() const override;
    QString stateName() const override;
    QJsonObject saveState() const override;
    void restoreState(const QJsonObject& state) override;

public Q_SLOTS:
    void setLevels(double lower, double upper); ///< holds the limits; values that are not finite are ignored
    /// The limits follow the percentiles of the painted bins, each from 0 to 100. A map without such bins keeps its
    /// limits.
    void setPercentiles(double lower, double upper);
    void setAutomatic(); ///< the limits follow the data as without the tool
    void setScale(tarnis::ColourLevels::Scale scale); ///< of the colours
    void setStripVisible(bool visible); ///< without the strip the map gets its room

Q_SIGNALS:
    void levelsChanged(); ///< limits, scale or mode() have changed

protected:
    void plotChanged(Changes changes) override;
    void paintOverlay(QPainter& painter, const PlotMapping& mapping) override;

private:
    TARNIS_NO_EXPORT XY2DGraphWidget* map() const;
    TARNIS_NO_EXPORT void makeActions();
    TARNIS_NO_EXPORT void fillMenu();
    TARNIS_NO_EXPORT void fillColours(QMenu& menu, bool forAll);
    TARNIS_NO_EXPORT void read();
    TARNIS_NO_EXPORT void applyLevels(double lower, double upper);

    LevelStrip* m_strip = nullptr; // a child of the map
    QMenu* m_menu = nullptr; // of the action
    QAction* m_switch = nullptr;
    QAction* m_menuAction = nullptr;
    std::optional<QPair<double, double>> m_percentiles;
    QPair<double, double> m_applied; // by the percentiles
    QTimer m_timer; // for data that arrive within a second
    QElapsedTimer m_lastRead;
};

} // namespace tarnis
