// The colour maps of 2D plots.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QColor>
#include <QImage>
#include <QList>
#include <QString>
#include <QStringList>

class XY2DGraphWidget;

namespace tarnis {

/// Sets colour maps by name, for one map or for all maps of the program. Those of 256 colours are the published tables,
/// with one colour for each of 256 equal steps between the limits:
///
/// - "viridis", "magma", "inferno": S. van der Walt, N. Smith, E. Firing (2015), CC0
/// - "cividis": J. Nuñez, C. Anderton, R. Renslow (2018), CC0; "turbo": A. Mikhailov (2019), Apache-2.0
/// - "diverging": K. Moreland (2009), blue to red; "greys": equal steps from black to white
///
/// The palettes of the plot's own menu blend between five points: "rainbow1", "rainbow2", "grayscale", "blueredgreen",
/// "redwhiteblue", "cyanmagenta", "yellowhot", "blue". A palette that the user selects in that menu replaces the
/// setting for all maps and for the map with the menu. GUI thread only.
class TARNIS_EXPORT ColourMaps {
public:
    ColourMaps() = delete;

    static QStringList names(); ///< all names, in the order of display
    static QString title(const QString& name); ///< in the application's language; empty for an unknown name
    /// The colour at `share` of the scale, from 0 at the lower limit to 1 at the upper one; invalid for an unknown
    /// name.
    static QColor colour(const QString& name, double share);
    /// The scale from left to right; a null image for an unknown name or an empty size.
    static QImage preview(const QString& name, const QSize& size);

    /// The current colour map; empty if the user has chosen individual colours.
    static QString current(const XY2DGraphWidget& map);
    /// Sets the colours of this map only, and repaints it. Returns false and changes nothing for an unknown name.
    static bool apply(XY2DGraphWidget& map, const QString& name);
    /// Sets the colours of all maps of the program, including later ones, and repaints them. Settings of single maps
    /// are removed. Returns false and changes nothing for an unknown name.
    static bool applyToAll(const QString& name);
};

} // namespace tarnis
