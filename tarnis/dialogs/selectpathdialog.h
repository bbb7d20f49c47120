// A chooser for files and folders on the server's side. GUI thread only.
#pragma once

#include <tarnis/server/tarniscmd.h>
#include <tarnis/tarnis_export.h>

#include <QDialog>
#include <QList>
#include <QString>

#include <memory>

class QListWidgetItem;
class TarnisSession;
namespace tarnis {
class FolderLists;
class FolderRequests;
} // namespace tarnis
namespace Ui {
class SelectPathDialog;
}

/// Browses the server's file system with "pwd" and `ls-F` on a session of its own. Without setExt() it lists and
/// returns folders only. Session failures are not reported: the lists then stay disabled.
class TARNIS_EXPORT SelectPathDialog : public QDialog {
    Q_OBJECT
public:
    /// Starts at `dir`, or at the server's own directory if it is empty. Host, port and prompt are copied from
    /// `session`, which is still owned by the caller and not used further.
    SelectPathDialog(QString const& dir, TarnisSession* session, QWidget* parent);
    ~SelectPathDialog() override;

    /// Selects a file whose name ends with one of `exts`, case-insensitive; a dot is prepended to each that has none.
    /// With `mustExist` a name that is not listed is refused; with `confirmOverwrite` the user must confirm a listed
    /// one.
    void setExt(QList<QString> const& exts, bool mustExist, bool confirmOverwrite);
    /// True for a name, not of a folder, with one of the extensions.
    bool matchExt(QString const& name);

    /// Changes to `dir` and lists it, unless it is the current one.
    void setDir(QString const& dir);
    QString getDir() const; ///< the current directory; empty until the server has reported its own
    /// The listed names in the order of the list, folders with a trailing "/".
    QList<QString> getNames() const;

    /// Removes all "/" at the end of `path`: "/" becomes empty.
    void trimDir(QString& path);
    /// Requests the server's own directory, changes to it and lists it.
    void requestPwd();
    /// Lists the current directory. If that fails, the dialog changes once to the server's own one.
    void requestLs();

Q_SIGNALS:
    /// The chosen path on the server. Emitted before the dialog closes.
    void accepted(QString const& path);

public Q_SLOTS:
    void onDirComboIndexChanged(QString const& text); ///< lists the directory in the combo box; `text` is not used
    /// Opens a folder. For a name with one of the extensions it calls onAccepted(), which uses the edit, not `item`.
    void onCurDirListItemDoubleClicked(QListWidgetItem* item);
    /// Emits accepted() and closes: with the directory, or with the typed name in it, to which the first extension is
    /// appended if it has none. Does nothing for an empty name and one with a "/"; see setExt() for refused names.
    void onAccepted();
    void onFileNameChanged(QString const& text); ///< Ok is enabled for a name that is not empty
    /// Copies a name with one of the extensions into the edit. Ok is enabled only for such a name.
    void onCurDirListChanged(QString const& text);
    /// Reads the replies to "pwd" and `ls-F`. A refused listing requests the server's own directory, once.
    void result(PTarnisCmd cmd, QByteArray const& payload);

protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

    std::unique_ptr<Ui::SelectPathDialog> ui; ///< the controls
    TarnisSession* session = nullptr; ///< owned; null after the window has been closed
    QList<QString> exts; ///< each with its dot; empty: folders only
    bool mustExist = false; ///< see setExt()
    bool confirmOverwrite = false; ///< see setExt()
    tarnis::FolderLists* lists; ///< the combo box and the list
    tarnis::FolderRequests* requests; ///< the requests to the server

private:
    TARNIS_NO_EXPORT void showListing(QStringList& names);
    TARNIS_NO_EXPORT void goTo(QString const& dir);
    TARNIS_NO_EXPORT bool mayTakeName(QString const& name);
    TARNIS_NO_EXPORT void finish(QString const& path);
};
