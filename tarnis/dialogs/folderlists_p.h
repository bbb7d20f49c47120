// The two lists of a path chooser and their keyboard handling. GUI thread only.
#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

#include <functional>

class QComboBox;
class QListWidget;
class QListWidgetItem;

namespace tarnis {

/// Disables the folder's ancestors and its entries while a request is under way. Qt moves the focus away from a
/// disabled widget; it is restored afterwards, unless the user has moved it. Enter on a folder of the entries opens it
/// instead of pressing the dialog's default button.
class FolderLists : public QObject {
public:
    using Open = std::function<void(QListWidgetItem*)>;

    /// A child of the dialog that owns the lists. `open` is called on a double click.
    FolderLists(QComboBox* ancestors, QListWidget* entries, Open open, QWidget* dialog);

    void setEnabled(bool enabled);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

    void giveFocusBack();

    QComboBox* m_ancestors;
    QListWidget* m_entries;
    Open m_open;
    QWidget* m_dialog;
    QPointer<QWidget> m_focused; ///< the list that had the focus before the request
    QPointer<QWidget> m_substitute; ///< the widget that Qt has moved the focus to
};

} // namespace tarnis
