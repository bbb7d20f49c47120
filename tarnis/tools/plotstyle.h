// How a plot looks: themes, axes, fonts and curves in place of the classic drawing.
#pragma once

#include <tarnis/tools/interactivetool.h>

#include <QColor>
#include <QString>

#include <memory>

QT_BEGIN_NAMESPACE
class QMenu;
QT_END_NAMESPACE

namespace tarnis {

class StylePainter;
struct StyleOptions;

/// Attached to a plot, it replaces the classic look; a plot without it, or after its destruction, looks as before. Of
/// several styles on a plot the latest one is shown. It works on curves, on maps with their colour bars and on frames
/// with data of their own, on turned plots, on paper and in vector files.
///
/// - Curves have smooth edges and a chosen width, and colours that differ for colour-blind users too.
/// - Axes that scale automatically end at round values with 5 to 10 % of room above what is visible and enabled, and
///   stay while live data vary a little. X ends with the data. Zero counts are at the lower edge of a logarithmic axis.
/// - Ticks are as many as their labels have room for. Texts grow with the plot.
/// - Names with units, title, notes and a legend of two and more curves have room of their own.
class TARNIS_EXPORT PlotStyle : public InteractiveTool {
    Q_OBJECT

public:
    /// The colours.
    enum class Theme {
        Light, ///< on white
        Dark, ///< on dark grey
        Print, ///< black on white in a full frame, colours that stay apart on grey paper too
        HighContrast ///< on black, with thick lines
    };
    Q_ENUM(Theme)

    /// How curves join their samples.
    enum class CurveForm {
        AsPlot, ///< lines, or what the plot's menu says: columns, points
        Lines, ///< the middles of the bins, joined
        Steps, ///< the outline of the bins
        Columns, ///< filled down to 0
        Points ///< a disc in the middle of each bin
    };
    Q_ENUM(CurveForm)

    /// How large numbers are written on linear axes.
    enum class NumberForm {
        Prefixes, ///< 1.5M
        Powers ///< 1.5×10⁶
    };
    Q_ENUM(NumberForm)

    /// Attaches to the plot, which owns the style.
    explicit PlotStyle(XYGraphWidget* plot, Theme theme = Theme::Light);
    ~PlotStyle() override;

    Theme theme() const; ///< see setTheme()
    CurveForm curveForm() const; ///< see setCurveForm()
    NumberForm numberForm() const; ///< see setNumberForm()
    double lineWidth() const; ///< see setLineWidth()
    double textScale() const; ///< see setTextScale()
    bool isGridShown() const; ///< see setGridShown()
    bool isLegendShown() const; ///< see setLegendShown()
    bool isTitleShown() const; ///< see setTitleShown()
    bool areBinsSquare() const; ///< see setBinsSquare()

    /// Units of the axes and of a map's values, written behind a name that has none. @{
    void setUnits(const QString& x, const QString& y, const QString& z = {});
    QString unitX() const;
    QString unitY() const;
    QString unitZ() const;
    /// @}

    /// Colour of a curve, from 0 on; after the last one they begin again. At least 3:1 on the background.
    static QColor seriesColor(Theme theme, int number);
    /// Number of different colours of curves.
    static int seriesColorCount();
    /// Colours of the plot rectangle and of the texts. @{
    static QColor backgroundColor(Theme theme);
    static QColor textColor(Theme theme);
    /// @}

    /// A menu of themes and forms; a click takes the next theme.
    QList<QAction*> actions() const override;
    QString stateName() const override; ///< "style"
    QJsonObject saveState() const override; ///< all but the units
    void restoreState(const QJsonObject& state) override; ///< see InteractiveTool

public Q_SLOTS:
    void setTheme(tarnis::PlotStyle::Theme theme); ///< the colours, and the frame
    void setCurveForm(tarnis::PlotStyle::CurveForm form); ///< of all curves of the plot
    void setNumberForm(tarnis::PlotStyle::NumberForm form); ///< of the labels
    void setLineWidth(double pixels); ///< of curves, 0.5 to 10 at the size of a small plot; 0 for that of the theme
    void setTextScale(double factor); ///< of all texts, 0.5 to 3; 1 at first
    void setGridShown(bool shown); ///< as far as the plot's own "Show Grid" is on
    void setLegendShown(bool shown); ///< above two and more curves; on at first
    void setTitleShown(bool shown); ///< the plot's title; on at first
    /// Makes the plot rectangle of a map as wide and high as its axes are long, if both have the same unit. On at
    /// first.
    void setBinsSquare(bool square);

Q_SIGNALS:
    void styleChanged(); ///< one of the properties has changed

private:
    static constexpr int themeCount = 4;
    TARNIS_NO_EXPORT static bool isLineWidth(double pixels);
    TARNIS_NO_EXPORT static bool isTextScale(double factor);
    TARNIS_NO_EXPORT void changed();
    TARNIS_NO_EXPORT void makeActions();
    TARNIS_NO_EXPORT const StyleOptions& options() const;
    template <typename Value> TARNIS_NO_EXPORT void set(Value StyleOptions::*option, const Value& value);

    std::unique_ptr<StylePainter> m_painter;
    std::unique_ptr<QMenu> m_menu;
    QAction* m_action = nullptr;
};

} // namespace tarnis
