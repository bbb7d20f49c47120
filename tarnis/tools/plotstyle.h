// The style of a plot: themes, axes, fonts and curves instead of the classic drawing.
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

/// Attached to a plot, it replaces the classic drawing. A plot without it, or after its destruction, is drawn as
/// before. If a plot has several styles, the last one is used. It supports curves, maps with colour bars, subclasses
/// that draw their own data, rotated plots, paper and vector files.
///
/// - Curves are antialiased with a selectable width, in colours that are distinguishable for colour-blind users.
/// - Automatic axes end at round values, 5 to 10 % above the visible enabled data, and do not change while live data
///   vary slightly. X ends with the data. Zero counts are at the lower edge of a logarithmic axis.
/// - There are as many ticks as their labels have space for. Texts scale with the plot.
/// - Names with units, title, notes and a legend of two or more curves have reserved space.
class TARNIS_EXPORT PlotStyle : public InteractiveTool {
    Q_OBJECT

public:
    /// The colours of background, text and curves.
    enum class Theme {
        Light, ///< on white
        Dark, ///< on dark grey
        Print, ///< black on white in a full frame, with colours that are distinguishable in greyscale
        HighContrast ///< on black, with thick lines
    };
    Q_ENUM(Theme)

    /// How curves are drawn.
    enum class CurveForm {
        AsPlot, ///< lines, or columns or points according to the plot's menu
        Lines, ///< joined middles of the bins
        Steps, ///< the outline of the bins
        Columns, ///< filled down to 0
        Points ///< a disc at the middle of each bin
    };
    Q_ENUM(CurveForm)

    /// The format of large numbers on linear axes.
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

    /// Units of the axes and of a map's values, appended to a name without a unit. @{
    void setUnits(const QString& x, const QString& y, const QString& z = {});
    QString unitX() const;
    QString unitY() const;
    QString unitZ() const;
    /// @}

    /// Colour of a curve, numbered from 0; colours repeat after the last one. The contrast with the background is at
    /// least 3:1.
    static QColor seriesColour(Theme theme, int number);
    /// Number of different curve colours.
    static int seriesColourCount();
    /// Colours of the plot rectangle and of the texts. @{
    static QColor backgroundColour(Theme theme);
    static QColor textColour(Theme theme);
    /// @}

    /// A menu of themes and forms; triggered, it selects the next theme.
    QList<QAction*> actions() const override;
    QString stateName() const override; ///< "style"
    QJsonObject saveState() const override; ///< all but the units
    void restoreState(const QJsonObject& state) override; ///< see InteractiveTool

public Q_SLOTS:
    void setTheme(tarnis::PlotStyle::Theme theme); ///< sets the colours and the frame
    void setCurveForm(tarnis::PlotStyle::CurveForm form); ///< form of all curves of the plot
    void setNumberForm(tarnis::PlotStyle::NumberForm form); ///< format of the labels
    void setLineWidth(double pixels); ///< width of curves, 0.5 to 10 at the size of a small plot; 0 for the theme's
                                      ///< width
    void setTextScale(double factor); ///< scale of all texts, 0.5 to 3; default 1
    void setGridShown(bool shown); ///< effective only if the plot's own "Show Grid" is on
    void setLegendShown(bool shown); ///< legend of two or more curves; on by default
    void setTitleShown(bool shown); ///< the plot's title; on by default
    /// Gives the plot rectangle of a map the aspect ratio of its axes, if both have the same unit. On by default.
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
