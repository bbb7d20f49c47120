// What a plot shows and how, as JSON and in files.
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
/// Static functions convert between a plot and JSON. An object is a folder of views with names, such as those of
/// windows, one file for each.
class TARNIS_EXPORT PlotView {
public:
    /// The view of the plot as it is.
    static QJsonObject stateOf(const XYGraphWidget& plot);
    /// Shows a view. Keys that are missing, and numbers that are not finite or not a range, leave the plot as it is;
    /// unknown keys and states of tools that are not attached are ignored. Returns an empty text, or the reason for
    /// which nothing was changed: not a view, or one of a later version.
    static QString apply(XYGraphWidget& plot, const QJsonObject& state);

    /// Views in a folder, which the first save() makes. An empty path is defaultFolder().
    explicit PlotView(const QString& folder = QString());

    /// The folder "views" in the application's own folder for settings.
    static QString defaultFolder();
    QString folder() const { return m_folder; } ///< where the files are
    /// The file of a view. The name may be any text; it is encoded where a file name cannot hold it.
    QString filePath(const QString& name) const;
    QStringList names() const; ///< of the views in the folder, sorted
    bool contains(const QString& name) const; ///< whether there is a file, whatever it holds

    /// Writes the plot's view under the name, in one step: an error or an interrupt leaves the previous file. A file
    /// that is not a stored view, or one of a later version, is not replaced. Returns an empty text or the cause and
    /// what to do, in the current language.
    [[nodiscard]] QString save(const XYGraphWidget& plot, const QString& name) const;
    /// Shows the view of the name. Without a file nothing happens. A file that cannot be read is left alone, and so is
    /// the plot. Returns as save() does.
    [[nodiscard]] QString restore(XYGraphWidget& plot, const QString& name) const;
    /// Deletes the file of the name, if there is one. Returns as save() does.
    [[nodiscard]] QString remove(const QString& name) const;

private:
    QString m_folder;
};

} // namespace tarnis
