// How a command of the program ends.
#pragma once

#include <QString>

#include <optional>
#include <utility>
#include <variant>

namespace cli {

/// Exit codes, which scripts rely on.
enum ExitCode {
    Done = 0,
    Refused = 1, ///< the server refused
    WrongUsage = 2, ///< the command line cannot be carried out
    NoConnection = 3, ///< no connection, it was lost, or no reply in time
    FileError = 4 ///< a file, or standard output, could not be read or written
};

/// Why a command did not do what it should.
struct Failure {
    ExitCode code = Done;
    QString text; ///< one line, without the program's name
};

/// Nothing on success.
using Outcome = std::optional<Failure>;

/// A value, or why there is none.
template <typename Value> class Result {
public:
    Result(Value value) // NOLINT(*-explicit-*): a function returns either
        : m_content(std::move(value))
    {
    }
    Result(Failure failure) // NOLINT(*-explicit-*)
        : m_content(std::move(failure))
    {
    }
    bool isOk() const { return std::holds_alternative<Value>(m_content); }
    const Value& value() const { return std::get<Value>(m_content); }
    Value& value() { return std::get<Value>(m_content); }
    const Failure& failure() const { return std::get<Failure>(m_content); }

private:
    std::variant<Value, Failure> m_content;
};

} // namespace cli
