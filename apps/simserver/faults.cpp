#include "faults.h"

#include "text.h"

#include <tarnis/foundation/log.h>

#include <QList>

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

namespace simserver {

namespace {

using Where = FaultInfo::Where;

constexpr auto faults = std::to_array<FaultInfo>({
    { Fault::None, Where::Nowhere, 0, "none", "everything as it should be" },
    { Fault::Bytewise, Where::Reply, 0, "bytewise", "replies come one byte at a time" },
    { Fault::Chunks, Where::Reply, 1, "chunks", "replies come in pieces of random size with pauses" },
    { Fault::SplitPrompt, Where::Reply, 50, "split-prompt",
        "the prompt comes in two pieces, cut at each place in turn" },
    { Fault::EarlyPrompt, Where::Reply, 50, "early-prompt", "text replies hold the prompt inside, at a piece's end" },
    { Fault::Trailing, Where::Reply, 0, "trailing", "bytes follow the prompt" },
    { Fault::Slow, Where::Reply, 2000, "slow", "replies come whole, but late" },
    { Fault::Silent, Where::Reply, 0, "silent", "commands are carried out and not answered" },
    { Fault::NoPrompt, Where::Reply, 0, "no-prompt", "replies come without the prompt" },
    { Fault::Garbage, Where::Reply, 0, "garbage", "random bytes and the prompt come instead of replies" },
    { Fault::Refuse, Where::Reply, 0, "refuse", "every command is refused" },
    { Fault::CloseBefore, Where::Reply, 0, "close-before", "the connection is closed instead of a reply" },
    { Fault::CloseInReply, Where::Reply, 0, "close-in-reply", "the connection is closed after half a reply" },
    { Fault::CloseAfter, Where::Reply, 0, "close-after", "the connection is closed after the reply" },
    { Fault::ResetInReply, Where::Reply, 50, "reset-in-reply", "the connection is reset after half a reply" },
    { Fault::Exit, Where::Reply, 0, "exit", "the process ends with exit code 3 when a command comes" },
    { Fault::Crash, Where::Reply, 0, "crash", "the process ends by a signal when a command comes" },
    { Fault::SplitLength, Where::Reply, 50, "split-length",
        "binary replies: the length comes in two pieces, 3 + 1 bytes" },
    { Fault::WrongLength, Where::Reply, 0, "wrong-length", "binary replies announce 8 bytes more than they hold" },
    { Fault::ShortLength, Where::Reply, 0, "short-length", "binary replies announce 8 bytes less than they hold" },
    { Fault::ZeroLength, Where::Reply, 0, "zero-length", "binary replies announce no bytes, which come all the same" },
    { Fault::NegativeLength, Where::Reply, 0, "negative-length",
        "binary replies announce the negative of their length" },
    { Fault::OversizedLength, Where::Reply, 0, "oversized-length", "binary replies announce 2147483647 bytes" },
    { Fault::CutPayload, Where::Reply, 0, "cut-payload", "binary replies lack the last 3 bytes, and announce it so" },
    { Fault::EmptyPayload, Where::Reply, 0, "empty-payload", "binary replies hold no data, and announce it so" },
    { Fault::BadValues, Where::Reply, 0, "bad-values",
        "binary replies hold NaN, infinities, huge and negative numbers" },
    { Fault::NoAxis, Where::Reply, 0, "no-axis", "pair replies lack the axis in parentheses" },
    { Fault::BadIndex, Where::Reply, 0, "bad-index", "pair replies hold a pair beyond the last bin" },
    { Fault::WrongCounts, Where::Reply, 0, "wrong-counts", "map replies report bin counts that do not match the data" },
    { Fault::NoGreeting, Where::Greeting, 0, "no-greeting", "a connection is never greeted" },
    { Fault::LateGreeting, Where::Greeting, 2000, "late-greeting", "the greeting comes late" },
    { Fault::SplitGreeting, Where::Greeting, 5, "split-greeting", "the greeting comes one byte at a time" },
    { Fault::CloseAtGreeting, Where::Greeting, 0, "close-at-greeting",
        "the connection is closed instead of a greeting" },
    { Fault::PortSplit, Where::Process, 200, "port-split", "the port is printed in two pieces" },
    { Fault::PortLate, Where::Process, 2000, "port-late", "the port is printed late" },
    { Fault::PortZero, Where::Process, 0, "port-zero", "port 0 is printed" },
    { Fault::PortRange, Where::Process, 0, "port-range", "port 70000 is printed" },
    { Fault::PortMissing, Where::Process, 0, "port-missing", "the port is never printed" },
    { Fault::StartExit, Where::Process, 0, "start-exit", "the process ends at once with exit code 3" },
    { Fault::StartCrash, Where::Process, 0, "start-crash", "the process ends at once by a signal" },
    { Fault::IgnoreExit, Where::Process, 0, "ignore-exit", "\"exit\" and the end of standard input are ignored" },
});

consteval bool isInOrder()
{
    for (std::size_t i = 0; i < faults.size(); ++i) {
        if (faults[i].fault != static_cast<Fault>(i))
            return false;
    }
    return true;
}
static_assert(isInOrder(), "a fault is the index of its entry");

Step write(const QByteArray& bytes)
{
    return { .kind = Step::Kind::Write, .bytes = bytes };
}

Step writePieces(const QByteArray& bytes, qsizetype piece, int pauseMs)
{
    return { .kind = Step::Kind::WritePieces, .bytes = bytes, .piece = piece, .pauseMs = pauseMs };
}

Step pause(int pauseMs)
{
    return { .kind = Step::Kind::Pause, .bytes = {}, .piece = 0, .pauseMs = pauseMs };
}

Step act(Step::Kind kind)
{
    return { .kind = kind, .bytes = {} };
}

void appendLeads(Steps& steps, const Reply& reply)
{
    for (const Reply::DelayedText& delayed : reply.delayedTexts) {
        steps.push_back(pause(delayed.pauseMs));
        if (!delayed.text.isEmpty())
            steps.push_back(write(delayed.text));
    }
}

/// Appends the parts separately, so that a payload is never copied.
void appendFrame(Steps& steps, const Frame& frame)
{
    if (!frame.length.isEmpty())
        steps.push_back(write(frame.length));
    if (!frame.payload.isEmpty())
        steps.push_back(write(frame.payload));
    steps.push_back(write(frame.text + frame.prompt));
}

bool appliesTo(Fault fault, const Reply& reply)
{
    if (infoOf(fault).where != Where::Reply || reply.exempt)
        return false;
    switch (fault) {
    case Fault::Refuse:
        return false; // it took effect before there was a reply
    case Fault::EarlyPrompt:
        return !reply.isBinary();
    case Fault::SplitLength:
    case Fault::WrongLength:
    case Fault::ShortLength:
    case Fault::ZeroLength:
    case Fault::NegativeLength:
    case Fault::OversizedLength:
    case Fault::CutPayload:
    case Fault::EmptyPayload:
    case Fault::BadValues:
        return reply.isBinary() && !reply.payload.isEmpty();
    case Fault::NoAxis:
    case Fault::BadIndex:
        return reply.kind == Reply::Kind::Pairs;
    case Fault::WrongCounts:
        return reply.kind == Reply::Kind::Map;
    default:
        return true;
    }
}

/// Replaces every seventh double by an impossible count.
void spoilValues(QByteArray& payload)
{
    using Limits = std::numeric_limits<double>;
    constexpr std::array<double, 6> odd { Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity(), 1e300, -1e300,
        -1.0 };
    constexpr auto width = static_cast<qsizetype>(sizeof(double));
    for (qsizetype i = 0; i < payload.size() / width; i += 7)
        std::memcpy(payload.data() + i * width, &odd.at(static_cast<std::size_t>(i / 7) % odd.size()), sizeof(double));
}

/// Adds a pair whose abscissa is the upper end of the axis in the reply's text, which is one bin too far.
void appendPairAtEnd(Reply& reply)
{
    const QByteArray axis = reply.text.mid(reply.text.indexOf('(') + 1);
    const std::array<double, 2> pair { axis.split(' ').value(1).toDouble(), 1.0 };
    std::array<char, sizeof(pair)> bytes {};
    std::memcpy(bytes.data(), pair.data(), sizeof(pair));
    reply.payload.append(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

QByteArray randomBytes(Random& random, qsizetype count)
{
    QByteArray bytes(count, Qt::Uninitialized);
    std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<char>(random.below(256)); });
    return bytes;
}

/// Faults of a reply's content, applied before it is encoded.
void spoilReply(Fault fault, Reply& reply, Random& random)
{
    switch (fault) {
    case Fault::Garbage:
        reply.kind = Reply::Kind::Text;
        reply.payload.clear();
        reply.text = randomBytes(random, 1 + static_cast<qsizetype>(random.below(512)));
        break;
    case Fault::CutPayload:
        reply.payload.chop(3);
        break;
    case Fault::EmptyPayload:
        reply.payload.clear();
        break;
    case Fault::BadValues:
        spoilValues(reply.payload);
        break;
    case Fault::NoAxis:
        reply.text.truncate(reply.text.indexOf('('));
        reply.text.append('\n');
        break;
    case Fault::BadIndex:
        appendPairAtEnd(reply);
        break;
    case Fault::WrongCounts:
        reply.text.replace("exported ", "exported 1");
        break;
    default:
        break;
    }
}

/// Faults of the announced length.
void spoilLength(Fault fault, Frame& frame)
{
    const auto length = static_cast<qint32>(frame.payload.size());
    switch (fault) {
    case Fault::WrongLength:
        frame.length = lengthBytes(length + 8);
        break;
    case Fault::ShortLength:
        frame.length = lengthBytes(std::max(0, length - 8));
        break;
    case Fault::ZeroLength:
        frame.length = lengthBytes(0);
        break;
    case Fault::NegativeLength:
        frame.length = lengthBytes(-length);
        break;
    case Fault::OversizedLength:
        frame.length = lengthBytes(std::numeric_limits<qint32>::max());
        break;
    default:
        break;
    }
}

void appendChunks(Steps& steps, const QByteArray& bytes, Random& random, int pauseMs)
{
    // About a hundred pieces at most, independent of the size.
    const auto largest = std::max<std::uint64_t>(16, static_cast<std::uint64_t>(bytes.size() / 50));
    for (qsizetype at = 0; at < bytes.size();) {
        const qsizetype size = 1 + static_cast<qsizetype>(random.below(largest));
        steps.push_back(write(bytes.mid(at, size)));
        steps.push_back(pause(pauseMs));
        at += size;
    }
}

/// Two pieces, the second after a pause. A piece may be empty.
void appendSplit(Steps& steps, const QByteArray& bytes, qsizetype at, int pauseMs)
{
    steps.push_back(write(bytes.first(at)));
    steps.push_back(pause(pauseMs));
    steps.push_back(write(bytes.sliced(at)));
}

void appendEarlyPrompt(Steps& steps, const Frame& frame, int pauseMs)
{
    const qsizetype middle = frame.text.size() / 2;
    const QByteArray bytes = frame.text.first(middle) + frame.prompt + frame.text.sliced(middle) + frame.prompt;
    appendSplit(steps, bytes, middle + frame.prompt.size(), pauseMs);
}

/// Faults of the transmission.
void appendFaulty(Steps& steps, Fault fault, const Frame& frame, Random& random, int delayMs, quint64 strike)
{
    const QByteArray whole = frame.whole();
    const QByteArray half = whole.first(whole.size() / 2);
    switch (fault) {
    case Fault::Bytewise:
        steps.push_back(writePieces(whole, 1, delayMs));
        break;
    case Fault::Chunks:
        appendChunks(steps, whole, random, delayMs);
        break;
    case Fault::SplitPrompt: {
        const auto kept = static_cast<qsizetype>(strike % static_cast<quint64>(frame.prompt.size()));
        appendSplit(steps, whole, whole.size() - frame.prompt.size() + kept, delayMs);
        break;
    }
    case Fault::EarlyPrompt:
        appendEarlyPrompt(steps, frame, delayMs);
        break;
    case Fault::Trailing:
        steps.push_back(write(whole + "left over\n"));
        break;
    case Fault::Slow:
        steps.push_back(pause(delayMs));
        appendFrame(steps, frame);
        break;
    case Fault::Silent:
        break;
    case Fault::NoPrompt:
        steps.push_back(write(whole.chopped(frame.prompt.size())));
        break;
    case Fault::CloseBefore:
        steps.push_back(act(Step::Kind::Close));
        break;
    case Fault::CloseInReply:
        steps.push_back(write(half));
        steps.push_back(act(Step::Kind::Close));
        break;
    case Fault::CloseAfter:
        appendFrame(steps, frame);
        steps.push_back(act(Step::Kind::Close));
        break;
    case Fault::ResetInReply:
        steps.push_back(write(half));
        steps.push_back(pause(delayMs));
        steps.push_back(act(Step::Kind::Reset));
        break;
    case Fault::Exit:
        steps.push_back(act(Step::Kind::Exit));
        break;
    case Fault::Crash:
        steps.push_back(act(Step::Kind::Crash));
        break;
    case Fault::SplitLength:
        appendSplit(steps, whole, 3, delayMs);
        break;
    default:
        appendFrame(steps, frame);
        break;
    }
}

} // namespace

std::span<const FaultInfo> allFaults()
{
    return faults;
}

const FaultInfo& infoOf(Fault fault)
{
    return faults.at(static_cast<std::size_t>(fault));
}

std::optional<Fault> faultByName(const QString& name)
{
    for (const FaultInfo& info : faults) {
        if (name == QLatin1String(info.name))
            return info.fault;
    }
    return std::nullopt;
}

QString faultHelp()
{
    QString text;
    for (const FaultInfo& info : faults)
        text += strprintf("  %-18s %s\n", info.name, info.meaning);
    return text;
}

void FaultSwitch::set(Fault fault, int every, int delayMs)
{
    m_fault = fault;
    m_every = every;
    m_delayMs = delayMs;
    m_count = 0;
    m_strikes = 0;
}

Steps FaultSwitch::greeting(const QByteArray& text, const QByteArray& prompt)
{
    const QByteArray whole = text + prompt;
    if (infoOf(m_fault).where != Where::Greeting || !strikes())
        return { write(whole) };
    switch (m_fault) {
    case Fault::NoGreeting:
        return {};
    case Fault::LateGreeting:
        return { pause(delayMs()), write(whole) };
    case Fault::CloseAtGreeting:
        return { act(Step::Kind::Close) };
    default:
        return { writePieces(whole, 1, delayMs()) };
    }
}

Steps FaultSwitch::reply(Reply reply, const QByteArray& prompt)
{
    const bool faulty = appliesTo(m_fault, reply) && strikes();
    if (faulty)
        spoilReply(m_fault, reply, m_random);
    Steps steps;
    appendLeads(steps, reply);
    Frame frame = frameOf(reply, prompt);
    if (!faulty) {
        appendFrame(steps, frame);
        return steps;
    }
    spoilLength(m_fault, frame);
    appendFaulty(steps, m_fault, frame, m_random, delayMs(), m_strikes - 1);
    return steps;
}

bool FaultSwitch::refuses()
{
    return m_fault == Fault::Refuse && strikes();
}

bool FaultSwitch::strikes()
{
    if (++m_count % static_cast<quint64>(m_every) != 0)
        return false;
    ++m_strikes;
    return true;
}

} // namespace simserver
