#include "tarnis/foundation/log.h"

#include "tarnis/foundation/threadid_p.h"

#include <QDateTime>
#include <QRecursiveMutex>

#include <cstdarg>
#include <cstring>

FILE* tarnis::logStream = nullptr;
int tarnis::logMinimumLevel = 0;

namespace {

constexpr long rotationSize = 0xA00000;
constexpr int rotationCount = 9;

// Never destroyed: a thread may still log while static objects are destroyed.
QRecursiveMutex& logMutex()
{
    static auto* const mutex = new QRecursiveMutex;
    return *mutex;
}

FILE* currentStream()
{
    return std::atomic_ref(tarnis::logStream).load(std::memory_order_acquire);
}

void setStream(FILE* stream)
{
    std::atomic_ref(tarnis::logStream).store(stream, std::memory_order_release);
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

// The local time to the second, computed once per second: applying the time zone costs more than the rest of a line.
struct SecondText {
    qint64 second = -1;
    char text[sizeof "yyyy/MM/dd HH:mm:ss"] = {};
};
thread_local SecondText secondText;

const char* timeToTheSecond(qint64 msecsSinceEpoch)
{
    const qint64 second = msecsSinceEpoch / 1000;
    if (second != secondText.second) {
        const QByteArray text =
            QDateTime::fromMSecsSinceEpoch(msecsSinceEpoch).toString(u"yyyy/MM/dd HH:mm:ss").toLatin1();
        qstrncpy(secondText.text, text.constData(), sizeof secondText.text);
        secondText.second = second;
    }
    return secondText.text;
}

std::string formatLine(const char* word, const char* file, int line, std::string_view text)
{
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    std::string entry(std::strlen(file) + std::strlen(word) + 100, '\0');
    const int length = std::snprintf(entry.data(), entry.size(), "%s.%03d %25s:%4d %8llx [%4s] ", timeToTheSecond(now),
        static_cast<int>(now % 1000), file, line, tarnis::currentThreadNumber(), word);
    entry.resize(static_cast<std::size_t>(length));
    entry += text;
    entry += '\n';
    return entry;
}

void writeLine(const char* word, const char* file, int line, std::string_view text)
{
    const std::string entry = formatLine(word, file, line, text);
    const QMutexLocker locker(&logMutex());
    // closelog() may have been called after the level check.
    if (FILE* stream = currentStream()) {
        // Not fputs(): the text may contain a null character.
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
    std::atomic_ref(tarnis::logMinimumLevel).store(level, std::memory_order_relaxed);
    if (stream) {
        std::fputs("\n\n", stream);
        if (std::ftell(stream) > rotationSize) {
            std::fclose(stream);
            rotate(path);
            stream = std::fopen(path.c_str(), "a");
        }
    }
    setStream(stream);
}

void closelog()
{
    const QMutexLocker locker(&logMutex());
    if (FILE* stream = currentStream()) {
        setStream(nullptr);
        std::fclose(stream);
    }
}

bool log_is_enabled()
{
    return tarnis::logIsOn();
}

void __log__(int level, const char* word, const char* file, int line, const char* format, ...)
{
    if (!tarnis::logPasses(level))
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
    if (tarnis::logPasses(level))
        writeLine(word, file, line, text);
}

void __log__(int level, const char* word, const char* file, int line, const QString& text)
{
    if (tarnis::logPasses(level))
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

void _LogBlock::open(const char* name)
{
    const QMutexLocker locker(&logMutex());
    m_num = _next_num++;
    _num_map[tarnis::currentThreadNumber()].insert(m_num);
    __log__(m_level, "BLCK", m_file.c_str(), m_line, "%s -> %lld", name, m_num);
}

void _LogBlock::close()
{
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
