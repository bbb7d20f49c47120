/// @file
/// The process-wide text log: a level gate, one flushed line per entry, and numbered blocks that show what is still
/// open on a thread. Any thread may log at any time; the host calls initlog() first and closelog() when the others are
/// done.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QByteArray>
#include <QString>

#include <atomic>
#include <cstdio>
#include <map>
#include <set>
#include <string>
#include <string_view>

namespace tarnis {

extern TARNIS_EXPORT FILE* logStream; ///< null while the log is off; through std::atomic_ref
extern TARNIS_EXPORT int logMinimumLevel; ///< through std::atomic_ref

/// The check of the macros and blocks, inline: one pointer test while the log is off.
inline bool logIsOn()
{
    return std::atomic_ref(logStream).load(std::memory_order_acquire) != nullptr;
}
/// True while the log is on and accepts lines of this level.
inline bool logPasses(int level)
{
    return logIsOn() && level >= std::atomic_ref(logMinimumLevel).load(std::memory_order_relaxed);
}

} // namespace tarnis

/// Opens `path` for appending and drops lines below `level`. A file of more than 10 MiB is renamed to name.1.ext first
/// (older ones to .2 up to .10). If the path cannot be opened, the log stays off and no error is reported.
TARNIS_EXPORT void initlog(const std::string& path, int level);

/// Closes the log, if it is open.
TARNIS_EXPORT void closelog();

/// True while a log is open. Takes no lock.
TARNIS_EXPORT bool log_is_enabled();

/// Writes one line, formatted as by printf and truncated to 8191 bytes. `word` is the name of the level: DBG (0), INFO
/// (10), ERR (30). Nothing is formatted for a level that is not logged.
TARNIS_EXPORT void __log__(int level, const char* word, const char* file, int line, const char* format, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 5, 6)))
#endif
    ;
/// Writes `text` unchanged and completely, without format processing.
TARNIS_EXPORT void __log__(int level, const char* word, const char* file, int line, const std::string& text);
/// As above, in UTF-8.
TARNIS_EXPORT void __log__(int level, const char* word, const char* file, int line, const QString& text);

/// Formats as printf does and decodes the bytes as UTF-8. The text is truncated to 8189 bytes.
TARNIS_EXPORT QString strprintf(const char* format, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 1, 2)))
#endif
    ;

/// A block of work on one thread, from construction to destruction. Writes a line at both ends.
class TARNIS_EXPORT _LogBlock {
public:
    /// Assigns the next number and writes "name -> number", unless the log is off or `level` is not logged.
    _LogBlock(const char* file, int line, const char* name, int level)
        : m_file(file)
        , m_line(line)
        , m_level(level)
    {
        if (tarnis::logPasses(level))
            open(name);
    }
    /// Writes "    <- number" and, in parentheses, the numbers that are still open on this thread.
    ~_LogBlock()
    {
        if (tarnis::logPasses(m_level))
            close();
    }
    _LogBlock(const _LogBlock&) = delete;
    _LogBlock& operator=(const _LogBlock&) = delete;

protected:
    long long m_num = 0; ///< 0 if the block's level is not logged
    /// As given to the constructor; both lines of the block show file and line. @{
    std::string m_file;
    int m_line;
    int m_level;
    /// @}

    void open(const char* name); ///< assigns the number and writes the first line
    void close(); ///< writes the last line and releases the number

    static long long _next_num; ///< guarded by the log's mutex
    static std::map<unsigned long long, std::set<long long>> _num_map; ///< thread id to open blocks; same guard
};

namespace tarnis {

/// The part of a source path after its last separator.
consteval const char* sourceName(const char* path)
{
    const char* name = path;
    for (const char* p = path; *p != '\0'; ++p) {
        if (*p == '/' || *p == '\\')
            name = p + 1;
    }
    return name;
}

/// A block's name as bytes, for LOG_BLOCK().
class LogBlockName {
public:
    /// Keeps the pointer.
    explicit LogBlockName(const char* name)
        : m_name(name)
    {
    }
    /// Keeps the text as UTF-8.
    explicit LogBlockName(const QString& name)
        : m_text(name.toUtf8())
        , m_name(m_text.constData())
    {
    }
    const char* text() const { return m_name; } ///< valid as long as this object

private:
    QByteArray m_text;
    const char* m_name;
};

} // namespace tarnis

/// @cond
#define TARNIS_LOG_JOIN_(a, b) a##b
#define TARNIS_LOG_JOIN(a, b) TARNIS_LOG_JOIN_(a, b)
#define TARNIS_LOG_LINE(level, word, ...)                                                                              \
    (tarnis::logIsOn() ? __log__(level, word, tarnis::sourceName(__FILE__), __LINE__, __VA_ARGS__) : void())

/// @endcond

/// Writes a line of level 0, 10 or 30, from a text or a printf format with arguments. With the log off the arguments
/// are not evaluated. @{
#define LOG_DBG(...) TARNIS_LOG_LINE(0, "DBG", __VA_ARGS__)
#define LOG_INFO(...) TARNIS_LOG_LINE(10, "INFO", __VA_ARGS__)
#define LOG_ERR(...) TARNIS_LOG_LINE(30, "ERR", __VA_ARGS__)
/// @} @cond A single text is written unchanged; a text with arguments is a printf format.
#define TARNIS_LOG_NAME_PLAIN(name) name
#define TARNIS_LOG_NAME_PLAIN_FORMATTED(...) strprintf(__VA_ARGS__)
#define TARNIS_LOG_NAME(name, ...) TARNIS_LOG_NAME_PLAIN##__VA_OPT__(_FORMATTED)(name __VA_OPT__(, ) __VA_ARGS__)
/// @endcond

/// Opens a block of level 3 to the end of the scope. Accepts a text or a printf format with arguments, which are not
/// evaluated while the log is off.
#define LOG_BLOCK(...)                                                                                                 \
    const _LogBlock TARNIS_LOG_JOIN(logBlock_, __LINE__)(tarnis::sourceName(__FILE__), __LINE__,                       \
        tarnis::logIsOn() ? tarnis::LogBlockName(TARNIS_LOG_NAME(__VA_ARGS__)).text() : "", 3)
