// The simulated server without sockets, and the commands of a client.
#pragma once

#include "commands.h"
#include "settings.h"
#include "simulation.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace simtest {

inline bool always()
{
    return true;
}

inline void writeFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

inline QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot read");
}

/// Tests of commands derive from it: a simulation with a few folders and files.
class CommandFixture : public QObject {
protected:
    /// Before each test.
    void makeServer()
    {
        m_root = std::make_unique<QTemporaryDir>();
        const QDir root(m_root->path());
        for (const char* const name : { "data", "data/a b", "data/q\"uote", "data/M\u00fcller", "empty", ".hidden" })
            QVERIFY(root.mkpath(QString::fromUtf8(name)));
        writeFile(local("data/run.txt"), "x");
        writeFile(local("data/Zebra.csv"), "x");
        writeFile(local("data/.secret"), "x");
        m_simulation = std::make_unique<simserver::Simulation>(simserver::Settings(), m_root->path(), QString());
    }

    simserver::Reply reply(const QByteArray& line)
    {
        return simserver::answer(*m_simulation, { .kind = simserver::Request::Kind::Line, .bytes = line });
    }
    /// The reply's text: "OK:" and what follows, or "NG:" and the reason.
    QString ask(const QByteArray& line) { return QString::fromUtf8(reply(line).text); }
    /// The value after "name: " in a reply.
    QString value(const QByteArray& line, const QString& name)
    {
        for (const QString& text : ask(line).split('\n')) {
            if (text.startsWith(name + ": "))
                return text.mid(name.size() + 2);
        }
        return QStringLiteral("absent");
    }
    QString upload(const QByteArray& bytes)
    {
        return QString::fromUtf8(
            simserver::answer(*m_simulation, { .kind = simserver::Request::Kind::Upload, .bytes = bytes }).text);
    }
    void pass(double seconds) { m_simulation->advance(seconds, always); }
    QString local(const QString& path) const { return m_root->filePath(path); }

    std::unique_ptr<QTemporaryDir> m_root;
    std::unique_ptr<simserver::Simulation> m_simulation;
};

} // namespace simtest
