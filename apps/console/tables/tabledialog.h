// What the console adds to the library's table of names and values: a form above the table and a line below it.
#pragma once

class NameValueListDialog;
class QDialogButtonBox;
class QLabel;
class QLayout;
class QPushButton;
class QWidget;
class QTableWidget;

namespace console {

/// The buttons of the dialog, Save and Close among them.
QDialogButtonBox& buttonBoxOf(NameValueListDialog& dialog);

/// A new button in front of Close, and the one that Enter presses.
QPushButton* mainButtonOf(NameValueListDialog& dialog);

/// A new line for whole sentences between table and buttons, owned by the dialog.
QLabel* stateLabelOf(NameValueListDialog& dialog);

/// Puts the form above the table; the dialog takes it over.
void putOnTop(NameValueListDialog& dialog, QLayout& form);
void putOnTop(NameValueListDialog& dialog, QWidget& form);

/// Columns that share the width, rows in two colours, no row numbers; Tab leaves the table.
void layTable(QTableWidget& table);

} // namespace console
