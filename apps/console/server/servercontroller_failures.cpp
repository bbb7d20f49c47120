// Texts that explain why a server is not connected, and what to do.
#include "server/servercontroller.h"

#include "server/replytext.h"

namespace console {

QString ServerController::adviceAgain(bool isLocal)
{
    return isLocal ? tr("Start it again to go on.") : tr("Connect again to go on.");
}

Alert ServerController::probeFailure(ServerProbe::Outcome outcome) const
{
    if (outcome == ServerProbe::Outcome::Refused)
        return refusalFailure();
    const QString address = QStringLiteral("%1:%2")
                                .arg(isLocal() ? m_tarnis.host() : m_choice.host)
                                .arg(isLocal() ? m_tarnis.port() : m_choice.port);
    return outcome == ServerProbe::Outcome::NoPrompt ? greetingFailure(address) : reachFailure(address);
}

/// The server answers, but accepts no connection.
Alert ServerController::refusalFailure() const
{
    return alertOf(
        Alert::Severity::Failure,
        [name = serverName(), reason = m_probe.refusal()] {
            return tr("%1 refuses the connection: %2. Disconnect another client of this server, then try again.")
                .arg(name, reason);
        },
        AlertAction::ConnectAgain);
}

/// A server answers, but not with the prompt.
Alert ServerController::greetingFailure(const QString& address) const
{
    const auto severity = Alert::Severity::Failure;
    const QString shownPrompt = promptToText(prompt());
    if (m_hasGreeted) // so the prompt is right
        return alertOf(
            severity,
            [isLocal = isLocal(), name = serverName()] {
                return tr("%1 accepts connections, but no longer sends its greeting.").arg(name) + u' '
                    + adviceAgain(isLocal);
            },
            again());
    if (isLocal())
        return alertOf(
            severity,
            [shownPrompt, name = serverName()] {
                return tr(
                    "%1 runs, but does not send the prompt \u201c%2\u201d. Choose the server with the correct prompt.")
                    .arg(name, shownPrompt);
            },
            AlertAction::ChooseServer);
    return alertOf(
        severity,
        [shownPrompt, address] {
            return tr(
                "A program answers at %1, but does not send the prompt \u201c%2\u201d. Check the port and the prompt.")
                .arg(address, shownPrompt);
        },
        AlertAction::ChooseServer);
}

/// Why the probe cannot reach the address.
tarnis::TranslatedText ServerController::obstacle(const QString& address) const
{
    switch (m_probe.socketError()) {
    case QAbstractSocket::HostNotFoundError:
        return [address] { return tr("The host of %1 was not found. Check its name.").arg(address); };
    case QAbstractSocket::ConnectionRefusedError:
        return [address] { return tr("Nothing answers at %1: the connection was refused.").arg(address); };
    case QAbstractSocket::SocketTimeoutError:
        return [address, seconds = m_probeTimeoutMs / 1000.0] {
            return tr("Nothing answers at %1 within %2 s.").arg(address).arg(seconds);
        };
    default:
        return [address, error = m_probe.errorText()] { return tr("No connection to %1: %2.").arg(address, error); };
    }
}

/// No server answers: a wrong address, or a known server that has ended.
Alert ServerController::reachFailure(const QString& address) const
{
    const auto severity = Alert::Severity::Failure;
    const tarnis::TranslatedText what = obstacle(address);
    if (m_probe.socketError() == QAbstractSocket::HostNotFoundError)
        return alertOf(severity, what, AlertAction::ChooseServer);
    if (isLocal())
        return alertOf(
            severity, [what] { return what() + u' ' + adviceAgain(true); }, again());
    if (m_known == m_choice)
        return alertOf(
            severity, [what] { return what() + u' ' + tr("Check that the server runs there, then connect again."); },
            again());
    return alertOf(
        severity, [what] { return what() + u' ' + tr("Check host and port, and that the server runs there."); },
        AlertAction::ChooseServer);
}

} // namespace console
