// Reference curves for comparison with live ones.
#pragma once

#include <tarnis/plots/axisrange.h>
#include <tarnis/plots/plotoverlay.h>
#include <tarnis/tools/interactivetool.h>

#include <QDateTime>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

QT_BEGIN_NAMESPACE
class QMenu;
QT_END_NAMESPACE

namespace tarnis {

class OverlayCache;
struct Dataset;
struct ColumnRun;
struct ShownCurve;
struct StripAxis;

/// Curves that do not change while the plot's own ones do: a frozen copy of the plot's curves, the rows of a file, or a
/// dataset of an earlier run. They are drawn dashed over the data, bin by bin on the plot's bins.
///
/// The current reference can be compared with the live curves in a strip below the plot, over the same X axis: their
/// difference, their ratio, or the difference in standard deviations. Curves are matched by name, or by order if both
/// have the same number. If the live counts contain those of a frozen reference because the measurement continued, the
/// errors are those of the counts since then, and the strip shows this. While the plot has the focus, Shift+C freezes
/// the curves, and removes the last frozen reference when pressed again.
class TARNIS_EXPORT ReferenceCurves : public InteractiveTool, protected PlotOverlay {
    Q_OBJECT

public:
    static constexpr qsizetype maxReferences = 20; ///< a further one replaces the oldest

    /// The comparison in the strip below the plot.
    enum class View {
        Over, ///< no strip
        Difference, ///< live - reference
        Ratio, ///< live / reference
        Significance ///< (live - reference) / standard deviation
    };
    Q_ENUM(View)
    /// The factor of the reference, in the plot and in the comparison.
    enum class Norm {
        None, ///< 1
        TotalCounts, ///< live / reference, total counts of a curve; 1 without counts
        LiveTime, ///< live / reference, see setLiveTime(); 1 if either is unknown
        RangeCounts ///< live / reference, counts of a curve in normRange(); 1 without counts there
    };
    Q_ENUM(Norm)

    /// Attaches to the plot, which owns the tool. Initially there are no references.
    explicit ReferenceCurves(XYGraphWidget* plot);
    ~ReferenceCurves() override;

    QStringList names() const; ///< names of the references, the oldest first
    int current() const; ///< index of the compared reference; -1 without one
    View view() const; ///< see View
    Norm norm() const; ///< see Norm
    AxisRange normRange() const; ///< range of X for Norm::RangeCounts: bins whose centre is in [min, max)
    /// The compared values of a live curve, one for each bin; NaN where undefined. Empty without a matching current
    /// reference, and for View::Over.
    QList<double> compared(int curve) const;
    /// Why the current reference cannot be compared, in the application's language; empty if it can.
    QString problem() const;
    /// Smallest and largest finite value of all references, as drawn, in the bins from `first` to `last`; if
    /// `aboveZero`, only of values above 0. Infinity and -infinity without any.
    QPair<double, double> extremes(qsizetype first, qsizetype last, bool aboveZero) const;

    /// Freezes the visible curves under a name, or under the current time. Returns false and changes nothing if none is
    /// visible.
    bool freeze(const QString& name = {});
    /// Adds the rows of a dataset as a reference. Returns an empty text, or the error.
    QString add(const Dataset& data, const QString& name = {});
    /// Adds the rows of a file in a format of `tarnis/formats`. Returns an empty text, or the error and what to do.
    QString addFile(const QString& path);

    QList<QAction*> actions() const override;
    QString stateName() const override;
    QJsonObject saveState() const override; ///< includes the paths of files; frozen curves are not stored
    void restoreState(const QJsonObject& state) override;

public Q_SLOTS:
    void setView(tarnis::ReferenceCurves::View view); ///< see View
    void setNorm(tarnis::ReferenceCurves::Norm norm); ///< see Norm
    void setNormRange(double lower, double upper); ///< in units of X, selects Norm::RangeCounts; ignored if not a range
    void setLiveTime(double seconds); ///< live time of the live curves, for Norm::LiveTime; 0 or less: unknown
    void setCurrent(int index); ///< an invalid index is ignored
    void removeCurrent(); ///< the last remaining one becomes the current one
    void clear(); ///< removes all
    void toggleFrozen(); ///< as Shift+C
    void openFile(); ///< asks for a file; errors are shown in a message

Q_SIGNALS:
    void referencesChanged(); ///< names(), current(), view() or norm() have changed

protected:
    bool handleEvent(QEvent* event) override;
    bool handleKey(const QKeyEvent& event) override;
    QList<QRect> nameBoxes() const override; ///< the name of the current one
    void plotChanged(Changes changes) override;
    void paintOverlay(QPainter& painter, const PlotMapping& mapping) override;

private:
    struct Reference;
    struct Pair;
    struct Pairs;
    TARNIS_NO_EXPORT void append(const Reference& reference);
    TARNIS_NO_EXPORT void renew();
    TARNIS_NO_EXPORT void placeStrip();
    TARNIS_NO_EXPORT void refreshFit() const;
    TARNIS_NO_EXPORT void noteClearing();
    TARNIS_NO_EXPORT QRect stripRect(const PlotMapping& mapping) const;
    TARNIS_NO_EXPORT void dropPictures();
    TARNIS_NO_EXPORT static int curveOf(
        const Reference& reference, int row, const QList<ShownCurve>& curves, qsizetype count);
    TARNIS_NO_EXPORT bool isLiveTimeKnown(const Reference& reference) const;
    TARNIS_NO_EXPORT std::optional<double> normOf(
        const Reference& reference, const QList<double>& live, const QList<double>& values) const;
    TARNIS_NO_EXPORT const QList<Pair>& pairs(const QList<ShownCurve>& live) const;
    TARNIS_NO_EXPORT void compare(Pair& pair) const;
    TARNIS_NO_EXPORT QList<Pair> comparedPairs(const QList<ShownCurve>& live) const;
    TARNIS_NO_EXPORT QRect nameBox(const PlotMapping& mapping, const QSize& label) const;
    TARNIS_NO_EXPORT void paintName(QPainter& painter, const PlotMapping& mapping) const;
    TARNIS_NO_EXPORT void paintReferences(
        QPainter& painter, const PlotMapping& mapping, const QList<ShownCurve>& live) const;
    TARNIS_NO_EXPORT QRect stripArea(const PlotMapping& mapping) const;
    TARNIS_NO_EXPORT void paintStrip(
        QPainter& painter, const PlotMapping& mapping, const QList<ShownCurve>& live) const;
    TARNIS_NO_EXPORT QList<quint8> rowsOf(const Pair& pair, const StripAxis& axis) const;
    TARNIS_NO_EXPORT void paintErrors(QPainter& painter, const StripAxis& axis, const Pair& pair,
        const QList<ColumnRun>& runs, const QColor& colour) const;
    TARNIS_NO_EXPORT void paintTitle(QPainter& painter, const QRect& strip, const QList<Pair>& shown) const;
    TARNIS_NO_EXPORT void makeActions();
    TARNIS_NO_EXPORT void fillMenu();
    TARNIS_NO_EXPORT void fillNorms();

    QList<Reference> m_references;
    int m_current = -1;
    View m_view = View::Over;
    Norm m_norm = Norm::None;
    AxisRange m_normRange; // of X
    double m_liveTime = 0.0;
    int m_stripHeight = 0; // in use
    std::unique_ptr<OverlayCache> m_cache; // picture of the curves over the data
    std::unique_ptr<OverlayCache> m_stripCache;
    std::unique_ptr<Pairs> m_pairs;
    QList<ShownCurve> m_painted; // curves in the cached pictures
    QMenu* m_menu = nullptr; // menu of the action
    QAction* m_freeze = nullptr;
    QAction* m_open = nullptr;
    QAction* m_menuAction = nullptr;
};

} // namespace tarnis
