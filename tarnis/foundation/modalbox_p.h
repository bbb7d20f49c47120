// Boxes that the code waits for. Their parent may be deleted meanwhile - a window that deletes itself on close, a host
// that tidies up: the box then goes with it, and the caller learns that nothing was answered. GUI thread only.
#pragma once

#include <QMessageBox>
#include <QPointer>
#include <QString>

#include <memory>
#include <optional>

class QDialog;

namespace tarnis {

/// Runs a dialog that was made with `new`. True if it was accepted and is still there; one that is not accepted is
/// deleted.
bool isAccepted(const QPointer<QDialog>& dialog);

/// Shows a message by the handler in use, by default a QMessageBox: see message.h. The box shows plain text; a
/// long one is shortened, with more of it behind the button "Show Details...". NoButton if the parent went while the
/// box was open.
QMessageBox::StandardButton showBox(QMessageBox::Icon icon, QWidget* parent, const QString& title, const QString& text,
    QMessageBox::StandardButtons buttons = QMessageBox::Ok,
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton);

/// What QFileDialog::getSaveFileName() does. Empty if the parent went.
QString askSaveFileName(QWidget* parent, const QString& caption, const QString& directory, const QString& filter);

/// What QInputDialog::getText() does. Nothing if it was not accepted or the parent went.
std::optional<QString> askText(QWidget* parent, const QString& title, const QString& label, const QString& text);

} // namespace tarnis
