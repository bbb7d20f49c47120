#include "tarnis/foundation/modalbox_p.h"

#include "tarnis/foundation/message.h"
#include "tarnis/foundation/messagelog_p.h"
#include "tarnis/foundation/shorttext_p.h"

#include <QApplication>
#include <QDialog>
#include <QFileDialog>
#include <QInputDialog>

namespace tarnis {

namespace {

// Limits of a box on a small screen, and of its details.
constexpr qsizetype boxChars = 1500;
constexpr int boxLines = 15;
constexpr qsizetype detailChars = 20000;
constexpr int detailLines = 500;

// The kinds and buttons of a message have the values of those of QMessageBox.
static_assert(int(MessageKind::Plain) == QMessageBox::NoIcon && int(MessageKind::Question) == QMessageBox::Question
    && int(MessageKind::Information) == QMessageBox::Information && int(MessageKind::Warning) == QMessageBox::Warning
    && int(MessageKind::Critical) == QMessageBox::Critical);
static_assert(int(MessageButton::None) == QMessageBox::NoButton && int(MessageButton::Ok) == QMessageBox::Ok
    && int(MessageButton::Yes) == QMessageBox::Yes && int(MessageButton::No) == QMessageBox::No
    && int(MessageButton::Cancel) == QMessageBox::Cancel);

MessageButton showMessageBox(const Message& message)
{
    if (!qobject_cast<QApplication*>(QCoreApplication::instance()))
        return logMessage(message);
    const QString shown = shortText(message.text, boxChars, boxLines);
    const QPointer<QMessageBox> box = new QMessageBox(QMessageBox::Icon(message.kind), message.title, shown,
        QMessageBox::StandardButtons(message.buttons.toInt()), qobject_cast<QWidget*>(message.window));
    box->setTextFormat(Qt::PlainText); // before the box measures it: a server's text is not markup
    if (shown != message.text)
        box->setDetailedText(shortText(message.text, detailChars, detailLines));
    box->setDefaultButton(QMessageBox::StandardButton(message.defaultButton));
    box->exec();
    if (!box)
        return MessageButton::None;
    const std::unique_ptr<QMessageBox> owner(box);
    return MessageButton(box->standardButton(box->clickedButton()));
}

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
    return QMessageBox::StandardButton(showMessage({ .kind = MessageKind(icon),
        .title = title,
        .text = text,
        .buttons = MessageButtons::fromInt(int(buttons)),
        .defaultButton = MessageButton(defaultButton),
        .window = parent }));
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

// Programs need no call to get message boxes: the handler is set while this part of the library is loaded.
static void installMessageBoxes()
{
    tarnis::setDefaultMessageHandler(tarnis::showMessageBox);
}
static void removeMessageBoxes()
{
    tarnis::setDefaultMessageHandler({});
}
Q_CONSTRUCTOR_FUNCTION(installMessageBoxes)
Q_DESTRUCTOR_FUNCTION(removeMessageBoxes)
