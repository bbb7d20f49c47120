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
/// returns folders only. Session failures are shown nowhere: the lists then stay disabled.
class TARNIS_EXPORT SelectPathDialog : public QDialog {
    Q_OBJECT
public:
    /// Starts at `dir`, or at the server's own directory where it is empty. Host, port and prompt come from `session`,
    /// which stays the caller's and is not used further.
    SelectPathDialog(QString const& dir, TarnisSession* session, QWidget* parent);
    ~SelectPathDialog() override;

    /// Asks for a file name that ends, in any case, with one of `exts`; a dot is put before each that has none.
    /// Choosing a name that is not listed is refused with `mustExist`; one that is listed is asked about with
    /// `confirmOverwrite`.
    void setExt(QList<QString> const& exts, bool mustExist, bool confirmOverwrite);
    /// True for a name, not of a folder, with one of the extensions.
    bool matchExt(QString const& name);

    /// Goes to `dir` and lists it, unless it is the current one.
    void setDir(QString const& dir);
    QString getDir() const; ///< the current directory; empty while the server has not told its own
    /// The listed names, folders with a "/" behind, in the order of the list.
    QList<QString> getNames() const;

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
    void onDirComboIndexChanged(QString const& text); ///< lists what the combo box shows; `text` is not read
    /// Opens a folder. For a name with one of the extensions it calls onAccepted(), which reads the edit, not `item`.
    void onCurDirListItemDoubleClicked(QListWidgetItem* item);
    /// Emits accepted() and closes: with the directory, or with the typed name in it, to which the first extension is
    /// appended if it has none. An empty name and one with a "/" do nothing; refusals as setExt() says.
    void onAccepted();
    void onFileNameChanged(QString const& text); ///< Ok is on for a name that is not empty
    /// Takes a name with one of the extensions into the edit; Ok is on for such a name only.
    void onCurDirListChanged(QString const& text);
    /// Reads the replies to "pwd" and `ls-F`. A refused listing asks for the server's own directory, once.
    void result(PTarnisCmd cmd, QByteArray const& payload);

protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

    /// @cond
    TARNIS_NO_EXPORT void showListing(QStringList& names);
    TARNIS_NO_EXPORT void goTo(QString const& dir);
    /// @endcond
    bool mayTakeName(QString const& name); ///< whether setExt() lets it pass; tells or asks in a box
    void finish(QString const& path); ///< emits accepted() and closes

    std::unique_ptr<Ui::SelectPathDialog> ui; ///< the controls
    TarnisSession* session = nullptr; ///< owned; null after the window has been closed
    QList<QString> exts; ///< each with its dot; empty: folders only
    bool mustExist = false; ///< see setExt()
    bool confirmOverwrite = false; ///< see setExt()
    tarnis::FolderLists* lists; ///< the combo box and the list
    tarnis::FolderRequests* requests; ///< what it asks of the server
};
