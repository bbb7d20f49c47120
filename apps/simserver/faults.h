// The ways in which the server can misbehave on demand. A fault is a name, and what it does to the bytes of a greeting
// or a reply: a list of steps that a connection carries out. Nothing here touches a socket.
#pragma once

#include "random.h"
#include "reply.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <span>
#include <vector>

namespace simserver {

enum class Fault {
    None,
    // Any reply
    Bytewise,
    Chunks,
    SplitPrompt,
    EarlyPrompt,
    Trailing,
    Slow,
    Silent,
    NoPrompt,
    Garbage,
    Refuse,
    CloseBefore,
    CloseInReply,
    CloseAfter,
    ResetInReply,
    Exit,
    Crash,
    // Binary replies
    SplitLength,
    WrongLength,
    ShortLength,
    ZeroLength,
    NegativeLength,
    OversizedLength,
    CutPayload,
    EmptyPayload,
    BadValues,
    NoAxis,
    BadIndex,
    WrongCounts,
    // The greeting
    NoGreeting,
    LateGreeting,
    SplitGreeting,
    CloseAtGreeting,
    // The process
    PortSplit,
    PortLate,
    PortZero,
    PortRange,
    PortMissing,
    StartExit,
    StartCrash,
    IgnoreExit,
};

/// How the process ends by a fault that makes it exit.
inline constexpr int faultExitCode = 3;

struct FaultInfo {
    enum class Where { Nowhere, Reply, Greeting, Process };

    Fault fault;
    Where where;
    int delayMs; ///< the usual pause: before what is late, or between pieces
    const char* name;
    const char* meaning;
};

/// All faults, `none` first.
std::span<const FaultInfo> allFaults();
const FaultInfo& infoOf(Fault fault);
std::optional<Fault> faultByName(const QString& name);
/// One line a fault: name and meaning.
QString faultHelp();

/// What a connection does with the bytes of a reply.
struct Step {
    enum class Kind {
        Write, ///< bytes, whole
        WritePieces, ///< bytes, `piece` at a time with `pauseMs` between them
        Pause, ///< pauseMs
        Close, ///< after everything has gone out
        Reset, ///< close so that the peer sees an error; what has not gone out is lost
        Exit, ///< end the process with exit code 3
        Crash, ///< end the process by a signal
    };
    Kind kind = Kind::Write;
    QByteArray bytes;
    qsizetype piece = 0;
    int pauseMs = 0;
};

using Steps = std::vector<Step>;

/// The fault that is set, and how often and how it strikes.
class FaultSwitch {
public:
    /// `every`: each so-many-th reply that the fault can act on; at least 1. `delayMs` below 0 means the usual one.
    void set(Fault fault, int every, int delayMs);

    Fault fault() const { return m_fault; }
    int every() const { return m_every; }
    int delayMs() const { return m_delayMs < 0 ? infoOf(m_fault).delayMs : m_delayMs; }

    /// The steps of a connection's greeting, of a reply. A reply to which the fault does not apply comes as it should.
    Steps greeting(const QByteArray& text, const QByteArray& prompt);
    Steps reply(Reply reply, const QByteArray& prompt);
    /// True if the next command is to be refused instead of carried out. Counts as a reply.
    bool refuses();

private:
    bool strikes();

    Fault m_fault = Fault::None;
    int m_every = 1;
    int m_delayMs = -1;
    quint64 m_count = 0; ///< replies so far that the fault could act on
    quint64 m_strikes = 0;
    Random m_random { 0, 0, 3 };
};

} // namespace simserver
