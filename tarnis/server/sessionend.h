// Ending sessions without waiting for them.
#pragma once

#include <tarnis/tarnis_export.h>

class TarnisSession;

namespace tarnis {

/// Ends a session and deletes it without blocking the caller. Its signals are no longer delivered, its queued commands
/// are destroyed unanswered, its waits for the server, for a connection and for a command's pause end at once, and the
/// session's prompt is not read any more. The object is deleted on a thread of the library when its worker has ended,
/// with any number of sessions ending at the same time. A call that the session has queued for a receiver by now still
/// arrives there.
///
/// A null pointer does nothing. To be called on the session's thread, usually the GUI thread, and not by its worker. A
/// parent loses the session.
TARNIS_EXPORT void endInBackground(TarnisSession* session);

/// Waits until every session that endInBackground() was given has been deleted. Any thread but a session's. The
/// application object waits likewise when it is destroyed.
TARNIS_EXPORT void waitForEndingSessions();

} // namespace tarnis
