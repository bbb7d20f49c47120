// Modal boxes. The parent may be deleted while a box is open, for example a window that deletes itself on close. The
// box is then destroyed too, and the result says that there was no answer. GUI thread only.
#pragma once

#include <QMessageBox>
#include <QPointer>
#include <QString>

#include <memory>
#include <optional>

class QDialog;

namespace tarnis {

/// Runs a dialog that was created with `new`. Returns true if it was accepted and still exists; otherwise it is
/// deleted.
bool isAccepted(const QPointer<QDialog>& dialog);

/// Shows a message with the current handler, by default a QMessageBox: see message.h. The box shows plain text. A long
/// text is shortened, and the button "Show Details..." shows more of it. Returns NoButton if the parent was destroyed
/// while the box was open.
QMessageBox::StandardButton showBox(QMessageBox::Icon icon, QWidget* parent, const QString& title, const QString& text,
    QMessageBox::StandardButtons buttons = QMessageBox::Ok,
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton);

/// As QFileDialog::getSaveFileName(). Empty if the parent was destroyed.
QString askSaveFileName(QWidget* parent, const QString& caption, const QString& directory, const QString& filter);

/// As QInputDialog::getText(). Empty if the dialog was cancelled or the parent was destroyed.
std::optional<QString> askText(QWidget* parent, const QString& title, const QString& label, const QString& text);

} // namespace tarnis
