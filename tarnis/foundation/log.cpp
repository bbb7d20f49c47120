#include "tarnis/foundation/log.h"

#include "tarnis/foundation/threadid_p.h"

#include <QDateTime>
#include <QRecursiveMutex>

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <iomanip>
#include <locale>
#include <sstream>

namespace {

constexpr long rotationSize = 0xA00000;
constexpr int rotationCount = 9;

// Written under the mutex, read at every gate without it: through std::atomic_ref.
FILE* logStream = nullptr;
int minimumLevel = 0;

// Never destroyed: a thread may still log while the process's statics go.
QRecursiveMutex& logMutex()
{
    static auto* const mutex = new QRecursiveMutex;
    return *mutex;
}

FILE* currentStream()
{
    return std::atomic_ref(logStream).load(std::memory_order_acquire);
}

bool passesGate(int level)
{
    return currentStream() != nullptr && level >= std::atomic_ref(minimumLevel).load(std::memory_order_relaxed);
}

std::string numberedPath(const std::string& path, int number)
{
    const std::size_t dot = path.rfind('.');
    if (dot == std::string::npos)
        return path + "." + std::to_string(number);
    return path.substr(0, dot) + "." + std::to_string(number) + path.substr(dot);
}

void rotate(const std::string& path)
{
    for (int i = rotationCount; i >= 1; --i)
        std::rename(numberedPath(path, i).c_str(), numberedPath(path, i + 1).c_str());
    std::rename(path.c_str(), numberedPath(path, 1).c_str());
}

std::string formatLine(const char* word, const char* file, int line, std::string_view text)
{
    std::ostringstream out;
    out.imbue(std::locale::classic()); // a host's global locale may group digits
    out << QDateTime::currentDateTime().toString(QStringLiteral("yyyy/MM/dd HH:mm:ss.zzz")).toStdString() << ' '
        << std::setw(25) << file << ':' << std::setw(4) << line << ' ' << std::hex << std::setw(8)
        << tarnis::currentThreadNumber() << std::dec << " [" << std::setw(4) << word << "] " << text << '\n';
    return out.str();
}

void writeLine(const char* word, const char* file, int line, std::string_view text)
{
    const std::string entry = formatLine(word, file, line, text);
    const QMutexLocker locker(&logMutex());
    // closelog() may have come between the gate and here.
    if (FILE* stream = currentStream()) {
        // fputs() of the whole entry, also of one whose text holds a zero.
        std::fwrite(entry.data(), 1, entry.size(), stream);
        std::fflush(stream);
    }
}

std::string joined(const std::set<long long>& numbers)
{
    std::string text;
    for (const long long number : numbers) {
        if (!text.empty())
            text += ',';
        text += std::to_string(number);
    }
    return text;
}

} // namespace

void initlog(const std::string& path, int level)
{
    const QMutexLocker locker(&logMutex());
    FILE* stream = std::fopen(path.c_str(), "a");
    std::atomic_ref(minimumLevel).store(level, std::memory_order_relaxed);
    if (stream) {
        std::fputs("\n\n", stream);
        if (std::ftell(stream) > rotationSize) {
            std::fclose(stream);
            rotate(path);
            stream = std::fopen(path.c_str(), "a");
        }
    }
    std::atomic_ref(logStream).store(stream, std::memory_order_release);
}

void closelog()
{
    const QMutexLocker locker(&logMutex());
    if (FILE* stream = currentStream()) {
        std::atomic_ref(logStream).store(nullptr, std::memory_order_release);
        std::fclose(stream);
    }
}

bool log_is_enabled()
{
    return currentStream() != nullptr;
}

void __log__(int level, const char* word, const char* file, int line, const char* format, ...)
{
    if (!passesGate(level))
        return;
    char buffer[8192];
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(buffer, sizeof buffer, format, arguments);
    va_end(arguments);
    if (length < 0)
        buffer[0] = '\0';
    buffer[sizeof buffer - 1] = '\0';
    writeLine(word, file, line, buffer);
}

void __log__(int level, const char* word, const char* file, int line, const std::string& text)
{
    if (passesGate(level))
        writeLine(word, file, line, text);
}

void __log__(int level, const char* word, const char* file, int line, const QString& text)
{
    if (passesGate(level))
        writeLine(word, file, line, text.toStdString());
}

QString strprintf(const char* format, ...)
{
    char buffer[8190];
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(buffer, sizeof buffer, format, arguments);
    va_end(arguments);
    return length < 0 ? QString() : QString::fromUtf8(buffer);
}

long long _LogBlock::_next_num = 1;
std::map<unsigned long long, std::set<long long>> _LogBlock::_num_map;

_LogBlock::_LogBlock(const char* file, int line, const char* name, int level)
    : m_file(file)
    , m_line(line)
    , m_level(level)
{
    if (!passesGate(level))
        return;
    const QMutexLocker locker(&logMutex());
    m_num = _next_num++;
    _num_map[tarnis::currentThreadNumber()].insert(m_num);
    __log__(m_level, "BLCK", m_file.c_str(), m_line, "%s -> %lld", name, m_num);
}

_LogBlock::~_LogBlock()
{
    if (!passesGate(m_level))
        return;
    const QMutexLocker locker(&logMutex());
    const auto entry = _num_map.try_emplace(tarnis::currentThreadNumber()).first;
    entry->second.erase(m_num);
    if (!entry->second.empty()) {
        __log__(m_level, "<", m_file.c_str(), m_line, "    <- %lld (%s)", m_num, joined(entry->second).c_str());
        return;
    }
    __log__(m_level, "<", m_file.c_str(), m_line, "    <- %lld", m_num);
    _num_map.erase(entry); // threads come and go
}
