// A read-only table of names and values with a Save button. GUI thread only.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QDialog>
#include <QList>
#include <QString>

#include <memory>

class QAbstractButton;
class QTableWidget;
struct NameValue;
struct NameValues;
namespace Ui {
class NameValueListDialog;
}

/// The constructor shows the dialog. It is not deleted on close; the host decides.
class TARNIS_EXPORT NameValueListDialog : public QDialog {
    Q_OBJECT
public:
    /// Two columns: `nameHeader` and "Value".
    NameValueListDialog(QList<NameValue> const& list, QWidget* parent, QString const& nameHeader);
    /// A column for each of `headers`, the first one for the names. The window is as wide as its columns.
    NameValueListDialog(QList<NameValues> const& list, QList<QString> const& headers, QWidget* parent);
    ~NameValueListDialog() override;

    /// Shows `list`, one row per record, in the existing columns.
    void updateList(QList<NameValue> const& list);
    /// Shows `list`; with `headers`, replaces the columns. Cells for which a record has no value are unchanged.
    void updateList(QList<NameValues> const& list, QList<QString> const* headers);

    /// The table, owned by the dialog.
    QTableWidget* table();

public Q_SLOTS:
    void onButtonClicked(QAbstractButton* button); ///< calls onSave() for "Save"; nothing for other buttons
    /// Asks for a path and writes the table as CSV, without quoting. Does nothing if the file cannot be opened.
    void onSave();

protected:
    void changeEvent(QEvent* event) override;

    std::unique_ptr<Ui::NameValueListDialog> ui; ///< the controls

private:
    TARNIS_NO_EXPORT void setUpForm();
};
