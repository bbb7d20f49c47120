// Ends sessions without waiting for them.
#pragma once

#include <tarnis/tarnis_export.h>

class TarnisSession;

namespace tarnis {

/// Ends a session and deletes it without blocking the caller. Its signals are no longer delivered, its queued commands
/// are destroyed unanswered, its waits (for the server, a connection, or the pause after a command) end at once, and
/// the session's prompt is no longer read. The object is deleted on a library thread when its worker has ended. Any
/// number of sessions can end at the same time. A call that is already queued for a receiver is still delivered.
///
/// A null pointer is ignored. Call it on the session's thread, usually the GUI thread, never on its worker. The session
/// is removed from its parent.
TARNIS_EXPORT void endInBackground(TarnisSession* session);

/// Waits until every session passed to endInBackground() has been deleted. Any thread except a session's. The
/// application object does the same when it is destroyed.
TARNIS_EXPORT void waitForEndingSessions();

} // namespace tarnis
