#include "simserver/simprogram.h"

#include <QProcessEnvironment>
#include <QtEndian>

#include <cerrno>
#include <cstring>

#include <arpa/inet.h>
#include <linux/capability.h>
#include <netinet/in.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace simtest {

Program::Program(const QStringList& arguments)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("TARNIS_SIMSERVER_OPTIONS");
    m_process.setProcessEnvironment(environment);
    // Root can read every folder; a server in a test must not.
    m_process.setChildProcessModifier([] {
        ::prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE);
        ::prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH);
    });
    m_process.start(SIMSERVER_PATH, arguments);
    if (!m_process.waitForStarted(timeoutMs))
        qFatal("cannot start %s", SIMSERVER_PATH);
}

Program::~Program()
{
    if (!isRunning())
        return;
    m_process.terminate(); // it removes its samples
    if (!m_process.waitForFinished(timeoutMs))
        m_process.kill();
}

quint16 Program::port()
{
    if (m_port == 0) {
        const QByteArray line = outputUntil("\n");
        m_port = line.mid(static_cast<qsizetype>(std::strlen("UI port:"))).trimmed().toUShort();
    }
    return m_port;
}

QByteArray Program::outputUntil(const QByteArray& text)
{
    m_output += m_process.readAllStandardOutput();
    while (!m_output.contains(text) && m_process.waitForReadyRead(timeoutMs))
        m_output += m_process.readAllStandardOutput();
    m_output += m_process.readAllStandardOutput();
    return m_output;
}

void Program::type(const QByteArray& text)
{
    m_process.write(text);
    while (m_process.bytesToWrite() > 0 && m_process.waitForBytesWritten(timeoutMs)) { }
}

void Program::closeInput()
{
    m_process.closeWriteChannel();
}

QString Program::end()
{
    if (isRunning() && !m_process.waitForFinished(timeoutMs))
        return QStringLiteral("still running");
    if (m_process.exitStatus() == QProcess::CrashExit)
        return QStringLiteral("crash");
    return QStringLiteral("exit %1").arg(m_process.exitCode());
}

QByteArray Program::errors()
{
    end();
    return m_process.readAllStandardError();
}

Connection::Connection(quint16 port, const QByteArray& prompt, bool greeted)
    : m_socket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    , m_prompt(prompt)
{
    const timeval limit { .tv_sec = timeoutMs / 1000, .tv_usec = 0 };
    setsockopt(m_socket, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof(limit));
    setsockopt(m_socket, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof(limit));
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0)
        qFatal("cannot connect to port %d", port);
    if (greeted)
        m_greeting = text();
}

Connection::~Connection()
{
    ::close(m_socket);
}

void Connection::send(const QByteArray& bytes)
{
    for (qsizetype at = 0; at < bytes.size();) {
        const ssize_t count =
            ::send(m_socket, bytes.constData() + at, static_cast<std::size_t>(bytes.size() - at), MSG_NOSIGNAL);
        if (count <= 0)
            return; // the server has closed the connection; the next wait reports it
        at += count;
    }
}

QByteArray Connection::text()
{
    while (!m_buffer.endsWith(m_prompt) && more()) { }
    const QByteArray reply = m_buffer.endsWith(m_prompt) ? m_buffer.chopped(m_prompt.size()) : "truncated: " + m_buffer;
    m_buffer.clear();
    return reply;
}

BinaryReply Connection::binary()
{
    BinaryReply reply;
    reply.length = qFromLittleEndian<qint32>(bytes(4).leftJustified(4, '\0').constData());
    const qsizetype behind = qMax(reply.length, 0) + m_prompt.size();
    while ((m_buffer.size() < behind || !m_buffer.endsWith(m_prompt)) && more()) { }
    reply.payload = m_buffer.left(qMax(reply.length, 0));
    reply.text = m_buffer.mid(reply.payload.size()).chopped(m_prompt.size());
    m_buffer.clear();
    return reply;
}

QByteArray Connection::ask(const QByteArray& command)
{
    send(command + '\n');
    return text();
}

BinaryReply Connection::askBinary(const QByteArray& command)
{
    send(command + '\n');
    return binary();
}

QByteArray Connection::value(const QByteArray& command, const QByteArray& name)
{
    for (const QByteArray& line : ask(command).split('\n')) {
        if (line.startsWith(name + ": "))
            return line.mid(name.size() + 2);
    }
    return "absent";
}

QByteArray Connection::bytes(qsizetype count)
{
    while (m_buffer.size() < count && more()) { }
    const QByteArray taken = m_buffer.left(count);
    m_buffer.remove(0, taken.size());
    return taken;
}

QByteArray Connection::untilClosed()
{
    while (more()) { }
    return m_buffer;
}

bool Connection::more()
{
    QByteArray chunk(256 * 1024, Qt::Uninitialized);
    const ssize_t count = recv(m_socket, chunk.data(), static_cast<std::size_t>(chunk.size()), 0);
    if (count <= 0) {
        m_reset = count < 0 && errno == ECONNRESET;
        return false;
    }
    m_buffer.append(chunk.constData(), static_cast<qsizetype>(count));
    return true;
}

} // namespace simtest
