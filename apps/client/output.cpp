#include "output.h"

#include <tarnis/foundation/files.h>

#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <csignal>

#include <unistd.h>

namespace cli {

namespace {

/// Holds back the signals that end the program, so that no temporary file is left behind.
class Uninterrupted {
public:
    Uninterrupted()
    {
        sigset_t ending;
        sigemptyset(&ending);
        for (const int signal : { SIGINT, SIGTERM, SIGHUP, SIGQUIT })
            sigaddset(&ending, signal);
        pthread_sigmask(SIG_BLOCK, &ending, &m_previous);
    }
    ~Uninterrupted() { pthread_sigmask(SIG_SETMASK, &m_previous, nullptr); }
    Uninterrupted(const Uninterrupted&) = delete;
    Uninterrupted& operator=(const Uninterrupted&) = delete;

private:
    sigset_t m_previous {};
};

} // namespace

Outcome print(const QByteArray& text)
{
    const QString error = tarnis::writeDescriptor(STDOUT_FILENO, text);
    if (error.isEmpty())
        return std::nullopt;
    return Failure { .code = FileError, .text = QStringLiteral("cannot write to standard output: %1").arg(error) };
}

Outcome print(const QJsonObject& object)
{
    return print(QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n');
}

void prepareStreams()
{
    std::signal(SIGPIPE, SIG_IGN);
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
        if (type == QtFatalMsg)
            printError(text);
    });
}

void printError(const QString& text)
{
    QString line = text.trimmed();
    line.replace(u'\r', QString()).replace(u'\n', u' ');
    // Standard error is where an error of its own would be reported.
    [[maybe_unused]] const QString error =
        tarnis::writeDescriptor(STDERR_FILENO, QByteArray("tarnis: " + line.toUtf8() + '\n'));
}

Outcome writeOutput(const QString& path, const QByteArray& content)
{
    if (path == u"-")
        return print(content);
    const Uninterrupted untilComplete;
    const QString error = tarnis::writeFile(path, content);
    if (error.isEmpty())
        return std::nullopt;
    return Failure { .code = FileError, .text = QStringLiteral("cannot write '%1': %2").arg(path, error) };
}

bool isStream(const QString& path)
{
    const QFileInfo info(path);
    return path == u"-" || (info.exists() && !info.isFile() && !info.isDir());
}

Result<QByteArray> readInput(const QString& path)
{
    const tarnis::FileContent content = tarnis::readFile(path == u"-" ? QStringLiteral("/dev/stdin") : path);
    if (content.error.isEmpty())
        return content.bytes;
    return Failure { .code = FileError, .text = QStringLiteral("cannot read '%1': %2").arg(path, content.error) };
}

} // namespace cli
