#include "output.h"

#include <tarnis/foundation/files.h>

#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace cli {

namespace {

/// Blocks the signals that end the program, so that no temporary file is left.
class SignalBlocker {
public:
    SignalBlocker()
    {
        sigset_t ending;
        sigemptyset(&ending);
        for (const int signal : { SIGINT, SIGTERM, SIGHUP, SIGQUIT })
            sigaddset(&ending, signal);
        pthread_sigmask(SIG_BLOCK, &ending, &m_previous);
    }
    ~SignalBlocker() { pthread_sigmask(SIG_SETMASK, &m_previous, nullptr); }
    SignalBlocker(const SignalBlocker&) = delete;
    SignalBlocker& operator=(const SignalBlocker&) = delete;

private:
    sigset_t m_previous {};
};

} // namespace

Outcome print(const QByteArray& text)
{
    const bool isClosed = (::fcntl(STDOUT_FILENO, F_GETFL) & O_ACCMODE) == O_RDONLY; // NOLINT(*-vararg): POSIX
    const QString error = isClosed ? QStringLiteral("it is closed") : tarnis::writeDescriptor(STDOUT_FILENO, text);
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
    // Otherwise a file or a connection would get the descriptor of a closed stream, and printed text would be written
    // to it.
    for (const int stream : { STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO }) {
        const bool isClosed = ::fcntl(stream, F_GETFD) < 0 && errno == EBADF; // NOLINT(*-vararg): POSIX
        // Opened with the opposite mode, so that its use is an error.
        if (isClosed && ::open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY) != stream) // NOLINT(*-vararg)
            _exit(FileError);
    }
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
    // An error of standard error cannot be reported.
    static_cast<void>(tarnis::writeDescriptor(STDERR_FILENO, QByteArray("tarnis: " + line.toUtf8() + '\n')));
}

void printWarning(const QString& text)
{
    printError(QStringLiteral("warning: ") + text);
}

Outcome checkOutputName(const QString& path)
{
    static const QStringList suffixes { "csv", "txt", "tsv", "dat", "npy", "spe", "h5", "hdf5", "nxs", "png", "pdf",
        "svg", "json" };
    const QString name = path.section(u'/', -1);
    if (path.isEmpty())
        return Failure { .code = WrongUsage, .text = "the name of the output is empty: give -o FILE" };
    if (name.startsWith(u'.') && suffixes.contains(name.mid(1).toLower()))
        return Failure { .code = WrongUsage,
            .text = QStringLiteral("'%1' has nothing in front of the '%2': give -o a complete name").arg(path, name) };
    return std::nullopt;
}

Outcome writeOutput(const QString& path, const QByteArray& content)
{
    if (path == u"-")
        return print(content);
    const SignalBlocker untilComplete;
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
