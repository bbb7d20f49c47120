#include "tarnis/foundation/modalbox_p.h"

#include "tarnis/foundation/shorttext_p.h"

#include <QDialog>
#include <QFileDialog>
#include <QInputDialog>

namespace tarnis {

namespace {

// What a box can show on a small screen, and what its details can show at once.
constexpr qsizetype boxChars = 1500;
constexpr int boxLines = 15;
constexpr qsizetype detailChars = 20000;
constexpr int detailLines = 500;

} // namespace

bool isAccepted(const QPointer<QDialog>& dialog)
{
    const bool accepted = dialog->exec() == QDialog::Accepted;
    if (!accepted)
        delete dialog.data();
    return accepted && dialog;
}

QMessageBox::StandardButton showBox(QMessageBox::Icon icon, QWidget* parent, const QString& title, const QString& text,
    QMessageBox::StandardButtons buttons, QMessageBox::StandardButton defaultButton)
{
    const QString shown = shortText(text, boxChars, boxLines);
    const QPointer<QMessageBox> box = new QMessageBox(icon, title, shown, buttons, parent);
    box->setTextFormat(Qt::PlainText); // before the box measures it: a server's text is not markup
    if (shown != text)
        box->setDetailedText(shortText(text, detailChars, detailLines));
    box->setDefaultButton(defaultButton);
    box->exec();
    if (!box)
        return QMessageBox::NoButton;
    const std::unique_ptr<QMessageBox> owner(box);
    return box->standardButton(box->clickedButton());
}

QString askSaveFileName(QWidget* parent, const QString& caption, const QString& directory, const QString& filter)
{
    auto* const dialog = new QFileDialog(parent, caption, directory, filter);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setFileMode(QFileDialog::AnyFile);
    if (!isAccepted(dialog))
        return {};
    const std::unique_ptr<QFileDialog> owner(dialog);
    return dialog->selectedFiles().value(0);
}

std::optional<QString> askText(QWidget* parent, const QString& title, const QString& label, const QString& text)
{
    auto* const dialog = new QInputDialog(parent);
    dialog->setWindowTitle(title);
    dialog->setLabelText(label);
    dialog->setTextValue(text);
    if (!isAccepted(dialog))
        return std::nullopt;
    const std::unique_ptr<QInputDialog> owner(dialog);
    return dialog->textValue();
}

} // namespace tarnis
