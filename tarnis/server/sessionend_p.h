// The request that a session ends, for those who delete it themselves.
#pragma once

class TarnisSession;

namespace tarnis {

/// What endInBackground() and the manager do with a session's private parts.
class SessionEnd {
public:
    /// Ends the worker's waits and its loop; returns at once. Any thread.
    static void request(TarnisSession& session);
};

} // namespace tarnis
