// Requests the end of a session, for callers that delete it themselves.
#pragma once

class TarnisSession;

namespace tarnis {

/// Access to the private parts of a session for endInBackground() and the manager.
class SessionEnd {
public:
    /// Ends the worker's waits and its loop; returns at once. Any thread.
    static void request(TarnisSession& session);
};

} // namespace tarnis
