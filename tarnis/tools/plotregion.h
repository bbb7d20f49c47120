/// @file
/// Regions of plots as values, and their file format. Pure functions, re-entrant.
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
        RangeX, ///< from points[0].x to points[1].x; on a map all rows there
        RangeY, ///< rows of a map, from points[0].y to points[1].y
        Rectangle, ///< on a map; two opposite corners
        Ellipse, ///< on a map; two opposite corners of the rectangle around it
        Polygon ///< on a map; at least three corners, even-odd rule
    };

    Kind kind = Kind::RangeX; ///< outline
    QString name; ///< as entered by the user
    QList<QPointF> points; ///< see Kind

    /// A range of X.
    static PlotRegion rangeX(double lower, double upper, const QString& name = {});

    /// Whether the points are finite and sufficient for the kind.
    bool isValid() const;
    /// Whether only maps can have this kind; curves have only ranges of X.
    bool isForMapsOnly() const { return kind != Kind::RangeX; }
    /// The bounding box of the points, with positive width and height. For a range of X only x is valid, for one of Y
    /// only y.
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

/// Regions of a file, or an error.
struct PlotRegionsResult {
    QList<PlotRegion> regions; ///< empty if there is an error
    QString error; ///< for the user; empty on success
};

/// Parses regionsToJson()'s format and validates it: up to 1000 regions of up to 1000 points.
TARNIS_EXPORT PlotRegionsResult regionsFromJson(const QByteArray& text);

} // namespace tarnis
