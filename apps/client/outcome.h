// Results of the program's commands.
#pragma once

#include <QString>

#include <optional>
#include <utility>
#include <variant>

namespace cli {

/// Exit codes, which scripts depend on.
enum ExitCode {
    Done = 0,
    Refused = 1, ///< the server refused the command
    WrongUsage = 2, ///< the command line is invalid
    NoConnection = 3, ///< no connection, lost connection, or timeout
    FileError = 4 ///< a file, or standard output, could not be read or written
};

/// Why a command has failed.
struct Failure {
    ExitCode code = Done;
    QString text; ///< one line, without the program's name
};

/// Empty on success.
using Outcome = std::optional<Failure>;

/// A value or a failure.
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
