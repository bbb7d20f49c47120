// An alert for the user: a text, and at most one action.
#pragma once

#include <tarnis/foundation/retranslator.h>

#include <QMetaType>
#include <QString>

namespace console {

/// The action of the alert's button.
enum class AlertAction {
    None,
    StartAgain, ///< start the previous server
    ConnectAgain, ///< connect to the previous server
    ChooseServer, ///< choose the server
    Stop, ///< stop waiting for the server
    EndByForce, ///< kill the local server
    SendAgain, ///< send the lost command
};

struct Alert {
    enum class Severity { Information, Warning, Failure };
    Severity severity = Severity::Information;
    QString text; ///< whole sentences; what happened, then what to do
    AlertAction action = AlertAction::None;

    tarnis::TranslatedText translated = {}; ///< `text` in the current language, if given

    bool operator==(const Alert& other) const
    {
        return severity == other.severity && text == other.text && action == other.action;
    }
};

inline Alert alertOf(
    Alert::Severity severity, const tarnis::TranslatedText& translated, AlertAction action = AlertAction::None)
{
    return { severity, translated(), action, translated };
}

} // namespace console

Q_DECLARE_METATYPE(console::Alert)
