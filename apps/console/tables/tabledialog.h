// Additions of the console to the library's table of names and values: a form above the table and a line below it.
#pragma once

class NameValueListDialog;
class QDialogButtonBox;
class QLabel;
class QLayout;
class QPushButton;
class QWidget;
class QTableWidget;

namespace console {

/// The button box of the dialog, with Save and Close.
QDialogButtonBox& buttonBoxOf(NameValueListDialog& dialog);

/// Adds a button before Close, and makes it the default button.
QPushButton* mainButtonOf(NameValueListDialog& dialog);

/// Adds a label for sentences between table and buttons, owned by the dialog.
QLabel* stateLabelOf(NameValueListDialog& dialog);

/// Inserts the form above the table; the dialog takes ownership.
void putOnTop(NameValueListDialog& dialog, QLayout& form);
void putOnTop(NameValueListDialog& dialog, QWidget& form);

/// Sets up the table: columns share the width, alternating row colours, no row numbers; Tab leaves the table.
void layTable(QTableWidget& table);
/// Widens the first column to its texts, at most to half of the table. The user may change it.
void fitNames(QTableWidget& table);

} // namespace console
