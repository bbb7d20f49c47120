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

/// The near twin of SelectPathDialog: it keeps the directory apart from the combo box, compares extensions exactly, and
/// looks names up in the whole listing with a suffix behind them.
class TARNIS_EXPORT SelectDirectoryDialog : public QDialog {
    Q_OBJECT
public:
    /// Starts at `dir` less its trailing "/", or at the server's own directory where nothing is left. Host, port and
    /// prompt come from `session`, which stays the caller's and is not used further.
    SelectDirectoryDialog(QString const& dir, TarnisSession* session, QWidget* parent);
    ~SelectDirectoryDialog() override;

    /// Lists files that end with one of `exts`, "*" for any, too. With `nameEdit` a name is typed, and an existing
    /// entry of that name followed by `suffix` is asked about; without it a listed entry is selected.
    void setExt(QList<QString> const& exts, bool nameEdit, QString const& suffix);
    /// True for a name with one of the extensions, or any that is not of a folder where "*" is among them.
    bool matchExt(QString const& name);

    /// Removes all "/" at the end of `path`: "/" becomes empty.
    void trimDir(QString& path);
    /// Asks for the server's own directory, goes there and lists it.
    void requestPwd();
    /// Lists the current directory. Where that fails, the dialog goes to the server's own one, once.
    void requestLs();

Q_SIGNALS:
    /// The chosen path as the server sees it, before the dialog closes.
    void accepted(QString const& path);

public Q_SLOTS:
    void onDirComboIndexChanged(QString const& text); ///< goes to `text`, unless the combo box is being filled
    /// Calls onAccepted() for a name with one of the extensions, which reads edit or selection, not `item`; else opens
    /// it as a folder.
    void onCurDirListItemDoubleClicked(QListWidgetItem* item);
    /// Emits accepted() and closes: with the directory, or with a "/" and the name behind it. A typed name gets the
    /// first extension if it does not end with that. Without a name it does nothing.
    void onAccepted();
    void onFileNameChanged(QString const& text); ///< Ok is on for a name that is not empty
    void onCurDirListItemSelectioChanged(); ///< Ok is on for a selected name with one of the extensions
    /// Reads the replies to "pwd" and `ls-F`. A refused listing asks for the server's own directory, once.
    void result(PTarnisCmd cmd, QByteArray const& payload);

protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

    /// @cond
    TARNIS_NO_EXPORT void showListing(QStringList& names);
    /// @endcond
    void rebuildDirCombo(); ///< the directory and those above it
    QListWidgetItem* selectedItem() const; ///< null without a selection
    bool mayTakeName(QString const& name); ///< asks about a name that is listed with the suffix behind it

    std::unique_ptr<Ui::SelectDirectoryDialog> ui; ///< the controls
    QString dir; ///< the current directory
    QList<QString> exts; ///< as given to setExt(); empty: folders only
    QString suffix; ///< see setExt()
    TarnisSession* session = nullptr; ///< owned; null after the window has been closed
    bool comboActive = true; ///< false while the combo box is being filled
    bool nameEdit = false; ///< a name is typed
    QList<QString> allNames; ///< the last listing, sorted, unfiltered
    tarnis::FolderLists* lists; ///< the combo box and the list
    tarnis::FolderRequests* requests; ///< what it asks of the server
};
