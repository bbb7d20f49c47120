// One client of a ScriptedServer: a thread that executes the script on the socket and always continues reading.
#pragma once

#include "support/scriptedserver.h"

#include <deque>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace tarnis::testing {

/// Ends a poll() from another thread.
class WakeUp {
public:
    WakeUp();
    ~WakeUp();
    WakeUp(const WakeUp&) = delete;
    WakeUp& operator=(const WakeUp&) = delete;
    void signal() const;
    /// Until signal(), until `socket` can be read (or written, on demand), or for `microseconds` where not negative.
    void waitWith(int socket, bool forWriting = false, long microseconds = -1) const;

private:
    int m_event;
};

struct Gate {
    int permits = 0;
    int waiting = 0;
    bool open = false;
};

/// State shared by all connections of a server. Everything except the prompt is guarded by the mutex.
struct SharedState {
    std::mutex mutex;
    std::string prompt;
    std::map<std::string, std::deque<Script>> answers;
    std::function<Script(const std::string& request)> responder;
    std::map<std::string, Gate> gates;
    std::vector<std::string> requests;
    std::vector<std::string> failures;
};

class ScriptedConnection {
public:
    ScriptedConnection(SharedState& shared, int socket, Script script);
    ~ScriptedConnection();
    ScriptedConnection(const ScriptedConnection&) = delete;
    ScriptedConnection& operator=(const ScriptedConnection&) = delete;
    void wakeUp() const { m_wakeUp.signal(); }

    std::string received; ///< guarded by the mutex of the shared state, like the two flags
    bool isOpen = true;
    bool clientClosed = false;

private:
    enum class Flow { Continue, Stop };
    using Condition = std::function<bool()>; ///< called with the mutex held

    void play();
    Flow play(const Script& script);
    Flow play(const Step& step);
    Flow sendPieces(const Step& step);
    Flow sendAll(std::string_view bytes);
    Flow expect(const std::string& bytes);
    Flow hold(const std::string& gate);
    Flow serve();
    Flow waitUntil(const Condition& condition);
    void pump();
    void noteRequests();
    bool clientHasTaken() const;
    Script answerTo(const std::string& request);
    std::string bytesOf(const Step& step) const;

    SharedState& m_shared;
    int m_socket;
    const Script m_script;
    std::size_t m_used = 0; ///< of `received`, by expect() and serve()
    std::size_t m_noted = 0; ///< of `received`, in the list of requests
    WakeUp m_wakeUp;
    std::stop_token m_stop;
    std::jthread m_thread;
};

} // namespace tarnis::testing
