// Something that the user should know and can act on: words, and at most one thing to press.
#pragma once

#include "app/words.h"

#include <QMetaType>
#include <QString>

namespace console {

/// What one press of the notice's button does.
enum class Remedy {
    None,
    StartAgain, ///< start the previous server
    ConnectAgain, ///< connect to the previous server
    ChooseServer, ///< ask which server to use
    Stop, ///< give up waiting for the server to come up
    EndByForce, ///< kill the local server
    SendAgain, ///< send the command that was lost
};

struct Notice {
    enum class Severity { Information, Warning, Failure };
    Severity severity = Severity::Information;
    QString text; ///< whole sentences; what happened, then what to do
    Remedy remedy = Remedy::None;

    Words words = {}; ///< `text` in the current language, if given

    bool operator==(const Notice& other) const
    {
        return severity == other.severity && text == other.text && remedy == other.remedy;
    }
};

inline Notice noticeOf(Notice::Severity severity, const Words& words, Remedy remedy = Remedy::None)
{
    return { severity, words(), remedy, words };
}

} // namespace console

Q_DECLARE_METATYPE(console::Notice)
