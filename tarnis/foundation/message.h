/// @file
/// The messages that the library shows to the user. A program with widgets shows message boxes. A host can show them
/// differently, for example in a status line, by setting a handler.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QFlags>
#include <QString>

#include <functional>

class QObject;

namespace tarnis {

/// What a message is about. The values are those of QMessageBox::Icon.
enum class MessageKind {
    Plain, ///< without an icon
    Information, ///< something that the user should know
    Warning, ///< something went wrong, or could
    Critical, ///< an error of the program
    Question ///< the answer determines the action
};

/// A button of a message, and the answer to it. The values are those of QMessageBox::StandardButton.
enum class MessageButton {
    None = 0, ///< as an answer: the user gave none, and nothing is done
    Ok = 0x00000400, ///< does what the text asks, or closes the message
    Yes = 0x00004000, ///< accepts
    No = 0x00010000, ///< declines
    Cancel = 0x00400000 ///< nothing is done
};
/// A set of buttons.
Q_DECLARE_FLAGS(MessageButtons, MessageButton)
Q_DECLARE_OPERATORS_FOR_FLAGS(MessageButtons)

/// One message. Its texts are plain text in the current language; a text from the server is quoted in full.
struct Message {
    MessageKind kind = MessageKind::Information; ///< what it is about
    QString title = {}; ///< often the application's name; may be empty
    QString text = {}; ///< the message itself
    MessageButtons buttons = MessageButton::Ok; ///< the possible answers; a message without a choice has only Ok
    MessageButton defaultButton = MessageButton::None; ///< the answer of the Return key; None: the handler's choice
    QObject* window = nullptr; ///< the QWidget that the message belongs to; may be null, not owned
};

/// Shows a message and returns the answer, one of its buttons or MessageButton::None. Called on the thread that shows
/// the message: normally the GUI thread. It may run an event loop, in which the window may be destroyed. Without a
/// choice it may return at once and show the message later.
using MessageHandler = std::function<MessageButton(const Message&)>;

/// Passes every message of the library, including those of the dialogs, to `handler` instead of the default handler. An
/// empty function restores the default. Returns the previous handler, empty if there was none. Any thread.
TARNIS_EXPORT MessageHandler setMessageHandler(MessageHandler handler);

/// The handler in use if the host has set none. In a program that links Tarnis::Tarnis and has a QApplication: a
/// QMessageBox, which waits for the answer. Elsewhere: a warning of the logging category `tarnis.foundation`, and the
/// answer MessageButton::None. A host's handler can call it for messages that it does not show itself. Any thread.
TARNIS_EXPORT MessageHandler defaultMessageHandler();

/// Replaces the default handler: for a library that shows messages with another toolkit. An empty function restores the
/// warning in the Qt log. Any thread.
TARNIS_EXPORT void setDefaultMessageHandler(MessageHandler handler);

/// Shows a message with the current handler and returns the answer.
TARNIS_EXPORT MessageButton showMessage(const Message& message);

} // namespace tarnis
