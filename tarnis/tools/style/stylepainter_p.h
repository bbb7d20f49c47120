// Draws a plot in a style.
#pragma once

#include "tarnis/plots/labelcache_p.h"
#include "tarnis/plots/math/axismapping_p.h"
#include "tarnis/plots/math/styleaxis_p.h"
#include "tarnis/plots/plotstyling_p.h"
#include "tarnis/plots/raster/curvecoverage_p.h"
#include "tarnis/tools/style/styletheme_p.h"

#include <QFont>
#include <QList>

namespace tarnis {

/// Options set by the host.
struct StyleOptions {
    PlotStyle::Theme theme = PlotStyle::Theme::Light;
    PlotStyle::CurveForm form = PlotStyle::CurveForm::AsPlot;
    PlotStyle::NumberForm numbers = PlotStyle::NumberForm::Prefixes;
    double lineWidth = 0.0; ///< 0: width of the theme
    double textScale = 1.0;
    bool grid = true;
    bool legend = true;
    bool title = true;
    bool squareBins = true;
    QString unitX, unitY, unitZ;
};

/// An enabled curve of the plot, with the visible samples and one more on each side.
struct StyledCurve {
    int number = 0; ///< index among the curves of the plot's current type
    QColor colour; ///< classic colour
    SampleRange range;
    QList<double> values; ///< all samples of a curve that is not a sum
    std::shared_ptr<double[]> sums; ///< sums over the range, for a curve that is a sum

    SampleRun run() const
    {
        return sums != nullptr ? SampleRun { sums.get(), range.begin } : SampleRun { values.constData(), 0 };
    }
};

/// Positions of the bins of a plot's curves, for a given width of the plot rectangle.
struct CurvePlaces {
    SmoothColumns columns; ///< relative to the left edge of the rectangle
    SampleRange visible(qsizetype count, int width) const; ///< the visible bins, and one more on each side
};
CurvePlaces curvePlaces(const XYGraphWidget& plot, int width);

/// The enabled curves of a plot of one or many series.
QList<StyledCurve> styledCurves(const XYGraphWidget& plot);

/// The style of one plot.
class StylePainter final : public PlotStyling {
public:
    StylePainter(XYGraphWidget& plot, PlotStyle::Theme theme);

    StyleOptions options;

    void noteData() override { m_isStale = true; }
    void fitAxes() override;
    Layout paintFrame(QPainter& painter, const QRect& whole, const QRect& frame) override;
    void paintGrid(QPainter& painter, const QRect& graph) override;
    void paintCurves(QPainter& painter, const QRect& graph) override;
    BarLayout paintColourBar(QPainter& painter, const QRect& frame, const ColorBarWidget& bar) override;
    QRect freeAbove() const override { return m_freeAbove; }
    QColor surround() const override { return theme().surround; }
    QColor foreground() const override { return theme().text; }
    QColor lineOverData() const override;
    QColor accent() const override { return theme().accent; }
    QColor curveColour(int number, const QColor& given) const override;

    const StyleTheme& theme() const { return styleTheme(options.theme); }

private:
    /// The state for which an automatic Y axis was fitted.
    struct FitKey {
        AxisRange x;
        bool isLog = false;
        int type = -1;
        int bars = -1; ///< method of the error bars, -1 without them
        int references = 0; ///< number of reference curves, and their norm
        QList<int> curves;
        friend bool operator==(const FitKey& a, const FitKey& b)
        {
            return a.x == b.x && a.isLog == b.isLog && a.type == b.type && a.bars == b.bars
                && a.references == b.references && a.curves == b.curves;
        }
    };
    /// Sizes of texts and marks for a picture of some size.
    struct Scale {
        double growth = 1.0;
        QFont label;
        QFont exponent;
        QFont name;
        QFont title;
        int line = 0; ///< height of a label
        int nameLine = 0;
        int titleLine = 0;
        int character = 0; ///< average width of a character
        int tick = 0;
        int pad = 0;
        int thickness = 1; ///< thickness of axis lines
    };
    /// A tick with its label, in pixels along its axis.
    struct Mark {
        double position = 0.0;
        AxisLabel label;
        int width = 0; ///< width of the label
    };
    struct Axis {
        QList<Mark> marks;
        QList<double> minor;
        int widest = 0;
    };
    struct Entry { // of the legend
        QColor colour;
        QString name;
        int width = 0;
    };
    struct Legend {
        QList<QList<Entry>> rows;
    };

    void fitX();
    void fitCounts();
    void fitRows();
    FitKey fitKey(const QList<StyledCurve>& curves, int bars) const;

    Scale scaleOf(const QFont& font, QSize size) const;
    int widthOf(const AxisLabel& label, const Scale& scale);
    void drawLabel(QPainter& painter, const Scale& scale, const AxisLabel& label, QPointF left, int height);
    Axis axisX(const QRect& graph, const Scale& scale);
    Axis axisY(const QRect& graph, const Scale& scale);
    Axis axisOf(const TickPlan& plan, const QList<AxisLabel>& labels, const Scale& scale,
        const std::function<double(double)>& place);
    Legend legendOf(int width, int maxRows, const Scale& scale) const;
    QRect graphIn(const QRect& frame, const Scale& scale, Axis& x, Axis& y, Legend& legend);
    QRect squared(const QRect& graph) const;
    void paintAxes(QPainter& painter, const QRect& graph, const Scale& scale, const Axis& x, const Axis& y);
    void paintTexts(QPainter& painter, const QRect& frame, const QRect& graph, const Scale& scale, int labelWidth);
    void paintLegend(QPainter& painter, const QRect& graph, const Scale& scale, const Legend& legend) const;
    QColor background() const;
    QString nameX() const;
    QString nameY() const;
    bool hasTitleRow() const;
    double curveWidth() const;
    CurveShape shape() const;
    void strokeCurves(QPainter& painter, const QRect& graph, const QList<SmoothCurve>& curves,
        const SmoothColumns& columns, const SmoothRows& rows) const;

    XYGraphWidget& m_plot;
    LabelCache m_labels;
    LabelCache m_exponents;
    CurveCoverage m_coverage;

    bool m_isStale = true;
    FitKey m_key;
    AxisRange m_fitted; // of Y
    bool m_isFitted = false;

    // The last picture, for grid, colour bar and tools
    QList<int> m_columns;
    QList<int> m_rows;
    QRect m_frame;
    QRect m_graph;
    QRect m_freeAbove;
    double m_growth = 1.0;
    int m_labelRoom = 0; // kept while labels vary slightly
};

} // namespace tarnis
