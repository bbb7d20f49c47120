// A chooser for folders, run directories and new names on the server's side. GUI thread only.
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
class SelectDirectoryDialog;
}

/// Similar to SelectPathDialog. It stores the directory separately from the combo box, compares extensions exactly, and
/// looks up names with an appended suffix in the complete listing.
class TARNIS_EXPORT SelectDirectoryDialog : public QDialog {
    Q_OBJECT
public:
    /// Starts at `dir` without trailing "/", or at the server's own directory if that is empty. Host, port and prompt
    /// are copied from `session`, which is still owned by the caller and not used further.
    SelectDirectoryDialog(QString const& dir, TarnisSession* session, QWidget* parent);
    ~SelectDirectoryDialog() override;

    /// Lists files that end with one of `exts`, "*" for any, too. With `nameEdit` the user types a name, and must
    /// confirm if an entry with that name followed by `suffix` exists. Otherwise a listed entry is selected.
    void setExt(QList<QString> const& exts, bool nameEdit, QString const& suffix);
    /// True for a name with one of the extensions, or for any name except a folder's if "*" is among them.
    bool matchExt(QString const& name);

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
    void onDirComboIndexChanged(QString const& text); ///< changes to `text`, unless the combo box is being filled
    /// Calls onAccepted() for a name with one of the extensions; that reads the edit or the selection, not `item`.
    /// Otherwise opens it as a folder.
    void onCurDirListItemDoubleClicked(QListWidgetItem* item);
    /// Emits accepted() and closes: with the directory, or with the directory, a "/" and the name. The first extension
    /// is appended to a typed name that does not end with it. Does nothing without a name.
    void onAccepted();
    void onFileNameChanged(QString const& text); ///< Ok is enabled for a name that is not empty
    void onCurDirListItemSelectioChanged(); ///< Ok is enabled for a selected name with one of the extensions
    /// Reads the replies to "pwd" and `ls-F`. A refused listing requests the server's own directory, once.
    void result(PTarnisCmd cmd, QByteArray const& payload);

protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

    std::unique_ptr<Ui::SelectDirectoryDialog> ui; ///< the controls
    QString dir; ///< the current directory
    QList<QString> exts; ///< as passed to setExt(); empty: folders only
    QString suffix; ///< see setExt()
    TarnisSession* session = nullptr; ///< owned; null after the window has been closed
    bool comboActive = true; ///< false while the combo box is being filled
    bool nameEdit = false; ///< the user types a name
    QList<QString> allNames; ///< the last listing, sorted, unfiltered
    tarnis::FolderLists* lists; ///< the combo box and the list
    tarnis::FolderRequests* requests; ///< the requests to the server

    QListWidgetItem* selectedItem() const; ///< null without a selection

private:
    TARNIS_NO_EXPORT void showListing(QStringList& names);
    TARNIS_NO_EXPORT void rebuildDirCombo();
    TARNIS_NO_EXPORT bool mayTakeName(QString const& name);
};
