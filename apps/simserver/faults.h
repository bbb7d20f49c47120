// Faults that the server can simulate. A fault has a name and changes the bytes of a greeting or a reply, given as a
// list of steps for a connection. Uses no sockets.
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

/// Exit code of the process for a fault that makes it exit.
inline constexpr int faultExitCode = 3;

struct FaultInfo {
    enum class Where { Nowhere, Reply, Greeting, Process };

    Fault fault;
    Where where;
    int delayMs; ///< default delay: before a late reply, or between pieces
    const char* name;
    const char* meaning;
};

/// All faults, `none` first.
std::span<const FaultInfo> allFaults();
const FaultInfo& infoOf(Fault fault);
std::optional<Fault> faultByName(const QString& name);
/// One line per fault: name and meaning.
QString faultHelp();

/// One step of sending a reply.
struct Step {
    enum class Kind {
        Write, ///< bytes, whole
        WritePieces, ///< bytes, `piece` at a time with `pauseMs` between them
        Pause, ///< pauseMs
        Close, ///< after everything was sent
        Reset, ///< close so that the peer gets an error; unsent bytes are lost
        Exit, ///< end the process with exit code 3
        Crash, ///< end the process by a signal
    };
    Kind kind = Kind::Write;
    QByteArray bytes;
    qsizetype piece = 0;
    int pauseMs = 0;
};

using Steps = std::vector<Step>;

/// The current fault, and when it takes effect.
class FaultSwitch {
public:
    /// `every`: affects every n-th applicable reply; at least 1. A `delayMs` below 0 selects the default.
    void set(Fault fault, int every, int delayMs);

    Fault fault() const { return m_fault; }
    int every() const { return m_every; }
    int delayMs() const { return m_delayMs < 0 ? infoOf(m_fault).delayMs : m_delayMs; }

    /// The steps of a connection's greeting or of a reply. A reply to which the fault does not apply is sent normally.
    Steps greeting(const QByteArray& text, const QByteArray& prompt);
    Steps reply(Reply reply, const QByteArray& prompt);
    /// True if the next command is to be refused instead of executed. Counts as a reply.
    bool refuses();

private:
    bool strikes();

    Fault m_fault = Fault::None;
    int m_every = 1;
    int m_delayMs = -1;
    quint64 m_count = 0; ///< number of applicable replies so far
    quint64 m_strikes = 0;
    Random m_random { 0, 0, 3 };
};

} // namespace simserver
