// Stores the view of a plot as JSON and in files.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QJsonObject>
#include <QString>
#include <QStringList>

class XYGraphWidget;

namespace tarnis {

/// Stored views of plots: ranges, scales, limits of colours, the grid, and the states of the attached tools (see
/// InteractiveTool::saveState()). Data are never stored. GUI thread only.
///
/// Static functions convert between a plot and JSON. An object represents a folder of named views, with one file each.
class TARNIS_EXPORT PlotView {
public:
    /// The current view of the plot.
    static QJsonObject stateOf(const XYGraphWidget& plot);
    /// Shows a view. Missing keys, non-finite numbers and invalid ranges leave the plot unchanged; unknown keys and
    /// states of tools that are not attached are ignored. Returns an empty text, or the reason why nothing was changed:
    /// not a view, or one of a later version.
    static QString apply(XYGraphWidget& plot, const QJsonObject& state);

    /// Views in a folder, which the first save() creates. An empty path selects defaultFolder().
    explicit PlotView(const QString& folder = QString());

    /// The folder "views" in the application's own folder for settings.
    static QString defaultFolder();
    QString folder() const { return m_folder; } ///< the folder of the files
    /// The file of a view. The name may be any text; characters that are invalid in file names are encoded.
    QString filePath(const QString& name) const;
    QStringList names() const; ///< names of the views in the folder, sorted
    bool contains(const QString& name) const; ///< whether there is a file, valid or not

    /// Writes the plot's view under the name atomically: an error or an interrupt leaves the previous file. A file that
    /// is not a stored view, or has a later version, is not replaced. Returns an empty text or the cause and what to
    /// do, in the current language.
    [[nodiscard]] QString save(const XYGraphWidget& plot, const QString& name) const;
    /// Shows the view with this name. Does nothing without a file. If the file cannot be read, file and plot are
    /// unchanged. Returns the same as save().
    [[nodiscard]] QString restore(XYGraphWidget& plot, const QString& name) const;
    /// Deletes the file of this name, if there is one. Returns the same as save().
    [[nodiscard]] QString remove(const QString& name) const;

private:
    QString m_folder;
};

} // namespace tarnis
