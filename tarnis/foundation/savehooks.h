/// @file
/// Lets a host customise the save actions in the library's menus and buttons: "Save PNG...", "Save CSV...", "Print..."
/// of the plots, and Save of the tables. GUI thread.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QString>

#include <functional>

QT_BEGIN_NAMESPACE
class QFileDialog;
class QWidget;
QT_END_NAMESPACE

namespace tarnis {

/// What a save writes.
enum class SaveKind {
    Picture, ///< a PNG or JPEG file
    Table, ///< a text file of comma-separated values
    Page, ///< a printed page
};

/// A save for which a file name is needed.
struct SaveRequest {
    QWidget* source = nullptr; ///< the plot or table, never null; the parent of the dialog
    SaveKind kind = SaveKind::Picture; ///< what will be written
    QString caption; ///< the library's title for the dialog, in the current language; for a page, the plot's title
    QString directory; ///< where the dialog opens, see getSaveDir()
    QString filter; ///< the library's filter for the dialog; empty for a page
};

/// The functions of a host. An empty function leaves the default behaviour unchanged.
struct SaveHooks {
    /// Returns the dialog that asks for the file name, created with `new` as a child of the source. The library runs
    /// it, uses the selected file if it is accepted, and deletes it. Null: the library's own dialog.
    std::function<QFileDialog*(const SaveRequest& request)> makeDialog;
    /// Called after each attempt to write, but not after a cancelled dialog. `error` is empty on success, else the
    /// cause and what to do, as writeFile() returns it. `path` is the file, or the name of a printer.
    ///
    /// If this function is set, the library shows no message box, and files are written as by writeFile(): an error
    /// leaves the previous file. PDF pages count as files.
    std::function<void(QWidget& source, const QString& path, const QString& error)> report;
    /// Called before any question. If it returns true, the host saves the plot itself, for example with ExportDialog,
    /// and the library does nothing more. Not called for a page with a map and both of its cuts.
    std::function<bool(const SaveRequest& request)> save = {};
};

/// Sets the hooks for all plots and tables of the process. Empty hooks restore the default behaviour.
TARNIS_EXPORT void setSaveHooks(const SaveHooks& hooks);

} // namespace tarnis
