/// @file
/// How a host takes part in the saves that the library's own menu entries and buttons offer: "Save PNG...",
/// "Save CSV...", "Print..." of the plots, and Save of the tables. GUI thread.
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
    Table, ///< a text file of values with commas between them
    Page, ///< a printed page
};

/// A save for which a file name is needed.
struct SaveRequest {
    QWidget* source = nullptr; ///< the plot or table, never null; the parent of the dialog
    SaveKind kind = SaveKind::Picture; ///< what will be written
    QString caption; ///< the library's title for the dialog, in the current language; of a page the plot's title
    QString directory; ///< where the dialog opens, see getSaveDir()
    QString filter; ///< the library's filter for the dialog; empty for a page
};

/// The functions of a host. Each may be empty: the library then does what it does without hooks.
struct SaveHooks {
    /// Returns the dialog that asks for the file name, made with `new` and a child of the source. The library runs it,
    /// takes the selected file if it is accepted, and deletes it. Null: the library's own dialog.
    std::function<QFileDialog*(const SaveRequest& request)> makeDialog;
    /// Called after each attempt to write, not for a dialog that was cancelled. `error` is empty on success, else the
    /// cause and what to do, as writeFile() returns it. `path` is the file, or the name of a printer.
    ///
    /// With this function the library shows no box of its own, and files are written as writeFile() does: an error
    /// leaves the previous file. PDF pages count as files.
    std::function<void(QWidget& source, const QString& path, const QString& error)> report;
    /// Called before any question. If it returns true, the host saves by itself, for example with ExportDialog, and the
    /// library does nothing more. A page with a map and both of its cuts is not offered.
    std::function<bool(const SaveRequest& request)> save = {};
};

/// Uses these hooks from now on, for all plots and tables of the process. Empty hooks end it.
TARNIS_EXPORT void setSaveHooks(const SaveHooks& hooks);

} // namespace tarnis
