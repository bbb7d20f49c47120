// A list of check boxes with all-or-none buttons, for a host application. GUI thread only.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QDialog>

#include <memory>

namespace Ui {
class DialogCheckList;
}

/// Lets the user tick entries of a list; accepted by Ok, rejected by Cancel. The check states remain readable after
/// both. Out-of-range indices read as an empty unchecked entry and are ignored on writing.
class TARNIS_EXPORT DialogCheckList : public QDialog {
    Q_OBJECT
public:
    /// A non-empty `title` becomes the window title.
    DialogCheckList(QString const& title, QWidget* parent);
    ~DialogCheckList() override;

    /// The text above the list; an empty one takes no space.
    void setDescription(QString const& text);
    /// Appends an entry.
    void addItem(QString const& text, bool checked);
    int count() const; ///< number of entries
    /// Returns an entry. A partially checked one is returned as unchecked.
    void getItem(int index, QString& text, bool& checked) const;
    void setChecked(int index, bool checked); ///< checks or unchecks an entry

public Q_SLOTS:
    void on_buttonCheckAll_clicked(); ///< checks every entry
    void on_buttonUncheckAll_clicked(); ///< unchecks every entry
    void on_buttonInvert_clicked(); ///< checks the unchecked and the partially checked, unchecks the others

protected:
    std::unique_ptr<Ui::DialogCheckList> ui; ///< the controls
};
