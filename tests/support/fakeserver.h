// A local server for tests: a program in a temporary folder that executes a script. The steps are listed in
// fakeserver_main.cpp.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace tarnis::testing {

class FakeServer {
public:
    /// A program at `name` below a fresh folder; `name` may contain folders and spaces. Nothing is started.
    explicit FakeServer(const QStringList& script, const QString& name = QStringLiteral("server"));

    QString path() const; ///< path of the program
    QString folder() const; ///< above `name`
    bool hasNoted(const QString& name) const; ///< the program has written this note
    QByteArray noted(const QString& name) const; ///< standard input received by then

    /// Announces `port`, exits normally on "exit" or at the end of its input, and then writes the note "end".
    static QStringList wellBehaved(int port);
    /// Announces `port` and does not care about its input: it has to be killed.
    static QStringList deaf(int port);

private:
    QTemporaryDir m_folder;
    QString m_path;
};

bool isRunning(qint64 processId);

} // namespace tarnis::testing
