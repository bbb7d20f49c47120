/// @file
/// Regions of plots as values, and their files. Pure functions, re-entrant.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QByteArray>
#include <QList>
#include <QPointF>
#include <QRectF>
#include <QString>

namespace tarnis {

/// A region of a plot, in units of its axes.
struct TARNIS_EXPORT PlotRegion {
    /// Outlines.
    enum class Kind {
        RangeX, ///< from points[0].x to points[1].x; of a map all rows there
        RangeY, ///< rows of a map, from points[0].y to points[1].y
        Rectangle, ///< of a map; two opposite corners
        Ellipse, ///< of a map; two opposite corners of the rectangle around it
        Polygon ///< of a map; at least three corners, even-odd rule
    };

    Kind kind = Kind::RangeX; ///< outline
    QString name; ///< as the user typed it
    QList<QPointF> points; ///< see Kind

    /// A range of X.
    static PlotRegion rangeX(double lower, double upper, const QString& name = {});

    /// The points are enough for the kind, and finite.
    bool isValid() const;
    /// Curves have only ranges of X; maps have all kinds.
    bool isForMapsOnly() const { return kind != Kind::RangeX; }
    /// The box around the points, with positive width and height. Only x of a range of X counts, only y of one of Y.
    QRectF bounds() const;
    /// Moves all points.
    void translate(const QPointF& by);

    /// Exact comparison.
    friend bool operator==(const PlotRegion& a, const PlotRegion& b)
    {
        return a.kind == b.kind && a.name == b.name && a.points == b.points;
    }
};

/// The regions as JSON, UTF-8, with all digits.
TARNIS_EXPORT QByteArray regionsToJson(const QList<PlotRegion>& regions);

/// Regions of a file, or why there are none.
struct PlotRegionsResult {
    QList<PlotRegion> regions; ///< empty if there is an error
    QString error; ///< for the user; empty on success
};

/// The regions of such a text. Checks what it reads: up to 1000 regions of up to 1000 points.
TARNIS_EXPORT PlotRegionsResult regionsFromJson(const QByteArray& text);

} // namespace tarnis
